// Area schedule: running small tasks on threads. A task adds 1 to a counter.
//
// roundtrip_1cpu pool of 1 thread, idle; the whole process bound to processor 0. 20000 times: an outside
//                thread posts a task and waits for it on a mutex and condition (Gate, the same for all). us from before the post to after the wait: p50, p99. Measures the software and
//                two thread switches.
// roundtrip_x    the same with the pool's thread on processor 0 and the outside thread on processor 1.
//                Measures the wake-up of a sleeping processor, unless the pool spins.
// roundtrip      the same with no thread bound
// post_1e6_p2    pool of 2. One outside thread makes and posts 1e6 tasks; ns per task from the first post
//                until the last has run. GLib, Qt, libuv take the form that their interface has.
// post_slots_p2  the same with 1024 reusable task records, slot i % 1024; the poster waits (spinning with
//                yield) until a slot's last run is over. This is the form for pre-made processes that
//                schedule again. Every post gives exactly one run.
// self_1e6       one task posts itself again from inside, 1e6 runs; pool of 1; ns per run
// pingpong_p1    two tasks of one pool of 1 thread post each other from inside, 1e6 hops; ns per hop
// pingpong_p2    the same on a pool of 2
// pingpong_x     two tasks, each on its own thread, the threads on processors 0 and 1, post each other;
//                100000 hops; ns per hop
// pingpong_x1    the same with both threads on processor 0
// live_N         one task posts N = 10, 1000, 100000 others from inside, each of which posts itself again, 1e6 runs;
//                pool of 1; ns per run
// fan_p2         one task posts 100 tasks from inside, the last to run posts the next round;
//                10000 rounds; pool of 2; ns per task
//
// limit:mutex_queue is the library's fixed design by hand: a thread with a mutex, a condition, an
// intrusive queue taken as a whole, a wake-up only if the queue was empty, two atomic flags a task.
// limit:private_list is its trail path: append to the running thread's own list, no lock.
// limit:spin is a flag in memory between two spinning threads.
#include "schedule.hpp"
#include <QCoreApplication>
#include <QObject>
#include <QThread>
#include <QThreadPool>
#include <boost/asio/defer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/thread_pool.hpp>
#include <concurrentqueue/blockingconcurrentqueue.h>
#include <deque>
#include <glib.h>
#include <tbb/global_control.h>
#include <tbb/task_arena.h>
#include <uv.h>

namespace asio = boost::asio;
const char *const area_name = "schedule";

// Posting: what the templates below need of a pool.
//   post(f)  run f() once on a thread of the pool; from outside or inside
// f is a small callable: at most three words.

struct AsioPool
{
    asio::thread_pool p;
    explicit AsioPool( int n ) : p( size_t( n ) ) {}
    ~AsioPool()
    {
        p.join();
    }
    template <class F> void post( F f )
    {
        asio::post( p, std::move( f ) );
    }
};

struct AsioIoContext
{ // n threads in run(), n as the concurrency hint
    asio::io_context io;
    asio::executor_work_guard<asio::io_context::executor_type> g = asio::make_work_guard( io );
    std::vector<std::thread> t;
    explicit AsioIoContext( int n ) : io( n )
    {
        for ( int i = 0; i < n; ++i )
            t.emplace_back( [this] { io.run(); } );
    }
    ~AsioIoContext()
    {
        g.reset();
        for ( auto &x : t )
            x.join();
    }
    template <class F> void post( F f )
    {
        asio::post( io, std::move( f ) );
    }
};

struct TbbArena
{
    tbb::task_arena a;
    explicit TbbArena( int n ) : a( n, 0 )
    {
        a.initialize();
    }
    template <class F> void post( F f )
    {
        a.enqueue( std::move( f ) );
    }
};

struct GlibPool
{
    GThreadPool *p;
    static void run( gpointer d, gpointer )
    {
        auto *f = (std::function<void()> *)d;
        ( *f )();
        delete f;
    }
    explicit GlibPool( int n ) : p( g_thread_pool_new( run, nullptr, n, TRUE, nullptr ) ) {}
    ~GlibPool()
    {
        g_thread_pool_free( p, FALSE, TRUE );
    }
    template <class F> void post( F f )
    {
        g_thread_pool_push( p, new std::function<void()>( std::move( f ) ), nullptr );
    }
};

