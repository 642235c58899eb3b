// The crash report: its text for each cause, its file, and that the process ends in time whatever is broken.

#include "support/test.hh"
#include "heap.hh"
#include "support/child.hh"
#include "support/folder.hh"

#include <qv/runtime/qv_runtime_hardware.hh>
#include <qv/runtime/qv_runtime_os.hh>
#include <qv/runtime/qv_runtime_variant.hh>
#include <qv/runtime/qv_version.hh>
#include <qv/sys/qv_abort.hh>
#include <qv/sys/qv_abort_report.hh>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <regex>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using namespace test;

#if QV_TEST_OWN_HEAP
constexpr bool sanitized = false;
#else
constexpr bool sanitized = true;
#endif

// Thread sanitizer puts signals off and tells of what handlers call, in between the report's lines.
#ifdef __SANITIZE_THREAD__
#define QV_TEST_SKIP_SIGNALS() GTEST_SKIP()
#else
#define QV_TEST_SKIP_SIGNALS() (void)0
#endif

// ---- Children that crash ----

struct Crash
{
    std::string name;
    void ( *crash )();
    std::string cause; // a pattern: the sections between APPLICATION and STACK
    QV_INT flags = 0;
};

struct Ending
{
    int status = 0;
    double seconds = 0;             // from the crash to the end
    std::string shown;              // on standard error
    std::vector<std::string> names; // of crash files
    std::string filed;              // in the first one
};

std::string nameIn( const TemporaryFolder &folder, const Crash &crash, const char *what )
{
    return folder.name( crash.name + what );
}

double now()
{
    return std::chrono::duration<double>( std::chrono::steady_clock::now().time_since_epoch() ).count();
}

// Tells when it crashes, which on a busy machine may be long after its start.
[[noreturn]] void crashHere( const TemporaryFolder &folder, const Crash &crash, double *start )
{
    struct rlimit noCore = {};
    setrlimit( RLIMIT_CORE, &noCore );
    int descriptor = open( nameIn( folder, crash, ".err" ).c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666 );
    dup2( descriptor, STDERR_FILENO );
    close( descriptor );
    setenv( "HOME", folder.name().c_str(), 1 );
    setenv( "JN_QV_ABORT_PATH", nameIn( folder, crash, "" ).c_str(), 1 );
    qvRuntimeStartup( crash.flags, -1, nullptr, "abort_test", "Abort test", "2.5" );
    *start = now();
    crash.crash();
    _exit( 0 );
}

Ending endingOf( const TemporaryFolder &folder, const Crash &crash )
{
    Ending ending;
    ending.shown = folder.read( crash.name + ".err" );
    for ( const auto &entry : std::filesystem::directory_iterator( nameIn( folder, crash, "" ) ) )
    {
        ending.names.push_back( entry.path().filename() );
        ending.filed = folder.read( crash.name + "/" + ending.names.front() );
    }
    return ending;
}

// All at once, since those that hang take their seconds. A child that doesn't end is killed.
std::vector<Ending> crashAll( const std::vector<Crash> &crashes )
{
    TemporaryFolder folder;
    std::vector<pid_t> children;
    const double begin = now();
    auto *starts = static_cast<double *>( mmap( nullptr, crashes.size() * sizeof( double ),
                                                PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0 ) );
    qvRuntimeShutdown();
    for ( const Crash &crash : crashes )
    {
        folder.makeFolder( crash.name );
        children.push_back( fork() );
        if ( children.back() == 0 )
            crashHere( folder, crash, starts + children.size() - 1 );
    }
    startRuntime();
    std::vector<int> statuses( crashes.size() );
    std::vector<double> times( crashes.size() );
    for ( size_t left = crashes.size(); left > 0; usleep( 5000 ) )
        for ( size_t idx = 0; idx < crashes.size(); idx++ )
        {
            if ( times[idx] == 0 && now() > begin + 60 )
                kill( children[idx], SIGKILL );
            if ( times[idx] == 0 && waitpid( children[idx], &statuses[idx], WNOHANG ) == children[idx] )
            {
                times[idx] = now() - starts[idx];
                left--;
            }
        }
    std::vector<Ending> endings;
    for ( size_t idx = 0; idx < crashes.size(); idx++ )
    {
        endings.push_back( endingOf( folder, crashes[idx] ) );
        endings.back().status = statuses[idx];
        endings.back().seconds = times[idx];
    }
    munmap( starts, crashes.size() * sizeof( double ) );
    return endings;
}

