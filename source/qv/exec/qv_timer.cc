#include <qv/exec/qv_timer.hh>

#include <qv/base/qv_alert.h>
#include <qv/base/qv_barrier.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_event_queue.h>
#include <qv/base/qv_monitor.hh>
#include <qv/base/qv_priority_map.hh>
#include <qv/base/qv_signal.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_time.h>
#include <qv/exec/qv_exec_block.hh>
#include <qv/exec/qv_process.h>
#include <qv/exec/qv_rest.hh>
#include <qv/exec/qv_thread.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_int.h>
#include <qv/sys/qv_timestamp.hh>

namespace
{

using Closure = QV___TIMER_CLOSURE;

// Guards both structures, the flags schedAbs and schedRel of all timers, the two numbers and the abort flag. Never held
// while a target fires.
constinit QV_MONITOR *timerMonitor = nullptr;

// The closures in the order of their timestamps.
constinit QV_PRIORITY_MAP *timerRelPrioMap = nullptr;

// From time keys to closures.
constinit QV_DICT *timerAbsDict = nullptr;
constinit QV_INT absNumber = 0;

// How many times a timer has been scheduled.
constinit QV_INT scheduleNumber = 0;

constinit bool timerThreadAbort = false;

// Where the timer thread sleeps.
constinit QV_BARRIER *timerThreadBarrier = nullptr;
constinit QV_THREAD *timerThread = nullptr;

void qv___TimerClosureFreeFunc( qvObj thisObj )
{
    Closure *thisClosure = qv___TimerClosureFrom( thisObj );
    QV_CHECK( thisClosure );
    QV_CHECK( !thisClosure->flags.sched.isOn() );
    QV_CHECK( !thisClosure->flags.schedAbs );
    QV_CHECK( !thisClosure->flags.schedRel );
    qv::releaseOptional( thisClosure->process );
    qv::releaseOptional( thisClosure->barrier );
    qv::releaseOptional( thisClosure->eventQueue );
    qv::releaseOptional( thisClosure->event );
    qv::releaseOptional( thisClosure->signal );
    qv::releaseOptional( thisClosure->alert );
    qv::releaseOptional( thisClosure->signalClosure );
}

// By the tokens, as objects of a sort without an order would be, but without the way there: the map of relative timers
// compares closures all the time.
QV_INT qv___TimerClosureCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_INT thisToken = static_cast<Closure *>( thisObj )->token;
    QV_INT thatToken = static_cast<Closure *>( thatObj )->token;
    return ( thisToken > thatToken ) - ( thisToken < thatToken );
}

void qv___TimerAbsKeyFreeFunc( qvObj thisObj )
{
    QV___TIMER_ABS_KEY *thisKey = qv___TimerAbsKeyFrom( thisObj );
    QV_CHECK( thisKey );
    qv::release( qv::objOf( thisKey->time ) );
}

QV_INT qv___TimerAbsKeyCompareFunc( qvObj thisObj, qvObj thatObj )
{
    auto *thisKey = static_cast<QV___TIMER_ABS_KEY *>( thisObj );
    auto *thatKey = static_cast<QV___TIMER_ABS_KEY *>( thatObj );
    QV_INT order = qvTimeCompare( thisKey->time, thatKey->time );
    return order != 0 ? order : ( thisKey->number > thatKey->number ) - ( thisKey->number < thatKey->number );
}

QV___TIMER_ABS_KEY *createKey( QV_TIME *time )
{
    auto *key = qv::create<QV___TIMER_ABS_KEY>( qv___TimerAbsKeySort() );
    key->time = qv::retained( time );
    key->number = absNumber++;
    return key;
}

// What the steps do with the structures, under the monitor.
class Structures
{
  public:
    // The timestamp or the time is that of the entry to come; -1 and null for none.
    explicit Structures( Closure *closure, QV_INT timestamp, QV_TIME *time )
        : closure_( closure ), timestamp_( timestamp ), time_( time )
    {
    }

    void removeRelative()
    {
        // A new place in the map takes the one before away.
        if ( timestamp_ < 0 )
        {
            qvPriorityMapDel( &timerRelPrioMap, closure_ );
        }
    }

    void removeAbsolute()
    {
        const qv___DictPair *pairs = qv::dictPairs( timerAbsDict );
        QV_INT idx = 0;
        while ( pairs[idx].val != closure_ )
        {
            idx++;
            QV_CHECK( idx < qv::dictLength( timerAbsDict ) );
        }
        qvDictDelAt( &timerAbsDict, idx );
    }

