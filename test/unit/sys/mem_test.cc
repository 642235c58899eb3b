#include "support/test.hh"

#include <qv/sys/qv_timestamp.hh>
#include <qv/sys/qv_unique.hh>

namespace
{

TEST( Mem, CopiesAndComparisons )
{
    char *copy = qvMemDupCstr( "abcdef", 3 );
    EXPECT_STREQ( "abc", copy );
    copy = static_cast<char *>( qvMemRealloc( copy, 100 ) );
    EXPECT_STREQ( "abc", copy );
    EXPECT_EQ( copy + 1, qvMemMove( copy + 1, copy, 3 ) );
    EXPECT_EQ( "aabc", std::string( copy, 4 ) );
    EXPECT_EQ( -1, qvMemCompare( "a\x7F", "a\x80", 2 ) );
    EXPECT_EQ( 1, qvMemCompareN( "ab", "aa", 2, 1 ) );
    EXPECT_EQ( 0, qvMemCompare( nullptr, nullptr, 0 ) );
    EXPECT_EQ( nullptr, qvMemCopy( nullptr, nullptr, 0 ) );
    EXPECT_EQ( nullptr, qvMemSet( nullptr, 1, 0 ) );
    qvMemFree( copy );
    qvMemFree( nullptr );
}

TEST( MemDeathTest, SizesThatCannotBe )
{
    EXPECT_DEATH( qvMemAlloc( 0 ), "size > 0" );
    EXPECT_DEATH( qvMemAllocN( QV_INT_MAX, 2 ), "QV_INT_MUL_OK" );
    EXPECT_DEATH( qvMemAllocN( -1, -1 ), "count > 0" );
    EXPECT_DEATH( qvMemCopy( nullptr, "a", 1 ), "dest" );
}

TEST( Unique, LastInFirstOutAndDense )
{
    QV_INT first = qv___UniqueGet();
    QV_INT second = qv___UniqueGet();
    qv___UniquePut( first );
    EXPECT_EQ( first, qv___UniqueGet() );
    std::set<QV_INT> taken = { first, second };
    for ( int count = 0; count < 10000; count++ )
        EXPECT_TRUE( taken.insert( qv___UniqueGet() ).second );
    for ( QV_INT uni : taken )
        qv___UniquePut( uni );
    EXPECT_EQ( *taken.rbegin(), qv___UniqueGet() );
    EXPECT_DEATH( qv___UniquePut( *taken.begin() ), "IN_USE" );
    EXPECT_DEATH( qv___UniquePut( QV_INT_MAX ), "uni < uniListSize" );
    qv___UniquePut( *taken.rbegin() );
    EXPECT_DEATH( qv___UniquePut( *taken.rbegin() ), "IN_USE" );
}

TEST( Unique, NoTokenTwiceAcrossThreads )
{
    std::vector<std::vector<QV_INT>> taken( 4 );
    std::vector<std::thread> threads;
    for ( auto &mine : taken )
    {
        threads.emplace_back( [&mine] {
            for ( int count = 0; count < 2000; count++ )
            {
                QV_INT dropped = qv___UniqueGet();
                mine.push_back( qv___UniqueGet() );
                qv___UniquePut( dropped );
            }
        } );
    }
    std::set<QV_INT> all;
    for ( size_t idx = 0; idx < threads.size(); idx++ )
    {
        threads[idx].join();
        all.insert( taken[idx].begin(), taken[idx].end() );
    }
    EXPECT_EQ( 8000u, all.size() );
    for ( QV_INT uni : all )
        qv___UniquePut( uni );
}

// Also where a reading stands for some time, on any processor.
TEST( Timestamp, TellsTheMillisecondOfTheClock )
{
    QV_INT start = qv___Timestamp();
    for ( QV_INT now = start; now < start + 30; )
    {
        QV_INT before = qv___Nanoseconds() / 1000000;
        now = qv___Timestamp();
        ASSERT_LE( before, now );
        ASSERT_LE( now, qv___Nanoseconds() / 1000000 );
    }
}

TEST( Timestamp, DifferenceIsNeverNegative )
{
    EXPECT_EQ( 0, qvTimestampDiff( 5, 7 ) );
    EXPECT_EQ( 2, qvTimestampDiff( 7, 5 ) );
    EXPECT_EQ( QV_INT_MAX, qvTimestampDiff( QV_INT_MAX, -2 ) );
}

} // namespace
