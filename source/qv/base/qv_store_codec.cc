#include <qv/base/qv_store_encoding.hh>
#include <qv/base/qv_store_standard.hh>
#include <qv/deprecated/qv_store_legacy_binary.h>
#include <qv/deprecated/qv_store_legacy_text.hh>
#include <qv/io/qv_byte_sink.h>
#include <qv/json/qv_json_store.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

// New-line forms of legacy text that is read.
constexpr QV_NLF_FLAGS allNlfFlags = 255;

void encodeLegacyBinary( QV_STORE *store, QV_BYTE_SINK *sink )
{
    qv::Local<QV_BUFFER> bytes( qvStoreLegacyBinaryEncodeToBuffer( store ) );
    qvByteSinkWrite( sink, bytes );
}

QV_STORE_DECODE_RESULT *decodeLegacyBinary( QV_BUFFER *buffer, QV_LOCATION * )
{
    qv::Local<QV_STORE> store( qvStoreLegacyBinaryTryDecodeFromBuffer( buffer ) );
    if ( !store )
        return qv::storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_LEGACY_BINARY_ENCODING, nullptr );
    return qvStoreDecodeResultCreateSuccess( store, nullptr );
}

void encodeLegacyText( QV_STORE *store, QV_BYTE_SINK *sink )
{
    qv::storeLegacyTextWrite( store, sink, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF );
}

QV_STORE_DECODE_RESULT *decodeLegacyText( QV_BUFFER *buffer, QV_LOCATION * )
{
    // Without charset flags any bytes are text, and any text is a store.
    qv::Local<QV_STORE> store(
        qvStoreLegacyTextTryDecodeFromBuffer( buffer, QV_CHARSET_UTF_8, 0, allNlfFlags ) );
    return qvStoreDecodeResultCreateSuccess( store, nullptr );
}

// The encodings that the library has, in the order in which bytes of an unknown one are tried.
constexpr qv::StoreCodec codecs[] = {
    { QV_STORE_ENCODING_HEADERLESS_STANDARD, qv___StoreEncodeStandard, qv::decodeStoreStandard },
    { QV_STORE_ENCODING_HEADERLESS_JSON, qv::encodeStoreJson, qv::decodeStoreJson },
    { QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY, encodeLegacyBinary, decodeLegacyBinary },
    { QV_STORE_ENCODING_HEADERLESS_LEGACY_TEXT, encodeLegacyText, decodeLegacyText },
};

} // namespace

const qv::StoreCodec *qv::storeCodec( QV_STORE_ENCODING enc )
{
    for ( const StoreCodec &codec : codecs )
    {
        if ( codec.encoding == enc )
            return &codec;
    }
    return nullptr;
}

QV_STORE_DECODE_RESULT *qv::detectStore( QV_BUFFER *buffer, QV_LOCATION *location )
{
    for ( const StoreCodec &codec : codecs )
    {
        QV_STORE_DECODE_RESULT *result = codec.decode( buffer, location );
        if ( qvStoreDecodeResultIsSuccess( result ) )
            return result;
        qvStoreDecodeResultRelease( result );
    }
    return nullptr;
}
