#ifndef QV_BASE_QV_IDENTIFIER_HH
#define QV_BASE_QV_IDENTIFIER_HH

#include <qv/base/qv_identifier.h>
#include <qv/runtime/qv_obj.hh>

struct qv___Identifier : qv___Obj
{
    QV_STRING *string; // 32 upper-case hexadecimal digits
};

#endif
