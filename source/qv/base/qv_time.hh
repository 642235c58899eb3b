#ifndef QV_BASE_QV_TIME_HH
#define QV_BASE_QV_TIME_HH

// The time's record and its component.

#include <qv/base/qv_time.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: each field but the year is in the range that its setter demands; the day need not exist in its
// month.
struct qv___Time : qv___Obj
{
    QV_INT year;
    QV_INT month;
    QV_INT day;
    QV_INT hour;
    QV_INT minute;
    QV_INT second;
};

QV_INT qv___TimeCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___TimeToStringFunc( qvObj thisObj );

void qv___TimeStartup();
void qv___TimeShutdown();

// The time of the start of the runtime, owned by the caller.
QV_TIME *qv___TimeStarted();

#endif
