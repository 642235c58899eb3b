#ifndef QV_JSON_QV_JSON_TEXT_HH
#define QV_JSON_QV_JSON_TEXT_HH

// What the decoder and the encoder of JSON text and the records of values have in common: runs of characters that stand for
// themselves, and UTF-8 that is known to be good. Eight bytes go at a time, as one word.

#include <qv/sys/qv_types.h>

#include <bit>
#include <cstring>

namespace qv
{

// The characters that can't stand in a string of JSON text as they are.
inline bool jsonIsSpecial( QV_CHAR ch )
{
    return ( ch == '"' ) | ( ch == '\\' ) | ( ch < 0x20 );
}

// Length of the run at the start of a text that has no such character.
inline QV_INT jsonPlainRun( const QV_CHAR *chs, QV_INT length )
{
    QV_INT count = 0;
    // Whole blocks at a time, which the compiler turns into vector code.
    constexpr QV_INT block = 8;
    for ( ; count + block <= length; count += block )
    {
        bool special = false;
        for ( QV_INT idx = 0; idx < block; idx++ )
        {
            special |= jsonIsSpecial( chs[count + idx] );
        }
        if ( special )
            break;
    }
    while ( count < length && !jsonIsSpecial( chs[count] ) )
    {
        count++;
    }
    return count;
}

// Eight bytes as a word whose lowest one comes first.
inline uint64_t jsonLoadWord( const unsigned char *bytes )
{
    uint64_t word;
    std::memcpy( &word, bytes, sizeof word );
    if constexpr ( std::endian::native == std::endian::big )
        word = __builtin_bswap64( word );
    return word;
}

inline constexpr uint64_t jsonLowBits = 0x0101010101010101u;
inline constexpr uint64_t jsonTopBits = 0x8080808080808080u;

// The top bits of a word's special bytes. Behind the lowest one there may be more of them than there should be.
inline uint64_t jsonSpecialBits( uint64_t word )
{
    uint64_t quote = word ^ ( jsonLowBits * '"' );
    uint64_t backslash = word ^ ( jsonLowBits * '\\' );
    uint64_t below = ( word - jsonLowBits * 0x20 ) & ~word;
    return ( below | ( ( quote - jsonLowBits ) & ~quote ) | ( ( backslash - jsonLowBits ) & ~backslash ) ) &
           jsonTopBits;
}

inline QV_INT jsonFirstMarked( uint64_t topBits )
{
    return std::countr_zero( topBits ) / 8;
}

inline QV_INT jsonPlainRun( const unsigned char *bytes, QV_INT length )
{
    QV_INT count = 0;
    for ( ; length - count >= 8; count += 8 )
    {
        if ( uint64_t marks = jsonSpecialBits( jsonLoadWord( bytes + count ) ) )
            return count + jsonFirstMarked( marks );
    }
    while ( count < length && !jsonIsSpecial( bytes[count] ) )
    {
        count++;
    }
    return count;
}

// ---- Numbers, in characters or bytes ----

template <typename UNIT> const UNIT *jsonSkipDigits( const UNIT *chs, const UNIT *end )
{
    while ( chs < end && static_cast<QV_CHAR>( *chs ) - '0' < 10 )
    {
        chs++;
    }
    return chs;
}

// The end of a fraction or exponent whose digits begin at chs, or where it would have begun without any digit.
template <typename UNIT>
const UNIT *jsonSkipPart( const UNIT *begin, const UNIT *chs, const UNIT *end, bool *isNumber )
{
    const UNIT *behind = jsonSkipDigits( chs, end );
    *isNumber = behind > chs;
    return *isNumber ? behind : begin;
}

// Length of the number at the start of a text, 0 for none.
template <typename UNIT> QV_INT jsonSkipNumber( const UNIT *chs, QV_INT length )
{
    const UNIT *end = chs + length;
    const UNIT *at = chs;
    if ( at < end && *at == '-' )
        at++;
    const UNIT *behind = jsonSkipDigits( at, end );
    if ( behind == at )
        return 0;
    at = *at == '0' ? at + 1 : behind;

    // A part that lacks its digits isn't there, and without a fraction there still may be an exponent.
    bool isNumber = true;
    if ( at < end && *at == '.' )
        at = jsonSkipPart( at, at + 1, end, &isNumber );
    if ( isNumber && at < end && ( *at | 0x20 ) == 'e' )
    {
        const UNIT *digits = at + 1;
        if ( digits < end && ( *digits == '+' || *digits == '-' ) )
            digits++;
        at = jsonSkipPart( at, digits, end, &isNumber );
    }
    return at - chs;
}

// ---- UTF-8 of valid characters, among them surrogates, in the shortest forms ----

// Characters of a text.
inline QV_INT jsonUtf8Chars( const unsigned char *bytes, QV_INT length )
{
    QV_INT count = 0;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        count += ( bytes[idx] & 0xC0 ) != 0x80;
    }
    return count;
}

// Bytes that a text takes.
inline QV_INT jsonUtf8Length( const QV_CHAR *chs, QV_INT length )
{
    QV_INT count = length;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        count += ( chs[idx] >= 0x80 ) + ( chs[idx] >= 0x800 ) + ( chs[idx] >= 0x10000 );
    }
    return count;
}

inline unsigned char *jsonPutUtf8( unsigned char *dest, QV_CHAR ch )
{
    auto byteOf = []( QV_CHAR value ) { return static_cast<unsigned char>( value ); };
    if ( ch < 0x80 )
    {
        *dest++ = byteOf( ch );
        return dest;
    }
    if ( ch < 0x800 )
        *dest++ = byteOf( 0xC0 | ch >> 6 );
    else
    {
        if ( ch < 0x10000 )
            *dest++ = byteOf( 0xE0 | ch >> 12 );
        else
        {
            *dest++ = byteOf( 0xF0 | ch >> 18 );
            *dest++ = byteOf( 0x80 | ( ch >> 12 & 0x3F ) );
        }
        *dest++ = byteOf( 0x80 | ( ch >> 6 & 0x3F ) );
    }
    *dest++ = byteOf( 0x80 | ( ch & 0x3F ) );
    return dest;
}

// Whether a text is such UTF-8, and decoding it drops nothing: it doesn't begin with a byte order mark.
bool jsonIsCanonicalUtf8( const unsigned char *bytes, QV_INT length );

// The character at *bytes, which is moved behind it.
inline QV_CHAR jsonTakeUtf8( const unsigned char **bytes )
{
    QV_CHAR head = *( *bytes )++;
    if ( head < 0x80 )
        return head;
    int more = head < 0xE0 ? 1 : head < 0xF0 ? 2 : 3;
    QV_CHAR ch = head & ( 0x3Fu >> more );
    for ( ; more > 0; more-- )
    {
        ch = ch << 6 | ( *( *bytes )++ & 0x3Fu );
    }
    return ch;
}

// Returns the end of what was stored.
inline QV_CHAR *jsonDecodeUtf8( const unsigned char *bytes, QV_INT length, QV_CHAR *dest )
{
    const unsigned char *end = bytes + length;
    while ( bytes < end )
    {
        if ( end - bytes >= 8 && !( jsonLoadWord( bytes ) & jsonTopBits ) )
        {
            for ( int idx = 0; idx < 8; idx++ )
            {
                dest[idx] = bytes[idx];
            }
            bytes += 8;
            dest += 8;
        }
        else
            *dest++ = jsonTakeUtf8( &bytes );
    }
    return dest;
}

} // namespace qv

#endif
