// Loading, registering and unloading modules. Each case starts the runtime in a child process and compares all that the
// modules' hooks and the runtime print.

#include "support/test.hh"
#include "support/child.hh"
#include "support/folder.hh"

#include <qv/runtime/qv_module.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime_modules.hh>
#include <qv_build.hh>

#include <fstream>
#include <link.h>
#include <sys/wait.h>

namespace
{

using namespace test;

std::atomic<bool> objectsReported = false;

void printLine( const QV_CHAR *chs, QV_INT chsLength )
{
    std::string line( chs, chs + chsLength );
    fputs( ( line + "\n" ).c_str(), stderr );
    objectsReported = objectsReported || line.starts_with( "LINKED" );
}

void say( const std::string &line )
{
    fputs( ( line + "\n" ).c_str(), stderr );
}

std::string loadedModules()
{
    Local<QV_VECTOR> modules( qvRuntimeModulesVector() );
    return takeUtf8( qvVectorToString( modules ) );
}

void load( const char *name )
{
    QV_BOOL loaded = qvRuntimeTryLoadModule( text( name ) );
    say( std::string( name ) + ( loaded ? ": loaded" : ": failed" ) );
}

ChildResult run( const std::function<void()> &body, QV_INT flags = 0, QV_INT timeout = -1,
                 const char *modules = QV_TEST_MODULES )
{
    return runInChild( [&] {
        setenv( "JN_QV_BIN_PATH", modules, 1 );
        qvRuntimeStartup( flags, timeout, printLine, nullptr, nullptr, nullptr );
        body();
        qvRuntimeShutdown();
        return 0;
    } );
}

// What the body prints, the shutdown included.
std::string outputOf( const std::function<void()> &body, QV_INT flags = 0 )
{
    ChildResult result = run( body, flags );
    EXPECT_EQ( 0, result.status );
    return result.output;
}

TEST( Modules, DiamondWithExtensions )
{
    auto body = [] {
        load( "top" );
        load( "top" );
        say( loadedModules() );
        Local<QV_MODULE> module( qvRuntimeModule( text( "left" ) ) );
        say( module ? takeUtf8( qvModuleDescription( module ) ) : "none" );
        say( qvRuntimeModule( text( "nowhere" ) ) ? "some" : "none" );
        say( qvModuleHasDependency( module, text( "bottom" ) ) ? "depends" : "free" );
        qvRuntimeUnloadAllModules();
        say( loadedModules() );
        load( "bottom" );
    };
    EXPECT_EQ( "start bottom\nstart left\nstart right\nstart top\nstart extra\nstart more\n"
               "top: loaded\ntop: loaded\n"
               "<qv, bottom, left, right, top, extra, more>\nA module of the tests\nnone\ndepends\n"
               "prepare more\nprepare extra\nprepare top\nprepare right\nprepare left\nprepare bottom\n"
               "shutdown more\nfinalize more\nshutdown extra\nfinalize extra\nshutdown top\nfinalize top\n"
               "shutdown right\nfinalize right\nshutdown left\nfinalize left\nshutdown bottom\n"
               "finalize bottom\n<qv>\nstart bottom\nbottom: loaded\n"
               "prepare bottom\nshutdown bottom\nfinalize bottom\n",
               outputOf( body ) );
    auto without = [] {
        load( "extra" );
        say( loadedModules() );
    };
    EXPECT_EQ( "start extra\nextra: loaded\n<qv, extra>\nprepare extra\nshutdown extra\nfinalize extra\n",
               outputOf( without, QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS ) );
}

TEST( Modules, FailuresLeaveTheTablesAlone )
{
    auto body = [] {
        for ( const char *name : { "nowhere", "nosymbol", "renamed", "newer" } )
            load( name );
        say( loadedModules() );
        load( "orphan" );
        load( "refusing" );
        say( loadedModules() );
    };
    EXPECT_EQ( "nowhere: failed\nnosymbol: failed\nrenamed: failed\nnewer: failed\n<qv>\n"
               "start bottom\norphan: failed\nstart refusing\nrefusing: failed\n<qv, bottom>\n"
               "prepare bottom\nshutdown bottom\nfinalize bottom\n",
               outputOf( body ) );
}

// Where the last byte that a shared object's program headers ask for ends.
size_t segmentsEnd( const std::string &file )
{
    ElfW( Ehdr ) header;
    memcpy( &header, file.data(), sizeof( header ) );
    size_t end = 0;
    for ( size_t idx = 0; idx < header.e_phnum; idx++ )
    {
        ElfW( Phdr ) segment;
        memcpy( &segment, &file[header.e_phoff + idx * sizeof( segment )], sizeof( segment ) );
        end = std::max( end, static_cast<size_t>( segment.p_offset + segment.p_filesz ) );
    }
    return end;
}

TEST( Modules, DamagedFiles )
{
    std::ifstream file( QV_TEST_MODULES "/libqv-bottom.so", std::ios::binary );
    std::string whole{ std::istreambuf_iterator<char>( file ), std::istreambuf_iterator<char>() };
    const size_t end = segmentsEnd( whole );
    ASSERT_LT( end, whole.size() );
    TemporaryFolder folder;
    auto loadFirst = [&]( size_t length ) {
        folder.write( "libqv-bottom.so", whole.substr( 0, length ) );
        return qvRuntimeTryLoadModule( text( "bottom" ) );
    };
    auto body = [&] {
        for ( size_t length = 0; length < end; length += length < 1000 ? 7 : 83 )
        {
            if ( loadFirst( length ) )
                say( "loaded at " + std::to_string( length ) );
        }
        say( loadFirst( end - 1 ) ? "loaded" : "refused" );
        say( loadedModules() );
        say( loadFirst( end ) ? "loaded" : "refused" );
    };
    EXPECT_EQ( "refused\n<qv>\nstart bottom\nloaded\nprepare bottom\nshutdown bottom\nfinalize bottom\n",
               run( body, 0, -1, folder.name().c_str() ).output );

    // The other word size, another machine, a program instead of a shared object, a size of records that is none.
    std::string damaged[] = { whole, whole, whole, whole, "no shared object", whole };
    damaged[0][EI_CLASS] ^= ELFCLASS32 ^ ELFCLASS64;
    damaged[1][offsetof( ElfW( Ehdr ), e_machine )] = 2;
    damaged[2][offsetof( ElfW( Ehdr ), e_type )] = ET_EXEC;
    damaged[3][offsetof( ElfW( Ehdr ), e_phentsize )] = 1;
    damaged[5].resize( end / 2 );
    auto loadDamaged = [&] {
        for ( const std::string &bytes : damaged )
        {
            folder.write( "libqv-bottom.so", bytes );
            load( "bottom" );
        }
    };
    std::string output = run( loadDamaged, QV_RUNTIME_FLAG_MODULE_DEBUG, -1, folder.name().c_str() ).output;
    const std::string refusal = "[qv___RuntimePlatformLoadModule()] dlopen(): null, dlerror(): " +
                                folder.name( "libqv-bottom.so" ) + ": ",
                      cut = refusal + "file too short\nbottom: failed\n";
    size_t refusals = 0;
    for ( size_t at = 0; ( at = output.find( refusal, at ) ) != std::string::npos; at++ )
        refusals++;
    EXPECT_EQ( std::size( damaged ), refusals ) << output;
    EXPECT_TRUE( output.ends_with( cut ) ) << output;
}

// One thread loads, the others wait for it or find all loaded; readers see whole states only.
TEST( Modules, ThreadsLoadOnce )
{
    auto body = [] {
        std::atomic<bool> loaded = true, done = false;
        std::thread reader( [&] {
            while ( !done )
            {
                std::string state = loadedModules();
                if ( !std::string( "<qv, bottom, left, right, top, extra, more>" )
                          .starts_with( state.substr( 0, state.size() - 1 ) ) )
                    say( state );
            }
        } );
        runOnThreads( 4, [&]( size_t ) { loaded = qvRuntimeTryLoadModule( text( "top" ) ) && loaded; } );
        done = true;
        reader.join();
        say( loaded ? "loaded" : "failed" );
        _exit( 0 );
    };
    EXPECT_EQ( "start bottom\nstart left\nstart right\nstart top\nstart extra\nstart more\nloaded\n",
               outputOf( body ) );
}

TEST( Modules, SearchPathOfTheLoader )
{
    auto body = [] { load( "bottom" ); };
    EXPECT_EQ( "start bottom\nbottom: loaded\nprepare bottom\nshutdown bottom\nfinalize bottom\n",
               run( body, QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH, -1, "/nowhere" ).output );
    EXPECT_EQ( "bottom: failed\n", run( body, 0, -1, "/nowhere" ).output );
    EXPECT_EQ( "bottom: failed\n", run( body, QV_RUNTIME_FLAG_MINIMAL ).output );
}

TEST( Modules, SeveralNamesAtOnce )
{
    auto body = [] {
        say( qvRuntimeTryLoadModulesCstr( "", -1 ) ? "yes" : "no" );
        say( qvRuntimeTryLoadModulesCstr( "more bottom!", 11 ) ? "yes" : "no" );
        say( qvRuntimeTryLoadModulesWcstr( L"left nowhere right", -1 ) ? "yes" : "no" );
        say( qvRuntimeTryLoadModules( text( "left right" ) ) ? "yes" : "no" );
        say( loadedModules() );
        qvRuntimeShutdown();
        _exit( 0 );
    };
    std::string output = outputOf( body );
    EXPECT_EQ( 0u, output.find( "yes\nstart more\nstart bottom\nyes\nstart left\nno\nstart right\nyes\n"
                                "<qv, more, bottom, left, right>\n" ) )
        << output;
    EXPECT_DEATH( qvRuntimeTryLoadModulesCstr( "more  left", -1 ), "areModuleNames" );
    EXPECT_DEATH( qvRuntimeTryLoadModule( text( "Bad" ) ), "qvModuleNameOk" );
    EXPECT_DEATH( qvRuntimeTryRegisterModule( qvModule() ), "isLoaded" );
}

TEST( Modules, CycleStopsTheProcess )
{
    ChildResult result = run( [] { load( "circle_a" ); } );
    EXPECT_TRUE( WIFSIGNALED( result.status ) );
    EXPECT_NE( std::string::npos, result.output.find( "!qvDictHasStringKey( qv___RuntimeLoadingDict" ) )
        << result.output;
}

TEST( Modules, DebugLines )
{
    const std::string load = "[qv___RuntimeTryLoadModule()] module: ",
                      registering = "[qv___RuntimeTryRegisterModule()] ",
                      platform = "[qv___RuntimePlatformLoadModule()] ",
                      unload = "[qvRuntimeUnloadAllModules()] module: ",
                      end = "prepare bottom\n" + unload + "bottom\nshutdown bottom\nfinalize bottom\n";
    const QV_INT debug = QV_RUNTIME_FLAG_MODULE_DEBUG,
                 dependencyDebug = QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG;
    auto loadBottom = [] { qvRuntimeTryLoadModule( text( "bottom" ) ); };
    EXPECT_EQ( load + "bottom\nstart bottom\n" + end, outputOf( loadBottom, debug ) );
    EXPECT_EQ( load + "bottom\n" + registering + "module: bottom\n" + registering + "dependencies: <>\n" +
                   registering + "extensions: <>\nstart bottom\n" + end,
               outputOf( loadBottom, debug | dependencyDebug ) );
    auto loadBad = [] {
        for ( const char *name : { "nowhere", "nosymbol", "renamed", "newer" } )
            qvRuntimeTryLoadModule( text( name ) );
    };
    std::string output = outputOf( loadBad, debug );
    size_t at = 0;
    for ( const std::string &line :
          { load + "nowhere\n" + platform + "dlopen(): null, dlerror(): " + QV_TEST_MODULES +
                "/libqv-nowhere.so",
            load + "nosymbol\n" + platform + "dlsym(): null, dlerror(): ",
            load + "renamed\n" + platform + "module name invalid\n",
            load + "newer\n" + platform + "qv___ModuleCheckCompatibility(): false\n" } )
    {
        at = output.find( line, at );
        EXPECT_NE( std::string::npos, at ) << line << "is not in\n" << output;
    }
}

// Modules in the test itself: one with sorts of its own, and one that leans on others.

extern QV_MODULE linked;

constexpr QV_MODULE_RECORD recordOf( const char *name, const char *description, const char *version,
                                     const char *dependencies, const char *extensions )
{
    return { 2,       nullptr, nullptr, -1,          -1,      -1,           nullptr,
             nullptr, nullptr, name,    description, version, dependencies, extensions };
}

const QV_MODULE_RECORD linkedRecord = recordOf( "linked", "In the test itself", "2.1", "", "" );

QV_BOOL echo( QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *arg )
{
    qvMessageSinkWriteFormatCstr( out, QV_MESSAGE_LEVEL_NORMAL, nullptr, "%o", -1, argv );
    return arg != nullptr;
}

QV_MODULE linked = { QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ),
                     &linkedRecord,
                     nullptr,
                     nullptr,
                     [] { say( "shutdown linked" ); },
                     [] { say( "finalize linked" ); },
                     echo };

