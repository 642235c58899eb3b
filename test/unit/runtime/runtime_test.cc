#include "support/test.hh"
#include "heap.hh"
#include "support/child.hh"

#include <qv/runtime/qv_module.hh>
#include <qv/runtime/qv_obj.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime.hh>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace test;

TEST( Runtime, FlagsNormalize )
{
    const std::pair<QV_INT, QV_INT> rows[] = {
        { 1 | 8 | 16, 1 },
        { 32, 0 },
        { 16 | 256, 16 },
        { 16 | 128 | 256 | 512, 16 | 128 | 256 | 512 },
        { 64 | 128 | 256, 0 },
        { 8192, 0 },
        { 4096 | 8192, 4096 | 8192 },
        { 2 | 4 | 8 | 1024 | 2048 | 16384, 2 | 4 | 8 | 1024 | 2048 | 16384 },
        { ( QV_INT_MAX ^ 0x7FFF ), 0 },
    };
    for ( auto [flags, normalized] : rows )
        EXPECT_EQ( normalized, qvRuntimeFlagsNormalize( flags ) ) << flags;
}

TEST( Runtime, OwnIdentity )
{
    EXPECT_TRUE( qv___ModuleCheckCompatibility( qvModule() ) );
    EXPECT_EQ( "qv", takeUtf8( qvModuleName( qvModule() ) ) );
    Local<QV_MODULE_VERSION> version( qvModuleVersion( qvModule() ) );
    EXPECT_EQ( "0.0", takeUtf8( qvModuleVersionToString( version ) ) );
    Local<QV_TIME> built( qvRuntimeVersionProductBuildTime() );
    EXPECT_TRUE( qvTimeValid( built ) );
    Local<QV_STRING> productVersion( qvRuntimeVersionProductVersion() );
    EXPECT_TRUE( qvRuntimeValidateProductVersion( productVersion ) );
    EXPECT_TRUE( qvRuntimeValidateProductName( Local<QV_STRING>( qvRuntimeVersionProductName() ) ) );
    EXPECT_TRUE(
        qvRuntimeValidateProductFriendlyName( Local<QV_STRING>( qvRuntimeVersionProductFriendlyName() ) ) );
    EXPECT_TRUE(
        qvRuntimeValidateProductVendorName( Local<QV_STRING>( qvRuntimeVersionProductVendorName() ) ) );
    EXPECT_TRUE(
        qvRuntimeValidateProductCopyright( Local<QV_STRING>( qvRuntimeVersionProductCopyright() ) ) );
    EXPECT_EQ( "qv_unit", takeUtf8( qvRuntimeVersionApplicationIdentifier() ) );
    Local<QV_VECTOR> modules( qvRuntimeModulesVector() );
    EXPECT_EQ( "<qv>", takeUtf8( qvVectorToString( modules ) ) );
}

TEST( Runtime, ValidatesProductData )
{
    const std::string longest( 32, 'a' ), tooLong( 33, 'a' ), longText( 100, 'a' ), tooLongText( 101, 'a' );
    const struct
    {
        QV_BOOL ( *validate )( QV_STRING * );
        std::vector<std::string> good, bad;
    } rows[] = {
        { qvRuntimeValidateProductName,
          { "a", "a1", longest },
          { "", "1a", "A", "a_b", "a b", tooLong, "\xC3\xBC" } },
        { qvRuntimeValidateProductFriendlyName,
          { "A b 1", longText },
          { "", "a  b", "a ", " a", "a-b", tooLongText } },
        { qvRuntimeValidateProductVersion,
          { "1.2.3", "0.0.0" },
          { "", "1.2", "1.2.3.4", "1.2.x", "1.-2.3", "1..3" } },
        { qvRuntimeValidateProductVendorName, { "A-b c", "-" }, { "", "a.b", "a " } },
        { qvRuntimeValidateProductCopyright, { "(C) 2026: x; y, z-a.b @c" }, { "", "a/b", "a  b" } },
        { qvRuntimeValidateModuleName,
          { "a", "a_b2", longest },
          { "", "_a", "a_", "a__b", "1a", "Ab", tooLong } },
    };
    for ( const auto &row : rows )
    {
        for ( const std::string &good : row.good )
            EXPECT_TRUE( row.validate( text( good ) ) ) << good;
        for ( const std::string &bad : row.bad )
            EXPECT_FALSE( row.validate( text( bad ) ) ) << bad;
    }
}

