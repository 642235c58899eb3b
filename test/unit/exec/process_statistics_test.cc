#include "support/test.hh"
#include "exec/exec_support.hh"

#include <qv/exec/qv_process_statistics.hh>
#include <qv/exec/qv_process_statistics_interval.hh>

using namespace test;

namespace
{

using Flags = QV_PROCESS_STATISTICS_FLAGS;
using Interval = Local<QV_PROCESS_STATISTICS_INTERVAL>;
using Group = Local<QV_PROCESS_STATISTICS_GROUP>;
using Statistics = Local<QV_PROCESS_STATISTICS>;
using Family = Local<QV_PROCESS_STATISTICS_FAMILY>;
using Result = Local<QV_PROCESS_STATISTICS_RESULT>;
using Query = Local<QV_PROCESS_STATISTICS_QUERY>;
using Store = Local<QV_STORE>;

Result execute( Flags flags )
{
    Query query( qvProcessStatisticsQueryCreate() );
    qvProcessStatisticsQuerySetFlags( query.edit(), flags );
    return Result( qvProcessStatisticsQueryExecute( query ) );
}

Family familyOf( QV_PROCESS_STATISTICS_RESULT *result, const char *name )
{
    return Family( qvProcessStatisticsResultFamily( result, text( name ) ) );
}

// "count/executions" of a group, "-" for none; takes the group.
std::string show( QV_PROCESS_STATISTICS_GROUP *given )
{
    Group group( given );
    return group ? std::to_string( qvProcessStatisticsGroupCount( group ) ) + "/" +
                       std::to_string( qvProcessStatisticsGroupExecutions( group ) )
                 : "-";
}

std::string show( const Family &family )
{
    return show( qvProcessStatisticsFamilyGroupPast( family ) ) + " " +
           show( qvProcessStatisticsFamilyGroupPastSinceReset( family ) ) + " " +
           show( qvProcessStatisticsFamilyGroupCurrentSinceCreation( family ) ) + " " +
           show( qvProcessStatisticsFamilyGroupCurrentSinceReset( family ) ) + " " +
           std::to_string( qvProcessStatisticsFamilyProcessesLength( family ) );
}

void runTimes( QV_PROCESS_DOMAIN *domain, QV_PROCESS *process, int times )
{
    for ( int idx = 0; idx < times; idx++ )
    {
        qvProcessSchedule( process );
        drain( domain );
    }
}

Interval intervalOf( QV_INT begin, QV_INT end, qv___ExecProcessStats counts )
{
    return Interval( qv___ProcessStatisticsIntervalCreate( begin, end, &counts ) );
}

} // namespace

TEST( ProcessStatisticsFlags, WhatMakesSenseTogether )
{
    const std::pair<Flags, Flags> cases[] = {
        { 0, 0 },
        { 2046, 0 },
        { 2047, 2047 },
        { ~0ll, 2047 },
        { 1 | 8, 1 },
        { 1 | 4 | 8, 13 },
        { 1 | 64, 1 },
        { 1 | 32 | 64, 97 },
        { 1 | 256, 1 },
        { 1 | 512, 1 },
        { 1 | 128 | 512, 641 },
        { 1 | 512 | 1024, 1 },
        { 1024 | 128 | 1, 129 },
    };
    for ( auto [flags, expected] : cases )
        EXPECT_EQ( expected, qvProcessStatisticsFlagsNormalize( flags ) ) << flags;
}

TEST( ProcessStatisticsQuery, FlagsAndStore )
{
    Query query( qvProcessStatisticsQueryCreate() );
    EXPECT_EQ( 2047, qvProcessStatisticsQueryFlags( query ) );
    EXPECT_EQ( 0, qvStoreLength( Store( qvProcessStatisticsQueryStore( query, QV_FALSE ) ) ) );
    EXPECT_EQ( 1, qvStoreLength( Store( qvProcessStatisticsQueryStore( query, QV_TRUE ) ) ) );
    Query before = Query::share( query );
    qvProcessStatisticsQuerySetFlags( query.edit(), 1 | 2 | 8 );
    EXPECT_TRUE( qvProcessStatisticsQueryFlagsDefault( before ) );
    EXPECT_FALSE( qvProcessStatisticsQueryFlagsDefault( query ) );
    Store store( qvProcessStatisticsQueryStore( query, QV_FALSE ) );
    Query restored( qvProcessStatisticsQueryRestore( store ) );
    EXPECT_EQ( 3, qvProcessStatisticsQueryFlags( restored ) );
    EXPECT_FALSE( qvProcessStatisticsQueryFlagsDefault( restored ) );
    EXPECT_TRUE( qvProcessStatisticsQueryFlagsDefault(
        Query( qvProcessStatisticsQueryRestore( Store( qvStoreCreate() ) ) ) ) );
    qvProcessStatisticsQuerySetFlagsDefault( query.edit() );
    EXPECT_EQ( 2047, qvProcessStatisticsQueryFlags( query ) );
}

