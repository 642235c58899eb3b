#ifndef QV_BASE_QV_BARRIER_HH
#define QV_BASE_QV_BARRIER_HH

#include <pthread.h>

#include <qv/base/qv_barrier.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: open changes only while mutex is held, and each change to true is followed by a broadcast.
struct qv___Barrier : qv___Obj
{
    pthread_mutex_t mutex;
    pthread_cond_t condition;
    bool open;
};

namespace qv
{

// The same as qvBarrierPassTimed, but up to a timestamp, -1 for no limit. It ends as soon as the clock shows the timestamp,
// where a wait for a number of milliseconds lasts so long at least.
QV_BOOL barrierPassUntil( QV_BARRIER *barrier, QV_INT timestamp );

} // namespace qv

#endif
