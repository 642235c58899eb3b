// qv module list and check. What runs foreign code runs in a child process: the command itself, called with --here.

#include "tool_module.hh"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::ModuleFacts;
using tool::ModuleLoad;
using tool::Style;
using tool::Tool;

// ---- Child processes ----

struct Ended
{
    int status = -1; // as from waitpid
    std::string output;
};

enum class Streams
{
    inherited,
    captured, // standard output; errors are shown
    quiet     // standard output; errors are dropped
};

std::string readAll( int descriptor )
{
    std::string text;
    char block[4096];
    for ( ssize_t length; ( length = read( descriptor, block, sizeof block ) ) > 0; )
        text.append( block, static_cast<size_t>( length ) );
    return text;
}

// Runs the command anew and waits for its end.
Ended runSelf( std::vector<std::string> arguments, Streams streams )
{
    std::vector<char *> argv = { const_cast<char *>( "qv" ) };
    for ( std::string &argument : arguments )
        argv.push_back( argument.data() );
    argv.push_back( nullptr );
    Ended ended;
    int ends[2] = { -1, -1 };
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init( &actions );
    if ( streams != Streams::inherited && pipe2( ends, O_CLOEXEC ) == 0 )
        posix_spawn_file_actions_adddup2( &actions, ends[1], STDOUT_FILENO );
    if ( streams == Streams::quiet )
        posix_spawn_file_actions_addopen( &actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0 );
    pid_t child;
    bool started = posix_spawn( &child, "/proc/self/exe", &actions, nullptr, argv.data(), environ ) == 0;
    posix_spawn_file_actions_destroy( &actions );
    if ( ends[1] >= 0 )
        close( ends[1] );
    if ( started && ends[0] >= 0 )
        ended.output = readAll( ends[0] );
    if ( started )
        waitpid( child, &ended.status, 0 );
    if ( ends[0] >= 0 )
        close( ends[0] );
    return ended;
}

// How a child ended that has not told of an error itself; empty if it has, or if there is none.
std::string deathOf( const Ended &ended, const std::string &timeout )
{
    if ( WIFEXITED( ended.status ) && WEXITSTATUS( ended.status ) <= tool::statusUsage )
        return "";
    if ( WIFEXITED( ended.status ) )
        return "its code ends the process with exit code " + std::to_string( WEXITSTATUS( ended.status ) );
    if ( !WIFSIGNALED( ended.status ) )
        return "can't start a process";
    int number = WTERMSIG( ended.status );
    if ( number == SIGALRM )
        return "takes longer than " + timeout + " s";
    return "its code ends the process by signal " + std::to_string( number ) + " (" + strsignal( number ) +
           ")";
}

// ---- What both have in common ----

constexpr const char *defaultTimeout = "30";

const tool::Option folderOption = { 'f', "folder", "FOLDER",
                                    "Look there for modules, not where the library does." };
const tool::Option timeoutOption = { 't', "timeout", "SECONDS",
                                     "Give a module this time, 30 seconds if not told." };
const tool::Option hereOption = {
    0, "here", nullptr, "Work in this process, for debuggers: a faulty module takes the command with it." };

bool isNumber( const std::string &text )
{
    return !text.empty() && text.size() < 6 && text.find_first_not_of( "0123456789" ) == std::string::npos &&
           std::stoi( text ) > 0;
}

// The folder that children find modules in.
void setFolder( const std::string &folder )
{
    std::string product = tool::textOf( tool::String( qvRuntimeVersionProductName() ) );
    for ( char &letter : product )
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>( letter - 32 ) : letter;
    setenv( ( "JN_" + product + "_BIN_PATH" ).c_str(), folder.c_str(), 1 );
}

// Reads what the options say; false after an error.
struct Setting
{
    std::string folder;
    std::string timeout;
    bool here;

    bool read( Tool &tool, const Arguments &arguments )
    {
        folder = tool::moduleFolder();
        timeout = arguments.value( "timeout" ).value_or( defaultTimeout );
        here = arguments.has( "here" );
        if ( !isNumber( timeout ) )
            return tool.usage( "\"" + timeout + "\" is no number of seconds" ), false;
        for ( const tool::String &name : arguments.operands )
        {
            if ( !qvRuntimeValidateModuleName( name ) )
                return tool.usage( "\"" + tool::textOf( static_cast<QV_STRING *>( name ) ) +
                                   "\" is no module name: 1 to 32 of a-z, 0-9 and single inner \"_\", a "
                                   "letter first" ),
                       false;
        }
        if ( here && arguments.has( "timeout" ) )
            alarm( static_cast<unsigned>( std::stoi( timeout ) ) );
        return !arguments.has( "folder" ) || change( tool, *arguments.value( "folder" ) );
    }

  private:
    bool change( Tool &tool, const std::string &given )
    {
        if ( here )
            return tool.usage( "--folder and --here exclude each other" ), false;
        char *whole = realpath( given.c_str(), nullptr );
        if ( !whole )
            return tool.error( given, std::string( "can't be found: " ) + strerror( errno ) ), false;
        folder = whole;
        folder += folder.back() == '/' ? "" : "/";
        free( whole );
        setFolder( folder );
        return true;
    }
};

