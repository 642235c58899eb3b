// Conversions, case, clean text, normal forms and scanning.

#include "support/test.hh"

#include <qv/unicode/qv_unicode_lookups.hh>

using namespace test;

namespace
{

using Text = std::u32string;
using Owned = Local<QV_STRING>;

TEST( StringConvert, ArraysBelongToTheCaller )
{
    QV_INT length = 0;
    char *ascii = qvStringConvertToAscii( text( "a\u00FC\U0001F600" ), QV_TRUE, &length );
    EXPECT_STREQ( "a??", ascii );
    EXPECT_EQ( 4, length );
    qvMemFree( ascii );
    Owned withZero = text( std::u32string_view( U"a\0b", 3 ) );
    wchar_t *wide = qvStringConvertToWcstr( withZero, QV_TRUE, nullptr );
    EXPECT_EQ( std::wstring( L"a\uFFFDb" ), wide );
    qvMemFree( wide );
    char *bytes = qvStringConvertToCstr( withZero, QV_FALSE, &length );
    EXPECT_EQ( std::string( "a\0b", 3 ), std::string( bytes, static_cast<size_t>( length ) ) );
    qvMemFree( bytes );
}

TEST( StringConvert, NothingIsNull )
{
    QV_INT length = -7;
    EXPECT_EQ( nullptr, qvStringConvertToUtf8( qv___StringEmpty, QV_FALSE, &length ) );
    EXPECT_EQ( 0, length );
    char *terminator = qvStringConvertToUtf8( qv___StringEmpty, QV_TRUE, &length );
    ASSERT_NE( nullptr, terminator );
    EXPECT_EQ( 1, length );
    EXPECT_EQ( 0, *terminator );
    qvMemFree( terminator );
}

TEST( StringConvert, TextRoundsThroughUtf8AtEveryLength )
{
    std::mt19937 random( 17 );
    for ( size_t length = 0; length < 400; length += 1 + random() % 3 )
    {
        Text chars( length, U' ' );
        for ( char32_t &ch : chars )
            ch = random() % 3 ? random() % 0x80 : random() % 0xD800;
        Owned qvs = text( chars );
        std::string bytes = toUtf8( qvs );
        ASSERT_EQ( chars, toU32( text( bytes ) ) );
        Owned appended = text( "<" );
        qvStringAppendCstr( appended.edit(), bytes.data(), lengthOf( bytes ) );
        ASSERT_EQ( U"<" + chars, toU32( appended ) );
    }
}

TEST( StringConvert, BadBytesBecomeReplacements )
{
    EXPECT_EQ( Text( U"a\uFFFDb" ), toU32( text( "a\377b" ) ) );
    EXPECT_EQ( Text( U"a\uFFFDb" ), toU32( Owned( qvStringCreateFromAscii( "a\200b", -1 ) ) ) );
    const wchar_t wide[] = { L'a', static_cast<wchar_t>( 0x110000 ), 0 };
    EXPECT_EQ( Text( U"a\uFFFD" ), toU32( Owned( qvStringCreateFromWcstr( wide, -1 ) ) ) );
}

// ---- Case ----

using Lookup = const QV_CHAR *(*)( QV_CHAR ch, QV_INT *mapLength );

Text naivelyMapped( const Text &chars, Lookup lookup )
{
    Text mapped;
    for ( char32_t ch : chars )
    {
        QV_INT mapLength = 0;
        const QV_CHAR *map = lookup( ch, &mapLength );
        if ( map )
            mapped.append( map, map + mapLength );
        else
            mapped.push_back( ch );
    }
    return mapped;
}

struct CaseFunction
{
    void ( *map )( QV_STRING **qvs );
    Lookup lookup;
};

const CaseFunction caseFunctions[] = { { qvStringToUpper, qv___UnicodeUpperCaseDbLookup },
                                       { qvStringToLower, qv___UnicodeLowerCaseDbLookup },
                                       { qvStringToCaseFold, qv___UnicodeCaseFoldDbLookup } };

// All code points in one text, so that the expanding ones grow it over and over.
TEST( StringCase, EveryCodePointMapsAsItsLookup )
{
    Text all;
    for ( char32_t ch = 0; ch <= QV_CHAR_MAX; ch++ )
        all.push_back( ch );
    for ( const CaseFunction &function : caseFunctions )
    {
        Owned qvs = text( all );
        function.map( qvs.edit() );
        EXPECT_TRUE( naivelyMapped( all, function.lookup ) == toU32( qvs ) );
    }
}

TEST( StringCase, RandomTextsMapAsTheirLookups )
{
    static const char32_t letters[] =
        U"abzAZ@[`{059 \u00DF\u0149\u0130\u1E9E\uFB03\u03A3\u03C2\u0410\u0430\u4E00\u1F80";
    std::mt19937 random( 19 );
    for ( int round = 0; round < 2000; round++ )
    {
        Text chars( random() % ( round % 10 ? 20 : 200 ), U'a' );
        for ( char32_t &ch : chars )
            ch = letters[random() % ( round % 2 ? 12 : QV_SIZEOF_ARRAY( letters ) - 1 )];
        for ( const CaseFunction &function : caseFunctions )
        {
            Owned qvs = text( chars );
            Owned other = Owned::share( qvs );
            function.map( qvs.edit() );
            ASSERT_EQ( naivelyMapped( chars, function.lookup ), toU32( qvs ) );
            ASSERT_EQ( chars, toU32( other ) );
        }
    }
}

TEST( StringCase, FoldedComparison )
{
    const struct
    {
        const char *sideA, *sideB;
        QV_INT order;
    } rows[] = {
        { "Stra\u00DFe", "STRASSE", 0 },
        { "\uFB03x", "FFIX", 0 },
        { "ffi", "\uFB03a", -1 },
        { "\u00DF", "s", 1 },
        { "\u03A3", "\u03C2", 0 },
        { "abc", "ABD", -1 },
        { "", "", 0 },
        { "", "a", -1 },
        { "Z", "a", 1 },
        { "\u0130", "i\u0307", 0 },
        { "\uFFFF", "\U00010428", -1 },
    };
    for ( const auto &row : rows )
    {
        Owned qvsA = text( row.sideA );
        Owned qvsB = text( row.sideB );
        EXPECT_EQ( row.order, qvStringCompareCaseFold( qvsA, qvsB ) ) << row.sideA;
        EXPECT_EQ( -row.order, qvStringCompareCaseFold( qvsB, qvsA ) ) << row.sideA;
        EXPECT_EQ( row.order == 0, qvStringEqualsCaseFold( qvsA, qvsB ) != 0 ) << row.sideA;
        EXPECT_EQ( row.order == 0, qvStringEqualsCaseFoldCstr( qvsA, row.sideB, -1 ) != 0 ) << row.sideA;
    }
    EXPECT_TRUE( qvStringEqualsCharCaseFold( text( "SS" ), 0xDF ) );
    EXPECT_TRUE( qvStringEqualsCaseFoldWcstr( text( "abC" ), L"ABc", -1 ) );
}

// ---- Clean text and normal forms ----

TEST( StringClean, SurrogatesJoinOrVanish )
{
    Owned qvs = text( Text( { U'a', 0xD83D, 0xDE00, 0xD800, U'b', 0xDC00 } ) );
    Owned other = Owned::share( qvs );
    qvStringSanitize( qvs.edit() );
    EXPECT_EQ( Text( U"a\U0001F600b" ), toU32( qvs ) );
    EXPECT_EQ( 6, qvStringLength( other ) );
    *qvStringMutableBacking( qvs.edit() ) = 0x110000;
    qvStringSanitize( qvs.edit() );
    EXPECT_EQ( Text( U"\U0001F600b" ), toU32( qvs ) );
}

TEST( StringClean, NormalForms )
{
    Owned qvs = text( "e\u0301\uFB01" );
    Owned other = Owned::share( qvs );
    qvStringNormalize( qvs.edit(), QV_UNICODE_NORMAL_FORM_C );
    EXPECT_EQ( "\u00E9\uFB01", toUtf8( qvs ) );
    qvStringNormalize( qvs.edit(), QV_UNICODE_NORMAL_FORM_KD );
    EXPECT_EQ( "e\u0301fi", toUtf8( qvs ) );
    EXPECT_EQ( "e\u0301\uFB01", toUtf8( other ) );
    for ( QV_INT form = QV_UNICODE_NORMAL_FORM_C; form <= QV_UNICODE_NORMAL_FORM_KD; form++ )
    {
        Owned pair = text( Text( { U'a', 0xD83D, 0xDE00, U'b', 0xDC00 } ) );
        qvStringNormalize( pair.edit(), form );
        EXPECT_EQ( Text( U"a\U0001F600b" ), toU32( pair ) ) << form;
        Owned lone = text( Text( { U'a', 0xD800 } ) );
        qvStringNormalize( lone.edit(), form );
        EXPECT_EQ( Text( U"a" ), toU32( lone ) ) << form;
    }
    EXPECT_DEATH( qvStringNormalize( qvs.edit(), 4 ), "QV_UNICODE_NORMAL_FORM_OK" );
}

// ---- Scanning ----

TEST( StringScan, TheRangeLimitsWhatIsRead )
{
    Owned qvs = text( "x1234true2.5" );
    QV_INT value = 0, consumed = 0;
    QV_BOOL truth = QV_FALSE;
    double real = 0;
    EXPECT_TRUE( qvStringScanInt( qvs, 1, -1, 10, &value, &consumed ) && value == 1234 && consumed == 4 );
    EXPECT_TRUE( qvStringScanInt( qvs, 2, 2, 10, &value, &consumed ) && value == 23 );
    EXPECT_FALSE( qvStringScanInt( qvs, 12, 100, 10, &value, &consumed ) );
    EXPECT_TRUE( qvStringScanBool( qvs, 5, 4, QV_FALSE, &truth, &consumed ) && truth );
    EXPECT_FALSE( qvStringScanBool( qvs, 5, 3, QV_FALSE, &truth, &consumed ) );
    EXPECT_TRUE( qvStringScanReal( qvs, 9, -1, 10, &real, &consumed ) && real == 2.5 && consumed == 3 );
    EXPECT_DEATH( qvStringScanInt( qvs, 13, -1, 10, &value, &consumed ), "offset <= qvs->length" );
}

} // namespace
