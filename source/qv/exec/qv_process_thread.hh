#ifndef QV_EXEC_QV_PROCESS_THREAD_HH
#define QV_EXEC_QV_PROCESS_THREAD_HH

// The threads of a domain: each has a queue under a mutex for requests from other threads, and two lists of its own.

#include <pthread.h>

#include <qv/exec/qv_exec_block.hh>
#include <qv/exec/qv_thread.hh>

typedef struct qv___ProcessThread QV___PROCESS_THREAD;

// Invariant: extArrived is true if extQueue holds something or extHalt is set.
struct qv___ProcessThread : qv___Obj
{
    QV_THREAD *isThread; // null until the thread has been started
    pthread_mutex_t isMutex;
    pthread_cond_t isCond;
    QV_STRING *fixName;
    QV_THREAD_PRIORITY fixThreadPriority;
    QV_INT fixDomainToken;
    bool extHalt;           // atomic: set under isMutex, read without it
    bool extArrived;        // atomic: changed under isMutex, read without it by the thread while it spins
    qv___ExecList extQueue; // under isMutex
};

QV_SORT_FUNCTIONS_INTERNAL( QV___PROCESS_THREAD, qv___ProcessThread )

// A new thread, owned by the caller, who must halt it; null if the platform can start none.
QV___PROCESS_THREAD *qv___ProcessThreadTryCreate( QV_STRING *name, QV_THREAD_PRIORITY threadPriority,
                                                  QV_INT domainToken );

// Puts a process into the thread's queue. The caller keeps the thread alive.
void qv___ProcessThreadSchedule( QV___PROCESS_THREAD *thread, qv___ExecListItem *item );

// Ends the thread, whose queues must be empty, and waits for its end unless it is the calling thread.
void qv___ProcessThreadHalt( QV___PROCESS_THREAD *thread );

namespace qv
{

// The processors that this process may use.
QV_INT processorCount();

} // namespace qv

#endif
