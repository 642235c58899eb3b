#ifndef QV_BASE_QV_RANDOM_HH
#define QV_BASE_QV_RANDOM_HH

#include <qv/base/qv_random.h>
#include <qv/runtime/qv_obj.hh>

// Refills the pool, which is empty. The caller holds qv___RandomMonitor.
void qv___RandomFillBuffer();

void qv___RandomStartup();
void qv___RandomShutdown();

#endif
