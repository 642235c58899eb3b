#ifndef QV_BASE_QV_ENVIRONMENT_HH
#define QV_BASE_QV_ENVIRONMENT_HH

#include <qv/base/qv_environment.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: both dictionaries have the same keys, so that a position means the same variable in both. They are
// shared between copies.
struct qv___Environment : qv___Obj
{
    QV_DICT *names;  // folded names to the names as they were set last
    QV_DICT *values; // folded names to the values
};

void qv___EnvironmentFreeFunc( qvObj thisObj );

#endif
