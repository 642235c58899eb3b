#ifndef QV_IO_QV_PATH_DIRECTORY_H
#define QV_IO_QV_PATH_DIRECTORY_H

/* Operations on directories. The reason of a failure is not kept. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_PATH_DIRECTORY_LIST_FLAGS;

#define QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE           1  /* descend into sub-directories */
#define QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE            2  /* paths relative to the listed directory */
#define QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_FILES       4  /* no files in the result */
#define QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES 8  /* no directories in the result */
#define QV_PATH_DIRECTORY_LIST_FLAG_SORT                16 /* in the order of paths */

QV_BEGIN_DECLS

/* True if the path names a directory. */
QV_API QV_BOOL qvPathDirectoryExists( QV_PATH *path );

/* Makes one directory, whose parent must exist. True on success. */
QV_API QV_BOOL qvPathDirectoryCreate( QV_PATH *path );

/* Gives the directory a new name. True on success. */
QV_API QV_BOOL qvPathDirectoryRename( QV_PATH *path, QV_PATH *newPath );

/* Deletes an empty directory. True on success. */
QV_API QV_BOOL qvPathDirectoryDelete( QV_PATH *path );

/* What is in a directory, as a new vector of paths, or null if it can't be listed. Directories carry
 * QV_PATH_FLAG_DIRECTORY; a symbolic link counts as a file and isn't followed. With recursion, a directory
 * comes before what is in it; a sub-directory that can't be listed is passed over. */
QV_API QV_VECTOR *qvPathDirectoryList( QV_PATH *path, QV_PATH_DIRECTORY_LIST_FLAGS flags );

/* Deletes a directory with all that is in it. Stops at the first failure and then gives false. */
QV_API QV_BOOL qvPathDirectoryDeleteRecursively( QV_PATH *path );

/* Drops unknown bits. */
QV_API QV_PATH_DIRECTORY_LIST_FLAGS qvPathDirectoryListFlagsNormalize( QV_PATH_DIRECTORY_LIST_FLAGS flags );

/* Normalized flags from names (or numbers) joined by "|"; unknown words are dropped. */
QV_API QV_PATH_DIRECTORY_LIST_FLAGS qvPathDirectoryListFlagsFromString( QV_STRING *text );

/* The names joined by "|", owned by the caller. A bit without a name stops the process. */
QV_API QV_STRING *qvPathDirectoryListFlagsToString( QV_PATH_DIRECTORY_LIST_FLAGS flags );

QV_END_DECLS

#endif
