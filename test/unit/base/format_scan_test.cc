#include "support/test.hh"

namespace
{

using namespace test;

struct IntCase
{
    const char *src;
    QV_INT base;
    QV_BOOL result;
    QV_INT value, consumed;
};

void expectScanned( const std::vector<IntCase> &cases )
{
    for ( const IntCase &row : cases )
    {
        Local<QV_STRING> src = text( std::string_view( row.src ) );
        QV_INT value = 77, consumed = 77;
        QV_BOOL result = qvFormatTryDecodeInt( src, 0, qvStringLength( src ), row.base, &value, &consumed );
        EXPECT_EQ( result, row.result ) << row.src;
        EXPECT_EQ( value, row.value ) << row.src;
        EXPECT_EQ( consumed, row.consumed ) << row.src;
        EXPECT_EQ( qvStringScanInt( src, 0, -1, row.base, nullptr, nullptr ), row.result );
    }
}

TEST( FormatScan, Integers )
{
    expectScanned( {
        { "   ", 10, 0, 0, 3 },           { "  x", 10, 0, 0, 2 },       { "--5", 10, 0, 0, 1 },
        { "42", 10, 1, 42, 2 },           { "+42", 10, 1, 42, 3 },      { "- 5", 10, 1, -5, 3 },
        { " \t- 5 \n x", 10, 1, -5, 8 },  { "12abc", 10, 1, 12, 2 },    { "12abc", 16, 1, 0x12abc, 5 },
        { "zZ", 36, 1, 35 * 36 + 35, 2 }, { "0x1F", -1, 1, 31, 4 },     { "0X1f", -1, 1, 31, 4 },
        { "0x1F", 16, 1, 0, 1 },          { "0b101", -1, 1, 5, 5 },     { "0o17", -1, 1, 15, 4 },
        { "0d17", -1, 1, 17, 4 },         { "017", -1, 1, 17, 3 },      { "12: 5", -1, 1, 5, 5 },
        { "12:b", -1, 1, 11, 4 },         { "36:z", -1, 1, 35, 4 },     { "2:12", -1, 1, 1, 3 },
        { "02:1", -1, 1, 2, 2 },          { "1:1", -1, 1, 1, 1 },       { "37:1", -1, 1, 37, 2 },
        { "0x ", -1, 0, 0, 3 },           { "0x-", -1, 0, 0, 3 },       { "0x - 1F", -1, 1, -31, 7 },
        { "-0x1F", -1, 1, -31, 5 },       { "- 0x 1F", -1, 1, -31, 7 }, { "-0x-1F", -1, 0, 0, 3 },
        { "0xg", -1, 0, 0, 2 },           { "16:", -1, 0, 0, 3 },       { "\u0663\u0664", 10, 1, 34, 2 },
        { "\u0663\u0664", 8, 1, 28, 2 },  { "\u0663", 20, 0, 0, 0 },    { "\uFF21", 16, 1, 10, 1 },
        { "\u30005\u2003", 10, 1, 5, 3 },
    } );
    expectScanned( {
        { "", 10, 0, 0, 0 },
        { "x", 10, 0, 0, 0 },
        { "-", 10, 0, 0, 1 },
        { "- ", 10, 0, 0, 2 },
        { "0", 10, 1, 0, 1 },
        { "0x", -1, 0, 0, 2 },
        { "9223372036854775807", 10, 1, QV_INT_MAX, 19 },
        { "9223372036854775808", 10, 1, 922337203685477580, 18 },
        { "-9223372036854775808", 10, 1, QV_INT_MIN, 20 },
        { "-9223372036854775809", 10, 1, -922337203685477580, 19 },
        { "99999999999999999999", 10, 1, 999999999999999999, 18 },
        { "9223372036854775808 ", 10, 1, 922337203685477580, 18 },
        { "000000000000000000000000000012", 10, 1, 12, 30 },
        { "7fffffffffffffff", 16, 1, QV_INT_MAX, 16 },
        { "8000000000000000", 16, 1, 0x800000000000000, 15 },
        { "-8000000000000000", 16, 1, QV_INT_MIN, 17 },
        { "1y2p0ij32e8e7", 36, 1, QV_INT_MAX, 13 },
        { "1y2p0ij32e8e8", 36, 1, QV_INT_MAX / 36, 12 },
    } );
}

TEST( FormatScan, RangesAndBadCodePoints )
{
    Local<QV_STRING> src = text( "ab1234cd" );
    QV_INT value = 0;
    QV_INT consumed = 0;
    EXPECT_TRUE( qvFormatTryDecodeInt( src, 3, 2, 10, &value, &consumed ) );
    EXPECT_EQ( value, 23 );
    EXPECT_EQ( consumed, 2 );
    EXPECT_FALSE( qvFormatTryDecodeInt( src, 8, 0, 10, &value, &consumed ) );
    EXPECT_FALSE( qvFormatTryDecodeIntChars( nullptr, 0, -1, nullptr, nullptr ) );
    const QV_CHAR bad[] = { ' ', 0x110000, '5' };
    EXPECT_FALSE( qvFormatTryDecodeIntChars( bad, 3, -1, &value, &consumed ) );
    EXPECT_EQ( consumed, 1 );
    EXPECT_FALSE( qvFormatTryDecodeBoolChars( bad, 3, QV_TRUE, nullptr, nullptr ) );
    EXPECT_DEATH( qvFormatTryDecodeInt( src, 3, 6, 10, nullptr, nullptr ), "srcLength" );
    EXPECT_DEATH( qvFormatTryDecodeInt( src, 9, 0, 10, nullptr, nullptr ), "srcOffset" );
    EXPECT_DEATH( qvFormatTryDecodeInt( src, 0, 1, 1, nullptr, nullptr ), "base" );
    EXPECT_DEATH( qvFormatTryDecodeReal( src, 0, 1, 37, nullptr, nullptr ), "base" );
    EXPECT_DEATH( qvFormatTryDecodeIntChars( nullptr, 1, 10, nullptr, nullptr ), "src" );
}

TEST( FormatScan, IntegersComeBack )
{
    std::mt19937_64 random( 4 );
    for ( int round = 0; round < 20000; round++ )
    {
        QV_INT value = static_cast<QV_INT>( random() ) >> ( random() % 64 );
        QV_INT base = static_cast<QV_INT>( 2 + random() % 35 );
        bool detect = random() % 2;
        QV_FORMAT_FLAGS flags = static_cast<QV_FORMAT_FLAGS>( random() ) & QV_FORMAT_FLAG_UPPERCASE;
        if ( detect )
            flags |= QV_FORMAT_FLAG_BASEDECIMAL |
                     ( random() % 2 ? QV_FORMAT_FLAG_BASEMNEMONIC : QV_FORMAT_FLAG_BASENUMERIC );
        Local<QV_STRING> encoded( qvFormatEncodeInt( value, base, 0, flags ) );
        QV_INT read = 0;
        QV_INT consumed = 0;
        ASSERT_TRUE( qvStringScanInt( encoded, 0, -1, detect ? -1 : base, &read, &consumed ) );
        ASSERT_EQ( read, value ) << toUtf8( encoded );
        ASSERT_EQ( consumed, qvStringLength( encoded ) );
    }
}

TEST( FormatScan, Reals )
{
    struct
    {
        const char *src;
        QV_INT base;
        QV_BOOL result;
        double value;
        QV_INT consumed;
    } const cases[] = {
        { "", 10, 0, 0, 0 },
        { " ", 10, 0, 0, 1 },
        { "1,5", 10, 1, 1.5, 3 },
        { "1.2.3", 10, 1, 1.2, 3 },
        { "1.,", 10, 1, 1.0, 2 },
        { ".", 10, 1, 0.0, 1 },
        { "-.5 ", 10, 1, -0.5, 4 },
        { "+ 12.25x", 10, 1, 12.25, 7 },
        { "1e5", 10, 1, 1.0, 1 },
        { "inf", 10, 0, 0, 0 },
        { "0x1F.8", -1, 1, 31.5, 6 },
        { "0x", -1, 0, 0, 2 },
        { "2:1.11", -1, 1, 1.75, 6 },
        { "z.i", 36, 1, 35.5, 3 },
        { "18446744073709551616", 10, 1, 18446744073709551616.0, 20 },
        { "-18446744073709551616.5", 10, 1, -18446744073709551616.0, 23 },
        { "0.00000000000000000000000000000000000000001", 10, 1, 1e-41, 43 },
        { "\u0663.\u0665", 10, 1, 3.5, 3 },
    };
    for ( const auto &row : cases )
    {
        Local<QV_STRING> src = text( std::string_view( row.src ) );
        double value = 77;
        QV_INT consumed = 77;
        EXPECT_EQ( qvStringScanReal( src, 0, -1, row.base, &value, &consumed ), row.result ) << row.src;
        EXPECT_NEAR( value, row.value, std::fabs( row.value ) * 1e-15 ) << row.src;
        EXPECT_EQ( consumed, row.consumed ) << row.src;
    }
}

TEST( FormatScan, RealsAreNearTheBestReading )
{
    std::mt19937_64 random( 5 );
    for ( int round = 0; round < 20000; round++ )
    {
        char decimal[64];
        double original =
            static_cast<double>( static_cast<int64_t>( random() ) >> ( random() % 60 ) ) / 1000.0;
        std::snprintf( decimal, sizeof decimal, "%.*f", static_cast<int>( random() % 12 ), original );
        double expected = std::strtod( decimal, nullptr );
        double value = 0;
        ASSERT_TRUE( qvStringScanReal( text( std::string_view( decimal ) ), 0, -1, -1, &value, nullptr ) );
        ASSERT_NEAR( value, expected, std::fabs( expected ) * 1e-15 + 1e-18 ) << decimal;
    }
}

TEST( FormatScan, Bools )
{
    struct
    {
        const char *src;
        QV_BOOL allowNumeric, result, value;
        QV_INT consumed;
    } const cases[] = {
        { "", 1, 0, 0, 0 },         { "  ", 1, 0, 0, 2 },        { "true", 0, 1, 1, 4 },
        { " TrUe  x", 0, 1, 1, 7 }, { "falsehood", 0, 1, 0, 5 }, { "FALSE", 0, 1, 0, 5 },
        { "tru", 0, 0, 0, 0 },      { " 1", 0, 0, 0, 1 },        { " 1 ", 1, 1, 1, 3 },
        { "0.0", 1, 1, 0, 3 },      { "0x0", 1, 1, 0, 3 },       { "-0.5", 1, 1, 1, 4 },
        { "  x", 1, 0, 0, 2 },      { " -", 1, 0, 0, 1 },        { "0.0000000000000001", 1, 1, 0, 18 },
    };
    for ( const auto &row : cases )
    {
        Local<QV_STRING> src = text( std::string_view( row.src ) );
        QV_BOOL value = 77;
        QV_INT consumed = 77;
        EXPECT_EQ( qvStringScanBool( src, 0, -1, row.allowNumeric, &value, &consumed ), row.result )
            << row.src;
        EXPECT_EQ( value, row.value ) << row.src;
        EXPECT_EQ( consumed, row.consumed ) << row.src;
    }
}

} // namespace
