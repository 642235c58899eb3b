#ifndef QV_DEPRECATED_QV_ENCODER_H
#define QV_DEPRECATED_QV_ENCODER_H

/* Collects values as bytes in one buffer, for a decoder to read back in the same order.
 *
 * A bool is one byte, 0 or 1. An integer is a head byte, the sign in its highest bit and the number of bytes that follow
 * below, and the absolute value, its highest byte first; zero is the head alone. A character is one byte up to U+007F,
 * otherwise three. Strings and buffers are their length, an integer, and their characters or bytes; a vector is its length
 * and the texts of its items. An optional value is a bool, true when the value follows.
 *
 * An encoder is for one thread at a time. Null handles stop the process, but for optional values; arguments are
 * borrowed. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_ENCODER, qvEncoder )

/* A new encoder with an empty buffer. */
QV_API QV_ENCODER *qvEncoderCreate( void );

/* The buffer written so far, owned by the caller; later writes don't change it. */
QV_API QV_BUFFER *qvEncoderBuffer( QV_ENCODER *enc );

/* Whole bytes written so far. */
QV_API QV_INT qvEncoderLength( QV_ENCODER *enc );

/* Starts over with an empty buffer. */
QV_API void qvEncoderClear( QV_ENCODER *enc );

/* Bytes as they are: a buffer, its first or last byteCount bytes, byteCount bytes from byteOffset on, or all but these.
 * A range outside the buffer stops the process. */
QV_API void qvEncoderWrite( QV_ENCODER *enc, QV_BUFFER *buf );
QV_API void qvEncoderWriteLeading( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteCount );
QV_API void qvEncoderWriteTrailing( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteCount );
QV_API void qvEncoderWriteInner( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvEncoderWriteOuter( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount );

/* One byte. */
QV_API void qvEncoderWriteByte( QV_ENCODER *enc, unsigned char value );

/* byteCount bytes of memory, which may be null if byteCount is 0. */
QV_API void qvEncoderWriteBytes( QV_ENCODER *enc, const unsigned char *bytes, QV_INT byteCount );

/* byteCount bytes of zero bits or of one bits. */
QV_API void qvEncoderWriteZero( QV_ENCODER *enc, QV_INT byteCount );
QV_API void qvEncoderWriteOne( QV_ENCODER *enc, QV_INT byteCount );

/* What another encoder, or this one, has written so far. */
QV_API void qvEncoderWriteEncoder( QV_ENCODER *enc, QV_ENCODER *src );

/* A truth value. */
QV_API void qvEncoderEncodeBool( QV_ENCODER *enc, QV_BOOL value );

/* An integer. */
QV_API void qvEncoderEncodeInt( QV_ENCODER *enc, QV_INT value );

/* A character; what is no code point stops the process. */
QV_API void qvEncoderEncodeChar( QV_ENCODER *enc, QV_CHAR ch );

/* chsLength characters alone, without their number. chs may be null if chsLength is 0; what is no code point stops the
 * process. */
QV_API void qvEncoderEncodeChars( QV_ENCODER *enc, const QV_CHAR *chs, QV_INT chsLength );

/* A string. */
QV_API void qvEncoderEncodeString( QV_ENCODER *enc, QV_STRING *qvs );

/* A buffer; one that isn't whole bytes long stops the process. */
QV_API void qvEncoderEncodeBuffer( QV_ENCODER *enc, QV_BUFFER *buf );

/* A store in its legacy binary form. */
QV_API void qvEncoderEncodeStore( QV_ENCODER *enc, QV_STORE *store );

/* A vector as strings: the text of each item, whatever its sort. */
QV_API void qvEncoderEncodeStringVector( QV_ENCODER *enc, QV_VECTOR *vec );

/* An identifier. */
QV_API void qvEncoderEncodeIdentifier( QV_ENCODER *enc, QV_IDENTIFIER *ident );

/* A value that may be null. */
QV_API void qvEncoderEncodeOptionalString( QV_ENCODER *enc, QV_STRING *qvs );
QV_API void qvEncoderEncodeOptionalBuffer( QV_ENCODER *enc, QV_BUFFER *buf );
QV_API void qvEncoderEncodeOptionalStore( QV_ENCODER *enc, QV_STORE *store );
QV_API void qvEncoderEncodeOptionalStringVector( QV_ENCODER *enc, QV_VECTOR *vec );
QV_API void qvEncoderEncodeOptionalIdentifier( QV_ENCODER *enc, QV_IDENTIFIER *ident );

QV_END_DECLS

#endif
