#include <qv/base/qv_store_encoding.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_header.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_message.h>
#include <qv/io/qv_store_header.h>
#include <qv/json/qv_json_decode.h>
#include <qv/runtime/qv_local.hh>

// Results of decodings and their errors.

QV_SORT_DEFINE( QV_STORE_DECODE_ERROR, qvStoreDecodeError, { .freeFunc = qv___StoreDecodeErrorFreeFunc } )
QV_SORT_DEFINE( QV_STORE_DECODE_RESULT, qvStoreDecodeResult, { .freeFunc = qv___StoreDecodeResultFreeFunc } )

constinit QV_ENUM *qv___StoreDecodeErrorCodeEnum = nullptr;

namespace
{

constexpr qv::EnumName codeNames[] = {
    { QV_STORE_DECODE_ERROR_CODE_HEADER, "QV_STORE_DECODE_ERROR_CODE_HEADER" },
    { QV_STORE_DECODE_ERROR_CODE_ENCODING, "QV_STORE_DECODE_ERROR_CODE_ENCODING" },
    { QV_STORE_DECODE_ERROR_CODE_CHARSET, "QV_STORE_DECODE_ERROR_CODE_CHARSET" },
    { QV_STORE_DECODE_ERROR_CODE_TRAILING, "QV_STORE_DECODE_ERROR_CODE_TRAILING" },
    { QV_STORE_DECODE_ERROR_CODE_END, "QV_STORE_DECODE_ERROR_CODE_END" },
    { QV_STORE_DECODE_ERROR_CODE_TOKEN, "QV_STORE_DECODE_ERROR_CODE_TOKEN" },
    { QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, "QV_STORE_DECODE_ERROR_CODE_UNEXPECTED" },
    { QV_STORE_DECODE_ERROR_CODE_NLF, "QV_STORE_DECODE_ERROR_CODE_NLF" },
    { QV_STORE_DECODE_ERROR_CODE_ADDRESS, "QV_STORE_DECODE_ERROR_CODE_ADDRESS" },
    { QV_STORE_DECODE_ERROR_CODE_DUPLICATE, "QV_STORE_DECODE_ERROR_CODE_DUPLICATE" },
    { QV_STORE_DECODE_ERROR_CODE_ESCAPE, "QV_STORE_DECODE_ERROR_CODE_ESCAPE" },
    { QV_STORE_DECODE_ERROR_CODE_DEPTH, "QV_STORE_DECODE_ERROR_CODE_DEPTH" },
    { QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING, "QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING" },
    { QV_STORE_DECODE_ERROR_CODE_JSON_VALUE, "QV_STORE_DECODE_ERROR_CODE_JSON_VALUE" },
    { QV_STORE_DECODE_ERROR_CODE_LEGACY_BINARY_ENCODING,
      "QV_STORE_DECODE_ERROR_CODE_LEGACY_BINARY_ENCODING" },
};

// By code.
constexpr const char *codeTexts[] = {
    "header malformed",
    "invalid store encoding",
    "invalid charset encoding",
    "trailing content after data",
    "unexpected end of input",
    "invalid token",
    "unexpected token",
    "unexpected new line",
    "invalid address",
    "duplicate address in store",
    "invalid escape sequence",
    "maximum nesting depth exceeded",
    "invalid JSON encoding",
    "non-object/array JSON value",
    "invalid binary store encoding",
};

QV_STORE_DECODE_ERROR *createError( QV_STORE_DECODE_ERROR_CODE code, QV_LOCATION *givenLocation )
{
    auto *err = qv::create<QV_STORE_DECODE_ERROR>( qvStoreDecodeErrorSort() );
    err->code = code;
    err->location = givenLocation;
    err->headerDecodeError = nullptr;
    err->jsonDecodeError = nullptr;
    return err;
}

} // namespace

void qv___StoreDecodeErrorFreeFunc( qvObj thisObj )
{
    QV_STORE_DECODE_ERROR *err = qvStoreDecodeErrorFrom( thisObj );
    QV_CHECK( err );
    qv::releaseOptional( err->location );
    qv::releaseOptional( err->headerDecodeError );
    qv::releaseOptional( err->jsonDecodeError );
}

QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreate( QV_STORE_DECODE_ERROR_CODE code, QV_LOCATION *location )
{
    QV_CHECK( QV_STORE_DECODE_ERROR_CODE_OK( code ) );
    return createError( code, qv::retainedOptional( location ) );
}

QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreateWithHeaderDecodeError( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    QV_STORE_DECODE_ERROR *wrapper =
        createError( QV_STORE_DECODE_ERROR_CODE_HEADER, qvHeaderDecodeErrorLocation( err ) );
    wrapper->headerDecodeError = qv::retained( err );
    return wrapper;
}

QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreateWithJsonDecodeError( QV_JSON_DECODE_ERROR *err )
{
    QV_CHECK( err );
    QV_STORE_DECODE_ERROR *wrapper =
        createError( QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING, qvJsonDecodeErrorLocation( err ) );
    wrapper->jsonDecodeError = qv::retained( err );
    return wrapper;
}

QV_STORE_DECODE_ERROR_CODE qvStoreDecodeErrorCode( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return err->code;
}

QV_LOCATION *qvStoreDecodeErrorLocation( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->location );
}

QV_BOOL qvStoreDecodeErrorHasLocation( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->location );
}

QV_HEADER_DECODE_ERROR *qvStoreDecodeErrorHeaderDecodeError( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->headerDecodeError );
}

QV_BOOL qvStoreDecodeErrorHasHeaderDecodeError( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->headerDecodeError );
}

QV_JSON_DECODE_ERROR *qvStoreDecodeErrorJsonDecodeError( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->jsonDecodeError );
}

QV_BOOL qvStoreDecodeErrorHasJsonDecodeError( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->jsonDecodeError );
}

QV_MESSAGE *qvStoreDecodeErrorToMessage( QV_STORE_DECODE_ERROR *err )
{
    QV_CHECK( err );
    if ( err->jsonDecodeError )
        return qvJsonDecodeErrorToMessage( err->jsonDecodeError );
    if ( err->headerDecodeError )
        return qvHeaderDecodeErrorToMessage( err->headerDecodeError );
    qv::Local<QV_STRING> text( qvStoreDecodeErrorCodeMessageText( err->code ) );
    return qvMessageCreate( QV_MESSAGE_LEVEL_ERROR, err->location, text );
}

QV_STORE_DECODE_ERROR_CODE qvStoreDecodeErrorCodeFromString( QV_STRING *qvs )
{
    return qvEnumParse( qv___StoreDecodeErrorCodeEnum, qvs );
}

QV_STRING *qvStoreDecodeErrorCodeToString( QV_STORE_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_STORE_DECODE_ERROR_CODE_OK( code ) );
    return qvEnumGenerate( qv___StoreDecodeErrorCodeEnum, code );
}

QV_STRING *qvStoreDecodeErrorCodeMessageText( QV_STORE_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_STORE_DECODE_ERROR_CODE_OK( code ) );
    return qvStringCreateFromAscii( codeTexts[code], -1 );
}

void qv___StoreDecodeResultFreeFunc( qvObj thisObj )
{
    QV_STORE_DECODE_RESULT *result = qvStoreDecodeResultFrom( thisObj );
    QV_CHECK( result );
    qv::releaseOptional( result->store );
    qv::releaseOptional( result->header );
    qv::releaseOptional( result->error );
}

QV_STORE_DECODE_RESULT *qvStoreDecodeResultCreateSuccess( QV_STORE *store, QV_STORE_HEADER *header )
{
    QV_CHECK( store );
    auto *result = qv::create<QV_STORE_DECODE_RESULT>( qvStoreDecodeResultSort() );
    result->store = qv::retained( store );
    result->header = qv::retainedOptional( header );
    result->error = nullptr;
    return result;
}

QV_STORE_DECODE_RESULT *qvStoreDecodeResultCreateError( QV_STORE_DECODE_ERROR *error )
{
    QV_CHECK( error );
    auto *result = qv::create<QV_STORE_DECODE_RESULT>( qvStoreDecodeResultSort() );
    result->store = nullptr;
    result->header = nullptr;
    result->error = qv::retained( error );
    return result;
}

QV_STORE_DECODE_RESULT *qv::storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE code, QV_LOCATION *location )
{
    Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeErrorCreate( code, location ) );
    return qvStoreDecodeResultCreateError( error );
}

QV_BOOL qvStoreDecodeResultIsSuccess( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->store );
}

QV_BOOL qvStoreDecodeResultIsError( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->error );
}

QV_STORE *qvStoreDecodeResultStore( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->store );
}

QV_BOOL qvStoreDecodeResultHasStore( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->store );
}

QV_STORE_HEADER *qvStoreDecodeResultHeader( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->header );
}

QV_BOOL qvStoreDecodeResultHasHeader( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->header );
}

QV_STORE_DECODE_ERROR *qvStoreDecodeResultError( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->error );
}

QV_BOOL qvStoreDecodeResultHasError( QV_STORE_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->error );
}

void qv___StoreDecodeErrorCodeStartup()
{
    qv___StoreDecodeErrorCodeEnum = qv::enumFromTable( codeNames, QV_SIZEOF_ARRAY( codeNames ) );
}

void qv___StoreDecodeErrorCodeShutdown()
{
    qv::retire( &qv___StoreDecodeErrorCodeEnum );
}
