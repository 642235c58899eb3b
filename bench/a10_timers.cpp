// Area timers: one-shot timers.
//
// arm_cancel_N  arm_ns: make and arm N = 10000 or 100000 timers due in 1000 + k ms, k pseudo-random below 60000 (seed 1001);
//               ns per timer. The loop of the peer runs in another thread where the peer allows arming
//               from outside (asio, GLib); the others are armed on the loop's own thread.
//               cancel_ns: then cancel all, in random order (seed 1002), and destroy them; ns per timer
// rearm_1e5     with 1000 timers armed, re-arm timer i % 1000 to a new due time, 100000 times; ns per re-arm
// cancel_1000   arm 1000 timers and cancel them in random order (seed 1004), 100 times; ns per cancel, the arming not counted
// fire          1000 timers due in 1 to 50 ms (1 + k % 50 after seed 1003), armed in one go; each records
//               its time at firing. Lateness is that minus (time of arming + delay), per timer:
//               us_p50, us_p99, us_min (negative: early).
#include "timers.hpp"
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <event2/event.h>
#include <glib.h>
#include <memory>
#include <optional>
#include <set>
#include <uv.h>

namespace asio = boost::asio;
const char *const area_name = "timers";

struct Asio
{
    static constexpr bool many = true;
    asio::io_context io;
    asio::executor_work_guard<asio::io_context::executor_type> g = asio::make_work_guard( io );
    std::thread th{ [this] { io.run(); } };
    struct T
    {
        std::optional<asio::steady_timer> t;
        Shot *s;
    };
    ~Asio()
    {
        g.reset();
        io.stop();
        th.join();
    }
    void make( T &t, Shot *s )
    {
        t.t.emplace( io );
        t.s = s;
    }
    void arm( T &t, int ms )
    {
        t.t->expires_after( std::chrono::milliseconds( ms ) );
        t.t->async_wait( [s = t.s]( const boost::system::error_code &e ) {
            if ( !e )
                s->fire();
        } );
    }
    void cancel( T &t )
    {
        t.t->cancel();
    }
    void destroy( T &t )
    {
        t.t.reset();
    }
    void wait()
    {
        while ( Shot::left )
            std::this_thread::sleep_for( std::chrono::milliseconds( 1 ) );
    }
};

struct Glib
{
    static constexpr bool many = false; // every attach makes the loop look at all sources
    GMainContext *c = g_main_context_new();
    GMainLoop *l = g_main_loop_new( c, FALSE );
    std::thread th{ [this] { g_main_loop_run( l ); } };
    struct T
    {
        GSource *s = nullptr;
        Shot *shot;
    };
    Glib()
    {
        while ( !g_main_loop_is_running( l ) )
            std::this_thread::yield();
    }
    ~Glib()
    {
        g_main_loop_quit( l );
        th.join();
        g_main_loop_unref( l );
        g_main_context_unref( c );
    }
    void make( T &t, Shot *s )
    {
        t.shot = s;
    }
    void arm( T &t, int ms )
    {
        if ( t.s )
        {
            cancel( t );
            destroy( t );
        }
        t.s = g_timeout_source_new( guint( ms ) );
        g_source_set_callback(
            t.s,
            []( gpointer s ) -> gboolean {
                ( (Shot *)s )->fire();
                return FALSE;
            },
            t.shot, nullptr );
        g_source_attach( t.s, c );
    }
    void cancel( T &t )
    {
        g_source_destroy( t.s );
    }
    void destroy( T &t )
    {
        g_source_unref( t.s );
        t.s = nullptr;
    }
    void wait()
    {
        while ( Shot::left )
            std::this_thread::sleep_for( std::chrono::milliseconds( 1 ) );
    }
};

