#ifndef QV_IO_QV_BYTE_SINK_HH
#define QV_IO_QV_BYTE_SINK_HH

#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: writeFunc and flushFunc are not null; error never goes back to false.
struct qv___ByteSink : qv___Obj
{
    qv___ByteSinkWriteFunc writeFunc;
    qv___SinkFlushFunc flushFunc;
    qvObj closure; // may be null
    QV_BOOL error;
};

#endif
