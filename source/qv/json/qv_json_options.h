#ifndef QV_JSON_QV_JSON_OPTIONS_H
#define QV_JSON_QV_JSON_OPTIONS_H

/* Options of JSON decoding and encoding. A value with copy-on-write: functions that edit take the address of the
 * caller's handle and put a private copy there if the record is shared. Null handles stop the process. The caller
 * owns what a function returns. */

#include <qv/charset/qv_charset.h>
#include <qv/io/qv_nlf_flags.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>
#include <qv/unicode/qv_unicode_normalizer.h>

typedef QV_INT QV_JSON_FLAGS;

/* The decoder gives values and errors their locations. This flag has no name. */
#define QV_JSON_FLAG_DECODE_LOCATIONS 1
/* Strings and names are brought into a normal form. */
#define QV_JSON_FLAG_DECODE_NORMALIZE 2
/* All white space of Unicode separates tokens. */
#define QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE 4
/* Escapes may have all hexadecimal digits of Unicode, not only the digits and capitals of ASCII. */
#define QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG 8
/* The encoder writes one line. */
#define QV_JSON_FLAG_ENCODE_SINGLE_LINE 16
/* It leaves out the blanks of that line. Without QV_JSON_FLAG_ENCODE_SINGLE_LINE this flag has no effect. */
#define QV_JSON_FLAG_ENCODE_PACKED 32

QV_BEGIN_DECLS

/* The flags without bits that have no meaning or no effect. */
QV_API QV_JSON_FLAGS qvJsonFlagsNormalize( QV_JSON_FLAGS flags );

/* The flags whose names the text lists, normalized; names that aren't known are skipped. */
QV_API QV_JSON_FLAGS qvJsonFlagsFromString( QV_STRING *qvs );

/* The names of the normalized flags joined by "|". */
QV_API QV_STRING *qvJsonFlagsToString( QV_JSON_FLAGS flags );

QV_SORT_FUNCTIONS( QV_JSON_OPTIONS, qvJsonOptions )

/* The shared record with all options at their defaults. */
QV_API QV_JSON_OPTIONS *qvJsonOptionsCreate( void );

/* A copy. */
QV_API QV_JSON_OPTIONS *qvJsonOptionsCreateFrom( QV_JSON_OPTIONS *source );

/* For each option a function that reads it, one that sets it and clears its default mark, one that reads that
 * mark, and one that sets the default and the mark. */

/* The QV_JSON_FLAG_... flags, normalized; 0 by default. */
QV_API QV_JSON_FLAGS qvJsonOptionsFlags( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetFlags( QV_JSON_OPTIONS **opt, QV_JSON_FLAGS value );
QV_API QV_BOOL qvJsonOptionsFlagsDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetFlagsDefault( QV_JSON_OPTIONS **opt );

/* The charset that bytes are decoded from, UTF-8 by default. A value that is no charset stops the process. */
QV_API QV_CHARSET qvJsonOptionsDecodeCharset( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeCharset( QV_JSON_OPTIONS **opt, QV_CHARSET value );
QV_API QV_BOOL qvJsonOptionsDecodeCharsetDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeCharsetDefault( QV_JSON_OPTIONS **opt );

/* The flags of that, normalized; QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER by default. */
QV_API QV_CHARSET_FLAGS qvJsonOptionsDecodeCharsetFlags( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeCharsetFlags( QV_JSON_OPTIONS **opt, QV_CHARSET_FLAGS value );
QV_API QV_BOOL qvJsonOptionsDecodeCharsetFlagsDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeCharsetFlagsDefault( QV_JSON_OPTIONS **opt );

/* The levels of nesting that a text may have, the root included; 50 by default. A value below 1 stops the process. */
QV_API QV_INT qvJsonOptionsDecodeMaxDepth( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeMaxDepth( QV_JSON_OPTIONS **opt, QV_INT value );
QV_API QV_BOOL qvJsonOptionsDecodeMaxDepthDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeMaxDepthDefault( QV_JSON_OPTIONS **opt );

/* The new-lines that end a line for locations, normalized; all by default. */
QV_API QV_NLF_FLAGS qvJsonOptionsDecodeNlfFlags( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeNlfFlags( QV_JSON_OPTIONS **opt, QV_NLF_FLAGS value );
QV_API QV_BOOL qvJsonOptionsDecodeNlfFlagsDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeNlfFlagsDefault( QV_JSON_OPTIONS **opt );

/* The normal form for QV_JSON_FLAG_DECODE_NORMALIZE, QV_UNICODE_NORMAL_FORM_C by default. A value that is no form stops the
 * process. */
QV_API QV_UNICODE_NORMAL_FORM qvJsonOptionsDecodeUnicodeNormalForm( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeUnicodeNormalForm( QV_JSON_OPTIONS **opt, QV_UNICODE_NORMAL_FORM value );
QV_API QV_BOOL qvJsonOptionsDecodeUnicodeNormalFormDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetDecodeUnicodeNormalFormDefault( QV_JSON_OPTIONS **opt );

/* The charset that bytes are encoded in, UTF-8 by default. A value that is no charset stops the process. */
QV_API QV_CHARSET qvJsonOptionsEncodeCharset( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeCharset( QV_JSON_OPTIONS **opt, QV_CHARSET value );
QV_API QV_BOOL qvJsonOptionsEncodeCharsetDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeCharsetDefault( QV_JSON_OPTIONS **opt );

/* The flags of that, normalized; 0 by default. */
QV_API QV_CHARSET_FLAGS qvJsonOptionsEncodeCharsetFlags( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeCharsetFlags( QV_JSON_OPTIONS **opt, QV_CHARSET_FLAGS value );
QV_API QV_BOOL qvJsonOptionsEncodeCharsetFlagsDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeCharsetFlagsDefault( QV_JSON_OPTIONS **opt );

/* What a line is indented with for each level, one tab by default. */
QV_API QV_STRING *qvJsonOptionsEncodeIndent( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeIndent( QV_JSON_OPTIONS **opt, QV_STRING *value );
QV_API QV_BOOL qvJsonOptionsEncodeIndentDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeIndentDefault( QV_JSON_OPTIONS **opt );

/* The new-line that ends a line, the first of these flags; normalized, QV_NLF_FLAG_LF by default. */
QV_API QV_NLF_FLAGS qvJsonOptionsEncodeNlfFlags( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeNlfFlags( QV_JSON_OPTIONS **opt, QV_NLF_FLAGS value );
QV_API QV_BOOL qvJsonOptionsEncodeNlfFlagsDefault( QV_JSON_OPTIONS *opt );
QV_API void qvJsonOptionsSetEncodeNlfFlagsDefault( QV_JSON_OPTIONS **opt );

/* The options as a store, with full all of them, otherwise those that aren't marked as default. */
QV_API QV_STORE *qvJsonOptionsStore( QV_JSON_OPTIONS *opt, QV_BOOL full );

/* The options of a store. What is missing there or can't be read stays at its default. */
QV_API QV_JSON_OPTIONS *qvJsonOptionsRestore( QV_STORE *store );

QV_END_DECLS

#endif
