#ifndef QV_RUNTIME_QV_RUNTIME_PLATFORM_HH
#define QV_RUNTIME_QV_RUNTIME_PLATFORM_HH

// Where a Unix system keeps a product's files.

#include <qv/runtime/qv_runtime_paths.h>

void qv___RuntimePlatformStartup();
void qv___RuntimePlatformShutdown();

// New paths for a valid product name, from the environment as it was at startup.
QV_RUNTIME_PATHS *qv___RuntimePlatformPathsForProduct( QV_INT flags, QV_STRING *productName );

// The directory that an environment variable names, or null if there is none or its text is no path. The variable's name
// is put into upper case first.
QV_PATH *qv___RuntimePlatformUnixPathFromEnvironment( QV_ENVIRONMENT *environment, QV_STRING *variable );

// The directory base, with optionalPath, if not null, appended component by component; with create each level is made.
QV_PATH *qv___RuntimePlatformUnixSetupPath( QV_PATH *base, QV_PATH *optionalPath, QV_BOOL create );

#endif
