// The protocols of the library over model atomics, through all interleavings of two or three threads; and the same with a
// fault put in, which must be found.

#include "support/test.hh"
#include "support/explorer.hh"

#include <qv/base/qv_signal_protocol.hh>
#include <qv/exec/qv_process_protocol.hh>
#include <qv/exec/qv_timer_protocol.hh>

using namespace test;

namespace
{

// --- Processes: threads that schedule or halt, and one process thread.

struct ProcessModel
{
    qv::ProcessFlags<ModelBool> flags = {};
    int queued = 0; // entries in the process thread's queue
    int references = 1;
    bool isRunning = false;
    bool isEnded = false;
    bool isHaltComplete = false; // a halt has returned
    bool isHaltAsked = false;
    bool wasHaltComplete = false; // the same when the execute began
    int busyCallers = 0;
    bool asked[2] = {};
    bool served[2] = {};
    QV_INT runs = 0;
};

class ProcessHost
{
  public:
    explicit ProcessHost( ProcessModel *model ) : model_( model ) {}

    void noteScheduled() {}

    void retain()
    {
        model_->references++;
    }

    void enqueue()
    {
        if ( model_->queued > 0 )
            Explorer::fail( "queued twice" );
        if ( model_->isRunning )
            Explorer::fail( "queued while it runs" );
        model_->queued++;
    }

    void takeHead()
    {
        model_->queued--;
        model_->wasHaltComplete = model_->isHaltComplete;
    }

    QV_INT end()
    {
        model_->isEnded = true;
        return -1;
    }

    QV_INT run()
    {
        if ( model_->isEnded )
            Explorer::fail( "run after the end" );
        if ( model_->wasHaltComplete )
            Explorer::fail( "run after the halt" );
        model_->runs++;
        model_->isRunning = true;
        for ( int caller = 0; caller < 2; caller++ )
            model_->served[caller] |= model_->asked[caller];
        if ( insideRun )
            insideRun( this );
        model_->isRunning = false;
        return 0;
    }

    void checkScheduled( bool wasScheduled )
    {
        if ( !wasScheduled )
            Explorer::fail( "the place was free" );
    }

    void release()
    {
        if ( --model_->references == 0 )
            Explorer::fail( "released once too often" );
    }

    void enqueueAgain( QV_INT )
    {
        enqueue();
    }

