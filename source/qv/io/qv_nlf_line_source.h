#ifndef QV_IO_QV_NLF_LINE_SOURCE_H
#define QV_IO_QV_NLF_LINE_SOURCE_H

/* Reads lines from a character source, cut at the new-lines of a set of flags. */

#include <qv/io/qv_nlf_flags.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_NLF_LINE_SOURCE, qvNlfLineSource )

/* A new object on src, which it retains. Code points are read ahead, so that the character source is of no
 * use to others from the first line on. The flags are normalized. */
QV_API QV_NLF_LINE_SOURCE *qvNlfLineSourceCreate( QV_CHAR_SOURCE *src, QV_NLF_FLAGS nlfFlags );

/* The same on the code points of a string, which it retains. */
QV_API QV_NLF_LINE_SOURCE *qvNlfLineSourceCreateFromString( QV_STRING *string, QV_NLF_FLAGS nlfFlags );

/* A new line source, owned by the caller, that reads on from the shared position. Text that ends without a
 * new-line ends with a line; behind a last new-line stands no further line. A line has no upper length. */
QV_API QV_LINE_SOURCE *qvNlfLineSourceLineSource( QV_NLF_LINE_SOURCE *nls );

/* The normalized flags. */
QV_API QV_NLF_FLAGS qvNlfLineSourceNlfFlags( QV_NLF_LINE_SOURCE *nls );

QV_END_DECLS

#endif
