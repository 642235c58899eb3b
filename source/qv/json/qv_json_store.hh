#ifndef QV_JSON_QV_JSON_STORE_HH
#define QV_JSON_QV_JSON_STORE_HH

// Stores as JSON text.

#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_encoding.hh>
#include <qv/json/qv_json_store.h>

QV_JSON_VALUE *qv___JsonConvertValueFromStoreValue( QV___STORE_VALUE *value );
QV___STORE_VALUE *qv___JsonConvertValueToStoreValue( QV_JSON_VALUE *value );

namespace qv
{

// The functions of the codec: writes a store with default options, and reads one.
void encodeStoreJson( QV_STORE *store, QV_BYTE_SINK *sink );
QV_STORE_DECODE_RESULT *decodeStoreJson( QV_BUFFER *buffer, QV_LOCATION *location );

} // namespace qv

#endif
