#ifndef QV_IO_QV_STRING_CHAR_SOURCE_H
#define QV_IO_QV_STRING_CHAR_SOURCE_H

/* Delivers the code points of a string through its character sources, which share one position. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STRING_CHAR_SOURCE, qvStringCharSource )

/* A new object at the start of the string, which it retains. */
QV_API QV_STRING_CHAR_SOURCE *qvStringCharSourceCreate( QV_STRING *src );

/* A new character source, owned by the caller, that reads on from the shared position. */
QV_API QV_CHAR_SOURCE *qvStringCharSourceCharSource( QV_STRING_CHAR_SOURCE *scs );

/* The whole string, retained for the caller. */
QV_API QV_STRING *qvStringCharSourceString( QV_STRING_CHAR_SOURCE *scs );

QV_END_DECLS

#endif
