// The workloads of the area schedule.
#pragma once
#include "bench.hpp"
#include <condition_variable>
#include <mutex>
#include <sched.h>

using namespace bench;

struct Gate
{
    std::mutex m;
    std::condition_variable c;
    bool open = false;
    void set()
    {
        std::lock_guard l( m );
        open = true;
        c.notify_one();
    }
    void wait()
    {
        std::unique_lock l( m );
        c.wait( l, [&] { return open; } );
        open = false;
    }
};

static const int N = 1000000, Slots = 1024, Trips = 20000, Cross = 100000;

// Binds the calling thread, and with it the threads that it starts, to the processors of the mask.
inline void bind( unsigned long mask )
{
    cpu_set_t set;
    CPU_ZERO( &set );
    for ( int i = 0; i < 64; ++i )
        if ( mask >> i & 1 )
            CPU_SET( i, &set );
    CHECK( sched_setaffinity( 0, sizeof set, &set ) == 0 );
}

// Binds for as long as it lives.
struct Bound
{
    explicit Bound( unsigned long mask )
    {
        bind( mask );
    }
    ~Bound()
    {
        bind( ~0ul );
    }
};

// post() leads to a g.set().
template <class Post> inline void trips( Rec &r, Gate &g, Post post )
{
    std::vector<double> us;
    for ( int i = 0; i < Trips; ++i )
    {
        uint64_t t0 = now_ns();
        post();
        g.wait();
        us.push_back( double( now_ns() - t0 ) / 1e3 );
    }
    r( "us_p50", percentile( us, 0.5 ) );
    r( "us_p99", percentile( us, 0.99 ) );
}

inline std::string live_name( int count )
{
    return "live_" + std::to_string( count );
}
