#ifndef QV_IO_QV_NLF_LINE_SOURCE_HH
#define QV_IO_QV_NLF_LINE_SOURCE_HH

#include <qv/io/qv_nlf_line_source.h>
#include <qv/runtime/qv_obj.hh>

#define QV___NLF_LINE_SOURCE_BUFFER 1024

// Invariant: 0 <= bufferOffset <= bufferLength <= QV___NLF_LINE_SOURCE_BUFFER; the code points between the
// two are read but not yet delivered.
struct qv___NlfLineSource : qv___Obj
{
    QV_CHAR_SOURCE *source;
    QV_NLF_FLAGS nlfFlags; // normalized
    QV_CHAR buffer[QV___NLF_LINE_SOURCE_BUFFER];
    QV_INT bufferLength;
    QV_INT bufferOffset;
    QV_BOOL sourceEnded;
};

#endif
