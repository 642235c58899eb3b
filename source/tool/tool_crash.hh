#ifndef QV_TOOL_TOOL_CRASH_HH
#define QV_TOOL_TOOL_CRASH_HH

// Lines of a call stack, and the functions and source lines behind them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool
{

// A function and its place in a source file. A frame has several if the compiler merged functions into one another: the
// innermost comes first.
struct SourceLine
{
    std::string function;
    std::string place; // empty if it isn't known
};

struct Frame
{
    std::string line;   // as the report has it
    std::string module; // the program or library; empty if the line doesn't tell
    std::string symbol; // may be empty
    uint64_t offset = 0;
    uint64_t address = 0; // in the process
    bool hasOffset = false;
    std::vector<SourceLine> sources; // empty if nothing is known
};

// "module(symbol+0x1) [0x2]", where symbol, offset or both may be missing. Anything else is a line of its own.
Frame frameOf( std::string_view line );

enum class Lookup
{
    done,
    noProgram // none is installed that reads debug information
};

// Fills in the sources, as far as the modules are still there and have debug information. Frames stand behind a call, but
// for the one that a signal interrupted, and the one above it, to which the handler returns; interrupted is its index.
Lookup findSources( std::vector<Frame> &frames, std::optional<size_t> interrupted );

} // namespace tool

#endif
