#ifndef QV_RUNTIME_QV_RUNTIME_HH
#define QV_RUNTIME_QV_RUNTIME_HH

#include <qv/runtime/qv_runtime.h>

// Flags that ask for a report of leaked objects.
#define QV___RUNTIME_SNAPSHOT_MASK                                                                           \
    ( QV_RUNTIME_FLAG_SNAPSHOT_SORT | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT |                                      \
      QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG )

// Starts the components in their fixed order and stops them again. The three strings may each be null.
void qv___RuntimeComponentsStartup( const char *applicationIdentifier, const char *applicationFriendlyName,
                                    const char *applicationVersion );
void qv___RuntimeComponentsShutdown();

// Changes the flags that the components see, for the length of the leak report.
void qv___RuntimeSetFlags( QV_RUNTIME_FLAGS flags );

void qv___RuntimeFlagsStartup();
void qv___RuntimeFlagsShutdown();

// Prints the head of a leak or unload report.
void qv___RuntimeSnapshotHeader();

// Reports the objects that are still there after the components have stopped: brings them up once more for it.
void qv___RuntimeReportLeaks();

#endif