struct GlibMain
{ // one thread with a main loop
    GMainContext *c = g_main_context_new();
    GMainLoop *l = g_main_loop_new( c, FALSE );
    std::thread t;
    explicit GlibMain( int )
    {
        t = std::thread( [this] {
            g_main_context_push_thread_default( c );
            g_main_loop_run( l );
            g_main_context_pop_thread_default( c );
        } );
        while ( !g_main_loop_is_running( l ) )
            std::this_thread::yield();
    }
    ~GlibMain()
    {
        g_main_loop_quit( l );
        t.join();
        g_main_loop_unref( l );
        g_main_context_unref( c );
    }
    template <class F> void post( F f )
    {
        GSource *s = g_idle_source_new();
        g_source_set_priority( s, G_PRIORITY_DEFAULT );
        g_source_set_callback(
            s,
            []( gpointer d ) -> gboolean {
                ( *(std::function<void()> *)d )();
                return FALSE;
            },
            new std::function<void()>( std::move( f ) ),
            []( gpointer d ) { delete (std::function<void()> *)d; } );
        g_source_attach( s, c );
        g_source_unref( s );
    }
};

struct QtPool
{
    QThreadPool p;
    explicit QtPool( int n )
    {
        p.setMaxThreadCount( n );
        p.setExpiryTimeout( -1 );
    }
    ~QtPool()
    {
        p.waitForDone();
    }
    template <class F> void post( F f )
    {
        p.start( std::function<void()>( std::move( f ) ) );
    }
};

struct QtLoop
{ // one thread with an event loop
    QThread t;
    QObject o;
    explicit QtLoop( int )
    {
        o.moveToThread( &t );
        t.start();
    }
    ~QtLoop()
    {
        t.quit();
        t.wait();
    }
    template <class F> void post( F f )
    {
        QMetaObject::invokeMethod( &o, std::move( f ), Qt::QueuedConnection );
    }
};

struct UvLoop
{ // one thread with a loop, an async handle, and a queue beside it as users write it
    uv_loop_t l;
    uv_async_t a;
    std::mutex m;
    std::deque<std::function<void()>> q;
    bool stop = false;
    std::thread t;
    explicit UvLoop( int )
    {
        uv_loop_init( &l );
        uv_async_init( &l, &a, []( uv_async_t *a ) {
            auto *u = (UvLoop *)a->data;
            std::deque<std::function<void()>> q;
            {
                std::lock_guard g( u->m );
                q.swap( u->q );
                if ( u->stop )
                    uv_close( (uv_handle_t *)a, nullptr );
            }
            for ( auto &f : q )
                f();
        } );
        a.data = this;
        t = std::thread( [this] { uv_run( &l, UV_RUN_DEFAULT ); } );
    }
    ~UvLoop()
    {
        {
            std::lock_guard g( m );
            stop = true;
        }
        uv_async_send( &a );
        t.join();
        uv_loop_close( &l );
    }
    template <class F> void post( F f )
    {
        {
            std::lock_guard g( m );
            q.emplace_back( std::move( f ) );
        }
        uv_async_send( &a );
    }
};

struct Moodycamel
{
    moodycamel::BlockingConcurrentQueue<std::function<void()>> q;
    std::vector<std::thread> t;
    explicit Moodycamel( int n )
    {
        for ( int i = 0; i < n; ++i )
            t.emplace_back( [this] {
                std::function<void()> f;
                for ( ;; )
                {
                    q.wait_dequeue( f );
                    if ( !f )
                        return;
                    f();
                }
            } );
    }
    ~Moodycamel()
    {
        for ( size_t i = 0; i < t.size(); ++i )
            q.enqueue( nullptr );
        for ( auto &x : t )
            x.join();
    }
    template <class F> void post( F f )
    {
        q.enqueue( std::function<void()>( std::move( f ) ) );
    }
};

// The library's fixed scheduler by hand.
struct Task
{
    std::atomic<bool> pending{ false }, scheduled{ false };
    std::atomic<uint32_t> count{ 1 };
    Task *next = nullptr;
    void ( *func )( void * ) = nullptr;
    void *arg = nullptr;
};

