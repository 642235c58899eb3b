#include <qv/sys/qv_record_pool.hh>

#include <qv/runtime/qv_runtime.h>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_lock.hh>
#include <qv/sys/qv_mem.h>

#include <pthread.h>
#include <sys/mman.h>

#include <bit>
#include <cstddef>
#include <cstring>

// Whether the pool may work at all in this build.
#if defined( __has_feature )
#define QV___SANITIZED ( __has_feature( address_sanitizer ) || __has_feature( thread_sanitizer ) )
#else
#define QV___SANITIZED 0
#endif
#if defined( QV_CHECKED ) || defined( __SANITIZE_ADDRESS__ ) || defined( __SANITIZE_THREAD__ ) ||            \
    QV___SANITIZED
#define QV___RECORD_POOL 0
#else
#define QV___RECORD_POOL 1
#endif

namespace
{

// Block sizes are the multiples of 32 bytes up to 1024; larger records come from the memory layer.
constexpr size_t grain = 32;
constexpr size_t classCount = 32;

// Slabs of one block size each, cut from chunks that the system gives. Both stand at multiples of their sizes, so that a
// block's address tells its slab and its chunk.
constexpr size_t slabSize = 0x10000;
constexpr size_t chunkSize = 0x200000;
constexpr uint32_t slabsPerChunk = chunkSize / slabSize;
constexpr uint32_t allSlabs = ~0u >> ( 32 - slabsPerChunk );

// Unused chunks go back to the system when there are more than this and more than a quarter of all.
constexpr uint32_t keptChunks = 16;

// Chunks on small pages, which take no more memory than they are used for. Those behind them are asked to stand on huge
// pages: walking a tree of so many records costs more for translating addresses than for anything else.
constexpr uint32_t smallPageChunks = 4;

// A free block, linked through its first word.
struct Block
{
    Block *next;
};

// The head of a slab. While it has a free block, it stands in the list of its class. Which of its blocks were given back is
// told by a bit for each grain of it, set at the first one of a block. So they come out again in the order of their addresses,
// whatever the order that they came in: records that are made one after the other stand one behind the other, also in slabs
// that have been in use for long, and making and walking a tree of them costs half of what it would in a random order.
struct Slab
{
    Slab *previous;
    Slab *next;
    uint32_t blockSize; // 0 while the slab has no class
    uint32_t used;      // blocks that are out
    uint32_t fresh;     // offset of the first block that was never out
    uint32_t returned;  // blocks given back
    uint32_t firstWord; // of those in returnedBits that aren't 0, or one in front of it
    bool isListed;
    uint64_t returnedBits[slabSize / grain / 64];
    // In the first slab of a chunk only, about the chunk.
    Slab *previousChunk;
    Slab *nextChunk;
    uint32_t freeSlabs;      // a bit for each slab without a class
    uint32_t untouchedSlabs; // a bit for each slab that was never used
};

constexpr size_t slabHeadSize = 384;
static_assert( sizeof( Slab ) <= slabHeadSize );

// The blocks at hand of one thread, in the order of their classes. Registered stocks stand in a list.
struct Stock
{
    struct Shelf
    {
        Block *first; // blocks that were in use
        QV_INT count;
        // A run of blocks that weren't, so that nothing has to touch them before their records do.
        char *fresh;
        char *freshEnd;
    };

