#ifndef QV_IO_QV_STRING_CHAR_SINK_H
#define QV_IO_QV_STRING_CHAR_SINK_H

/* Collects the code points written to its character sinks in one string. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STRING_CHAR_SINK, qvStringCharSink )

/* A new collector with an empty string. */
QV_API QV_STRING_CHAR_SINK *qvStringCharSinkCreate( void );

/* A new character sink, owned by the caller, that appends to the collector's string. Any number of them may
 * be at work. */
QV_API QV_CHAR_SINK *qvStringCharSinkCharSink( QV_STRING_CHAR_SINK *scs );

/* The string collected so far, retained for the caller; later writes don't change it. */
QV_API QV_STRING *qvStringCharSinkString( QV_STRING_CHAR_SINK *scs );

QV_END_DECLS

#endif
