#ifndef QV_BASE_QV_BOXED_BOOL_H
#define QV_BASE_QV_BOXED_BOOL_H

/* Truth values as objects, for vectors and dictionaries. There are only two of them; false comes first. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BOXED_BOOL, qvBoxedBool )

/* The shared object of the value, with a reference for the caller. Any value but 0 is true. */
QV_API QV_BOXED_BOOL *qvBoxedBoolCreate( QV_BOOL value );

QV_API QV_BOOL qvBoxedBoolValue( QV_BOXED_BOOL *bbl );

QV_END_DECLS

#endif
