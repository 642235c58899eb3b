// Inserting, and as its special places prepending and appending: each form gives place and size in bits, and
// one core a kind of object opens the gap and fills it.

#include <qv/base/qv_buffer.hh>

#include <qv/runtime/qv_local.hh>

namespace
{

using Bits = QV___INT_UNSIGNED;

Bits endOf( QV_BUFFER **buf )
{
    QV_CHECK( buf );
    return qv::bufferBitLength( *buf );
}

// Opens the gap and returns the record that it is in.
inline QV_BUFFER *openGap( QV_BUFFER **buf, Bits bitIdx, Bits bitCount )
{
    QV_CHECK( bitIdx <= endOf( buf ) );
    if ( bitIdx == ( *buf )->bitLength )
        qv::bufferOpenBack( buf, bitCount );
    else
        qv___BufferMakeRoom( buf, bitIdx, bitCount );
    return *buf;
}

void insertInner( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitOffset, Bits bitCount )
{
    QV_CHECK( bitIdx <= endOf( buf ) );
    qv___BufferBitInsertInner( buf, bitIdx, src, bitOffset, bitCount );
}

void insertTrailing( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitCount )
{
    QV_CHECK( bitCount <= qv::bufferBitLength( src ) );
    insertInner( buf, bitIdx, src, src->bitLength - bitCount, bitCount );
}

void insertOuter( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitOffset, Bits bitCount )
{
    qv::bufferCheckRange( src, bitOffset, bitCount );
    auto keep = qv::Local<QV_BUFFER>::share( src );
    QV_BUFFER *dest = openGap( buf, bitIdx, src->bitLength - bitCount );
    qv___BufferBitWriteOuter( dest, bitIdx, src, bitOffset, bitCount );
}

__attribute__( ( noinline ) ) void insertBits( QV_BUFFER **buf, Bits bitIdx, QV_INT value, QV_INT bitCount )
{
    QV_CHECK( bitCount >= 0 );
    QV_CHECK( bitCount <= 64 );
    auto count = static_cast<Bits>( bitCount );
    qv___BufferBitWriteBits( openGap( buf, bitIdx, count ), bitIdx, static_cast<Bits>( value ), count );
}

// Bits come one small number at a time: with a word of free storage behind the content, one word is stored
// and nothing else is called. Of the storage only the partial byte is read, for a word would wait for the one
// stored just before.
inline void appendBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount )
{
    QV_BUFFER *dest = *buf;
    auto count = static_cast<Bits>( bitCount );
    Bits at = dest->bitLength;
    Bits shift = at & 7;
    bool quick =
        at > 0 && count - 1 < 64 - shift && dest->bitBspace >= 64 && !dest->ref && !qv::isShared( dest );
    if ( __builtin_expect( !quick, 0 ) )
    {
        insertBits( buf, at, value, bitCount );
        return;
    }
    dest->bitLength = at + count;
    dest->bitBspace -= count;
    unsigned char *first = dest->bytes + ( dest->bitFspace + at ) / 8;
    Bits kept = static_cast<Bits>( *first ) << 56 & ~( UINT64_MAX >> shift );
    Bits word = qv::bigEndian( kept | static_cast<Bits>( value ) << ( 64 - count ) >> shift );
    std::memcpy( first, &word, 8 );
}

void insertByteRun( QV_BUFFER **buf, Bits bitIdx, unsigned char value, Bits bitCount )
{
    QV_BUFFER *dest = openGap( buf, bitIdx, bitCount );
    qv::bitsFill( dest->bytes, dest->bitFspace + bitIdx, value, bitCount );
}

inline void insertBytes( QV_BUFFER **buf, Bits bitIdx, const unsigned char *bytes, Bits bitCount )
{
    QV_CHECK( bytes || bitCount == 0 );
    qv___BufferBitWriteBytes( openGap( buf, bitIdx, bitCount ), bitIdx, bytes, bitCount / 8 );
}

void insertAlignment( QV_BUFFER **buf, Bits bitIdx )
{
    insertByteRun( buf, bitIdx, 0x00, -endOf( buf ) & 7 );
}

} // namespace

