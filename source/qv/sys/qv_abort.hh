#ifndef QV_SYS_QV_ABORT_HH
#define QV_SYS_QV_ABORT_HH

// The way out of a process that can't go on: a report to standard error and to a file, then abort(). It is reached from
// qv___Abort and from the handler of the fatal signals, on any thread and in any state of the process.

#include <signal.h>

#include <qv/sys/qv_abort.h>

// The full path of the crash file, null if there is to be none. Worked out at startup, so that nothing has to allocate or
// format when the crash comes.
extern char *qv___AbortFilename;

// info is null unless a signal is the cause. A second call on one thread means that the report itself has failed.
[[noreturn, gnu::cold]] void qv___DoAbort( const char *message, const char *file, int line,
                                           const char *expression, const siginfo_t *info );

// The handler of the fatal signals.
[[noreturn, gnu::cold]] void qv___AbortSignalAction( int signum, siginfo_t *info, void *context );

namespace qv
{

struct ReportOut;

// Writes the sections PRODUCT and APPLICATION. The layer of the runtime has it, which knows these things; it reads plain
// strings only.
void reportIdentity( const ReportOut &out );

} // namespace qv

#endif
