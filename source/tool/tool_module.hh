#ifndef QV_TOOL_TOOL_MODULE_HH
#define QV_TOOL_TOOL_MODULE_HH

// Modules: where their files lie, what their records say, and what loading them brings.

#include "tool.hh"

namespace tool
{

// What a module's record says; the lists are separated by blanks.
struct ModuleFacts
{
    std::string name;
    std::string version;
    std::string needs;
    std::string extendedBy;
    std::string description;
};

// Those of the library itself.
ModuleFacts libraryFacts();

// The folder where the library looks for modules, with a slash at its end; empty if there is none.
std::string moduleFolder();
std::string moduleFile( const std::string &folder, const std::string &name );
// The names of the modules that a folder has files for, in their order.
std::vector<std::string> moduleNamesIn( const std::string &folder );

// Opens a module's file in this process, without loading the module, and reads its record. On failure the reason is set.
std::optional<ModuleFacts> readModule( const std::string &file, const std::string &name,
                                       std::string &reason );

// What came of loading a module in this process; it is unloaded again. Those that came with it are in load order.
struct ModuleLoad
{
    std::string reason; // empty if it was loaded
    std::optional<ModuleFacts> module;
    std::vector<ModuleFacts> dependencies;
    std::vector<ModuleFacts> extensions;
    std::vector<std::string> missing; // each extension that couldn't be loaded, with the reason
};
ModuleLoad loadModule( const std::string &name );

// The library's print function: keeps what it says of loading for loadModule, or shows it at once.
void takePrinted( const QV_CHAR *chs, QV_INT chsLength );
void showPrinted();

} // namespace tool

#endif
