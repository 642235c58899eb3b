#include "support/test.hh"
#include "exec/exec_support.hh"

namespace test
{

QV_SORT_FUNCTIONS_INTERNAL( TEST_CLOSURE, testClosure )

namespace
{

void freeClosure( qvObj thisObj )
{
    auto *closure = static_cast<TEST_CLOSURE *>( thisObj );
    if ( *closure->freed )
        ( *closure->freed )();
    delete closure->func;
    delete closure->freed;
}

} // namespace

QV_SORT_DEFINE( TEST_CLOSURE, testClosure, { .freeFunc = freeClosure } )

qvObj closureOf( std::function<void()> func, std::function<void()> freed )
{
    auto *closure = qv::create<TEST_CLOSURE>( testClosureSort() );
    closure->func = new std::function<void()>( std::move( func ) );
    closure->freed = new std::function<void()>( std::move( freed ) );
    return closure;
}

void runClosure( qvObj closure )
{
    ( *static_cast<TEST_CLOSURE *>( closure )->func )();
}

void drain( QV_PROCESS_DOMAIN *domain )
{
    Process last = processOn( domain, [] {} );
    endProcess( last );
}

} // namespace test