// ---- What a report looks like ----

std::string escaped( const std::string &text )
{
    return std::regex_replace( text, std::regex( R"([.*+?^${}()|\[\]\\])" ), R"(\$&)" );
}

std::string headPattern()
{
    const std::string stars = "  " + std::string( 70, '*' ) + "\n";
    const std::string version = takeUtf8( qvRuntimeVersionProductVersion() );
    return escaped(
        stars + "  * ABNORMAL PROGRAM TERMINATION                                       *\n" + stars +
        "\n  PRODUCT\n    Name      : " + qv___RuntimeVersionProductNameCstr() +
        "\n    Friendly  : " + qv___RuntimeVersionProductFriendlyNameCstr() + "\n    Version   : " + version +
        "\n    OS        : " + qv___RuntimeOsFriendlyNameCstr( qvRuntimeOs() ) +
        "\n    Hardware  : " + qv___RuntimeHardwareFriendlyNameCstr( qvRuntimeHardware() ) +
        "\n    Variant   : " + qv___RuntimeVariantFriendlyNameCstr( qvRuntimeVariant() ) +
        "\n    Build Time: " + qv___RuntimeVersionProductBuildTimeCstr() +
        "\n\n  APPLICATION\n    Identifier: abort_test\n    Friendly  : Abort test\n    Version   : 2.5\n" );
}

// Behind the report: nothing but the stack.
bool isStack( const std::string &rest )
{
    std::istringstream lines( rest );
    std::string line;
    std::getline( lines, line );
    bool good = line.empty() && std::getline( lines, line ) && line == "  STACK";
    size_t count = 0;
    for ( ; std::getline( lines, line ); count++ )
        good = good && line.starts_with( "    " ) && line.ends_with( "]" ) &&
               line.find( "[0x" ) != std::string::npos;
    return good && count > 3 && count <= 4000;
}

void expectReport( const std::string &shown, const Crash &crash )
{
    std::smatch match;
    EXPECT_TRUE( std::regex_search( shown, match, std::regex( "^" + headPattern() + crash.cause ) ) &&
                 isStack( shown.substr( static_cast<size_t>( match.length() ) ) ) )
        << crash.name << "\n"
        << shown.substr( 0, 3000 );
}

std::string withoutGaps( const std::string &shown )
{
    const std::string gap = "\n\n\n";
    bool hasGaps = shown.size() > 6 && shown.starts_with( gap ) && shown.ends_with( gap );
    EXPECT_TRUE( hasGaps ) << shown.substr( 0, 2000 );
    return hasGaps ? shown.substr( 3, shown.size() - 6 ) : shown;
}

void expectAborted( const Ending &ending, const Crash &crash )
{
    EXPECT_TRUE( WIFSIGNALED( ending.status ) && WTERMSIG( ending.status ) == SIGABRT )
        << crash.name << " ended with status " << ending.status;
}

// ---- Causes ----

std::string signalSection( const std::string &signal, const std::string &code, const std::string &sender,
                           const std::string &address )
{
    return escaped( "\n  SIGNAL\n    Signal    : " + signal + "\n    Code      : " + code +
                    "\n    Sender    : " + sender + "\n" ) +
           ( address.empty() ? "" : "    Address   : " + address + "\n" );
}

// The sanitizers would tell of these faults before the processor does.
#define QV_TEST_FAULTS __attribute__( ( no_sanitize( "undefined", "address" ) ) )

