#ifndef QV_EXEC_QV_THREAD_PRIORITY_HH
#define QV_EXEC_QV_THREAD_PRIORITY_HH

#include <qv/exec/qv_thread_priority.h>

// The names of the priorities.
extern QV_ENUM *qv___ThreadPriorityEnum;

void qv___ThreadPriorityStartup();
void qv___ThreadPriorityShutdown();

#endif