// ---- Rows of plain text, one a module ----

using Field = std::string ModuleFacts::*;
constexpr Field fields[] = { &ModuleFacts::name, &ModuleFacts::version, &ModuleFacts::needs,
                             &ModuleFacts::extendedBy, &ModuleFacts::description };

// Facts come from modules: nothing in them may break a row.
std::string plainRow( const ModuleFacts &facts )
{
    std::string row;
    for ( Field field : fields )
    {
        std::string text = facts.*field;
        std::replace_if(
            text.begin(), text.end(), []( char ch ) { return static_cast<unsigned char>( ch ) < 32; }, ' ' );
        row += ( row.empty() ? "" : "\t" ) + text;
    }
    return row + "\n";
}

std::optional<ModuleFacts> factsOfRow( const std::string &row )
{
    ModuleFacts facts;
    size_t begin = 0;
    for ( Field field : fields )
    {
        size_t end = row.find_first_of( "\t\n", begin );
        if ( end == std::string::npos )
            return std::nullopt;
        facts.*field = row.substr( begin, end - begin );
        begin = end + 1;
    }
    return facts;
}

// The facts of one module, by a child that opens its file.
std::optional<ModuleFacts> askForFacts( const std::string &name, const Setting &setting, Streams streams,
                                        std::string &death )
{
    Ended ended =
        runSelf( { "module", "list", "--here", "--plain", "--timeout", setting.timeout, name }, streams );
    death = deathOf( ended, setting.timeout );
    return death.empty() ? factsOfRow( ended.output ) : std::nullopt;
}

// ---- List ----

std::optional<ModuleFacts> listedFacts( Tool &tool, const std::string &name, const Setting &setting )
{
    std::string file = tool::moduleFile( setting.folder, name ), reason;
    std::optional<ModuleFacts> facts = setting.here ? tool::readModule( file, name, reason )
                                                    : askForFacts( name, setting, Streams::captured, reason );
    if ( !reason.empty() )
        tool.error( name, reason );
    else if ( !facts )
        tool.status = std::max( tool.status, static_cast<int>( tool::statusData ) );
    return facts;
}

void printTable( Tool &tool, std::vector<ModuleFacts> rows )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    for ( ModuleFacts &row : rows )
    {
        for ( Field field : fields )
            row.*field = ( row.*field ).empty() ? "-" : row.*field;
    }
    rows.insert( rows.begin(), { "NAME", "VERSION", "NEEDS", "EXTENDED BY", "DESCRIPTION" } );
    for ( size_t idx = 0; idx < rows.size(); idx++ )
    {
        std::string line;
        for ( Field field : fields )
        {
            size_t width = 0;
            for ( const ModuleFacts &row : rows )
                width = std::max( width, ( row.*field ).size() );
            line += field == &ModuleFacts::description ? rows[idx].*field
                                                       : tool::padded( rows[idx].*field, width + 2 );
        }
        const char *colour = idx == 0 ? style.dim : "";
        tool.out.write( colour + line + ( *colour ? style.off : "" ) + "\n" );
    }
}

void runList( Tool &tool, const Arguments &arguments )
{
    Setting setting;
    if ( !setting.read( tool, arguments ) )
        return;
    std::vector<ModuleFacts> rows;
    std::vector<std::string> names = tool::moduleNamesIn( setting.folder );
    if ( arguments.operands.empty() )
        rows.push_back( tool::libraryFacts() );
    else
        names.clear();
    for ( const tool::String &operand : arguments.operands )
        names.push_back( tool::textOf( static_cast<QV_STRING *>( operand ) ) );
    for ( const std::string &name : names )
    {
        if ( std::optional<ModuleFacts> facts = listedFacts( tool, name, setting ) )
            rows.push_back( *facts );
    }
    if ( !arguments.has( "plain" ) )
    {
        const Style &style = tool::styleOf( STDOUT_FILENO );
        tool.out.write( style.dim + std::string( "# folder " ) + style.off + setting.folder +
                        ( access( setting.folder.c_str(), F_OK ) == 0 ? "\n" : " (isn't there)\n" ) );
        return printTable( tool, rows );
    }
    for ( const ModuleFacts &row : rows )
        tool.out.write( plainRow( row ) );
}

// ---- Check ----

// The way of dependencies on which a module comes back to itself, or empty. Such a load stops the process.
class Circle
{
  public:
    explicit Circle( const Setting &inForce ) : setting( inForce ) {}

    std::string find( const std::string &name )
    {
        auto place = std::find( way.begin(), way.end(), name );
        if ( place != way.end() )
        {
            std::string text;
            for ( ; place != way.end(); ++place )
                text += *place + ", ";
            return text + name;
        }
        if ( std::find( known.begin(), known.end(), name ) != known.end() )
            return "";
        known.push_back( name );
        way.push_back( name );
        std::string found = findBelow( name );
        way.pop_back();
        return found;
    }

