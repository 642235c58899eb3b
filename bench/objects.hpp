// The workloads of the area objects, for each kind of object.
#pragma once
#include "bench.hpp"
#include <sched.h>
#include <pthread.h>

using namespace bench;

template <class K>
concept Raw = requires( typename K::H h )
{
    K::retain( h );
};

template <class K> static int64_t create_loop( int64_t n )
{
    int64_t sum = 0;
    for ( int64_t i = 0; i < n; ++i )
    {
        auto h = K::make( i );
        keep( h );
        sum += K::value( h );
        K::drop( h );
    }
    return sum;
}

template <class K> static void pairs( const typename K::H &h, int64_t n )
{
    for ( int64_t i = 0; i < n; ++i )
    {
        if constexpr ( Raw<K> )
        {
            K::retain( h );
            clobber();
            K::drop( h );
        }
        else
        {
            typename K::H c = h;
            keep( c );
        }
    }
}

template <class F> inline double two_threads( F &&f )
{
    std::atomic<int> ready{ 0 };
    std::atomic<bool> go{ false };
    auto body = [&]( int i ) {
        cpu_set_t set;
        CPU_ZERO( &set );
        CPU_SET( i, &set );
        pthread_setaffinity_np( pthread_self(), sizeof set, &set );
        ++ready;
        while ( !go.load() )
        {
        }
        f( i );
    };
    std::thread a( body, 0 ), b( body, 1 );
    while ( ready.load() < 2 )
        std::this_thread::yield();
    uint64_t t0 = now_ns();
    go = true;
    a.join();
    b.join();
    return double( now_ns() - t0 );
}

template <class K> static void kind( Bench &b, const char *peer )
{
    const int64_t N = 1000000;
    b.add( "create_release", peer,
           [=]( Rec &r ) { per_op( r, N, [&] { CHECK( create_loop<K>( N ) == N * ( N - 1 ) / 2 ); } ); } );
    b.add( "create_release_1000", peer, [=]( Rec &r ) {
        std::vector<typename K::H> v( 1000 );
        per_op( r, N, [&] {
            int64_t sum = 0;
            for ( int k = 0; k < 1000; ++k )
            {
                for ( int i = 0; i < 1000; ++i )
                    v[i] = K::make( i );
                for ( int i = 0; i < 1000; ++i )
                {
                    sum += K::value( v[i] );
                    K::drop( v[i] );
                }
            }
            CHECK( sum == 1000 * 499500ll );
        } );
    } );
    b.add( "cycle_64", peer, [=]( Rec &r ) {
        typename K::H v[64];
        for ( int i = 0; i < 64; ++i )
            v[i] = K::make( 0 );
        per_op( r, N, [&] {
            for ( int64_t i = 0; i < N; ++i )
            {
                auto h = K::make( i );
                std::swap( v[i & 63], h );
                K::drop( h );
            }
        } );
        for ( int i = 0; i < 64; ++i )
        {
            CHECK( K::value( v[i] ) == N - 64 + i );
            K::drop( v[i] );
        }
    } );
    b.add( "create_release_2t", peer, [=]( Rec &r ) {
        r( "ns_per_op",
           two_threads( [&]( int ) { CHECK( create_loop<K>( N ) == N * ( N - 1 ) / 2 ); } ) / N );
    } );
    b.add( "retain_release_1t", peer, [=]( Rec &r ) {
        auto h = K::make( 7 );
        per_op( r, 1e7, [&] { pairs<K>( h, 10000000 ); } );
        CHECK( K::count( h ) == 1 );
        K::drop( h );
    } );
    b.add( "retain_release_2t", peer, [=]( Rec &r ) {
        auto h = K::make( 7 );
        r( "ns_per_op", two_threads( [&]( int ) { pairs<K>( h, N ); } ) / N );
        CHECK( K::count( h ) == 1 );
        K::drop( h );
    } );
    b.add( "retain_release_2t_own", peer, [=]( Rec &r ) {
        double t = two_threads( [&]( int ) {
            auto h = K::make( 7 );
            pairs<K>( h, N );
            K::drop( h );
        } );
        r( "ns_per_op", t / N );
    } );
}
