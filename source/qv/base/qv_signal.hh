#ifndef QV_BASE_QV_SIGNAL_HH
#define QV_BASE_QV_SIGNAL_HH

#include <qv/base/qv_listeners.hh>
#include <qv/base/qv_signal.h>
#include <qv/sys/qv_atomic_bool.hh>

// Invariant: once asserted is true nothing is attached, so that an attaching and an asserting call can't miss each other.
struct qv___Signal : qv___Obj
{
    qv___Lock lock;
    qv::AtomicBool asserted;   // read without the lock, written under it
    QV_BARRIER *waitBarrier;   // shared by the threads that wait, null until the first one
    qv::Listeners signalables; // inner objects
    qv::Listeners chainedSignals;
    qv::Listeners alerts;
    qv::Listeners barriers;
};

#endif
