#ifndef QV_SYS_QV_BLOCK_HH
#define QV_SYS_QV_BLOCK_HH

// Steps over characters and bytes sixteen bytes at a time, in vector registers where the processor has them.

#include <cstdint>
#include <cstring>

#include <qv/sys/qv_types.h>

namespace qv
{

template <typename UNIT> struct BlockOf
{
    typedef UNIT Type __attribute__( ( vector_size( 16 ) ) );
    static constexpr QV_INT length = 16 / sizeof( UNIT );
};

template <typename BLOCK> inline bool anySet( BLOCK marks )
{
    uint64_t words[2];
    std::memcpy( words, &marks, sizeof words );
    return ( words[0] | words[1] ) != 0;
}

// Length of the part at the start of an array, in whole blocks, in which no unit is marked. marksOf gives for
// a block the block of its units' marks, 0 where there is none; it may only use operators.
template <typename UNIT, typename MARKS>
inline QV_INT skipUnmarked( const UNIT *units, QV_INT length, MARKS marksOf )
{
    using Block = typename BlockOf<UNIT>::Type;
    constexpr QV_INT blockLength = BlockOf<UNIT>::length;
    QV_INT idx = 0;
    for ( ; length - idx >= 4 * blockLength; idx += 4 * blockLength )
    {
        Block run[4];
        std::memcpy( run, units + idx, sizeof run );
        if ( anySet( marksOf( run[0] ) | marksOf( run[1] ) | marksOf( run[2] ) | marksOf( run[3] ) ) )
            break;
    }
    for ( ; length - idx >= blockLength; idx += blockLength )
    {
        Block block;
        std::memcpy( &block, units + idx, sizeof block );
        if ( anySet( marksOf( block ) ) )
            break;
    }
    return idx;
}

// Index of the first marked character of an array as far as it consists of whole runs of sixteen, else the
// length of those runs. A bit for each character, so that the place in the run costs no branch.
template <typename MARKS> inline QV_INT skipToMarked( const QV_CHAR *chs, QV_INT length, MARKS marksOf )
{
    using Block = BlockOf<QV_CHAR>::Type;
    using Bits = BlockOf<int32_t>::Type;
    QV_INT idx = 0;
    for ( ; length - idx >= 16; idx += 16 )
    {
        Block block[4];
        for ( int place = 0; place < 4; place++ )
        {
            std::memcpy( &block[place], chs + idx + 4 * place, sizeof( Block ) );
        }
        Bits bits = ( marksOf( block[0] ) & Bits{ 0x1, 0x2, 0x4, 0x8 } ) |
                    ( marksOf( block[1] ) & Bits{ 0x10, 0x20, 0x40, 0x80 } ) |
                    ( marksOf( block[2] ) & Bits{ 0x100, 0x200, 0x400, 0x800 } ) |
                    ( marksOf( block[3] ) & Bits{ 0x1000, 0x2000, 0x4000, 0x8000 } );
        uint64_t words[2];
        std::memcpy( words, &bits, sizeof words );
        uint64_t both = words[0] | words[1];
        if ( both != 0 )
            return idx + __builtin_ctz( static_cast<uint32_t>( both | both >> 32 ) );
    }
    return idx;
}

} // namespace qv

#endif