TEST( ProcessStatistics, AnEmptyResultHasAnEmptyStore )
{
    Result empty( qvProcessStatisticsResultCreate() );
    Store store( qvProcessStatisticsResultStore( empty ) );
    EXPECT_EQ( 0, qvStoreLength( store ) );
    EXPECT_EQ(
        0, qvProcessStatisticsResultFamiliesLength( Result( qvProcessStatisticsResultRestore( store ) ) ) );
}

TEST( ProcessStatistics, LivingAndPastOfAFamily )
{
    Domain domain = domainWith( { 1, false, true } );
    auto noop = [] {};
    Process first = processOn( domain, noop, nullptr, "pastFamily" );
    Process second = processOn( domain, noop, nullptr, "pastFamily" );
    runTimes( domain, first, 3 );
    runTimes( domain, second, 2 );
    EXPECT_EQ( "0/0 0/0 2/5 2/5 2", show( familyOf( execute( 2047 ), "pastFamily" ) ) );
    runTimes( domain, first, 1 );
    EXPECT_EQ( "0/0 0/0 2/6 2/1 2", show( familyOf( execute( 1 | 2 | 4 | 16 | 32 | 128 ), "pastFamily" ) ) );
    EXPECT_EQ( "- - - - 0", show( familyOf( execute( 1 ), "pastFamily" ) ) );
    EXPECT_EQ( "- - - - 0", show( familyOf( execute( 0 ), "pastFamily" ) ) );
    EXPECT_EQ( "- - - 2/1 0", show( familyOf( execute( 1 | 32 | 64 ), "pastFamily" ) ) );
    EXPECT_EQ( "- - 2/6 2/0 2", show( familyOf( execute( 1 | 16 | 32 | 128 ), "pastFamily" ) ) );

    endProcess( first );
    EXPECT_EQ( "1/4 1/4 1/2 1/0 1", show( familyOf( execute( 2047 ), "pastFamily" ) ) );
    qvProcessSchedule( first );
    drain( domain );
    endProcess( second );
    EXPECT_EQ( "2/6 1/2 0/0 0/0 0", show( familyOf( execute( 2047 ), "pastFamily" ) ) )
        << "an end that is passed through again counts once, and the reset began anew";
    EXPECT_EQ( "2/6 0/0 - - 0", show( familyOf( execute( 1 | 2 | 4 ), "pastFamily" ) ) );
}

TEST( ProcessStatistics, IntervalsOfProcessesOnDemand )
{
    Domain domain = domainWith( { 3, true, true } );
    Process process = processOn(
        domain, [] {}, nullptr, "intervals" );
    Local<QV_IDENTIFIER> identifier( qvProcessIdentifier( process ) );
    const struct
    {
        Flags flags;
        bool creation, reset;
    } cases[] = {
        { 1 | 128, false, false },           { 1 | 128 | 256, true, false }, { 1 | 128 | 512, false, true },
        { 1 | 16 | 32 | 128, false, false }, { 2047, true, true },
    };
    for ( const auto &row : cases )
    {
        Family family = familyOf( execute( row.flags ), "intervals" );
        Statistics statistics( qvProcessStatisticsFamilyProcess( family, identifier ) );
        ASSERT_TRUE( statistics );
        EXPECT_EQ( row.creation, qvProcessStatisticsHasIntervalSinceCreation( statistics ) ) << row.flags;
        EXPECT_EQ( row.reset, qvProcessStatisticsHasIntervalSinceReset( statistics ) ) << row.flags;
        EXPECT_EQ( "TEST", takeUtf8( qvProcessStatisticsDomainName( statistics ) ) );
        EXPECT_EQ( process->fixThreadHint % 3, qvProcessStatisticsThreadHint( statistics ) );
        EXPECT_FALSE( qvProcessStatisticsHasScheduledSinceTimestamp( statistics ) );
        EXPECT_EQ( -1, qvProcessStatisticsExecutingSinceTimestamp( statistics ) );
    }
    endProcess( process );
}

