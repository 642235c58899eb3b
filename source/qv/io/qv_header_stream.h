#ifndef QV_IO_QV_HEADER_STREAM_H
#define QV_IO_QV_HEADER_STREAM_H

/* Byte streams with a data-file header in front. A header stream belongs to one thread at a time, as the
 * stream underneath does. Null handles stop the process unless a comment allows null; the caller owns what a
 * function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_HEADER_BYTE_SINK, qvHeaderByteSink )

/* Writes the header to the sink at once; later writes and flushes pass through. hdr may be null. */
QV_API QV_HEADER_BYTE_SINK *qvHeaderByteSinkCreate( QV_BYTE_SINK *sink, QV_HEADER *hdr );

/* The sink to write the bytes behind the header to. */
QV_API QV_BYTE_SINK *qvHeaderByteSinkByteSink( QV_HEADER_BYTE_SINK *hbs );

/* The header, or null. */
QV_API QV_HEADER *qvHeaderByteSinkHeader( QV_HEADER_BYTE_SINK *hbs );

/* True if a header was written. */
QV_API QV_BOOL qvHeaderByteSinkHasHeader( QV_HEADER_BYTE_SINK *hbs );

QV_SORT_FUNCTIONS( QV_HEADER_BYTE_SOURCE, qvHeaderByteSource )

/* Reads ahead, at most 1 MiB, and decodes the header in front of a source. location is that of the first
 * byte and may be null. When there is a header that can't be decoded, a tolerant source reads as if there
 * were none; otherwise, and always for bytes that don't begin with a separator line, the new source holds
 * an error and reading from it fails. */
QV_API QV_HEADER_BYTE_SOURCE *qvHeaderByteSourceCreate( QV_BYTE_SOURCE *source, QV_BOOL tolerant,
                                                        QV_LOCATION *location );

/* The source of the bytes behind the header. */
QV_API QV_BYTE_SOURCE *qvHeaderByteSourceByteSource( QV_HEADER_BYTE_SOURCE *hbs );

/* The header, or null. */
QV_API QV_HEADER *qvHeaderByteSourceHeader( QV_HEADER_BYTE_SOURCE *hbs );

/* True if a header was read. */
QV_API QV_BOOL qvHeaderByteSourceHasHeader( QV_HEADER_BYTE_SOURCE *hbs );

/* Why there is nothing to read, or null. */
QV_API QV_HEADER_DECODE_ERROR *qvHeaderByteSourceDecodeError( QV_HEADER_BYTE_SOURCE *hbs );

/* True if the source holds an error. */
QV_API QV_BOOL qvHeaderByteSourceHasDecodeError( QV_HEADER_BYTE_SOURCE *hbs );

/* The location of the first byte that the source gives, or null. */
QV_API QV_LOCATION *qvHeaderByteSourceBaseLocation( QV_HEADER_BYTE_SOURCE *hbs );

/* True if the source has such a location. */
QV_API QV_BOOL qvHeaderByteSourceHasBaseLocation( QV_HEADER_BYTE_SOURCE *hbs );

QV_END_DECLS

#endif