struct FixedThread
{
    std::mutex m;
    std::condition_variable c;
    Task *first = nullptr, *last = nullptr;
    bool halt = false;
    Task *own = nullptr, *own_last = nullptr;
    bool trail;
    std::thread t;
    static thread_local FixedThread *current;
    explicit FixedThread( bool trail ) : trail( trail ), t( [this] { run(); } ) {}
    ~FixedThread()
    {
        end();
    }
    // Tasks are in use until then: their last run opens a gate before the thread is through with them.
    void end()
    {
        if ( !t.joinable() )
            return;
        {
            std::lock_guard g( m );
            halt = true;
            c.notify_all();
        }
        t.join();
    }
    void schedule( Task *x )
    {
        x->pending.exchange( true );
        if ( x->scheduled.exchange( true ) )
            return;
        x->pending.exchange( false );
        x->count.fetch_add( 1 );
        queue( x );
    }
    void queue( Task *x )
    {
        x->next = nullptr;
        if ( trail && current == this )
        {
            ( own ? own_last->next : own ) = x;
            own_last = x;
            return;
        }
        std::lock_guard g( m );
        if ( first )
        {
            last->next = x;
            last = x;
        }
        else
        {
            first = last = x;
            c.notify_all();
        }
    }
    void execute( Task *x )
    {
        x->pending.exchange( false );
        x->func( x->arg );
        if ( !x->pending.exchange( false ) )
        {
            x->scheduled.exchange( false );
            if ( !x->pending.exchange( false ) || x->scheduled.exchange( true ) )
            {
                x->count.fetch_sub( 1 );
                return;
            }
        }
        queue( x );
    }
    void run()
    {
        current = this;
        Task *batch = nullptr;
        for ( ;; )
        {
            if ( own )
            {
                Task *x = own;
                own = x->next;
                execute( x );
            }
            else if ( batch )
            {
                Task *x = batch;
                batch = x->next;
                execute( x );
            }
            else
            {
                std::unique_lock l( m );
                c.wait( l, [&] { return first || halt; } );
                batch = first;
                first = last = nullptr;
                if ( !batch )
                    return;
            }
        }
    }
};
thread_local FixedThread *FixedThread::current;

// --- Workloads over a pool P

// Some pools start their threads at the first task, so one is run before the binding changes.
template <class P> static void warm( P &p )
{
    Gate g;
    p.post( [&g] { g.set(); } );
    g.wait();
}

template <class P> static void roundtrip( Bench &b, const char *peer )
{
    for ( bool cross : { false, true } )
        b.add( cross ? "roundtrip_x" : "roundtrip_1cpu", peer, [=]( Rec &r ) {
            Bound at( 1 );
            P p( 1 );
            warm( p );
            if ( cross )
                bind( 2 );
            Gate g;
            trips( r, g, [&] { p.post( [&g] { g.set(); } ); } );
        } );
    b.add( "roundtrip", peer, []( Rec &r ) {
        P p( 1 );
        warm( p );
        Gate g;
        trips( r, g, [&] { p.post( [&g] { g.set(); } ); } );
    } );
}

template <class P> static void throughput( Bench &b, const char *peer, int threads )
{
    std::string at = "_p" + std::to_string( threads );
    b.add( "post_1e6" + at, peer, [=]( Rec &r ) {
        P p( threads );
        static std::atomic<int> done;
        done = 0;
        Gate g;
        per_op( r, N, [&] {
            for ( int i = 0; i < N; ++i )
                p.post( [&g] {
                    if ( done.fetch_add( 1 ) + 1 == N )
                        g.set();
                } );
            g.wait();
        } );
    } );
    b.add( "post_slots" + at, peer, [=]( Rec &r ) {
        P p( threads );
        static std::atomic<bool> busy[Slots];
        static std::atomic<int> done;
        done = 0;
        Gate g;
        per_op( r, N, [&] {
            for ( int i = 0; i < N; ++i )
            {
                auto *s = &busy[i % Slots];
                while ( s->load( std::memory_order_acquire ) )
                    std::this_thread::yield();
                s->store( true, std::memory_order_relaxed );
                p.post( [s, &g] {
                    bool last = done.fetch_add( 1 ) + 1 == N;
                    s->store( false, std::memory_order_release );
                    if ( last )
                        g.set();
                } );
            }
            g.wait();
        } );
    } );
}

template <class P> struct Self
{
    P &p;
    Gate &g;
    int n = 0;
    void operator()()
    {
        if ( ++n == N )
            g.set();
        else
            p.post( [this] { ( *this )(); } );
    }
};

template <class P> static void self_post( Bench &b, const char *peer )
{
    b.add( "self_1e6", peer, []( Rec &r ) {
        P p( 1 );
        Gate g;
        Self<P> s{ p, g };
        per_op( r, N, [&] {
            p.post( [&s] { s(); } );
            g.wait();
        } );
        CHECK( s.n == N );
    } );
}

