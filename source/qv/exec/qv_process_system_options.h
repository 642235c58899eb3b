#ifndef QV_EXEC_QV_PROCESS_SYSTEM_OPTIONS_H
#define QV_EXEC_QV_PROCESS_SYSTEM_OPTIONS_H

/* The options of the default domains, which the start of the runtime reads from the file "qv_process.jnstore" in the data
 * directory. Copy-on-write: functions that edit take the address of the caller's handle. Null handles stop the process. */

#include <qv/exec/qv_process_domain_options.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PROCESS_SYSTEM_OPTIONS, qvProcessSystemOptions )

/* New options of which all three members are empty, or a copy; owned by the caller. */
QV_API QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsCreate( void );
QV_API QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsCreateFrom( QV_PROCESS_SYSTEM_OPTIONS *source );

/* The options of a tool's one domain and of a server's two; never null. The readers hand over a reference. */
QV_API QV_PROCESS_DOMAIN_OPTIONS *
qvProcessSystemOptionsToolDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options );
QV_API void qvProcessSystemOptionsToolSetDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                        QV_PROCESS_DOMAIN_OPTIONS *domainOptions );
QV_API QV_PROCESS_DOMAIN_OPTIONS *
qvProcessSystemOptionsServerLowPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options );
QV_API void
qvProcessSystemOptionsServerSetLowPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                         QV_PROCESS_DOMAIN_OPTIONS *domainOptions );
QV_API QV_PROCESS_DOMAIN_OPTIONS *
qvProcessSystemOptionsServerHighPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS *options );
QV_API void
qvProcessSystemOptionsServerSetHighPriorityDomainOptions( QV_PROCESS_SYSTEM_OPTIONS **options,
                                                          QV_PROCESS_DOMAIN_OPTIONS *domainOptions );

/* The options as a new store with the keys "toolDomainOptions", "serverLowPriorityDomainOptions" and
 * "serverHighPriorityDomainOptions"; empty ones are left out. */
QV_API QV_STORE *qvProcessSystemOptionsStore( QV_PROCESS_SYSTEM_OPTIONS *options );

/* New options from a store. What is absent or can't be used stays empty. */
QV_API QV_PROCESS_SYSTEM_OPTIONS *qvProcessSystemOptionsRestore( QV_STORE *store );

QV_END_DECLS

#endif
