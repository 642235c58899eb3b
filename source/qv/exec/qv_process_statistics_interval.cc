#include <qv/exec/qv_process_statistics_interval.hh>

#include <qv/base/qv_store.h>
#include <qv/runtime/qv_local.hh>

namespace
{

struct Count
{
    const char *key;
    QV_INT qv___ExecProcessStats::*field;
};

constexpr Count countKeys[] = {
    { "executions", &qv___ExecProcessStats::executions },
    { "latencyTotal", &qv___ExecProcessStats::latencyTotal },
    { "latencyMax", &qv___ExecProcessStats::latencyMax },
    { "runtimeTotal", &qv___ExecProcessStats::runtimeTotal },
    { "runtimeMax", &qv___ExecProcessStats::runtimeMax },
};

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS_INTERVAL, qvProcessStatisticsInterval, {} )

QV_INT qv::averageOf( QV_INT total, QV_INT executions )
{
    return executions > 0 ? total / executions : 0;
}

void qv::storeCounts( QV_STORE **store, const qv___ExecProcessStats *counts )
{
    for ( const Count &count : countKeys )
    {
        qvStoreSetValueIntCstr( store, count.key, -1, counts->*count.field );
    }
}

bool qv::tryRestoreNumber( QV_STORE *store, const char *key, QV_INT *number )
{
    return qvStoreValueIntCstr( store, number, key, -1 ) && *number >= 0;
}

bool qv::tryRestoreCounts( QV_STORE *store, qv___ExecProcessStats *counts )
{
    for ( const Count &count : countKeys )
    {
        if ( !tryRestoreNumber( store, count.key, &( counts->*count.field ) ) )
            return false;
    }
    return counts->latencyMax <= counts->latencyTotal && counts->runtimeMax <= counts->runtimeTotal;
}

QV_PROCESS_STATISTICS_INTERVAL *qv___ProcessStatisticsIntervalCreate( QV_INT beginTimestamp,
                                                                      QV_INT endTimestamp,
                                                                      const qv___ExecProcessStats *counts )
{
    QV_CHECK( beginTimestamp >= 0 );
    QV_CHECK( endTimestamp >= 0 );
    QV_CHECK( counts );
    auto *interval = qv::create<QV_PROCESS_STATISTICS_INTERVAL>( qvProcessStatisticsIntervalSort() );
    interval->beginTimestamp = beginTimestamp;
    interval->endTimestamp = endTimestamp;
    interval->counts = *counts;
    return interval;
}

QV_INT qvProcessStatisticsIntervalBeginTimestamp( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->beginTimestamp;
}

QV_INT qvProcessStatisticsIntervalEndTimestamp( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->endTimestamp;
}

QV_INT qvProcessStatisticsIntervalExecutions( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->counts.executions;
}

QV_INT qvProcessStatisticsIntervalExecutionsPerSecond( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    QV_INT duration = interval->endTimestamp - interval->beginTimestamp;
    if ( duration < 1000 )
        return interval->counts.executions;
    return qvIntAddSaturating( qvIntMulSaturating( interval->counts.executions, 1000 ), 500 ) / duration;
}

QV_INT qvProcessStatisticsIntervalLatencyTotal( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->counts.latencyTotal;
}

QV_INT qvProcessStatisticsIntervalLatencyMax( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->counts.latencyMax;
}

QV_INT qvProcessStatisticsIntervalLatencyAverage( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return qv::averageOf( interval->counts.latencyTotal, interval->counts.executions );
}

QV_INT qvProcessStatisticsIntervalRuntimeTotal( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->counts.runtimeTotal;
}

QV_INT qvProcessStatisticsIntervalRuntimeMax( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return interval->counts.runtimeMax;
}

QV_INT qvProcessStatisticsIntervalRuntimeAverage( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    return qv::averageOf( interval->counts.runtimeTotal, interval->counts.executions );
}

QV_STORE *qvProcessStatisticsIntervalStore( QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueIntCstr( store.edit(), "beginTimestamp", -1, interval->beginTimestamp );
    qvStoreSetValueIntCstr( store.edit(), "endTimestamp", -1, interval->endTimestamp );
    qv::storeCounts( store.edit(), &interval->counts );
    return store.give();
}

QV_PROCESS_STATISTICS_INTERVAL *qvProcessStatisticsIntervalTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_INT begin = 0;
    QV_INT end = 0;
    qv___ExecProcessStats counts = {};
    bool isGood = qv::tryRestoreNumber( store, "beginTimestamp", &begin ) &&
                  qv::tryRestoreNumber( store, "endTimestamp", &end ) &&
                  qv::tryRestoreCounts( store, &counts );
    return isGood ? qv___ProcessStatisticsIntervalCreate( begin, end, &counts ) : nullptr;
}
