#ifndef QV_EXEC_QV_PROCESS_DOMAIN_HH
#define QV_EXEC_QV_PROCESS_DOMAIN_HH

#include <qv/exec/qv_process_domain.h>
#include <qv/exec/qv_process_thread.hh>

constexpr QV_INT qv___PROCESS_DOMAIN_THREADS = 128;

// Invariant: the first threadCount threads are set, fewer only until the creation is through; the others are null. Nothing
// changes after the creation.
struct qv___ProcessDomain : qv___Obj
{
    QV_PROCESS_DOMAIN_OPTIONS *options;
    QV_STRING *name;
    QV_INT threadCount;
    QV_THREAD_PRIORITY threadPriority;
    bool trailOptimization;
    bool maintainStatistics;
    QV_INT token;
    QV___PROCESS_THREAD *threads[qv___PROCESS_DOMAIN_THREADS];
};

// The token by which a thread knows that it belongs to the domain.
QV_INT qv___ProcessDomainToken( QV_PROCESS_DOMAIN *domain );

// Puts a process into the queue of the thread that its hint, at least 0, names. The caller keeps the domain alive.
void qv___ProcessDomainScheduleProcess( QV_PROCESS_DOMAIN *domain, QV_INT threadHint,
                                        qv___ExecListItem *item );

#endif
