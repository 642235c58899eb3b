#ifndef QV_IO_QV_LINE_SINK_H
#define QV_IO_QV_LINE_SINK_H

/* A sink for lines, each a string without its new-line. Once a write or flush has failed, the sink's error
 * latch is set for good and every further write and flush returns false without effect. Freeing a sink
 * flushes it. One sink is for one thread at a time.
 *
 * Null lines, negative offsets or counts and ranges outside the line or vector stop the process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_LINE_SINK, qvLineSink )

/* Writes one line. True on success. */
QV_API QV_BOOL qvLineSinkWrite( QV_LINE_SINK *sink, QV_STRING *line );

/* Writes UTF-8 text of length bytes, -1 up to the terminator, as one line. True on success. */
QV_API QV_BOOL qvLineSinkWriteCstr( QV_LINE_SINK *sink, const char *text, QV_INT length );

/* Writes wide text of length units, -1 up to the terminator, as one line. True on success. */
QV_API QV_BOOL qvLineSinkWriteWcstr( QV_LINE_SINK *sink, const wchar_t *text, QV_INT length );

/* Writes the text that the format and its arguments give as one line. A faulty format stops the process. True
 * on success. */
QV_API QV_BOOL qvLineSinkWriteFormat( QV_LINE_SINK *sink, QV_STRING *format, ... );
QV_API QV_BOOL qvLineSinkWriteFormatCstr( QV_LINE_SINK *sink, const char *format, QV_INT length, ... );
QV_API QV_BOOL qvLineSinkWriteFormatWcstr( QV_LINE_SINK *sink, const wchar_t *format, QV_INT length, ... );

/* Writes a part of the string as one line: its first count code points, its last count code points, count
 * code points from offset on, or all but these. True on success. */
QV_API QV_BOOL qvLineSinkWriteLeading( QV_LINE_SINK *sink, QV_STRING *line, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteTrailing( QV_LINE_SINK *sink, QV_STRING *line, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteInner( QV_LINE_SINK *sink, QV_STRING *line, QV_INT offset, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteOuter( QV_LINE_SINK *sink, QV_STRING *line, QV_INT offset, QV_INT count );

/* Writes each string of the vector as a line and stops at the first failure; the lines before it stay written
 * and counted. An element that isn't a string stops the process. True on success, also for no line at all on
 * a good sink. */
QV_API QV_BOOL qvLineSinkWriteLines( QV_LINE_SINK *sink, QV_VECTOR *lines );

/* The same for a part of the vector: its first count elements, its last count elements, count elements from
 * offset on, or all but these. */
QV_API QV_BOOL qvLineSinkWriteLinesLeading( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteLinesTrailing( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteLinesInner( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT offset, QV_INT count );
QV_API QV_BOOL qvLineSinkWriteLinesOuter( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT offset, QV_INT count );

/* Pushes on what the sink holds back. True on success. */
QV_API QV_BOOL qvLineSinkFlush( QV_LINE_SINK *sink );

/* True once a write or flush has failed. */
QV_API QV_BOOL qvLineSinkError( QV_LINE_SINK *sink );

/* The number of lines written with success; it stays at the largest integer. */
QV_API QV_INT qvLineSinkLinesWritten( QV_LINE_SINK *sink );

QV_END_DECLS

#endif
