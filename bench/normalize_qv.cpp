// The library's cases of the area normalize: a retained string is brought to the form, which puts a new one in the
// handle where something changes. The results are compared with those of ICU.
#include "bench.hpp"
#include "workloads.hpp"
#include "qv_case.hpp"
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

using namespace bench;

namespace
{

struct Form
{
    const char *name;
    QV_UNICODE_NORMAL_FORM form;
};

const Form forms[] = { { "nfc", QV_UNICODE_NORMAL_FORM_C },
                       { "nfd", QV_UNICODE_NORMAL_FORM_D },
                       { "nfkc", QV_UNICODE_NORMAL_FORM_KC } };

std::u32string icu_form( const std::u32string &text, QV_UNICODE_NORMAL_FORM form )
{
    UErrorCode e = U_ZERO_ERROR;
    auto *normalizer = form == QV_UNICODE_NORMAL_FORM_C   ? icu::Normalizer2::getNFCInstance( e )
                       : form == QV_UNICODE_NORMAL_FORM_D ? icu::Normalizer2::getNFDInstance( e )
                                                          : icu::Normalizer2::getNFKCInstance( e );
    auto source =
        icu::UnicodeString::fromUTF32( reinterpret_cast<const UChar32 *>( text.data() ), int( text.size() ) );
    std::string utf8;
    normalizer->normalize( source, e ).toUTF8String( utf8 );
    CHECK( U_SUCCESS( e ) );
    return wl::from_utf8( utf8 );
}

bool same( QV_STRING *text, const std::u32string &want )
{
    return size_t( qvStringLength( text ) ) == want.size() &&
           memcmp( qvStringBacking( text ), want.data(), want.size() * 4 ) == 0;
}

void whole_text( Bench &b, const std::string &name, const std::u32string &text, int reps )
{
    auto source = held<String>( string_of( text ) );
    for ( auto &form : forms )
    {
        auto want = std::make_shared<std::u32string>( icu_form( text, form.form ) );
        b.add( std::string( form.name ) + "_" + name, "qv", [=, n = double( text.size() )]( Rec &r ) {
            uint64_t t = 0;
            for ( int i = 0; i < reps; ++i )
            {
                // A private copy within the time, since the peers make a new text too.
                uint64_t t0 = now_ns();
                String copy( qvStringCreateFrom( *source ) );
                qvStringNormalize( copy.edit(), form.form );
                t += now_ns() - t0;
                CHECK( same( copy, *want ) );
            }
            r( "ns_per_cp", double( t ) / n / reps );
        } );
    }
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    for ( std::string name : { "ascii", "latin", "viet", "hangul", "cjk" } )
    {
        auto text = wl::from_utf8( b.read( ( "norm_" + name + ".txt" ).c_str() ) );
        whole_text( b, name, text, 1 );
        whole_text( b, name + "_64k", text.substr( 0, 65536 ), 8 );
        if ( name == "latin" )
        {
            auto small = held<String>( string_of( text.substr( 0, 32 ) ) );
            b.add( "nfc_short", "qv", [=]( Rec &r ) {
                per_op( r, 1e5, [&] {
                    for ( int i = 0; i < 100000; ++i )
                    {
                        String copy( qvStringCreateFrom( *small ) );
                        qvStringNormalize( copy.edit(), QV_UNICODE_NORMAL_FORM_C );
                    }
                } );
            } );
        }
    }
}
