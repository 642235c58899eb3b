#ifndef QV_IO_QV_STRING_CHAR_SOURCE_HH
#define QV_IO_QV_STRING_CHAR_SOURCE_HH

#include <qv/io/qv_string_char_source.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: 0 <= offset <= length of source.
struct qv___StringCharSource : qv___Obj
{
    QV_STRING *source;
    QV_INT offset; // the next code point to deliver
};

#endif
