#include <qv/exec/qv_process.hh>

#include <qv/base/qv_identifier.h>
#include <qv/base/qv_name.h>
#include <qv/base/qv_signal.h>
#include <qv/base/qv_string.h>
#include <qv/exec/qv_process_domain.hh>
#include <qv/exec/qv_process_statistics_db.hh>
#include <qv/exec/qv_process_system.hh>
#include <qv/sys/qv_timestamp.hh>

namespace
{

void qv___ProcessFreeFunc( qvObj thisObj )
{
    QV_PROCESS *thisProcess = qvProcessFrom( thisObj );
    QV_CHECK( thisProcess );
    qv___ExecListItemFinalize( &thisProcess->intListItem );
    qv::releaseOptional( thisProcess->intClosure );
    qv::release( qv::objOf( thisProcess->fixEndSignal ) );
    qv::release( qv::objOf( thisProcess->fixIdentifier ) );
    qv::release( qv::objOf( thisProcess->fixName ) );
    qv___LockFinalize( &thisProcess->statLock );
    // With it the domain may end.
    qv::release( qv::objOf( thisProcess->fixDomain ) );
}

// What the scheduler's steps do with a process of the library.
class Steps
{
  public:
    explicit Steps( QV_PROCESS *process ) : process_( process ), block_( &qv___exec_block ) {}

    void noteScheduled()
    {
        setScheduledTime( process_->fixMaintainStatistics ? qv___Timestamp() : -1 );
    }

    void retain()
    {
        qv::retain( process_ );
    }

    void enqueue()
    {
        // A request from inside the domain stays on the running thread, without a lock.
        if ( process_->fixTrailOptimization && block_->processDomainToken == process_->fixDomainToken )
            qv___ExecListAppendItem( &block_->processQueue, &process_->intListItem );
        else
            qv___ProcessDomainScheduleProcess( process_->fixDomain, process_->fixThreadHint,
                                               &process_->intListItem );
    }

    void takeHead()
    {
        QV_CHECK( block_->processDomainToken == process_->fixDomainToken );
        qv___ExecListItem *item = qv___ExecListRemoveFirstItem( &block_->processQueue );
        QV_CHECK( item == &process_->intListItem );
    }

    QV_INT end();
    QV_INT run();

    void checkScheduled( bool wasScheduled )
    {
        QV_CHECK( wasScheduled );
    }

    void release()
    {
        qv::release( process_ );
    }

    void enqueueAgain( QV_INT time )
    {
        setScheduledTime( time );
        enqueue();
    }

  private:
    void setScheduledTime( QV_INT time )
    {
        if ( process_->fixMaintainStatistics )
        {
            qv::Locked locked( &process_->statLock );
            process_->statScheduled = time;
        }
    }

    QV_INT countRun();

    QV_PROCESS *process_;
    qv___ExecBlock *block_;
};

QV_INT Steps::end()
{
    if ( process_->fixMaintainStatistics )
    {
        {
            qv::Locked locked( &process_->statLock );
            process_->statScheduled = -1;
            process_->statStarted = -1;
        }
        qv___ProcessStatisticsDbUnregisterProcess( process_ );
    }
    qvSignalAssert( process_->fixEndSignal );
    process_->intFunc = nullptr;
    qv::replaceWith( &process_->intClosure, qvObj( nullptr ) );
    return -1;
}

QV_INT Steps::run()
{
    QV_INT started = qv___Timestamp();
    block_->processTimestamp = started;
    if ( process_->fixMaintainStatistics )
    {
        qv::Locked locked( &process_->statLock );
        process_->statStarted = started;
    }
    process_->intFunc( process_->intClosure );
    block_->processTimestamp = 0;
    return process_->fixMaintainStatistics ? countRun() : -1;
}

// Counts the run that has just ended and gives the time of its end.
QV_INT Steps::countRun()
{
    qv::Locked locked( &process_->statLock );
    QV_INT now = qv___Timestamp();
    QV_INT latency = qvTimestampDiff( process_->statStarted, process_->statScheduled );
    QV_INT runtime = qvTimestampDiff( now, process_->statStarted );
    qv___ExecProcessStatsUpdate( &process_->statTotal, latency, runtime );
    qv___ExecProcessStatsUpdate( &process_->statInterval, latency, runtime );
    process_->statScheduled = -1;
    process_->statStarted = -1;
    return now;
}

} // namespace

QV_SORT_DEFINE( QV_PROCESS, qvProcess, { .freeFunc = qv___ProcessFreeFunc } )

