// qv zone: the host's time zone, and others by their names in both schemes.

#include "tool.hh"

#include <qv/base/qv_timezone.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Offsets ----

// The rules of a zone, by which the system tells offsets: their file, or null if the system has none.
bool hasRules( const std::string &zone )
{
    const char *folder = std::getenv( "TZDIR" );
    std::string path = std::string( folder && *folder ? folder : "/usr/share/zoneinfo" ) + "/" + zone;
    struct stat status;
    bool inside = !zone.empty() && zone[0] != '/' && zone.find( ".." ) == std::string::npos;
    return inside && stat( path.c_str(), &status ) == 0 && S_ISREG( status.st_mode );
}

// The command is one thread and asks for one zone after the other.
void useZone( const std::string &zone )
{
    setenv( "TZ", ( ":" + zone ).c_str(), 1 );
    tzset();
}

// Seconds east of UTC at a time; null if the system can't tell.
std::optional<QV_INT> offsetAt( QV_TIME *time )
{
    QV_INT seconds;
    tm local;
    if ( !qvTimeTryConvertToTimeT( time, &seconds ) )
        return std::nullopt;
    time_t moment = static_cast<time_t>( seconds );
    if ( moment != seconds || !localtime_r( &moment, &local ) )
        return std::nullopt;
    return local.tm_gmtoff;
}

// "+05:30", with seconds where zones of old have them.
std::string offsetText( QV_INT offset )
{
    QV_INT rest = std::abs( offset );
    return ( offset < 0 ? "-" : "+" ) + tool::twoDigits( rest / 3600 ) + ":" +
           tool::twoDigits( rest / 60 % 60 ) + ( rest % 60 ? ":" + tool::twoDigits( rest % 60 ) : "" );
}

// ---- Names ----

std::vector<std::string> ianaNames()
{
    Owner list( qvTimezoneList() );
    std::vector<std::string> names;
    for ( QV_INT idx = 0; idx < qvVectorLength( list ); idx++ )
    {
        Owner item( qvVectorObjAt( list, idx ) );
        names.push_back( tool::textOf( String( qvObjToString( item ) ) ) );
    }
    return names;
}

// A name in the other scheme, or empty.
std::string windowsOf( const std::string &iana )
{
    String other( qvTimezoneIanaToWindows( tool::stringOf( iana ) ) );
    return other ? tool::textOf( std::move( other ) ) : "";
}

std::string ianaOf( const std::string &windows )
{
    String other( qvTimezoneWindowsToIana( tool::stringOf( windows ) ) );
    return other ? tool::textOf( std::move( other ) ) : "";
}

// ---- Sheet ----

class Sheet
{
  public:
    Sheet( Tool &running, QV_TIME *moment, bool brief ) : tool( running ), time( moment ), isShort( brief ) {}

    // The host's zone, whose rules are in force when the command starts.
    void printHost( QV_INT offset )
    {
        std::string name = tool::textOf( String( qvTimezone() ) );
        title( name.empty() ? "(the system files name no zone)" : name );
        if ( isShort )
            return;
        if ( std::string windows = windowsOf( name ); !windows.empty() )
            fact( "Windows", windows );
        // What the environment names is in force in its place.
        if ( const char *named = std::getenv( "TZ" ); named && *named )
            fact( "TZ", named );
        printOffset( offset );
    }

    // False after an error message.
    bool print( const std::string &name )
    {
        std::string iana = ianaOf( name );
        bool isWindows = !iana.empty();
        std::string windows = isWindows ? name : windowsOf( name );
        if ( !isWindows && windows.empty() && !hasRules( name ) )
        {
            tool.error( "\"" + name + "\"", "no such time zone; the list: qv zone --list" );
            return false;
        }
        if ( isShort )
            return printOther( name, isWindows ? iana : windows );
        title( name );
        fact( isWindows ? "IANA" : "Windows", isWindows ? iana : windows.empty() ? "(none)" : windows );
        if ( isWindows )
            printAll( name );
        printRules( isWindows ? iana : name );
        return true;
    }

