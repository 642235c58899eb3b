#ifndef QV_UNICODE_QV_UNICODE_NORMALIZER_H
#define QV_UNICODE_QV_UNICODE_NORMALIZER_H

/* The normalization forms of Unicode Standard Annex #15, version 16.0, as a stream: characters go in by any
 * number of writes and can be read as soon as nothing that follows can change them. At most about 8,000
 * characters are held back: a run of 4096 characters without a starter is treated as ended. A normalizer
 * belongs to one thread at a time. Null handles and texts, forms that aren't listed, and negative lengths other than the -1
 * of a read stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Normalization form. */
typedef QV_INT QV_UNICODE_NORMAL_FORM;
#define QV_UNICODE_NORMAL_FORM_C  0
#define QV_UNICODE_NORMAL_FORM_KC 1
#define QV_UNICODE_NORMAL_FORM_D  2
#define QV_UNICODE_NORMAL_FORM_KD 3
/* True for the values above. */
#define QV_UNICODE_NORMAL_FORM_OK( nf ) ( (QV_INT)( nf ) >= 0 && (QV_INT)( nf ) <= 3 )

QV_BEGIN_DECLS

/* The form with this name ("QV_UNICODE_NORMAL_FORM_C"), -1 if there is none. */
QV_API QV_UNICODE_NORMAL_FORM qvUnicodeNormalFormFromString( QV_STRING *text );

/* The name of a form, as a string that the caller owns. */
QV_API QV_STRING *qvUnicodeNormalFormToString( QV_UNICODE_NORMAL_FORM nf );

QV_SORT_FUNCTIONS( QV_UNICODE_NORMALIZER, qvUnicodeNormalizer )

/* A new normalizer that holds nothing, owned by the caller. Its form never changes. */
QV_API QV_UNICODE_NORMALIZER *qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM normalForm );

/* Writes one character. Any value is accepted: a high and a low surrogate in a row are one code point, all
 * other surrogates and values above 0x10FFFF are dropped in silence. */
QV_API void qvUnicodeNormalizerWriteChar( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch );

/* Writes the chsLength characters at chs one by one. chs may be null if chsLength is 0. */
QV_API void qvUnicodeNormalizerWriteChars( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs,
                                           QV_INT chsLength );

/* Writes a string: all of it, count characters from offset on, the first or the last count characters, or all
 * but count characters from offset on. A part that isn't inside the string stops the process. */
QV_API void qvUnicodeNormalizerWrite( QV_UNICODE_NORMALIZER *norm, QV_STRING *src );
QV_API void qvUnicodeNormalizerWriteInner( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT offset,
                                           QV_INT count );
QV_API void qvUnicodeNormalizerWriteLeading( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT count );
QV_API void qvUnicodeNormalizerWriteTrailing( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT count );
QV_API void qvUnicodeNormalizerWriteOuter( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT offset,
                                           QV_INT count );

/* Ends the run: all that was written can be read, and nothing that follows joins it. A waiting high surrogate
 * vanishes. */
QV_API void qvUnicodeNormalizerFlush( QV_UNICODE_NORMALIZER *norm );

/* Drops all that was written and not read. */
QV_API void qvUnicodeNormalizerClear( QV_UNICODE_NORMALIZER *norm );

/* How many characters can be read now. */
QV_API QV_INT qvUnicodeNormalizerReadable( QV_UNICODE_NORMALIZER *norm );

/* Appends up to maxLen of the readable characters to *dest, -1 for all of them, and returns their number. */
QV_API QV_INT qvUnicodeNormalizerRead( QV_UNICODE_NORMALIZER *norm, QV_STRING **dest, QV_INT maxLen );

/* Copies up to destLen of the readable characters to dest and returns their number. dest may be null if
 * destLen is 0. */
QV_API QV_INT qvUnicodeNormalizerReadChars( QV_UNICODE_NORMALIZER *norm, QV_CHAR *dest, QV_INT destLen );

QV_END_DECLS

#endif
