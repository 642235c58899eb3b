#include <qv/io/qv_buffer_byte_source.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/io/qv_stream_author.h>
#include <qv/sys/qv_mem.h>

namespace
{

void qv___BufferByteSourceFreeFunc( qvObj thisObj )
{
    qv::release( static_cast<QV_BUFFER_BYTE_SOURCE *>( thisObj )->buffer );
}

QV_BOOL skipFunc( qvObj closure, QV_INT maxByteCount, QV_INT *bytesSkipped )
{
    auto *bbs = static_cast<QV_BUFFER_BYTE_SOURCE *>( closure );
    QV_INT left = qv::bufferLength( bbs->buffer ) - bbs->offset;
    *bytesSkipped = left < maxByteCount ? left : maxByteCount;
    bbs->offset += *bytesSkipped;
    return QV_TRUE;
}

QV_BOOL readFunc( qvObj closure, unsigned char *bytes, QV_INT maxByteCount, QV_INT *bytesRead )
{
    auto *bbs = static_cast<QV_BUFFER_BYTE_SOURCE *>( closure );
    QV_INT from = bbs->offset;
    skipFunc( closure, maxByteCount, bytesRead );
    if ( *bytesRead > 0 )
        qvMemCopy( bytes, qv::bufferContent( bbs->buffer ) + from, *bytesRead );
    return QV_TRUE;
}

} // namespace

QV_SORT_DEFINE( QV_BUFFER_BYTE_SOURCE, qvBufferByteSource, { .freeFunc = qv___BufferByteSourceFreeFunc } )

QV_BUFFER_BYTE_SOURCE *qvBufferByteSourceCreate( QV_BUFFER *src )
{
    QV_CHECK( src );
    auto *bbs = qv::create<QV_BUFFER_BYTE_SOURCE>( qvBufferByteSourceSort() );
    bbs->buffer = qv::retained( src );
    bbs->offset = 0;
    return bbs;
}

QV_BYTE_SOURCE *qvBufferByteSourceByteSource( QV_BUFFER_BYTE_SOURCE *bbs )
{
    QV_CHECK( bbs );
    return qv___ByteSourceCreate( readFunc, skipFunc, bbs );
}

QV_BUFFER *qvBufferByteSourceBuffer( QV_BUFFER_BYTE_SOURCE *bbs )
{
    QV_CHECK( bbs );
    return qv::retained( bbs->buffer );
}
