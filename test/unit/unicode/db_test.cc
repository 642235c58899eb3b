#include "support/test.hh"
#include "unicode/facts.hh"

#include <qv/unicode/qv_unicode_db.hh>

namespace
{

using namespace test;

// The texts of the values 0 to last of an enumeration, by value.
std::vector<std::string> textsOf( QV_STRING *( *textOf )( QV_INT ), QV_INT last, QV_INT leftOut = -1 )
{
    std::vector<std::string> texts;
    for ( QV_INT value = 0; value <= last; value++ )
        texts.push_back( value == leftOut ? "" : takeUtf8( textOf( value ) ) );
    return texts;
}

struct ClassTest
{
    QV_UNICODE_CCCV cccv;
    const char *name;
    QV_BOOL ( *test )( QV_CHAR );
};

const ClassTest classTests[] = {
    { 0, "SPACING", qvUnicodeHasCccvSpacing },
    { 1, "OVERLAYS", qvUnicodeHasCccvOverlays },
    { 7, "NUKTAS", qvUnicodeHasCccvNuktas },
    { 8, "HIRAGANA", qvUnicodeHasCccvHiragana },
    { 9, "VIRAMAS", qvUnicodeHasCccvViramas },
    { 10, "FIXED_POS_START", qvUnicodeHasCccvFixedPosStart },
    { 199, "FIXED_POS_END", qvUnicodeHasCccvFixedPosEnd },
    { 200, "BELOW_LEFT_ATTACHED", qvUnicodeHasCccvBelowLeftAttached },
    { 202, "BELOW_ATTACHED", qvUnicodeHasCccvBelowAttached },
    { 204, "BELOW_RIGHT_ATTACHED", qvUnicodeHasCccvBelowRightAttached },
    { 208, "LEFT_ATTACHED", qvUnicodeHasCccvLeftAttached },
    { 210, "RIGHT_ATTACHED", qvUnicodeHasCccvRightAttached },
    { 212, "ABOVE_LEFT_ATTACHED", qvUnicodeHasCccvAboveLeftAttached },
    { 214, "ABOVE_ATTACHED", qvUnicodeHasCccvAboveAttached },
    { 216, "ABOVE_RIGHT_ATTACHED", qvUnicodeHasCccvAboveRightAttached },
    { 218, "BELOW_LEFT", qvUnicodeHasCccvBelowLeft },
    { 220, "BELOW", qvUnicodeHasCccvBelow },
    { 222, "BELOW_RIGHT", qvUnicodeHasCccvBelowRight },
    { 224, "LEFT", qvUnicodeHasCccvLeft },
    { 226, "RIGHT", qvUnicodeHasCccvRight },
    { 228, "ABOVE_LEFT", qvUnicodeHasCccvAaboveLeft },
    { 230, "ABOVE", qvUnicodeHasCccvAbove },
    { 232, "ABOVE_RIGHT", qvUnicodeHasCccvAboveRight },
    { 233, "DOUBLE_BELOW", qvUnicodeHasCccvDoubleBelow },
    { 234, "DOUBLE_ABOVE", qvUnicodeHasCccvDoubleAbove },
    { 240, "BELOW_IOTA", qvUnicodeHasCccvBelowIota },
};

// In the order of the categories, and then of their groups.
using CharTest = QV_BOOL ( * )( QV_CHAR );
/* clang-format off */
const CharTest categoryTests[] = {
    qvUnicodeIsOtherNotAssigned, qvUnicodeIsLetterUppercase, qvUnicodeIsLetterLowercase,
    qvUnicodeIsLetterTitlecase, qvUnicodeIsLetterModifier, qvUnicodeIsLetterOther, qvUnicodeIsMarkNonspacing,
    qvUnicodeIsMarkSpacingCombining, qvUnicodeIsMarkEnclosing, qvUnicodeIsNumberDecimalDigit,
    qvUnicodeIsNumberLetter, qvUnicodeIsNumberOther, qvUnicodeIsPunctuationConnector,
    qvUnicodeIsPunctuationDash, qvUnicodeIsPunctuationOpen, qvUnicodeIsPunctuationClose,
    qvUnicodeIsPunctuationInitialQuote, qvUnicodeIsPunctuationFinalQuote, qvUnicodeIsPunctuationOther,
    qvUnicodeIsSymbolMath, qvUnicodeIsSymbolCurrency, qvUnicodeIsSymbolModifier, qvUnicodeIsSymbolOther,
    qvUnicodeIsSeparatorSpace, qvUnicodeIsSeparatorLine, qvUnicodeIsSeparatorParagraph,
    qvUnicodeIsOtherControl, qvUnicodeIsOtherFormat, qvUnicodeIsOtherSurrogate, qvUnicodeIsOtherPrivateUse,
    qvUnicodeIsLetter, qvUnicodeIsMark, qvUnicodeIsNumber, qvUnicodeIsPunctuation, qvUnicodeIsSymbol,
    qvUnicodeIsSeparator, qvUnicodeIsOther,
};
/* clang-format on */

} // namespace

