#ifndef QV_EXEC_QV_PROCESS_PRIORITY_HH
#define QV_EXEC_QV_PROCESS_PRIORITY_HH

#include <qv/exec/qv_process_priority.h>

// The names of the priorities.
extern QV_ENUM *qv___ProcessPriorityEnum;

void qv___ProcessPriorityStartup();
void qv___ProcessPriorityShutdown();

#endif
