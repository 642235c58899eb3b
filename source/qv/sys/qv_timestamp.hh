#ifndef QV_SYS_QV_TIMESTAMP_HH
#define QV_SYS_QV_TIMESTAMP_HH

#include <qv/sys/qv_timestamp.h>

// Milliseconds of the platform's monotonic clock, above 0.
QV_INT qv___Timestamp();

// Nanoseconds of the same clock.
QV_INT qv___Nanoseconds();

void qv___TimestampStartup();
void qv___TimestampShutdown();

#endif
