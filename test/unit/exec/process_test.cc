#include "support/test.hh"
#include "exec/exec_support.hh"

#include <qv/exec/qv_process_system.hh>

using namespace test;

namespace
{

// A domain of one thread that is held until open() is called.
class HeldDomain
{
  public:
    explicit HeldDomain( DomainSettings settings ) : domain_( domainWith( settings ) )
    {
        holder_.take( processOn( domain_, [this] {
                          isHeld_.open();
                          gate_.pass();
                      } ).give() );
        qvProcessSchedule( holder_ );
        isHeld_.pass();
    }

    operator QV_PROCESS_DOMAIN *() const
    {
        return domain_;
    }

    void open()
    {
        gate_.open();
    }

    ~HeldDomain()
    {
        open();
        endProcess( holder_ );
    }

  private:
    Domain domain_;
    Process holder_;
    Gate isHeld_;
    Gate gate_;
};

constexpr DomainSettings allSettings[] = {
    { 1, false, false }, { 1, true, false }, { 1, false, true }, { 1, true, true } };

std::string threadName()
{
    Local<QV_THREAD> self( qvThreadThis() );
    return takeUtf8( qvThreadName( self ) );
}

} // namespace

TEST( Process, ManyRequestsBeforeARunAreOneRun )
{
    for ( DomainSettings settings : allSettings )
    {
        HeldDomain domain( settings );
        std::atomic<int> runs = 0;
        Process process = processOn( domain, [&] { runs++; } );
        for ( int idx = 0; idx < 1000; idx++ )
            qvProcessSchedule( process );
        EXPECT_EQ( 0, runs );
        domain.open();
        drain( domain );
        EXPECT_EQ( 1, runs );
        qvProcessSchedule( process );
        drain( domain );
        EXPECT_EQ( 2, runs );
        endProcess( process );
        EXPECT_EQ( 2, runs );
    }
}

TEST( Process, ARequestFromInsideIsOneMoreRunAfterThisOne )
{
    for ( DomainSettings settings : allSettings )
    {
        Domain domain = domainWith( settings );
        std::atomic<int> runs = 0;
        std::atomic<bool> isInside = false;
        Process *self = nullptr;
        Process process = processOn( domain, [&] {
            EXPECT_FALSE( isInside.exchange( true ) );
            if ( runs++ == 0 )
            {
                for ( int idx = 0; idx < 5; idx++ )
                    qvProcessSchedule( *self );
            }
            isInside = false;
        } );
        self = &process;
        qvProcessSchedule( process );
        drain( domain );
        drain( domain );
        EXPECT_EQ( 2, runs );
        endProcess( process );
    }
}

TEST( Process, AHaltFromInsideEndsAfterTheRun )
{
    for ( DomainSettings settings : allSettings )
    {
        Domain domain = domainWith( settings );
        std::atomic<int> runs = 0;
        std::atomic<bool> isEndedInside = false;
        Process *self = nullptr;
        Process process = processOn( domain, [&] {
            runs++;
            qvProcessSchedule( *self );
            qvProcessHalt( *self );
            qvProcessHalt( *self );
            isEndedInside = qvProcessEnd( *self );
        } );
        self = &process;
        EXPECT_FALSE( qvProcessHalted( process ) );
        qvProcessSchedule( process );
        qv___ProcessEndWait( process );
        EXPECT_TRUE( qvProcessHalted( process ) );
        EXPECT_FALSE( isEndedInside );
        EXPECT_EQ( 1, runs );
        qvProcessSchedule( process );
        qvProcessHalt( process );
        drain( domain );
        EXPECT_EQ( 1, runs );
        EXPECT_TRUE( qvProcessEnd( process ) );
    }
}

TEST( Process, AHaltBeforeTheRunTakesItsPlace )
{
    HeldDomain domain( {} );
    std::atomic<int> runs = 0;
    Process process = processOn( domain, [&] { runs++; } );
    qvProcessSchedule( process );
    qvProcessHalt( process );
    EXPECT_FALSE( qvProcessEnd( process ) );
    domain.open();
    qv___ProcessEndWait( process );
    EXPECT_EQ( 0, runs );
}

