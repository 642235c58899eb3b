#include <qv/json/qv_json_decode.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_message.h>
#include <qv/json/qv_json_value.h>
#include <qv/runtime/qv_local.hh>

// Results of decoding and their errors.

QV_SORT_DEFINE( QV_JSON_DECODE_ERROR, qvJsonDecodeError, { .freeFunc = qv___JsonDecodeErrorFreeFunc } )
QV_SORT_DEFINE( QV_JSON_DECODE_RESULT, qvJsonDecodeResult, { .freeFunc = qv___JsonDecodeResultFreeFunc } )

constinit QV_ENUM *qv___JsonDecodeErrorCodeEnum = nullptr;

namespace
{

constexpr qv::EnumName codeNames[] = {
    { QV_JSON_DECODE_ERROR_CODE_CHARSET, "QV_JSON_DECODE_ERROR_CODE_CHARSET" },
    { QV_JSON_DECODE_ERROR_CODE_TRAILING, "QV_JSON_DECODE_ERROR_CODE_TRAILING" },
    { QV_JSON_DECODE_ERROR_CODE_END, "QV_JSON_DECODE_ERROR_CODE_END" },
    { QV_JSON_DECODE_ERROR_CODE_TOKEN, "QV_JSON_DECODE_ERROR_CODE_TOKEN" },
    { QV_JSON_DECODE_ERROR_CODE_UNEXPECTED, "QV_JSON_DECODE_ERROR_CODE_UNEXPECTED" },
    { QV_JSON_DECODE_ERROR_CODE_DUPLICATE, "QV_JSON_DECODE_ERROR_CODE_DUPLICATE" },
    { QV_JSON_DECODE_ERROR_CODE_ESCAPE, "QV_JSON_DECODE_ERROR_CODE_ESCAPE" },
    { QV_JSON_DECODE_ERROR_CODE_DEPTH, "QV_JSON_DECODE_ERROR_CODE_DEPTH" },
};

// By code.
constexpr const char *codeTexts[] = {
    "invalid charset encoding", "trailing content after JSON data",
    "unexpected end of input",  "invalid JSON token",
    "unexpected JSON token",    "duplicate member name in JSON object",
    "invalid escape sequence",  "maximum nesting depth exceeded",
};

} // namespace

// ---- Codes ----

QV_JSON_DECODE_ERROR_CODE qvJsonDecodeErrorCodeFromString( QV_STRING *qvs )
{
    return qvEnumParse( qv___JsonDecodeErrorCodeEnum, qvs );
}

QV_STRING *qvJsonDecodeErrorCodeToString( QV_JSON_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_JSON_DECODE_ERROR_CODE_OK( code ) );
    return qvEnumGenerate( qv___JsonDecodeErrorCodeEnum, code );
}

QV_STRING *qvJsonDecodeErrorCodeMessageText( QV_JSON_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_JSON_DECODE_ERROR_CODE_OK( code ) );
    return qvStringCreateFromAscii( codeTexts[code], -1 );
}

void qv::startJsonDecodeErrorCodes()
{
    qv___JsonDecodeErrorCodeEnum = enumFromTable( codeNames, QV_SIZEOF_ARRAY( codeNames ) );
}

void qv::stopJsonDecodeErrorCodes()
{
    retire( &qv___JsonDecodeErrorCodeEnum );
}

// ---- Errors ----

void qv___JsonDecodeErrorFreeFunc( qvObj thisObj )
{
    QV_JSON_DECODE_ERROR *err = qvJsonDecodeErrorFrom( thisObj );
    QV_CHECK( err );
    qv::releaseOptional( err->location );
}

QV_JSON_DECODE_ERROR *qvJsonDecodeErrorCreate( QV_JSON_DECODE_ERROR_CODE code, QV_LOCATION *location )
{
    QV_CHECK( QV_JSON_DECODE_ERROR_CODE_OK( code ) );
    auto *err = qv::create<QV_JSON_DECODE_ERROR>( qvJsonDecodeErrorSort() );
    err->code = code;
    err->location = qv::retainedOptional( location );
    return err;
}

QV_JSON_DECODE_ERROR_CODE qvJsonDecodeErrorCode( QV_JSON_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return err->code;
}

QV_LOCATION *qvJsonDecodeErrorLocation( QV_JSON_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->location );
}

QV_BOOL qvJsonDecodeErrorHasLocation( QV_JSON_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->location );
}

QV_MESSAGE *qvJsonDecodeErrorToMessage( QV_JSON_DECODE_ERROR *err )
{
    QV_CHECK( err );
    qv::Local<QV_STRING> text( qvJsonDecodeErrorCodeMessageText( err->code ) );
    return qvMessageCreate( QV_MESSAGE_LEVEL_ERROR, err->location, text );
}

// ---- Results ----

void qv___JsonDecodeResultFreeFunc( qvObj thisObj )
{
    QV_JSON_DECODE_RESULT *result = qvJsonDecodeResultFrom( thisObj );
    QV_CHECK( result );
    qv::releaseOptional( result->value );
    qv::releaseOptional( result->error );
}

QV_JSON_DECODE_RESULT *qvJsonDecodeResultCreateSuccess( QV_JSON_VALUE *value )
{
    QV_CHECK( value );
    auto *result = qv::create<QV_JSON_DECODE_RESULT>( qvJsonDecodeResultSort() );
    result->value = qv::retained( value );
    result->error = nullptr;
    return result;
}

QV_JSON_DECODE_RESULT *qvJsonDecodeResultCreateError( QV_JSON_DECODE_ERROR *error )
{
    QV_CHECK( error );
    auto *result = qv::create<QV_JSON_DECODE_RESULT>( qvJsonDecodeResultSort() );
    result->value = nullptr;
    result->error = qv::retained( error );
    return result;
}

QV_BOOL qvJsonDecodeResultIsSuccess( QV_JSON_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->value );
}

QV_BOOL qvJsonDecodeResultIsError( QV_JSON_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->error );
}

QV_JSON_VALUE *qvJsonDecodeResultValue( QV_JSON_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->value );
}

QV_BOOL qvJsonDecodeResultHasValue( QV_JSON_DECODE_RESULT *result )
{
    return qvJsonDecodeResultIsSuccess( result );
}

QV_JSON_DECODE_ERROR *qvJsonDecodeResultError( QV_JSON_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->error );
}

QV_BOOL qvJsonDecodeResultHasError( QV_JSON_DECODE_RESULT *result )
{
    return qvJsonDecodeResultIsError( result );
}
