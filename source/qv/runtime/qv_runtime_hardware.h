#ifndef QV_RUNTIME_QV_RUNTIME_HARDWARE_H
#define QV_RUNTIME_QV_RUNTIME_HARDWARE_H

/* Hardware that products are built for. */

#include <qv/runtime/qv_handles.h>

typedef QV_INT QV_RUNTIME_HARDWARE;

#define QV_RUNTIME_HARDWARE_X32     0
#define QV_RUNTIME_HARDWARE_X64     1
#define QV_RUNTIME_HARDWARE_RPI2    2
#define QV_RUNTIME_HARDWARE_RPI3    3
#define QV_RUNTIME_HARDWARE_ARMHF   4
#define QV_RUNTIME_HARDWARE_ARM64   5
#define QV_RUNTIME_HARDWARE_RISCV64 6

/* True for the values above. */
#define QV_RUNTIME_HARDWARE_OK( hw ) ( ( hw ) >= 0 && ( hw ) <= 6 )

QV_BEGIN_DECLS

/* The hardware that the library was built for. */
QV_API QV_RUNTIME_HARDWARE qvRuntimeHardware( void );

/* The name of a value, owned by the caller, null if it has none; and the value of a name, -1 if there is none. */
QV_API QV_STRING *qvRuntimeHardwareToString( QV_RUNTIME_HARDWARE hw );
QV_API QV_RUNTIME_HARDWARE qvRuntimeHardwareFromString( QV_STRING *string );

/* The short identifier for files, as "x64", owned by the caller; and the value of one, -1 if it is unknown. From here
 * on, a value that isn't one of the above stops the process. */
QV_API QV_STRING *qvRuntimeHardwareToIdentifier( QV_RUNTIME_HARDWARE hw );
QV_API QV_RUNTIME_HARDWARE qvRuntimeHardwareFromIdentifier( QV_STRING *string );

/* The name for people, as "x86 (64 bit)", owned by the caller. */
QV_API QV_STRING *qvRuntimeHardwareFriendlyName( QV_RUNTIME_HARDWARE hw );

/* Classes of hardware. All of it is little-endian. */
QV_API QV_BOOL qvRuntimeHardwareIsIntel( QV_RUNTIME_HARDWARE hw );
QV_API QV_BOOL qvRuntimeHardwareIsArm( QV_RUNTIME_HARDWARE hw );
QV_API QV_BOOL qvRuntimeHardwareIsRiscv( QV_RUNTIME_HARDWARE hw );
QV_API QV_BOOL qvRuntimeHardwareIsLittleEndian( QV_RUNTIME_HARDWARE hw );
QV_API QV_BOOL qvRuntimeHardwareIsBigEndian( QV_RUNTIME_HARDWARE hw );

QV_END_DECLS

#endif
