#ifndef QV_IO_QV_BUFFER_BYTE_SINK_HH
#define QV_IO_QV_BUFFER_BYTE_SINK_HH

#include <qv/io/qv_buffer_byte_sink.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: buffer is not null and holds whole bytes.
struct qv___BufferByteSink : qv___Obj
{
    QV_BUFFER *buffer;
};

#endif
