#include <qv/exec/qv_process_thread.hh>

#include <sched.h>

#include <qv/exec/qv_process.hh>
#include <qv/exec/qv_rest.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_timestamp.hh>

namespace
{

void lock( QV___PROCESS_THREAD *thread )
{
    if ( pthread_mutex_lock( &thread->isMutex ) != 0 )
    {
        QV_FAIL( "failed to lock mutex" );
    }
}

void unlock( QV___PROCESS_THREAD *thread )
{
    if ( pthread_mutex_unlock( &thread->isMutex ) != 0 )
    {
        QV_FAIL( "failed to unlock mutex" );
    }
}

void wake( QV___PROCESS_THREAD *thread )
{
    if ( pthread_cond_broadcast( &thread->isCond ) != 0 )
    {
        QV_FAIL( "failed to broadcast condition" );
    }
}

void wait( QV___PROCESS_THREAD *thread )
{
    if ( pthread_cond_wait( &thread->isCond, &thread->isMutex ) != 0 )
    {
        QV_FAIL( "cond wait failed" );
    }
}

bool isHalted( QV___PROCESS_THREAD *thread )
{
    return __atomic_load_n( &thread->extHalt, __ATOMIC_SEQ_CST );
}

bool hasArrived( QV___PROCESS_THREAD *thread )
{
    return __atomic_load_n( &thread->extArrived, __ATOMIC_RELAXED );
}

void setArrived( QV___PROCESS_THREAD *thread, bool arrived )
{
    __atomic_store_n( &thread->extArrived, arrived, __ATOMIC_RELAXED );
}

// The threads that spin at this moment.
constinit QV_INT spinnerCount = 0;

// Waits a little for work before the thread sleeps, since falling asleep and being woken costs more than most waits
// between two requests, and goes on so while work comes in that time. One processor always stays free of spinning
// threads, which under real-time scheduling would keep from running whoever has work for them.
//
// Someone who posts in a row would be interrupted for each request by a thread that is more urgent and quick. So a thread
// now and then naps for a moment instead, in which requests gather without a wake, and goes on so while naps bring
// several. They must come all through the nap, though: who posts some, waits for their runs and posts again would wait for
// the end of the nap each time.
class Spinner
{
  public:
    Spinner() : places_( qv::processorCount() - 1 ), spinning_( 1 ), napping_( qv::Habit::SELDOM ) {}

    void waitFor( QV___PROCESS_THREAD *thread )
    {
        napped_ = false;
        if ( hasArrived( thread ) )
            return;
        if ( napping_.isDue() )
        {
            nap( thread );
        }
        else if ( places_ > 0 && spinning_.isDue() )
        {
            if ( __atomic_fetch_add( &spinnerCount, 1, __ATOMIC_RELAXED ) < places_ )
                spinning_.note( spin( thread ) );
            __atomic_fetch_sub( &spinnerCount, 1, __ATOMIC_RELAXED );
        }
    }

    // What has been found after the wait.
    void note( const qv___ExecList *arrived )
    {
        if ( napped_ )
            napping_.note( arrived->first != arrived->last && arrived->last != early_ );
    }

  private:
    // The first nap of a row, and one of several later, looks up in between for what has come early.
    void nap( QV___PROCESS_THREAD *thread )
    {
        napped_ = true;
        early_ = nullptr;
        if ( napping_.isTrial() || ++napCount_ % LOOK_UP == 0 )
        {
            qv::nap( DOZE );
            early_ = lastArrived( thread );
            qv::nap( NAP - DOZE );
        }
        else
        {
            qv::nap( NAP );
        }
    }

    static const qv___ExecListItem *lastArrived( QV___PROCESS_THREAD *thread )
    {
        lock( thread );
        const qv___ExecListItem *last = thread->extQueue.last;
        unlock( thread );
        return last;
    }

    // True if work came.
    static bool spin( QV___PROCESS_THREAD *thread )
    {
        QV_INT end = qv___Nanoseconds() + SPIN;
        do
        {
            for ( int round = 0; round < ROUNDS; round++ )
            {
                if ( hasArrived( thread ) )
                    return true;
                pause();
            }
        } while ( qv___Nanoseconds() < end );
        return false;
    }

    // In nanoseconds.
    static constexpr QV_INT SPIN = 20000;
    static constexpr long DOZE = 10000;
    static constexpr long NAP = 40000;

    // Naps from one that looks up to the next.
    static constexpr QV_INT LOOK_UP = 64;

    // Looks between two readings of the clock.
    static constexpr int ROUNDS = 16;

    static void pause()
    {
#if defined( __i386__ ) || defined( __x86_64__ )
        __builtin_ia32_pause();
#endif
    }

