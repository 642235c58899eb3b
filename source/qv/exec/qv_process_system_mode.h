#ifndef QV_EXEC_QV_PROCESS_SYSTEM_MODE_H
#define QV_EXEC_QV_PROCESS_SYSTEM_MODE_H

/* The modes of the process system: one domain with one thread for a tool, two domains with a thread for each processor for
 * a server. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_PROCESS_SYSTEM_MODE;
#define QV_PROCESS_SYSTEM_MODE_TOOL   0
#define QV_PROCESS_SYSTEM_MODE_SERVER 1

QV_BEGIN_DECLS

/* The mode that a text names, or that it gives as a number; -1 for everything else. */
QV_API QV_PROCESS_SYSTEM_MODE qvProcessSystemModeFromString( QV_STRING *text );

/* The name of a mode, owned by the caller. A mode that isn't one stops the process. */
QV_API QV_STRING *qvProcessSystemModeToString( QV_PROCESS_SYSTEM_MODE mode );

QV_END_DECLS

#endif