QV_TEST_FAULTS void writeAt( uintptr_t address )
{
    *reinterpret_cast<volatile int *>( address ) = 1;
}

QV_TEST_FAULTS void divideByZero()
{
    volatile int zero = 0;
    volatile int result = 7 / zero;
    (void)result;
}

void writeToConstantPage()
{
    writeAt(
        reinterpret_cast<uintptr_t>( mmap( nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 ) ) );
}

void writeBehindFile()
{
    int file = fileno( tmpfile() );
    writeAt(
        reinterpret_cast<uintptr_t>( mmap( nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0 ) ) );
}

// Any thread may take a signal that is sent to the process, so that the sender goes on for a moment.
void queueSegv()
{
    sigqueue( getpid(), SIGSEGV, {} );
    pause();
}

void killAbort()
{
    kill( getpid(), SIGABRT );
    pause();
}

TEST( CrashReport, LineByLine )
{
    QV_TEST_SKIP_SIGNALS();
    const std::string anyAddress = "0x[0-9a-f]+";
    const std::vector<Crash> crashes = {
        { "all", [] { qv___Abort( "a message", "file.cc", 12, "x == 1" ); },
          "\n  ABORT\n    Message   : a message\n    File      : file.cc\n    Line      : 12\n    "
          "Expression: x == 1\n" },
        { "no_message", [] { qv___Abort( nullptr, "file.cc", 12, "x == 1" ); },
          "\n  ABORT\n    File      : file.cc\n    Line      : 12\n    Expression: x == 1\n" },
        { "message", [] { qv___Abort( "100% bad", nullptr, 12, nullptr ); },
          "\n  ABORT\n    Message   : 100% bad\n" },
        { "expression", [] { qv___Abort( nullptr, nullptr, 12, "x" ); }, "\n  ABORT\n    Expression: x\n" },
        { "nothing", [] { qv___Abort( nullptr, nullptr, 12, nullptr ); }, "" },
        { "null", [] { writeAt( 16 ); },
          signalSection( "11 (SIGSEGV, invalid memory reference)",
                         "1 (SEGV_MAPERR, address not mapped to object)", "kernel", "0x10" ) },
        { "constant", writeToConstantPage,
          signalSection( "11 (SIGSEGV, invalid memory reference)",
                         "2 (SEGV_ACCERR, invalid permissions for mapped object)", "kernel", anyAddress ) },
        { "sent", queueSegv,
          signalSection( "11 (SIGSEGV, invalid memory reference)", "-1 (SI_QUEUE, sigqueue)", "user",
                         anyAddress ) },
        { "behind", writeBehindFile,
          signalSection( "7 (SIGBUS, bad memory access)", "2 (BUS_ADRERR, non-existent physical address)",
                         "kernel", anyAddress ) },
        { "divide", divideByZero,
          signalSection( "8 (SIGFPE, floating-point exception)", "1 (FPE_INTDIV, integer divide by zero)",
                         "kernel", anyAddress ) },
        { "trap", [] { __builtin_trap(); },
          signalSection( "4 (SIGILL, illegal instruction)", "2 (ILL_ILLOPN, illegal operand)", "kernel",
                         anyAddress ) },
        { "abort", [] { abort(); },
          signalSection( "6 (SIGABRT, abort signal)", "-6 (SI_TKILL, tkill system call)", "user", "" ) },
        { "kill", killAbort,
          signalSection( "6 (SIGABRT, abort signal)", "0 (SI_USER, kill, sigsend, raise)", "user", "" ) },
    };
    std::vector<Ending> endings = crashAll( crashes );
    const std::regex name( "qv-[0-9]+\\.[0-9]+\\.[0-9]+-[a-z0-9]+-[a-z0-9]+-[0-9a-f]{8,16}\\.txt" );
    for ( size_t idx = 0; idx < crashes.size(); idx++ )
    {
        const Ending &ending = endings[idx];
        expectAborted( ending, crashes[idx] );
        std::string shown = withoutGaps( ending.shown );
        expectReport( shown, crashes[idx] );
        EXPECT_EQ( shown, ending.filed ) << crashes[idx].name;
        ASSERT_EQ( 1u, ending.names.size() ) << crashes[idx].name;
        EXPECT_TRUE( std::regex_match( ending.names[0], name ) ) << ending.names[0];
        EXPECT_NE( ending.names[0], endings[idx ? 0 : 1].names[0] );
    }
}

