#include <qv/base/qv_counter.hh>

#include <qv/base/qv_barrier.h>
#include <qv/base/qv_monitor.h>

namespace
{

void qv___CounterFreeFunc( qvObj thisObj )
{
    QV_COUNTER *ctr = qvCounterFrom( thisObj );
    QV_CHECK( ctr );
    // Whoever released the last other reference may still be on the way out of the monitor.
    qvMonitorEnter( ctr->monitor );
    qvMonitorLeave( ctr->monitor );
    qv::release( qv::objOf( ctr->monitor ) );
    qv::release( qv::objOf( ctr->barrier ) );
}

} // namespace

QV_SORT_DEFINE( QV_COUNTER, qvCounter, { .freeFunc = qv___CounterFreeFunc } )

QV_COUNTER *qvCounterCreate( void )
{
    auto *ctr = qv::create<QV_COUNTER>( qvCounterSort() );
    ctr->monitor = qvMonitorCreate();
    ctr->barrier = qvBarrierCreate( QV_FALSE );
    ctr->value = 0;
    return ctr;
}

QV_INT qvCounterValue( QV_COUNTER *ctr )
{
    QV_CHECK( ctr );
    qvMonitorEnter( ctr->monitor );
    QV_INT value = ctr->value;
    qvMonitorLeave( ctr->monitor );
    return value;
}

void qvCounterIncrement( QV_COUNTER *ctr )
{
    QV_CHECK( ctr );
    qvMonitorEnter( ctr->monitor );
    QV_CHECK( ctr->value >= 0 );
    QV_CHECK( ctr->value < QV_INT_MAX );
    ctr->value++;
    qvBarrierBlock( ctr->barrier );
    qvMonitorLeave( ctr->monitor );
}

void qvCounterDecrement( QV_COUNTER *ctr )
{
    QV_CHECK( ctr );
    qvMonitorEnter( ctr->monitor );
    QV_CHECK( ctr->value > 0 );
    ctr->value--;
    if ( ctr->value == 0 )
        qvBarrierUnblock( ctr->barrier );
    qvMonitorLeave( ctr->monitor );
}

void qvCounterWaitZero( QV_COUNTER *ctr )
{
    QV_CHECK( ctr );
    qvBarrierPass( ctr->barrier );
}

QV_BOOL qvCounterWaitZeroTimed( QV_COUNTER *ctr, QV_INT timeout )
{
    QV_CHECK( ctr );
    return qvBarrierPassTimed( ctr->barrier, timeout );
}