TEST( UnicodeDb, categoryClassAndScriptOfAllCodePoints )
{
    std::vector<std::string> categories = textsOf( qvUnicodeGencAbbreviation, 29 );
    std::vector<std::string> scripts = textsOf( qvUnicodeScriptName, 171, 99 );
    for ( char32_t ch = 0; ch < codeEnd; ch++ )
    {
        ASSERT_EQ( facts().category[ch], categories.at( static_cast<size_t>( qvUnicodeGenc( ch ) ) ) )
            << std::hex << +ch;
        ASSERT_EQ( facts().combiningClass[ch], qvUnicodeCccv( ch ) ) << std::hex << +ch;
        ASSERT_EQ( facts().script[ch], scripts.at( static_cast<size_t>( qvUnicodeScript( ch ) ) ) )
            << std::hex << +ch;
    }
}

TEST( UnicodeDb, testsOfCategories )
{
    std::vector<std::string> begins = textsOf( qvUnicodeGencAbbreviation, 29 );
    begins.insert( begins.end(), { "L", "M", "N", "P", "S", "Z", "C" } );
    ASSERT_EQ( begins.size(), std::size( categoryTests ) );
    for ( size_t idx = 0; idx < begins.size(); idx++ )
        for ( char32_t ch = 0; ch < 0x20000; ch++ )
            ASSERT_EQ( facts().category[ch].starts_with( begins[idx] ), categoryTests[idx]( ch ) == QV_TRUE )
                << begins[idx] << " of " << std::hex << +ch;
}

TEST( UnicodeDb, testsOfClasses )
{
    for ( const ClassTest &each : classTests )
        for ( char32_t ch = 0; ch < 0x20000; ch++ )
            ASSERT_EQ( facts().combiningClass[ch] == static_cast<unsigned>( each.cccv ),
                       each.test( ch ) == QV_TRUE )
                << each.name << " of " << std::hex << +ch;
    for ( char32_t ch = 0; ch < 0x20000; ch++ )
    {
        unsigned cccv = facts().combiningClass[ch];
        ASSERT_EQ( cccv >= 10 && cccv <= 199, qvUnicodeHasCccvFixedPos( ch ) == QV_TRUE ) << std::hex << +ch;
    }
}

