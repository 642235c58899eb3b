// Completions for bash, zsh and fish.

#include "tool.hh"

#include <algorithm>

namespace
{

using tool::Command;
using tool::Group;
using tool::Kind;
using tool::Option;
using tool::Slot;

std::string quoted( std::string_view text )
{
    std::string result = "'";
    for ( char ch : text )
        result += ch == '\'' ? "'\\''" : std::string( 1, ch );
    return result + "'";
}

// A name of the first level: a group, or a command that stands alone.
struct Entry
{
    const char *name;
    const char *summary;
    const Group *group;     // or
    const Command *command; // the other one is null
};

std::vector<Entry> entries()
{
    std::vector<Entry> all;
    for ( const Group &group : tool::groups() )
    {
        if ( group.name )
            all.push_back( { group.name, group.summary, &group, nullptr } );
        else
            for ( const Command *command : group.commands )
                all.push_back( { command->name, command->summary, nullptr, command } );
    }
    return all;
}

template <typename Visit> void forEachCommand( Visit visit )
{
    for ( const Group &group : tool::groups() )
    {
        for ( const Command *command : group.commands )
            visit( *command );
    }
}

std::string joined( const std::vector<std::string> &words, const char *separator = " " )
{
    std::string text;
    for ( const std::string &word : words )
        text += ( text.empty() ? "" : separator ) + word;
    return text;
}

std::vector<std::string> entryNames()
{
    std::vector<std::string> names;
    for ( const Entry &entry : entries() )
        names.push_back( entry.name );
    return names;
}

std::vector<std::string> namesIn( const Group &group )
{
    std::vector<std::string> names;
    for ( const Command *command : group.commands )
        names.push_back( tool::wordOf( group, *command ) );
    return names;
}

// ---- bash ----

// An argument as the script knows it: how it is completed, and with which words.
std::string bashKind( const Slot &slot )
{
    switch ( slot.kind )
    {
    case Kind::files:
        return "files";
    case Kind::folders:
        return "folders";
    case Kind::words:
        return quoted( "words " + slot.words );
    default:
        return "none";
    }
}

std::string bashFacts( const Command &command )
{
    std::vector<std::string> options;
    for ( const Option *option : tool::allOptions( command ) )
        options.push_back( std::string( "--" ) + option->name );
    std::string text = "    " + quoted( command.name ) + ")\n        options=" + quoted( joined( options ) );
    std::vector<std::string> kinds;
    for ( const Slot &slot : tool::slotsOf( command ) )
    {
        kinds.push_back( bashKind( slot ) );
        if ( slot.again )
            text += " rest=" + kinds.back();
    }
    return text + " operands=(" + joined( kinds ) + ") ;;\n";
}

std::string bashValues( const Command &command )
{
    std::string text;
    for ( const Option &option : command.options )
    {
        if ( !option.value )
            continue;
        std::string pattern = quoted( std::string( command.name ) + " --" + option.name );
        if ( option.letter )
            pattern += " | " + quoted( std::string( command.name ) + " -" + option.letter );
        text += "    " + pattern + ") kind=" + bashKind( tool::slotOf( option ) ) + " ;;\n";
    }
    return text;
}

constexpr char bashHead[] = R"(# Completion of qv in bash. Made by "qv generate bash".

# What stands behind a tool: the tools of a group, or options and what the arguments are.
_qv_facts()
{
    tools= options=--help operands=() rest=none
    case $1 in
)";

constexpr char bashMiddle[] = R"(    *)
        options= ;;
    esac
}

# What the value of an option is; false if it takes none.
_qv_value()
{
    case "$1 $2" in
)";

constexpr char bashTail[] = R"(    *) return 1 ;;
    esac
}

