#ifndef QV_BASE_QV_STORE_STANDARD_HH
#define QV_BASE_QV_STORE_STANDARD_HH

// Stores as standard text: one member a line, nested in braces and brackets, strings in quotes.

#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_encoding.hh>

// Kinds of tokens. A line end is a line break or a comment with its line break.
#define QV___STORE_TOKEN_LINE_END 0
#define QV___STORE_TOKEN_WORD 1
#define QV___STORE_TOKEN_STRING 2
#define QV___STORE_TOKEN_STORE_BEGIN 3
#define QV___STORE_TOKEN_STORE_END 4
#define QV___STORE_TOKEN_ARRAY_BEGIN 5
#define QV___STORE_TOKEN_ARRAY_END 6

// Writes a store as standard text, its lines ended by one line feed.
void qv___StoreEncodeStandard( QV_STORE *store, QV_BYTE_SINK *sink );

namespace qv
{

QV_STORE_DECODE_RESULT *decodeStoreStandard( QV_BUFFER *buffer, QV_LOCATION *location );

} // namespace qv

#endif
