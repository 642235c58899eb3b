// What is done with modules in the process itself.

#include "tool_module.hh"

#include <qv/runtime/qv_author.h>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_paths.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>

namespace
{

using tool::ModuleFacts;
using tool::ModuleLoad;
using tool::Owner;
using tool::String;

// ---- What the library says while it loads ----

constexpr std::string_view loadLine = "[qv___RuntimeTryLoadModule()] module: ";
constexpr std::string_view dependenciesLine = "[qv___RuntimeTryRegisterModule()] dependencies: <";
constexpr std::string_view fileLine = "[qv___RuntimePlatformLoadModule()] ";
constexpr std::string_view errorWord = "dlerror(): ";

// A module whose load was tried, in the order of trying.
struct Attempt
{
    std::string name;
    std::string dependencies; // "a, b>"
    std::string failure;      // empty if its file was good
};

std::vector<Attempt> attempts;
bool shown = false;

// ---- Records ----

std::string_view productName()
{
    return qvModule()->moduleRecord->productName;
}

bool isSetOtherwise( const char *text, const char *own )
{
    return text && std::strcmp( text, own ) != 0;
}

bool isSetOtherwise( QV_INT number, QV_INT own )
{
    return number != -1 && number != own;
}

std::string versionOf( const QV_MODULE_RECORD &record )
{
    std::string text = std::to_string( record.productVersionMajor );
    for ( QV_INT number : { record.productVersionMinor, record.productVersionRelease } )
    {
        if ( number != -1 )
            text += "." + std::to_string( number );
    }
    return text;
}

// Why this library doesn't take a record because of the product that it was built for; empty if that is right.
std::string foreignProduct( const QV_MODULE_RECORD &record, const QV_MODULE_RECORD &own )
{
    if ( !record.productName )
        return "";
    if ( isSetOtherwise( record.productName, own.productName ) )
        return std::string( "built for the product " ) + record.productName + ", this is " + own.productName;
    if ( isSetOtherwise( record.productVersionMajor, own.productVersionMajor ) ||
         isSetOtherwise( record.productVersionMinor, own.productVersionMinor ) ||
         isSetOtherwise( record.productVersionRelease, own.productVersionRelease ) )
        return "built for version " + versionOf( record ) + " of " + own.productName + ", this is " +
               versionOf( own );
    if ( isSetOtherwise( record.productBuildTime, own.productBuildTime ) )
        return std::string( "built for the build of " ) + record.productBuildTime + ", this is that of " +
               own.productBuildTime;
    return "";
}

// Reads the record that a module object points to. Nothing but its own fields may be trusted.
std::optional<ModuleFacts> factsOf( const QV_MODULE *module, std::string &reason )
{
    const QV_MODULE_RECORD *own = qvModule()->moduleRecord;
    const QV_MODULE_RECORD *record = module->type == QV___OBJ_TYPE_MODULE ? module->moduleRecord : nullptr;
    if ( !record || record->recordVersion != own->recordVersion )
        reason = "no module object of this library's form";
    else
        reason = foreignProduct( *record, *own );
    if ( !reason.empty() )
        return std::nullopt;
    for ( const char *text :
          { record->name, record->version, record->deps, record->exts, record->description } )
    {
        if ( !text )
            reason = "its record is not filled in";
    }
    if ( !reason.empty() )
        return std::nullopt;
    return ModuleFacts{ record->name, record->version, record->deps, record->exts, record->description };
}

ModuleFacts factsOf( QV_MODULE *loaded )
{
    std::string reason;
    return *factsOf( static_cast<const QV_MODULE *>( loaded ), reason );
}

// ---- Loading ----

std::vector<ModuleFacts> loadedModules()
{
    std::vector<ModuleFacts> all;
    Owner modules( qvRuntimeModulesVector() );
    for ( QV_INT idx = 0; idx < qvVectorLength( modules ); idx++ )
    {
        Owner module( qvVectorObjAt( modules, idx ) );
        all.push_back( factsOf( qvModuleFrom( module ) ) );
    }
    return all;
}

bool isLoaded( const std::string &name )
{
    Owner module( qvRuntimeModule( tool::stringOf( name ) ) );
    return module != nullptr;
}

// Why a module's file was refused.
std::string fileFailureOf( const Attempt &attempt )
{
    size_t error = attempt.failure.find( errorWord );
    if ( error != std::string::npos )
        return attempt.failure.substr( error + errorWord.size() );
    std::string reason;
    std::optional<ModuleFacts> facts =
        tool::readModule( tool::moduleFile( tool::moduleFolder(), attempt.name ), attempt.name, reason );
    return facts ? "its record is malformed" : reason;
}

bool hasDependency( const Attempt &attempt, const std::string &name )
{
    return ( ", " + attempt.dependencies ).find( ", " + name + "," ) != std::string::npos ||
           ( ", " + attempt.dependencies ).find( ", " + name + ">" ) != std::string::npos;
}

// Why a module that was tried isn't loaded: its file, what it depends on, or itself.
std::string failureOf( const Attempt &attempt )
{
    if ( !attempt.failure.empty() )
        return fileFailureOf( attempt );
    for ( const Attempt &other : attempts )
    {
        if ( !isLoaded( other.name ) && hasDependency( attempt, other.name ) )
            return "needs " + other.name + ": " + failureOf( other );
    }
    return "its start function refuses";
}

void sortOut( ModuleLoad &load, const std::string &name )
{
    for ( ModuleFacts &facts : loadedModules() )
    {
        if ( facts.name == name )
            load.module = std::move( facts );
        else if ( facts.name != qvModule()->moduleRecord->name )
            ( load.module ? load.extensions : load.dependencies ).push_back( std::move( facts ) );
    }
}

void sortOutMissing( ModuleLoad &load )
{
    for ( const Attempt &attempt : attempts )
    {
        bool isNeeded = std::any_of( attempts.begin(), attempts.end(), [&]( const Attempt &other ) {
            return hasDependency( other, attempt.name );
        } );
        if ( !isLoaded( attempt.name ) && !isNeeded )
            load.missing.push_back( attempt.name + ": " + failureOf( attempt ) );
    }
    auto last = std::unique( load.missing.begin(), load.missing.end() );
    load.missing.erase( last, load.missing.end() );
}

} // namespace

