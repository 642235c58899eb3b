// Byte streams alone: skips, large chunks, places inside a byte, and the streams on buffers.

#include "support/test.hh"
#include "support/stream.hh"

#include <qv/io/qv_buffer_byte_sink.hh>
#include <qv/io/qv_buffer_byte_source.hh>
#include <qv/io/qv_byte_source.hh>

namespace
{

using test::Bytes;
using Tap = test::Tap<unsigned char>;
using Buffer = qv::Local<QV_BUFFER>;

Buffer countingBuffer( QV_INT byteCount )
{
    return Bytes::value( test::countingUnits<unsigned char>( byteCount ) );
}

TEST( ByteSource, SkipsWithAndWithoutAFunction )
{
    const struct
    {
        QV_INT size, failAt, maximum, skipped;
        bool end, error;
        std::vector<QV_INT> bySteps;
    } rows[] = {
        { 3000, -1, 0, 0, false, false, {} },
        { 3000, -1, 3000, 3000, false, false, { 1024, 1024, 952 } },
        { 3000, -1, -1, 3000, true, false, { 1024, 1024, 1024 } },
        { 2048, -1, -1, 2048, true, false, { 1024, 1024, 1024 } },
        { 3000, 2000, -1, 2000, true, true, { 1024, 1024 } },
        { 3000, 0, 5, 0, true, true, { 5 } },
    };
    for ( auto &row : rows )
        for ( bool withFunction : { false, true } )
        {
            Tap tap;
            tap.data.resize( static_cast<size_t>( row.size ) );
            tap.failAt = row.failAt;
            auto closure = tap.closure();
            qv::Local<QV_BYTE_SOURCE> src(
                qv___ByteSourceCreate( tap.readFunc, withFunction ? tap.skipFunc : nullptr,
                                       qv::objOf<QV___BOXED_POINTER>( closure ) ) );
            EXPECT_EQ( qvByteSourceSkip( src, row.maximum ), row.skipped );
            EXPECT_EQ( qvByteSourceEnd( src ), row.end );
            EXPECT_EQ( qvByteSourceError( src ), row.error );
            std::vector<QV_INT> inOne( row.maximum == 0 ? 0 : 1,
                                       row.maximum == -1 ? QV_INT_MAX : row.maximum );
            EXPECT_EQ( tap.requests, withFunction ? inOne : row.bySteps );
            if ( row.end )
            {
                EXPECT_EQ( qvByteSourceSkip( src, 1 ), 0 );
                EXPECT_EQ( tap.requests.size(), withFunction ? 1 : row.bySteps.size() );
            }
        }
}

TEST( ByteSource, LargeChunksLoseNothing )
{
    for ( QV_INT size : { 100, 1024, 1025, 5000, 70000, 300000 } )
        for ( QV_INT maximum : { static_cast<QV_INT>( -1 ), size, size - 50 } )
            for ( QV_INT failAt : { static_cast<QV_INT>( -1 ), size * 3 / 4 } )
            {
                Tap tap;
                tap.data = test::countingUnits<unsigned char>( size );
                tap.failAt = failAt;
                auto src = Bytes::source( tap );
                qv::byteSourceWithChunk( src, 65536 );
                Buffer dest( qvBufferCreate() );
                QV_INT wanted = maximum == -1 ? size : maximum;
                bool fails = failAt >= 0 && failAt < wanted;
                QV_INT expected = fails ? failAt : wanted;
                EXPECT_EQ( qvByteSourceRead( src, dest.edit(), maximum ), expected );
                EXPECT_EQ( qvByteSourceError( src ), fails );
                EXPECT_LE( *std::max_element( tap.requests.begin(), tap.requests.end() ), 65536 );
                EXPECT_LE( dest->bitBspace, 2 * qv::bufferBackSpare( dest->bitLength ) )
                    << "spare room went back";
                tap.data.resize( static_cast<size_t>( expected ) );
                EXPECT_EQ( Bytes::units( dest ), tap.data );
            }
}

TEST( ByteSource, AppendsAtAnyBit )
{
    Tap tap;
    tap.data = test::countingUnits<unsigned char>( 3000 );
    auto src = Bytes::source( tap );
    Buffer dest( qvBufferCreateFromBits( 5, 3 ) );
    EXPECT_EQ( qvByteSourceRead( src, dest.edit(), -1 ), 3000 );
    EXPECT_EQ( qvBufferBitLength( dest ), 24003 );
    std::vector<unsigned char> bytes( 3000 );
    qvBufferBitReadBytes( dest, 3, bytes.data(), 3000 );
    EXPECT_EQ( bytes, tap.data );
}

TEST( ByteSource, CountsOutOfBoundsStop )
{
    auto liar = []( qvObj, unsigned char *, QV_INT maximum, QV_INT *count ) -> QV_BOOL {
        *count = maximum + 1;
        return QV_TRUE;
    };
    qv::Local<QV_BYTE_SOURCE> src( qv___ByteSourceCreate( liar, nullptr, nullptr ) );
    Buffer dest( qvBufferCreate() );
    unsigned char byte;
    EXPECT_DEATH( qvByteSourceRead( src, dest.edit(), 1 ), "count <= maximum" );
    EXPECT_DEATH( qvByteSourceReadBytes( src, &byte, 1 ), "count <= maximum" );
    EXPECT_DEATH( qvByteSourceSkip( src, 1 ), "count <= maximum" );
}

TEST( ByteSink, WritesWholeBytesFromTheStorage )
{
    Tap tap;
    auto sink = Bytes::sink( tap );
    Buffer buf = countingBuffer( 5 );
    qvBufferAppendBits( buf.edit(), 7, 3 );
    EXPECT_TRUE( qvByteSinkWrite( sink, buf ) );
    EXPECT_EQ( tap.writes.back().size(), 5u );
    EXPECT_TRUE( qvByteSinkWriteTrailing( sink, buf, 2 ) );
    EXPECT_EQ( tap.writes.back(), ( std::vector<unsigned char>{ 21, 28 } ) );
    EXPECT_DEATH( qvByteSinkWriteLeading( sink, buf, 6 ), "byteOffset \\+ byteCount" );
}

TEST( BufferByteSink, CollectsFromAllItsSinks )
{
    qv::Local<QV_BUFFER_BYTE_SINK> collector( qvBufferByteSinkCreate() );
    qv::Local<QV_BYTE_SINK> sinkA( qvBufferByteSinkByteSink( collector ) );
    qv::Local<QV_BYTE_SINK> sinkB( qvBufferByteSinkByteSink( collector ) );
    const unsigned char bytes[] = { 1, 2, 3 };
    EXPECT_TRUE( qvByteSinkWriteBytes( sinkA, bytes, 2 ) );
    Buffer early( qvBufferByteSinkBuffer( collector ) );
    EXPECT_TRUE( qvByteSinkWriteBytes( sinkB, bytes, 3 ) );
    EXPECT_TRUE( qvByteSinkFlush( sinkB ) );
    Buffer late( qvBufferByteSinkBuffer( collector ) );
    EXPECT_EQ( Bytes::units( early ), ( std::vector<unsigned char>{ 1, 2 } ) );
    EXPECT_EQ( Bytes::units( late ), ( std::vector<unsigned char>{ 1, 2, 1, 2, 3 } ) );
}

TEST( BufferByteSink, FullBufferFailsTheWrite )
{
    // A view that claims to be as long as a buffer can be; its memory is never looked at.
    unsigned char byte = 7;
    auto owner = test::text( "owner" );
    qv::Local<QV_BUFFER_BYTE_SINK> collector( qvBufferByteSinkCreate() );
    qv::replaceWith( &collector->buffer,
                     qvBufferCreateFromBytesUseWithRef( &byte, 0x0FFFFFFFFFFFFFFF, qvStringObj( owner ) ) );
    qv::Local<QV_BYTE_SINK> sink( qvBufferByteSinkByteSink( collector ) );
    EXPECT_FALSE( qvByteSinkWriteBytes( sink, &byte, 1 ) );
    EXPECT_TRUE( qvByteSinkError( sink ) );
}

TEST( BufferByteSource, SourcesShareOnePosition )
{
    Buffer buf = countingBuffer( 2000 );
    qvBufferAppendBits( buf.edit(), 0, 5 );
    qv::Local<QV_BUFFER_BYTE_SOURCE> bbs( qvBufferByteSourceCreate( buf ) );
    qv::Local<QV_BYTE_SOURCE> srcA( qvBufferByteSourceByteSource( bbs ) );
    qv::Local<QV_BYTE_SOURCE> srcB( qvBufferByteSourceByteSource( bbs ) );
    unsigned char bytes[3];
    EXPECT_EQ( qvByteSourceReadBytes( srcA, bytes, 3 ), 3 );
    EXPECT_EQ( qvByteSourceSkip( srcB, 7 ), 7 );
    // The destination may be the buffer that is read.
    EXPECT_EQ( qvByteSourceRead( srcA, buf.edit(), 1990 ), 1990 );
    EXPECT_FALSE( qvByteSourceEnd( srcA ) ) << "only a short read tells of the end";
    EXPECT_EQ( qvByteSourceRead( srcA, buf.edit(), 1 ), 0 );
    EXPECT_TRUE( qvByteSourceEnd( srcA ) );
    EXPECT_FALSE( qvByteSourceEnd( srcB ) );
    EXPECT_EQ( qvByteSourceSkip( srcB, -1 ), 0 );
    EXPECT_TRUE( qvByteSourceEnd( srcB ) );
    EXPECT_EQ( qvBufferBitLength( buf ), 2000 * 8 + 5 + 1990 * 8 );
    Buffer original( qvBufferByteSourceBuffer( bbs ) );
    EXPECT_EQ( qvBufferBitLength( original ), 2000 * 8 + 5 );
}

} // namespace