// Of many tasks that post themselves again.
template <class P> struct Live
{
    P &p;
    Gate &g;
    int &left, end;
    void operator()()
    {
        --left;
        if ( left > 0 )
            p.post( [this] { ( *this )(); } );
        else if ( left == end )
            g.set();
    }
};

template <class P> static void live( Bench &b, const char *peer )
{
    for ( int count : { 10, 1000, 100000 } )
        b.add( live_name( count ), peer, [=]( Rec &r ) {
            P p( 1 );
            Gate g;
            int left = N - count + 1;
            std::vector<Live<P>> tasks( size_t( count ), Live<P>{ p, g, left, 1 - count } );
            per_op( r, N, [&] {
                p.post( [&p, &tasks] {
                    for ( auto &task : tasks )
                        p.post( [&task] { task(); } );
                } );
                g.wait();
            } );
        } );
}

template <class P> struct Ping
{
    P &p;
    Gate &g;
    int limit;
    Ping *other = nullptr;
    static inline int n;
    void operator()()
    {
        if ( ++n == limit )
            g.set();
        else
            other->p.post( [o = other] { ( *o )(); } );
    }
};

template <class P> static void pingpong( Bench &b, const char *peer, int threads )
{
    b.add( "pingpong_p" + std::to_string( threads ), peer, [=]( Rec &r ) {
        P p( threads );
        Gate g;
        Ping<P> x{ p, g, N }, y{ p, g, N };
        x.other = &y;
        y.other = &x;
        Ping<P>::n = 0;
        per_op( r, N, [&] {
            p.post( [&x] { x(); } );
            g.wait();
        } );
    } );
}

template <class P> static void cross( Bench &b, const char *peer )
{
    for ( bool one : { false, true } )
        b.add( one ? "pingpong_x1" : "pingpong_x", peer, [=]( Rec &r ) {
            Bound at( 1 );
            P p( 1 );
            warm( p );
            if ( !one )
                bind( 2 );
            P q( 1 );
            warm( q );
            Gate g;
            Ping<P> x{ p, g, Cross }, y{ q, g, Cross };
            x.other = &y;
            y.other = &x;
            Ping<P>::n = 0;
            per_op( r, Cross, [&] {
                p.post( [&x] { x(); } );
                g.wait();
            } );
        } );
}

template <class P> static void fan( Bench &b, const char *peer, int threads )
{
    b.add( "fan_p" + std::to_string( threads ), peer, [=]( Rec &r ) {
        P p( threads );
        Gate g;
        static std::atomic<int> left;
        static int rounds;
        static std::function<void()> start, item;
        rounds = 0;
        item = [&] {
            if ( left.fetch_sub( 1 ) == 1 )
            {
                if ( ++rounds == 10000 )
                    g.set();
                else
                    p.post( [] { start(); } );
            }
        };
        start = [&] {
            left = 100;
            for ( int i = 0; i < 100; ++i )
                p.post( [] { item(); } );
        };
        per_op( r, 1e6, [&] {
            p.post( [] { start(); } );
            g.wait();
        } );
    } );
}

// Strands keep the tasks of one object in order, as a process is in order with itself.
static void asio_strands( Bench &b )
{
    for ( int threads : { 1, 2 } )
        b.add( "pingpong_p" + std::to_string( threads ), "asio_two_strands", [=]( Rec &r ) {
            asio::thread_pool p{ size_t( threads ) };
            auto s = asio::make_strand( p ), t = asio::make_strand( p );
            Gate g;
            int n = 0;
            std::function<void()> ping, pong;
            ping = [&] {
                if ( ++n == N )
                    g.set();
                else
                    asio::post( t, [&] { pong(); } );
            };
            pong = [&] {
                if ( ++n == N )
                    g.set();
                else
                    asio::post( s, [&] { ping(); } );
            };
            per_op( r, N, [&] {
                asio::post( s, [&] { ping(); } );
                g.wait();
            } );
            p.join();
        } );
    b.add( "self_1e6", "asio_defer", []( Rec &r ) {
        asio::thread_pool p( 1 );
        Gate g;
        int n = 0;
        std::function<void()> f = [&] {
            if ( ++n == N )
                g.set();
            else
                asio::defer( p, [&] { f(); } );
        };
        per_op( r, N, [&] {
            asio::post( p, [&] { f(); } );
            g.wait();
        } );
        p.join();
    } );
}

