#include <qv/io/qv_path.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

// The record of a path with its fields, and the edits of paths. The texts stand in qv_path_text.cc.

QV_SORT_DEFINE( QV_PATH, qvPath,
                { .freeFunc = qv___PathFreeFunc,
                  .compareFunc = qv___PathCompareFunc,
                  .toStringFunc = qv___PathToStringFunc } )

constinit QV_FLAGSET *qv___PathFlagsFlagset = nullptr;

namespace
{

constinit QV_PATH *emptyPath = nullptr;

constexpr qv::EnumName flagNames[] = {
    { QV_PATH_FLAG_DIRECTORY, "QV_PATH_FLAG_DIRECTORY" },
    { QV_PATH_FLAG_CWD, "QV_PATH_FLAG_CWD" },
    { QV_PATH_FLAG_FSROOT, "QV_PATH_FLAG_FSROOT" },
    { QV_PATH_FLAG_WINDOWS_VOLUME, "QV_PATH_FLAG_WINDOWS_VOLUME" },
    { QV_PATH_FLAG_WINDOWS_UNC, "QV_PATH_FLAG_WINDOWS_UNC" },
};

constexpr QV_PATH_FLAGS allFlags = 31;

QV_INT compareNumbers( QV_INT thisNumber, QV_INT thatNumber )
{
    return ( thisNumber > thatNumber ) - ( thisNumber < thatNumber );
}

// No server stands before any server.
QV_INT compareServers( QV_STRING *thisServer, QV_STRING *thatServer )
{
    if ( thisServer && thatServer )
        return qv::stringCompare( thisServer, thatServer );
    return compareNumbers( thisServer != nullptr, thatServer != nullptr );
}

void appendComponent( QV_PATH **path, QV_STRING *component, bool directory )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( component );
    qv::makePrivate( path, qvPathCreateFrom );
    qvVectorAppendString( &( *path )->components, component );
    QV_PATH_FLAGS others = ( *path )->flags & ~QV_PATH_FLAG_DIRECTORY;
    ( *path )->flags = others | ( directory ? QV_PATH_FLAG_DIRECTORY : 0 );
}

} // namespace

void qv___PathFlagsStartup()
{
    qv___PathFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___PathFlagsShutdown()
{
    qv::retire( &qv___PathFlagsFlagset );
}

void qv___PathStartup()
{
    emptyPath = qv::pathCreateFresh( 0, 0, qvVectorCreate() );
}

void qv___PathShutdown()
{
    qv::retire( &emptyPath );
}

void qv___PathFreeFunc( qvObj thisObj )
{
    auto *path = static_cast<QV_PATH *>( thisObj );
    qv::release( qv::objOf( path->components ) );
    qv::releaseOptional( path->windowsUncServer );
}

QV_INT qv___PathCompareFunc( qvObj thisObj, qvObj thatObj )
{
    auto *thisPath = static_cast<QV_PATH *>( thisObj );
    auto *thatPath = static_cast<QV_PATH *>( thatObj );
    if ( QV_INT order = compareServers( thisPath->windowsUncServer, thatPath->windowsUncServer ) )
        return order;
    if ( QV_INT order =
             compareNumbers( thisPath->windowsVolumeDesignator, thatPath->windowsVolumeDesignator ) )
        return order;
    if ( QV_INT order = compareNumbers( thisPath->up, thatPath->up ) )
        return order;
    if ( QV_INT order = qvVectorCompare( thisPath->components, thatPath->components ) )
        return order;
    return compareNumbers( thisPath->flags, thatPath->flags );
}

QV_PATH *qv::pathCreateFresh( QV_PATH_FLAGS flags, QV_INT up, QV_VECTOR *components )
{
    auto *path = qv::create<QV_PATH>( qvPathSort() );
    path->flags = flags;
    path->up = up;
    path->components = components;
    path->windowsVolumeDesignator = 0;
    path->windowsUncServer = nullptr;
    return path;
}

QV_PATH *qvPathCreate( void )
{
    return qv::retained( emptyPath );
}

QV_PATH *qvPathCreateFrom( QV_PATH *path )
{
    QV_CHECK( path );
    QV_PATH *copy = qv::pathCreateFresh( path->flags, path->up, qv::retained( path->components ) );
    copy->windowsVolumeDesignator = path->windowsVolumeDesignator;
    copy->windowsUncServer = qv::retainedOptional( path->windowsUncServer );
    return copy;
}

QV_PATH_FLAGS qvPathFlags( QV_PATH *path )
{
    QV_CHECK( path );
    return path->flags;
}

void qvPathSetFlags( QV_PATH **path, QV_PATH_FLAGS flags )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    qv::makePrivate( path, qvPathCreateFrom );
    ( *path )->flags = qvPathFlagsNormalize( flags );
}

