#ifndef QV_BASE_QV_EVENT_QUEUE_H
#define QV_BASE_QV_EVENT_QUEUE_H

/* Event queues: objects in first-in, first-out order without duplicates, read without blocking. The queue's alert is set
 * while the queue holds something. Null stops the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_EVENT_QUEUE, qvEventQueue )

/* A new queue, empty, owned by the caller. */
QV_API QV_EVENT_QUEUE *qvEventQueueCreate( void );

/* The oldest object, owned by the caller; null when the queue is empty. Never blocks. */
QV_API qvObj qvEventQueueReadEvent( QV_EVENT_QUEUE *queue );

/* Appends an object, which the queue then holds a reference to, unless an equal one (qvObjCompare) is waiting already. */
QV_API void qvEventQueueWriteEvent( QV_EVENT_QUEUE *queue, qvObj event );

/* Attach an alertable to the queue's alert, and detach it: it fires once, when the queue holds something,
 * though another reader may have emptied it by then. */
QV_API void qvEventQueueReadEventAddAlertable( QV_EVENT_QUEUE *queue, QV_ALERTABLE *alb );
QV_API void qvEventQueueReadEventDelAlertable( QV_EVENT_QUEUE *queue, QV_ALERTABLE *alb );

/* New targets that write the event to the queue, owned by the caller. Once the queue is freed they do nothing. */
QV_API QV_ALERTABLE *qvEventQueueCreateAlertable( QV_EVENT_QUEUE *queue, qvObj event );
QV_API QV_SIGNALABLE *qvEventQueueCreateSignalable( QV_EVENT_QUEUE *queue, qvObj event );

QV_END_DECLS

#endif
