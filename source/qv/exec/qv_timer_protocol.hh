#ifndef QV_EXEC_QV_TIMER_PROTOCOL_HH
#define QV_EXEC_QV_TIMER_PROTOCOL_HH

// How scheduling, cancelling and firing a timer agree. Written over the atomics and over a Host, which has the monitor and
// the structures, so that a test can walk through all interleavings.

namespace qv
{

// sched is the one point of decision between firing and cancelling: it may be turned off at any time without the monitor,
// and whoever turns it off has won. schedAbs and schedRel, under the monitor, tell whether the timer stands in the structure of
// absolute or of relative timers, never in both. Invariant under the monitor: a timer whose sched is on is in a structure.
template <typename Atomic> struct TimerFlags
{
    Atomic sched;
    bool schedAbs;
    bool schedRel;

    void initialize()
    {
        sched = {};
        schedAbs = false;
        schedRel = false;
    }
};

// Takes the timer out of its structure; the monitor is held. Host: removeRelative(), removeAbsolute().
template <typename Atomic, typename Host> inline void timerUnschedule( TimerFlags<Atomic> *flags, Host &host )
{
    if ( flags->schedRel )
    {
        flags->sched.turnOff();
        flags->schedRel = false;
        host.removeRelative();
    }
    else if ( flags->schedAbs )
    {
        flags->sched.turnOff();
        flags->schedAbs = false;
        host.removeAbsolute();
    }
}

// Puts the timer into a structure, after timerUnschedule and with the monitor still held. sched comes last: a cancel that
// turns it off finds the timer where the timer thread will drop it.
template <typename Atomic, typename Host>
inline void timerEnterRelative( TimerFlags<Atomic> *flags, Host &host )
{
    host.enterRelative();
    flags->schedRel = true;
    flags->sched.turnOn();
}

template <typename Atomic, typename Host>
inline void timerEnterAbsolute( TimerFlags<Atomic> *flags, Host &host )
{
    host.enterAbsolute();
    flags->schedAbs = true;
    flags->sched.turnOn();
}

// Cancels without the monitor; the timer stays in its structure until its time comes or it is scheduled again. True if the
// timer would have fired.
template <typename Atomic> inline bool timerCancel( TimerFlags<Atomic> *flags )
{
    return flags->sched.turnOff();
}

// The timer thread's decision about a timer that is due and out of its structure, with the monitor held: true if it fires.
// The structure's flag goes first, so that a scheduling call during the firing makes a new entry.
template <typename Atomic> inline bool timerTake( TimerFlags<Atomic> *flags )
{
    flags->schedRel = false;
    flags->schedAbs = false;
    return flags->sched.turnOff();
}

} // namespace qv

#endif
