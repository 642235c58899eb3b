// The qv command: which tool runs, and how the process ends.

#include "tool_module.hh"

#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_runtime.h>

#include <csignal>
#include <cstdio>
#include <iterator>
#include <unistd.h>

namespace tool
{

namespace
{

// ---- Messages ----

// A message is one line on standard error; its level is coloured where the terminal shows colours. What the library's
// switch says has no place of its own.
QV_BOOL writeMessage( qvObj closure, QV_MESSAGE *message )
{
    std::string text = textOf( String( qvMessageToString( message ) ) );
    if ( !qvMessageHasLocation( message ) && qvMessageLevel( message ) == QV_MESSAGE_LEVEL_ERROR )
        text.insert( 0, unboxed<Tool>( closure )->name() + ": " );
    const Style &style = styleOf( STDERR_FILENO );
    const char *word = qvMessageLevel( message ) == QV_MESSAGE_LEVEL_ERROR     ? "error:"
                       : qvMessageLevel( message ) == QV_MESSAGE_LEVEL_WARNING ? "warning:"
                                                                               : "";
    size_t place = *word ? text.find( word ) : std::string::npos;
    if ( *style.off && place != std::string::npos )
    {
        size_t length = std::string_view( word ).size();
        const char *colour = qvMessageLevel( message ) == QV_MESSAGE_LEVEL_ERROR ? style.bad : style.word;
        text = style.bold + text.substr( 0, place ) + style.off + colour + word + style.off +
               text.substr( place + length );
    }
    return QV_BOOL_FROM( printMessage( text ) );
}

QV_BOOL flushMessages( qvObj )
{
    return QV_BOOL_FROM( std::fflush( stderr ) == 0 );
}

// ---- Tools ----

Tool &toolOf( void *closure )
{
    return *static_cast<Tool *>( closure );
}

template <const Command &command> QV_BOOL runOne( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    return QV_BOOL_FROM( runCommand( toolOf( closure ), command, argv ) );
}

template <const Command &...list> constexpr const Command *commandsOf[] = { &list... };
template <const Command &...list> constexpr qvToolSwitchToolFunc functionsOf[] = { runOne<list>... };

template <const Command &...list> constexpr Group groupOf( const char *name, const char *summary )
{
    return { name, summary, commandsOf<list...>, functionsOf<list...> };
}

// Each tool stands here once; switch, help, manual page and completions come from this table.
constexpr Group allGroups[] = {
    groupOf<storeShow, storeCheck, storeConvert, storeGet, storeSet, storeDel>( "store", "Data files" ),
    groupOf<jsonCheck, jsonFormat, jsonGet>( "json", "JSON" ),
    groupOf<textConvert, textInfo, textCharsets>( "text", "Text" ),
    groupOf<processShow>( "process", "Processes" ),
    groupOf<crash>( nullptr, "Crash reports" ),
    groupOf<moduleList, moduleCheck>( "module", "Modules" ),
    groupOf<tagMatch, tagRewrite>( "tag", "Tags" ),
    groupOf<charFacts, timeFacts, zoneFacts>( nullptr, "Characters, times and zones" ),
    groupOf<info>( nullptr, "Product and computer" ),
    groupOf<installShow, installWrite>( "install-info", "Install information" ),
    groupOf<help, generate>( nullptr, "Help" ),
};

bool isHelp( QV_VECTOR *argv )
{
    if ( qvVectorLength( argv ) == 0 )
        return false;
    Owner first( qvVectorObjAt( argv, 0 ) );
    return qvStringEqualsCstr( qvStringFrom( first ), "--help", -1 ) ||
           qvStringEqualsCstr( qvStringFrom( first ), "-h", -1 );
}

void addCommands( Owner<QV_TOOL_SWITCH> &tools, const Group &group )
{
    for ( size_t idx = 0; idx < group.commands.size(); idx++ )
        qvToolSwitchSetToolCstr( tools.edit(), wordOf( group, *group.commands[idx] ), -1,
                                 group.functions[idx] );
}

// A switch leads to no tool: it has told so itself.
bool runSwitch( QV_TOOL_SWITCH *tools, QV_VECTOR *argv, Tool &tool )
{
    bool good = qvToolSwitchRunTool( tools, argv, tool.messages, &tool );
    if ( !good && tool.status == statusGood )
        tool.usageHint();
    return good;
}

template <size_t place> QV_BOOL runGroup( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    Tool &tool = toolOf( closure );
    tool.group = &allGroups[place];
    if ( isHelp( argv ) )
    {
        printHelp( tool, allGroups[place] );
        return QV_TRUE;
    }
    Owner tools( qvToolSwitchCreate() );
    addCommands( tools, allGroups[place] );
    return QV_BOOL_FROM( runSwitch( tools, argv, tool ) );
}

template <size_t... places> Owner<QV_TOOL_SWITCH> allTools( std::index_sequence<places...> )
{
    constexpr qvToolSwitchToolFunc functions[] = { runGroup<places>... };
    Owner tools( qvToolSwitchCreate() );
    for ( size_t place = 0; place < sizeof...( places ); place++ )
    {
        const Group &group = allGroups[place];
        if ( group.name )
            qvToolSwitchSetToolCstr( tools.edit(), group.name, -1, functions[place] );
        else
            addCommands( tools, group );
    }
    return tools;
}

// Null if the command needs the product's paths; with the flags of its start.
std::optional<int> runAll( int argc, char **argv, QV_RUNTIME_FLAGS &flags )
{
    Owner arguments( qvVectorCreate() );
    for ( int idx = 1; idx < argc; idx++ )
        qvVectorAppendString( arguments.edit(), stringOf( argv[idx] ) );
    Tool tool{ .out = {}, .paths = !( flags & QV_RUNTIME_FLAG_MINIMAL ) };
    Owner messages( qv___MessageSinkCreate( writeMessage, flushMessages, qvBoxedIntObj( boxOf( &tool ) ) ) );
    tool.messages = messages;
    runTools( tool, arguments );
    if ( tool.restart )
    {
        findDataPlaces();
        flags = tool.command->flags;
        return std::nullopt;
    }
    if ( !tool.out.finish() )
        tool.error( tool.out.displayName(), tool.out.failure() );
    return tool.status;
}

// What a module that is checked leaves behind is told after this time.
constexpr QV_INT unloadTimeout = 5000; // milliseconds

std::optional<int> runStarted( int argc, char **argv, QV_RUNTIME_FLAGS &flags )
{
    qvRuntimeStartup( flags, unloadTimeout, takePrinted, "qv", "QV", QV_TOOL_VERSION );
    // A reader that has seen enough ends the command without a word, as with any filter.
    signal( SIGPIPE, SIG_DFL );
    std::optional<int> status = runAll( argc, argv, flags );
    qvRuntimeShutdown();
    return status;
}

} // namespace

std::span<const Group> groups()
{
    return allGroups;
}

void runTools( Tool &tool, QV_VECTOR *argv )
{
    if ( isHelp( argv ) || qvVectorLength( argv ) == 0 )
        return printHelp( tool );
    Owner first( qvVectorObjAt( argv, 0 ) );
    if ( qvStringEqualsCstr( qvStringFrom( first ), "--version", -1 ) )
        return tool.out.write( "qv " QV_TOOL_VERSION "\n" );
    if ( qvStringBeginsWithChar( qvStringFrom( first ), '-' ) )
        return tool.usage( textOf( qvStringFrom( first ) ) + ": option undefined" );
    runSwitch( allTools( std::make_index_sequence<std::size( allGroups )>() ), argv, tool );
}

} // namespace tool

int main( int argc, char **argv )
{
    QV_RUNTIME_FLAGS flags = QV_RUNTIME_FLAG_MINIMAL;
    std::optional<int> status = tool::runStarted( argc, argv, flags );
    if ( !status )
    {
        // Modules find all as in a host.
        if ( !( flags & QV_RUNTIME_FLAG_SYSTEM ) )
            tool::hideDataPlaces();
        status = tool::runStarted( argc, argv, flags );
    }
    return *status;
}
