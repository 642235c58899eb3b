#include <qv/io/qv_string_char_sink.hh>

#include <qv/base/qv_string.h>
#include <qv/io/qv_stream_author.h>

namespace
{

void qv___StringCharSinkFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV_STRING_CHAR_SINK *>( thisObj )->dest ) );
}

QV_BOOL writeFunc( qvObj closure, const QV_CHAR *chars, QV_INT charCount )
{
    qvStringAppendChars( &static_cast<QV_STRING_CHAR_SINK *>( closure )->dest, chars, charCount );
    return QV_TRUE;
}

QV_BOOL flushFunc( qvObj )
{
    return QV_TRUE;
}

} // namespace

QV_SORT_DEFINE( QV_STRING_CHAR_SINK, qvStringCharSink, { .freeFunc = qv___StringCharSinkFreeFunc } )

QV_STRING_CHAR_SINK *qvStringCharSinkCreate( void )
{
    auto *scs = qv::create<QV_STRING_CHAR_SINK>( qvStringCharSinkSort() );
    scs->dest = qvStringCreate();
    return scs;
}

QV_CHAR_SINK *qvStringCharSinkCharSink( QV_STRING_CHAR_SINK *scs )
{
    QV_CHECK( scs );
    return qv___CharSinkCreate( writeFunc, flushFunc, scs );
}

QV_STRING *qvStringCharSinkString( QV_STRING_CHAR_SINK *scs )
{
    QV_CHECK( scs );
    return qv::retained( scs->dest );
}
