#ifndef QV_TAG_QV_TAG_SET_H
#define QV_TAG_QV_TAG_SET_H

/* Sets of tags, copy-on-write. A tag is a short label in camel case; a set holds each tag once, in string order.
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy. Arguments are
 * borrowed; the caller owns what a function returns. Null handles, and strings for which qvTagOk doesn't hold where a tag
 * is asked for, stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* Whether a string is a tag: qvNameCamelCaseOk with the private separator allowed. */
QV_API QV_BOOL qvTagOk( QV_STRING *tag );

QV_SORT_FUNCTIONS( QV_TAG_SET, qvTagSet )

/* The shared empty set. */
QV_API QV_TAG_SET *qvTagSetCreate( void );

/* A new set with the tags of source. */
QV_API QV_TAG_SET *qvTagSetCreateFrom( QV_TAG_SET *source );

/* Number of tags. */
QV_API QV_INT qvTagSetTagsLength( QV_TAG_SET *ts );

/* The tag at a position, 0 to length - 1; any other position stops the process. */
QV_API QV_STRING *qvTagSetTagAt( QV_TAG_SET *ts, QV_INT idx );

/* The tags in order. */
QV_API QV_VECTOR *qvTagSetTagsVector( QV_TAG_SET *ts );

/* Replaces all tags by those of a vector, in any order and with repeats. An item that is no string or no tag stops the
 * process. */
QV_API void qvTagSetSetTagsVector( QV_TAG_SET **ts, QV_VECTOR *vec );

/* True if the tag is in the set. */
QV_API QV_BOOL qvTagSetHasTag( QV_TAG_SET *ts, QV_STRING *tag );

/* Adds a tag; one that is there already changes nothing. */
QV_API void qvTagSetSetTag( QV_TAG_SET **ts, QV_STRING *tag );

/* Removes a tag; one that isn't there changes nothing. */
QV_API void qvTagSetDelTag( QV_TAG_SET **ts, QV_STRING *tag );

/* Removes the tag at a position, 0 to length - 1; any other position stops the process. */
QV_API void qvTagSetDelTagAt( QV_TAG_SET **ts, QV_INT idx );

/* Removes all tags. */
QV_API void qvTagSetClearTags( QV_TAG_SET **ts );

/* True if the sets have no tag in common. */
QV_API QV_BOOL qvTagSetDisjoint( QV_TAG_SET *tsA, QV_TAG_SET *tsB );

/* Adds the tags of src, removes them, or keeps only them. src may be the set that is edited. */
QV_API void qvTagSetInclude( QV_TAG_SET **ts, QV_TAG_SET *src );
QV_API void qvTagSetExclude( QV_TAG_SET **ts, QV_TAG_SET *src );
QV_API void qvTagSetIntersect( QV_TAG_SET **ts, QV_TAG_SET *src );

/* The tags in order with a blank between any two; empty for an empty set. */
QV_API QV_STRING *qvTagSetEncode( QV_TAG_SET *ts );

/* The set of the tags in a text, separated by blanks (U+0020). What is no tag is passed over. Never null. */
QV_API QV_TAG_SET *qvTagSetDecode( QV_STRING *string );

QV_END_DECLS

#endif
