#ifndef QV_IO_QV_MESSAGE_H
#define QV_IO_QV_MESSAGE_H

/* A message: a text with a level and an optional location. A value with copy-on-write: setters take the
 * address of the caller's handle and put a private copy there if the record is shared.
 *
 * The text form is the location's text, "warning" or "error" for these two levels, and the text, with a colon
 * and a blank between those that aren't empty. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

typedef QV_INT QV_MESSAGE_LEVEL;

#define QV_MESSAGE_LEVEL_DECORATIVE 0
#define QV_MESSAGE_LEVEL_NORMAL     1
#define QV_MESSAGE_LEVEL_WARNING    2
#define QV_MESSAGE_LEVEL_ERROR      3

/* True for the four levels. Evaluates its argument twice. */
#define QV_MESSAGE_LEVEL_OK( lvl )                                                                           \
    ( ( lvl ) >= QV_MESSAGE_LEVEL_DECORATIVE && ( lvl ) <= QV_MESSAGE_LEVEL_ERROR )

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_MESSAGE, qvMessage )

/* A new message. A bad level or a null text stops the process; optionalLocation may be null. The byte text is
 * UTF-8; lengths are in bytes or wide characters, -1 up to the terminator. The formatting forms make the text
 * from a format and its arguments. */
QV_API QV_MESSAGE *qvMessageCreate( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation, QV_STRING *text );
QV_API QV_MESSAGE *qvMessageCreateCstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                        const char *text, QV_INT length );
QV_API QV_MESSAGE *qvMessageCreateWcstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                         const wchar_t *text, QV_INT length );
QV_API QV_MESSAGE *qvMessageCreateFormat( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                          QV_STRING *format, ... );
QV_API QV_MESSAGE *qvMessageCreateFormatCstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                              const char *format, QV_INT formatLength, ... );
QV_API QV_MESSAGE *qvMessageCreateFormatWcstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                               const wchar_t *format, QV_INT formatLength, ... );

/* A new message with the same contents. */
QV_API QV_MESSAGE *qvMessageCreateFrom( QV_MESSAGE *msg );

QV_API QV_MESSAGE_LEVEL qvMessageLevel( QV_MESSAGE *msg );
QV_API void qvMessageSetLevel( QV_MESSAGE **msg, QV_MESSAGE_LEVEL level );

/* The location, owned by the caller, or null for none. */
QV_API QV_LOCATION *qvMessageLocation( QV_MESSAGE *msg );
QV_API QV_BOOL qvMessageHasLocation( QV_MESSAGE *msg );
QV_API void qvMessageSetLocation( QV_MESSAGE **msg, QV_LOCATION *loc );
QV_API void qvMessageDelLocation( QV_MESSAGE **msg );

/* The text, owned by the caller, never null. */
QV_API QV_STRING *qvMessageText( QV_MESSAGE *msg );
QV_API void qvMessageSetText( QV_MESSAGE **msg, QV_STRING *text );

/* The level of a name such as "QV_MESSAGE_LEVEL_ERROR" or of its number, or -1. */
QV_API QV_MESSAGE_LEVEL qvMessageLevelFromString( QV_STRING *text );

/* The name of a level, owned by the caller. A bad level stops the process. */
QV_API QV_STRING *qvMessageLevelToString( QV_MESSAGE_LEVEL lvl );

QV_END_DECLS

#endif