TEST( Process, TheClosureGoesOnAThreadOfTheDomainAtTheEnd )
{
    Domain domain = domainWith( { 2 } );
    std::atomic<QV_INT> freedIn = -2;
    Process process = processOn(
        domain, [] {}, [&] { freedIn = qv___exec_block.processDomainToken; } );
    EXPECT_FALSE( qv___ProcessInProcess() );
    endProcess( process );
    while ( freedIn == -2 )
        std::this_thread::yield();
    EXPECT_EQ( qv___ProcessDomainToken( domain ), freedIn );
}

TEST( Process, OneThatIsNeverScheduledNeverRunsAndNeverEnds )
{
    Domain domain = domainWith( {} );
    bool isFreed = false;
    {
        Process process = processOn(
            domain, [] { ADD_FAILURE(); }, [&] { isFreed = true; } );
        drain( domain );
        EXPECT_FALSE( qvProcessEnd( process ) );
    }
    EXPECT_TRUE( isFreed );
}

TEST( Process, AReleasedOneStillRunsWhatWasAsked )
{
    std::atomic<int> runs = 0;
    {
        HeldDomain domain( {} );
        qvProcessSchedule( processOn( domain, [&] { runs++; } ) );
    }
    EXPECT_EQ( 1, runs );
}

TEST( Process, TheLastReferenceToADomainMayGoOnItsOwnThread )
{
    for ( QV_INT threads : { 1, 3 } )
    {
        Gate isReleased;
        Gate isFreed;
        Domain domain = domainWith( { threads } );
        Process process = processOn(
            domain, [&] { isReleased.pass(); }, [&] { isFreed.open(); } );
        qvProcessSchedule( process );
        qv::release( domain.give() );
        qv::release( process.give() );
        isReleased.open();
        isFreed.pass();
    }
}

TEST( Process, TargetsScheduleIt )
{
    Domain domain = domainWith( { 1, true } );
    std::atomic<int> runs = 0;
    Process process = processOn( domain, [&] { runs++; } );
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    Local<QV_SIGNALABLE> sigb( qvSignalableCreateWithProcess( process ) );
    qvSignalAddSignalable( sig, sigb );
    drain( domain );
    EXPECT_EQ( 0, runs );
    qvSignalAssert( sig );
    qvSignalAssert( sig );
    drain( domain );
    EXPECT_EQ( 1, runs );
    Local<QV_ALERT> alert( qvAlertCreate() );
    Local<QV_ALERTABLE> alb( qvAlertableCreateWithProcess( process ) );
    qvAlertSet( alert );
    qvAlertAddAlertable( alert, alb );
    drain( domain );
    EXPECT_EQ( 2, runs );
    endProcess( process );
    EXPECT_DEATH( qvSignalableCreateWithProcess( nullptr ), "process" );
}

TEST( Process, TheEndFiresItsTargets )
{
    Domain domain = domainWith( {} );
    std::atomic<int> runs = 0;
    Process waiting = processOn( domain, [&] { runs++; } );
    Process process = processOn( domain, [] {} );
    Local<QV_SIGNALABLE> early( qvSignalableCreateWithProcess( waiting ) );
    Local<QV_SIGNALABLE> never( qvSignalableCreateWithProcess( waiting ) );
    qvProcessEndAddSignalable( process, never );
    qvProcessEndDelSignalable( process, never );
    qvProcessEndAddSignalable( process, early );
    endProcess( process );
    drain( domain );
    EXPECT_EQ( 1, runs );
    qvProcessEndAddSignalable( process, early );
    drain( domain );
    EXPECT_EQ( 2, runs );
    endProcess( waiting );
}

// Without the optimization what is scheduled from inside goes to the back; with it, it runs before all that waits.
TEST( Process, OrderOnOneThread )
{
    for ( bool trail : { false, true } )
    {
        std::string order;
        HeldDomain domain( { 1, trail } );
        Process inner = processOn( domain, [&] { order += 'i'; } );
        Process other = processOn( domain, [&] { order += 'o'; } );
        int rounds = 0;
        Process *self = nullptr;
        Process first = processOn( domain, [&] {
            order += 'f';
            qvProcessSchedule( inner );
            qvProcessSchedule( other );
            if ( rounds++ == 0 )
                qvProcessSchedule( *self );
        } );
        self = &first;
        Process second = processOn( domain, [&] { order += 's'; } );
        qvProcessSchedule( first );
        qvProcessSchedule( second );
        domain.open();
        drain( domain );
        drain( domain );
        EXPECT_EQ( trail ? "fiofios" : "fsiofio", order );
        for ( QV_PROCESS *process : { &*inner, &*other, &*first, &*second } )
            endProcess( process );
    }
}

