#ifndef QV_BASE_QV_STORE_ENCODING_HH
#define QV_BASE_QV_STORE_ENCODING_HH

// The encodings of stores inside the library: the table of codecs, the records of results and errors.

#include <qv/base/qv_store_encoding.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: at most one of the wrapped errors is present, each with its own code only.
struct qv___StoreDecodeError : qv___Obj
{
    QV_STORE_DECODE_ERROR_CODE code;
    QV_LOCATION *location;                     // may be null
    QV_HEADER_DECODE_ERROR *headerDecodeError; // may be null
    QV_JSON_DECODE_ERROR *jsonDecodeError;     // may be null
};

// Invariant: exactly one of store and error is present; header only beside store.
struct qv___StoreDecodeResult : qv___Obj
{
    QV_STORE *store;
    QV_STORE_HEADER *header; // may be null
    QV_STORE_DECODE_ERROR *error;
};

extern QV_ENUM *qv___StoreEncodingEnum;
extern QV_ENUM *qv___StoreDecodeErrorCodeEnum;

void qv___StoreDecodeErrorFreeFunc( qvObj thisObj );
void qv___StoreDecodeResultFreeFunc( qvObj thisObj );

void qv___StoreEncodingStartup();
void qv___StoreEncodingShutdown();
void qv___StoreDecodeErrorCodeStartup();
void qv___StoreDecodeErrorCodeShutdown();

namespace qv
{

// How one headerless encoding is written and read.
struct StoreCodec
{
    QV_STORE_ENCODING encoding;

    // Writes the whole store.
    void ( *encode )( QV_STORE *store, QV_BYTE_SINK *sink );

    // Decodes the whole buffer; never null. location, that of the first byte, may be null.
    QV_STORE_DECODE_RESULT *( *decode )( QV_BUFFER *buffer, QV_LOCATION *location );
};

// The codec of a headerless encoding, null for one that the library doesn't have.
const StoreCodec *storeCodec( QV_STORE_ENCODING enc );

// The result of the first codec in the order of detection that takes the bytes, null when none does.
QV_STORE_DECODE_RESULT *detectStore( QV_BUFFER *buffer, QV_LOCATION *location );

// A failed result with a code; location may be null.
QV_STORE_DECODE_RESULT *storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE code, QV_LOCATION *location );

} // namespace qv

#endif
