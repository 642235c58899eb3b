#ifndef QV_BASE_QV_OPT_FLAGS_H
#define QV_BASE_QV_OPT_FLAGS_H

/* What a command-line option may do. */

#include <qv/runtime/qv_handles.h>

/* A set of option flags. */
typedef QV_INT QV_OPT_FLAGS;
#define QV_OPT_FLAG_ARGUMENT  1 /* the option takes an argument */
#define QV_OPT_FLAG_IGNORE    2 /* the option is consumed and not reported */
#define QV_OPT_FLAG_ONCE      4 /* the option may occur once */
#define QV_OPT_FLAG_NO_ABBREV 8 /* the long option must not be abbreviated */

QV_BEGIN_DECLS

/* The names of the flags without their prefix, such as "ARGUMENT|ONCE", owned by the caller; empty for 0. Bits
 * without a meaning are skipped. */
QV_API QV_STRING *qvOptFlagsToString( QV_OPT_FLAGS flags );

QV_END_DECLS

#endif
