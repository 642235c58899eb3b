// UTF-16 and UTF-32: the same streams over units of two and four bytes.

#include <qv/charset/qv_charset_utf.hh>

#include <qv/charset/qv_charset_span.hh>
#include <qv/charset/qv_charset_stream.hh>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE, qv___CharsetUtf16CharSourceClosure,
                { .freeFunc = qv___CharsetUtf16CharSourceClosureFreeFunc } )
QV_SORT_DEFINE( QV___CHARSET_UTF16_CHAR_SINK_CLOSURE, qv___CharsetUtf16CharSinkClosure,
                { .freeFunc = qv___CharsetUtf16CharSinkClosureFreeFunc } )
QV_SORT_DEFINE( QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE, qv___CharsetUtf32CharSourceClosure,
                { .freeFunc = qv___CharsetUtf32CharSourceClosureFreeFunc } )
QV_SORT_DEFINE( QV___CHARSET_UTF32_CHAR_SINK_CLOSURE, qv___CharsetUtf32CharSinkClosure,
                { .freeFunc = qv___CharsetUtf32CharSinkClosureFreeFunc } )

void qv___CharsetUtf16CharSourceClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE *>( thisObj )->byteSource ) );
}

void qv___CharsetUtf16CharSinkClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF16_CHAR_SINK_CLOSURE *>( thisObj )->byteSink ) );
}

void qv___CharsetUtf32CharSourceClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE *>( thisObj )->byteSource ) );
}

void qv___CharsetUtf32CharSinkClosureFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV___CHARSET_UTF32_CHAR_SINK_CLOSURE *>( thisObj )->byteSink ) );
}

namespace
{

// What differs between the widths. A sink fills its cache up to cacheEnd while there is room for four more
// bytes.
struct Utf16
{
    using Unit = uint16_t;
    using Source = QV___CHARSET_UTF16_CHAR_SOURCE_CLOSURE;
    using Sink = QV___CHARSET_UTF16_CHAR_SINK_CLOSURE;
    static constexpr QV_INT cacheEnd = QV___CHARSET_CACHE - 1;

    static QV_SORT *sourceSort()
    {
        return qv___CharsetUtf16CharSourceClosureSort();
    }

    static QV_SORT *sinkSort()
    {
        return qv___CharsetUtf16CharSinkClosureSort();
    }
};

struct Utf32
{
    using Unit = uint32_t;
    using Source = QV___CHARSET_UTF32_CHAR_SOURCE_CLOSURE;
    using Sink = QV___CHARSET_UTF32_CHAR_SINK_CLOSURE;
    static constexpr QV_INT cacheEnd = QV___CHARSET_CACHE;

    static QV_SORT *sourceSort()
    {
        return qv___CharsetUtf32CharSourceClosureSort();
    }

    static QV_SORT *sinkSort()
    {
        return qv___CharsetUtf32CharSinkClosureSort();
    }
};

enum class Order
{
    byMark,
    big,
    little
};

template <typename Form>
QV_BOOL readUnits( qvObj closure, QV_CHAR *chars, QV_INT charCount, QV_INT *charsRead )
{
    auto *csc = static_cast<typename Form::Source *>( closure );
    QV_CHECK( csc );
    QV_CHECK( charCount >= 0 );
    qv::UnitDecoder<typename Form::Unit> decoder( csc->flags, csc->littleEndian, csc->bomDone );
    const bool ok = qv::readDecoded( csc, &decoder, chars, charCount, charsRead );
    csc->littleEndian = decoder.littleEndian();
    csc->bomDone = decoder.markDone();
    return QV_BOOL_FROM( ok );
}

// Encodes through the cache; false if the byte sink fails.
template <typename Form> bool writeCached( typename Form::Sink *csc, const QV_CHAR *chars, QV_INT charCount )
{
    qv::EncodeSpan span{ chars, chars + charCount, nullptr, csc->cache + Form::cacheEnd };
    while ( span.chars < span.charsEnd )
    {
        span.bytes = csc->cache + csc->cacheLen;
        qv::unitEncode<typename Form::Unit>( &span, csc->littleEndian );
        csc->cacheLen = span.bytes - csc->cache;
        if ( span.bytesEnd - span.bytes < 4 && !qv::drainCache( csc ) )
            return false;
    }
    return true;
}

template <typename Form> QV_BOOL writeUnits( qvObj closure, const QV_CHAR *chars, QV_INT charCount )
{
    return QV_BOOL_FROM(
        writeCached<Form>( static_cast<typename Form::Sink *>( closure ), chars, charCount ) );
}

template <typename Form> QV_BOOL flushUnits( qvObj closure )
{
    return qv::flushCache( static_cast<typename Form::Sink *>( closure ) );
}

template <typename Form>
QV_CHAR_SOURCE *createSource( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags, Order order )
{
    if ( order != Order::byMark )
        flags |= QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK;
    qv::Local closure(
        qv::createSourceClosure<typename Form::Source>( Form::sourceSort(), byteSource, flags ) );
    closure->littleEndian = QV_BOOL_FROM( order != Order::big );
    closure->bomDone = QV_FALSE;
    return qv___CharSourceCreate( readUnits<Form>, closure );
}

template <typename Form>
QV_CHAR_SINK *createSink( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags, Order order )
{
    qv::Local closure( qv::createSinkClosure<typename Form::Sink>( Form::sinkSort(), byteSink, flags ) );
    closure->littleEndian = QV_BOOL_FROM( order != Order::big );
    if ( qv::insertsMark( flags ) )
        writeCached<Form>( closure, &qv::byteOrderMark, 1 );
    return qv___CharSinkCreate( writeUnits<Form>, flushUnits<Form>, closure );
}

} // namespace

QV_CHAR_SOURCE *qv___CharsetUtf16CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf16>( byteSource, flags, Order::byMark );
}

QV_CHAR_SOURCE *qv___CharsetUtf16BECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf16>( byteSource, flags, Order::big );
}

QV_CHAR_SOURCE *qv___CharsetUtf16LECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf16>( byteSource, flags, Order::little );
}

QV_CHAR_SINK *qv___CharsetUtf16CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf16>( byteSink, flags, Order::byMark );
}

QV_CHAR_SINK *qv___CharsetUtf16BECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf16>( byteSink, flags, Order::big );
}

QV_CHAR_SINK *qv___CharsetUtf16LECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf16>( byteSink, flags, Order::little );
}

QV_CHAR_SOURCE *qv___CharsetUtf32CharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf32>( byteSource, flags, Order::byMark );
}

QV_CHAR_SOURCE *qv___CharsetUtf32BECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf32>( byteSource, flags, Order::big );
}

QV_CHAR_SOURCE *qv___CharsetUtf32LECharSourceCreate( QV_BYTE_SOURCE *byteSource, QV_CHARSET_FLAGS flags )
{
    return createSource<Utf32>( byteSource, flags, Order::little );
}

QV_CHAR_SINK *qv___CharsetUtf32CharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf32>( byteSink, flags, Order::byMark );
}

QV_CHAR_SINK *qv___CharsetUtf32BECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf32>( byteSink, flags, Order::big );
}

QV_CHAR_SINK *qv___CharsetUtf32LECharSinkCreate( QV_BYTE_SINK *byteSink, QV_CHARSET_FLAGS flags )
{
    return createSink<Utf32>( byteSink, flags, Order::little );
}
