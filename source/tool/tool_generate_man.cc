// The manual page qv(1), in the macros of man.

#include "tool.hh"

#include <qv/runtime/qv_runtime.h>

#include <algorithm>
#include <cctype>
#include <utility>

namespace
{

using tool::Command;
using tool::Group;
using tool::Owner;
using tool::String;

// Text as it stands: dashes that can be copied, and nothing at the beginning of a line that is a macro.
std::string roff( std::string_view text )
{
    std::string result;
    for ( char ch : text )
    {
        if ( ch == '\\' )
            result += "\\e";
        else if ( ch == '-' )
            result += "\\-";
        else if ( ( ch == '.' || ch == '\'' ) && ( result.empty() || result.back() == '\n' ) )
            result += std::string( "\\&" ) + ch;
        else if ( ch == '\'' )
            result += "\\(aq";
        else
            result += ch;
    }
    return result;
}

// The same in lines of a comfortable length, each sentence on a line of its own.
std::string flowing( std::string_view text )
{
    constexpr size_t width = 76;
    std::string result;
    std::string line;
    while ( !text.empty() )
    {
        size_t length = std::min( text.find_first_of( " \n" ), text.size() );
        std::string_view word = text.substr( 0, length );
        bool ends = word.ends_with( '.' ) && length < text.size();
        bool paragraph = length < text.size() && text[length] == '\n';
        if ( !line.empty() && line.size() + word.size() > width )
            result += roff( std::exchange( line, "" ) ) + "\n";
        line += ( line.empty() ? "" : " " ) + std::string( word );
        if ( ends || paragraph )
            result += roff( std::exchange( line, "" ) ) + ( paragraph ? "\n.PP\n" : "\n" );
        text.remove_prefix( std::min( length + 1, text.size() ) );
    }
    return result + roff( line ) + ( line.empty() ? "" : "\n" );
}

std::string bold( std::string_view text )
{
    return "\\fB" + roff( text ) + "\\fR";
}

// Usage: what stands for something is in italics.
std::string usage( std::string_view text )
{
    std::string result;
    bool inside = false;
    for ( char ch : roff( text ) )
    {
        bool letter = std::isupper( static_cast<unsigned char>( ch ) ) || ( inside && ch == '_' );
        if ( letter != inside )
            result += letter ? "\\fI" : "\\fR";
        inside = letter;
        result += ch;
    }
    return inside ? result + "\\fR" : result;
}

std::string upper( std::string text )
{
    for ( char &ch : text )
        ch = static_cast<char>( std::toupper( static_cast<unsigned char>( ch ) ) );
    return text;
}

std::string section( std::string_view title )
{
    return ".SH " + upper( roff( title ) ) + "\n";
}

std::string row( const std::string &head, std::string_view text )
{
    return ".TP\n" + head + "\n" + flowing( text );
}

std::string rows( std::span<const tool::Meaning> meanings )
{
    std::string text;
    for ( const tool::Meaning &meaning : meanings )
        text += row( bold( meaning.word ), meaning.text );
    return text;
}

std::string optionRow( const tool::Option &option )
{
    std::string head = option.letter ? bold( std::string( "-" ) + option.letter ) + ", " : "";
    head += bold( std::string( "--" ) + option.name );
    return row( option.value ? head + " " + usage( option.value ) : head, option.text );
}

std::string commandText( const Command &command )
{
    std::string text = std::string( ".SS qv " ) + roff( command.name ) + "\n";
    text += bold( std::string( "qv " ) + command.name ) + " [" + usage( "OPTION" ) + "...]";
    if ( *command.operands )
        text += " " + usage( command.operands );
    text += "\n.PP\n" + flowing( std::string( command.summary ) + "." );
    if ( command.details )
        text += flowing( command.details );
    for ( const tool::Option *option : tool::allOptions( command ) )
        text += optionRow( *option );
    text += ".PP\nExamples:\n.RS 4\n.EX\n";
    for ( const tool::Example &example : command.examples )
        text += ( &example == command.examples.data() ? "# " : "\n# " ) + roff( example.text ) + "\n" +
                roff( example.line ) + "\n";
    text += ".EE\n.RE\n";
    return text;
}

// The day on which the product was built.
std::string day()
{
    Owner time( qvRuntimeVersionProductBuildTime() );
    return tool::textOf( String( qvStringCreateFromFormatCstr( "%i-%^02i-%^02i", -1, qvTimeYear( time ),
                                                               qvTimeMonth( time ), qvTimeDay( time ) ) ) );
}

} // namespace

namespace tool
{

std::string manualPage()
{
    std::string what = purpose;
    what[0] = static_cast<char>( std::tolower( static_cast<unsigned char>( what[0] ) ) );
    what.pop_back();
    std::string text =
        ".\\\" Made by \"qv generate man\".\n.TH QV 1 " + day() + " \"qv " + QV_TOOL_VERSION + "\"\n";
    text += section( "Name" ) + flowing( "qv - " + what );
    text += section( "Synopsis" ) + bold( "qv" ) + " " + usage( "TOOL [OPTION...] [ARGUMENT...]" ) + "\n";
    text += section( "Description" ) + flowing( purpose ) + rows( everywhere );
    for ( const Group &group : groups() )
    {
        text += section( group.summary );
        for ( const Command *command : group.commands )
            text += commandText( *command );
    }
    text += section( "Exit status" ) + rows( exitCodes );
    text += section( "Environment" ) + rows( variables );
    return text;
}

} // namespace tool
