#ifndef QV_EXEC_QV_PROCESS_STATISTICS_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_HH

#include <qv/exec/qv_process_statistics.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: identifier and domainName aren't null; the two optional timestamps are -1 if absent, no number is smaller.
struct qv___ProcessStatistics : qv___Obj
{
    QV_IDENTIFIER *identifier;
    QV_STRING *domainName;
    QV_INT threadHint;
    QV_INT captureTimestamp;
    QV_INT creationTimestamp;
    QV_INT scheduledSinceTimestamp;
    QV_INT executingSinceTimestamp;
    QV_PROCESS_STATISTICS_INTERVAL *intervalSinceCreation; // may be null
    QV_PROCESS_STATISTICS_INTERVAL *intervalSinceReset;    // may be null
};

// Remove an interval.
void qv___ProcessStatisticsDelIntervalSinceCreation( QV_PROCESS_STATISTICS **statistics );
void qv___ProcessStatisticsDelIntervalSinceReset( QV_PROCESS_STATISTICS **statistics );

#endif
