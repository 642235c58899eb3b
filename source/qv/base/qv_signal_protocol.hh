#ifndef QV_BASE_QV_SIGNAL_PROTOCOL_HH
#define QV_BASE_QV_SIGNAL_PROTOCOL_HH

// How attaching to a signal and asserting it can't miss each other, in either order: both look at the flag and act on what
// is attached in one stay under the lock. Written over the atomics and over a Host, so that a test can walk through all
// interleavings. Host: lock(), unlock(), fire(), keep(), fireAll().

namespace qv
{

// Keeps a target, or fires it at once if the signal is asserted.
template <typename Atomic, typename Host> inline void signalAttach( Atomic *asserted, Host &host )
{
    host.lock();
    if ( asserted->isOn() )
        host.fire();
    else
        host.keep();
    host.unlock();
}

template <typename Atomic, typename Host> inline void signalAssert( Atomic *asserted, Host &host )
{
    host.lock();
    if ( asserted->turnOn() )
        host.fireAll();
    host.unlock();
}

} // namespace qv

#endif
