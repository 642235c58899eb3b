#include <qv/io/qv_header_stream.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_byte_source.h>
#include <qv/io/qv_header.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_HEADER_BYTE_SINK, qvHeaderByteSink, { .freeFunc = qv___HeaderByteSinkFreeFunc } )
QV_SORT_DEFINE( QV_HEADER_BYTE_SOURCE, qvHeaderByteSource, { .freeFunc = qv___HeaderByteSourceFreeFunc } )

namespace
{

// How far a source reads ahead to find the end of a header: at first, and at most.
constexpr QV_INT firstAhead = 8192;
constexpr QV_INT mostAhead = 0x100000;

QV_BOOL writeThrough( qvObj closure, const unsigned char *bytes, QV_INT byteCount )
{
    return qvByteSinkWriteBytes( qvHeaderByteSinkFrom( closure )->byteSink, bytes, byteCount );
}

QV_BOOL flushThrough( qvObj closure )
{
    return qvByteSinkFlush( qvHeaderByteSinkFrom( closure )->byteSink );
}

// Takes up to maxByteCount bytes off those that were read ahead, into bytes unless that is null, and drops the buffer once
// it is used up.
QV_INT takeAhead( QV_HEADER_BYTE_SOURCE *hbs, unsigned char *bytes, QV_INT maxByteCount )
{
    if ( !hbs->ahead )
        return 0;
    QV_INT left = qv::bufferLength( hbs->ahead ) - hbs->aheadOffset;
    QV_INT count = left < maxByteCount ? left : maxByteCount;
    if ( bytes && count > 0 )
        qvBufferReadBytes( hbs->ahead, hbs->aheadOffset, bytes, count );
    hbs->aheadOffset += count;
    if ( count == left )
        qv::replaceWith<QV_BUFFER>( &hbs->ahead, nullptr );
    return count;
}

QV_BOOL readBehind( qvObj closure, unsigned char *bytes, QV_INT maxByteCount, QV_INT *bytesRead )
{
    QV_HEADER_BYTE_SOURCE *hbs = qvHeaderByteSourceFrom( closure );
    if ( !hbs->byteSource )
        return QV_FALSE;
    QV_INT count = takeAhead( hbs, bytes, maxByteCount );
    *bytesRead = count;
    if ( count == maxByteCount )
        return QV_TRUE;
    if ( !qvByteSourceEnd( hbs->byteSource ) )
        *bytesRead += qvByteSourceReadBytes( hbs->byteSource, bytes + count, maxByteCount - count );
    return !qvByteSourceError( hbs->byteSource );
}

QV_BOOL skipBehind( qvObj closure, QV_INT maxByteCount, QV_INT *bytesSkipped )
{
    QV_HEADER_BYTE_SOURCE *hbs = qvHeaderByteSourceFrom( closure );
    if ( !hbs->byteSource )
        return QV_FALSE;
    QV_INT count = takeAhead( hbs, nullptr, maxByteCount );
    *bytesSkipped = count;
    if ( count == maxByteCount )
        return QV_TRUE;
    *bytesSkipped += qvByteSourceSkip( hbs->byteSource, maxByteCount - count );
    return !qvByteSourceError( hbs->byteSource );
}

// Whether more bytes may make a header of those that gave this error. A wrong new line behind the trailing separator gets
// one more try, as the bytes may end inside of it.
bool maybeCutOff( QV_HEADER_DECODE_ERROR_CODE code, bool *triedNewLine )
{
    if ( code == QV_HEADER_DECODE_ERROR_CODE_HEADER_END )
        return true;
    if ( code != QV_HEADER_DECODE_ERROR_CODE_HEADER_END_NLF || *triedNewLine )
        return false;
    *triedNewLine = true;
    return true;
}

QV_HEADER_DECODE_ERROR_CODE errorCode( QV_HEADER_DECODE_RESULT *result )
{
    qv::Local<QV_HEADER_DECODE_ERROR> err( qvHeaderDecodeResultError( result ) );
    return qvHeaderDecodeErrorCode( err );
}

// Reads bytes into ahead and decodes them, more and more while the header may be cut off.
QV_HEADER_DECODE_RESULT *readAhead( QV_BYTE_SOURCE *source, QV_BUFFER **ahead, QV_LOCATION *location )
{
    QV_INT limit = firstAhead;
    bool triedNewLine = false;
    qvByteSourceRead( source, ahead, limit );
    for ( ;; )
    {
        qv::Local<QV_HEADER_DECODE_RESULT> result( qvHeaderDecode( *ahead, location ) );
        if ( qvHeaderDecodeResultIsSuccess( result ) || !maybeCutOff( errorCode( result ), &triedNewLine ) )
            return result.give();
        limit = limit * 2 < mostAhead ? limit * 2 : mostAhead;
        if ( qvByteSourceRead( source, ahead, limit - qv::bufferLength( *ahead ) ) == 0 )
            return result.give();
    }
}

} // namespace

