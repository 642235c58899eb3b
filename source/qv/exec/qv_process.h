#ifndef QV_EXEC_QV_PROCESS_H
#define QV_EXEC_QV_PROCESS_H

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* Asks for a run of the process. */
QV_API void qvProcessSchedule( QV_PROCESS *process );

QV_END_DECLS

#endif
