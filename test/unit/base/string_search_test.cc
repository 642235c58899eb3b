// Comparison, search and splitting against naive models and tables.

#include "support/test.hh"

using namespace test;

namespace
{

using Text = std::u32string;
using Owned = Local<QV_STRING>;

Text randomText( std::mt19937 &random, size_t length, unsigned letters )
{
    Text chars( length, U'a' );
    for ( char32_t &ch : chars )
        ch = U'a' + random() % letters;
    return chars;
}

QV_INT asIndex( size_t place )
{
    return place == Text::npos ? -1 : static_cast<QV_INT>( place );
}

// Lengths around the block sizes, needles at every distance from the ends, few letters so that there are many near misses.
TEST( StringSearch, SearchMatchesTheModel )
{
    std::mt19937 random( 11 );
    for ( int round = 0; round < 3000; round++ )
    {
        Text chars = randomText( random, random() % 70, 1 + random() % 3 );
        Text wanted = randomText( random, 1 + random() % 5, 1 + random() % 3 );
        Owned qvs = text( chars );
        Owned sub = text( wanted );
        size_t offset = random() % ( chars.size() + 1 );
        auto qvOffset = static_cast<QV_INT>( offset );
        ASSERT_EQ( asIndex( chars.find( wanted, offset ) ), qvStringFind( qvs, qvOffset, sub ) );
        ASSERT_EQ( asIndex( chars.find( wanted[0], offset ) ), qvStringFindChar( qvs, qvOffset, wanted[0] ) );
        ASSERT_EQ( asIndex( chars.rfind( wanted, offset ) ), qvStringFindFromRight( qvs, qvOffset, sub ) );
        ASSERT_EQ( asIndex( chars.rfind( wanted ) ), qvStringFindFromRight( qvs, -1, sub ) );
        size_t below = offset == 0 ? Text::npos : chars.rfind( wanted[0], offset - 1 );
        ASSERT_EQ( asIndex( below ), qvStringFindCharFromRight( qvs, qvOffset, wanted[0] ) );
        ASSERT_EQ( chars.starts_with( wanted ), qvStringBeginsWith( qvs, sub ) != 0 );
        ASSERT_EQ( chars.ends_with( wanted ), qvStringEndsWith( qvs, sub ) != 0 );
    }
}

TEST( StringSearch, BackwardSearchesTreatTheOffsetDifferently )
{
    Owned qvs = text( "abca" );
    EXPECT_EQ( -1, qvStringFindCharFromRight( qvs, 0, 'a' ) );
    EXPECT_EQ( 0, qvStringFindFromRightCstr( qvs, 0, "a", 1 ) );
    EXPECT_EQ( 0, qvStringFindCharFromRight( qvs, 3, 'a' ) );
    EXPECT_EQ( 3, qvStringFindFromRightCstr( qvs, 3, "a", 1 ) );
    EXPECT_EQ( 3, qvStringFindCharFromRight( qvs, -1, 'a' ) );
    EXPECT_EQ( -1, qvStringFindFromRightWcstr( qvs, -1, L"abcab", -1 ) );
}

int sign( QV_INT value )
{
    return ( value > 0 ) - ( value < 0 );
}

TEST( StringSearch, OrderIsThatOfTheCodePoints )
{
    std::mt19937 random( 13 );
    for ( size_t length : { 0, 1, 3, 4, 5, 8, 255, 256, 257, 600 } )
        for ( int round = 0; round < 50; round++ )
        {
            Text chars = randomText( random, length, 2 );
            Text other = chars;
            if ( length > 0 && round % 3 != 0 )
                other[random() % length] = round % 2 ? 0x10FFFF : 0x1;
            if ( round % 4 == 0 )
                other.resize( random() % ( length + 1 ) );
            Owned qvsA = text( chars );
            Owned qvsB = text( other );
            ASSERT_EQ( sign( chars.compare( other ) ), qvStringCompare( qvsA, qvsB ) );
            ASSERT_EQ( -sign( chars.compare( other ) ), qvStringCompare( qvsB, qvsA ) );
            ASSERT_EQ( chars == other, qvStringEquals( qvsA, qvsB ) != 0 );
            ASSERT_EQ( chars == other, qv::stringEquals( qvsA, qvsB ) );
        }
    Owned lastOfPlane = text( U"\uFFFF" );
    Owned nextPlane = text( U"\U00010000" );
    EXPECT_EQ( -1, qvStringCompare( lastOfPlane, nextPlane ) );
    // A string may hold anything for as long as nobody has cleaned it; the order is unsigned.
    Owned wild = text( "a" );
    *qvStringMutableBacking( wild.edit() ) = 0xFFFFFFFF;
    EXPECT_EQ( 1, qvStringCompare( wild, nextPlane ) );
}

TEST( StringSearch, EqualityInAllForms )
{
    Owned qvs = text( "gr\u00FC\u00DFe" );
    const QV_CHAR chars[] = { 'g', 'r', 0xFC, 0xDF, 'e' };
    EXPECT_TRUE( qvStringEqualsChars( qvs, chars, 5 ) );
    EXPECT_FALSE( qvStringEqualsChars( qvs, chars, 4 ) );
    EXPECT_TRUE( qvStringEqualsCstr( qvs, "gr\u00FC\u00DFe!", 7 ) );
    EXPECT_FALSE( qvStringEqualsCstr( qvs, "gr\u00FC\u00DFe!", -1 ) );
    EXPECT_TRUE( qvStringEqualsWcstr( qvs, L"gr\u00FC\u00DFe", -1 ) );
    EXPECT_TRUE( qvStringBeginsWithCstr( qvs, "gr\u00FC", -1 ) );
    EXPECT_TRUE( qvStringBeginsWithCstr( qvs, nullptr, 0 ) );
    EXPECT_TRUE( qvStringEndsWithWcstr( qvs, L"\u00DFe", -1 ) );
    EXPECT_TRUE( qvStringEndsWithChar( qvs, 'e' ) );
    EXPECT_FALSE( qvStringEqualsChar( qvs, 'g' ) );
    std::string many( 1000, 'm' );
    EXPECT_TRUE( qvStringEqualsCstr( text( many ), many.c_str(), -1 ) );
}

// ---- Splitting ----

std::vector<std::string> parts( QV_VECTOR *given )
{
    Local<QV_VECTOR> vec( given );
    std::vector<std::string> result;
    for ( QV_INT idx = 0; idx < qv::vectorLength( vec ); idx++ )
        result.push_back( toUtf8( qvStringFrom( qv::vectorAt( vec, idx ) ) ) );
    return result;
}

struct SplitRow
{
    const char *source, *separator;
    QV_INT maxParts;
    std::vector<std::string> expected;
};

TEST( StringSplit, KeepsEmptyParts )
{
    const SplitRow rows[] = {
        { "a,,b,", ",", -1, { "a", "", "b", "" } },
        { "a,,b,", ",", 2, { "a", ",b," } },
        { "a,,b,", ",", 1, { "a,,b," } },
        { "a,,b,", ",", 4, { "a", "", "b", "" } },
        { "a,,b,", ",,", -1, { "a", "b," } },
        { ",", ",", -1, { "", "" } },
        { ",,,", ",,", -1, { "", "," } },
        { "", ",", -1, { "" } },
        { "abc", ",", -1, { "abc" } },
        { "a--b--", "--", 2, { "a", "b--" } },
        { "a\u2192b", "\u2192", 3, { "a", "b" } },
    };
    for ( const SplitRow &row : rows )
    {
        Owned qvs = text( row.source );
        Owned sep = text( row.separator );
        EXPECT_EQ( row.expected, parts( qvStringSplit( qvs, sep, row.maxParts ) ) ) << row.source;
        EXPECT_EQ( row.expected, parts( qvStringSplitCstr( qvs, row.separator, -1, row.maxParts ) ) )
            << row.source;
        if ( qvStringLength( sep ) == 1 )
        {
            QV_CHAR ch = qvStringCharAt( sep, 0 );
            EXPECT_EQ( row.expected, parts( qvStringSplitChar( qvs, ch, row.maxParts ) ) ) << row.source;
        }
    }
    EXPECT_DEATH( qvStringSplit( qv___StringEmpty, qv___StringEmpty, -1 ), "sep->length > 0" );
    EXPECT_DEATH( qvStringSplitChar( qv___StringEmpty, ',', 0 ), "maxParts" );
}

TEST( StringSplit, WhiteSpaceMakesNoEmptyParts )
{
    const SplitRow rows[] = {
        { "  a \t b\u3000c ", "", -1, { "a", "b", "c" } },
        { "  a \t b\u3000c ", "", 1, { "a \t b\u3000c" } },
        { "a b  c d", "", 2, { "a", "b  c d" } },
        { "a b  c d", "", 3, { "a", "b", " c d" } },
        { "a b", "", 2, { "a", "b" } },
        { " \n\t ", "", -1, { "" } },
        { "", "", 1, { "" } },
        { "abc", "", 5, { "abc" } },
    };
    for ( const SplitRow &row : rows )
        EXPECT_EQ( row.expected, parts( qvStringSplitWhitespace( text( row.source ), row.maxParts ) ) )
            << row.source;
}

} // namespace
