#ifndef QV_EXEC_QV_TIMER_H
#define QV_EXEC_QV_TIMER_H

/* Timers: each wakes a target once, at a point of time. They count on the monotonic clock of qvTimestamp or on calendar
 * time. A timer fires at most once for each scheduling call; a target that wants a period schedules again. Targets wake on
 * one thread for all timers, so a target function must be short; it may schedule timers.
 *
 * Any thread may use a timer. One that is released doesn't fire any more. Timers compare by identity. None may be scheduled
 * at the end of the runtime. Null handles stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* A target function; the closure is borrowed, and null if the timer has none. */
typedef void ( *QV_TIMER_FUNC )( qvObj closure );

QV_SORT_FUNCTIONS( QV_TIMER, qvTimer )

/* New timers that aren't scheduled, owned by the caller. Each keeps a reference to what it wakes: a process is scheduled, a
 * barrier unblocked, the event written to the event queue, a signal asserted, an alert set, the function called with its
 * closure. Nothing but the closure may be null. */
QV_API QV_TIMER *qvTimerCreateWithProcess( QV_PROCESS *process );
QV_API QV_TIMER *qvTimerCreateWithBarrier( QV_BARRIER *barrier );
QV_API QV_TIMER *qvTimerCreateWithEventQueue( QV_EVENT_QUEUE *eventQueue, qvObj event );
QV_API QV_TIMER *qvTimerCreateWithSignal( QV_SIGNAL *signal );
QV_API QV_TIMER *qvTimerCreateWithAlert( QV_ALERT *alert );
QV_API QV_TIMER *qvTimerCreateWithSignalFunc( QV_TIMER_FUNC func, qvObj closure );

/* Fires after milliseconds, at least 0, from qvTimestamp on. A time of QV_INT_MAX or beyond stops the process. This and the
 * other scheduling calls replace whatever schedule the timer had. */
QV_API void qvTimerSchedule( QV_TIMER *timer, QV_INT milliseconds );

/* Fires when qvTimestamp reaches the timestamp, which is at least 0 and below QV_INT_MAX. */
QV_API void qvTimerScheduleAt( QV_TIMER *timer, QV_INT timestamp );

/* Fires when the calendar time has come, up to a second late; a time in the past fires at once. A jump of the clock takes
 * effect within 10 seconds. */
QV_API void qvTimerScheduleAtTime( QV_TIMER *timer, QV_TIME *time );

/* Counts as scheduled, but never fires. */
QV_API void qvTimerScheduleInfinite( QV_TIMER *timer );

/* Cancels without waiting for anything. A firing that is under way isn't stopped, so the target may be woken once more
 * after the return. */
QV_API void qvTimerUnschedule( QV_TIMER *timer );

/* True from a scheduling call until the timer fires or is cancelled. */
QV_API QV_BOOL qvTimerScheduled( QV_TIMER *timer );

/* Milliseconds of the monotonic clock, above 0. During one run of a process it is the time at which the run started. */
QV_API QV_INT qvTimestamp( void );

QV_END_DECLS

#endif
