#ifndef QV_IO_QV_BYTE_SOURCE_H
#define QV_IO_QV_BYTE_SOURCE_H

/* A source of bytes. It has ended once a read came back short, and failed once a read reported an error; a
 * failed source has also ended, and neither state is ever left. One source is for one thread at a time.
 *
 * A maximum is a number of bytes, at least -1; -1 means no limit. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BYTE_SOURCE, qvByteSource )

/* Appends up to maxByteCount bytes to *dest, which must not be null, until the maximum is reached or the
 * source has ended. Returns the number of bytes appended, those before a failure included; 0 on a source that
 * has ended. */
QV_API QV_INT qvByteSourceRead( QV_BYTE_SOURCE *src, QV_BUFFER **dest, QV_INT maxByteCount );

/* Reads up to maxByteCount bytes into memory with one call of the source's read function, also on a source
 * that has ended. With -1 the memory must hold all that the source can deliver. bytes may be null if
 * maxByteCount is 0. Returns the number of bytes read. */
QV_API QV_INT qvByteSourceReadBytes( QV_BYTE_SOURCE *src, unsigned char *bytes, QV_INT maxByteCount );

/* Discards up to maxByteCount bytes. Returns the number of bytes skipped; 0 on a source that has ended. */
QV_API QV_INT qvByteSourceSkip( QV_BYTE_SOURCE *src, QV_INT maxByteCount );

/* True once a read or skip came back short or failed. */
QV_API QV_BOOL qvByteSourceEnd( QV_BYTE_SOURCE *src );

/* True once a read or skip has failed. */
QV_API QV_BOOL qvByteSourceError( QV_BYTE_SOURCE *src );

QV_END_DECLS

#endif
