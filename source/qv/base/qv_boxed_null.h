#ifndef QV_BASE_QV_BOXED_NULL_H
#define QV_BASE_QV_BOXED_NULL_H

/* The null as an object, for vectors and dictionaries. There is only one. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BOXED_NULL, qvBoxedNull )

/* The shared object, with a reference for the caller. */
QV_API QV_BOXED_NULL *qvBoxedNullCreate( void );

QV_END_DECLS

#endif
