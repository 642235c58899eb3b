#include <qv/base/qv_target.hh>

#include <qv/base/qv_alert.h>
#include <qv/base/qv_barrier.h>
#include <qv/base/qv_event_queue.hh>
#include <qv/base/qv_signal.h>
#include <qv/exec/qv_process.h>

namespace
{

template <typename Imp> Imp *createImp( QV_SORT *sort )
{
    Imp *imp = qv::create<Imp>( sort );
    qv___LockInitialize( &imp->lock );
    imp->process = nullptr;
    imp->barrier = nullptr;
    imp->eventQueue = nullptr;
    imp->event = nullptr;
    imp->signal = nullptr;
    imp->alert = nullptr;
    imp->func = nullptr;
    imp->closure = nullptr;
    return imp;
}

// Lets go of one target. The field is emptied first, since the release may run any free function.
template <typename T> void drop( T **field )
{
    qv::replaceWith( field, static_cast<T *>( nullptr ) );
}

void dropTargets( qv___Target *target )
{
    drop( &target->process );
    drop( &target->barrier );
    drop( &target->eventQueue );
    drop( &target->event );
    drop( &target->signal );
    drop( &target->alert );
    target->func = nullptr;
    drop( &target->closure );
}

void halt( qv___Target *target )
{
    qv::Locked locked( &target->lock );
    dropTargets( target );
}

void finalize( qv___Target *target )
{
    dropTargets( target );
    qv___LockFinalize( &target->lock );
}

void setProcess( qv___Target *target, QV_PROCESS *process )
{
    QV_CHECK( process );
    target->process = qv::retained( process );
}

void setBarrier( qv___Target *target, QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    target->barrier = qv::retained( barrier );
}

void setEventQueue( qv___Target *target, QV_EVENT_QUEUE *eventQueue, qvObj event )
{
    QV_CHECK( eventQueue );
    QV_CHECK( event );
    target->eventQueue = qv___EventQueueImp( eventQueue );
    target->event = qv::retained( event );
}

void setSignal( qv___Target *target, QV_SIGNAL *signal )
{
    QV_CHECK( signal );
    target->signal = qv::retained( signal );
}

void setAlert( qv___Target *target, QV_ALERT *alert )
{
    QV_CHECK( alert );
    target->alert = qv::retained( alert );
}

void setFunc( qv___Target *target, qv___TargetFunc func, qvObj closure )
{
    QV_CHECK( func );
    target->func = func;
    qv::assign( &target->closure, closure );
}

QV_ALERTABLE *createAlertable()
{
    QV_ALERTABLE *alb = qv::create<QV_ALERTABLE>( qvAlertableSort() );
    alb->imp = createImp<QV___ALERTABLE_IMP>( qv___AlertableImpSort() );
    return alb;
}

QV_SIGNALABLE *createSignalable()
{
    QV_SIGNALABLE *sigb = qv::create<QV_SIGNALABLE>( qvSignalableSort() );
    sigb->imp = createImp<QV___SIGNALABLE_IMP>( qv___SignalableImpSort() );
    return sigb;
}

void qv___AlertableFreeFunc( qvObj thisObj )
{
    QV_ALERTABLE *thisAlertable = qvAlertableFrom( thisObj );
    QV_CHECK( thisAlertable );
    halt( thisAlertable->imp );
    qv___AlertableImpRelease( thisAlertable->imp );
}

void qv___SignalableFreeFunc( qvObj thisObj )
{
    QV_SIGNALABLE *thisSignalable = qvSignalableFrom( thisObj );
    QV_CHECK( thisSignalable );
    halt( thisSignalable->imp );
    qv___SignalableImpRelease( thisSignalable->imp );
}

void qv___AlertableImpFreeFunc( qvObj thisObj )
{
    QV___ALERTABLE_IMP *thisImp = qv___AlertableImpFrom( thisObj );
    QV_CHECK( thisImp );
    finalize( thisImp );
}

void qv___SignalableImpFreeFunc( qvObj thisObj )
{
    QV___SIGNALABLE_IMP *thisImp = qv___SignalableImpFrom( thisObj );
    QV_CHECK( thisImp );
    finalize( thisImp );
}

} // namespace

