#ifndef QV_IO_QV_BUFFER_BYTE_SOURCE_HH
#define QV_IO_QV_BUFFER_BYTE_SOURCE_HH

#include <qv/io/qv_buffer_byte_source.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: 0 <= offset <= whole bytes of buffer.
struct qv___BufferByteSource : qv___Obj
{
    QV_BUFFER *buffer;
    QV_INT offset; // the next byte to deliver
};

#endif
