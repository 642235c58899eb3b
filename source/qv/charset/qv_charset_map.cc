#include <qv/charset/qv_charset_map.hh>

#include <qv/charset/qv_charset_simd.hh>
#include <qv/unicode/qv_unicode_normalizer.hh>

#include <algorithm>

namespace qv
{

namespace
{

// A run of plain characters at least this long skips the normalizer.
constexpr QV_INT shortestPlainRun = 16;

// The last starters of a text, which a normalizer holds back: one as the base of a composition, one before it
// is sorted.
constexpr QV_INT heldBack = 2;

// The byte of a plain character, 0 for any other.
inline unsigned char plainByte( const ByteMap &map, QV_CHAR ch )
{
    return ch < 0x10000 ? map.pages[map.plainPageOf[ch >> 8]][ch & 0xFF] : 0;
}

// Encodes plain characters by the table; returns how many there were.
inline QV_INT encodeByTable( const ByteMap &map, const QV_CHAR *chars, QV_INT count, unsigned char *bytes )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        bytes[idx] = plainByte( map, chars[idx] );
        if ( bytes[idx] == 0 )
            return idx;
    }
    return count;
}

inline void decodeFour( const uint16_t *charOf, uint32_t word, QV_CHAR *chars )
{
    chars[0] = charOf[word & 0xFF];
    chars[1] = charOf[word >> 8 & 0xFF];
    chars[2] = charOf[word >> 16 & 0xFF];
    chars[3] = charOf[word >> 24];
}

inline bool hasUnassigned( const QV_CHAR *chars )
{
    bool found = false;
    for ( QV_INT idx = 0; idx < asciiBlock; idx++ )
    {
        found |= chars[idx] == replacementChar;
    }
    return found;
}

// Decodes a block. False if it holds an unassigned byte and mayFail tells that this matters.
inline bool decodeBlock( const ByteMap &map, bool mayFail, const unsigned char *bytes, QV_CHAR *chars )
{
    const uint32_t words[] = { loadFour( bytes ), loadFour( bytes + 4 ), loadFour( bytes + 8 ),
                               loadFour( bytes + 12 ) };
    if ( map.asciiBase && ( ( words[0] | words[1] | words[2] | words[3] ) & 0x80808080u ) == 0 )
    {
        widenBlock( bytes, chars );
        return true;
    }
    decodeFour( map.charOf, words[0], chars );
    decodeFour( map.charOf, words[1], chars + 4 );
    decodeFour( map.charOf, words[2], chars + 8 );
    decodeFour( map.charOf, words[3], chars + 12 );
    return !mayFail || !hasUnassigned( chars );
}

// Decodes up to a block of bytes one by one. False if an unassigned byte ends the conversion.
bool decodeSingly( const ByteMap &map, OnInvalid invalid, DecodeSpan *span )
{
    for ( QV_INT idx = 0; idx < asciiBlock && span->bytes < span->bytesEnd && span->chars < span->charsEnd;
          idx++ )
    {
        *span->chars = map.charOf[*span->bytes++];
        if ( *span->chars != replacementChar || invalid == OnInvalid::replace )
            span->chars++;
        else if ( invalid == OnInvalid::abort )
            return false;
    }
    return true;
}

} // namespace

bool mapDecode( const ByteMap &map, OnInvalid invalid, DecodeSpan *span )
{
    const bool mayFail = !map.complete && invalid != OnInvalid::replace;
    DecodeSpan rest = *span;
    bool good = true;
    while ( good && rest.bytes < rest.bytesEnd && rest.chars < rest.charsEnd )
    {
        if ( rest.bytesEnd - rest.bytes >= asciiBlock && rest.charsEnd - rest.chars >= asciiBlock &&
             decodeBlock( map, mayFail, rest.bytes, rest.chars ) )
        {
            rest.bytes += asciiBlock;
            rest.chars += asciiBlock;
            continue;
        }
        good = decodeSingly( map, invalid, &rest );
    }
    *span = rest;
    return good;
}

QV_INT mapEncodePlain( const ByteMap &map, const QV_CHAR *chars, QV_INT count, unsigned char *bytes )
{
    QV_INT done = 0;
    while ( count - done >= asciiBlock )
    {
        QV_INT leading = 0;
        if ( map.asciiBase )
        {
            const unsigned mask = narrowBlock( chars + done, bytes + done );
            leading = mask == 0 ? asciiBlock : std::countr_zero( mask );
        }
        const QV_INT rest = asciiBlock - leading;
        done += leading;
        const QV_INT more = encodeByTable( map, chars + done, rest, bytes + done );
        done += more;
        if ( more < rest )
            return done;
    }
    return done + encodeByTable( map, chars + done, count - done, bytes + done );
}

