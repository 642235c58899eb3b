#ifndef QV_SYS_QV_ABORT_WATCH_HH
#define QV_SYS_QV_ABORT_WATCH_HH

// Watches over threads that write a crash report. The report calls the platform's streams, its allocator and its dynamic
// linker, any of which may be what broke, or be locked by a thread that will never go on. So a report has a second and a
// half; then the thread is taken out of whatever it waits for. What does the rest has as long again; then the process
// ends. A busy machine leaves it some time more: within five seconds it has ended.

#include <signal.h>

#include <qv/sys/qv_types.h>

namespace qv
{

// How a thread is writing its report.
enum class CrashMode : sig_atomic_t
{
    whole, // as it should be
    plain, // by system calls alone, since the first mode faulted or hung
};

struct CrashWatch
{
    volatile CrashMode mode;
    QV_INT start; // milliseconds
    // Carries on in plain mode, above the frames of what faulted or hung, and never returns.
    void ( *carryOn )( CrashWatch *watch );
};

// Enters the calling thread, which must not be watched yet. From here on it takes the five fatal signals and the watch's
// own, and no others: neither a broken pipe nor a file size limit may end the process before the report has.
void crashWatchEnter( CrashWatch *watch );

// The calling thread's watch, null if it isn't writing a report.
CrashWatch *crashWatchOfThread();

// The report has faulted or hung: carries on in plain mode, or ends the process if that was the mode already.
[[noreturn]] void crashWatchTrouble( CrashWatch *watch );

// Sets SIGABRT to its default action and calls abort().
[[noreturn]] void crashEnd();

} // namespace qv

#endif
