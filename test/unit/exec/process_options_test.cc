#include "support/test.hh"
#include "exec/exec_support.hh"
#include "support/child.hh"
#include "support/folder.hh"

#include <qv/exec/qv_process_system.hh>

#include <sys/wait.h>

using namespace test;

namespace
{

using Options = Local<QV_PROCESS_DOMAIN_OPTIONS>;
using Store = Local<QV_STORE>;

// All four members, "-" for an absent one.
std::string show( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    auto member = []( QV_BOOL has, QV_INT value ) { return has ? std::to_string( value ) : "-"; };
    return member( qvProcessDomainOptionsHasThreadCount( options ),
                   qvProcessDomainOptionsThreadCount( options ) ) +
           member( qvProcessDomainOptionsHasThreadPriority( options ),
                   qvProcessDomainOptionsThreadPriority( options ) ) +
           member( qvProcessDomainOptionsHasTrailOptimization( options ),
                   qvProcessDomainOptionsTrailOptimization( options ) ) +
           member( qvProcessDomainOptionsHasMaintainStatistics( options ),
                   qvProcessDomainOptionsMaintainStatistics( options ) );
}

TEST( ProcessDomainOptions, EachMemberComesAndGoesByItself )
{
    Options options( qvProcessDomainOptionsCreate() );
    EXPECT_EQ( "----", show( options ) );
    Options before = Options::share( options );
    qvProcessDomainOptionsSetThreadCount( options.edit(), 3 );
    qvProcessDomainOptionsSetThreadPriority( options.edit(), QV_THREAD_PRIORITY_HIGH );
    qvProcessDomainOptionsSetTrailOptimization( options.edit(), QV_FALSE );
    qvProcessDomainOptionsSetMaintainStatistics( options.edit(), QV_TRUE );
    EXPECT_EQ( "3401", show( options ) );
    EXPECT_EQ( "----", show( before ) );
    Store store( qvProcessDomainOptionsStore( options ) );
    EXPECT_EQ( "3401", show( Options( qvProcessDomainOptionsRestore( store ) ) ) );
    EXPECT_EQ( "QV_THREAD_PRIORITY_HIGH", takeUtf8( qvStoreValueCstr( store, "threadPriority", -1 ) ) );
    qvProcessDomainOptionsDelThreadPriority( options.edit() );
    qvProcessDomainOptionsDelTrailOptimization( options.edit() );
    EXPECT_EQ( "3--1", show( options ) );
    qvProcessDomainOptionsDelThreadCount( options.edit() );
    qvProcessDomainOptionsDelMaintainStatistics( options.edit() );
    EXPECT_EQ( 0, qvStoreLength( Store( qvProcessDomainOptionsStore( options ) ) ) );
    EXPECT_DEATH( qvProcessDomainOptionsSetThreadCount( options.edit(), 0 ), "threadCount >= 1" );
    EXPECT_DEATH( qvProcessDomainOptionsSetThreadPriority( options.edit(), 7 ), "QV_THREAD_PRIORITY_OK" );
}

TEST( ProcessDomainOptions, WhatCantBeUsedIsPassedOver )
{
    const char *const cases[][3] = {
        { "threadCount", "500", "500---" },
        { "threadCount", "1", "1---" },
        { "threadCount", "0", "----" },
        { "threadCount", "-3", "----" },
        { "threadCount", "many", "----" },
        { "threadCount", "99999999999999999999", "----" },
        { "threadPriority", "QV_THREAD_PRIORITY_IDLE", "-0--" },
        { "threadPriority", "IDLE", "----" },
        { "threadPriority", "7", "----" },
        { "trailOptimization", "true", "--1-" },
        { "trailOptimization", "false", "--0-" },
        { "trailOptimization", "perhaps", "----" },
        { "maintainStatistics", "true", "---1" },
        { "other", "1", "----" },
    };
    for ( auto &[key, value, expected] : cases )
        EXPECT_EQ( expected,
                   show( Options( qvProcessDomainOptionsRestore( storeOf( { { key, value } } ) ) ) ) )
            << key << " " << value;
}

TEST( ProcessDomain, SettingsComeFromTheOptionsFirst )
{
    Options options( qvProcessDomainOptionsCreate() );
    Domain plain( qvProcessDomainTryCreate( options, text( "PLAIN" ) ) );
    EXPECT_EQ( 1, qvProcessDomainThreadCount( plain ) );
    EXPECT_EQ( QV_THREAD_PRIORITY_NORMAL, qvProcessDomainThreadPriority( plain ) );
    EXPECT_FALSE( qvProcessDomainTrailOptimization( plain ) );
    EXPECT_FALSE( qvProcessDomainMaintainStatistics( plain ) );
    EXPECT_EQ( "PLAIN", takeUtf8( qvProcessDomainName( plain ) ) );
    qvProcessDomainOptionsSetThreadCount( options.edit(), 500 );
    qvProcessDomainOptionsSetTrailOptimization( options.edit(), QV_FALSE );
    Domain many( qvProcessDomainTryCreateWithFallback( options, text( "MANY" ), 2, QV_THREAD_PRIORITY_LOW,
                                                       QV_TRUE, QV_TRUE ) );
    ASSERT_TRUE( many );
    EXPECT_EQ( 128, qvProcessDomainThreadCount( many ) );
    EXPECT_EQ( QV_THREAD_PRIORITY_LOW, qvProcessDomainThreadPriority( many ) );
    EXPECT_FALSE( qvProcessDomainTrailOptimization( many ) );
    EXPECT_TRUE( qvProcessDomainMaintainStatistics( many ) );
    EXPECT_EQ( options, Options( qvProcessDomainOptions( many ) ) );
    EXPECT_DEATH( qvProcessDomainTryCreate( options, text( "lower" ) ), "qvNameUpperCaseOk" );
    EXPECT_DEATH( qvProcessDomainTryCreateWithFallback( options, text( "X" ), 0, 0, 0, 0 ),
                  "fallbackThreadCount" );
}

TEST( ProcessSystemOptions, StoreAndFile )
{
    using SystemOptions = Local<QV_PROCESS_SYSTEM_OPTIONS>;
    SystemOptions options( qvProcessSystemOptionsCreate() );
    EXPECT_EQ( 0, qvStoreLength( Store( qvProcessSystemOptionsStore( options ) ) ) );
    Options tool( qvProcessDomainOptionsCreate() );
    qvProcessDomainOptionsSetThreadCount( tool.edit(), 2 );
    Options high = Options::share( tool );
    qvProcessDomainOptionsSetMaintainStatistics( high.edit(), QV_TRUE );
    SystemOptions before = SystemOptions::share( options );
    qvProcessSystemOptionsToolSetDomainOptions( options.edit(), tool );
    qvProcessSystemOptionsServerSetHighPriorityDomainOptions( options.edit(), high );
    EXPECT_EQ( "----", show( Options( qvProcessSystemOptionsToolDomainOptions( before ) ) ) );
    Store store( qvProcessSystemOptionsStore( options ) );
    EXPECT_EQ( 2, qvStoreLength( store ) );

    auto shown = []( QV_PATH *path ) {
        SystemOptions read( qv::readProcessSystemOptions( path ) );
        return show( Options( qvProcessSystemOptionsToolDomainOptions( read ) ) ) + " " +
               show( Options( qvProcessSystemOptionsServerLowPriorityDomainOptions( read ) ) ) + " " +
               show( Options( qvProcessSystemOptionsServerHighPriorityDomainOptions( read ) ) );
    };
    const std::string none = "---- ---- ----";
    TemporaryFolder folder;
    Local<QV_PATH> path = folder.path( "qv_process.jnstore" );
    EXPECT_EQ( none, shown( nullptr ) );
    EXPECT_EQ( none, shown( path ) );
    Local<QV_STORE_HEADER> header( qvStoreHeaderCreateFromSort( qvProcessSystemOptionsSort(), QV_FALSE ) );
    ASSERT_TRUE( qvPathFileWriteStore( path, store, header ) );
    EXPECT_EQ( "2--- ---- 2--1", shown( path ) );
    Local<QV_STORE_HEADER> other( qvStoreHeaderCreateFromSort( qvProcessDomainOptionsSort(), QV_FALSE ) );
    ASSERT_TRUE( qvPathFileWriteStore( path, store, other ) );
    EXPECT_EQ( none, shown( path ) ) << "the header names another sort";
    folder.write( "qv_process.jnstore", "toolDomainOptions { threadCount 3 }" );
    folder.write( "broken", "{{{" );
    EXPECT_EQ( none, shown( folder.path( "broken" ) ) );
}

TEST( ProcessSystem, AToolHasOneDomain )
{
    EXPECT_EQ( QV_PROCESS_SYSTEM_MODE_TOOL, qv___ProcessSystemMode() );
    Domain low( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_LOW ) );
    Domain high( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_HIGH ) );
    EXPECT_EQ( low, high );
    EXPECT_EQ( "QV", takeUtf8( qvProcessDomainName( low ) ) );
    EXPECT_EQ( 1, qvProcessDomainThreadCount( low ) );
    Process process( qv___ProcessCreate( 5, runClosure, Local<qv___Obj>( closureOf( [] {} ) ), "name" ) );
    EXPECT_EQ( low, Domain( qvProcessDomain( process ) ) );
}

