#include <qv/exec/qv_process_statistics_family.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_identifier.h>
#include <qv/base/qv_name.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_vector.h>
#include <qv/exec/qv_process_statistics.hh>
#include <qv/exec/qv_process_statistics_group.h>
#include <qv/runtime/qv_local.hh>

namespace
{

using Family = QV_PROCESS_STATISTICS_FAMILY;
using Group = QV_PROCESS_STATISTICS_GROUP;

struct GroupKey
{
    const char *key;
    Group *qv___ProcessStatisticsFamily::*field;
};

constexpr GroupKey groupKeys[] = {
    { "past", &qv___ProcessStatisticsFamily::groupPast },
    { "pastSinceReset", &qv___ProcessStatisticsFamily::groupPastSinceReset },
    { "currentSinceCreation", &qv___ProcessStatisticsFamily::groupCurrentSinceCreation },
    { "currentSinceReset", &qv___ProcessStatisticsFamily::groupCurrentSinceReset },
};

void qv___ProcessStatisticsFamilyFreeFunc( qvObj thisObj )
{
    Family *thisFamily = qvProcessStatisticsFamilyFrom( thisObj );
    QV_CHECK( thisFamily );
    qv::release( qv::objOf( thisFamily->name ) );
    for ( const GroupKey &group : groupKeys )
    {
        qv::releaseOptional( thisFamily->*group.field );
    }
    qv::release( qv::objOf( thisFamily->processes ) );
}

void makePrivate( Family **family )
{
    qv::makePrivate( family, qvProcessStatisticsFamilyCreateFrom );
}

void setGroup( Family **family, Group *qv___ProcessStatisticsFamily::*field, Group *group )
{
    makePrivate( family );
    qv::assign( &( ( *family )->*field ), group );
}

void setProcess( QV_DICT **processes, QV_PROCESS_STATISTICS *statistics )
{
    qvDictSetIdentifierKey( processes, statistics->identifier, qvProcessStatisticsObj( statistics ) );
}

QV_STORE *storeProcesses( QV_DICT *processes )
{
    qv::Local<QV_STORE> array( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < qvDictLength( processes ); idx++ )
    {
        qv::Local<qv___Obj> statistics( qvDictValueAt( processes, idx ) );
        qv::Local<QV_STORE> entry( qvProcessStatisticsStore( qvProcessStatisticsFrom( statistics ) ) );
        qvStoreAppendStore( array.edit(), entry );
    }
    return array.give();
}

// False if there is something under the key that is no group.
bool tryRestoreGroup( QV_STORE *store, const char *key, Group **group )
{
    if ( !qvStoreHasAddressCstr( store, key, -1 ) )
        return true;
    qv::Local<QV_STORE> subStore( qvStoreStoreCstr( store, key, -1 ) );
    *group = subStore ? qvProcessStatisticsGroupTryRestore( subStore ) : nullptr;
    return *group;
}

bool tryRestoreProcesses( QV_STORE *store, QV_DICT **processes )
{
    if ( !qvStoreHasAddressCstr( store, "processes", -1 ) )
        return true;
    qv::Local<QV_STORE> array( qvStoreStoreCstr( store, "processes", -1 ) );
    for ( QV_INT idx = 0; array && idx < qvStoreLength( array ); idx++ )
    {
        qv::Local<QV_STORE> entry( qvStoreStoreAt( array, idx ) );
        qv::Local<QV_PROCESS_STATISTICS> statistics( entry ? qvProcessStatisticsTryRestore( entry )
                                                           : nullptr );
        if ( !statistics )
            return false;
        setProcess( processes, statistics );
    }
    return array;
}

bool tryRestoreMembers( QV_STORE *store, Family *family )
{
    for ( const GroupKey &group : groupKeys )
    {
        if ( !tryRestoreGroup( store, group.key, &( family->*group.field ) ) )
            return false;
    }
    return tryRestoreProcesses( store, &family->processes );
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS_FAMILY, qvProcessStatisticsFamily,
                { .freeFunc = qv___ProcessStatisticsFamilyFreeFunc } )

QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsFamilyCreate( QV_STRING *name )
{
    QV_CHECK( name );
    QV_CHECK( qvNameOk( name, QV_TRUE ) );
    auto *family = qv::create<Family>( qvProcessStatisticsFamilySort() );
    family->name = qv::retained( name );
    for ( const GroupKey &group : groupKeys )
    {
        family->*group.field = nullptr;
    }
    family->processes = qvDictCreate();
    return family;
}

QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsFamilyCreateFrom( QV_PROCESS_STATISTICS_FAMILY *source )
{
    QV_CHECK( source );
    auto *family = qv::create<Family>( qvProcessStatisticsFamilySort() );
    family->name = qv::retained( source->name );
    for ( const GroupKey &group : groupKeys )
    {
        family->*group.field = qv::retainedOptional( source->*group.field );
    }
    family->processes = qv::retained( source->processes );
    return family;
}

QV_STRING *qvProcessStatisticsFamilyName( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qv::retained( family->name );
}

void qvProcessStatisticsFamilySetName( QV_PROCESS_STATISTICS_FAMILY **family, QV_STRING *name )
{
    QV_CHECK( name );
    QV_CHECK( qvNameOk( name, QV_TRUE ) );
    makePrivate( family );
    qv::assign( &( *family )->name, name );
}

QV_PROCESS_STATISTICS_GROUP *qvProcessStatisticsFamilyGroupPast( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qv::retainedOptional( family->groupPast );
}

QV_BOOL qvProcessStatisticsFamilyHasGroupPast( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return family->groupPast != nullptr;
}

void qvProcessStatisticsFamilySetGroupPast( QV_PROCESS_STATISTICS_FAMILY **family,
                                            QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    setGroup( family, &qv___ProcessStatisticsFamily::groupPast, group );
}

void qvProcessStatisticsFamilyDelGroupPast( QV_PROCESS_STATISTICS_FAMILY **family )
{
    setGroup( family, &qv___ProcessStatisticsFamily::groupPast, nullptr );
}

QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qv::retainedOptional( family->groupPastSinceReset );
}

