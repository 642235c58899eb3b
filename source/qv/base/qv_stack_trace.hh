#ifndef QV_BASE_QV_STACK_TRACE_HH
#define QV_BASE_QV_STACK_TRACE_HH

#include <qv/base/qv_stack_trace.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: symbols is null exactly if symbolsLength is 0.
struct qv___StackTrace : qv___Obj
{
    char **symbols; // from backtrace_symbols, so it goes back through the platform's free
    QV_INT symbolsLength;
};

// There is nothing to prepare on Linux; the pair keeps the component's place.
void qv___StackTraceStartup();
void qv___StackTraceShutdown();

// Called after every load of a module, for platforms that must refresh symbol tables.
void qv___StackTraceUpdateSymbols();

#endif
