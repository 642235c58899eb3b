#ifndef QV_RUNTIME_QV_RUNTIME_OS_H
#define QV_RUNTIME_QV_RUNTIME_OS_H

/* Operating systems that products are built for. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_runtime_hardware.h>

typedef QV_INT QV_RUNTIME_OS;

#define QV_RUNTIME_OS_WINDOWS     0
#define QV_RUNTIME_OS_DEBIAN_9    1
#define QV_RUNTIME_OS_DEBIAN_10   2
#define QV_RUNTIME_OS_DEBIAN_11   3
#define QV_RUNTIME_OS_DEBIAN_12   4
#define QV_RUNTIME_OS_DEBIAN_13   5
#define QV_RUNTIME_OS_UBUNTU_1804 6
#define QV_RUNTIME_OS_UBUNTU_2004 7
#define QV_RUNTIME_OS_UBUNTU_2204 8
#define QV_RUNTIME_OS_UBUNTU_2404 9
#define QV_RUNTIME_OS_UBUNTU_2604 10
#define QV_RUNTIME_OS_RHEL_8      11
#define QV_RUNTIME_OS_RHEL_9      12
#define QV_RUNTIME_OS_RHEL_10     13
#define QV_RUNTIME_OS_MACOSX      14

/* True for the values above. */
#define QV_RUNTIME_OS_OK( os ) ( ( os ) >= 0 && ( os ) <= 14 )

QV_BEGIN_DECLS

/* The operating system that the library was built for. */
QV_API QV_RUNTIME_OS qvRuntimeOs( void );

/* The name of a value, owned by the caller, null if it has none; and the value of a name, -1 if there is none. */
QV_API QV_STRING *qvRuntimeOsToString( QV_RUNTIME_OS os );
QV_API QV_RUNTIME_OS qvRuntimeOsFromString( QV_STRING *string );

/* The short identifier for files, as "debian9", owned by the caller; and the value of one, -1 if it is unknown. From here
 * on, a value that isn't one of the above stops the process. */
QV_API QV_STRING *qvRuntimeOsToIdentifier( QV_RUNTIME_OS os );
QV_API QV_RUNTIME_OS qvRuntimeOsFromIdentifier( QV_STRING *string );

/* The name for people, as "Debian 9", owned by the caller. */
QV_API QV_STRING *qvRuntimeOsFriendlyName( QV_RUNTIME_OS os );

/* Classes of operating systems. Ubuntu counts as Debian; Linux and MacOSX are Unix. */
QV_API QV_BOOL qvRuntimeOsIsWindows( QV_RUNTIME_OS os );
QV_API QV_BOOL qvRuntimeOsIsLinux( QV_RUNTIME_OS os );
QV_API QV_BOOL qvRuntimeOsIsDebian( QV_RUNTIME_OS os );
QV_API QV_BOOL qvRuntimeOsIsRhel( QV_RUNTIME_OS os );
QV_API QV_BOOL qvRuntimeOsIsUnix( QV_RUNTIME_OS os );

/* Whether products are released for the hardware under the operating system. */
QV_API QV_BOOL qvRuntimeOsSupportsHardware( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw );

/* The name of the package architecture, as "amd64", owned by the caller; null for all systems but Linux. */
QV_API QV_STRING *qvRuntimeOsHardwarePlatformName( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw );
QV_API QV_BOOL qvRuntimeOsHasHardwarePlatformName( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw );

QV_END_DECLS

#endif
