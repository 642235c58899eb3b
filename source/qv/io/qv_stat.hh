#ifndef QV_IO_QV_STAT_HH
#define QV_IO_QV_STAT_HH

// The records of both kinds of status.

#include <qv/io/qv_stat.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: size is at least -1.
struct qv___Stat : qv___Obj
{
    QV_INT size;               // bytes, -1 when absent
    QV_TIME *modificationTime; // may be null
};

// Invariant: both sizes are at least 0.
struct qv___StatFilesystem : qv___Obj
{
    QV_INT size;          // bytes
    QV_INT availableSize; // bytes
};

void qv___StatFreeFunc( qvObj thisObj );
void qv___StatFilesystemFreeFunc( qvObj thisObj );

#endif
