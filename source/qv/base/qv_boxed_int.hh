#ifndef QV_BASE_QV_BOXED_INT_HH
#define QV_BASE_QV_BOXED_INT_HH

#include <qv/base/qv_boxed_int.h>
#include <qv/runtime/qv_obj.hh>

struct qv___BoxedInt : qv___Obj
{
    QV_INT value;
};

#endif