namespace tool
{

void takePrinted( const QV_CHAR *chs, QV_INT chsLength )
{
    if ( chsLength == 0 )
        return;
    std::string line = textOf( String( qvStringCreateFromCharsCopy( chs, chsLength ) ) );
    if ( shown )
        std::fprintf( stderr, "%s\n", line.c_str() );
    if ( line.starts_with( loadLine ) )
        attempts.push_back( { line.substr( loadLine.size() ), "", "" } );
    else if ( attempts.empty() )
        return;
    else if ( line.starts_with( dependenciesLine ) )
        attempts.back().dependencies = line.substr( dependenciesLine.size() );
    else if ( line.starts_with( fileLine ) )
        attempts.back().failure = line.substr( fileLine.size() );
}

void showPrinted()
{
    shown = true;
}

ModuleFacts libraryFacts()
{
    return factsOf( qvModule() );
}

std::string moduleFolder()
{
    Owner paths( qvRuntimePaths() );
    Owner path( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_PRODUCT_BIN ) );
    String text( path ? qvPathUnixTryEncode( path ) : nullptr );
    return text ? textOf( std::move( text ) ) : "";
}

std::string moduleFile( const std::string &folder, const std::string &name )
{
    return folder + "lib" + std::string( productName() ) + "-" + name + ".so";
}

std::vector<std::string> moduleNamesIn( const std::string &folder )
{
    std::vector<std::string> names;
    const std::string begin = "lib" + std::string( productName() ) + "-", end = ".so";
    std::error_code error;
    for ( std::filesystem::directory_iterator entry( folder, error ), last; !error && entry != last;
          entry.increment( error ) )
    {
        std::string file = entry->path().filename();
        if ( !file.starts_with( begin ) || !file.ends_with( end ) ||
             file.size() <= begin.size() + end.size() )
            continue;
        std::string name = file.substr( begin.size(), file.size() - begin.size() - end.size() );
        if ( qvRuntimeValidateModuleName( stringOf( name ) ) )
            names.push_back( name );
    }
    std::sort( names.begin(), names.end() );
    return names;
}

std::optional<ModuleFacts> readModule( const std::string &file, const std::string &name, std::string &reason )
{
    void *library = dlopen( file.c_str(), RTLD_NOW | RTLD_LOCAL );
    if ( !library )
    {
        reason = dlerror();
        return std::nullopt;
    }
    auto *module = static_cast<const QV_MODULE *>( dlsym( library, ( name + "___module" ).c_str() ) );
    std::optional<ModuleFacts> facts;
    if ( module )
        facts = factsOf( module, reason );
    else
        reason = dlerror();
    if ( facts && facts->name != name )
    {
        reason = "holds the module " + facts->name;
        facts.reset();
    }
    dlclose( library );
    return facts;
}

ModuleLoad loadModule( const std::string &name )
{
    attempts.clear();
    ModuleLoad load;
    if ( qvRuntimeTryLoadModule( stringOf( name ) ) )
    {
        sortOut( load, name );
        sortOutMissing( load );
    }
    else
        load.reason = failureOf( attempts.front() );
    qvRuntimeUnloadAllModules();
    return load;
}

} // namespace tool
