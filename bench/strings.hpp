// The workloads of the area strings that are more than a call.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"

using namespace bench;

inline char32_t plain( int i )
{
    return char32_t( 'a' + i % 26 );
}
inline char32_t mixed( int i )
{
    return i % 8 == 7 ? char32_t( 0x4E00 + i % 4096 ) : plain( i );
}

template <class S, class Put, class Size>
static void building( Bench &b, const char *peer, Put put, Put pre, Size size )
{
    const int N = 1000000, P = 100000;
    auto app = [=]( char32_t ( *ch )( int ) ) {
        return [=]( Rec &r ) {
            S s{};
            per_op( r, N, [&] {
                for ( int i = 0; i < N; ++i )
                    put( s, ch( i ) );
            } );
            CHECK( size( s ) == size_t( N ) );
        };
    };
    b.add( "append_1e6", peer, app( plain ) );
    b.add( "append_1e6_mixed", peer, app( mixed ) );
    b.add( "prepend_1e5", peer, [=]( Rec &r ) {
        S s{};
        per_op( r, P, [&] {
            for ( int i = 0; i < P; ++i )
                pre( s, plain( i ) );
        } );
        CHECK( size( s ) == size_t( P ) );
    } );
    b.add( "build_short", peer, [=]( Rec &r ) {
        per_op( r, P, [&] {
            for ( int i = 0; i < P; ++i )
            {
                S s{};
                for ( int k = 0; k < 20; ++k )
                    put( s, plain( i + k ) );
                keep( s );
            }
        } );
    } );
}

inline void find_case( Bench &b, const char *peer, bool three, std::function<size_t()> f )
{
    b.add( three ? "find3" : "find16", peer, [=]( Rec &r ) {
        const int reps = 4, n = 1 << 20;
        per_op(
            r, double( reps ) * n,
            [&] {
                for ( int i = 0; i < reps; ++i )
                    CHECK( f() == size_t( n ) - ( three ? 3 : 16 ) );
            },
            "ns_per_cp" );
    } );
}

// How often f() said true in n calls.
template <class F> static int loop( int n, F f )
{
    int k = 0;
    for ( int i = 0; i < n; ++i )
    {
        k += f();
        clobber();
    }
    return k;
}
