// The cases of the area json, for a library that is adapted as P: a document tree P::T, P::parse( tree, text ),
// P::dump( tree, pretty ), P::walk( tree, totals ). A library whose memory isn't all in the heap tells the bytes of the
// tree of a document itself, P::tree_bytes( name ).
#pragma once
#include "bench.hpp"
#include "workloads.hpp"
#include <optional>

using namespace bench;

struct Totals
{
    uint64_t values = 0, text = 0, ints = 0, members = 0;
};

inline const char *const json_documents[] = { "nested", "numbers", "strings" };

inline const char *const small_json =
    "{\"id\":12345,\"name\":\"box one\",\"tags\":[\"a\",\"bc\",\"def\"],\"enabled\":true,\"ratio\":0.25,"
    "\"owner\":{\"name\":\"ann\",\"note\":null},\"port\":5060}";

// Values in any valid document: what isn't a member name.
inline size_t json_count( const std::string &s )
{
    size_t n = 0;
    for ( size_t i = 0; i < s.size(); )
    {
        if ( s[i] == '"' )
        {
            for ( ++i; s[i] != '"'; ++i )
                i += s[i] == '\\';
            i = std::min( s.find_first_not_of( " \n", i + 1 ), s.size() );
            n += i == s.size() || s[i] != ':';
            continue;
        }
        size_t end = std::min( s.find_first_of( "{}[]:,\" \n", i ), s.size() );
        n += s[i] == '{' || s[i] == '[' || end > i;
        i = end > i ? end : i + 1;
    }
    return n;
}

template <class P> void json_parse( Bench &b, const char *name, const char *doc, std::string text )
{
    size_t n = wl::json_values( text );
    b.add( std::string( "parse_" ) + doc, name, [=]( Rec &r ) {
        std::optional<typename P::T> t;
        size_t h0 = heap_live();
        mb_per_s( r, double( text.size() ), [&] { P::parse( t, text ); } );
        double bytes = double( heap_live() - h0 );
        if constexpr ( requires { P::tree_bytes( doc ); } )
            bytes = P::tree_bytes( doc );
        r( "bytes_per_value", bytes / double( n ) );
        Totals a;
        P::walk( *t, a );
        CHECK( a.values == n );
        per_op(
            r, double( n ), [&] { t.reset(); }, "free_ns_per_value" );
    } );
}

template <class P>
void json_dump( Bench &b, const char *name, const char *doc, std::string text, bool pretty )
{
    size_t n = wl::json_values( text );
    std::optional<typename P::T> t0;
    P::parse( t0, text );
    if ( P::dump( *t0, pretty ).empty() )
        return;
    b.add( std::string( pretty ? "pretty_" : "compact_" ) + doc, name, [=]( Rec &r ) {
        std::optional<typename P::T> t;
        P::parse( t, text );
        uint64_t t0 = now_ns();
        std::string o = P::dump( *t, pretty );
        uint64_t t1 = now_ns();
        r( "MB_per_s", double( o.size() ) * 1e3 / double( t1 - t0 ) );
        CHECK( json_count( o ) == n );
    } );
}

template <class P> void json_read( Bench &b, const char *name, const char *doc, std::string text )
{
    size_t n = wl::json_values( text );
    b.add( std::string( "read_" ) + doc, name, [=]( Rec &r ) {
        std::optional<typename P::T> t;
        P::parse( t, text );
        Totals a;
        P::walk( *t, a );
        a = Totals();
        per_op(
            r, double( n ), [&] { P::walk( *t, a ); }, "ns_per_value" );
        CHECK( a.values == n );
        keep( a );
    } );
}

template <class P> void json_cases( Bench &b, const char *name )
{
    for ( const char *doc : json_documents )
    {
        std::string text = b.read( ( std::string( doc ) + ".json" ).c_str() );
        json_parse<P>( b, name, doc, text );
        json_dump<P>( b, name, doc, text, false );
        json_dump<P>( b, name, doc, text, true );
    }
    json_read<P>( b, name, "nested", b.read( "nested.json" ) );
    b.add( "small_parse", name, []( Rec &r ) {
        std::string s = small_json;
        per_op(
            r, 1e4,
            [&] {
                for ( int i = 0; i < 10000; ++i )
                {
                    std::optional<typename P::T> t;
                    P::parse( t, s );
                    keep( t );
                }
            },
            "ns_per_doc" );
    } );
}
