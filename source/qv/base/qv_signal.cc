#include <qv/base/qv_signal.hh>

#include <qv/base/qv_alert.h>
#include <qv/base/qv_barrier.h>
#include <qv/base/qv_signal_protocol.hh>
#include <qv/base/qv_target.hh>

namespace
{

void qv___SignalFreeFunc( qvObj thisObj )
{
    QV_SIGNAL *thisSignal = qvSignalFrom( thisObj );
    QV_CHECK( thisSignal );
    qv::releaseOptional( thisSignal->waitBarrier );
    thisSignal->signalables.drop();
    thisSignal->chainedSignals.drop();
    thisSignal->alerts.drop();
    thisSignal->barriers.drop();
    qv___LockFinalize( &thisSignal->lock );
}

void fireSignalable( qvObj imp )
{
    qv___TargetFire( qv___SignalableImpFrom( imp ) );
}

void fireSignal( qvObj sig )
{
    qvSignalAssert( qvSignalFrom( sig ) );
}

void fireAlert( qvObj alert )
{
    qvAlertSet( qvAlertFrom( alert ) );
}

void fireBarrier( qvObj barrier )
{
    qvBarrierUnblock( qvBarrierFrom( barrier ) );
}

// What the steps of attaching and asserting do with a signal and, in the first case, with a listener.
struct Steps
{
    QV_SIGNAL *sig;
    qv::Listeners *listeners;
    qvObj listener;
    void ( *fireOne )( qvObj );

    void lock()
    {
        qv___LockAcquire( &sig->lock );
    }

    void unlock()
    {
        qv___LockRelease( &sig->lock );
    }

    void fire()
    {
        fireOne( listener );
    }

    void keep()
    {
        listeners->add( listener );
    }

    // Threads first, then the targets in this order, all under the lock.
    void fireAll()
    {
        if ( sig->waitBarrier )
        {
            qvBarrierUnblock( sig->waitBarrier );
            qv::replaceWith( &sig->waitBarrier, static_cast<QV_BARRIER *>( nullptr ) );
        }
        sig->signalables.fire( fireSignalable );
        sig->chainedSignals.fire( fireSignal );
        sig->alerts.fire( fireAlert );
        sig->barriers.fire( fireBarrier );
    }
};

void attach( QV_SIGNAL *sig, qv::Listeners *listeners, qvObj listener, void ( *fire )( qvObj ) )
{
    Steps steps = { sig, listeners, listener, fire };
    qv::signalAttach( &sig->asserted, steps );
}

void detach( QV_SIGNAL *sig, qv::Listeners *listeners, qvObj listener )
{
    qv::Locked locked( &sig->lock );
    listeners->remove( listener );
}

// The barrier for a thread that is about to wait, retained; null if the signal is asserted.
QV_BARRIER *waitBarrierOf( QV_SIGNAL *sig )
{
    qv::Locked locked( &sig->lock );
    if ( sig->asserted.isOn() )
        return nullptr;
    if ( !sig->waitBarrier )
        sig->waitBarrier = qvBarrierCreate( QV_TRUE );
    return qv::retained( sig->waitBarrier );
}

} // namespace

QV_SORT_DEFINE( QV_SIGNAL, qvSignal, { .freeFunc = qv___SignalFreeFunc } )

QV_SIGNAL *qvSignalCreate( void )
{
    QV_SIGNAL *sig = qv::create<QV_SIGNAL>( qvSignalSort() );
    qv___LockInitialize( &sig->lock );
    sig->asserted = {};
    sig->waitBarrier = nullptr;
    sig->signalables = {};
    sig->chainedSignals = {};
    sig->alerts = {};
    sig->barriers = {};
    return sig;
}

QV_BOOL qvSignalAsserted( QV_SIGNAL *sig )
{
    QV_CHECK( sig );
    return sig->asserted.isOn();
}

