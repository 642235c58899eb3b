#ifndef QV_JSON_QV_JSON_DECODE_HH
#define QV_JSON_QV_JSON_DECODE_HH

// Results of decoding JSON text and their errors.

#include <qv/json/qv_json_decode.h>
#include <qv/runtime/qv_obj.hh>

struct qv___JsonDecodeError : qv___Obj
{
    QV_JSON_DECODE_ERROR_CODE code;
    QV_LOCATION *location; // may be null
};

// Invariant: exactly one of value and error is present.
struct qv___JsonDecodeResult : qv___Obj
{
    QV_JSON_VALUE *value;
    QV_JSON_DECODE_ERROR *error;
};

extern QV_ENUM *qv___JsonDecodeErrorCodeEnum;

void qv___JsonDecodeErrorFreeFunc( qvObj thisObj );
void qv___JsonDecodeResultFreeFunc( qvObj thisObj );

namespace qv
{

// The names of the codes, which come and go with those of the types.
void startJsonDecodeErrorCodes();
void stopJsonDecodeErrorCodes();

} // namespace qv

#endif
