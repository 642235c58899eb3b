#include "support/test.hh"
#include "exec/exec_support.hh"
#include "support/child.hh"

#include <qv/exec/qv_exec_block.hh>
#include <qv/exec/qv_thread.hh>

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace test;

namespace
{

using Thread = Local<QV_THREAD>;

Thread spawn( QV_THREAD_FUNC func, qvObj argument = nullptr,
              QV_THREAD_PRIORITY prio = QV_THREAD_PRIORITY_NORMAL )
{
    return Thread( qvThreadTrySpawn( text( "QV_TEST_THREAD" ), prio, func, argument ) );
}

struct Seen
{
    std::atomic<bool> encapsulated, thisIsSet, unlatchedTwice;
    char platformName[16];
    int policy, priority;
};
Seen seen = {};

void look()
{
    seen.encapsulated = qv___ExecEncapsulated();
    Thread self( qvThreadThis() );
    seen.thisIsSet = self;
    prctl( PR_GET_NAME, seen.platformName, 0, 0, 0 );
    struct sched_param param = {};
    pthread_getschedparam( pthread_self(), &seen.policy, &param );
    seen.priority = param.sched_priority;
    Local<qv___Obj> argument( qvThreadUnlatchArgument( self ) );
    Local<qv___Obj> again( qvThreadUnlatchArgument( self ) );
    Local<qv___Obj> read( qvThreadArgument( self ) );
    seen.unlatchedTwice = !argument || again || read;
}

void waitForArgument()
{
    Thread self( qvThreadThis() );
    Local<qv___Obj> argument( qvThreadArgument( self ) );
    qvBarrierPass( qvBarrierFrom( argument ) );
}

void countUp( qvObj closure )
{
    qvBarrierUnblock( qvBarrierFrom( closure ) );
}

void limitThreads( rlim_t most )
{
    rlimit limit;
    getrlimit( RLIMIT_NPROC, &limit );
    limit.rlim_cur = most < limit.rlim_max ? most : limit.rlim_max;
    setrlimit( RLIMIT_NPROC, &limit );
}

// A user who may neither use real-time scheduling nor start as many threads as the domain has.
int withoutRights()
{
    alarm( 60 );
    startRuntime();
    const rlimit none = { 0, 0 };
    setrlimit( RLIMIT_RTPRIO, &none );
    if ( geteuid() == 0 && setresuid( 65534, 65534, 65534 ) != 0 )
        return 64;
    qvThreadJoin( spawn( look ) );
    int bad = seen.policy == SCHED_OTHER && seen.thisIsSet ? 0 : 1;
    limitThreads( 0 );
    bad |= spawn( look ) ? 2 : 0;
    rlim_t most = 1;
    for ( ; !spawn( look ); most++ )
        limitThreads( most );
    limitThreads( most + 5 );
    bad |= domainWith( { 128, true, true } ) ? 4 : 0;
    limitThreads( RLIM_INFINITY );
    bad |= domainWith( { 8, true, true } ) ? 0 : 8;
    qvRuntimeShutdown();
    return bad;
}

std::atomic<bool> hasWorked = false;

void workLong()
{
    std::this_thread::sleep_for( std::chrono::milliseconds( 50 ) );
    hasWorked = true;
}

int shutdownDuringAThread()
{
    startRuntime();
    qv::release( spawn( workLong ).give() );
    qvRuntimeShutdown();
    return hasWorked ? 0 : 1;
}

} // namespace

TEST( Thread, RunsWithItsNamePriorityAndArgument )
{
    Local<QV_BOXED_INT> argument( qvBoxedIntCreate( 7 ) );
    for ( QV_THREAD_PRIORITY prio = QV_THREAD_PRIORITY_IDLE; prio <= QV_THREAD_PRIORITY_CRITICAL; prio++ )
    {
        seen.unlatchedTwice = true;
        Thread thread = spawn( look, qvBoxedIntObj( argument ), prio );
        ASSERT_TRUE( thread );
        qvThreadJoin( thread );
        qvThreadJoin( thread );
        EXPECT_TRUE( qvThreadEnd( thread ) );
        EXPECT_TRUE( seen.encapsulated );
        EXPECT_TRUE( seen.thisIsSet );
        EXPECT_FALSE( seen.unlatchedTwice );
        EXPECT_STREQ( "QV_TEST_THREAD", seen.platformName );
        EXPECT_EQ( prio, qvThreadPriority( thread ) );
        if ( seen.policy == SCHED_RR )
            EXPECT_EQ( 1 + 98 * prio / 6, seen.priority );
        else
            EXPECT_EQ( SCHED_OTHER, seen.policy );
        EXPECT_EQ( "QV_TEST_THREAD", takeUtf8( qvThreadToString( thread ) ) );
        EXPECT_FALSE( qv::isShared( thread.operator->() ) ) << "the ended thread holds no reference";
    }
    EXPECT_FALSE( qv::isShared( argument.operator->() ) );
}

