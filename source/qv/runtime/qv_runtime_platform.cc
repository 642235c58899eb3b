#include <qv/runtime/qv_runtime_platform.hh>

#include <unistd.h>

#include <qv/base/qv_environment.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_path_directory.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>

// Outside the namespace, since the record's tag has this name too.
static constinit QV_RUNTIME_PATHS *qv___RuntimePaths = nullptr;

namespace
{

constinit QV_ENVIRONMENT *qv___RuntimeEnvironment = nullptr;

// The paths that come from a variable or else lie below another path, in the order in which they are worked out.
struct PathRule
{
    QV_RUNTIME_PATH rtp;
    const char *variable; // format of the product name
    QV_RUNTIME_PATH base;
    const char *below; // null: the base itself
    bool mayCreate;
};
constexpr PathRule productRules[] = {
    { QV_RUNTIME_PATH_PRODUCT, "JN_%s_PRODUCT_PATH", QV_RUNTIME_PATH_INSTALL, nullptr, false },
    { QV_RUNTIME_PATH_PRODUCT_BIN, "JN_%s_BIN_PATH", QV_RUNTIME_PATH_PRODUCT, "bin/", false },
    { QV_RUNTIME_PATH_PRODUCT_RES, "JN_%s_RES_PATH", QV_RUNTIME_PATH_PRODUCT, "res/", false },
};
constexpr PathRule dataRules[] = {
    { QV_RUNTIME_PATH_DATA_STORAGE, "JN_%s_STORAGE_PATH", QV_RUNTIME_PATH_DATA, "storage/", true },
    { QV_RUNTIME_PATH_DATA_TRACE, "JN_%s_TRACE_PATH", QV_RUNTIME_PATH_DATA, "trace/", true },
    { QV_RUNTIME_PATH_DATA_ABORT, "JN_%s_ABORT_PATH", QV_RUNTIME_PATH_DATA, "abort/", true },
    { QV_RUNTIME_PATH_DATA_TEMP, "JN_%s_TEMP_PATH", QV_RUNTIME_PATH_DATA, "temp/", true },
};

QV_ENVIRONMENT *processEnvironment()
{
    qv::Local<QV_VECTOR> entries( qvVectorCreate() );
    for ( char **entry = environ; entry && *entry; entry++ )
    {
        qv::Local<QV_STRING> text( qvStringCreateFromCstr( *entry, -1 ) );
        qvVectorAppendObj( entries.edit(), qvStringObj( text ) );
    }
    return qvEnvironmentConvertFromStringVector( entries );
}

bool isRunningProduct( QV_STRING *productName )
{
    qv::Local<QV_STRING> running( qvRuntimeVersionProductName() );
    return qvStringEquals( productName, running );
}

void setOptionalPath( QV_RUNTIME_PATHS **paths, QV_RUNTIME_PATH rtp, QV_PATH *optionalPath )
{
    if ( optionalPath )
    {
        qvRuntimePathsSetPath( paths, rtp, optionalPath );
    }
}

// The path of a text that is formatted with the product name, or null.
QV_PATH *formattedPath( const char *format, QV_STRING *productName )
{
    qv::Local<QV_STRING> text( qvStringCreateFromFormatCstr( format, -1, productName ) );
    return qvPathUnixTryDecode( text );
}

QV_PATH *pathFromVariable( const char *variableFormat, QV_STRING *productName )
{
    qv::Local<QV_STRING> variable( qvStringCreateFromFormatCstr( variableFormat, -1, productName ) );
    return qv___RuntimePlatformUnixPathFromEnvironment( qv___RuntimeEnvironment, variable );
}

void applyRule( QV_RUNTIME_PATHS **paths, const PathRule &rule, QV_STRING *productName, bool create )
{
    qv::Local<QV_PATH> path( pathFromVariable( rule.variable, productName ) );
    qv::Local<QV_PATH> base( qvRuntimePathsPath( *paths, rule.base ) );
    if ( !path && base )
    {
        qv::Local<QV_PATH> below( rule.below ? qvPathTryDecodeCstr( rule.below, -1 ) : nullptr );
        path.take( qv___RuntimePlatformUnixSetupPath( base, below, rule.mayCreate && create ) );
    }
    setOptionalPath( paths, rule.rtp, path );
}

// The root of the data directories for all users, or for the one whose home directory the environment names.
QV_PATH *defaultDataPath( QV_INT flags, QV_STRING *productName, bool create )
{
    if ( flags & QV_RUNTIME_FLAG_SYSTEM )
        return formattedPath( "/var/opt/veltrano/%s/", productName );
    QV_STRING *home = qvEnvironmentVariableCstr( qv___RuntimeEnvironment, "HOME", -1 );
    qv::Local<QV_STRING> homeText( qvStringCreateFromFormatCstr( "%#~s/", -1, home ) );
    qv::Local<QV_PATH> homePath( qvPathUnixTryDecode( homeText ) );
    qv::Local<QV_PATH> below( formattedPath( ".opt/veltrano/%s/", productName ) );
    return homePath ? qv___RuntimePlatformUnixSetupPath( homePath, below, create ) : nullptr;
}

} // namespace

