// qv char: what the library knows of single characters.

#include "tool.hh"

#include <qv/unicode/qv_unicode_cccv.h>
#include <qv/unicode/qv_unicode_genc.h>
#include <qv/unicode/qv_unicode_lookups.h>
#include <qv/unicode/qv_unicode_normalizer.h>
#include <qv/unicode/qv_unicode_script.h>

#include <cstdio>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Operands ----

bool isSurrogate( QV_CHAR ch )
{
    return ch >= 0xD800 && ch <= 0xDFFF;
}

// "U+E9", in either case. False if the text is nothing of the kind; ch is then left alone.
bool readCodePoint( QV_STRING *text, QV_CHAR &ch, bool &tooLarge )
{
    QV_INT length = qvStringLength( text );
    bool marked =
        length > 2 && ( qvStringCharAt( text, 0 ) | 0x20 ) == 'u' && qvStringCharAt( text, 1 ) == '+';
    if ( !marked )
        return false;
    QV_CHAR value = 0;
    for ( QV_INT idx = 2; idx < length; idx++ )
    {
        QV_INT digit = qvUnicodeHexadecimalDigitValue( qvStringCharAt( text, idx ) );
        if ( digit < 0 )
            return false;
        value = value > QV_CHAR_MAX ? value : value * 16 + static_cast<QV_CHAR>( digit );
    }
    tooLarge = !QV_CHAR_OK( value );
    ch = value;
    return true;
}

// ---- Texts ----

std::string bytesOf( std::string_view utf8 )
{
    std::string text;
    for ( char byte : utf8 )
    {
        char digits[8];
        std::snprintf( digits, sizeof digits, "%s%02X", text.empty() ? "" : " ",
                       static_cast<unsigned char>( byte ) );
        text += digits;
    }
    return text;
}

std::string utf16Of( QV_CHAR ch )
{
    char digits[16];
    if ( ch < 0x10000 )
        std::snprintf( digits, sizeof digits, "%04X", ch );
    else
        std::snprintf( digits, sizeof digits, "%04X %04X", 0xD7C0 + ( ch >> 10 ), 0xDC00 + ( ch & 0x3FF ) );
    return digits;
}

// Controls, marks without a base and code points that are no characters don't show by themselves.
std::string glyphOf( QV_CHAR ch )
{
    if ( qvUnicodeIsOther( ch ) || qvUnicodeIsSeparatorLine( ch ) || qvUnicodeIsSeparatorParagraph( ch ) )
        return "";
    std::string utf8 = tool::textOf( String( qvStringCreateFromCharsCopy( &ch, 1 ) ) );
    return qvUnicodeIsMark( ch ) ? "\u25CC" + utf8 : utf8;
}

std::string listOf( QV_STRING *text )
{
    std::string list;
    for ( QV_INT idx = 0; idx < qvStringLength( text ); idx++ )
    {
        QV_CHAR ch = qvStringCharAt( text, idx );
        std::string glyph = glyphOf( ch );
        list += ( list.empty() ? "" : "  " ) + tool::codePoint( ch ) + ( glyph.empty() ? "" : " " + glyph );
    }
    return list;
}

// ---- Printing ----

class Sheet
{
  public:
    Sheet( Tool &runningTool, QV_CHAR shown )
        : tool( runningTool ), ch( shown ), itself( qvStringCreateFromCharsCopy( &ch, 1 ) )
    {
    }

    void print()
    {
        const Style &style = tool::styleOf( STDOUT_FILENO );
        std::string glyph = glyphOf( ch );
        tool.out.write( style.bold + tool::codePoint( ch ) + style.off +
                        ( glyph.empty() ? "" : "  " + glyph ) + "\n" );
        printProperties();
        printMappings();
        if ( !isSurrogate( ch ) )
        {
            fact( "UTF-8", bytesOf( tool::textOf( static_cast<QV_STRING *>( itself ) ) ) );
            fact( "UTF-16", utf16Of( ch ) );
        }
    }

