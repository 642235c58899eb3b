#ifndef QV_BASE_QV_SIGNALABLE_H
#define QV_BASE_QV_SIGNALABLE_H

/* One target that a signal wakes when it fires. Releasing the last reference ends it: after that no call of the target is in
 * progress or comes later, also if the signal still holds it. That last release must not come from inside the target's
 * own function. Null stops the process, except for a closure. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* A target function; closure may be null. It runs while the signal is locked. */
typedef void ( *QV_SIGNALABLE_FUNC )( qvObj closure );

QV_SORT_FUNCTIONS( QV_SIGNALABLE, qvSignalable )

/* New targets, owned by the caller. Each keeps a reference to what it wakes: a process is scheduled, a barrier unblocked,
 * the event (not null) written to the event queue, a signal asserted, an alert set, the function called with its closure
 * (which may be null). */
QV_API QV_SIGNALABLE *qvSignalableCreateWithProcess( QV_PROCESS *process );
QV_API QV_SIGNALABLE *qvSignalableCreateWithBarrier( QV_BARRIER *barrier );
QV_API QV_SIGNALABLE *qvSignalableCreateWithEventQueue( QV_EVENT_QUEUE *eventQueue, qvObj event );
QV_API QV_SIGNALABLE *qvSignalableCreateWithSignal( QV_SIGNAL *signal );
QV_API QV_SIGNALABLE *qvSignalableCreateWithAlert( QV_ALERT *alert );
QV_API QV_SIGNALABLE *qvSignalableCreateWithSignalFunc( QV_SIGNALABLE_FUNC func, qvObj closure );

QV_END_DECLS

#endif