    Shelf shelves[classCount];
    Stock *previous;
    Stock *next;
    bool isRegistered;
};

// All of it is guarded by lock, but for isOn, which changes at startup and shutdown only.
struct Pool
{
    qv___Lock lock;
    Slab *chunks;
    uint32_t chunkCount;
    uint32_t unusedChunks;
    Slab *listed[classCount]; // slabs with free blocks
    Stock *stocks;
    pthread_key_t endOfThread;
    bool isOn;
};

constinit Pool pool = {};

// The thread's stock, null until its first record and at its end. No more than a pointer, since a library that a host loads
// late gets little room of this kind.
__attribute__( ( tls_model( "initial-exec" ) ) ) constinit thread_local Stock *stock = nullptr;

size_t classOf( QV_INT size )
{
    return ( static_cast<size_t>( size ) - 1 ) / grain;
}

// How many blocks move between a thread and the slabs at once: some 8 KiB.
QV_INT batchOf( size_t index )
{
    size_t count = 8192 / ( ( index + 1 ) * grain );
    return static_cast<QV_INT>( count < 64 ? count : 64 );
}

template <typename T, typename U> T *alignedDown( U *address, size_t size )
{
    return reinterpret_cast<T *>( reinterpret_cast<uintptr_t>( address ) & ~( size - 1 ) );
}

// ---- Chunks and slabs; the lock is held ----

// Memory at a multiple of its size.
void *mapChunk()
{
    void *room = mmap( nullptr, 2 * chunkSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 );
    QV_CHECK( room != MAP_FAILED );
    auto begin = static_cast<char *>( room );
    auto chunk = alignedDown<char>( begin + chunkSize - 1, chunkSize );
    if ( chunk > begin )
        munmap( begin, static_cast<size_t>( chunk - begin ) );
    size_t behind = static_cast<size_t>( begin + chunkSize - chunk );
    if ( behind > 0 )
        munmap( chunk + chunkSize, behind );
    return chunk;
}

// Lets the system bring all pages of a slab at once, as a fault for each would cost more than the records on it. Only slabs
// that are asked for a second batch get that far: most sizes have few records. In the first chunk half of the slab must
// be in use, so that a process that only starts and ends doesn't pay for pages that it never needs.
void touchRest( Slab *slab )
{
    auto *chunk = alignedDown<Slab>( slab, chunkSize );
    if ( pool.chunkCount == 1 && slab->fresh < slabSize / 2 )
        return;
    auto place = ( reinterpret_cast<uintptr_t>( slab ) - reinterpret_cast<uintptr_t>( chunk ) ) / slabSize;
    uint32_t bit = 1u << place;
    if ( !( chunk->untouchedSlabs & bit ) )
        return;
    chunk->untouchedSlabs &= ~bit;
#ifdef MADV_POPULATE_WRITE
    constexpr uint32_t page = 4096;
    uint32_t begin = ( slab->fresh + page - 1 ) / page * page;
    if ( begin < slabSize )
        madvise( reinterpret_cast<char *>( slab ) + begin, slabSize - begin, MADV_POPULATE_WRITE );
#endif
}

Slab *addChunk()
{
    auto *chunk = static_cast<Slab *>( mapChunk() );
    madvise( chunk, chunkSize, pool.chunkCount < smallPageChunks ? MADV_NOHUGEPAGE : MADV_HUGEPAGE );
    chunk->freeSlabs = allSlabs;
    chunk->untouchedSlabs = allSlabs;
    chunk->nextChunk = pool.chunks;
    if ( pool.chunks )
        pool.chunks->previousChunk = chunk;
    pool.chunks = chunk;
    pool.chunkCount++;
    pool.unusedChunks++;
    return chunk;
}

void removeChunk( Slab *chunk )
{
    ( chunk->previousChunk ? chunk->previousChunk->nextChunk : pool.chunks ) = chunk->nextChunk;
    if ( chunk->nextChunk )
        chunk->nextChunk->previousChunk = chunk->previousChunk;
    pool.chunkCount--;
    pool.unusedChunks--;
    munmap( chunk, chunkSize );
}

bool isUnused( const Slab *chunk )
{
    return chunk->freeSlabs == allSlabs;
}

void list( Slab *slab, size_t index )
{
    slab->previous = nullptr;
    slab->next = pool.listed[index];
    if ( slab->next )
        slab->next->previous = slab;
    pool.listed[index] = slab;
    slab->isListed = true;
}

void unlist( Slab *slab, size_t index )
{
    ( slab->previous ? slab->previous->next : pool.listed[index] ) = slab->next;
    if ( slab->next )
        slab->next->previous = slab->previous;
    slab->isListed = false;
}

Slab *chunkWithFreeSlab()
{
    for ( Slab *chunk = pool.chunks; chunk; chunk = chunk->nextChunk )
    {
        if ( chunk->freeSlabs )
            return chunk;
    }
    return addChunk();
}

Slab *addSlab( size_t index )
{
    Slab *chunk = chunkWithFreeSlab();
    if ( isUnused( chunk ) )
        pool.unusedChunks--;
    int place = std::countr_zero( chunk->freeSlabs );
    chunk->freeSlabs &= chunk->freeSlabs - 1;
    auto *slab = reinterpret_cast<Slab *>( reinterpret_cast<char *>( chunk ) +
                                           static_cast<size_t>( place ) * slabSize );
    slab->blockSize = static_cast<uint32_t>( ( index + 1 ) * grain );
    slab->used = 0;
    slab->fresh = slabHeadSize;
    slab->returned = 0;
    slab->firstWord = 0;
    std::memset( slab->returnedBits, 0, sizeof slab->returnedBits );
    list( slab, index );
    return slab;
}

// Takes back a slab whose last block came in.
void dropSlab( Slab *slab, size_t index )
{
    unlist( slab, index );
    slab->blockSize = 0;
    auto *chunk = alignedDown<Slab>( slab, chunkSize );
    auto place =
        static_cast<uint32_t>( ( reinterpret_cast<char *>( slab ) - reinterpret_cast<char *>( chunk ) ) /
                               static_cast<ptrdiff_t>( slabSize ) );
    chunk->freeSlabs |= 1u << place;
    if ( !isUnused( chunk ) )
        return;
    pool.unusedChunks++;
    if ( pool.unusedChunks > keptChunks && pool.unusedChunks > pool.chunkCount / 4 )
        removeChunk( chunk );
}

bool isFull( const Slab *slab )
{
    return slab->returned == 0 && slab->fresh + slab->blockSize > slabSize;
}

// Takes up to count blocks that were never out, onto a shelf without such.
void takeFresh( Slab *slab, Stock::Shelf *shelf, QV_INT count )
{
    if ( slab->fresh > slabHeadSize )
        touchRest( slab );
    auto room = static_cast<QV_INT>( ( slabSize - slab->fresh ) / slab->blockSize );
    auto taken = static_cast<uint32_t>( count < room ? count : room );
    shelf->fresh = reinterpret_cast<char *>( slab ) + slab->fresh;
    shelf->freshEnd = shelf->fresh + taken * slab->blockSize;
    slab->fresh += taken * slab->blockSize;
    slab->used += taken;
}

// Takes up to count blocks that were given back, and links them behind the place that *end points to.
uint32_t takeReturned( Slab *slab, Block ***end, uint32_t count )
{
    uint32_t taken = 0;
    while ( taken < count && slab->returned > 0 )
    {
        uint64_t *bits = &slab->returnedBits[slab->firstWord];
        if ( *bits == 0 )
        {
            slab->firstWord++;
            continue;
        }
        size_t place = slab->firstWord * 64 + static_cast<size_t>( std::countr_zero( *bits ) );
        *bits &= *bits - 1;
        auto *block = reinterpret_cast<Block *>( reinterpret_cast<char *>( slab ) + place * grain );
        **end = block;
        *end = &block->next;
        slab->returned--;
        taken++;
    }
    slab->used += taken;
    return taken;
}

void giveBlock( void *block, size_t index )
{
    auto *slab = alignedDown<Slab>( block, slabSize );
    auto place = ( reinterpret_cast<uintptr_t>( block ) - reinterpret_cast<uintptr_t>( slab ) ) / grain;
    auto word = static_cast<uint32_t>( place / 64 );
    slab->returnedBits[word] |= uint64_t{ 1 } << place % 64;
    if ( slab->returned == 0 || word < slab->firstWord )
        slab->firstWord = word;
    slab->returned++;
    slab->used--;
    if ( !slab->isListed )
        list( slab, index );
    if ( slab->used == 0 )
        dropSlab( slab, index );
}

// ---- Stocks ----

void emptyShelf( Stock *owner, size_t index, QV_INT keep )
{
    Stock::Shelf *shelf = &owner->shelves[index];
    while ( shelf->count > keep )
    {
        Block *block = shelf->first;
        shelf->first = block->next;
        shelf->count--;
        giveBlock( block, index );
    }
}

// Gives the blocks back that the thread has never used. They go untouched if no other thread has taken from behind them.
void returnFresh( Stock::Shelf *shelf, size_t index )
{
    if ( shelf->fresh == shelf->freshEnd )
        return;
    auto *slab = alignedDown<Slab>( shelf->fresh, slabSize );
    auto size = static_cast<uint32_t>( shelf->freshEnd - shelf->fresh );
    bool isLast = shelf->freshEnd == reinterpret_cast<char *>( slab ) + slab->fresh;
    if ( isLast && slab->used > size / slab->blockSize )
    {
        slab->fresh -= size;
        slab->used -= size / slab->blockSize;
        if ( !slab->isListed )
            list( slab, index );
        shelf->fresh = shelf->freshEnd;
    }
    for ( ; shelf->fresh < shelf->freshEnd; shelf->fresh += ( index + 1 ) * grain )
    {
        giveBlock( shelf->fresh, index );
    }
}

// Gives all blocks back; the lock is held.
void retireStock( Stock *owner )
{
    for ( size_t index = 0; index < classCount; index++ )
    {
        returnFresh( &owner->shelves[index], index );
        emptyShelf( owner, index, 0 );
    }
    ( owner->previous ? owner->previous->next : pool.stocks ) = owner->next;
    if ( owner->next )
        owner->next->previous = owner->previous;
    owner->isRegistered = false;
}

// Records that are freed still later on the ending thread make a new stock, and this is called again.
void retireAtEndOfThread( void *owner )
{
    qv___LockAcquire( &pool.lock );
    retireStock( static_cast<Stock *>( owner ) );
    qv___LockRelease( &pool.lock );
    stock = nullptr;
    munmap( owner, sizeof( Stock ) );
}

// Puts the thread's stock into the list; the lock is held. A stock that outlived a shutdown comes back here.
void registerStock()
{
    if ( stock->isRegistered )
        return;
    QV_CHECK( pthread_setspecific( pool.endOfThread, stock ) == 0 );
    stock->previous = nullptr;
    stock->next = pool.stocks;
    if ( stock->next )
        stock->next->previous = stock;
    pool.stocks = stock;
    stock->isRegistered = true;
}

// A page from the system: the first allocation on a thread would make the C library map it an arena of its own.
[[gnu::noinline]] Stock *createStock()
{
    void *page = mmap( nullptr, sizeof( Stock ), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 );
    QV_CHECK( page != MAP_FAILED );
    stock = static_cast<Stock *>( page );
    qv___LockAcquire( &pool.lock );
    registerStock();
    qv___LockRelease( &pool.lock );
    return stock;
}

inline Stock::Shelf *shelfOf( size_t index )
{
    Stock *own = stock;
    if ( __builtin_expect( !own, false ) )
        own = createStock();
    return &own->shelves[index];
}

[[gnu::noinline]] void fillShelf( size_t index )
{
    qv___LockAcquire( &pool.lock );
    registerStock();
    Stock::Shelf *shelf = &stock->shelves[index];
    QV_INT batch = batchOf( index );
    Block **end = &shelf->first;
    Slab *slab = pool.listed[index] ? pool.listed[index] : addSlab( index );
    if ( slab->returned == 0 )
    {
        takeFresh( slab, shelf, batch );
        if ( isFull( slab ) )
            unlist( slab, index );
    }
    // Slabs in long use may have few blocks each.
    while ( ( slab = pool.listed[index] ) && slab->returned > 0 && shelf->count < batch )
    {
        shelf->count += takeReturned( slab, &end, static_cast<uint32_t>( batch - shelf->count ) );
        if ( isFull( slab ) )
            unlist( slab, index );
    }
    *end = nullptr;
    qv___LockRelease( &pool.lock );
}

[[gnu::noinline]] void relieveShelf( size_t index )
{
    qv___LockAcquire( &pool.lock );
    registerStock();
    emptyShelf( stock, index, batchOf( index ) );
    qv___LockRelease( &pool.lock );
}

bool isPooled( QV_INT size )
{
    return QV___RECORD_POOL && __builtin_expect( pool.isOn, true ) &&
           size <= static_cast<QV_INT>( grain * classCount );
}

} // namespace

