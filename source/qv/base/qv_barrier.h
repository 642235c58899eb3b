#ifndef QV_BASE_QV_BARRIER_H
#define QV_BASE_QV_BARRIER_H

/* Barriers: gates for blocking threads. Passing doesn't close a barrier; everyone passes while it is open. A null barrier
 * stops the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BARRIER, qvBarrier )

/* A new barrier, owned by the caller, closed if blocked is true. */
QV_API QV_BARRIER *qvBarrierCreate( QV_BOOL blocked );

/* True while the barrier is closed. */
QV_API QV_BOOL qvBarrierIsBlocked( QV_BARRIER *barrier );

/* Waits until the barrier is open. */
QV_API void qvBarrierPass( QV_BARRIER *barrier );

/* Waits until the barrier is open, for at most millisec milliseconds by the monotonic clock, -1 for no limit. True when it
 * passed, false when the time was up: with 0 it tests once. A millisec below -1 stops the process. */
QV_API QV_BOOL qvBarrierPassTimed( QV_BARRIER *barrier, QV_INT millisec );

/* Closes and opens the barrier. */
QV_API void qvBarrierBlock( QV_BARRIER *barrier );
QV_API void qvBarrierUnblock( QV_BARRIER *barrier );

QV_END_DECLS

#endif
