#include "support/test.hh"

#include <qv/base/qv_format.hh>

#include <cinttypes>
#include <cstdarg>

namespace
{

using namespace test;

constexpr QV_INT operator""_i( unsigned long long value )
{
    return static_cast<QV_INT>( value );
}

// Executes a format with the given arguments.
std::string formatted( const char *format, ... )
{
    Local<QV_STRING> fmt = text( std::string_view( format ) );
    QV_ARG_LIST list;
    va_start( list.args, format );
    std::string result = takeUtf8( qv___FormatArgList( fmt, &list ) );
    va_end( list.args );
    return result;
}

struct IntCase
{
    const char *format;
    QV_INT value;
    const char *expected;
};

void expectFormatted( const std::vector<IntCase> &cases )
{
    for ( const IntCase &row : cases )
        EXPECT_EQ( formatted( row.format, row.value ), row.expected ) << row.format << " of " << row.value;
}

TEST( Format, Integers )
{
    expectFormatted( {
        { "%^!36i", 35, "Z" },      { "%0!16i", 255, "ff" },      { "%05i", -42, "-0042" },
        { "%02i", 7, "07" },        { "%#!16i", 255, "0xff" },    { "%##!16i", 255, "16:ff" },
        { "%#^!16i", 255, "0XFF" }, { "%###!16i", 255, "ff" },    { "%####!16i", 255, "ff" },
        { "%#i", 10, "10" },        { "%#'i", 10, "0d10" },       { "%#^'i", 10, "0D10" },
        { "%##'i", 10, "10:10" },   { "%'i", 10, "10" },          { "%#!7i", 8, "7:11" },
        { "%#!2i", 5, "0b101" },    { "%#!8i", 8, "0o10" },       { "%-5i", 42, "42   " },
        { "%-05i", 42, "42   " },   { "%_i", -5, "5" },           { "%_+i", 5, "5" },
        { "% i", 5, " 5" },         { "%+ i", 5, "+5" },          { "%+i", -5, "-5" },
        { "%+05i", 5, "+0005" },    { "% i", 0, " 0" },           { "%X", 255, "ff" },
        { "%^X", 255, "FF" },       { "%!10X", 255, "255" },      { "%!X", 255, "ff" },
        { "%!i", 255, "255" },      { "%8X|", 255, "      ff|" }, { "%5 i", 5, "    5" },
        { "%.100A", 7, "007" },     { "%.100A", 100, "100" },     { "%-.100A", 7, "007" },
        { "%5.100A", 7, "00007" },  { "%+.100A", 7, "+007" },     { "%#.255!16A", 7, "0x07" },
        { "%.0A", 0, "0" },         { "a%%b%i", 1, "a%b1" },      { "%i%%", 1, "1%" },
    } );
    expectFormatted( {
        { "%i", 0, "0" },
        { "%i", QV_INT_MAX, "9223372036854775807" },
        { "%i", QV_INT_MIN, "-9223372036854775808" },
        { "%!2i", QV_INT_MIN, "-1000000000000000000000000000000000000000000000000000000000000000" },
        { "%!36i", QV_INT_MIN, "-1y2p0ij32e8e8" },
        { "%^06!16i", 255, "0000FF" },
        { "u%^04!16i", 0xE9, "u00E9" },
        { "%#08!16i", -255, "-0x000ff" },
        { "%#8!16i", -255, "   -0xff" },
        { "%-#8!16i|", -255, "-0xff   |" },
        { "%.i", 5, "5" },
        { "%A", 7, "0000000000000000007" },
    } );
    EXPECT_EQ( formatted( "%.*A", 100_i, 7_i ), "007" );
    EXPECT_EQ( formatted( "%*.*!*A|%i", 6_i, 255_i, 16_i, 10_i, 3_i ), "00000a|3" );
    EXPECT_EQ( formatted( "%*!*i", 4_i, 3_i, 5_i ), "  12" );
}

// All bases, signs, magnitudes and flags against digits made one by one.
std::string naiveInt( QV_INT value, QV_INT base, QV_INT width, QV_FORMAT_FLAGS flags )
{
    uint64_t rest = value < 0 ? 0 - static_cast<uint64_t>( value ) : static_cast<uint64_t>( value );
    std::string digits;
    do
    {
        unsigned digit = static_cast<unsigned>( rest % static_cast<unsigned>( base ) );
        char letter = ( flags & QV_FORMAT_FLAG_UPPERCASE ) ? 'A' : 'a';
        digits.insert( digits.begin(), static_cast<char>( digit < 10 ? '0' + digit : letter + digit - 10 ) );
        rest /= static_cast<unsigned>( base );
    } while ( rest != 0 );
    std::string head;
    if ( value < 0 && !( flags & QV_FORMAT_FLAG_NOSIGN ) )
        head = "-";
    else if ( ( flags & QV_FORMAT_FLAG_PLUSPOS ) && !( flags & QV_FORMAT_FLAG_NOSIGN ) )
        head = "+";
    else if ( ( flags & QV_FORMAT_FLAG_BLANKPOS ) && !( flags & QV_FORMAT_FLAG_NOSIGN ) )
        head = " ";
    bool wanted = base != 10 || ( flags & QV_FORMAT_FLAG_BASEDECIMAL );
    const char *letters = base == 2    ? "bB"
                          : base == 8  ? "oO"
                          : base == 10 ? "dD"
                          : base == 16 ? "xX"
                                       : nullptr;
    if ( wanted && ( flags & QV_FORMAT_FLAG_BASEMNEMONIC ) && letters )
        head += std::string( "0" ) + letters[( flags & QV_FORMAT_FLAG_UPPERCASE ) ? 1 : 0];
    else if ( wanted && ( flags & ( QV_FORMAT_FLAG_BASEMNEMONIC | QV_FORMAT_FLAG_BASENUMERIC ) ) )
        head += std::to_string( base ) + ":";
    size_t length = head.size() + digits.size();
    size_t pad = static_cast<size_t>( width ) > length ? static_cast<size_t>( width ) - length : 0;
    if ( flags & QV_FORMAT_FLAG_LEFTALIGN )
        return head + digits + std::string( pad, ' ' );
    if ( flags & QV_FORMAT_FLAG_ZEROPAD )
        return head + std::string( pad, '0' ) + digits;
    return std::string( pad, ' ' ) + head + digits;
}

TEST( Format, IntegersAgainstNaiveModel )
{
    std::mt19937_64 random( 1 );
    for ( int round = 0; round < 20000; round++ )
    {
        QV_INT value = static_cast<QV_INT>( random() ) >> ( random() % 64 );
        QV_INT base = round % 3 == 0 ? 10 : static_cast<QV_INT>( 2 + random() % 35 );
        QV_INT width = static_cast<QV_INT>( random() % 80 );
        QV_FORMAT_FLAGS flags = static_cast<QV_FORMAT_FLAGS>( random() & 511 );
        ASSERT_EQ( takeUtf8( qvFormatEncodeInt( value, base, width, flags ) ),
                   naiveInt( value, base, width, flags ) )
            << value << " base " << base << " width " << width << " flags " << flags;
    }
    for ( uint64_t power = 1; power != 0; power = power > UINT64_MAX / 10 ? 0 : power * 10 )
        for ( uint64_t around : { power - 1, power, power + 1 } )
        {
            QV_INT value = static_cast<QV_INT>( around );
            EXPECT_EQ( takeUtf8( qvFormatEncodeInt( value, 10, 0, 0 ) ), std::to_string( value ) );
        }
}

TEST( Format, Reals )
{
    struct
    {
        const char *format;
        double value;
        const char *expected;
    } const cases[] = {
        { "%r", 1.5, "1.500000" },
        { "%.0r", 2.9, "2" },
        { "%.1r", 2.99, "2.9" },
        { "%.1r", -2.99, "-2.9" },
        { "%r", 0.0, "0.000000" },
        { "%r", -0.0, "0.000000" },
        { "%.2r", -0.25, "-0.25" },
        { "%_.2r", -0.25, "0.25" },
        { "%+.2r", 0.25, "+0.25" },
        { "% .2r", 0.25, " 0.25" },
        { "%08.2r", -1.5, "-0001.50" },
        { "%8.2r", -1.5, "   -1.50" },
        { "%-8.2r|", -1.5, "-1.50   |" },
        { "%.3!2r", 5.625, "101.101" },
        { "%#.2!16r", 255.5, "0xff.80" },
        { "%^#.2!16r", 255.75, "0XFF.C0" },
        { "%.1!36r", 35.5, "z.i" },
        { "%.1r", 9007199254740993.0 * 4.0, "36028797018963968.0" },
        { "%.0r", 1e15, "1000000000000000" },
        { "%.0r", 1e22, "10000000000000000000000" },
        { "%.2r", 1234567890123.25, "1234567890123.25" },
        { "%r", std::numeric_limits<double>::infinity(), "INF" },
        { "%r", -std::numeric_limits<double>::infinity(), "INF" },
        { "%+r", std::numeric_limits<double>::infinity(), "INF" },
        { "%05r", std::numeric_limits<double>::quiet_NaN(), "  NAN" },
        { "%-5r|", std::numeric_limits<double>::quiet_NaN(), "NAN  |" },
    };
    for ( const auto &row : cases )
        EXPECT_EQ( formatted( row.format, row.value ), row.expected ) << row.format << " of " << row.value;
    EXPECT_EQ( formatted( "%*.*!*r", 9_i, 2_i, 16_i, 10.5 ), "     a.80" );
}

// The digits are exact as long as the value with its decimals moved in front of the point is.
TEST( Format, RealsWithinPrecisionAreExact )
{
    std::mt19937_64 random( 2 );
    for ( int round = 0; round < 2000; round++ )
    {
        double value =
            static_cast<double>( static_cast<int64_t>( random() ) >> ( 30 + random() % 30 ) ) / 256.0;
        char expected[64];
        std::snprintf( expected, sizeof expected, "%.8f", value );
        EXPECT_EQ( takeUtf8( qvFormatEncodeReal( value, 10, 0, 8, 0 ) ), expected );
    }
}

TEST( Format, RealsOfAnySizeShowDigitsOnly )
{
    std::mt19937_64 random( 3 );
    for ( int round = 0; round < 3000; round++ )
    {
        double value =
            std::ldexp( static_cast<double>( random() ), static_cast<int>( random() % 1900 ) - 1000 );
        if ( !std::isfinite( value ) )
            continue;
        QV_INT base = static_cast<QV_INT>( 2 + random() % 35 );
        QV_INT precision = static_cast<QV_INT>( random() % 40 );
        std::string encoded = takeUtf8( qvFormatEncodeReal( value, base, 0, precision, 0 ) );
        size_t point = encoded.find( '.' );
        ASSERT_EQ( point == std::string::npos, precision == 0 );
        if ( precision > 0 )
        {
            ASSERT_EQ( encoded.size() - point - 1, static_cast<size_t>( precision ) );
        }
        double whole = 0.0;
        for ( char ch : encoded.substr( 0, point ) )
        {
            int digit = ch <= '9' ? ch - '0' : ch - 'a' + 10;
            ASSERT_GE( digit, 0 );
            ASSERT_LT( digit, base );
            whole = whole * static_cast<double>( base ) + digit;
        }
        if ( value >= 1.0 && value < 1e300 )
        {
            EXPECT_NEAR( whole / std::trunc( value ), 1.0, 1e-12 ) << encoded;
        }
    }
    // The largest finite value, with more decimals than a real's range.
    std::string largest = takeUtf8( qvFormatEncodeReal( std::numeric_limits<double>::max(), 10, 0, 400, 0 ) );
    EXPECT_EQ( largest.size(), 309u + 1 + 400 );
    EXPECT_EQ( largest.substr( 0, 12 ), "179769313486" );
}

TEST( Format, Texts )
{
    Local<QV_STRING> abc = text( "abc" );
    Local<QV_STRING> wide = text( "a\u00DF\u20AC\U0001F600" );
    QV_STRING *none = nullptr;
    EXPECT_EQ( formatted( "%s", (QV_STRING *)abc ), "abc" );
    EXPECT_EQ( formatted( "%.2s", (QV_STRING *)abc ), "ab" );
    EXPECT_EQ( formatted( "[%.0s]", (QV_STRING *)abc ), "[]" );
    EXPECT_EQ( formatted( "%.9s", (QV_STRING *)abc ), "abc" );
    EXPECT_EQ( formatted( "%5s", (QV_STRING *)abc ), "  abc" );
    EXPECT_EQ( formatted( "%-5s|", (QV_STRING *)abc ), "abc  |" );
    EXPECT_EQ( formatted( "%05s", (QV_STRING *)abc ), "  abc" );
    EXPECT_EQ( formatted( "%5.1s", (QV_STRING *)abc ), "    a" );
    EXPECT_EQ( formatted( "%.*s", -3_i, (QV_STRING *)abc ), "abc" );
    EXPECT_EQ( formatted( "%6s|", (QV_STRING *)wide ), "  a\u00DF\u20AC\U0001F600|" );
    EXPECT_EQ( formatted( "%s", none ), "null" );
    EXPECT_EQ( formatted( "%.2s", none ), "nu" );
    EXPECT_EQ( formatted( "%6s", none ), "  null" );
    EXPECT_EQ( formatted( "[%#s]", none ), "[]" );
    EXPECT_EQ( formatted( "[%#3s]", none ), "[   ]" );
    EXPECT_EQ( formatted( "[%#~s]", none ), "[]" );
    EXPECT_EQ( formatted( "%~o", none ), "null" );
    EXPECT_EQ( formatted( "%~lc%~lw", none, none ), "nullnull" );
    EXPECT_EQ( formatted( "%lC|", none, 5_i ), "null|" );
    EXPECT_EQ( formatted( "%lW|", none, 5_i ), "null|" );
}

TEST( Format, ForeignTexts )
{
    EXPECT_EQ( formatted( "%lc|", "ab\u20AC" ), "ab\u20AC|" );
    EXPECT_EQ( formatted( "%6lc|", "ab\u20AC" ), "   ab\u20AC|" );
    EXPECT_EQ( formatted( "%-6.2lc|", "ab\u20AC" ), "ab    |" );
    EXPECT_EQ( formatted( "%4.1lc|", "\u20ACab" ), "   \u20AC|" );
    EXPECT_EQ( formatted( "[%lc]", "" ), "[]" );
    EXPECT_EQ( formatted( "[%3lc]", "" ), "[   ]" );
    EXPECT_EQ( formatted( "%lc", "a\xFFz" ), "a\uFFFDz" );
    EXPECT_EQ( formatted( "%lC|", "abcdef", 3_i ), "abc|" );
    EXPECT_EQ( formatted( "%lC|", "abcdef", -1_i ), "abcdef|" );
    EXPECT_EQ( formatted( "%lw|%5lw", L"a\u20AC", L"xy" ), "a\u20AC|   xy" );
    EXPECT_EQ( formatted( "%.1lW|", L"abcdef", 3_i ), "a|" );
    std::string longText( 500, 'x' );
    EXPECT_EQ( formatted( "<%lc>", longText.c_str() ), "<" + longText + ">" );
    EXPECT_EQ( formatted( "%~lc", qvMemDupCstr( "owned", -1 ) ), "owned" );
    EXPECT_EQ( formatted( "%~4.2lC", qvMemDupCstr( "owned", -1 ), 3_i ), "  ow" );
    EXPECT_EQ( formatted( "%~lw", qvMemDup( L"wide", sizeof L"wide" ) ), "wide" );
}

TEST( Format, OwnedObjectsAreReleasedOnce )
{
    Local<QV_STRING> held = text( "held" );
    EXPECT_EQ( formatted( "%~s", qv::retained( (QV_STRING *)held ) ), "held" );
    EXPECT_EQ( QV_REF_RETAIN_COUNT( (QV_STRING *)held ), 1u );
    Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( 12 ) );
    qvBoxedIntRetain( boxed );
    EXPECT_EQ( formatted( "%~5o", qvBoxedIntObj( boxed ) ), "   12" );
    EXPECT_EQ( QV_REF_RETAIN_COUNT( qvBoxedIntObj( boxed ) ), 1u );
    EXPECT_EQ(
        formatted( "%~s=%~s", qvStringCreateFromCstr( "key", -1 ), qvStringCreateFromCstr( "value", -1 ) ),
        "key=value" );
    EXPECT_EQ( formatted( "%~-*s %i", 6_i, qvStringCreateFromCstr( "abc", -1 ), 7_i ), "abc    7" );
    EXPECT_EQ( formatted( "%1m%~o", qvBoxedIntCreate( 5 ) ), "\t5" );
}

