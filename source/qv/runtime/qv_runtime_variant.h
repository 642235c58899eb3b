#ifndef QV_RUNTIME_QV_RUNTIME_VARIANT_H
#define QV_RUNTIME_QV_RUNTIME_VARIANT_H

/* Variants in which a product can be built. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_RUNTIME_VARIANT;

#define QV_RUNTIME_VARIANT_RELEASE 0
#define QV_RUNTIME_VARIANT_DEBUG   1
#define QV_RUNTIME_VARIANT_PROFILE 2
#define QV_RUNTIME_VARIANT_CHECK   3

/* True for the values above. */
#define QV_RUNTIME_VARIANT_OK( variant ) ( ( variant ) >= 0 && ( variant ) <= 3 )

QV_BEGIN_DECLS

/* The variant in which the library was built. */
QV_API QV_RUNTIME_VARIANT qvRuntimeVariant( void );

/* The name of a value, owned by the caller, null if it has none; and the value of a name, -1 if there is none. */
QV_API QV_STRING *qvRuntimeVariantToString( QV_RUNTIME_VARIANT variant );
QV_API QV_RUNTIME_VARIANT qvRuntimeVariantFromString( QV_STRING *string );

/* The short identifier for files, as "debug", owned by the caller; and the value of one, -1 if it is unknown. From here
 * on, a value that isn't one of the above stops the process. */
QV_API QV_STRING *qvRuntimeVariantToIdentifier( QV_RUNTIME_VARIANT variant );
QV_API QV_RUNTIME_VARIANT qvRuntimeVariantFromIdentifier( QV_STRING *string );

/* The name for people, as "Debug", owned by the caller. */
QV_API QV_STRING *qvRuntimeVariantFriendlyName( QV_RUNTIME_VARIANT variant );

QV_END_DECLS

#endif