    ProcessModel *model_;
    void ( *insideRun )( ProcessHost *host ) = nullptr;
};

using Execute = void ( * )( qv::ProcessFlags<ModelBool> *, ProcessHost & );

void rightExecute( qv::ProcessFlags<ModelBool> *flags, ProcessHost &host )
{
    qv::processExecute( flags, host );
}

void withoutStep8( qv::ProcessFlags<ModelBool> *flags, ProcessHost &host )
{
    host.takeHead();
    QV_INT time = qv::processConsume( flags ) ? host.end() : host.run();
    if ( flags->extPending.turnOff() )
    {
        host.enqueueAgain( time );
        return;
    }
    host.checkScheduled( flags->extScheduled.turnOff() );
    host.release();
}

void stepsSixAndSevenSwapped( qv::ProcessFlags<ModelBool> *flags, ProcessHost &host )
{
    host.takeHead();
    QV_INT time = qv::processConsume( flags ) ? host.end() : host.run();
    host.checkScheduled( flags->extScheduled.turnOff() );
    if ( flags->extPending.turnOff() )
        host.enqueueAgain( time );
    else
        host.release();
}

void haltReadAfterTheRun( qv::ProcessFlags<ModelBool> *flags, ProcessHost &host )
{
    host.takeHead();
    flags->extPending.turnOff();
    QV_INT time = host.run();
    if ( flags->extHalted.isOn() )
        time = host.end();
    qv::processKeep( flags, host ) ? host.enqueueAgain( time ) : host.release();
}

void haltReadBeforeTheRequest( qv::ProcessFlags<ModelBool> *flags, ProcessHost &host )
{
    host.takeHead();
    bool isHalted = flags->extHalted.isOn();
    flags->extPending.turnOff();
    QV_INT time = isHalted ? host.end() : host.run();
    qv::processKeep( flags, host ) ? host.enqueueAgain( time ) : host.release();
}

enum class Caller
{
    schedules,
    halts,
};

std::string checkProcess( const ProcessModel &model, int callers )
{
    if ( model.references != 1 )
        return "references left";
    if ( model.isHaltAsked && !model.isEnded )
        return "a halt without an end";
    for ( int caller = 0; caller < callers && !model.isHaltAsked; caller++ )
    {
        if ( model.asked[caller] && !model.served[caller] )
            return "a request was lost";
    }
    return "";
}

Explorer::Outcome exploreProcess( std::vector<Caller> callers, Execute execute,
                                  void ( *insideRun )( ProcessHost * ) = nullptr )
{
    Explorer explorer;
    return explorer.explore( [=] {
        auto model = std::make_shared<ProcessModel>();
        model->busyCallers = static_cast<int>( callers.size() );
        Explorer::Model result;
        for ( size_t caller = 0; caller < callers.size(); caller++ )
        {
            result.threads.push_back( [=] {
                ProcessHost host( model.get() );
                if ( callers[caller] == Caller::halts )
                {
                    model->isHaltAsked = true;
                    qv::processHalt( &model->flags, host );
                    model->isHaltComplete = true;
                }
                else
                {
                    model->asked[caller] = true;
                    qv::processSchedule( &model->flags, host );
                }
                model->busyCallers--;
            } );
        }
        result.threads.push_back( [=] {
            ProcessHost host( model.get() );
            host.insideRun = insideRun;
            while ( true )
            {
                Explorer::stepWhen( [=] { return model->queued > 0 || model->busyCallers == 0; } );
                if ( model->queued == 0 )
                    return;
                execute( &model->flags, host );
            }
        } );
        result.check = [=] { return checkProcess( *model, static_cast<int>( callers.size() ) ); };
        return result;
    } );
}

void scheduleInFirstRun( ProcessHost *host )
{
    if ( host->model_->runs == 1 )
    {
        host->model_->isRunning = false;
        qv::processSchedule( &host->model_->flags, *host );
        host->model_->isRunning = true;
    }
}

// --- Timers: one monitor, one structure, the timer thread and threads that cancel and schedule.

struct TimerModel
{
    qv::TimerFlags<ModelBool> flags = {};
    ModelLock monitor;
    int entries = 0;
    int schedules = 0;
    int firings = 0;
    int cancels = 0; // that won against the firing
    int busyUsers = 0;
};

struct TimerHost
{
    TimerModel *model;

    void removeRelative()
    {
        if ( model->entries-- != 1 )
            Explorer::fail( "not in the structure" );
    }

    void removeAbsolute()
    {
        Explorer::fail( "never absolute" );
    }

