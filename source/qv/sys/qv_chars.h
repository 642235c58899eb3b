#ifndef QV_SYS_QV_CHARS_H
#define QV_SYS_QV_CHARS_H

/* Conversion between arrays of code points and the platform's strings.
 *
 * Every conversion takes the destination and its capacity first and the source and its length after, and returns the full
 * length that the result needs, whether or not it fitted; with dest null and destLength 0 it only measures. In the From
 * forms srcLength -1 means up to the terminator of the source. In the To forms addNullTerminator adds 1 to the result and
 * writes the terminator only if room is left behind the characters written. Nothing here fails: what can't be converted
 * is replaced, dropped or skipped as told. */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* True if every element is a code point (QV_CHAR_OK); an empty array is. */
QV_API QV_BOOL qvCharsAllOk( const QV_CHAR *src, QV_INT srcLength );

/* Joins pairs of surrogates and drops lone surrogates and what is no code point. Returns the number of characters of the
 * clean result. dest may be src. */
QV_API QV_INT qvCharsSanitize( QV_CHAR *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength );

/* ASCII: a character above 127 becomes "?", a byte above 127 becomes U+FFFD. */
QV_API QV_INT qvCharsConvertToAscii( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                                     QV_BOOL addNullTerminator );
QV_API QV_INT qvCharsConvertFromAscii( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength );

/* UTF-8. To: a surrogate is written like any other character of its size, what is no code point as U+FFFD; a destination
 * that is too short may end in the middle of a character. From: an interrupted sequence and a stray byte become U+FFFD, a
 * sequence cut off by the end and one above U+10FFFF give nothing; overlong forms and surrogates are taken as they are. */
QV_API QV_INT qvCharsConvertToUtf8( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                                    QV_BOOL addNullTerminator );
QV_API QV_INT qvCharsConvertFromUtf8( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength );

/* The platform's encoding of zero-terminated strings: UTF-8. */
QV_API QV_INT qvCharsConvertToCstr( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                                    QV_BOOL addNullTerminator );
QV_API QV_INT qvCharsConvertFromCstr( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength );

/* Wide characters of 32 bits. To: 0 and what is no code point become U+FFFD. From: what is no code point becomes U+FFFD. */
QV_API QV_INT qvCharsConvertToWcstr( wchar_t *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                                     QV_BOOL addNullTerminator );
QV_API QV_INT qvCharsConvertFromWcstr( QV_CHAR *dest, QV_INT destLength, const wchar_t *src,
                                       QV_INT srcLength );

QV_END_DECLS

#endif
