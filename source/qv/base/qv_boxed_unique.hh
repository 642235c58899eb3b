#ifndef QV_BASE_QV_BOXED_UNIQUE_HH
#define QV_BASE_QV_BOXED_UNIQUE_HH

#include <qv/base/qv_boxed_unique.h>
#include <qv/runtime/qv_obj.hh>

struct qv___BoxedUnique : qv___Obj
{
};

#endif
