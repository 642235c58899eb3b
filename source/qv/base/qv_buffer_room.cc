// Room for edits: where a gap opens, what moves for it, and when spare room goes back. The numbers are
// decided first, then the storage is changed to them.

#include <qv/base/qv_buffer.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

#include <utility>

namespace
{

using Bits = QV___INT_UNSIGNED;

// The plan in which nothing moves and the storage stays.
qv::BufferRoom roomInPlace( const QV_BUFFER *buf, Bits atBit )
{
    Bits first = buf->bitFspace / 8;
    Bits headBytes = qv::bitsToBytes( atBit );
    Bits tailBytes = qv::bitsToBytes( buf->bitLength - atBit );
    return {
        .rebuild = false,
        .sizeBytes = 0,
        .bitFspace = buf->bitFspace,
        .bitBspace = buf->bitBspace,
        .headFrom = first,
        .headTo = first,
        .headBytes = headBytes,
        .tailFrom = first + headBytes,
        .tailTo = first + headBytes,
        .tailBytes = tailBytes,
    };
}

// New storage with the given front spare in front of length bits, and the usual spare behind them.
void takeStorage( qv::BufferRoom *room, Bits bitFspace, Bits bitLength )
{
    room->sizeBytes = qv::bitsToBytes( bitFspace + bitLength + qv::bufferBackSpare( bitLength ) );
    room->bitFspace = bitFspace;
    room->bitBspace = room->sizeBytes * 8 - bitFspace - bitLength;
}

qv::BufferRoom planBack( const QV_BUFFER *buf, Bits bitCount )
{
    qv::BufferRoom room = roomInPlace( buf, buf->bitLength );
    if ( buf->bitBspace >= bitCount )
        room.bitBspace -= bitCount;
    else
        takeStorage( &room, buf->bitFspace, buf->bitLength + bitCount );
    return room;
}

qv::BufferRoom planBetween( const QV_BUFFER *buf, Bits atBit, Bits bitCount )
{
    qv::BufferRoom room = roomInPlace( buf, atBit );
    if ( buf->bitBspace >= bitCount )
    {
        room.tailTo += bitCount / 8;
        room.bitBspace -= bitCount;
    }
    else if ( buf->bitFspace + buf->bitBspace >= bitCount )
    {
        Bits tailUp = buf->bitBspace & ~static_cast<Bits>( 7 );
        Bits headDown = bitCount - tailUp;
        room.tailTo += tailUp / 8;
        room.headTo -= headDown / 8;
        room.bitBspace -= tailUp;
        room.bitFspace -= headDown;
    }
    else
    {
        takeStorage( &room, QV_BUFFER_FSPACE, buf->bitLength + bitCount );
        room.headTo = QV_BUFFER_FSPACE / 8;
        room.tailTo = room.headTo + room.headBytes + bitCount / 8;
    }
    return room;
}

qv::BufferRoom planFront( const QV_BUFFER *buf, Bits bitCount )
{
    qv::BufferRoom room = roomInPlace( buf, 0 );
    if ( buf->bitFspace >= bitCount )
    {
        room.bitFspace -= bitCount;
    }
    else if ( buf->bitFspace + buf->bitBspace >= bitCount )
    {
        room.tailTo = bitCount / 8;
        room.bitFspace = 0;
        room.bitBspace = buf->bitFspace + buf->bitBspace - bitCount;
    }
    else
    {
        takeStorage( &room, QV_BUFFER_FSPACE, buf->bitLength + bitCount );
        room.tailTo = ( QV_BUFFER_FSPACE + bitCount ) / 8;
    }
    return room;
}

bool partsMove( const qv::BufferRoom &room )
{
    return ( room.headBytes > 0 && room.headTo != room.headFrom ) ||
           ( room.tailBytes > 0 && room.tailTo != room.tailFrom );
}

// Copies both parts to their places in fresh storage.
void moveToFreshStorage( QV_BUFFER *buf, const qv::BufferRoom &room )
{
    auto *fresh = static_cast<unsigned char *>( qvMemAlloc( static_cast<QV_INT>( room.sizeBytes ) ) );
    qvMemCopy( fresh + room.headTo, buf->bytes + room.headFrom, static_cast<QV_INT>( room.headBytes ) );
    qvMemCopy( fresh + room.tailTo, buf->bytes + room.tailFrom, static_cast<QV_INT>( room.tailBytes ) );
    qvMemFree( buf->bytes );
    buf->bytes = fresh;
}

// In place the head only moves down and the tail only up, so that neither overwrites the other.
void moveInPlace( QV_BUFFER *buf, const qv::BufferRoom &room )
{
    qvMemMove( buf->bytes + room.headTo, buf->bytes + room.headFrom, static_cast<QV_INT>( room.headBytes ) );
    qvMemMove( buf->bytes + room.tailTo, buf->bytes + room.tailFrom, static_cast<QV_INT>( room.tailBytes ) );
}

void applyRoom( QV_BUFFER *buf, const qv::BufferRoom &room )
{
    auto sizeBytes = static_cast<QV_INT>( room.sizeBytes );
    if ( room.sizeBytes == 0 )
    {
        if ( partsMove( room ) )
            moveInPlace( buf, room );
    }
    else
    {
        if ( partsMove( room ) )
            moveToFreshStorage( buf, room );
        else
            buf->bytes = static_cast<unsigned char *>( qvMemRealloc( buf->bytes, sizeBytes ) );
        qv___ObjDbgSetAllocationSize( buf, sizeBytes );
    }
    buf->bitFspace = room.bitFspace;
    buf->bitBspace = room.bitBspace;
}

// Content starts on a byte, so that a gap that shifts it by bits costs a copy of all of it.
void rebuild( QV_BUFFER *buf, Bits atBit, Bits bitCount )
{
    qv::Local<QV_BUFFER> fresh( qv::bufferCreateRecord() );
    qv___BufferMakeRoom( fresh.edit(), 0, buf->bitLength + bitCount );
    qv___BufferBitWriteInner( fresh, 0, buf, 0, atBit );
    qv___BufferBitWriteInner( fresh, atBit + bitCount, buf, atBit, buf->bitLength - atBit );
    qv___BufferSwapContents( buf, fresh );
}

} // namespace