QV_INT qvPathUp( QV_PATH *path )
{
    QV_CHECK( path );
    return path->up;
}

void qvPathSetUp( QV_PATH **path, QV_INT up )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( up >= 0 );
    qv::makePrivate( path, qvPathCreateFrom );
    ( *path )->up = up;
}

QV_INT qvPathComponentsLength( QV_PATH *path )
{
    QV_CHECK( path );
    return qv::vectorLength( path->components );
}

QV_VECTOR *qvPathComponentsVector( QV_PATH *path )
{
    QV_CHECK( path );
    return qv::retained( path->components );
}

void qvPathSetComponentsVector( QV_PATH **path, QV_VECTOR *vec )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvStringSort() ) );
    qv::makePrivate( path, qvPathCreateFrom );
    qv::assign( &( *path )->components, vec );
}

QV_STRING *qvPathComponentAt( QV_PATH *path, QV_INT idx )
{
    QV_CHECK( path );
    return qvStringFrom( qvVectorObjAt( path->components, idx ) );
}

void qvPathSetComponentAt( QV_PATH **path, QV_INT idx, QV_STRING *component )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( component );
    qv::makePrivate( path, qvPathCreateFrom );
    qvVectorSetStringAt( &( *path )->components, idx, component );
}

void qvPathDelComponentAt( QV_PATH **path, QV_INT idx )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    qv::makePrivate( path, qvPathCreateFrom );
    qvVectorDelAt( &( *path )->components, idx );
}

void qvPathInsertComponent( QV_PATH **path, QV_INT idx, QV_STRING *component )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( component );
    qv::makePrivate( path, qvPathCreateFrom );
    qvVectorInsertString( &( *path )->components, idx, component );
}

void qvPathPrependComponent( QV_PATH **path, QV_STRING *component )
{
    qvPathInsertComponent( path, 0, component );
}

void qvPathAppendComponentDirectory( QV_PATH **path, QV_STRING *dir )
{
    appendComponent( path, dir, true );
}

void qvPathAppendComponentDirectoryCstr( QV_PATH **path, const char *dir, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromCstr( dir, length ) );
    appendComponent( path, made, true );
}

void qvPathAppendComponentDirectoryWcstr( QV_PATH **path, const wchar_t *dir, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromWcstr( dir, length ) );
    appendComponent( path, made, true );
}

void qvPathAppendComponentFilename( QV_PATH **path, QV_STRING *fn )
{
    appendComponent( path, fn, false );
}

void qvPathAppendComponentFilenameCstr( QV_PATH **path, const char *fn, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromCstr( fn, length ) );
    appendComponent( path, made, false );
}

void qvPathAppendComponentFilenameWcstr( QV_PATH **path, const wchar_t *fn, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromWcstr( fn, length ) );
    appendComponent( path, made, false );
}

QV_CHAR qvPathWindowsVolumeDesignator( QV_PATH *path )
{
    QV_CHECK( path );
    return path->windowsVolumeDesignator;
}

