#ifndef QV_SYS_QV_ABORT_REPORT_HH
#define QV_SYS_QV_ABORT_REPORT_HH

// The parts of a crash report that need nothing but the platform.

#include <signal.h>
#include <stdio.h>

namespace qv
{

// Where a report goes: a stream, or, if that is null, a descriptor. By the descriptor no lock is taken and no memory is
// asked for, which works while the platform's streams or its allocator are what is broken.
struct ReportOut
{
    FILE *stream;
    int descriptor;
};

// By a descriptor a line is cut to 4 KiB; no line of a report but one with a long message comes near that.
[[gnu::format( printf, 2, 3 )]] void reportLine( const ReportOut &out, const char *format, ... );

// The section ABORT, if there is anything to say in it; message, file and expression may each be null.
void reportCause( const ReportOut &out, const char *message, const char *file, int line,
                  const char *expression );

// The section SIGNAL.
void reportSignal( const ReportOut &out, const siginfo_t *info );

} // namespace qv

#endif
