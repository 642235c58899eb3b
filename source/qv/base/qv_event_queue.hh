#ifndef QV_BASE_QV_EVENT_QUEUE_HH
#define QV_BASE_QV_EVENT_QUEUE_HH

#include <qv/base/qv_event_queue.h>
#include <qv/base/qv_monitor.hh>
#include <qv/base/qv_target.hh>

// The inner object, which targets keep. Invariant inside the monitor: dict has exactly the objects of vector as keys; once
// halted all three are null. At rest the alert is set exactly while vector isn't empty; since it is set after the monitor
// has been left, it may be set for a moment on a queue that has just been emptied.
struct qv___EventQueueInner : qv___Obj
{
    QV_MONITOR *monitor;
    bool halted;
    QV_ALERT *alert;
    QV_DICT *dict;
    QV_VECTOR *vector;
};

struct qv___EventQueue : qv___Obj
{
    QV___EVENT_QUEUE_IMP *imp;
};

QV_SORT_FUNCTIONS_INTERNAL( QV___EVENT_QUEUE_IMP, qv___EventQueueImp )

// The inner object, retained.
QV___EVENT_QUEUE_IMP *qv___EventQueueImp( QV_EVENT_QUEUE *queue );

// Writes an event; a halted queue drops it.
void qv___EventQueueImpWriteEvent( QV___EVENT_QUEUE_IMP *imp, qvObj event );

#endif