TEST( ProcessStatistics, ARunShowsItsTimes )
{
    Domain domain = domainWith( { 1, false, true } );
    Gate isInside, mayEnd;
    Process holder = processOn( domain, [&] {
        isInside.open();
        mayEnd.pass();
    } );
    Process waiting = processOn( domain, [] {} );
    qvProcessSchedule( holder );
    isInside.pass();
    qvProcessSchedule( waiting );
    std::this_thread::sleep_for( std::chrono::milliseconds( 12 ) );
    Statistics running( qvProcessTryGatherStatistics( holder, 0 ) );
    EXPECT_TRUE( qvProcessStatisticsHasExecutingSinceTimestamp( running ) );
    EXPECT_TRUE( qvProcessStatisticsHasScheduledSinceTimestamp( running ) );
    Statistics queued( qvProcessTryGatherStatistics( waiting, 0 ) );
    EXPECT_TRUE( qvProcessStatisticsHasScheduledSinceTimestamp( queued ) );
    EXPECT_FALSE( qvProcessStatisticsHasExecutingSinceTimestamp( queued ) );
    mayEnd.open();
    drain( domain );
    Interval held( qvProcessStatisticsIntervalSinceCreation(
        Statistics( qvProcessTryGatherStatistics( holder, 256 ) ) ) );
    EXPECT_EQ( 1, qvProcessStatisticsIntervalExecutions( held ) );
    EXPECT_GE( qvProcessStatisticsIntervalRuntimeMax( held ), 12 );
    EXPECT_EQ( qvProcessStatisticsIntervalRuntimeTotal( held ),
               qvProcessStatisticsIntervalRuntimeAverage( held ) );
    Interval waited( qvProcessStatisticsIntervalSinceCreation(
        Statistics( qvProcessTryGatherStatistics( waiting, 256 ) ) ) );
    EXPECT_GE( qvProcessStatisticsIntervalLatencyMax( waited ), 12 );
    endProcess( holder );
    endProcess( waiting );
    Domain plain = domainWith( {} );
    EXPECT_EQ( nullptr, qvProcessTryGatherStatistics( processOn( plain, [] {} ), 256 ) );
}

TEST( ProcessStatisticsInterval, ExecutionsPerSecondAndAverages )
{
    const struct
    {
        QV_INT begin, end, executions, expected;
    } cases[] = {
        { 0, 999, 5, 5 },    { 0, 1000, 5, 5 },
        { 100, 2100, 5, 2 }, { 0, 2000, 3, 1 },
        { 500, 100, 7, 7 },  { 0, 10000, 0, 0 },
        { 0, 3000, 10, 3 },  { 0, 1000, QV_INT_MAX, QV_INT_MAX / 1000 },
    };
    for ( const auto &row : cases )
    {
        Interval interval = intervalOf( row.begin, row.end, { row.executions, 0, 0, 0, 0 } );
        EXPECT_EQ( row.expected, qvProcessStatisticsIntervalExecutionsPerSecond( interval ) ) << row.end;
    }
    EXPECT_EQ( 3, qvProcessStatisticsIntervalLatencyAverage( intervalOf( 0, 0, { 3, 11, 0, 0, 0 } ) ) );
    EXPECT_EQ( 0, qvProcessStatisticsIntervalRuntimeAverage( intervalOf( 0, 0, { 0, 0, 0, 11, 0 } ) ) );
}

TEST( ProcessStatisticsGroup, SumsSaturateAndMaximaRise )
{
    Group group( qvProcessStatisticsGroupCreate() );
    EXPECT_EQ( 0, qvProcessStatisticsGroupLatencyAverage( group ) );
    Group before = Group::share( group );
    qvProcessStatisticsGroupAccumulate( group.edit(), intervalOf( 0, 1, { 2, 10, 7, QV_INT_MAX - 1, 5 } ) );
    qvProcessStatisticsGroupAccumulate( group.edit(), intervalOf( 0, 1, { 1, 5, 4, 9, 9 } ) );
    EXPECT_EQ( 0, qvProcessStatisticsGroupCount( before ) );
    EXPECT_EQ( 2, qvProcessStatisticsGroupCount( group ) );
    EXPECT_EQ( 3, qvProcessStatisticsGroupExecutions( group ) );
    EXPECT_EQ( 15, qvProcessStatisticsGroupLatencyTotal( group ) );
    EXPECT_EQ( 7, qvProcessStatisticsGroupLatencyMax( group ) );
    EXPECT_EQ( 5, qvProcessStatisticsGroupLatencyAverage( group ) );
    EXPECT_EQ( QV_INT_MAX, qvProcessStatisticsGroupRuntimeTotal( group ) );
    EXPECT_EQ( 9, qvProcessStatisticsGroupRuntimeMax( group ) );
    EXPECT_EQ( QV_INT_MAX / 3, qvProcessStatisticsGroupRuntimeAverage( group ) );
}