QV_STRING *linkedText( qvObj )
{
    return text( "a \"text\"" ).give();
}

QV_SORT linkedSort = {
    QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ), &linked, "LINKED", { .toStringFunc = linkedText } };
QV_SORT plainSort = { QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ), &linked, "LINKED_PLAIN" };

qvObj createLinkedObject()
{
    return qv___ObjCreate( sizeof( qv___Obj ), &linkedSort );
}

const QV_MODULE_RECORD leaningRecord =
    recordOf( "leaning", "Leans on others", "1.0", "linked bottom", "nowhere more" );

// Readers of the tables don't wait for a load.
QV_BOOL startLeaning()
{
    say( "start leaning behind " + loadedModules() );
    return QV_TRUE;
}

QV_MODULE leaning = { QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ), &leaningRecord, startLeaning };

TEST( Modules, LinkedIn )
{
    auto body = [] {
        say( qvRuntimeTryRegisterModule( &leaning ) ? "registered" : "refused" );
        qvRuntimeTryRegisterModule( &linked );
        say( qvRuntimeTryRegisterModule( &leaning ) ? "registered" : "refused" );
        say( loadedModules() );
        qvRuntimeUnloadAllModules();
    };
    // Linked isn't loaded at first, and no file has it.
    EXPECT_EQ( "refused\nstart bottom\nstart leaning behind <qv, linked, bottom>\nstart more\nregistered\n"
               "<qv, linked, bottom, leaning, more>\nprepare more\nprepare bottom\nshutdown more\n"
               "finalize more\nshutdown bottom\nfinalize bottom\nshutdown linked\nfinalize linked\n",
               outputOf( body ) );
    const std::string registering = "[qv___RuntimeTryRegisterModule()] ";
    auto loneBody = [] { qvRuntimeTryRegisterModule( &linked ); };
    EXPECT_EQ( registering + "module: linked\n[qvRuntimeUnloadAllModules()] module: linked\n"
                             "shutdown linked\nfinalize linked\n",
               outputOf( loneBody, QV_RUNTIME_FLAG_MODULE_DEBUG ) );
    auto leaningBody = [] { qvRuntimeTryRegisterModule( &leaning ); };
    EXPECT_EQ( 0u,
               outputOf( leaningBody, QV_RUNTIME_FLAG_MODULE_DEBUG | QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG )
                   .find( registering + "module: leaning\n" + registering +
                          "dependencies: <linked, bottom>\n" + registering +
                          "extensions: <nowhere, more>\n[qv___RuntimeTryLoadModule()] module: linked\n" ) );
    QV_MODULE strange = { QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ), &linkedRecord };
    EXPECT_DEATH( qvRuntimeTryRegisterModule( &strange ), "qv___ModuleCheckCompatibility" );
}

