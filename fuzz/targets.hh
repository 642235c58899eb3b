#ifndef QV_FUZZ_TARGETS_HH
#define QV_FUZZ_TARGETS_HH

// The decoders of outside data, each fed with arbitrary bytes. A target checks what must hold for any input and stops the
// process when it doesn't.

#include <cstddef>

struct FuzzTarget
{
    const char *name;
    void ( *run )( const unsigned char *bytes, size_t length );
};

// The target of that name, null if there is none.
const FuzzTarget *findFuzzTarget( const char *name );

// All targets; ends with a null name.
extern const FuzzTarget fuzzTargets[];

#endif
