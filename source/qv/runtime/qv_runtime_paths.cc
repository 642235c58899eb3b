#include <qv/runtime/qv_runtime_paths.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_range_map.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_path.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_platform.hh>

namespace
{

constexpr qv::EnumName pathNames[] = {
    { QV_RUNTIME_PATH_INSTALL, "QV_RUNTIME_PATH_INSTALL" },
    { QV_RUNTIME_PATH_PRODUCT, "QV_RUNTIME_PATH_PRODUCT" },
    { QV_RUNTIME_PATH_PRODUCT_BIN, "QV_RUNTIME_PATH_PRODUCT_BIN" },
    { QV_RUNTIME_PATH_PRODUCT_RES, "QV_RUNTIME_PATH_PRODUCT_RES" },
    { QV_RUNTIME_PATH_DATA, "QV_RUNTIME_PATH_DATA" },
    { QV_RUNTIME_PATH_DATA_STORAGE, "QV_RUNTIME_PATH_DATA_STORAGE" },
    { QV_RUNTIME_PATH_DATA_TRACE, "QV_RUNTIME_PATH_DATA_TRACE" },
    { QV_RUNTIME_PATH_DATA_ABORT, "QV_RUNTIME_PATH_DATA_ABORT" },
    { QV_RUNTIME_PATH_DATA_TEMP, "QV_RUNTIME_PATH_DATA_TEMP" },
};

constinit QV_ENUM *qv___RuntimePathEnum = nullptr;

void qv___RuntimePathsFreeFunc( qvObj thisObj )
{
    QV_RUNTIME_PATHS *thisPaths = qvRuntimePathsFrom( thisObj );
    QV_CHECK( thisPaths );
    qvRangeMapRelease( thisPaths->paths );
}

QV_RUNTIME_PATHS *pathsOf( QV_RANGE_MAP *givenMap )
{
    auto *paths = qv::create<QV_RUNTIME_PATHS>( qvRuntimePathsSort() );
    paths->paths = givenMap;
    return paths;
}

bool isDirectory( QV_PATH *path )
{
    return ( qvPathFlags( path ) & QV_PATH_FLAG_DIRECTORY ) != 0;
}

// The directory that a store's entry holds, or null.
QV_PATH *directoryAt( QV_STORE *store, QV_INT idx )
{
    qv::Local<QV_STRING> text( qvStoreValueAt( store, idx ) );
    qv::Local<QV_PATH> path( text ? qvPathTryDecode( text ) : nullptr );
    return path && isDirectory( path ) ? path.give() : nullptr;
}

} // namespace

QV_SORT_DEFINE( QV_RUNTIME_PATHS, qvRuntimePaths, { .freeFunc = qv___RuntimePathsFreeFunc } )

void qv___RuntimePathStartup()
{
    qv___RuntimePathEnum = qv::enumFromTable( pathNames, QV_SIZEOF_ARRAY( pathNames ) );
}

void qv___RuntimePathShutdown()
{
    qv::retire( &qv___RuntimePathEnum );
}

QV_STRING *qvRuntimePathToString( QV_RUNTIME_PATH rtp )
{
    return qvEnumGenerate( qv___RuntimePathEnum, rtp );
}

QV_RUNTIME_PATH qvRuntimePathFromString( QV_STRING *string )
{
    return qvEnumParse( qv___RuntimePathEnum, string );
}

QV_RUNTIME_PATHS *qv___RuntimePathsForProduct( QV_INT flags, QV_STRING *productName )
{
    QV_CHECK( productName );
    QV_CHECK( qvRuntimeValidateProductName( productName ) );
    return qv___RuntimePlatformPathsForProduct( flags, productName );
}

QV_RUNTIME_PATHS *qvRuntimePathsCreate( void )
{
    return pathsOf( qvRangeMapCreate() );
}

QV_RUNTIME_PATHS *qvRuntimePathsCreateFrom( QV_RUNTIME_PATHS *paths )
{
    QV_CHECK( paths );
    return pathsOf( qv::retained( paths->paths ) );
}

QV_PATH *qvRuntimePathsPath( QV_RUNTIME_PATHS *paths, QV_RUNTIME_PATH rtp )
{
    QV_CHECK( paths );
    QV_CHECK( QV_RUNTIME_PATH_OK( rtp ) );
    return qvPathFrom( qvRangeMapIntKey( paths->paths, rtp ) );
}

QV_BOOL qvRuntimePathsHasPath( QV_RUNTIME_PATHS *paths, QV_RUNTIME_PATH rtp )
{
    QV_CHECK( paths );
    QV_CHECK( QV_RUNTIME_PATH_OK( rtp ) );
    return qvRangeMapHasIntKey( paths->paths, rtp );
}

void qvRuntimePathsSetPath( QV_RUNTIME_PATHS **paths, QV_RUNTIME_PATH rtp, QV_PATH *path )
{
    QV_CHECK( paths );
    QV_CHECK( *paths );
    QV_CHECK( QV_RUNTIME_PATH_OK( rtp ) );
    QV_CHECK( path );
    QV_CHECK( isDirectory( path ) );
    qv::makePrivate( paths, qvRuntimePathsCreateFrom );
    qvRangeMapSetIntKey( &( *paths )->paths, rtp, qvPathObj( path ) );
}

void qvRuntimePathsDelPath( QV_RUNTIME_PATHS **paths, QV_RUNTIME_PATH rtp )
{
    QV_CHECK( paths );
    QV_CHECK( *paths );
    QV_CHECK( QV_RUNTIME_PATH_OK( rtp ) );
    if ( !qvRuntimePathsHasPath( *paths, rtp ) )
        return;
    qv::makePrivate( paths, qvRuntimePathsCreateFrom );
    qvRangeMapDelIntKey( &( *paths )->paths, rtp );
}

QV_STORE *qvRuntimePathsStore( QV_RUNTIME_PATHS *paths )
{
    QV_CHECK( paths );
    QV_STORE *store = qvStoreCreate();
    for ( const qv::EnumName &name : pathNames )
    {
        qv::Local<QV_PATH> path( qvRuntimePathsPath( paths, name.value ) );
        qv::Local<QV_STRING> text( path ? qvPathTryEncode( path ) : nullptr );
        if ( text )
        {
            qv::Local<QV_STRING> address( qvRuntimePathToString( name.value ) );
            qvStoreSetValue( &store, address, text );
        }
    }
    return store;
}

QV_RUNTIME_PATHS *qvRuntimePathsRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_RUNTIME_PATHS *paths = qvRuntimePathsCreate();
    for ( QV_INT idx = 0; idx < qvStoreLength( store ); idx++ )
    {
        qv::Local<QV_STRING> address( qvStoreAddressAt( store, idx ) );
        QV_RUNTIME_PATH rtp = qvRuntimePathFromString( address );
        qv::Local<QV_PATH> path( QV_RUNTIME_PATH_OK( rtp ) ? directoryAt( store, idx ) : nullptr );
        if ( path )
        {
            qvRuntimePathsSetPath( &paths, rtp, path );
        }
    }
    return paths;
}
