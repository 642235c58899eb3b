#ifndef QV_BASE_QV_RANGE_MAP_H
#define QV_BASE_QV_RANGE_MAP_H

/* Range maps: ranges of integer keys, each with an object as its value, with copy-on-write.
 *
 * The ranges are inclusive at both ends, don't overlap and stand in ascending order. A new range wins over
 * what it covers; what it covers in part is cut, and a range that reaches beyond it on both sides survives as
 * two. Two ranges touch when no key lies between them.
 *
 * An editing function takes the address of the caller's handle. It edits the record in place if the caller
 * holds the only reference, otherwise it puts a new record into the handle. A null handle, map or value, a
 * range that ends below its start and a position outside the map stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_RANGE_MAP, qvRangeMap )

/* A new empty map, without or with auto-collapse: every set then merges touching ranges with equal values. */
QV_API QV_RANGE_MAP *qvRangeMapCreate( void );
QV_API QV_RANGE_MAP *qvRangeMapCreateAutoCollapsing( void );

/* A new map with the ranges and the auto-collapse of src. */
QV_API QV_RANGE_MAP *qvRangeMapCreateFrom( QV_RANGE_MAP *src );

/* Whether the map collapses by itself. Turning it on collapses the whole map at once. */
QV_API QV_BOOL qvRangeMapAutoCollapse( QV_RANGE_MAP *map );
QV_API void qvRangeMapSetAutoCollapse( QV_RANGE_MAP **map, QV_BOOL autoCollapse );

/* Puts a new empty map into the handle, with auto-collapse off. */
QV_API void qvRangeMapClear( QV_RANGE_MAP **map );

/* The number of ranges. */
QV_API QV_INT qvRangeMapLength( QV_RANGE_MAP *map );

/* The first and the last key and the value of the range at position idx, 0 to length - 1, in key order. The
 * caller owns the value's reference. */
QV_API QV_INT qvRangeMapStartingKeyAt( QV_RANGE_MAP *map, QV_INT idx );
QV_API QV_INT qvRangeMapEndingKeyAt( QV_RANGE_MAP *map, QV_INT idx );
QV_API qvObj qvRangeMapObjAt( QV_RANGE_MAP *map, QV_INT idx );

/* The value of the range that holds the key, owned by the caller; null if there is none. */
QV_API qvObj qvRangeMapIntKey( QV_RANGE_MAP *map, QV_INT key );
QV_API QV_BOOL qvRangeMapHasIntKey( QV_RANGE_MAP *map, QV_INT key );

/* Every key from startingKey to endingKey, or the one key, maps to value from now on. value is retained. */
QV_API void qvRangeMapSetRangeKey( QV_RANGE_MAP **map, QV_INT startingKey, QV_INT endingKey, qvObj value );
QV_API void qvRangeMapSetIntKey( QV_RANGE_MAP **map, QV_INT key, qvObj value );

/* No key from startingKey to endingKey, or not the one key, maps to anything from now on. */
QV_API void qvRangeMapDelRangeKey( QV_RANGE_MAP **map, QV_INT startingKey, QV_INT endingKey );
QV_API void qvRangeMapDelIntKey( QV_RANGE_MAP **map, QV_INT key );

/* Merges touching ranges whose values compare equal, once; the first range's value stays. */
QV_API void qvRangeMapCollapse( QV_RANGE_MAP **map );

QV_END_DECLS

#endif
