#include "support/test.hh"
#include "exec/exec_support.hh"

#include <qv/exec/qv_timer.hh>
#include <qv/sys/qv_timestamp.hh>

using namespace test;

namespace
{

using Timer = Local<QV_TIMER>;

Timer timerOf( std::function<void()> func, std::function<void()> freed = nullptr )
{
    Local<qv___Obj> closure( closureOf( std::move( func ), std::move( freed ) ) );
    return Timer( qvTimerCreateWithSignalFunc( runClosure, closure ) );
}

Local<QV_TIME> secondsFromNow( QV_INT seconds )
{
    Local<QV_TIME> time( qvTimeNow() );
    qvTimeShiftSeconds( time.edit(), seconds );
    return time;
}

// Waits for one whole pass of the timer thread over what is due by now.
void passOnce()
{
    Gate gate;
    Timer timer = timerOf( [&] { gate.open(); } );
    qvTimerSchedule( timer, 0 );
    gate.pass();
}

void sleepFor( int milliseconds )
{
    std::this_thread::sleep_for( std::chrono::milliseconds( milliseconds ) );
}

} // namespace

TEST( Timer, WakesEachSortOfTarget )
{
    Gate processRan;
    Domain domain = domainWith( { 1, true } );
    Process process = processOn( domain, [&] { processRan.open(); } );
    Local<QV_BARRIER> barrier( qvBarrierCreate( QV_TRUE ) );
    Local<QV_EVENT_QUEUE> queue( qvEventQueueCreate() );
    Local<QV_BOXED_INT> event( qvBoxedIntCreate( 7 ) );
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    Local<QV_ALERT> alert( qvAlertCreate() );
    std::atomic<int> calls = 0;
    Timer timers[] = {
        Timer( qvTimerCreateWithProcess( process ) ),
        Timer( qvTimerCreateWithBarrier( barrier ) ),
        Timer( qvTimerCreateWithEventQueue( queue, qvBoxedIntObj( event ) ) ),
        Timer( qvTimerCreateWithSignal( sig ) ),
        Timer( qvTimerCreateWithAlert( alert ) ),
        timerOf( [&] { calls++; } ),
    };
    for ( Timer &timer : timers )
    {
        EXPECT_FALSE( qvTimerScheduled( timer ) );
        qvTimerSchedule( timer, 0 );
    }
    passOnce();
    for ( Timer &timer : timers )
        EXPECT_FALSE( qvTimerScheduled( timer ) );
    processRan.pass();
    EXPECT_FALSE( qvBarrierIsBlocked( barrier ) );
    EXPECT_EQ( qvBoxedIntObj( event ), Local<qv___Obj>( qvEventQueueReadEvent( queue ) ) );
    EXPECT_TRUE( qvSignalAsserted( sig ) );
    EXPECT_TRUE( qvAlertIsSet( alert ) );
    EXPECT_EQ( 1, calls );
    endProcess( process );
    EXPECT_DEATH( qvTimerCreateWithEventQueue( queue, nullptr ), "event" );
    EXPECT_DEATH( qvTimerCreateWithSignalFunc( nullptr, nullptr ), "func" );
}

TEST( Timer, FiresInOrderAndNotTooEarly )
{
    std::string order;
    Gate done;
    QV_INT start = qvTimestamp();
    QV_INT late = 0;
    Timer third = timerOf( [&] {
        order += '3';
        late = qv___Timestamp() - start;
        done.open();
    } );
    Timer first = timerOf( [&] { order += '1'; } );
    Timer second = timerOf( [&] { order += '2'; } );
    qvTimerSchedule( third, 300 );
    qvTimerScheduleAt( first, start + 100 );
    qvTimerScheduleAt( second, start + 200 );
    done.pass();
    EXPECT_EQ( "123", order );
    EXPECT_GE( late, 300 );
}