int serverDomains()
{
    qvRuntimeShutdown();
    qvRuntimeStartup( QV_RUNTIME_FLAG_SERVER, -1, nullptr, nullptr, nullptr, nullptr );
    int bad = qv___ProcessSystemMode() != QV_PROCESS_SYSTEM_MODE_SERVER;
    {
        Domain low( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_LOW ) );
        Domain high( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_HIGH ) );
        bad |= takeUtf8( qvProcessDomainName( low ) ) != "QV_LOW" ? 2 : 0;
        bad |= takeUtf8( qvProcessDomainName( high ) ) != "QV_HIGH" ? 4 : 0;
        bad |= qvProcessDomainThreadCount( low ) != qv::processorCount() ? 8 : 0;
        bad |= qvProcessDomainThreadPriority( high ) != QV_THREAD_PRIORITY_HIGHEST ? 16 : 0;
        bad |=
            qvProcessDomainTrailOptimization( high ) != 1 || qvProcessDomainTrailOptimization( low ) ? 32 : 0;
        Process process( qv___ProcessCreate( 7, runClosure, Local<qv___Obj>( closureOf( [] {} ) ), "name" ) );
        bad |= Domain( qvProcessDomain( process ) ) != low ? 64 : 0;
    }
    qvRuntimeShutdown();
    return bad;
}