void qv___HeaderByteSinkFreeFunc( qvObj thisObj )
{
    QV_HEADER_BYTE_SINK *hbs = qvHeaderByteSinkFrom( thisObj );
    QV_CHECK( hbs );
    qvByteSinkRelease( hbs->byteSink );
    qv::releaseOptional( hbs->header );
}

QV_HEADER_BYTE_SINK *qvHeaderByteSinkCreate( QV_BYTE_SINK *sink, QV_HEADER *hdr )
{
    QV_CHECK( sink );
    auto *hbs = qv::create<QV_HEADER_BYTE_SINK>( qvHeaderByteSinkSort() );
    hbs->byteSink = qv::retained( sink );
    hbs->header = qv::retainedOptional( hdr );
    if ( hdr )
    {
        qv::Local<QV_BUFFER> bytes( qvHeaderEncode( hdr ) );
        qvByteSinkWrite( sink, bytes );
    }
    return hbs;
}

QV_BYTE_SINK *qvHeaderByteSinkByteSink( QV_HEADER_BYTE_SINK *hbs )
{
    QV_CHECK( hbs );
    return qv___ByteSinkCreate( writeThrough, flushThrough, qv::objOf( hbs ) );
}

QV_HEADER *qvHeaderByteSinkHeader( QV_HEADER_BYTE_SINK *hbs )
{
    QV_CHECK( hbs );
    return qv::retainedOptional( hbs->header );
}

QV_BOOL qvHeaderByteSinkHasHeader( QV_HEADER_BYTE_SINK *hbs )
{
    QV_CHECK( hbs );
    return QV_BOOL_FROM( hbs->header );
}

void qv___HeaderByteSourceFreeFunc( qvObj thisObj )
{
    QV_HEADER_BYTE_SOURCE *hbs = qvHeaderByteSourceFrom( thisObj );
    QV_CHECK( hbs );
    qv::releaseOptional( hbs->byteSource );
    qv::releaseOptional( hbs->ahead );
    qv::releaseOptional( hbs->header );
    qv::releaseOptional( hbs->decodeError );
    qv::releaseOptional( hbs->baseLocation );
}

QV_HEADER_BYTE_SOURCE *qvHeaderByteSourceCreate( QV_BYTE_SOURCE *source, QV_BOOL tolerant,
                                                 QV_LOCATION *location )
{
    QV_CHECK( source );
    qv::Local<QV_BUFFER> ahead( qvBufferCreate() );
    qv::Local<QV_HEADER_DECODE_RESULT> result( readAhead( source, ahead.edit(), location ) );
    auto *hbs = qv::create<QV_HEADER_BYTE_SOURCE>( qvHeaderByteSourceSort() );
    hbs->byteSource = nullptr;
    hbs->ahead = nullptr;
    hbs->aheadOffset = 0;
    hbs->header = qvHeaderDecodeResultHeader( result );
    hbs->decodeError = nullptr;
    hbs->baseLocation = nullptr;
    if ( hbs->header )
    {
        hbs->byteSource = qv::retained( source );
        hbs->ahead = qvHeaderDecodeResultTrailing( result );
        hbs->baseLocation = qvHeaderDecodeResultTrailingBaseLocation( result );
    }
    else if ( tolerant && errorCode( result ) != QV_HEADER_DECODE_ERROR_CODE_HEADER_START )
    {
        hbs->byteSource = qv::retained( source );
        hbs->ahead = ahead.give();
        hbs->baseLocation = qv::retainedOptional( location );
    }
    else
    {
        hbs->decodeError = qvHeaderDecodeResultError( result );
    }
    return hbs;
}

QV_BYTE_SOURCE *qvHeaderByteSourceByteSource( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return qv___ByteSourceCreate( readBehind, skipBehind, qv::objOf( hbs ) );
}

QV_HEADER *qvHeaderByteSourceHeader( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return qv::retainedOptional( hbs->header );
}

QV_BOOL qvHeaderByteSourceHasHeader( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return QV_BOOL_FROM( hbs->header );
}

QV_HEADER_DECODE_ERROR *qvHeaderByteSourceDecodeError( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return qv::retainedOptional( hbs->decodeError );
}

QV_BOOL qvHeaderByteSourceHasDecodeError( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return QV_BOOL_FROM( hbs->decodeError );
}

QV_LOCATION *qvHeaderByteSourceBaseLocation( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return qv::retainedOptional( hbs->baseLocation );
}

QV_BOOL qvHeaderByteSourceHasBaseLocation( QV_HEADER_BYTE_SOURCE *hbs )
{
    QV_CHECK( hbs );
    return QV_BOOL_FROM( hbs->baseLocation );
}
