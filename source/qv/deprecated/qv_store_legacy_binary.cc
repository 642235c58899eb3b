#include <qv/deprecated/qv_store_legacy_binary.h>

#include <qv/base/qv_store_collector.hh>
#include <qv/deprecated/qv_decoder.h>
#include <qv/deprecated/qv_encoder.h>
#include <qv/deprecated/qv_store_legacy_walk.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

// Levels of stores, the root included.
constexpr QV_INT depthLimit = 100;

// The decoder and the entries of the stores that are being read.
struct Reader
{
    QV_DECODER *dec;
    qv::EntryCollector entries;
};

QV_STORE *decodeStore( Reader *reader, QV_INT depth );

// Reads an entry of a store; false on a failure.
bool decodeEntry( Reader *reader, QV_INT depth, qv::EntryLevel *level )
{
    QV_DECODER *dec = reader->dec;
    qv::Local<QV_STRING> address;
    if ( !qvDecoderTryDecodeString( dec, address.edit() ) || !qvStoreAddressOk( address ) )
        return false;
    qv::Local<QV_STRING> value;
    if ( !qvDecoderTryDecodeOptionalString( dec, value.edit() ) )
        return false;
    if ( value )
        level->set( address, qv::storeValueFromParts( value.give(), 0, nullptr ) );
    QV_BOOL hasSubStore;
    if ( !qvDecoderTryDecodeBool( dec, &hasSubStore ) )
        return false;
    if ( !hasSubStore )
        return true;
    QV_STORE *subStore = decodeStore( reader, depth + 1 );
    if ( !subStore )
        return false;
    level->set( address, subStore );
    return true;
}

// Null on a failure, with the decoder's error set.
QV_STORE *decodeStore( Reader *reader, QV_INT depth )
{
    QV_INT length;
    bool isGood = depth < depthLimit && qvDecoderTryDecodeInt( reader->dec, &length ) && length >= 0;
    qv::EntryLevel level( &reader->entries );
    for ( QV_INT idx = 0; isGood && idx < length; idx++ )
    {
        isGood = decodeEntry( reader, depth, &level );
    }
    if ( isGood )
        return qv::storeFromParts( 0, level.takeDict(), nullptr, nullptr );
    qvDecoderSetError( reader->dec );
    return nullptr;
}

} // namespace

QV_BUFFER *qvStoreLegacyBinaryEncodeToBuffer( QV_STORE *store )
{
    qv::Local<QV_ENCODER> enc( qvEncoderCreate() );
    qvStoreLegacyBinaryEncodeToEncoder( store, enc );
    return qvEncoderBuffer( enc );
}

void qvStoreLegacyBinaryEncodeToEncoder( QV_STORE *store, QV_ENCODER *enc )
{
    QV_CHECK( store );
    qvEncoderEncodeInt( enc, qv::storeLength( store ) );
    qv::StoreWalk walk( store );
    while ( walk.next() )
    {
        qv::Local<QV_STRING> address( walk.address() );
        qvEncoderEncodeString( enc, address );
        qvObj entry = walk.entry();
        if ( !qv::isStore( entry ) )
        {
            qvEncoderEncodeOptionalString( enc, static_cast<QV___STORE_VALUE *>( entry )->value );
            qvEncoderEncodeBool( enc, QV_FALSE );
            continue;
        }
        auto *subStore = static_cast<QV_STORE *>( entry );
        qvEncoderEncodeBool( enc, QV_FALSE );
        qvEncoderEncodeBool( enc, QV_TRUE );
        qvEncoderEncodeInt( enc, qv::storeLength( subStore ) );
        walk.enter( subStore, 0 );
    }
}

QV_STORE *qvStoreLegacyBinaryTryDecodeFromBuffer( QV_BUFFER *buffer )
{
    qv::Local<QV_DECODER> dec( qvDecoderCreate( buffer ) );
    qv::Local<QV_STORE> store( qvStoreLegacyBinaryTryDecodeFromDecoder( dec ) );
    return qvDecoderRemaining( dec ) == 0 ? store.give() : nullptr;
}

QV_STORE *qvStoreLegacyBinaryTryDecodeFromDecoder( QV_DECODER *dec )
{
    QV_CHECK( dec );
    Reader reader = { dec, {} };
    return decodeStore( &reader, 0 );
}
