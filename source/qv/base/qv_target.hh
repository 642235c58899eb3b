#ifndef QV_BASE_QV_TARGET_HH
#define QV_BASE_QV_TARGET_HH

// What stands behind alertables and signalables: an outer object that the holder owns, and an inner object that the alert
// or signal keeps. The last release of the outer one halts the inner one, so that a dead entry may stay attached.

#include <qv/base/qv_alertable.h>
#include <qv/base/qv_signalable.h>
#include <qv/runtime/qv_local.hh>

typedef struct qv___AlertableInner QV___ALERTABLE_IMP;
typedef struct qv___SignalableInner QV___SIGNALABLE_IMP;
typedef struct qv___EventQueueInner QV___EVENT_QUEUE_IMP;

typedef void ( *qv___TargetFunc )( qvObj closure );

// The inner object's fields. Invariant: at most one target is set, each with a reference; none once halted. lock makes
// firing and halting exclude each other.
struct qv___Target : qv___Obj
{
    qv___Lock lock;
    QV_PROCESS *process;
    QV_BARRIER *barrier;
    QV___EVENT_QUEUE_IMP *eventQueue;
    qvObj event; // set together with eventQueue
    QV_SIGNAL *signal;
    QV_ALERT *alert;
    qv___TargetFunc func;
    qvObj closure; // may be null
};

struct qv___AlertableInner : qv___Target
{
};

struct qv___SignalableInner : qv___Target
{
};

struct qv___Alertable : qv___Obj
{
    QV___ALERTABLE_IMP *imp;
};

struct qv___Signalable : qv___Obj
{
    QV___SIGNALABLE_IMP *imp;
};

QV_SORT_FUNCTIONS_INTERNAL( QV___ALERTABLE_IMP, qv___AlertableImp )
QV_SORT_FUNCTIONS_INTERNAL( QV___SIGNALABLE_IMP, qv___SignalableImp )

// The inner object, retained.
QV___ALERTABLE_IMP *qv___AlertableImp( QV_ALERTABLE *alb );
QV___SIGNALABLE_IMP *qv___SignalableImp( QV_SIGNALABLE *sigb );

// Fire the target directly.
void qv___AlertableAlert( QV_ALERTABLE *alb );
void qv___SignalableSignal( QV_SIGNALABLE *sigb );

// Wakes the target under the inner object's lock; a halted one has none.
void qv___TargetFire( qv___Target *target );

#endif