    void enterRelative()
    {
        qvPriorityMapSet( &timerRelPrioMap, timestamp_, closure_ );
    }

    void enterAbsolute()
    {
        qv::Local<QV___TIMER_ABS_KEY> key( createKey( time_ ) );
        qvDictSetObjKey( &timerAbsDict, key, closure_ );
    }

  private:
    Closure *closure_;
    QV_INT timestamp_;
    QV_TIME *time_;
};

bool isFirstRelative( Closure *closure )
{
    return qv::Local<qv___Obj>( qvPriorityMapLowest( timerRelPrioMap, nullptr ) ) == closure;
}

bool isFirstAbsolute( Closure *closure )
{
    return qv::dictPairs( timerAbsDict )[0].val == closure;
}

enum class Wake
{
    always,
    ifFirst,
    never,
};

// Replaces the timer's schedule by one at a timestamp.
void scheduleRelative( Closure *closure, QV_INT timestamp, Wake wake )
{
    bool isWaking = wake == Wake::always;
    {
        qv::Entered entered( timerMonitor );
        Structures structures( closure, timestamp, nullptr );
        qv::timerUnschedule( &closure->flags, structures );
        qv::timerEnterRelative( &closure->flags, structures );
        scheduleNumber++;
        isWaking |= wake == Wake::ifFirst && isFirstRelative( closure );
    }
    if ( isWaking )
    {
        qvBarrierUnblock( timerThreadBarrier );
    }
}

void scheduleAbsolute( Closure *closure, QV_TIME *time )
{
    bool isWaking = false;
    {
        qv::Entered entered( timerMonitor );
        Structures structures( closure, -1, time );
        qv::timerUnschedule( &closure->flags, structures );
        qv::timerEnterAbsolute( &closure->flags, structures );
        scheduleNumber++;
        isWaking = isFirstAbsolute( closure );
    }
    if ( isWaking )
    {
        qvBarrierUnblock( timerThreadBarrier );
    }
}

void qv___TimerFreeFunc( qvObj thisObj )
{
    QV_TIMER *thisTimer = qvTimerFrom( thisObj );
    QV_CHECK( thisTimer );
    {
        qv::Entered entered( timerMonitor );
        if ( !thisTimer->linger )
        {
            Structures structures( thisTimer->closure, -1, nullptr );
            qv::timerUnschedule( &thisTimer->closure->flags, structures );
        }
    }
    qv::release( thisTimer->closure );
}

void fire( Closure *closure )
{
    if ( closure->process )
        qvProcessSchedule( closure->process );
    else if ( closure->barrier )
        qvBarrierUnblock( closure->barrier );
    else if ( closure->eventQueue )
        qvEventQueueWriteEvent( closure->eventQueue, closure->event );
    else if ( closure->signal )
        qvSignalAssert( closure->signal );
    else if ( closure->alert )
        qvAlertSet( closure->alert );
    else
        closure->signalFunc( closure->signalClosure );
}

// Decides about a closure that is due and has left its structure. Takes the reference. It fires outside the monitor, and the
// reference goes there as well: it may be the last one, and what the target owns may be a timer.
void fireIfScheduled( Closure *closure )
{
    bool isFiring = qv::timerTake( &closure->flags );
    qvMonitorLeave( timerMonitor );
    if ( isFiring )
    {
        fire( closure );
    }
    qv::release( closure );
    qvMonitorEnter( timerMonitor );
}

// Fires the relative timers that are due and gives the wait until the next one. The monitor is held.
QV_INT passRelative( QV_INT now )
{
    while ( qvPriorityMapLength( timerRelPrioMap ) > 0 )
    {
        QV_INT timestamp = qvPriorityMapPriorityAt( timerRelPrioMap, 0 );
        if ( now < timestamp )
            return timestamp - now;
        Closure *closure = qv___TimerClosureFrom( qvPriorityMapValueAt( timerRelPrioMap, 0 ) );
        qvPriorityMapDelAt( &timerRelPrioMap, 0 );
        fireIfScheduled( closure );
    }
    return QV_INT_MAX;
}

// The time of the first absolute timer, retained.
QV_TIME *firstTime()
{
    return qv::retained( static_cast<QV___TIMER_ABS_KEY *>( qv::dictPairs( timerAbsDict )[0].key )->time );
}