TEST( Timer, SchedulingAgainReplaces )
{
    std::atomic<int> calls = 0;
    Timer timer = timerOf( [&] { calls++; } );
    qvTimerSchedule( timer, 0x7fffffff );
    qvTimerScheduleAtTime( timer, secondsFromNow( 1000000 ) );
    qvTimerScheduleInfinite( timer );
    EXPECT_TRUE( qvTimerScheduled( timer ) );
    qvTimerSchedule( timer, 50000 );
    qvTimerSchedule( timer, 0 );
    passOnce();
    EXPECT_EQ( 1, calls );
    qvTimerScheduleAtTime( timer, secondsFromNow( 1000000 ) );
    EXPECT_TRUE( qvTimerScheduled( timer ) );
    qvTimerUnschedule( timer );
    EXPECT_FALSE( qvTimerScheduled( timer ) );
    qvTimerScheduleAt( timer, 0 );
    passOnce();
    EXPECT_EQ( 2, calls );
    qvTimerSchedule( timer, 200 );
    qvTimerUnschedule( timer );
    sleepFor( 220 );
    passOnce();
    EXPECT_EQ( 2, calls );
}

TEST( Timer, AbsoluteTimersOfOneTimeAllFire )
{
    std::string order;
    Timer first = timerOf( [&] { order += '1'; } );
    Timer second = timerOf( [&] { order += '2'; } );
    Timer third = timerOf( [&] { order += '3'; } );
    Timer never = timerOf( [&] { order += 'x'; } );
    Gate done;
    Timer last = timerOf( [&] { done.open(); } );
    Local<QV_TIME> time = secondsFromNow( 1 );
    qvTimerScheduleAtTime( first, time );
    qvTimerScheduleAtTime( second, time );
    qvTimerScheduleAtTime( never, time );
    qvTimerScheduleAtTime( third, time );
    qvTimerScheduleAtTime( last, time );
    qvTimerUnschedule( never );
    EXPECT_TRUE( qvTimerScheduled( first ) );
    done.pass();
    EXPECT_EQ( "123", order );
    order = "";
    qvTimerScheduleAtTime( second, secondsFromNow( -5 ) );
    qvTimerScheduleAtTime( first, secondsFromNow( -10000000 ) );
    for ( int round = 0; qvTimerScheduled( first ) || qvTimerScheduled( second ); round++ )
    {
        ASSERT_LT( round, 60000 );
        sleepFor( 1 );
    }
    passOnce();
    EXPECT_EQ( 2u, order.size() );
}

TEST( Timer, AReleasedOneDoesntFireUnlessItLingers )
{
    std::atomic<int> calls = 0;
    std::atomic<int> freed = 0;
    for ( bool linger : { false, true } )
    {
        Timer timer = timerOf( [&] { calls++; }, [&] { freed++; } );
        qv___TimerSetLinger( timer, linger );
        qvTimerSchedule( timer, linger ? 10 : 1000000 );
    }
    for ( int round = 0; freed < 2 && round < 60000; round++ )
        sleepFor( 1 );
    EXPECT_EQ( 1, calls );
    EXPECT_EQ( 2, freed );
    Timer infinite = timerOf( [&] { calls++; } );
    qvTimerScheduleInfinite( infinite );
    passOnce();
    EXPECT_TRUE( qvTimerScheduled( infinite ) );
}

// The last reference to a closure that owns a timer goes on the timer thread.
TEST( Timer, ATargetMayOwnATimer )
{
    std::atomic<bool> isFreed = false;
    {
        auto inner = std::make_shared<Timer>( timerOf( [] {} ) );
        qvTimerScheduleInfinite( *inner );
        Timer outer = timerOf( [inner] {}, [&] { isFreed = true; } );
        qv___TimerSetLinger( outer, QV_TRUE );
        qvTimerSchedule( outer, 5 );
        qvTimerUnschedule( outer );
    }
    for ( int round = 0; !isFreed && round < 60000; round++ )
        sleepFor( 1 );
    EXPECT_TRUE( isFreed );
}

