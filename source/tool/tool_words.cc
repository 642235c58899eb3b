// Texts: the library's strings and names, numbers for people.

#include "tool.hh"

#include <qv/sys/qv_mem.h>

#include <cstdio>

namespace tool
{

std::string textOf( QV_STRING *string )
{
    QV_INT length = 0;
    char *utf8 = qvStringConvertToUtf8( string, QV_FALSE, &length );
    std::string text( utf8 ? utf8 : "", static_cast<size_t>( length ) );
    if ( utf8 )
        qvMemFree( utf8 );
    return text;
}

std::string shortName( std::string_view prefix, QV_STRING *name )
{
    std::string text = textOf( name );
    if ( text.starts_with( prefix ) )
        text.erase( 0, prefix.size() );
    for ( char &letter : text )
    {
        if ( letter == '_' )
            letter = '-';
        else if ( letter >= 'A' && letter <= 'Z' )
            letter = static_cast<char>( letter + 32 );
    }
    return text;
}

String longName( std::string_view prefix, std::string_view name )
{
    std::string text( name );
    for ( char &letter : text )
    {
        if ( letter == '-' )
            letter = '_';
        else if ( letter >= 'a' && letter <= 'z' )
            letter = static_cast<char>( letter - 32 );
    }
    if ( !text.starts_with( prefix ) )
        text.insert( 0, prefix );
    return stringOf( text );
}

bool takeCharset( Tool &tool, const Arguments &arguments, const char *option, QV_CHARSET &charset )
{
    std::optional<std::string> name = arguments.value( option );
    if ( !name )
        return true;
    charset = qvCharsetFromIanaName( stringOf( *name ) );
    if ( QV_CHARSET_OK( charset ) )
        return true;
    tool.usage( *name + ": no such charset; the list: qv text charsets" );
    return false;
}

bool takeForm( Tool &tool, const Arguments &arguments, QV_UNICODE_NORMAL_FORM &form )
{
    std::optional<std::string> name = arguments.value( "normalize" );
    if ( !name )
        return true;
    form = qvUnicodeNormalFormFromString( longName( "QV_UNICODE_NORMAL_FORM_", *name ) );
    if ( form >= 0 )
        return true;
    tool.usage( *name + ": no such normal form, there are: C, KC, D, KD" );
    return false;
}

void usageExclusive( Tool &tool, std::string_view one, std::string_view other )
{
    tool.usage( "--" + std::string( one ) + " and --" + std::string( other ) + " exclude each other" );
}

std::string grouped( long long number )
{
    std::string digits = std::to_string( number );
    for ( size_t place = digits.size(); place > 3 + ( number < 0 ); )
    {
        place -= 3;
        digits.insert( place, 1, ',' );
    }
    return digits;
}

std::string codePoint( QV_CHAR ch )
{
    char text[16];
    std::snprintf( text, sizeof text, "U+%04X", ch );
    return text;
}

std::string twoDigits( long long number )
{
    return ( number < 10 ? "0" : "" ) + std::to_string( number );
}

std::string padded( std::string text, size_t width )
{
    if ( text.size() < width )
        text.append( width - text.size(), ' ' );
    return text;
}

std::string aligned( std::string text, size_t width )
{
    if ( text.size() < width )
        text.insert( 0, width - text.size(), ' ' );
    return text;
}

std::string prefixed( std::string_view text, std::string_view characters, std::string_view prefix )
{
    std::string result;
    for ( char ch : text )
    {
        if ( characters.find( ch ) != std::string_view::npos )
            result += prefix;
        result += ch;
    }
    return result;
}

std::string counted( long long number, const char *noun )
{
    return grouped( number ) + " " + noun + ( number == 1 ? "" : "s" );
}

} // namespace tool
