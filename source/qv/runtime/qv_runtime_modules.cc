#include <qv/runtime/qv_runtime_modules.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_monitor.hh>
#include <qv/base/qv_signal.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime.hh>
#include <qv/sys/qv_int.h>

namespace
{

constexpr QV_INT unloadStep = 50;           // milliseconds between two looks at a module's objects
constexpr QV_INT unloadReportAfter = 10000; // milliseconds

constinit QV_INT qv___RuntimeUnloadModuleTimeout = 0;

// Where both are held, the load monitor comes first.
constinit QV_MONITOR *qv___RuntimeLoadMonitor = nullptr;          // serializes loading and unloading
constinit QV_MONITOR *qv___RuntimeLoadedModulesMonitor = nullptr; // guards the two tables of loaded modules
constinit QV_DICT *qv___RuntimeLoadedModulesDict = nullptr;       // names to modules
constinit QV_VECTOR *qv___RuntimeLoadedModulesVector = nullptr;   // each behind all that it depends on
constinit QV_DICT *qv___RuntimeLoadingDict = nullptr; // names of the modules whose load is under way
constinit QV_INT qv___RuntimeExtensionsIndex = 0;     // modules whose extensions have been loaded

bool hasFlag( QV_RUNTIME_FLAGS flag )
{
    return ( qvRuntimeFlags() & flag ) != 0;
}

void enterModule( QV_MODULE *module )
{
    qv::Local<QV_STRING> name( qvModuleName( module ) );
    qv::Entered entered( qv___RuntimeLoadedModulesMonitor );
    qvDictSetStringKey( &qv___RuntimeLoadedModulesDict, name, qvModuleObj( module ) );
    qvVectorAppendObj( &qv___RuntimeLoadedModulesVector, qvModuleObj( module ) );
}

void leaveLastModule()
{
    qv::Entered entered( qv___RuntimeLoadedModulesMonitor );
    QV_INT last = qvVectorLength( qv___RuntimeLoadedModulesVector ) - 1;
    qv::Local<QV_MODULE> module( qvModuleFrom( qvVectorObjAt( qv___RuntimeLoadedModulesVector, last ) ) );
    qv::Local<QV_STRING> name( qvModuleName( module ) );
    qvDictDelStringKey( &qv___RuntimeLoadedModulesDict, name );
    qvVectorDelTrailing( &qv___RuntimeLoadedModulesVector, 1 );
}

bool isLoaded( QV_STRING *moduleName )
{
    qv::Entered entered( qv___RuntimeLoadedModulesMonitor );
    return qvDictHasStringKey( qv___RuntimeLoadedModulesDict, moduleName );
}

QV_STRING *nameAt( QV_VECTOR *names, QV_INT idx )
{
    return qvStringFrom( qvVectorObjAt( names, idx ) );
}

// Loads those names of a list, in its order, that aren't loaded, up to the first failure.
bool loadAll( QV_VECTOR *names )
{
    for ( QV_INT idx = 0; idx < qvVectorLength( names ); idx++ )
    {
        qv::Local<QV_STRING> name( nameAt( names, idx ) );
        if ( !isLoaded( name ) && !qv___RuntimeTryLoadModule( name ) )
            return false;
    }
    return true;
}

// Loads what can be loaded of a list.
void loadExtensions( QV_VECTOR *names )
{
    for ( QV_INT idx = 0; idx < qvVectorLength( names ); idx++ )
    {
        qv::Local<QV_STRING> name( nameAt( names, idx ) );
        if ( !isLoaded( name ) )
        {
            qv___RuntimeTryLoadModule( name );
        }
    }
}

bool areModuleNames( QV_VECTOR *names )
{
    for ( QV_INT idx = 0; idx < qvVectorLength( names ); idx++ )
    {
        qv::Local<QV_STRING> name( nameAt( names, idx ) );
        if ( !qvModuleNameOk( name ) )
            return false;
    }
    return true;
}

void printRegistration( QV_MODULE *module, QV_VECTOR *dependencies, QV_BOOL fromLoad )
{
    bool dependencyDebug = hasFlag( QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG );
    if ( !dependencyDebug && ( fromLoad || !hasFlag( QV_RUNTIME_FLAG_MODULE_DEBUG ) ) )
        return;
    qv::Local<QV_STRING> name( qvModuleName( module ) );
    qv___RuntimePrintFormatCstr( "[qv___RuntimeTryRegisterModule()] module: %s", -1,
                                 static_cast<QV_STRING *>( name ) );
    if ( dependencyDebug )
    {
        qv::Local<QV_VECTOR> extensions( qvModuleExtensionsModuleNamesVector( module ) );
        qv___RuntimePrintFormatCstr( "[qv___RuntimeTryRegisterModule()] dependencies: %o", -1, dependencies );
        qv___RuntimePrintFormatCstr( "[qv___RuntimeTryRegisterModule()] extensions: %o", -1,
                                     static_cast<QV_VECTOR *>( extensions ) );
    }
}

// Waits until the module has no live object, in slept time only; no longer than the time-out.
void waitForObjectsOf( QV_MODULE *module )
{
    QV_INT msecs = 0;
    while ( QV___RETAIN_COUNT_VALUE( module->sortsCount ) > 0 )
    {
        qvSleepTimed( nullptr, unloadStep );
        msecs = qvIntAddSaturating( msecs, unloadStep );
        if ( hasFlag( QV___RUNTIME_SNAPSHOT_MASK ) && msecs > unloadReportAfter )
        {
            qv___RuntimeReportUnloading( module );
            msecs = 0;
        }
        QV_CHECK_MESSAGE( module->moduleRecord->name, msecs <= qv___RuntimeUnloadModuleTimeout );
    }
}

void callHook( void ( *optionalHook )() )
{
    if ( optionalHook )
    {
        optionalHook();
    }
}

void unload( QV_MODULE *module )
{
    if ( hasFlag( QV_RUNTIME_FLAG_MODULE_DEBUG ) )
    {
        qv___RuntimePrintFormatCstr( "[qvRuntimeUnloadAllModules()] module: %~s", -1,
                                     qvModuleName( module ) );
    }
    callHook( module->shutdownFunc );
    waitForObjectsOf( module );
    callHook( module->finalizeFunc );
    leaveLastModule();
}

} // namespace

