#ifndef QV_EXEC_QV_PROCESS_STATISTICS_QUERY_H
#define QV_EXEC_QV_PROCESS_STATISTICS_QUERY_H

/* Queries of the statistics of all processes that count their runs. Copy-on-write: functions that edit take the address of
 * the caller's handle. The caller owns what a function returns. Null handles stop the process. */

#include <qv/exec/qv_process_statistics_flags.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_STATISTICS_QUERY, qvProcessStatisticsQuery )

/* A new query with the default flags, which are all, or a copy. */
QV_API QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryCreate( void );
QV_API QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryCreateFrom( QV_PROCESS_STATISTICS_QUERY *source );

/* What is asked for. Flags that are set are normalized, and aren't the default from then on. */
QV_API QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsQueryFlags( QV_PROCESS_STATISTICS_QUERY *query );
QV_API void qvProcessStatisticsQuerySetFlags( QV_PROCESS_STATISTICS_QUERY **query,
                                              QV_PROCESS_STATISTICS_FLAGS flags );

/* Whether the flags are the default; makes them the default again. */
QV_API QV_BOOL qvProcessStatisticsQueryFlagsDefault( QV_PROCESS_STATISTICS_QUERY *query );
QV_API void qvProcessStatisticsQuerySetFlagsDefault( QV_PROCESS_STATISTICS_QUERY **query );

/* The query as a new store with the key "flags", which is left out for the default unless full is true. */
QV_API QV_STORE *qvProcessStatisticsQueryStore( QV_PROCESS_STATISTICS_QUERY *query, QV_BOOL full );

/* A new query from a store. A missing key leaves the default. */
QV_API QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryRestore( QV_STORE *store );

/* Takes the snapshot and makes the resets that the flags ask for. A family is there once a process of its name has been
 * created, also when none lives. */
QV_API QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsQueryExecute( QV_PROCESS_STATISTICS_QUERY *query );

QV_END_DECLS

#endif