QV_PROCESS *qvProcessCreate( QV_PROCESS_PRIORITY priority, QV_PROCESS_FUNC func, qvObj closure,
                             QV_STRING *name )
{
    qv::Local<QV_PROCESS_DOMAIN> domain( qv___ProcessSystemDomainForPriority( priority ) );
    return qvProcessCreateWithDomain( domain, func, closure, name );
}

QV_PROCESS *qvProcessCreateWithDomain( QV_PROCESS_DOMAIN *domain, QV_PROCESS_FUNC func, qvObj closure,
                                       QV_STRING *name )
{
    QV_CHECK( domain );
    QV_CHECK( func );
    QV_CHECK( name );
    QV_CHECK( qvNameOk( name, QV_TRUE ) );
    auto *process = qv::create<QV_PROCESS>( qvProcessSort() );
    qv___LockInitialize( &process->statLock );
    process->fixDomain = qv::retained( domain );
    process->fixDomainToken = domain->token;
    process->fixTrailOptimization = domain->trailOptimization;
    process->fixMaintainStatistics = domain->maintainStatistics;
    process->fixName = qv::retained( name );
    process->fixIdentifier = qvIdentifierCreate();
    process->fixThreadHint = qv___ObjUnique( process );
    process->flags.initialize();
    process->fixEndSignal = qvSignalCreate();
    process->intFunc = func;
    process->intClosure = qv::retainedOptional( closure );
    qv___ExecListItemInitialize( &process->intListItem, process );
    process->statScheduled = -1;
    process->statStarted = -1;
    process->statCreated = qv___Timestamp();
    process->statIntervalStart = process->statCreated;
    qv___ExecProcessStatsReset( &process->statTotal );
    qv___ExecProcessStatsReset( &process->statInterval );
    if ( process->fixMaintainStatistics )
    {
        qv___ProcessStatisticsDbRegisterProcess( process );
    }
    return process;
}

QV_PROCESS *qv___ProcessCreate( QV_PROCESS_PRIORITY priority, QV_PROCESS_FUNC func, qvObj closure,
                                const char *name )
{
    qv::Local<QV_STRING> nameString( qvStringCreateFromCstr( name, -1 ) );
    return qvProcessCreate( priority, func, closure, nameString );
}

QV_PROCESS *qv___ProcessCreateWithDomain( QV_PROCESS_DOMAIN *domain, QV_PROCESS_FUNC func, qvObj closure,
                                          const char *name )
{
    qv::Local<QV_STRING> nameString( qvStringCreateFromCstr( name, -1 ) );
    return qvProcessCreateWithDomain( domain, func, closure, nameString );
}

QV_PROCESS_DOMAIN *qvProcessDomain( QV_PROCESS *process )
{
    QV_CHECK( process );
    return qv::retained( process->fixDomain );
}

QV_STRING *qvProcessName( QV_PROCESS *process )
{
    QV_CHECK( process );
    return qv::retained( process->fixName );
}

QV_IDENTIFIER *qvProcessIdentifier( QV_PROCESS *process )
{
    QV_CHECK( process );
    return qv::retained( process->fixIdentifier );
}

void qvProcessSchedule( QV_PROCESS *process )
{
    QV_CHECK( process );
    qv::fetchProcess( &process->intListItem );
    Steps steps( process );
    qv::processSchedule( &process->flags, steps );
}

void qvProcessHalt( QV_PROCESS *process )
{
    QV_CHECK( process );
    Steps steps( process );
    qv::processHalt( &process->flags, steps );
}

QV_BOOL qvProcessHalted( QV_PROCESS *process )
{
    QV_CHECK( process );
    return process->flags.extHalted.isOn();
}

QV_BOOL qvProcessEnd( QV_PROCESS *process )
{
    QV_CHECK( process );
    return qvSignalAsserted( process->fixEndSignal );
}

void qvProcessEndAddSignalable( QV_PROCESS *process, QV_SIGNALABLE *sigb )
{
    QV_CHECK( process );
    qvSignalAddSignalable( process->fixEndSignal, sigb );
}

void qvProcessEndDelSignalable( QV_PROCESS *process, QV_SIGNALABLE *sigb )
{
    QV_CHECK( process );
    qvSignalDelSignalable( process->fixEndSignal, sigb );
}

void qv___ProcessEndWait( QV_PROCESS *process )
{
    QV_CHECK( process );
    QV_CHECK( qv___exec_block.processDomainToken == QV___UNIQUE_INVALID );
    qvSignalWait( process->fixEndSignal );
}

void qv___ProcessExecute( QV_PROCESS *process )
{
    QV_CHECK( process );
    Steps steps( process );
    qv::processExecute( &process->flags, steps );
}
