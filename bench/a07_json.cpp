// Area json: documents of 1 MiB: nested.json (objects in objects, 54584 values), numbers.json (a flat array of 85228
// numbers), strings.json (a flat array of 26236 strings). No exponents; \u escapes with capital digits only.
//
// parse_<doc>     bytes to a document tree; MB_per_s of the text. Destroying the tree is not in it:
//                 it has its own metric free_ns_per_value.
//                 bytes_per_value: live heap bytes of the tree (input text not counted) per value.
// compact_<doc>   tree to text without white space; MB_per_s of the text that comes out
// pretty_<doc>    tree to indented text
// read_nested     visit every value of the tree once in order, adding up string lengths (bytes of
//                 UTF-8, or code units of the peer), integers modulo 2^64 and member counts; ns per value
// small_parse     1e4 times a document of 120 bytes, parse and destroy; ns per document
// store_to_json   a store of 20000 values (the configuration of the area config) to a document tree
// json_to_store   the tree to a store
// legacy_write, legacy_read   the store to the older binary form and back; all four ns per value
//
// Verified: the number of values by the generator's count, in the tree and in the text that comes out; that a store
// which went through the other form writes the same text again. The last four are the library's alone.
// jansson, json-glib and Qt have trees that are counted or shared, as the library's is. rapidjson_insitu and
// simdjson_dom are the limits: values point into the text or onto one tape.
#include "json.hpp"
#include "mimalloc_local.hpp"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <boost/json.hpp>
#include <dlfcn.h>
#include <glib-object.h>
#include <jansson.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

using namespace bench;
const char *const area_name = "json";

// Adapters: parse(tree, text), dump(tree, pretty), walk(tree, totals)

struct Nlohmann
{
    using T = nlohmann::json;
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t = T::parse( s );
    }
    static std::string dump( const T &t, bool pretty )
    {
        return t.dump( pretty ? 4 : -1 );
    }
    static void walk( const T &t, Totals &a )
    {
        ++a.values;
        if ( t.is_object() )
        {
            a.members += t.size();
            for ( auto &x : t )
                walk( x, a );
        }
        else if ( t.is_array() )
            for ( auto &x : t )
                walk( x, a );
        else if ( t.is_string() )
            a.text += t.get_ref<const std::string &>().size();
        else if ( t.is_number_integer() )
            a.ints += t.get<uint64_t>();
    }
};

struct Rapid
{
    struct T
    {
        rapidjson::Document d;
        std::string text;
        T() = default;
        T( const T & ) = delete;
    };
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t.emplace();
        t->d.Parse( s.data(), s.size() );
        CHECK( !t->d.HasParseError() );
    }
    static std::string dump( const T &t, bool pretty )
    {
        rapidjson::StringBuffer b;
        if ( pretty )
        {
            rapidjson::PrettyWriter<rapidjson::StringBuffer> w( b );
            t.d.Accept( w );
        }
        else
        {
            rapidjson::Writer<rapidjson::StringBuffer> w( b );
            t.d.Accept( w );
        }
        return std::string( b.GetString(), b.GetSize() );
    }
    static void walk( const T &t, Totals &a )
    {
        walk( static_cast<const rapidjson::Value &>( t.d ), a );
    }
    static void walk( const rapidjson::Value &v, Totals &a )
    {
        ++a.values;
        if ( v.IsObject() )
        {
            a.members += v.MemberCount();
            for ( auto &m : v.GetObject() )
                walk( m.value, a );
        }
        else if ( v.IsArray() )
            for ( auto &x : v.GetArray() )
                walk( x, a );
        else if ( v.IsString() )
            a.text += v.GetStringLength();
        else if ( v.IsInt64() )
            a.ints += uint64_t( v.GetInt64() );
    }
};

struct RapidInsitu : Rapid
{
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t.emplace();
        t->text = s;
        t->d.ParseInsitu( t->text.data() );
        CHECK( !t->d.HasParseError() );
    }
};

namespace bj = boost::json;
struct Boost
{
    using T = bj::value;
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t = bj::parse( s );
    }
    static std::string dump( const T &t, bool pretty )
    {
        return pretty ? std::string() : bj::serialize( t );
    }
    static void walk( const T &t, Totals &a )
    {
        ++a.values;
        if ( auto *o = t.if_object() )
        {
            a.members += o->size();
            for ( auto &m : *o )
                walk( m.value(), a );
        }
        else if ( auto *r = t.if_array() )
            for ( auto &x : *r )
                walk( x, a );
        else if ( auto *s = t.if_string() )
            a.text += s->size();
        else if ( auto *i = t.if_int64() )
            a.ints += uint64_t( *i );
        else if ( auto *u = t.if_uint64() )
            a.ints += *u;
    }
};

