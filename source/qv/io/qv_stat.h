#ifndef QV_IO_QV_STAT_H
#define QV_IO_QV_STAT_H

/* The status of a file or directory, and of a file system. Values with copy-on-write: setters take the
 * address of the caller's handle and put a private copy there if the record is shared. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STAT, qvStat )

/* A new status without size and time. */
QV_API QV_STAT *qvStatCreate( void );

/* A new status with the same contents. */
QV_API QV_STAT *qvStatCreateFrom( QV_STAT *stat );

/* The size in bytes, at least 0, or -1 for none: only regular files have one. */
QV_API QV_INT qvStatSize( QV_STAT *stat );
QV_API QV_BOOL qvStatHasSize( QV_STAT *stat );
QV_API void qvStatSetSize( QV_STAT **stat, QV_INT size );
QV_API void qvStatDelSize( QV_STAT **stat );

/* The time of the last modification, owned by the caller, or null for none. */
QV_API QV_TIME *qvStatModificationTime( QV_STAT *stat );
QV_API QV_BOOL qvStatHasModificationTime( QV_STAT *stat );
QV_API void qvStatSetModificationTime( QV_STAT **stat, QV_TIME *modificationTime );
QV_API void qvStatDelModificationTime( QV_STAT **stat );

QV_SORT_FUNCTIONS( QV_STAT_FILESYSTEM, qvStatFilesystem )

/* A new file-system status; both sizes are in bytes and at least 0. */
QV_API QV_STAT_FILESYSTEM *qvStatFilesystemCreate( QV_INT size, QV_INT availableSize );

/* A new file-system status with the same contents. */
QV_API QV_STAT_FILESYSTEM *qvStatFilesystemCreateFrom( QV_STAT_FILESYSTEM *statFilesystem );

/* The size of the whole file system in bytes, at least 0. */
QV_API QV_INT qvStatFilesystemSize( QV_STAT_FILESYSTEM *statFilesystem );
QV_API void qvStatFilesystemSetSize( QV_STAT_FILESYSTEM **statFilesystem, QV_INT size );

/* The free bytes of the file system, at least 0. */
QV_API QV_INT qvStatFilesystemAvailableSize( QV_STAT_FILESYSTEM *statFilesystem );
QV_API void qvStatFilesystemSetAvailableSize( QV_STAT_FILESYSTEM **statFilesystem, QV_INT availableSize );

QV_END_DECLS

#endif