static void uv_idle( Bench &b )
{
    b.add( "self_1e6", "uv_idle_handle", []( Rec &r ) {
        uv_loop_t l;
        uv_loop_init( &l );
        uv_idle_t h;
        static int n;
        n = 0;
        uv_idle_init( &l, &h );
        uv_idle_start( &h, []( uv_idle_t *h ) {
            if ( ++n == N )
                uv_idle_stop( h );
        } );
        per_op( r, N, [&] { uv_run( &l, UV_RUN_DEFAULT ); } );
        uv_close( (uv_handle_t *)&h, nullptr );
        uv_run( &l, UV_RUN_DEFAULT );
        uv_loop_close( &l );
    } );
    b.add( "self_1e6", "glib_idle_source", []( Rec &r ) {
        GMainContext *c = g_main_context_new();
        GSource *s = g_idle_source_new();
        static int n;
        n = 0;
        g_source_set_callback(
            s, []( gpointer ) -> gboolean { return ++n < N; }, nullptr, nullptr );
        g_source_attach( s, c );
        per_op( r, N, [&] {
            while ( n < N )
                g_main_context_iteration( c, FALSE );
        } );
        g_source_unref( s );
        g_main_context_unref( c );
    } );
}

static void fixed_design( Bench &b )
{
    for ( std::string workload : { "roundtrip", "roundtrip_1cpu", "roundtrip_x" } )
        b.add( workload, "limit:mutex_queue", [=]( Rec &r ) {
            Bound at( workload == "roundtrip" ? ~0ul : 1 );
            FixedThread t( false );
            if ( workload == "roundtrip_x" )
                bind( 2 );
            Gate g;
            Task x;
            x.func = []( void *g ) { ( (Gate *)g )->set(); };
            x.arg = &g;
            trips( r, g, [&] { t.schedule( &x ); } );
            t.end();
        } );
    b.add( "roundtrip_x", "limit:spin", []( Rec &r ) {
        Bound at( 1 );
        std::atomic<int> req{ 0 }, ack{ 0 };
        std::thread t( [&] {
            for ( int i = 1; i <= Trips; ++i )
            {
                while ( req.load( std::memory_order_acquire ) != i )
                    __builtin_ia32_pause();
                ack.store( i, std::memory_order_release );
            }
        } );
        bind( 2 );
        std::vector<double> us;
        for ( int i = 1; i <= Trips; ++i )
        {
            uint64_t t0 = now_ns();
            req.store( i, std::memory_order_release );
            while ( ack.load( std::memory_order_acquire ) != i )
                __builtin_ia32_pause();
            us.push_back( double( now_ns() - t0 ) / 1e3 );
        }
        t.join();
        r( "us_p50", percentile( us, 0.5 ) );
        r( "us_p99", percentile( us, 0.99 ) );
    } );
    struct Slot
    {
        Task t;
        std::atomic<bool> busy{ false };
        std::atomic<int> *done;
        Gate *g;
    };
    auto slots = []( Rec &r, size_t count ) {
        std::vector<std::unique_ptr<FixedThread>> th;
        for ( int i = 0; i < 2; ++i )
            th.push_back( std::make_unique<FixedThread>( false ) );
        std::atomic<int> done{ 0 };
        Gate g;
        std::vector<Slot> v( count );
        for ( auto &s : v )
        {
            s.done = &done;
            s.g = &g;
            s.t.arg = &s;
            s.t.func = []( void *p ) {
                auto *s = (Slot *)p;
                bool last = s->done->fetch_add( 1 ) + 1 == N;
                s->busy.store( false, std::memory_order_release );
                if ( last )
                    s->g->set();
            };
        }
        per_op( r, N, [&] {
            for ( int i = 0; i < N; ++i )
            {
                auto &s = v[size_t( i ) % count];
                while ( s.busy.load( std::memory_order_acquire ) || s.t.scheduled.load() )
                    std::this_thread::yield();
                s.busy.store( true, std::memory_order_relaxed );
                th[size_t( i & 1 )]->schedule( &s.t );
            }
            g.wait();
        } );
        th.clear();
    };
    b.add( "post_slots_p2", "limit:mutex_queue", [=]( Rec &r ) { slots( r, Slots ); } );
    b.add( "post_1e6_p2", "limit:mutex_queue", [=]( Rec &r ) { slots( r, N ); } );
    struct S
    {
        FixedThread *t;
        Task x;
        Gate *g;
        int *left, end;
    };
    for ( const char *name : { "limit:mutex_queue", "limit:private_list" } )
    {
        bool trail = strstr( name, "private_list" );
        auto again = [=]( Rec &r, int count ) {
            FixedThread t( trail );
            Gate g;
            int left = N - count + 1;
            std::vector<S> v( static_cast<size_t>( count ) );
            for ( auto &s : v )
            {
                s.t = &t;
                s.g = &g;
                s.left = &left;
                s.end = 1 - count;
                s.x.arg = &s;
                s.x.func = []( void *p ) {
                    auto *s = (S *)p;
                    if ( --*s->left > 0 )
                        s->t->schedule( &s->x );
                    else if ( *s->left == s->end )
                        s->g->set();
                };
            }
            Task start;
            start.arg = &v;
            start.func = []( void *p ) {
                for ( auto &s : *(std::vector<S> *)p )
                    s.t->schedule( &s.x );
            };
            per_op( r, N, [&] {
                t.schedule( &start );
                g.wait();
            } );
            t.end();
        };
        b.add( "self_1e6", name, [=]( Rec &r ) { again( r, 1 ); } );
        for ( int count : { 10, 1000, 100000 } )
            b.add( live_name( count ), name, [=]( Rec &r ) { again( r, count ); } );
        struct P
        {
            FixedThread *t;
            Task x;
            Gate *g;
            P *other;
            int *n, limit;
        };
        auto run = [=]( Rec &r, FixedThread &t, FixedThread &u, int limit ) {
            Gate g;
            int n = 0;
            P a{ &t, {}, &g, nullptr, &n, limit }, c{ &u, {}, &g, &a, &n, limit };
            a.other = &c;
            for ( auto *p : { &a, &c } )
            {
                p->x.arg = p;
                p->x.func = []( void *v ) {
                    auto *p = (P *)v;
                    if ( ++*p->n == p->limit )
                        p->g->set();
                    else
                        p->other->t->schedule( &p->other->x );
                };
            }
            per_op( r, limit, [&] {
                t.schedule( &a.x );
                g.wait();
            } );
            t.end();
            u.end();
        };
        b.add( "pingpong_p1", name, [=]( Rec &r ) {
            FixedThread t( trail );
            run( r, t, t, N );
        } );
        if ( !trail )
            for ( bool one : { false, true } )
                b.add( one ? "pingpong_x1" : "pingpong_x", name, [=]( Rec &r ) {
                    Bound at( 1 );
                    FixedThread t( false );
                    if ( !one )
                        bind( 2 );
                    FixedThread u( false );
                    run( r, t, u, Cross );
                } );
    }
}

