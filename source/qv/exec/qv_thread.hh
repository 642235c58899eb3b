#ifndef QV_EXEC_QV_THREAD_HH
#define QV_EXEC_QV_THREAD_HH

#include <pthread.h>

#include <qv/exec/qv_thread.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: nothing but argument changes after the creation; monitor guards argument.
struct qv___Thread : qv___Obj
{
    QV_MONITOR *monitor;
    QV_STRING *fixName;
    QV_THREAD_PRIORITY fixPriority;
    QV_THREAD_FUNC fixThreadFunc;
    qvObj argument; // may be null
    QV_SIGNAL *endSignal;
    pthread_t pthread;
};

void qv___ThreadStartup();

// Waits until each thread has ended.
void qv___ThreadShutdown();

namespace qv
{

// Whether the calling thread is this one.
bool isThisThread( QV_THREAD *thread );

} // namespace qv

#endif
