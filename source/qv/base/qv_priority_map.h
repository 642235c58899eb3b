#ifndef QV_BASE_QV_PRIORITY_MAP_H
#define QV_BASE_QV_PRIORITY_MAP_H

/* Priority maps: objects in the order of an integer priority, each object once, with copy-on-write.
 *
 * Objects that compare equal count as the same object. Objects of equal priority stand in the order of
 * qvObjCompare.
 *
 * An editing function takes the address of the caller's handle. It edits the record in place if the caller
 * holds the only reference, otherwise it puts a new record into the handle. A null handle, map or object and
 * a position outside the map stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PRIORITY_MAP, qvPriorityMap )

/* A new empty map. */
QV_API QV_PRIORITY_MAP *qvPriorityMapCreate( void );

/* A new map with the same objects. */
QV_API QV_PRIORITY_MAP *qvPriorityMapCreateFrom( QV_PRIORITY_MAP *map );

/* Puts a new empty map into the handle. */
QV_API void qvPriorityMapClear( QV_PRIORITY_MAP **map );

/* The number of objects. */
QV_API QV_INT qvPriorityMapLength( QV_PRIORITY_MAP *map );

/* The priority and the object at position idx, 0 to length - 1, from the lowest priority up. The caller owns
 * the reference. */
QV_API QV_INT qvPriorityMapPriorityAt( QV_PRIORITY_MAP *map, QV_INT idx );
QV_API qvObj qvPriorityMapValueAt( QV_PRIORITY_MAP *map, QV_INT idx );

/* Removes the object at position idx. */
QV_API void qvPriorityMapDelAt( QV_PRIORITY_MAP **map, QV_INT idx );

/* All objects from the lowest priority up, as a new vector. */
QV_API QV_VECTOR *qvPriorityMapValuesVector( QV_PRIORITY_MAP *map );

/* The object at the upper or the lower end, owned by the caller; null for an empty map. priority receives its
 * priority, 0 for an empty map; it may be null. */
QV_API qvObj qvPriorityMapHighest( QV_PRIORITY_MAP *map, QV_INT *priority );
QV_API qvObj qvPriorityMapLowest( QV_PRIORITY_MAP *map, QV_INT *priority );

/* Whether the object is a member, and its position, -1 if it isn't. */
QV_API QV_BOOL qvPriorityMapHas( QV_PRIORITY_MAP *map, qvObj obj );
QV_API QV_INT qvPriorityMapIndexOf( QV_PRIORITY_MAP *map, qvObj obj );

/* The object one place above or below obj, owned by the caller; null if obj is absent or stands at that end.
 * priority receives its priority, or 0; it may be null. */
QV_API qvObj qvPriorityMapHigher( QV_PRIORITY_MAP *map, qvObj obj, QV_INT *priority );
QV_API qvObj qvPriorityMapLower( QV_PRIORITY_MAP *map, qvObj obj, QV_INT *priority );

/* Adds obj at the priority, or moves it there. */
QV_API void qvPriorityMapSet( QV_PRIORITY_MAP **map, QV_INT priority, qvObj obj );

/* Removes obj; nothing happens if it is absent. */
QV_API void qvPriorityMapDel( QV_PRIORITY_MAP **map, qvObj obj );

QV_END_DECLS

#endif