TEST( Modules, Personality )
{
    auto body = [] {
        Local<QV_VECTOR> argv( qvVectorCreate() );
        qvVectorAppendObj( argv.edit(), qvStringObj( text( "word" ) ) );
        Local<QV_MESSAGE_SINK> out( qv___RuntimePrintMessageSinkCreate() );
        QV_BOOL without = qvModuleRunPersonality( &linked, argv, out, nullptr ),
                with = qvModuleRunPersonality( &linked, argv, out, &linked );
        say( std::to_string( without ) + std::to_string( with ) );
    };
    EXPECT_EQ( "<word>\n<word>\n01\n", outputOf( body ) );
    EXPECT_TRUE( qvModuleHasPersonality( &linked ) );
    EXPECT_FALSE( qvModuleHasPersonality( qvModule() ) );
    Local<QV_VECTOR> argv( qvVectorCreate() );
    EXPECT_DEATH( qvModuleRunPersonality( &linked, argv, nullptr, nullptr ), "out" );
}

TEST( Modules, UnloadWaitsForObjects )
{
    auto body = [] {
        say( qvRuntimeTryRegisterModule( &linked ) ? "registered" : "refused" );
        qvObj obj = createLinkedObject();
        std::thread late( [obj] {
            std::this_thread::sleep_for( std::chrono::milliseconds( 120 ) );
            say( "released" );
            qvObjRelease( obj );
        } );
        qvRuntimeUnloadAllModules();
        late.join();
        say( loadedModules() );
    };
    EXPECT_EQ( "registered\nshutdown linked\nreleased\nfinalize linked\n<qv>\n", outputOf( body ) );
}

