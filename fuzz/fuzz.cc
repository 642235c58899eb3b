// The program under the fuzzer; the environment variable QV_FUZZ_TARGET names the target.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <qv/qv.h>

#include "targets.hh"

namespace
{

const FuzzTarget *target = nullptr;

} // namespace

// The library's report of a fault ends in abort() with the signal's default action, past the fuzzer, which would not keep
// the input then. The linker leads the call here.
extern "C" [[noreturn]] void __wrap_abort()
{
    __builtin_trap();
}

extern "C" int LLVMFuzzerInitialize( int *, char *** )
{
    target = findFuzzTarget( std::getenv( "QV_FUZZ_TARGET" ) );
    if ( !target )
    {
        std::fprintf( stderr, "fuzz: QV_FUZZ_TARGET names no target\n" );
        std::exit( 2 );
    }
    qvRuntimeStartup( QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS, -1, nullptr, "fuzz", nullptr, nullptr );
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput( const uint8_t *bytes, size_t length )
{
    target->run( bytes, length );
    return 0;
}
