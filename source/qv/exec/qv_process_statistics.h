#ifndef QV_EXEC_QV_PROCESS_STATISTICS_H
#define QV_EXEC_QV_PROCESS_STATISTICS_H

/* Snapshots of processes that count their runs. A value that never changes. Timestamps are milliseconds of the monotonic
 * clock. The caller owns what a function returns. Null handles stop the process. */

#include <qv/exec/qv_process_statistics_flags.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS, qvProcessStatistics )

/* A new snapshot of a process; null if its domain keeps no statistics. Of the flags only three count:
 * QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION and ..._SINCE_RESET add an interval, the latter with
 * ..._SINCE_RESET_RESET also starts that interval anew. */
QV_API QV_PROCESS_STATISTICS *qvProcessTryGatherStatistics( QV_PROCESS *process,
                                                            QV_PROCESS_STATISTICS_FLAGS flags );

/* The process, its domain, and the index of the domain's thread that it is tied to. */
QV_API QV_IDENTIFIER *qvProcessStatisticsIdentifier( QV_PROCESS_STATISTICS *statistics );
QV_API QV_STRING *qvProcessStatisticsDomainName( QV_PROCESS_STATISTICS *statistics );
QV_API QV_INT qvProcessStatisticsThreadHint( QV_PROCESS_STATISTICS *statistics );

/* When the snapshot was taken and the process created. */
QV_API QV_INT qvProcessStatisticsCaptureTimestamp( QV_PROCESS_STATISTICS *statistics );
QV_API QV_INT qvProcessStatisticsCreationTimestamp( QV_PROCESS_STATISTICS *statistics );

/* Since when the process waits for its run; -1 if nothing asked for one. */
QV_API QV_INT qvProcessStatisticsScheduledSinceTimestamp( QV_PROCESS_STATISTICS *statistics );
QV_API QV_BOOL qvProcessStatisticsHasScheduledSinceTimestamp( QV_PROCESS_STATISTICS *statistics );

/* Since when it runs; -1 if it doesn't. */
QV_API QV_INT qvProcessStatisticsExecutingSinceTimestamp( QV_PROCESS_STATISTICS *statistics );
QV_API QV_BOOL qvProcessStatisticsHasExecutingSinceTimestamp( QV_PROCESS_STATISTICS *statistics );

/* What it did since its creation and since its reset; null if absent. */
QV_API QV_PROCESS_STATISTICS_INTERVAL *
qvProcessStatisticsIntervalSinceCreation( QV_PROCESS_STATISTICS *statistics );
QV_API QV_BOOL qvProcessStatisticsHasIntervalSinceCreation( QV_PROCESS_STATISTICS *statistics );
QV_API QV_PROCESS_STATISTICS_INTERVAL *
qvProcessStatisticsIntervalSinceReset( QV_PROCESS_STATISTICS *statistics );
QV_API QV_BOOL qvProcessStatisticsHasIntervalSinceReset( QV_PROCESS_STATISTICS *statistics );

/* The snapshot as a new store with the keys "identifier", "domainName", "threadHint", "captureTimestamp",
 * "creationTimestamp" and, where present, "scheduledSinceTimestamp", "executingSinceTimestamp", "sinceCreation" and
 * "sinceReset". */
QV_API QV_STORE *qvProcessStatisticsStore( QV_PROCESS_STATISTICS *statistics );

/* A new snapshot from a store; null if something is missing or wrong. */
QV_API QV_PROCESS_STATISTICS *qvProcessStatisticsTryRestore( QV_STORE *store );

QV_END_DECLS

#endif
