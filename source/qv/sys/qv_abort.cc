#include <qv/sys/qv_abort.hh>

#include <execinfo.h>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <qv/sys/qv_abort_report.hh>
#include <qv/sys/qv_abort_watch.hh>

constinit char *qv___AbortFilename = nullptr;

namespace
{

using qv::CrashMode;
using qv::CrashWatch;
using qv::ReportOut;

constexpr int maxFrames = 4000;

// A report on its way. What is done is read by this thread's own signal handlers, hence volatile.
struct Crash : CrashWatch
{
    const char *message;
    const char *file;
    int line;
    const char *expression;
    const siginfo_t *info;

    volatile bool isReportShown;
    volatile bool isFiled;
    volatile bool isStackShown;

    volatile bool areFramesAsked;
    void **volatile frames;
    volatile int framesLength;
    char **volatile symbols;
};

void writeReport( const ReportOut &out, const Crash *crash )
{
    constexpr char stars[] = "  **********************************************************************";
    qv::reportLine( out, "%s\n", stars );
    qv::reportLine( out, "  * ABNORMAL PROGRAM TERMINATION                                       *\n" );
    qv::reportLine( out, "%s\n", stars );
    qv::reportLine( out, "\n" );
    qv::reportIdentity( out );
    qv::reportCause( out, crash->message, crash->file, crash->line, crash->expression );
    if ( crash->info )
        qv::reportSignal( out, crash->info );
}

void writeGap( const ReportOut &out )
{
    qv::reportLine( out, "\n\n\n" );
}

void flush( const ReportOut &out )
{
    if ( out.stream )
    {
        fflush( out.stream );
    }
}

// Once for both places. Nothing is given back: the allocator may be broken, and the process ends. A trace that has faulted
// or hung isn't tried again.
void takeFrames( Crash *crash )
{
    if ( !crash->areFramesAsked )
    {
        crash->areFramesAsked = true;
        crash->framesLength = backtrace( crash->frames, maxFrames );
    }
    if ( crash->mode == CrashMode::whole && !crash->symbols )
        crash->symbols = backtrace_symbols( crash->frames, crash->framesLength );
}

void writeStack( const ReportOut &out, Crash *crash )
{
    takeFrames( crash );
    int length = crash->framesLength;
    if ( length == 0 || ( !crash->symbols && crash->mode == CrashMode::whole ) )
        return;
    qv::reportLine( out, "\n" );
    qv::reportLine( out, "  STACK\n" );
    for ( int idx = 0; idx < length; idx++ )
    {
        if ( crash->symbols )
        {
            qv::reportLine( out, "    %s\n", crash->symbols[idx] );
            continue;
        }
        // The form without an allocation; it adds the line's end.
        qv::reportLine( out, "    " );
        backtrace_symbols_fd( &crash->frames[idx], 1, out.descriptor );
    }
}

void writeFile( Crash *crash )
{
    const char *name = qv___AbortFilename;
    // Appending keeps the lines of two threads apart that crash at once and write to the same file.
    int descriptor = name ? open( name, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666 ) : -1;
    if ( descriptor < 0 )
        return;
    FILE *stream = crash->mode == CrashMode::whole ? fdopen( descriptor, "a" ) : nullptr;
    const ReportOut out = { stream, descriptor };
    writeReport( out, crash );
    flush( out );
    writeStack( out, crash );
    if ( stream )
    {
        fclose( stream );
    }
    else
    {
        close( descriptor );
    }
}

void showReport( const ReportOut &out, Crash *crash )
{
    writeGap( out );
    writeReport( out, crash );
    flush( out );
    crash->isReportShown = true;
}

void fileReport( Crash *crash )
{
    writeFile( crash );
    crash->isFiled = true;
}

void showStack( const ReportOut &out, Crash *crash )
{
    writeStack( out, crash );
    writeGap( out );
    flush( out );
    crash->isStackShown = true;
}

// Apart from the rest, since the frames are large: what can be told without them is out before a stack that is nearly full
// overflows.
[[noreturn, gnu::noinline]] void writeWithFrames( const ReportOut &out, Crash *crash )
{
    void *frames[maxFrames];
    crash->frames = frames;
    fileReport( crash );
    showStack( out, crash );
    qv::crashEnd();
}

[[noreturn]] void writeWhole( Crash *crash )
{
    const ReportOut out = { stderr, STDERR_FILENO };
    fflush( stdout );
    fflush( stderr );
    showReport( out, crash );
    writeWithFrames( out, crash );
}

// What is missing, the file first: standard error may be the pipe that nobody empties.
void writePlain( CrashWatch *watch )
{
    auto *crash = static_cast<Crash *>( watch );
    const ReportOut out = { nullptr, STDERR_FILENO };
    void *frames[maxFrames];
    if ( !crash->areFramesAsked )
        crash->frames = frames;
    if ( !crash->isFiled )
    {
        fileReport( crash );
    }
    if ( !crash->isReportShown )
    {
        showReport( out, crash );
    }
    if ( !crash->isStackShown )
    {
        showStack( out, crash );
    }
    qv::crashEnd();
}

} // namespace

void qv___Abort( const char *message, const char *file, int line, const char *expression )
{
    qv___DoAbort( message, file, line, expression, nullptr );
}

void qv___AbortSignalAction( int, siginfo_t *info, void * )
{
    qv___DoAbort( nullptr, nullptr, 0, nullptr, info );
}

void qv___DoAbort( const char *message, const char *file, int line, const char *expression,
                   const siginfo_t *info )
{
    if ( CrashWatch *before = qv::crashWatchOfThread() )
        qv::crashWatchTrouble( before );
    Crash crash = {};
    crash.carryOn = writePlain;
    crash.message = message;
    crash.file = file;
    crash.line = line;
    crash.expression = expression;
    crash.info = info;
    qv::crashWatchEnter( &crash );
    writeWhole( &crash );
}
