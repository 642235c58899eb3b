#ifndef QV_BASE_QV_BOXED_NULL_HH
#define QV_BASE_QV_BOXED_NULL_HH

#include <qv/base/qv_boxed_null.h>
#include <qv/runtime/qv_obj.hh>

struct qv___BoxedNull : qv___Obj
{
};

void qv___BoxedNullStartup();
void qv___BoxedNullShutdown();

#endif
