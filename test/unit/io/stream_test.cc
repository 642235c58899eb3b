// What byte and character streams have in common: chunks, flags, the latch and the ranges of writes.

#include "support/test.hh"
#include "support/stream.hh"

namespace
{

template <typename KIND> class Stream : public testing::Test
{
};
using Kinds = testing::Types<test::Bytes, test::Chars>;
TYPED_TEST_SUITE( Stream, Kinds );

// ---- Reading ----

// A chunked read as it is meant: requests, the number of units, and the flags afterwards.
struct Reading
{
    std::vector<QV_INT> requests;
    QV_INT total = 0;
    bool end = false;
    bool error = false;
};

Reading expectedReading( QV_INT size, QV_INT failAt, QV_INT maximum )
{
    Reading reading;
    QV_INT remaining = maximum == -1 ? QV_INT_MAX : maximum;
    while ( remaining > 0 && !reading.end )
    {
        QV_INT request = std::min<QV_INT>( remaining, 1024 );
        QV_INT count = std::min( request, size - reading.total );
        reading.error = failAt >= 0 && reading.total + count >= failAt && reading.total + request > failAt;
        if ( reading.error )
            count = failAt - reading.total;
        reading.end = count < request || reading.error;
        reading.requests.push_back( request );
        reading.total += count;
        remaining -= count;
    }
    return reading;
}

TYPED_TEST( Stream, ChunkedReads )
{
    for ( QV_INT size : { 0, 1, 1023, 1024, 1025, 2048, 5000 } )
        for ( QV_INT failAt : { -1, 0, 10, 1024, 1500, 5000 } )
            for ( QV_INT maximum : { -1, 0, 1, 1024, 1025, 2048, 4096, 6000 } )
            {
                if ( failAt > size )
                    continue;
                SCOPED_TRACE( testing::Message()
                              << size << " units, failing at " << failAt << ", up to " << maximum );
                test::Tap<typename TypeParam::Unit> tap;
                tap.data = test::countingUnits<typename TypeParam::Unit>( size );
                tap.failAt = failAt;
                Reading expected = expectedReading( size, failAt, maximum );
                auto src = TypeParam::source( tap );
                auto dest = TypeParam::value( { 1, 2, 3 } );
                auto before = qv::Local<typename TypeParam::Value>::share( dest );

                EXPECT_EQ( TypeParam::read( src, dest.edit(), maximum ), expected.total );
                EXPECT_EQ( tap.requests, expected.requests );
                EXPECT_EQ( TypeParam::end( src ), expected.end );
                EXPECT_EQ( TypeParam::sourceError( src ), expected.error );
                std::vector<typename TypeParam::Unit> content = { 1, 2, 3 };
                content.insert( content.end(), tap.data.begin(), tap.data.begin() + expected.total );
                EXPECT_EQ( TypeParam::units( dest ), content );
                EXPECT_EQ( TypeParam::units( before ).size(), 3u );

                // Nothing is asked of a source that has ended, by reads of this kind.
                if ( expected.end )
                {
                    EXPECT_EQ( TypeParam::read( src, dest.edit(), -1 ), 0 );
                    EXPECT_EQ( tap.requests.size(), expected.requests.size() );
                }
            }
}

TYPED_TEST( Stream, SingleReads )
{
    using Unit = typename TypeParam::Unit;
    test::Tap<Unit> tap;
    tap.data = test::countingUnits<Unit>( 3000 );
    auto src = TypeParam::source( tap );
    std::vector<Unit> units( 4000 );
    EXPECT_EQ( TypeParam::readUnits( src, units.data(), 2500 ), 2500 );
    EXPECT_FALSE( TypeParam::end( src ) );
    EXPECT_EQ( TypeParam::readUnits( src, units.data() + 2500, 500 ), 500 );
    EXPECT_FALSE( TypeParam::end( src ) ) << "a full read says nothing about the end";
    EXPECT_EQ( TypeParam::readUnits( src, nullptr, 0 ), 0 );
    EXPECT_FALSE( TypeParam::end( src ) );
    EXPECT_EQ( TypeParam::readUnits( src, units.data() + 3000, 1 ), 0 );
    EXPECT_TRUE( TypeParam::end( src ) );
    units.resize( 3000 );
    EXPECT_EQ( units, tap.data );

    // A source that goes on is still asked, and its failure is still noticed.
    size_t calls = tap.requests.size();
    tap.data.push_back( 9 );
    EXPECT_EQ( TypeParam::readUnits( src, units.data(), 1 ), 1 );
    EXPECT_EQ( tap.requests.size(), calls + 1 );
    EXPECT_FALSE( TypeParam::sourceError( src ) );
    tap.data.push_back( 9 );
    tap.failAt = 3002;
    EXPECT_EQ( TypeParam::readUnits( src, units.data(), -1 ), 1 );
    EXPECT_EQ( tap.requests.back(), QV_INT_MAX );
    EXPECT_TRUE( TypeParam::sourceError( src ) );
}

// ---- Writing ----

// The writes that a call should cause, empty ones left out.
template <typename UNIT>
std::vector<std::vector<UNIT>> parts( const std::vector<UNIT> &units,
                                      std::initializer_list<std::pair<QV_INT, QV_INT>> ranges )
{
    std::vector<std::vector<UNIT>> result;
    for ( auto [from, to] : ranges )
    {
        if ( from < to )
            result.emplace_back( units.begin() + from, units.begin() + to );
    }
    return result;
}

TYPED_TEST( Stream, WritesTheRangesAsked )
{
    using Unit = typename TypeParam::Unit;
    std::vector<Unit> units = test::countingUnits<Unit>( 12 );
    auto value = TypeParam::value( units );
    for ( QV_INT offset = 0; offset <= 12; offset++ )
        for ( QV_INT count = 0; offset + count <= 12; count++ )
        {
            test::Tap<Unit> inner, outer, leading, trailing, plain;
            auto sink = TypeParam::sink( inner );
            EXPECT_TRUE( TypeParam::writeInner( sink, value, offset, count ) );
            EXPECT_EQ( inner.writes, parts( units, { { offset, offset + count } } ) );
            sink.take( TypeParam::sink( outer ).give() );
            EXPECT_TRUE( TypeParam::writeOuter( sink, value, offset, count ) );
            EXPECT_EQ( outer.writes, parts( units, { { 0, offset }, { offset + count, 12 } } ) );
            sink.take( TypeParam::sink( leading ).give() );
            EXPECT_TRUE( TypeParam::writeLeading( sink, value, count ) );
            EXPECT_EQ( leading.writes, parts( units, { { 0, count } } ) );
            sink.take( TypeParam::sink( trailing ).give() );
            EXPECT_TRUE( TypeParam::writeTrailing( sink, value, count ) );
            EXPECT_EQ( trailing.writes, parts( units, { { 12 - count, 12 } } ) );
            sink.take( TypeParam::sink( plain ).give() );
            EXPECT_TRUE( TypeParam::writeUnits( sink, units.data() + offset, count ) );
            EXPECT_EQ( plain.writes, inner.writes );
        }
    test::Tap<Unit> whole;
    auto sink = TypeParam::sink( whole );
    EXPECT_TRUE( TypeParam::write( sink, value ) );
    EXPECT_EQ( whole.writes, parts( units, { { 0, 12 } } ) );
    EXPECT_TRUE( TypeParam::write( sink, nullptr ) );
    EXPECT_TRUE( TypeParam::writeInner( sink, nullptr, 0, 0 ) );
    EXPECT_TRUE( TypeParam::writeUnits( sink, nullptr, 0 ) );
    EXPECT_EQ( whole.writes.size(), 1u );
}

TYPED_TEST( Stream, LatchKeepsTheFirstFailure )
{
    using Unit = typename TypeParam::Unit;
    auto value = TypeParam::value( test::countingUnits<Unit>( 12 ) );
    for ( int goodWrites : { 0, 1, 2 } )
    {
        test::Tap<Unit> tap;
        tap.goodWrites = goodWrites;
        {
            auto sink = TypeParam::sink( tap );
            EXPECT_EQ( TypeParam::writeOuter( sink, value, 3, 3 ), goodWrites == 2 );
            EXPECT_EQ( static_cast<int>( tap.writes.size() ), std::min( goodWrites + 1, 2 ) );
            EXPECT_EQ( TypeParam::sinkError( sink ), goodWrites < 2 );
            TypeParam::write( sink, value );
            EXPECT_TRUE( TypeParam::sinkError( sink ) );

            size_t before = tap.writes.size();
            tap.goodWrites = -1;
            EXPECT_FALSE( TypeParam::write( sink, value ) );
            EXPECT_FALSE( TypeParam::writeInner( sink, value, 0, 0 ) ) << "an empty write fails too";
            EXPECT_FALSE( TypeParam::flush( sink ) );
            EXPECT_EQ( tap.writes.size(), before );
        }
        EXPECT_EQ( tap.flushes, 0 ) << "nothing more reaches the far end, not even when the sink goes";
        EXPECT_TRUE( tap.freed );
    }
}

TYPED_TEST( Stream, FlushesAndReleasesInTheEnd )
{
    using Unit = typename TypeParam::Unit;
    test::Tap<Unit> tap;
    {
        auto sink = TypeParam::sink( tap );
        EXPECT_TRUE( TypeParam::flush( sink ) );
        EXPECT_EQ( tap.flushes, 1 );
    }
    EXPECT_EQ( tap.flushes, 2 );
    EXPECT_TRUE( tap.freed );

    test::Tap<Unit> failing;
    failing.flushFails = true;
    {
        auto sink = TypeParam::sink( failing );
        EXPECT_FALSE( TypeParam::flush( sink ) );
        EXPECT_TRUE( TypeParam::sinkError( sink ) );
        EXPECT_FALSE( TypeParam::writeUnits( sink, nullptr, 0 ) );
    }
    EXPECT_EQ( failing.flushes, 1 );

    test::Tap<Unit> delivering;
    {
        auto src = TypeParam::source( delivering );
    }
    EXPECT_TRUE( delivering.freed );
    EXPECT_TRUE( delivering.requests.empty() );
}

TYPED_TEST( Stream, FaultsOfTheCallerStop )
{
    using Unit = typename TypeParam::Unit;
    test::Tap<Unit> tap;
    auto sink = TypeParam::sink( tap );
    auto src = TypeParam::source( tap );
    auto value = TypeParam::value( test::countingUnits<Unit>( 4 ) );
    EXPECT_DEATH( TypeParam::writeInner( sink, value, 3, 2 ), "Offset \\+ .*Count <= " );
    EXPECT_DEATH( TypeParam::writeInner( sink, value, -1, 2 ), "Offset >= 0" );
    EXPECT_DEATH( TypeParam::writeInner( sink, value, 1, QV_INT_MAX ), "ADD_OK" );
    EXPECT_DEATH( TypeParam::writeTrailing( sink, value, 5 ), "Offset >= 0" );
    EXPECT_DEATH( TypeParam::writeLeading( sink, value, -1 ), "Count >= 0" );
    EXPECT_DEATH( TypeParam::writeInner( sink, nullptr, 0, 1 ), "Count == 0" );
    EXPECT_DEATH( TypeParam::write( nullptr, value ), "sink" );
    EXPECT_DEATH( TypeParam::read( src, value.edit(), -2 ), "Count >= -1" );
    EXPECT_DEATH( TypeParam::read( nullptr, value.edit(), 1 ), "src" );
}

} // namespace
