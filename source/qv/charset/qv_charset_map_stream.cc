#include <qv/charset/qv_charset_map.hh>

#include <qv/charset/qv_charset_stream.hh>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE, qv___CharsetMapCharSourceClosure,
                { .freeFunc = qv___CharsetMapCharSourceClosureFreeFunc } )
QV_SORT_DEFINE( QV___CHARSET_MAP_CHAR_SINK_CLOSURE, qv___CharsetMapCharSinkClosure,
                { .freeFunc = qv___CharsetMapCharSinkClosureFreeFunc } )

void qv___CharsetMapCharSourceClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE *>( thisObj )->byteSource ) );
}

void qv___CharsetMapCharSinkClosureFreeFunc( qvObj thisObj )
{
    auto *csc = static_cast<QV___CHARSET_MAP_CHAR_SINK_CLOSURE *>( thisObj );
    qv::release( qv::objOf( csc->byteSink ) );
    qv::release( qv::objOf( csc->norm ) );
}

namespace
{

// The decoder of a byte charset; a function that isn't one of the library's is asked byte by byte.
class MapDecoder
{
  public:
    MapDecoder( qv___CharsetMapByteToCharFunc mapFunc, QV_CHARSET_FLAGS flags )
        : map_( qv::byteMapOf( mapFunc ) ), mapFunc_( mapFunc ), invalid_( qv::onInvalid( flags ) )
    {
    }

    bool decode( qv::DecodeSpan *span )
    {
        return map_ ? qv::mapDecode( *map_, invalid_, span ) : decodeByFunction( span );
    }

    bool finish( qv::DecodeSpan * )
    {
        return true;
    }

  private:
    bool decodeByFunction( qv::DecodeSpan *span )
    {
        while ( span->bytes < span->bytesEnd && span->chars < span->charsEnd )
        {
            if ( mapFunc_( *span->bytes++, span->chars ) )
            {
                span->chars++;
                continue;
            }
            if ( invalid_ == qv::OnInvalid::abort )
                return false;
            if ( invalid_ == qv::OnInvalid::replace )
                *span->chars++ = qv::replacementChar;
        }
        return true;
    }

    const qv::ByteMap *map_;
    qv___CharsetMapByteToCharFunc mapFunc_;
    qv::OnInvalid invalid_;
};

QV_BOOL readMapped( qvObj closure, QV_CHAR *chars, QV_INT charCount, QV_INT *charsRead )
{
    auto *csc = static_cast<QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE *>( closure );
    MapDecoder decoder( csc->mapFunc, csc->flags );
    return QV_BOOL_FROM( qv::readDecoded( csc, &decoder, chars, charCount, charsRead ) );
}

// The closure's cache as an encoder sees it.
struct CacheTarget : qv::ByteTarget
{
    QV___CHARSET_MAP_CHAR_SINK_CLOSURE *csc;

    explicit CacheTarget( QV___CHARSET_MAP_CHAR_SINK_CLOSURE *closure )
        : ByteTarget{ closure->cache + closure->cacheLen, closure->cache + QV___CHARSET_CACHE, writeCache },
          csc( closure )
    {
    }

    // Takes the encoder's bytes over into the closure.
    void keep()
    {
        csc->cacheLen = next - csc->cache;
    }

    static bool writeCache( ByteTarget *target )
    {
        auto *full = static_cast<CacheTarget *>( target );
        full->keep();
        full->next = full->csc->cache;
        return qv::drainCache( full->csc );
    }
};

QV_BOOL writeMapped( qvObj closure, const QV_CHAR *chars, QV_INT charCount )
{
    auto *csc = static_cast<QV___CHARSET_MAP_CHAR_SINK_CLOSURE *>( closure );
    CacheTarget target( csc );
    qv::MapEncoder encoder( csc->mapFunc, csc->flags, csc->norm );
    const bool ok = encoder.write( chars, charCount, &target );
    target.keep();
    return QV_BOOL_FROM( ok );
}

QV_BOOL flushMapped( qvObj closure )
{
    auto *csc = static_cast<QV___CHARSET_MAP_CHAR_SINK_CLOSURE *>( closure );
    CacheTarget target( csc );
    qv::MapEncoder encoder( csc->mapFunc, csc->flags, csc->norm );
    const bool ok = encoder.flush( &target );
    target.keep();
    // What could be encoded goes out even if the text ends in something that couldn't.
    const QV_BOOL out = qv::flushCache( csc );
    return QV_BOOL_FROM( ok && out );
}

} // namespace

QV_CHAR_SOURCE *qv___CharsetMapCharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags,
                                                 qv___CharsetMapByteToCharFunc mapFunc )
{
    QV_CHECK( mapFunc );
    qv::Local closure( qv::createSourceClosure<QV___CHARSET_MAP_CHAR_SOURCE_CLOSURE>(
        qv___CharsetMapCharSourceClosureSort(), byteSource, flags ) );
    closure->mapFunc = mapFunc;
    return qv___CharSourceCreate( readMapped, closure );
}

QV_CHAR_SINK *qv___CharsetMapCharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags,
                                             qv___CharsetMapCharToByteFunc mapFunc )
{
    QV_CHECK( mapFunc );
    qv::Local closure( qv::createSinkClosure<QV___CHARSET_MAP_CHAR_SINK_CLOSURE>(
        qv___CharsetMapCharSinkClosureSort(), byteSink, flags ) );
    closure->mapFunc = mapFunc;
    closure->norm = qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C );
    return qv___CharSinkCreate( writeMapped, flushMapped, closure );
}
