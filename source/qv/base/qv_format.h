#ifndef QV_BASE_QV_FORMAT_H
#define QV_BASE_QV_FORMAT_H

/* Values to text and text to values: the encoders and decoders of truth values, integers and reals, and the
 * format language that all functions with Format in their names understand.
 *
 * The format language. Text outside conversions is copied. A conversion is a percent sign, any number of flag
 * characters, an optional width (digits or "*"), an optional precision ("." and digits or "*"), an optional
 * base ("!" and digits or "*") and a conversion word. A "*" takes the next argument, a QV_INT; arguments are
 * taken in the order width, precision, base, value.
 *
 *   flag    meaning
 *   -       pad on the right
 *   _       no minus sign
 *   +       a plus sign where there is no minus sign
 *   blank   a blank where there is no minus sign
 *   0       pad with zeros behind sign and base prefix
 *   ^       upper case
 *   '       a base prefix for base 10 too
 *   #       a base prefix: once mnemonic (0x), twice numeric (16:), three times none;
 *           in texts a null prints nothing; in % no output
 *   ~       the argument is handed over: o and s release it, the l words free it with qvMemFree
 *
 *   word    argument                            output
 *   %       none                                a percent sign
 *   b       QV_BOOL                             true or false
 *   c       QV_CHAR                             the character
 *   i       QV_INT                              an integer, base 10 unless given
 *   X       QV_INT                              an integer, base 16 unless given
 *   A       QV_INT, 0 to the precision          an integer, zero-padded to the width of the precision's
 *                                               value, which is QV_INT_MAX unless given
 *   r       double                              a real; the precision counts its decimals, 6 unless given
 *   o       object, may be null                 the object's text
 *   s       QV_STRING *, may be null            the string
 *   lc      const char *, may be null           UTF-8 text up to the terminator
 *   lC      const char *, may be null, QV_INT   UTF-8 text of that many bytes, -1 up to the terminator
 *   lw, lW  const wchar_t * in the same ways    wide text
 *   m       none                                as many characters as the width says: tabs, or the code
 *                                               point that the precision names
 *
 * In texts the precision cuts to that many characters. A null text prints as "null". A format string is part
 * of the program: one without any conversion, a broken conversion and an unknown word stop the process ("%#%"
 * prints nothing and makes a plain text a format). */

#include <qv/runtime/qv_handles.h>

/* Flags of the encoders; other bits are ignored. */
typedef QV_INT QV_FORMAT_FLAGS;
#define QV_FORMAT_FLAG_LEFTALIGN    1   /* pad on the right with blanks */
#define QV_FORMAT_FLAG_ZEROPAD      2   /* pad with zeros behind sign and base prefix */
#define QV_FORMAT_FLAG_NOSIGN       4   /* no minus sign */
#define QV_FORMAT_FLAG_PLUSPOS      8   /* "+" where there is no minus sign */
#define QV_FORMAT_FLAG_BLANKPOS     16  /* a blank where there is no minus sign */
#define QV_FORMAT_FLAG_UPPERCASE    32  /* upper-case digits, base prefixes and truth values */
#define QV_FORMAT_FLAG_BASEMNEMONIC 64  /* base prefix 0b, 0o, 0x (0d); numeric for other bases */
#define QV_FORMAT_FLAG_BASENUMERIC  128 /* base prefix in decimal, as in 16: */
#define QV_FORMAT_FLAG_BASEDECIMAL  256 /* a prefix for base 10 too */

QV_BEGIN_DECLS

/* Keeps the nine flags and resolves conflicts: left alignment beats zeros, no sign beats plus and blank, plus
 * beats blank, the mnemonic prefix beats the numeric one. Every encoder applies it first. */
QV_API QV_FORMAT_FLAGS qvFormatFlagsNormalize( QV_FORMAT_FLAGS flags );

/* Flags from their names joined by "|"; unknown names add nothing. The result is normalized. */
QV_API QV_FORMAT_FLAGS qvFormatFlagsFromString( QV_STRING *qvs );

/* The names of the normalized flags joined by "|", a new string. */
QV_API QV_STRING *qvFormatFlagsToString( QV_FORMAT_FLAGS flags );

/* The encoders return new strings of at least minWidth characters (0 or more). base lies in 2 to 36.
 * Arguments out of range stop the process. */

/* "true" or "false". Only QV_FORMAT_FLAG_UPPERCASE and QV_FORMAT_FLAG_LEFTALIGN count. */
QV_API QV_STRING *qvFormatEncodeBool( QV_BOOL value, QV_INT minWidth, QV_FORMAT_FLAGS flags );

QV_API QV_STRING *qvFormatEncodeInt( QV_INT value, QV_INT base, QV_INT minWidth, QV_FORMAT_FLAGS flags );

/* precision digits behind the point, -1 for 6; the last digit is cut, not rounded, and 0 shows no point.
 * There is no exponent form. A NaN gives "NAN", an infinity of either sign "INF". */
QV_API QV_STRING *qvFormatEncodeReal( double value, QV_INT base, QV_INT minWidth, QV_INT precision,
                                      QV_FORMAT_FLAGS flags );

/* Code points padded with blanks; src may be null if srcLength is 0. Only QV_FORMAT_FLAG_LEFTALIGN counts. */
QV_API QV_STRING *qvFormatEncodeChars( const QV_CHAR *src, QV_INT srcLength, QV_INT minWidth,
                                       QV_FORMAT_FLAGS flags );

/* The decoders read a value at the start of a text and return whether there was one. They skip white space
 * around it. *value is the value read, 0 or QV_FALSE if there was none; *consumed is the number of
 * characters up to where reading stopped, also if there was none, so that white space, a sign or a base
 * prefix may count. Both pointers may be null. A caller who wants the whole text to be a number compares
 * *consumed with its length. Bad text never stops the process. base is -1, which reads a prefix such as 0x
 * or 16: and takes 10 without one, or lies in 2 to 36. srcOffset and srcLength select a range of src, which
 * must lie inside it. */

/* A sign, then digits. A digit that would overflow ends the number: the result is true, *value what was read
 * before. */
QV_API QV_BOOL qvFormatTryDecodeInt( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength, QV_INT base,
                                     QV_INT *value, QV_INT *consumed );
QV_API QV_BOOL qvFormatTryDecodeIntChars( const QV_CHAR *src, QV_INT srcLength, QV_INT base, QV_INT *value,
                                          QV_INT *consumed );

/* A sign, then digits with at most one "." or ",". There is no exponent form. */
QV_API QV_BOOL qvFormatTryDecodeReal( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength, QV_INT base,
                                      double *value, QV_INT *consumed );
QV_API QV_BOOL qvFormatTryDecodeRealChars( const QV_CHAR *src, QV_INT srcLength, QV_INT base, double *value,
                                           QV_INT *consumed );

/* "true" or "false" in any case; with allowNumeric also a number, which is true unless it is 0. */
QV_API QV_BOOL qvFormatTryDecodeBool( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength,
                                      QV_BOOL allowNumeric, QV_BOOL *value, QV_INT *consumed );
QV_API QV_BOOL qvFormatTryDecodeBoolChars( const QV_CHAR *src, QV_INT srcLength, QV_BOOL allowNumeric,
                                           QV_BOOL *value, QV_INT *consumed );

QV_END_DECLS

#endif
