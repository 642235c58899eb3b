#ifndef QV_EXEC_QV_TIMER_HH
#define QV_EXEC_QV_TIMER_HH

#include <qv/base/qv_event_queue.hh>
#include <qv/exec/qv_timer.h>
#include <qv/exec/qv_timer_protocol.hh>
#include <qv/runtime/qv_obj.hh>
#include <qv/sys/qv_atomic_bool.hh>

typedef struct qv___TimerClosure QV___TIMER_CLOSURE;
typedef struct qv___TimerAbsKey QV___TIMER_ABS_KEY;

// The inner object, which the structures hold as well. Invariant: exactly one target is set.
struct qv___TimerClosure : qv___Obj
{
    QV_PROCESS *process;
    QV_BARRIER *barrier;
    QV_EVENT_QUEUE *eventQueue;
    qvObj event; // set together with eventQueue
    QV_SIGNAL *signal;
    QV_ALERT *alert;
    QV_TIMER_FUNC signalFunc;
    qvObj signalClosure; // may be null
    qv::TimerFlags<qv::AtomicBool> flags;
    QV_INT token; // the object's own, at hand
};

struct qv___Timer : qv___Obj
{
    QV___TIMER_CLOSURE *closure;
    bool linger;
};

// The key of an absolute timer: ordered by the time, then by a number that grows with each entry. The number keeps timers
// of the same time apart, so that each of them fires, in the order in which they were scheduled.
struct qv___TimerAbsKey : qv___Obj
{
    QV_TIME *time;
    QV_INT number;
};

QV_SORT_FUNCTIONS_INTERNAL( QV___TIMER_CLOSURE, qv___TimerClosure )
QV_SORT_FUNCTIONS_INTERNAL( QV___TIMER_ABS_KEY, qv___TimerAbsKey )

// With linger a timer that is scheduled when its last handle goes still fires once.
void qv___TimerSetLinger( QV_TIMER *timer, QV_BOOL linger );

void qv___TimerStartup();

// Fires what is due and ends the thread; no timer may be scheduled any more.
void qv___TimerShutdown();

#endif