qv::BufferRoom qv::bufferPlanRoom( const QV_BUFFER *buf, QV___INT_UNSIGNED atBit, QV___INT_UNSIGNED bitCount )
{
    if ( !buf->bytes )
    {
        BufferRoom room = roomInPlace( buf, 0 );
        takeStorage( &room, QV_BUFFER_FSPACE, bitCount );
        return room;
    }
    if ( atBit > 0 && atBit == buf->bitLength )
        return planBack( buf, bitCount );
    if ( !BIT_AT_BOUND( atBit ) || !BIT_AT_BOUND( bitCount ) )
    {
        BufferRoom room{};
        room.rebuild = true;
        return room;
    }
    return atBit > 0 ? planBetween( buf, atBit, bitCount ) : planFront( buf, bitCount );
}

void qv___BufferMakeRoom( QV_BUFFER **buf, QV___INT_UNSIGNED atBit, QV___INT_UNSIGNED bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( *buf );
    QV_CHECK( atBit <= ( *buf )->bitLength );
    if ( bitCount == 0 )
        return;
    QV_CHECK( QV___INT_UNSIGNED_ADD_OK( ( *buf )->bitLength, bitCount ) );
    QV_CHECK( QV___INT_UNSIGNED_TO_QV_INT_CONV_OK( ( *buf )->bitLength + bitCount ) );

    qv::bufferMakeWritable( buf );
    qv::BufferRoom room = qv::bufferPlanRoom( *buf, atBit, bitCount );
    if ( room.rebuild )
    {
        rebuild( *buf, atBit, bitCount );
        return;
    }
    applyRoom( *buf, room );
    ( *buf )->bitLength += bitCount;
}

bool qv::bufferPlanCompaction( const QV_BUFFER *buf, BufferRoom *room )
{
    if ( buf->ref || ( buf->bitFspace <= 2 * QV_BUFFER_FSPACE &&
                       buf->bitBspace <= 2 * bufferBackSpare( buf->bitLength ) ) )
        return false;
    *room = roomInPlace( buf, 0 );
    if ( buf->bitLength == 0 )
    {
        room->bitFspace = 0;
        room->bitBspace = 0;
        return true;
    }
    takeStorage( room, QV_BUFFER_FSPACE, buf->bitLength );
    room->tailTo = QV_BUFFER_FSPACE / 8;
    return true;
}

void qv___BufferCompact( QV_BUFFER *buf )
{
    QV_CHECK( buf );
    QV_CHECK( QV_REF_RETAIN_COUNT( buf ) == 1 );
    QV_CHECK( BIT_AT_BOUND( buf->bitFspace ) );
    qv::BufferRoom room;
    if ( !qv::bufferPlanCompaction( buf, &room ) )
        return;

    if ( room.sizeBytes > 0 )
    {
        // The spare in front and behind together is larger than the new front spare: the move stays inside
        // the storage.
        qvMemMove( buf->bytes + room.tailTo, buf->bytes + room.tailFrom,
                   static_cast<QV_INT>( room.tailBytes ) );
        buf->bytes =
            static_cast<unsigned char *>( qvMemRealloc( buf->bytes, static_cast<QV_INT>( room.sizeBytes ) ) );
    }
    else
    {
        qvMemFree( buf->bytes );
        buf->bytes = nullptr;
    }
    buf->bitFspace = room.bitFspace;
    buf->bitBspace = room.bitBspace;
    qv___ObjDbgSetAllocationSize( buf, static_cast<QV_INT>( room.sizeBytes ) );
}

void qv___BufferSwapContents( QV_BUFFER *bufA, QV_BUFFER *bufB )
{
    std::swap( bufA->bitLength, bufB->bitLength );
    std::swap( bufA->bitFspace, bufB->bitFspace );
    std::swap( bufA->bitBspace, bufB->bitBspace );
    std::swap( bufA->bytes, bufB->bytes );
    std::swap( bufA->ref, bufB->ref );
    QV_INT sizeA = qv___ObjDbgAllocationSize( bufA );
    qv___ObjDbgSetAllocationSize( bufA, qv___ObjDbgAllocationSize( bufB ) );
    qv___ObjDbgSetAllocationSize( bufB, sizeA );
}
