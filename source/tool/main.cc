// The qv command: which tool runs, and how the process ends.

#include "tool.hh"

#include <qv/base/qv_boxed_null.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_runtime.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace tool
{

namespace
{

const Command *const storeCommands[] = { &storeShow, &storeCheck, &storeConvert,
                                         &storeGet,  &storeSet,   &storeDel };
const Command *const textCommands[] = { &textConvert, &textInfo, &textCharsets };
const Command *const aloneCommands[] = { &charFacts, &timeFacts };

const Group allGroups[] = {
    { "store", "Data files", storeCommands },
    { "text", "Text", textCommands },
    { nullptr, "Characters and times", aloneCommands },
};

// ---- Messages ----

// A message is one line on standard error; its level is coloured where the terminal shows colours.
QV_BOOL writeMessage( qvObj, QV_MESSAGE *message )
{
    clearProgressLine();
    std::string text = textOf( String( qvMessageToString( message ) ) );
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
    return QV_BOOL_FROM( std::fprintf( stderr, "%s\n", text.c_str() ) >= 0 );
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

bool isHelp( QV_VECTOR *argv )
{
    if ( qvVectorLength( argv ) == 0 )
        return false;
    Owner first( qvVectorObjAt( argv, 0 ) );
    return qvStringEqualsCstr( qvStringFrom( first ), "--help", -1 ) ||
           qvStringEqualsCstr( qvStringFrom( first ), "-h", -1 );
}

// A switch leads to no tool: it has told so itself.
QV_BOOL runSwitch( QV_TOOL_SWITCH *tools, QV_VECTOR *argv, Tool &tool )
{
    QV_BOOL good = qvToolSwitchRunTool( tools, argv, tool.messages, &tool );
    if ( !good && tool.status == statusGood )
        tool.status = statusUsage;
    return good;
}

QV_BOOL runStore( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    if ( isHelp( argv ) )
    {
        printHelp( toolOf( closure ), allGroups[0] );
        return QV_TRUE;
    }
    Owner tools( qvToolSwitchCreate() );
    qvToolSwitchSetToolCstr( tools.edit(), "show", -1, runOne<storeShow> );
    qvToolSwitchSetToolCstr( tools.edit(), "check", -1, runOne<storeCheck> );
    qvToolSwitchSetToolCstr( tools.edit(), "convert", -1, runOne<storeConvert> );
    qvToolSwitchSetToolCstr( tools.edit(), "get", -1, runOne<storeGet> );
    qvToolSwitchSetToolCstr( tools.edit(), "set", -1, runOne<storeSet> );
    qvToolSwitchSetToolCstr( tools.edit(), "del", -1, runOne<storeDel> );
    return runSwitch( tools, argv, toolOf( closure ) );
}

QV_BOOL runText( QV_VECTOR *argv, QV_MESSAGE_SINK *, void *closure )
{
    if ( isHelp( argv ) )
    {
        printHelp( toolOf( closure ), allGroups[1] );
        return QV_TRUE;
    }
    Owner tools( qvToolSwitchCreate() );
    qvToolSwitchSetToolCstr( tools.edit(), "convert", -1, runOne<textConvert> );
    qvToolSwitchSetToolCstr( tools.edit(), "info", -1, runOne<textInfo> );
    qvToolSwitchSetToolCstr( tools.edit(), "charsets", -1, runOne<textCharsets> );
    return runSwitch( tools, argv, toolOf( closure ) );
}

void run( Tool &tool, QV_VECTOR *argv )
{
    if ( isHelp( argv ) || qvVectorLength( argv ) == 0 )
    {
        printHelp( tool );
        return;
    }
    Owner first( qvVectorObjAt( argv, 0 ) );
    if ( qvStringEqualsCstr( qvStringFrom( first ), "--version", -1 ) )
    {
        tool.out.write( "qv " QV_TOOL_VERSION "\n" );
        return;
    }
    if ( qvStringBeginsWithChar( qvStringFrom( first ), '-' ) )
    {
        tool.usage( textOf( qvStringFrom( first ) ) + ": option undefined" );
        return;
    }
    Owner tools( qvToolSwitchCreate() );
    qvToolSwitchSetToolCstr( tools.edit(), "store", -1, runStore );
    qvToolSwitchSetToolCstr( tools.edit(), "text", -1, runText );
    qvToolSwitchSetToolCstr( tools.edit(), "char", -1, runOne<charFacts> );
    qvToolSwitchSetToolCstr( tools.edit(), "time", -1, runOne<timeFacts> );
    runSwitch( tools, argv, tool );
}

int runAll( int argc, char **argv )
{
    Owner arguments( qvVectorCreate() );
    for ( int idx = 1; idx < argc; idx++ )
        qvVectorAppendString( arguments.edit(), stringOf( argv[idx] ) );
    Owner messages( qv___MessageSinkCreate( writeMessage, flushMessages, nullptr ) );
    Tool tool{ .messages = messages };
    run( tool, arguments );
    if ( !tool.out.finish() )
        tool.error( tool.out.displayName(), tool.out.failure() );
    return tool.status;
}

} // namespace

std::span<const Group> groups()
{
    return allGroups;
}

} // namespace tool

int main( int argc, char **argv )
{
    qvRuntimeStartup( QV_RUNTIME_FLAG_MINIMAL, -1, nullptr, "qv", "QV", QV_TOOL_VERSION );
    // A reader that has seen enough ends the command without a word, as with any filter.
    signal( SIGPIPE, SIG_DFL );
    int status = tool::runAll( argc, argv );
    qvRuntimeShutdown();
    return status;
}
