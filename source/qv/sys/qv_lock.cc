#include <qv/sys/qv_lock.hh>

#include <qv/sys/qv_check.hh>

void qv___LockInitialize( qv___Lock *lock )
{
    QV_CHECK( lock );
    int res = pthread_mutex_init( &lock->mutex, nullptr );
    QV_CHECK( res == 0 );
}

void qv___LockFinalize( qv___Lock *lock )
{
    QV_CHECK( lock );
    int res = pthread_mutex_destroy( &lock->mutex );
    QV_CHECK( res == 0 );
}

void qv___LockAcquire( qv___Lock *lock )
{
    QV_CHECK( lock );
    int res = pthread_mutex_lock( &lock->mutex );
    QV_CHECK( res == 0 );
}

void qv___LockRelease( qv___Lock *lock )
{
    QV_CHECK( lock );
    int res = pthread_mutex_unlock( &lock->mutex );
    QV_CHECK( res == 0 );
}
