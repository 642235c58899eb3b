#include <qv/io/qv_buffer_byte_sink.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/io/qv_stream_author.h>

namespace
{

void qv___BufferByteSinkFreeFunc( qvObj thisObj )
{
    qv::release( static_cast<QV_BUFFER_BYTE_SINK *>( thisObj )->buffer );
}

QV_BOOL writeFunc( qvObj closure, const unsigned char *bytes, QV_INT byteCount )
{
    auto *bbs = static_cast<QV_BUFFER_BYTE_SINK *>( closure );
    if ( byteCount > qvBufferSpace( bbs->buffer ) )
        return QV_FALSE;
    qvBufferAppendBytes( &bbs->buffer, bytes, byteCount );
    return QV_TRUE;
}

QV_BOOL flushFunc( qvObj )
{
    return QV_TRUE;
}

} // namespace

QV_SORT_DEFINE( QV_BUFFER_BYTE_SINK, qvBufferByteSink, { .freeFunc = qv___BufferByteSinkFreeFunc } )

QV_BUFFER_BYTE_SINK *qvBufferByteSinkCreate( void )
{
    auto *bbs = qv::create<QV_BUFFER_BYTE_SINK>( qvBufferByteSinkSort() );
    bbs->buffer = qvBufferCreate();
    return bbs;
}

QV_BYTE_SINK *qvBufferByteSinkByteSink( QV_BUFFER_BYTE_SINK *bbs )
{
    QV_CHECK( bbs );
    return qv___ByteSinkCreate( writeFunc, flushFunc, bbs );
}

QV_BUFFER *qvBufferByteSinkBuffer( QV_BUFFER_BYTE_SINK *bbs )
{
    QV_CHECK( bbs );
    return qv::retained( bbs->buffer );
}
