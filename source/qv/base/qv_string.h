#ifndef QV_BASE_QV_STRING_H
#define QV_BASE_QV_STRING_H

/* Text: a sequence of 32-bit code points (0 to 0x10FFFF, surrogates included) with the behaviour of a value.
 *
 * A reference once held never changes its text. Every edit goes through the address of the caller's handle:
 * the record changes in place while that handle is the only reference, otherwise the handle gets a new
 * record. Lengths, counts, indexes and offsets are code points. Handles and the addresses of handles must not
 * be null, ranges must lie inside the text, counts must not be negative, and code points that are handed in
 * must be valid, unless a function says more: anything else stops the process.
 *
 * The Cstr and Utf8 forms take UTF-8 bytes with their length in bytes, the Wcstr forms 32-bit wide characters
 * with their length; length -1 means up to the terminating zero, and length 0 allows a null pointer. What
 * can't be decoded becomes U+FFFD, such text never fails. */

#include <qv/runtime/qv_obj.h>

/* Free slots in front of the text of a newly grown array. */
#define QV_STRING_FSPACE 32

QV_BEGIN_DECLS

/* The order is that of the code points as unsigned numbers, the shorter of two first when one begins with the
 * other: -1, 0 or 1. The text form is the string itself, retained. */
QV_SORT_FUNCTIONS( QV_STRING, qvString )

/* ---- Creation: each returns a new reference ---- */

/* The shared empty string. */
QV_API QV_STRING *qvStringCreate( void );

/* Decoded text. Ascii turns a byte above 127 into U+FFFD. */
QV_API QV_STRING *qvStringCreateFromAscii( const char *cstr, QV_INT length );
QV_API QV_STRING *qvStringCreateFromCstr( const char *cstr, QV_INT length );
QV_API QV_STRING *qvStringCreateFromUtf8( const char *cstr, QV_INT length );
QV_API QV_STRING *qvStringCreateFromWcstr( const wchar_t *wcstr, QV_INT length );

/* A copy of an array. src may be null when srcLength is 0. */
QV_API QV_STRING *qvStringCreateFromCharsCopy( const QV_CHAR *src, QV_INT srcLength );

/* Takes over an array from qvMemAlloc as its storage. With srcLength 0 the array stays with the caller. */
QV_API QV_STRING *qvStringCreateFromCharsUse( QV_CHAR *src, QV_INT srcLength );

/* A private copy: a new record, never src itself. */
QV_API QV_STRING *qvStringCreateFrom( QV_STRING *src );

/* A new record with a part of src: [offset, offset + count), the first count, the last count, or all but
 * [offset, offset + count). */
QV_API QV_STRING *qvStringCreateFromInner( QV_STRING *src, QV_INT offset, QV_INT count );
QV_API QV_STRING *qvStringCreateFromLeading( QV_STRING *src, QV_INT count );
QV_API QV_STRING *qvStringCreateFromTrailing( QV_STRING *src, QV_INT count );
QV_API QV_STRING *qvStringCreateFromOuter( QV_STRING *src, QV_INT offset, QV_INT count );

/* Text made by the format engine from a format and its arguments. An argument list stays with the caller, who
 * ends it. */
QV_API QV_STRING *qvStringCreateFromFormat( QV_STRING *format, ... );
QV_API QV_STRING *qvStringCreateFromFormatArgList( QV_STRING *format, QV_ARG_LIST *argList );
QV_API QV_STRING *qvStringCreateFromFormatCstr( const char *format, QV_INT formatLength, ... );
QV_API QV_STRING *qvStringCreateFromFormatCstrArgList( const char *format, QV_INT formatLength,
                                                       QV_ARG_LIST *argList );
QV_API QV_STRING *qvStringCreateFromFormatWcstr( const wchar_t *format, QV_INT formatLength, ... );
QV_API QV_STRING *qvStringCreateFromFormatWcstrArgList( const wchar_t *format, QV_INT formatLength,
                                                        QV_ARG_LIST *argList );

