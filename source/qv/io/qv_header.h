#ifndef QV_IO_QV_HEADER_H
#define QV_IO_QV_HEADER_H

/* Data-file headers: two separator lines, between them a line with the type of the data and the version of
 * the module that wrote it, and a store in standard text. Headers are copy-on-write: functions that edit take
 * the address of the caller's handle. Null handles stop the process unless a comment allows null; the caller
 * owns what a function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Why bytes don't begin with a header. QV_HEADER_DECODE_ERROR_CODE_HEADER_START is the ordinary answer for
 * data without one. */
typedef QV_INT QV_HEADER_DECODE_ERROR_CODE;
#define QV_HEADER_DECODE_ERROR_CODE_HEADER_START 0
#define QV_HEADER_DECODE_ERROR_CODE_HEADER_END 1
#define QV_HEADER_DECODE_ERROR_CODE_HEADER_END_NLF 2
#define QV_HEADER_DECODE_ERROR_CODE_INDICATOR 3
#define QV_HEADER_DECODE_ERROR_CODE_TYPE 4
#define QV_HEADER_DECODE_ERROR_CODE_MODULE_VERSION 5
#define QV_HEADER_DECODE_ERROR_CODE_STORE 6
#define QV_HEADER_DECODE_ERROR_CODE_OK( ec ) ( ( ec ) >= 0 && ( ec ) <= 6 )

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_HEADER, qvHeader )

/* A new header of a type, without version and with an empty store. A type that qvNameOk( type, QV_TRUE )
 * refuses stops the process, here and below. */
QV_API QV_HEADER *qvHeaderCreate( QV_STRING *type );

/* A copy. */
QV_API QV_HEADER *qvHeaderCreateFrom( QV_HEADER *source );

/* A new header whose type is the name of a sort; on demand with the version of the module that owns the
 * sort. */
QV_API QV_HEADER *qvHeaderCreateFromSort( QV_SORT *sort, QV_BOOL updateModuleVersion );

/* The type. */
QV_API QV_STRING *qvHeaderType( QV_HEADER *hdr );

/* Sets the type. */
QV_API void qvHeaderSetType( QV_HEADER **hdr, QV_STRING *type );

/* Sets the name of a sort as the type, and on demand the version as qvHeaderUpdateModuleVersionFromSort
 * does. */
QV_API void qvHeaderSetTypeFromSort( QV_HEADER **hdr, QV_SORT *sort, QV_BOOL updateModuleVersion );

/* True if this is the type. */
QV_API QV_BOOL qvHeaderIsType( QV_HEADER *hdr, QV_STRING *type );

/* True if the type is the name of the sort. */
QV_API QV_BOOL qvHeaderIsTypeSort( QV_HEADER *hdr, QV_SORT *sort );

/* The version of the module that owns the type, or null. */
QV_API QV_MODULE_VERSION *qvHeaderModuleVersion( QV_HEADER *hdr );

/* True if the header has a version. */
QV_API QV_BOOL qvHeaderHasModuleVersion( QV_HEADER *hdr );

/* Sets the version. */
QV_API void qvHeaderSetModuleVersion( QV_HEADER **hdr, QV_MODULE_VERSION *moduleVersion );

/* Removes the version. */
QV_API void qvHeaderDelModuleVersion( QV_HEADER **hdr );

/* Sets the version of the module that owns the sort; removes it when the sort has no module or the module
 * no version. */
QV_API void qvHeaderUpdateModuleVersionFromSort( QV_HEADER **hdr, QV_SORT *sort );

/* The data of the header. */
QV_API QV_STORE *qvHeaderStore( QV_HEADER *hdr );

/* Sets the data of the header. */
QV_API void qvHeaderSetStore( QV_HEADER **hdr, QV_STORE *store );

/* The bytes of the header, both separator lines included, in UTF-8 with LF. */
QV_API QV_BUFFER *qvHeaderEncode( QV_HEADER *hdr );

/* Decodes the header at the begin of bytes. location is that of the first byte and may be null. Never
 * null. */
QV_API QV_HEADER_DECODE_RESULT *qvHeaderDecode( QV_BUFFER *buffer, QV_LOCATION *location );

/* Decodes likewise and replaces the buffer by the bytes behind the header and the location by that of the
 * first of them. Null on a failure, which changes nothing. location, and the handle there, may be null. */
QV_API QV_HEADER *qvHeaderTryDecode( QV_BUFFER **buffer, QV_LOCATION **location );

QV_SORT_FUNCTIONS( QV_HEADER_DECODE_ERROR, qvHeaderDecodeError )

/* A new error. QV_HEADER_DECODE_ERROR_CODE_STORE stops the process, as it needs the error of the store.
 * location may be null. */
