#ifndef QV_EXEC_QV_PROCESS_STATISTICS_GROUP_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_GROUP_HH

#include <qv/exec/qv_process_counts.hh>
#include <qv/exec/qv_process_statistics_group.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: no number is below 0, no maximum above its total.
struct qv___ProcessStatisticsGroup : qv___Obj
{
    QV_INT count;
    qv___ExecProcessStats counts;
};

#endif
