#ifndef QV_RUNTIME_QV_RUNTIME_INFO_H
#define QV_RUNTIME_QV_RUNTIME_INFO_H

/* What can be said of the process and of the computer that it runs on. The caller owns the objects that a function
 * returns; null keys and stores stop the process. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* Texts for people about the operating system and the processor, and the host name; null where unknown. */
QV_API QV_STRING *qvRuntimeOperatingSystemInfo( void );
QV_API QV_STRING *qvRuntimeCpuInfo( void );
QV_API QV_STRING *qvRuntimeComputerName( void );
QV_API QV_BOOL qvRuntimeHasOperatingSystemInfo( void );
QV_API QV_BOOL qvRuntimeHasCpuInfo( void );
QV_API QV_BOOL qvRuntimeHasComputerName( void );

/* User information: named stores that an application publishes for diagnostics, from any thread. Setting a key that is
 * there replaces its store; deleting one that isn't does nothing. */
QV_API void qvRuntimeSetUserInformationKey( QV_STRING *key, QV_STORE *store );
QV_API void qvRuntimeDelUserInformationKey( QV_STRING *key );
/* The store, or null if there is no such key. */
QV_API QV_STORE *qvRuntimeUserInformationKey( QV_STRING *key );
QV_API QV_BOOL qvRuntimeHasUserInformationKey( QV_STRING *key );
/* A new store array with one substore an entry, in the order of the keys: the value "key" and the substore "store". */
QV_API QV_STORE *qvRuntimeUserInformation( void );

/* A new store that describes the process: the platform, the product, the application, the computer, the time of the
 * start, and the user information. */
QV_API QV_STORE *qvRuntimeInfo( void );

QV_END_DECLS

#endif