  private:
    void title( const std::string &name )
    {
        const Style &style = tool::styleOf( STDOUT_FILENO );
        tool.out.write( isShort ? name + "\n" : style.bold + name + style.off + "\n" );
    }

    void fact( const char *name, const std::string &text )
    {
        tool::printFact( tool.out, name, text );
    }

    bool printOther( const std::string &name, const std::string &other )
    {
        if ( other.empty() )
            tool.error( "\"" + name + "\"", "no name in the other scheme" );
        else
            tool.out.write( other + "\n" );
        return !other.empty();
    }

    // What else goes by a Windows name.
    void printAll( const std::string &windows )
    {
        std::vector<std::string> names = ianaNames();
        long long count = std::count_if( names.begin(), names.end(), [&]( const std::string &iana ) {
            return windowsOf( iana ) == windows;
        } );
        fact( "stands for", tool::counted( count, "IANA zone" ) );
    }

    void printRules( const std::string &zone )
    {
        if ( !hasRules( zone ) )
            return fact( "offset", "(this system has no rules of the zone)" );
        useZone( zone );
        if ( std::optional<QV_INT> offset = offsetAt( time ); offset )
            printOffset( *offset );
    }

    void printOffset( QV_INT offset )
    {
        fact( "offset", offsetText( offset ) + ", " + tool::counted( offset, "second" ) );
        // The library's times know no zones: this one is shown as it reads there.
        Owner local( qvTimeCreateFrom( time ) );
        qvTimeShiftSeconds( local.edit(), offset );
        std::string text = tool::textOf( String( qvTimeToString( local ) ) );
        constexpr std::string_view utc = "UTC ";
        fact( "local time", text.starts_with( utc ) ? text.substr( utc.size() ) : text );
    }

    Tool &tool;
    QV_TIME *time;
    bool isShort;
};

void printList( Tool &tool )
{
    for ( const std::string &iana : ianaNames() )
        tool.out.write( tool::padded( iana, 32 ) + windowsOf( iana ) + "\n" );
}

void runZone( Tool &tool, const Arguments &arguments )
{
    if ( arguments.has( "list" ) )
    {
        if ( !arguments.operands.empty() )
            return tool.usage( "--list takes no NAME" );
        return printList( tool );
    }
    std::string text = arguments.value( "at" ).value_or( "now" );
    Owner time = tool::readTime( text );
    if ( !time )
        return tool.error( "\"" + text + "\"", "no time, or a day that doesn't exist" );
    Sheet sheet( tool, time, arguments.has( "short" ) );
    if ( arguments.operands.empty() )
        sheet.printHost( arguments.has( "at" ) ? offsetAt( time ).value_or( 0 ) : qvTimezoneUtcOffset() );
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
    {
        if ( idx > 0 && !arguments.has( "short" ) )
            tool.out.write( "\n" );
        sheet.print( arguments.operand( idx ) );
    }
}

const tool::Option options[] = {
    { 'a', "at", "TIME", "Tell the offset at this time, in UTC as qv time reads it; now if not given." },
    { 'q', "short", nullptr, "Print only the name: the host's own, or the one in the other scheme." },
    { 'l', "list", nullptr, "List all known IANA names and their Windows names." },
};
const tool::Example examples[] = {
    { "qv zone", "the host's zone, its offset and its time" },
    { "qv zone Europe/Berlin 'Tokyo Standard Time'", "zones by their names in either scheme" },
    { "qv zone America/New_York --at 2024-07-01", "as it was in a summer" },
    { "qv zone --short 'W. Europe Standard Time'", "only the name in the other scheme" },
};

} // namespace

namespace tool
{

const Command zoneFacts = {
    "zone",
    "[NAME...]",
    0,
    noLimit,
    "Tell the host's time zone, and zones by their IANA or Windows names",
    "Offsets are those of the system's own rules. Case counts in names.",
    options,
    examples,
    runZone,
};

} // namespace tool
