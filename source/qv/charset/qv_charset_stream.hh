#ifndef QV_CHARSET_QV_CHARSET_STREAM_HH
#define QV_CHARSET_QV_CHARSET_STREAM_HH

// What the closures of all charset streams have in common: a byte stream and a cache in front of it.

#include <qv/charset/qv_charset_span.hh>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_byte_source.h>
#include <qv/runtime/qv_obj.hh>

#include <algorithm>

#define QV___CHARSET_CACHE 1024

namespace qv
{

// Reads the next piece of the byte source, all of the cache being used up. False if nothing came.
template <typename Closure> inline bool refillCache( Closure *csc )
{
    csc->cachePos = 0;
    csc->cacheLen = qvByteSourceReadBytes( csc->byteSource, csc->cache, QV___CHARSET_CACHE );
    return csc->cacheLen > 0;
}

// Writes the cache out; false if the byte sink fails.
template <typename Closure> inline bool drainCache( Closure *csc )
{
    const QV_INT length = csc->cacheLen;
    csc->cacheLen = 0;
    return length == 0 || qvByteSinkWriteBytes( csc->byteSink, csc->cache, length );
}

// The end of every flush: the cache and then the byte sink itself, so that true means that the bytes have
// arrived.
template <typename Closure> inline QV_BOOL flushCache( Closure *csc )
{
    return QV_BOOL_FROM( drainCache( csc ) && qvByteSinkFlush( csc->byteSink ) );
}

// A new closure over a byte source, before its first read.
template <typename Closure>
inline Closure *createSourceClosure( QV_SORT *sort, QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    QV_CHECK( byteSource );
    Closure *csc = create<Closure>( sort );
    csc->byteSource = retained( byteSource );
    csc->flags = flags;
    csc->cacheLen = 0;
    csc->cachePos = 0;
    return csc;
}

// A new closure over a byte sink, before its first write.
template <typename Closure>
inline Closure *createSinkClosure( QV_SORT *sort, QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    QV_CHECK( byteSink );
    Closure *csc = create<Closure>( sort );
    csc->byteSink = retained( byteSink );
    csc->flags = flags;
    csc->cacheLen = 0;
    return csc;
}

// The cached bytes and the caller's room, as far as a cache can fill it: the room may be without a limit.
template <typename Closure>
inline DecodeSpan cachedSpan( const Closure *csc, QV_CHAR *chars, QV_INT charCount )
{
    const QV_INT room = std::min<QV_INT>( charCount, QV___CHARSET_CACHE + 1 );
    return { csc->cache + csc->cachePos, csc->cache + csc->cacheLen, chars, chars + room };
}

// The read function of every charset source, around its decoder.
template <typename Closure, typename Decoder>
inline bool readDecoded( Closure *csc, Decoder *decoder, QV_CHAR *chars, QV_INT charCount, QV_INT *charsRead )
{
    while ( *charsRead < charCount )
    {
        const bool ended = csc->cachePos == csc->cacheLen && !refillCache( csc );
        if ( ended && qvByteSourceError( csc->byteSource ) )
            return false;
        DecodeSpan span = cachedSpan( csc, chars + *charsRead, charCount - *charsRead );
        bool ok = decoder->decode( &span );
        // A decoder leaves bytes although it has room only where the input ends inside a unit.
        const bool last = ended || ( ok && span.bytes < span.bytesEnd && span.chars < span.charsEnd );
        if ( last )
            ok = decoder->finish( &span );
        csc->cachePos = span.bytes - csc->cache;
        *charsRead = span.chars - chars;
        if ( last || !ok )
            return ok;
    }
    return true;
}

// What every charset sink does about a byte order mark: it is the first content of the cache.
inline constexpr bool insertsMark( QV_CHARSET_FLAGS flags )
{
    return ( flags & QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK ) != 0;
}

} // namespace qv

#endif