void qv___BufferBitInsertInner( QV_BUFFER **buf, QV___INT_UNSIGNED bitIdx, QV_BUFFER *src,
                                QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount )
{
    qv::bufferCheckRange( src, bitOffset, bitCount );
    // A second reference: the edit then runs on a private copy if src is the buffer itself.
    auto keep = qv::Local<QV_BUFFER>::share( src );
    qv___BufferBitWriteInner( openGap( buf, bitIdx, bitCount ), bitIdx, src, bitOffset, bitCount );
}

// ---- Insert ----

void qvBufferInsert( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src )
{
    insertInner( buf, qv::bitsOfBytes( byteIdx ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferBitInsert( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src )
{
    insertInner( buf, qv::bitsOfBits( bitIdx ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferInsertInner( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                          QV_INT byteCount )
{
    insertInner( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteOffset ),
                 qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertInner( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                             QV_INT bitCount )
{
    insertInner( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitOffset ),
                 qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertLeading( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount )
{
    insertInner( buf, qv::bitsOfBytes( byteIdx ), src, 0, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertLeading( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount )
{
    insertInner( buf, qv::bitsOfBits( bitIdx ), src, 0, qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertTrailing( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount )
{
    insertTrailing( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertTrailing( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount )
{
    insertTrailing( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertOuter( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                          QV_INT byteCount )
{
    insertOuter( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteOffset ),
                 qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertOuter( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                             QV_INT bitCount )
{
    insertOuter( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitOffset ),
                 qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertBits( QV_BUFFER **buf, QV_INT byteIdx, QV_INT value, QV_INT bitCount )
{
    insertBits( buf, qv::bitsOfBytes( byteIdx ), value, bitCount );
}

void qvBufferBitInsertBits( QV_BUFFER **buf, QV_INT bitIdx, QV_INT value, QV_INT bitCount )
{
    insertBits( buf, qv::bitsOfBits( bitIdx ), value, bitCount );
}

void qvBufferInsertByte( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value )
{
    insertBits( buf, qv::bitsOfBytes( byteIdx ), value, 8 );
}

void qvBufferBitInsertByte( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value )
{
    insertBits( buf, qv::bitsOfBits( bitIdx ), value, 8 );
}

void qvBufferInsertByteRun( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, qv::bitsOfBytes( byteIdx ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertByteRun( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, qv::bitsOfBits( bitIdx ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferInsertBytes( QV_BUFFER **buf, QV_INT byteIdx, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, qv::bitsOfBytes( byteIdx ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertBytes( QV_BUFFER **buf, QV_INT bitIdx, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, qv::bitsOfBits( bitIdx ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferInsertZero( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount )
{
    insertByteRun( buf, qv::bitsOfBytes( byteIdx ), 0x00, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertZero( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount )
{
    insertByteRun( buf, qv::bitsOfBits( bitIdx ), 0x00, qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertOne( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount )
{
    insertByteRun( buf, qv::bitsOfBytes( byteIdx ), 0xFF, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitInsertOne( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount )
{
    insertByteRun( buf, qv::bitsOfBits( bitIdx ), 0xFF, qv::bitsOfBits( bitCount ) );
}

void qvBufferInsertAlignment( QV_BUFFER **buf, QV_INT byteIdx )
{
    insertAlignment( buf, qv::bitsOfBytes( byteIdx ) );
}

void qvBufferBitInsertAlignment( QV_BUFFER **buf, QV_INT bitIdx )
{
    insertAlignment( buf, qv::bitsOfBits( bitIdx ) );
}

// ---- Prepend ----

void qvBufferPrepend( QV_BUFFER **buf, QV_BUFFER *src )
{
    insertInner( buf, 0, src, 0, qv::bufferBitLength( src ) );
}

void qvBufferBitPrepend( QV_BUFFER **buf, QV_BUFFER *src )
{
    insertInner( buf, 0, src, 0, qv::bufferBitLength( src ) );
}

void qvBufferPrependInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount )
{
    insertInner( buf, 0, src, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount )
{
    insertInner( buf, 0, src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount )
{
    insertInner( buf, 0, src, 0, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount )
{
    insertInner( buf, 0, src, 0, qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount )
{
    insertTrailing( buf, 0, src, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount )
{
    insertTrailing( buf, 0, src, qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount )
{
    insertOuter( buf, 0, src, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount )
{
    insertOuter( buf, 0, src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount )
{
    insertBits( buf, 0, value, bitCount );
}

void qvBufferBitPrependBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount )
{
    insertBits( buf, 0, value, bitCount );
}

void qvBufferPrependByte( QV_BUFFER **buf, unsigned char value )
{
    insertBits( buf, 0, value, 8 );
}

void qvBufferBitPrependByte( QV_BUFFER **buf, unsigned char value )
{
    insertBits( buf, 0, value, 8 );
}

void qvBufferPrependByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, 0, value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, 0, value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferPrependBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, 0, bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, 0, bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferPrependZero( QV_BUFFER **buf, QV_INT byteCount )
{
    insertByteRun( buf, 0, 0x00, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependZero( QV_BUFFER **buf, QV_INT bitCount )
{
    insertByteRun( buf, 0, 0x00, qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependOne( QV_BUFFER **buf, QV_INT byteCount )
{
    insertByteRun( buf, 0, 0xFF, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitPrependOne( QV_BUFFER **buf, QV_INT bitCount )
{
    insertByteRun( buf, 0, 0xFF, qv::bitsOfBits( bitCount ) );
}

void qvBufferPrependAlignment( QV_BUFFER **buf )
{
    insertAlignment( buf, 0 );
}

void qvBufferBitPrependAlignment( QV_BUFFER **buf )
{
    insertAlignment( buf, 0 );
}

// ---- Append ----

void qvBufferAppend( QV_BUFFER **buf, QV_BUFFER *src )
{
    insertInner( buf, endOf( buf ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferBitAppend( QV_BUFFER **buf, QV_BUFFER *src )
{
    insertInner( buf, endOf( buf ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferAppendInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount )
{
    insertInner( buf, endOf( buf ), src, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount )
{
    insertInner( buf, endOf( buf ), src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount )
{
    insertInner( buf, endOf( buf ), src, 0, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount )
{
    insertInner( buf, endOf( buf ), src, 0, qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount )
{
    insertTrailing( buf, endOf( buf ), src, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount )
{
    insertTrailing( buf, endOf( buf ), src, qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount )
{
    insertOuter( buf, endOf( buf ), src, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount )
{
    insertOuter( buf, endOf( buf ), src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( *buf );
    appendBits( buf, value, bitCount );
}

void qvBufferBitAppendBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( *buf );
    appendBits( buf, value, bitCount );
}

void qvBufferAppendByte( QV_BUFFER **buf, unsigned char value )
{
    insertBits( buf, endOf( buf ), value, 8 );
}

void qvBufferBitAppendByte( QV_BUFFER **buf, unsigned char value )
{
    insertBits( buf, endOf( buf ), value, 8 );
}

void qvBufferAppendByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, endOf( buf ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount )
{
    insertByteRun( buf, endOf( buf ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferAppendBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, endOf( buf ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount )
{
    insertBytes( buf, endOf( buf ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferAppendZero( QV_BUFFER **buf, QV_INT byteCount )
{
    insertByteRun( buf, endOf( buf ), 0x00, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendZero( QV_BUFFER **buf, QV_INT bitCount )
{
    insertByteRun( buf, endOf( buf ), 0x00, qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendOne( QV_BUFFER **buf, QV_INT byteCount )
{
    insertByteRun( buf, endOf( buf ), 0xFF, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitAppendOne( QV_BUFFER **buf, QV_INT bitCount )
{
    insertByteRun( buf, endOf( buf ), 0xFF, qv::bitsOfBits( bitCount ) );
}

void qvBufferAppendAlignment( QV_BUFFER **buf )
{
    insertAlignment( buf, endOf( buf ) );
}

void qvBufferBitAppendAlignment( QV_BUFFER **buf )
{
    insertAlignment( buf, endOf( buf ) );
}
