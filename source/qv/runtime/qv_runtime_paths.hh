#ifndef QV_RUNTIME_QV_RUNTIME_PATHS_HH
#define QV_RUNTIME_QV_RUNTIME_PATHS_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/runtime/qv_runtime_paths.h>

// Invariant: every value of the map is a QV_PATH with QV_PATH_FLAG_DIRECTORY, under a key that is a QV_RUNTIME_PATH.
struct qv___RuntimePaths : qv___Obj
{
    QV_RANGE_MAP *paths;
};

void qv___RuntimePathStartup();
void qv___RuntimePathShutdown();

// New paths worked out for a product, whose name must be valid. Directories are created for the running product alone.
QV_RUNTIME_PATHS *qv___RuntimePathsForProduct( QV_INT flags, QV_STRING *productName );

#endif
