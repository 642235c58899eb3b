// Deleting: at the ends only numbers change, between whole bytes the tail moves down, and everything else
// takes a new record.

#include <qv/base/qv_buffer.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

namespace
{

using Bits = QV___INT_UNSIGNED;

// After it the numbers may change; foreign storage stays, for nothing is written.
QV_BUFFER *makeUnshared( QV_BUFFER **buf )
{
    qv::makePrivate( buf, qvBufferCreateFrom );
    return *buf;
}

// A new record of all but the range takes the place of the old.
void replaceByOuter( QV_BUFFER **buf, Bits bitOffset, Bits bitCount )
{
    qv::Local<QV_BUFFER> rest( qv::bufferCreateRecord() );
    qv___BufferMakeRoom( rest.edit(), 0, ( *buf )->bitLength - bitCount );
    qv___BufferBitWriteOuter( rest, 0, *buf, bitOffset, bitCount );
    qv::replaceWith( buf, rest.give() );
}

void moveTailDown( QV_BUFFER *buf, Bits bitOffset, Bits bitCount )
{
    unsigned char *gap = qv::bufferContent( buf ) + bitOffset / 8;
    Bits tailBits = buf->bitLength - bitOffset - bitCount;
    qvMemMove( gap, gap + bitCount / 8, static_cast<QV_INT>( qv::bitsToBytes( tailBits ) ) );
    qv::bufferCloseBack( buf, bitCount );
}

void delInner( QV_BUFFER **buf, Bits bitOffset, Bits bitCount )
{
    QV_CHECK( buf );
    qv::bufferCheckRange( *buf, bitOffset, bitCount );
    qv___BufferBitDelInner( buf, bitOffset, bitCount );
}

void delTrailing( QV_BUFFER **buf, Bits bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( bitCount <= qv::bufferBitLength( *buf ) );
    qv___BufferBitDelInner( buf, ( *buf )->bitLength - bitCount, bitCount );
}

void delOuter( QV_BUFFER **buf, Bits bitOffset, Bits bitCount )
{
    QV_CHECK( buf );
    qv::bufferCheckRange( *buf, bitOffset, bitCount );
    if ( bitCount == ( *buf )->bitLength )
        return;
    if ( bitCount == 0 )
    {
        qvBufferClear( buf );
        return;
    }
    if ( !BIT_AT_BOUND( bitOffset ) )
    {
        qv::replaceWith(
            buf, qvBufferBitRead( *buf, static_cast<QV_INT>( bitOffset ), static_cast<QV_INT>( bitCount ) ) );
        return;
    }
    QV_BUFFER *dest = makeUnshared( buf );
    dest->bitFspace += bitOffset;
    dest->bitBspace += dest->bitLength - bitOffset - bitCount;
    dest->bitLength = bitCount;
    qv___BufferCompact( dest );
}

} // namespace

void qv___BufferBitDelInner( QV_BUFFER **buf, QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount )
{
    if ( bitCount == 0 )
        return;
    if ( bitCount == ( *buf )->bitLength )
    {
        qvBufferClear( buf );
        return;
    }
    bool atEnd = bitOffset + bitCount == ( *buf )->bitLength;
    if ( !atEnd && ( !BIT_AT_BOUND( bitOffset ) || !BIT_AT_BOUND( bitCount ) ) )
    {
        replaceByOuter( buf, bitOffset, bitCount );
        return;
    }
    if ( atEnd )
    {
        qv::bufferCloseBack( makeUnshared( buf ), bitCount );
    }
    else if ( bitOffset == 0 )
    {
        QV_BUFFER *dest = makeUnshared( buf );
        dest->bitFspace += bitCount;
        dest->bitLength -= bitCount;
    }
    else
    {
        qv::bufferMakeWritable( buf );
        moveTailDown( *buf, bitOffset, bitCount );
    }
    qv___BufferCompact( *buf );
}

void qvBufferClear( QV_BUFFER **buf )
{
    QV_CHECK( buf );
    QV_CHECK( *buf );
    qv::replaceWith( buf, qvBufferCreate() );
}

void qvBufferDelInner( QV_BUFFER **buf, QV_INT byteOffset, QV_INT byteCount )
{
    delInner( buf, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitDelInner( QV_BUFFER **buf, QV_INT bitOffset, QV_INT bitCount )
{
    delInner( buf, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}

void qvBufferDelLeading( QV_BUFFER **buf, QV_INT byteCount )
{
    delInner( buf, 0, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitDelLeading( QV_BUFFER **buf, QV_INT bitCount )
{
    delInner( buf, 0, qv::bitsOfBits( bitCount ) );
}

void qvBufferDelTrailing( QV_BUFFER **buf, QV_INT byteCount )
{
    delTrailing( buf, qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitDelTrailing( QV_BUFFER **buf, QV_INT bitCount )
{
    delTrailing( buf, qv::bitsOfBits( bitCount ) );
}

void qvBufferDelOuter( QV_BUFFER **buf, QV_INT byteOffset, QV_INT byteCount )
{
    delOuter( buf, qv::bitsOfBytes( byteOffset ), qv::bitsOfBytes( byteCount ) );
}

void qvBufferBitDelOuter( QV_BUFFER **buf, QV_INT bitOffset, QV_INT bitCount )
{
    delOuter( buf, qv::bitsOfBits( bitOffset ), qv::bitsOfBits( bitCount ) );
}
