#ifndef QV_BASE_QV_BUFFER_HH
#define QV_BASE_QV_BUFFER_HH

#include <qv/base/qv_buffer.h>
#include <qv/runtime/qv_obj.hh>

#include <bit>
#include <cstring>

#define BIT_AT_BOUND( x )     ( ( (x)&7 ) == 0 )
#define BYTES_TO_BITS_OK( x ) ( ( x ) <= 0x1FFFFFFFFFFFFFFF )

// The content starts at bit bitFspace of the storage, which is bitFspace + bitLength + bitBspace bits large.
//
// Invariant: bitFspace is a multiple of 8; the sum of the three is one too and fits a QV_INT; without bytes
// all three are 0. With ref set, bytes belong to that object and are never written or freed here.
struct qv___Buffer : qv___Obj
{
    QV___INT_UNSIGNED bitLength;
    QV___INT_UNSIGNED bitFspace;
    QV___INT_UNSIGNED bitBspace;
    unsigned char *bytes; // may be null
    qvObj ref;            // owner of foreign storage, null when the buffer owns bytes
};

// The one shared empty buffer.
extern QV_BUFFER *qv___BufferEmpty;

void qv___BufferStartup();
void qv___BufferShutdown();

// Opens a gap of bitCount undefined bits at content position atBit of a private record; bitLength counts it
// on return.
void qv___BufferMakeRoom( QV_BUFFER **buf, QV___INT_UNSIGNED atBit, QV___INT_UNSIGNED bitCount );

// Gives back spare room beyond twice the usual. The record is held once.
void qv___BufferCompact( QV_BUFFER *buf );

// Exchanges the five fields and the reported allocation sizes.
void qv___BufferSwapContents( QV_BUFFER *bufA, QV_BUFFER *bufB );

// Workers on ranges that the caller has checked. Those that write need a private record with storage of its
// own.
void qv___BufferBitReadBytes( const QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, unsigned char *bytes,
                              QV___INT_UNSIGNED byteCount );
void qv___BufferBitWriteInner( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const QV_BUFFER *src,
                               QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount );
void qv___BufferBitWriteOuter( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const QV_BUFFER *src,
                               QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount );
void qv___BufferBitWriteByteRun( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, unsigned char value,
                                 QV___INT_UNSIGNED byteCount );
void qv___BufferBitWriteBytes( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, const unsigned char *bytes,
                               QV___INT_UNSIGNED byteCount );
void qv___BufferBitWriteZero( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED bitCount );
void qv___BufferBitWriteOne( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED bitCount );
void qv___BufferBitInsertInner( QV_BUFFER **buf, QV___INT_UNSIGNED bitIdx, QV_BUFFER *src,
                                QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount );
void qv___BufferBitDelInner( QV_BUFFER **buf, QV___INT_UNSIGNED bitOffset, QV___INT_UNSIGNED bitCount );