# Goes on to a tool by its name or a beginning that no other tool has.
_qv_enter()
{
    local name found=()
    for name in $tools; do
        if [[ $name == "$1" ]]; then
            found=( "$name" )
            break
        fi
        [[ $name == "$1"* ]] && found+=( "$name" )
    done
    if [[ ${found[*]} == help && ! $tool ]]; then
        helping=1
        return
    fi
    [[ ${#found[@]} == 1 ]] || found=( '?' )
    tool+=${tool:+ }${found[0]}
    _qv_facts "$tool"
}

_qv()
{
    local current=${COMP_WORDS[COMP_CWORD]} tool='' helping='' ended='' option='' kind=none count=0 at word
    local tools options operands rest
    _qv_facts ''
    for (( at = 1; at < COMP_CWORD; at++ )); do
        word=${COMP_WORDS[at]}
        if [[ $word == '=' ]]; then
            continue
        elif [[ $option ]]; then
            option=
        elif [[ $tools ]]; then
            _qv_enter "$word"
        elif [[ ! $ended && $word == -- ]]; then
            ended=1
        elif [[ ! $ended && $word == -?* ]]; then
            _qv_value "$tool" "$word" && option=$word
        else
            count=$(( count + 1 ))
        fi
    done
    [[ $current == '=' ]] && current=
    if [[ $option ]]; then
        _qv_value "$tool" "$option"
    elif [[ ! $ended && $current == -* ]]; then
        kind="words $options"
    elif [[ $tools ]]; then
        kind="words $tools"
    elif [[ ! $helping ]]; then
        kind=${operands[count]:-$rest}
    fi
    COMPREPLY=()
    case $kind in
    words\ *) mapfile -t COMPREPLY < <( compgen -W "${kind#words }" -- "$current" ) ;;
    files) compopt -o default ;;
    folders) compopt -o dirnames ;;
    esac
}

complete -F _qv qv
)";

// ---- zsh ----

// A description inside the brackets of an option, or between colons.
std::string zshText( std::string_view text )
{
    return tool::prefixed( text, "[]:\\", "\\" );
}

std::string zshAction( const Slot &slot )
{
    std::string action = ":" + zshText( slot.name ) + ":";
    switch ( slot.kind )
    {
    case Kind::files:
        return action + "_files";
    case Kind::folders:
        return action + "_files -/";
    case Kind::words:
        return action + "(" + slot.words + ")";
    default:
        return action + " ";
    }
}

std::string zshOption( const Option &option )
{
    std::string text = "[" + zshText( option.text ) + "]";
    std::string name = std::string( "--" ) + option.name + ( option.value ? "=" : "" );
    if ( option.value )
        text += zshAction( tool::slotOf( option ) );
    if ( !option.letter )
        return quoted( name + text );
    std::string letter = std::string( "-" ) + option.letter;
    return quoted( "(" + letter + " --" + option.name + ")" ) + "{" + letter + ( option.value ? "+" : "" ) +
           "," + name + "}" + quoted( text );
}

std::string zshCommand( const Command &command, const char *word, const std::string &margin )
{
    std::string text = margin + word + ")\n" + margin + "    shift words; (( CURRENT-- ))\n";
    std::vector<Slot> slots = tool::slotsOf( command );
    if ( slots.size() == 1 && slots[0].kind == Kind::tools )
        return text + margin + "    _qv ;;\n";
    text += margin + "    _arguments -s -S";
    for ( const Option *option : tool::allOptions( command ) )
        text += " \\\n" + margin + "        " + zshOption( *option );
    for ( size_t place = 0; place < slots.size(); place++ )
        text +=
            " \\\n" + margin + "        " +
            quoted( ( slots[place].again ? "*" : std::to_string( place + 1 ) ) + zshAction( slots[place] ) );
    return text + " ;;\n";
}

// The list of tools as a word is typed that names one.
std::string zshList( const std::vector<std::pair<std::string, std::string>> &tools,
                     const std::string &margin )
{
    std::string text = margin + "if (( CURRENT == 2 )); then\n" + margin + "    tools=(\n";
    for ( const auto &[name, summary] : tools )
        text += margin + "        " + quoted( name + ":" + summary ) + "\n";
    return text + margin + "    )\n" + margin + "    _describe -t tools tool tools\n" + margin +
           "    return\n" + margin + "fi\n" + margin + "case $words[2] in\n";
}

std::string zshGroup( const Group &group )
{
    std::string margin( 4, ' ' );
    std::string text = margin + group.name + ")\n" + margin + "    shift words; (( CURRENT-- ))\n";
    std::vector<std::pair<std::string, std::string>> tools;
    std::string cases;
    for ( const Command *command : group.commands )
    {
        tools.emplace_back( tool::wordOf( group, *command ), command->summary );
        cases += zshCommand( *command, tool::wordOf( group, *command ), margin + "    " );
    }
    return text + zshList( tools, margin + "    " ) + cases + margin + "    esac ;;\n";
}

