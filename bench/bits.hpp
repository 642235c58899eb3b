// The inputs of the area bits.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"

using namespace bench;

static const int N = 1000000;

inline const std::vector<uint8_t> &values()
{
    static std::vector<uint8_t> v = [] {
        wl::Rng r( 1201 );
        std::vector<uint8_t> v( N );
        for ( auto &x : v )
            x = uint8_t( r.next() & 31 );
        return v;
    }();
    return v;
}

inline uint64_t value_sum()
{
    uint64_t s = 0;
    for ( auto x : values() )
        s += x;
    return s;
}

struct Shift
{ // limit: a 64-bit register over a growing byte vector
    std::vector<uint8_t> out;
    uint64_t reg = 0;
    int fill = 0;
    void put( uint32_t v, int n )
    {
        reg = reg << n | v;
        fill += n;
        if ( fill >= 32 )
        {
            fill -= 32;
            uint32_t w = __builtin_bswap32( uint32_t( reg >> fill ) );
            size_t at = out.size();
            out.resize( at + 4 );
            memcpy( &out[at], &w, 4 );
        }
    }
    void flush()
    {
        while ( fill > 0 )
        {
            int n = std::min( 8, fill );
            out.push_back( uint8_t( ( reg >> ( fill - n ) ) << ( 8 - n ) ) );
            fill -= n;
        }
    }
};

inline uint64_t peek( const uint8_t *p, uint64_t bit, int n )
{
    uint64_t w;
    memcpy( &w, p + bit / 8, 8 );
    return __builtin_bswap64( w ) << ( bit & 7 ) >> ( 64 - n );
}
