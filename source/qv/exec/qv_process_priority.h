#ifndef QV_EXEC_QV_PROCESS_PRIORITY_H
#define QV_EXEC_QV_PROCESS_PRIORITY_H

/* The priorities that choose one of the two default domains of processes. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_PROCESS_PRIORITY;
#define QV_PROCESS_PRIORITY_LOW  0
#define QV_PROCESS_PRIORITY_HIGH 1

QV_BEGIN_DECLS

/* The priority that a text names, or that it gives as a number; -1 for everything else. */
QV_API QV_PROCESS_PRIORITY qvProcessPriorityFromString( QV_STRING *text );

/* The name of a priority, owned by the caller. A priority that isn't one stops the process. */
QV_API QV_STRING *qvProcessPriorityToString( QV_PROCESS_PRIORITY priority );

QV_END_DECLS

#endif
