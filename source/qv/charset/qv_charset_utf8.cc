#include <qv/charset/qv_charset_utf.hh>

#include <qv/charset/qv_charset_span.hh>
#include <qv/charset/qv_charset_stream.hh>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE, qv___CharsetUtf8CharSourceClosure,
                { .freeFunc = qv___CharsetUtf8CharSourceClosureFreeFunc } )
QV_SORT_DEFINE( QV___CHARSET_UTF8_CHAR_SINK_CLOSURE, qv___CharsetUtf8CharSinkClosure,
                { .freeFunc = qv___CharsetUtf8CharSinkClosureFreeFunc } )

void qv___CharsetUtf8CharSourceClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE *>( thisObj )->byteSource ) );
}

void qv___CharsetUtf8CharSinkClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF8_CHAR_SINK_CLOSURE *>( thisObj )->byteSink ) );
}

namespace
{

QV_BOOL readUtf8( qvObj closure, QV_CHAR *chars, QV_INT charCount, QV_INT *charsRead )
{
    auto *csc = static_cast<QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE *>( closure );
    QV_CHECK( csc );
    QV_CHECK( charCount >= 0 );
    QV_CHECK( *charsRead == 0 );
    qv::Utf8Decoder decoder( csc->flags, csc->state, csc->started );
    const bool ok = qv::readDecoded( csc, &decoder, chars, charCount, charsRead );
    // Only a failing byte source ends a read inside a sequence, whose rest then goes with it.
    const bool torn = decoder.state() == qv::Utf8Decoder::SEQUENCE;
    csc->state = torn ? qv::Utf8Decoder::SKIP : decoder.state();
    csc->started = decoder.started();
    return QV_BOOL_FROM( ok );
}

QV_BOOL writeUtf8( qvObj closure, const QV_CHAR *chars, QV_INT charCount )
{
    auto *csc = static_cast<QV___CHARSET_UTF8_CHAR_SINK_CLOSURE *>( closure );
    const qv::OnInvalid invalid = qv::onInvalid( csc->flags );
    const QV_CHAR *const charsEnd = chars + charCount;
    while ( chars < charsEnd )
    {
        qv::EncodeSpan span{ chars, charsEnd, csc->cache + csc->cacheLen, csc->cache + QV___CHARSET_CACHE };
        const bool ok = qv::utf8Encode( &span, invalid );
        chars = span.chars;
        csc->cacheLen = span.bytes - csc->cache;
        if ( !ok )
            return QV_FALSE;
        // The next character needs more room than the cache has left.
        if ( chars < charsEnd && !qv::drainCache( csc ) )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_BOOL flushUtf8( qvObj closure )
{
    return qv::flushCache( static_cast<QV___CHARSET_UTF8_CHAR_SINK_CLOSURE *>( closure ) );
}

} // namespace

QV_CHAR_SOURCE *qv___CharsetUtf8CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    qv::Local closure( qv::createSourceClosure<QV___CHARSET_UTF8_CHAR_SOURCE_CLOSURE>(
        qv___CharsetUtf8CharSourceClosureSort(), byteSource, flags ) );
    closure->state = qv::Utf8Decoder::START;
    closure->started = QV_FALSE;
    return qv___CharSourceCreate( readUtf8, closure );
}

QV_CHAR_SINK *qv___CharsetUtf8CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    qv::Local closure( qv::createSinkClosure<QV___CHARSET_UTF8_CHAR_SINK_CLOSURE>(
        qv___CharsetUtf8CharSinkClosureSort(), byteSink, flags ) );
    if ( qv::insertsMark( flags ) )
    {
        qv::EncodeSpan span{ &qv::byteOrderMark, &qv::byteOrderMark + 1, closure->cache,
                             closure->cache + QV___CHARSET_CACHE };
        qv::utf8Encode( &span, qv::OnInvalid::replace );
        closure->cacheLen = span.bytes - closure->cache;
    }
    return qv___CharSinkCreate( writeUtf8, flushUtf8, closure );
}