// The same for absolute timers. The wall clock can jump, so they are looked at every 10 seconds while far away and every
// second when near.
QV_INT passAbsolute( QV_TIME **now )
{
    qvTimeSetNow( now );
    while ( qv::dictLength( timerAbsDict ) > 0 )
    {
        qv::Local<QV_TIME> time( firstTime() );
        if ( qvTimeCompare( time, *now ) > 0 )
        {
            qvTimeShiftSeconds( now, 10 );
            return qvTimeCompare( time, *now ) >= 0 ? 10000 : 1000;
        }
        Closure *closure = qv___TimerClosureFrom( qvDictValueAt( timerAbsDict, 0 ) );
        qvDictDelAt( &timerAbsDict, 0 );
        fireIfScheduled( closure );
    }
    return QV_INT_MAX;
}

// Someone who schedules many timers in a row would be interrupted for each of them by the timer thread, which is more
// urgent and has nothing to do but to look. So the thread naps for a moment before it waits again, in which timers gather
// without a wake, while that brings several; not if one is about to be due.
class TimerRest
{
  public:
    TimerRest() : napping_( qv::Habit::SELDOM / 8 ) {}

    // until is the timestamp of the next look, -1 for none.
    void before( QV_INT until )
    {
        napped_ = napping_.isDue() && ( until == -1 || until - qv___Timestamp() >= NEAR );
        if ( napped_ )
            qv::nap( NAP );
    }

    // Under the monitor.
    void note()
    {
        if ( napped_ )
            napping_.note( scheduleNumber - seen_ > 1 );
        seen_ = scheduleNumber;
    }

  private:
    // In nanoseconds.
    static constexpr long NAP = 50000;

    // In milliseconds, of which the first may be over.
    static constexpr QV_INT NEAR = 2;

    qv::Habit napping_;
    QV_INT seen_ = 0;
    bool napped_ = false;
};

// The order of passing, blocking and only then looking is what keeps a wake from being lost: an unblock that comes before
// the block belongs to a change that the look will see.
void runTimerThread( void )
{
    QV_INT until = -1;
    bool isAborted = false;
    qv::Local<QV_TIME> calendarNow( qvTimeCreate() );
    TimerRest rest;
    while ( !isAborted )
    {
        rest.before( until );
        qv::barrierPassUntil( timerThreadBarrier, until );
        qvBarrierBlock( timerThreadBarrier );
        qv::Entered entered( timerMonitor );
        isAborted = timerThreadAbort;
        rest.note();
        QV_INT now = qvTimestamp();
        QV_CHECK( now < QV_INT_MAX );
        QV_INT relativeWait = passRelative( now );
        QV_INT absoluteWait = passAbsolute( calendarNow.edit() );
        QV_INT wait = qvIntMin( relativeWait, absoluteWait );
        until = wait < QV_INT_MAX - now ? now + wait : -1;
    }
}

Closure *closureOf( QV_TIMER *timer )
{
    QV_CHECK( timer );
    return timer->closure;
}

QV_TIMER *createTimer()
{
    auto *timer = qv::create<QV_TIMER>( qvTimerSort() );
    auto *closure = qv::create<Closure>( qv___TimerClosureSort() );
    closure->process = nullptr;
    closure->barrier = nullptr;
    closure->eventQueue = nullptr;
    closure->event = nullptr;
    closure->signal = nullptr;
    closure->alert = nullptr;
    closure->signalFunc = nullptr;
    closure->signalClosure = nullptr;
    closure->flags.initialize();
    closure->token = qv___ObjUnique( closure );
    timer->closure = closure;
    timer->linger = false;
    return timer;
}

} // namespace

QV_SORT_DEFINE( QV_TIMER, qvTimer, { .freeFunc = qv___TimerFreeFunc } )
QV_SORT_DEFINE( QV___TIMER_CLOSURE, qv___TimerClosure,
                { .freeFunc = qv___TimerClosureFreeFunc, .compareFunc = qv___TimerClosureCompareFunc } )
QV_SORT_DEFINE( QV___TIMER_ABS_KEY, qv___TimerAbsKey,
                { .freeFunc = qv___TimerAbsKeyFreeFunc, .compareFunc = qv___TimerAbsKeyCompareFunc } )

