#ifndef QV_BASE_QV_BOXED_INT_H
#define QV_BASE_QV_BOXED_INT_H

/* Integers as objects, for vectors and dictionaries. Ordered by value; never changed. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BOXED_INT, qvBoxedInt )

/* A new object. */
QV_API QV_BOXED_INT *qvBoxedIntCreate( QV_INT value );

QV_API QV_INT qvBoxedIntValue( QV_BOXED_INT *bi );

QV_END_DECLS

#endif
