#ifndef QV_DEPRECATED_QV_STORE_LEGACY_BINARY_H
#define QV_DEPRECATED_QV_STORE_LEGACY_BINARY_H

/* The compact binary form of stores of earlier versions. It keeps addresses, texts and substores only: what is read back
 * are plain stores of values without hints.
 *
 * A store is the number of its entries, an integer, and for each entry its address, its value as an optional string, and
 * its substore as an optional store, all as an encoder writes them. Null handles stop the process; the caller owns what a
 * function returns. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* The bytes of a store, of any depth. */
QV_API QV_BUFFER *qvStoreLegacyBinaryEncodeToBuffer( QV_STORE *store );

/* Appends them to what an encoder has written. */
QV_API void qvStoreLegacyBinaryEncodeToEncoder( QV_STORE *store, QV_ENCODER *enc );

/* The store of a whole buffer; null if it is none or if bytes remain behind it. At most 99 levels of substores. */
QV_API QV_STORE *qvStoreLegacyBinaryTryDecodeFromBuffer( QV_BUFFER *buffer );

/* The store that a decoder comes to; null with the decoder's error set if there is none. */
QV_API QV_STORE *qvStoreLegacyBinaryTryDecodeFromDecoder( QV_DECODER *dec );

QV_END_DECLS

#endif
