#ifndef QV_IO_QV_BYTE_SINK_H
#define QV_IO_QV_BYTE_SINK_H

/* A sink for bytes. Once a write or flush has failed, the sink's error latch is set for good and every
 * further write and flush returns false without effect. Freeing a sink flushes it. One sink is for one thread
 * at a time.
 *
 * Offsets and counts are whole bytes; a buffer's last partial byte is not written. A null buffer stands for
 * an empty one. A negative offset or count and a range outside the buffer stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BYTE_SINK, qvByteSink )

/* Writes the whole buffer. True on success; an empty write reaches nothing and succeeds on a good sink. */
QV_API QV_BOOL qvByteSinkWrite( QV_BYTE_SINK *sink, QV_BUFFER *buf );

/* Writes the first byteCount bytes. True on success. */
QV_API QV_BOOL qvByteSinkWriteLeading( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteCount );

/* Writes the last byteCount bytes. True on success. */
QV_API QV_BOOL qvByteSinkWriteTrailing( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteCount );

/* Writes byteCount bytes from byteOffset on. True on success. */
QV_API QV_BOOL qvByteSinkWriteInner( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteOffset,
                                     QV_INT byteCount );

/* Writes everything but byteCount bytes from byteOffset on: first the part before, then the part behind. A
 * failure of the first part skips the second. True on success. */
QV_API QV_BOOL qvByteSinkWriteOuter( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteOffset,
                                     QV_INT byteCount );

/* Writes byteCount bytes of memory; bytes may be null if byteCount is 0. True on success. */
QV_API QV_BOOL qvByteSinkWriteBytes( QV_BYTE_SINK *sink, const unsigned char *bytes, QV_INT byteCount );

/* Pushes on what the sink holds back. True on success. */
QV_API QV_BOOL qvByteSinkFlush( QV_BYTE_SINK *sink );

/* True once a write or flush has failed. */
QV_API QV_BOOL qvByteSinkError( QV_BYTE_SINK *sink );

QV_END_DECLS

#endif
