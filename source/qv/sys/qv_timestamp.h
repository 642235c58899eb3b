#ifndef QV_SYS_QV_TIMESTAMP_H
#define QV_SYS_QV_TIMESTAMP_H

/* Durations between monotonic timestamps, both in milliseconds. */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* a - b if a is the later one, otherwise 0: a duration is never negative. */
QV_API QV_INT qvTimestampDiff( QV_INT a, QV_INT b );

QV_END_DECLS

#endif
