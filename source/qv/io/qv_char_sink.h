#ifndef QV_IO_QV_CHAR_SINK_H
#define QV_IO_QV_CHAR_SINK_H

/* A sink for code points. Once a write or flush has failed, the sink's error latch is set for good and every
 * further write and flush returns false without effect. Freeing a sink flushes it. One sink is for one thread
 * at a time.
 *
 * Offsets and counts are code points. A null string stands for an empty one. A negative offset or count and a
 * range outside the string stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_CHAR_SINK, qvCharSink )

/* Writes the whole string. True on success; an empty write reaches nothing and succeeds on a good sink. */
QV_API QV_BOOL qvCharSinkWrite( QV_CHAR_SINK *sink, QV_STRING *string );

/* Writes the first charCount code points. True on success. */
QV_API QV_BOOL qvCharSinkWriteLeading( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charCount );

/* Writes the last charCount code points. True on success. */
QV_API QV_BOOL qvCharSinkWriteTrailing( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charCount );

/* Writes charCount code points from charOffset on. True on success. */
QV_API QV_BOOL qvCharSinkWriteInner( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charOffset,
                                     QV_INT charCount );

/* Writes everything but charCount code points from charOffset on: first the part before, then the part
 * behind. A failure of the first part skips the second. True on success. */
QV_API QV_BOOL qvCharSinkWriteOuter( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charOffset,
                                     QV_INT charCount );

/* Writes charCount code points of memory; chars may be null if charCount is 0. True on success. */
QV_API QV_BOOL qvCharSinkWriteChars( QV_CHAR_SINK *sink, const QV_CHAR *chars, QV_INT charCount );

/* Writes one code point, at most QV_CHAR_MAX. True on success. */
QV_API QV_BOOL qvCharSinkWriteChar( QV_CHAR_SINK *sink, QV_CHAR ch );

/* Writes UTF-8 text of length bytes, -1 up to the terminator; invalid bytes are decoded as
 * qvStringCreateFromCstr does. True on success. */
QV_API QV_BOOL qvCharSinkWriteCstr( QV_CHAR_SINK *sink, const char *text, QV_INT length );

/* Writes wide text of length units, -1 up to the terminator. True on success. */
QV_API QV_BOOL qvCharSinkWriteWcstr( QV_CHAR_SINK *sink, const wchar_t *text, QV_INT length );

/* Writes the text that the format and its arguments give. A faulty format stops the process. True on success.
 */
QV_API QV_BOOL qvCharSinkWriteFormat( QV_CHAR_SINK *sink, QV_STRING *format, ... );
QV_API QV_BOOL qvCharSinkWriteFormatCstr( QV_CHAR_SINK *sink, const char *format, QV_INT length, ... );
QV_API QV_BOOL qvCharSinkWriteFormatWcstr( QV_CHAR_SINK *sink, const wchar_t *format, QV_INT length, ... );

/* Pushes on what the sink holds back. True on success. */
QV_API QV_BOOL qvCharSinkFlush( QV_CHAR_SINK *sink );

/* True once a write or flush has failed. */
QV_API QV_BOOL qvCharSinkError( QV_CHAR_SINK *sink );

QV_END_DECLS

#endif