TEST( Thread, ItsCreatorMayReleaseItAtOnce )
{
    Local<QV_BARRIER> barrier( qvBarrierCreate( QV_TRUE ) );
    Local<QV_BARRIER> ended( qvBarrierCreate( QV_TRUE ) );
    Local<QV_SIGNALABLE> sigb( qvSignalableCreateWithSignalFunc( countUp, qvBarrierObj( ended ) ) );
    {
        Thread thread = spawn( waitForArgument, qvBarrierObj( barrier ) );
        qvThreadEndAddSignalable( thread, sigb );
        EXPECT_FALSE( qvThreadEnd( thread ) );
    }
    EXPECT_FALSE( qvBarrierPassTimed( ended, 10 ) );
    qvBarrierUnblock( barrier );
    EXPECT_TRUE( qvBarrierPassTimed( ended, 60000 ) );
}

TEST( Thread, TheEndFiresATargetThatComesLate )
{
    Local<QV_BARRIER> ended( qvBarrierCreate( QV_TRUE ) );
    Local<QV_SIGNALABLE> sigb( qvSignalableCreateWithBarrier( ended ) );
    Thread thread = spawn( look );
    qvThreadEndAddSignalable( thread, sigb );
    qvThreadEndDelSignalable( thread, sigb );
    qvThreadJoin( thread );
    qvBarrierBlock( ended );
    qvThreadEndAddSignalable( thread, sigb );
    EXPECT_FALSE( qvBarrierIsBlocked( ended ) );
}

TEST( Thread, ForeignThreadsHaveNoObjectAndMayNotJoin )
{
    EXPECT_EQ( nullptr, qvThreadThis() );
    EXPECT_TRUE( qv___ExecEncapsulated() );
    bool isEncapsulated = true;
    QV_THREAD *self = nullptr;
    std::thread( [&] {
        isEncapsulated = qv___ExecEncapsulated();
        self = qvThreadThis();
    } ).join();
    EXPECT_FALSE( isEncapsulated );
    EXPECT_EQ( nullptr, self );
    EXPECT_DEATH( std::thread( [] { qvThreadJoin( spawn( look ) ); } ).join(), "qv___ExecEncapsulated" );
}

TEST( Thread, RightsAreMissing )
{
    ChildResult child = runInChild( withoutRights );
    EXPECT_EQ( 0, child.status ) << WEXITSTATUS( child.status );
    EXPECT_EQ( "", child.output ) << "objects are left";
}

TEST( Thread, TheEndOfTheRuntimeWaits )
{
    EXPECT_EQ( 0, runInChild( shutdownDuringAThread ).status );
}

TEST( Thread, CallersFaultsStopTheProcess )
{
    EXPECT_DEATH( qvThreadTrySpawn( text( "lower" ), 0, look, nullptr ), "qvNameUpperCaseOk" );
    EXPECT_DEATH( qvThreadTrySpawn( text( "UPPER" ), 7, look, nullptr ), "QV_THREAD_PRIORITY_OK" );
    EXPECT_DEATH( qvThreadTrySpawn( text( "UPPER" ), 0, nullptr, nullptr ), "threadFunc" );
}

TEST( ExecBlock, EncapsulationsNestAndRestore )
{
    qv___exec_block.processTimestamp = 5;
    qv___ExecEncapsulate(
        []( void * ) {
            EXPECT_EQ( 0, qv___exec_block.processTimestamp );
            qv___exec_block.processTimestamp = 6;
            qv___ExecEncapsulate( []( void * ) { EXPECT_EQ( 0, qv___exec_block.processTimestamp ); },
                                  nullptr );
            EXPECT_EQ( 6, qv___exec_block.processTimestamp );
        },
        nullptr );
    EXPECT_EQ( 5, qv___exec_block.processTimestamp );
    qv___exec_block.processTimestamp = 0;
    EXPECT_DEATH(
        {
            qv___exec_block.magicNumber = 1;
            qv___ExecCheckEncapsulated();
        },
        "magicNumber" );
    EXPECT_DEATH( std::thread( qv___ExecCheckEncapsulated ).join(), "qv___ExecEncapsulated" );
}

TEST( ExecList, MovesItemsInOrderAndRefusesMisuse )
{
    auto *owner = reinterpret_cast<QV_PROCESS *>( 8 );
    qv___ExecList list, other;
    qv___ExecListItem items[4];
    qv___ExecListInitialize( &list );
    qv___ExecListInitialize( &other );
    for ( qv___ExecListItem &item : items )
        qv___ExecListItemInitialize( &item, owner );
    qv___ExecListAppendList( &list, &other );
    EXPECT_EQ( nullptr, list.first );
    qv___ExecListAppendItem( &other, &items[0] );
    EXPECT_DEATH( qv___ExecListAppendItem( &list, &items[0] ), "item->prev == item" );
    EXPECT_DEATH( qv___ExecListItemFinalize( &items[0] ), "item->prev == item" );
    EXPECT_DEATH( qv___ExecListFinalize( &other ), "!list->first" );
    EXPECT_DEATH( qv___ExecListRemoveFirstItem( &list ), "item" );
    qv___ExecListAppendItem( &other, &items[1] );
    qv___ExecListAppendList( &list, &other );
    qv___ExecListFinalize( &other );
    qv___ExecListAppendItem( &other, &items[2] );
    qv___ExecListAppendItem( &other, &items[3] );
    qv___ExecListAppendList( &list, &other );
    for ( qv___ExecListItem &item : items )
        EXPECT_EQ( &item, qv___ExecListRemoveFirstItem( &list ) );
    qv___ExecListFinalize( &list );
    for ( qv___ExecListItem &item : items )
        qv___ExecListItemFinalize( &item );
}