QV_BOOL qvPathHasWindowsVolumeDesignator( QV_PATH *path )
{
    QV_CHECK( path );
    return path->windowsVolumeDesignator != 0;
}

void qvPathSetWindowsVolumeDesignator( QV_PATH **path, QV_CHAR desig )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( qvPathWindowsVolumeDesignatorOk( desig ) );
    qv::makePrivate( path, qvPathCreateFrom );
    ( *path )->windowsVolumeDesignator = desig;
}

void qvPathDelWindowsVolumeDesignator( QV_PATH **path )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    qv::makePrivate( path, qvPathCreateFrom );
    ( *path )->windowsVolumeDesignator = 0;
}

QV_BOOL qvPathWindowsVolumeDesignatorOk( QV_CHAR ch )
{
    return ( ch >= 'A' && ch <= 'Z' ) || ( ch >= 'a' && ch <= 'z' );
}

QV_STRING *qvPathWindowsUncServer( QV_PATH *path )
{
    QV_CHECK( path );
    return qv::retainedOptional( path->windowsUncServer );
}

QV_BOOL qvPathHasWindowsUncServer( QV_PATH *path )
{
    QV_CHECK( path );
    return QV_BOOL_FROM( path->windowsUncServer );
}

void qvPathSetWindowsUncServer( QV_PATH **path, QV_STRING *server )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( server );
    qv::makePrivate( path, qvPathCreateFrom );
    qv::assign( &( *path )->windowsUncServer, server );
}

void qvPathDelWindowsUncServer( QV_PATH **path )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    qv::makePrivate( path, qvPathCreateFrom );
    qv::replaceWith( &( *path )->windowsUncServer, static_cast<QV_STRING *>( nullptr ) );
}

QV_BOOL qvPathCanAppend( QV_PATH *path )
{
    QV_CHECK( path );
    return ( path->flags & ~QV_PATH_FLAG_DIRECTORY ) == 0 && path->up == 0;
}

void qvPathAppend( QV_PATH **path, QV_PATH *append )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( append );
    QV_CHECK( qvPathCanAppend( append ) );
    // The path may be appended to itself.
    auto tail = qv::Local<QV_PATH>::share( append );
    qv::makePrivate( path, qvPathCreateFrom );
    if ( qv::vectorLength( tail->components ) > 0 )
    {
        qvVectorAppend( &( *path )->components, tail->components );
        ( *path )->flags &= ~QV_PATH_FLAG_DIRECTORY;
    }
    ( *path )->flags |= tail->flags & QV_PATH_FLAG_DIRECTORY;
}

void qvPathPrepend( QV_PATH **path, QV_PATH *prepend )
{
    QV_CHECK( path );
    QV_CHECK( *path );
    QV_CHECK( prepend );
    QV_CHECK( qvPathCanAppend( *path ) );
    auto joined = qv::Local<QV_PATH>::share( prepend );
    qvPathAppend( joined.edit(), *path );
    qv::replaceWith( path, joined.give() );
}

QV_PATH_FLAGS qvPathFlagsNormalize( QV_PATH_FLAGS flags )
{
    if ( flags & QV_PATH_FLAG_WINDOWS_UNC )
        return flags & ( QV_PATH_FLAG_WINDOWS_UNC | QV_PATH_FLAG_DIRECTORY );
    if ( flags & QV_PATH_FLAG_FSROOT )
        return flags & allFlags & ~QV_PATH_FLAG_CWD;
    return flags & allFlags;
}

QV_PATH_FLAGS qvPathFlagsFromString( QV_STRING *text )
{
    return qvPathFlagsNormalize( qvFlagsetParse( qv___PathFlagsFlagset, text ) );
}

QV_STRING *qvPathFlagsToString( QV_PATH_FLAGS flags )
{
    return qvFlagsetGenerate( qv___PathFlagsFlagset, flags );
}
