// The inputs and the timing of the area charset.
#pragma once
#include "bench.hpp"
#include "workloads.hpp"
#include <memory>

using namespace bench;

struct Text
{
    std::string bytes;
    std::u32string cps;
    std::u16string u16;
};

template <class F>
static void add( Bench &b, const std::string &w, const char *peer, std::shared_ptr<Text> t, F f )
{
    int reps = t->bytes.size() > 100000 ? 1 : 128;
    b.add( w, peer, [=]( Rec &r ) {
        mb_per_s( r, double( t->bytes.size() ) * reps, [&] {
            for ( int i = 0; i < reps; ++i )
                f( *t );
        } );
    } );
}

// A new array without initialization.
template <class T> struct Array
{
    T *p;
    explicit Array( size_t n ) : p( (T *)malloc( n * sizeof( T ) ) ) {}
    ~Array()
    {
        free( p );
    }
    Array( const Array & ) = delete;
};

inline void check( const char32_t *p, size_t n, const Text &t )
{
    CHECK( n == t.cps.size() && p[0] == t.cps[0] && p[n / 2] == t.cps[n / 2] && p[n - 1] == t.cps[n - 1] );
}

inline void check8( const char *p, size_t n, const Text &t )
{
    CHECK( n == t.bytes.size() && p[0] == t.bytes[0] && p[n / 2] == t.bytes[n / 2] &&
           p[n - 1] == t.bytes[n - 1] );
}
