// The library's cases of the area config: stores, in their standard text.
#include "config.hpp"
#include "qv_case.hpp"

namespace
{

size_t text_length( QV_STORE *store, const Key &key )
{
    Store section( qvStoreStoreCstr( store, key.section.data(), QV_INT( key.section.size() ) ) );
    Store part( qvStoreStoreCstr( section, key.part.data(), QV_INT( key.part.size() ) ) );
    String value( qvStoreValueCstr( part, key.name.data(), QV_INT( key.name.size() ) ) );
    // A real is read as a number, and prints with six decimals.
    auto &written = conf().values[key.at];
    return written.kind == wl::ConfigValue::Real ? written.text.size() : size_t( qvStringLength( value ) );
}

// Substores are filled before they are set into their parents.
QV_STORE *built()
{
    QV_STORE *store = qvStoreCreate();
    auto key = keys().begin();
    while ( key != keys().end() )
    {
        Store section( qvStoreCreate() );
        auto first = key;
        while ( key != keys().end() && key->section == first->section )
        {
            Store part( qvStoreCreate() );
            auto firstOfPart = key;
            for ( ; key != keys().end() && key->both == firstOfPart->both; ++key )
            {
                String value( string_of( conf().values[key->at].text ) );
                qvStoreSetValueCstr( part.edit(), key->name.data(), QV_INT( key->name.size() ), value );
            }
            qvStoreSetStoreCstr( section.edit(), firstOfPart->part.data(), QV_INT( firstOfPart->part.size() ),
                                 part );
        }
        qvStoreSetStoreCstr( &store, first->section.data(), QV_INT( first->section.size() ), section );
    }
    return store;
}

QV_STORE *decoded( const std::string &text )
{
    Buffer bytes( buffer_of( text ) );
    Held<QV_STORE_DECODE_RESULT, qvStoreDecodeResultRelease> result(
        qvStoreDecodeHeaderless( bytes, nullptr, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    CHECK( qvStoreDecodeResultIsSuccess( result ) );
    return qvStoreDecodeResultStore( result );
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    std::string text = b.read( "config.store" );
    parse( b, "qv", text, []( const std::string &s ) { return held<Store>( decoded( s ) ); } );
    auto store = held<Store>( decoded( text ) );
    timed( b, "write", "qv", [=] {
        Buffer bytes( qvStoreEncodeHeaderless( *store, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
        CHECK( size_t( qvBufferLength( bytes ) ) >= text.size() * 3 / 4 );
    } );
    lookup( b, "qv", [=]( const Key &key ) { return text_length( *store, key ); } );
    timed( b, "build", "qv", [] {
        Store store( built() );
        CHECK( qvStoreLength( store ) == 20 );
    } );
}
