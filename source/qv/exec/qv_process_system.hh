#ifndef QV_EXEC_QV_PROCESS_SYSTEM_HH
#define QV_EXEC_QV_PROCESS_SYSTEM_HH

// The default domains.

#include <qv/exec/qv_process_priority.h>
#include <qv/exec/qv_process_system_mode.h>

// Start the default domains with the options of the data directory, if it has any, and let go of them.
void qv___ProcessSystemStartup();
void qv___ProcessSystemShutdown();

QV_PROCESS_SYSTEM_MODE qv___ProcessSystemMode();

// The high domain for the high priority, otherwise the low one, retained. A tool has one domain for both.
QV_PROCESS_DOMAIN *qv___ProcessSystemDomainForPriority( QV_PROCESS_PRIORITY priority );

namespace qv
{

// The options in a data file, owned by the caller. Empty ones if it is missing, no data file or of another type; path may
// be null.
QV_PROCESS_SYSTEM_OPTIONS *readProcessSystemOptions( QV_PATH *path );

} // namespace qv

#endif
