#ifndef QV_BASE_QV_VECTOR_H
#define QV_BASE_QV_VECTOR_H

/* Vectors: ordered sequences of object references, with copy-on-write.
 *
 * An editing function takes the address of the caller's handle. It edits the record in place if the caller
 * holds the only reference, otherwise it puts a new record into the handle; other holders keep seeing the old
 * items. A vector holds no null references; null, bool, integer and real enter it as boxed objects.
 *
 * Indexes, offsets and counts are in items. A null handle, vector or object, an index or a range outside the
 * vector, a negative count, and a null array with a count above 0 stop the process, and so does a length
 * beyond QV_INT_MAX. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Free slots that a grown array gets in front of the first and behind the last item. */
#define QV_VECTOR_FSPACE 32
#define QV_VECTOR_BSPACE 32

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_VECTOR, qvVector )

/* The empty vector, one shared object. The caller owns the reference. */
QV_API QV_VECTOR *qvVectorCreate( void );

/* A new record with all items of src, with the count items at offset, with the first or the last count items,
 * or with all items but the count items at offset. The items are retained. */
QV_API QV_VECTOR *qvVectorCreateFrom( QV_VECTOR *src );
QV_API QV_VECTOR *qvVectorCreateFromInner( QV_VECTOR *src, QV_INT offset, QV_INT count );
QV_API QV_VECTOR *qvVectorCreateFromLeading( QV_VECTOR *src, QV_INT count );
QV_API QV_VECTOR *qvVectorCreateFromTrailing( QV_VECTOR *src, QV_INT count );
QV_API QV_VECTOR *qvVectorCreateFromOuter( QV_VECTOR *src, QV_INT offset, QV_INT count );

/* A new vector of one item, which is retained. */
QV_API QV_VECTOR *qvVectorCreateFromObj( qvObj obj );

/* A vector that takes over the array src, which comes from qvMemAlloc, and the references in it, none of them
 * null. With count 0 the result is the empty vector, and src stays with the caller and may be null. */
QV_API QV_VECTOR *qvVectorCreateFromObjsUse( qvObj *src, QV_INT count );

/* A vector that takes over the references in src, none of them null, and retains nothing; the array itself
 * stays with the caller. */
QV_API QV_VECTOR *qvVectorCreateFromObjsCopy( const qvObj *src, QV_INT count );

/* The number of items. */
QV_API QV_INT qvVectorLength( QV_VECTOR *vec );

/* The first item's address, good until the next edit. The references are the vector's. */
QV_API const qvObj *qvVectorBacking( QV_VECTOR *vec );

/* The item at idx, 0 to length - 1. The caller owns the reference. */
QV_API qvObj qvVectorObjAt( QV_VECTOR *vec, QV_INT idx );

/* The sort of the item at idx, 0 to length - 1; not retained. */
QV_API QV_SORT *qvVectorSortAt( QV_VECTOR *vec, QV_INT idx );

/* True if every item is exactly of this sort, also for an empty vector. */
QV_API QV_BOOL qvVectorContainsOnly( QV_VECTOR *vec, QV_SORT *sort );

/* The first index of an item that is obj itself, or with byValue that compares equal to it; -1 if there is
 * none. */
QV_API QV_INT qvVectorIndexOfObj( QV_VECTOR *vec, qvObj obj, QV_BOOL byValue );
QV_API QV_BOOL qvVectorHasObj( QV_VECTOR *vec, qvObj obj, QV_BOOL byValue );

/* The inserting functions. Insert puts the new items in front of the item at idx, 0 to length; Prepend puts
 * them first, Append last. src may be the edited vector itself. Inserted items are retained. */

/* All items of src. */
QV_API void qvVectorInsert( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src );
QV_API void qvVectorPrepend( QV_VECTOR **vec, QV_VECTOR *src );
QV_API void qvVectorAppend( QV_VECTOR **vec, QV_VECTOR *src );

/* The count items of src at offset. */
QV_API void qvVectorInsertInner( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT offset, QV_INT count );
QV_API void qvVectorPrependInner( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count );
QV_API void qvVectorAppendInner( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count );

/* The first count items of src. */
QV_API void qvVectorInsertLeading( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT count );
QV_API void qvVectorPrependLeading( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count );
QV_API void qvVectorAppendLeading( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count );

