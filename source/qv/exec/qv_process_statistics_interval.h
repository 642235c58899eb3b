#ifndef QV_EXEC_QV_PROCESS_STATISTICS_INTERVAL_H
#define QV_EXEC_QV_PROCESS_STATISTICS_INTERVAL_H

/* What one process did in an interval of time. A value that never changes. Timestamps and durations are in milliseconds of
 * the monotonic clock; all numbers are 0 or more. Latency is the time from the request for a run to its start. Null handles
 * stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS_INTERVAL, qvProcessStatisticsInterval )

QV_API QV_INT qvProcessStatisticsIntervalBeginTimestamp( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalEndTimestamp( QV_PROCESS_STATISTICS_INTERVAL *interval );

/* The number of runs, and the runs in a second, rounded; below a second's duration it is the number of runs. */
QV_API QV_INT qvProcessStatisticsIntervalExecutions( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalExecutionsPerSecond( QV_PROCESS_STATISTICS_INTERVAL *interval );

/* Averages are truncated, and 0 without a run. */
QV_API QV_INT qvProcessStatisticsIntervalLatencyTotal( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalLatencyMax( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalLatencyAverage( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalRuntimeTotal( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalRuntimeMax( QV_PROCESS_STATISTICS_INTERVAL *interval );
QV_API QV_INT qvProcessStatisticsIntervalRuntimeAverage( QV_PROCESS_STATISTICS_INTERVAL *interval );

/* The seven numbers as a new store with the keys "beginTimestamp", "endTimestamp", "executions", "latencyTotal",
 * "latencyMax", "runtimeTotal" and "runtimeMax". */
QV_API QV_STORE *qvProcessStatisticsIntervalStore( QV_PROCESS_STATISTICS_INTERVAL *interval );

/* A new interval from a store, owned by the caller; null if a number is missing or below 0, or if a maximum exceeds its
 * total. */
QV_API QV_PROCESS_STATISTICS_INTERVAL *qvProcessStatisticsIntervalTryRestore( QV_STORE *store );

QV_END_DECLS

#endif
