#ifndef QV_DEPRECATED_QV_DECODER_H
#define QV_DEPRECATED_QV_DECODER_H

/* Reads back what an encoder wrote, from outside data of any kind.
 *
 * A read that runs past the end, or finds what can't be what is asked for, fails and sets the decoder's error for good;
 * from then on every read fails, nothing remains, and the offset is the length. Reads return true on success. Where they
 * put a result may be null, which reads the value and drops it; a failed read leaves it as it is. A handle there is
 * replaced: the one before is released unless it is null, and the caller owns the new one.
 *
 * A decoder is for one thread at a time. Null decoders and negative lengths from the caller stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_DECODER, qvDecoder )

/* A new decoder at the start of a buffer, which it retains. Bits behind the last whole byte don't count. */
QV_API QV_DECODER *qvDecoderCreate( QV_BUFFER *buffer );

/* The whole buffer, owned by the caller. */
QV_API QV_BUFFER *qvDecoderBuffer( QV_DECODER *dec );

/* The length of the buffer, the position in it, and what remains behind that, in bytes. */
QV_API QV_INT qvDecoderLength( QV_DECODER *dec );
QV_API QV_INT qvDecoderOffset( QV_DECODER *dec );
QV_API QV_INT qvDecoderRemaining( QV_DECODER *dec );

/* True once a read has failed. */
QV_API QV_BOOL qvDecoderError( QV_DECODER *dec );

/* Makes all further reads fail. */
QV_API void qvDecoderSetError( QV_DECODER *dec );

/* Passes length bytes. */
QV_API QV_BOOL qvDecoderTrySkip( QV_DECODER *dec, QV_INT length );

/* Reads length bytes as they are, as a buffer, into memory, or a single one. */
QV_API QV_BOOL qvDecoderTryRead( QV_DECODER *dec, QV_BUFFER **buffer, QV_INT length );
QV_API QV_BOOL qvDecoderTryReadBytes( QV_DECODER *dec, unsigned char *bytes, QV_INT length );
QV_API QV_BOOL qvDecoderTryReadByte( QV_DECODER *dec, unsigned char *value );

/* A truth value. */
QV_API QV_BOOL qvDecoderTryDecodeBool( QV_DECODER *dec, QV_BOOL *value );

/* An integer, also with leading zero bytes; one that doesn't fit QV_INT is a failure. */
QV_API QV_BOOL qvDecoderTryDecodeInt( QV_DECODER *dec, QV_INT *value );

/* A character. */
QV_API QV_BOOL qvDecoderTryDecodeChar( QV_DECODER *dec, QV_CHAR *ch );

/* chsLength characters into an array of that many; a failure leaves the array undefined. */
QV_API QV_BOOL qvDecoderTryDecodeChars( QV_DECODER *dec, QV_CHAR *chs, QV_INT chsLength );

/* A string. */
QV_API QV_BOOL qvDecoderTryDecodeString( QV_DECODER *dec, QV_STRING **qvs );

/* A buffer. */
QV_API QV_BOOL qvDecoderTryDecodeBuffer( QV_DECODER *dec, QV_BUFFER **buffer );

/* A store in its legacy binary form. */
QV_API QV_BOOL qvDecoderTryDecodeStore( QV_DECODER *dec, QV_STORE **store );

/* A vector of strings. */
QV_API QV_BOOL qvDecoderTryDecodeStringVector( QV_DECODER *dec, QV_VECTOR **vec );

/* An identifier; bytes that aren't the text of one are a failure. */
QV_API QV_BOOL qvDecoderTryDecodeIdentifier( QV_DECODER *dec, QV_IDENTIFIER **ident );

/* A value that may be absent, which is null and no failure. */
QV_API QV_BOOL qvDecoderTryDecodeOptionalString( QV_DECODER *dec, QV_STRING **qvs );
QV_API QV_BOOL qvDecoderTryDecodeOptionalBuffer( QV_DECODER *dec, QV_BUFFER **buffer );
QV_API QV_BOOL qvDecoderTryDecodeOptionalStore( QV_DECODER *dec, QV_STORE **store );
QV_API QV_BOOL qvDecoderTryDecodeOptionalStringVector( QV_DECODER *dec, QV_VECTOR **vec );
QV_API QV_BOOL qvDecoderTryDecodeOptionalIdentifier( QV_DECODER *dec, QV_IDENTIFIER **ident );

QV_END_DECLS

#endif