/* The last count items of src. */
QV_API void qvVectorInsertTrailing( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT count );
QV_API void qvVectorPrependTrailing( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count );
QV_API void qvVectorAppendTrailing( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count );

/* All items of src but the count items at offset. */
QV_API void qvVectorInsertOuter( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT offset, QV_INT count );
QV_API void qvVectorPrependOuter( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count );
QV_API void qvVectorAppendOuter( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count );

/* An array of references, none of them null. src may be null with count 0. */
QV_API void qvVectorInsertObjs( QV_VECTOR **vec, QV_INT idx, const qvObj *src, QV_INT count );
QV_API void qvVectorPrependObjs( QV_VECTOR **vec, const qvObj *src, QV_INT count );
QV_API void qvVectorAppendObjs( QV_VECTOR **vec, const qvObj *src, QV_INT count );

/* One object, which may be the edited vector itself: the vector as it was is stored. */
QV_API void qvVectorInsertObj( QV_VECTOR **vec, QV_INT idx, qvObj src );
QV_API void qvVectorPrependObj( QV_VECTOR **vec, qvObj src );
QV_API void qvVectorAppendObj( QV_VECTOR **vec, qvObj src );

/* The boxed null. */
QV_API void qvVectorInsertNull( QV_VECTOR **vec, QV_INT idx );
QV_API void qvVectorPrependNull( QV_VECTOR **vec );
QV_API void qvVectorAppendNull( QV_VECTOR **vec );

/* A boxed bool. */
QV_API void qvVectorInsertBool( QV_VECTOR **vec, QV_INT idx, QV_BOOL value );
QV_API void qvVectorPrependBool( QV_VECTOR **vec, QV_BOOL value );
QV_API void qvVectorAppendBool( QV_VECTOR **vec, QV_BOOL value );

/* A boxed integer. */
QV_API void qvVectorInsertInt( QV_VECTOR **vec, QV_INT idx, QV_INT value );
QV_API void qvVectorPrependInt( QV_VECTOR **vec, QV_INT value );
QV_API void qvVectorAppendInt( QV_VECTOR **vec, QV_INT value );

/* A boxed real. */
QV_API void qvVectorInsertReal( QV_VECTOR **vec, QV_INT idx, double value );
QV_API void qvVectorPrependReal( QV_VECTOR **vec, double value );
QV_API void qvVectorAppendReal( QV_VECTOR **vec, double value );

/* One string. */
QV_API void qvVectorInsertString( QV_VECTOR **vec, QV_INT idx, QV_STRING *qvs );
QV_API void qvVectorPrependString( QV_VECTOR **vec, QV_STRING *qvs );
QV_API void qvVectorAppendString( QV_VECTOR **vec, QV_STRING *qvs );

/* A string made from UTF-8 or wide text; length is in bytes or wide characters, -1 up to the terminator. */
QV_API void qvVectorInsertStringCstr( QV_VECTOR **vec, QV_INT idx, const char *cstr, QV_INT length );
QV_API void qvVectorPrependStringCstr( QV_VECTOR **vec, const char *cstr, QV_INT length );
QV_API void qvVectorAppendStringCstr( QV_VECTOR **vec, const char *cstr, QV_INT length );
QV_API void qvVectorInsertStringWcstr( QV_VECTOR **vec, QV_INT idx, const wchar_t *wcstr, QV_INT length );
QV_API void qvVectorPrependStringWcstr( QV_VECTOR **vec, const wchar_t *wcstr, QV_INT length );
QV_API void qvVectorAppendStringWcstr( QV_VECTOR **vec, const wchar_t *wcstr, QV_INT length );

/* A string made from a format and its arguments; formatLength is in bytes or wide characters, -1 up to the
 * terminator. */
QV_API void qvVectorInsertStringFormat( QV_VECTOR **vec, QV_INT idx, QV_STRING *format, ... );
QV_API void qvVectorPrependStringFormat( QV_VECTOR **vec, QV_STRING *format, ... );
QV_API void qvVectorAppendStringFormat( QV_VECTOR **vec, QV_STRING *format, ... );
QV_API void qvVectorInsertStringFormatCstr( QV_VECTOR **vec, QV_INT idx, const char *format,
                                            QV_INT formatLength, ... );
