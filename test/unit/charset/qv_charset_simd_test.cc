#include "support/test.hh"

#include <qv/charset/qv_charset_simd.hh>

namespace
{

struct Block
{
    QV_CHAR chars[qv::asciiBlock] = {};
    unsigned char bytes[qv::asciiBlock] = {};
    unsigned mask = 0;
};

} // namespace

// Both ways of doing a block against its definition.
TEST( CharsetBlocks, WidenAndNarrow )
{
    const QV_CHAR interesting[] = { 0,      0x7F,   0x80,    0xFF,       0x100,     0x7FFF,
                                    0x8000, 0xFFFF, 0x10041, 0x80000041, 0xFFFFFFFF };
    std::mt19937 random( 507 );
    for ( int round = 0; round < 20000; round++ )
    {
        const unsigned rarity = 1 + random() % 20;
        Block wide, narrow;
        for ( unsigned idx = 0; idx < qv::asciiBlock; idx++ )
        {
            const bool ascii = random() % rarity != 0;
            wide.bytes[idx] = static_cast<unsigned char>( ascii ? random() % 128 : random() );
            wide.mask |= static_cast<unsigned>( wide.bytes[idx] >> 7 ) << idx;
            narrow.chars[idx] = ascii ? random() % 128 : interesting[random() % std::size( interesting )];
            narrow.mask |= static_cast<unsigned>( narrow.chars[idx] > 0x7F ) << idx;
        }
        Block one, two;
        ASSERT_EQ( qv::widenBlock( wide.bytes, one.chars ), wide.mask );
        ASSERT_EQ( qv::portable::widenBlock( wide.bytes, two.chars ), wide.mask );
        ASSERT_EQ( qv::narrowBlock( narrow.chars, one.bytes ), narrow.mask );
        ASSERT_EQ( qv::portable::narrowBlock( narrow.chars, two.bytes ), narrow.mask );
        for ( unsigned idx = 0; idx < qv::asciiBlock; idx++ )
        {
            ASSERT_EQ( one.chars[idx], wide.bytes[idx] );
            ASSERT_EQ( two.chars[idx], wide.bytes[idx] );
            if ( ( narrow.mask >> idx & 1 ) == 0 )
            {
                ASSERT_EQ( one.bytes[idx], narrow.chars[idx] );
                ASSERT_EQ( two.bytes[idx], narrow.chars[idx] );
            }
        }
    }
}
