#include <qv/base/qv_buffer.hh>

#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

constinit QV_BUFFER *qv___BufferEmpty = nullptr;

namespace
{

using Bits = QV___INT_UNSIGNED;

QV_BUFFER *createOnStorage( unsigned char *bytes, QV_INT byteCount, qvObj ref )
{
    QV_BUFFER *buf = qv::bufferCreateRecord();
    buf->bitLength = static_cast<Bits>( byteCount ) * 8;
    buf->bytes = bytes;
    buf->ref = ref;
    return buf;
}

// A new record with a copy of a range that the caller has checked.
QV_BUFFER *createFromRange( const QV_BUFFER *src, Bits bitOffset, Bits bitCount )
{
    qv::Local<QV_BUFFER> buf( qv::bufferCreateRecord() );
    qv___BufferMakeRoom( buf.edit(), 0, bitCount );
    qv___BufferBitWriteInner( buf, 0, src, bitOffset, bitCount );
    return buf.give();
}

void qv___BufferFreeFunc( qvObj thisObj )
{
    auto *buf = static_cast<QV_BUFFER *>( thisObj );
    if ( buf->ref )
        qv::release( buf->ref );
    else
        qvMemFree( buf->bytes );
}

// Lexicographic by bits: whole bytes first, then the partial byte under a mask of its valid bits.
QV_INT qv___BufferCompareFunc( qvObj thisObj, qvObj thatObj )
{
    auto *bufA = static_cast<QV_BUFFER *>( thisObj );
    auto *bufB = static_cast<QV_BUFFER *>( thatObj );
    Bits common = bufA->bitLength < bufB->bitLength ? bufA->bitLength : bufB->bitLength;
    Bits whole = common / 8;
    const unsigned char *contentA = qv::bufferContent( bufA );
    const unsigned char *contentB = qv::bufferContent( bufB );
    if ( QV_INT order = qvMemCompare( contentA, contentB, static_cast<QV_INT>( whole ) ) )
        return order;
    if ( !BIT_AT_BOUND( common ) )
    {
        int mask = 0xFF00 >> ( common & 7 ) & 0xFF;
        int partA = contentA[whole] & mask;
        int partB = contentB[whole] & mask;
        if ( partA != partB )
            return partA < partB ? -1 : 1;
    }
    if ( bufA->bitLength == bufB->bitLength )
        return 0;
    return bufA->bitLength < bufB->bitLength ? -1 : 1;
}

QV_CHAR *putHexByte( QV_CHAR *dest, unsigned byte )
{
    static const char digits[] = "0123456789abcdef";
    *dest++ = static_cast<QV_CHAR>( digits[byte >> 4] );
    *dest++ = static_cast<QV_CHAR>( digits[byte & 15] );
    *dest++ = ' ';
    return dest;
}

// "[12 34 a0/3]": bytes in hexadecimal, a partial byte with the number of its bits.
QV_STRING *qv___BufferToStringFunc( qvObj thisObj )
{
    auto *buf = static_cast<QV_BUFFER *>( thisObj );
    const unsigned char *content = qv::bufferContent( buf );
    Bits whole = buf->bitLength / 8;
    Bits partial = buf->bitLength & 7;
    if ( buf->bitLength == 0 )
        return qvStringCreateFromCstr( "[]", -1 );

    // Three characters a byte, the last blank of which becomes "]"; two more for the count of a partial byte.
    auto length = static_cast<QV_INT>( 1 + 3 * qv::bitsToBytes( buf->bitLength ) + ( partial > 0 ? 2 : 0 ) );
    auto *chars = static_cast<QV_CHAR *>( qvMemAllocN( length, sizeof( QV_CHAR ) ) );
    QV_CHAR *dest = chars;
    *dest++ = '[';
    for ( Bits idx = 0; idx < whole; idx++ )
        dest = putHexByte( dest, content[idx] );
    if ( partial > 0 )
    {
        dest = putHexByte( dest, content[whole] & ( 0xFF00u >> partial ) & 0xFF );
        dest[-1] = '/';
        *dest++ = static_cast<QV_CHAR>( '0' + partial );
        dest++;
    }
    dest[-1] = ']';
    return qvStringCreateFromCharsUse( chars, length );
}

} // namespace

QV_SORT_DEFINE( QV_BUFFER, qvBuffer,
                { .freeFunc = qv___BufferFreeFunc,
                  .compareFunc = qv___BufferCompareFunc,
                  .toStringFunc = qv___BufferToStringFunc } )

void qv___BufferStartup()
{
    qv___BufferEmpty = qv::bufferCreateRecord();
}

void qv___BufferShutdown()
{
    qv::retire( &qv___BufferEmpty );
}

QV_BUFFER *qv::bufferCreateRecord()
{
    auto *buf = qv::create<QV_BUFFER>( qvBufferSort() );
    buf->bitLength = 0;
    buf->bitFspace = 0;
    buf->bitBspace = 0;
    buf->bytes = nullptr;
    buf->ref = nullptr;
    return buf;
}

QV_BUFFER *qvBufferCreate( void )
{
    return qv::retained( qv___BufferEmpty );
}

QV_BUFFER *qvBufferCreateFrom( QV_BUFFER *src )
{
    QV_CHECK( src );
    return createFromRange( src, 0, src->bitLength );
}

QV_BUFFER *qvBufferCreateFromBytesCopy( const unsigned char *bytes, QV_INT byteCount )
{
    Bits bitCount = qv::bitsOfBytes( byteCount );
    QV_CHECK( bytes || byteCount == 0 );
    qv::Local<QV_BUFFER> buf( qv::bufferCreateRecord() );
    qv___BufferMakeRoom( buf.edit(), 0, bitCount );
    qv___BufferBitWriteBytes( buf, 0, bytes, static_cast<Bits>( byteCount ) );
    return buf.give();
}

