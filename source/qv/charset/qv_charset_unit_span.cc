#include <qv/charset/qv_charset_span.hh>

#include <algorithm>
#include <bit>
#include <cstring>

namespace qv
{

namespace
{

inline uint16_t swapped( uint16_t unit )
{
    return __builtin_bswap16( unit );
}

inline uint32_t swapped( uint32_t unit )
{
    return __builtin_bswap32( unit );
}

constexpr bool hostIsLittleEndian = std::endian::native == std::endian::little;

template <typename Unit> inline Unit loadUnit( const unsigned char *bytes, bool swap )
{
    Unit unit;
    std::memcpy( &unit, bytes, sizeof( unit ) );
    return swap ? swapped( unit ) : unit;
}

template <typename Unit> inline void storeUnit( QV_CHAR value, unsigned char *bytes, bool swap )
{
    const Unit unit = swap ? swapped( static_cast<Unit>( value ) ) : static_cast<Unit>( value );
    std::memcpy( bytes, &unit, sizeof( unit ) );
}

// Decodes up to count units, all of them if they are valid; the number decoded.
template <typename Unit>
inline QV_INT decodeUnits( const unsigned char *bytes, QV_CHAR *chars, QV_INT count, bool swap )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        const QV_CHAR ch = loadUnit<Unit>( bytes + idx * static_cast<QV_INT>( sizeof( Unit ) ), swap );
        if ( !QV_CHAR_OK( ch ) )
            return idx;
        chars[idx] = ch;
    }
    return count;
}

// Encodes characters without a look at the room; the end of the bytes.
inline unsigned char *encodeUnits( const QV_CHAR *chars, QV_INT count, unsigned char *bytes, bool swap,
                                   uint16_t )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        const QV_CHAR ch = QV_CHAR_OK( chars[idx] ) ? chars[idx] : replacementChar;
        if ( ch < 0x10000 )
        {
            storeUnit<uint16_t>( ch, bytes, swap );
            bytes += 2;
            continue;
        }
        storeUnit<uint16_t>( 0xD800 + ( ( ch - 0x10000 ) >> 10 ), bytes, swap );
        storeUnit<uint16_t>( 0xDC00 + ( ch & 0x3FF ), bytes + 2, swap );
        bytes += 4;
    }
    return bytes;
}

inline unsigned char *encodeUnits( const QV_CHAR *chars, QV_INT count, unsigned char *bytes, bool swap,
                                   uint32_t )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        storeUnit<uint32_t>( QV_CHAR_OK( chars[idx] ) ? chars[idx] : replacementChar, bytes + idx * 4, swap );
    }
    return bytes + count * 4;
}

} // namespace

template <typename Unit> void UnitDecoder<Unit>::takeMark( DecodeSpan *span )
{
    const bool little = loadUnit<Unit>( span->bytes, !hostIsLittleEndian ) == byteOrderMark;
    const bool big = loadUnit<Unit>( span->bytes, hostIsLittleEndian ) == byteOrderMark;
    if ( little || big )
    {
        littleEndian_ = little;
        span->bytes += sizeof( Unit );
    }
    markDone_ = true;
}

template <typename Unit> bool UnitDecoder<Unit>::decode( DecodeSpan *span )
{
    constexpr QV_INT unitSize = sizeof( Unit );
    while ( span->bytesEnd - span->bytes >= unitSize && span->chars < span->charsEnd )
    {
        if ( !markDone_ )
        {
            takeMark( span );
            continue;
        }
        const QV_INT count =
            std::min<QV_INT>( ( span->bytesEnd - span->bytes ) / unitSize, span->charsEnd - span->chars );
        const bool swap = littleEndian_ != hostIsLittleEndian;
        const QV_INT done = decodeUnits<Unit>( span->bytes, span->chars, count, swap );
        span->bytes += done * unitSize;
        span->chars += done;
        if ( done == count )
            continue;
        span->bytes += unitSize;
        if ( onInvalid_ == OnInvalid::abort )
            return false;
        if ( onInvalid_ == OnInvalid::replace )
            *span->chars++ = replacementChar;
    }
    return true;
}

template <typename Unit> bool UnitDecoder<Unit>::finish( DecodeSpan *span )
{
    if ( span->bytes == span->bytesEnd )
        return true;
    span->bytes = span->bytesEnd;
    if ( onInvalid_ == OnInvalid::replace )
        *span->chars++ = replacementChar;
    return onInvalid_ != OnInvalid::abort;
}

template <typename Unit> void unitEncode( EncodeSpan *span, bool littleEndian )
{
    constexpr QV_INT longest = 4;
    const bool swap = littleEndian != hostIsLittleEndian;
    while ( span->chars < span->charsEnd && span->bytesEnd - span->bytes >= longest )
    {
        const QV_INT count =
            std::min<QV_INT>( ( span->bytesEnd - span->bytes ) / longest, span->charsEnd - span->chars );
        span->bytes = encodeUnits( span->chars, count, span->bytes, swap, Unit() );
        span->chars += count;
    }
}

template class UnitDecoder<uint16_t>;
template class UnitDecoder<uint32_t>;
template void unitEncode<uint16_t>( EncodeSpan *span, bool littleEndian );
template void unitEncode<uint32_t>( EncodeSpan *span, bool littleEndian );

} // namespace qv
