#ifndef QV_IO_QV_LINE_SINK_HH
#define QV_IO_QV_LINE_SINK_HH

#include <qv/io/qv_line_sink.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: writeFunc and flushFunc are not null; error never goes back to false.
struct qv___LineSink : qv___Obj
{
    qv___LineSinkWriteFunc writeFunc;
    qv___SinkFlushFunc flushFunc;
    qvObj closure; // may be null
    QV_BOOL error;
    QV_INT linesWritten;
};

#endif
