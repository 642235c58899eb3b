#ifndef QV_IO_QV_LOCATION_HH
#define QV_IO_QV_LOCATION_HH

// The location's record.

#include <qv/io/qv_location.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: line and column are each -1 or at least 1.
struct qv___Location : qv___Obj
{
    QV_STRING *description; // may be null
    QV_PATH *path;          // may be null
    QV_INT line;
    QV_INT column;
};

void qv___LocationFreeFunc( qvObj thisObj );
QV_STRING *qv___LocationToStringFunc( qvObj thisObj );

namespace qv
{

// A new location with all its fields. It retains description and path, which may be null; line and column are each -1 or
// at least 1.
QV_LOCATION *locationCreate( QV_STRING *description, QV_PATH *path, QV_INT line, QV_INT column );

} // namespace qv

#endif
