#ifndef QV_EXEC_QV_PROCESS_STATISTICS_DB_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_DB_HH

// The database of the processes that count their runs.

#include <qv/runtime/qv_handles.h>

// Enters a new process, which the database keeps alive until it is taken out again at its end.
void qv___ProcessStatisticsDbRegisterProcess( QV_PROCESS *process );

// Takes a process out and adds its counts to the past of its family. A process that isn't there is passed over, so that
// one that goes through its end again counts once.
void qv___ProcessStatisticsDbUnregisterProcess( QV_PROCESS *process );

// The snapshot that a query asks for, owned by the caller.
QV_PROCESS_STATISTICS_RESULT *qv___ProcessStatisticsDbExecuteQuery( QV_PROCESS_STATISTICS_QUERY *query );

void qv___ProcessStatisticsDbStartup();
void qv___ProcessStatisticsDbShutdown();

#endif
