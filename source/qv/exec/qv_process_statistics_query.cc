#include <qv/exec/qv_process_statistics_query.hh>

#include <qv/base/qv_store.h>
#include <qv/exec/qv_process_statistics_db.hh>
#include <qv/exec/qv_process_statistics_flags.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___ProcessStatisticsQueryFreeFunc( qvObj ) {}

QV_PROCESS_STATISTICS_QUERY *createQuery( bool flagsDefault, QV_PROCESS_STATISTICS_FLAGS flags )
{
    auto *query = qv::create<QV_PROCESS_STATISTICS_QUERY>( qvProcessStatisticsQuerySort() );
    query->flagsDefault = flagsDefault;
    query->flags = flags;
    return query;
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS_QUERY, qvProcessStatisticsQuery,
                { .freeFunc = qv___ProcessStatisticsQueryFreeFunc } )

QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryCreate( void )
{
    return createQuery( true, qv___PROCESS_STATISTICS_ALL_FLAGS );
}

QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryCreateFrom( QV_PROCESS_STATISTICS_QUERY *source )
{
    QV_CHECK( source );
    return createQuery( source->flagsDefault, source->flags );
}

QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsQueryFlags( QV_PROCESS_STATISTICS_QUERY *query )
{
    QV_CHECK( query );
    return query->flags;
}

void qvProcessStatisticsQuerySetFlags( QV_PROCESS_STATISTICS_QUERY **query,
                                       QV_PROCESS_STATISTICS_FLAGS flags )
{
    qv::makePrivate( query, qvProcessStatisticsQueryCreateFrom );
    ( *query )->flagsDefault = false;
    ( *query )->flags = qvProcessStatisticsFlagsNormalize( flags );
}

QV_BOOL qvProcessStatisticsQueryFlagsDefault( QV_PROCESS_STATISTICS_QUERY *query )
{
    QV_CHECK( query );
    return query->flagsDefault;
}

void qvProcessStatisticsQuerySetFlagsDefault( QV_PROCESS_STATISTICS_QUERY **query )
{
    qv::makePrivate( query, qvProcessStatisticsQueryCreateFrom );
    ( *query )->flagsDefault = true;
    ( *query )->flags = qv___PROCESS_STATISTICS_ALL_FLAGS;
}

QV_STORE *qvProcessStatisticsQueryStore( QV_PROCESS_STATISTICS_QUERY *query, QV_BOOL full )
{
    QV_CHECK( query );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( !query->flagsDefault || full )
    {
        qv::Local<QV_STRING> names( qvProcessStatisticsFlagsToString( query->flags ) );
        qvStoreSetValueCstr( store.edit(), "flags", -1, names );
    }
    return store.give();
}

QV_PROCESS_STATISTICS_QUERY *qvProcessStatisticsQueryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_PROCESS_STATISTICS_QUERY *query = qvProcessStatisticsQueryCreate();
    qv::Local<QV_STRING> names( qvStoreValueCstr( store, "flags", -1 ) );
    if ( names )
    {
        qvProcessStatisticsQuerySetFlags( &query, qvProcessStatisticsFlagsFromString( names ) );
    }
    return query;
}

QV_PROCESS_STATISTICS_RESULT *qvProcessStatisticsQueryExecute( QV_PROCESS_STATISTICS_QUERY *query )
{
    QV_CHECK( query );
    return qv___ProcessStatisticsDbExecuteQuery( query );
}
