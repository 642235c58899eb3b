// qv time: calendar times read, shifted and printed.

#include "tool.hh"

#include <algorithm>

namespace
{

using tool::Arguments;
using tool::Owner;
using tool::String;
using tool::Tool;

// Far beyond any date that people mean, and far from the ends of the integers that the library counts years in.
constexpr QV_INT largestCount = 1'000'000'000'000;
constexpr QV_INT largestYear = 1'000'000'000'000'000;

void shiftWeeks( QV_TIME **time, QV_INT weeks )
{
    qvTimeShiftDays( time, weeks * 7 );
}

struct Unit
{
    const char *name; // any beginning of it counts that fits no other
    void ( *shift )( QV_TIME **time, QV_INT count );
};

constexpr Unit units[] = {
    { "years", qvTimeShiftYears },     { "months", qvTimeShiftMonths }, { "weeks", shiftWeeks },
    { "days", qvTimeShiftDays },       { "hours", qvTimeShiftHours },   { "minutes", qvTimeShiftMinutes },
    { "seconds", qvTimeShiftSeconds },
};

const Unit *unitOf( std::string_view word )
{
    const Unit *found = nullptr;
    for ( const Unit &unit : units )
    {
        if ( word.empty() || !std::string_view( unit.name ).starts_with( word ) )
            continue;
        if ( found )
            return nullptr;
        found = &unit;
    }
    return found;
}

struct Shift
{
    const Unit *unit;
    QV_INT count;
};

// "1y", "-2 months", "+3d 4h": numbers, each with a unit. False if the text is nothing of the kind.
bool readShifts( std::string_view text, std::vector<Shift> &shifts )
{
    auto isBlank = []( char ch ) { return ch == ' ' || ch == ','; };
    size_t before = shifts.size();
    for ( size_t idx = 0; idx < text.size(); )
    {
        if ( isBlank( text[idx] ) )
        {
            idx++;
            continue;
        }
        bool negative = text[idx] == '-';
        idx += negative || text[idx] == '+';
        size_t digits = idx;
        QV_INT count = 0;
        for ( ; idx < text.size() && text[idx] >= '0' && text[idx] <= '9'; idx++ )
            count = std::min( count * 10 + ( text[idx] - '0' ), largestCount + 1 );
        if ( idx == digits || count > largestCount )
            return false;
        while ( idx < text.size() && isBlank( text[idx] ) )
            idx++;
        size_t word = idx;
        while ( idx < text.size() && text[idx] >= 'a' && text[idx] <= 'z' )
            idx++;
        const Unit *unit = unitOf( text.substr( word, idx - word ) );
        if ( !unit )
            return false;
        shifts.push_back( { unit, negative ? -count : count } );
    }
    return shifts.size() > before;
}

void printFacts( Tool &tool, QV_TIME *time )
{
    tool::printFact( tool.out, "day of the year",
                     std::to_string( qvTimeDayOfYear( time ) ) + " of " +
                         std::to_string( qvTimeDaysInYear( time ) ) );
    tool::printFact( tool.out, "month",
                     tool::textOf( String( qvMonthToString( qvTimeMonth( time ) ) ) ) + ", " +
                         tool::counted( qvTimeDaysInMonth( time ), "day" ) );
    QV_INT seconds;
    if ( qvTimeTryConvertToTimeT( time, &seconds ) )
        tool::printFact( tool.out, "since 1970", tool::counted( seconds, "second" ) );
}

// "3 days 04:05:06" of a number of seconds.
std::string duration( QV_INT seconds )
{
    QV_INT rest = seconds < 0 ? -( seconds % 86400 ) : seconds % 86400;
    return ( seconds < 0 ? "-" : "" ) +
           tool::counted( seconds < 0 ? -( seconds / 86400 ) : seconds / 86400, "day" ) + " " +
           tool::twoDigits( rest / 3600 ) + ":" + tool::twoDigits( rest / 60 % 60 ) + ":" +
           tool::twoDigits( rest % 60 );
}

bool isWithin( QV_TIME *time )
{
    return qvTimeYear( time ) <= largestYear && qvTimeYear( time ) >= -largestYear;
}

void runTime( Tool &tool, const Arguments &arguments )
{
    std::string text;
    for ( size_t idx = 0; idx < arguments.operands.size(); idx++ )
        text += ( idx ? " " : "" ) + arguments.operand( idx );
    std::vector<Shift> shifts;
    for ( const auto &[option, value] : arguments.options )
    {
        if ( std::string_view( option->name ) == "shift" && !readShifts( value, shifts ) )
            return tool.usage( "\"" + value +
                               "\" is no shift: numbers with units such as 1y 2mo 3w 4d 5h 6mi 7s" );
    }
    Owner time = tool::readTime( text );
    if ( !time )
        return tool.error( "\"" + text + "\"", "no time, or a day that doesn't exist" );
    for ( const Shift &shift : shifts )
    {
        if ( !isWithin( time ) )
            return tool.error( "\"" + text + "\"", "too far away to be shifted" );
        shift.unit->shift( time.edit(), shift.count );
    }
    tool.out.write( tool::textOf( String( qvTimeToString( time ) ) ) + "\n" );
    if ( !arguments.has( "short" ) )
        printFacts( tool, time );
    std::optional<std::string> until = arguments.value( "until" );
    if ( !until )
        return;
    Owner end = tool::readTime( *until );
    QV_INT seconds;
    if ( !end )
        return tool.error( "\"" + *until + "\"", "no time, or a day that doesn't exist" );
    if ( !qvTimeDeltaSeconds( time, end, &seconds ) )
        return tool.error( "\"" + *until + "\"", "too far away to be counted" );
    tool::printFact( tool.out, "until", tool::textOf( String( qvTimeToString( end ) ) ) );
    tool::printFact( tool.out, "", duration( seconds ) + ", " + tool::counted( seconds, "second" ) );
}

const tool::Option options[] = {
    { 's', "shift", "COUNT UNIT...",
      "Move the time; may be given again. Units: years, months, weeks, days, hours, minutes, "
      "seconds, or their beginnings." },
    { 'u', "until", "TIME", "Count from the time to another one." },
    { 'q', "short", nullptr, "Print only the time." },
};
const tool::Example examples[] = {
    { "qv time", "now" },
    { "qv time 2024-02-29 12:00 --shift '1y -3d'", "a year later, less three days" },
    { "qv time @1700000000 --short", "of seconds since the start of 1970" },
    { "qv time 2024-jan-1 --until 2024-12-24", "how long until then" },
};

} // namespace

namespace tool
{

Owner<QV_TIME> readTime( const std::string &text )
{
    if ( text.empty() || text == "now" )
        return Owner( qvTimeNow() );
    String read = tool::stringOf( text );
    if ( text[0] != '@' )
        return Owner( qvTimeTryCreateFromString( read ) );
    QV_INT seconds;
    QV_INT consumed;
    if ( !qvStringScanInt( read, 1, -1, 10, &seconds, &consumed ) || consumed + 1 != qvStringLength( read ) )
        return {};
    return Owner( qvTimeTryCreateFromTimeT( seconds ) );
}

const Command timeFacts = {
    "time",
    "[TEXT]",
    0,
    noLimit,
    "Read, shift and print calendar times",
    "TEXT is a time such as \"2024-01-01 12:00:00\", of which all but the year may be missing; now if not "
    "given. All times "
    "are UTC. A shift that ends on a day that doesn't exist moves on to the first of the next month.",
    options,
    examples,
    runTime,
};

} // namespace tool