template <class P> static void pool( Bench &b, const char *peer )
{
    roundtrip<P>( b, peer );
    throughput<P>( b, peer, 2 );
    self_post<P>( b, peer );
    live<P>( b, peer );
    pingpong<P>( b, peer, 1 );
    pingpong<P>( b, peer, 2 );
    fan<P>( b, peer, 2 );
}

template <class P> static void loop( Bench &b, const char *peer )
{
    roundtrip<P>( b, peer );
    self_post<P>( b, peer );
    live<P>( b, peer );
    pingpong<P>( b, peer, 1 );
    cross<P>( b, peer );
}

void register_peers( Bench &b )
{
    static tbb::global_control workers( tbb::global_control::max_allowed_parallelism, 3 );
    static int argc = 1;
    static char name[] = "peers", *argv[] = { name, nullptr };
    static QCoreApplication app( argc, argv );
    fixed_design( b );
    pool<AsioPool>( b, "asio_thread_pool" );
    cross<AsioPool>( b, "asio_thread_pool" );
    loop<AsioIoContext>( b, "asio_io_context" );
    asio_strands( b );
    pool<TbbArena>( b, "tbb_arena" );
    pool<GlibPool>( b, "glib_thread_pool" );
    cross<GlibPool>( b, "glib_thread_pool" );
    loop<GlibMain>( b, "glib_main_loop" );
    pool<QtPool>( b, "qt6_thread_pool" );
    loop<QtLoop>( b, "qt6_event_loop" );
    loop<UvLoop>( b, "uv_async_queue" );
    uv_idle( b );
    pool<Moodycamel>( b, "moodycamel_blocking" );
}
