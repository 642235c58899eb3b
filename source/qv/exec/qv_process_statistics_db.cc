#include <qv/exec/qv_process_statistics_db.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_identifier.h>
#include <qv/base/qv_region.h>
#include <qv/exec/qv_process.hh>
#include <qv/exec/qv_process_statistics.hh>
#include <qv/exec/qv_process_statistics_family.hh>
#include <qv/exec/qv_process_statistics_group.h>
#include <qv/exec/qv_process_statistics_query.hh>
#include <qv/exec/qv_process_statistics_result.h>

namespace
{

using Family = QV_PROCESS_STATISTICS_FAMILY;
using Group = QV_PROCESS_STATISTICS_GROUP;
using Flags = QV_PROCESS_STATISTICS_FLAGS;

// Guards the two dictionaries.
constinit QV_REGION *region = nullptr;

// From process names to dictionaries from identifiers to living processes; no name without a process.
constinit QV_DICT *processes = nullptr;

// From process names to families, which hold the two past groups.
constinit QV_DICT *processFamilies = nullptr;

class Inside
{
  public:
    explicit Inside( QV_BOOL exclusive )
    {
        qvRegionEnter( region, exclusive );
    }
    Inside( const Inside & ) = delete;
    Inside &operator=( const Inside & ) = delete;

    ~Inside()
    {
        qvRegionLeave( region );
    }
};

// Takes the living processes of a name out of the database, so that they can be edited without a copy of the dictionary.
QV_DICT *takeLiving( QV_STRING *name )
{
    QV_DICT *living = qvDictFrom( qvDictStringKey( processes, name ) );
    if ( !living )
        return qvDictCreate();
    qvDictDelStringKey( &processes, name );
    return living;
}

void putLiving( QV_STRING *name, QV_DICT *living )
{
    if ( qvDictLength( living ) > 0 )
    {
        qvDictSetStringKey( &processes, name, qvDictObj( living ) );
    }
}

// Takes the process out; false if it isn't there.
bool tryRemove( QV_PROCESS *process )
{
    qv::Local<QV_DICT> living( takeLiving( process->fixName ) );
    bool isThere = qv::dictValueOf( living, qvIdentifierObj( process->fixIdentifier ) ) == process;
    if ( isThere )
    {
        qvDictDelIdentifierKey( living.edit(), process->fixIdentifier );
    }
    putLiving( process->fixName, living );
    return isThere;
}

void accumulate( Group **group, QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    QV_CHECK( interval );
    qvProcessStatisticsGroupAccumulate( group, interval );
}

void setEmptyPastSinceReset( Family **family )
{
    qv::Local<Group> group( qvProcessStatisticsGroupCreate() );
    qvProcessStatisticsFamilySetGroupPastSinceReset( family, group );
}

void addToPast( QV_STRING *name, QV_PROCESS_STATISTICS_INTERVAL *interval )
{
    qv::Local<Family> family( qvProcessStatisticsFamilyFrom( qvDictStringKey( processFamilies, name ) ) );
    QV_CHECK( family );
    qv::Local<Group> past( qvProcessStatisticsFamilyGroupPast( family ) );
    qv::Local<Group> pastSinceReset( qvProcessStatisticsFamilyGroupPastSinceReset( family ) );
    accumulate( past.edit(), interval );
    accumulate( pastSinceReset.edit(), interval );
    qvProcessStatisticsFamilySetGroupPast( family.edit(), past );
    qvProcessStatisticsFamilySetGroupPastSinceReset( family.edit(), pastSinceReset );
    qvDictSetStringKey( &processFamilies, name, qvProcessStatisticsFamilyObj( family ) );
}

Flags gatheringFlags( Flags flags )
{
    Flags gathering = flags & ( QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION |
                                QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET |
                                QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET );
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_CREATION )
        gathering |= QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION;
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET )
        gathering |= QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET;
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET_RESET )
        gathering |= QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET;
    return gathering;
}

bool isExclusive( Flags flags )
{
    return flags & ( QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET_RESET |
                     QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET_RESET |
                     QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET );
}

// The past groups: what the query doesn't ask for goes from the copy, what it resets starts anew in the database.
void reportPast( Family **copy, QV_INT idx, Flags flags )
{
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET_RESET )
    {
        qv::Local<Family> family( qv::retained( *copy ) );
        setEmptyPastSinceReset( family.edit() );
        qvDictSetValueAt( &processFamilies, idx, qvProcessStatisticsFamilyObj( family ) );
    }
    if ( !( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_PAST ) )
    {
        qvProcessStatisticsFamilyDelGroupPast( copy );
    }
    if ( !( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET ) )
    {
        qvProcessStatisticsFamilyDelGroupPastSinceReset( copy );
    }
}

