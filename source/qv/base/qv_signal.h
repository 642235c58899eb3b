#ifndef QV_BASE_QV_SIGNAL_H
#define QV_BASE_QV_SIGNAL_H

/* Signals: one-way events. Once asserted, a signal stays asserted for ever.
 *
 * Signalables, further signals, alerts and barriers can be attached; asserting fires each attached one once and lets go of
 * it. What is attached to an asserted signal fires at once and isn't kept. Attaching the same object twice counts once,
 * unless the object that was attached first has been detached in between; detaching what isn't attached does nothing. The
 * targets run while the signal is locked: a chain of signals must have no cycle, and a target must not call the signal that
 * is firing it.
 *
 * Null stops the process, except for the signal of a sleep. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_SIGNAL, qvSignal )

/* A new signal, owned by the caller. */
QV_API QV_SIGNAL *qvSignalCreate( void );

/* True once the signal has been asserted. One lock-free read. */
QV_API QV_BOOL qvSignalAsserted( QV_SIGNAL *sig );

/* Asserts the signal and fires what is attached; nothing happens if it is asserted already. */
QV_API void qvSignalAssert( QV_SIGNAL *sig );

/* Waits until the signal is asserted; the timed form for at most millisec milliseconds, -1 for no limit, and returns false
 * when the time was up. A millisec below -1 stops the process, here and in a sleep. */
QV_API void qvSignalWait( QV_SIGNAL *sig );
QV_API QV_BOOL qvSignalWaitTimed( QV_SIGNAL *sig, QV_INT millisec );

/* True if the signal isn't asserted and something is attached to it. Threads that wait don't count. */
QV_API QV_BOOL qvSignalHasSignalables( QV_SIGNAL *sig );

/* Attach and detach. The signal holds a reference to what is attached, but for a signalable: that falls silent with its
 * last release. */
QV_API void qvSignalAddSignalable( QV_SIGNAL *sig, QV_SIGNALABLE *sigb );
QV_API void qvSignalDelSignalable( QV_SIGNAL *sig, QV_SIGNALABLE *sigb );
QV_API void qvSignalAddSignal( QV_SIGNAL *sig, QV_SIGNAL *chainedSignal );
QV_API void qvSignalDelSignal( QV_SIGNAL *sig, QV_SIGNAL *chainedSignal );
QV_API void qvSignalAddAlert( QV_SIGNAL *sig, QV_ALERT *alert );
QV_API void qvSignalDelAlert( QV_SIGNAL *sig, QV_ALERT *alert );
QV_API void qvSignalAddBarrier( QV_SIGNAL *sig, QV_BARRIER *waitBarrier );
QV_API void qvSignalDelBarrier( QV_SIGNAL *sig, QV_BARRIER *waitBarrier );

/* Sleeps until the signal is asserted; with a null signal, for ever. */
QV_API void qvSleep( QV_SIGNAL *signal );

/* Sleeps until the signal is asserted, then true, or until millisec milliseconds (-1: no limit) have passed, then false.
 * With a null signal it is a plain timed sleep. */
QV_API QV_BOOL qvSleepTimed( QV_SIGNAL *signal, QV_INT millisec );

QV_END_DECLS

#endif
