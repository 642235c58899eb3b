#ifndef QV_BASE_QV_STORE_ENCODING_H
#define QV_BASE_QV_STORE_ENCODING_H

/* Stores as bytes: the encodings, with and without a data-file header in front, the result of a decoding and
 * its errors. Null handles stop the process unless a comment allows null; the caller owns what a function
 * returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* How a store stands in bytes. The first four stand behind a data-file header. */
typedef QV_INT QV_STORE_ENCODING;
#define QV_STORE_ENCODING_STANDARD 0
#define QV_STORE_ENCODING_JSON 1
#define QV_STORE_ENCODING_LEGACY_TEXT 2
#define QV_STORE_ENCODING_LEGACY_BINARY 3
#define QV_STORE_ENCODING_HEADERLESS_STANDARD 4
#define QV_STORE_ENCODING_HEADERLESS_JSON 5
#define QV_STORE_ENCODING_HEADERLESS_LEGACY_TEXT 6
#define QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY 7
#define QV_STORE_ENCODING_OK( enc ) ( ( enc ) >= 0 && ( enc ) <= 7 )

/* Why bytes are no store. */
typedef QV_INT QV_STORE_DECODE_ERROR_CODE;
#define QV_STORE_DECODE_ERROR_CODE_HEADER 0
#define QV_STORE_DECODE_ERROR_CODE_ENCODING 1
#define QV_STORE_DECODE_ERROR_CODE_CHARSET 2
#define QV_STORE_DECODE_ERROR_CODE_TRAILING 3
#define QV_STORE_DECODE_ERROR_CODE_END 4
#define QV_STORE_DECODE_ERROR_CODE_TOKEN 5
#define QV_STORE_DECODE_ERROR_CODE_UNEXPECTED 6
#define QV_STORE_DECODE_ERROR_CODE_NLF 7
#define QV_STORE_DECODE_ERROR_CODE_ADDRESS 8
#define QV_STORE_DECODE_ERROR_CODE_DUPLICATE 9
#define QV_STORE_DECODE_ERROR_CODE_ESCAPE 10
#define QV_STORE_DECODE_ERROR_CODE_DEPTH 11
#define QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING 12
#define QV_STORE_DECODE_ERROR_CODE_JSON_VALUE 13
#define QV_STORE_DECODE_ERROR_CODE_LEGACY_BINARY_ENCODING 14
#define QV_STORE_DECODE_ERROR_CODE_OK( ec ) ( ( ec ) >= 0 && ( ec ) <= 14 )

QV_BEGIN_DECLS

/* The encoding of a name such as "QV_STORE_ENCODING_STANDARD" or of its number, -1 for none. */
QV_API QV_STORE_ENCODING qvStoreEncodingFromString( QV_STRING *qvs );

/* The name of an encoding. */
QV_API QV_STRING *qvStoreEncodingToString( QV_STORE_ENCODING enc );

/* True for the encodings without a header. */
QV_API QV_BOOL qvStoreEncodingIsHeaderless( QV_STORE_ENCODING enc );

/* The same encoding without a header. */
QV_API QV_STORE_ENCODING qvStoreEncodingToHeaderless( QV_STORE_ENCODING enc );

QV_SORT_FUNCTIONS( QV_STORE_DECODE_ERROR, qvStoreDecodeError )

/* A new error. location may be null. */
QV_API QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreate( QV_STORE_DECODE_ERROR_CODE code,
                                                        QV_LOCATION *location );

/* An error with the code QV_STORE_DECODE_ERROR_CODE_HEADER that wraps err and has its location. */
QV_API QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreateWithHeaderDecodeError( QV_HEADER_DECODE_ERROR *err );

/* An error with the code QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING that wraps err and has its location. */
QV_API QV_STORE_DECODE_ERROR *qvStoreDecodeErrorCreateWithJsonDecodeError( QV_JSON_DECODE_ERROR *err );

/* The code. */
QV_API QV_STORE_DECODE_ERROR_CODE qvStoreDecodeErrorCode( QV_STORE_DECODE_ERROR *err );

/* Where the fault lies, or null. */
QV_API QV_LOCATION *qvStoreDecodeErrorLocation( QV_STORE_DECODE_ERROR *err );

/* True if the error has a location. */
QV_API QV_BOOL qvStoreDecodeErrorHasLocation( QV_STORE_DECODE_ERROR *err );

/* The wrapped error of the header, or null. */
QV_API QV_HEADER_DECODE_ERROR *qvStoreDecodeErrorHeaderDecodeError( QV_STORE_DECODE_ERROR *err );

