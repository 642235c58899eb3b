#include <qv/sys/qv_abort_watch.hh>

#include <pthread.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

namespace
{

using qv::CrashMode;
using qv::CrashWatch;

constexpr QV_INT wholeLimit = 1500; // milliseconds from the start
constexpr QV_INT plainLimit = 3000;
constexpr suseconds_t tick = 250'000; // microseconds

// The watched threads by their system number, which needs no thread-local storage: the first use of that may allocate. A
// thread that finds no place goes unwatched; then others end the process in time.
struct Place
{
    pid_t thread; // 0: free
    CrashWatch *watch;
};
constinit Place places[64] = {};
constinit bool isTicking = false;

pid_t thisThread()
{
    return static_cast<pid_t>( syscall( SYS_gettid ) );
}

QV_INT now()
{
    // The library's own clock ends in a report if it fails, and so must not be asked here.
    struct timespec time = {};
    clock_gettime( CLOCK_MONOTONIC, &time );
    return static_cast<QV_INT>( time.tv_sec ) * 1000 + time.tv_nsec / 1'000'000;
}

void watchTick( int signum, siginfo_t *info, void * )
{
    if ( info->si_code != SI_TKILL )
    {
        // The timer's signal may come to any thread; each watched one gets its own.
        for ( Place &place : places )
        {
            pid_t thread = __atomic_load_n( &place.thread, __ATOMIC_SEQ_CST );
            if ( thread != 0 )
            {
                syscall( SYS_tgkill, getpid(), thread, signum );
            }
        }
        return;
    }
    CrashWatch *watch = qv::crashWatchOfThread();
    if ( watch && now() - watch->start >= ( watch->mode == CrashMode::whole ? wholeLimit : plainLimit ) )
        qv::crashWatchTrouble( watch );
}

void enterPlace( CrashWatch *watch )
{
    pid_t self = thisThread();
    for ( Place &place : places )
    {
        pid_t free = 0;
        if ( __atomic_compare_exchange_n( &place.thread, &free, self, false, __ATOMIC_SEQ_CST,
                                          __ATOMIC_SEQ_CST ) )
        {
            place.watch = watch;
            return;
        }
    }
}

void startTicking()
{
    if ( __atomic_exchange_n( &isTicking, true, __ATOMIC_SEQ_CST ) )
        return;
    struct sigaction action = {};
    action.sa_sigaction = watchTick;
    // Whatever the tick interrupts goes on, unless the time is over.
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
    sigaction( SIGALRM, &action, nullptr );
    struct itimerval interval = { { 0, tick }, { 0, tick } };
    setitimer( ITIMER_REAL, &interval, nullptr );
}

void maskSignals()
{
    sigset_t blocked;
    sigfillset( &blocked );
    constexpr int takenSignals[] = { SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGALRM };
    for ( int taken : takenSignals )
    {
        sigdelset( &blocked, taken );
    }
    pthread_sigmask( SIG_SETMASK, &blocked, nullptr );
}

} // namespace

void qv::crashWatchEnter( CrashWatch *watch )
{
    // A cancelled thread would leave the process running without its report.
    int state = 0;
    pthread_setcancelstate( PTHREAD_CANCEL_DISABLE, &state );
    watch->mode = CrashMode::whole;
    watch->start = now();
    enterPlace( watch );
    startTicking();
    maskSignals();
}

CrashWatch *qv::crashWatchOfThread()
{
    pid_t self = thisThread();
    for ( Place &place : places )
    {
        if ( __atomic_load_n( &place.thread, __ATOMIC_SEQ_CST ) == self )
            return place.watch;
    }
    return nullptr;
}

void qv::crashWatchTrouble( CrashWatch *watch )
{
    if ( watch->mode == CrashMode::whole )
    {
        watch->mode = CrashMode::plain;
        // This may be the handler of any of the signals, which the system blocks meanwhile.
        maskSignals();
        watch->carryOn( watch );
    }
    crashEnd();
}

void qv::crashEnd()
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigaction( SIGABRT, &action, nullptr );
    abort();
}
