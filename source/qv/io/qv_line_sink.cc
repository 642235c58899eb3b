#include <qv/io/qv_line_sink.hh>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___LineSinkFreeFunc( qvObj thisObj )
{
    auto *sink = static_cast<QV_LINE_SINK *>( thisObj );
    // What the sink still holds goes on to the closure; nobody is left to learn of a failure.
    qvLineSinkFlush( sink );
    qv::releaseOptional( sink->closure );
}

void checkRange( QV_VECTOR *lines, QV_INT offset, QV_INT count )
{
    QV_CHECK( lines );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= qvVectorLength( lines ) );
}

QV_BOOL writeElements( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT offset, QV_INT count )
{
    QV_CHECK( sink );
    for ( QV_INT idx = offset; idx < offset + count && !sink->error; idx++ )
    {
        qv::Local<QV_STRING> line( qvStringFrom( qvVectorObjAt( lines, idx ) ) );
        qvLineSinkWrite( sink, line );
    }
    return !sink->error;
}

} // namespace

QV_SORT_DEFINE( QV_LINE_SINK, qvLineSink, { .freeFunc = qv___LineSinkFreeFunc } )

QV_LINE_SINK *qv___LineSinkCreate( qv___LineSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                   qvObj closure )
{
    QV_CHECK( writeFunc );
    QV_CHECK( flushFunc );
    auto *sink = qv::create<QV_LINE_SINK>( qvLineSinkSort() );
    sink->writeFunc = writeFunc;
    sink->flushFunc = flushFunc;
    sink->closure = nullptr;
    sink->error = QV_FALSE;
    sink->linesWritten = 0;
    qv::assign( &sink->closure, closure );
    return sink;
}

QV_BOOL qvLineSinkWrite( QV_LINE_SINK *sink, QV_STRING *line )
{
    QV_CHECK( sink );
    QV_CHECK( line );
    if ( sink->error )
        return QV_FALSE;
    if ( !sink->writeFunc( sink->closure, line ) )
    {
        sink->error = QV_TRUE;
        return QV_FALSE;
    }
    if ( sink->linesWritten < QV_INT_MAX )
        sink->linesWritten++;
    return QV_TRUE;
}

QV_BOOL qvLineSinkWriteCstr( QV_LINE_SINK *sink, const char *text, QV_INT length )
{
    qv::Local<QV_STRING> line( qvStringCreateFromCstr( text, length ) );
    return qvLineSinkWrite( sink, line );
}

QV_BOOL qvLineSinkWriteWcstr( QV_LINE_SINK *sink, const wchar_t *text, QV_INT length )
{
    qv::Local<QV_STRING> line( qvStringCreateFromWcstr( text, length ) );
    return qvLineSinkWrite( sink, line );
}

QV_BOOL qvLineSinkWriteFormat( QV_LINE_SINK *sink, QV_STRING *format, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, format );
    qv::Local<QV_STRING> line( qvStringCreateFromFormatArgList( format, &argList ) );
    va_end( argList.args );
    return qvLineSinkWrite( sink, line );
}

QV_BOOL qvLineSinkWriteFormatCstr( QV_LINE_SINK *sink, const char *format, QV_INT length, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, length );
    qv::Local<QV_STRING> line( qvStringCreateFromFormatCstrArgList( format, length, &argList ) );
    va_end( argList.args );
    return qvLineSinkWrite( sink, line );
}

QV_BOOL qvLineSinkWriteFormatWcstr( QV_LINE_SINK *sink, const wchar_t *format, QV_INT length, ... )
{
    QV_ARG_LIST argList;
    va_start( argList.args, length );
    qv::Local<QV_STRING> line( qvStringCreateFromFormatWcstrArgList( format, length, &argList ) );
    va_end( argList.args );
    return qvLineSinkWrite( sink, line );
}

QV_BOOL qvLineSinkWriteLeading( QV_LINE_SINK *sink, QV_STRING *line, QV_INT count )
{
    qv::Local<QV_STRING> part( qvStringCreateFromLeading( line, count ) );
    return qvLineSinkWrite( sink, part );
}

QV_BOOL qvLineSinkWriteTrailing( QV_LINE_SINK *sink, QV_STRING *line, QV_INT count )
{
    qv::Local<QV_STRING> part( qvStringCreateFromTrailing( line, count ) );
    return qvLineSinkWrite( sink, part );
}

QV_BOOL qvLineSinkWriteInner( QV_LINE_SINK *sink, QV_STRING *line, QV_INT offset, QV_INT count )
{
    qv::Local<QV_STRING> part( qvStringCreateFromInner( line, offset, count ) );
    return qvLineSinkWrite( sink, part );
}

QV_BOOL qvLineSinkWriteOuter( QV_LINE_SINK *sink, QV_STRING *line, QV_INT offset, QV_INT count )
{
    qv::Local<QV_STRING> part( qvStringCreateFromOuter( line, offset, count ) );
    return qvLineSinkWrite( sink, part );
}

QV_BOOL qvLineSinkWriteLines( QV_LINE_SINK *sink, QV_VECTOR *lines )
{
    return qvLineSinkWriteLinesInner( sink, lines, 0, qvVectorLength( lines ) );
}

QV_BOOL qvLineSinkWriteLinesLeading( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT count )
{
    return qvLineSinkWriteLinesInner( sink, lines, 0, count );
}

QV_BOOL qvLineSinkWriteLinesTrailing( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT count )
{
    QV_CHECK( count >= 0 );
    return qvLineSinkWriteLinesInner( sink, lines, qvVectorLength( lines ) - count, count );
}

QV_BOOL qvLineSinkWriteLinesInner( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT offset, QV_INT count )
{
    checkRange( lines, offset, count );
    // The sink's function may edit or drop the caller's vector.
    auto held = qv::Local<QV_VECTOR>::share( lines );
    return writeElements( sink, held, offset, count );
}

QV_BOOL qvLineSinkWriteLinesOuter( QV_LINE_SINK *sink, QV_VECTOR *lines, QV_INT offset, QV_INT count )
{
    checkRange( lines, offset, count );
    auto held = qv::Local<QV_VECTOR>::share( lines );
    QV_INT behind = offset + count;
    return writeElements( sink, held, 0, offset ) &&
           writeElements( sink, held, behind, qvVectorLength( held ) - behind );
}

QV_BOOL qvLineSinkFlush( QV_LINE_SINK *sink )
{
    QV_CHECK( sink );
    if ( !sink->error && !sink->flushFunc( sink->closure ) )
        sink->error = QV_TRUE;
    return !sink->error;
}

QV_BOOL qvLineSinkError( QV_LINE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->error;
}

QV_INT qvLineSinkLinesWritten( QV_LINE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->linesWritten;
}
