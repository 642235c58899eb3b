#ifndef QV_EXEC_QV_PROCESS_COUNTS_HH
#define QV_EXEC_QV_PROCESS_COUNTS_HH

// The counters of a process that keeps statistics. Durations are in milliseconds.

#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_int.h>

struct qv___ExecProcessStats
{
    QV_INT executions;
    QV_INT latencyTotal;
    QV_INT latencyMax;
    QV_INT runtimeTotal;
    QV_INT runtimeMax;
};

inline void qv___ExecProcessStatsReset( qv___ExecProcessStats *stats )
{
    QV_CHECK( stats );
    *stats = {};
}

// Adds the counts of source, and raises the maxima to its.
inline void qv___ExecProcessStatsAccumulate( qv___ExecProcessStats *stats,
                                             const qv___ExecProcessStats *source )
{
    QV_CHECK( stats );
    QV_CHECK( source );
    stats->executions = qvIntAddSaturating( stats->executions, source->executions );
    stats->latencyTotal = qvIntAddSaturating( stats->latencyTotal, source->latencyTotal );
    stats->latencyMax = qvIntMax( stats->latencyMax, source->latencyMax );
    stats->runtimeTotal = qvIntAddSaturating( stats->runtimeTotal, source->runtimeTotal );
    stats->runtimeMax = qvIntMax( stats->runtimeMax, source->runtimeMax );
}

// Counts one run.
inline void qv___ExecProcessStatsUpdate( qv___ExecProcessStats *stats, QV_INT latency, QV_INT runtime )
{
    const qv___ExecProcessStats run = { 1, latency, latency, runtime, runtime };
    qv___ExecProcessStatsAccumulate( stats, &run );
}

#endif
