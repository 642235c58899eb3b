#ifndef QV_IO_QV_CHAR_SINK_HH
#define QV_IO_QV_CHAR_SINK_HH

#include <qv/io/qv_char_sink.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: writeFunc and flushFunc are not null; error never goes back to false.
struct qv___CharSink : qv___Obj
{
    qv___CharSinkWriteFunc writeFunc;
    qv___SinkFlushFunc flushFunc;
    qvObj closure; // may be null
    QV_BOOL error;
};

#endif
