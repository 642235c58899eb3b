#include "support/test.hh"
#include "unicode/facts.hh"

#include <qv/unicode/qv_unicode_db.hh>

namespace
{

using namespace test;

using CaseLookup = const QV_CHAR *(*)( QV_CHAR, QV_INT * );

// Compares one case mapping with the facts for all code points: the lookup, and the short way of bulk work.
void expectCaseMapping( const char *name, CaseLookup lookup, QV_CHAR ( *shortWay )( QV_CHAR ),
                        const std::map<char32_t, std::u32string> &wanted )
{
    SCOPED_TRACE( name );
    for ( char32_t ch = 0; ch < codeEnd; ch++ )
    {
        QV_INT length = -1;
        const QV_CHAR *chars = lookup( ch, &length );
        auto found = wanted.find( ch );
        if ( found == wanted.end() )
        {
            ASSERT_EQ( nullptr, chars ) << std::hex << +ch;
            ASSERT_EQ( 0, length ) << std::hex << +ch;
            ASSERT_EQ( ch, shortWay( ch ) ) << std::hex << +ch;
            continue;
        }
        ASSERT_NE( nullptr, chars ) << std::hex << +ch;
        ASSERT_EQ( chars, lookup( ch, nullptr ) );
        ASSERT_EQ( found->second, std::u32string( chars, chars + length ) ) << std::hex << +ch;
        ASSERT_EQ( length == 1 ? chars[0] : qv::manyChars, shortWay( ch ) ) << std::hex << +ch;
    }
}

// The digit of a base as the interface tells it, by comparisons alone.
QV_INT plainDigit( char32_t ch, QV_INT base )
{
    QV_INT value = -1;
    if ( base <= 10 )
        value = facts().decimal[ch];
    else
    {
        if ( base <= 16 && ch >= 0xFF01 && ch <= 0xFF5E )
            ch = ch - 0xFF01 + 0x21;
        if ( ch >= '0' && ch <= '9' )
            value = ch - '0';
        else if ( ch >= 'a' && ch <= 'z' )
            value = ch - 'a' + 10;
        else if ( ch >= 'A' && ch <= 'Z' )
            value = ch - 'A' + 10;
    }
    return value < base ? value : -1;
}

} // namespace

TEST( UnicodeLookups, caseMappingsOfAllCodePoints )
{
    expectCaseMapping( "upper", qv___UnicodeUpperCaseDbLookup, qv::upperCaseOf, facts().upper );
    expectCaseMapping( "lower", qv___UnicodeLowerCaseDbLookup, qv::lowerCaseOf, facts().lower );
    expectCaseMapping( "fold", qv___UnicodeCaseFoldDbLookup, qv::caseFoldOf, facts().fold );
}

TEST( UnicodeLookups, whiteSpaceNewLinesAndDigitsOfAllCodePoints )
{
    const std::set<char32_t> newLines = { 10, 11, 12, 13, 133, 8232, 8233 };
    for ( char32_t ch = 0; ch < codeEnd; ch++ )
    {
        ASSERT_EQ( facts().white[ch], qvUnicodeIsWhiteSpace( ch ) != QV_FALSE ) << std::hex << +ch;
        ASSERT_EQ( newLines.count( ch ) > 0, qvUnicodeIsNlf( ch ) != QV_FALSE ) << std::hex << +ch;
        ASSERT_EQ( facts().decimal[ch], qvUnicodeDecimalDigitValue( ch ) ) << std::hex << +ch;
        ASSERT_EQ( plainDigit( ch, 16 ), qvUnicodeHexadecimalDigitValue( ch ) ) << std::hex << +ch;
    }
}

TEST( UnicodeLookups, digitsOfEveryBase )
{
    for ( QV_INT base = 2; base <= 36; base++ )
        for ( char32_t ch = 0; ch < codeEnd; ch = ch == 0x2FFF ? 0xFE00 : ch + 1 )
            ASSERT_EQ( plainDigit( ch, base ), qvUnicodeBaseNDigitValue( ch, base ) )
                << std::hex << +ch << " in base " << base;
}

TEST( UnicodeLookups, valuesOutsideStopTheProcess )
{
    EXPECT_DEATH( qvUnicodeIsWhiteSpace( 0x110000 ), "QV_CHAR_OK\\( ch \\)" );
    EXPECT_DEATH( qvUnicodeDecimalDigitValue( 0xFFFFFFFF ), "QV_CHAR_OK\\( ch \\)" );
    EXPECT_DEATH( qvUnicodeGenc( 0x110000 ), "QV_CHAR_OK\\( ch \\)" );
    EXPECT_DEATH( qvUnicodeBaseNDigitValue( '0', 1 ), "base >= 2" );
    EXPECT_DEATH( qvUnicodeBaseNDigitValue( '0', 37 ), "base <= 36" );
}