struct Uv
{
    static constexpr bool many = true;
    uv_loop_t l;
    using T = uv_timer_t;
    Uv()
    {
        uv_loop_init( &l );
    }
    ~Uv()
    {
        uv_run( &l, UV_RUN_DEFAULT );
        uv_loop_close( &l );
    }
    void make( T &t, Shot *s )
    {
        uv_timer_init( &l, &t );
        t.data = s;
        uv_update_time( &l );
    }
    void arm( T &t, int ms )
    {
        uv_timer_start(
            &t, []( uv_timer_t *t ) { ( (Shot *)t->data )->fire(); }, uint64_t( ms ), 0 );
    }
    void cancel( T &t )
    {
        uv_timer_stop( &t );
    }
    void destroy( T &t )
    {
        uv_close( (uv_handle_t *)&t, nullptr );
    }
    void settle()
    {
        uv_run( &l, UV_RUN_NOWAIT );
    }
    void wait()
    {
        while ( Shot::left )
            uv_run( &l, UV_RUN_ONCE );
    }
};

struct Ev
{
    static constexpr bool many = true;
    event_base *e = make_base();
    static event_base *make_base()
    {
        event_config *c = event_config_new();
        event_config_set_flag( c, EVENT_BASE_FLAG_PRECISE_TIMER );
        event_base *e = event_base_new_with_config( c );
        event_config_free( c );
        return e;
    }
    using T = event *;
    ~Ev()
    {
        event_base_free( e );
    }
    void make( T &t, Shot *s )
    {
        t = event_new(
            e, -1, 0, []( int, short, void *s ) { ( (Shot *)s )->fire(); }, s );
    }
    void arm( T &t, int ms )
    {
        timeval tv{ ms / 1000, ms % 1000 * 1000 };
        event_add( t, &tv );
    }
    void cancel( T &t )
    {
        event_del( t );
    }
    void destroy( T &t )
    {
        event_free( t );
    }
    void wait()
    {
        while ( Shot::left )
            event_base_loop( e, EVLOOP_ONCE );
    }
};

struct Qt6
{
    static constexpr bool many = false; // its list is searched from one end
    using T = std::unique_ptr<QTimer>;
    void make( T &t, Shot *s )
    {
        t = std::make_unique<QTimer>();
        t->setSingleShot( true );
        t->setTimerType( Qt::PreciseTimer );
        QObject::connect( t.get(), &QTimer::timeout, [s] { s->fire(); } );
    }
    void arm( T &t, int ms )
    {
        t->start( ms );
    }
    void cancel( T &t )
    {
        t->stop();
    }
    void destroy( T &t )
    {
        t.reset();
    }
    void wait()
    {
        QEventLoop l;
        while ( Shot::left )
            l.processEvents( QEventLoop::WaitForMoreEvents );
    }
};

// limit: an ordered set of (due, timer) and sleeping to the nanosecond on one thread
struct Set
{
    static constexpr bool many = true;
    struct T
    {
        uint64_t due = 0;
        Shot *s;
    };
    std::set<std::pair<uint64_t, T *>> q;
    void make( T &t, Shot *s )
    {
        t.s = s;
    }
    void arm( T &t, int ms )
    {
        if ( t.due )
            cancel( t );
        t.due = now_ns() + uint64_t( ms ) * 1000000;
        q.emplace( t.due, &t );
    }
    void cancel( T &t )
    {
        q.erase( { t.due, &t } );
        t.due = 0;
    }
    void destroy( T & ) {}
    void wait()
    {
        while ( !q.empty() )
        {
            auto [at, t] = *q.begin();
            if ( at > now_ns() )
            {
                timespec ts{ time_t( at / 1000000000 ), long( at % 1000000000 ) };
                clock_nanosleep( CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr );
            }
            q.erase( q.begin() );
            t->due = 0;
            t->s->fire();
        }
    }
};

void register_peers( Bench &b )
{
    static int argc = 1;
    static char name[] = "peers", *argv[] = { name, nullptr };
    static QCoreApplication app( argc, argv );
    loop<Set>( b, "limit:std_set_nanosleep" );
    loop<Asio>( b, "asio_steady_timer" );
    loop<Uv>( b, "uv_timer" );
    loop<Ev>( b, "libevent_timer" );
    loop<Glib>( b, "glib_timeout_source" );
    loop<Qt6>( b, "qt6_qtimer" );
}
