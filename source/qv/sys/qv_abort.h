#ifndef QV_SYS_QV_ABORT_H
#define QV_SYS_QV_ABORT_H

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* The one exit for faults of the caller: writes a report to standard error and ends the process with abort().
 * message, file and expression are zero-terminated and may each be null; line counts from 1. For authors of modules. */
QV_API void qv___Abort( const char *message, const char *file, int line, const char *expression )
    __attribute__( ( noreturn, cold ) );

QV_END_DECLS

#endif
