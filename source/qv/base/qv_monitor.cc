#include <qv/base/qv_monitor.hh>

namespace
{

void qv___MonitorFreeFunc( qvObj thisObj )
{
    QV_MONITOR *thisMonitor = qvMonitorFrom( thisObj );
    QV_CHECK( thisMonitor );
    QV_CHECK( !thisMonitor->entered );
    qv___LockFinalize( &thisMonitor->lock );
}

} // namespace

QV_SORT_DEFINE( QV_MONITOR, qvMonitor, { .freeFunc = qv___MonitorFreeFunc } )

QV_MONITOR *qvMonitorCreate( void )
{
    QV_MONITOR *monitor = qv::create<QV_MONITOR>( qvMonitorSort() );
    qv___LockInitialize( &monitor->lock );
    monitor->entered = false;
    return monitor;
}

void qvMonitorEnter( QV_MONITOR *monitor )
{
    QV_CHECK( monitor );
    qv___LockAcquire( &monitor->lock );
    QV_CHECK( !monitor->entered );
    monitor->entered = true;
}

void qvMonitorLeave( QV_MONITOR *monitor )
{
    QV_CHECK( monitor );
    QV_CHECK( monitor->entered );
    monitor->entered = false;
    qv___LockRelease( &monitor->lock );
}
