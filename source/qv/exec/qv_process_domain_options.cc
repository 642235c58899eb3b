#include <qv/exec/qv_process_domain_options.hh>

#include <qv/base/qv_store.h>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___ProcessDomainOptionsFreeFunc( qvObj ) {}

void makePrivate( QV_PROCESS_DOMAIN_OPTIONS **options )
{
    qv::makePrivate( options, qvProcessDomainOptionsCreateFrom );
}

void restoreNumbers( QV_PROCESS_DOMAIN_OPTIONS *options, QV_STORE *store )
{
    QV_INT threadCount = -1;
    if ( qvStoreValueIntCstr( store, &threadCount, "threadCount", -1 ) && threadCount >= 1 )
        options->threadCount = threadCount;
    qv::Local<QV_STRING> priorityName( qvStoreValueCstr( store, "threadPriority", -1 ) );
    if ( priorityName )
        options->threadPriority = qvThreadPriorityFromString( priorityName );
}

void restoreBooleans( QV_PROCESS_DOMAIN_OPTIONS *options, QV_STORE *store )
{
    QV_BOOL value = QV_FALSE;
    if ( qvStoreValueBoolCstr( store, &value, "trailOptimization", -1 ) )
    {
        options->hasTrailOptimization = true;
        options->trailOptimization = value;
    }
    if ( qvStoreValueBoolCstr( store, &value, "maintainStatistics", -1 ) )
    {
        options->hasMaintainStatistics = true;
        options->maintainStatistics = value;
    }
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS_DOMAIN_OPTIONS, qvProcessDomainOptions,
                { .freeFunc = qv___ProcessDomainOptionsFreeFunc } )

QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsCreate( void )
{
    auto *options = qv::create<QV_PROCESS_DOMAIN_OPTIONS>( qvProcessDomainOptionsSort() );
    options->threadCount = -1;
    options->threadPriority = -1;
    options->hasTrailOptimization = false;
    options->trailOptimization = QV_FALSE;
    options->hasMaintainStatistics = false;
    options->maintainStatistics = QV_FALSE;
    return options;
}

QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsCreateFrom( QV_PROCESS_DOMAIN_OPTIONS *source )
{
    QV_CHECK( source );
    QV_PROCESS_DOMAIN_OPTIONS *options = qvProcessDomainOptionsCreate();
    options->threadCount = source->threadCount;
    options->threadPriority = source->threadPriority;
    options->hasTrailOptimization = source->hasTrailOptimization;
    options->trailOptimization = source->trailOptimization;
    options->hasMaintainStatistics = source->hasMaintainStatistics;
    options->maintainStatistics = source->maintainStatistics;
    return options;
}

QV_INT qvProcessDomainOptionsThreadCount( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->threadCount;
}

QV_BOOL qvProcessDomainOptionsHasThreadCount( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->threadCount != -1;
}

void qvProcessDomainOptionsSetThreadCount( QV_PROCESS_DOMAIN_OPTIONS **options, QV_INT threadCount )
{
    QV_CHECK( threadCount >= 1 );
    makePrivate( options );
    ( *options )->threadCount = threadCount;
}

void qvProcessDomainOptionsDelThreadCount( QV_PROCESS_DOMAIN_OPTIONS **options )
{
    makePrivate( options );
    ( *options )->threadCount = -1;
}

QV_THREAD_PRIORITY qvProcessDomainOptionsThreadPriority( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->threadPriority;
}

QV_BOOL qvProcessDomainOptionsHasThreadPriority( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->threadPriority != -1;
}

void qvProcessDomainOptionsSetThreadPriority( QV_PROCESS_DOMAIN_OPTIONS **options,
                                              QV_THREAD_PRIORITY threadPriority )
{
    QV_CHECK( QV_THREAD_PRIORITY_OK( threadPriority ) );
    makePrivate( options );
    ( *options )->threadPriority = threadPriority;
}

void qvProcessDomainOptionsDelThreadPriority( QV_PROCESS_DOMAIN_OPTIONS **options )
{
    makePrivate( options );
    ( *options )->threadPriority = -1;
}

QV_BOOL qvProcessDomainOptionsTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->trailOptimization;
}

QV_BOOL qvProcessDomainOptionsHasTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->hasTrailOptimization;
}

void qvProcessDomainOptionsSetTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS **options,
                                                 QV_BOOL trailOptimization )
{
    makePrivate( options );
    ( *options )->hasTrailOptimization = true;
    ( *options )->trailOptimization = trailOptimization ? QV_TRUE : QV_FALSE;
}

void qvProcessDomainOptionsDelTrailOptimization( QV_PROCESS_DOMAIN_OPTIONS **options )
{
    makePrivate( options );
    ( *options )->hasTrailOptimization = false;
    ( *options )->trailOptimization = QV_FALSE;
}

QV_BOOL qvProcessDomainOptionsMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->maintainStatistics;
}

QV_BOOL qvProcessDomainOptionsHasMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    return options->hasMaintainStatistics;
}

void qvProcessDomainOptionsSetMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS **options,
                                                  QV_BOOL maintainStatistics )
{
    makePrivate( options );
    ( *options )->hasMaintainStatistics = true;
    ( *options )->maintainStatistics = maintainStatistics ? QV_TRUE : QV_FALSE;
}

void qvProcessDomainOptionsDelMaintainStatistics( QV_PROCESS_DOMAIN_OPTIONS **options )
{
    makePrivate( options );
    ( *options )->hasMaintainStatistics = false;
    ( *options )->maintainStatistics = QV_FALSE;
}

QV_STORE *qvProcessDomainOptionsStore( QV_PROCESS_DOMAIN_OPTIONS *options )
{
    QV_CHECK( options );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( options->threadCount != -1 )
    {
        qvStoreSetValueIntCstr( store.edit(), "threadCount", -1, options->threadCount );
    }
    if ( options->threadPriority != -1 )
    {
        qv::Local<QV_STRING> name( qvThreadPriorityToString( options->threadPriority ) );
        qvStoreSetValueCstr( store.edit(), "threadPriority", -1, name );
    }
    if ( options->hasTrailOptimization )
    {
        qvStoreSetValueBoolCstr( store.edit(), "trailOptimization", -1, options->trailOptimization );
    }
    if ( options->hasMaintainStatistics )
    {
        qvStoreSetValueBoolCstr( store.edit(), "maintainStatistics", -1, options->maintainStatistics );
    }
    return store.give();
}

QV_PROCESS_DOMAIN_OPTIONS *qvProcessDomainOptionsRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_PROCESS_DOMAIN_OPTIONS *options = qvProcessDomainOptionsCreate();
    restoreNumbers( options, store );
    restoreBooleans( options, store );
    return options;
}