TEST( Modules, AnObjectThatStaysStopsTheProcess )
{
    auto body = [] {
        qvRuntimeTryRegisterModule( &linked );
        createLinkedObject();
        qvRuntimeUnloadAllModules();
    };
    ChildResult result = run( body, 0, 0 );
    EXPECT_TRUE( WIFSIGNALED( result.status ) );
    EXPECT_NE( std::string::npos, result.output.find( "    Message   : linked\n" ) ) << result.output;
    EXPECT_NE( std::string::npos,
               result.output.find( "    Expression: msecs <= qv___RuntimeUnloadModuleTimeout\n" ) );
}

// With a snapshot flag the wait reports every ten seconds and doesn't give up by then.
TEST( Modules, UnloadReportsAndGoesOn )
{
    auto body = [] {
        qvRuntimeTryRegisterModule( &linked );
        qvObj obj = createLinkedObject();
        std::thread late( [obj] {
            while ( !objectsReported )
                std::this_thread::sleep_for( std::chrono::milliseconds( 5 ) );
            qvObjRelease( obj );
        } );
        qvRuntimeUnloadAllModules();
        late.join();
    };
    std::string output =
        run( body, QV_RUNTIME_FLAG_OBJECT_DATABASE | QV_RUNTIME_FLAG_SNAPSHOT_SORT, 10000 ).output;
    EXPECT_EQ( output.find( "LINKED 1\n" ), output.rfind( "LINKED 1\n" ) ) << output;
    EXPECT_TRUE( output.ends_with( "\nLINKED 1\nfinalize linked\n" ) ) << output;
}

