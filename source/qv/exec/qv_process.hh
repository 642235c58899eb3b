#ifndef QV_EXEC_QV_PROCESS_HH
#define QV_EXEC_QV_PROCESS_HH

#include <qv/exec/qv_exec_block.hh>
#include <qv/exec/qv_process.h>
#include <qv/exec/qv_process_counts.hh>
#include <qv/exec/qv_process_protocol.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_atomic_bool.hh>
#include <qv/sys/qv_fetch.hh>

// The prefixes say who may touch a field: fix is set at creation and never changes, ext is atomic and open to any thread,
// int belongs to the thread that runs the process, stat is guarded by statLock. Invariant: intListItem is in a list only
// while extScheduled is on, and the scheduler holds a reference all that time.
struct qv___Process : qv___Obj
{
    // What a request and a run write, close to the count of references, and what they read: each line of it that another
    // processor has written costs as much as all the steps.
    qv::ProcessFlags<qv::AtomicBool> flags;
    bool fixTrailOptimization;
    bool fixMaintainStatistics;
    qv___ExecListItem intListItem;
    QV_PROCESS_DOMAIN *fixDomain;
    QV_INT fixDomainToken;
    QV_INT fixThreadHint;
    QV_PROCESS_FUNC intFunc; // null after the end
    qvObj intClosure;        // may be null; null after the end
    QV_STRING *fixName;
    QV_IDENTIFIER *fixIdentifier;
    QV_SIGNAL *fixEndSignal;
    qv___Lock
        statLock; // for short copies, never while the function runs; nests inside nothing but the statistics
    QV_INT statScheduled; // the time of the current request, -1 when there is none
    QV_INT statStarted;   // the time of the current start, -1 when there is none
    QV_INT statCreated;
    qv___ExecProcessStats statTotal; // since creation
    QV_INT statIntervalStart;
    qv___ExecProcessStats statInterval; // since statIntervalStart
};

// The same as the public creators with a zero-terminated name.
QV_PROCESS *qv___ProcessCreate( QV_PROCESS_PRIORITY priority, QV_PROCESS_FUNC func, qvObj closure,
                                const char *name );
QV_PROCESS *qv___ProcessCreateWithDomain( QV_PROCESS_DOMAIN *domain, QV_PROCESS_FUNC func, qvObj closure,
                                          const char *name );

// Waits for the end; not from inside a process.
void qv___ProcessEndWait( QV_PROCESS *process );

// True on a process thread.
inline QV_BOOL qv___ProcessInProcess()
{
    return qv___exec_block.processDomainToken != QV___UNIQUE_INVALID;
}

namespace qv
{

// Asks for what a request or a run of the process of an item touches: the item, and the lines beside it, with the count of
// references before it and the function and the closure behind. Told from the item's address, since its owner would have to
// be fetched first.
inline void fetchProcess( const qv___ExecListItem *item )
{
    auto place = reinterpret_cast<const char *>( item );
    fetchToWrite( place - 64 );
    fetchToWrite( place );
    fetchToWrite( place + 56 );
}

// The same ahead of time, for an item and the ones behind it, while the one before it runs.
inline void fetchFrom( const qv___ExecListItem *item )
{
    if ( item )
    {
        fetchProcess( item );
        fetchToWrite( item->next );
    }
}

} // namespace qv

// Runs or ends the process at the head of this thread's queue.
void qv___ProcessExecute( QV_PROCESS *process );

#endif
