#ifndef QV_EXEC_QV_PROCESS_SYSTEM_MODE_HH
#define QV_EXEC_QV_PROCESS_SYSTEM_MODE_HH

#include <qv/exec/qv_process_system_mode.h>

// The names of the modes.
extern QV_ENUM *qv___ProcessSystemModeEnum;

void qv___ProcessSystemModeStartup();
void qv___ProcessSystemModeShutdown();

#endif
