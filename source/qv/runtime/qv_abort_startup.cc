#include <qv/runtime/qv_abort_startup.hh>

#include <execinfo.h>
#include <pthread.h>
#include <signal.h>

#include <qv/base/qv_random.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_path.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_hardware.hh>
#include <qv/runtime/qv_runtime_os.hh>
#include <qv/runtime/qv_runtime_paths.h>
#include <qv/runtime/qv_runtime_variant.hh>
#include <qv/runtime/qv_version.hh>
#include <qv/sys/qv_abort.hh>
#include <qv/sys/qv_abort_report.hh>
#include <qv/sys/qv_mem.h>
#include <qv/sys/qv_signal_stack.hh>

namespace
{

constexpr int fatalSignals[] = { SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV };

constinit qv::SignalStack startingStack = {};
constinit pthread_t startingThread = {};

// Null if there is no folder for crash files, or its name can't be written down for the platform.
char *newFilename()
{
    qv::Local<QV_RUNTIME_PATHS> paths( qvRuntimePaths() );
    qv::Local<QV_PATH> path( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_DATA_ABORT ) );
    if ( !path )
        return nullptr;
    qv::Local<QV_STRING> name( qvStringCreateFromFormatCstr(
        "%~s-%~s-%~s-%~s-%0!16i.txt", -1, qvRuntimeVersionProductName(), qvRuntimeVersionProductVersion(),
        qvRuntimeOsToIdentifier( qvRuntimeOs() ), qvRuntimeHardwareToIdentifier( qvRuntimeHardware() ),
        qvRandomNonNegativeInt() ) );
    qvPathAppendComponentFilename( path.edit(), name );
    qv::Local<QV_STRING> text( qvPathUnixTryEncode( path ) );
    return text ? qvStringConvertToCstr( text, QV_TRUE, nullptr ) : nullptr;
}

void installHandlers()
{
    struct sigaction sigact = {};
    sigact.sa_sigaction = qv___AbortSignalAction;
    // The handler runs where a full stack doesn't stop it.
    sigact.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset( &sigact.sa_mask );
    for ( int signum : fatalSignals )
    {
        QV_CHECK( 0 == sigaction( signum, &sigact, NULL ) );
    }
}

// The first backtrace loads a library; that is nothing for a process that crashes.
void loadUnwinder()
{
    void *frame = nullptr;
    backtrace( &frame, 1 );
}

} // namespace

void qv___AbortStartup()
{
    loadUnwinder();
    qv___AbortFilename = newFilename();
    if ( !( qvRuntimeFlags() & QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS ) )
    {
        startingThread = pthread_self();
        qv::signalStackEnter( &startingStack );
        installHandlers();
    }
}

void qv___AbortShutdown()
{
    struct sigaction sigact = {};
    sigact.sa_handler = SIG_DFL;
    sigemptyset( &sigact.sa_mask );
    for ( int signum : fatalSignals )
    {
        QV_CHECK( 0 == sigaction( signum, &sigact, NULL ) );
    }
    if ( pthread_equal( startingThread, pthread_self() ) )
        qv::signalStackLeave( &startingStack );
    qvMemFree( qv___AbortFilename );
    qv___AbortFilename = nullptr;
}

void qv::reportIdentity( const ReportOut &out )
{
    reportLine( out, "  PRODUCT\n" );
    reportLine( out, "    Name      : %s\n", qv___RuntimeVersionProductNameCstr() );
    reportLine( out, "    Friendly  : %s\n", qv___RuntimeVersionProductFriendlyNameCstr() );
    reportLine( out, "    Version   : %d.%d.%d\n", static_cast<int>( qvRuntimeVersionProductVersionMajor() ),
                static_cast<int>( qvRuntimeVersionProductVersionMinor() ),
                static_cast<int>( qvRuntimeVersionProductVersionRelease() ) );
    reportLine( out, "    OS        : %s\n", qv___RuntimeOsFriendlyNameCstr( qvRuntimeOs() ) );
    reportLine( out, "    Hardware  : %s\n", qv___RuntimeHardwareFriendlyNameCstr( qvRuntimeHardware() ) );
    reportLine( out, "    Variant   : %s\n", qv___RuntimeVariantFriendlyNameCstr( qvRuntimeVariant() ) );
    reportLine( out, "    Build Time: %s\n", qv___RuntimeVersionProductBuildTimeCstr() );
    const char *identifier = qv___RuntimeVersionApplicationIdentifierCstr();
    const char *friendlyName = qv___RuntimeVersionApplicationFriendlyNameCstr();
    const char *version = qv___RuntimeVersionApplicationVersionCstr();
    if ( !identifier && !friendlyName && !version )
        return;
    reportLine( out, "\n" );
    reportLine( out, "  APPLICATION\n" );
    reportLine( out, "    Identifier: %s\n", identifier ? identifier : "" );
    reportLine( out, "    Friendly  : %s\n", friendlyName ? friendlyName : "" );
    reportLine( out, "    Version   : %s\n", version ? version : "" );
}