void qv___RuntimeModulesStartup( QV_INT unloadModuleTimeout )
{
    qv___RuntimeUnloadModuleTimeout = unloadModuleTimeout;
    qv___RuntimeLoadMonitor = qvMonitorCreate();
    qv___RuntimeLoadedModulesMonitor = qvMonitorCreate();
    qv___RuntimeLoadedModulesDict = qvDictCreate();
    qv___RuntimeLoadingDict = qvDictCreate();
    qv___RuntimeLoadedModulesVector = qvVectorCreate();
    qv___RuntimeExtensionsIndex = 0;
    enterModule( &qv___module );
    qv::Entered entered( qv___RuntimeLoadMonitor );
    qv___RuntimeLoadModuleExtensions();
}

void qv___RuntimeModulesShutdown()
{
    qv::retire( &qv___RuntimeLoadMonitor );
    qv::retire( &qv___RuntimeLoadedModulesMonitor );
    qv::retire( &qv___RuntimeLoadedModulesDict );
    qv::retire( &qv___RuntimeLoadedModulesVector );
    qv::retire( &qv___RuntimeLoadingDict );
}

QV_BOOL qv___RuntimeTryLoadModule( QV_STRING *moduleName )
{
    if ( hasFlag( QV_RUNTIME_FLAG_MODULE_DEBUG ) )
    {
        qv___RuntimePrintFormatCstr( "[qv___RuntimeTryLoadModule()] module: %s", -1, moduleName );
    }
    // A module that is reached again while its own load is under way depends on itself.
    QV_CHECK( !qvDictHasStringKey( qv___RuntimeLoadingDict, moduleName ) );
    qvDictSetStringKey( &qv___RuntimeLoadingDict, moduleName, qvStringObj( moduleName ) );
    QV_MODULE *module = qv___RuntimePlatformLoadModule( moduleName );
    QV_BOOL loaded = module ? qv___RuntimeTryRegisterModule( module, QV_TRUE ) : QV_FALSE;
    qvDictDelStringKey( &qv___RuntimeLoadingDict, moduleName );
    return loaded;
}

QV_BOOL qv___RuntimeTryRegisterModule( QV_MODULE *module, QV_BOOL fromLoad )
{
    // The test of compatibility demands the five strings from the name on, too.
    QV_CHECK( qv___ModuleCheckCompatibility( module ) );
    qv::Local<QV_STRING> name( qvModuleName( module ) );
    QV_CHECK( !isLoaded( name ) );
    qv::Local<QV_VECTOR> dependencies( qvModuleDependenciesModuleNamesVector( module ) );
    printRegistration( module, dependencies, fromLoad );
    if ( !loadAll( dependencies ) || ( module->startupFunc && !module->startupFunc() ) )
        return QV_FALSE;
    enterModule( module );
    return QV_TRUE;
}