    void enterRelative()
    {
        if ( model->entries++ != 0 )
            Explorer::fail( "in the structure twice" );
    }
};

using Take = bool ( * )( qv::TimerFlags<ModelBool> * );

// Looks first and turns off later.
bool takeInTwoSteps( qv::TimerFlags<ModelBool> *flags )
{
    flags->schedRel = false;
    bool isFiring = flags->sched.isOn();
    flags->sched.turnOff();
    return isFiring;
}

// Leaves the timer marked as standing in the structure.
bool takeWithoutTheMark( qv::TimerFlags<ModelBool> *flags )
{
    return flags->sched.turnOff();
}

void scheduleTimer( TimerModel *model )
{
    TimerHost host = { model };
    model->monitor.acquire();
    qv::timerUnschedule( &model->flags, host );
    qv::timerEnterRelative( &model->flags, host );
    model->schedules++;
    model->monitor.release();
}

void cancelTimer( TimerModel *model )
{
    if ( qv::timerCancel( &model->flags ) )
        model->cancels++;
}

// Takes out whatever is there, as if everything were due at once.
void runTimerThread( TimerModel *model, Take take )
{
    while ( true )
    {
        Explorer::stepWhen( [=] { return model->entries > 0 || model->busyUsers == 0; } );
        model->monitor.acquire();
        if ( model->entries > 0 )
        {
            model->entries--;
            bool isFiring = take( &model->flags );
            model->monitor.release();
            model->firings += isFiring;
        }
        else
        {
            bool isEnd = model->busyUsers == 0;
            model->monitor.release();
            if ( isEnd )
                return;
        }
    }
}

using TimerUser = std::vector<void ( * )( TimerModel * )>;

Explorer::Outcome exploreTimer( const std::vector<TimerUser> &users, Take take )
{
    Explorer explorer;
    return explorer.explore( [=] {
        auto model = std::make_shared<TimerModel>();
        model->busyUsers = static_cast<int>( users.size() );
        Explorer::Model result;
        for ( const TimerUser &user : users )
        {
            result.threads.push_back( [=] {
                for ( auto act : user )
                    act( model.get() );
                model->busyUsers--;
            } );
        }
        result.threads.push_back( [=] { runTimerThread( model.get(), take ); } );
        result.check = [=]() -> std::string {
            if ( model->flags.sched.value || model->flags.schedRel )
                return "still scheduled, but in no structure";
            if ( model->firings + model->cancels > model->schedules )
                return "fired and cancelled";
            if ( model->schedules == 1 && model->firings + model->cancels != 1 )
                return "neither fired nor cancelled";
            return model->firings + model->cancels == 0 ? "nothing fired" : "";
        };
        return result;
    } );
}

// --- Signals: threads that attach a target each, and one or two that assert.

struct SignalModel
{
    ModelBool asserted = {};
    ModelLock lock;
    bool isKept[2] = {};
    int fired[2] = {};
};

struct SignalHost
{
    SignalModel *model;
    int target;

    void lock()
    {
        model->lock.acquire();
    }

    void unlock()
    {
        model->lock.release();
    }

    void fire()
    {
        model->fired[target]++;
    }

    void keep()
    {
        model->isKept[target] = true;
    }

    void fireAll()
    {
        for ( int idx = 0; idx < 2; idx++ )
        {
            model->fired[idx] += model->isKept[idx];
            model->isKept[idx] = false;
        }
    }
};

using SignalStep = void ( * )( ModelBool *, SignalHost & );

void attachThatLooksBeforeTheLock( ModelBool *asserted, SignalHost &host )
{
    bool isAsserted = asserted->isOn();
    host.lock();
    isAsserted ? host.fire() : host.keep();
    host.unlock();
}

void assertThatFiresFirst( ModelBool *asserted, SignalHost &host )
{
    host.lock();
    host.fireAll();
    host.unlock();
    asserted->turnOn();
}

Explorer::Outcome exploreSignal( int asserts, SignalStep attach, SignalStep assertIt )
{
    Explorer explorer;
    return explorer.explore( [=] {
        auto model = std::make_shared<SignalModel>();
        Explorer::Model result;
        for ( int target = 0; target < 2; target++ )
        {
            result.threads.push_back( [=] {
                SignalHost host = { model.get(), target };
                attach( &model->asserted, host );
            } );
        }
        for ( int idx = 0; idx < asserts; idx++ )
        {
            result.threads.push_back( [=] {
                SignalHost host = { model.get(), -1 };
                assertIt( &model->asserted, host );
            } );
        }
        result.check = [=]() -> std::string {
            if ( model->fired[0] > 1 || model->fired[1] > 1 )
                return "fired twice";
            return model->fired[0] == 1 && model->fired[1] == 1 ? "" : "missed";
        };
        return result;
    } );
}

std::string faultOf( const Explorer::Outcome &outcome )
{
    return outcome.fault.substr( 0, outcome.fault.rfind( " after" ) );
}

} // namespace

