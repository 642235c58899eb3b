#include <qv/base/qv_store_encoding.hh>

#include <qv/base/qv_enum.hh>
#include <qv/io/qv_buffer_byte_sink.h>
#include <qv/io/qv_header.h>
#include <qv/io/qv_header_stream.h>
#include <qv/io/qv_store_header.h>
#include <qv/runtime/qv_local.hh>

constinit QV_ENUM *qv___StoreEncodingEnum = nullptr;

namespace
{

constexpr qv::EnumName encodingNames[] = {
    { QV_STORE_ENCODING_STANDARD, "QV_STORE_ENCODING_STANDARD" },
    { QV_STORE_ENCODING_JSON, "QV_STORE_ENCODING_JSON" },
    { QV_STORE_ENCODING_LEGACY_TEXT, "QV_STORE_ENCODING_LEGACY_TEXT" },
    { QV_STORE_ENCODING_LEGACY_BINARY, "QV_STORE_ENCODING_LEGACY_BINARY" },
    { QV_STORE_ENCODING_HEADERLESS_STANDARD, "QV_STORE_ENCODING_HEADERLESS_STANDARD" },
    { QV_STORE_ENCODING_HEADERLESS_JSON, "QV_STORE_ENCODING_HEADERLESS_JSON" },
    { QV_STORE_ENCODING_HEADERLESS_LEGACY_TEXT, "QV_STORE_ENCODING_HEADERLESS_LEGACY_TEXT" },
    { QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY, "QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY" },
};

void encodeTo( QV_STORE *store, QV_STORE_ENCODING enc, QV_BYTE_SINK *sink )
{
    const qv::StoreCodec *codec = qv::storeCodec( qvStoreEncodingToHeaderless( enc ) );
    QV_CHECK( codec );
    codec->encode( store, sink );
}

// Decodes bytes that no header stands in front of: in one encoding, or for -1 in the first that fits.
QV_STORE_DECODE_RESULT *decodeContent( QV_BUFFER *buffer, QV_LOCATION *location, QV_STORE_ENCODING enc )
{
    if ( enc != -1 )
        return qvStoreDecodeHeaderless( buffer, location, qvStoreEncodingToHeaderless( enc ) );
    QV_STORE_DECODE_RESULT *result = qv::detectStore( buffer, location );
    return result ? result : qv::storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_ENCODING, nullptr );
}

QV_STORE_DECODE_RESULT *decodeBehindHeader( QV_HEADER_DECODE_RESULT *headerResult )
{
    qv::Local<QV_HEADER> generic( qvHeaderDecodeResultHeader( headerResult ) );
    qv::Local<QV_STORE_HEADER> header( qvStoreHeaderTryDecodeFromHeader( generic ) );
    if ( !header )
        return qv::storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_HEADER, nullptr );
    qv::Local<QV_BUFFER> content( qvHeaderDecodeResultTrailing( headerResult ) );
    qv::Local<QV_LOCATION> location( qvHeaderDecodeResultTrailingBaseLocation( headerResult ) );
    qv::Local<QV_STORE_DECODE_RESULT> result(
        decodeContent( content, location, qvStoreHeaderEncoding( header ) ) );
    if ( qvStoreDecodeResultIsError( result ) )
        return result.give();
    qv::Local<QV_STORE> store( qvStoreDecodeResultStore( result ) );
    return qvStoreDecodeResultCreateSuccess( store, header );
}

} // namespace

QV_STORE_ENCODING qvStoreEncodingFromString( QV_STRING *qvs )
{
    return qvEnumParse( qv___StoreEncodingEnum, qvs );
}

QV_STRING *qvStoreEncodingToString( QV_STORE_ENCODING enc )
{
    QV_CHECK( QV_STORE_ENCODING_OK( enc ) );
    return qvEnumGenerate( qv___StoreEncodingEnum, enc );
}

QV_BOOL qvStoreEncodingIsHeaderless( QV_STORE_ENCODING enc )
{
    QV_CHECK( QV_STORE_ENCODING_OK( enc ) );
    return enc >= QV_STORE_ENCODING_HEADERLESS_STANDARD;
}

