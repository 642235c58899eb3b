#ifndef QV_EXEC_QV_PROCESS_STATISTICS_QUERY_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_QUERY_HH

#include <qv/exec/qv_process_statistics_query.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: flags are normalized, and all of them if flagsDefault is true.
struct qv___ProcessStatisticsQuery : qv___Obj
{
    bool flagsDefault;
    QV_PROCESS_STATISTICS_FLAGS flags;
};

#endif
