#include <qv/io/qv_header.hh>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_enum.hh>
#include <qv/base/qv_store_encoding.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_message.h>
#include <qv/runtime/qv_local.hh>

// Results of decoding a header and their errors.

QV_SORT_DEFINE( QV_HEADER_DECODE_ERROR, qvHeaderDecodeError, { .freeFunc = qv___HeaderDecodeErrorFreeFunc } )
QV_SORT_DEFINE( QV_HEADER_DECODE_RESULT, qvHeaderDecodeResult,
                { .freeFunc = qv___HeaderDecodeResultFreeFunc } )

constinit QV_ENUM *qv___HeaderDecodeErrorCodeEnum = nullptr;

namespace
{

constexpr qv::EnumName codeNames[] = {
    { QV_HEADER_DECODE_ERROR_CODE_HEADER_START, "QV_HEADER_DECODE_ERROR_CODE_HEADER_START" },
    { QV_HEADER_DECODE_ERROR_CODE_HEADER_END, "QV_HEADER_DECODE_ERROR_CODE_HEADER_END" },
    { QV_HEADER_DECODE_ERROR_CODE_HEADER_END_NLF, "QV_HEADER_DECODE_ERROR_CODE_HEADER_END_NLF" },
    { QV_HEADER_DECODE_ERROR_CODE_INDICATOR, "QV_HEADER_DECODE_ERROR_CODE_INDICATOR" },
    { QV_HEADER_DECODE_ERROR_CODE_TYPE, "QV_HEADER_DECODE_ERROR_CODE_TYPE" },
    { QV_HEADER_DECODE_ERROR_CODE_MODULE_VERSION, "QV_HEADER_DECODE_ERROR_CODE_MODULE_VERSION" },
    { QV_HEADER_DECODE_ERROR_CODE_STORE, "QV_HEADER_DECODE_ERROR_CODE_STORE" },
};

// By code.
constexpr const char *codeTexts[] = {
    "leading separator line missing",
    "trailing separator line missing",
    "trailing separator line NLF unexpected",
    "indicator line malformed",
    "type invalid",
    "module version invalid",
    "store encoding invalid",
};

} // namespace

void qv___HeaderDecodeErrorFreeFunc( qvObj thisObj )
{
    QV_HEADER_DECODE_ERROR *err = qvHeaderDecodeErrorFrom( thisObj );
    QV_CHECK( err );
    qv::releaseOptional( err->location );
    qv::releaseOptional( err->storeDecodeError );
}

QV_HEADER_DECODE_ERROR *qvHeaderDecodeErrorCreate( QV_HEADER_DECODE_ERROR_CODE code, QV_LOCATION *location )
{
    QV_CHECK( QV_HEADER_DECODE_ERROR_CODE_OK( code ) );
    QV_CHECK( code != QV_HEADER_DECODE_ERROR_CODE_STORE );
    auto *err = qv::create<QV_HEADER_DECODE_ERROR>( qvHeaderDecodeErrorSort() );
    err->code = code;
    err->location = qv::retainedOptional( location );
    err->storeDecodeError = nullptr;
    return err;
}

QV_HEADER_DECODE_ERROR *qvHeaderDecodeErrorCreateWithStoreDecodeError( QV_STORE_DECODE_ERROR *storeError )
{
    QV_CHECK( storeError );
    auto *err = qv::create<QV_HEADER_DECODE_ERROR>( qvHeaderDecodeErrorSort() );
    err->code = QV_HEADER_DECODE_ERROR_CODE_STORE;
    err->location = qvStoreDecodeErrorLocation( storeError );
    err->storeDecodeError = qv::retained( storeError );
    return err;
}

QV_HEADER_DECODE_ERROR_CODE qvHeaderDecodeErrorCode( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return err->code;
}

QV_LOCATION *qvHeaderDecodeErrorLocation( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->location );
}

QV_BOOL qvHeaderDecodeErrorHasLocation( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->location );
}

QV_STORE_DECODE_ERROR *qvHeaderDecodeErrorStoreDecodeError( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return qv::retainedOptional( err->storeDecodeError );
}

QV_BOOL qvHeaderDecodeErrorHasStoreDecodeError( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    return QV_BOOL_FROM( err->storeDecodeError );
}

