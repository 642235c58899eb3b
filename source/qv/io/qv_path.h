#ifndef QV_IO_QV_PATH_H
#define QV_IO_QV_PATH_H

/* A parsed file-system path, independent of platform: flags, a count of leading "..", components, and the
 * Windows parts of a volume letter and a UNC server. Its two texts, Unix and Windows, are made by the
 * functions ...Encode and read by ...Decode. A value with copy-on-write: setters take the address of the
 * caller's handle and put a private copy there if the record is shared.
 *
 * Paths order by UNC server (none first), volume letter, leading "..", components, flags. The text form is
 * for display only: the path in square brackets, with "\" as separator if a volume or UNC flag is set and "/"
 * otherwise. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

typedef QV_INT QV_PATH_FLAGS;

#define QV_PATH_FLAG_DIRECTORY      1  /* names a directory: a trailing separator in the text */
#define QV_PATH_FLAG_CWD            2  /* begins at the current directory: a leading "." */
#define QV_PATH_FLAG_FSROOT         4  /* begins at the root of the file system */
#define QV_PATH_FLAG_WINDOWS_VOLUME 8  /* has a volume letter */
#define QV_PATH_FLAG_WINDOWS_UNC    16 /* begins with a UNC server */

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PATH, qvPath )

/* A new empty path: no flags, no leading "..", no components. */
QV_API QV_PATH *qvPathCreate( void );

/* A new path with the same contents. */
QV_API QV_PATH *qvPathCreateFrom( QV_PATH *path );

/* The flags; setting normalizes them as qvPathFlagsNormalize does. */
QV_API QV_PATH_FLAGS qvPathFlags( QV_PATH *path );
QV_API void qvPathSetFlags( QV_PATH **path, QV_PATH_FLAGS flags );

/* How many ".." stand before the components, at least 0. */
QV_API QV_INT qvPathUp( QV_PATH *path );
QV_API void qvPathSetUp( QV_PATH **path, QV_INT up );

QV_API QV_INT qvPathComponentsLength( QV_PATH *path );

/* The components, owned by the caller. Setting takes a vector of strings only. */
QV_API QV_VECTOR *qvPathComponentsVector( QV_PATH *path );
QV_API void qvPathSetComponentsVector( QV_PATH **path, QV_VECTOR *vec );

/* The component at an index from 0, owned by the caller. An index out of range stops the process. */
QV_API QV_STRING *qvPathComponentAt( QV_PATH *path, QV_INT idx );

/* Edit the components and leave the flags alone. Inserting takes an index from 0 to the length, both
 * included. */
QV_API void qvPathSetComponentAt( QV_PATH **path, QV_INT idx, QV_STRING *component );
QV_API void qvPathDelComponentAt( QV_PATH **path, QV_INT idx );
QV_API void qvPathInsertComponent( QV_PATH **path, QV_INT idx, QV_STRING *component );
QV_API void qvPathPrependComponent( QV_PATH **path, QV_STRING *component );

/* Append a component; the path then names a directory (QV_PATH_FLAG_DIRECTORY is set) or a file (it is
 * cleared). Byte text is UTF-8; lengths are in bytes or wide characters, -1 up to the terminator. */
QV_API void qvPathAppendComponentDirectory( QV_PATH **path, QV_STRING *dir );
QV_API void qvPathAppendComponentDirectoryCstr( QV_PATH **path, const char *dir, QV_INT length );
QV_API void qvPathAppendComponentDirectoryWcstr( QV_PATH **path, const wchar_t *dir, QV_INT length );
QV_API void qvPathAppendComponentFilename( QV_PATH **path, QV_STRING *fn );
QV_API void qvPathAppendComponentFilenameCstr( QV_PATH **path, const char *fn, QV_INT length );
QV_API void qvPathAppendComponentFilenameWcstr( QV_PATH **path, const wchar_t *fn, QV_INT length );

