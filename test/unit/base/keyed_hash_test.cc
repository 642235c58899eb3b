// The keyed hash: known results, and its spread under the key of this process.

#include "support/test.hh"

#include <qv/base/qv_keyed_hash.hh>

namespace
{

TEST( KeyedHash, IsSipHash13 )
{
    // The published vectors for the bytes 0, 1, 2 ... under the key 0 to 15.
    constexpr qv::HashKey key = { { 0x0706050403020100, 0x0F0E0D0C0B0A0908 } };
    qv::SipState empty( key );
    empty.take( 0 );
    EXPECT_EQ( empty.end(), 0xABAC0158050FC4DCu );
    qv::SipState oneByte( key );
    oneByte.take( 0x0100000000000000 );
    EXPECT_EQ( oneByte.end(), 0xC9F49BF37D57CA93u );
}

TEST( KeyedHash, SpreadsNamesAsTheKeySays )
{
    qv::HashKey before = qv::hashKey;
    EXPECT_TRUE( before.words[0] != 0 && before.words[1] != 0 );
    std::set<uint64_t> hashes;
    std::set<uint64_t> slots;
    for ( QV_CHAR first = 0; first < 100; first++ )
        for ( QV_CHAR second = 0; second < 100; second++ )
        {
            QV_CHAR chs[] = { first, second, 0 };
            for ( QV_INT length : { 2, 3 } )
            {
                uint64_t hash = qv::hashChars( chs, length );
                hashes.insert( hash );
                slots.insert( hash & 0xFFFF );
            }
        }
    EXPECT_EQ( hashes.size(), 20000u );
    EXPECT_GT( slots.size(), 16500u ); // 17230 by chance
    qv::hashKey.words[0] ^= 1;
    QV_CHAR ch = 'a';
    EXPECT_FALSE( hashes.count( qv::hashChars( &ch, 1 ) ) );
    hashes.insert( qv::hashChars( &ch, 1 ) );
    qv::hashKey = before;
    EXPECT_FALSE( hashes.count( qv::hashChars( &ch, 1 ) ) );
}

} // namespace
