#ifndef QV_EXEC_QV_PROCESS_SYSTEM_OPTIONS_HH
#define QV_EXEC_QV_PROCESS_SYSTEM_OPTIONS_HH

#include <qv/exec/qv_process_system_options.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: no member is null.
struct qv___ProcessSystemOptions : qv___Obj
{
    QV_PROCESS_DOMAIN_OPTIONS *toolDomainOptions;
    QV_PROCESS_DOMAIN_OPTIONS *serverLowPriorityDomainOptions;
    QV_PROCESS_DOMAIN_OPTIONS *serverHighPriorityDomainOptions;
};

#endif
