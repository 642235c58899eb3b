#ifndef QV_EXEC_QV_PROCESS_STATISTICS_INTERVAL_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_INTERVAL_HH

#include <qv/exec/qv_process_counts.hh>
#include <qv/exec/qv_process_statistics_interval.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: no number is below 0, no maximum above its total.
struct qv___ProcessStatisticsInterval : qv___Obj
{
    QV_INT beginTimestamp;
    QV_INT endTimestamp;
    qv___ExecProcessStats counts;
};

QV_PROCESS_STATISTICS_INTERVAL *qv___ProcessStatisticsIntervalCreate( QV_INT beginTimestamp,
                                                                      QV_INT endTimestamp,
                                                                      const qv___ExecProcessStats *counts );

namespace qv
{

// total / executions, truncated; 0 without executions.
QV_INT averageOf( QV_INT total, QV_INT executions );

// The five counts in a store, and back; false if one is missing, below 0 or a maximum above its total.
void storeCounts( QV_STORE **store, const qv___ExecProcessStats *counts );
bool tryRestoreCounts( QV_STORE *store, qv___ExecProcessStats *counts );

// A number that must be there and at least 0.
bool tryRestoreNumber( QV_STORE *store, const char *key, QV_INT *number );

} // namespace qv

#endif
