#include <qv/io/qv_byte_source.hh>

#include <qv/base/qv_buffer.hh>

namespace
{

void qv___ByteSourceFreeFunc( qvObj thisObj )
{
    auto *src = static_cast<QV_BYTE_SOURCE *>( thisObj );
    qv::releaseOptional( src->closure );
}

QV_INT maximumOf( QV_INT maxByteCount )
{
    QV_CHECK( maxByteCount >= -1 );
    return maxByteCount == -1 ? QV_INT_MAX : maxByteCount;
}

// Takes the outcome of a call into the flags.
void noteResult( QV_BYTE_SOURCE *src, QV_INT count, QV_INT maximum, QV_BOOL result )
{
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= maximum );
    if ( count < maximum || !result )
        src->end = QV_TRUE;
    if ( !result )
        src->error = QV_TRUE;
}

QV_INT readOnce( QV_BYTE_SOURCE *src, unsigned char *bytes, QV_INT maximum )
{
    QV_INT bytesRead = 0;
    QV_BOOL result = src->readFunc( src->closure, bytes, maximum, &bytesRead );
    noteResult( src, bytesRead, maximum, result );
    return bytesRead;
}

QV_INT atMost( QV_INT count, QV_INT limit )
{
    return count < limit ? count : limit;
}

// Reads through a local array, which also serves a place inside a byte.
QV_INT readThroughArray( QV_BYTE_SOURCE *src, QV_BUFFER **dest, QV_INT maximum )
{
    unsigned char bytes[QV___BYTE_SOURCE_CHUNK];
    QV_INT count = readOnce( src, bytes, atMost( maximum, QV_SIZEOF_ARRAY( bytes ) ) );
    qvBufferAppendBytes( dest, bytes, count );
    return count;
}

// Reads straight behind the content, whose length is whole bytes.
QV_INT readInPlace( QV_BYTE_SOURCE *src, QV_BUFFER **dest, QV_INT maximum )
{
    auto bitCount = static_cast<QV___INT_UNSIGNED>( maximum ) * 8;
    QV___INT_UNSIGNED at = qv::bufferOpenBack( dest, bitCount );
    QV_BUFFER *buf = *dest;
    QV_INT count = readOnce( src, qv::bufferContent( buf ) + at / 8, maximum );
    qv::bufferCloseBack( buf, bitCount - static_cast<QV___INT_UNSIGNED>( count ) * 8 );
    return count;
}

} // namespace

QV_SORT_DEFINE( QV_BYTE_SOURCE, qvByteSource, { .freeFunc = qv___ByteSourceFreeFunc } )

QV_BYTE_SOURCE *qv___ByteSourceCreate( qv___ByteSourceReadFunc readFunc, qv___ByteSourceSkipFunc skipFunc,
                                       qvObj closure )
{
    QV_CHECK( readFunc );
    auto *src = qv::create<QV_BYTE_SOURCE>( qvByteSourceSort() );
    src->readFunc = readFunc;
    src->skipFunc = skipFunc;
    src->closure = nullptr;
    src->end = QV_FALSE;
    src->error = QV_FALSE;
    src->maxChunk = QV___BYTE_SOURCE_CHUNK;
    qv::assign( &src->closure, closure );
    return src;
}

QV_INT qvByteSourceRead( QV_BYTE_SOURCE *src, QV_BUFFER **dest, QV_INT maxByteCount )
{
    QV_CHECK( src );
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_INT remaining = maximumOf( maxByteCount );
    QV_INT total = 0;
    // The first request goes through the array, so that a short source leaves a short storage. From then on
    // the requests grow with what has come, and go into the buffer itself.
    while ( remaining > 0 && !src->end )
    {
        QV_INT request = total < src->maxChunk ? total : src->maxChunk;
        bool inPlace = total > 0 && qvBufferBitIsAligned( *dest );
        QV_INT count = inPlace ? readInPlace( src, dest, atMost( remaining, request ) )
                               : readThroughArray( src, dest, remaining );
        total += count;
        remaining -= count;
    }
    if ( total >= QV___BYTE_SOURCE_CHUNK && !qv::isShared( *dest ) )
        qv___BufferCompact( *dest );
    return total;
}

QV_INT qvByteSourceReadBytes( QV_BYTE_SOURCE *src, unsigned char *bytes, QV_INT maxByteCount )
{
    QV_CHECK( src );
    QV_INT maximum = maximumOf( maxByteCount );
    QV_CHECK( bytes || maximum == 0 );
    return maximum > 0 ? readOnce( src, bytes, maximum ) : 0;
}

QV_INT qvByteSourceSkip( QV_BYTE_SOURCE *src, QV_INT maxByteCount )
{
    QV_CHECK( src );
    QV_INT remaining = maximumOf( maxByteCount );
    if ( src->end || remaining == 0 )
        return 0;
    if ( src->skipFunc )
    {
        QV_INT bytesSkipped = 0;
        QV_BOOL result = src->skipFunc( src->closure, remaining, &bytesSkipped );
        noteResult( src, bytesSkipped, remaining, result );
        return bytesSkipped;
    }
    unsigned char bytes[QV___BYTE_SOURCE_CHUNK];
    QV_INT total = 0;
    while ( remaining > 0 && !src->end )
    {
        QV_INT count = readOnce( src, bytes, atMost( remaining, QV_SIZEOF_ARRAY( bytes ) ) );
        total += count;
        remaining -= count;
    }
    return total;
}

QV_BOOL qvByteSourceEnd( QV_BYTE_SOURCE *src )
{
    QV_CHECK( src );
    return src->end;
}

QV_BOOL qvByteSourceError( QV_BYTE_SOURCE *src )
{
    QV_CHECK( src );
    return src->error;
}