TEST( ModuleVersion, ParsesPrintsAndOrders )
{
    const char *ascending[] = { "0.0", "0.0#1", "0.1", "0#1.0", "1.2", "1#1.0", "3.1", "3#4.1#2", "3#999.0" };
    Local<QV_MODULE_VERSION> before;
    for ( const char *form : ascending )
    {
        Local<QV_MODULE_VERSION> version( qvModuleVersionTryCreateFromCstr( form, -1 ) );
        ASSERT_TRUE( version ) << form;
        EXPECT_EQ( form, takeUtf8( qvModuleVersionToString( version ) ) );
        if ( before )
        {
            EXPECT_GT( 0, qvModuleVersionCompare( before, version ) ) << form;
        }
        before.take( version.give() );
    }
    for ( const char *bad : { "", "1", "1.2.3", "a.b", "1#1000.2", "1#.2", "1#2#3.4", "1.-2", "1#-1.2",
                              "1.2 x", "9223372036854776.0", "1.9223372036854775#999", "." } )
        EXPECT_EQ( nullptr, qvModuleVersionTryCreateFromCstr( bad, -1 ) ) << bad;
    Local<QV_MODULE_VERSION> version( qvModuleVersionCreate( 1, 5, 2, 0 ) );
    EXPECT_EQ( 1005, qvModuleVersionCompatibility( version ) );
    EXPECT_DEATH( qvModuleVersionCreate( 1, 1000, 0, 0 ), "isPair" );
}

std::string printed;

void keepLine( const QV_CHAR *chs, QV_INT chsLength )
{
    for ( QV_INT idx = 0; idx < chsLength; idx++ )
        printed += static_cast<char>( chs[idx] );
    printed += '\n';
}

// Starts the runtime in a child process with other flags, and writes what it prints to standard error.
ChildResult runWithFlags( QV_INT flags, void ( *body )() )
{
    return runInChild( [=] {
        printed.clear();
        qvRuntimeStartup( flags, -1, keepLine, nullptr, nullptr, nullptr );
        body();
        qvRuntimeShutdown();
        fputs( printed.c_str(), stderr );
        return qvRuntimeFlags() == 0 ? 0 : 1;
    } );
}

// The part of a leak report behind its head, and whether the head was there.
std::string afterHead( const std::string &report )
{
    size_t end = report.rfind( "----\n" );
    EXPECT_NE( std::string::npos, report.find( "Product   : qv\nFriendly  : QV\nVersion   : " ) );
    return end == std::string::npos ? report : report.substr( end + 5 );
}

void leak()
{
    qvAlertCreate();
    qvStringRetain( qvStringCreateFromCstr( "lost", -1 ) );
}

TEST( Lifecycle, LeakReportFollowsTheFlags )
{
    const QV_INT odb = QV_RUNTIME_FLAG_OBJECT_DATABASE, object = QV_RUNTIME_FLAG_SNAPSHOT_OBJECT;
    EXPECT_EQ( "", runWithFlags( odb, leak ).output );
    EXPECT_EQ( "QV_STRING 1\nQV_ALERT  1\n",
               afterHead( runWithFlags( odb | QV_RUNTIME_FLAG_SNAPSHOT_SORT, leak ).output ) );
    EXPECT_EQ( "\nQV_STRING (2)\nQV_ALERT (1)\n", afterHead( runWithFlags( odb | object, leak ).output ) );
    EXPECT_EQ(
        "\nQV_STRING (2) \"lost\"\nQV_ALERT (1)\n",
        afterHead( runWithFlags( odb | object | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING, leak ).output ) );
    auto logged = [] {
        QV_ALERT *alert = qvAlertCreate();
        qv___ObjLogAppend( qvAlertObj( alert ), text( "why" ) );
    };
    EXPECT_EQ(
        "\nQV_ALERT (1)\n\twhy\n",
        afterHead( runWithFlags( odb | object | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG, logged ).output ) );
    // Where it was made: a line for each call, and an empty one; plain values have none.
    const std::string origin = afterHead(
        runWithFlags( odb | object | QV_RUNTIME_FLAG_OBJECT_ORIGIN | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG,
                      leak )
            .output );
    EXPECT_TRUE( std::regex_match(
        origin, std::regex( "\nQV_STRING \\(2\\)\nQV_ALERT \\(1\\)\n(\t.*\\[0x[0-9a-f]+\\]\n){3,}\t\n" ) ) )
        << origin;
    ChildResult clean = runWithFlags( odb | object | QV_RUNTIME_FLAG_SNAPSHOT_SORT, [] {} );
    EXPECT_EQ( "", clean.output );
    EXPECT_EQ( 0, clean.status );
}

TEST( Lifecycle, OriginIsLoggedButForPlainValues )
{
    auto body = [] {
        Local<QV_ALERT> alert( qvAlertCreate() );
        Local<QV_STRING> string( qvStringCreateFromCstr( "x", -1 ) );
        Local<QV_VECTOR> log( qv___ObjLog( qvAlertObj( alert ) ) );
        Local<qv___Obj> last( qvVectorObjAt( log, qvVectorLength( log ) - 1 ) );
        bool closed = qvStringLength( qvStringFrom( last ) ) == 0 && qvVectorLength( log ) > 2;
        qv___RuntimePrintCstr( closed && !qv___ObjLog( qvStringObj( string ) ) ? "good" : "bad", -1 );
    };
    EXPECT_EQ( "good\n",
               runWithFlags( QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_OBJECT_ORIGIN, body ).output );
}

