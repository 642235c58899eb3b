// The library's cases of the area charset: whole buffers to new strings and back. Byte maps bring the text to
// normal form C before they encode it.
#include "charset.hpp"
#include "qv_case.hpp"

namespace
{

void both_ways( Bench &b, const std::string &set, QV_CHARSET charset, std::shared_ptr<Text> t )
{
    auto bytes = held<Buffer>( buffer_of( t->bytes ) );
    auto text = held<String>( string_of( t->cps ) );
    add( b, set + "_dec", "qv", t, [=]( Text &t ) {
        String decoded( qvCharsetConvertBufferToString( charset, *bytes ) );
        check( reinterpret_cast<const char32_t *>( qvStringBacking( decoded ) ),
               size_t( qvStringLength( decoded ) ), t );
    } );
    add( b, set + "_enc", "qv", t, [=]( Text &t ) {
        Buffer encoded( qvCharsetConvertStringToBuffer( charset, *text ) );
        check8( reinterpret_cast<const char *>( qvBufferBacking( encoded ) ),
                size_t( qvBufferLength( encoded ) ), t );
    } );
}

// The text whole, and its first 64 KiB.
void sizes( Bench &b, const std::string &set, QV_CHARSET charset, const Text &all )
{
    both_ways( b, set, charset, std::make_shared<Text>( all ) );
    auto some = std::make_shared<Text>();
    if ( charset == QV_CHARSET_UTF_8 )
    {
        some->bytes = wl::utf8_of_size( all.cps, 65536 );
        some->cps = wl::from_utf8( some->bytes );
    }
    else
    {
        some->bytes = all.bytes.substr( 0, 65536 );
        some->cps = all.cps.substr( 0, 65536 );
    }
    both_ways( b, set + "_64k", charset, some );
}

void short_texts( Bench &b )
{
    static const std::string bytes = "The quick brown fox, lazy dog 12";
    auto text = held<String>( string_of( bytes ) );
    b.add( "utf8_dec_32", "qv", []( Rec &r ) {
        per_op( r, 1e5, [&] {
            for ( int i = 0; i < 100000; ++i )
            {
                String decoded( qvStringCreateFromUtf8( bytes.data(), 32 ) );
                keep( decoded.it );
            }
        } );
    } );
    b.add( "utf8_enc_32", "qv", [=]( Rec &r ) {
        per_op( r, 1e5, [&] {
            for ( int i = 0; i < 100000; ++i )
            {
                QV_INT length;
                char *encoded = qvStringConvertToUtf8( *text, QV_FALSE, &length );
                keep( encoded );
                qvMemFree( encoded );
            }
        } );
    } );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    struct Set
    {
        const char *name, *file;
        QV_CHARSET charset;
    };
    for ( auto &set : { Set{ "utf8_ascii", "ascii8.txt", QV_CHARSET_UTF_8 },
                        Set{ "utf8_latin", "latin8.txt", QV_CHARSET_UTF_8 },
                        Set{ "utf8_cjk", "cjk8.txt", QV_CHARSET_UTF_8 },
                        Set{ "cp1252", "cp1252.bin", QV_CHARSET_MSFT_CP1252 },
                        Set{ "koi8r", "koi8r.bin", QV_CHARSET_KOI_8R },
                        Set{ "ibm850", "ibm850.bin", QV_CHARSET_MSFT_CP850 } } )
    {
        Text all;
        all.bytes = b.read( set.file );
        Buffer bytes( buffer_of( all.bytes ) );
        String text( qvCharsetConvertBufferToString( set.charset, bytes ) );
        all.cps.assign( reinterpret_cast<const char32_t *>( qvStringBacking( text ) ),
                        size_t( qvStringLength( text ) ) );
        if ( set.charset == QV_CHARSET_UTF_8 )
        {
            CHECK( all.cps == wl::from_utf8( all.bytes ) );
        }
        sizes( b, set.name, set.charset, all );
    }
    short_texts( b );
}
