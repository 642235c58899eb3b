// Loading, registering and unloading modules. Each case starts the runtime in a child process and compares all that the
// modules' hooks and the runtime print.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <thread>

#include <qv/base/qv_alert.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.hh>
#include <qv/runtime/qv_runtime.h>

#include "support/child.hh"
#include "support/folder.hh"
#include "support/text.hh"

namespace
{

using qv::Local;
using test::text;

void printLine( const QV_CHAR *chs, QV_INT chsLength )
{
    std::string line( chs, chs + chsLength );
    fputs( ( line + "\n" ).c_str(), stderr );
}

void say( const std::string &line )
{
    fputs( ( line + "\n" ).c_str(), stderr );
}

std::string loadedModules()
{
    Local<QV_VECTOR> modules( qvRuntimeModulesVector() );
    return test::takeUtf8( qvVectorToString( modules ) );
}

void load( const char *name )
{
    QV_BOOL loaded = qvRuntimeTryLoadModule( text( name ) );
    say( std::string( name ) + ( loaded ? ": loaded" : ": failed" ) );
}

test::ChildResult run( const std::function<void()> &body, QV_INT flags = 0, QV_INT timeout = -1,
                       const char *modules = QV_TEST_MODULES )
{
    return test::runInChild( [&] {
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
    test::ChildResult result = run( body, flags );
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
        say( module ? test::takeUtf8( qvModuleDescription( module ) ) : "none" );
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
    test::TemporaryFolder folder;
    folder.write( "libqv-foreign.so", "no shared object" );
    folder.write( "libqv-truncated.so", std::string( "\x7F"
                                                     "ELF\x02\x01\x01",
                                                     7 ) );
    auto foreign = [] {
        load( "foreign" );
        load( "truncated" );
        say( loadedModules() );
    };
    test::ChildResult result = run( foreign, 0, -1, folder.name( "" ).c_str() );
    EXPECT_EQ( "foreign: failed\ntruncated: failed\n<qv>\n", result.output );
    auto body = [] {
        for ( const char *name : { "nowhere", "nosymbol", "renamed", "newer" } )
        {
            load( name );
        }
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
    test::ChildResult result = run( [] { load( "circle_a" ); } );
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
        {
            qvRuntimeTryLoadModule( text( name ) );
        }
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

// A module in the test itself, with a sort of its own.
extern QV_MODULE linked;

const QV_MODULE_RECORD linkedRecord = {
    2,     nullptr, nullptr, -1, -1, -1, nullptr, nullptr, nullptr, "linked", "In the test itself",
    "2.1", "",      "" };

QV_BOOL echo( QV_VECTOR *, QV_MESSAGE_SINK *, void *arg )
{
    return arg != nullptr;
}

QV_MODULE linked = { QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ),
                     &linkedRecord,
                     nullptr,
                     nullptr,
                     [] { say( "shutdown linked" ); },
                     [] { say( "finalize linked" ); },
                     echo,
                     0,
                     nullptr,
                     nullptr };

QV_SORT linkedSort = {
    QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ), &linked, "LINKED", {}, 0, nullptr, nullptr, nullptr, nullptr };

qvObj createLinkedObject()
{
    return qv___ObjCreate( sizeof( qv___Obj ), &linkedSort );
}

TEST( Modules, UnloadWaitsForObjects )
{
    auto body = [] {
        say( qvRuntimeTryRegisterModule( &linked ) ? "registered" : "refused" );
        say( qvModuleHasPersonality( &linked ) ? "personality" : "none" );
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
    EXPECT_EQ( "registered\npersonality\nshutdown linked\nreleased\nfinalize linked\n<qv>\n",
               outputOf( body ) );
}

TEST( Modules, AnObjectThatStaysStopsTheProcess )
{
    auto body = [] {
        qvRuntimeTryRegisterModule( &linked );
        createLinkedObject();
        qvRuntimeUnloadAllModules();
    };
    test::ChildResult result = run( body, 0, 0 );
    EXPECT_TRUE( WIFSIGNALED( result.status ) );
    EXPECT_NE( std::string::npos, result.output.find( "    Message   : linked\n" ) ) << result.output;
    EXPECT_NE( std::string::npos,
               result.output.find( "    Expression: msecs <= qv___RuntimeUnloadModuleTimeout\n" ) );
}

} // namespace
