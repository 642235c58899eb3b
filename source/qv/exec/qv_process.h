#ifndef QV_EXEC_QV_PROCESS_H
#define QV_EXEC_QV_PROCESS_H

/* Processes: functions with a closure that a scheduler calls on a thread of the process's domain after something has asked
 * for it. A process function never blocks: it does a slice of work, returns, and is called again after the next request.
 * Any number of requests before a call give one call; one during a call gives one more. Of one process, never two calls
 * run at the same time.
 *
 * Processes compare by identity. All must be released before the end of the runtime. Null handles stop the process. */

#include <qv/exec/qv_process_priority.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* The process function; the closure is borrowed, and null if the process has none. */
typedef void ( *QV_PROCESS_FUNC )( qvObj closure );

QV_SORT_FUNCTIONS( QV_PROCESS, qvProcess )

/* A new process on the default domain for the priority (an unknown one counts as low) or on a given domain, owned by the
 * caller. It doesn't run before the first qvProcessSchedule. A null function and a name that fails
 * qvNameOk( name, QV_TRUE ) stop the process. closure may be null; the process keeps it until its end, and releases it on
 * one of the domain's threads then. Processes of one name are a family in the statistics. */
QV_API QV_PROCESS *qvProcessCreate( QV_PROCESS_PRIORITY priority, QV_PROCESS_FUNC func, qvObj closure,
                                    QV_STRING *name );
QV_API QV_PROCESS *qvProcessCreateWithDomain( QV_PROCESS_DOMAIN *domain, QV_PROCESS_FUNC func, qvObj closure,
                                              QV_STRING *name );

/* The domain, the name and the identifier, owned by the caller. */
QV_API QV_PROCESS_DOMAIN *qvProcessDomain( QV_PROCESS *process );
QV_API QV_STRING *qvProcessName( QV_PROCESS *process );
QV_API QV_IDENTIFIER *qvProcessIdentifier( QV_PROCESS *process );

/* Asks for a call of the process function, from any thread and at any time; after the end it has no effect. */
QV_API void qvProcessSchedule( QV_PROCESS *process );

/* Ends the process: after a call that is under way the function isn't called again, the closure is released and the end
 * signal asserted, all on a thread of the domain. Returns at once. */
QV_API void qvProcessHalt( QV_PROCESS *process );

/* True from the halt on, so that a long call can look for it. */
QV_API QV_BOOL qvProcessHalted( QV_PROCESS *process );

/* True once the process has ended. A process that is released without a halt never ends. */
QV_API QV_BOOL qvProcessEnd( QV_PROCESS *process );

/* Attaches a target to the end, which fires it at once if the process has ended, and detaches it. */
QV_API void qvProcessEndAddSignalable( QV_PROCESS *process, QV_SIGNALABLE *sigb );
QV_API void qvProcessEndDelSignalable( QV_PROCESS *process, QV_SIGNALABLE *sigb );

QV_END_DECLS

#endif
