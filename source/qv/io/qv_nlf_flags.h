#ifndef QV_IO_QV_NLF_FLAGS_H
#define QV_IO_QV_NLF_FLAGS_H

/* New-line forms: which characters end a line. */

#include <qv/runtime/qv_handles.h>

/* A set of new-line forms; only the lowest eight bits count. */
typedef QV_INT QV_NLF_FLAGS;
#define QV_NLF_FLAG_LF   1   /* U+000A */
#define QV_NLF_FLAG_CR   2   /* U+000D */
#define QV_NLF_FLAG_CRLF 4   /* U+000D U+000A, before all others */
#define QV_NLF_FLAG_NEL  8   /* U+0085 */
#define QV_NLF_FLAG_VT   16  /* U+000B */
#define QV_NLF_FLAG_FF   32  /* U+000C */
#define QV_NLF_FLAG_LS   64  /* U+2028 */
#define QV_NLF_FLAG_PS   128 /* U+2029 */

QV_BEGIN_DECLS

/* The flags without the bits that have no meaning. */
QV_API QV_NLF_FLAGS qvNlfFlagsNormalize( QV_NLF_FLAGS flags );

/* The flags whose names the text lists, normalized; names that aren't known are skipped. */
QV_API QV_NLF_FLAGS qvNlfFlagsFromString( QV_STRING *text );

/* The names of the normalized flags, owned by the caller. */
QV_API QV_STRING *qvNlfFlagsToString( QV_NLF_FLAGS flags );

/* The new-line to write, owned by the caller: that of the first flag set in the order LF, CR, CRLF, NEL, VT,
 * FF, LS, PS; the empty string if none is set. */
QV_API QV_STRING *qvNlfFlagsNlfString( QV_NLF_FLAGS flags );

QV_END_DECLS

#endif
