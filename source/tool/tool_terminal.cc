// Colours, and the line that tells how far the work is.

#include "tool.hh"

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

bool lineShown = false;

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
    std::fprintf( stderr, "\r\033[K%s%s, %s %s, %.0f s", label.c_str(), share.c_str(),
                  grouped( done ).c_str(), unit, std::floor( time - start ) );
    std::fflush( stderr );
    lineShown = true;
}

void clearProgressLine()
{
    if ( lineShown )
        std::fputs( "\r\033[K", stderr );
    std::fflush( stderr );
    lineShown = false;
}

} // namespace tool