/* ---- Reading ---- */

/* Number of code points. */
QV_API QV_INT qvStringLength( QV_STRING *qvs );

/* The first code point of the text, good until the next edit. There is no terminator. */
QV_API const QV_CHAR *qvStringBacking( QV_STRING *qvs );

/* Makes the string private and gives its first code point for writing, good until the next edit. The length
 * can't be changed this way. The caller writes valid code points, or calls qvStringSanitize afterwards. */
QV_API QV_CHAR *qvStringMutableBacking( QV_STRING **qvs );

/* The code point at idx, 0 to length - 1. */
QV_API QV_CHAR qvStringCharAt( QV_STRING *qvs, QV_INT idx );

/* True for the empty string and for one that holds nothing but Unicode white space. */
QV_API QV_BOOL qvStringIsBlank( QV_STRING *qvs );

/* ---- Conversion to bytes and wide characters ---- */

/* A new array that the caller frees with qvMemFree, or null when its length is 0. A terminating zero is added
 * on demand and then counts in the length. outLength receives the length, in bytes or wide characters, and
 * may be null. Ascii writes "?" for everything above 127. A wide zero inside the text becomes U+FFFD. */
QV_API char *qvStringConvertToAscii( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength );
QV_API char *qvStringConvertToCstr( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength );
QV_API char *qvStringConvertToUtf8( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength );
QV_API wchar_t *qvStringConvertToWcstr( QV_STRING *qvs, QV_BOOL addNullTerminator, QV_INT *outLength );

/* ---- Insertion: at idx (0 to length), at the front (Prepend), at the end (Append) ---- */

/* All of src, which may be *dest itself. */
QV_API void qvStringInsert( QV_STRING **dest, QV_INT idx, QV_STRING *src );
QV_API void qvStringPrepend( QV_STRING **dest, QV_STRING *src );
QV_API void qvStringAppend( QV_STRING **dest, QV_STRING *src );

/* The part [offset, offset + count) of src. */
QV_API void qvStringInsertInner( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT offset, QV_INT count );
QV_API void qvStringPrependInner( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count );
QV_API void qvStringAppendInner( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count );

/* The first count code points of src. */
QV_API void qvStringInsertLeading( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT count );
QV_API void qvStringPrependLeading( QV_STRING **dest, QV_STRING *src, QV_INT count );
QV_API void qvStringAppendLeading( QV_STRING **dest, QV_STRING *src, QV_INT count );

/* The last count code points of src. */
QV_API void qvStringInsertTrailing( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT count );
QV_API void qvStringPrependTrailing( QV_STRING **dest, QV_STRING *src, QV_INT count );
QV_API void qvStringAppendTrailing( QV_STRING **dest, QV_STRING *src, QV_INT count );

/* All of src but [offset, offset + count), head and tail joined. */
QV_API void qvStringInsertOuter( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT offset, QV_INT count );
QV_API void qvStringPrependOuter( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count );
QV_API void qvStringAppendOuter( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count );

/* An array, which must not lie inside the string itself. chs may be null when chsLength is 0. */
QV_API void qvStringInsertChars( QV_STRING **qvs, QV_INT idx, const QV_CHAR *chs, QV_INT chsLength );
QV_API void qvStringPrependChars( QV_STRING **qvs, const QV_CHAR *chs, QV_INT chsLength );
QV_API void qvStringAppendChars( QV_STRING **qvs, const QV_CHAR *chs, QV_INT chsLength );

/* One code point. */
QV_API void qvStringInsertChar( QV_STRING **qvs, QV_INT idx, QV_CHAR ch );
QV_API void qvStringPrependChar( QV_STRING **qvs, QV_CHAR ch );
QV_API void qvStringAppendChar( QV_STRING **qvs, QV_CHAR ch );

