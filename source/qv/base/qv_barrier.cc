#include <qv/base/qv_barrier.hh>

#include <errno.h>
#include <time.h>

#include <qv/sys/qv_int.h>
#include <qv/sys/qv_timestamp.hh>

namespace
{

// The longest wait on the condition, in milliseconds. The condition's deadlines are of the wall clock, so a jump of that
// clock can shift no more than one such slice; the length of a wait is measured on the monotonic clock.
constexpr QV_INT longestSlice = 1000;

constexpr QV_INT nanosPerMilli = 1000000;
constexpr QV_INT nanosPerSecond = 1000000000;

void lock( QV_BARRIER *barrier )
{
    if ( pthread_mutex_lock( &barrier->mutex ) != 0 )
    {
        QV_FAIL( "failed to lock mutex" );
    }
}

void unlock( QV_BARRIER *barrier )
{
    if ( pthread_mutex_unlock( &barrier->mutex ) != 0 )
    {
        QV_FAIL( "failed to unlock mutex" );
    }
}

struct timespec deadlineAfter( QV_INT nanos )
{
    struct timespec deadline;
    if ( clock_gettime( CLOCK_REALTIME, &deadline ) != 0 )
    {
        QV_FAIL( "failed to get time (realtime)" );
    }
    QV_INT sum = deadline.tv_nsec + nanos;
    deadline.tv_sec += static_cast<time_t>( sum / nanosPerSecond );
    deadline.tv_nsec = static_cast<long>( sum % nanosPerSecond );
    return deadline;
}

// Waits for a wake, for the longest slice at most.
void waitSlice( QV_BARRIER *barrier, QV_INT nanos )
{
    struct timespec deadline = deadlineAfter( qvIntMin( nanos, longestSlice * nanosPerMilli ) );
    int result = pthread_cond_timedwait( &barrier->condition, &barrier->mutex, &deadline );
    if ( result != 0 && result != ETIMEDOUT )
    {
        QV_FAIL( "failed to wait on condition variable" );
    }
}

void qv___BarrierFreeFunc( qvObj thisObj )
{
    QV_BARRIER *thisBarrier = qvBarrierFrom( thisObj );
    QV_CHECK( thisBarrier );
    if ( pthread_cond_destroy( &thisBarrier->condition ) != 0 )
    {
        QV_FAIL( "cond destruction failed" );
    }
    if ( pthread_mutex_destroy( &thisBarrier->mutex ) != 0 )
    {
        QV_FAIL( "mutex destruction failed" );
    }
}

} // namespace

QV_SORT_DEFINE( QV_BARRIER, qvBarrier, { .freeFunc = qv___BarrierFreeFunc } )

QV_BARRIER *qvBarrierCreate( QV_BOOL blocked )
{
    QV_BARRIER *barrier = qv::create<QV_BARRIER>( qvBarrierSort() );
    int res = pthread_mutex_init( &barrier->mutex, nullptr );
    QV_CHECK( res == 0 );
    res = pthread_cond_init( &barrier->condition, nullptr );
    QV_CHECK( res == 0 );
    barrier->open = !blocked;
    return barrier;
}

QV_BOOL qvBarrierIsBlocked( QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    lock( barrier );
    bool open = barrier->open;
    unlock( barrier );
    return !open;
}

void qvBarrierPass( QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    lock( barrier );
    while ( !barrier->open )
    {
        if ( pthread_cond_wait( &barrier->condition, &barrier->mutex ) != 0 )
        {
            QV_FAIL( "cond wait failed" );
        }
    }
    unlock( barrier );
}

QV_BOOL qvBarrierPassTimed( QV_BARRIER *barrier, QV_INT millisec )
{
    QV_CHECK( barrier );
    QV_CHECK( millisec >= -1 );
    if ( millisec == -1 )
    {
        qvBarrierPass( barrier );
        return QV_TRUE;
    }
    QV_INT start = qv___Timestamp();
    lock( barrier );
    while ( !barrier->open )
    {
        QV_INT elapsed = qvTimestampDiff( qv___Timestamp(), start );
        if ( elapsed >= millisec )
            break;
        waitSlice( barrier, qvIntMin( millisec - elapsed, longestSlice ) * nanosPerMilli );
    }
    bool passed = barrier->open;
    unlock( barrier );
    return passed;
}

QV_BOOL qv::barrierPassUntil( QV_BARRIER *barrier, QV_INT timestamp )
{
    QV_CHECK( barrier );
    if ( timestamp == -1 )
    {
        qvBarrierPass( barrier );
        return QV_TRUE;
    }
    lock( barrier );
    while ( !barrier->open )
    {
        QV_INT now = qv___Nanoseconds();
        QV_INT left = timestamp - now / nanosPerMilli;
        if ( left <= 0 )
            break;
        waitSlice( barrier, qvIntMin( left, longestSlice + 1 ) * nanosPerMilli - now % nanosPerMilli );
    }
    bool passed = barrier->open;
    unlock( barrier );
    return passed;
}

void qvBarrierBlock( QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    lock( barrier );
    barrier->open = false;
    unlock( barrier );
}

void qvBarrierUnblock( QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    lock( barrier );
    // While it is open nobody waits.
    if ( !barrier->open )
    {
        barrier->open = true;
        if ( pthread_cond_broadcast( &barrier->condition ) != 0 )
        {
            QV_FAIL( "failed to broadcast condition" );
        }
    }
    unlock( barrier );
}
