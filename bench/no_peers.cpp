// Stands for the peers of an area (AREA) when packages of theirs are missing.
#include "bench.hpp"

const char *const area_name = AREA;

void register_peers( bench::Bench & )
{
    fprintf( stderr, "%s: packages are missing, measured without peers\n", area_name );
}