struct BoostMono
{
    struct T
    {
        bj::monotonic_resource mr;
        bj::value v;
        explicit T( const std::string &s ) : v( bj::parse( s, &mr ) ) {}
        T( const T & ) = delete;
    };
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t.emplace( s );
    }
    static std::string dump( const T &t, bool pretty )
    {
        return pretty ? std::string() : bj::serialize( t.v );
    }
    static void walk( const T &t, Totals &a )
    {
        Boost::walk( t.v, a );
    }
};

// jansson and json-glib export functions of the same names, so json-glib is loaded by hand and keeps
// its names to itself.
struct JsonGlib
{
    using Node = void *;
    struct Api
    {
        void *h = dlopen( "libjson-glib-1.0.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND );
        template <class F> F *get( const char *name )
        {
            CHECK( h );
            auto *f = (F *)dlsym( h, name );
            CHECK( f );
            return f;
        }
        void *( *parser_new )() = get<void *()>( "json_parser_new_immutable" );
        int ( *load )( void *, const char *, gssize, void * ) =
            get<int( void *, const char *, gssize, void * )>( "json_parser_load_from_data" );
        Node ( *steal )( void * ) = get<Node( void * )>( "json_parser_steal_root" );
        void ( *unref )( Node ) = get<void( Node )>( "json_node_unref" );
        void *( *generator_new )() = get<void *()>( "json_generator_new" );
        void ( *set_root )( void *, Node ) = get<void( void *, Node )>( "json_generator_set_root" );
        void ( *set_pretty )( void *, int ) = get<void( void *, int )>( "json_generator_set_pretty" );
        void ( *set_indent )( void *, guint ) = get<void( void *, guint )>( "json_generator_set_indent" );
        char *( *to_data )( void *, gsize * ) = get<char *( void *, gsize * )>( "json_generator_to_data" );
        int ( *type )( Node ) =
            get<int( Node )>( "json_node_get_node_type" ); // 0 object, 1 array, 2 value, 3 null
        void *( *object )( Node ) = get<void *( Node )>( "json_node_get_object" );
        guint ( *object_size )( void * ) = get<guint( void * )>( "json_object_get_size" );
        void ( *iter_init )( void *,
                             void * ) = get<void( void *, void * )>( "json_object_iter_init_ordered" );
        int ( *iter_next )( void *, const char **, Node * ) =
            get<int( void *, const char **, Node * )>( "json_object_iter_next_ordered" );
        void *( *array )( Node ) = get<void *( Node )>( "json_node_get_array" );
        guint ( *length )( void * ) = get<guint( void * )>( "json_array_get_length" );
        Node ( *element )( void *, guint ) = get<Node( void *, guint )>( "json_array_get_element" );
        GType ( *value_type )( Node ) = get<GType( Node )>( "json_node_get_value_type" );
        const char *( *string )( Node ) = get<const char *( Node )>( "json_node_get_string" );
        gint64 ( *integer )( Node ) = get<gint64( Node )>( "json_node_get_int" );
    };
    static Api &api()
    {
        static Api a;
        return a;
    }
    struct T
    {
        Node n;
        explicit T( Node n ) : n( n ) {}
        T( const T & ) = delete;
        ~T()
        {
            api().unref( n );
        }
    };
    static void parse( std::optional<T> &t, const std::string &s )
    {
        void *p = api().parser_new();
        CHECK( api().load( p, s.data(), gssize( s.size() ), nullptr ) );
        t.emplace( api().steal( p ) );
        g_object_unref( p );
    }
    static std::string dump( const T &t, bool pretty )
    {
        void *g = api().generator_new();
        api().set_root( g, t.n );
        api().set_pretty( g, pretty );
        api().set_indent( g, 4 );
        gsize n;
        char *c = api().to_data( g, &n );
        std::string s( c, n );
        g_free( c );
        g_object_unref( g );
        return s;
    }
    static void walk( const T &t, Totals &a )
    {
        walk( t.n, a );
    }
    static void walk( Node n, Totals &a )
    {
        ++a.values;
        switch ( api().type( n ) )
        {
        case 0: {
            void *o = api().object( n );
            a.members += api().object_size( o );
            void *iter[16];
            api().iter_init( iter, o );
            Node m;
            const char *name;
            while ( api().iter_next( iter, &name, &m ) )
                walk( m, a );
            break;
        }
        case 1: {
            void *r = api().array( n );
            for ( guint i = 0, k = api().length( r ); i < k; ++i )
                walk( api().element( r, i ), a );
            break;
        }
        case 2:
            if ( api().value_type( n ) == G_TYPE_STRING )
                a.text += strlen( api().string( n ) );
            else if ( api().value_type( n ) == G_TYPE_INT64 )
                a.ints += uint64_t( api().integer( n ) );
            break;
        }
    }
};

struct Jansson
{
    struct T
    {
        std::unique_ptr<json_t, void ( * )( json_t * )> j{ nullptr, json_decref };
    };
    static void parse( std::optional<T> &t, const std::string &s )
    {
        json_error_t e;
        t.emplace();
        t->j.reset( json_loadb( s.data(), s.size(), JSON_DECODE_ANY, &e ) );
        CHECK( t->j );
    }
    static std::string dump( const T &t, bool pretty )
    {
        char *c = json_dumps( t.j.get(), JSON_ENCODE_ANY | ( pretty ? JSON_INDENT( 4 ) : JSON_COMPACT ) );
        std::string s = c;
        free( c );
        return s;
    }
    static void walk( const T &t, Totals &a )
    {
        walk( t.j.get(), a );
    }
    static void walk( json_t *j, Totals &a )
    {
        ++a.values;
        if ( json_is_object( j ) )
        {
            a.members += json_object_size( j );
            for ( void *i = json_object_iter( j ); i; i = json_object_iter_next( j, i ) )
                walk( json_object_iter_value( i ), a );
        }
        else if ( json_is_array( j ) )
            for ( size_t i = 0, k = json_array_size( j ); i < k; ++i )
                walk( json_array_get( j, i ), a );
        else if ( json_is_string( j ) )
            a.text += json_string_length( j );
        else if ( json_is_integer( j ) )
            a.ints += uint64_t( json_integer_value( j ) );
    }
};

struct Qt6
{
    using T = QJsonDocument;
    static void parse( std::optional<T> &t, const std::string &s )
    {
        QJsonParseError e;
        t = QJsonDocument::fromJson( QByteArray::fromRawData( s.data(), qsizetype( s.size() ) ), &e );
        CHECK( e.error == QJsonParseError::NoError );
    }
    static std::string dump( const T &t, bool pretty )
    {
        return t.toJson( pretty ? QJsonDocument::Indented : QJsonDocument::Compact ).toStdString();
    }
    static void walk( const T &t, Totals &a )
    {
        walk( t.isArray() ? QJsonValue( t.array() ) : QJsonValue( t.object() ), a );
    }
    static void walk( const QJsonValue &v, Totals &a )
    {
        ++a.values;
        if ( v.isObject() )
        {
            QJsonObject o = v.toObject();
            a.members += size_t( o.size() );
            for ( auto i = o.constBegin(); i != o.constEnd(); ++i )
                walk( *i, a );
        }
        else if ( v.isArray() )
            for ( auto x : v.toArray() )
                walk( x, a );
        else if ( v.isString() )
            a.text += size_t( v.toString().size() );
        else if ( v.isDouble() )
            a.ints += uint64_t( v.toInteger() );
    }
};

struct Simd
{
    struct T
    {
        simdjson::dom::parser p;
        simdjson::dom::element e;
        T() = default;
        T( const T & ) = delete;
    };
    static void parse( std::optional<T> &t, const std::string &s )
    {
        t.emplace();
        CHECK( t->p.parse( s ).get( t->e ) == simdjson::SUCCESS );
    }
    static std::string dump( const T &t, bool pretty )
    {
        return pretty ? std::string() : simdjson::minify( t.e );
    }
    static void walk( const T &t, Totals &a )
    {
        walk( t.e, a );
    }
    static void walk( simdjson::dom::element e, Totals &a )
    {
        ++a.values;
        switch ( e.type() )
        {
        case simdjson::dom::element_type::OBJECT: {
            simdjson::dom::object o( e );
            a.members += o.size();
            for ( auto f : o )
                walk( f.value, a );
            break;
        }
        case simdjson::dom::element_type::ARRAY:
            for ( auto x : simdjson::dom::array( e ) )
                walk( x, a );
            break;
        case simdjson::dom::element_type::STRING:
            a.text += std::string_view( e ).size();
            break;
        case simdjson::dom::element_type::INT64:
            a.ints += uint64_t( int64_t( e ) );
            break;
        default:
            break;
        }
    }
};

// The library's records, allocated and filled but not parsed: for every number and string a
// string record (112 bytes and 64 inline code points) and a value record (152 bytes); for every member
// name a string record; for every array a vector record (112 bytes and 64 inline items), for every
// object a dictionary record (104 bytes and 32 inline pairs), with grown arrays where needed. Blocks
// come from malloc, from mimalloc, or one behind the other from a block that is kept.
struct FixedAlloc
{
    enum Source
    {
        Libc,
        Mimalloc,
        Pool
    };
    struct T
    {
        Source source;
        std::vector<void *> blocks;
        explicit T( Source s ) : source( s ) {}
        T( const T & ) = delete;
        ~T()
        {
            for ( void *p : blocks )
                if ( source == Libc )
                    free( p );
                else if ( source == Mimalloc )
                    mimalloc().put( p );
        }
    };
    static std::atomic<uint32_t> live;
    static char *arena, *next;
    static void *get( T &t, size_t n )
    {
        if ( t.source == Libc )
            return malloc( n );
        if ( t.source == Mimalloc )
            return mimalloc().get( n );
        n = ( n + 15 ) & ~size_t( 15 );
        CHECK( next + n <= arena + arena_size );
        next += n;
        return next - n;
    }
    static constexpr size_t arena_size = 96 << 20;
    static void *record( T &t, size_t n )
    {
        void *p = get( t, n );
        memset( p, 0, std::min( n, 152ul ) );
        live.fetch_add( 1 );
        t.blocks.push_back( p );
        return p;
    }
    static void text( T &t, size_t len )
    {
        char *p = (char *)record( t, 368 );
        if ( len > 64 )
        {
            void *a = get( t, ( 32 + len + 32 ) * 4 );
            memset( a, 1, len * 4 );
            t.blocks.push_back( a );
        }
        else
            memset( p + 112, 1, len * 4 );
    }
    static void build( T &t, const rapidjson::Value &v )
    {
        if ( v.IsNull() || v.IsBool() )
            return;
        record( t, 152 );
        if ( v.IsObject() )
        {
            record( t, 616 );
            for ( auto &m : v.GetObject() )
            {
                text( t, m.name.GetStringLength() );
                build( t, m.value );
            }
        }
        else if ( v.IsArray() )
        {
            record( t, 624 );
            for ( auto &x : v.GetArray() )
                build( t, x );
            if ( v.Size() > 64 )
                t.blocks.push_back( get( t, ( v.Size() + 64 ) * 8 ) );
        }
        else if ( v.IsString() )
            text( t, v.GetStringLength() );
        else
            text( t, 8 );
    }
};
std::atomic<uint32_t> FixedAlloc::live;
char *FixedAlloc::arena, *FixedAlloc::next;

void register_peers( Bench &b )
{
    for ( std::string doc : { "nested", "numbers", "strings" } )
    {
        auto s = std::make_shared<std::string>( b.read( ( doc + ".json" ).c_str() ) );
        auto t = std::make_shared<std::optional<Rapid::T>>();
        Rapid::parse( *t, *s );
        size_t n = wl::json_values( *s );
        for ( auto source : { FixedAlloc::Libc, FixedAlloc::Mimalloc, FixedAlloc::Pool } )
        {
            static const char *const names[] = { "floor:fixed_records_malloc", "floor:fixed_records_mimalloc",
                                                 "floor:fixed_records_pool" };
            b.add( "parse_" + doc, names[source], [=]( Rec &r ) {
                auto x = std::make_unique<FixedAlloc::T>( source );
                x->blocks.reserve( 4 * n );
                if ( !FixedAlloc::arena )
                    FixedAlloc::arena = (char *)malloc( FixedAlloc::arena_size );
                FixedAlloc::next = FixedAlloc::arena;
                size_t h0 = heap_live();
                mb_per_s( r, double( s->size() ), [&] { FixedAlloc::build( *x, ( *t )->d ); } );
                if ( source == FixedAlloc::Libc )
                    r( "bytes_per_value", double( heap_live() - h0 ) / double( n ) );
                if ( source != FixedAlloc::Pool )
                    per_op(
                        r, double( n ), [&] { x.reset(); }, "free_ns_per_value" );
            } );
        }
        if ( doc == "nested" )
            for ( bool simd : { false, true } )
                b.add( "parse_" + doc, simd ? "limit:simdjson_dom_reused" : "limit:simdjson_minify",
                       [=]( Rec &r ) {
                           static simdjson::dom::parser p;
                           simdjson::dom::element e;
                           std::string out( s->size() + 64, 0 );
                           size_t len;
                           mb_per_s( r, double( s->size() ), [&] {
                               if ( simd )
                                   CHECK( p.parse( *s ).get( e ) == simdjson::SUCCESS );
                               else
                                   CHECK( simdjson::minify( s->data(), s->size(), out.data(), len ) ==
                                          simdjson::SUCCESS );
                           } );
                       } );
    }
    json_cases<Simd>( b, "simdjson_dom" );
    json_cases<RapidInsitu>( b, "rapidjson_insitu" );
    json_cases<Rapid>( b, "rapidjson" );
    json_cases<BoostMono>( b, "boost_json_monotonic" );
    json_cases<Boost>( b, "boost_json" );
    json_cases<Nlohmann>( b, "nlohmann" );
    json_cases<Qt6>( b, "qt6_qjson" );
    json_cases<Jansson>( b, "jansson" );
    json_cases<JsonGlib>( b, "json_glib" );
}
