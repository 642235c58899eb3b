#ifndef QV_RUNTIME_QV_RUNTIME_OS_HH
#define QV_RUNTIME_QV_RUNTIME_OS_HH

#include <qv/runtime/qv_runtime_os.h>

// The friendly name as a constant text, which needs no running library.
const char *qv___RuntimeOsFriendlyNameCstr( QV_RUNTIME_OS os );

void qv___RuntimeOsStartup();
void qv___RuntimeOsShutdown();

#endif
