// Overwriting: each form gives the range in bits, and one core a kind of object checks and writes.

#include <qv/base/qv_buffer.hh>

#include <qv/runtime/qv_local.hh>

namespace
{

using Bits = QV___INT_UNSIGNED;

// Checks the target range and makes the record writable, unless nothing will be written.
QV_BUFFER *beginWrite( QV_BUFFER **buf, Bits bitIdx, Bits bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( *buf );
    QV_CHECK( QV___INT_UNSIGNED_ADD_OK( bitIdx, bitCount ) );
    QV_CHECK( bitIdx + bitCount <= ( *buf )->bitLength );
    if ( bitCount > 0 )
        qv::bufferMakeWritable( buf );
    return *buf;
}

void writeInner( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitOffset, Bits bitCount )
{
    qv::bufferCheckRange( src, bitOffset, bitCount );
    // A second reference: the write then runs on a private copy if src is the buffer itself.
    auto keep = qv::Local<QV_BUFFER>::share( src );
    qv___BufferBitWriteInner( beginWrite( buf, bitIdx, bitCount ), bitIdx, src, bitOffset, bitCount );
}

void writeTrailing( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitCount )
{
    QV_CHECK( bitCount <= qv::bufferBitLength( src ) );
    writeInner( buf, bitIdx, src, src->bitLength - bitCount, bitCount );
}

void writeOuter( QV_BUFFER **buf, Bits bitIdx, QV_BUFFER *src, Bits bitOffset, Bits bitCount )
{
    qv::bufferCheckRange( src, bitOffset, bitCount );
    auto keep = qv::Local<QV_BUFFER>::share( src );
    QV_BUFFER *dest = beginWrite( buf, bitIdx, src->bitLength - bitCount );
    qv___BufferBitWriteOuter( dest, bitIdx, src, bitOffset, bitCount );
}

void writeBits( QV_BUFFER **buf, Bits bitIdx, QV_INT value, QV_INT bitCount )
{
    QV_CHECK( bitCount >= 0 );
    QV_CHECK( bitCount <= 64 );
    auto count = static_cast<Bits>( bitCount );
    qv___BufferBitWriteBits( beginWrite( buf, bitIdx, count ), bitIdx, static_cast<Bits>( value ), count );
}

void writeByteRun( QV_BUFFER **buf, Bits bitIdx, unsigned char value, Bits bitCount )
{
    QV_BUFFER *dest = beginWrite( buf, bitIdx, bitCount );
    qv::bitsFill( dest->bytes, dest->bitFspace + bitIdx, value, bitCount );
}

void writeBytes( QV_BUFFER **buf, Bits bitIdx, const unsigned char *bytes, Bits bitCount )
{
    QV_CHECK( bytes || bitCount == 0 );
    qv___BufferBitWriteBytes( beginWrite( buf, bitIdx, bitCount ), bitIdx, bytes, bitCount / 8 );
}

} // namespace

void qvBufferWrite( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src )
{
    writeInner( buf, qv::bitsOfBytes( byteIdx ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferBitWrite( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src )
{
    writeInner( buf, qv::bitsOfBits( bitIdx ), src, 0, qv::bufferBitLength( src ) );
}

void qvBufferWriteInner( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                         QV_INT byteCount )
{
    writeInner( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteOffset ),
                qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteInner( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                            QV_INT bitCount )
{
    writeInner( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferWriteLeading( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount )
{
    writeInner( buf, qv::bitsOfBytes( byteIdx ), src, 0, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteLeading( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount )
{
    writeInner( buf, qv::bitsOfBits( bitIdx ), src, 0, qv::bitsOfBits( bitCount ) );
}

void qvBufferWriteTrailing( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount )
{
    writeTrailing( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteTrailing( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount )
{
    writeTrailing( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitCount ) );
}

void qvBufferWriteOuter( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                         QV_INT byteCount )
{
    writeOuter( buf, qv::bitsOfBytes( byteIdx ), src, qv::bitsOfBytes( byteOffset ),
                qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteOuter( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                            QV_INT bitCount )
{
    writeOuter( buf, qv::bitsOfBits( bitIdx ), src, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferWriteBits( QV_BUFFER **buf, QV_INT byteIdx, QV_INT value, QV_INT bitCount )
{
    writeBits( buf, qv::bitsOfBytes( byteIdx ), value, bitCount );
}

void qvBufferBitWriteBits( QV_BUFFER **buf, QV_INT bitIdx, QV_INT value, QV_INT bitCount )
{
    writeBits( buf, qv::bitsOfBits( bitIdx ), value, bitCount );
}

void qvBufferWriteByte( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value )
{
    writeBits( buf, qv::bitsOfBytes( byteIdx ), value, 8 );
}

void qvBufferBitWriteByte( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value )
{
    writeBits( buf, qv::bitsOfBits( bitIdx ), value, 8 );
}

void qvBufferWriteByteRun( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value, QV_INT byteCount )
{
    writeByteRun( buf, qv::bitsOfBytes( byteIdx ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteByteRun( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value, QV_INT byteCount )
{
    writeByteRun( buf, qv::bitsOfBits( bitIdx ), value, qv::bitsOfBytes( byteCount ) );
}

void qvBufferWriteBytes( QV_BUFFER **buf, QV_INT byteIdx, const unsigned char *bytes, QV_INT byteCount )
{
    writeBytes( buf, qv::bitsOfBytes( byteIdx ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteBytes( QV_BUFFER **buf, QV_INT bitIdx, const unsigned char *bytes, QV_INT byteCount )
{
    writeBytes( buf, qv::bitsOfBits( bitIdx ), bytes, qv::bitsOfBytes( byteCount ) );
}

void qvBufferWriteZero( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount )
{
    writeByteRun( buf, qv::bitsOfBytes( byteIdx ), 0x00, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteZero( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount )
{
    writeByteRun( buf, qv::bitsOfBits( bitIdx ), 0x00, qv::bitsOfBits( bitCount ) );
}

void qvBufferWriteOne( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount )
{
    writeByteRun( buf, qv::bitsOfBytes( byteIdx ), 0xFF, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitWriteOne( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount )
{
    writeByteRun( buf, qv::bitsOfBits( bitIdx ), 0xFF, qv::bitsOfBits( bitCount ) );
}
