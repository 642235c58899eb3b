// The workloads of the area maps, for each kind of map. A map type M has a type K of its keys, put, get (-1 if
// absent) and walk (sum of the values); to( source, (K *)nullptr ) makes a key.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"
#include <memory>

using namespace bench;

template <class M, class Src>
static void map_case( Bench &b, const char *key, const char *peer, const std::vector<Src> &src, size_t n )
{
    using K = typename M::K;
    struct Data
    {
        std::vector<K> keys, sorted, misses;
        std::vector<uint32_t> order;
    };
    // Keys are made at the first use, so that peers don't fill the heap for one another.
    auto data = std::make_shared<Data>();
    size_t pool = n <= 32 ? 4096 : n == 1000 ? 8000 : n;
    auto fill = [=, &src] {
        if ( data->keys.size() )
            return;
        std::vector<Src> s( src.begin(), src.begin() + long( pool ) );
        for ( auto &x : s )
            data->keys.push_back( to( x, (K *)nullptr ) );
        for ( size_t i = 0; i < pool; i += n )
            std::sort( s.begin() + long( i ), s.begin() + long( i + n ) );
        for ( auto &x : s )
            data->sorted.push_back( to( x, (K *)nullptr ) );
        for ( size_t i = 0; i < n; ++i )
            data->misses.push_back( to( src[src.size() - 1 - i], (K *)nullptr ) );
        for ( uint64_t seed = 303; data->order.size() < std::max<size_t>( n, 65536 ); ++seed )
            for ( auto j : wl::permutation( n, seed ) )
                data->order.push_back( j );
    };
    std::string at = "_" + std::to_string( n ), k = key;
    int maps = n == 16 ? 20000 : n == 32 ? 10000 : n == 1000 ? 304 : 1;
    int looks = n == 100000 ? 2 : 15;

    auto insert = [=]( bool ascend ) {
        return [=]( Rec &r ) {
            fill();
            auto &keys = ascend ? data->sorted : data->keys;
            std::unique_ptr<M> last;
            per_op( r, double( maps ) * double( n ), [&] {
                for ( int i = 0; i < maps; ++i )
                {
                    last = std::make_unique<M>();
                    auto *k = &keys[size_t( i ) * n % pool];
                    for ( size_t j = 0; j < n; ++j )
                        last->put( k[j], int64_t( j ) );
                }
            } );
            CHECK( last->get( keys[size_t( maps - 1 ) * n % pool + n / 2] ) == int64_t( n / 2 ) );
        };
    };
    b.add( k + "_insert" + at, peer, insert( false ) );
    if ( n >= 1000 )
        b.add( k + "_ascend" + at, peer, insert( true ) );
    b.add( k + "_hit" + at, peer, [=]( Rec &r ) {
        fill();
        M m;
        for ( size_t j : wl::permutation( n, 304 ) )
            m.put( data->keys[j], int64_t( j ) );
        int64_t orders = int64_t( data->order.size() / n );
        per_op( r, double( looks ) * double( data->order.size() ), [&] {
            for ( int i = 0; i < looks; ++i )
            {
                int64_t s = 0;
                for ( auto j : data->order )
                    s += m.get( data->keys[j] );
                CHECK( s == orders * int64_t( n ) * int64_t( n - 1 ) / 2 );
            }
        } );
    } );
    b.add( k + "_miss" + at, peer, [=]( Rec &r ) {
        fill();
        M m;
        for ( size_t j : wl::permutation( n, 304 ) )
            m.put( data->keys[j], int64_t( j ) );
        per_op( r, double( looks ) * double( data->order.size() ), [&] {
            for ( int i = 0; i < looks; ++i )
            {
                int64_t s = 0;
                for ( auto j : data->order )
                    s += m.get( data->misses[j] );
                CHECK( s == -int64_t( data->order.size() ) );
            }
        } );
    } );
    if ( n == 100000 && k == "int" )
        b.add( "int_walk" + at, peer, [=]( Rec &r ) {
            fill();
            M m;
            for ( size_t j = 0; j < n; ++j )
                m.put( data->sorted[j], int64_t( j ) );
            per_op( r, 20.0 * double( n ), [&] {
                for ( int i = 0; i < 20; ++i )
                    CHECK( m.walk() == int64_t( n ) * int64_t( n - 1 ) / 2 );
            } );
        } );
}
