// qv process show: the statistics of a server's processes as a table with bars.

#include "tool_store.hh"

#include <qv/sys/qv_int.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace
{

using tool::Arguments;
using tool::DataFile;
using tool::Owner;
using tool::String;
using tool::Style;
using tool::Tool;

// ---- Sums ----

struct Row
{
    std::string name;
    QV_INT living = 0; // processes
    QV_INT ended = 0;
    QV_INT runs = 0;
    QV_INT latencyTotal = 0; // milliseconds
    QV_INT latencyMax = 0;
    QV_INT runtimeTotal = 0;
    QV_INT runtimeMax = 0;
};

void add( Row &row, const Row &other )
{
    row.living = qvIntAddSaturating( row.living, other.living );
    row.ended = qvIntAddSaturating( row.ended, other.ended );
    row.runs = qvIntAddSaturating( row.runs, other.runs );
    row.latencyTotal = qvIntAddSaturating( row.latencyTotal, other.latencyTotal );
    row.latencyMax = std::max( row.latencyMax, other.latencyMax );
    row.runtimeTotal = qvIntAddSaturating( row.runtimeTotal, other.runtimeTotal );
    row.runtimeMax = std::max( row.runtimeMax, other.runtimeMax );
}

Row rowOf( QV_PROCESS_STATISTICS_GROUP *group )
{
    Row row;
    row.runs = qvProcessStatisticsGroupExecutions( group );
    row.latencyTotal = qvProcessStatisticsGroupLatencyTotal( group );
    row.latencyMax = qvProcessStatisticsGroupLatencyMax( group );
    row.runtimeTotal = qvProcessStatisticsGroupRuntimeTotal( group );
    row.runtimeMax = qvProcessStatisticsGroupRuntimeMax( group );
    return row;
}

// A living process since its creation or its last reset; without runs where the file doesn't tell. Its name is the beginning
// of its identifier, and the thread that it is tied to.
Row rowOf( QV_PROCESS_STATISTICS *process, bool sinceReset )
{
    Row row;
    row.living = 1;
    Owner identifier( qvProcessStatisticsIdentifier( process ) );
    row.name = "  " + tool::textOf( String( qvIdentifierToString( identifier ) ) ).substr( 0, 8 ) + " on " +
               tool::textOf( String( qvProcessStatisticsDomainName( process ) ) ) + " " +
               std::to_string( qvProcessStatisticsThreadHint( process ) );
    Owner interval( sinceReset ? qvProcessStatisticsIntervalSinceReset( process )
                               : qvProcessStatisticsIntervalSinceCreation( process ) );
    if ( !interval )
        return row;
    row.runs = qvProcessStatisticsIntervalExecutions( interval );
    row.latencyTotal = qvProcessStatisticsIntervalLatencyTotal( interval );
    row.latencyMax = qvProcessStatisticsIntervalLatencyMax( interval );
    row.runtimeTotal = qvProcessStatisticsIntervalRuntimeTotal( interval );
    row.runtimeMax = qvProcessStatisticsIntervalRuntimeMax( interval );
    return row;
}

// What the processes of a family did that have ended, and those that live: from the sum of these if the file has it,
// else one by one.
Row rowOf( QV_PROCESS_STATISTICS_FAMILY *family, bool sinceReset )
{
    Row row;
    row.name = tool::textOf( String( qvProcessStatisticsFamilyName( family ) ) );
    Owner past( sinceReset ? qvProcessStatisticsFamilyGroupPastSinceReset( family )
                           : qvProcessStatisticsFamilyGroupPast( family ) );
    if ( past )
    {
        add( row, rowOf( past ) );
        row.ended = qvProcessStatisticsGroupCount( past );
    }
    Owner current( sinceReset ? qvProcessStatisticsFamilyGroupCurrentSinceReset( family )
                              : qvProcessStatisticsFamilyGroupCurrentSinceCreation( family ) );
    if ( current )
    {
        add( row, rowOf( current ) );
        row.living = qvProcessStatisticsGroupCount( current );
        return row;
    }
    for ( QV_INT idx = 0; idx < qvProcessStatisticsFamilyProcessesLength( family ); idx++ )
        add( row, rowOf( Owner( qvProcessStatisticsFamilyProcessAt( family, idx ) ), sinceReset ) );
    return row;
}

// ---- Keys ----

double average( QV_INT total, QV_INT count )
{
    return count > 0 ? static_cast<double>( total ) / static_cast<double>( count ) : 0;
}

struct Key
{
    const char *name;
    double ( *value )( const Row &row );
};

const Key keys[] = {
    { "total", []( const Row &row ) { return static_cast<double>( row.runtimeTotal ); } },
    { "runs", []( const Row &row ) { return static_cast<double>( row.runs ); } },
    { "latency", []( const Row &row ) { return average( row.latencyTotal, row.runs ); } },
    { "latency-max", []( const Row &row ) { return static_cast<double>( row.latencyMax ); } },
    { "run", []( const Row &row ) { return average( row.runtimeTotal, row.runs ); } },
    { "run-max", []( const Row &row ) { return static_cast<double>( row.runtimeMax ); } },
};

// The key of a name; null after a usage error.
const Key *takeKey( Tool &tool, const Arguments &arguments )
{
    std::string name = arguments.value( "sort" ).value_or( keys[0].name );
    std::string names;
    for ( const Key &key : keys )
    {
        if ( name == key.name )
            return &key;
        names += ( names.empty() ? "" : ", " ) + std::string( key.name );
    }
    tool.usage( name + ": --sort is one of: " + names );
    return nullptr;
}

// ---- Reading ----

// The families of a file, an array of stores, which may be empty. Null after an error message.
Owner<QV_STORE> familiesOf( Tool &tool, const DataFile &file )
{
    Owner place = tool::locationOf( file.name );
    String type( file.header ? qvStoreHeaderType( file.header ) : nullptr );
    if ( type && !qvStringEqualsCstr( type, "QV_PROCESS_STATISTICS_RESULT", -1 ) )
    {
        tool.error( place, "no statistics of processes but a file of the type " +
                               tool::textOf( std::move( type ) ) );
        return {};
    }
    Owner families( qvStoreStoreCstr( file.store, "families", -1 ) );
    if ( families )
        return families;
    if ( type && !qvStoreHasAddressCstr( file.store, "families", -1 ) )
        return Owner( qvStoreCreateArray() );
    tool.error( place, "no statistics of processes: there are no stores in an array \"families\"" );
    return {};
}

// A family and, if they are wanted, its living processes.
struct Entry
{
    Row family;
    std::vector<Row> processes;
};

Entry entryOf( QV_PROCESS_STATISTICS_FAMILY *family, const Arguments &arguments )
{
    bool sinceReset = arguments.has( "reset" );
    Entry entry{ rowOf( family, sinceReset ), {} };
    QV_INT count = arguments.has( "processes" ) ? qvProcessStatisticsFamilyProcessesLength( family ) : 0;
    for ( QV_INT idx = 0; idx < count; idx++ )
        entry.processes.push_back(
            rowOf( Owner( qvProcessStatisticsFamilyProcessAt( family, idx ) ), sinceReset ) );
    return entry;
}

std::vector<Entry> entriesOf( Tool &tool, const DataFile &file, QV_STORE *families,
                              const Arguments &arguments )
{
    std::vector<Entry> entries;
    for ( QV_INT idx = 0; idx < qvStoreLength( families ); idx++ )
    {
        Owner store( qvStoreStoreAt( families, idx ) );
        Owner family( store ? qvProcessStatisticsFamilyTryRestore( store ) : nullptr );
        if ( family )
        {
            entries.push_back( entryOf( family, arguments ) );
            continue;
        }
        Owner place( store ? qvStoreLocation( store ) : qvStoreLocation( families ) );
        if ( !place )
            place = tool::locationOf( file.name );
        tool.error( place, "entry " + std::to_string( idx ) +
                               " is no family: its name or some of its numbers are missing or wrong" );
    }
    return entries;
}

// The rows in their order, largest first: families, each followed by its processes.
std::vector<Row> sorted( std::vector<Entry> entries, const Key &key )
{
    auto before = [&]( const Row &one, const Row &other ) { return key.value( one ) > key.value( other ); };
    std::stable_sort( entries.begin(), entries.end(), [&]( const Entry &one, const Entry &other ) {
        return before( one.family, other.family );
    } );
    std::vector<Row> rows;
    for ( Entry &entry : entries )
    {
        std::stable_sort( entry.processes.begin(), entry.processes.end(), before );
        rows.push_back( entry.family );
        rows.insert( rows.end(), entry.processes.begin(), entry.processes.end() );
    }
    return rows;
}

// ---- Table ----

std::string decimal( double value )
{
    char text[400];
    std::snprintf( text, sizeof text, "%.2f", value );
    return text;
}

// A bar in eighths of a character: 1 is the full width.
std::string barOf( double share )
{
    constexpr int width = 24;
    constexpr const char *parts[] = { "", "▏", "▎", "▍", "▌", "▋", "▊", "▉" };
    int eighths = static_cast<int>( std::lround( share * width * 8 ) );
    std::string bar;
    for ( int count = 0; count < eighths / 8; count++ )
        bar += "█";
    return bar + parts[eighths % 8];
}

using Cells = std::vector<std::string>;

Cells cellsOf( const Row &row )
{
    return {
        row.name,
        tool::grouped( row.living ),
        tool::grouped( row.ended ),
        tool::grouped( row.runs ),
        decimal( average( row.latencyTotal, row.runs ) ),
        tool::grouped( row.latencyMax ),
        decimal( average( row.runtimeTotal, row.runs ) ),
        tool::grouped( row.runtimeMax ),
        tool::grouped( row.runtimeTotal ),
    };
}

void printTable( Tool &tool, const std::vector<Row> &rows, const Key &key )
{
    std::vector<Cells> table = {
        { "", "processes", "", "", "latency ms", "", "run ms", "", "" },
        { "family", "living", "ended", "runs", "average", "max", "average", "max", "total" },
    };
    size_t headings = table.size();
    double largest = 0;
    for ( const Row &row : rows )
    {
        table.push_back( cellsOf( row ) );
        largest = std::max( largest, key.value( row ) );
    }
    std::vector<size_t> widths( table[0].size() );
    for ( const Cells &cells : table )
    {
        for ( size_t idx = 0; idx < widths.size(); idx++ )
            widths[idx] = std::max( widths[idx], cells[idx].size() );
    }

    const Style &style = tool::styleOf( STDOUT_FILENO );
    for ( size_t line = 0; line < table.size(); line++ )
    {
        bool heading = line < headings;
        std::string text = ( heading ? style.dim : style.name ) + tool::padded( table[line][0], widths[0] ) +
                           ( heading ? "" : style.off );
        for ( size_t idx = 1; idx < widths.size(); idx++ )
            text += "  " + tool::aligned( table[line][idx], widths[idx] );
        if ( heading )
            text += line == 1 ? std::string( "  by " ) + key.name : "";
        else if ( largest > 0 )
            text +=
                std::string( "  " ) + style.number + barOf( key.value( rows[line - headings] ) / largest );
        text.erase( text.find_last_not_of( ' ' ) + 1 );
        tool.out.write( text + style.off + "\n" );
    }
}

void runShow( Tool &tool, const Arguments &arguments )
{
    QV_STORE_ENCODING from;
    const Key *key = takeKey( tool, arguments );
    if ( !key || !tool::takeFrom( tool, arguments, from ) )
        return;
    std::optional<DataFile> file = tool::loadData( tool, arguments.operand( 0 ), from );
    if ( !file )
        return;
    Owner families = familiesOf( tool, *file );
    if ( !families )
        return;
    std::vector<Row> rows = sorted( entriesOf( tool, *file, families, arguments ), *key );
    if ( !rows.empty() )
        printTable( tool, rows, *key );
    else
        tool.out.write( "no families\n" );
}

// ---- Tables ----

const tool::Option showOptions[] = {
    { 's', "sort", "KEY",
      "What the rows are sorted by and the bars show: total, runs, latency, latency-max, run, run-max. "
      "Without it, the total run time.",
      "total runs latency latency-max run run-max" },
    { 'p', "processes", nullptr, "List the living processes of each family, if the file has them." },
    { 'r', "reset", nullptr, "Count from the last reset on, not from the start." },
    tool::fromOption,
};
const tool::Example showExamples[] = {
    { "qv process show statistics.qv", "which processes a server spent its time in" },
    { "qv process show --sort latency statistics.qv", "which ones wait the longest for their runs" },
};

} // namespace

namespace tool
{

const Command processShow = {
    "process show",
    "FILE",
    1,
    1,
    "Show the statistics of a server's processes: runs, latency and run time",
    "FILE is a store of the statistics' result, as a server writes it. A row is a family: all processes of "
    "one name, "
    "those "
    "that live and those that have ended. Latency is the time from the request for a run to its start.",
    showOptions,
    showExamples,
    runShow,
};

} // namespace tool
