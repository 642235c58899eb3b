#ifndef QV_SYS_QV_REAL_H
#define QV_SYS_QV_REAL_H

/* Helpers for reals (IEEE 754 doubles). */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* False for infinities and NaN. */
QV_API QV_BOOL qvRealIsFinite( double r );
QV_API QV_BOOL qvRealIsNan( double r );
/* True for a number: neither NaN nor infinite. */
QV_API QV_BOOL qvRealOk( double r );

/* True if the two differ by at most the machine epsilon 2.220446049250313e-16. The tolerance is absolute: it isn't scaled
 * by the operands. */
QV_API QV_BOOL qvRealEquals( double a, double b );
/* 0 if the two are equal in that sense, else -1 if a is smaller, else 1 (so a NaN operand gives 1). */
QV_API QV_INT qvRealCompare( double a, double b );
QV_API QV_BOOL qvRealEqualsInt( double r, QV_INT i );
QV_API QV_INT qvRealCompareInt( double r, QV_INT i );

/* Rounds toward zero. */
QV_API double qvRealTrunc( double r );
/* Rounds toward zero; beyond the range of QV_INT the nearer bound. The result for a NaN is unspecified: ask qvRealOk. */
QV_API QV_INT qvRealToInt( double r );

QV_END_DECLS

#endif