QV_MESSAGE *qvHeaderDecodeErrorToMessage( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    if ( err->storeDecodeError )
        return qvStoreDecodeErrorToMessage( err->storeDecodeError );
    qv::Local<QV_STRING> text( qvHeaderDecodeErrorCodeMessageText( err->code ) );
    return qvMessageCreate( QV_MESSAGE_LEVEL_ERROR, err->location, text );
}

QV_HEADER_DECODE_ERROR_CODE qvHeaderDecodeErrorCodeFromString( QV_STRING *qvs )
{
    return qvEnumParse( qv___HeaderDecodeErrorCodeEnum, qvs );
}

QV_STRING *qvHeaderDecodeErrorCodeToString( QV_HEADER_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_HEADER_DECODE_ERROR_CODE_OK( code ) );
    return qvEnumGenerate( qv___HeaderDecodeErrorCodeEnum, code );
}

QV_STRING *qvHeaderDecodeErrorCodeMessageText( QV_HEADER_DECODE_ERROR_CODE code )
{
    QV_CHECK( QV_HEADER_DECODE_ERROR_CODE_OK( code ) );
    return qvStringCreateFromAscii( codeTexts[code], -1 );
}

void qv___HeaderDecodeResultFreeFunc( qvObj thisObj )
{
    QV_HEADER_DECODE_RESULT *result = qvHeaderDecodeResultFrom( thisObj );
    QV_CHECK( result );
    qv::releaseOptional( result->header );
    qv::releaseOptional( result->trailing );
    qv::releaseOptional( result->trailingBaseLocation );
    qv::releaseOptional( result->error );
}

QV_HEADER_DECODE_RESULT *qvHeaderDecodeResultCreateSuccess( QV_HEADER *hdr, QV_BUFFER *trailing,
                                                            QV_LOCATION *trailingBaseLocation )
{
    QV_CHECK( hdr );
    QV_CHECK( trailing );
    QV_CHECK( trailingBaseLocation );
    auto *result = qv::create<QV_HEADER_DECODE_RESULT>( qvHeaderDecodeResultSort() );
    result->header = qv::retained( hdr );
    result->trailing = qv::retained( trailing );
    result->trailingBaseLocation = qv::retained( trailingBaseLocation );
    result->error = nullptr;
    return result;
}

QV_HEADER_DECODE_RESULT *qvHeaderDecodeResultCreateError( QV_HEADER_DECODE_ERROR *err )
{
    QV_CHECK( err );
    auto *result = qv::create<QV_HEADER_DECODE_RESULT>( qvHeaderDecodeResultSort() );
    result->header = nullptr;
    result->trailing = nullptr;
    result->trailingBaseLocation = nullptr;
    result->error = qv::retained( err );
    return result;
}

QV_BOOL qvHeaderDecodeResultIsSuccess( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->header );
}

QV_BOOL qvHeaderDecodeResultIsError( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->error );
}

QV_HEADER *qvHeaderDecodeResultHeader( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->header );
}

QV_BOOL qvHeaderDecodeResultHasHeader( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->header );
}

QV_BUFFER *qvHeaderDecodeResultTrailing( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->trailing );
}

QV_BOOL qvHeaderDecodeResultHasTrailing( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->trailing );
}

QV_LOCATION *qvHeaderDecodeResultTrailingBaseLocation( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->trailingBaseLocation );
}

QV_BOOL qvHeaderDecodeResultHasTrailingBaseLocation( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->trailingBaseLocation );
}

QV_HEADER_DECODE_ERROR *qvHeaderDecodeResultError( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return qv::retainedOptional( result->error );
}

QV_BOOL qvHeaderDecodeResultHasError( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    return QV_BOOL_FROM( result->error );
}

QV_MESSAGE *qvHeaderDecodeResultErrorToMessage( QV_HEADER_DECODE_RESULT *result )
{
    QV_CHECK( result );
    QV_CHECK( result->error );
    return qvHeaderDecodeErrorToMessage( result->error );
}

void qv___HeaderDecodeErrorCodeStartup()
{
    qv___HeaderDecodeErrorCodeEnum = qv::enumFromTable( codeNames, QV_SIZEOF_ARRAY( codeNames ) );
}

void qv___HeaderDecodeErrorCodeShutdown()
{
    qv::retire( &qv___HeaderDecodeErrorCodeEnum );
}