QV_BUFFER *qvBufferCreateFromBytesUse( unsigned char *bytes, QV_INT byteCount )
{
    QV_CHECK( QV___INT_UNSIGNED_TO_QV_INT_CONV_OK( qv::bitsOfBytes( byteCount ) ) );
    QV_CHECK( bytes || byteCount == 0 );
    QV_BUFFER *buf = createOnStorage( bytes, byteCount, nullptr );
    qv___ObjDbgSetAllocationSize( buf, byteCount );
    return buf;
}

QV_BUFFER *qvBufferCreateFromBytesUseWithRef( const unsigned char *bytes, QV_INT byteCount, qvObj ref )
{
    QV_CHECK( QV___INT_UNSIGNED_TO_QV_INT_CONV_OK( qv::bitsOfBytes( byteCount ) ) );
    QV_CHECK( bytes || byteCount == 0 );
    QV_CHECK( ref );
    // The memory is never written: every edit of content leaves it for a copy first.
    return createOnStorage( const_cast<unsigned char *>( bytes ), byteCount, qv::retained( ref ) );
}

QV_BUFFER *qvBufferCreateFromBits( QV_INT value, QV_INT bitCount )
{
    QV_CHECK( bitCount >= 0 );
    QV_CHECK( bitCount <= 64 );
    qv::Local<QV_BUFFER> buf( qv::bufferCreateRecord() );
    qv___BufferMakeRoom( buf.edit(), 0, static_cast<Bits>( bitCount ) );
    qv___BufferBitWriteBits( buf, 0, static_cast<Bits>( value ), static_cast<Bits>( bitCount ) );
    return buf.give();
}

QV_BUFFER *qvBufferCreateFromByte( unsigned char value )
{
    return qvBufferCreateFromBytesCopy( &value, 1 );
}

// ---- Reading. A range that the byte or bit form has turned into bits goes through one check. ----

static QV_BUFFER *readRange( QV_BUFFER *src, Bits bitIdx, Bits bitCount )
{
    qv::bufferCheckRange( src, bitIdx, bitCount );
    return createFromRange( src, bitIdx, bitCount );
}

QV_BUFFER *qvBufferRead( QV_BUFFER *src, QV_INT byteIdx, QV_INT byteCount )
{
    return readRange( src, qv::bitsOfBytes( byteIdx ), qv::bitsOfBytes( byteCount ) );
}

QV_BUFFER *qvBufferBitRead( QV_BUFFER *src, QV_INT bitIdx, QV_INT bitCount )
{
    return readRange( src, qv::bitsOfBits( bitIdx ), qv::bitsOfBits( bitCount ) );
}

QV_INT qvBufferLength( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return qv::bufferLength( buf );
}

QV_INT qvBufferBitLength( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return static_cast<QV_INT>( buf->bitLength );
}

QV_BOOL qvBufferBitIsAligned( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return BIT_AT_BOUND( buf->bitLength );
}

QV_INT qvBufferSpace( QV_BUFFER *buf )
{
    return qvBufferBitSpace( buf ) / 8;
}

QV_INT qvBufferBitSpace( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return QV_INT_MAX - static_cast<QV_INT>( buf->bitLength );
}

const unsigned char *qvBufferBacking( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return qv::bufferContent( buf );
}

const unsigned char *qvBufferBitBacking( QV_BUFFER *buf )
{
    return qvBufferBacking( buf );
}

static QV_INT readBits( QV_BUFFER *buf, Bits bitIdx, QV_INT bitCount )
{
    QV_CHECK( bitCount >= 0 );
    QV_CHECK( bitCount <= 64 );
    qv::bufferCheckRange( buf, bitIdx, static_cast<Bits>( bitCount ) );
    return static_cast<QV_INT>( qv___BufferBitReadBits( buf, bitIdx, static_cast<Bits>( bitCount ) ) );
}

QV_INT qvBufferReadBits( QV_BUFFER *buf, QV_INT byteIdx, QV_INT bitCount )
{
    return readBits( buf, qv::bitsOfBytes( byteIdx ), bitCount );
}

QV_INT qvBufferBitReadBits( QV_BUFFER *buf, QV_INT bitIdx, QV_INT bitCount )
{
    return readBits( buf, qv::bitsOfBits( bitIdx ), bitCount );
}

unsigned char qvBufferReadByte( QV_BUFFER *buf, QV_INT byteIdx )
{
    return static_cast<unsigned char>( readBits( buf, qv::bitsOfBytes( byteIdx ), 8 ) );
}

unsigned char qvBufferBitReadByte( QV_BUFFER *buf, QV_INT bitIdx )
{
    return static_cast<unsigned char>( readBits( buf, qv::bitsOfBits( bitIdx ), 8 ) );
}

static void readBytes( QV_BUFFER *buf, Bits bitIdx, unsigned char *bytes, QV_INT byteCount )
{
    qv::bufferCheckRange( buf, bitIdx, qv::bitsOfBytes( byteCount ) );
    QV_CHECK( bytes || byteCount == 0 );
    qv___BufferBitReadBytes( buf, bitIdx, bytes, static_cast<Bits>( byteCount ) );
}

void qvBufferReadBytes( QV_BUFFER *buf, QV_INT byteIdx, unsigned char *bytes, QV_INT byteCount )
{
    readBytes( buf, qv::bitsOfBytes( byteIdx ), bytes, byteCount );
}

void qvBufferBitReadBytes( QV_BUFFER *buf, QV_INT bitIdx, unsigned char *bytes, QV_INT byteCount )
{
    readBytes( buf, qv::bitsOfBits( bitIdx ), bytes, byteCount );
}
