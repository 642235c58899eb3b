#ifndef QV_BASE_QV_STACK_TRACE_H
#define QV_BASE_QV_STACK_TRACE_H

/* Stack traces: the platform's text lines for the frames of a call stack, innermost first. A null trace stops the
 * process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STACK_TRACE, qvStackTrace )

/* A new trace of the caller. skip (at least 0) counts frames to leave out at the top, besides that of this function;
 * maxLength is the largest number of lines, -1 for no limit. At most 4000 frames are looked at. The caller owns it; smaller
 * values of skip and maxLength stop the process. */
QV_API QV_STACK_TRACE *qvStackTraceCreate( QV_INT skip, QV_INT maxLength );

/* The number of lines. */
QV_API QV_INT qvStackTraceLength( QV_STACK_TRACE *st );

/* Line idx, 0 to length - 1, as a new string; all lines as a new vector of strings. The caller owns them. An idx outside
 * stops the process. */
QV_API QV_STRING *qvStackTraceAt( QV_STACK_TRACE *st, QV_INT idx );
QV_API QV_VECTOR *qvStackTraceVector( QV_STACK_TRACE *st );

/* Prints each line through the runtime's print function. */
QV_API void qvStackTracePrint( QV_STACK_TRACE *st );

QV_END_DECLS

#endif