TEST( Format, OtherWords )
{
    EXPECT_EQ( formatted( "%b %b", QV_TRUE, QV_FALSE ), "true false" );
    EXPECT_EQ( formatted( "%^b %^6b %-^6b|", QV_TRUE, QV_FALSE, QV_TRUE ), "TRUE  FALSE TRUE  |" );
    EXPECT_EQ( formatted( "%+#06b", 7 ), "  true" );
    EXPECT_EQ( formatted( "%c%3c%-3c|", U'a', U'\u20AC', U'\x1F600' ), "a  \u20AC\U0001F600  |" );
    EXPECT_EQ( formatted( "%1m" ), "\t" );
    EXPECT_EQ( formatted( "[%3.32m]" ), "[   ]" );
    EXPECT_EQ( formatted( "[%0m%m]" ), "[]" );
    EXPECT_EQ( formatted( "%*.*m", 3_i, 0x20AC_i ), "\u20AC\u20AC\u20AC" );
    EXPECT_EQ( formatted( "only text%#%" ), "only text" );
    EXPECT_EQ( formatted( "100%% of %i%%", 5_i ), "100% of 5%" );
}

TEST( Format, LongResultsGrow )
{
    std::string literal( 150, 'l' );
    std::string format = literal + "%200i" + literal + "%-100b|";
    std::string expected =
        literal + std::string( 199, ' ' ) + "7" + literal + "true" + std::string( 96, ' ' ) + "|";
    EXPECT_EQ( formatted( format.c_str(), 7_i, QV_TRUE ), expected );
}