/* count times ch; ch is only tested when count is not 0. */
QV_API void qvStringInsertCharRun( QV_STRING **qvs, QV_INT idx, QV_CHAR ch, QV_INT count );
QV_API void qvStringPrependCharRun( QV_STRING **qvs, QV_CHAR ch, QV_INT count );
QV_API void qvStringAppendCharRun( QV_STRING **qvs, QV_CHAR ch, QV_INT count );

/* Decoded text. */
QV_API void qvStringInsertCstr( QV_STRING **dest, QV_INT idx, const char *cstr, QV_INT length );
QV_API void qvStringPrependCstr( QV_STRING **dest, const char *cstr, QV_INT length );
QV_API void qvStringAppendCstr( QV_STRING **dest, const char *cstr, QV_INT length );

/* Decoded text. */
QV_API void qvStringInsertWcstr( QV_STRING **dest, QV_INT idx, const wchar_t *wcstr, QV_INT length );
QV_API void qvStringPrependWcstr( QV_STRING **dest, const wchar_t *wcstr, QV_INT length );
QV_API void qvStringAppendWcstr( QV_STRING **dest, const wchar_t *wcstr, QV_INT length );

/* The text form of an object. */
QV_API void qvStringInsertObj( QV_STRING **dest, QV_INT idx, qvObj obj );
QV_API void qvStringPrependObj( QV_STRING **dest, qvObj obj );
QV_API void qvStringAppendObj( QV_STRING **dest, qvObj obj );

/* Text made by the format engine. An argument list stays with the caller, who ends it. */
QV_API void qvStringInsertFormat( QV_STRING **dest, QV_INT idx, QV_STRING *format, ... );
QV_API void qvStringPrependFormat( QV_STRING **dest, QV_STRING *format, ... );
QV_API void qvStringAppendFormat( QV_STRING **dest, QV_STRING *format, ... );
QV_API void qvStringInsertFormatArgList( QV_STRING **dest, QV_INT idx, QV_STRING *format,
                                         QV_ARG_LIST *argList );
QV_API void qvStringPrependFormatArgList( QV_STRING **dest, QV_STRING *format, QV_ARG_LIST *argList );
QV_API void qvStringAppendFormatArgList( QV_STRING **dest, QV_STRING *format, QV_ARG_LIST *argList );
QV_API void qvStringInsertFormatCstr( QV_STRING **dest, QV_INT idx, const char *format, QV_INT formatLength,
                                      ... );
QV_API void qvStringPrependFormatCstr( QV_STRING **dest, const char *format, QV_INT formatLength, ... );
QV_API void qvStringAppendFormatCstr( QV_STRING **dest, const char *format, QV_INT formatLength, ... );
QV_API void qvStringInsertFormatCstrArgList( QV_STRING **dest, QV_INT idx, const char *format,
                                             QV_INT formatLength, QV_ARG_LIST *argList );
QV_API void qvStringPrependFormatCstrArgList( QV_STRING **dest, const char *format, QV_INT formatLength,
                                              QV_ARG_LIST *argList );
QV_API void qvStringAppendFormatCstrArgList( QV_STRING **dest, const char *format, QV_INT formatLength,
                                             QV_ARG_LIST *argList );
QV_API void qvStringInsertFormatWcstr( QV_STRING **dest, QV_INT idx, const wchar_t *format,
                                       QV_INT formatLength, ... );
QV_API void qvStringPrependFormatWcstr( QV_STRING **dest, const wchar_t *format, QV_INT formatLength, ... );
QV_API void qvStringAppendFormatWcstr( QV_STRING **dest, const wchar_t *format, QV_INT formatLength, ... );
QV_API void qvStringInsertFormatWcstrArgList( QV_STRING **dest, QV_INT idx, const wchar_t *format,
                                              QV_INT formatLength, QV_ARG_LIST *argList );
QV_API void qvStringPrependFormatWcstrArgList( QV_STRING **dest, const wchar_t *format, QV_INT formatLength,
                                               QV_ARG_LIST *argList );
