// The workloads of the area timers, for each kind of timer.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"

using namespace bench;

static const int N = 100000, Few = 1000, Fire = 1000;

inline const std::vector<int> &due()
{
    static std::vector<int> v = [] {
        wl::Rng r( 1001 );
        std::vector<int> v( N );
        for ( auto &x : v )
            x = 1000 + int( r.below( 60000 ) );
        return v;
    }();
    return v;
}
inline const std::vector<int> &delays()
{
    static std::vector<int> v = [] {
        wl::Rng r( 1003 );
        std::vector<int> v( Fire );
        for ( auto &x : v )
            x = 1 + int( r.below( 50 ) );
        return v;
    }();
    return v;
}

// One timer of the firing test.
struct Shot
{
    uint64_t armed = 0, fired = 0;
    int delay = 0;
    static inline std::atomic<int> left;
    void fire()
    {
        fired = now_ns();
        --left;
    }
};
inline Shot nobody; // target of the timers that are not meant to fire

inline void report( Rec &r, const std::vector<Shot> &v )
{
    std::vector<double> us;
    for ( auto &s : v )
    {
        CHECK( s.fired );
        us.push_back( ( double( s.fired ) - double( s.armed ) ) / 1e3 - s.delay * 1e3 );
    }
    r( "us_p50", percentile( us, 0.5 ) );
    r( "us_p99", percentile( us, 0.99 ) );
    r( "us_min", percentile( us, 0.0 ) );
}

inline std::vector<Shot> shots()
{
    std::vector<Shot> v( Fire );
    for ( int i = 0; i < Fire; ++i )
        v[i].delay = delays()[i];
    Shot::left = Fire;
    return v;
}

// An adapter owns a loop and makes, arms, cancels and destroys timers of type T; wait() lets the loop run
// until all shots are fired; settle(), where there is one, gives the loop a last turn.

template <class L> static void loop( Bench &b, const char *peer )
{
    for ( int n : { 10000, N } )
    {
        if ( n == N && !L::many )
            continue;
        b.add( n == N ? "arm_cancel_1e5" : "arm_cancel_1e4", peer, [=]( Rec &r ) {
            L l;
            std::vector<typename L::T> t( static_cast<size_t>( n ) );
            per_op(
                r, n,
                [&] {
                    for ( int i = 0; i < n; ++i )
                    {
                        l.make( t[i], &nobody );
                        l.arm( t[i], due()[i] );
                    }
                },
                "arm_ns" );
            auto o = wl::permutation( size_t( n ), 1002 );
            per_op(
                r, n,
                [&] {
                    for ( auto i : o )
                        l.cancel( t[i] );
                    for ( auto &x : t )
                        l.destroy( x );
                    if constexpr ( requires { l.settle(); } )
                        l.settle();
                },
                "cancel_ns" );
        } );
    }
    b.add( "rearm_1e5", peer, []( Rec &r ) {
        L l;
        std::vector<typename L::T> t( Few );
        for ( int i = 0; i < Few; ++i )
        {
            l.make( t[i], &nobody );
            l.arm( t[i], due()[i] );
        }
        per_op( r, N, [&] {
            for ( int i = 0; i < N; ++i )
                l.arm( t[i % Few], due()[i] );
        } );
        for ( auto &x : t )
        {
            l.cancel( x );
            l.destroy( x );
        }
        if constexpr ( requires { l.settle(); } )
            l.settle();
    } );
    b.add( "cancel_1000", peer, []( Rec &r ) {
        L l;
        std::vector<typename L::T> t( Few );
        for ( int i = 0; i < Few; ++i )
            l.make( t[i], &nobody );
        auto o = wl::permutation( Few, 1004 );
        uint64_t ns = 0;
        for ( int round = 0; round < N / Few; ++round )
        {
            for ( int i = 0; i < Few; ++i )
                l.arm( t[i], due()[round * Few + i] );
            uint64_t t0 = now_ns();
            for ( auto i : o )
                l.cancel( t[i] );
            ns += now_ns() - t0;
        }
        for ( auto &x : t )
            l.destroy( x );
        if constexpr ( requires { l.settle(); } )
            l.settle();
        r( "ns_per_op", double( ns ) / N );
    } );
    b.add( "fire", peer, []( Rec &r ) {
        L l;
        auto s = shots();
        std::vector<typename L::T> t( Fire );
        for ( int i = 0; i < Fire; ++i )
            l.make( t[i], &s[i] );
        for ( int i = 0; i < Fire; ++i )
        {
            s[i].armed = now_ns();
            l.arm( t[i], s[i].delay );
        }
        l.wait();
        for ( auto &x : t )
            l.destroy( x );
        if constexpr ( requires { l.settle(); } )
            l.settle();
        report( r, s );
    } );
}
