#ifndef QV_RUNTIME_QV_RUNTIME_VARIANT_HH
#define QV_RUNTIME_QV_RUNTIME_VARIANT_HH

#include <qv/runtime/qv_runtime_variant.h>

// The friendly name as a constant text, which needs no running library.
const char *qv___RuntimeVariantFriendlyNameCstr( QV_RUNTIME_VARIANT variant );

void qv___RuntimeVariantStartup();
void qv___RuntimeVariantShutdown();

#endif
