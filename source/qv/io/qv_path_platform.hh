#ifndef QV_IO_QV_PATH_PLATFORM_HH
#define QV_IO_QV_PATH_PLATFORM_HH

// The lower layer of files, directories and status: the only functions that touch the platform's file system.
// Each takes a path and yields false or null if the path has no text on this platform, or if the system
// refuses.

#include <qv/io/qv_path_directory.h>
#include <qv/io/qv_path_file.h>

QV_BOOL qv___IoPlatformFileExists( QV_PATH *path );
QV_BYTE_SOURCE *qv___IoPlatformFileOpenByteSource( QV_PATH *path );
QV_BYTE_SINK *qv___IoPlatformFileOpenByteSink( QV_PATH *path );
QV_BOOL qv___IoPlatformFileRename( QV_PATH *path, QV_PATH *newPath );
QV_BOOL qv___IoPlatformFileDelete( QV_PATH *path );

QV_BOOL qv___IoPlatformDirectoryExists( QV_PATH *path );
QV_BOOL qv___IoPlatformDirectoryCreate( QV_PATH *path );
QV_BOOL qv___IoPlatformDirectoryRename( QV_PATH *path, QV_PATH *newPath );
QV_BOOL qv___IoPlatformDirectoryDelete( QV_PATH *path );

// One directory, in the system's order, as paths of one component. flags must have RELATIVE and neither
// RECURSIVE nor SORT.
QV_VECTOR *qv___IoPlatformDirectoryList( QV_PATH *path, QV_PATH_DIRECTORY_LIST_FLAGS flags );

QV_STAT *qv___IoPlatformStat( QV_PATH *path );
QV_STAT_FILESYSTEM *qv___IoPlatformStatFilesystem( QV_PATH *path );

#endif
