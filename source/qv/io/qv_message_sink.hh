#ifndef QV_IO_QV_MESSAGE_SINK_HH
#define QV_IO_QV_MESSAGE_SINK_HH

// The record of a message sink.

#include <qv/io/qv_message_sink.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: error never goes back to false; level never falls.
struct qv___MessageSink : qv___Obj
{
    qv___MessageSinkWriteFunc writeFunc;
    qv___SinkFlushFunc flushFunc;
    qvObj closure; // may be null
    QV_BOOL error;
    QV_INT messagesWritten;
    QV_MESSAGE_LEVEL level;
};

void qv___MessageSinkFreeFunc( qvObj thisObj );

#endif
