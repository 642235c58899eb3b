#include "heap.hh"

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace
{

std::atomic<long> blocks = 0;
thread_local volatile test::HeapFault heapFault = test::HeapFault::none;

} // namespace

void test::breakHeap( HeapFault fault )
{
    heapFault = fault;
}

long test::liveBlocks()
{
    return blocks;
}

#if QV_TEST_OWN_HEAP

extern "C" {
void *__libc_malloc( size_t size );
void *__libc_calloc( size_t count, size_t size );
void *__libc_realloc( void *block, size_t size );
void __libc_free( void *block );

void *malloc( size_t size )
{
    if ( heapFault == test::HeapFault::faultsThenHangs || heapFault == test::HeapFault::faultsEveryTime )
    {
        if ( heapFault == test::HeapFault::faultsThenHangs )
            heapFault = test::HeapFault::hangs;
        raise( SIGSEGV );
    }
    while ( heapFault == test::HeapFault::hangs )
        pause();
    blocks++;
    return __libc_malloc( size );
}

void *calloc( size_t count, size_t size )
{
    blocks++;
    return __libc_calloc( count, size );
}

void *realloc( void *block, size_t size )
{
    blocks += block ? 0 : 1;
    return __libc_realloc( block, size );
}

void free( void *block )
{
    blocks -= block ? 1 : 0;
    __libc_free( block );
}
}

#endif
