// The library's cases of the area bits.
#include "bits.hpp"
#include "qv_case.hpp"

namespace
{

void append_values( QV_BUFFER **buf )
{
    for ( auto value : values() )
    {
        qvBufferBitAppendBits( buf, value, 5 );
    }
}

void append_bytes( Rec &r )
{
    Buffer buf( qvBufferCreate() );
    per_op( r, N, [&] {
        for ( int i = 0; i < N; ++i )
        {
            uint64_t x = uint64_t( i ) * 0x9E3779B97F4A7C15u;
            qvBufferAppendBytes( buf.edit(), reinterpret_cast<unsigned char *>( &x ), 8 );
        }
    } );
    CHECK( qvBufferLength( buf ) == 8 * N );
}

void prepend_bytes( Rec &r )
{
    const int P = 10000;
    Buffer buf( qvBufferCreate() );
    per_op( r, P, [&] {
        for ( int i = 0; i < P; ++i )
        {
            auto x = uint64_t( i );
            qvBufferPrependBytes( buf.edit(), reinterpret_cast<unsigned char *>( &x ), 8 );
        }
    } );
    CHECK( qvBufferLength( buf ) == 8 * P );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    b.add( "append_5x1e6", "qv", []( Rec &r ) {
        values();
        Buffer buf( qvBufferCreate() );
        per_op( r, N, [&] { append_values( buf.edit() ); } );
        CHECK( qvBufferBitLength( buf ) == 5 * N );
        CHECK( peek( qvBufferBitBacking( buf ), 5, 5 ) == values()[1] );
    } );
    b.add( "read_5x1e6", "qv", []( Rec &r ) {
        Buffer buf( qvBufferCreate() );
        append_values( buf.edit() );
        uint64_t sum = 0;
        per_op( r, N, [&] {
            for ( int i = 0; i < N; ++i )
            {
                sum += uint64_t( qvBufferBitReadBits( buf, QV_INT( i ) * 5, 5 ) );
            }
        } );
        CHECK( sum == value_sum() );
    } );
    b.add( "append_8B_1e6", "qv", append_bytes );
    b.add( "prepend_8B_1e4", "qv", prepend_bytes );
}
