#ifndef QV_IO_QV_NLF_LINE_SINK_H
#define QV_IO_QV_NLF_LINE_SINK_H

/* Writes lines to a character sink, each followed by a new-line. */

#include <qv/io/qv_nlf_flags.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_NLF_LINE_SINK, qvNlfLineSink )

/* A new object on dest, which it retains. A line gets the new-line that qvNlfFlagsNlfString names, none if no
 * flag is set. The flags are normalized. */
QV_API QV_NLF_LINE_SINK *qvNlfLineSinkCreate( QV_CHAR_SINK *dest, QV_NLF_FLAGS nlfFlags );

/* A new line sink, owned by the caller, that writes to the character sink; flushing it flushes the character
 * sink. */
QV_API QV_LINE_SINK *qvNlfLineSinkLineSink( QV_NLF_LINE_SINK *nls );

/* The normalized flags. */
QV_API QV_NLF_FLAGS qvNlfLineSinkNlfFlags( QV_NLF_LINE_SINK *nls );

QV_END_DECLS

#endif
