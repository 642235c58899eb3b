#ifndef QV_BASE_QV_BOXED_REAL_HH
#define QV_BASE_QV_BOXED_REAL_HH

#include <qv/base/qv_boxed_real.h>
#include <qv/runtime/qv_obj.hh>

struct qv___BoxedReal : qv___Obj
{
    double value;
};

#endif
