#ifndef QV_BASE_QV_COUNTER_H
#define QV_BASE_QV_COUNTER_H

/* Counters: a count of 0 or more that threads can wait for to become 0. All functions are safe from any
 * thread. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_COUNTER, qvCounter )

/* A new counter with the value 0. */
QV_API QV_COUNTER *qvCounterCreate( void );

QV_API QV_INT qvCounterValue( QV_COUNTER *ctr );

/* Adds 1. A value of QV_INT_MAX stops the process. */
QV_API void qvCounterIncrement( QV_COUNTER *ctr );

/* Subtracts 1; reaching 0 wakes all who wait. A value of 0 stops the process. */
QV_API void qvCounterDecrement( QV_COUNTER *ctr );

/* Returns once the value is 0. */
QV_API void qvCounterWaitZero( QV_COUNTER *ctr );

/* The same for at most timeout milliseconds, -1 without a limit. True if the value was 0, else false. */
QV_API QV_BOOL qvCounterWaitZeroTimed( QV_COUNTER *ctr, QV_INT timeout );

QV_END_DECLS

#endif
