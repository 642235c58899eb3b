// qv crash: the crash files that the library's report leaves.

#include "tool_crash.hh"
#include "tool.hh"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Frame;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Reading ----

constexpr std::string_view stars = "  **********************************************************************";
constexpr std::string_view title = "  * ABNORMAL PROGRAM TERMINATION                                       *";
constexpr std::string_view head[] = { stars, title, stars };

constexpr std::string_view sectionNames[] = { "PRODUCT", "APPLICATION", "ABORT", "SIGNAL", "STACK" };

constexpr size_t labelWidth = 10;
constexpr std::string_view indent = "    ";

struct Section
{
    std::string name;
    std::vector<std::pair<std::string, std::string>> facts;
    std::vector<Frame> frames;
};

struct Fault
{
    size_t line; // from 0
    size_t column;
    std::string text;
};

// What two threads leave that crash at once may be several reports, and sections may come again.
using Report = std::vector<Section>;

class Reader
{
  public:
    explicit Reader( std::string_view text ) : rest( text ) {}

    // Null with a fault if the text is no report.
    std::optional<Report> read()
    {
        Report report;
        skipBlank();
        if ( !readHead() )
            return std::nullopt;
        for ( skipBlank(); !rest.empty(); skipBlank() )
        {
            if ( peek() == stars ? !readHead() : !readSection( report ) )
                return std::nullopt;
        }
        return report;
    }

    const Fault &fault() const
    {
        return found;
    }

    // The last line has no end: something kept it from being written, as a full disk does.
    bool isCut() const
    {
        return cut;
    }

  private:
    std::string_view peek() const
    {
        return rest.substr( 0, rest.find( '\n' ) );
    }

    void advance()
    {
        size_t end = rest.find( '\n' );
        cut = end == std::string_view::npos;
        rest.remove_prefix( cut ? rest.size() : end + 1 );
        line++;
    }

    void skipBlank()
    {
        while ( !rest.empty() && peek().empty() )
            advance();
    }

    bool fail( size_t column, std::string text )
    {
        found = { line, column, std::move( text ) };
        return false;
    }

    // Whether a line is the last one and stops where this would go on.
    bool isBeginningOf( std::string_view whole ) const
    {
        return rest.find( '\n' ) == std::string_view::npos && whole.starts_with( rest );
    }

    bool readHead()
    {
        for ( std::string_view expected : head )
        {
            std::string_view actual = peek();
            if ( actual != expected )
            {
                auto differ = std::mismatch( actual.begin(), actual.end(), expected.begin(), expected.end() );
                return fail( static_cast<size_t>( differ.first - actual.begin() ), "no crash report" );
            }
            advance();
        }
        return true;
    }

    bool readSection( Report &report )
    {
        // Of a line no more than blanks were written.
        if ( isBeginningOf( indent ) )
        {
            advance();
            return true;
        }
        std::string_view text = peek();
        if ( !text.starts_with( "  " ) )
            return fail( 0, "no section of a crash report" );
        std::string_view name = text.substr( 2 );
        if ( std::find( std::begin( sectionNames ), std::end( sectionNames ), name ) ==
             std::end( sectionNames ) )
        {
            bool begun = std::any_of(
                std::begin( sectionNames ), std::end( sectionNames ),
                [&]( std::string_view known ) { return isBeginningOf( "  " + std::string( known ) ); } );
            if ( !begun )
                return fail( 2, "no section of a crash report" );
            advance();
            return true;
        }
        advance();
        report.push_back( { std::string( name ), {}, {} } );
        while ( peek().starts_with( indent ) || continuesFact( report.back() ) )
        {
            if ( !( name == "STACK" ? readFrame( report.back() ) : readFact( report.back() ) ) )
                return false;
        }
        return true;
    }

    bool readFrame( Section &section )
    {
        section.frames.push_back( tool::frameOf( peek().substr( indent.size() ) ) );
        advance();
        return true;
    }

    // A message may have several lines.
    bool continuesFact( const Section &section ) const
    {
        std::string_view text = peek();
        return !section.facts.empty() && !text.empty() && text[0] != ' ';
    }

