#ifndef QV_EXEC_QV_PROCESS_STATISTICS_FLAGS_H
#define QV_EXEC_QV_PROCESS_STATISTICS_FLAGS_H

/* What a query of process statistics reports. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_PROCESS_STATISTICS_FLAGS;
#define QV_PROCESS_STATISTICS_FLAG_FAMILIES                             1 /* without it nothing else counts */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_PAST                           2 /* the processes that have ended */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET               4 /* those that have ended since the reset, */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET_RESET         8 /* which starts anew */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_CREATION         16 /* the sum over the living processes */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET            32   /* the same since their reset, */
#define QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET_RESET      64   /* which starts anew */
#define QV_PROCESS_STATISTICS_FLAG_PROCESSES                            128  /* each living process, */
#define QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION    256  /* since its creation */
#define QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET       512  /* and since its reset, */
#define QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET 1024 /* which starts anew */

QV_BEGIN_DECLS

/* The flags that make sense together: 8 needs 4, 64 needs 32, 256 and 512 need 128, 1024 needs 512, all need 1. */
QV_API QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsFlagsNormalize( QV_PROCESS_STATISTICS_FLAGS flags );

/* The flags named in a text, and the names of flags as a text that the caller owns; both normalize. */
QV_API QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsFlagsFromString( QV_STRING *text );
QV_API QV_STRING *qvProcessStatisticsFlagsToString( QV_PROCESS_STATISTICS_FLAGS flags );

QV_END_DECLS

#endif
