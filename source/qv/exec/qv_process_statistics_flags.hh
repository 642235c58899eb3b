#ifndef QV_EXEC_QV_PROCESS_STATISTICS_FLAGS_HH
#define QV_EXEC_QV_PROCESS_STATISTICS_FLAGS_HH

#include <qv/exec/qv_process_statistics_flags.h>

// The names of the flags.
extern QV_FLAGSET *qv___ProcessStatisticsFlagsFlagset;

constexpr QV_PROCESS_STATISTICS_FLAGS qv___PROCESS_STATISTICS_ALL_FLAGS = 2047;

void qv___ProcessStatisticsFlagsStartup();
void qv___ProcessStatisticsFlagsShutdown();

#endif