TEST( Format, SharedDestinationsStayWhole )
{
    Local<QV_STRING> before = text( "abc" );
    Local<QV_STRING> dest = Local<QV_STRING>::share( before );
    qv::formatAppendInt( dest.edit(), 42, 10, 5, 0 );
    qv::formatAppendReal( dest.edit(), 0.5, 10, 0, 1, 0 );
    qv___FormatEncodeBase( dest.edit(), 36, QV_FORMAT_FLAG_BASENUMERIC );
    EXPECT_EQ( toUtf8( dest ), "abc   420.536:" );
    EXPECT_EQ( toUtf8( before ), "abc" );
}

TEST( Format, Encoders )
{
    const QV_CHAR chars[] = { 'a', 0x20AC };
    EXPECT_EQ( takeUtf8( qvFormatEncodeChars( chars, 2, 4, QV_FORMAT_FLAG_ZEROPAD ) ), "  a\u20AC" );
    EXPECT_EQ( takeUtf8( qvFormatEncodeChars( chars, 2, 4, QV_FORMAT_FLAG_LEFTALIGN ) ), "a\u20AC  " );
    EXPECT_EQ( takeUtf8( qvFormatEncodeChars( nullptr, 0, 0, 0 ) ), "" );
    EXPECT_EQ( takeUtf8( qvFormatEncodeBool( 5, 6, QV_FORMAT_FLAG_UPPERCASE ) ), "  TRUE" );
    EXPECT_EQ( takeUtf8( qvFormatEncodeReal( 1.5, 10, 0, -1, 0 ) ), "1.500000" );
    EXPECT_EQ( qv___FormatEncodeBase( nullptr, 7, QV_FORMAT_FLAG_BASEMNEMONIC ), 2 );
    EXPECT_EQ( qv___FormatEncodeBase( nullptr, 10, QV_FORMAT_FLAG_BASENUMERIC ), 0 );
}

