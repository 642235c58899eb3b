#ifndef QV_EXEC_QV_THREAD_PRIORITY_H
#define QV_EXEC_QV_THREAD_PRIORITY_H

/* The priorities of threads, from the one that only fills idle time to the most urgent. Where the platform grants
 * real-time scheduling they spread evenly over its range, otherwise all threads run alike. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_THREAD_PRIORITY;
#define QV_THREAD_PRIORITY_IDLE     0
#define QV_THREAD_PRIORITY_LOWEST   1
#define QV_THREAD_PRIORITY_LOW      2
#define QV_THREAD_PRIORITY_NORMAL   3
#define QV_THREAD_PRIORITY_HIGH     4
#define QV_THREAD_PRIORITY_HIGHEST  5
#define QV_THREAD_PRIORITY_CRITICAL 6

/* The argument is evaluated twice. */
#define QV_THREAD_PRIORITY_OK( prio )                                                                        \
    ( ( prio ) >= QV_THREAD_PRIORITY_IDLE && ( prio ) <= QV_THREAD_PRIORITY_CRITICAL )

QV_BEGIN_DECLS

/* The priority that a text names, or that it gives as a number; -1 for everything else. */
QV_API QV_THREAD_PRIORITY qvThreadPriorityFromString( QV_STRING *text );

/* The name of a priority, owned by the caller. A priority that isn't one stops the process. */
QV_API QV_STRING *qvThreadPriorityToString( QV_THREAD_PRIORITY prio );

QV_END_DECLS

#endif
