#include <qv/exec/qv_process_domain.hh>

#include <qv/base/qv_name.h>
#include <qv/base/qv_string.h>
#include <qv/exec/qv_process_domain_options.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_int.h>

namespace
{

// All processes are gone by now, so all queues are empty. If the last of them went on a thread of this domain, that thread
// isn't joined: it leaves its loop on the way back.
void qv___ProcessDomainFreeFunc( qvObj thisObj )
{
    QV_PROCESS_DOMAIN *thisDomain = qvProcessDomainFrom( thisObj );
    QV_CHECK( thisDomain );
    for ( QV___PROCESS_THREAD *thread : thisDomain->threads )
    {
        if ( thread )
        {
            qv___ProcessThreadHalt( thread );
        }
    }
    for ( QV___PROCESS_THREAD *thread : thisDomain->threads )
    {
        qv::releaseOptional( thread );
    }
    qv::release( thisDomain->options );
    qv::release( qv::objOf( thisDomain->name ) );
}

bool tryStartThreads( QV_PROCESS_DOMAIN *domain )
{
    for ( QV_INT idx = 0; idx < domain->threadCount; idx++ )
    {
        // The index is padded to the width of the highest one.
        qv::Local<QV_STRING> name(
            qvStringCreateFromFormatCstr( "%s_%.*A", -1, domain->name, domain->threadCount - 1, idx ) );
        domain->threads[idx] = qv___ProcessThreadTryCreate( name, domain->threadPriority, domain->token );
        if ( !domain->threads[idx] )
            return false;
    }
    return true;
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_DOMAIN, qvProcessDomain, { .freeFunc = qv___ProcessDomainFreeFunc } )

QV_PROCESS_DOMAIN *qvProcessDomainTryCreate( QV_PROCESS_DOMAIN_OPTIONS *options, QV_STRING *name )
{
    return qvProcessDomainTryCreateWithFallback( options, name, 1, QV_THREAD_PRIORITY_NORMAL, QV_FALSE,
                                                 QV_FALSE );
}

QV_PROCESS_DOMAIN *qvProcessDomainTryCreateWithFallback( QV_PROCESS_DOMAIN_OPTIONS *options, QV_STRING *name,
                                                         QV_INT fallbackThreadCount,
                                                         QV_THREAD_PRIORITY fallbackThreadPriority,
                                                         QV_BOOL fallbackTrailOptimization,
                                                         QV_BOOL fallbackMaintainStatistics )
{
    QV_CHECK( options );
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_CHECK( fallbackThreadCount >= 1 );
    QV_CHECK( QV_THREAD_PRIORITY_OK( fallbackThreadPriority ) );
    qv::Local<QV_PROCESS_DOMAIN> domain( qv::create<QV_PROCESS_DOMAIN>( qvProcessDomainSort() ) );
    domain->options = qv::retained( options );
    domain->name = qv::retained( name );
    QV_INT threadCount = options->threadCount != -1 ? options->threadCount : fallbackThreadCount;
    domain->threadCount = qvIntConstrain( threadCount, 1, qv___PROCESS_DOMAIN_THREADS );
    domain->threadPriority = options->threadPriority != -1 ? options->threadPriority : fallbackThreadPriority;
    domain->trailOptimization =
        options->hasTrailOptimization ? options->trailOptimization : fallbackTrailOptimization;
    domain->maintainStatistics =
        options->hasMaintainStatistics ? options->maintainStatistics : fallbackMaintainStatistics;
    domain->token = qv___ObjUnique( domain );
    for ( QV___PROCESS_THREAD *&thread : domain->threads )
    {
        thread = nullptr;
    }
    return tryStartThreads( domain ) ? domain.give() : nullptr;
}

QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptions( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return qv::retained( domain->options );
}

QV_STRING *qvProcessDomainName( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return qv::retained( domain->name );
}

QV_INT qvProcessDomainThreadCount( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return domain->threadCount;
}

QV_THREAD_PRIORITY qvProcessDomainThreadPriority( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return domain->threadPriority;
}

QV_BOOL qvProcessDomainTrailOptimization( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return domain->trailOptimization;
}

QV_BOOL qvProcessDomainMaintainStatistics( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return domain->maintainStatistics;
}

QV_INT qv___ProcessDomainToken( QV_PROCESS_DOMAIN *domain )
{
    QV_CHECK( domain );
    return domain->token;
}

void qv___ProcessDomainScheduleProcess( QV_PROCESS_DOMAIN *domain, QV_INT threadHint,
                                        qv___ExecListItem *item )
{
    QV_CHECK( domain );
    QV_CHECK( threadHint >= 0 );
    qv___ProcessThreadSchedule( domain->threads[threadHint % domain->threadCount], item );
}
