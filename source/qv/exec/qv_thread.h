#ifndef QV_EXEC_QV_THREAD_H
#define QV_EXEC_QV_THREAD_H

/* Threads: each with a name, a priority, one argument object and an end signal. All are detached; the end of the runtime
 * waits for every one. Null handles stop the process. */

#include <qv/exec/qv_thread_priority.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* What a thread runs. It finds its thread with qvThreadThis and its data with qvThreadUnlatchArgument. */
typedef void ( *QV_THREAD_FUNC )( void );

/* The text form is the name; threads order by their tokens. */
QV_SORT_FUNCTIONS( QV_THREAD, qvThread )

/* Starts a thread, owned by the caller, who may release it at any time; null if the platform can start none. A name that
 * fails qvNameUpperCaseOk( name, QV_TRUE ), a priority that isn't one and a null function stop the process. argument may be
 * null. Without the right to real-time scheduling the thread runs at the platform's default priority. */
QV_API QV_THREAD *qvThreadTrySpawn( QV_STRING *name, QV_THREAD_PRIORITY prio, QV_THREAD_FUNC threadFunc,
                                    qvObj argument );

/* The calling thread, owned by the caller; null on a thread that qvThreadTrySpawn didn't start. */
QV_API QV_THREAD *qvThreadThis( void );

/* The name, owned by the caller, and the priority. */
QV_API QV_STRING *qvThreadName( QV_THREAD *thread );
QV_API QV_THREAD_PRIORITY qvThreadPriority( QV_THREAD *thread );

/* The argument, owned by the caller; null if there is none. */
QV_API qvObj qvThreadArgument( QV_THREAD *thread );

/* The same, but the thread gives up its own reference, so that it keeps nothing alive; null from the second time on. */
QV_API qvObj qvThreadUnlatchArgument( QV_THREAD *thread );

/* True once the thread function has returned. */
QV_API QV_BOOL qvThreadEnd( QV_THREAD *thread );

/* Attaches a target to the end of the thread, which fires it at once if the thread has ended, and detaches it. */
QV_API void qvThreadEndAddSignalable( QV_THREAD *thread, QV_SIGNALABLE *signalable );
QV_API void qvThreadEndDelSignalable( QV_THREAD *thread, QV_SIGNALABLE *signalable );

/* Waits until the thread has ended. Only for the thread that started the runtime and for threads of the library: on a
 * foreign thread it stops the process. */
QV_API void qvThreadJoin( QV_THREAD *thread );

QV_END_DECLS

#endif
