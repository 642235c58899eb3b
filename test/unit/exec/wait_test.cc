#include "support/test.hh"

#include <qv/sys/qv_timestamp.hh>

namespace
{

using namespace test;

std::atomic<int> calls{ 0 };

void countCall( qvObj closure )
{
    calls += closure ? 100 : 1;
}

TEST( Barrier, PassesWhileOpen )
{
    Local<QV_BARRIER> barrier( qvBarrierCreate( QV_TRUE ) );
    EXPECT_TRUE( qvBarrierIsBlocked( barrier ) );
    EXPECT_FALSE( qvBarrierPassTimed( barrier, 0 ) );
    QV_INT start = qv___Timestamp();
    EXPECT_FALSE( qvBarrierPassTimed( barrier, 30 ) );
    EXPECT_GE( qv___Timestamp() - start, 30 );
    std::vector<std::thread> waiters;
    for ( int count = 0; count < 3; count++ )
        waiters.emplace_back( [&] { qvBarrierPass( barrier ); } );
    qvBarrierUnblock( barrier );
    for ( std::thread &waiter : waiters )
        waiter.join();
    EXPECT_TRUE( qvBarrierPassTimed( barrier, -1 ) );
    qvBarrierBlock( barrier );
    EXPECT_TRUE( qvBarrierIsBlocked( barrier ) );
}

TEST( Monitor, ExcludesThreads )
{
    Local<QV_MONITOR> monitor( qvMonitorCreate() );
    Local<QV_REGION> region( qvRegionCreate() );
    int plain = 0;
    runOnThreads( 4, [&]( size_t count ) {
        for ( int round = 0; round < 1000; round++ )
        {
            qvMonitorEnter( monitor );
            qvRegionEnter( region, count % 2 );
            plain++;
            qvRegionLeave( region );
            qvMonitorLeave( monitor );
        }
    } );
    EXPECT_EQ( 4000, plain );
    EXPECT_DEATH( qvMonitorLeave( monitor ), "entered" );
    EXPECT_DEATH( qvRegionLeave( region ), "entered" );
    EXPECT_DEATH(
        {
            qvRegionEnterShared( region );
            region.take( nullptr );
        },
        "entered" );
}

TEST( Signal, FiresEachKindOnceAndOnlyOnce )
{
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    Local<QV_SIGNAL> chained( qvSignalCreate() );
    Local<QV_SIGNAL> other( qvSignalCreate() );
    Local<QV_ALERT> alert( qvAlertCreate() );
    Local<QV_BARRIER> barrier( qvBarrierCreate( QV_TRUE ) );
    Local<QV_SIGNALABLE> first( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
    Local<QV_SIGNALABLE> second( qvSignalableCreateWithSignalFunc( countCall, qvAlertObj( alert ) ) );
    Local<QV_SIGNALABLE> third( qvSignalableCreateWithSignal( other ) );
    calls = 0;
    EXPECT_FALSE( qvSignalHasSignalables( sig ) );
    qvSignalAddSignalable( sig, first );
    qvSignalAddSignalable( sig, first );
    qvSignalAddSignalable( sig, second );
    qvSignalAddSignalable( sig, second );
    qvSignalAddSignalable( sig, third );
    qvSignalAddSignal( sig, chained );
    qvSignalAddAlert( sig, alert );
    qvSignalAddBarrier( sig, barrier );
    EXPECT_TRUE( qvSignalHasSignalables( sig ) );
    qvSignalAssert( sig );
    qvSignalAssert( sig );
    EXPECT_EQ( 101, calls );
    EXPECT_TRUE( qvSignalAsserted( sig ) && qvSignalAsserted( chained ) && qvSignalAsserted( other ) );
    EXPECT_TRUE( qvAlertIsSet( alert ) );
    EXPECT_FALSE( qvBarrierIsBlocked( barrier ) );
    EXPECT_FALSE( qvSignalHasSignalables( sig ) );
    // What comes late fires at once and isn't kept.
    qvBarrierBlock( barrier );
    qvSignalAddBarrier( sig, barrier );
    qvSignalAddSignalable( sig, first );
    EXPECT_FALSE( qvBarrierIsBlocked( barrier ) );
    EXPECT_EQ( 102, calls );
    EXPECT_FALSE( qvSignalHasSignalables( sig ) );
    qvSignalDelBarrier( sig, barrier );
}

TEST( Signal, DetachedTargetsStaySilent )
{
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    Local<QV_SIGNALABLE> slot( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
    Local<QV_SIGNALABLE> other( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
    Local<QV_SIGNALABLE> released( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
    Local<QV_SIGNALABLE> stranger( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
    calls = 0;
    for ( QV_SIGNALABLE *sigb : { static_cast<QV_SIGNALABLE *>( slot ), static_cast<QV_SIGNALABLE *>( other ),
                                  static_cast<QV_SIGNALABLE *>( released ) } )
        qvSignalAddSignalable( sig, sigb );
    qvSignalDelSignalable( sig, stranger );
    qvSignalDelSignalable( sig, slot );
    qvSignalDelSignalable( sig, other );
    released.take( nullptr );
    EXPECT_TRUE( qvSignalHasSignalables( sig ) ); // the dead entry
    qvSignalAssert( sig );
    EXPECT_EQ( 0, calls );
}

TEST( Signal, WaitAndSleep )
{
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    EXPECT_FALSE( qvSignalWaitTimed( sig, 0 ) );
    EXPECT_FALSE( qvSleepTimed( sig, 1 ) );
    EXPECT_FALSE( qvSleepTimed( nullptr, 0 ) );
    EXPECT_FALSE( qvSignalHasSignalables( sig ) );
    std::thread sleeper( [&] { qvSleep( sig ); } );
    std::thread waiter( [&] { qvSignalWait( sig ); } );
    qvSignalAssert( sig );
    sleeper.join();
    waiter.join();
    EXPECT_TRUE( qvSignalWaitTimed( sig, 0 ) );
    EXPECT_TRUE( qvSleepTimed( sig, -1 ) );
}

TEST( Alert, IsOneShotForItsAlertables )
{
    Local<QV_ALERT> alert( qvAlertCreate() );
    Local<QV_ALERTABLE> alb( qvAlertableCreateWithSignalFunc( countCall, nullptr ) );
    Local<QV_ALERTABLE> another( qvAlertableCreateWithSignalFunc( countCall, nullptr ) );
    calls = 0;
    qvAlertAddAlertable( alert, alb );
    qvAlertAddAlertable( alert, another );
    qvAlertSet( alert );
    qvAlertSet( alert );
    EXPECT_EQ( 2, calls );
    qvAlertUnset( alert );
    qvAlertSet( alert ); // nothing was attached again
    EXPECT_EQ( 2, calls );
    qvAlertAddAlertable( alert, alb );
    EXPECT_EQ( 3, calls );
    qvAlertUnset( alert );
    qvAlertAddAlertable( alert, alb );
    qvAlertDelAlertable( alert, alb );
    qvAlertSet( alert );
    EXPECT_EQ( 3, calls );
}

TEST( EventQueue, KeepsOrderWithoutDuplicates )
{
    Local<QV_EVENT_QUEUE> queue( qvEventQueueCreate() );
    Local<QV_ALERT> alert( qvAlertCreate() );
    Local<QV_ALERTABLE> alb( qvAlertableCreateWithAlert( alert ) );
    Local<QV_BOXED_INT> one( qvBoxedIntCreate( 1 ) );
    Local<QV_BOXED_INT> equalOne( qvBoxedIntCreate( 1 ) );
    Local<QV_BOXED_INT> two( qvBoxedIntCreate( 2 ) );
    EXPECT_EQ( nullptr, qvEventQueueReadEvent( queue ) );
    qvEventQueueReadEventAddAlertable( queue, alb );
    qvEventQueueWriteEvent( queue, qvBoxedIntObj( two ) );
    EXPECT_TRUE( qvAlertIsSet( alert ) );
    for ( QV_BOXED_INT *event : { static_cast<QV_BOXED_INT *>( one ), static_cast<QV_BOXED_INT *>( equalOne ),
                                  static_cast<QV_BOXED_INT *>( two ) } )
        qvEventQueueWriteEvent( queue, qvBoxedIntObj( event ) );
    Local<qv___Obj> event( qvEventQueueReadEvent( queue ) );
    EXPECT_EQ( 0, qvObjCompare( event, qvBoxedIntObj( two ) ) );
    qvEventQueueWriteEvent( queue, event ); // no longer waiting, so it may wait again
    event.take( qvEventQueueReadEvent( queue ) );
    EXPECT_EQ( 0, qvObjCompare( event, qvBoxedIntObj( one ) ) );
    event.take( qvEventQueueReadEvent( queue ) );
    EXPECT_EQ( 0, qvObjCompare( event, qvBoxedIntObj( two ) ) );
    EXPECT_EQ( nullptr, qvEventQueueReadEvent( queue ) );
    qvAlertUnset( alert );
    qvEventQueueReadEventAddAlertable( queue, alb );
    EXPECT_FALSE( qvAlertIsSet( alert ) );
}

TEST( EventQueue, TargetsOutliveIt )
{
    Local<QV_EVENT_QUEUE> queue( qvEventQueueCreate() );
    Local<QV_SIGNAL> sig( qvSignalCreate() );
    Local<QV_SIGNALABLE> kept( qvEventQueueCreateSignalable( queue, qvSignalObj( sig ) ) );
    Local<QV_ALERT> alert( qvAlertCreate() );
    Local<QV_ALERTABLE> alb( qvEventQueueCreateAlertable( queue, qvSignalObj( sig ) ) );
    qvAlertAddAlertable( alert, alb );
    qvAlertSet( alert );
    Local<qv___Obj> event( qvEventQueueReadEvent( queue ) );
    EXPECT_EQ( qvSignalObj( sig ), event );
    qvSignalAddSignalable( sig, kept );
    queue.take( nullptr );
    qvSignalAssert( sig );
}

// Attaching and asserting can't miss each other, in either order, and no call comes after the last release.
TEST( Signal, AttachRacesAssert )
{
    for ( int round = 0; round < 500; round++ )
    {
        Local<QV_SIGNAL> sig( qvSignalCreate() );
        Local<QV_BARRIER> barrier( qvBarrierCreate( QV_TRUE ) );
        std::thread asserter( [&] { qvSignalAssert( sig ); } );
        {
            Local<QV_SIGNALABLE> released( qvSignalableCreateWithSignalFunc( countCall, nullptr ) );
            qvSignalAddSignalable( sig, released );
        }
        Local<QV_SIGNALABLE> sigb( qvSignalableCreateWithBarrier( barrier ) );
        qvSignalAddSignalable( sig, sigb );
        qvBarrierPass( barrier );
        asserter.join();
    }
}

} // namespace
