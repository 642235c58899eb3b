// Options, help and messages, all from the subtools' tables.

#include "tool.hh"

#include <qv/base/qv_opt_flags.h>

#include <algorithm>
#include <cctype>
#include <unistd.h>

namespace
{

constexpr tool::Option helpOption = { 'h', "help", nullptr, "Print this help." };
constexpr QV_INT operandId = 1000;

tool::Owner<QV_OPT_DEF> definition( const std::vector<const tool::Option *> &options )
{
    tool::Owner def( qvOptDefCreate() );
    qvOptDefSetReorder( def.edit(), QV_TRUE );
    qvOptDefSetArgOnly( def.edit(), operandId );
    for ( size_t id = 0; id < options.size(); id++ )
    {
        const tool::Option &option = *options[id];
        qvOptDefSetLongOptCstr( def.edit(), option.name, -1, static_cast<QV_INT>( id ) );
        if ( option.letter )
            qvOptDefSetShortOpt( def.edit(), static_cast<QV_CHAR>( option.letter ),
                                 static_cast<QV_INT>( id ) );
        if ( option.value )
            qvOptDefSetFlags( def.edit(), static_cast<QV_INT>( id ), QV_OPT_FLAG_ARGUMENT );
    }
    return def;
}

// A negative number is no option but a value. It travels through the parser as its index, since an element that isn't
// a string never counts as an option.
bool isNegativeNumber( QV_STRING *text )
{
    if ( qvStringLength( text ) < 2 || qvStringCharAt( text, 0 ) != '-' )
        return false;
    QV_CHAR second = qvStringCharAt( text, 1 );
    return ( second >= '0' && second <= '9' ) || second == '.';
}

tool::Owner<QV_VECTOR> withoutNegativeNumbers( QV_VECTOR *argv )
{
    tool::Owner result( qvVectorCreate() );
    for ( QV_INT idx = 0; idx < qvVectorLength( argv ); idx++ )
    {
        tool::Owner item( qvVectorObjAt( argv, idx ) );
        if ( isNegativeNumber( qvStringFrom( item ) ) )
            qvVectorAppendInt( result.edit(), idx );
        else
            qvVectorAppendObj( result.edit(), item );
    }
    return result;
}

tool::String argumentOf( QV_OPT_SEQ *seq, QV_VECTOR *argv )
{
    tool::Owner arg( qvOptSeqArgObj( seq ) );
    if ( qvObjSort( arg ) == qvStringSort() )
        return tool::String( qvOptSeqArgString( seq ) );
    tool::Owner item( qvVectorObjAt( argv, qvBoxedIntValue( qvBoxedIntFrom( arg ) ) ) );
    return tool::String( qvObjToString( item ) );
}

std::string nameAndValue( const tool::Option &option )
{
    std::string text = option.letter ? std::string( "-" ) + option.letter + ", " : "    ";
    text += std::string( "--" ) + option.name;
    return option.value ? text + " " + option.value : text;
}

// Paragraphs of a help text begin at a column; longer ones go on there.
void printWrapped( tool::Output &out, size_t column, std::string_view text )
{
    constexpr size_t width = 100;
    size_t used = column;
    bool first = true;
    while ( !text.empty() )
    {
        size_t length = std::min( text.find_first_of( " \n" ), text.size() );
        bool newLine = length < text.size() && text[length] == '\n';
        if ( !first && used + 1 + length > width )
        {
            out.write( "\n" + std::string( column, ' ' ) );
            used = column;
            first = true;
        }
        out.write( ( first ? "" : " " ) + std::string( text.substr( 0, length ) ) );
        used += length + !first;
        first = false;
        text.remove_prefix( std::min( length + 1, text.size() ) );
        if ( newLine )
        {
            out.write( "\n" + std::string( column, ' ' ) );
            used = column;
            first = true;
        }
    }
    out.write( "\n" );
}

std::string heading( const char *text )
{
    const tool::Style &style = tool::styleOf( STDOUT_FILENO );
    return std::string( style.bold ) + text + style.off + "\n";
}

void printRow( tool::Output &out, size_t width, const std::string &name, const char *text )
{
    const tool::Style &style = tool::styleOf( STDOUT_FILENO );
    out.write( "  " + std::string( style.name ) + name + style.off +
               std::string( width - name.size() + 2, ' ' ) );
    printWrapped( out, width + 4, text );
}

} // namespace