QV_API void qvStringAppendFormatWcstrArgList( QV_STRING **dest, const wchar_t *format, QV_INT formatLength,
                                              QV_ARG_LIST *argList );

/* Replaces the code point at idx; idx -1 prepends ch, idx length appends it. */
QV_API void qvStringSetCharAt( QV_STRING **qvs, QV_INT idx, QV_CHAR ch );

/* ---- Deletion ---- */

/* Removes everything: the handle takes the shared empty string. */
QV_API void qvStringClear( QV_STRING **qvs );

/* Removes [offset, offset + count), the first count, the last count, or all but [offset, offset + count). */
QV_API void qvStringDelInner( QV_STRING **qvs, QV_INT offset, QV_INT count );
QV_API void qvStringDelLeading( QV_STRING **qvs, QV_INT count );
QV_API void qvStringDelTrailing( QV_STRING **qvs, QV_INT count );
QV_API void qvStringDelOuter( QV_STRING **qvs, QV_INT offset, QV_INT count );

/* Removes Unicode white space at the front, at the end, at both. */
QV_API void qvStringTrimLeading( QV_STRING **qvs );
QV_API void qvStringTrimTrailing( QV_STRING **qvs );
QV_API void qvStringTrim( QV_STRING **qvs );

/* ---- Comparison ---- */

/* True if the text is exactly the given one. chs may be null when chsLen is 0, and is not tested for
 * validity. */
QV_API QV_BOOL qvStringEqualsChars( QV_STRING *qvs, const QV_CHAR *chs, QV_INT chsLen );
QV_API QV_BOOL qvStringEqualsChar( QV_STRING *qvs, QV_CHAR ch );
QV_API QV_BOOL qvStringEqualsCstr( QV_STRING *qvs, const char *cstr, QV_INT length );
QV_API QV_BOOL qvStringEqualsWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length );

/* True if both texts are the same after full Unicode case folding. */
QV_API QV_BOOL qvStringEqualsCaseFold( QV_STRING *qvsA, QV_STRING *qvsB );
QV_API QV_BOOL qvStringEqualsCharCaseFold( QV_STRING *qvs, QV_CHAR ch );
QV_API QV_BOOL qvStringEqualsCharsCaseFold( QV_STRING *qvs, const QV_CHAR *chs, QV_INT chsLen );
QV_API QV_BOOL qvStringEqualsCaseFoldCstr( QV_STRING *qvs, const char *cstr, QV_INT length );
QV_API QV_BOOL qvStringEqualsCaseFoldWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length );

/* The order of the case-folded texts: -1, 0 or 1. It is no locale's order. */
QV_API QV_INT qvStringCompareCaseFold( QV_STRING *qvsA, QV_STRING *qvsB );

/* True if the text begins with the given one; an empty one is always true. */
QV_API QV_BOOL qvStringBeginsWithChars( QV_STRING *qvs, const QV_CHAR *sub, QV_INT subLen );
QV_API QV_BOOL qvStringBeginsWith( QV_STRING *qvs, QV_STRING *sub );
QV_API QV_BOOL qvStringBeginsWithChar( QV_STRING *qvs, QV_CHAR ch );
QV_API QV_BOOL qvStringBeginsWithCstr( QV_STRING *qvs, const char *cstr, QV_INT length );
QV_API QV_BOOL qvStringBeginsWithWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length );

/* True if the text ends with the given one; an empty one is always true. */
QV_API QV_BOOL qvStringEndsWithChars( QV_STRING *qvs, const QV_CHAR *sub, QV_INT subLen );
QV_API QV_BOOL qvStringEndsWith( QV_STRING *qvs, QV_STRING *sub );
QV_API QV_BOOL qvStringEndsWithChar( QV_STRING *qvs, QV_CHAR ch );
QV_API QV_BOOL qvStringEndsWithCstr( QV_STRING *qvs, const char *cstr, QV_INT length );
QV_API QV_BOOL qvStringEndsWithWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length );