QV_BOOL qvProcessStatisticsFamilyHasGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return family->groupPastSinceReset != nullptr;
}

void qvProcessStatisticsFamilySetGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY **family,
                                                      QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    setGroup( family, &qv___ProcessStatisticsFamily::groupPastSinceReset, group );
}

void qvProcessStatisticsFamilyDelGroupPastSinceReset( QV_PROCESS_STATISTICS_FAMILY **family )
{
    setGroup( family, &qv___ProcessStatisticsFamily::groupPastSinceReset, nullptr );
}

QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qv::retainedOptional( family->groupCurrentSinceCreation );
}

QV_BOOL qvProcessStatisticsFamilyHasGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return family->groupCurrentSinceCreation != nullptr;
}

void qvProcessStatisticsFamilySetGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY **family,
                                                            QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    setGroup( family, &qv___ProcessStatisticsFamily::groupCurrentSinceCreation, group );
}

void qvProcessStatisticsFamilyDelGroupCurrentSinceCreation( QV_PROCESS_STATISTICS_FAMILY **family )
{
    setGroup( family, &qv___ProcessStatisticsFamily::groupCurrentSinceCreation, nullptr );
}

QV_PROCESS_STATISTICS_GROUP *
qvProcessStatisticsFamilyGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qv::retainedOptional( family->groupCurrentSinceReset );
}

QV_BOOL qvProcessStatisticsFamilyHasGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return family->groupCurrentSinceReset != nullptr;
}

void qvProcessStatisticsFamilySetGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY **family,
                                                         QV_PROCESS_STATISTICS_GROUP *group )
{
    QV_CHECK( group );
    setGroup( family, &qv___ProcessStatisticsFamily::groupCurrentSinceReset, group );
}

void qvProcessStatisticsFamilyDelGroupCurrentSinceReset( QV_PROCESS_STATISTICS_FAMILY **family )
{
    setGroup( family, &qv___ProcessStatisticsFamily::groupCurrentSinceReset, nullptr );
}

