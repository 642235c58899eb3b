#ifndef QV_SYS_QV_MEM_HH
#define QV_SYS_QV_MEM_HH

#include <qv/sys/qv_mem.h>

void qv___MemStartup();
void qv___MemShutdown();

namespace qv
{

// A new array of elements that need no construction.
template <typename T> inline T *allocArray( QV_INT count )
{
    return static_cast<T *>( qvMemAllocN( count, sizeof( T ) ) );
}

template <typename T> inline T *reallocArray( T *array, QV_INT count )
{
    return static_cast<T *>( qvMemReallocN( array, count, sizeof( T ) ) );
}

} // namespace qv

#endif
