#ifndef QV_IO_QV_STRING_CHAR_SINK_HH
#define QV_IO_QV_STRING_CHAR_SINK_HH

#include <qv/io/qv_string_char_sink.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: dest is not null.
struct qv___StringCharSink : qv___Obj
{
    QV_STRING *dest;
};

#endif
