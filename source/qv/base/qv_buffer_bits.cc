// Workers on ranges of bits: copies move whole bytes or words, and only the ends of a range go bit by bit.

#include <qv/base/qv_buffer.hh>

#include <qv/sys/qv_mem.h>

namespace
{

// Up to 8 bits, above 0.
unsigned readFew( const unsigned char *src, QV___INT_UNSIGNED srcBit, QV___INT_UNSIGNED bitCount )
{
    const unsigned char *first = src + srcBit / 8;
    QV___INT_UNSIGNED shift = srcBit & 7;
    unsigned pair = static_cast<unsigned>( first[0] ) << 8;
    if ( shift + bitCount > 8 )
        pair |= first[1];
    return ( pair << shift & 0xFFFF ) >> ( 16 - bitCount );
}

// Up to 8 bits, above 0, the low ones of value.
void writeFew( unsigned char *dest, QV___INT_UNSIGNED destBit, unsigned value, QV___INT_UNSIGNED bitCount )
{
    unsigned char *first = dest + destBit / 8;
    QV___INT_UNSIGNED shift = destBit & 7;
    unsigned mask = ( 0xFFFFu << ( 16 - bitCount ) & 0xFFFFu ) >> shift;
    unsigned bits = ( value << ( 16 - bitCount ) & 0xFFFFu ) >> shift;
    first[0] = static_cast<unsigned char>( ( first[0] & ~( mask >> 8 ) ) | bits >> 8 );
    if ( shift + bitCount > 8 )
        first[1] = static_cast<unsigned char>( ( first[1] & ~mask ) | bits );
}

QV___INT_UNSIGNED atMost( QV___INT_UNSIGNED count, QV___INT_UNSIGNED limit )
{
    return count < limit ? count : limit;
}

// Copies whole bytes to a byte boundary from a place inside a byte.
void copyShifted( unsigned char *dest, const unsigned char *src, unsigned shift, QV___INT_UNSIGNED byteCount )
{
    for ( ; byteCount >= 8; byteCount -= 8, dest += 8, src += 8 )
    {
        QV___INT_UNSIGNED word;
        std::memcpy( &word, src, 8 );
        word = qv::bigEndian( qv::bigEndian( word ) << shift | src[8] >> ( 8 - shift ) );
        std::memcpy( dest, &word, 8 );
    }
    for ( ; byteCount > 0; byteCount--, dest++, src++ )
        *dest = static_cast<unsigned char>( src[0] << shift | src[1] >> ( 8 - shift ) );
}

} // namespace

QV___INT_UNSIGNED qv::bitsRead( const unsigned char *src, QV___INT_UNSIGNED srcBit,
                                QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED value = 0;
    while ( bitCount > 0 )
    {
        QV___INT_UNSIGNED few = atMost( bitCount, 8 );
        value = value << few | readFew( src, srcBit, few );
        srcBit += few;
        bitCount -= few;
    }
    return value;
}

void qv::bitsWrite( unsigned char *dest, QV___INT_UNSIGNED destBit, QV___INT_UNSIGNED value,
                    QV___INT_UNSIGNED bitCount )
{
    while ( bitCount > 0 )
    {
        QV___INT_UNSIGNED few = atMost( bitCount, 8 );
        bitCount -= few;
        writeFew( dest, destBit, value >> bitCount & 0xFF, few );
        destBit += few;
    }
}

void qv::bitsCopy( unsigned char *dest, QV___INT_UNSIGNED destBit, const unsigned char *src,
                   QV___INT_UNSIGNED srcBit, QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED toBound = atMost( bitCount, -destBit & 7 );
    if ( toBound > 0 )
    {
        writeFew( dest, destBit, readFew( src, srcBit, toBound ), toBound );
        destBit += toBound;
        srcBit += toBound;
        bitCount -= toBound;
    }
    QV___INT_UNSIGNED whole = bitCount / 8;
    if ( whole > 0 )
    {
        if ( BIT_AT_BOUND( srcBit ) )
            qvMemCopy( dest + destBit / 8, src + srcBit / 8, static_cast<QV_INT>( whole ) );
        else
            copyShifted( dest + destBit / 8, src + srcBit / 8, srcBit & 7, whole );
    }
    if ( QV___INT_UNSIGNED rest = bitCount & 7 )
        writeFew( dest, destBit + whole * 8, readFew( src, srcBit + whole * 8, rest ), rest );
}

void qv::bitsFill( unsigned char *dest, QV___INT_UNSIGNED destBit, unsigned char value,
                   QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED toBound = atMost( bitCount, -destBit & 7 );
    if ( toBound > 0 )
        writeFew( dest, destBit, value >> ( 8 - toBound ), toBound );
    destBit += toBound;
    bitCount -= toBound;
    // From the boundary on, every byte holds the end of one repetition and the start of the next.
    unsigned char turned = std::rotl( value, static_cast<int>( toBound ) );
    qvMemSet( dest + destBit / 8, turned, static_cast<QV_INT>( bitCount / 8 ) );
    if ( QV___INT_UNSIGNED rest = bitCount & 7 )
        writeFew( dest, destBit + ( bitCount - rest ), turned >> ( 8 - rest ), rest );
}

void qv___BufferBitReadBytes( const QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, unsigned char *bytes,
                              QV___INT_UNSIGNED byteCount )
{
    qv::bitsCopy( bytes, 0, buf->bytes, buf->bitFspace + bitIdx, byteCount * 8 );
}

void qv___BufferBitWriteInner( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const QV_BUFFER *src,
                               QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount )
{
    qv::bitsCopy( buf->bytes, buf->bitFspace + bitIdx, src->bytes, src->bitFspace + bitOffset, bitCount );
}

void qv___BufferBitWriteOuter( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const QV_BUFFER *src,
                               QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED behind = bitOffset + bitCount;
    qv___BufferBitWriteInner( buf, bitIdx, src, 0, bitOffset );
    qv___BufferBitWriteInner( buf, bitIdx + bitOffset, src, behind, src->bitLength - behind );
}

void qv___BufferBitWriteByteRun( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, unsigned char value,
                                 QV___INT_UNSIGNED byteCount )
{
    qv::bitsFill( buf->bytes, buf->bitFspace + bitIdx, value, byteCount * 8 );
}

void qv___BufferBitWriteBytes( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const unsigned char *bytes,
                               QV___INT_UNSIGNED byteCount )
{
    qv::bitsCopy( buf->bytes, buf->bitFspace + bitIdx, bytes, 0, byteCount * 8 );
}

void qv___BufferBitWriteZero( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED bitCount )
{
    qv::bitsFill( buf->bytes, buf->bitFspace + bitIdx, 0x00, bitCount );
}

void qv___BufferBitWriteOne( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED bitCount )
{
    qv::bitsFill( buf->bytes, buf->bitFspace + bitIdx, 0xFF, bitCount );
}