void qv___RuntimePlatformStartup()
{
    qv___RuntimeEnvironment = processEnvironment();
    qv::Local<QV_STRING> productName( qvRuntimeVersionProductName() );
    qv___RuntimePaths = qv___RuntimePlatformPathsForProduct( qvRuntimeFlags(), productName );
}

void qv___RuntimePlatformShutdown()
{
    qv::retire( &qv___RuntimePaths );
    qv::retire( &qv___RuntimeEnvironment );
}

QV_RUNTIME_PATHS *qvRuntimePaths( void )
{
    return qv::retained( qv___RuntimePaths );
}

QV_ENVIRONMENT *qvRuntimeEnvironment( void )
{
    return qv::retained( qv___RuntimeEnvironment );
}

QV_RUNTIME_PATHS *qv___RuntimePlatformPathsForProduct( QV_INT flags, QV_STRING *productName )
{
    QV_RUNTIME_PATHS *paths = qvRuntimePathsCreate();
    if ( flags & QV_RUNTIME_FLAG_MINIMAL )
        return paths;
    bool create = isRunningProduct( productName );
    qv::Local<QV_PATH> install( formattedPath( "/opt/veltrano/%s/", productName ) );
    QV_CHECK( install );
    qvRuntimePathsSetPath( &paths, QV_RUNTIME_PATH_INSTALL, install );
    for ( const PathRule &rule : productRules )
    {
        applyRule( &paths, rule, productName, create );
    }
    qv::Local<QV_PATH> data( pathFromVariable( "JN_%s_DATA_PATH", productName ) );
    if ( !data )
        data.take( defaultDataPath( flags, productName, create ) );
    setOptionalPath( &paths, QV_RUNTIME_PATH_DATA, data );
    for ( const PathRule &rule : dataRules )
    {
        applyRule( &paths, rule, productName, create );
    }
    return paths;
}

QV_PATH *qv___RuntimePlatformUnixPathFromEnvironment( QV_ENVIRONMENT *environment, QV_STRING *variable )
{
    auto name = qv::Local<QV_STRING>::share( variable );
    qvStringToUpper( name.edit() );
    qv::Local<QV_STRING> text( qvEnvironmentVariable( environment, name ) );
    qv::Local<QV_PATH> path( text ? qvPathUnixTryDecode( text ) : nullptr );
    if ( path )
    {
        qvPathSetFlags( path.edit(), qvPathFlags( path ) | QV_PATH_FLAG_DIRECTORY );
    }
    return path.give();
}

QV_PATH *qv___RuntimePlatformUnixSetupPath( QV_PATH *base, QV_PATH *optionalPath, QV_BOOL create )
{
    QV_CHECK( base );
    QV_CHECK( qvPathFlags( base ) & QV_PATH_FLAG_DIRECTORY );
    auto path = qv::Local<QV_PATH>::share( base );
    if ( !optionalPath )
        return path.give();
    QV_CHECK( qvPathUnixIsValid( optionalPath ) );
    QV_CHECK( qvPathFlags( optionalPath ) & QV_PATH_FLAG_DIRECTORY );
    QV_CHECK( qvPathCanAppend( optionalPath ) );
    for ( QV_INT idx = 0; idx < qvPathComponentsLength( optionalPath ); idx++ )
    {
        qv::Local<QV_STRING> component( qvPathComponentAt( optionalPath, idx ) );
        qvPathAppendComponentDirectory( path.edit(), component );
        if ( create )
        {
            // A level that is there already fails, which does no harm; what can't be made fails where it is used.
            qvPathDirectoryCreate( path );
        }
    }
    return path.give();
}
