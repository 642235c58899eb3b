#ifndef QV_BASE_QV_STORE_STANDARD_HH
#define QV_BASE_QV_STORE_STANDARD_HH

// Stores as standard text: one member a line, nested in braces and brackets, strings in quotes.

#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_encoding.hh>
#include <qv/sys/qv_block.hh>

// Writes a store as standard text in UTF-8, its lines ended by one line feed.
void qv___StoreEncodeStandard( QV_STORE *store, QV_BYTE_SINK *sink );

namespace qv
{

// Reads standard text; never null. location, that of the first byte, may be null.
QV_STORE_DECODE_RESULT *decodeStoreStandard( QV_BUFFER *buffer, QV_LOCATION *location );

// The characters of category Cc.
inline bool isControlChar( QV_CHAR ch )
{
    return ch < 0x20 || ch - 0x7F < 0x21;
}

// Length of the run at the start of a text that has neither a quote nor a backslash nor a control character; with
// breaks also none of the two line breaks that aren't control characters.
template <bool breaks> inline QV_INT plainRun( const QV_CHAR *chs, QV_INT length )
{
    auto isSpecial = []( auto ch ) {
        auto special = ( ch == '"' ) | ( ch == '\\' ) | ( ch < 0x20u ) | ( ch - 0x7Fu < 0x21u );
        if constexpr ( breaks )
            return special | ( ( ch | 1u ) == 0x2029u );
        else
            return special;
    };
    QV_INT count = skipUnmarked( chs, length, isSpecial );
    while ( count < length && !isSpecial( chs[count] ) )
    {
        count++;
    }
    return count;
}

// Whether a text is an integer exactly as it is printed, with few enough digits to fit one for certain.
inline bool isPlainInt( const QV_CHAR *chs, QV_INT length )
{
    QV_INT first = length > 0 && chs[0] == '-' ? 1 : 0;
    QV_INT digits = length - first;
    if ( digits < 1 || digits > 18 || ( chs[first] == '0' && length > 1 ) )
        return false;
    for ( QV_INT idx = first; idx < length; idx++ )
    {
        if ( chs[idx] - '0' > 9 )
            return false;
    }
    return true;
}

} // namespace qv

#endif
