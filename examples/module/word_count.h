#ifndef WORD_COUNT_H
#define WORD_COUNT_H

/* The module word_count: how often each word occurs in texts. A word is a run of letters, marks and numbers. A value with
 * copy-on-write: what edits it takes the address of the handle. Null handles stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

typedef struct word_count WORD_COUNT;

QV_SORT_FUNCTIONS( WORD_COUNT, wordCount )

/* A new count, of nothing or as another one is; owned by the caller. */
QV_API WORD_COUNT *wordCountCreate( void );
QV_API WORD_COUNT *wordCountCreateFrom( WORD_COUNT *count );

/* Counts the words of a text. */
QV_API void wordCountAdd( WORD_COUNT **count, QV_STRING *text );

/* How often a word was counted, how many words in all, and how many different ones. */
QV_API QV_INT wordCountOf( WORD_COUNT *count, QV_STRING *word );
QV_API QV_INT wordCountTotal( WORD_COUNT *count );
QV_API QV_INT wordCountLength( WORD_COUNT *count );

/* The most frequent words, at most maxCount: a new vector of strings, owned by the caller. Words that occur equally often
 * stand in their own order. */
QV_API QV_VECTOR *wordCountMostFrequent( WORD_COUNT *count, QV_INT maxCount );

/* What a word is counted as; the caller owns the result. */
typedef QV_STRING *( *WORD_COUNT_FOLD )( QV_STRING *word );

/* For a module that extends this one: how words are folded from now on; null counts them as they are. Only to be called
 * by a hook of a module. */
QV_API void wordCountSetFold( WORD_COUNT_FOLD optionalFold );

QV_END_DECLS

#endif
