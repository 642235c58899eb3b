#ifndef QV_RUNTIME_QV_RUNTIME_INFO_HH
#define QV_RUNTIME_QV_RUNTIME_INFO_HH

#include <qv/runtime/qv_runtime_info.h>

void qv___RuntimeComputerNameStartup();
void qv___RuntimeComputerNameShutdown();

void qv___RuntimeComputerInfoStartup();
void qv___RuntimeComputerInfoShutdown();

void qv___RuntimeUserInformationStartup();
void qv___RuntimeUserInformationShutdown();

namespace qv
{

// The text about the processor for the lines of the system's processor table and its count of cores, 0 or less if unknown.
QV_STRING *cpuInfoOfLines( QV_VECTOR *lines, QV_INT coresCount );

} // namespace qv

#endif
