// The library's cases of the area strings.
#include "strings.hpp"
#include "qv_case.hpp"

namespace
{

struct Text
{
    String text{ qvStringCreate() };
};

void sharing( Bench &b )
{
    for ( int length : { 32, 1000, 100000 } )
    {
        int reps = length == 32 ? 100000 : length == 1000 ? 10000 : 500;
        auto text = held<String>( string_of( wl::text_ascii( size_t( length ), 203 ) ) );
        if ( length != 1000 )
        {
            b.add( "share_" + std::to_string( length ), "qv", [=]( Rec &r ) {
                per_op( r, 1e6, [&] {
                    for ( int i = 0; i < 1000000; ++i )
                    {
                        qvStringRetain( *text );
                        qvStringRelease( *text );
                    }
                } );
            } );
        }
        b.add( "cow_" + std::to_string( length ), "qv", [=]( Rec &r ) {
            per_op( r, reps, [&] {
                for ( int i = 0; i < reps; ++i )
                {
                    QV_STRING *copy = *text;
                    qvStringRetain( copy );
                    qvStringSetCharAt( &copy, length / 2, 'X' );
                    CHECK( qvStringCharAt( *text, length / 2 ) != 'X' );
                    qvStringRelease( copy );
                }
            } );
        } );
    }
}

void searching( Bench &b )
{
    for ( bool three : { true, false } )
    {
        std::u32string needle = three ? U"etq" : U"e seat on the qq";
        std::u32string text = wl::text_ascii( 1 << 20, 201 );
        std::copy( needle.begin(), needle.end(), text.end() - long( needle.size() ) );
        auto all = held<String>( string_of( text ) );
        auto part = held<String>( string_of( needle ) );
        find_case( b, "qv", three, [=] { return size_t( qvStringFind( *all, 0, *part ) ); } );
    }
}

void comparing( Bench &b )
{
    const int n = 1 << 20;
    auto text = wl::text_ascii( n, 201 );
    auto longA = held<String>( string_of( text ) ), longB = held<String>( string_of( text ) );
    b.add( "equal_1M", "qv", [=]( Rec &r ) {
        per_op(
            r, 8.0 * n,
            [&] {
                for ( int i = 0; i < 8; ++i )
                {
                    CHECK( qvStringEquals( *longA, *longB ) );
                }
            },
            "ns_per_cp" );
    } );
    static QV_STRING *one = string_of( std::string( "abcdefghijklmnop" ) ),
                     *same = string_of( std::string( "abcdefghijklmnop" ) ),
                     *other = string_of( std::string( "abcdefghijklmnoq" ) );
    b.add( "equal_16", "qv", []( Rec &r ) {
        per_op( r, 1e6,
                [&] { CHECK( loop( 1000000, [] { return qvStringEquals( one, same ); } ) == 1000000 ); } );
    } );
    b.add( "order_16", "qv", []( Rec &r ) {
        per_op( r, 1e6, [&] {
            CHECK( loop( 1000000, [] { return qvStringCompare( one, other ) < 0; } ) == 1000000 );
        } );
    } );
}

void mapping( Bench &b )
{
    const int n = 1 << 20;
    auto text = held<String>( string_of( wl::text_mixed( n, 202 ) ) );
    auto whole = [&]( const char *workload, void ( *map )( QV_STRING ** ) ) {
        b.add( workload, "qv", [=]( Rec &r ) {
            per_op(
                r, n,
                [&] {
                    qvStringRetain( *text );
                    String copy( text->it );
                    map( copy.edit() );
                    CHECK( qvStringLength( copy ) >= n );
                },
                "ns_per_cp" );
        } );
    };
    whole( "upper_1M", qvStringToUpper );
    whole( "fold_1M", qvStringToCaseFold );
    auto small = held<String>( string_of( std::string( "abcdefghijklmnopqrstuvwxyzabcdef" ) ) );
    b.add( "upper_32", "qv", [=]( Rec &r ) {
        per_op( r, 1e5, [&] {
            for ( int i = 0; i < 100000; ++i )
            {
                qvStringRetain( *small );
                String copy( small->it );
                qvStringToUpper( copy.edit() );
            }
        } );
    } );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    building<Text>(
        b, "qv", +[]( Text &s, char32_t c ) { qvStringAppendChar( s.text.edit(), c ); },
        +[]( Text &s, char32_t c ) { qvStringPrependChar( s.text.edit(), c ); },
        []( Text &s ) { return size_t( qvStringLength( s.text ) ); } );
    sharing( b );
    searching( b );
    comparing( b );
    mapping( b );
}