void qvSignalAssert( QV_SIGNAL *sig )
{
    QV_CHECK( sig );
    Steps steps = { sig, nullptr, nullptr, nullptr };
    qv::signalAssert( &sig->asserted, steps );
}

void qvSignalWait( QV_SIGNAL *sig )
{
    qvSignalWaitTimed( sig, -1 );
}

QV_BOOL qvSignalWaitTimed( QV_SIGNAL *sig, QV_INT millisec )
{
    QV_CHECK( sig );
    QV_CHECK( millisec >= -1 );
    qv::Local<QV_BARRIER> barrier( waitBarrierOf( sig ) );
    return !barrier || qvBarrierPassTimed( barrier, millisec );
}

QV_BOOL qvSignalHasSignalables( QV_SIGNAL *sig )
{
    QV_CHECK( sig );
    qv::Locked locked( &sig->lock );
    return sig->signalables.any() || sig->chainedSignals.any() || sig->alerts.any() || sig->barriers.any();
}

void qvSignalAddSignalable( QV_SIGNAL *sig, QV_SIGNALABLE *sigb )
{
    QV_CHECK( sig );
    qv::Local<QV___SIGNALABLE_IMP> imp( qv___SignalableImp( sigb ) );
    attach( sig, &sig->signalables, qv___SignalableImpObj( imp ), fireSignalable );
}

void qvSignalDelSignalable( QV_SIGNAL *sig, QV_SIGNALABLE *sigb )
{
    QV_CHECK( sig );
    qv::Local<QV___SIGNALABLE_IMP> imp( qv___SignalableImp( sigb ) );
    detach( sig, &sig->signalables, qv___SignalableImpObj( imp ) );
}

void qvSignalAddSignal( QV_SIGNAL *sig, QV_SIGNAL *chainedSignal )
{
    QV_CHECK( sig );
    QV_CHECK( chainedSignal );
    attach( sig, &sig->chainedSignals, qvSignalObj( chainedSignal ), fireSignal );
}

void qvSignalDelSignal( QV_SIGNAL *sig, QV_SIGNAL *chainedSignal )
{
    QV_CHECK( sig );
    QV_CHECK( chainedSignal );
    detach( sig, &sig->chainedSignals, qvSignalObj( chainedSignal ) );
}

void qvSignalAddAlert( QV_SIGNAL *sig, QV_ALERT *alert )
{
    QV_CHECK( sig );
    QV_CHECK( alert );
    attach( sig, &sig->alerts, qvAlertObj( alert ), fireAlert );
}

void qvSignalDelAlert( QV_SIGNAL *sig, QV_ALERT *alert )
{
    QV_CHECK( sig );
    QV_CHECK( alert );
    detach( sig, &sig->alerts, qvAlertObj( alert ) );
}

void qvSignalAddBarrier( QV_SIGNAL *sig, QV_BARRIER *waitBarrier )
{
    QV_CHECK( sig );
    QV_CHECK( waitBarrier );
    attach( sig, &sig->barriers, qvBarrierObj( waitBarrier ), fireBarrier );
}

void qvSignalDelBarrier( QV_SIGNAL *sig, QV_BARRIER *waitBarrier )
{
    QV_CHECK( sig );
    QV_CHECK( waitBarrier );
    detach( sig, &sig->barriers, qvBarrierObj( waitBarrier ) );
}

void qvSleep( QV_SIGNAL *signal )
{
    qvSleepTimed( signal, -1 );
}

QV_BOOL qvSleepTimed( QV_SIGNAL *signal, QV_INT millisec )
{
    // A signal of its own, chained to the caller's, which so keeps no trace of the sleeper.
    qv::Local<QV_SIGNAL> local( qvSignalCreate() );
    if ( signal )
    {
        qvSignalAddSignal( signal, local );
    }
    QV_BOOL asserted = qvSignalWaitTimed( local, millisec );
    if ( signal )
    {
        qvSignalDelSignal( signal, local );
    }
    return asserted;
}
