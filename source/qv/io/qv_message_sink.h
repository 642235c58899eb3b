#ifndef QV_IO_QV_MESSAGE_SINK_H
#define QV_IO_QV_MESSAGE_SINK_H

/* A stream of messages, built on two functions and a closure. A write or flush that fails sets the sink's
 * error latch; nothing clears it. The last release flushes once and ignores the result. A sink is for one
 * thread at a time. */

#include <qv/io/qv_message.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* What writes a message: gets the closure, which may be null, and a borrowed message, and returns true on
 * success. */
typedef QV_BOOL ( *qv___MessageSinkWriteFunc )( qvObj closure, QV_MESSAGE *msg );

QV_SORT_FUNCTIONS( QV_MESSAGE_SINK, qvMessageSink )

/* A new sink, for authors of streams. The functions must not be null; the closure is retained and may be
 * null. */
QV_API QV_MESSAGE_SINK *qv___MessageSinkCreate( qv___MessageSinkWriteFunc writeFunc,
                                                qv___SinkFlushFunc flushFunc, qvObj closure );

/* Writes a message: true if the sink took it. The sink's level rises to that of the message in any case. */
QV_API QV_BOOL qvMessageSinkWriteMessage( QV_MESSAGE_SINK *sink, QV_MESSAGE *msg );

/* Makes a message as the functions qvMessageCreate... do, and writes it. */
QV_API QV_BOOL qvMessageSinkWrite( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                   QV_LOCATION *optionalLocation, QV_STRING *text );
QV_API QV_BOOL qvMessageSinkWriteCstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                       QV_LOCATION *optionalLocation, const char *text, QV_INT length );
QV_API QV_BOOL qvMessageSinkWriteWcstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                        QV_LOCATION *optionalLocation, const wchar_t *text, QV_INT length );
QV_API QV_BOOL qvMessageSinkWriteFormat( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                         QV_LOCATION *optionalLocation, QV_STRING *format, ... );
QV_API QV_BOOL qvMessageSinkWriteFormatCstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                             QV_LOCATION *optionalLocation, const char *format,
                                             QV_INT formatLength, ... );
QV_API QV_BOOL qvMessageSinkWriteFormatWcstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                              QV_LOCATION *optionalLocation, const wchar_t *format,
                                              QV_INT formatLength, ... );

/* Writes each message of a vector that holds only messages, whatever became of the one before: true if all
 * were written, so also for an empty vector. */
QV_API QV_BOOL qvMessageSinkWriteMessages( QV_MESSAGE_SINK *sink, QV_VECTOR *messages );

/* Passes on what the sink may hold back: true on success. */
QV_API QV_BOOL qvMessageSinkFlush( QV_MESSAGE_SINK *sink );

/* True once a write or flush has failed. */
QV_API QV_BOOL qvMessageSinkError( QV_MESSAGE_SINK *sink );

/* The highest level so far, and at least QV_MESSAGE_LEVEL_NORMAL. */
QV_API QV_MESSAGE_LEVEL qvMessageSinkLevel( QV_MESSAGE_SINK *sink );

/* How many messages were written; stays at the largest integer once it is there. */
QV_API QV_INT qvMessageSinkMessagesWritten( QV_MESSAGE_SINK *sink );

QV_END_DECLS

#endif
