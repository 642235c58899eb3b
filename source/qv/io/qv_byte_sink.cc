#include <qv/io/qv_byte_sink.hh>

#include <qv/base/qv_buffer.hh>

namespace
{

void qv___ByteSinkFreeFunc( qvObj thisObj )
{
    auto *sink = static_cast<QV_BYTE_SINK *>( thisObj );
    // What the sink still holds goes on to the closure; nobody is left to learn of a failure.
    qvByteSinkFlush( sink );
    qv::releaseOptional( sink->closure );
}

QV_INT lengthOf( QV_BUFFER *buf )
{
    return buf ? qv::bufferLength( buf ) : 0;
}

// The latch goes before everything else, an empty write before the call.
QV_BOOL writeChecked( QV_BYTE_SINK *sink, const unsigned char *bytes, QV_INT byteCount )
{
    QV_CHECK( sink );
    if ( sink->error )
        return QV_FALSE;
    if ( byteCount > 0 && !sink->writeFunc( sink->closure, bytes, byteCount ) )
    {
        sink->error = QV_TRUE;
        return QV_FALSE;
    }
    return QV_TRUE;
}

void checkRange( QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    QV_CHECK( byteOffset >= 0 );
    QV_CHECK( buf || byteOffset == 0 );
    QV_CHECK( byteCount >= 0 );
    QV_CHECK( buf || byteCount == 0 );
    QV_CHECK( QV_INT_ADD_OK( byteOffset, byteCount ) );
    QV_CHECK( byteOffset + byteCount == 0 || byteOffset + byteCount <= lengthOf( buf ) );
}

// A checked range; the address of an empty one is of no use to anybody.
QV_BOOL writeRange( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    return writeChecked( sink, byteCount > 0 ? qv::bufferContent( buf ) + byteOffset : nullptr, byteCount );
}

} // namespace

QV_SORT_DEFINE( QV_BYTE_SINK, qvByteSink, { .freeFunc = qv___ByteSinkFreeFunc } )

QV_BYTE_SINK *qv___ByteSinkCreate( qv___ByteSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                   qvObj closure )
{
    QV_CHECK( writeFunc );
    QV_CHECK( flushFunc );
    auto *sink = qv::create<QV_BYTE_SINK>( qvByteSinkSort() );
    sink->writeFunc = writeFunc;
    sink->flushFunc = flushFunc;
    sink->closure = nullptr;
    sink->error = QV_FALSE;
    qv::assign( &sink->closure, closure );
    return sink;
}

QV_BOOL qvByteSinkWrite( QV_BYTE_SINK *sink, QV_BUFFER *buf )
{
    return writeRange( sink, buf, 0, lengthOf( buf ) );
}

QV_BOOL qvByteSinkWriteLeading( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteCount )
{
    return qvByteSinkWriteInner( sink, buf, 0, byteCount );
}

QV_BOOL qvByteSinkWriteTrailing( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteCount )
{
    QV_CHECK( byteCount >= 0 );
    return qvByteSinkWriteInner( sink, buf, lengthOf( buf ) - byteCount, byteCount );
}

QV_BOOL qvByteSinkWriteInner( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    checkRange( buf, byteOffset, byteCount );
    return writeRange( sink, buf, byteOffset, byteCount );
}

QV_BOOL qvByteSinkWriteOuter( QV_BYTE_SINK *sink, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    checkRange( buf, byteOffset, byteCount );
    QV_INT behind = byteOffset + byteCount;
    return writeRange( sink, buf, 0, byteOffset ) &&
           writeRange( sink, buf, behind, lengthOf( buf ) - behind );
}

QV_BOOL qvByteSinkWriteBytes( QV_BYTE_SINK *sink, const unsigned char *bytes, QV_INT byteCount )
{
    QV_CHECK( byteCount >= 0 );
    QV_CHECK( bytes || byteCount == 0 );
    return writeChecked( sink, bytes, byteCount );
}

QV_BOOL qvByteSinkFlush( QV_BYTE_SINK *sink )
{
    QV_CHECK( sink );
    if ( !sink->error && !sink->flushFunc( sink->closure ) )
        sink->error = QV_TRUE;
    return !sink->error;
}

QV_BOOL qvByteSinkError( QV_BYTE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->error;
}
