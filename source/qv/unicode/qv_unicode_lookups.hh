#ifndef QV_UNICODE_QV_UNICODE_LOOKUPS_HH
#define QV_UNICODE_QV_UNICODE_LOOKUPS_HH

// The lookups that text operations stand on: white space, digits and case mappings. QV_CHAR_OK must hold for
// every ch.

#include <qv/unicode/qv_unicode_lookups.h>

bool qv___UnicodeWhiteSpaceDbLookup( QV_CHAR ch );
bool qv___UnicodeNlfDbLookup( QV_CHAR ch );
QV_INT qv___UnicodeDecimalDbLookup( QV_CHAR ch );
QV_INT qv___UnicodeHexDigitDbLookup( QV_CHAR ch );

// The full mapping as a constant array of 1 to 3 characters, null and length 0 if ch has none. mapLength may
// be null.
const QV_CHAR *qv___UnicodeUpperCaseDbLookup( QV_CHAR ch, QV_INT *mapLength );
const QV_CHAR *qv___UnicodeLowerCaseDbLookup( QV_CHAR ch, QV_INT *mapLength );
const QV_CHAR *qv___UnicodeCaseFoldDbLookup( QV_CHAR ch, QV_INT *mapLength );

namespace qv
{

// For bulk work: the one character that ch maps to (ch itself if it has no mapping), or manyChars if the
// mapping is longer and must be taken from the lookup.
inline constexpr QV_CHAR manyChars = 0xFFFFFFFFu;
QV_CHAR upperCaseOf( QV_CHAR ch );
QV_CHAR lowerCaseOf( QV_CHAR ch );
QV_CHAR caseFoldOf( QV_CHAR ch );

} // namespace qv

#endif
