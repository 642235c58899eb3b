#ifndef QV_IO_QV_PATH_FILE_H
#define QV_IO_QV_PATH_FILE_H

/* Operations on files, and the status of files and file systems. A path that carries QV_PATH_FLAG_DIRECTORY
 * gives false or null without touching the file system, but for the two status functions. The reason of a
 * failure is not kept.
 *
 * A file sink writes straight to its target, which is truncated when it is opened; a flush that says true has brought
 * every byte written so far to the disk. A flush of a target that has no disk, such as a pipe or a terminal, passes the
 * bytes on and says false. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* True if something of that name exists, also a directory. */
QV_API QV_BOOL qvPathFileExists( QV_PATH *path );

/* New streams on the file's bytes, or null. The file closes when the last stream object that uses it goes. */
QV_API QV_BYTE_SOURCE *qvPathFileOpenByteSource( QV_PATH *path );
QV_API QV_BYTE_SINK *qvPathFileOpenByteSink( QV_PATH *path );

/* New streams on the file's text, in a QV_CHARSET_... and with the flags of the charset streams, or null. */
QV_API QV_CHAR_SOURCE *qvPathFileOpenCharSource( QV_PATH *path, QV_INT charset, QV_INT charsetFlags );
QV_API QV_CHAR_SINK *qvPathFileOpenCharSink( QV_PATH *path, QV_INT charset, QV_INT charsetFlags );

/* New streams on the file's lines, with the new-lines of nlfFlags (QV_NLF_FLAG_...), or null. */
QV_API QV_LINE_SOURCE *qvPathFileOpenLineSource( QV_PATH *path, QV_INT charset, QV_INT charsetFlags,
                                                 QV_INT nlfFlags );
QV_API QV_LINE_SINK *qvPathFileOpenLineSink( QV_PATH *path, QV_INT charset, QV_INT charsetFlags,
                                             QV_INT nlfFlags );

/* Gives the file a new name, replacing a file of that name. True on success. */
QV_API QV_BOOL qvPathFileRename( QV_PATH *path, QV_PATH *newPath );

/* Deletes the file. True on success. */
QV_API QV_BOOL qvPathFileDelete( QV_PATH *path );

/* The whole file as a new buffer; null if it can't be read, or holds more than maxBytes bytes (-1 for no
 * limit). */
QV_API QV_BUFFER *qvPathFileReadBuffer( QV_PATH *path, QV_INT maxBytes );

/* Up to fragmentMaxBytes bytes (-1 for no limit) from byte fragmentOffset (at least 0) as a new buffer, which
 * is empty behind the end of the file; null if the file can't be read. */
QV_API QV_BUFFER *qvPathFileReadFragmentBuffer( QV_PATH *path, QV_INT fragmentOffset,
                                                QV_INT fragmentMaxBytes );

/* Makes the buffer's bytes the file's contents. False if anything failed; the file may then hold a part. */
QV_API QV_BOOL qvPathFileWriteBuffer( QV_PATH *path, QV_BUFFER *buffer );

/* The store of a data file, owned by the caller, or null. header may be null; otherwise it receives the
 * file's header, owned by the caller, or null. */
QV_API QV_STORE *qvPathFileReadStore( QV_PATH *path, QV_STORE_HEADER **header );

/* Writes a data file. False if anything failed; the file may then hold a part. */
QV_API QV_BOOL qvPathFileWriteStore( QV_PATH *path, QV_STORE *store, QV_STORE_HEADER *storeHeader );

/* The status of a file or directory, owned by the caller, or null. A path with QV_PATH_FLAG_DIRECTORY must
 * name a directory. */
QV_API QV_STAT *qvPathStat( QV_PATH *path );

/* The status of the file system that holds the path, owned by the caller, or null. */
QV_API QV_STAT_FILESYSTEM *qvPathStatFilesystem( QV_PATH *path );

QV_END_DECLS

#endif
