#include <qv/exec/qv_thread.hh>

#include <sched.h>
#include <sys/prctl.h>

#include <qv/base/qv_counter.h>
#include <qv/base/qv_monitor.hh>
#include <qv/base/qv_name.h>
#include <qv/base/qv_signal.h>
#include <qv/base/qv_string.h>
#include <qv/exec/qv_exec_block.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_record_pool.hh>
#include <qv/sys/qv_signal_stack.hh>

namespace
{

// Holds the calling thread's object, without a reference of its own; null on foreign threads.
constinit pthread_key_t tlsKey = {};

// 1 for the runtime itself and 1 for each thread from its start to its end.
constinit QV_COUNTER *threadCounter = nullptr;

void qv___ThreadFreeFunc( qvObj thisObj )
{
    QV_THREAD *thisThread = qvThreadFrom( thisObj );
    QV_CHECK( thisThread );
    qv::release( qv::objOf( thisThread->monitor ) );
    qv::release( qv::objOf( thisThread->fixName ) );
    qv::releaseOptional( thisThread->argument );
    qv::release( qv::objOf( thisThread->endSignal ) );
}

QV_STRING *qv___ThreadToStringFunc( qvObj thisObj )
{
    return qvThreadName( qvThreadFrom( thisObj ) );
}

// Without an allocation, since the first one on a thread makes the C library map it an arena of its own.
void setPlatformName( QV_STRING *name )
{
    // The platform keeps the first 15 bytes. The name is one of capitals, digits and "_".
    char platformName[16] = {};
    QV_INT length = qvStringLength( name );
    for ( QV_INT idx = 0; idx < length && idx < 15; idx++ )
    {
        platformName[idx] = static_cast<char>( qvStringCharAt( name, idx ) );
    }
    prctl( PR_SET_NAME, platformName, 0, 0, 0 );
}

void setThis( QV_THREAD *thread )
{
    int res = pthread_setspecific( tlsKey, thread );
    QV_CHECK( res == 0 );
}

// The numbered order is what lets the creator release its reference at any time and the shutdown wait for all.
void runThread( void *argument )
{
    auto *thread = static_cast<QV_THREAD *>( argument );
    // 1. The name.
    setPlatformName( thread->fixName );
    // 2. to 4. The thread function, with the object at hand.
    setThis( thread );
    thread->fixThreadFunc();
    setThis( nullptr );
    // 5. The signal outlives the object, which may go here.
    QV_SIGNAL *endSignal = qv::retained( thread->endSignal );
    qv::release( thread );
    qvSignalAssert( endSignal );
    qv::release( qv::objOf( endSignal ) );
    // 6. From here on the end of the runtime waits no longer for this thread.
    qv___RecordPoolLeave();
    qvCounterDecrement( threadCounter );
}

void *startRoutine( void *argument )
{
    // Outside of all else: the runtime may have ended when the thread does.
    qv::SignalStack signalStack;
    qv::signalStackEnter( &signalStack );
    qv___ExecEncapsulate( runThread, argument );
    qv::signalStackLeave( &signalStack );
    return nullptr;
}

int realTimePriority( QV_THREAD_PRIORITY prio )
{
    int minPrio = sched_get_priority_min( SCHED_RR );
    int maxPrio = sched_get_priority_max( SCHED_RR );
    if ( minPrio == -1 || maxPrio == -1 )
    {
        QV_FAIL( "failed to get scheduling priorities" );
    }
    QV_CHECK( maxPrio >= minPrio );
    return static_cast<int>( minPrio + ( static_cast<QV_INT>( maxPrio ) - minPrio ) * prio / 6 );
}

void initializeAttributes( pthread_attr_t *attributes )
{
    if ( pthread_attr_init( attributes ) != 0 ||
         pthread_attr_setdetachstate( attributes, PTHREAD_CREATE_DETACHED ) != 0 )
    {
        QV_FAIL( "failed to initialize thread attributes" );
    }
}

void setRealTime( pthread_attr_t *attributes, QV_THREAD_PRIORITY prio )
{
    struct sched_param param = {};
    param.sched_priority = realTimePriority( prio );
    if ( pthread_attr_setschedpolicy( attributes, SCHED_RR ) != 0 ||
         pthread_attr_setschedparam( attributes, &param ) != 0 ||
         pthread_attr_setinheritsched( attributes, PTHREAD_EXPLICIT_SCHED ) != 0 )
    {
        QV_FAIL( "failed to set scheduling parameters" );
    }
}

void destroyAttributes( pthread_attr_t *attributes )
{
    if ( pthread_attr_destroy( attributes ) != 0 )
    {
        QV_FAIL( "failed to destroy thread attributes" );
    }
}

QV_THREAD *createThread( QV_STRING *name, QV_THREAD_PRIORITY prio, QV_THREAD_FUNC threadFunc, qvObj argument )
{
    auto *thread = qv::create<QV_THREAD>( qvThreadSort() );
    thread->monitor = qvMonitorCreate();
    thread->fixName = qv::retained( name );
    thread->fixPriority = prio;
    thread->fixThreadFunc = threadFunc;
    thread->argument = qv::retainedOptional( argument );
    thread->endSignal = qvSignalCreate();
    thread->pthread = {};
    return thread;
}

// Starts the platform's thread under real-time scheduling, or plainly where that isn't granted.
bool tryStart( QV_THREAD *thread )
{
    pthread_attr_t realTime;
    pthread_attr_t plain;
    initializeAttributes( &realTime );
    setRealTime( &realTime, thread->fixPriority );
    initializeAttributes( &plain );
    qvCounterIncrement( threadCounter );
    bool isStarted = pthread_create( &thread->pthread, &realTime, startRoutine, thread ) == 0 ||
                     pthread_create( &thread->pthread, &plain, startRoutine, thread ) == 0;
    if ( !isStarted )
    {
        qvCounterDecrement( threadCounter );
    }
    destroyAttributes( &realTime );
    destroyAttributes( &plain );
    return isStarted;
}

} // namespace

