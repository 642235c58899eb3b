// A server on the library: it starts the runtime, reads its options from a data file, runs a pipeline of processes, shows
// once a second what they do, and ends at the end of its input or by SIGINT or SIGTERM.
// usage: server OPTIONS

#include "files.hh"
#include "monitor.hh"

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace
{

using server::Owner;

// ---- Signals of the system ----

sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset( &signals );
    sigaddset( &signals, SIGINT );
    sigaddset( &signals, SIGTERM );
    return signals;
}

// Runs on a thread of its own, since a handler could do next to nothing: waits for a signal and stops the server.
void awaitSignal()
{
    Owner self( qvThreadThis() );
    Owner argument( qvThreadUnlatchArgument( self ) );
    sigset_t signals = endingSignals();
    int number;
    sigwait( &signals, &number );
    qvSignalAssert( qvSignalFrom( argument ) );
}

// ---- The server ----

bool serve( const char *optionsFile )
{
    std::optional<server::Options> options = server::readOptions( optionsFile );
    if ( !options )
        return false;
    server::Pipeline pipeline( *options );
    if ( !pipeline.start() )
        return false;
    QV_SIGNAL *stop = pipeline.flow.stop;
    Owner waiter( qvThreadTrySpawn( server::stringOf( "SIGNALS" ), QV_THREAD_PRIORITY_NORMAL, awaitSignal,
                                    qvSignalObj( stop ) ) );
    if ( !waiter )
    {
        server::printError( "server", "can't start a thread" );
        qvSignalAssert( stop );
    }

    server::Monitor monitor( pipeline.flow );
    while ( !qvSignalWaitTimed( stop, 1000 ) )
        monitor.print();
    monitor.print();

    bool good = pipeline.finish() && waiter;
    good = server::writeStatistics( options->statistics ) && good;
    // The thread that waits for signals ends by one; if it has ended already, this one is never delivered.
    kill( getpid(), SIGTERM );
    return good;
}

// ---- The runtime ----

// The runtime prints nothing but what is left of objects at its end.
int linesPrinted = 0;

void printLine( const QV_CHAR *chs, QV_INT chsLength )
{
    linesPrinted++;
    for ( QV_INT idx = 0; idx < chsLength; idx++ )
        std::fputc( chs[idx] < 128 ? static_cast<int>( chs[idx] ) : '?', stderr );
    std::fputc( '\n', stderr );
}

} // namespace

int main( int argc, char **argv )
{
    if ( argc != 2 )
    {
        std::fputs( "usage: server OPTIONS\n", stderr );
        return 2;
    }
    // Before any thread starts, so that each one inherits it.
    sigset_t signals = endingSignals();
    pthread_sigmask( SIG_BLOCK, &signals, nullptr );
    signal( SIGPIPE, SIG_IGN );

    // The lists of all objects cost a lock for each; a server that is sure of itself leaves out the last two flags.
    qvRuntimeStartup( QV_RUNTIME_FLAG_SERVER | QV_RUNTIME_FLAG_OBJECT_DATABASE |
                          QV_RUNTIME_FLAG_SNAPSHOT_SORT,
                      -1, printLine, "server", "Example server", "1.0.0" );
    bool good = serve( argv[1] );
    qvRuntimeShutdown();
    return good && linesPrinted == 0 ? 0 : 1;
}