TEST( ProcessModel, EveryRequestIsServedAndEveryHaltEnds )
{
    if ( !canExplore )
        GTEST_SKIP();
    const std::vector<Caller> cases[] = {
        { Caller::schedules },
        { Caller::halts },
        { Caller::schedules, Caller::schedules },
        { Caller::schedules, Caller::halts },
        { Caller::halts, Caller::halts },
    };
    for ( const auto &callers : cases )
    {
        Explorer::Outcome outcome = exploreProcess( callers, rightExecute );
        EXPECT_EQ( "", outcome.fault ) << outcome.runs;
        EXPECT_GT( outcome.runs, 1 );
    }
    EXPECT_EQ( "", exploreProcess( { Caller::schedules }, rightExecute, scheduleInFirstRun ).fault );
    EXPECT_EQ( "", exploreProcess( { Caller::halts }, rightExecute, scheduleInFirstRun ).fault );
}

TEST( ProcessModel, FaultsPutInAreFound )
{
    if ( !canExplore )
        GTEST_SKIP();
    const std::vector<Caller> schedules = { Caller::schedules, Caller::schedules };
    const std::vector<Caller> halts = { Caller::schedules, Caller::halts };
    EXPECT_EQ( "a request was lost", faultOf( exploreProcess( schedules, withoutStep8 ) ) );
    EXPECT_EQ( "a halt without an end", faultOf( exploreProcess( halts, withoutStep8 ) ) );
    EXPECT_NE( "", exploreProcess( schedules, stepsSixAndSevenSwapped ).fault );
    EXPECT_EQ( "run after the halt", faultOf( exploreProcess( halts, haltReadAfterTheRun ) ) );
    EXPECT_EQ( "a halt without an end", faultOf( exploreProcess( halts, haltReadBeforeTheRequest ) ) );
}

TEST( TimerModel, AScheduleFiresOrIsCancelledButNotBoth )
{
    if ( !canExplore )
        GTEST_SKIP();
    EXPECT_EQ( "", exploreTimer( { { scheduleTimer, cancelTimer } }, qv::timerTake ).fault );
    EXPECT_EQ( "", exploreTimer( { { scheduleTimer, cancelTimer, scheduleTimer } }, qv::timerTake ).fault );
    EXPECT_EQ( "", exploreTimer( { { scheduleTimer }, { scheduleTimer } }, qv::timerTake ).fault );
    EXPECT_EQ( "", exploreTimer( { { scheduleTimer }, { cancelTimer } }, qv::timerTake ).fault );
    EXPECT_EQ( "",
               exploreTimer( { { scheduleTimer, scheduleTimer }, { cancelTimer } }, qv::timerTake ).fault );
}

TEST( TimerModel, FaultsPutInAreFound )
{
    if ( !canExplore )
        GTEST_SKIP();
    EXPECT_EQ( "fired and cancelled",
               faultOf( exploreTimer( { { scheduleTimer, cancelTimer } }, takeInTwoSteps ) ) );
    EXPECT_NE( "", exploreTimer( { { scheduleTimer, scheduleTimer } }, takeWithoutTheMark ).fault );
}

TEST( SignalModel, EachTargetIsFiredOnce )
{
    if ( !canExplore )
        GTEST_SKIP();
    for ( int asserts : { 1, 2 } )
    {
        EXPECT_EQ( "", exploreSignal( asserts, qv::signalAttach, qv::signalAssert ).fault );
        EXPECT_EQ( "missed",
                   faultOf( exploreSignal( asserts, attachThatLooksBeforeTheLock, qv::signalAssert ) ) );
        EXPECT_EQ( "missed", faultOf( exploreSignal( asserts, qv::signalAttach, assertThatFiresFirst ) ) );
    }
}