TEST( Timer, ATargetMayScheduleItsTimerAgain )
{
    Gate done;
    int calls = 0;
    Timer *self = nullptr;
    Timer timer = timerOf( [&] {
        if ( ++calls < 5 )
            qvTimerSchedule( *self, 1 );
        else
            done.open();
    } );
    self = &timer;
    qvTimerSchedule( timer, 0 );
    done.pass();
    EXPECT_EQ( 5, calls );
}

TEST( Timer, TheClockStandsStillInARun )
{
    Domain domain = domainWith( {} );
    QV_INT first = 0, second = 0, real = 0;
    Process process = processOn( domain, [&] {
        first = qvTimestamp();
        sleepFor( 15 );
        second = qvTimestamp();
        real = qv___Timestamp();
    } );
    qvProcessSchedule( process );
    drain( domain );
    EXPECT_EQ( first, second );
    EXPECT_LT( second, real );
    EXPECT_GE( qvTimestamp(), real );
    endProcess( process );
}

TEST( Timer, CallersFaultsStopTheProcess )
{
    Timer timer = timerOf( [] {} );
    EXPECT_DEATH( qvTimerSchedule( timer, -1 ), "milliseconds >= 0" );
    EXPECT_DEATH( qvTimerSchedule( timer, QV_INT_MAX ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvTimerScheduleAt( timer, QV_INT_MAX ), "timestamp < QV_INT_MAX" );
    EXPECT_DEATH( qvTimerScheduleAt( timer, -1 ), "timestamp >= 0" );
    EXPECT_DEATH( qvTimerScheduleAtTime( timer, nullptr ), "time" );
}

// Timers that several threads schedule, cancel and release at random: no more firings than schedules, none after the
// release, and each schedule that nobody touched fires.
TEST( TimerStress, ScheduledCancelledAndReleasedAtRandom )
{
    Domain domain = domainWith( { 2, true } );
    std::atomic<long> runs = 0;
    Process process = processOn( domain, [&] { runs++; } );
    auto work = [&]( size_t number ) {
        std::minstd_rand random( static_cast<unsigned>( number + 1 ) );
        for ( int round = 0; round < 60; round++ )
        {
            auto fired = std::make_shared<std::atomic<long>>( 0 );
            std::vector<Timer> timers;
            long schedules = 0;
            for ( int idx = 0; idx < 20; idx++ )
                timers.push_back( idx % 4 == 0 ? Timer( qvTimerCreateWithProcess( process ) )
                                               : timerOf( [fired] { ++*fired; } ) );
            for ( int step = 0; step < 200; step++ )
            {
                Timer &timer = timers[random() % timers.size()];
                switch ( random() % 6 )
                {
                case 0:
                    qvTimerUnschedule( timer );
                    break;
                case 1:
                    qvTimerScheduleAtTime( timer, secondsFromNow( static_cast<QV_INT>( random() % 3 ) - 1 ) );
                    schedules++;
                    break;
                case 2:
                    qvTimerScheduleInfinite( timer );
                    break;
                default:
                    qvTimerSchedule( timer, static_cast<QV_INT>( random() % 3 ) );
                    schedules++;
                }
            }
            if ( round % 10 == 0 )
            {
                for ( Timer &timer : timers )
                    qvTimerSchedule( timer, 1 );
                schedules += static_cast<long>( timers.size() );
                for ( Timer &timer : timers )
                {
                    for ( int wait = 0; qvTimerScheduled( timer ) && wait < 60000; wait++ )
                        sleepFor( 1 );
                    EXPECT_FALSE( qvTimerScheduled( timer ) );
                }
            }
            timers.clear();
            EXPECT_LE( *fired, schedules );
        }
    };
    runOnThreads( 4, work );
    passOnce();
    endProcess( process );
    EXPECT_GT( runs, 0 );
}
