#include "support/test.hh"

#include <qv/sys/qv_record_pool.hh>

namespace
{

// A block filled with a byte of its own, so that two blocks that overlap give themselves away.
struct Filled
{
    unsigned char *bytes;
    QV_INT size;
    unsigned char fill;

    static Filled take( QV_INT size, unsigned char fill )
    {
        auto *bytes = static_cast<unsigned char *>( qv::recordAlloc( size ) );
        memset( bytes, fill, static_cast<size_t>( size ) );
        return { bytes, size, fill };
    }

    bool isWhole() const
    {
        for ( QV_INT idx = 0; idx < size; idx++ )
        {
            if ( bytes[idx] != fill )
                return false;
        }
        return true;
    }

    void give() const
    {
        EXPECT_TRUE( isWhole() );
        EXPECT_EQ( reinterpret_cast<uintptr_t>( bytes ) % 16, 0u );
        qv::recordFree( bytes, size );
    }
};

// Takes and gives blocks of all sizes in random order, more and more of them and then fewer.
void takeAndGive( unsigned seed, int steps )
{
    std::mt19937 random( seed );
    std::vector<Filled> blocks;
    for ( int step = 0; step < steps; step++ )
    {
        bool grows = random() % 100 < ( step < steps / 2 ? 60u : 40u );
        if ( grows || blocks.empty() )
        {
            QV_INT size = random() % 8 == 0 ? 1 + random() % 3000 : 81 + random() % 600;
            blocks.push_back( Filled::take( size, static_cast<unsigned char>( random() ) ) );
            continue;
        }
        std::swap( blocks[random() % blocks.size()], blocks.back() );
        blocks.back().give();
        blocks.pop_back();
    }
    for ( const Filled &block : blocks )
        block.give();
}

} // namespace

TEST( RecordPool, BlocksNeverOverlap )
{
    takeAndGive( 1, 200000 );
}

TEST( RecordPool, ThreadsTakeAndGiveAtOnce )
{
    test::runOnThreads( 4, []( size_t idx ) { takeAndGive( static_cast<unsigned>( 10 + idx ), 60000 ); } );
}

// Blocks that are always taken here and given there come round: what the other threads hold comes back when they end.
TEST( RecordPool, OtherThreadsGiveBlocksBack )
{
    QV_INT sizeBefore = 0;
    for ( int round = 0; round < 30; round++ )
    {
        std::vector<Filled> blocks;
        for ( int idx = 0; idx < 20000; idx++ )
            blocks.push_back( Filled::take( 384, static_cast<unsigned char>( idx ) ) );
        std::thread other( [&blocks] {
            for ( const Filled &block : blocks )
                block.give();
        } );
        other.join();
        if ( round == 0 )
            sizeBefore = qv::recordPoolSize();
    }
    EXPECT_EQ( qv::recordPoolSize(), sizeBefore );
}

// What a thread holds at its end goes back, also if it never took a block itself.
TEST( RecordPool, ThreadsThatOnlyGiveLoseNothing )
{
    constexpr QV_INT size = 1000;
    QV_INT before = 0;
    for ( int round = 0; round < 3000; round++ )
    {
        void *records[] = { qv::recordAlloc( size ), qv::recordAlloc( size ), qv::recordAlloc( size ) };
        std::thread giver( [&] {
            for ( void *record : records )
                qv::recordFree( record, size );
        } );
        giver.join();
        if ( round == 100 )
            before = qv::recordPoolSize();
    }
    EXPECT_EQ( before, qv::recordPoolSize() );
}

// Where few blocks are still out, those between them are taken in the order of their addresses, however they came back.
TEST( RecordPool, BlocksComeInOrder )
{
    constexpr QV_INT size = 128;
    if ( qv::recordPoolSize() == 0 )
        GTEST_SKIP() << "the pool is at rest";
    std::vector<char *> blocks( 20000 );
    auto take = [] { return static_cast<char *>( qv::recordAlloc( size ) ); };
    std::generate( blocks.begin(), blocks.end(), take );
    std::shuffle( blocks.begin(), blocks.end(), std::mt19937( 5 ) );
    auto give = [&blocks]( size_t from ) {
        for ( size_t idx = from; idx < blocks.size(); idx++ )
            qv::recordFree( blocks[idx], size );
    };
    give( 400 );
    std::generate( blocks.begin() + 400, blocks.end(), take );
    QV_INT near = 0;
    for ( size_t idx = 401; idx < blocks.size(); idx++ )
        near += blocks[idx] > blocks[idx - 1] && blocks[idx] - blocks[idx - 1] <= 4 * size;
    EXPECT_GT( near, 18000 );
    give( 0 );
}

// A peak goes back to the system for the most part.
TEST( RecordPool, PeakGoesBack )
{
    std::vector<Filled> blocks;
    for ( int idx = 0; idx < 200000; idx++ )
        blocks.push_back( Filled::take( 384, 1 ) );
    QV_INT peak = qv::recordPoolSize();
    for ( const Filled &block : blocks )
        block.give();
    EXPECT_LE( qv::recordPoolSize(), peak * 3 / 5 );
}
