#include <qv/sys/qv_abort_report.hh>

#include <errno.h>
#include <stdarg.h>
#include <string.h>
#include <unistd.h>

#include <qv/sys/qv_types.h>

namespace
{

struct SignalText
{
    int signum;
    const char *text;
    bool hasAddress;
};
constexpr SignalText signalTexts[] = {
    { SIGILL, " (SIGILL, illegal instruction)", true },
    { SIGABRT, " (SIGABRT, abort signal)", false },
    { SIGBUS, " (SIGBUS, bad memory access)", true },
    { SIGFPE, " (SIGFPE, floating-point exception)", true },
    { SIGSEGV, " (SIGSEGV, invalid memory reference)", true },
};

constexpr int anySignal = 0;

struct CodeText
{
    int signum;
    int code;
    const char *text;
};
constexpr CodeText codeTexts[] = {
    { anySignal, 128, " (SI_KERNEL, kernel from somewhere)" },
    { anySignal, 0, " (SI_USER, kill, sigsend, raise)" },
    { anySignal, -1, " (SI_QUEUE, sigqueue)" },
    { anySignal, -2, " (SI_TIMER, timer expiration)" },
    { anySignal, -3, " (SI_MESGQ, real time mesq state change)" },
    { anySignal, -4, " (SI_ASYNCIO, AIO completion)" },
    { anySignal, -5, " (SI_SIGIO, queued SIGIO)" },
    { anySignal, -6, " (SI_TKILL, tkill system call)" },
    { anySignal, -7, " (SI_DETHREAD, execve() killing subsidiary threads)" },
    { SIGBUS, 1, " (BUS_ADRALN, invalid address alignment)" },
    { SIGBUS, 2, " (BUS_ADRERR, non-existent physical address)" },
    { SIGBUS, 3, " (BUS_OBJERR, object specific hardware error)" },
    { SIGBUS, 4, " (BUS_MCEERR_AR, hardware memory error consumed on a machine check: action required)" },
    { SIGBUS, 5,
      " (BUS_MCEERR_AO, hardware memory error detected in process but not consumed: action optional)" },
    { SIGFPE, 1, " (FPE_INTDIV, integer divide by zero)" },
    { SIGFPE, 2, " (FPE_INTOVF, integer overflow)" },
    { SIGFPE, 3, " (FPE_FLTDIV, floating point divide by zero)" },
    { SIGFPE, 4, " (FPE_FLTOVF, floating point overflow)" },
    { SIGFPE, 5, " (FPE_FLTUND, floating point underflow)" },
    { SIGFPE, 6, " (FPE_FLTRES, floating point inexact result)" },
    { SIGFPE, 7, " (FPE_FLTINV, floating point invalid operation)" },
    { SIGFPE, 8, " (FPE_FLTSUB, subscript out of range)" },
    { SIGILL, 1, " (ILL_ILLOPC, illegal opcode)" },
    { SIGILL, 2, " (ILL_ILLOPN, illegal operand)" },
    { SIGILL, 3, " (ILL_ILLADR, illegal addressing mode)" },
    { SIGILL, 4, " (ILL_ILLTRP, illegal trap)" },
    { SIGILL, 5, " (ILL_PRVOPC, privileged opcode)" },
    { SIGILL, 6, " (ILL_PRVREG, privileged register)" },
    { SIGILL, 7, " (ILL_COPROC, coprocessor error)" },
    { SIGILL, 8, " (ILL_BADSTK, internal stack error)" },
    { SIGSEGV, 1, " (SEGV_MAPERR, address not mapped to object)" },
    { SIGSEGV, 2, " (SEGV_ACCERR, invalid permissions for mapped object)" },
    { SIGSEGV, 3, " (SEGV_BNDERR, failed address bound checks)" },
    { SIGSEGV, 4, " (SEGV_PKUERR, failed protection key checks)" },
};

constexpr SignalText unknownSignal = { 0, "", false };

const SignalText &signalText( int signum )
{
    for ( const SignalText &row : signalTexts )
    {
        if ( row.signum == signum )
            return row;
    }
    return unknownSignal;
}

const char *codeText( int signum, int code )
{
    for ( const CodeText &row : codeTexts )
    {
        if ( ( row.signum == anySignal || row.signum == signum ) && row.code == code )
            return row.text;
    }
    return "";
}

// What can't be written is dropped: there is nobody left to tell.
void writeAll( int descriptor, const char *bytes, size_t length )
{
    while ( length > 0 )
    {
        ssize_t written = write( descriptor, bytes, length );
        if ( written < 0 && errno == EINTR )
            continue;
        if ( written <= 0 )
            return;
        bytes += written;
        length -= static_cast<size_t>( written );
    }
}

void writeFormatted( int descriptor, const char *format, va_list args )
{
    char text[4096];
    int needed = vsnprintf( text, sizeof( text ), format, args );
    if ( needed < 0 )
        return;
    size_t length = static_cast<size_t>( needed );
    if ( length >= sizeof( text ) )
    {
        length = sizeof( text ) - 1;
        text[length - 1] = '\n';
    }
    writeAll( descriptor, text, length );
}

} // namespace

void qv::reportLine( const ReportOut &out, const char *format, ... )
{
    va_list args;
    va_start( args, format );
    if ( out.stream )
    {
        vfprintf( out.stream, format, args );
    }
    else
    {
        writeFormatted( out.descriptor, format, args );
    }
    va_end( args );
}

void qv::reportCause( const ReportOut &out, const char *message, const char *file, int line,
                      const char *expression )
{
    if ( !message && !file && !expression )
        return;
    reportLine( out, "\n" );
    reportLine( out, "  ABORT\n" );
    if ( message )
    {
        reportLine( out, "    Message   : %s\n", message );
    }
    if ( file )
    {
        reportLine( out, "    File      : %s\n", file );
        reportLine( out, "    Line      : %d\n", line );
    }
    if ( expression )
    {
        reportLine( out, "    Expression: %s\n", expression );
    }
}

void qv::reportSignal( const ReportOut &out, const siginfo_t *info )
{
    const SignalText &known = signalText( info->si_signo );
    reportLine( out, "\n" );
    reportLine( out, "  SIGNAL\n" );
    reportLine( out, "    Signal    : %d%s\n", info->si_signo, known.text );
    reportLine( out, "    Code      : %d%s\n", info->si_code, codeText( info->si_signo, info->si_code ) );
    reportLine( out, "    Sender    : %s\n", info->si_code > 0 ? "kernel" : "user" );
    if ( known.hasAddress )
    {
        reportLine( out, "    Address   : %p\n", info->si_addr );
    }
}
