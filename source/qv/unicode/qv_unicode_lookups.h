#ifndef QV_UNICODE_QV_UNICODE_LOOKUPS_H
#define QV_UNICODE_QV_UNICODE_LOOKUPS_H

/* White space, new lines and digit values of code points, by the Unicode Character Database 16.0. A ch for
 * which QV_CHAR_OK doesn't hold stops the process in every function here. */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* True for the code points with the property White_Space. */
QV_API QV_BOOL qvUnicodeIsWhiteSpace( QV_CHAR ch );

/* True for the new-line functions: 10 to 13, 133, 8232 and 8233. */
QV_API QV_BOOL qvUnicodeIsNlf( QV_CHAR ch );

/* The value 0 to 9 of a decimal digit of any script, otherwise -1. */
QV_API QV_INT qvUnicodeDecimalDigitValue( QV_CHAR ch );

/* The value 0 to 15 of "0" to "9", "A" to "F", "a" to "f" and their fullwidth forms, otherwise -1. */
QV_API QV_INT qvUnicodeHexadecimalDigitValue( QV_CHAR ch );

/* The value of a digit of the base 2 to 36, -1 if ch is none. Up to base 10 the decimal digits of all scripts
 * count, up to base 16 the hexadecimal digits, above that ASCII digits and letters only. */
QV_API QV_INT qvUnicodeBaseNDigitValue( QV_CHAR ch, QV_INT base );

QV_END_DECLS

#endif
