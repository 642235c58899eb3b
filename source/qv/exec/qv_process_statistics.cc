#include <qv/exec/qv_process_statistics.hh>

#include <qv/base/qv_identifier.h>
#include <qv/base/qv_name.h>
#include <qv/base/qv_store.h>
#include <qv/exec/qv_process.hh>
#include <qv/exec/qv_process_domain.hh>
#include <qv/exec/qv_process_statistics_interval.hh>
#include <qv/sys/qv_timestamp.hh>

namespace
{

using Interval = QV_PROCESS_STATISTICS_INTERVAL;

void qv___ProcessStatisticsFreeFunc( qvObj thisObj )
{
    QV_PROCESS_STATISTICS *thisStatistics = qvProcessStatisticsFrom( thisObj );
    QV_CHECK( thisStatistics );
    qv::release( qv::objOf( thisStatistics->identifier ) );
    qv::release( qv::objOf( thisStatistics->domainName ) );
    qv::releaseOptional( thisStatistics->intervalSinceCreation );
    qv::releaseOptional( thisStatistics->intervalSinceReset );
}

QV_PROCESS_STATISTICS *createStatistics( QV_IDENTIFIER *identifier, QV_STRING *domainName )
{
    auto *statistics = qv::create<QV_PROCESS_STATISTICS>( qvProcessStatisticsSort() );
    statistics->identifier = qv::retained( identifier );
    statistics->domainName = qv::retained( domainName );
    statistics->threadHint = 0;
    statistics->captureTimestamp = 0;
    statistics->creationTimestamp = 0;
    statistics->scheduledSinceTimestamp = -1;
    statistics->executingSinceTimestamp = -1;
    statistics->intervalSinceCreation = nullptr;
    statistics->intervalSinceReset = nullptr;
    return statistics;
}

QV_PROCESS_STATISTICS *createFrom( QV_PROCESS_STATISTICS *source )
{
    QV_PROCESS_STATISTICS *statistics = createStatistics( source->identifier, source->domainName );
    statistics->threadHint = source->threadHint;
    statistics->captureTimestamp = source->captureTimestamp;
    statistics->creationTimestamp = source->creationTimestamp;
    statistics->scheduledSinceTimestamp = source->scheduledSinceTimestamp;
    statistics->executingSinceTimestamp = source->executingSinceTimestamp;
    statistics->intervalSinceCreation = qv::retainedOptional( source->intervalSinceCreation );
    statistics->intervalSinceReset = qv::retainedOptional( source->intervalSinceReset );
    return statistics;
}

struct Intervals
{
    QV_INT resetTimestamp;
    qv___ExecProcessStats sinceCreation;
    qv___ExecProcessStats sinceReset;
};

// The part under the lock: the times, the counts that the flags ask for, and the start of a new interval.
void copyCounts( QV_PROCESS *process, QV_PROCESS_STATISTICS_FLAGS flags, QV_PROCESS_STATISTICS *statistics,
                 Intervals *intervals )
{
    qv::Locked locked( &process->statLock );
    statistics->captureTimestamp = qv___Timestamp();
    statistics->creationTimestamp = process->statCreated;
    statistics->scheduledSinceTimestamp = process->statScheduled;
    statistics->executingSinceTimestamp = process->statStarted;
    intervals->resetTimestamp = process->statIntervalStart;
    if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION )
        intervals->sinceCreation = process->statTotal;
    if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET )
    {
        intervals->sinceReset = process->statInterval;
        if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET )
        {
            process->statIntervalStart = statistics->captureTimestamp;
            qv___ExecProcessStatsReset( &process->statInterval );
        }
    }
}

void storeInterval( QV_STORE **store, const char *key, Interval *interval )
{
    if ( interval )
    {
        qv::Local<QV_STORE> subStore( qvProcessStatisticsIntervalStore( interval ) );
        qvStoreSetStoreCstr( store, key, -1, subStore );
    }
}

// False if there is something under the key that is no interval.
bool tryRestoreInterval( QV_STORE *store, const char *key, Interval **interval )
{
    if ( !qvStoreHasAddressCstr( store, key, -1 ) )
        return true;
    qv::Local<QV_STORE> subStore( qvStoreStoreCstr( store, key, -1 ) );
    *interval = subStore ? qvProcessStatisticsIntervalTryRestore( subStore ) : nullptr;
    return *interval;
}

bool tryRestoreOptionalTimestamp( QV_STORE *store, const char *key, QV_INT *timestamp )
{
    return !qvStoreHasAddressCstr( store, key, -1 ) || qv::tryRestoreNumber( store, key, timestamp );
}

QV_IDENTIFIER *tryRestoreIdentifier( QV_STORE *store )
{
    qv::Local<QV_STRING> text( qvStoreValueCstr( store, "identifier", -1 ) );
    return text ? qvIdentifierTryCreateFromString( text ) : nullptr;
}

void makePrivate( QV_PROCESS_STATISTICS **statistics )
{
    qv::makePrivate( statistics, createFrom );
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_STATISTICS, qvProcessStatistics, { .freeFunc = qv___ProcessStatisticsFreeFunc } )

