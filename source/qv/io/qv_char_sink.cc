#include <qv/io/qv_char_sink.hh>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___CharSinkFreeFunc( qvObj thisObj )
{
    auto *sink = static_cast<QV_CHAR_SINK *>( thisObj );
    // What the sink still holds goes on to the closure; nobody is left to learn of a failure.
    qvCharSinkFlush( sink );
    qv::releaseOptional( sink->closure );
}

QV_INT lengthOf( QV_STRING *string )
{
    return string ? qv::stringLength( string ) : 0;
}

// The latch goes before everything else, an empty write before the call.
QV_BOOL writeChecked( QV_CHAR_SINK *sink, const QV_CHAR *chars, QV_INT charCount )
{
    QV_CHECK( sink );
    if ( sink->error )
        return QV_FALSE;
    if ( charCount > 0 && !sink->writeFunc( sink->closure, chars, charCount ) )
    {
        sink->error = QV_TRUE;
        return QV_FALSE;
    }
    return QV_TRUE;
}

void checkRange( QV_STRING *string, QV_INT charOffset, QV_INT charCount )
{
    QV_CHECK( charOffset >= 0 );
    QV_CHECK( string || charOffset == 0 );
    QV_CHECK( charCount >= 0 );
    QV_CHECK( string || charCount == 0 );
    QV_CHECK( QV_INT_ADD_OK( charOffset, charCount ) );
    QV_CHECK( charOffset + charCount == 0 || charOffset + charCount <= lengthOf( string ) );
}

// A checked range; the address of an empty one is of no use to anybody.
QV_BOOL writeRange( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charOffset, QV_INT charCount )
{
    return writeChecked( sink, charCount > 0 ? qv::stringBacking( string ) + charOffset : nullptr,
                         charCount );
}

} // namespace

QV_SORT_DEFINE( QV_CHAR_SINK, qvCharSink, { .freeFunc = qv___CharSinkFreeFunc } )

QV_CHAR_SINK *qv___CharSinkCreate( qv___CharSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                   qvObj closure )
{
    QV_CHECK( writeFunc );
    QV_CHECK( flushFunc );
    auto *sink = qv::create<QV_CHAR_SINK>( qvCharSinkSort() );
    sink->writeFunc = writeFunc;
    sink->flushFunc = flushFunc;
    sink->closure = nullptr;
    sink->error = QV_FALSE;
    qv::assign( &sink->closure, closure );
    return sink;
}

QV_BOOL qvCharSinkWrite( QV_CHAR_SINK *sink, QV_STRING *string )
{
    return writeRange( sink, string, 0, lengthOf( string ) );
}

QV_BOOL qvCharSinkWriteLeading( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charCount )
{
    return qvCharSinkWriteInner( sink, string, 0, charCount );
}

QV_BOOL qvCharSinkWriteTrailing( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charCount )
{
    QV_CHECK( charCount >= 0 );
    return qvCharSinkWriteInner( sink, string, lengthOf( string ) - charCount, charCount );
}

QV_BOOL qvCharSinkWriteInner( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charOffset, QV_INT charCount )
{
    checkRange( string, charOffset, charCount );
    return writeRange( sink, string, charOffset, charCount );
}

QV_BOOL qvCharSinkWriteOuter( QV_CHAR_SINK *sink, QV_STRING *string, QV_INT charOffset, QV_INT charCount )
{
    checkRange( string, charOffset, charCount );
    QV_INT behind = charOffset + charCount;
    return writeRange( sink, string, 0, charOffset ) &&
           writeRange( sink, string, behind, lengthOf( string ) - behind );
}

QV_BOOL qvCharSinkWriteChars( QV_CHAR_SINK *sink, const QV_CHAR *chars, QV_INT charCount )
{
    QV_CHECK( charCount >= 0 );
    QV_CHECK( chars || charCount == 0 );
    return writeChecked( sink, chars, charCount );
}

QV_BOOL qvCharSinkWriteChar( QV_CHAR_SINK *sink, QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return writeChecked( sink, &ch, 1 );
}

QV_BOOL qvCharSinkWriteCstr( QV_CHAR_SINK *sink, const char *text, QV_INT length )
{
    qv::DecodedChars decoded( text, length );
    return writeChecked( sink, decoded.chars(), decoded.length() );
}

QV_BOOL qvCharSinkWriteWcstr( QV_CHAR_SINK *sink, const wchar_t *text, QV_INT length )
{
    qv::DecodedChars decoded( text, length );
    return writeChecked( sink, decoded.chars(), decoded.length() );
}

QV_BOOL qvCharSinkWriteFormat( QV_CHAR_SINK *sink, QV_STRING *format, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, format );
    qv::Local<QV_STRING> string( qvStringCreateFromFormatArgList( format, &argList ) );
    va_end( argList.args );
    return qvCharSinkWrite( sink, string );
}

QV_BOOL qvCharSinkWriteFormatCstr( QV_CHAR_SINK *sink, const char *format, QV_INT length, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, length );
    qv::Local<QV_STRING> string( qvStringCreateFromFormatCstrArgList( format, length, &argList ) );
    va_end( argList.args );
    return qvCharSinkWrite( sink, string );
}

QV_BOOL qvCharSinkWriteFormatWcstr( QV_CHAR_SINK *sink, const wchar_t *format, QV_INT length, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, length );
    qv::Local<QV_STRING> string( qvStringCreateFromFormatWcstrArgList( format, length, &argList ) );
    va_end( argList.args );
    return qvCharSinkWrite( sink, string );
}

QV_BOOL qvCharSinkFlush( QV_CHAR_SINK *sink )
{
    QV_CHECK( sink );
    if ( !sink->error && !sink->flushFunc( sink->closure ) )
        sink->error = QV_TRUE;
    return !sink->error;
}

QV_BOOL qvCharSinkError( QV_CHAR_SINK *sink )
{
    QV_CHECK( sink );
    return sink->error;
}
