#ifndef QV_SYS_QV_RECORD_POOL_HH
#define QV_SYS_QV_RECORD_POOL_HH

// Blocks for the records of objects. Records are large, few sizes cover them all, and most operations on values make or
// drop one, so they come from slabs of equal blocks, with a small stock of each size in every thread. A block may be
// given back on any thread.
//
// The pool rests in checked and sanitizer builds and with QV_RUNTIME_FLAG_MEMORY_DEBUG, so that their tools see every
// record: the blocks then come from the memory layer one by one.

#include <qv/sys/qv_types.h>

void qv___RecordPoolStartup();
void qv___RecordPoolShutdown();

// Gives back what the thread has at hand, for a thread that the end of the runtime doesn't wait for any longer: no record
// may be made or dropped on it from here on.
void qv___RecordPoolLeave();

namespace qv
{

// A block of size bytes, above 0, contents undefined.
void *recordAlloc( QV_INT size );

// Gives a block back; size as it was asked for.
void recordFree( void *record, QV_INT size );

// Bytes that the pool holds from the system, for tests.
QV_INT recordPoolSize();

} // namespace qv

#endif