TEST( Modules, UnloadReport )
{
    auto body = [] {
        qvRuntimeTryRegisterModule( &linked );
        Local<qv___Obj> named( createLinkedObject() ), again( qv::retained( static_cast<qvObj>( named ) ) ),
            plain( qv___ObjCreate( sizeof( qv___Obj ), &plainSort ) );
        qv___ObjLogAppend( named, text( "first" ) );
        qv___ObjLogAppend( named, text( "second" ) );
        qv___RuntimeReportUnloading( &linked );
        qv___RuntimeReportUnloading( &linked );
    };
    const QV_INT object = QV_RUNTIME_FLAG_SNAPSHOT_OBJECT;
    const std::pair<QV_INT, std::string> rows[] = {
        { QV_RUNTIME_FLAG_SNAPSHOT_SORT, "LINKED       1\nLINKED_PLAIN 1\n" },
        { object, "\nLINKED (2)\nLINKED_PLAIN (1)\n" },
        { object | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING, "\nLINKED (2) a \"text\"\nLINKED_PLAIN (1)\n" },
        { QV_RUNTIME_FLAG_SNAPSHOT_SORT | object | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG,
          "LINKED       1\nLINKED_PLAIN 1\n\nLINKED (2)\n\tfirst\n\tsecond\nLINKED_PLAIN (1)\n" },
    };
    const std::string ruler = std::string( 90, '-' ) + "\n",
                      header = ruler +
                               "Product   : " QV___BUILD_PRODUCT_NAME
                               "\nFriendly  : " QV___BUILD_PRODUCT_FRIENDLY_NAME
                               "\nVersion   : " QV___BUILD_VERSION "\nOS        : " QV___BUILD_OS_NAME
                               "\nHardware  : " QV___BUILD_HARDWARE_NAME
                               "\nVariant   : " QV___BUILD_VARIANT_NAME "\nBuild Time: " QV___BUILD_TIME
                               "\n" +
                               ruler;
    for ( const auto &[flags, report] : rows )
        EXPECT_EQ( header + ruler + report + ruler + report + "shutdown linked\nfinalize linked\n",
                   outputOf( body, QV_RUNTIME_FLAG_OBJECT_DATABASE | flags ) );
}

} // namespace