namespace qv
{

// Ranges of bits in plain memory; bit 0 is the highest bit of the first byte. No byte outside the ranges is
// touched.
QV___INT_UNSIGNED bitsRead( const unsigned char *src, QV___INT_UNSIGNED srcBit, QV___INT_UNSIGNED bitCount );
void bitsWrite( unsigned char *dest, QV___INT_UNSIGNED destBit, QV___INT_UNSIGNED value,
                QV___INT_UNSIGNED bitCount );
void bitsCopy( unsigned char *dest, QV___INT_UNSIGNED destBit, const unsigned char *src,
               QV___INT_UNSIGNED srcBit, QV___INT_UNSIGNED bitCount );

// Fills with a byte that repeats from destBit on, whole or in part at the end.
void bitsFill( unsigned char *dest, QV___INT_UNSIGNED destBit, unsigned char value,
               QV___INT_UNSIGNED bitCount );

inline QV___INT_UNSIGNED bigEndian( QV___INT_UNSIGNED word )
{
    return std::endian::native == std::endian::little ? __builtin_bswap64( word ) : word;
}

inline QV___INT_UNSIGNED bitsToBytes( QV___INT_UNSIGNED bitCount )
{
    return ( bitCount + 7 ) / 8;
}

// Size of the storage in bytes.
inline QV___INT_UNSIGNED bufferStorageSize( const QV_BUFFER *buf )
{
    return ( buf->bitFspace + buf->bitLength + buf->bitBspace ) / 8;
}

// What making room does with the storage. Sizes and places are bytes of the storage; the content's part
// before the gap is the head, the part behind it the tail, a partial last byte included.
struct BufferRoom
{
    bool rebuild; // the content must shift by bits: copy it into new storage; all else is unset
    QV___INT_UNSIGNED sizeBytes; // size to allocate, 0 when the storage stays
    QV___INT_UNSIGNED bitFspace; // afterwards
    QV___INT_UNSIGNED bitBspace; // afterwards
    QV___INT_UNSIGNED headFrom, headTo, headBytes;
    QV___INT_UNSIGNED tailFrom, tailTo, tailBytes;
};

// Decides how to open a gap of bitCount bits, above 0, at content position atBit. Reads only the record's
// numbers.
BufferRoom bufferPlanRoom( const QV_BUFFER *buf, QV___INT_UNSIGNED atBit, QV___INT_UNSIGNED bitCount );

// Decides how much spare room goes back, false for none. The content is the tail; sizeBytes 0 frees the
// storage.
bool bufferPlanCompaction( const QV_BUFFER *buf, BufferRoom *room );

// A new record without storage.
QV_BUFFER *bufferCreateRecord();

// Bits to keep free behind a content of that many bits.
inline QV___INT_UNSIGNED bufferBackSpare( QV___INT_UNSIGNED bitLength )
{
    return bitLength < 0x800000 ? 1280 : 0x100000;
}

// The arguments of the byte and the bit forms as bits.
inline QV___INT_UNSIGNED bitsOfBytes( QV_INT bytes )
{
    QV_CHECK( QV___INT_UNSIGNED_FROM_QV_INT_CONV_OK( bytes ) );
    QV_CHECK( BYTES_TO_BITS_OK( bytes ) );
    return static_cast<QV___INT_UNSIGNED>( bytes ) * 8;
}

inline QV___INT_UNSIGNED bitsOfBits( QV_INT bits )
{
    QV_CHECK( QV___INT_UNSIGNED_FROM_QV_INT_CONV_OK( bits ) );
    return static_cast<QV___INT_UNSIGNED>( bits );
}

inline QV___INT_UNSIGNED bufferBitLength( const QV_BUFFER *buf )
{
    QV_CHECK( buf );
    return buf->bitLength;
}

inline void bufferCheckRange( const QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED bitCount )
{
    QV_CHECK( buf );
    QV_CHECK( QV___INT_UNSIGNED_ADD_OK( bitIdx, bitCount ) );
    QV_CHECK( bitIdx + bitCount <= buf->bitLength );
}

inline QV_INT bufferLength( const QV_BUFFER *buf )
{
    return static_cast<QV_INT>( buf->bitLength / 8 );
}

// The first content byte; null without storage.
inline unsigned char *bufferContent( const QV_BUFFER *buf )
{
    return buf->bytes ? buf->bytes + buf->bitFspace / 8 : nullptr;
}

// Makes the handle's record one that the caller may write to: held once, on storage of its own.
inline void bufferMakeWritable( QV_BUFFER **buf )
{
    if ( __builtin_expect( isShared( *buf ) || ( *buf )->ref, 0 ) )
        replaceWith( buf, qvBufferCreateFrom( *buf ) );
}

// Adds bitCount undefined bits behind the content and returns the position of the first.
inline QV___INT_UNSIGNED bufferOpenBack( QV_BUFFER **buf, QV___INT_UNSIGNED bitCount )
{
    QV_BUFFER *dest = *buf;
    QV___INT_UNSIGNED at = dest->bitLength;
    if ( __builtin_expect( at > 0 && dest->bitBspace >= bitCount && !dest->ref && !isShared( dest ), 1 ) )
    {
        dest->bitLength += bitCount;
        dest->bitBspace -= bitCount;
    }
    else
    {
        qv___BufferMakeRoom( buf, at, bitCount );
    }
    return at;
}

// Gives back the last bitCount bits of a private record, for a caller that opened more room than it filled.
inline void bufferCloseBack( QV_BUFFER *buf, QV___INT_UNSIGNED bitCount )
{
    buf->bitLength -= bitCount;
    buf->bitBspace += bitCount;
}

} // namespace qv

// Up to 64 bits; the first is the highest of the result. A word at a time wherever the storage reaches far
// enough.
inline QV___INT_UNSIGNED qv___BufferBitReadBits( const QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx,
                                                 QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED at = buf->bitFspace + bitIdx;
    QV___INT_UNSIGNED shift = at & 7;
    if ( __builtin_expect( bitCount - 1 < 64 - shift && at / 8 + 8 <= qv::bufferStorageSize( buf ), 1 ) )
    {
        QV___INT_UNSIGNED word;
        std::memcpy( &word, buf->bytes + at / 8, 8 );
        return qv::bigEndian( word ) << shift >> ( 64 - bitCount );
    }
    return qv::bitsRead( buf->bytes, at, bitCount );
}

// The low bitCount bits of value, up to 64; only the bits of the target range change.
inline void qv___BufferBitWriteBits( QV_BUFFER *buf, QV___INT_UNSIGNED bitIdx, QV___INT_UNSIGNED value,
                                     QV___INT_UNSIGNED bitCount )
{
    QV___INT_UNSIGNED at = buf->bitFspace + bitIdx;
    QV___INT_UNSIGNED shift = at & 7;
    if ( __builtin_expect( bitCount - 1 < 64 - shift && at / 8 + 8 <= qv::bufferStorageSize( buf ), 1 ) )
    {
        QV___INT_UNSIGNED word;
        QV___INT_UNSIGNED mask = UINT64_MAX << ( 64 - bitCount ) >> shift;
        std::memcpy( &word, buf->bytes + at / 8, 8 );
        word = qv::bigEndian( word ) & ~mask;
        word = qv::bigEndian( word | value << ( 64 - bitCount ) >> shift );
        std::memcpy( buf->bytes + at / 8, &word, 8 );
        return;
    }
    qv::bitsWrite( buf->bytes, at, value, bitCount );
}

#endif