QV_INT qvProcessStatisticsFamilyProcessesLength( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qvDictLength( family->processes );
}

QV_VECTOR *qvProcessStatisticsFamilyProcessesVector( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    return qvDictValuesVector( family->processes );
}

QV_IDENTIFIER *qvProcessStatisticsFamilyProcessIdentifierAt( QV_PROCESS_STATISTICS_FAMILY *family,
                                                             QV_INT idx )
{
    QV_CHECK( family );
    return qvIdentifierFrom( qvDictKeyAt( family->processes, idx ) );
}

QV_PROCESS_STATISTICS *qvProcessStatisticsFamilyProcessAt( QV_PROCESS_STATISTICS_FAMILY *family, QV_INT idx )
{
    QV_CHECK( family );
    return qvProcessStatisticsFrom( qvDictValueAt( family->processes, idx ) );
}

QV_PROCESS_STATISTICS *qvProcessStatisticsFamilyProcess( QV_PROCESS_STATISTICS_FAMILY *family,
                                                         QV_IDENTIFIER *identifier )
{
    QV_CHECK( family );
    QV_CHECK( identifier );
    return qvProcessStatisticsFrom( qvDictIdentifierKey( family->processes, identifier ) );
}

QV_BOOL qvProcessStatisticsFamilyHasProcess( QV_PROCESS_STATISTICS_FAMILY *family, QV_IDENTIFIER *identifier )
{
    QV_CHECK( family );
    QV_CHECK( identifier );
    return qvDictHasIdentifierKey( family->processes, identifier );
}

void qvProcessStatisticsFamilySetProcess( QV_PROCESS_STATISTICS_FAMILY **family,
                                          QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    makePrivate( family );
    setProcess( &( *family )->processes, statistics );
}

void qvProcessStatisticsFamilyDelProcess( QV_PROCESS_STATISTICS_FAMILY **family, QV_IDENTIFIER *identifier )
{
    QV_CHECK( identifier );
    makePrivate( family );
    qvDictDelIdentifierKey( &( *family )->processes, identifier );
}

void qvProcessStatisticsFamilyClearProcesses( QV_PROCESS_STATISTICS_FAMILY **family )
{
    makePrivate( family );
    qvDictClear( &( *family )->processes );
}

void qvProcessStatisticsFamilySetProcessesVector( QV_PROCESS_STATISTICS_FAMILY **family, QV_VECTOR *vec )
{
    QV_CHECK( vec );
    qv::Local<QV_DICT> processes( qvDictCreate() );
    for ( QV_INT idx = 0; idx < qvVectorLength( vec ); idx++ )
    {
        qv::Local<QV_PROCESS_STATISTICS> statistics( qvProcessStatisticsFrom( qvVectorObjAt( vec, idx ) ) );
        QV_CHECK( statistics );
        setProcess( processes.edit(), statistics );
    }
    makePrivate( family );
    qv::replaceWith( &( *family )->processes, processes.give() );
}

QV_STORE *qvProcessStatisticsFamilyStore( QV_PROCESS_STATISTICS_FAMILY *family )
{
    QV_CHECK( family );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "name", -1, family->name );
    for ( const GroupKey &group : groupKeys )
    {
        if ( family->*group.field )
        {
            qv::Local<QV_STORE> subStore( qvProcessStatisticsGroupStore( family->*group.field ) );
            qvStoreSetStoreCstr( store.edit(), group.key, -1, subStore );
        }
    }
    if ( qvDictLength( family->processes ) > 0 )
    {
        qv::Local<QV_STORE> array( storeProcesses( family->processes ) );
        qvStoreSetStoreCstr( store.edit(), "processes", -1, array );
    }
    return store.give();
}

QV_PROCESS_STATISTICS_FAMILY *qvProcessStatisticsFamilyTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_STRING> name( qvStoreValueCstr( store, "name", -1 ) );
    if ( !name || !qvNameOk( name, QV_TRUE ) )
        return nullptr;
    qv::Local<Family> family( qvProcessStatisticsFamilyCreate( name ) );
    return tryRestoreMembers( store, family ) ? family.give() : nullptr;
}
