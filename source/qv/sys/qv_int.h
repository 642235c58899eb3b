#ifndef QV_SYS_QV_INT_H
#define QV_SYS_QV_INT_H

/* Integer helpers without state: order, ranges, checked and saturating arithmetic, single bits. Bits count from 0, the
 * least significant, to 63. */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* Swaps the two so that *a <= *b. */
QV_API void qvIntSortPair( QV_INT *a, QV_INT *b );
QV_API void qvIntExchange( QV_INT *a, QV_INT *b );

QV_API QV_INT qvIntMin( QV_INT a, QV_INT b );
QV_API QV_INT qvIntMax( QV_INT a, QV_INT b );

/* The value clamped to the range between a and b; the bounds come in either order. */
QV_API QV_INT qvIntConstrain( QV_INT value, QV_INT a, QV_INT b );

/* The midpoint, with no overflow on the way; a and b come in either order. A half rounds down if both are at least 0,
 * otherwise up. */
QV_API QV_INT qvIntMid( QV_INT a, QV_INT b );

/* True if the result of the operation is a QV_INT. Division by 0 isn't. */
QV_API QV_BOOL qvIntAddOk( QV_INT a, QV_INT b );
QV_API QV_BOOL qvIntSubOk( QV_INT a, QV_INT b );
QV_API QV_BOOL qvIntMulOk( QV_INT a, QV_INT b );
QV_API QV_BOOL qvIntDivOk( QV_INT a, QV_INT b );

/* The absolute value; that of the smallest value doesn't exist and stops the process. */
QV_API QV_INT qvIntAbs( QV_INT value );

/* The exact result, or the nearer of the smallest and largest value. Division truncates; dividing by 0 stops the
 * process. */
QV_API QV_INT qvIntAbsSaturating( QV_INT value );
QV_API QV_INT qvIntAddSaturating( QV_INT a, QV_INT b );
QV_API QV_INT qvIntSubSaturating( QV_INT a, QV_INT b );
QV_API QV_INT qvIntMulSaturating( QV_INT a, QV_INT b );
QV_API QV_INT qvIntDivSaturating( QV_INT a, QV_INT b );

/* One bit; a bit outside 0..63 stops the process. */
QV_API QV_BOOL qvIntBitIsSet( QV_INT value, QV_INT bit );
QV_API QV_INT qvIntBitSet( QV_INT value, QV_INT bit );
QV_API QV_INT qvIntBitClear( QV_INT value, QV_INT bit );

/* The bits a to b, both included, bounds in either order; a bit outside 0..63 stops the process. */
QV_API QV_INT qvIntBitSetRange( QV_INT value, QV_INT a, QV_INT b );
QV_API QV_INT qvIntBitClearRange( QV_INT value, QV_INT a, QV_INT b );

/* The given number, 0 to 64, of the most or least significant bits. */
QV_API QV_INT qvIntBitSetHighest( QV_INT value, QV_INT highest );
QV_API QV_INT qvIntBitClearHighest( QV_INT value, QV_INT highest );
QV_API QV_INT qvIntBitSetLowest( QV_INT value, QV_INT lowest );
QV_API QV_INT qvIntBitClearLowest( QV_INT value, QV_INT lowest );

/* Number of the highest or lowest set bit, -1 if none is set. */
QV_API QV_INT qvIntBitHighest( QV_INT value );
QV_API QV_INT qvIntBitLowest( QV_INT value );

/* Number of set bits. */
QV_API QV_INT qvIntBitCount( QV_INT value );

QV_END_DECLS

#endif
