#ifndef QV_IO_QV_BUFFER_BYTE_SINK_H
#define QV_IO_QV_BUFFER_BYTE_SINK_H

/* Collects the bytes written to its byte sinks in one buffer. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BUFFER_BYTE_SINK, qvBufferByteSink )

/* A new collector with an empty buffer. */
QV_API QV_BUFFER_BYTE_SINK *qvBufferByteSinkCreate( void );

/* A new byte sink, owned by the caller, that appends to the collector's buffer. Any number of them may be at
 * work. A write fails only when the buffer's length would exceed the largest integer. */
QV_API QV_BYTE_SINK *qvBufferByteSinkByteSink( QV_BUFFER_BYTE_SINK *bbs );

/* The buffer collected so far, retained for the caller; later writes don't change it. */
QV_API QV_BUFFER *qvBufferByteSinkBuffer( QV_BUFFER_BYTE_SINK *bbs );

QV_END_DECLS

#endif