TEST( Format, Flags )
{
    struct
    {
        QV_FORMAT_FLAGS flags, expected;
        const char *names;
    } const cases[] = {
        { 0, 0, "" },
        { 3, 1, "QV_FORMAT_FLAG_LEFTALIGN" },
        { 4 | 8 | 16, 4, "QV_FORMAT_FLAG_NOSIGN" },
        { 8 | 16, 8, "QV_FORMAT_FLAG_PLUSPOS" },
        { 64 | 128, 64, "QV_FORMAT_FLAG_BASEMNEMONIC" },
        { -512, 0, "" },
        { -1, 1 | 4 | 32 | 64 | 256,
          "QV_FORMAT_FLAG_LEFTALIGN|QV_FORMAT_FLAG_NOSIGN|QV_FORMAT_FLAG_UPPERCASE|"
          "QV_FORMAT_FLAG_BASEMNEMONIC|QV_FORMAT_FLAG_BASEDECIMAL" },
    };
    for ( const auto &row : cases )
    {
        EXPECT_EQ( qvFormatFlagsNormalize( row.flags ), row.expected );
        EXPECT_EQ( takeUtf8( qvFormatFlagsToString( row.flags ) ), row.names );
        EXPECT_EQ( qvFormatFlagsFromString( text( row.names ) ), row.expected );
    }
    EXPECT_EQ( qvFormatFlagsFromString( text( " QV_FORMAT_FLAG_ZEROPAD |nonsense| 0x20 " ) ), 2 | 32 );
}