QV_API QV_HEADER_DECODE_ERROR *qvHeaderDecodeErrorCreate( QV_HEADER_DECODE_ERROR_CODE code,
                                                          QV_LOCATION *location );

/* An error with the code QV_HEADER_DECODE_ERROR_CODE_STORE that wraps err and has its location. */
QV_API QV_HEADER_DECODE_ERROR *qvHeaderDecodeErrorCreateWithStoreDecodeError( QV_STORE_DECODE_ERROR *err );

/* The code. */
QV_API QV_HEADER_DECODE_ERROR_CODE qvHeaderDecodeErrorCode( QV_HEADER_DECODE_ERROR *err );

/* Where the fault lies, or null. */
QV_API QV_LOCATION *qvHeaderDecodeErrorLocation( QV_HEADER_DECODE_ERROR *err );

/* True if the error has a location. */
QV_API QV_BOOL qvHeaderDecodeErrorHasLocation( QV_HEADER_DECODE_ERROR *err );

/* The wrapped error of the header's store, or null. */
QV_API QV_STORE_DECODE_ERROR *qvHeaderDecodeErrorStoreDecodeError( QV_HEADER_DECODE_ERROR *err );

/* True if the error wraps one of the store. */
QV_API QV_BOOL qvHeaderDecodeErrorHasStoreDecodeError( QV_HEADER_DECODE_ERROR *err );

/* The message of the wrapped error; without one, a message of level QV_MESSAGE_LEVEL_ERROR with the
 * location and the text of the code. */
QV_API QV_MESSAGE *qvHeaderDecodeErrorToMessage( QV_HEADER_DECODE_ERROR *err );

/* The code of a name such as "QV_HEADER_DECODE_ERROR_CODE_TYPE" or of its number, -1 for none. */
QV_API QV_HEADER_DECODE_ERROR_CODE qvHeaderDecodeErrorCodeFromString( QV_STRING *qvs );

/* The name of a code. */
QV_API QV_STRING *qvHeaderDecodeErrorCodeToString( QV_HEADER_DECODE_ERROR_CODE code );

/* What a code means, in English, for a message. */
QV_API QV_STRING *qvHeaderDecodeErrorCodeMessageText( QV_HEADER_DECODE_ERROR_CODE code );

QV_SORT_FUNCTIONS( QV_HEADER_DECODE_RESULT, qvHeaderDecodeResult )

/* The result of a success: the header, the bytes behind it, and the location of the first of them. */
QV_API QV_HEADER_DECODE_RESULT *qvHeaderDecodeResultCreateSuccess( QV_HEADER *hdr, QV_BUFFER *trailing,
                                                                   QV_LOCATION *trailingBaseLocation );

/* The result of a failure. */
QV_API QV_HEADER_DECODE_RESULT *qvHeaderDecodeResultCreateError( QV_HEADER_DECODE_ERROR *err );

/* True if the result has a header. */
QV_API QV_BOOL qvHeaderDecodeResultIsSuccess( QV_HEADER_DECODE_RESULT *result );

/* True if the result has an error. */
QV_API QV_BOOL qvHeaderDecodeResultIsError( QV_HEADER_DECODE_RESULT *result );

/* The header, null after a failure. */
QV_API QV_HEADER *qvHeaderDecodeResultHeader( QV_HEADER_DECODE_RESULT *result );

/* True if the result has the header. */
QV_API QV_BOOL qvHeaderDecodeResultHasHeader( QV_HEADER_DECODE_RESULT *result );

/* The bytes behind the header, null after a failure. */
QV_API QV_BUFFER *qvHeaderDecodeResultTrailing( QV_HEADER_DECODE_RESULT *result );

/* True if the result has the bytes behind the header. */
QV_API QV_BOOL qvHeaderDecodeResultHasTrailing( QV_HEADER_DECODE_RESULT *result );

/* The location of the first byte behind the header, null after a failure. */
QV_API QV_LOCATION *qvHeaderDecodeResultTrailingBaseLocation( QV_HEADER_DECODE_RESULT *result );

/* True if the result has the location of the first byte behind the header. */
QV_API QV_BOOL qvHeaderDecodeResultHasTrailingBaseLocation( QV_HEADER_DECODE_RESULT *result );

/* The error, null after a success. */
QV_API QV_HEADER_DECODE_ERROR *qvHeaderDecodeResultError( QV_HEADER_DECODE_RESULT *result );

/* True if the result has an error. */
QV_API QV_BOOL qvHeaderDecodeResultHasError( QV_HEADER_DECODE_RESULT *result );

/* The message of the error, as qvHeaderDecodeErrorToMessage gives it. A result without an error stops the
 * process. */
QV_API QV_MESSAGE *qvHeaderDecodeResultErrorToMessage( QV_HEADER_DECODE_RESULT *result );

QV_END_DECLS

#endif
