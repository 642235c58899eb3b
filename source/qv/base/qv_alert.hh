#ifndef QV_BASE_QV_ALERT_HH
#define QV_BASE_QV_ALERT_HH

#include <qv/base/qv_alert.h>
#include <qv/base/qv_listeners.hh>

struct qv___Alert : qv___Obj
{
    qv___Lock lock;
    QV_BOOL set;              // atomic: read and cleared without the lock, set under it
    qv::Listeners alertables; // inner objects
};

#endif
