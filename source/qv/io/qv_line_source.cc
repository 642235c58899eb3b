#include <qv/io/qv_line_source.hh>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___LineSourceFreeFunc( qvObj thisObj )
{
    auto *src = static_cast<QV_LINE_SOURCE *>( thisObj );
    qv::releaseOptional( src->closure );
}

} // namespace

QV_SORT_DEFINE( QV_LINE_SOURCE, qvLineSource, { .freeFunc = qv___LineSourceFreeFunc } )

QV_LINE_SOURCE *qv___LineSourceCreate( qv___LineSourceReadFunc readFunc, qvObj closure )
{
    QV_CHECK( readFunc );
    auto *src = qv::create<QV_LINE_SOURCE>( qvLineSourceSort() );
    src->readFunc = readFunc;
    src->closure = nullptr;
    src->end = QV_FALSE;
    src->error = QV_FALSE;
    src->linesRead = 0;
    qv::assign( &src->closure, closure );
    return src;
}

QV_STRING *qvLineSourceRead( QV_LINE_SOURCE *src )
{
    QV_CHECK( src );
    if ( src->end )
        return nullptr;
    QV_STRING *line = nullptr;
    QV_BOOL result = src->readFunc( src->closure, &line );
    if ( !line )
        src->end = QV_TRUE;
    else if ( src->linesRead < QV_INT_MAX )
        src->linesRead++;
    if ( !result )
    {
        src->end = QV_TRUE;
        src->error = QV_TRUE;
    }
    return line;
}

QV_VECTOR *qvLineSourceReadLines( QV_LINE_SOURCE *src, QV_INT maxLineCount )
{
    QV_CHECK( src );
    QV_CHECK( maxLineCount >= -1 );
    qv::Local<QV_VECTOR> lines( qvVectorCreate() );
    QV_INT maximum = maxLineCount == -1 ? QV_INT_MAX : maxLineCount;
    for ( QV_INT count = 0; count < maximum; count++ )
    {
        qv::Local<QV_STRING> line( qvLineSourceRead( src ) );
        if ( !line )
            break;
        qvVectorAppendObj( lines.edit(), qvStringObj( line ) );
    }
    return lines.give();
}

QV_BOOL qvLineSourceEnd( QV_LINE_SOURCE *src )
{
    QV_CHECK( src );
    return src->end;
}

QV_BOOL qvLineSourceError( QV_LINE_SOURCE *src )
{
    QV_CHECK( src );
    return src->error;
}

QV_INT qvLineSourceLinesRead( QV_LINE_SOURCE *src )
{
    QV_CHECK( src );
    return src->linesRead;
}
