#ifndef QV_EXEC_QV_PROCESS_PROTOCOL_HH
#define QV_EXEC_QV_PROCESS_PROTOCOL_HH

// How the threads that schedule a process and the one that runs it agree without a lock. The order of the numbered steps
// is what makes it right: a request to a process is never lost, and a process is never in two queues or on two threads.
// Written over the atomics and over a Host that does the rest, so that a test can walk through all interleavings.

namespace qv
{

// extPending:   a request has come that is not yet consumed.
// extScheduled: the process is in some queue or running; whoever turns it on owns the process's place in the scheduler.
// extHalted:    the next execute ends the process.
template <typename Atomic> struct ProcessFlags
{
    Atomic extPending;
    Atomic extScheduled;
    Atomic extHalted;

    void initialize()
    {
        extPending = {};
        extScheduled = {};
        extHalted = {};
    }
};

// Host: noteScheduled(), retain(), enqueue().
template <typename Atomic, typename Host>
inline void processSchedule( ProcessFlags<Atomic> *flags, Host &host )
{
    // 1. The request comes first, so that step 8 of the execute finds it if step 2 fails.
    flags->extPending.turnOn();
    // 2. Whoever finds the process queued or running leaves the request to its thread.
    if ( flags->extScheduled.isOn() || !flags->extScheduled.turnOn() )
        return;
    // 3. This caller has taken the request.
    flags->extPending.turnOff();
    // 4. The time of the request, before any thread can start the run.
    host.noteScheduled();
    // 5. The reference that the scheduler holds until the process leaves it.
    host.retain();
    // 6. and 7. Into a queue; from here on the process may run.
    host.enqueue();
}

template <typename Atomic, typename Host> inline void processHalt( ProcessFlags<Atomic> *flags, Host &host )
{
    if ( flags->extHalted.turnOn() )
    {
        processSchedule( flags, host );
    }
}

// Steps 2 and 3 of the execute, true if the process is to end. The requests so far are consumed before the flag is read:
// a halt that comes later sets its request after that, and so is found.
template <typename Atomic> inline bool processConsume( ProcessFlags<Atomic> *flags )
{
    // 2. The run about to be made is for all requests so far.
    flags->extPending.turnOff();
    // 3. Before the run, so that nothing runs after a halt that was already there.
    return flags->extHalted.isOn();
}

// Steps 6 to 8 of the execute, true if the process runs again with extScheduled still, or once more, in this thread's hand.
// Host: checkScheduled( wasScheduled ).
template <typename Atomic, typename Host> inline bool processKeep( ProcessFlags<Atomic> *flags, Host &host )
{
    // 6. A request that came during the run: the process never leaves the scheduler.
    if ( flags->extPending.turnOff() )
        return true;
    // 7. The place in the scheduler is free for whoever comes.
    host.checkScheduled( flags->extScheduled.turnOff() );
    // 8. A request that came between 6 and 7 found extScheduled on and went away: it is this thread's to serve, unless
    // another one has come since and taken the place with a reference of its own.
    return flags->extPending.turnOff() && flags->extScheduled.turnOn();
}

// Host: takeHead(), end() and run(), which both give the time of their end, -1 for none, checkScheduled( wasScheduled ),
// release(), enqueueAgain( time ).
template <typename Atomic, typename Host>
inline void processExecute( ProcessFlags<Atomic> *flags, Host &host )
{
    // 1. Out of the queue, so that it can be queued again.
    host.takeHead();
    // 2. and 3., then 4. the end or 5. the run.
    auto time = processConsume( flags ) ? host.end() : host.run();
    // 6. to 8., then 9. back into a queue with the reference that is still held, or out with it.
    if ( processKeep( flags, host ) )
        host.enqueueAgain( time );
    else
        host.release();
}

} // namespace qv

#endif