QV_SORT_DEFINE( QV_THREAD, qvThread,
                { .freeFunc = qv___ThreadFreeFunc, .toStringFunc = qv___ThreadToStringFunc } )

void qv___ThreadStartup()
{
    int res = pthread_key_create( &tlsKey, nullptr );
    QV_CHECK( res == 0 );
    threadCounter = qvCounterCreate();
    qvCounterIncrement( threadCounter );
}

void qv___ThreadShutdown()
{
    qvCounterDecrement( threadCounter );
    qvCounterWaitZero( threadCounter );
    qv::retire( &threadCounter );
    int res = pthread_key_delete( tlsKey );
    QV_CHECK( res == 0 );
}

bool qv::isThisThread( QV_THREAD *thread )
{
    return pthread_getspecific( tlsKey ) == thread;
}

QV_THREAD *qvThreadTrySpawn( QV_STRING *name, QV_THREAD_PRIORITY prio, QV_THREAD_FUNC threadFunc,
                             qvObj argument )
{
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_CHECK( QV_THREAD_PRIORITY_OK( prio ) );
    QV_CHECK( threadFunc );
    qv::Local<QV_THREAD> thread( createThread( name, prio, threadFunc, argument ) );
    // The second reference belongs to the new thread.
    qv::retain( thread );
    if ( !tryStart( thread ) )
    {
        qv::release( thread );
        return nullptr;
    }
    return thread.give();
}

QV_THREAD *qvThreadThis( void )
{
    return qv::retainedOptional( static_cast<QV_THREAD *>( pthread_getspecific( tlsKey ) ) );
}

QV_STRING *qvThreadName( QV_THREAD *thread )
{
    QV_CHECK( thread );
    return qv::retained( thread->fixName );
}

QV_THREAD_PRIORITY qvThreadPriority( QV_THREAD *thread )
{
    QV_CHECK( thread );
    return thread->fixPriority;
}

qvObj qvThreadArgument( QV_THREAD *thread )
{
    QV_CHECK( thread );
    qv::Entered entered( thread->monitor );
    return qv::retainedOptional( thread->argument );
}

qvObj qvThreadUnlatchArgument( QV_THREAD *thread )
{
    QV_CHECK( thread );
    qv::Entered entered( thread->monitor );
    qvObj argument = thread->argument;
    thread->argument = nullptr;
    return argument;
}

QV_BOOL qvThreadEnd( QV_THREAD *thread )
{
    QV_CHECK( thread );
    return qvSignalAsserted( thread->endSignal );
}

void qvThreadEndAddSignalable( QV_THREAD *thread, QV_SIGNALABLE *signalable )
{
    QV_CHECK( thread );
    qvSignalAddSignalable( thread->endSignal, signalable );
}

void qvThreadEndDelSignalable( QV_THREAD *thread, QV_SIGNALABLE *signalable )
{
    QV_CHECK( thread );
    qvSignalDelSignalable( thread->endSignal, signalable );
}

void qvThreadJoin( QV_THREAD *thread )
{
    QV_CHECK( thread );
    qv___ExecCheckEncapsulated();
    qvSignalWait( thread->endSignal );
}