TEST( FormatDeath, FaultsOfTheProgram )
{
    EXPECT_DEATH( formatted( "" ), "A format string must contain at least a single conversion." );
    EXPECT_DEATH( formatted( "100%%" ), "A format string must contain at least a single conversion." );
    EXPECT_DEATH( formatted( "abc %" ), "missing conversion" );
    EXPECT_DEATH( formatted( "%-5.2!3" ), "missing conversion" );
    EXPECT_DEATH( formatted( "%d", 1_i ), "invalid conversion" );
    EXPECT_DEATH( formatted( "%l" ), "invalid conversion" );
    EXPECT_DEATH( formatted( "%lx" ), "invalid conversion" );
    EXPECT_DEATH( formatted( "%i %", 1_i ), "missing conversion" );
    EXPECT_DEATH( formatted( "%.*A", 100_i, 101_i ), "value <= maximum" );
    EXPECT_DEATH( formatted( "%.*A", 100_i, -1_i ), "value >= 0" );
    EXPECT_DEATH( formatted( "%.*A", -1_i, 0_i ), "maximum >= 0" );
    EXPECT_DEATH( formatted( "%*i", -1_i, 0_i ), "minWidth >= 0" );
    EXPECT_DEATH( formatted( "%*lc", -1_i, "x" ), "width >= 0" );
    EXPECT_DEATH( formatted( "%!1i", 0_i ), "base >= 2" );
    EXPECT_DEATH( formatted( "%!37i", 0_i ), "base <= 36" );
    EXPECT_DEATH( formatted( "%.*r", -2_i, 1.0 ), "precision >= -1" );
    EXPECT_DEATH( formatted( "%*m", -1_i ), "width >= 0" );
    EXPECT_DEATH( formatted( "%1.*m", 0x110000_i ), "QV_CHAR_MAX" );
    EXPECT_DEATH( formatted( "%c", 0x110000 ), "QV_CHAR_OK" );
}

} // namespace
