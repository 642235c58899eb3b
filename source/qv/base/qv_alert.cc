#include <qv/base/qv_alert.hh>

#include <qv/base/qv_target.hh>

namespace
{

void qv___AlertFreeFunc( qvObj thisObj )
{
    QV_ALERT *thisAlert = qvAlertFrom( thisObj );
    QV_CHECK( thisAlert );
    thisAlert->alertables.drop();
    qv___LockFinalize( &thisAlert->lock );
}

void fireAlertable( qvObj imp )
{
    qv___TargetFire( qv___AlertableImpFrom( imp ) );
}

} // namespace

QV_SORT_DEFINE( QV_ALERT, qvAlert, { .freeFunc = qv___AlertFreeFunc } )

QV_ALERT *qvAlertCreate( void )
{
    QV_ALERT *alert = qv::create<QV_ALERT>( qvAlertSort() );
    qv___LockInitialize( &alert->lock );
    alert->set = {};
    alert->alertables = {};
    return alert;
}

QV_BOOL qvAlertIsSet( QV_ALERT *alert )
{
    QV_CHECK( alert );
    return alert->set.isOn();
}

void qvAlertSet( QV_ALERT *alert )
{
    QV_CHECK( alert );
    qv::Locked locked( &alert->lock );
    if ( alert->set.turnOn() )
        alert->alertables.fire( fireAlertable );
}

void qvAlertUnset( QV_ALERT *alert )
{
    QV_CHECK( alert );
    alert->set.turnOff();
}

void qvAlertAddAlertable( QV_ALERT *alert, QV_ALERTABLE *alb )
{
    QV_CHECK( alert );
    qv::Local<QV___ALERTABLE_IMP> imp( qv___AlertableImp( alb ) );
    qv::Locked locked( &alert->lock );
    if ( qvAlertIsSet( alert ) )
    {
        qv___TargetFire( imp );
    }
    else
    {
        alert->alertables.add( qv___AlertableImpObj( imp ) );
    }
}

void qvAlertDelAlertable( QV_ALERT *alert, QV_ALERTABLE *alb )
{
    QV_CHECK( alert );
    qv::Local<QV___ALERTABLE_IMP> imp( qv___AlertableImp( alb ) );
    qv::Locked locked( &alert->lock );
    alert->alertables.remove( qv___AlertableImpObj( imp ) );
}
