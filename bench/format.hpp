// The inputs and the timing of the area format.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"
#include <cmath>

using namespace bench;

static const int N = 100000, Reps = 4;

struct Data
{
    std::vector<int64_t> ints = wl::int_values( N, 401 );
    std::vector<int32_t> small;
    std::vector<uint32_t> ids;
    std::vector<double> reals;
    std::vector<std::string> names, dec, hex, real;
    int64_t isum = 0;
    uint64_t xsum = 0;
    double rsum = 0;
    size_t lens[5] = {};
    Data()
    {
        wl::Rng r( 402 );
        for ( int i = 0; i < 16; ++i )
        {
            std::string s;
            for ( unsigned k = 0, n = 4 + r.below( 9 ); k < n; ++k )
                s += char( wl::letter( r ) );
            names.push_back( s );
        }
        for ( auto v : ints )
        {
            small.push_back( int32_t( v & 0x7FFFFFFF ) * ( v < 0 ? -1 : 1 ) );
            ids.push_back( uint32_t( r.next() ) );
            reals.push_back( double( v & 0xFFFFFFFFFF ) / 1000.0 * ( v < 0 ? -1 : 1 ) );
        }
        char b[400];
        for ( int i = 0; i < N; ++i )
        {
            lens[0] += size_t( snprintf( b, sizeof b, "item %d: name=%s id=%08x", small[i],
                                         names[i & 15].c_str(), ids[i] ) );
            lens[1] += size_t( snprintf( b, sizeof b, "%lld", (long long)ints[i] ) );
            dec.push_back( b );
            lens[2] += size_t( snprintf( b, sizeof b, "%llx", (unsigned long long)ints[i] ) );
            hex.push_back( b );
            lens[3] += size_t( snprintf( b, sizeof b, "%.6f", reals[i] ) );
            real.push_back( b );
            lens[4] +=
                size_t( snprintf( b, sizeof b, "%10d|%-10s|", small[i] & 0xFFFFF, names[i & 15].c_str() ) );
            isum += ints[i] >> 8;
            xsum += uint64_t( ints[i] );
            rsum += reals[i];
        }
    }
};

inline const Data &d()
{
    static Data data;
    return data;
}

// f(i) formats value i and gives the length of the text.
template <class F> static void out( Bench &b, int kind, const char *w, const char *peer, F f )
{
    b.add( w, peer, [=]( Rec &r ) {
        d();
        per_op( r, double( N ) * Reps, [&] {
            for ( int k = 0; k < Reps; ++k )
            {
                size_t len = 0;
                for ( int i = 0; i < N; ++i )
                    len += f( i );
                CHECK( len == d().lens[kind] );
            }
        } );
    } );
}

template <class T, class F> static void in( Bench &b, const char *w, const char *peer, T want, F f )
{
    b.add( w, peer, [=]( Rec &r ) {
        per_op( r, double( N ) * Reps, [&] {
            for ( int k = 0; k < Reps; ++k )
            {
                T sum = 0;
                for ( int i = 0; i < N; ++i )
                    sum += f( i );
                if constexpr ( std::is_floating_point_v<T> )
                    CHECK( std::fabs( sum - want ) <= std::fabs( want ) * 1e-9 );
                else
                    CHECK( sum == want );
            }
        } );
    } );
}
