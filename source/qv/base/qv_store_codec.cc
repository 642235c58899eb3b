#include <qv/base/qv_store_encoding.hh>
#include <qv/base/qv_store_standard.hh>
#include <qv/json/qv_json_store.hh>

namespace
{

// The encodings that the library has, in the order in which bytes of an unknown one are tried.
constexpr qv::StoreCodec codecs[] = {
    { QV_STORE_ENCODING_HEADERLESS_STANDARD, qv___StoreEncodeStandard, qv::decodeStoreStandard, nullptr,
      nullptr },
    { QV_STORE_ENCODING_HEADERLESS_JSON, qv::encodeStoreJson, qv::decodeStoreJson, qv::jsonErrorLocation,
      qv::jsonErrorToMessage },
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
