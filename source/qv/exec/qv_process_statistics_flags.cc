#include <qv/exec/qv_process_statistics_flags.hh>

#include <qv/base/qv_flagset.hh>

constinit QV_FLAGSET *qv___ProcessStatisticsFlagsFlagset = nullptr;

namespace
{

#define FLAG_NAME( name )                                                                                    \
    {                                                                                                        \
        QV_PROCESS_STATISTICS_FLAG_##name, "QV_PROCESS_STATISTICS_FLAG_" #name                               \
    }

constexpr qv::EnumName flagNames[] = {
    FLAG_NAME( FAMILIES ),
    FLAG_NAME( GROUP_PAST ),
    FLAG_NAME( GROUP_PAST_SINCE_RESET ),
    FLAG_NAME( GROUP_PAST_SINCE_RESET_RESET ),
    FLAG_NAME( GROUP_CURRENT_SINCE_CREATION ),
    FLAG_NAME( GROUP_CURRENT_SINCE_RESET ),
    FLAG_NAME( GROUP_CURRENT_SINCE_RESET_RESET ),
    FLAG_NAME( PROCESSES ),
    FLAG_NAME( PROCESSES_INTERVAL_SINCE_CREATION ),
    FLAG_NAME( PROCESSES_INTERVAL_SINCE_RESET ),
    FLAG_NAME( PROCESSES_INTERVAL_SINCE_RESET_RESET ),
};

#undef FLAG_NAME

struct Need
{
    QV_PROCESS_STATISTICS_FLAGS flags;
    QV_PROCESS_STATISTICS_FLAGS need;
};

// In this order, so that what falls takes with it what rests on it.
constexpr Need needs[] = {
    { qv___PROCESS_STATISTICS_ALL_FLAGS, QV_PROCESS_STATISTICS_FLAG_FAMILIES },
    { QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET_RESET,
      QV_PROCESS_STATISTICS_FLAG_GROUP_PAST_SINCE_RESET },
    { QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET_RESET,
      QV_PROCESS_STATISTICS_FLAG_GROUP_CURRENT_SINCE_RESET },
    { QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_CREATION |
          QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET,
      QV_PROCESS_STATISTICS_FLAG_PROCESSES },
    { QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET_RESET,
      QV_PROCESS_STATISTICS_FLAG_PROCESSES_INTERVAL_SINCE_RESET },
};

} // namespace

void qv___ProcessStatisticsFlagsStartup()
{
    qv___ProcessStatisticsFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___ProcessStatisticsFlagsShutdown()
{
    qv::retire( &qv___ProcessStatisticsFlagsFlagset );
}

QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsFlagsNormalize( QV_PROCESS_STATISTICS_FLAGS flags )
{
    flags &= qv___PROCESS_STATISTICS_ALL_FLAGS;
    for ( const Need &need : needs )
    {
        if ( !( flags & need.need ) )
            flags &= ~need.flags;
    }
    return flags;
}

QV_PROCESS_STATISTICS_FLAGS qvProcessStatisticsFlagsFromString( QV_STRING *text )
{
    return qvProcessStatisticsFlagsNormalize( qvFlagsetParse( qv___ProcessStatisticsFlagsFlagset, text ) );
}

QV_STRING *qvProcessStatisticsFlagsToString( QV_PROCESS_STATISTICS_FLAGS flags )
{
    return qvFlagsetGenerate( qv___ProcessStatisticsFlagsFlagset,
                              qvProcessStatisticsFlagsNormalize( flags ) );
}
