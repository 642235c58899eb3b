#include "monitor.hh"

#include "files.hh"

#include <cstdio>
#include <unistd.h>

namespace server
{

namespace
{

Owner<QV_PROCESS_STATISTICS_RESULT> gather( QV_PROCESS_STATISTICS_FLAGS flags )
{
    Owner query( qvProcessStatisticsQueryCreate() );
    qvProcessStatisticsQuerySetFlags( query.edit(), flags );
    return Owner( qvProcessStatisticsQueryExecute( query ) );
}

double average( QV_INT total, QV_INT count )
{
    return count > 0 ? static_cast<double>( total ) / static_cast<double>( count ) : 0;
}

std::string rowOf( QV_PROCESS_STATISTICS_FAMILY *family, QV_INT milliseconds )
{
    String name( qvProcessStatisticsFamilyName( family ) );
    Owner group( qvProcessStatisticsFamilyGroupCurrentSinceReset( family ) );
    QV_INT runs = qvProcessStatisticsGroupExecutions( group );
    char row[200];
    std::snprintf( row, sizeof row, "%-12s %9lld %10.0f %10.2f %7lld %10.2f %7lld", textOf( name ).c_str(),
                   static_cast<long long>( qvProcessStatisticsGroupCount( group ) ),
                   average( runs * 1000, milliseconds ),
                   average( qvProcessStatisticsGroupLatencyTotal( group ), runs ),
                   static_cast<long long>( qvProcessStatisticsGroupLatencyMax( group ) ),
                   average( qvProcessStatisticsGroupRuntimeTotal( group ), runs ),
                   static_cast<long long>( qvProcessStatisticsGroupRuntimeMax( group ) ) );
    return row;
}

} // namespace

void Monitor::print()
{
    QV_INT now = qvTimestamp();
    Owner result =
        gather( QV_PROCESS_STATISTICS_FLAG_FAMILIES | QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET |
                QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET_RESET );
    char title[100];
    std::snprintf( title, sizeof title, "%.1f s: %lld records read, %lld under way",
                   average( now - started, 1000 ), static_cast<long long>( flow.recordsRead ),
                   static_cast<long long>( qvCounterValue( flow.underWay ) ) );
    std::vector<std::string> lines = {
        title,
        "family       processes     runs/s latency ms     max     run ms     max",
    };
    for ( QV_INT idx = 0; idx < qvProcessStatisticsResultFamiliesLength( result ); idx++ )
        lines.push_back( rowOf( Owner( qvProcessStatisticsResultFamilyAt( result, idx ) ), now - last ) );

    bool terminal = isatty( STDOUT_FILENO );
    if ( terminal && linesShown > 0 )
        std::printf( "\033[%zuA", linesShown );
    for ( const std::string &line : lines )
        std::printf( "%s%s\n", line.c_str(), terminal ? "\033[K" : "" );
    std::fflush( stdout );
    linesShown = lines.size();
    last = now;
}

bool writeStatistics( const std::string &file )
{
    Owner result = gather( QV_PROCESS_STATISTICS_FLAG_FAMILIES | QV_PROCESS_STATISTICS_FLAG_GROUP_PAST |
                           QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_CREATION );
    Owner store( qvProcessStatisticsResultStore( result ) );
    Owner header( qvStoreHeaderCreateFromSort( qvProcessStatisticsResultSort(), QV_TRUE ) );
    return writeStore( file, store, header );
}

} // namespace server
