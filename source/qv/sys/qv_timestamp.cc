#include <qv/sys/qv_timestamp.hh>

#include <time.h>

#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_int.h>

void qv___TimestampStartup()
{
    struct timespec resolution;
    if ( clock_getres( CLOCK_MONOTONIC, &resolution ) != 0 )
    {
        QV_FAIL( "failed to get clock resolution (CLOCK_MONOTONIC)" );
    }
    QV_CHECK( resolution.tv_sec == 0 );
    QV_CHECK( resolution.tv_nsec <= 10000000 );
}

void qv___TimestampShutdown() {}

namespace
{

struct timespec monotonicTime()
{
    struct timespec now;
    if ( clock_gettime( CLOCK_MONOTONIC, &now ) != 0 )
    {
        QV_FAIL( "failed to get time (CLOCK_MONOTONIC)" );
    }
    return now;
}

} // namespace

QV_INT qv___Timestamp()
{
    struct timespec now = monotonicTime();
    QV_INT timestamp = static_cast<QV_INT>( now.tv_sec ) * 1000 + now.tv_nsec / 1000000;
    QV_CHECK( timestamp > 0 );
    return timestamp;
}

QV_INT qv___Nanoseconds()
{
    struct timespec now = monotonicTime();
    return static_cast<QV_INT>( now.tv_sec ) * 1000000000 + now.tv_nsec;
}

QV_INT qvTimestampDiff( QV_INT a, QV_INT b )
{
    return a > b ? qvIntSubSaturating( a, b ) : 0;
}
