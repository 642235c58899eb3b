#ifndef QV_CHARSET_QV_CHARSET_SIMD_HH
#define QV_CHARSET_QV_CHARSET_SIMD_HH

// Blocks of ASCII, sixteen characters at a time: with vector instructions where every processor of the
// platform has them, with whole words elsewhere.

#include <qv/sys/qv_types.h>

#include <bit>
#include <cstring>

#if defined( __SSE2__ )
#include <emmintrin.h>
#endif

namespace qv
{

inline constexpr QV_INT asciiBlock = 16;

// Little-endian load of four bytes; compilers make one instruction of it.
inline uint32_t loadFour( const unsigned char *bytes )
{
    return static_cast<uint32_t>( bytes[0] ) | static_cast<uint32_t>( bytes[1] ) << 8 |
           static_cast<uint32_t>( bytes[2] ) << 16 | static_cast<uint32_t>( bytes[3] ) << 24;
}

// Little-endian store of four bytes.
inline void storeFour( uint32_t word, unsigned char *bytes )
{
    if constexpr ( std::endian::native != std::endian::little )
        word = __builtin_bswap32( word );
    std::memcpy( bytes, &word, sizeof( word ) );
}

// Each of these stores a block and returns the mask of the places whose character isn't ASCII, lowest bit
// first: bytes as characters, which stand for themselves in every place, and characters as bytes, of which
// those that aren't ASCII become anything.
namespace portable
{

// The mask of the bytes of a word whose top bit is set, in the order of memory.
inline unsigned topBits( const unsigned char *bytes )
{
    const uint64_t word = loadFour( bytes ) | static_cast<uint64_t>( loadFour( bytes + 4 ) ) << 32;
    // Each top bit goes to its own place in the highest byte of the product.
    return static_cast<unsigned>( ( ( word & 0x8080808080808080u ) >> 7 ) * 0x0102040810204080u >> 56 );
}

inline unsigned widenBlock( const unsigned char *bytes, QV_CHAR *chars )
{
    for ( QV_INT idx = 0; idx < asciiBlock; idx++ )
    {
        chars[idx] = bytes[idx];
    }
    return topBits( bytes ) | topBits( bytes + 8 ) << 8;
}

inline unsigned narrowBlock( const QV_CHAR *chars, unsigned char *bytes )
{
    QV_CHAR any = 0;
    for ( QV_INT idx = 0; idx < asciiBlock; idx++ )
    {
        any |= chars[idx];
        bytes[idx] = static_cast<unsigned char>( chars[idx] );
    }
    if ( any < 0x80 )
        return 0;
    unsigned mask = 0;
    for ( unsigned idx = 0; idx < asciiBlock; idx++ )
    {
        mask |= static_cast<unsigned>( chars[idx] >= 0x80 ) << idx;
    }
    return mask;
}

} // namespace portable

#if defined( __SSE2__ )

inline unsigned widenBlock( const unsigned char *bytes, QV_CHAR *chars )
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i block = _mm_loadu_si128( reinterpret_cast<const __m128i *>( bytes ) );
    const __m128i low = _mm_unpacklo_epi8( block, zero );
    const __m128i high = _mm_unpackhi_epi8( block, zero );
    __m128i *dest = reinterpret_cast<__m128i *>( chars );
    _mm_storeu_si128( dest, _mm_unpacklo_epi16( low, zero ) );
    _mm_storeu_si128( dest + 1, _mm_unpackhi_epi16( low, zero ) );
    _mm_storeu_si128( dest + 2, _mm_unpacklo_epi16( high, zero ) );
    _mm_storeu_si128( dest + 3, _mm_unpackhi_epi16( high, zero ) );
    return static_cast<unsigned>( _mm_movemask_epi8( block ) );
}

inline unsigned narrowBlock( const QV_CHAR *chars, unsigned char *bytes )
{
    const __m128i above = _mm_set1_epi32( ~0x7F );
    const __m128i zero = _mm_setzero_si128();
    const __m128i *src = reinterpret_cast<const __m128i *>( chars );
    const __m128i a = _mm_loadu_si128( src );
    const __m128i b = _mm_loadu_si128( src + 1 );
    const __m128i c = _mm_loadu_si128( src + 2 );
    const __m128i d = _mm_loadu_si128( src + 3 );
    _mm_storeu_si128( reinterpret_cast<__m128i *>( bytes ),
                      _mm_packus_epi16( _mm_packs_epi32( a, b ), _mm_packs_epi32( c, d ) ) );
    const __m128i any = _mm_and_si128( _mm_or_si128( _mm_or_si128( a, b ), _mm_or_si128( c, d ) ), above );
    if ( _mm_movemask_epi8( _mm_cmpeq_epi32( any, zero ) ) == 0xFFFF )
        return 0;
    const __m128i ab = _mm_packs_epi32( _mm_cmpeq_epi32( _mm_and_si128( a, above ), zero ),
                                        _mm_cmpeq_epi32( _mm_and_si128( b, above ), zero ) );
    const __m128i cd = _mm_packs_epi32( _mm_cmpeq_epi32( _mm_and_si128( c, above ), zero ),
                                        _mm_cmpeq_epi32( _mm_and_si128( d, above ), zero ) );
    return ~static_cast<unsigned>( _mm_movemask_epi8( _mm_packs_epi16( ab, cd ) ) ) & 0xFFFFu;
}

// Stores four characters from 0x800 to 0xFFFF as twelve bytes of UTF-8, and undefined bytes up to the
// fourteenth. False if they aren't such characters; nothing is stored then.
inline bool encodeFourOfThree( const QV_CHAR *chars, unsigned char *bytes )
{
    const __m128i four = _mm_loadu_si128( reinterpret_cast<const __m128i *>( chars ) );
    const __m128i inRange = _mm_and_si128( _mm_cmpgt_epi32( four, _mm_set1_epi32( 0x7FF ) ),
                                           _mm_cmplt_epi32( four, _mm_set1_epi32( 0x10000 ) ) );
    if ( _mm_movemask_epi8( inRange ) != 0xFFFF )
        return false;
    const __m128i first = _mm_srli_epi32( four, 12 );
    const __m128i middle = _mm_and_si128( _mm_slli_epi32( four, 2 ), _mm_set1_epi32( 0x3F00 ) );
    const __m128i last = _mm_and_si128( _mm_slli_epi32( four, 16 ), _mm_set1_epi32( 0x3F0000 ) );
    const __m128i spread =
        _mm_or_si128( _mm_or_si128( first, middle ), _mm_or_si128( last, _mm_set1_epi32( 0x8080E0 ) ) );
    // Each half holds two characters in eight bytes: close the gap between them.
    const __m128i even = _mm_and_si128( spread, _mm_set1_epi64x( 0xFFFFFF ) );
    const __m128i odd = _mm_and_si128( _mm_srli_epi64( spread, 8 ), _mm_set1_epi64x( 0xFFFFFF000000 ) );
    const __m128i packed = _mm_or_si128( even, odd );
    _mm_storel_epi64( reinterpret_cast<__m128i *>( bytes ), packed );
    _mm_storel_epi64( reinterpret_cast<__m128i *>( bytes + 6 ), _mm_unpackhi_epi64( packed, packed ) );
    return true;
}

#else

using portable::narrowBlock;
using portable::widenBlock;

inline bool encodeFourOfThree( const QV_CHAR *, unsigned char * )
{
    return false;
}

#endif

} // namespace qv

#endif
