#ifndef QV_IO_QV_CHAR_SOURCE_H
#define QV_IO_QV_CHAR_SOURCE_H

/* A source of code points. It has ended once a read came back short, and failed once a read reported an
 * error; a failed source has also ended, and neither state is ever left. One source is for one thread at a
 * time.
 *
 * A maximum is a number of code points, at least -1; -1 means no limit. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_CHAR_SOURCE, qvCharSource )

/* Appends up to maxCharCount code points to *dest, which must not be null, until the maximum is reached or
 * the source has ended. Returns the number appended, those before a failure included; 0 on a source that has
 * ended. */
QV_API QV_INT qvCharSourceRead( QV_CHAR_SOURCE *src, QV_STRING **dest, QV_INT maxCharCount );

/* Reads up to maxCharCount code points into memory with one call of the source's read function, also on a
 * source that has ended and for a maximum of 0. With -1 the memory must hold all that the source can deliver.
 * chars may be null if maxCharCount is 0. Returns the number of code points read. */
QV_API QV_INT qvCharSourceReadChars( QV_CHAR_SOURCE *src, QV_CHAR *chars, QV_INT maxCharCount );

/* True once a read came back short or failed. */
QV_API QV_BOOL qvCharSourceEnd( QV_CHAR_SOURCE *src );

/* True once a read has failed. */
QV_API QV_BOOL qvCharSourceError( QV_CHAR_SOURCE *src );

QV_END_DECLS

#endif
