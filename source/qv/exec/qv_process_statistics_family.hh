#ifndef QV_EXEC_QV_PROCESS_STATISTICS_FAMILY_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_FAMILY_HH

#include <qv/exec/qv_process_statistics_family.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: name and processes aren't null; processes maps the identifier of each snapshot to it.
struct qv___ProcessStatisticsFamily : qv___Obj
{
    QV_STRING *name;
    QV_PROCESS_STATISTICS_GROUP *groupPast; // may be null, as the other groups
    QV_PROCESS_STATISTICS_GROUP *groupPastSinceReset;
    QV_PROCESS_STATISTICS_GROUP *groupCurrentSinceCreation;
    QV_PROCESS_STATISTICS_GROUP *groupCurrentSinceReset;
    QV_DICT *processes;
};

#endif
