#ifndef QV_BASE_QV_BOXED_REAL_H
#define QV_BASE_QV_BOXED_REAL_H

/* Reals as objects, for vectors and dictionaries. Ordered by qvRealCompare, which takes two values within
 * machine epsilon of each other as equal; never changed. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BOXED_REAL, qvBoxedReal )

/* A new object. */
QV_API QV_BOXED_REAL *qvBoxedRealCreate( double value );

QV_API double qvBoxedRealValue( QV_BOXED_REAL *br );

QV_END_DECLS

#endif
