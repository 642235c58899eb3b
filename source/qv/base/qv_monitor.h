#ifndef QV_BASE_QV_MONITOR_H
#define QV_BASE_QV_MONITOR_H

/* Monitors: mutual exclusion of threads as an object. Not recursive: a thread that enters twice blocks for ever. The
 * thread that entered leaves. Freeing an entered monitor and a null monitor stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_MONITOR, qvMonitor )

/* A new monitor, owned by the caller. */
QV_API QV_MONITOR *qvMonitorCreate( void );

/* Waits until no other thread is inside. */
QV_API void qvMonitorEnter( QV_MONITOR *monitor );
/* A monitor that isn't entered stops the process. */
QV_API void qvMonitorLeave( QV_MONITOR *monitor );

QV_END_DECLS

#endif
