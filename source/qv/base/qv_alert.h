#ifndef QV_BASE_QV_ALERT_H
#define QV_BASE_QV_ALERT_H

/* Alerts: events that can be set and unset again. Setting fires each attached alertable once and lets go of it, so who
 * wants the next event attaches again, usually right after qvAlertUnset. What is attached to a set alert fires at once and
 * isn't kept. The targets run while the alert is locked and must not call the alert that is firing them. Null stops the
 * process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_ALERT, qvAlert )

/* A new alert, owned by the caller, not set. */
QV_API QV_ALERT *qvAlertCreate( void );

/* True while the alert is set. One lock-free read. */
QV_API QV_BOOL qvAlertIsSet( QV_ALERT *alert );

/* Sets the alert and fires what is attached; nothing happens if it is set already. */
QV_API void qvAlertSet( QV_ALERT *alert );
/* Lock-free; attaches nothing again. */
QV_API void qvAlertUnset( QV_ALERT *alert );

/* Attach and detach. The alert holds no reference to an alertable, which falls silent with its last release. Attaching the
 * same one twice counts once, unless the one that was attached first has been detached in between; detaching what isn't
 * attached does nothing. */
QV_API void qvAlertAddAlertable( QV_ALERT *alert, QV_ALERTABLE *alb );
QV_API void qvAlertDelAlertable( QV_ALERT *alert, QV_ALERTABLE *alb );

QV_END_DECLS

#endif