void qv___TimerStartup()
{
    timerMonitor = qvMonitorCreate();
    timerRelPrioMap = qvPriorityMapCreate();
    timerAbsDict = qvDictCreate();
    absNumber = 0;
    scheduleNumber = 0;
    timerThreadAbort = false;
    timerThreadBarrier = qvBarrierCreate( QV_TRUE );
    qv::Local<QV_STRING> name( qvStringCreateFromCstr( "QV_TIMER", -1 ) );
    timerThread = qvThreadTrySpawn( name, QV_THREAD_PRIORITY_HIGHEST, runTimerThread, nullptr );
    QV_CHECK( timerThread );
}

void qv___TimerShutdown()
{
    {
        qv::Entered entered( timerMonitor );
        timerThreadAbort = true;
    }
    qvBarrierUnblock( timerThreadBarrier );
    qvThreadJoin( timerThread );
    QV_CHECK( qvPriorityMapLength( timerRelPrioMap ) == 0 );
    QV_CHECK( qvDictLength( timerAbsDict ) == 0 );
    qv::retire( &timerThread );
    qv::retire( &timerThreadBarrier );
    qv::retire( &timerAbsDict );
    qv::retire( &timerRelPrioMap );
    qv::retire( &timerMonitor );
}

QV_TIMER *qvTimerCreateWithProcess( QV_PROCESS *process )
{
    QV_CHECK( process );
    QV_TIMER *timer = createTimer();
    timer->closure->process = qv::retained( process );
    return timer;
}

QV_TIMER *qvTimerCreateWithBarrier( QV_BARRIER *barrier )
{
    QV_CHECK( barrier );
    QV_TIMER *timer = createTimer();
    timer->closure->barrier = qv::retained( barrier );
    return timer;
}

QV_TIMER *qvTimerCreateWithEventQueue( QV_EVENT_QUEUE *eventQueue, qvObj event )
{
    QV_CHECK( eventQueue );
    QV_CHECK( event );
    QV_TIMER *timer = createTimer();
    timer->closure->eventQueue = qv::retained( eventQueue );
    timer->closure->event = qv::retained( event );
    return timer;
}

QV_TIMER *qvTimerCreateWithSignal( QV_SIGNAL *signal )
{
    QV_CHECK( signal );
    QV_TIMER *timer = createTimer();
    timer->closure->signal = qv::retained( signal );
    return timer;
}

QV_TIMER *qvTimerCreateWithAlert( QV_ALERT *alert )
{
    QV_CHECK( alert );
    QV_TIMER *timer = createTimer();
    timer->closure->alert = qv::retained( alert );
    return timer;
}

QV_TIMER *qvTimerCreateWithSignalFunc( QV_TIMER_FUNC func, qvObj closure )
{
    QV_CHECK( func );
    QV_TIMER *timer = createTimer();
    timer->closure->signalFunc = func;
    timer->closure->signalClosure = qv::retainedOptional( closure );
    return timer;
}

void qvTimerSchedule( QV_TIMER *timer, QV_INT milliseconds )
{
    Closure *closure = closureOf( timer );
    QV_CHECK( milliseconds >= 0 );
    QV_INT now = qvTimestamp();
    QV_CHECK( QV_INT_ADD_OK( now, milliseconds ) );
    QV_INT timestamp = now + milliseconds;
    QV_CHECK( timestamp < QV_INT_MAX );
    scheduleRelative( closure, timestamp, Wake::always );
}

void qvTimerScheduleAt( QV_TIMER *timer, QV_INT timestamp )
{
    Closure *closure = closureOf( timer );
    QV_CHECK( timestamp >= 0 );
    QV_CHECK( timestamp < QV_INT_MAX );
    scheduleRelative( closure, timestamp, Wake::ifFirst );
}

void qvTimerScheduleAtTime( QV_TIMER *timer, QV_TIME *time )
{
    Closure *closure = closureOf( timer );
    QV_CHECK( time );
    scheduleAbsolute( closure, time );
}

void qvTimerScheduleInfinite( QV_TIMER *timer )
{
    scheduleRelative( closureOf( timer ), QV_INT_MAX, Wake::never );
}

void qvTimerUnschedule( QV_TIMER *timer )
{
    qv::timerCancel( &closureOf( timer )->flags );
}

QV_BOOL qvTimerScheduled( QV_TIMER *timer )
{
    return closureOf( timer )->flags.sched.isOn();
}

void qv___TimerSetLinger( QV_TIMER *timer, QV_BOOL linger )
{
    QV_CHECK( timer );
    timer->linger = linger;
}

QV_INT qvTimestamp( void )
{
    QV_INT processTimestamp = qv___exec_block.processTimestamp;
    return processTimestamp != 0 ? processTimestamp : qv___Timestamp();
}
