#ifndef QV_EXEC_QV_PROCESS_STATISTICS_RESULT_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_RESULT_HH

#include <qv/exec/qv_process_statistics_result.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: families isn't null and maps the name of each family to it.
struct qv___ProcessStatisticsResult : qv___Obj
{
    QV_DICT *families;
};

#endif
