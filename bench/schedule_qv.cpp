// The library's cases of the area schedule. "qv" runs in a domain with trail optimization where the tasks post each other
// from inside, "qv_no_trail" in one without; a post from outside takes the same way in both.
#include "schedule.hpp"
#include "qv_case.hpp"
#include <qv/runtime/qv_author.h>

// A process's closure, which points at what the case has on its stack.
typedef struct BenchPointer BENCH_POINTER;
struct BenchPointer : qv___Obj
{
    void *to;
};
QV_SORT_FUNCTIONS( BENCH_POINTER, benchPointer )
QV_SORT_DEFINE( BENCH_POINTER, benchPointer, {} )

namespace
{

using Domain = Held<QV_PROCESS_DOMAIN, qvProcessDomainRelease>;
using Options = Held<QV_PROCESS_DOMAIN_OPTIONS, qvProcessDomainOptionsRelease>;

QV_PROCESS_DOMAIN *create_domain( int threads, bool trail )
{
    Options options( qvProcessDomainOptionsCreate() );
    qvProcessDomainOptionsSetThreadCount( options.edit(), threads );
    qvProcessDomainOptionsSetTrailOptimization( options.edit(), trail );
    String name( string_of( std::string( "BENCH" ) ) );
    QV_PROCESS_DOMAIN *domain = qvProcessDomainTryCreate( options, name );
    CHECK( domain );
    return domain;
}

template <class T> void call( qvObj closure )
{
    ( *static_cast<T *>( benchPointerFrom( closure )->to ) )();
}

// A process that calls a task, a callable that outlives it.
template <class T> QV_PROCESS *create_process( QV_PROCESS_DOMAIN *domain, QV_STRING *name, T *task )
{
    auto *closure =
        static_cast<BENCH_POINTER *>( qv___ObjCreate( sizeof( BENCH_POINTER ), benchPointerSort() ) );
    closure->to = task;
    QV_PROCESS *process = qvProcessCreateWithDomain( domain, call<T>, closure, name );
    benchPointerRelease( closure );
    return process;
}

// The process of a task.
struct Process : Held<QV_PROCESS, qvProcessRelease>
{
    template <class T> Process( QV_PROCESS_DOMAIN *domain, T *task )
    {
        String name( string_of( std::string( "task" ) ) );
        it = create_process( domain, name, task );
    }
    void post() const
    {
        qvProcessSchedule( it );
    }
};

struct Open
{
    Gate &g;
    void operator()()
    {
        g.set();
    }
};

void roundtrip( Rec &r, bool cross, bool bound )
{
    Bound at( bound ? 1 : ~0ul );
    Domain domain( create_domain( 1, false ) );
    Gate g;
    Open open{ g };
    Process process( domain, &open );
    process.post();
    g.wait();
    if ( cross )
        bind( 2 );
    trips( r, g, [&] { process.post(); } );
}

struct Count
{
    std::atomic<int> &done;
    Gate &g;
    void operator()()
    {
        if ( done.fetch_add( 1 ) + 1 == N )
            g.set();
    }
};

// A process is made for each post, and gone after its run.
void post_new( Rec &r )
{
    Domain domain( create_domain( 2, false ) );
    String name( string_of( std::string( "task" ) ) );
    Gate g;
    std::atomic<int> done{ 0 };
    Count count{ done, g };
    per_op( r, N, [&] {
        for ( int i = 0; i < N; ++i )
        {
            QV_PROCESS *process = create_process( domain, name, &count );
            qvProcessSchedule( process );
            qvProcessRelease( process );
        }
        g.wait();
    } );
}

struct Slot
{
    std::atomic<bool> busy{ false };
    std::atomic<int> &done;
    Gate &g;
    Process process;
    Slot( QV_PROCESS_DOMAIN *domain, std::atomic<int> &d, Gate &gate )
        : done( d ), g( gate ), process( domain, this )
    {
    }
    void operator()()
    {
        bool last = done.fetch_add( 1 ) + 1 == N;
        busy.store( false, std::memory_order_release );
        if ( last )
            g.set();
    }
};

void post_slots( Rec &r )
{
    Domain domain( create_domain( 2, false ) );
    Gate g;
    std::atomic<int> done{ 0 };
    std::vector<std::unique_ptr<Slot>> slots;
    for ( int i = 0; i < Slots; ++i )
        slots.push_back( std::make_unique<Slot>( domain, done, g ) );
    per_op( r, N, [&] {
        for ( int i = 0; i < N; ++i )
        {
            Slot &s = *slots[i % Slots];
            while ( s.busy.load( std::memory_order_acquire ) )
                std::this_thread::yield();
            s.busy.store( true, std::memory_order_relaxed );
            s.process.post();
        }
        g.wait();
    } );
}

// One of several that post themselves again, until there have been enough runs of all together.
struct Self
{
    Gate &g;
    int &left, end;
    Process process;
    Self( QV_PROCESS_DOMAIN *domain, Gate &gate, int &n, int count )
        : g( gate ), left( n ), end( 1 - count ), process( domain, this )
    {
    }
    void operator()()
    {
        --left;
        if ( left > 0 )
            process.post();
        else if ( left == end )
            g.set();
    }
};

void self_post( Rec &r, bool trail )
{
    Domain domain( create_domain( 1, trail ) );
    Gate g;
    int left = N;
    Self self( domain, g, left, 1 );
    per_op( r, N, [&] {
        self.process.post();
        g.wait();
    } );
}

struct Start
{
    std::vector<std::unique_ptr<Self>> &tasks;
    void operator()()
    {
        for ( auto &task : tasks )
            task->process.post();
    }
};

void live( Rec &r, bool trail, int count )
{
    Domain domain( create_domain( 1, trail ) );
    Gate g;
    int left = N - count + 1;
    std::vector<std::unique_ptr<Self>> tasks;
    for ( int i = 0; i < count; ++i )
        tasks.push_back( std::make_unique<Self>( domain, g, left, count ) );
    Start start{ tasks };
    Process starter( domain, &start );
    per_op( r, N, [&] {
        starter.post();
        g.wait();
    } );
}

struct Ping
{
    Gate &g;
    int &left;
    Process process;
    Ping *other = nullptr;
    Ping( QV_PROCESS_DOMAIN *domain, Gate &gate, int &n ) : g( gate ), left( n ), process( domain, this ) {}
    void operator()()
    {
        if ( --left == 0 )
            g.set();
        else
            other->process.post();
    }
};

void pingpong( Rec &r, QV_PROCESS_DOMAIN *one, QV_PROCESS_DOMAIN *two, int hops )
{
    Gate g;
    int left = hops;
    Ping ping( one, g, left ), pong( two, g, left );
    ping.other = &pong;
    pong.other = &ping;
    per_op( r, hops, [&] {
        ping.process.post();
        g.wait();
    } );
}

void pingpong_apart( Rec &r, bool same )
{
    Bound at( 1 );
    Domain one( create_domain( 1, true ) );
    if ( !same )
        bind( 2 );
    Domain two( create_domain( 1, true ) );
    pingpong( r, one, two, Cross );
}

struct Fan
{
    struct Item
    {
        Fan &fan;
        Process process;
        Item( QV_PROCESS_DOMAIN *domain, Fan &f ) : fan( f ), process( domain, this ) {}
        void operator()()
        {
            fan.end();
        }
    };
    Gate &g;
    Process process;
    std::vector<std::unique_ptr<Item>> items;
    std::atomic<int> left{ 0 };
    int rounds = 0;
    Fan( QV_PROCESS_DOMAIN *domain, Gate &gate ) : g( gate ), process( domain, this )
    {
        for ( int i = 0; i < 100; ++i )
            items.push_back( std::make_unique<Item>( domain, *this ) );
    }
    void operator()()
    {
        left = 100;
        for ( auto &item : items )
            item->process.post();
    }
    void end()
    {
        if ( left.fetch_sub( 1 ) != 1 )
            return;
        if ( ++rounds == 10000 )
            g.set();
        else
            process.post();
    }
};

void fan_out( Rec &r, bool trail )
{
    Domain domain( create_domain( 2, trail ) );
    Gate g;
    Fan fan( domain, g );
    per_op( r, 1e6, [&] {
        fan.process.post();
        g.wait();
    } );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    b.add( "roundtrip", "qv", []( Rec &r ) { roundtrip( r, false, false ); } );
    b.add( "roundtrip_1cpu", "qv", []( Rec &r ) { roundtrip( r, false, true ); } );
    b.add( "roundtrip_x", "qv", []( Rec &r ) { roundtrip( r, true, true ); } );
    b.add( "post_1e6_p2", "qv", post_new );
    b.add( "post_slots_p2", "qv", post_slots );
    b.add( "pingpong_x", "qv", []( Rec &r ) { pingpong_apart( r, false ); } );
    b.add( "pingpong_x1", "qv", []( Rec &r ) { pingpong_apart( r, true ); } );
    for ( bool trail : { true, false } )
    {
        const char *name = trail ? "qv" : "qv_no_trail";
        b.add( "self_1e6", name, [=]( Rec &r ) { self_post( r, trail ); } );
        for ( int threads : { 1, 2 } )
            b.add( "pingpong_p" + std::to_string( threads ), name, [=]( Rec &r ) {
                Domain domain( create_domain( threads, trail ) );
                pingpong( r, domain, domain, N );
            } );
        b.add( "fan_p2", name, [=]( Rec &r ) { fan_out( r, trail ); } );
        for ( int count : { 10, 1000, 100000 } )
            b.add( live_name( count ), name, [=]( Rec &r ) { live( r, trail, count ); } );
    }
}
