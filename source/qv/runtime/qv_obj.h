#ifndef QV_RUNTIME_QV_OBJ_H
#define QV_RUNTIME_QV_OBJ_H

/* Objects: reference-counted records of a sort, with the operations that all sorts share. */

#include <qv/runtime/qv_handles.h>

/* Declares the eight standard operations of a sort.
 *
 * ...Sort      the sort's record.
 * ...Retain    adds a reference; null stops the process.
 * ...Release   drops a reference, the last one destroys the object; null stops the process.
 * ...Obj       the same object as an untyped handle; null stays null. No reference is added.
 * ...From      the untyped object as this sort's handle; null stays null, an object of another sort stops the process.
 *              No reference is added.
 * ...ToString  the text form, owned by the caller; null stops the process.
 * ...Compare   negative, 0 or positive; null stops the process.
 * ...Equals    true if the comparison gives 0. */
#define QV_SORT_FUNCTIONS( NAME, prefix ) QV___SORT_FUNCTIONS( QV_API, NAME, prefix )

#define QV___SORT_FUNCTIONS( api, NAME, prefix )                                                             \
    api QV_SORT *prefix##Sort( void );                                                                       \
    api void prefix##Retain( NAME *obj );                                                                    \
    api void prefix##Release( NAME *obj );                                                                   \
    api qvObj prefix##Obj( NAME *obj );                                                                      \
    api NAME *prefix##From( qvObj obj );                                                                     \
    api QV_STRING *prefix##ToString( NAME *obj );                                                            \
    api QV_INT prefix##Compare( NAME *objA, NAME *objB );                                                    \
    api QV_BOOL prefix##Equals( NAME *objA, NAME *objB );

QV_BEGIN_DECLS

/* Adds a reference. Safe from any thread. Null stops the process. */
QV_API void qvObjRetain( qvObj obj );

/* Drops a reference; the last one destroys the object. Safe from any thread. Null stops the process. */
QV_API void qvObjRelease( qvObj obj );

/* The object's sort, not retained (sort records are never freed). */
QV_API QV_SORT *qvObjSort( qvObj thisObj );

/* Orders two objects: by the sort's own order; objects of a sort without one by their tokens, so that two of them are
 * never equal; objects of different sorts by the sorts' names. Negative, 0 or positive; an object equals itself. */
QV_API QV_INT qvObjCompare( qvObj objA, qvObj objB );

/* The order by sort name and token, for a sort's own function to fall back on. -1, 0 or 1. */
QV_API QV_INT qvObjDefaultCompareFunc( qvObj thisObj, qvObj thatObj );

/* The text form of an object, owned by the caller. */
QV_API QV_STRING *qvObjToString( qvObj thisObj );

/* The text form "NAME(TOKEN)", token in upper-case hexadecimal, for a sort's own function to fall back on. */
QV_API QV_STRING *qvObjDefaultToStringFunc( qvObj thisObj );

QV_END_DECLS

#endif
