#ifndef QV_SYS_QV_FETCH_HH
#define QV_SYS_QV_FETCH_HH

// Asking for memory ahead of its use. Large trees don't fit the caches, and their records stand where nothing but the tree
// itself tells.
//
// To the compiler a prefetch has no effect, so it drops the calls of functions that do nothing else. The empty statement
// keeps them.

namespace qv
{

// Asks for the cache line at an address, which may be any.
[[gnu::always_inline]] inline void fetch( const void *address )
{
    __builtin_prefetch( address );
    asm volatile( "" );
}

// The same for a line that is about to be written.
[[gnu::always_inline]] inline void fetchToWrite( const void *address )
{
    __builtin_prefetch( address, 1 );
    asm volatile( "" );
}

} // namespace qv

#endif