/* True if the error wraps one of the header. */
QV_API QV_BOOL qvStoreDecodeErrorHasHeaderDecodeError( QV_STORE_DECODE_ERROR *err );

/* The wrapped error of the JSON text, or null. */
QV_API QV_JSON_DECODE_ERROR *qvStoreDecodeErrorJsonDecodeError( QV_STORE_DECODE_ERROR *err );

/* True if the error wraps one of the JSON text. */
QV_API QV_BOOL qvStoreDecodeErrorHasJsonDecodeError( QV_STORE_DECODE_ERROR *err );

/* The message of the innermost wrapped error; without one, a message of level QV_MESSAGE_LEVEL_ERROR with
 * the location and the text of the code. */
QV_API QV_MESSAGE *qvStoreDecodeErrorToMessage( QV_STORE_DECODE_ERROR *err );

/* The code of a name such as "QV_STORE_DECODE_ERROR_CODE_END" or of its number, -1 for none. */
QV_API QV_STORE_DECODE_ERROR_CODE qvStoreDecodeErrorCodeFromString( QV_STRING *qvs );

/* The name of a code. */
QV_API QV_STRING *qvStoreDecodeErrorCodeToString( QV_STORE_DECODE_ERROR_CODE code );

/* What a code means, in English, for a message. */
QV_API QV_STRING *qvStoreDecodeErrorCodeMessageText( QV_STORE_DECODE_ERROR_CODE code );

QV_SORT_FUNCTIONS( QV_STORE_DECODE_RESULT, qvStoreDecodeResult )

/* The result of a success. header may be null. */
QV_API QV_STORE_DECODE_RESULT *qvStoreDecodeResultCreateSuccess( QV_STORE *store, QV_STORE_HEADER *header );

/* The result of a failure. */
QV_API QV_STORE_DECODE_RESULT *qvStoreDecodeResultCreateError( QV_STORE_DECODE_ERROR *error );

/* True if the result has a store. */
QV_API QV_BOOL qvStoreDecodeResultIsSuccess( QV_STORE_DECODE_RESULT *result );

/* True if the result has an error. */
QV_API QV_BOOL qvStoreDecodeResultIsError( QV_STORE_DECODE_RESULT *result );

/* The decoded store, null after a failure. */
QV_API QV_STORE *qvStoreDecodeResultStore( QV_STORE_DECODE_RESULT *result );

/* True if the result has a store. */
QV_API QV_BOOL qvStoreDecodeResultHasStore( QV_STORE_DECODE_RESULT *result );

/* The header that stood in front; null when none did and after a failure. */
QV_API QV_STORE_HEADER *qvStoreDecodeResultHeader( QV_STORE_DECODE_RESULT *result );

/* True if the result has a header. */
QV_API QV_BOOL qvStoreDecodeResultHasHeader( QV_STORE_DECODE_RESULT *result );

/* The error, null after a success. */
QV_API QV_STORE_DECODE_ERROR *qvStoreDecodeResultError( QV_STORE_DECODE_RESULT *result );

/* True if the result has an error. */
QV_API QV_BOOL qvStoreDecodeResultHasError( QV_STORE_DECODE_RESULT *result );

/* The bytes of a store in the encoding that the header names, QV_STORE_ENCODING_STANDARD when it names
 * none. The header is written in front unless the encoding is headerless. */
QV_API QV_BUFFER *qvStoreEncode( QV_STORE *store, QV_STORE_HEADER *header );

/* The bytes of a store alone. enc is headerless; any other stops the process. */
QV_API QV_BUFFER *qvStoreEncodeHeaderless( QV_STORE *store, QV_STORE_ENCODING enc );

/* Decodes bytes with or without a header. Without a header, or when it names no encoding, the encodings
 * are tried in turn; the last of them, legacy text, takes any bytes, so that a text with a fault may come
 * back as a store of few or no entries. location is that of the first byte and may be null. Never null; the
 * first error ends the decoding. */
QV_API QV_STORE_DECODE_RESULT *qvStoreDecode( QV_BUFFER *buffer, QV_LOCATION *location );

/* Decodes likewise; null on a failure. headerOut may be null; otherwise the handle there is released if
 * there is one, and becomes the header of a success, or null. */
QV_API QV_STORE *qvStoreTryDecode( QV_BUFFER *buffer, QV_LOCATION *location, QV_STORE_HEADER **headerOut );

/* Decodes bytes in exactly one encoding. enc is headerless; any other stops the process. location is that
 * of the first byte and may be null. Never null. */
QV_API QV_STORE_DECODE_RESULT *qvStoreDecodeHeaderless( QV_BUFFER *buffer, QV_LOCATION *location,
                                                        QV_STORE_ENCODING enc );

QV_END_DECLS

#endif
