// Colours, and the line that tells how far the work is.

#include "tool.hh"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace
{

constexpr tool::Style plain;
constexpr tool::Style coloured = {
    .bold = "\033[1m",
    .dim = "\033[2m",
    .name = "\033[34m",
    .text = "\033[32m",
    .number = "\033[36m",
    .word = "\033[35m",
    .bad = "\033[1;31m",
    .good = "\033[32m",
    .off = "\033[0m",
};

// What stands on the terminal belongs to whoever holds this: a line that counts the seconds comes from a thread of its own.
constinit std::mutex lineLock;
bool lineShown = false;

void clearLine()
{
    if ( lineShown )
        std::fputs( "\r\033[K", stderr );
    std::fflush( stderr );
    lineShown = false;
}

void showLine( const std::string &text )
{
    std::lock_guard holder( lineLock );
    std::fprintf( stderr, "\r\033[K%s", text.c_str() );
    std::fflush( stderr );
    lineShown = true;
}

double now()
{
    timespec time;
    clock_gettime( CLOCK_MONOTONIC, &time );
    return static_cast<double>( time.tv_sec ) + static_cast<double>( time.tv_nsec ) * 1e-9;
}

bool refusesColour()
{
    const char *refusal = std::getenv( "NO_COLOR" );
    const char *terminal = std::getenv( "TERM" );
    return ( refusal && *refusal ) || ( terminal && std::string_view( terminal ) == "dumb" );
}

} // namespace

namespace tool
{

const Style &styleOf( int descriptor )
{
    return isatty( descriptor ) && !refusesColour() ? coloured : plain;
}

void printTitle( Output &out, std::string_view title )
{
    const Style &style = styleOf( STDOUT_FILENO );
    out.write( style.bold + std::string( title ) + style.off + "\n" );
}

void printFact( Output &out, std::string label, std::string_view text, size_t width )
{
    const Style &style = styleOf( STDOUT_FILENO );
    out.write( "  " + std::string( style.dim ) + padded( std::move( label ), width ) + style.off );
    out.write( std::string( text ) + "\n" );
}

Progress::Progress( std::string named, long long totalUnits, const char *unitName )
    : label( std::move( named ) ), unit( unitName ), total( totalUnits ), start( now() ), next( start + 1 ),
      terminal( isatty( STDERR_FILENO ) )
{
}

Progress::~Progress()
{
    clearProgressLine();
}

void Progress::advance( long long done )
{
    if ( !terminal )
        return;
    double time = now();
    if ( time < next )
        return;
    next = time + 0.1;
    std::string share = total > 0 ? " " + std::to_string( done * 100 / total ) + "%" : "";
    showLine( label + share + ", " + grouped( done ) + " " + unit + ", " +
              std::to_string( std::lround( std::floor( time - start ) ) ) + " s" );
}

Watch::Watch( std::string task ) : label( std::move( task ) )
{
    if ( isatty( STDERR_FILENO ) )
        teller = std::thread( [this] { tell(); } );
}

Watch::~Watch()
{
    if ( teller.joinable() )
    {
        {
            std::lock_guard holder( lock );
            ended = true;
        }
        wake.notify_one();
        teller.join();
    }
    if ( shown )
        clearProgressLine();
}

void Watch::step( std::string task )
{
    std::lock_guard holder( lock );
    label = std::move( task );
}

void Watch::tell()
{
    std::unique_lock holder( lock );
    for ( int seconds = 1; !wake.wait_for( holder, std::chrono::seconds( 1 ), [this] { return ended; } );
          seconds++ )
    {
        showLine( label + ", " + std::to_string( seconds ) + " s" );
        shown = true;
    }
}

void clearProgressLine()
{
    std::lock_guard holder( lineLock );
    clearLine();
}

bool printMessage( const std::string &text )
{
    std::lock_guard holder( lineLock );
    clearLine();
    return std::fprintf( stderr, "%s\n", text.c_str() ) >= 0;
}

} // namespace tool
