#ifndef QV_TAG_QV_TAG_MATCH_H
#define QV_TAG_QV_TAG_MATCH_H

/* Conditions on tag sets: how many of the match's own tags a set has. Copy-on-write.
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy. Arguments are
 * borrowed; the caller owns what a function returns. Null handles and types out of range stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* How many of the match's tags a set must have: at least one, exactly one, all, none. */
typedef QV_INT QV_TAG_MATCH_TYPE;
#define QV_TAG_MATCH_TYPE_OR         0
#define QV_TAG_MATCH_TYPE_XOR        1
#define QV_TAG_MATCH_TYPE_AND        2
#define QV_TAG_MATCH_TYPE_NOT        3
#define QV_TAG_MATCH_TYPE_OK( type ) ( ( type ) >= 0 && ( type ) <= 3 )

QV_BEGIN_DECLS

/* The type of a name such as "QV_TAG_MATCH_TYPE_OR", -1 for none. */
QV_API QV_TAG_MATCH_TYPE qvTagMatchTypeFromString( QV_STRING *text );

/* The name of a type. */
QV_API QV_STRING *qvTagMatchTypeToString( QV_TAG_MATCH_TYPE type );

QV_SORT_FUNCTIONS( QV_TAG_MATCH, qvTagMatch )

/* A new match of type QV_TAG_MATCH_TYPE_OR without tags. */
QV_API QV_TAG_MATCH *qvTagMatchCreate( void );

/* A new match with the fields of source. */
QV_API QV_TAG_MATCH *qvTagMatchCreateFrom( QV_TAG_MATCH *source );

/* The type. */
QV_API QV_TAG_MATCH_TYPE qvTagMatchType( QV_TAG_MATCH *match );

/* Sets the type. */
QV_API void qvTagMatchSetType( QV_TAG_MATCH **match, QV_TAG_MATCH_TYPE type );

/* The match's own tags, never null. */
QV_API QV_TAG_SET *qvTagMatchTagSet( QV_TAG_MATCH *match );

/* Sets the match's own tags. */
QV_API void qvTagMatchSetTagSet( QV_TAG_MATCH **match, QV_TAG_SET *tagSet );

/* The match as a store with the values "type" and "tagSet". */
QV_API QV_STORE *qvTagMatchStore( QV_TAG_MATCH *match );

/* The match that a store describes; what is missing or unfit leaves the default. Never null. */
QV_API QV_TAG_MATCH *qvTagMatchRestore( QV_STORE *store );

/* Whether a set satisfies the match. A match without tags, of any type, is satisfied by every set. */
QV_API QV_BOOL qvTagMatchTryMatch( QV_TAG_MATCH *match, QV_TAG_SET *tagSet );

QV_END_DECLS

#endif
