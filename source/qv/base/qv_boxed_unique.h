#ifndef QV_BASE_QV_BOXED_UNIQUE_H
#define QV_BASE_QV_BOXED_UNIQUE_H

/* Objects without content that differ from every other object. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BOXED_UNIQUE, qvBoxedUnique )

/* A new object. */
QV_API QV_BOXED_UNIQUE *qvBoxedUniqueCreate( void );

QV_END_DECLS

#endif