const ByteMap *byteMapOf( qv___CharsetMapByteToCharFunc mapFunc )
{
    for ( const ByteMap &map : byteMaps )
    {
        if ( map.byteToChar == mapFunc )
            return &map;
    }
    return nullptr;
}

const ByteMap *byteMapOf( qv___CharsetMapCharToByteFunc mapFunc )
{
    for ( const ByteMap &map : byteMaps )
    {
        if ( map.charToByte == mapFunc )
            return &map;
    }
    return nullptr;
}

MapEncoder::MapEncoder( qv___CharsetMapCharToByteFunc mapFunc, QV_CHARSET_FLAGS flags,
                        QV_UNICODE_NORMALIZER *norm )
    : map_( byteMapOf( mapFunc ) ), mapFunc_( mapFunc ), invalid_( onInvalid( flags ) ), replacement_( 0 ),
      norm_( norm )
{
    if ( !mapFunc_( replacementChar, &replacement_ ) && !mapFunc_( '?', &replacement_ ) )
        replacement_ = 0;
}

bool MapEncoder::write( const QV_CHAR *chars, QV_INT count, ByteTarget *target )
{
    for ( ;; )
    {
        const QV_INT knotty = knottyLength( chars, count );
        if ( knotty > 0 )
            qvUnicodeNormalizerWriteChars( norm_, chars, knotty );
        chars += knotty;
        count -= knotty;
        if ( count == 0 )
            return push( target );
        // Nothing in front of the plain run can change any more.
        qvUnicodeNormalizerFlush( norm_ );
        if ( !push( target ) )
            return false;
        bool ok = true;
        const QV_INT plain = writePlain( chars, count, target, &ok );
        if ( !ok )
            return false;
        chars += plain;
        count -= plain;
    }
}

bool MapEncoder::flush( ByteTarget *target )
{
    qvUnicodeNormalizerFlush( norm_ );
    return push( target );
}

// The characters in front of the next long run of plain ones.
QV_INT MapEncoder::knottyLength( const QV_CHAR *chars, QV_INT count ) const
{
    QV_INT run = 0;
    for ( QV_INT idx = 0; map_ && idx < count; idx++ )
    {
        run = isPlain( *map_, chars[idx] ) ? run + 1 : 0;
        if ( run == shortestPlainRun )
            return idx + 1 - run;
    }
    return count;
}

// Encodes a run of plain characters but for those that a normalizer would hold back; the number encoded.
QV_INT MapEncoder::writePlain( const QV_CHAR *chars, QV_INT count, ByteTarget *target, bool *ok )
{
    QV_INT done = 0;
    while ( *ok && count - done > heldBack )
    {
        const QV_INT wanted = std::min<QV_INT>( target->end - target->next, count - done - heldBack );
        const QV_INT plain = mapEncodePlain( *map_, chars + done, wanted, target->next );
        QV_INT followers = 0;
        while ( plain == wanted && followers < heldBack && isPlain( *map_, chars[done + plain + followers] ) )
        {
            followers++;
        }
        const QV_INT sure = std::max<QV_INT>( plain - ( heldBack - followers ), 0 );
        target->next += sure;
        done += sure;
        if ( target->next == target->end )
            *ok = target->makeRoom( target );
        if ( sure < wanted )
            break;
    }
    return done;
}

// Encodes all that the normalizer has ready.
bool MapEncoder::push( ByteTarget *target )
{
    QV_INT count = 0;
    const QV_CHAR *chars = qv___UnicodeNormalizerPeek( norm_, &count );
    bool ok = true;
    for ( QV_INT idx = 0; ok && idx < count; idx++ )
    {
        ok = put( chars[idx], target );
    }
    qv___UnicodeNormalizerSkip( norm_, count );
    return ok;
}

bool MapEncoder::put( QV_CHAR ch, ByteTarget *target )
{
    unsigned char byte = replacement_;
    if ( !mapFunc_( ch, &byte ) )
    {
        if ( invalid_ != OnInvalid::replace )
            return invalid_ == OnInvalid::ignore;
        byte = replacement_;
    }
    *target->next++ = byte;
    return target->next < target->end || target->makeRoom( target );
}

} // namespace qv