namespace tool
{

// ---- Messages ----

void Tool::report( QV_MESSAGE *message )
{
    if ( qvMessageLevel( message ) == QV_MESSAGE_LEVEL_ERROR )
        status = std::max( status, static_cast<int>( statusData ) );
    // What stands on standard output so far comes before the message.
    out.pass();
    qvMessageSinkWriteMessage( messages, message );
}

void Tool::error( QV_LOCATION *place, std::string_view text )
{
    report( Owner( qvMessageCreate( QV_MESSAGE_LEVEL_ERROR, place, stringOf( text ) ) ) );
}

void Tool::error( std::string_view file, std::string_view text )
{
    error( Owner( qvLocationCreateWithDescription( stringOf( file ) ) ), text );
}

void Tool::warning( std::string_view file, std::string_view text )
{
    Owner place( qvLocationCreateWithDescription( stringOf( file ) ) );
    report( Owner( qvMessageCreate( QV_MESSAGE_LEVEL_WARNING, place, stringOf( text ) ) ) );
}

void Tool::usage( std::string_view text )
{
    error( name(), text );
    usageHint();
}

void Tool::usageHint()
{
    String hint = stringOf( "try: " + name() + " --help" );
    report( Owner( qvMessageCreate( QV_MESSAGE_LEVEL_NORMAL, nullptr, hint ) ) );
    status = statusUsage;
}

std::string Tool::name() const
{
    const char *called = command ? command->name : group ? group->name : nullptr;
    return called ? std::string( "qv " ) + called : "qv";
}

// ---- Arguments ----

bool Arguments::has( std::string_view name ) const
{
    return std::any_of( options.begin(), options.end(),
                        [&]( const auto &given ) { return given.first->name == name; } );
}

std::optional<std::string> Arguments::value( std::string_view name ) const
{
    for ( auto given = options.rbegin(); given != options.rend(); ++given )
    {
        if ( given->first->name == name )
            return given->second;
    }
    return std::nullopt;
}

std::string Arguments::operand( size_t index ) const
{
    return textOf( static_cast<QV_STRING *>( operands[index] ) );
}

static bool parse( Tool &tool, const Command &command, QV_VECTOR *argv, Arguments &arguments )
{
    std::vector<const Option *> options = allOptions( command );
    Owner seq( qvOptSeqCreate( definition( options ), withoutNegativeNumbers( argv ) ) );
    while ( qvOptSeqHasNext( seq ) )
    {
        QV_INT id = qvOptSeqNext( seq );
        if ( id == operandId )
            arguments.operands.push_back( argumentOf( seq, argv ) );
        else if ( id >= 0 )
        {
            const Option *option = options[static_cast<size_t>( id )];
            arguments.options.emplace_back( option, option->value ? textOf( argumentOf( seq, argv ) ) : "" );
        }
        else if ( qvOptSeqHasError( seq ) )
        {
            tool.usage( textOf( String( qvOptSeqError( seq ) ) ) );
            return false;
        }
    }
    return true;
}

bool runCommand( Tool &tool, const Command &command, QV_VECTOR *argv )
{
    tool.command = &command;
    Arguments arguments;
    if ( !parse( tool, command, argv, arguments ) )
        return false;
    if ( arguments.has( helpOption.name ) )
        printHelp( tool, command );
    else if ( arguments.operands.size() < command.least )
        tool.usage( std::string( "missing argument, expected: " ) + command.operands );
    else if ( arguments.operands.size() > command.most )
        tool.usage( *command.operands ? std::string( "too many arguments, expected: " ) + command.operands
                                      : "no arguments are taken" );
    else if ( command.paths && !tool.paths )
        tool.restart = true;
    else
        command.run( tool, arguments );
    return tool.status == statusGood;
}

// ---- Help ----

const char purpose[] = "Works on data files, text and times, and on programs that use the qv library.";

static constexpr Meaning everywhereRows[] = {
    { "-", "Standard input, or standard output." },
    { "--", "What follows is no option, even if it begins with a dash." },
    { "-h, --help", "Help, for each tool with examples: qv store set --help, or qv help store set." },
    { "--version", "The version of the command." },
    { "names", "Tools and long options may be shortened: qv st sh FILE" },
};
static constexpr Meaning exitCodeRows[] = {
    { "0", "Success." },
    { "1", "The data, or a file, is at fault." },
    { "2", "The command line is." },
};
static constexpr Meaning variableRows[] = {
    { "NO_COLOR", "If it is set and not empty, nothing is coloured; else output to a terminal is." },
    { "TERM", "Nothing is coloured if it is \"dumb\"." },
    { "HOME", "The folder below which a program's data folders lie." },
};
constinit const std::span<const Meaning> everywhere = everywhereRows;
constinit const std::span<const Meaning> exitCodes = exitCodeRows;
constinit const std::span<const Meaning> variables = variableRows;

std::vector<const Option *> allOptions( const Command &command )
{
    std::vector<const Option *> all;
    for ( const Option &option : command.options )
        all.push_back( &option );
    all.push_back( &helpOption );
    return all;
}

const char *wordOf( const Group &group, const Command &command )
{
    return group.name ? command.name + std::string_view( group.name ).size() + 1 : command.name;
}

void printHelp( Tool &tool, const Command &command )
{
    Output &out = tool.out;
    out.write( std::string( command.summary ) + "\n\n" + heading( "Usage" ) );
    out.write( std::string( "  qv " ) + command.name + " [OPTION...] " + command.operands + "\n" );
    if ( command.details )
    {
        out.write( "\n" );
        printWrapped( out, 0, command.details );
    }
    std::vector<const Option *> options = allOptions( command );
    size_t width = 0;
    for ( const Option *option : options )
        width = std::max( width, nameAndValue( *option ).size() );
    out.write( "\n" + heading( "Options" ) );
    for ( const Option *option : options )
        printRow( out, width, nameAndValue( *option ), option->text );
    out.write( "\n" + heading( "Examples" ) );
    for ( const Example &example : command.examples )
        out.write( std::string( "  # " ) + example.text + "\n  " + example.line + "\n" );
}

static void printCommands( Tool &tool, std::span<const Command *const> commands, size_t width )
{
    for ( const Command *command : commands )
        printRow( tool.out, width, command->name, command->summary );
}

void printHelp( Tool &tool, const Group &group )
{
    size_t width = 0;
    for ( const Command *command : group.commands )
        width = std::max( width, std::string_view( command->name ).size() );
    tool.out.write( std::string( group.summary ) + "\n\n" + heading( "Tools" ) );
    printCommands( tool, group.commands, width );
    tool.out.write( "\nEach tells more, with examples: qv " + std::string( group.commands[0]->name ) +
                    " --help\n" );
}

void printHelp( Tool &tool )
{
    size_t width = 0;
    for ( const Group &group : groups() )
    {
        for ( const Command *command : group.commands )
            width = std::max( width, std::string_view( command->name ).size() );
    }
    tool.out.write( std::string( purpose ) + "\n\n" + heading( "Usage" ) );
    tool.out.write( "  qv TOOL [OPTION...] [ARGUMENT...]\n" );
    for ( const Group &group : groups() )
    {
        tool.out.write( "\n" + heading( group.summary ) );
        printCommands( tool, group.commands, width );
    }
    for ( const auto &[title, rows] : { std::pair( "Everywhere", everywhere ),
                                        { "Exit codes", exitCodes },
                                        { "Environment", variables } } )
    {
        tool.out.write( "\n" + heading( title ) );
        for ( const Meaning &row : rows )
            printRow( tool.out, width, row.word, row.text );
    }
}

static void runHelp( Tool &tool, const Arguments &arguments )
{
    Owner argv( qvVectorCreate() );
    for ( const String &operand : arguments.operands )
        qvVectorAppendString( argv.edit(), operand );
    qvVectorAppendString( argv.edit(), stringOf( "--help" ) );
    tool.command = nullptr;
    runTools( tool, argv );
}

static constexpr Example helpExamples[] = {
    { "qv help", "the list of the tools" },
    { "qv help store set", "one of them" },
};

const Command help = {
    "help", "[TOOL...]",  0,       2, "Tell how a tool is used", "The same as --help behind the tool's name.",
    {},     helpExamples, runHelp,
};

} // namespace tool
