#include <qv/io/qv_string_char_source.hh>

#include <qv/base/qv_string.hh>
#include <qv/io/qv_stream_author.h>

namespace
{

void qv___StringCharSourceFreeFunc( qvObj thisObj )
{
    qv::release( static_cast<QV_STRING_CHAR_SOURCE *>( thisObj )->source );
}

QV_BOOL readFunc( qvObj closure, QV_CHAR *chars, QV_INT maxCharCount, QV_INT *charsRead )
{
    auto *scs = static_cast<QV_STRING_CHAR_SOURCE *>( closure );
    QV_INT left = qv::stringLength( scs->source ) - scs->offset;
    QV_INT count = left < maxCharCount ? left : maxCharCount;
    qv::copyChars( chars, qv::stringBacking( scs->source ) + scs->offset, count );
    scs->offset += count;
    *charsRead = count;
    return QV_TRUE;
}

} // namespace

QV_SORT_DEFINE( QV_STRING_CHAR_SOURCE, qvStringCharSource, { .freeFunc = qv___StringCharSourceFreeFunc } )

QV_STRING_CHAR_SOURCE *qvStringCharSourceCreate( QV_STRING *src )
{
    QV_CHECK( src );
    auto *scs = qv::create<QV_STRING_CHAR_SOURCE>( qvStringCharSourceSort() );
    scs->source = qv::retained( src );
    scs->offset = 0;
    return scs;
}

QV_CHAR_SOURCE *qvStringCharSourceCharSource( QV_STRING_CHAR_SOURCE *scs )
{
    QV_CHECK( scs );
    return qv___CharSourceCreate( readFunc, scs );
}

QV_STRING *qvStringCharSourceString( QV_STRING_CHAR_SOURCE *scs )
{
    QV_CHECK( scs );
    return qv::retained( scs->source );
}