    QV_INT places_; // how many threads may spin
    qv::Habit spinning_;
    qv::Habit napping_;
    QV_INT napCount_ = 0;
    bool napped_ = false;
    const qv___ExecListItem *early_ = nullptr; // the last that had come when the nap looked up
};

// Moves what has arrived to the batch, after at most one wait.
void takeBatch( QV___PROCESS_THREAD *thread, qv___ExecList *batch, Spinner *spinner )
{
    spinner->waitFor( thread );
    lock( thread );
    spinner->note( &thread->extQueue );
    if ( !thread->extQueue.first && !isHalted( thread ) )
    {
        wait( thread );
    }
    qv___ExecListAppendList( batch, &thread->extQueue );
    setArrived( thread, isHalted( thread ) );
    unlock( thread );
}

// Moves the first of the batch to the thread's own queue.
void takeNext( qv___ExecList *queue, qv___ExecList *batch )
{
    qv___ExecListAppendItem( queue, qv___ExecListRemoveFirstItem( batch ) );
    qv::fetchFrom( batch->first );
}

// The thread's own queue goes first and in order, then the batch, and only when both are empty what has arrived since. The
// last release of the domain may come from a process on this very thread; the flag is then set on the way back.
void runLoop( QV___PROCESS_THREAD *thread, qv___ExecList *batch )
{
    qv___ExecList *queue = &qv___exec_block.processQueue;
    Spinner spinner;
    while ( !isHalted( thread ) )
    {
        if ( queue->first )
        {
            qv::fetchFrom( queue->first->next );
            qv___ProcessExecute( queue->first->owner );
        }
        else if ( batch->first )
            takeNext( queue, batch );
        else
            takeBatch( thread, batch, &spinner );
    }
}

void runProcessThread( void )
{
    qv::Local<QV_THREAD> self( qvThreadThis() );
    qv::Local<QV___PROCESS_THREAD> thread( qv___ProcessThreadFrom( qvThreadUnlatchArgument( self ) ) );
    qv___exec_block.processDomainToken = thread->fixDomainToken;
    qv___ExecListInitialize( &qv___exec_block.processQueue );
    qv___ExecList batch;
    qv___ExecListInitialize( &batch );
    runLoop( thread, &batch );
    qv___ExecListFinalize( &batch );
    qv___ExecListFinalize( &qv___exec_block.processQueue );
    qv___exec_block.processDomainToken = QV___UNIQUE_INVALID;
}

void qv___ProcessThreadFreeFunc( qvObj thisObj )
{
    QV___PROCESS_THREAD *thisThread = qv___ProcessThreadFrom( thisObj );
    QV_CHECK( thisThread );
    if ( thisThread->isThread )
    {
        QV_CHECK( qvThreadEnd( thisThread->isThread ) || qv::isThisThread( thisThread->isThread ) );
        qv::release( thisThread->isThread );
    }
    qv___ExecListFinalize( &thisThread->extQueue );
    if ( pthread_cond_destroy( &thisThread->isCond ) != 0 )
    {
        QV_FAIL( "cond destruction failed" );
    }
    if ( pthread_mutex_destroy( &thisThread->isMutex ) != 0 )
    {
        QV_FAIL( "mutex destruction failed" );
    }
    qv::release( qv::objOf( thisThread->fixName ) );
}

} // namespace

QV_SORT_DEFINE( QV___PROCESS_THREAD, qv___ProcessThread, { .freeFunc = qv___ProcessThreadFreeFunc } )

QV_INT qv::processorCount()
{
    cpu_set_t processors;
    CPU_ZERO( &processors );
    int res = sched_getaffinity( 0, sizeof( processors ), &processors );
    QV_CHECK( res == 0 );
    return CPU_COUNT( &processors );
}

QV___PROCESS_THREAD *qv___ProcessThreadTryCreate( QV_STRING *name, QV_THREAD_PRIORITY threadPriority,
                                                  QV_INT domainToken )
{
    QV_CHECK( name );
    qv::Local<QV___PROCESS_THREAD> thread( qv::create<QV___PROCESS_THREAD>( qv___ProcessThreadSort() ) );
    thread->isThread = nullptr;
    int res = pthread_mutex_init( &thread->isMutex, nullptr );
    QV_CHECK( res == 0 );
    res = pthread_cond_init( &thread->isCond, nullptr );
    QV_CHECK( res == 0 );
    thread->fixName = qv::retained( name );
    thread->fixThreadPriority = threadPriority;
    thread->fixDomainToken = domainToken;
    thread->extHalt = false;
    thread->extArrived = false;
    qv___ExecListInitialize( &thread->extQueue );
    thread->isThread =
        qvThreadTrySpawn( name, threadPriority, runProcessThread, qv::objOf<QV___PROCESS_THREAD>( thread ) );
    return thread->isThread ? thread.give() : nullptr;
}

void qv___ProcessThreadSchedule( QV___PROCESS_THREAD *thread, qv___ExecListItem *item )
{
    QV_CHECK( thread );
    lock( thread );
    qv___ExecListAppendItem( &thread->extQueue, item );
    bool isFirst = thread->extQueue.first == item;
    if ( isFirst )
    {
        setArrived( thread, true );
    }
    unlock( thread );
    // Only a queue that was empty has a thread asleep. The wake goes out after the mutex has been left, so that the thread
    // doesn't run into it; the caller's reference to the process keeps the domain and with it the condition.
    if ( isFirst )
    {
        wake( thread );
    }
}

void qv___ProcessThreadHalt( QV___PROCESS_THREAD *thread )
{
    QV_CHECK( thread );
    lock( thread );
    QV_CHECK( !thread->extHalt );
    __atomic_store_n( &thread->extHalt, true, __ATOMIC_SEQ_CST );
    setArrived( thread, true );
    wake( thread );
    unlock( thread );
    if ( !qv::isThisThread( thread->isThread ) )
    {
        qvThreadJoin( thread->isThread );
    }
}
