#ifndef QV_TEST_RUNTIME_HEAP_HH
#define QV_TEST_RUNTIME_HEAP_HH

// The platform's allocator as this program's tests see it: how many blocks are alive, and an allocator that is broken.
// Sanitizers bring their own; then nothing is counted and nothing breaks.

#include <cstddef>

#if defined( __SANITIZE_ADDRESS__ ) || defined( __SANITIZE_THREAD__ )
#define QV_TEST_OWN_HEAP 0
#else
#define QV_TEST_OWN_HEAP 1
#endif

namespace test
{

enum class HeapFault
{
    none,
    hangs,           // as if a thread that never goes on held the allocator's lock
    faultsThenHangs, // breaks inside the allocator, whose lock is held from then on
    faultsEveryTime,
};

// In child processes only: what the next allocation of this thread does.
void breakHeap( HeapFault fault );

// Blocks that are alive.
long liveBlocks();

} // namespace test

#endif
