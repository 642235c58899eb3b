// qv generate: the manual page and the shells' completions, all from the tools' own tables.

#include "tool_store.hh"

#include <qv/charset/qv_charset.h>

#include <algorithm>

namespace
{

using tool::Arguments;
using tool::Kind;
using tool::Slot;
using tool::String;
using tool::Tool;

// ---- Arguments ----

std::string charsetNames()
{
    std::string names;
    for ( QV_CHARSET charset = 0; QV_CHARSET_OK( charset ); charset++ )
        names += ( charset ? " " : "" ) + tool::shortName( "", String( qvCharsetToIanaName( charset ) ) );
    return names;
}

std::string storeEncodingNames()
{
    std::string names;
    for ( QV_STORE_ENCODING encoding = 0; QV_STORE_ENCODING_OK( encoding ); encoding++ )
    {
        if ( tool::isAvailable( encoding ) )
            names += ( names.empty() ? "" : " " ) + tool::encodingName( encoding );
    }
    return names;
}

// What a name in capitals stands for, wherever a table of a tool has it.
struct Vocable
{
    std::string_view name;
    Kind kind;
    std::string ( *words )();
};

constexpr Vocable vocabulary[] = {
    { "FILE", Kind::files, nullptr },
    { "IN", Kind::files, nullptr },
    { "OUT", Kind::files, nullptr },
    { "RULE", Kind::files, nullptr },
    { "FOLDER", Kind::folders, nullptr },
    { "TOOL", Kind::tools, nullptr },
    { "CHARSET", Kind::words, charsetNames },
    { "ENCODING", Kind::words, storeEncodingNames },
    { "OS", Kind::words, tool::systemNames },
    { "HARDWARE", Kind::words, tool::machineNames },
    { "VARIANT", Kind::words, tool::variantNames },
};

bool isWord( std::string_view text )
{
    return std::all_of( text.begin(), text.end(),
                        []( char ch ) { return ( ch >= 'a' && ch <= 'z' ) || ch == '-'; } );
}

// "IN", "FILE|FOLDER", or words to be typed as they are, "man|bash".
Slot slotOf( std::string_view name )
{
    Slot slot{ .name = std::string( name ), .words = "" };
    for ( std::string_view rest = name; !rest.empty(); )
    {
        std::string_view part = rest.substr( 0, rest.find( '|' ) );
        rest.remove_prefix( std::min( part.size() + 1, rest.size() ) );
        auto found = std::find_if( std::begin( vocabulary ), std::end( vocabulary ),
                                   [&]( const Vocable &vocable ) { return vocable.name == part; } );
        if ( isWord( part ) )
        {
            slot.kind = Kind::words;
            slot.words += ( slot.words.empty() ? "" : " " ) + std::string( part );
        }
        else if ( found != std::end( vocabulary ) && slot.kind == Kind::other )
        {
            slot.kind = found->kind;
            slot.words = found->words ? found->words() : "";
        }
    }
    return slot;
}

void runGenerate( Tool &tool, const Arguments &arguments )
{
    constexpr std::pair<std::string_view, std::string ( * )()> products[] = {
        { "man", tool::manualPage },
        { "bash", tool::bashCompletion },
        { "zsh", tool::zshCompletion },
        { "fish", tool::fishCompletion },
    };
    for ( const auto &[name, text] : products )
    {
        if ( arguments.operand( 0 ) == name )
            return tool.out.write( text() );
    }
    tool.usage( arguments.operand( 0 ) + ": is none of man, bash, zsh, fish" );
}

const tool::Example examples[] = {
    { "qv generate man | man -l -", "read the manual page" },
    { "source <( qv generate bash )", "completion for this bash" },
    { "qv generate zsh > ~/.zfunc/_qv", "for zsh, in a folder of its fpath" },
    { "qv generate fish | source", "for this fish" },
};

} // namespace

namespace tool
{

Slot slotOf( const Option &option )
{
    if ( !option.choices )
        return ::slotOf( option.value );
    return { .name = option.value, .kind = Kind::words, .words = option.choices };
}

std::vector<Slot> slotsOf( const Command &command )
{
    std::vector<Slot> slots;
    for ( std::string_view rest = command.operands; !rest.empty(); )
    {
        std::string_view part = rest.substr( 0, rest.find( ' ' ) );
        rest.remove_prefix( std::min( part.size() + 1, rest.size() ) );
        // "[/ADDRESS...]" and the like tell how an argument goes on.
        std::string_view name = part.substr( part.starts_with( '[' ) );
        slots.push_back( ::slotOf( name.substr( 0, name.find_first_of( "[]." ) ) ) );
    }
    if ( !slots.empty() )
        slots.back().again = command.most == noLimit;
    return slots;
}

const Command generate = {
    "generate",
    "man|bash|zsh|fish",
    1,
    1,
    "Print the manual page, or the completion for a shell",
    "An installed command has them in place.",
    {},
    examples,
    runGenerate,
};

} // namespace tool
