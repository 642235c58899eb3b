#ifndef QV_BASE_QV_TIMEZONE_HH
#define QV_BASE_QV_TIMEZONE_HH

#include <qv/base/qv_timezone.h>

// The folder that stands for "/" where the system files of the zone are looked up, without a slash at its end.
extern const char *qv___TimezoneRoot;

void qv___TimezoneStartup();
void qv___TimezoneShutdown();

namespace qv
{

// One Windows name and its IANA names, separated by ",". The first of them stands for it best.
struct TimezoneNames
{
    const char *windows;
    const char *iana;
};

extern const TimezoneNames timezoneNames[];
extern const QV_INT timezoneNamesLength;

} // namespace qv

#endif
