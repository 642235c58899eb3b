#ifndef QV_IO_QV_NLF_LINE_SINK_HH
#define QV_IO_QV_NLF_LINE_SINK_HH

#include <qv/io/qv_nlf_line_sink.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: dest is not null; nlfFlags are normalized.
struct qv___NlfLineSink : qv___Obj
{
    QV_CHAR_SINK *dest;
    QV_NLF_FLAGS nlfFlags;
};

#endif