// A store of everything comes back the same, and each key that is removed or spoilt is noticed where it must be.
TEST( ProcessStatisticsStore, RestoresWhatItMadeAndRefusesTheRest )
{
    Interval interval = intervalOf( 1, 5, { 2, 10, 7, 9, 5 } );
    Store good( qvProcessStatisticsIntervalStore( interval ) );
    Interval same( qvProcessStatisticsIntervalTryRestore( good ) );
    ASSERT_TRUE( same );
    EXPECT_TRUE( qvStoreEquals( good, Store( qvProcessStatisticsIntervalStore( same ) ) ) );
    EXPECT_EQ( 7, qvStoreLength( good ) );
    for ( QV_INT idx = 0; idx < 7; idx++ )
    {
        Store bad = Store::share( good );
        qvStoreSetValueIntAt( bad.edit(), idx, -1 );
        EXPECT_EQ( nullptr, qvProcessStatisticsIntervalTryRestore( bad ) );
        qvStoreDelAt( bad.edit(), idx );
        EXPECT_EQ( nullptr, qvProcessStatisticsIntervalTryRestore( bad ) );
    }
    Store bad = Store::share( good );
    qvStoreSetValueIntCstr( bad.edit(), "runtimeMax", -1, 10 );
    EXPECT_EQ( nullptr, qvProcessStatisticsIntervalTryRestore( bad ) );

    Group group( qvProcessStatisticsGroupCreate() );
    qvProcessStatisticsGroupAccumulate( group.edit(), interval );
    Store groupStore( qvProcessStatisticsGroupStore( group ) );
    EXPECT_EQ( 6, qvStoreLength( groupStore ) );
    EXPECT_EQ( "1/2", show( qvProcessStatisticsGroupTryRestore( groupStore ) ) );
    for ( QV_INT idx = 0; idx < 6; idx++ )
    {
        Store less = Store::share( groupStore );
        qvStoreDelAt( less.edit(), idx );
        EXPECT_EQ( nullptr, qvProcessStatisticsGroupTryRestore( less ) );
    }
}

TEST( ProcessStatisticsStore, ResultsGoThereAndBack )
{
    Domain domain = domainWith( { 1, false, true } );
    Process process = processOn(
        domain, [] {}, nullptr, "storedFamily" );
    runTimes( domain, process, 2 );
    Result result = execute( 2047 );
    Store store( qvProcessStatisticsResultStore( result ) );
    Result restored( qvProcessStatisticsResultRestore( store ) );
    EXPECT_TRUE( qvStoreEquals( store, Store( qvProcessStatisticsResultStore( restored ) ) ) );
    EXPECT_EQ( qvProcessStatisticsResultFamiliesLength( result ),
               qvProcessStatisticsResultFamiliesLength( restored ) );
    Family family = familyOf( restored, "storedFamily" );
    EXPECT_EQ( "0/0 0/0 1/2 1/2 1", show( family ) );

    Statistics statistics( qvProcessStatisticsFamilyProcessAt( family, 0 ) );
    Store good( qvProcessStatisticsStore( statistics ) );
    const struct
    {
        const char *key, *value;
        bool isGood;
    } cases[] = {
        { "threadHint", "0", true },
        { "identifier", "0", false },
        { "domainName", "lower", false },
        { "threadHint", "-1", false },
        { "captureTimestamp", "x", false },
        { "creationTimestamp", "-5", false },
        { "scheduledSinceTimestamp", "5", true },
        { "scheduledSinceTimestamp", "-1", false },
        { "executingSinceTimestamp", "no", false },
        { "sinceCreation", "1", false },
        { "sinceReset", "", false },
        { "whatever", "1", true },
    };
    for ( const auto &row : cases )
    {
        Store changed = Store::share( good );
        qvStoreSetValueCstr( changed.edit(), row.key, -1, text( row.value ) );
        EXPECT_EQ( row.isGood, !!Statistics( qvProcessStatisticsTryRestore( changed ) ) )
            << row.key << row.value;

        Store families( qvStoreCreate() );
        Store inFamily( qvProcessStatisticsFamilyStore( family ) );
        Store processes( qvStoreCreateArray() );
        qvStoreAppendStore( processes.edit(), changed );
        qvStoreSetStoreCstr( inFamily.edit(), "processes", -1, processes );
        EXPECT_EQ( row.isGood, !!Family( qvProcessStatisticsFamilyTryRestore( inFamily ) ) ) << row.key;
        Store array( qvStoreCreateArray() );
        qvStoreAppendStore( array.edit(), inFamily );
        qvStoreAppendValueInt( array.edit(), 5 );
        qvStoreSetStoreCstr( families.edit(), "families", -1, array );
        EXPECT_EQ( row.isGood, qvProcessStatisticsResultFamiliesLength(
                                   Result( qvProcessStatisticsResultRestore( families ) ) ) );
    }
    endProcess( process );
}

