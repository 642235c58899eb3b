// The library's cases of the area format. Results are new strings; the texts that are read are strings.
//
// real6 cuts the last digit instead of rounding it, so that only the length of its texts is compared, as for the
// peers.
#include "format.hpp"
#include "qv_case.hpp"

namespace
{

struct QvData
{
    std::vector<QV_STRING *> names, dec, hex, real;

    QvData()
    {
        fill( names, d().names );
        fill( dec, d().dec );
        fill( hex, d().hex );
        fill( real, d().real );
    }

    static void fill( std::vector<QV_STRING *> &dest, const std::vector<std::string> &src )
    {
        for ( auto &text : src )
        {
            dest.push_back( string_of( text ) );
        }
    }
};

const QvData &q()
{
    static QvData data;
    return data;
}

size_t length_of( QV_STRING *text )
{
    auto length = size_t( qvStringLength( text ) );
    qvStringRelease( text );
    return length;
}

void formatting( Bench &b )
{
    out( b, 0, "record", "qv", []( int i ) {
        return length_of( qvStringCreateFromFormatCstr( "item %i: name=%s id=%08X", -1,
                                                        QV_INT( d().small[i] ), q().names[i & 15],
                                                        QV_INT( d().ids[i] ) ) );
    } );
    out( b, 1, "int", "qv", []( int i ) { return length_of( qvFormatEncodeInt( d().ints[i], 10, 0, 0 ) ); } );
    out( b, 3, "real6", "qv",
         []( int i ) { return length_of( qvFormatEncodeReal( d().reals[i], 10, 0, 6, 0 ) ); } );
    out( b, 4, "pad", "qv", []( int i ) {
        return length_of( qvStringCreateFromFormatCstr( "%10i|%-10s|", -1, QV_INT( d().small[i] & 0xFFFFF ),
                                                        q().names[i & 15] ) );
    } );
}

void parsing( Bench &b )
{
    in( b, "parse_int", "qv", d().isum, []( int i ) {
        QV_STRING *text = q().dec[i];
        QV_INT value = 0;
        CHECK( qvFormatTryDecodeInt( text, 0, qvStringLength( text ), 10, &value, nullptr ) );
        return int64_t( value ) >> 8;
    } );
    in( b, "parse_real", "qv", d().rsum, []( int i ) {
        QV_STRING *text = q().real[i];
        double value = 0;
        CHECK( qvFormatTryDecodeReal( text, 0, qvStringLength( text ), 10, &value, nullptr ) );
        return value;
    } );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    q();
    formatting( b );
    parsing( b );
}