    // "    Label     : value", or a further line of the value before, which gets an empty label.
    bool readFact( Section &section )
    {
        if ( continuesFact( section ) )
        {
            section.facts.emplace_back( "", peek() );
            advance();
            return true;
        }
        std::string_view text = peek().substr( indent.size() );
        std::string_view label = text.substr( 0, labelWidth );
        bool last = rest.find( '\n' ) == std::string_view::npos;
        if ( text.substr( label.size(), 2 ) != ": " && !last )
            return fail( indent.size() + label.size(), "no fact of a crash report: \": \" expected" );
        advance();
        label = label.substr( 0, label.find_last_not_of( ' ' ) + 1 );
        if ( text.size() >= labelWidth + 2 )
            section.facts.emplace_back( label, text.substr( labelWidth + 2 ) );
        return true;
    }

    std::string_view rest;
    size_t line = 0;
    bool cut = false;
    Fault found = {};
};

// ---- Showing ----

// Nothing of a file may steer the terminal.
std::string harmless( std::string_view text )
{
    std::string result = tool::textOf( tool::stringOf( text ) );
    for ( char &letter : result )
    {
        if ( static_cast<unsigned char>( letter ) < ' ' || letter == 0x7F )
            letter = '?';
    }
    return result;
}

std::string lowerCase( std::string text, size_t from = 0 )
{
    for ( size_t idx = from; idx < text.size(); idx++ )
        text[idx] = text[idx] >= 'A' && text[idx] <= 'Z' ? static_cast<char>( text[idx] + 32 ) : text[idx];
    return text;
}

constexpr size_t numberWidth = 4;

void printFrame( tool::Output &out, size_t number, const Frame &frame )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    std::string start = style.dim + tool::aligned( std::to_string( number ), numberWidth ) + style.off + "  ";
    if ( frame.sources.empty() )
        out.write( start + harmless( frame.line ) + "\n" );
    for ( const tool::SourceLine &source : frame.sources )
    {
        std::string place = source.place.empty() ? frame.module : source.place;
        out.write( start + style.name + harmless( source.function ) + style.off + "  " + style.dim +
                   harmless( place ) + style.off + "\n" );
        start = std::string( numberWidth + 2, ' ' );
    }
}

// How often the frames from first on come again and again, a few at a time: a function that calls itself fills a stack so.
struct Repeat
{
    size_t length;
    size_t times;
};

Repeat repeatAt( const std::vector<Frame> &frames, size_t first )
{
    constexpr size_t longest = 8;
    constexpr size_t fewest = 4;
    for ( size_t length = 1; length <= longest; length++ )
    {
        size_t end = first + length;
        while ( end < frames.size() && frames[end].line == frames[end - length].line )
            end++;
        if ( size_t times = ( end - first ) / length; times >= fewest )
            return { length, times };
    }
    return { 1, 1 };
}

void printStack( tool::Output &out, const std::vector<Frame> &frames )
{
    const Style &style = tool::styleOf( STDOUT_FILENO );
    for ( size_t first = 0; first < frames.size(); )
    {
        Repeat repeat = repeatAt( frames, first );
        for ( size_t idx = first; idx < first + repeat.length; idx++ )
            printFrame( out, idx, frames[idx] );
        if ( repeat.times > 1 )
            out.write( std::string( numberWidth + 2, ' ' ) + style.dim + "the same " +
                       tool::counted( static_cast<long long>( repeat.times - 1 ), "time" ) + " more" +
                       style.off + "\n" );
        first += repeat.length * repeat.times;
    }
}

void printSection( tool::Output &out, const Section &section )
{
    tool::printTitle( out, lowerCase( section.name, 1 ) );
    for ( const auto &[label, value] : section.facts )
        tool::printFact( out, lowerCase( harmless( label ) ), harmless( value ), 12 );
    printStack( out, section.frames );
}

// ---- Sources ----