QV_PROCESS_STATISTICS *qvProcessTryGatherStatistics( QV_PROCESS *process, QV_PROCESS_STATISTICS_FLAGS flags )
{
    QV_CHECK( process );
    if ( !process->fixMaintainStatistics )
        return nullptr;
    QV_PROCESS_DOMAIN *domain = process->fixDomain;
    QV_PROCESS_STATISTICS *statistics = createStatistics( process->fixIdentifier, domain->name );
    statistics->threadHint = process->fixThreadHint % domain->threadCount;
    Intervals intervals = {};
    copyCounts( process, flags, statistics, &intervals );
    if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION )
        statistics->intervalSinceCreation = qv___ProcessStatisticsIntervalCreate(
            statistics->creationTimestamp, statistics->captureTimestamp, &intervals.sinceCreation );
    if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET )
        statistics->intervalSinceReset = qv___ProcessStatisticsIntervalCreate(
            intervals.resetTimestamp, statistics->captureTimestamp, &intervals.sinceReset );
    return statistics;
}

void qv___ProcessStatisticsDelIntervalSinceCreation( QV_PROCESS_STATISTICS **statistics )
{
    makePrivate( statistics );
    qv::replaceWith( &( *statistics )->intervalSinceCreation, static_cast<Interval *>( nullptr ) );
}

void qv___ProcessStatisticsDelIntervalSinceReset( QV_PROCESS_STATISTICS **statistics )
{
    makePrivate( statistics );
    qv::replaceWith( &( *statistics )->intervalSinceReset, static_cast<Interval *>( nullptr ) );
}

QV_IDENTIFIER *qvProcessStatisticsIdentifier( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return qv::retained( statistics->identifier );
}

QV_STRING *qvProcessStatisticsDomainName( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return qv::retained( statistics->domainName );
}

QV_INT qvProcessStatisticsThreadHint( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->threadHint;
}

QV_INT qvProcessStatisticsCaptureTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->captureTimestamp;
}

QV_INT qvProcessStatisticsCreationTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->creationTimestamp;
}

QV_INT qvProcessStatisticsScheduledSinceTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->scheduledSinceTimestamp;
}

QV_BOOL qvProcessStatisticsHasScheduledSinceTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->scheduledSinceTimestamp != -1;
}

QV_INT qvProcessStatisticsExecutingSinceTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->executingSinceTimestamp;
}

QV_BOOL qvProcessStatisticsHasExecutingSinceTimestamp( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->executingSinceTimestamp != -1;
}

QV_PROCESS_STATISTICS_INTERVAL *qvProcessStatisticsIntervalSinceCreation( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return qv::retainedOptional( statistics->intervalSinceCreation );
}

QV_BOOL qvProcessStatisticsHasIntervalSinceCreation( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->intervalSinceCreation != nullptr;
}

QV_PROCESS_STATISTICS_INTERVAL *qvProcessStatisticsIntervalSinceReset( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return qv::retainedOptional( statistics->intervalSinceReset );
}

QV_BOOL qvProcessStatisticsHasIntervalSinceReset( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    return statistics->intervalSinceReset != nullptr;
}

QV_STORE *qvProcessStatisticsStore( QV_PROCESS_STATISTICS *statistics )
{
    QV_CHECK( statistics );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qv::Local<QV_STRING> identifier( qvIdentifierString( statistics->identifier ) );
    qvStoreSetValueCstr( store.edit(), "identifier", -1, identifier );
    qvStoreSetValueCstr( store.edit(), "domainName", -1, statistics->domainName );
    qvStoreSetValueIntCstr( store.edit(), "threadHint", -1, statistics->threadHint );
    qvStoreSetValueIntCstr( store.edit(), "captureTimestamp", -1, statistics->captureTimestamp );
    qvStoreSetValueIntCstr( store.edit(), "creationTimestamp", -1, statistics->creationTimestamp );
    if ( statistics->scheduledSinceTimestamp != -1 )
    {
        qvStoreSetValueIntCstr( store.edit(), "scheduledSinceTimestamp", -1,
                                statistics->scheduledSinceTimestamp );
    }
    if ( statistics->executingSinceTimestamp != -1 )
    {
        qvStoreSetValueIntCstr( store.edit(), "executingSinceTimestamp", -1,
                                statistics->executingSinceTimestamp );
    }
    storeInterval( store.edit(), "sinceCreation", statistics->intervalSinceCreation );
    storeInterval( store.edit(), "sinceReset", statistics->intervalSinceReset );
    return store.give();
}

QV_PROCESS_STATISTICS *qvProcessStatisticsTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_IDENTIFIER> identifier( tryRestoreIdentifier( store ) );
    qv::Local<QV_STRING> domainName( qvStoreValueCstr( store, "domainName", -1 ) );
    if ( !identifier || !domainName || !qvNameUpperCaseOk( domainName, QV_TRUE ) )
        return nullptr;
    qv::Local<QV_PROCESS_STATISTICS> statistics( createStatistics( identifier, domainName ) );
    bool isGood = qv::tryRestoreNumber( store, "threadHint", &statistics->threadHint ) &&
                  qv::tryRestoreNumber( store, "captureTimestamp", &statistics->captureTimestamp ) &&
                  qv::tryRestoreNumber( store, "creationTimestamp", &statistics->creationTimestamp ) &&
                  tryRestoreOptionalTimestamp( store, "scheduledSinceTimestamp",
                                               &statistics->scheduledSinceTimestamp ) &&
                  tryRestoreOptionalTimestamp( store, "executingSinceTimestamp",
                                               &statistics->executingSinceTimestamp ) &&
                  tryRestoreInterval( store, "sinceCreation", &statistics->intervalSinceCreation ) &&
                  tryRestoreInterval( store, "sinceReset", &statistics->intervalSinceReset );
    return isGood ? statistics.give() : nullptr;
}
