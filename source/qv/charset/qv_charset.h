#ifndef QV_CHARSET_QV_CHARSET_H
#define QV_CHARSET_QV_CHARSET_H

/* Charsets: ways to turn bytes into characters and back. 44 of them map one byte to one character, seven are
 * Unicode transformation forms. Conversion runs as a stream, or over a whole buffer or string at once. */

#include <qv/runtime/qv_obj.h>

/* A charset: one of the values below, or -1 where a function says so. */
typedef QV_INT QV_CHARSET;

#define QV_CHARSET_ASCII       0
#define QV_CHARSET_ISO_8859_1  1
#define QV_CHARSET_ISO_8859_2  2
#define QV_CHARSET_ISO_8859_3  3
#define QV_CHARSET_ISO_8859_4  4
#define QV_CHARSET_ISO_8859_5  5
#define QV_CHARSET_ISO_8859_6  6
#define QV_CHARSET_ISO_8859_7  7
#define QV_CHARSET_ISO_8859_8  8
#define QV_CHARSET_ISO_8859_9  9
#define QV_CHARSET_ISO_8859_10 10
#define QV_CHARSET_ISO_8859_11 11
#define QV_CHARSET_ISO_8859_13 12
#define QV_CHARSET_ISO_8859_14 13
#define QV_CHARSET_ISO_8859_15 14
#define QV_CHARSET_ISO_8859_16 15
#define QV_CHARSET_KOI_8R      16
#define QV_CHARSET_MSFT_CP037  17
#define QV_CHARSET_MSFT_CP437  18
#define QV_CHARSET_MSFT_CP500  19
#define QV_CHARSET_MSFT_CP850  20
#define QV_CHARSET_MSFT_CP852  21
#define QV_CHARSET_MSFT_CP855  22
#define QV_CHARSET_MSFT_CP857  23
#define QV_CHARSET_MSFT_CP860  24
#define QV_CHARSET_MSFT_CP861  25
#define QV_CHARSET_MSFT_CP862  26
#define QV_CHARSET_MSFT_CP863  27
#define QV_CHARSET_MSFT_CP864  28
#define QV_CHARSET_MSFT_CP865  29
#define QV_CHARSET_MSFT_CP866  30
#define QV_CHARSET_MSFT_CP869  31
#define QV_CHARSET_MSFT_CP874  32
#define QV_CHARSET_MSFT_CP875  33
#define QV_CHARSET_MSFT_CP1026 34
#define QV_CHARSET_MSFT_CP1250 35
#define QV_CHARSET_MSFT_CP1251 36
#define QV_CHARSET_MSFT_CP1252 37
#define QV_CHARSET_MSFT_CP1253 38
#define QV_CHARSET_MSFT_CP1254 39
#define QV_CHARSET_MSFT_CP1255 40
#define QV_CHARSET_MSFT_CP1256 41
#define QV_CHARSET_MSFT_CP1257 42
#define QV_CHARSET_MSFT_CP1258 43
#define QV_CHARSET_UTF_8       44
#define QV_CHARSET_UTF_16      45
#define QV_CHARSET_UTF_16_BE   46
#define QV_CHARSET_UTF_16_LE   47
#define QV_CHARSET_UTF_32      48
#define QV_CHARSET_UTF_32_BE   49
#define QV_CHARSET_UTF_32_LE   50

/* True for the 51 charsets. */
#define QV_CHARSET_OK( cs ) ( (QV_INT)( cs ) >= 0 && (QV_INT)( cs ) <= 50 )

/* How a conversion treats invalid input and byte order marks. With neither of the first two, an invalid
 * character or sequence is replaced: by U+FFFD where bytes become characters, else by the charset's byte for
 * U+FFFD or "?" (in the Unicode forms U+FFFD itself). */
typedef QV_INT QV_CHARSET_FLAGS;