QV_API void qvVectorPrependStringFormatCstr( QV_VECTOR **vec, const char *format, QV_INT formatLength, ... );
QV_API void qvVectorAppendStringFormatCstr( QV_VECTOR **vec, const char *format, QV_INT formatLength, ... );
QV_API void qvVectorInsertStringFormatWcstr( QV_VECTOR **vec, QV_INT idx, const wchar_t *format,
                                             QV_INT formatLength, ... );
QV_API void qvVectorPrependStringFormatWcstr( QV_VECTOR **vec, const wchar_t *format, QV_INT formatLength,
                                              ... );
QV_API void qvVectorAppendStringFormatWcstr( QV_VECTOR **vec, const wchar_t *format, QV_INT formatLength,
                                             ... );

/* The setting functions replace the item at idx; idx -1 prepends and idx = length appends instead. The new
 * item is retained and may be the edited vector itself: the vector as it was is stored. The texts are as with
 * the inserting functions. */
QV_API void qvVectorSetObjAt( QV_VECTOR **vec, QV_INT idx, qvObj item );
QV_API void qvVectorSetNullAt( QV_VECTOR **vec, QV_INT idx );
QV_API void qvVectorSetBoolAt( QV_VECTOR **vec, QV_INT idx, QV_BOOL value );
QV_API void qvVectorSetIntAt( QV_VECTOR **vec, QV_INT idx, QV_INT value );
QV_API void qvVectorSetRealAt( QV_VECTOR **vec, QV_INT idx, double value );
QV_API void qvVectorSetStringAt( QV_VECTOR **vec, QV_INT idx, QV_STRING *qvs );
QV_API void qvVectorSetStringCstrAt( QV_VECTOR **vec, QV_INT idx, const char *cstr, QV_INT length );
QV_API void qvVectorSetStringWcstrAt( QV_VECTOR **vec, QV_INT idx, const wchar_t *wcstr, QV_INT length );
QV_API void qvVectorSetStringFormatAt( QV_VECTOR **vec, QV_INT idx, QV_STRING *format, ... );
QV_API void qvVectorSetStringFormatCstrAt( QV_VECTOR **vec, QV_INT idx, const char *format,
                                           QV_INT formatLength, ... );
QV_API void qvVectorSetStringFormatWcstrAt( QV_VECTOR **vec, QV_INT idx, const wchar_t *format,
                                            QV_INT formatLength, ... );

/* Puts the empty vector into the handle. */
QV_API void qvVectorClear( QV_VECTOR **vec );

/* Delete the count items at offset, the item at idx, the first or the last count items, or all but the count
 * items at offset. */
QV_API void qvVectorDelInner( QV_VECTOR **vec, QV_INT offset, QV_INT count );
QV_API void qvVectorDelAt( QV_VECTOR **vec, QV_INT idx );
QV_API void qvVectorDelLeading( QV_VECTOR **vec, QV_INT count );
QV_API void qvVectorDelTrailing( QV_VECTOR **vec, QV_INT count );
QV_API void qvVectorDelOuter( QV_VECTOR **vec, QV_INT offset, QV_INT count );

/* Push adds an item at the end, Pop removes the last one. Shift adds an item at the front, Unshift removes
 * the first one. The caller owns a removed item; removing from an empty vector stops the process. */
QV_API void qvVectorPush( QV_VECTOR **vec, qvObj obj );
QV_API qvObj qvVectorPop( QV_VECTOR **vec );
QV_API void qvVectorShift( QV_VECTOR **vec, qvObj obj );
QV_API qvObj qvVectorUnshift( QV_VECTOR **vec );

/* Turns the order of the items round. */
QV_API void qvVectorReverse( QV_VECTOR **vec );

/* Replaces each item by its text form. */
QV_API void qvVectorStringize( QV_VECTOR **vec );

/* Puts the items into a random order. The number of moves is quadratic in the length. */
QV_API void qvVectorShuffle( QV_VECTOR **vec );

/* Sorts the items by qvObjCompare. Not stable. */
QV_API void qvVectorQsort( QV_VECTOR **vec );

QV_END_DECLS

#endif
