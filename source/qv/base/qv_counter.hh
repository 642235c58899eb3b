#ifndef QV_BASE_QV_COUNTER_HH
#define QV_BASE_QV_COUNTER_HH

#include <qv/base/qv_counter.h>
#include <qv/runtime/qv_obj.hh>

// Invariant, under the monitor: the barrier is open exactly while value is 0.
struct qv___Counter : qv___Obj
{
    QV_MONITOR *monitor;
    QV_BARRIER *barrier;
    QV_INT value;
};

#endif
