#ifndef QV_DEPRECATED_QV_STORE_LEGACY_TEXT_HH
#define QV_DEPRECATED_QV_STORE_LEGACY_TEXT_HH

#include <qv/deprecated/qv_store_legacy_text.h>

// New strings: an address as it stands in a path, and a text as it stands behind the "=".
QV_STRING *qv___StoreAddressEscape( QV_STRING *address );
QV_STRING *qv___StoreValueEscape( QV_STRING *value );

namespace qv
{

// Writes the bytes of a store and flushes them; false if the charset refuses a character or the sink has an error.
bool storeLegacyTextWrite( QV_STORE *store, QV_BYTE_SINK *sink, QV_CHARSET charset,
                           QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags );

} // namespace qv

#endif