/* ---- Search ---- */

/* The first index at or after offset (0 to length) where the given text begins, or -1. An empty text to look
 * for stops the process. */
QV_API QV_INT qvStringFindChar( QV_STRING *qvs, QV_INT offset, QV_CHAR ch );
QV_API QV_INT qvStringFindChars( QV_STRING *qvs, QV_INT offset, const QV_CHAR *sub, QV_INT subLength );
QV_API QV_INT qvStringFind( QV_STRING *qvs, QV_INT offset, QV_STRING *sub );
QV_API QV_INT qvStringFindCstr( QV_STRING *qvs, QV_INT offset, const char *cstr, QV_INT length );
QV_API QV_INT qvStringFindWcstr( QV_STRING *qvs, QV_INT offset, const wchar_t *wcstr, QV_INT length );

/* The last index of ch below offset (0 to length, -1 means length), or -1. So offset 0 finds nothing. */
QV_API QV_INT qvStringFindCharFromRight( QV_STRING *qvs, QV_INT offset, QV_CHAR ch );

/* The last index at or below offset (0 to length, -1 means length) where the given text begins, or -1. An
 * empty text to look for stops the process. */
QV_API QV_INT qvStringFindCharsFromRight( QV_STRING *qvs, QV_INT offset, const QV_CHAR *sub,
                                          QV_INT subLength );
QV_API QV_INT qvStringFindFromRight( QV_STRING *qvs, QV_INT offset, QV_STRING *sub );
QV_API QV_INT qvStringFindFromRightCstr( QV_STRING *qvs, QV_INT offset, const char *cstr, QV_INT length );
QV_API QV_INT qvStringFindFromRightWcstr( QV_STRING *qvs, QV_INT offset, const wchar_t *wcstr,
                                          QV_INT length );

/* ---- Splitting and joining ---- */

/* A new vector of strings: the parts between separators, empty ones included. A separator at the end yields
 * an empty last part, an empty text one empty part. At most maxParts parts (1 or more, -1 without limit), the
 * last of which keeps further separators. An empty separator stops the process. */
QV_API QV_VECTOR *qvStringSplit( QV_STRING *qvs, QV_STRING *sep, QV_INT maxParts );
QV_API QV_VECTOR *qvStringSplitCstr( QV_STRING *qvs, const char *sep, QV_INT sepLength, QV_INT maxParts );
QV_API QV_VECTOR *qvStringSplitWcstr( QV_STRING *qvs, const wchar_t *sep, QV_INT sepLength, QV_INT maxParts );
QV_API QV_VECTOR *qvStringSplitChars( QV_STRING *qvs, const QV_CHAR *sep, QV_INT sepLength, QV_INT maxParts );
QV_API QV_VECTOR *qvStringSplitChar( QV_STRING *qvs, QV_CHAR sep, QV_INT maxParts );

/* A new vector of strings: the parts between runs of Unicode white space, none of them empty, but one empty string for a
 * blank text. White space at both ends of the text never counts. At most maxParts parts (1 or more, -1 without limit); the
 * last of them is everything behind the one white-space character that ended the part before it. */
QV_API QV_VECTOR *qvStringSplitWhitespace( QV_STRING *qvs, QV_INT maxParts );

/* Appends delimiter unless *dest is empty, then src. An empty src still brings its delimiter. The name tells
 * what is no string: Cstr and Wcstr alone stand for source and delimiter. */
QV_API void qvStringDelimitedAppend( QV_STRING **dest, QV_STRING *src, QV_STRING *delimiter );
QV_API void qvStringDelimitedAppendCstr( QV_STRING **dest, const char *src, QV_INT srcLength,
                                         const char *delimiter, QV_INT delimiterLength );
QV_API void qvStringDelimitedAppendCstrSource( QV_STRING **dest, const char *src, QV_INT srcLength,
                                               QV_STRING *delimiter );