/* The volume letter, 0 for none. Setting takes a letter that is Ok; neither setting nor deleting touches the
 * flags, which say whether the path is read with its letter. */
QV_API QV_CHAR qvPathWindowsVolumeDesignator( QV_PATH *path );
QV_API QV_BOOL qvPathHasWindowsVolumeDesignator( QV_PATH *path );
QV_API void qvPathSetWindowsVolumeDesignator( QV_PATH **path, QV_CHAR desig );
QV_API void qvPathDelWindowsVolumeDesignator( QV_PATH **path );

/* True for the ASCII letters of either case. */
QV_API QV_BOOL qvPathWindowsVolumeDesignatorOk( QV_CHAR ch );

/* The UNC server, owned by the caller, or null for none. Neither setting nor deleting touches the flags. */
QV_API QV_STRING *qvPathWindowsUncServer( QV_PATH *path );
QV_API QV_BOOL qvPathHasWindowsUncServer( QV_PATH *path );
QV_API void qvPathSetWindowsUncServer( QV_PATH **path, QV_STRING *server );
QV_API void qvPathDelWindowsUncServer( QV_PATH **path );

/* True for a bare relative tail: no flag but QV_PATH_FLAG_DIRECTORY, and no leading "..". */
QV_API QV_BOOL qvPathCanAppend( QV_PATH *path );

/* Puts the components of append, which must be appendable, behind those of path. The directory flag becomes
 * that of append if append has components, and otherwise stays or is added. */
QV_API void qvPathAppend( QV_PATH **path, QV_PATH *append );

/* Replaces path, which must be appendable, by prepend with path appended to it. */
QV_API void qvPathPrepend( QV_PATH **path, QV_PATH *prepend );

/* True if the path has the text form in question. Without a platform's name: if it has any; Platform: that of
 * the platform that the library runs on. */
QV_API QV_BOOL qvPathUnixIsValid( QV_PATH *path );
QV_API QV_BOOL qvPathWindowsIsValid( QV_PATH *path );
QV_API QV_BOOL qvPathIsValid( QV_PATH *path );
QV_API QV_BOOL qvPathPlatformIsValid( QV_PATH *path );

/* The text, owned by the caller, or null if the path isn't valid for that form. qvPathTryEncode takes the
 * Unix form if there is one, and otherwise the Windows form. */
QV_API QV_STRING *qvPathUnixTryEncode( QV_PATH *path );
QV_API QV_STRING *qvPathWindowsTryEncode( QV_PATH *path );
QV_API QV_STRING *qvPathTryEncode( QV_PATH *path );
QV_API QV_STRING *qvPathPlatformTryEncode( QV_PATH *path );

/* A new path from a text, or null if the text is none. ".." takes away the component before it.
 * qvPathTryDecode and its byte (UTF-8) and wide forms read Windows text if they can, and otherwise Unix text.
 */
QV_API QV_PATH *qvPathUnixTryDecode( QV_STRING *text );
QV_API QV_PATH *qvPathWindowsTryDecode( QV_STRING *text );
QV_API QV_PATH *qvPathTryDecode( QV_STRING *text );
QV_API QV_PATH *qvPathPlatformTryDecode( QV_STRING *text );
QV_API QV_PATH *qvPathTryDecodeCstr( const char *text, QV_INT length );
QV_API QV_PATH *qvPathTryDecodeWcstr( const wchar_t *text, QV_INT length );

/* Drops unknown bits and resolves contradictions: UNC leaves only itself and the directory flag, root drops
 * the current directory. */
QV_API QV_PATH_FLAGS qvPathFlagsNormalize( QV_PATH_FLAGS flags );

/* Normalized flags from names (or numbers) joined by "|"; unknown words are dropped. */
QV_API QV_PATH_FLAGS qvPathFlagsFromString( QV_STRING *text );

/* The names joined by "|", owned by the caller. A bit without a name stops the process. */
QV_API QV_STRING *qvPathFlagsToString( QV_PATH_FLAGS flags );

QV_END_DECLS

#endif