TEST( UnicodeDb, decompositionMappingsOfAllCodePoints )
{
    std::map<std::string, QV_UNICODE_CDMT> types = { { "canonical", QV_UNICODE_CDMT_CANONICAL } };
    for ( QV_UNICODE_CDMT type = QV_UNICODE_CDMT_FONT; type <= QV_UNICODE_CDMT_COMPAT; type++ )
    {
        std::string tag = takeUtf8( qvUnicodeCdmtTag( type ) );
        types[tag.substr( 1, tag.size() - 2 )] = type;
    }
    for ( char32_t ch = 0; ch < codeEnd; ch++ )
    {
        QV_INT length = -1;
        QV_UNICODE_CDMT type = -1;
        const QV_CHAR *chars = qv___UnicodeCdmDbLookup( ch, &length, &type );
        ASSERT_EQ( chars, qv___UnicodeCdmDbLookup( ch, nullptr, nullptr ) );
        auto found = facts().maps.find( ch );
        if ( found == facts().maps.end() )
        {
            ASSERT_EQ( nullptr, chars ) << std::hex << +ch;
            ASSERT_EQ( 0, length );
            ASSERT_EQ( QV_UNICODE_CDMT_NONE, type );
            continue;
        }
        ASSERT_NE( nullptr, chars ) << std::hex << +ch;
        ASSERT_EQ( found->second.chars, std::u32string( chars, chars + length ) ) << std::hex << +ch;
        ASSERT_EQ( types.at( found->second.type ), type ) << std::hex << +ch;
    }
}

TEST( UnicodeDb, compositesOfAllPairsThatMatter )
{
    // Each first character with each second one: the composites and all near misses.
    std::set<char32_t> firsts = { 0, 0x10FFFF, 0x1100, 0xAC00 };
    std::set<char32_t> seconds = { 0, 0x10FFFF, 0x1161, 0x11A8 };
    for ( const auto &[code, mapping] : facts().maps )
    {
        if ( mapping.type != "canonical" )
            continue;
        firsts.insert( mapping.chars.front() );
        seconds.insert( mapping.chars.back() );
    }
    for ( char32_t first : firsts )
        for ( char32_t second : seconds )
        {
            auto found = facts().composites.find( { first, second } );
            char32_t wanted = found == facts().composites.end() ? 0 : found->second;
            QV_CHAR composite = 1;
            ASSERT_EQ( wanted != 0, qv___UnicodeCompDbLookup( first, second, &composite ) )
                << std::hex << +first << ' ' << +second;
            ASSERT_EQ( wanted, composite );
            ASSERT_EQ( wanted != 0, qv___UnicodeCompDbLookup( first, second, nullptr ) );
        }
}

TEST( UnicodeDb, namesLeadBackToTheirValues )
{
    for ( QV_INT genc = 0; genc <= 29; genc++ )
    {
        Local<QV_STRING> name( qvUnicodeGencAbbreviation( genc ) );
        EXPECT_EQ( genc, qvUnicodeGencFromAbbreviation( name ) );
        qvStringToUpper( name.edit() );
        EXPECT_EQ( genc, qvUnicodeGencFromAbbreviationCaseFold( name ) );
        EXPECT_EQ( -1, qvUnicodeGencFromAbbreviation( name ) );
    }
    for ( QV_INT cdmt = 2; cdmt <= 17; cdmt++ )
    {
        Local<QV_STRING> tag( qvUnicodeCdmtTag( cdmt ) );
        EXPECT_EQ( cdmt, qvUnicodeCdmtFromTag( tag ) );
        qvStringToUpper( tag.edit() );
        EXPECT_EQ( cdmt, qvUnicodeCdmtFromTagCaseFold( tag ) );
        EXPECT_EQ( -1, qvUnicodeCdmtFromTag( tag ) );
    }
    for ( QV_INT script = 0; script <= 171; script++ )
    {
        if ( script == 99 )
            continue;
        Local<QV_STRING> name( qvUnicodeScriptName( script ) );
        EXPECT_EQ( script, qvUnicodeScriptFromName( name ) );
        qvStringToUpper( name.edit() );
        EXPECT_EQ( script, qvUnicodeScriptFromNameCaseFold( name ) );
        EXPECT_EQ( -1, qvUnicodeScriptFromName( name ) );
        EXPECT_EQ( "QV_UNICODE_SCRIPT_" + toUtf8( name ), takeUtf8( qvUnicodeScriptSymName( script ) ) );
    }
}

