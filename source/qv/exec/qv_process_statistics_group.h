#ifndef QV_EXEC_QV_PROCESS_STATISTICS_GROUP_H
#define QV_EXEC_QV_PROCESS_STATISTICS_GROUP_H

/* The sum over the intervals of several processes. Copy-on-write: the function that edits takes the address of the caller's
 * handle. Durations are in milliseconds; all numbers are 0 or more. Null handles stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS_GROUP, qvProcessStatisticsGroup )

/* A new group without any interval, or a copy; owned by the caller. */
QV_API QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupCreate( void );
QV_API QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupCreateFrom( QV_PROCESS_STATISTICS_GROUP *source );

/* The number of intervals, and of runs in all of them. */
QV_API QV_INT qvProcessStatisticsGroupCount( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupExecutions( QV_PROCESS_STATISTICS_GROUP *group );

/* Averages are truncated, and 0 without a run. */
QV_API QV_INT qvProcessStatisticsGroupLatencyTotal( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupLatencyMax( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupLatencyAverage( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupRuntimeTotal( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupRuntimeMax( QV_PROCESS_STATISTICS_GROUP *group );
QV_API QV_INT qvProcessStatisticsGroupRuntimeAverage( QV_PROCESS_STATISTICS_GROUP *group );

/* Adds an interval. Sums stop at the largest integer. */
QV_API void qvProcessStatisticsGroupAccumulate( QV_PROCESS_STATISTICS_GROUP **group,
                                                QV_PROCESS_STATISTICS_INTERVAL *interval );

/* The six numbers as a new store with the keys "count", "executions", "latencyTotal", "latencyMax", "runtimeTotal" and
 * "runtimeMax". */
QV_API QV_STORE *qvProcessStatisticsGroupStore( QV_PROCESS_STATISTICS_GROUP *group );

/* A new group from a store, owned by the caller; null if a number is missing or below 0, or if a maximum exceeds its
 * total. */
QV_API QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupTryRestore( QV_STORE *store );

QV_END_DECLS

#endif