void qv___RuntimeLoadModuleExtensions()
{
    // The length is read anew each time, since extensions may have extensions.
    while ( qv___RuntimeExtensionsIndex < qvVectorLength( qv___RuntimeLoadedModulesVector ) )
    {
        qv::Local<QV_MODULE> module(
            qvModuleFrom( qvVectorObjAt( qv___RuntimeLoadedModulesVector, qv___RuntimeExtensionsIndex ) ) );
        if ( !hasFlag( QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS ) )
        {
            qv::Local<QV_VECTOR> names( qvModuleExtensionsModuleNamesVector( module ) );
            loadExtensions( names );
        }
        qv___RuntimeExtensionsIndex++;
    }
}

QV_VECTOR *qvRuntimeModulesVector( void )
{
    qv::Entered entered( qv___RuntimeLoadedModulesMonitor );
    return qv::retained( qv___RuntimeLoadedModulesVector );
}

QV_MODULE *qvRuntimeModule( QV_STRING *moduleName )
{
    QV_CHECK( moduleName );
    qv::Entered entered( qv___RuntimeLoadedModulesMonitor );
    return qvModuleFrom( qvDictStringKey( qv___RuntimeLoadedModulesDict, moduleName ) );
}

QV_BOOL qvRuntimeTryLoadModule( QV_STRING *moduleName )
{
    QV_CHECK( moduleName );
    QV_CHECK( qvModuleNameOk( moduleName ) );
    qv::Entered entered( qv___RuntimeLoadMonitor );
    if ( !isLoaded( moduleName ) && !qv___RuntimeTryLoadModule( moduleName ) )
        return QV_FALSE;
    qv___RuntimeLoadModuleExtensions();
    return QV_TRUE;
}

QV_BOOL qvRuntimeTryLoadModulesVector( QV_VECTOR *moduleNames )
{
    QV_CHECK( moduleNames );
    QV_CHECK( areModuleNames( moduleNames ) );
    qv::Entered entered( qv___RuntimeLoadMonitor );
    if ( !loadAll( moduleNames ) )
        return QV_FALSE;
    qv___RuntimeLoadModuleExtensions();
    return QV_TRUE;
}

QV_BOOL qvRuntimeTryLoadModules( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_VECTOR> names( qvStringLength( text ) == 0 ? qvVectorCreate()
                                                            : qvStringSplitChar( text, ' ', -1 ) );
    return qvRuntimeTryLoadModulesVector( names );
}

QV_BOOL qvRuntimeTryLoadModulesCstr( const char *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( str, length ) );
    return qvRuntimeTryLoadModules( text );
}

QV_BOOL qvRuntimeTryLoadModulesWcstr( const wchar_t *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( str, length ) );
    return qvRuntimeTryLoadModules( text );
}

QV_BOOL qvRuntimeTryRegisterModule( QV_MODULE *module )
{
    QV_CHECK( module );
    qv::Entered entered( qv___RuntimeLoadMonitor );
    if ( !qv___RuntimeTryRegisterModule( module, QV_FALSE ) )
        return QV_FALSE;
    qv___RuntimeLoadModuleExtensions();
    return QV_TRUE;
}

void qvRuntimeUnloadAllModules( void )
{
    qv::Entered entered( qv___RuntimeLoadMonitor );
    QV_CHECK( qvDictLength( qv___RuntimeLoadingDict ) == 0 );
    qv::Local<QV_VECTOR> modules( qvRuntimeModulesVector() );
    // All modules get ready before the first one ends.
    for ( QV_INT idx = qvVectorLength( modules ) - 1; idx > 0; idx-- )
    {
        qv::Local<QV_MODULE> module( qvModuleFrom( qvVectorObjAt( modules, idx ) ) );
        callHook( module->prepareShutdownFunc );
    }
    for ( QV_INT idx = qvVectorLength( modules ) - 1; idx > 0; idx-- )
    {
        qv::Local<QV_MODULE> module( qvModuleFrom( qvVectorObjAt( modules, idx ) ) );
        unload( module );
    }
    qv___RuntimeExtensionsIndex = 0;
}
