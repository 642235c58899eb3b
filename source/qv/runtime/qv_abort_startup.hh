#ifndef QV_RUNTIME_QV_ABORT_STARTUP_HH
#define QV_RUNTIME_QV_ABORT_STARTUP_HH

// What the crash report (sys/qv_abort.hh) needs from a running library: the name of its file, handlers for the fatal
// signals, and a stack for them on the thread that starts the runtime. Other threads of the library make their own.

void qv___AbortStartup();

// On the thread of the startup; on another one the first keeps its stack for signals.
void qv___AbortShutdown();

#endif
