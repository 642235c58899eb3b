#ifndef QV_UNICODE_QV_UNICODE_LOOKUPS_HH
#define QV_UNICODE_QV_UNICODE_LOOKUPS_HH

// The lookups that text operations stand on: white space, digits and case mappings. QV_CHAR_OK must hold for
// every ch.

#include <qv/unicode/gen/qv_unicode_tables.hh>
#include <qv/unicode/qv_unicode_lookups.h>

namespace qv::unicode
{

// The value of ch in a table of two stages.
template <QV_CHAR SHIFT, typename Block, typename Value>
inline Value valueOf( const Block *blocks, const Value *values, QV_CHAR ch )
{
    return values[( static_cast<QV_CHAR>( blocks[ch >> SHIFT] ) << SHIFT ) |
                  ( ch & ( ( 1u << SHIFT ) - 1 ) )];
}

// A case mapping: its length in the upper two bits, 0 for none, below them the offset in the pool.
using CaseEntry = uint16_t;

inline const QV_CHAR *caseMapping( CaseEntry entry, QV_INT *mapLength )
{
    QV_INT length = entry >> 14;
    if ( mapLength )
        *mapLength = length;
    return length == 0 ? nullptr : casePool + ( entry & 0x3FFF );
}

inline CaseEntry upperEntry( QV_CHAR ch )
{
    return valueOf<upperShift>( upperBlocks, upperValues, ch );
}

inline CaseEntry lowerEntry( QV_CHAR ch )
{
    return valueOf<lowerShift>( lowerBlocks, lowerValues, ch );
}

inline CaseEntry foldEntry( QV_CHAR ch )
{
    return valueOf<foldShift>( foldBlocks, foldValues, ch );
}

} // namespace qv::unicode

inline bool qv___UnicodeWhiteSpaceDbLookup( QV_CHAR ch )
{
    if ( ch <= 160 )
        return ch <= 32 ? ( 0x100003E00ull >> ch & 1 ) != 0 : ch == 133 || ch == 160;
    if ( ch < 5760 )
        return false;
    return ch - 8192 <= 8202 - 8192 || ch == 5760 || ch == 8232 || ch == 8233 || ch == 8239 || ch == 8287 ||
           ch == 12288;
}

inline bool qv___UnicodeNlfDbLookup( QV_CHAR ch )
{
    return ch - 10 <= 13 - 10 || ch == 133 || ch == 8232 || ch == 8233;
}

inline QV_INT qv___UnicodeDecimalDbLookup( QV_CHAR ch )
{
    return qv::unicode::valueOf<qv::unicode::decimalShift>( qv::unicode::decimalBlocks,
                                                            qv::unicode::decimalValues, ch );
}

inline QV_INT qv___UnicodeHexDigitDbLookup( QV_CHAR ch )
{
    // The fullwidth forms stand at the distance 0xFEE0 from ASCII.
    QV_CHAR ascii = ch >= 0xFF10 ? ch - 0xFEE0 : ch;
    if ( ascii - '0' <= 9 )
        return ascii - '0';
    QV_CHAR letter = ( ascii | 0x20 ) - 'a';
    return letter <= 5 ? static_cast<QV_INT>( letter ) + 10 : -1;
}

// The full mapping as a constant array of 1 to 3 characters, null and length 0 if ch has none. mapLength may
// be null.
inline const QV_CHAR *qv___UnicodeUpperCaseDbLookup( QV_CHAR ch, QV_INT *mapLength )
{
    return qv::unicode::caseMapping( qv::unicode::upperEntry( ch ), mapLength );
}

inline const QV_CHAR *qv___UnicodeLowerCaseDbLookup( QV_CHAR ch, QV_INT *mapLength )
{
    return qv::unicode::caseMapping( qv::unicode::lowerEntry( ch ), mapLength );
}

inline const QV_CHAR *qv___UnicodeCaseFoldDbLookup( QV_CHAR ch, QV_INT *mapLength )
{
    return qv::unicode::caseMapping( qv::unicode::foldEntry( ch ), mapLength );
}

namespace qv
{

// For bulk work: the one character that ch maps to (ch itself if it has no mapping), or manyChars if the
// mapping is longer and must be taken from the lookup. One load below unicode::caseDirectLimit, that is, for
// Latin, Greek and Cyrillic.
inline constexpr QV_CHAR manyChars = 0xFFFFFFFFu;

inline QV_CHAR caseOf( const uint16_t *direct, unicode::CaseEntry ( *entryOf )( QV_CHAR ch ), QV_CHAR ch )
{
    if ( ch < unicode::caseDirectLimit && direct[ch] != unicode::caseDirectMany )
        return direct[ch];
    unicode::CaseEntry entry = entryOf( ch );
    if ( entry == 0 )
        return ch;
    return entry >> 14 == 1 ? unicode::casePool[entry & 0x3FFF] : manyChars;
}

inline QV_CHAR upperCaseOf( QV_CHAR ch )
{
    return caseOf( unicode::upperDirect, unicode::upperEntry, ch );
}

inline QV_CHAR lowerCaseOf( QV_CHAR ch )
{
    return caseOf( unicode::lowerDirect, unicode::lowerEntry, ch );
}

inline QV_CHAR caseFoldOf( QV_CHAR ch )
{
    return caseOf( unicode::foldDirect, unicode::foldEntry, ch );
}

} // namespace qv

#endif
