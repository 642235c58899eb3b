#ifndef QV_RUNTIME_QV_RUNTIME_HARDWARE_HH
#define QV_RUNTIME_QV_RUNTIME_HARDWARE_HH

#include <qv/runtime/qv_runtime_hardware.h>

// The friendly name as a constant text, which needs no running library.
const char *qv___RuntimeHardwareFriendlyNameCstr( QV_RUNTIME_HARDWARE hw );

void qv___RuntimeHardwareStartup();
void qv___RuntimeHardwareShutdown();

#endif
