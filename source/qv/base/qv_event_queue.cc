#include <qv/base/qv_event_queue.hh>

#include <qv/base/qv_alert.h>
#include <qv/base/qv_dict.h>
#include <qv/base/qv_vector.h>

namespace
{

void dropContents( QV___EVENT_QUEUE_IMP *imp )
{
    qv::replaceWith( &imp->alert, static_cast<QV_ALERT *>( nullptr ) );
    qv::replaceWith( &imp->dict, static_cast<QV_DICT *>( nullptr ) );
    qv::replaceWith( &imp->vector, static_cast<QV_VECTOR *>( nullptr ) );
}

void qv___EventQueueImpFreeFunc( qvObj thisObj )
{
    QV___EVENT_QUEUE_IMP *thisImp = qv___EventQueueImpFrom( thisObj );
    QV_CHECK( thisImp );
    dropContents( thisImp );
    qvMonitorRelease( thisImp->monitor );
}

void qv___EventQueueFreeFunc( qvObj thisObj )
{
    QV_EVENT_QUEUE *thisQueue = qvEventQueueFrom( thisObj );
    QV_CHECK( thisQueue );
    {
        qv::Entered entered( thisQueue->imp->monitor );
        thisQueue->imp->halted = true;
        dropContents( thisQueue->imp );
    }
    qv___EventQueueImpRelease( thisQueue->imp );
}

// Appends the event inside the monitor. Returns the alert to set, retained, if the queue was empty before, else null.
QV_ALERT *append( QV___EVENT_QUEUE_IMP *imp, qvObj event )
{
    qv::Entered entered( imp->monitor );
    if ( imp->halted || qvDictHasObjKey( imp->dict, event ) )
        return nullptr;
    bool wasEmpty = qvVectorLength( imp->vector ) == 0;
    qvDictSetObjKey( &imp->dict, event, event );
    qvVectorPush( &imp->vector, event );
    return wasEmpty ? qv::retained( imp->alert ) : nullptr;
}

QV_ALERT *alertOf( QV_EVENT_QUEUE *queue )
{
    QV_CHECK( queue );
    qv::Entered entered( queue->imp->monitor );
    QV_CHECK( !queue->imp->halted );
    return qv::retained( queue->imp->alert );
}

} // namespace

QV_SORT_DEFINE( QV_EVENT_QUEUE, qvEventQueue, { .freeFunc = qv___EventQueueFreeFunc } )
QV_SORT_DEFINE( QV___EVENT_QUEUE_IMP, qv___EventQueueImp, { .freeFunc = qv___EventQueueImpFreeFunc } )

QV_EVENT_QUEUE *qvEventQueueCreate( void )
{
    QV___EVENT_QUEUE_IMP *imp = qv::create<QV___EVENT_QUEUE_IMP>( qv___EventQueueImpSort() );
    imp->monitor = qvMonitorCreate();
    imp->halted = false;
    imp->alert = qvAlertCreate();
    imp->dict = qvDictCreate();
    imp->vector = qvVectorCreate();
    QV_EVENT_QUEUE *queue = qv::create<QV_EVENT_QUEUE>( qvEventQueueSort() );
    queue->imp = imp;
    return queue;
}

QV___EVENT_QUEUE_IMP *qv___EventQueueImp( QV_EVENT_QUEUE *queue )
{
    QV_CHECK( queue );
    return qv::retained( queue->imp );
}

void qv___EventQueueImpWriteEvent( QV___EVENT_QUEUE_IMP *imp, qvObj event )
{
    QV_CHECK( imp );
    QV_CHECK( event );
    qv::Local<QV_ALERT> alert( append( imp, event ) );
    if ( alert )
    {
        qvAlertSet( alert );
    }
}

qvObj qvEventQueueReadEvent( QV_EVENT_QUEUE *queue )
{
    QV_CHECK( queue );
    QV___EVENT_QUEUE_IMP *imp = queue->imp;
    qv::Entered entered( imp->monitor );
    QV_CHECK( !imp->halted );
    qvObj event = nullptr;
    if ( qvVectorLength( imp->vector ) > 0 )
    {
        event = qvVectorUnshift( &imp->vector );
        qvDictDelObjKey( &imp->dict, event );
    }
    if ( qvVectorLength( imp->vector ) == 0 )
    {
        qvAlertUnset( imp->alert );
    }
    return event;
}

void qvEventQueueWriteEvent( QV_EVENT_QUEUE *queue, qvObj event )
{
    QV_CHECK( queue );
    qv___EventQueueImpWriteEvent( queue->imp, event );
}

void qvEventQueueReadEventAddAlertable( QV_EVENT_QUEUE *queue, QV_ALERTABLE *alb )
{
    qv::Local<QV_ALERT> alert( alertOf( queue ) );
    qvAlertAddAlertable( alert, alb );
}

void qvEventQueueReadEventDelAlertable( QV_EVENT_QUEUE *queue, QV_ALERTABLE *alb )
{
    qv::Local<QV_ALERT> alert( alertOf( queue ) );
    qvAlertDelAlertable( alert, alb );
}

QV_ALERTABLE *qvEventQueueCreateAlertable( QV_EVENT_QUEUE *queue, qvObj event )
{
    return qvAlertableCreateWithEventQueue( queue, event );
}

QV_SIGNALABLE *qvEventQueueCreateSignalable( QV_EVENT_QUEUE *queue, qvObj event )
{
    return qvSignalableCreateWithEventQueue( queue, event );
}