TEST( ProcessStatisticsFamily, MembersComeAndGo )
{
    Family family( qvProcessStatisticsFamilyCreate( text( "someName" ) ) );
    Family before = Family::share( family );
    Group group( qvProcessStatisticsGroupCreate() );
    qvProcessStatisticsFamilySetGroupPast( family.edit(), group );
    qvProcessStatisticsFamilySetGroupPastSinceReset( family.edit(), group );
    qvProcessStatisticsFamilySetGroupCurrentSinceCreation( family.edit(), group );
    qvProcessStatisticsFamilySetGroupCurrentSinceReset( family.edit(), group );
    EXPECT_EQ( "0/0 0/0 0/0 0/0 0", show( family ) );
    EXPECT_EQ( "- - - - 0", show( before ) );
    qvProcessStatisticsFamilyDelGroupPastSinceReset( family.edit() );
    qvProcessStatisticsFamilyDelGroupCurrentSinceReset( family.edit() );
    EXPECT_EQ( "0/0 - 0/0 - 0", show( family ) );
    EXPECT_TRUE( qvProcessStatisticsFamilyHasGroupPast( family ) );
    EXPECT_FALSE( qvProcessStatisticsFamilyHasGroupCurrentSinceReset( family ) );

    Domain domain = domainWith( { 1, false, true } );
    Process processes[] = { processOn( domain, [] {} ), processOn( domain, [] {} ),
                            processOn( domain, [] {} ) };
    Local<QV_VECTOR> vec( qvVectorCreate() );
    for ( Process &process : processes )
    {
        Statistics statistics( qvProcessTryGatherStatistics( process, 0 ) );
        qvProcessStatisticsFamilySetProcess( family.edit(), statistics );
        qvProcessStatisticsFamilySetProcess( family.edit(), statistics );
        qvVectorAppendObj( vec.edit(), qvProcessStatisticsObj( statistics ) );
    }
    EXPECT_EQ( 3, qvProcessStatisticsFamilyProcessesLength( family ) );
    Local<QV_IDENTIFIER> first( qvProcessStatisticsFamilyProcessIdentifierAt( family, 0 ) );
    EXPECT_TRUE( qvProcessStatisticsFamilyHasProcess( family, first ) );
    qvProcessStatisticsFamilyDelProcess( family.edit(), first );
    EXPECT_FALSE( qvProcessStatisticsFamilyHasProcess( family, first ) );
    EXPECT_EQ( nullptr, qvProcessStatisticsFamilyProcess( family, first ) );
    qvProcessStatisticsFamilyClearProcesses( family.edit() );
    EXPECT_EQ( 0, qvProcessStatisticsFamilyProcessesLength( family ) );
    qvProcessStatisticsFamilySetProcessesVector( family.edit(), vec );
    EXPECT_EQ( 3, qvVectorLength( Local<QV_VECTOR>( qvProcessStatisticsFamilyProcessesVector( family ) ) ) );

    Result result( qvProcessStatisticsResultCreate() );
    qvProcessStatisticsResultSetFamily( result.edit(), family );
    qvProcessStatisticsFamilySetName( family.edit(), text( "otherName" ) );
    qvProcessStatisticsResultSetFamily( result.edit(), family );
    EXPECT_EQ( "otherName", takeUtf8( qvProcessStatisticsResultFamilyNameAt( result, 0 ) ) );
    Local<QV_VECTOR> families( qvProcessStatisticsResultFamiliesVector( result ) );
    qvProcessStatisticsResultDelFamily( result.edit(), text( "otherName" ) );
    EXPECT_FALSE( qvProcessStatisticsResultHasFamily( result, text( "otherName" ) ) );
    qvProcessStatisticsResultClearFamilies( result.edit() );
    qvProcessStatisticsResultSetFamiliesVector( result.edit(), families );
    EXPECT_EQ( 2, qvProcessStatisticsResultFamiliesLength( result ) );
    EXPECT_DEATH( qvProcessStatisticsFamilySetName( family.edit(), text( "a b" ) ), "qvNameOk" );
    EXPECT_DEATH( qvProcessStatisticsResultSetFamiliesVector( result.edit(), vec ), "stdfunc from" );
    for ( Process &process : processes )
        endProcess( process );
}