void qv___RecordPoolStartup()
{
    qv___LockInitialize( &pool.lock );
    QV_CHECK( pthread_key_create( &pool.endOfThread, retireAtEndOfThread ) == 0 );
    pool.isOn = QV___RECORD_POOL && !( qvRuntimeFlags() & QV_RUNTIME_FLAG_MEMORY_DEBUG );
}

void qv___RecordPoolShutdown()
{
    // All other threads have stopped using the library, so that their stocks stand still.
    while ( pool.stocks )
    {
        retireStock( pool.stocks );
    }
    if ( stock )
    {
        munmap( stock, sizeof( Stock ) );
        stock = nullptr;
    }
    for ( Slab *chunk = pool.chunks; chunk; )
    {
        Slab *next = chunk->nextChunk;
        if ( isUnused( chunk ) )
            removeChunk( chunk );
        chunk = next;
    }
    pool.isOn = false;
    QV_CHECK( pthread_key_delete( pool.endOfThread ) == 0 );
    qv___LockFinalize( &pool.lock );
}

void qv___RecordPoolLeave()
{
    if ( !stock )
        return;
    QV_CHECK( pthread_setspecific( pool.endOfThread, nullptr ) == 0 );
    retireAtEndOfThread( stock );
}

void *qv::recordAlloc( QV_INT size )
{
    QV_CHECK( size > 0 );
    if ( !isPooled( size ) )
        return qvMemAlloc( size );
    size_t index = classOf( size );
    Stock::Shelf *shelf = shelfOf( index );
    if ( !shelf->first && shelf->fresh == shelf->freshEnd )
        fillShelf( index );
    if ( Block *block = shelf->first )
    {
        shelf->first = block->next;
        shelf->count--;
        return block;
    }
    char *block = shelf->fresh;
    shelf->fresh += ( index + 1 ) * grain;
    return block;
}

void qv::recordFree( void *record, QV_INT size )
{
    if ( !isPooled( size ) )
    {
        qvMemFree( record );
        return;
    }
    size_t index = classOf( size );
    Stock::Shelf *shelf = shelfOf( index );
    auto *block = static_cast<Block *>( record );
    block->next = shelf->first;
    shelf->first = block;
    shelf->count++;
    if ( __builtin_expect( shelf->count > 2 * batchOf( index ), false ) )
        relieveShelf( index );
}

QV_INT qv::recordPoolSize()
{
    return static_cast<QV_INT>( pool.chunkCount ) * static_cast<QV_INT>( chunkSize );
}
