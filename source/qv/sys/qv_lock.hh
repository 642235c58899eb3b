#ifndef QV_SYS_QV_LOCK_HH
#define QV_SYS_QV_LOCK_HH

// A plain platform mutex, stored by value inside the record that it guards: not recursive, acquired and released by the
// same thread, no timed form. A failing call stops the process.

#include <pthread.h>

struct qv___Lock
{
    pthread_mutex_t mutex;
};

void qv___LockInitialize( qv___Lock *lock );
void qv___LockFinalize( qv___Lock *lock );
void qv___LockAcquire( qv___Lock *lock );
void qv___LockRelease( qv___Lock *lock );

#endif