TEST( Process, ATrailStaysInsideTheDomain )
{
    Domain domain = domainWith( { 4, true } );
    Domain otherDomain = domainWith( { 1, true } );
    std::string outerThread, innerThread;
    QV_INT otherToken = -1;
    Gate done;
    std::atomic<int> left = 2;
    auto finish = [&] {
        if ( --left == 0 )
            done.open();
    };
    Process inner = processOn( domain, [&] {
        innerThread = threadName();
        finish();
    } );
    Process other = processOn( otherDomain, [&] {
        otherToken = qv___exec_block.processDomainToken;
        finish();
    } );
    Process outer = processOn( domain, [&] {
        outerThread = threadName();
        qvProcessSchedule( inner );
        qvProcessSchedule( other );
    } );
    qvProcessSchedule( outer );
    done.pass();
    EXPECT_EQ( outerThread, innerThread );
    EXPECT_EQ( qv___ProcessDomainToken( otherDomain ), otherToken );
    for ( QV_PROCESS *process : { &*inner, &*other, &*outer } )
        endProcess( process );
}

TEST( Process, ItsHintNamesItsThread )
{
    Domain domain = domainWith( { 12 } );
    for ( int idx = 0; idx < 30; idx++ )
    {
        std::string name;
        Process process = processOn( domain, [&] { name = threadName(); } );
        qvProcessSchedule( process );
        qvProcessHalt( process );
        qv___ProcessEndWait( process );
        if ( name.empty() )
            continue;
        QV_INT thread = process->fixThreadHint % 12;
        EXPECT_EQ( "TEST_" + std::string( thread < 10 ? "0" : "" ) + std::to_string( thread ), name );
    }
}

TEST( Process, PropertiesAndCallersFaults )
{
    Domain domain = domainWith( {} );
    Process process = processOn( domain, [] {} );
    Process again = processOn( domain, [] {} );
    EXPECT_EQ( domain, Local<QV_PROCESS_DOMAIN>( qvProcessDomain( process ) ) );
    EXPECT_EQ( "testProcess", takeUtf8( qvProcessName( process ) ) );
    Local<QV_IDENTIFIER> identifier( qvProcessIdentifier( process ) );
    Local<QV_IDENTIFIER> otherIdentifier( qvProcessIdentifier( again ) );
    EXPECT_FALSE( qvIdentifierEquals( identifier, otherIdentifier ) );
    EXPECT_FALSE( qvProcessEquals( process, again ) );
    EXPECT_DEATH( qv___ProcessCreate( 0, nullptr, nullptr, "good" ), "func" );
    EXPECT_DEATH( qv___ProcessCreate( 0, runClosure, nullptr, "not good" ), "qvNameOk" );
    EXPECT_DEATH( qvProcessSchedule( nullptr ), "process" );
    EXPECT_DEATH(
        {
            Process waits = processOn( domain, [&] { qv___ProcessEndWait( process ); } );
            qvProcessSchedule( waits );
            qv___ProcessEndWait( waits );
        },
        "QV___UNIQUE_INVALID" );
}

