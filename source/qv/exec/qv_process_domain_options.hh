#ifndef QV_EXEC_QV_PROCESS_DOMAIN_OPTIONS_HH
#define QV_EXEC_QV_PROCESS_DOMAIN_OPTIONS_HH

#include <qv/exec/qv_process_domain_options.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: threadCount is -1 or at least 1, threadPriority -1 or a priority; an absent boolean is false.
struct qv___ProcessDomainOptions : qv___Obj
{
    QV_INT threadCount;
    QV_THREAD_PRIORITY threadPriority;
    bool hasTrailOptimization;
    QV_BOOL trailOptimization;
    bool hasMaintainStatistics;
    QV_BOOL maintainStatistics;
};

#endif