TEST( Lifecycle, PrintsLineByLine )
{
    auto body = [] {
        Local<QV_VECTOR> lines( qvVectorCreate() );
        qvVectorAppendObj( lines.edit(), qvStringObj( text( "one" ) ) );
        qvVectorAppendObj( lines.edit(), qvVectorObj( lines ) );
        qv___RuntimePrintLines( lines );
        qv___RuntimePrintWcstr( L"wide", -1 );
        qv___RuntimePrintChars( nullptr, 0 );
        Local<QV_LINE_SINK> sink( qv___RuntimePrintLineSinkCreate() );
        qvLineSinkWrite( sink, text( "through the sink" ) );
        if ( qvRuntimeSnapshotObjects() || qvModuleSnapshotSorts( qvModule() ) ||
             qvRuntimeVersionApplicationHasIdentifier() || qvRuntimeVersionApplicationVersion() )
            qv___RuntimePrintCstr( "unexpected", -1 );
    };
    EXPECT_EQ( "one\n<one>\nwide\n\nthrough the sink\n", runWithFlags( 0, body ).output );
}

// What a process holds: blocks of the heap, descriptors, threads, and mappings of memory.
struct Holdings
{
    long blocks, descriptors, threads, mappings;

    // Once no more threads are left than these, or after a while.
    static Holdings now( long threadsBefore )
    {
        auto entries = []( const char *folder ) {
            std::filesystem::directory_iterator first( folder );
            return static_cast<long>( std::distance( first, {} ) );
        };
        // A detached thread has told its end a little before it is gone.
        long threads = entries( "/proc/self/task" );
        for ( int wait = 0; wait < 20 && threads > threadsBefore; wait++ )
        {
            usleep( 10000 );
            threads = entries( "/proc/self/task" );
        }
        std::ifstream maps( "/proc/self/maps" );
        long mappings = std::count( std::istreambuf_iterator<char>( maps ), {}, '\n' );
        long blocks = liveBlocks();
        return { blocks, entries( "/proc/self/fd" ), threads, mappings };
    }
};

// Where no check slows them down, 2,000.
#if !QV_TEST_OWN_HEAP
constexpr int manyRounds = 50;
#elif defined( QV_CHECKED )
constexpr int manyRounds = 200;
#else
constexpr int manyRounds = 2000;
#endif

// Exit code 0, or the number of the first holding that grew.
int growthOfRounds( QV_INT flags, int rounds )
{
    Holdings before = {};
    for ( int round = -20; round < rounds; round++ )
    {
        if ( round == 0 )
            before = Holdings::now( 1 );
        qvRuntimeStartup( flags, 0, nullptr, "a", "A", "1" );
        qvRuntimeShutdown();
    }
    Holdings after = Holdings::now( before.threads );
    // The platform keeps some heaps and stacks of threads for later ones.
    constexpr long slack = 20;
    return after.blocks != before.blocks              ? 1
           : after.descriptors != before.descriptors  ? 2
           : after.threads != before.threads          ? 3
           : after.mappings > before.mappings + slack ? 4
           : qvSortObjects( qvAlertSort() ) != 0      ? 5
                                                      : 0;
}

TEST( Lifecycle, StartsAndStopsManyTimes )
{
    const QV_INT odb = QV_RUNTIME_FLAG_OBJECT_DATABASE;
    std::map<pid_t, QV_INT> children;
    qvRuntimeShutdown();
    for ( QV_INT flag = 0; flag <= QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS; flag = flag ? flag * 2 : 1 )
    {
        // With its call stack for each object a start takes a hundred times as long.
        const bool isOrigin = flag == QV_RUNTIME_FLAG_OBJECT_ORIGIN;
        const bool isSnapshot = ( flag & QV___RUNTIME_SNAPSHOT_MASK ) != 0;
        const QV_INT flags = flag | ( isSnapshot ? odb | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT
                                      : isOrigin ? odb
                                                 : 0 );
        pid_t child = fork();
        if ( child == 0 )
            _exit( growthOfRounds( flags, isOrigin ? 20 : manyRounds ) );
        children[child] = flags;
    }
    startRuntime();
    for ( auto [child, flags] : children )
    {
        int status = -1;
        waitpid( child, &status, 0 );
        EXPECT_EQ( 0, status ) << "flags " << flags;
    }
    EXPECT_DEATH( qvRuntimeStartup( 0, -2, nullptr, nullptr, nullptr, nullptr ),
                  "optionalUnloadModuleTimeout" );
}

} // namespace
