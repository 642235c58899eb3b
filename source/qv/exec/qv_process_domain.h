#ifndef QV_EXEC_QV_PROCESS_DOMAIN_H
#define QV_EXEC_QV_PROCESS_DOMAIN_H

/* Process domains: fixed pools of 1 to 128 threads of one priority on which processes run. Each process is tied to one
 * thread of its domain. A domain lives until its last reference goes, of which each of its processes holds one; that
 * release waits for the domain's threads to end, so it must come from the thread that started the runtime or from a thread
 * of the library. Null handles stop the process. */

#include <qv/exec/qv_process_domain_options.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_DOMAIN, qvProcessDomain )

/* A new domain, owned by the caller; null if a thread can't be started. What the options don't have is 1 thread of
 * QV_THREAD_PRIORITY_NORMAL without trail optimization and statistics. A name that fails qvNameUpperCaseOk( name, QV_TRUE )
 * stops the process. */
QV_API QV_PROCESS_DOMAIN *qvProcessDomainTryCreate( QV_PROCESS_DOMAIN_OPTIONS *options, QV_STRING *name );

/* The same with what stands for absent options. The number of threads, at least 1, is cut to 128. */
QV_API QV_PROCESS_DOMAIN *qvProcessDomainTryCreateWithFallback( QV_PROCESS_DOMAIN_OPTIONS *options,
                                                                QV_STRING *name, QV_INT fallbackThreadCount,
                                                                QV_THREAD_PRIORITY fallbackThreadPriority,
                                                                QV_BOOL fallbackTrailOptimization,
                                                                QV_BOOL fallbackMaintainStatistics );

/* The options as given and the name, owned by the caller. */
QV_API QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptions( QV_PROCESS_DOMAIN *domain );
QV_API QV_STRING *qvProcessDomainName( QV_PROCESS_DOMAIN *domain );

/* The settings in use. */
QV_API QV_INT qvProcessDomainThreadCount( QV_PROCESS_DOMAIN *domain );
QV_API QV_THREAD_PRIORITY qvProcessDomainThreadPriority( QV_PROCESS_DOMAIN *domain );
QV_API QV_BOOL qvProcessDomainTrailOptimization( QV_PROCESS_DOMAIN *domain );
QV_API QV_BOOL qvProcessDomainMaintainStatistics( QV_PROCESS_DOMAIN *domain );

QV_END_DECLS

#endif
