#ifndef QV_IO_QV_NLF_FLAGS_HH
#define QV_IO_QV_NLF_FLAGS_HH

// Recognition of new-lines. A pair of CR and LF is one new-line with QV_NLF_FLAG_CRLF set, whatever the other
// flags say; a CR without LF is one only with QV_NLF_FLAG_CR.

#include <qv/io/qv_nlf_flags.h>

// The names of the flags.
extern QV_FLAGSET *qv___NlfFlagsFlagset;

// The number of code points of the new-line at the start of the range, 0 when none stands there. matchedFlag
// may be null and receives the one flag that matched, or 0.
QV_INT qv___NlfFlagsSkipCharsNlf( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags,
                                  QV_NLF_FLAGS *matchedFlag );

// The number of code points before the first new-line, length when there is none.
QV_INT qv___NlfFlagsSkipCharsNonNlf( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags );

// The same over UTF-8 bytes, counted in bytes.
QV_INT qv___NlfFlagsSkipUtf8BytesNlf( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags,
                                      QV_NLF_FLAGS *matchedFlag );
QV_INT qv___NlfFlagsSkipUtf8BytesNonNlf( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags );

void qv___NlfFlagsStartup();
void qv___NlfFlagsShutdown();

namespace qv
{

// The new-line that qvNlfFlagsNlfString chooses: at most two code points, length 0 for no flag.
struct NlfChars
{
    QV_CHAR chars[2];
    QV_INT length;
};

NlfChars nlfCharsOf( QV_NLF_FLAGS flags );

} // namespace qv

#endif
