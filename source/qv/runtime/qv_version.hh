#ifndef QV_RUNTIME_QV_VERSION_HH
#define QV_RUNTIME_QV_VERSION_HH

// The product's and the application's identity as plain strings, for code that may not allocate.

#include <qv/runtime/qv_author.h>

extern const QV_MODULE_RECORD qv___module_record;

const char *qv___RuntimeVersionProductNameCstr();
const char *qv___RuntimeVersionProductFriendlyNameCstr();
const char *qv___RuntimeVersionProductBuildTimeCstr();
const char *qv___RuntimeVersionProductVendorNameCstr();
const char *qv___RuntimeVersionProductCopyrightCstr();

// Null if the host gave none.
const char *qv___RuntimeVersionApplicationIdentifierCstr();
const char *qv___RuntimeVersionApplicationFriendlyNameCstr();
const char *qv___RuntimeVersionApplicationVersionCstr();

// Copies the strings, each of which may be null.
void qv___RuntimeVersionStartup( const char *applicationIdentifier, const char *applicationFriendlyName,
                                 const char *applicationVersion );
void qv___RuntimeVersionShutdown();

#endif