QV_STORE_ENCODING qvStoreEncodingToHeaderless( QV_STORE_ENCODING enc )
{
    return qvStoreEncodingIsHeaderless( enc ) ? enc : enc + QV_STORE_ENCODING_HEADERLESS_STANDARD;
}

QV_BUFFER *qvStoreEncode( QV_STORE *store, QV_STORE_HEADER *header )
{
    QV_CHECK( store );
    QV_CHECK( header );
    QV_STORE_ENCODING enc =
        qvStoreHeaderHasEncoding( header ) ? qvStoreHeaderEncoding( header ) : QV_STORE_ENCODING_STANDARD;
    if ( qvStoreEncodingIsHeaderless( enc ) )
        return qvStoreEncodeHeaderless( store, enc );
    qv::Local<QV_BUFFER_BYTE_SINK> bytes( qvBufferByteSinkCreate() );
    qv::Local<QV_BYTE_SINK> sink( qvBufferByteSinkByteSink( bytes ) );
    qv::Local<QV_HEADER> generic( qvStoreHeaderEncodeToHeader( header ) );
    qv::Local<QV_HEADER_BYTE_SINK> headerSink( qvHeaderByteSinkCreate( sink, generic ) );
    qv::Local<QV_BYTE_SINK> contentSink( qvHeaderByteSinkByteSink( headerSink ) );
    encodeTo( store, enc, contentSink );
    return qvBufferByteSinkBuffer( bytes );
}

QV_BUFFER *qvStoreEncodeHeaderless( QV_STORE *store, QV_STORE_ENCODING enc )
{
    QV_CHECK( store );
    QV_CHECK( QV_STORE_ENCODING_OK( enc ) );
    QV_CHECK( qvStoreEncodingIsHeaderless( enc ) );
    qv::Local<QV_BUFFER_BYTE_SINK> bytes( qvBufferByteSinkCreate() );
    qv::Local<QV_BYTE_SINK> sink( qvBufferByteSinkByteSink( bytes ) );
    encodeTo( store, enc, sink );
    return qvBufferByteSinkBuffer( bytes );
}

QV_STORE_DECODE_RESULT *qvStoreDecode( QV_BUFFER *buffer, QV_LOCATION *location )
{
    QV_CHECK( buffer );
    qv::Local<QV_HEADER_DECODE_RESULT> headerResult( qvHeaderDecode( buffer, location ) );
    if ( qvHeaderDecodeResultIsSuccess( headerResult ) )
        return decodeBehindHeader( headerResult );
    qv::Local<QV_HEADER_DECODE_ERROR> headerError( qvHeaderDecodeResultError( headerResult ) );
    if ( qvHeaderDecodeErrorCode( headerError ) == QV_HEADER_DECODE_ERROR_CODE_HEADER_START )
        return decodeContent( buffer, location, -1 );
    qv::Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeErrorCreateWithHeaderDecodeError( headerError ) );
    return qvStoreDecodeResultCreateError( error );
}

QV_STORE *qvStoreTryDecode( QV_BUFFER *buffer, QV_LOCATION *location, QV_STORE_HEADER **headerOut )
{
    if ( headerOut )
        qv::replaceWith<QV_STORE_HEADER>( headerOut, nullptr );
    qv::Local<QV_STORE_DECODE_RESULT> result( qvStoreDecode( buffer, location ) );
    if ( headerOut )
        *headerOut = qvStoreDecodeResultHeader( result );
    return qvStoreDecodeResultStore( result );
}

QV_STORE_DECODE_RESULT *qvStoreDecodeHeaderless( QV_BUFFER *buffer, QV_LOCATION *location,
                                                 QV_STORE_ENCODING enc )
{
    QV_CHECK( buffer );
    QV_CHECK( QV_STORE_ENCODING_OK( enc ) );
    QV_CHECK( qvStoreEncodingIsHeaderless( enc ) );
    const qv::StoreCodec *codec = qv::storeCodec( enc );
    if ( !codec )
        return qv::storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_ENCODING, nullptr );
    return codec->decode( buffer, location );
}

void qv___StoreEncodingStartup()
{
    qv___StoreEncodingEnum = qv::enumFromTable( encodingNames, QV_SIZEOF_ARRAY( encodingNames ) );
}

void qv___StoreEncodingShutdown()
{
    qv::retire( &qv___StoreEncodingEnum );
}