struct Current
{
    qv::Local<Group> sinceCreation;
    qv::Local<Group> sinceReset;
};

void sum( Current *current, QV_PROCESS_STATISTICS *statistics, Flags flags )
{
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_CREATION )
    {
        accumulate( current->sinceCreation.edit(), statistics->intervalSinceCreation );
    }
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET )
    {
        accumulate( current->sinceReset.edit(), statistics->intervalSinceReset );
    }
}

void reportProcess( Family **copy, QV_PROCESS_STATISTICS **statistics, Flags flags )
{
    if ( !( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION ) )
    {
        qv___ProcessStatisticsDelIntervalSinceCreation( statistics );
    }
    if ( !( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET ) )
    {
        qv___ProcessStatisticsDelIntervalSinceReset( statistics );
    }
    qvProcessStatisticsFamilySetProcess( copy, *statistics );
}

void reportLiving( Family **copy, QV_DICT *living, Flags flags )
{
    Current current = { qv::Local<Group>( qvProcessStatisticsGroupCreate() ),
                        qv::Local<Group>( qvProcessStatisticsGroupCreate() ) };
    for ( QV_INT idx = 0; living && idx < qv::dictLength( living ); idx++ )
    {
        QV_PROCESS *process = qvProcessFrom( qv::dictPairs( living )[idx].val );
        qv::Local<QV_PROCESS_STATISTICS> statistics(
            qvProcessTryGatherStatistics( process, gatheringFlags( flags ) ) );
        sum( &current, statistics, flags );
        if ( flags & QV_PROCESS_STATISTICS_FLAG_PROCESSES )
        {
            reportProcess( copy, statistics.edit(), flags );
        }
    }
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_CREATION )
    {
        qvProcessStatisticsFamilySetGroupCurrentSinceCreation( copy, current.sinceCreation );
    }
    if ( flags & QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET )
    {
        qvProcessStatisticsFamilySetGroupCurrentSinceReset( copy, current.sinceReset );
    }
}

} // namespace

void qv___ProcessStatisticsDbStartup()
{
    region = qvRegionCreate();
    processes = qvDictCreate();
    processFamilies = qvDictCreate();
}

void qv___ProcessStatisticsDbShutdown()
{
    qv::retire( &processFamilies );
    qv::retire( &processes );
    qv::retire( &region );
}

void qv___ProcessStatisticsDbRegisterProcess( QV_PROCESS *process )
{
    QV_CHECK( process );
    Inside inside( QV_TRUE );
    qv::Local<QV_DICT> living( takeLiving( process->fixName ) );
    qvDictSetIdentifierKey( living.edit(), process->fixIdentifier, qvProcessObj( process ) );
    putLiving( process->fixName, living );
    if ( !qvDictHasStringKey( processFamilies, process->fixName ) )
    {
        qv::Local<Family> family( qvProcessStatisticsFamilyCreate( process->fixName ) );
        qv::Local<Group> past( qvProcessStatisticsGroupCreate() );
        qvProcessStatisticsFamilySetGroupPast( family.edit(), past );
        setEmptyPastSinceReset( family.edit() );
        qvDictSetStringKey( &processFamilies, process->fixName, qvProcessStatisticsFamilyObj( family ) );
    }
}

void qv___ProcessStatisticsDbUnregisterProcess( QV_PROCESS *process )
{
    QV_CHECK( process );
    qv::Local<QV_PROCESS_STATISTICS> statistics( qvProcessTryGatherStatistics(
        process, QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION ) );
    QV_CHECK( statistics );
    Inside inside( QV_TRUE );
    if ( tryRemove( process ) )
    {
        addToPast( process->fixName, statistics->intervalSinceCreation );
    }
}

QV_PROCESS_STATISTICS_RESULT *qv___ProcessStatisticsDbExecuteQuery( QV_PROCESS_STATISTICS_QUERY *query )
{
    QV_CHECK( query );
    Flags flags = query->flags;
    QV_PROCESS_STATISTICS_RESULT *result = qvProcessStatisticsResultCreate();
    Inside inside( isExclusive( flags ) );
    for ( QV_INT idx = 0; idx < qvDictLength( processFamilies ); idx++ )
    {
        qv::Local<Family> copy( qvProcessStatisticsFamilyFrom( qvDictValueAt( processFamilies, idx ) ) );
        reportPast( copy.edit(), idx, flags );
        QV_DICT *living = qvDictFrom( qv::dictValueOf( processes, qv::objOf( copy->name ) ) );
        reportLiving( copy.edit(), living, flags );
        qvProcessStatisticsResultSetFamily( &result, copy );
    }
    return result;
}