// The runtime reads what the host has put into its data directory.
int configuredDomains()
{
    TemporaryFolder home;
    setenv( "HOME", home.name().c_str(), 1 );
    auto start = [] { qvRuntimeStartup( QV_RUNTIME_FLAG_SERVER, -1, nullptr, nullptr, nullptr, nullptr ); };
    start();
    {
        Local<QV_PATH> path(
            qvRuntimePathsPath( Local<QV_RUNTIME_PATHS>( qvRuntimePaths() ), QV_RUNTIME_PATH_DATA ) );
        qvPathAppendComponentFilenameCstr( path.edit(), "qv_process.jnstore", -1 );
        std::ofstream( textOf( path ) )
            << "serverHighPriorityDomainOptions {\nthreadCount 3\nmaintainStatistics true\n}\n";
    }
    qvRuntimeShutdown();
    start();
    int bad = 0;
    {
        Domain low( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_LOW ) );
        Domain high( qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY_HIGH ) );
        bad |= qvProcessDomainThreadCount( high ) != 3 ? 1 : 0;
        bad |= qvProcessDomainMaintainStatistics( high ) && !qvProcessDomainMaintainStatistics( low ) ? 0 : 2;
        bad |= qvProcessDomainTrailOptimization( high ) ? 0 : 4;
    }
    qvRuntimeShutdown();
    return bad;
}

TEST( ProcessSystem, AServerHasTwoDomains )
{
    EXPECT_EXIT( _exit( serverDomains() ), testing::ExitedWithCode( 0 ), "" );
}

TEST( ProcessSystem, ItsOptionsStandInTheDataDirectory )
{
    ChildResult child = runInChild( configuredDomains );
    EXPECT_TRUE( WIFEXITED( child.status ) && WEXITSTATUS( child.status ) == 0 )
        << child.status << child.output;
}

} // namespace
