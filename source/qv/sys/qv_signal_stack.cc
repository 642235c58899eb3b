#include <qv/sys/qv_signal_stack.hh>

#include <sys/auxv.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

// For the report, with its 4000 frames and the platform's formatting, and for a second handler on top of it.
constexpr size_t roomForHandlers = 160 * 1024;

size_t roundedToPages( size_t size )
{
    auto page = static_cast<size_t>( sysconf( _SC_PAGESIZE ) );
    return ( size + page - 1 ) / page * page;
}

// With what the processor saves of its registers at each of the two signals.
size_t neededSize()
{
    size_t frame = MINSIGSTKSZ;
#ifdef AT_MINSIGSTKSZ
    size_t told = getauxval( AT_MINSIGSTKSZ );
    frame = told > frame ? told : frame;
#endif
    return roundedToPages( roomForHandlers + 2 * frame );
}

bool isLargeEnough( const stack_t &stack )
{
    return !( stack.ss_flags & SS_DISABLE ) && stack.ss_size >= neededSize();
}

} // namespace

void qv::signalStackEnter( SignalStack *stack )
{
    *stack = {};
    if ( sigaltstack( nullptr, &stack->before ) != 0 || isLargeEnough( stack->before ) )
        return;
    // A page that can't be touched lies below, as with any stack. Memory is taken only where the stack is used.
    size_t guard = roundedToPages( 1 );
    size_t size = guard + neededSize();
    void *memory = mmap( nullptr, size, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0 );
    if ( memory == MAP_FAILED )
        return;
    stack_t own = {};
    own.ss_sp = static_cast<char *>( memory ) + guard;
    own.ss_size = size - guard;
    if ( mprotect( memory, guard, PROT_NONE ) != 0 || sigaltstack( &own, nullptr ) != 0 )
    {
        munmap( memory, size );
        return;
    }
    stack->memory = memory;
    stack->size = size;
}

void qv::signalStackLeave( SignalStack *stack )
{
    if ( stack->memory && sigaltstack( &stack->before, nullptr ) == 0 )
    {
        munmap( stack->memory, stack->size );
    }
    *stack = {};
}
