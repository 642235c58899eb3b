#ifndef QV_IO_QV_CHAR_SOURCE_HH
#define QV_IO_QV_CHAR_SOURCE_HH

#include <qv/io/qv_char_source.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: readFunc is not null; error implies end; neither goes back to false.
struct qv___CharSource : qv___Obj
{
    qv___CharSourceReadFunc readFunc;
    qvObj closure; // may be null
    QV_BOOL end;
    QV_BOOL error;
};

#endif