// A handler is called by the platform's library, below which stands the frame that was interrupted.
std::optional<size_t> interruptedFrame( const std::vector<Frame> &frames )
{
    for ( size_t idx = 0; idx + 1 < frames.size(); idx++ )
    {
        const std::string &module = frames[idx].module;
        if ( module.substr( module.rfind( '/' ) + 1 ).starts_with( "libc.so" ) )
            return idx + 1;
    }
    return std::nullopt;
}

// Lines may have moved in what was built after the crash.
void warnOfNewer( Tool &tool, const std::string &name, const std::vector<Frame> &frames )
{
    struct stat report;
    if ( name == "-" || stat( name.c_str(), &report ) != 0 )
        return;
    std::vector<std::string> told;
    for ( const Frame &frame : frames )
    {
        struct stat module;
        if ( !frame.sources.empty() && stat( frame.module.c_str(), &module ) == 0 &&
             module.st_mtime > report.st_mtime &&
             std::find( told.begin(), told.end(), frame.module ) == told.end() )
        {
            told.push_back( frame.module );
            tool.warning( name, harmless( frame.module ) +
                                    " is newer than the report, its functions and lines may be others" );
        }
    }
}

std::string shownName( const std::string &name )
{
    return name == "-" ? "<stdin>" : name;
}

void addSources( Tool &tool, const std::string &name, Report &report )
{
    tool::Watch watch( "Reading debug information" );
    bool signal = std::any_of( report.begin(), report.end(),
                               []( const Section &section ) { return section.name == "SIGNAL"; } );
    for ( Section &section : report )
    {
        std::optional<size_t> interrupted = signal ? interruptedFrame( section.frames ) : std::nullopt;
        if ( tool::findSources( section.frames, interrupted ) == tool::Lookup::noProgram )
        {
            tool.warning( shownName( name ),
                          "no source lines: none of addr2line, llvm-addr2line, eu-addr2line is installed" );
            return;
        }
        warnOfNewer( tool, name, section.frames );
    }
}

// ---- The command ----

constexpr tool::Option rawOption = { 'r', "raw", nullptr,
                                     "Print the lines of the stack as they stand in the file." };

// Each section but the first one printed stands behind an empty line.
void showFile( Tool &tool, const std::string &name, bool raw, bool &first )
{
    Owner buffer = tool::readFile( tool, name );
    if ( !buffer )
        return;
    Reader reader( { reinterpret_cast<const char *>( qvBufferBacking( buffer ) ),
                     static_cast<size_t>( qvBufferLength( buffer ) ) } );
    std::optional<Report> report = reader.read();
    if ( !report )
    {
        const Fault &fault = reader.fault();
        Owner place( qvLocationCreateWithLineOffsetAndColumn( tool::locationOf( name ),
                                                              static_cast<QV_INT>( fault.line ),
                                                              static_cast<QV_INT>( fault.column + 1 ) ) );
        return tool.error( place, fault.text );
    }
    if ( reader.isCut() )
        tool.warning( shownName( name ), "the report is cut short" );
    if ( !raw )
        addSources( tool, name, *report );
    for ( const Section &section : *report )
    {
        if ( !first )
            tool.out.write( "\n" );
        first = false;
        printSection( tool.out, section );
    }
}

void runCrash( Tool &tool, const Arguments &arguments )
{
    bool first = true;
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
        showFile( tool, arguments.operand( idx ), arguments.has( rawOption.name ), first );
}

const tool::Option options[] = { rawOption };
const tool::Example examples[] = {
    { "qv crash qv-0.1.0-debian12-x64-5f19fc6fef35e110.txt", "with functions and source lines" },
    { "qv crash --raw - < report.txt", "on another machine than that of the crash" },
};

} // namespace

namespace tool
{

const Command crash = {
    "crash",
    "FILE...",
    1,
    noLimit,
    "Show the report of a crash",
    "For each file that a crash left: what crashed and why, and the call stack, innermost call first. "
    "Functions and source "
    "lines are shown where the programs and libraries of the stack are still in their places, with debug "
    "information.",
    options,
    examples,
    runCrash,
};

} // namespace tool
