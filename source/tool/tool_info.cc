// qv info: what the library says of its product, the computer and the paths.

#include "tool.hh"

#include <qv/io/qv_path_directory.h>
#include <qv/json/qv_json_encode.h>
#include <qv/json/qv_json_store.h>
#include <qv/runtime/qv_runtime_info.h>

#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

struct Fact
{
    const char *address; // in the store of the library
    const char *label;
};

struct Section
{
    const char *title;
    std::span<const Fact> facts;
};

constexpr Fact productFacts[] = {
    { "friendlyName", "name" },
    { "product", "identifier" },
    { "version", "version" },
    { "buildTime", "built" },
    { "compatibility", "compatibility" },
    { "os", "built for" },
    { "hardware", "" },
    { "variant", "variant" },
};
constexpr Fact applicationFacts[] = {
    { "applicationFriendlyName", "name" },
    { "applicationIdentifier", "identifier" },
    { "applicationVersion", "version" },
    { "startTime", "started" },
};
constexpr Fact computerFacts[] = {
    { "computerName", "name" },
    { "operatingSystemInfo", "system" },
    { "cpuInfo", "processor" },
};
constexpr Section sections[] = {
    { "Product", productFacts },
    { "Application", applicationFacts },
    { "Computer", computerFacts },
};

void printSection( Tool &tool, const Section &section, QV_STORE *info )
{
    tool::printTitle( tool.out, section.title );
    for ( const Fact &fact : section.facts )
    {
        String text( qvStoreValueCstr( info, fact.address, -1 ) );
        if ( text )
            tool::printFact( tool.out, fact.label, tool::textOf( std::move( text ) ) );
    }
    tool.out.write( "\n" );
}

void printPaths( Tool &tool, QV_RUNTIME_PATHS *paths )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    tool::printTitle( tool.out, "Paths" );
    for ( QV_RUNTIME_PATH rtp = 0; QV_RUNTIME_PATH_OK( rtp ); rtp++ )
    {
        std::string label = tool::shortName( "QV_RUNTIME_PATH_", String( qvRuntimePathToString( rtp ) ) );
        Owner path( qvRuntimePathsPath( paths, rtp ) );
        String text( path ? qvPathPlatformTryEncode( path ) : nullptr );
        if ( !text )
            tool::printFact( tool.out, label, std::string( style.dim ) + "none" + style.off );
        else if ( qvPathDirectoryExists( path ) )
            tool::printFact( tool.out, label, tool::textOf( std::move( text ) ) );
        else
            tool::printFact( tool.out, label,
                             tool::textOf( std::move( text ) ) + style.dim + "  (not there)" + style.off );
    }
}

void runInfo( Tool &tool, const Arguments &arguments )
{
    Owner info( qvRuntimeInfo() );
    Owner paths = tool::runtimePaths();
    if ( arguments.has( "json" ) )
    {
        Owner pathStore( qvRuntimePathsStore( paths ) );
        qvStoreSetStoreCstr( info.edit(), "paths", -1, pathStore );
        tool.out.write( Owner( qvJsonEncode( Owner( qvJsonConvertFromStore( info ) ) ) ) );
        return;
    }
    for ( const Section &section : sections )
        printSection( tool, section, info );
    printPaths( tool, paths );
}

const tool::Option options[] = {
    { 'j', "json", nullptr, "Print JSON." },
};
const tool::Example examples[] = {
    { "qv info", "versions, computer and paths" },
    { "qv info --json > info.json", "for a program" },
    { "HOME=/srv/gateway qv info", "the paths of another user" },
};

} // namespace

namespace tool
{

const Command info = {
    "info",
    "",
    0,
    0,
    "Tell about the product, the computer and the paths",
    "The paths are those of a program of this product that runs for this user, in this environment. Such a "
    "program makes "
    "the folders for data when it starts; this tool doesn't.",
    options,
    examples,
    runInfo,
    true,
};

} // namespace tool
