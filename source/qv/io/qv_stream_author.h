#ifndef QV_IO_QV_STREAM_AUTHOR_H
#define QV_IO_QV_STREAM_AUTHOR_H

/* For authors of streams, in C and in C++: a stream is made of plain functions and one closure object, which
 * each function receives first. A host that only uses streams doesn't need this header.
 *
 * The stream layer sets *unitsRead (or *bytesSkipped) to 0 before each call; the function leaves it between 0
 * and the maximum. Fewer units than asked for mean by that alone that the source has ended. Units may come
 * together with a false result: what came before the failure counts. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* Takes byteCount bytes, above 0; true when all of them were taken. */
typedef QV_BOOL ( *qv___ByteSinkWriteFunc )( qvObj closure, const unsigned char *bytes, QV_INT byteCount );

/* Takes charCount code points, above 0; true when all of them were taken. */
typedef QV_BOOL ( *qv___CharSinkWriteFunc )( qvObj closure, const QV_CHAR *chars, QV_INT charCount );

/* Takes one line, borrowed and without its new-line; true when it was taken. */
typedef QV_BOOL ( *qv___LineSinkWriteFunc )( qvObj closure, QV_STRING *line );

/* Pushes on what the sink still holds; true on success. */
typedef QV_BOOL ( *qv___SinkFlushFunc )( qvObj closure );

/* Delivers up to maxByteCount bytes; false means a read error. */
typedef QV_BOOL ( *qv___ByteSourceReadFunc )( qvObj closure, unsigned char *bytes, QV_INT maxByteCount,
                                              QV_INT *bytesRead );

/* Discards up to maxByteCount bytes; false means a read error. */
typedef QV_BOOL ( *qv___ByteSourceSkipFunc )( qvObj closure, QV_INT maxByteCount, QV_INT *bytesSkipped );

/* Delivers up to maxCharCount code points; false means a read error. */
typedef QV_BOOL ( *qv___CharSourceReadFunc )( qvObj closure, QV_CHAR *chars, QV_INT maxCharCount,
                                              QV_INT *charsRead );

/* Finds null in *line and puts a new string there, handing it over, or leaves null when no line is left;
 * false means a read error, also together with a last line. */
typedef QV_BOOL ( *qv___LineSourceReadFunc )( qvObj closure, QV_STRING **line );

/* New streams, owned by the caller. Each retains the closure, which may be null, until its last release. The
 * functions are not null, but for skipFunc: without one the stream reads and discards. A sink flushes when it
 * is freed. */
QV_API QV_BYTE_SINK *qv___ByteSinkCreate( qv___ByteSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                          qvObj closure );
QV_API QV_BYTE_SOURCE *qv___ByteSourceCreate( qv___ByteSourceReadFunc readFunc,
                                              qv___ByteSourceSkipFunc skipFunc, qvObj closure );
QV_API QV_CHAR_SINK *qv___CharSinkCreate( qv___CharSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                          qvObj closure );
QV_API QV_CHAR_SOURCE *qv___CharSourceCreate( qv___CharSourceReadFunc readFunc, qvObj closure );
QV_API QV_LINE_SINK *qv___LineSinkCreate( qv___LineSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                          qvObj closure );
QV_API QV_LINE_SOURCE *qv___LineSourceCreate( qv___LineSourceReadFunc readFunc, qvObj closure );

QV_END_DECLS

#endif