  private:
    std::string findBelow( const std::string &name )
    {
        std::string ignored;
        std::optional<ModuleFacts> facts = askForFacts( name, setting, Streams::quiet, ignored );
        for ( std::string_view rest = facts ? facts->needs : std::string_view(); !rest.empty(); )
        {
            size_t length = std::min( rest.find( ' ' ), rest.size() );
            std::string found = find( std::string( rest.substr( 0, length ) ) );
            if ( !found.empty() )
                return found;
            rest.remove_prefix( std::min( length + 1, rest.size() ) );
        }
        return "";
    }

    const Setting &setting;
    std::vector<std::string> way;   // from the module to the one that is looked at
    std::vector<std::string> known; // modules that have been looked at
};

void printOther( Tool &tool, const char *how, const ModuleFacts &other )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    tool.out.write( "  " + std::string( style.dim ) + how + style.off + " " + other.name + " " +
                    other.version + "\n" );
}

bool hasWord( const std::string &words, const std::string &word )
{
    return ( " " + words + " " ).find( " " + word + " " ) != std::string::npos;
}

// What was loaded behind a module extends it, or another module that does, or is needed by such a one.
bool isExtension( const ModuleLoad &load, const ModuleFacts &other )
{
    return hasWord( load.module->extendedBy, other.name ) ||
           std::any_of( load.extensions.begin(), load.extensions.end(), [&]( const ModuleFacts &extension ) {
               return hasWord( extension.extendedBy, other.name );
           } );
}

void checkHere( Tool &tool, const std::string &name )
{
    ModuleLoad load = tool::loadModule( name );
    if ( !load.module )
        return tool.error( name, load.reason );
    const Style &style = tool::styleOf( STDOUT_FILENO );
    tool.out.write( style.bold + name + style.off + " " + load.module->version + ": " + style.good + "good" +
                    style.off + "\n" );
    for ( const ModuleFacts &dependency : load.dependencies )
        printOther( tool, "needs      ", dependency );
    for ( const ModuleFacts &extension : load.extensions )
        printOther( tool, isExtension( load, extension ) ? "extended by" : "brings     ", extension );
    for ( const std::string &missing : load.missing )
        tool.warning( name, "without its extension " + missing );
}

void checkInChild( Tool &tool, const std::string &name, const Setting &setting, bool steps )
{
    std::string circle = Circle( setting ).find( name );
    if ( !circle.empty() )
        return tool.error( name, "depends on itself: " + circle );
    std::vector<std::string> arguments = { "module", "check", "--here", "--timeout", setting.timeout, name };
    if ( steps )
        arguments.push_back( "--steps" );
    tool.out.pass();
    Ended ended = runSelf( arguments, Streams::inherited );
    std::string death = deathOf( ended, setting.timeout );
    if ( !death.empty() )
        tool.error( name, death );
    else if ( ended.status != 0 )
        tool.status = std::max( tool.status, static_cast<int>( tool::statusData ) );
}

void runCheck( Tool &tool, const Arguments &arguments )
{
    Setting setting;
    if ( !setting.read( tool, arguments ) )
        return;
    if ( setting.here && arguments.has( "steps" ) )
        tool::showPrinted();
    for ( const tool::String &operand : arguments.operands )
    {
        std::string name = tool::textOf( static_cast<QV_STRING *>( operand ) );
        if ( setting.here )
            checkHere( tool, name );
        else
            checkInChild( tool, name, setting, arguments.has( "steps" ) );
    }
}

// ---- Tables ----

const tool::Option listOptions[] = {
    folderOption,
    { 'p', "plain", nullptr,
      "A line a module: name, version, needs, extended by and description between tabs." },
    timeoutOption,
    hereOption,
};
const tool::Example listExamples[] = {
    { "qv module list", "what a host on this machine can load" },
    { "qv module list --folder build/modules", "what a build has made" },
    { "qv module list --plain word_count | cut -f 4", "the modules that extend one" },
};

const tool::Option checkOptions[] = {
    folderOption,
    { 's', "steps", nullptr, "Show each step of the library." },
    timeoutOption,
    hereOption,
};
const tool::Example checkExamples[] = {
    { "qv module check word_count", "whether a host can load it, and what comes with it" },
    { "qv module check --folder build/modules --steps word_count", "a built module, step by step" },
    { "gdb --args qv module check --here word_count", "its start under a debugger" },
};

} // namespace

namespace tool
{

const Command moduleList = {
    "module list",
    "[NAME...]",
    0,
    noLimit,
    "List the modules that can be loaded, with what they need and what extends them",
    "Looks into the product's bin folder, or the one that the environment names, as hosts do. Files are "
    "opened, but no "
    "module is started.",
    listOptions,
    listExamples,
    runList,
    true,
    QV_RUNTIME_FLAG_SYSTEM | QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS,
};

const Command moduleCheck = {
    "module check",
    "NAME...",
    1,
    noLimit,
    "Load modules on trial, and tell what keeps one from loading",
    "Each module is started with what it needs and what extends it, and ended again, in a process of its "
    "own.",
    checkOptions,
    checkExamples,
    runCheck,
    true,
    QV_RUNTIME_FLAG_SYSTEM | QV_RUNTIME_FLAG_MODULE_DEBUG | QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG,
};

} // namespace tool
