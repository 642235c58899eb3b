#include <qv/exec/qv_process_system.hh>

#include <qv/base/qv_string.h>
#include <qv/exec/qv_process_domain.hh>
#include <qv/exec/qv_process_system_options.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_path_file.h>
#include <qv/io/qv_store_header.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_paths.h>

namespace
{

constinit QV_PROCESS_SYSTEM_MODE systemMode = QV_PROCESS_SYSTEM_MODE_TOOL;
constinit QV_PROCESS_DOMAIN *lowDomain = nullptr;
constinit QV_PROCESS_DOMAIN *highDomain = nullptr; // the low one again in tool mode

// The path of "qv_process.jnstore" in the data directory, owned by the caller; null if there is no data directory.
QV_PATH *optionsPath()
{
    qv::Local<QV_RUNTIME_PATHS> paths( qvRuntimePaths() );
    qv::Local<QV_PATH> path( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_DATA ) );
    if ( path )
    {
        qvPathAppendComponentFilenameCstr( path.edit(), "qv_process.jnstore", -1 );
    }
    return path.give();
}

struct Fallback
{
    QV_INT threadCount;
    QV_THREAD_PRIORITY threadPriority;
    QV_BOOL trailOptimization;
};

QV_PROCESS_DOMAIN *createDomain( const char *name, QV_PROCESS_DOMAIN_OPTIONS *options, Fallback fallback )
{
    qv::Local<QV_STRING> nameString( qvStringCreateFromCstr( name, -1 ) );
    QV_PROCESS_DOMAIN *domain =
        qvProcessDomainTryCreateWithFallback( options, nameString, fallback.threadCount,
                                              fallback.threadPriority, fallback.trailOptimization, QV_FALSE );
    QV_CHECK( domain );
    return domain;
}

void startTool( QV_PROCESS_SYSTEM_OPTIONS *options )
{
    qv::Local<QV_PROCESS_DOMAIN_OPTIONS> domainOptions( qvProcessSystemOptionsToolDomainOptions( options ) );
    lowDomain = createDomain( "QV", domainOptions, { 1, QV_THREAD_PRIORITY_NORMAL, QV_FALSE } );
    highDomain = qv::retained( lowDomain );
}

void startServer( QV_PROCESS_SYSTEM_OPTIONS *options, QV_INT processors )
{
    qv::Local<QV_PROCESS_DOMAIN_OPTIONS> low(
        qvProcessSystemOptionsServerLowPriorityDomainOptions( options ) );
    qv::Local<QV_PROCESS_DOMAIN_OPTIONS> high(
        qvProcessSystemOptionsServerHighPriorityDomainOptions( options ) );
    lowDomain = createDomain( "QV_LOW", low, { processors, QV_THREAD_PRIORITY_NORMAL, QV_FALSE } );
    highDomain = createDomain( "QV_HIGH", high, { processors, QV_THREAD_PRIORITY_HIGHEST, QV_TRUE } );
}

} // namespace

QV_PROCESS_SYSTEM_OPTIONS *qv::readProcessSystemOptions( QV_PATH *path )
{
    qv::Local<QV_STORE_HEADER> header;
    qv::Local<QV_STORE> store( path ? qvPathFileReadStore( path, header.edit() ) : nullptr );
    bool isUsable = store && ( !header || qvStoreHeaderIsTypeSort( header, qvProcessSystemOptionsSort() ) );
    return isUsable ? qvProcessSystemOptionsRestore( store ) : qvProcessSystemOptionsCreate();
}

void qv___ProcessSystemStartup()
{
    qv::Local<QV_PATH> path( optionsPath() );
    qv::Local<QV_PROCESS_SYSTEM_OPTIONS> options( qv::readProcessSystemOptions( path ) );
    QV_INT processors = qv::processorCount();
    QV_CHECK( processors > 0 );
    bool isServer = qvRuntimeFlags() & QV_RUNTIME_FLAG_SERVER;
    systemMode = isServer ? QV_PROCESS_SYSTEM_MODE_SERVER : QV_PROCESS_SYSTEM_MODE_TOOL;
    if ( isServer )
        startServer( options, processors );
    else
        startTool( options );
}

void qv___ProcessSystemShutdown()
{
    qv::retire( &lowDomain );
    qv::retire( &highDomain );
}

QV_PROCESS_SYSTEM_MODE qv___ProcessSystemMode()
{
    return systemMode;
}

QV_PROCESS_DOMAIN *qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY priority )
{
    return qv::retained( priority == QV_PROCESS_PRIORITY_HIGH ? highDomain : lowDomain );
}
