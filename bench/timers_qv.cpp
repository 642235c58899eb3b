// The library's cases of the area timers. Its timers have a thread of their own; the target is a function.
#include "timers.hpp"
#include "qv_case.hpp"
#include <qv/runtime/qv_author.h>

typedef struct BenchShot BENCH_SHOT;
struct BenchShot : qv___Obj
{
    Shot *shot;
};
QV_SORT_FUNCTIONS( BENCH_SHOT, benchShot )
QV_SORT_DEFINE( BENCH_SHOT, benchShot, {} )

namespace
{

void fire( qvObj closure )
{
    benchShotFrom( closure )->shot->fire();
}

struct Timers
{
    static constexpr bool many = true;
    using T = QV_TIMER *;
    void make( T &t, Shot *s )
    {
        auto *closure = static_cast<BENCH_SHOT *>( qv___ObjCreate( sizeof( BENCH_SHOT ), benchShotSort() ) );
        closure->shot = s;
        t = qvTimerCreateWithSignalFunc( fire, closure );
        benchShotRelease( closure );
    }
    void arm( T &t, int ms )
    {
        qvTimerSchedule( t, ms );
    }
    void cancel( T &t )
    {
        qvTimerUnschedule( t );
    }
    void destroy( T &t )
    {
        qvTimerRelease( t );
    }
    void wait()
    {
        while ( Shot::left )
            std::this_thread::sleep_for( std::chrono::milliseconds( 1 ) );
    }
};

} // namespace

void register_library( Bench &b )
{
    start_library();
    loop<Timers>( b, "qv" );
}