TEST( CrashReport, TextsOfCodes )
{
    const struct
    {
        int signum, code;
        const char *text;
    } rows[] = {
        { SIGBUS, 5,
          "5 (BUS_MCEERR_AO, hardware memory error detected in process but not consumed: action optional)" },
        { SIGFPE, 8, "8 (FPE_FLTSUB, subscript out of range)" },
        { SIGILL, 8, "8 (ILL_BADSTK, internal stack error)" },
        { SIGSEGV, 4, "4 (SEGV_PKUERR, failed protection key checks)" },
        { SIGSEGV, 5, "5" },
        { SIGSEGV, 128, "128 (SI_KERNEL, kernel from somewhere)" },
        { SIGABRT, 1, "1" },
        { SIGABRT, -7, "-7 (SI_DETHREAD, execve() killing subsidiary threads)" },
        { SIGABRT, -8, "-8" },
    };
    for ( const auto &row : rows )
    {
        char *shown = nullptr;
        size_t length = 0;
        qv::ReportOut out = { open_memstream( &shown, &length ), -1 };
        siginfo_t info = {};
        info.si_signo = row.signum;
        info.si_code = row.code;
        qv::reportSignal( out, &info );
        fclose( out.stream );
        EXPECT_NE( nullptr,
                   strstr( shown, ( std::string( "\n    Code      : " ) + row.text + "\n" ).c_str() ) )
            << shown;
        free( shown );
    }
}

TEST( CrashReport, FollowsTheFlags )
{
    QV_TEST_SKIP_SIGNALS();
    const QV_INT minimal = QV_RUNTIME_FLAG_MINIMAL, bare = QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS;
    auto fault = [] { writeAt( 16 ); };
    auto check = [] { qv___Abort( nullptr, nullptr, 0, "x" ); };
    const std::string checkSection = "\n  ABORT\n    Expression: x\n";
    const std::vector<Crash> crashes = {
        { "minimal", fault,
          signalSection( "11 (SIGSEGV, invalid memory reference)",
                         "1 (SEGV_MAPERR, address not mapped to object)", "kernel", "0x10" ),
          minimal },
        { "bare_check", check, checkSection, bare },
        { "bare_fault", fault, "", bare },
        { "ended",
          [] {
              qvRuntimeShutdown();
              writeAt( 16 );
          },
          "" },
    };
    std::vector<Ending> endings = crashAll( crashes );
    expectAborted( endings[0], crashes[0] );
    expectReport( withoutGaps( endings[0].shown ), crashes[0] );
    EXPECT_TRUE( endings[0].names.empty() );
    expectAborted( endings[1], crashes[1] );
    expectReport( endings[1].filed, crashes[1] );
    if ( sanitized )
        return;
    for ( size_t idx : { 2, 3 } )
    {
        EXPECT_TRUE( WIFSIGNALED( endings[idx].status ) && WTERMSIG( endings[idx].status ) == SIGSEGV );
        EXPECT_EQ( "", endings[idx].shown + endings[idx].filed ) << crashes[idx].name;
    }
}

// ---- Whatever is broken ----

QV_TEST_FAULTS int recurse( volatile char *before )
{
    volatile char more[500];
    more[0] = *before;
    return *before == 0 ? recurse( more ) + more[0] : 0;
}

void fillStack()
{
    char first = 0;
    recurse( &first );
}

void fillStackOfThread()
{
    QV_THREAD *thread = qvThreadTrySpawn( text( "FILL" ), QV_THREAD_PRIORITY_NORMAL, fillStack, nullptr );
    qvThreadJoin( thread );
}

