#ifndef QV_RUNTIME_QV_RUNTIME_PATHS_H
#define QV_RUNTIME_QV_RUNTIME_PATHS_H

/* Runtime paths: where a product's files lie. A value with copy-on-write: functions that edit take the address of the
 * caller's handle and put a private copy there if the record is shared. A path that isn't set is absent; every path that
 * is set names a directory (QV_PATH_FLAG_DIRECTORY).
 *
 * Null handles and values that aren't one of QV_RUNTIME_PATH_... stop the process. The caller owns the objects that a
 * function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

typedef QV_INT QV_RUNTIME_PATH;

#define QV_RUNTIME_PATH_INSTALL      0 /* the directory of the installed product */
#define QV_RUNTIME_PATH_PRODUCT      1 /* the product's files */
#define QV_RUNTIME_PATH_PRODUCT_BIN  2 /* programs and modules */
#define QV_RUNTIME_PATH_PRODUCT_RES  3 /* resources */
#define QV_RUNTIME_PATH_DATA         4 /* the root of the data directories */
#define QV_RUNTIME_PATH_DATA_STORAGE 5 /* stored data */
#define QV_RUNTIME_PATH_DATA_TRACE   6 /* traces */
#define QV_RUNTIME_PATH_DATA_ABORT   7 /* crash reports */
#define QV_RUNTIME_PATH_DATA_TEMP    8 /* temporary files */

/* True for the values above. */
#define QV_RUNTIME_PATH_OK( rtp ) ( ( rtp ) >= 0 && ( rtp ) <= 8 )

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_RUNTIME_PATHS, qvRuntimePaths )

/* The name of a value, null if it has none; and the value of a name, -1 if there is none. */
QV_API QV_STRING *qvRuntimePathToString( QV_RUNTIME_PATH rtp );
QV_API QV_RUNTIME_PATH qvRuntimePathFromString( QV_STRING *string );

/* The paths of the running process, worked out at startup; none is set with QV_RUNTIME_FLAG_MINIMAL. */
QV_API QV_RUNTIME_PATHS *qvRuntimePaths( void );

/* The environment of the process, as it was at startup. */
QV_API QV_ENVIRONMENT *qvRuntimeEnvironment( void );

/* New paths, none set, or those of other paths. */
QV_API QV_RUNTIME_PATHS *qvRuntimePathsCreate( void );
QV_API QV_RUNTIME_PATHS *qvRuntimePathsCreateFrom( QV_RUNTIME_PATHS *paths );

/* A path, or null if it isn't set. */
QV_API QV_PATH *qvRuntimePathsPath( QV_RUNTIME_PATHS *paths, QV_RUNTIME_PATH rtp );
QV_API QV_BOOL qvRuntimePathsHasPath( QV_RUNTIME_PATHS *paths, QV_RUNTIME_PATH rtp );

/* Sets a path, which must have QV_PATH_FLAG_DIRECTORY, or makes it absent. */
QV_API void qvRuntimePathsSetPath( QV_RUNTIME_PATHS **paths, QV_RUNTIME_PATH rtp, QV_PATH *path );
QV_API void qvRuntimePathsDelPath( QV_RUNTIME_PATHS **paths, QV_RUNTIME_PATH rtp );

/* A new store with a value for each path that is set and has a text form, under the name of its QV_RUNTIME_PATH. */
QV_API QV_STORE *qvRuntimePathsStore( QV_RUNTIME_PATHS *paths );

/* New paths from such a store. Entries that don't name a runtime path, or hold no text of a directory, are skipped. */
QV_API QV_RUNTIME_PATHS *qvRuntimePathsRestore( QV_STORE *store );

QV_END_DECLS

#endif