// Several domains, processes that schedule each other, themselves and those of other domains at random, halts at random
// moments: each request is followed by a run, each halt by an end, and nothing runs after its end or twice at once.
TEST( ProcessStress, NoRequestIsLostAndNoProcessRunsTwiceAtOnce )
{
    constexpr int count = 2000;
    constexpr int requests = 40000;
    struct Node
    {
        std::atomic<long> asked = 0;
        std::atomic<long> served = 0;
        std::atomic<bool> isInside = false;
        std::atomic<bool> isFreed = false;
    };
    std::vector<Node> nodes( count );
    std::vector<Process> processes;
    Domain domains[] = { domainWith( { 1, false } ), domainWith( { 2, true } ),
                         domainWith( { 3, false, true } ), domainWith( { 2, true, true } ) };
    std::atomic<long> left = requests;
    auto ask = [&]( size_t idx ) {
        nodes[idx].asked++;
        qvProcessSchedule( processes[idx] );
    };
    auto work = [&]( size_t idx ) {
        Node &node = nodes[idx];
        EXPECT_FALSE( node.isInside.exchange( true ) );
        EXPECT_FALSE( node.isFreed );
        long asked = node.asked;
        if ( left-- > 0 )
        {
            thread_local std::minstd_rand random( static_cast<unsigned>( idx + 1 ) );
            ask( random() % count );
            if ( random() % 4 == 0 )
                ask( idx );
            if ( random() % 8 == 0 )
                ask( random() % count );
        }
        node.served = asked;
        node.isInside = false;
    };
    for ( size_t idx = 0; idx < count; idx++ )
        processes.push_back( processOn(
            domains[idx % 4], [&, idx] { work( idx ); }, [&, idx] { nodes[idx].isFreed = true; } ) );
    runOnThreads( 3, [&]( size_t number ) {
        std::minstd_rand random( static_cast<unsigned>( number + 1 ) );
        for ( int idx = 0; idx < 5000; idx++ )
            ask( random() % count );
    } );
    auto isQuiet = [&] {
        for ( Node &node : nodes )
        {
            if ( node.served != node.asked || node.isInside )
                return false;
        }
        return left <= 0;
    };
    for ( int round = 0; !isQuiet() && round < 30000; round++ )
    {
        if ( left > 0 )
            ask( static_cast<size_t>( round ) % count );
        std::this_thread::sleep_for( std::chrono::milliseconds( 1 ) );
    }
    EXPECT_TRUE( isQuiet() );
    left = requests;
    for ( size_t idx = 0; idx < count; idx += 3 )
        ask( idx );
    for ( Process &process : processes )
        qvProcessHalt( process );
    for ( Process &process : processes )
        qv___ProcessEndWait( process );
    for ( Domain &domain : domains )
        EXPECT_TRUE( domain );
    processes.clear();
}

// Signals and alerts whose targets several threads attach, detach, fire and release at random: a target that stays attached
// is fired by the assert, whichever comes first, and nothing is left behind.
TEST( ProcessStress, TargetsAttachedAndFiredAtRandom )
{
    Domain domain = domainWith( { 2, true } );
    for ( int round = 0; round < 30; round++ )
    {
        Local<QV_SIGNAL> sig( qvSignalCreate() );
        Local<QV_ALERT> alert( qvAlertCreate() );
        constexpr int threadCount = 4;
        std::atomic<int> runs[threadCount] = {};
        std::vector<Process> processes;
        for ( std::atomic<int> &count : runs )
            processes.push_back( processOn( domain, [&] { count++; } ) );
        auto work = [&]( size_t number ) {
            std::minstd_rand random( static_cast<unsigned>( 1 + number + 7 * static_cast<size_t>( round ) ) );
            Local<QV_SIGNALABLE> stays( qvSignalableCreateWithProcess( processes[number] ) );
            for ( int step = 0; step < 60; step++ )
            {
                Process &other = processes[random() % threadCount];
                Local<QV_SIGNALABLE> sigb( qvSignalableCreateWithProcess( other ) );
                Local<QV_ALERTABLE> alb( qvAlertableCreateWithProcess( other ) );
                qvSignalAddSignalable( sig, sigb );
                qvAlertAddAlertable( alert, alb );
                random() % 2 ? qvAlertSet( alert ) : qvAlertUnset( alert );
                if ( random() % 2 )
                {
                    qvSignalDelSignalable( sig, sigb );
                    qvAlertDelAlertable( alert, alb );
                }
                if ( number == 0 && step == 30 )
                    qvSignalAssert( sig );
                if ( step == 29 )
                    qvSignalAddSignalable( sig, stays );
            }
            for ( int wait = 0; runs[number] == 0 && wait < 60000; wait++ )
                std::this_thread::sleep_for( std::chrono::milliseconds( 1 ) );
        };
        runOnThreads( threadCount, work );
        for ( Process &process : processes )
            endProcess( process );
        for ( std::atomic<int> &count : runs )
            EXPECT_GT( count, 0 );
    }
}
