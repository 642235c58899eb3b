#ifndef QV_BASE_QV_REGION_HH
#define QV_BASE_QV_REGION_HH

#include <qv/base/qv_region.h>
#include <qv/runtime/qv_local.hh>

// Invariant: entered is true exactly while some thread holds lock.
struct qv___Region : qv___Obj
{
    qv___Lock lock;
    bool entered;
};

#endif