/* An invalid character or byte sequence fails the conversion. */
#define QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER 1
/* It is dropped without a trace. */
#define QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS 2
/* A source of a Unicode form treats a leading byte order mark as an ordinary character. */
#define QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK 4
/* A sink of a Unicode form writes a byte order mark first. */
#define QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK 8

QV_BEGIN_DECLS

/* The name of the charset's constant, for example "QV_CHARSET_UTF_8", owned by the caller. A value that is no
 * charset stops the process. */
QV_API QV_STRING *qvCharsetToString( QV_CHARSET cs );

/* The charset of a constant's name, or of its number as text; -1 for anything else. */
QV_API QV_CHARSET qvCharsetFromString( QV_STRING *text );

/* The charset of a registered name or alias, in any case: "utf-8", "latin1", "cp1252"; -1 if the name is
 * unknown. */
QV_API QV_CHARSET qvCharsetFromIanaName( QV_STRING *name );

/* The charset's preferred registered name, for example "ISO-8859-1", owned by the caller. A value that is no
 * charset stops the process. */
QV_API QV_STRING *qvCharsetToIanaName( QV_CHARSET cs );

/* The charset of a Windows code page number, at least 0; -1 if the number is unknown. */
QV_API QV_CHARSET qvCharsetFromWindowsCodePage( QV_INT cp );

/* The Windows code page of a charset; -1 if it has none. A value that is no charset stops the process. */
QV_API QV_INT qvCharsetToWindowsCodePage( QV_CHARSET cs );

/* A new source of the characters that the bytes of byteSource stand for. It retains byteSource and reads up
 * to 1024 bytes ahead. The caller owns the result. */
QV_API QV_CHAR_SOURCE *qvCharsetCreateCharSource( QV_BYTE_SOURCE *byteSource, QV_CHARSET charset,
                                                  QV_CHARSET_FLAGS flags );

/* A new sink that writes its characters as bytes into byteSink, which it retains. It holds text back; only a
 * flush that returns true tells that everything has passed through byteSink and its own flush. The byte
 * charsets bring the text to normal form C first, the Unicode forms take it as it is. The caller owns the
 * result. */
QV_API QV_CHAR_SINK *qvCharsetCreateCharSink( QV_BYTE_SINK *byteSink, QV_CHARSET charset,
                                              QV_CHARSET_FLAGS flags );

/* The characters of a whole buffer as a new string; null if the conversion fails, which only
 * QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER can bring about. Bits behind the last whole byte don't count. */
QV_API QV_STRING *qvCharsetTryConvertBufferToStringWithFlags( QV_CHARSET charset, QV_BUFFER *buffer,
                                                              QV_CHARSET_FLAGS flags );

/* The bytes of a whole string as a new buffer; null if the conversion fails, as above. */
QV_API QV_BUFFER *qvCharsetTryConvertStringToBufferWithFlags( QV_CHARSET charset, QV_STRING *string,
                                                              QV_CHARSET_FLAGS flags );

/* The same with no flags: invalid input is replaced, so that nothing can fail. The caller owns the result. */
QV_API QV_STRING *qvCharsetConvertBufferToString( QV_CHARSET charset, QV_BUFFER *buffer );
QV_API QV_BUFFER *qvCharsetConvertStringToBuffer( QV_CHARSET charset, QV_STRING *string );

/* The flags that a conversion goes by: without unknown bits, and of the two about invalid characters only
 * QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS if both are set. */
QV_API QV_CHARSET_FLAGS qvCharsetFlagsNormalize( QV_CHARSET_FLAGS flags );

/* Flags from the names of constants joined by "|", normalized; unknown names add nothing. */
QV_API QV_CHARSET_FLAGS qvCharsetFlagsFromString( QV_STRING *text );

/* The names of the flags, normalized first, joined by "|". The caller owns the result. */
QV_API QV_STRING *qvCharsetFlagsToString( QV_CHARSET_FLAGS flags );

QV_END_DECLS

#endif
