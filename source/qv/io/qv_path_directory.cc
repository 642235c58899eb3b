#include <qv/io/qv_path_directory.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_vector.hh>
#include <qv/io/qv_path.hh>
#include <qv/io/qv_path_file.h>
#include <qv/io/qv_path_platform.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

constinit QV_FLAGSET *qv___PathDirectoryListFlagsFlagset = nullptr;

namespace
{

constexpr qv::EnumName flagNames[] = {
    { QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE, "QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE" },
    { QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE, "QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE" },
    { QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_FILES, "QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_FILES" },
    { QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES, "QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES" },
    { QV_PATH_DIRECTORY_LIST_FLAG_SORT, "QV_PATH_DIRECTORY_LIST_FLAG_SORT" },
};

constexpr QV_PATH_DIRECTORY_LIST_FLAGS allFlags = 31;

bool isDirectory( QV_PATH *path )
{
    return qvPathFlags( path ) & QV_PATH_FLAG_DIRECTORY;
}

// The flags for listing a single directory on the way.
QV_PATH_DIRECTORY_LIST_FLAGS flagsOfOneLevel( QV_PATH_DIRECTORY_LIST_FLAGS flags )
{
    QV_PATH_DIRECTORY_LIST_FLAGS dropped =
        QV_PATH_DIRECTORY_LIST_FLAG_SORT | QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE;
    // Directories are needed for descending.
    if ( flags & QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE )
        dropped |= QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES;
    return ( flags & allFlags & ~dropped ) | QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE;
}

// Pushes what is in the directory full, as paths below entry, so that the first one is popped first.
void pushChildren( QV_VECTOR **stack, QV_PATH *entry, QV_PATH *full, QV_PATH_DIRECTORY_LIST_FLAGS levelFlags )
{
    qv::Local<QV_VECTOR> children( qv___IoPlatformDirectoryList( full, levelFlags ) );
    if ( !children )
        return;
    for ( QV_INT idx = qv::vectorLength( children ) - 1; idx >= 0; idx-- )
    {
        auto child = qv::Local<QV_PATH>::share( qvPathFrom( qv::vectorAt( children, idx ) ) );
        qvPathPrepend( child.edit(), entry );
        qv::vectorAppendGiven( stack, qv::objOf( child.give() ) );
    }
}

bool deleteEntry( QV_PATH *entry )
{
    return isDirectory( entry ) ? qvPathDirectoryDelete( entry ) : qvPathFileDelete( entry );
}

} // namespace

void qv___PathDirectoryListFlagsStartup()
{
    qv___PathDirectoryListFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___PathDirectoryListFlagsShutdown()
{
    qv::retire( &qv___PathDirectoryListFlagsFlagset );
}

QV_BOOL qvPathDirectoryExists( QV_PATH *path )
{
    QV_CHECK( path );
    return qv___IoPlatformDirectoryExists( path );
}

QV_BOOL qvPathDirectoryCreate( QV_PATH *path )
{
    QV_CHECK( path );
    return qv___IoPlatformDirectoryCreate( path );
}

QV_BOOL qvPathDirectoryRename( QV_PATH *path, QV_PATH *newPath )
{
    QV_CHECK( path );
    QV_CHECK( newPath );
    return qv___IoPlatformDirectoryRename( path, newPath );
}

QV_BOOL qvPathDirectoryDelete( QV_PATH *path )
{
    QV_CHECK( path );
    return qv___IoPlatformDirectoryDelete( path );
}

QV_VECTOR *qvPathDirectoryList( QV_PATH *path, QV_PATH_DIRECTORY_LIST_FLAGS flags )
{
    QV_CHECK( path );
    QV_PATH_DIRECTORY_LIST_FLAGS levelFlags = flagsOfOneLevel( flags );
    qv::Local<QV_VECTOR> stack( qv___IoPlatformDirectoryList( path, levelFlags ) );
    if ( !stack )
        return nullptr;
    qvVectorReverse( stack.edit() );

    qv::Local<QV_VECTOR> list( qvVectorCreate() );
    while ( qv::vectorLength( stack ) > 0 )
    {
        qv::Local<QV_PATH> entry( qvPathFrom( qvVectorPop( stack.edit() ) ) );
        auto full = qv::Local<QV_PATH>::share( path );
        qvPathAppend( full.edit(), entry );
        bool excluded = isDirectory( entry ) && ( flags & QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES );
        if ( !excluded )
        {
            QV_PATH *listed = flags & QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE ? entry : full;
            qvVectorAppendObj( list.edit(), qvPathObj( listed ) );
        }
        if ( isDirectory( entry ) && ( flags & QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE ) )
            pushChildren( stack.edit(), entry, full, levelFlags );
    }
    if ( flags & QV_PATH_DIRECTORY_LIST_FLAG_SORT )
        qvVectorQsort( list.edit() );
    return list.give();
}

QV_BOOL qvPathDirectoryDeleteRecursively( QV_PATH *path )
{
    QV_CHECK( path );
    // In the order of paths a directory stands before what is in it.
    qv::Local<QV_VECTOR> list( qvPathDirectoryList( path, QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE |
                                                              QV_PATH_DIRECTORY_LIST_FLAG_SORT ) );
    if ( !list )
        return QV_FALSE;
    for ( QV_INT idx = qv::vectorLength( list ) - 1; idx >= 0; idx-- )
    {
        if ( !deleteEntry( static_cast<QV_PATH *>( qv::vectorAt( list, idx ) ) ) )
            return QV_FALSE;
    }
    return qvPathDirectoryDelete( path );
}

QV_PATH_DIRECTORY_LIST_FLAGS qvPathDirectoryListFlagsNormalize( QV_PATH_DIRECTORY_LIST_FLAGS flags )
{
    return flags & allFlags;
}

QV_PATH_DIRECTORY_LIST_FLAGS qvPathDirectoryListFlagsFromString( QV_STRING *text )
{
    return qvPathDirectoryListFlagsNormalize( qvFlagsetParse( qv___PathDirectoryListFlagsFlagset, text ) );
}

QV_STRING *qvPathDirectoryListFlagsToString( QV_PATH_DIRECTORY_LIST_FLAGS flags )
{
    return qvFlagsetGenerate( qv___PathDirectoryListFlagsFlagset, flags );
}