void closeErrorAndCrash()
{
    close( STDERR_FILENO );
    writeAt( 16 );
}

void crashWithErrorTo( int descriptor )
{
    dup2( descriptor, STDERR_FILENO );
    writeAt( 16 );
}

void breakPipe()
{
    int ends[2] = { -1, -1 };
    EXPECT_EQ( 0, pipe( ends ) );
    close( ends[0] );
    crashWithErrorTo( ends[1] );
}

void fillPipe()
{
    int ends[2] = { -1, -1 };
    EXPECT_EQ( 0, pipe( ends ) );
    fcntl( ends[1], F_SETFL, O_NONBLOCK );
    const std::string block( 4096, 'x' );
    while ( write( ends[1], block.data(), block.size() ) > 0 )
    {
    }
    fcntl( ends[1], F_SETFL, 0 );
    crashWithErrorTo( ends[1] );
}

void fillDisk()
{
    struct rlimit limit = { 400, 400 };
    setrlimit( RLIMIT_FSIZE, &limit );
    crashWithErrorTo( open( "/dev/full", O_WRONLY ) );
}

void crashInEightThreads()
{
    static std::atomic<int> ready = 0;
    std::vector<std::thread> threads;
    for ( int idx = 0; idx < 8; idx++ )
    {
        threads.emplace_back( [] {
            for ( ready++; ready < 8; )
            {
            }
            writeAt( 16 );
        } );
    }
    pause();
}

void holdStreamAndCrash()
{
    std::thread( [] {
        flockfile( stderr );
        flockfile( stdout );
        std::thread( [] { writeAt( 16 ); } ).detach();
        pause();
    } ).join();
}

template <HeapFault FAULT> void crashInHeap()
{
    breakHeap( FAULT );
    if ( FAULT == HeapFault::hangs )
        writeAt( 16 );
    free( malloc( 10 ) );
}

TEST( CrashReport, EndsInTimeWhateverIsBroken )
{
    QV_TEST_SKIP_SIGNALS();
    enum Proof
    {
        ends,  // with the right signal
        files, // and a whole report in the file
        shows, // and on standard error
    };
    struct Row
    {
        Crash crash;
        Proof proof;
    };
    std::vector<Row> rows = {
        { { "stack", fillStack, "" }, shows },
        { { "stack_of_thread", fillStackOfThread, "" }, shows },
        { { "closed_error", closeErrorAndCrash, "" }, files },
        { { "broken_pipe", breakPipe, "" }, files },
        { { "full_pipe", fillPipe, "" }, files },
        { { "full_disk", fillDisk, "" }, ends },
        { { "eight_threads", crashInEightThreads, "" }, ends },
        { { "locked_streams", holdStreamAndCrash, "" }, shows },
    };
    if ( !sanitized )
    {
        rows.push_back( { { "heap_hangs", crashInHeap<HeapFault::hangs>, "" }, shows } );
        rows.push_back( { { "heap_faults", crashInHeap<HeapFault::faultsThenHangs>, "" }, shows } );
        rows.push_back( { { "heap_faults_again", crashInHeap<HeapFault::faultsEveryTime>, "" }, shows } );
    }
    std::vector<Crash> crashes;
    for ( const Row &row : rows )
        crashes.push_back( row.crash );
    std::vector<Ending> endings = crashAll( crashes );
    for ( size_t idx = 0; idx < rows.size(); idx++ )
    {
        Crash crash = crashes[idx];
        crash.cause = "\n  SIGNAL\n    Signal    : 11 .*\n(    .*\n)*";
        expectAborted( endings[idx], crash );
        EXPECT_GT( sanitized ? 10 : 5, endings[idx].seconds ) << crash.name;
        if ( rows[idx].proof >= files )
            expectReport( endings[idx].filed, crash );
        if ( rows[idx].proof == shows )
            expectReport( withoutGaps( endings[idx].shown ), crash );
    }
}

} // namespace
