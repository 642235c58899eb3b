#ifndef QV_SYS_QV_SIGNAL_STACK_HH
#define QV_SYS_QV_SIGNAL_STACK_HH

// A thread's stack for signal handlers, so that a crash report can be written when the thread's own stack is full.

#include <signal.h>
#include <stddef.h>

namespace qv
{

// Invariant: memory is null if the thread kept the stack that it had.
struct SignalStack
{
    void *memory;
    size_t size;
    stack_t before;
};

// Gives the calling thread such a stack, unless it has one that is large enough, or there is no memory.
void signalStackEnter( SignalStack *stack );

// On the same thread: puts back what was there before.
void signalStackLeave( SignalStack *stack );

} // namespace qv

#endif
