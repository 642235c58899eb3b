#ifndef QV_EXEC_QV_PROCESS_DOMAIN_OPTIONS_H
#define QV_EXEC_QV_PROCESS_DOMAIN_OPTIONS_H

/* The options of a process domain, all of them optional. Copy-on-write: functions that edit take the address of the
 * caller's handle. Null handles stop the process. */

#include <qv/exec/qv_thread_priority.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_DOMAIN_OPTIONS, qvProcessDomainOptions )

/* New options without any member, or a copy; owned by the caller. */
QV_API QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsCreate( void );
QV_API QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsCreateFrom( QV_PROCESS_DOMAIN_OPTIONS *source );

/* The number of threads, 1 or more (a domain has at most 128); -1 if absent. */
QV_API QV_INT qvProcessDomainOptionsThreadCount( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API QV_BOOL qvProcessDomainOptionsHasThreadCount( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API void qvProcessDomainOptionsSetThreadCount( QV_PROCESS_DOMAIN_OPTIONS **options, QV_INT threadCount );
QV_API void qvProcessDomainOptionsDelThreadCount( QV_PROCESS_DOMAIN_OPTIONS **options );

/* The priority of the threads; -1 if absent. */
QV_API QV_THREAD_PRIORITY qvProcessDomainOptionsThreadPriority( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API QV_BOOL qvProcessDomainOptionsHasThreadPriority( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API void qvProcessDomainOptionsSetThreadPriority( QV_PROCESS_DOMAIN_OPTIONS **options,
                                                     QV_THREAD_PRIORITY threadPriority );
QV_API void qvProcessDomainOptionsDelThreadPriority( QV_PROCESS_DOMAIN_OPTIONS **options );

/* Whether a process that is scheduled from inside the domain runs on the thread that schedules it, before anything else
 * there; false if absent. */
QV_API QV_BOOL qvProcessDomainOptionsTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API QV_BOOL qvProcessDomainOptionsHasTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API void qvProcessDomainOptionsSetTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS **options,
                                                        QV_BOOL trailOptimization );
QV_API void qvProcessDomainOptionsDelTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS **options );

/* Whether the domain's processes count their runs; false if absent. */
QV_API QV_BOOL qvProcessDomainOptionsMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API QV_BOOL qvProcessDomainOptionsHasMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS *options );
QV_API void qvProcessDomainOptionsSetMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS **options,
                                                         QV_BOOL maintainStatistics );
QV_API void qvProcessDomainOptionsDelMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS **options );

/* The members that are present as a new store, with the keys "threadCount", "threadPriority" (its name),
 * "trailOptimization" and "maintainStatistics". */
QV_API QV_STORE *qvProcessDomainOptionsStore( QV_PROCESS_DOMAIN_OPTIONS *options );

/* New options from a store. What can't be used is passed over. */
QV_API QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsRestore( QV_STORE *store );

QV_END_DECLS

#endif