QV_API void qvStringDelimitedAppendCstrDelimiter( QV_STRING **dest, QV_STRING *src, const char *delimiter,
                                                  QV_INT delimiterLength );
QV_API void qvStringDelimitedAppendWcstr( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                          const wchar_t *delimiter, QV_INT delimiterLength );
QV_API void qvStringDelimitedAppendWcstrSource( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                                QV_STRING *delimiter );
QV_API void qvStringDelimitedAppendWcstrDelimiter( QV_STRING **dest, QV_STRING *src, const wchar_t *delimiter,
                                                   QV_INT delimiterLength );
QV_API void qvStringDelimitedAppendCharDelimiter( QV_STRING **dest, QV_STRING *src, QV_CHAR delimiter );
QV_API void qvStringDelimitedAppendCharsDelimiter( QV_STRING **dest, QV_STRING *src, const QV_CHAR *delimiter,
                                                   QV_INT delimiterLength );

/* Prepends delimiter unless *dest is empty, then src, so that the delimiter stands between src and the old
 * text. */
QV_API void qvStringDelimitedPrepend( QV_STRING **dest, QV_STRING *src, QV_STRING *delimiter );
QV_API void qvStringDelimitedPrependCstr( QV_STRING **dest, const char *src, QV_INT srcLength,
                                          const char *delimiter, QV_INT delimiterLength );
QV_API void qvStringDelimitedPrependCstrSource( QV_STRING **dest, const char *src, QV_INT srcLength,
                                                QV_STRING *delimiter );
QV_API void qvStringDelimitedPrependCstrDelimiter( QV_STRING **dest, QV_STRING *src, const char *delimiter,
                                                   QV_INT delimiterLength );
QV_API void qvStringDelimitedPrependWcstr( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                           const wchar_t *delimiter, QV_INT delimiterLength );
QV_API void qvStringDelimitedPrependWcstrSource( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                                 QV_STRING *delimiter );
QV_API void qvStringDelimitedPrependWcstrDelimiter( QV_STRING **dest, QV_STRING *src,
                                                    const wchar_t *delimiter, QV_INT delimiterLength );
QV_API void qvStringDelimitedPrependCharDelimiter( QV_STRING **dest, QV_STRING *src, QV_CHAR delimiter );
QV_API void qvStringDelimitedPrependCharsDelimiter( QV_STRING **dest, QV_STRING *src,
                                                    const QV_CHAR *delimiter, QV_INT delimiterLength );

/* ---- Transformation ---- */

/* Full Unicode case mapping or folding, without context and language; a code point may become several. */
QV_API void qvStringToUpper( QV_STRING **qvs );
QV_API void qvStringToLower( QV_STRING **qvs );
QV_API void qvStringToCaseFold( QV_STRING **qvs );

/* Joins a high surrogate and the low surrogate behind it to one code point, and removes other surrogates and
 * values above 0x10FFFF. */
QV_API void qvStringSanitize( QV_STRING **qvs );

/* Brings the text into a Unicode normal form; nf is a QV_UNICODE_NORMAL_FORM. */
QV_API void qvStringNormalize( QV_STRING **qvs, QV_INT nf );

/* ---- Scanning ---- */

/* Scans a value at offset (0 to length) in at most maxChars code points, -1 without limit. True if there is
 * one: value gets it and consumed the number of code points that it takes. What counts as a value, and which
 * of the pointers may be null, is told at qvFormatTryDecodeBool, qvFormatTryDecodeInt and
 * qvFormatTryDecodeReal. */
QV_API QV_BOOL qvStringScanBool( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_BOOL allowNumeric,
                                 QV_BOOL *value, QV_INT *consumed );
QV_API QV_BOOL qvStringScanInt( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_INT base, QV_INT *value,
                                QV_INT *consumed );
QV_API QV_BOOL qvStringScanReal( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_INT base, double *value,
                                 QV_INT *consumed );

QV_END_DECLS

#endif
