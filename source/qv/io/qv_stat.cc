#include <qv/io/qv_stat.hh>

#include <qv/base/qv_time.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

QV_SORT_DEFINE( QV_STAT, qvStat, { .freeFunc = qv___StatFreeFunc } )
QV_SORT_DEFINE( QV_STAT_FILESYSTEM, qvStatFilesystem, { .freeFunc = qv___StatFilesystemFreeFunc } )

void qv___StatFreeFunc( qvObj thisObj )
{
    auto *stat = static_cast<QV_STAT *>( thisObj );
    qv::releaseOptional( stat->modificationTime );
}

void qv___StatFilesystemFreeFunc( qvObj thisObj )
{
    // Two numbers, nothing that is owned.
    QV_CHECK( qvStatFilesystemFrom( thisObj ) );
}

QV_STAT *qvStatCreate( void )
{
    auto *stat = qv::create<QV_STAT>( qvStatSort() );
    stat->size = -1;
    stat->modificationTime = nullptr;
    return stat;
}

QV_STAT *qvStatCreateFrom( QV_STAT *stat )
{
    QV_CHECK( stat );
    auto *copy = qv::create<QV_STAT>( qvStatSort() );
    copy->size = stat->size;
    copy->modificationTime = qv::retainedOptional( stat->modificationTime );
    return copy;
}

QV_INT qvStatSize( QV_STAT *stat )
{
    QV_CHECK( stat );
    return stat->size;
}

QV_BOOL qvStatHasSize( QV_STAT *stat )
{
    QV_CHECK( stat );
    return stat->size != -1;
}

void qvStatSetSize( QV_STAT **stat, QV_INT size )
{
    QV_CHECK( stat );
    QV_CHECK( *stat );
    QV_CHECK( size >= 0 );
    qv::makePrivate( stat, qvStatCreateFrom );
    ( *stat )->size = size;
}

void qvStatDelSize( QV_STAT **stat )
{
    QV_CHECK( stat );
    QV_CHECK( *stat );
    qv::makePrivate( stat, qvStatCreateFrom );
    ( *stat )->size = -1;
}

QV_TIME *qvStatModificationTime( QV_STAT *stat )
{
    QV_CHECK( stat );
    return qv::retainedOptional( stat->modificationTime );
}

QV_BOOL qvStatHasModificationTime( QV_STAT *stat )
{
    QV_CHECK( stat );
    return QV_BOOL_FROM( stat->modificationTime );
}

void qvStatSetModificationTime( QV_STAT **stat, QV_TIME *modificationTime )
{
    QV_CHECK( stat );
    QV_CHECK( *stat );
    QV_CHECK( modificationTime );
    qv::makePrivate( stat, qvStatCreateFrom );
    qv::assign( &( *stat )->modificationTime, modificationTime );
}

void qvStatDelModificationTime( QV_STAT **stat )
{
    QV_CHECK( stat );
    QV_CHECK( *stat );
    qv::makePrivate( stat, qvStatCreateFrom );
    qv::replaceWith( &( *stat )->modificationTime, static_cast<QV_TIME *>( nullptr ) );
}

QV_STAT_FILESYSTEM *qvStatFilesystemCreate( QV_INT size, QV_INT availableSize )
{
    QV_CHECK( size >= 0 );
    QV_CHECK( availableSize >= 0 );
    auto *statFilesystem = qv::create<QV_STAT_FILESYSTEM>( qvStatFilesystemSort() );
    statFilesystem->size = size;
    statFilesystem->availableSize = availableSize;
    return statFilesystem;
}

QV_STAT_FILESYSTEM *qvStatFilesystemCreateFrom( QV_STAT_FILESYSTEM *statFilesystem )
{
    QV_CHECK( statFilesystem );
    return qvStatFilesystemCreate( statFilesystem->size, statFilesystem->availableSize );
}

QV_INT qvStatFilesystemSize( QV_STAT_FILESYSTEM *statFilesystem )
{
    QV_CHECK( statFilesystem );
    return statFilesystem->size;
}

void qvStatFilesystemSetSize( QV_STAT_FILESYSTEM **statFilesystem, QV_INT size )
{
    QV_CHECK( statFilesystem );
    QV_CHECK( *statFilesystem );
    QV_CHECK( size >= 0 );
    qv::makePrivate( statFilesystem, qvStatFilesystemCreateFrom );
    ( *statFilesystem )->size = size;
}

QV_INT qvStatFilesystemAvailableSize( QV_STAT_FILESYSTEM *statFilesystem )
{
    QV_CHECK( statFilesystem );
    return statFilesystem->availableSize;
}

void qvStatFilesystemSetAvailableSize( QV_STAT_FILESYSTEM **statFilesystem, QV_INT availableSize )
{
    QV_CHECK( statFilesystem );
    QV_CHECK( *statFilesystem );
    QV_CHECK( availableSize >= 0 );
    qv::makePrivate( statFilesystem, qvStatFilesystemCreateFrom );
    ( *statFilesystem )->availableSize = availableSize;
}
