#include "support/test.hh"

namespace
{

std::vector<QV_INT> interestingInts()
{
    std::vector<QV_INT> values = {
        QV_INT_MIN, QV_INT_MIN + 1, QV_INT_MAX, QV_INT_MAX - 1, 0, 1, -1, 2, -2, 3, -3, 10, 1000 };
    std::mt19937_64 random( 1 );
    for ( int count = 0; count < 60; count++ )
        values.push_back( static_cast<QV_INT>( random() ) >> ( random() % 64 ) );
    return values;
}

// What the compiler's own overflow test says, and the bound on the exact result's side.
QV_INT saturated( bool overflows, QV_INT exact, bool negative )
{
    return !overflows ? exact : negative ? QV_INT_MIN : QV_INT_MAX;
}

TEST( Int, CheckedAndSaturatingArithmetic )
{
    for ( QV_INT a : interestingInts() )
        for ( QV_INT b : interestingInts() )
        {
            QV_INT exact;
            bool overflows = __builtin_add_overflow( a, b, &exact );
            EXPECT_EQ( overflows, !qvIntAddOk( a, b ) ) << a << " + " << b;
            EXPECT_EQ( saturated( overflows, exact, a < 0 ), qvIntAddSaturating( a, b ) );
            overflows = __builtin_sub_overflow( a, b, &exact );
            EXPECT_EQ( overflows, !qvIntSubOk( a, b ) ) << a << " - " << b;
            EXPECT_EQ( saturated( overflows, exact, a < 0 ), qvIntSubSaturating( a, b ) );
            overflows = __builtin_mul_overflow( a, b, &exact );
            EXPECT_EQ( overflows, !qvIntMulOk( a, b ) ) << a << " * " << b;
            EXPECT_EQ( saturated( overflows, exact, ( a < 0 ) != ( b < 0 ) ), qvIntMulSaturating( a, b ) );
        }
    EXPECT_FALSE( qvIntDivOk( 1, 0 ) || qvIntDivOk( QV_INT_MIN, -1 ) );
    EXPECT_EQ( QV_INT_MAX, qvIntDivSaturating( QV_INT_MIN, -1 ) );
    EXPECT_EQ( -2, qvIntDivSaturating( 5, -2 ) );
    EXPECT_EQ( QV_INT_MAX, qvIntAbsSaturating( QV_INT_MIN ) );
    EXPECT_EQ( 10, qvIntConstrain( 50, 10, 1 ) );
    EXPECT_EQ( 5, qvIntConstrain( 5, 10, 1 ) );
}

TEST( Int, MidRoundsByTheSmallerSign )
{
    const struct
    {
        QV_INT a, b, mid;
    } rows[] = { { 1, 2, 1 },
                 { 2, 1, 1 },
                 { -2, -1, -1 },
                 { -1, 2, 1 },
                 { -2, 1, 0 },
                 { -3, -3, -3 },
                 { -3, 5, 1 },
                 { QV_INT_MAX, QV_INT_MIN, 0 },
                 { QV_INT_MAX, QV_INT_MAX - 1, QV_INT_MAX - 1 },
                 { QV_INT_MIN, QV_INT_MIN + 1, QV_INT_MIN + 1 } };
    for ( const auto &row : rows )
        EXPECT_EQ( row.mid, qvIntMid( row.a, row.b ) ) << row.a << " " << row.b;
}

TEST( Int, BitsAgainstSingleBits )
{
    for ( QV_INT value : interestingInts() )
    {
        QV_INT highest = -1, lowest = -1, count = 0;
        for ( QV_INT bit = 0; bit < QV_INT_BITS; bit++ )
        {
            if ( qvIntBitIsSet( value, bit ) )
            {
                lowest = lowest == -1 ? bit : lowest;
                highest = bit;
                count++;
            }
        }
        EXPECT_EQ( highest, qvIntBitHighest( value ) );
        EXPECT_EQ( lowest, qvIntBitLowest( value ) );
        EXPECT_EQ( count, qvIntBitCount( value ) );
        for ( QV_INT a = 0; a < QV_INT_BITS; a += 7 )
            for ( QV_INT b = 0; b < QV_INT_BITS; b += 9 )
            {
                QV_INT set = value, clear = value;
                for ( QV_INT bit = std::min( a, b ); bit <= std::max( a, b ); bit++ )
                {
                    set = qvIntBitSet( set, bit );
                    clear = qvIntBitClear( clear, bit );
                }
                EXPECT_EQ( set, qvIntBitSetRange( value, a, b ) );
                EXPECT_EQ( clear, qvIntBitClearRange( value, a, b ) );
            }
        EXPECT_EQ( value, qvIntBitSetHighest( value, 0 ) );
        EXPECT_EQ( value, qvIntBitClearLowest( value, 0 ) );
        EXPECT_EQ( -1, qvIntBitSetLowest( value, 64 ) );
        EXPECT_EQ( 0, qvIntBitClearHighest( value, 64 ) );
        EXPECT_EQ( value | 7, qvIntBitSetLowest( value, 3 ) );
        EXPECT_EQ( value & QV_INT_MAX, qvIntBitClearHighest( value, 1 ) );
    }
}

TEST( IntDeathTest, OutOfRange )
{
    EXPECT_DEATH( qvIntBitIsSet( 0, 64 ), "bit < QV_INT_BITS" );
    EXPECT_DEATH( qvIntAbs( QV_INT_MIN ), "qvIntMulOk" );
    EXPECT_DEATH( qvIntDivSaturating( 1, 0 ), "b != 0" );
}

TEST( Real, CompareAndConvert )
{
    double infinity = std::numeric_limits<double>::infinity();
    double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE( qvRealEquals( 1.0, 1.0 + 1e-16 ) );
    EXPECT_FALSE( qvRealEquals( 1e16, std::nextafter( 1e16, infinity ) ) );
    EXPECT_EQ( 1, qvRealCompare( nan, 1 ) );
    EXPECT_EQ( 1, qvRealCompare( 1, nan ) );
    EXPECT_EQ( -1, qvRealCompareInt( 1.5, 2 ) );
    EXPECT_TRUE( qvRealIsNan( nan ) );
    EXPECT_FALSE( qvRealOk( nan ) || qvRealOk( infinity ) || qvRealIsFinite( -infinity ) );
    EXPECT_TRUE( qvRealIsFinite( std::numeric_limits<double>::max() ) );
    const std::pair<double, QV_INT> rows[] = { { 1.9, 1 },
                                               { -1.9, -1 },
                                               { 9223372036854775808.0, QV_INT_MAX },
                                               { -9223372036854775808.0, QV_INT_MIN },
                                               { -1e300, QV_INT_MIN },
                                               { 9007199254740993.0, 9007199254740992 } };
    for ( auto [real, integer] : rows )
        EXPECT_EQ( integer, qvRealToInt( real ) ) << real;
}

} // namespace
