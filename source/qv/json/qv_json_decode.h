#ifndef QV_JSON_QV_JSON_DECODE_H
#define QV_JSON_QV_JSON_DECODE_H

/* Decoding of JSON text (RFC 8259) into a value. The decoder refuses names that occur twice in an object and, unless
 * flags say otherwise, small letters as digits of escapes. Null handles stop the process; the caller owns what a
 * function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* What is wrong with a text. */
typedef QV_INT QV_JSON_DECODE_ERROR_CODE;

#define QV_JSON_DECODE_ERROR_CODE_CHARSET    0 /* the bytes aren't text of the charset */
#define QV_JSON_DECODE_ERROR_CODE_TRAILING   1 /* something stands behind the value */
#define QV_JSON_DECODE_ERROR_CODE_END        2 /* the text ends where a token must follow */
#define QV_JSON_DECODE_ERROR_CODE_TOKEN      3 /* what stands there is no token */
#define QV_JSON_DECODE_ERROR_CODE_UNEXPECTED 4 /* the token can't stand there */
#define QV_JSON_DECODE_ERROR_CODE_DUPLICATE  5 /* a name occurs twice in an object */
#define QV_JSON_DECODE_ERROR_CODE_ESCAPE     6 /* an escape has no meaning */
#define QV_JSON_DECODE_ERROR_CODE_DEPTH      7 /* the values are nested too deeply */

/* True for the eight codes. Evaluates its argument twice. */
#define QV_JSON_DECODE_ERROR_CODE_OK( ec )                                                                   \
    ( ( ec ) >= QV_JSON_DECODE_ERROR_CODE_CHARSET && ( ec ) <= QV_JSON_DECODE_ERROR_CODE_DEPTH )

QV_BEGIN_DECLS

/* The code of a name such as "QV_JSON_DECODE_ERROR_CODE_END", or of its number as text; -1 for anything else. */
QV_API QV_JSON_DECODE_ERROR_CODE qvJsonDecodeErrorCodeFromString( QV_STRING *qvs );

/* The name of a code, and a text for people. Any other number stops the process. */
QV_API QV_STRING *qvJsonDecodeErrorCodeToString( QV_JSON_DECODE_ERROR_CODE code );
QV_API QV_STRING *qvJsonDecodeErrorCodeMessageText( QV_JSON_DECODE_ERROR_CODE code );

QV_SORT_FUNCTIONS( QV_JSON_DECODE_ERROR, qvJsonDecodeError )

/* A new error; location may be null. */
QV_API QV_JSON_DECODE_ERROR *qvJsonDecodeErrorCreate( QV_JSON_DECODE_ERROR_CODE code, QV_LOCATION *location );

QV_API QV_JSON_DECODE_ERROR_CODE qvJsonDecodeErrorCode( QV_JSON_DECODE_ERROR *err );

/* The location, or null. */
QV_API QV_LOCATION *qvJsonDecodeErrorLocation( QV_JSON_DECODE_ERROR *err );
QV_API QV_BOOL qvJsonDecodeErrorHasLocation( QV_JSON_DECODE_ERROR *err );

/* A message of the level QV_MESSAGE_LEVEL_ERROR with the error's location and the text of its code. */
QV_API QV_MESSAGE *qvJsonDecodeErrorToMessage( QV_JSON_DECODE_ERROR *err );

QV_SORT_FUNCTIONS( QV_JSON_DECODE_RESULT, qvJsonDecodeResult )

/* A new result: of a success with its value, of a failure with its error. */
QV_API QV_JSON_DECODE_RESULT *qvJsonDecodeResultCreateSuccess( QV_JSON_VALUE *value );
QV_API QV_JSON_DECODE_RESULT *qvJsonDecodeResultCreateError( QV_JSON_DECODE_ERROR *error );

QV_API QV_BOOL qvJsonDecodeResultIsSuccess( QV_JSON_DECODE_RESULT *result );
QV_API QV_BOOL qvJsonDecodeResultIsError( QV_JSON_DECODE_RESULT *result );

/* The value of a success, null for a failure. */
QV_API QV_JSON_VALUE *qvJsonDecodeResultValue( QV_JSON_DECODE_RESULT *result );
QV_API QV_BOOL qvJsonDecodeResultHasValue( QV_JSON_DECODE_RESULT *result );

/* The error of a failure, null for a success. */
QV_API QV_JSON_DECODE_ERROR *qvJsonDecodeResultError( QV_JSON_DECODE_RESULT *result );
QV_API QV_BOOL qvJsonDecodeResultHasError( QV_JSON_DECODE_RESULT *result );

/* Decodes the bytes of a buffer, in the charset of the options. location, which may be null, is that of the first
 * character: locations, which only the flag QV_JSON_FLAG_DECODE_LOCATIONS asks for, count from there. The result is
 * never null. */
QV_API QV_JSON_DECODE_RESULT *qvJsonDecode( QV_BUFFER *buffer, QV_LOCATION *location );
QV_API QV_JSON_DECODE_RESULT *qvJsonDecodeWithOptions( QV_BUFFER *buffer, QV_JSON_OPTIONS *options,
                                                       QV_LOCATION *location );

/* The same for characters. */
QV_API QV_JSON_DECODE_RESULT *qvJsonDecodeString( QV_STRING *string, QV_LOCATION *location );
QV_API QV_JSON_DECODE_RESULT *qvJsonDecodeStringWithOptions( QV_STRING *string, QV_JSON_OPTIONS *options,
                                                             QV_LOCATION *location );

QV_END_DECLS

#endif
