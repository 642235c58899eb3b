#ifndef QV_BASE_QV_TIMEZONE_H
#define QV_BASE_QV_TIMEZONE_H

/* Names of time zones: the host's own, and the two naming schemes, that of Windows and that of the IANA. Zones are names
 * only; times know none. Null handles stop the process; the caller owns what a function returns. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* The name of the host's zone as the system files give it, normally an IANA name; looked up anew each time. Empty if
 * there is none, never null. */
QV_API QV_STRING *qvTimezone( void );

/* Seconds east of UTC right now, -86400 to 86400; 0 if the system doesn't tell. */
QV_API QV_INT qvTimezoneUtcOffset( void );

/* The IANA name that stands for a Windows name best, or null. */
QV_API QV_STRING *qvTimezoneWindowsToIana( QV_STRING *name );

/* The Windows name of an IANA name, or null. */
QV_API QV_STRING *qvTimezoneIanaToWindows( QV_STRING *name );

/* Whether a name is known as a Windows name or as an IANA name. Case counts. */
QV_API QV_BOOL qvTimezoneWindowsOk( QV_STRING *name );
QV_API QV_BOOL qvTimezoneIanaOk( QV_STRING *name );

/* All known IANA names in string order, a vector. */
QV_API QV_VECTOR *qvTimezoneList( void );

QV_END_DECLS

#endif
