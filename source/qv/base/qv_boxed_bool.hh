#ifndef QV_BASE_QV_BOXED_BOOL_HH
#define QV_BASE_QV_BOXED_BOOL_HH

#include <qv/base/qv_boxed_bool.h>
#include <qv/runtime/qv_obj.hh>

struct qv___BoxedBool : qv___Obj
{
    QV_BOOL value; // QV_TRUE or QV_FALSE
};

void qv___BoxedBoolStartup();
void qv___BoxedBoolShutdown();

#endif
