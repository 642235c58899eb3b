#ifndef QV_SYS_QV_UNIQUE_HH
#define QV_SYS_QV_UNIQUE_HH

// Tokens: small non-negative integers, each unique among the tokens taken at one moment and reused once given back.

#include <qv/sys/qv_types.h>

#define QV___UNIQUE_INVALID ( -1 )
#define QV___UNIQUE_MAX     QV_INT_MAX

QV_INT qv___UniqueGet();
void qv___UniquePut( QV_INT uni );

void qv___UniqueStartup();
void qv___UniqueShutdown();

#endif
