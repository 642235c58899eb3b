#ifndef QV_BASE_QV_ALERT_HH
#define QV_BASE_QV_ALERT_HH

#include <qv/base/qv_alert.h>
#include <qv/base/qv_listeners.hh>
#include <qv/sys/qv_atomic_bool.hh>

struct qv___Alert : qv___Obj
{
    qv___Lock lock;
    qv::AtomicBool set;       // read and turned off without the lock, turned on under it
    qv::Listeners alertables; // inner objects
};

#endif