// ---- fish ----

std::string fishQuoted( std::string_view text )
{
    return "'" + tool::prefixed( text, "'\\", "\\" ) + "'";
}

std::string fishAt( const std::string &tool )
{
    return "complete -c qv -n " + fishQuoted( "__qv_at " + fishQuoted( tool ) );
}

std::string fishAction( const Slot &slot )
{
    switch ( slot.kind )
    {
    case Kind::files:
        return " -F";
    case Kind::folders:
        return " -f -a '(__fish_complete_directories)'";
    case Kind::words:
        return " -f -a " + fishQuoted( slot.words );
    default:
        return " -f";
    }
}

std::string fishCommand( const Command &command )
{
    std::string text;
    for ( const Option *option : tool::allOptions( command ) )
    {
        text += fishAt( command.name ) + ( option->letter ? std::string( " -s " ) + option->letter : "" ) +
                " -l " + option->name;
        if ( option->value )
            text += " -r" + fishAction( tool::slotOf( *option ) );
        text += " -d " + fishQuoted( option->text ) + "\n";
    }
    for ( const Slot &slot : tool::slotsOf( command ) )
    {
        if ( slot.kind == Kind::files || slot.kind == Kind::folders || slot.kind == Kind::words )
            text += fishAt( command.name ) + fishAction( slot ) + "\n";
    }
    return text;
}

constexpr char fishHead[] = R"(# Completion of qv in fish. Made by "qv generate fish".

complete -c qv -f

# True if the tool that the command line names so far is this one.
function __qv_at
    set -l words (commandline -opc)
    set -e words[1]
    if test "$words[1]" = help
        set -e words[1]
    end
    set -l count 1
    if contains -- "$words[1]" )";

constexpr char fishTail[] = R"(
        set count 2
    end
    set -l tool $words[1..$count]
    test "$tool" = "$argv[1]"
end

)";

} // namespace

namespace tool
{

std::string bashCompletion()
{
    std::string text = bashHead;
    text += "    '')\n        tools=" + quoted( joined( entryNames() ) ) + " options='--help --version' ;;\n";
    for ( const Group &group : groups() )
    {
        if ( group.name )
            text += "    " + quoted( group.name ) +
                    ")\n        tools=" + quoted( joined( namesIn( group ) ) ) + " ;;\n";
    }
    forEachCommand( [&]( const Command &command ) { text += bashFacts( command ); } );
    text += bashMiddle;
    forEachCommand( [&]( const Command &command ) { text += bashValues( command ); } );
    return text + bashTail;
}

std::string zshCompletion()
{
    std::string text = "#compdef qv\n# Completion of qv in zsh. Made by \"qv generate zsh\".\n\n_qv() {\n"
                       "    local -a tools\n";
    std::vector<std::pair<std::string, std::string>> tools;
    std::string cases;
    for ( const Entry &entry : entries() )
    {
        tools.emplace_back( entry.name, entry.summary );
        cases += entry.group ? zshGroup( *entry.group ) : zshCommand( *entry.command, entry.name, "    " );
    }
    return text + zshList( tools, "    " ) + cases + "    esac\n}\n\n_qv \"$@\"\n";
}

std::string fishCompletion()
{
    std::vector<std::string> groupNames;
    std::string text;
    for ( const Entry &entry : entries() )
    {
        text += fishAt( "" ) + " -a " + entry.name + " -d " + fishQuoted( entry.summary ) + "\n";
        if ( !entry.group )
            continue;
        groupNames.push_back( entry.name );
        for ( const Command *command : entry.group->commands )
            text += fishAt( entry.name ) + " -a " + wordOf( *entry.group, *command ) + " -d " +
                    fishQuoted( command->summary ) + "\n";
    }
    text += fishAt( "" ) + " -l version -d 'The version of the command.'\n";
    forEachCommand( [&]( const Command &command ) { text += fishCommand( command ); } );
    return fishHead + joined( groupNames ) + fishTail + text;
}

} // namespace tool