TEST( UnicodeDb, textsThatNameNothing )
{
    for ( const char *unknown : { "", "L", "Luu", "Common ", "<font", "font", "Unknown\n", "99" } )
    {
        EXPECT_EQ( -1, qvUnicodeGencFromAbbreviation( text( unknown ) ) ) << unknown;
        EXPECT_EQ( -1, qvUnicodeGencFromAbbreviationCaseFold( text( unknown ) ) ) << unknown;
        EXPECT_EQ( -1, qvUnicodeCdmtFromTag( text( unknown ) ) ) << unknown;
        EXPECT_EQ( -1, qvUnicodeCdmtFromTagCaseFold( text( unknown ) ) ) << unknown;
        EXPECT_EQ( -1, qvUnicodeScriptFromName( text( unknown ) ) ) << unknown;
        EXPECT_EQ( -1, qvUnicodeScriptFromNameCaseFold( text( unknown ) ) ) << unknown;
    }
}

TEST( UnicodeDb, textsOfEnumerants )
{
    EXPECT_EQ( "Letter, Uppercase",
               takeUtf8( qvUnicodeGencDescription( QV_UNICODE_GENC_LETTER_UPPERCASE ) ) );
    EXPECT_EQ( "Punctuation, Initial",
               takeUtf8( qvUnicodeGencDescription( QV_UNICODE_GENC_PUNCTUATION_INITIAL_QUOTE ) ) );
    EXPECT_EQ( "QV_UNICODE_GENC_OTHER_PRIVATE_USE", takeUtf8( qvUnicodeGencSymName( 29 ) ) );
    EXPECT_EQ( "No decomposition.", takeUtf8( qvUnicodeCdmtDescription( QV_UNICODE_CDMT_NONE ) ) );
    EXPECT_EQ( "<noBreak>", takeUtf8( qvUnicodeCdmtTag( QV_UNICODE_CDMT_NOBREAK ) ) );
    EXPECT_EQ( "QV_UNICODE_CDMT_COMPAT", takeUtf8( qvUnicodeCdmtSymName( 17 ) ) );
    EXPECT_EQ( "Nuktas", takeUtf8( qvUnicodeCccvDescription( QV_UNICODE_CCCV_NUKTAS ) ) );
    for ( QV_UNICODE_CCCV cccv = 0; cccv <= 255; cccv++ )
    {
        std::string wanted;
        for ( const ClassTest &each : classTests )
        {
            if ( each.cccv == cccv )
                wanted = std::string( "QV_UNICODE_CCCV_" ) + each.name;
        }
        Local<QV_STRING> name( qvUnicodeCccvSymName( cccv ) );
        ASSERT_EQ( !wanted.empty(), name != nullptr ) << cccv;
        std::string description = takeUtf8( qvUnicodeCccvDescription( cccv ) );
        if ( name )
            EXPECT_EQ( wanted, toUtf8( name ) );
        else
            EXPECT_EQ( "Canonical Combining Class Value " + std::to_string( cccv ), description );
    }
}

TEST( UnicodeDb, valuesOutsideStopTheProcess )
{
    EXPECT_DEATH( qvUnicodeGencDescription( 30 ), "QV_UNICODE_GENC_OK\\( genc \\)" );
    EXPECT_DEATH( qvUnicodeCccvDescription( 256 ), "QV_UNICODE_CCCV_OK\\( cccv \\)" );
    EXPECT_DEATH( qvUnicodeCdmtSymName( -1 ), "QV_UNICODE_CDMT_OK\\( cdmt \\)" );
    EXPECT_DEATH( qvUnicodeCdmtTag( QV_UNICODE_CDMT_CANONICAL ), "QV_UNICODE_CDMT_CANONICAL" );
    EXPECT_DEATH( qvUnicodeScriptName( 172 ), "QV_UNICODE_SCRIPT_OK\\( script \\)" );
    EXPECT_DEATH( qvUnicodeScriptSymName( 99 ), "script != " );
    EXPECT_DEATH( qvUnicodeScriptFromName( nullptr ), "text" );
}
