#ifndef QV_SYS_QV_ATOMIC_BOOL_HH
#define QV_SYS_QV_ATOMIC_BOOL_HH

namespace qv
{

// A boolean that any thread may turn. All steps are in one order that all threads agree on. Code whose correctness rests on
// the order of such steps takes the type as a parameter, so that a test can walk through all interleavings of them.
struct AtomicBool
{
    bool value;

    // True if this call turned it on. It writes in any case: what the caller wrote before is seen by whoever turns it off
    // next, also if it was on already.
    bool turnOn()
    {
        return !__atomic_exchange_n( &value, true, __ATOMIC_SEQ_CST );
    }

    // True if this call turned it off.
    bool turnOff()
    {
        return isOn() && __atomic_exchange_n( &value, false, __ATOMIC_SEQ_CST );
    }

    bool isOn() const
    {
        return __atomic_load_n( &value, __ATOMIC_SEQ_CST );
    }
};

} // namespace qv

#endif
