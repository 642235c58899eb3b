#ifndef QV_IO_QV_LINE_SOURCE_H
#define QV_IO_QV_LINE_SOURCE_H

/* A source of lines, each a string without its new-line. It has ended once a read found no line, and failed
 * once a read reported an error; a failed source has also ended, and neither state is ever left. One source
 * is for one thread at a time. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_LINE_SOURCE, qvLineSource )

/* The next line, owned by the caller; null when none is left. A last line cut short by a read error is
 * delivered, with the error set. */
QV_API QV_STRING *qvLineSourceRead( QV_LINE_SOURCE *src );

/* A new vector of the next maxLineCount lines, or of all that are left if fewer; -1 means all. A maximum
 * below -1 stops the process. */
QV_API QV_VECTOR *qvLineSourceReadLines( QV_LINE_SOURCE *src, QV_INT maxLineCount );

/* True once a read found no line or failed. */
QV_API QV_BOOL qvLineSourceEnd( QV_LINE_SOURCE *src );

/* True once a read has failed. */
QV_API QV_BOOL qvLineSourceError( QV_LINE_SOURCE *src );

/* The number of lines read; it stays at the largest integer. */
QV_API QV_INT qvLineSourceLinesRead( QV_LINE_SOURCE *src );

QV_END_DECLS

#endif
