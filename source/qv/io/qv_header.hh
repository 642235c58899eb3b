#ifndef QV_IO_QV_HEADER_HH
#define QV_IO_QV_HEADER_HH

// Records of the generic data-file header, of its decoding and of a decoding's error.

#include <qv/io/qv_header.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: qvNameOk( type, QV_TRUE ); store is never null.
struct qv___Header : qv___Obj
{
    QV_STRING *type;
    QV_MODULE_VERSION *moduleVersion; // may be null
    QV_STORE *store;
};

// Invariant: storeDecodeError is present exactly with the code QV_HEADER_DECODE_ERROR_CODE_STORE.
struct qv___HeaderDecodeError : qv___Obj
{
    QV_HEADER_DECODE_ERROR_CODE code;
    QV_LOCATION *location; // may be null
    QV_STORE_DECODE_ERROR *storeDecodeError;
};

// Invariant: either the first three are present or error is.
struct qv___HeaderDecodeResult : qv___Obj
{
    QV_HEADER *header;
    QV_BUFFER *trailing;
    QV_LOCATION *trailingBaseLocation;
    QV_HEADER_DECODE_ERROR *error;
};

extern QV_ENUM *qv___HeaderDecodeErrorCodeEnum;

void qv___HeaderFreeFunc( qvObj thisObj );
void qv___HeaderDecodeErrorFreeFunc( qvObj thisObj );
void qv___HeaderDecodeResultFreeFunc( qvObj thisObj );

void qv___HeaderDecodeErrorCodeStartup();
void qv___HeaderDecodeErrorCodeShutdown();

#endif
