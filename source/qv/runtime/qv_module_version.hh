#ifndef QV_RUNTIME_QV_MODULE_VERSION_HH
#define QV_RUNTIME_QV_MODULE_VERSION_HH

#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_obj.hh>

struct qv___ModuleVersion : qv___Obj
{
    QV_INT major;
    QV_INT majorInsert;
    QV_INT minor;
    QV_INT minorInsert;
};

#endif