  private:
    void fact( const char *name, const std::string &text )
    {
        tool::printFact( tool.out, name, text );
    }

    void printProperties()
    {
        QV_UNICODE_GENC category = qvUnicodeGenc( ch );
        fact( "category", tool::textOf( String( qvUnicodeGencAbbreviation( category ) ) ) + "  " +
                              tool::textOf( String( qvUnicodeGencDescription( category ) ) ) );
        fact( "script", tool::textOf( String( qvUnicodeScriptName( qvUnicodeScript( ch ) ) ) ) );
        QV_UNICODE_CCCV combining = qvUnicodeCccv( ch );
        if ( combining != 0 || qvUnicodeIsMark( ch ) )
            fact( "combining class", std::to_string( combining ) + "  " +
                                         tool::textOf( String( qvUnicodeCccvDescription( combining ) ) ) );
        std::string kinds = qvUnicodeIsWhiteSpace( ch ) ? "white space" : "";
        if ( qvUnicodeIsNlf( ch ) )
            kinds += kinds.empty() ? "new-line" : ", new-line";
        if ( !kinds.empty() )
            fact( "kind", kinds );
        if ( QV_INT digit = qvUnicodeDecimalDigitValue( ch ); digit >= 0 )
            fact( "digit", std::to_string( digit ) );
    }

    void mapping( const char *name, void ( *change )( QV_STRING ** ) )
    {
        String mapped( qvStringCreateFrom( itself ) );
        change( mapped.edit() );
        if ( !qvStringEquals( mapped, itself ) )
            fact( name, listOf( mapped ) );
    }

    void printMappings()
    {
        if ( isSurrogate( ch ) )
            return;
        String canonical( qvStringCreateFrom( itself ) );
        qvStringNormalize( canonical.edit(), QV_UNICODE_NORMAL_FORM_D );
        String compatible( qvStringCreateFrom( itself ) );
        qvStringNormalize( compatible.edit(), QV_UNICODE_NORMAL_FORM_KD );
        if ( !qvStringEquals( canonical, itself ) )
            fact( "canonical", listOf( canonical ) );
        if ( !qvStringEquals( compatible, canonical ) )
            fact( "compatible", listOf( compatible ) );
        mapping( "upper case", qvStringToUpper );
        mapping( "lower case", qvStringToLower );
        mapping( "case folding", qvStringToCaseFold );
    }

    Tool &tool;
    QV_CHAR ch;
    String itself;
};

void runChar( Tool &tool, const Arguments &arguments )
{
    bool first = true;
    for ( const String &operand : arguments.operands )
    {
        QV_CHAR ch = 0;
        bool tooLarge = false;
        if ( readCodePoint( operand, ch, tooLarge ) && tooLarge )
            return tool.usage( tool::textOf( static_cast<QV_STRING *>( operand ) ) +
                               ": code points end at U+10FFFF" );
        String text = readCodePoint( operand, ch, tooLarge ) ? String( qvStringCreateFromCharsCopy( &ch, 1 ) )
                                                             : String( qvStringCreateFrom( operand ) );
        for ( QV_INT idx = 0; idx < qvStringLength( text ); idx++ )
        {
            if ( !first )
                tool.out.write( "\n" );
            first = false;
            Sheet( tool, qvStringCharAt( text, idx ) ).print();
        }
    }
}

const tool::Example examples[] = {
    { "qv char U+00E9", "by its code point" },
    { "qv char 'naïve'", "each character of a text" },
    { "qv char U+1E9E U+0301", "several code points" },
};

} // namespace

namespace tool
{

const Command charFacts = {
    "char",
    "TEXT|U+XXXX...",
    1,
    noLimit,
    "Tell what Unicode knows of characters",
    "For each character: category, script, combining class, decompositions, case mappings and its bytes.",
    {},
    examples,
    runChar,
};

} // namespace tool