QV_SORT_DEFINE( QV_ALERTABLE, qvAlertable, { .freeFunc = qv___AlertableFreeFunc } )
QV_SORT_DEFINE( QV_SIGNALABLE, qvSignalable, { .freeFunc = qv___SignalableFreeFunc } )
QV_SORT_DEFINE( QV___ALERTABLE_IMP, qv___AlertableImp, { .freeFunc = qv___AlertableImpFreeFunc } )
QV_SORT_DEFINE( QV___SIGNALABLE_IMP, qv___SignalableImp, { .freeFunc = qv___SignalableImpFreeFunc } )

void qv___TargetFire( qv___Target *target )
{
    QV_CHECK( target );
    qv::Locked locked( &target->lock );
    if ( target->process )
    {
        qvProcessSchedule( target->process );
    }
    else if ( target->barrier )
    {
        qvBarrierUnblock( target->barrier );
    }
    else if ( target->eventQueue )
    {
        qv___EventQueueImpWriteEvent( target->eventQueue, target->event );
    }
    else if ( target->signal )
    {
        qvSignalAssert( target->signal );
    }
    else if ( target->alert )
    {
        qvAlertSet( target->alert );
    }
    else if ( target->func )
    {
        target->func( target->closure );
    }
}

QV___ALERTABLE_IMP *qv___AlertableImp( QV_ALERTABLE *alb )
{
    QV_CHECK( alb );
    return qv::retained( alb->imp );
}

QV___SIGNALABLE_IMP *qv___SignalableImp( QV_SIGNALABLE *sigb )
{
    QV_CHECK( sigb );
    return qv::retained( sigb->imp );
}

void qv___AlertableAlert( QV_ALERTABLE *alb )
{
    QV_CHECK( alb );
    qv___TargetFire( alb->imp );
}

void qv___SignalableSignal( QV_SIGNALABLE *sigb )
{
    QV_CHECK( sigb );
    qv___TargetFire( sigb->imp );
}

QV_ALERTABLE *qvAlertableCreateWithProcess( QV_PROCESS *process )
{
    QV_ALERTABLE *alb = createAlertable();
    setProcess( alb->imp, process );
    return alb;
}

QV_ALERTABLE *qvAlertableCreateWithBarrier( QV_BARRIER *barrier )
{
    QV_ALERTABLE *alb = createAlertable();
    setBarrier( alb->imp, barrier );
    return alb;
}

QV_ALERTABLE *qvAlertableCreateWithEventQueue( QV_EVENT_QUEUE *eventQueue, qvObj event )
{
    QV_ALERTABLE *alb = createAlertable();
    setEventQueue( alb->imp, eventQueue, event );
    return alb;
}

QV_ALERTABLE *qvAlertableCreateWithSignal( QV_SIGNAL *signal )
{
    QV_ALERTABLE *alb = createAlertable();
    setSignal( alb->imp, signal );
    return alb;
}

QV_ALERTABLE *qvAlertableCreateWithAlert( QV_ALERT *alert )
{
    QV_ALERTABLE *alb = createAlertable();
    setAlert( alb->imp, alert );
    return alb;
}

QV_ALERTABLE *qvAlertableCreateWithSignalFunc( QV_ALERTABLE_FUNC func, qvObj closure )
{
    QV_ALERTABLE *alb = createAlertable();
    setFunc( alb->imp, func, closure );
    return alb;
}

QV_SIGNALABLE *qvSignalableCreateWithProcess( QV_PROCESS *process )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setProcess( sigb->imp, process );
    return sigb;
}

QV_SIGNALABLE *qvSignalableCreateWithBarrier( QV_BARRIER *barrier )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setBarrier( sigb->imp, barrier );
    return sigb;
}

QV_SIGNALABLE *qvSignalableCreateWithEventQueue( QV_EVENT_QUEUE *eventQueue, qvObj event )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setEventQueue( sigb->imp, eventQueue, event );
    return sigb;
}

QV_SIGNALABLE *qvSignalableCreateWithSignal( QV_SIGNAL *signal )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setSignal( sigb->imp, signal );
    return sigb;
}

QV_SIGNALABLE *qvSignalableCreateWithAlert( QV_ALERT *alert )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setAlert( sigb->imp, alert );
    return sigb;
}

QV_SIGNALABLE *qvSignalableCreateWithSignalFunc( QV_SIGNALABLE_FUNC func, qvObj closure )
{
    QV_SIGNALABLE *sigb = createSignalable();
    setFunc( sigb->imp, func, closure );
    return sigb;
}
