#ifndef QV_UNICODE_QV_UNICODE_DB_HH
#define QV_UNICODE_QV_UNICODE_DB_HH

// The lookups of classification and normalization. QV_CHAR_OK must hold for every ch.

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_on_demand.hh>
#include <qv/unicode/qv_unicode_cccv.h>
#include <qv/unicode/qv_unicode_cdmt.h>
#include <qv/unicode/qv_unicode_genc.h>
#include <qv/unicode/qv_unicode_lookups.hh>
#include <qv/unicode/qv_unicode_script.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

inline QV_UNICODE_GENC qv___UnicodeGencDbLookup( QV_CHAR ch )
{
    return qv::unicode::valueOf<qv::unicode::categoryShift>( qv::unicode::categoryBlocks,
                                                             qv::unicode::categoryValues, ch );
}

inline QV_UNICODE_CCCV qv___UnicodeCccvDbLookup( QV_CHAR ch )
{
    return qv::unicode::valueOf<qv::unicode::combiningClassShift>( qv::unicode::combiningClassBlocks,
                                                                   qv::unicode::combiningClassValues, ch );
}

inline QV_UNICODE_SCRIPT qv___UnicodeScriptDbLookup( QV_CHAR ch )
{
    return qv::unicode::valueOf<qv::unicode::scriptShift>( qv::unicode::scriptBlocks,
                                                           qv::unicode::scriptValues, ch );
}

namespace qv::unicode
{

inline const Decomposition &decompositionOf( QV_CHAR ch )
{
    return decompositions[valueOf<decompositionShift>( decompositionBlocks, decompositionValues, ch )];
}

// The bits of NormalFlag and, in bit n, whether form n leaves the starter ch alone whatever stands around it.
inline uint8_t normalFlags( QV_CHAR ch )
{
    return valueOf<normalFlagsShift>( normalFlagsBlocks, normalFlagsValues, ch );
}

// The primary composite of a pair, 0 if there is none: a perfect hash leaves one slot to look at.
inline QV_CHAR compositeOf( QV_CHAR first, QV_CHAR second )
{
    uint32_t number = first * 0x9E3779B1u + second * compositionSecondFactor;
    uint32_t slot = ( ( number >> 8 ) + compositionMoves[number >> 24] ) % 1024;
    const Composition &found = compositions[slot];
    return found.first == first && found.second == second ? found.composite : 0;
}

} // namespace qv::unicode

// The decomposition mapping, one step, as a constant array, null if there is none; the syllables of Hangul
// are not in it. mapLength and mapType may be null; without a mapping they receive 0 and
// QV_UNICODE_CDMT_NONE.
inline const QV_CHAR *qv___UnicodeCdmDbLookup( QV_CHAR ch, QV_INT *mapLength, QV_UNICODE_CDMT *mapType )
{
    const qv::unicode::Decomposition &found = qv::unicode::decompositionOf( ch );
    if ( mapLength )
        *mapLength = found.stepLength;
    if ( mapType )
        *mapType = found.type;
    return found.stepLength == 0 ? nullptr : qv::unicode::decompositionPool + found.stepOffset;
}

// True and the primary composite of the pair in *out, or false and 0; Hangul is not in it. out may be null.
inline bool qv___UnicodeCompDbLookup( QV_CHAR ch1, QV_CHAR ch2, QV_CHAR *out )
{
    QV_CHAR composite = qv::unicode::compositeOf( ch1, ch2 );
    if ( out )
        *out = composite;
    return composite != 0;
}

void qv___UnicodeGencStartup();
void qv___UnicodeGencShutdown();
void qv___UnicodeCccvStartup();
void qv___UnicodeCccvShutdown();
void qv___UnicodeCdmtStartup();
void qv___UnicodeCdmtShutdown();
void qv___UnicodeScriptStartup();
void qv___UnicodeScriptShutdown();

namespace qv
{

// The names of an enumeration's values, from startup to shutdown: strings to boxed integers, as they are spelled and
// case-folded. The first lookup fills them from the rows.
struct UnicodeNames
{
    std::span<const EnumName> rows;
    OnDemand filled;
    QV_DICT *exact;
    QV_DICT *folded;
};

// The rows of a table in the order of the dictionary that is filled from them, so that filling it is appending.
template <size_t COUNT> constexpr std::array<EnumName, COUNT> sortedByName( std::array<EnumName, COUNT> rows )
{
    std::sort( rows.begin(), rows.end(), []( const EnumName &rowA, const EnumName &rowB ) {
        return std::string_view( rowA.name ) < std::string_view( rowB.name );
    } );
    return rows;
}

void unicodeNamesStartup( UnicodeNames *names, std::span<const EnumName> rows );
void unicodeNamesShutdown( UnicodeNames *names );

// The value with this name, -1 if there is none.
QV_INT unicodeNamesFind( UnicodeNames *names, QV_STRING *text );
QV_INT unicodeNamesFindCaseFold( UnicodeNames *names, QV_STRING *text );

} // namespace qv

#endif
