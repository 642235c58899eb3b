#ifndef QV_IO_QV_BUFFER_BYTE_SOURCE_H
#define QV_IO_QV_BUFFER_BYTE_SOURCE_H

/* Delivers the whole bytes of a buffer through its byte sources, which share one position. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BUFFER_BYTE_SOURCE, qvBufferByteSource )

/* A new object at the start of the buffer, which it retains. */
QV_API QV_BUFFER_BYTE_SOURCE *qvBufferByteSourceCreate( QV_BUFFER *src );

/* A new byte source, owned by the caller, that reads on from the shared position. */
QV_API QV_BYTE_SOURCE *qvBufferByteSourceByteSource( QV_BUFFER_BYTE_SOURCE *bbs );

/* The whole buffer, retained for the caller. */
QV_API QV_BUFFER *qvBufferByteSourceBuffer( QV_BUFFER_BYTE_SOURCE *bbs );

QV_END_DECLS

#endif
