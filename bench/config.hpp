// The inputs and the timing of the area config.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"
#include <memory>

using namespace bench;

inline const wl::Config &conf()
{
    static auto c = wl::config( 801 );
    return c;
}
inline const int Keys = 20000;

struct Key
{
    std::string section, part, both, name;
    size_t at;
};

inline const std::vector<Key> &keys()
{
    static std::vector<Key> v = [] {
        std::vector<Key> v;
        for ( int i = 0; i < 20; ++i )
            for ( int j = 0; j < 10; ++j )
                for ( int k = 0; k < 100; ++k )
                {
                    auto s = wl::Config::section( i ), p = wl::Config::subsection( j );
                    size_t at = conf().at( i, j, k );
                    v.push_back( { s, p, s + "." + p, conf().names[at], at } );
                }
        return v;
    }();
    return v;
}

inline size_t total()
{
    size_t n = 0;
    for ( auto &v : conf().values )
        n += v.text.size();
    return n;
}

static void parse(
    Bench &b, const char *peer, const std::string &text,
    std::function<std::shared_ptr<void>( const std::string & )> f, std::function<void()> prepare = [] {} )
{
    b.add( "parse", peer, [=]( Rec &r ) {
        prepare();
        size_t h0 = heap_live();
        uint64_t t0 = now_ns();
        auto t = f( text );
        uint64_t t1 = now_ns();
        r( "bytes_per_key", ( double( heap_live() ) - double( h0 ) ) / Keys );
        r( "ns_per_key", double( t1 - t0 ) / Keys );
        r( "MB_per_s", double( text.size() ) * 1e3 / double( t1 - t0 ) );
    } );
}

// get(key) gives the length of the value's text
static void lookup( Bench &b, const char *peer, std::function<size_t( const Key & )> get )
{
    b.add( "lookup", peer, [=]( Rec &r ) {
        auto order = wl::permutation( Keys, 802 );
        auto &k = keys();
        per_op(
            r, Keys,
            [&] {
                size_t n = 0;
                for ( auto i : order )
                    n += get( k[i] );
                CHECK( n == total() );
            },
            "ns_per_key" );
    } );
}

static void timed( Bench &b, const char *w, const char *peer, std::function<void()> f )
{
    b.add( w, peer, [=]( Rec &r ) { per_op( r, Keys, f, "ns_per_key" ); } );
}
