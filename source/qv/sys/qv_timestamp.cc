#include <qv/sys/qv_timestamp.hh>

#include <stdint.h>
#include <time.h>
#if defined( __i386__ ) || defined( __x86_64__ )
#include <cpuid.h>
#endif

#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_int.h>

namespace
{

// The longest that a tick of a steady processor counter takes: they all count at half a gigahertz or faster.
constexpr QV_INT TICK_NANOSECONDS = 2;

// A thread's last reading of the clock. It stands while the counter, which is read in less than half the time, proves that
// its millisecond isn't over.
struct Reading
{
    QV_INT timestamp;
    uint64_t ticks;
    uint64_t validTicks; // 0 without a counter to rely on
};

constinit thread_local Reading reading __attribute__( ( tls_model( "initial-exec" ) ) ) = {};

#if defined( __i386__ ) || defined( __x86_64__ )

constinit bool isCounterSteady = false;

// Whether the counter never stops and never changes its pace.
bool hasSteadyCounter()
{
    unsigned int eax, ebx, ecx, edx;
    return __get_cpuid( 0x80000007, &eax, &ebx, &ecx, &edx ) && ( edx & 0x100 );
}

uint64_t counterTicks()
{
    return __builtin_ia32_rdtsc();
}

#else

constexpr bool isCounterSteady = false;

uint64_t counterTicks()
{
    return 0;
}

#endif

struct timespec monotonicTime()
{
    struct timespec now;
    if ( clock_gettime( CLOCK_MONOTONIC, &now ) != 0 )
    {
        QV_FAIL( "failed to get time (CLOCK_MONOTONIC)" );
    }
    return now;
}

QV_INT readTimestamp( uint64_t ticks )
{
    struct timespec now = monotonicTime();
    QV_INT timestamp = static_cast<QV_INT>( now.tv_sec ) * 1000 + now.tv_nsec / 1000000;
    QV_CHECK( timestamp > 0 );
    if ( isCounterSteady )
    {
        // The ticks are from before the clock was read, so the reading ends rather too early.
        uint64_t left = static_cast<uint64_t>( 1000000 - now.tv_nsec % 1000000 );
        reading = { timestamp, ticks, left / TICK_NANOSECONDS };
    }
    return timestamp;
}

} // namespace

void qv___TimestampStartup()
{
    struct timespec resolution;
    if ( clock_getres( CLOCK_MONOTONIC, &resolution ) != 0 )
    {
        QV_FAIL( "failed to get clock resolution (CLOCK_MONOTONIC)" );
    }
    QV_CHECK( resolution.tv_sec == 0 );
    QV_CHECK( resolution.tv_nsec <= 10000000 );
#if defined( __i386__ ) || defined( __x86_64__ )
    isCounterSteady = hasSteadyCounter();
#endif
}

void qv___TimestampShutdown() {}

QV_INT qv___Timestamp()
{
    // A counter of another processor may be behind; the difference is then too large to count.
    uint64_t ticks = counterTicks();
    return ticks - reading.ticks < reading.validTicks ? reading.timestamp : readTimestamp( ticks );
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
