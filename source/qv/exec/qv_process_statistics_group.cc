#include <qv/exec/qv_process_statistics_group.hh>

#include <qv/base/qv_store.h>
#include <qv/exec/qv_process_statistics_interval.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

QV_PROCESS_STATISTICS_GROUP *createGroup( QV_INT count, const qv___ExecProcessStats *counts )
{
    auto *group = qv::create<QV_PROCESS_STATISTICS_GROUP>( qvProcessStatisticsGroupSort() );
    group->count = count;
    group->counts = *counts;
    return group;
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS_GROUP, qvProcessStatisticsGroup, {} )

QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupCreate( void )
{
    const qv___ExecProcessStats none = {};
    return createGroup( 0, &none );
}

QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupCreateFrom( QV_PROCESS_STATISTICS_GROUP *source )
{
    QV_CHECK( source );
    return createGroup( source->count, &source->counts );
}

QV_INT qvProcessStatisticsGroupCount( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->count;
}

QV_INT qvProcessStatisticsGroupExecutions( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->counts.executions;
}

QV_INT qvProcessStatisticsGroupLatencyTotal( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->counts.latencyTotal;
}

QV_INT qvProcessStatisticsGroupLatencyMax( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->counts.latencyMax;
}

QV_INT qvProcessStatisticsGroupLatencyAverage( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return qv::averageOf( group->counts.latencyTotal, group->counts.executions );
}

QV_INT qvProcessStatisticsGroupRuntimeTotal( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->counts.runtimeTotal;
}

QV_INT qvProcessStatisticsGroupRuntimeMax( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return group->counts.runtimeMax;
}

QV_INT qvProcessStatisticsGroupRuntimeAverage( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    return qv::averageOf( group->counts.runtimeTotal, group->counts.executions );
}

void qvProcessStatisticsGroupAccumulate( QV_PROCESS_STATISTICS_GROUP **group,
                                         QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    qv::makePrivate( group, qvProcessStatisticsGroupCreateFrom );
    ( *group )->count = qvIntAddSaturating( ( *group )->count, 1 );
    qv___ExecProcessStatsAccumulate( &( *group )->counts, &interval->counts );
}

QV_STORE *qvProcessStatisticsGroupStore( QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueIntCstr( store.edit(), "count", -1, group->count );
    qv::storeCounts( store.edit(), &group->counts );
    return store.give();
}

QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsGroupTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_INT count = 0;
    qv___ExecProcessStats counts = {};
    bool isGood = qv::tryRestoreNumber( store, "count", &count ) && qv::tryRestoreCounts( store, &counts );
    return isGood ? createGroup( count, &counts ) : nullptr;
}
