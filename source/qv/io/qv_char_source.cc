#include <qv/io/qv_char_source.hh>

#include <qv/base/qv_string.h>

namespace
{

// Code points that a chunked read asks for at a time.
constexpr QV_INT chunk = 1024;

void qv___CharSourceFreeFunc( qvObj thisObj )
{
    auto *src = static_cast<QV_CHAR_SOURCE *>( thisObj );
    qv::releaseOptional( src->closure );
}

QV_INT maximumOf( QV_INT maxCharCount )
{
    QV_CHECK( maxCharCount >= -1 );
    return maxCharCount == -1 ? QV_INT_MAX : maxCharCount;
}

// One call of the read function, its result taken into the flags.
QV_INT readOnce( QV_CHAR_SOURCE *src, QV_CHAR *chars, QV_INT maximum )
{
    QV_INT charsRead = 0;
    QV_BOOL result = src->readFunc( src->closure, chars, maximum, &charsRead );
    QV_CHECK( charsRead >= 0 );
    QV_CHECK( charsRead <= maximum );
    if ( charsRead < maximum || !result )
        src->end = QV_TRUE;
    if ( !result )
        src->error = QV_TRUE;
    return charsRead;
}

} // namespace

QV_SORT_DEFINE( QV_CHAR_SOURCE, qvCharSource, { .freeFunc = qv___CharSourceFreeFunc } )

QV_CHAR_SOURCE *qv___CharSourceCreate( qv___CharSourceReadFunc readFunc, qvObj closure )
{
    QV_CHECK( readFunc );
    auto *src = qv::create<QV_CHAR_SOURCE>( qvCharSourceSort() );
    src->readFunc = readFunc;
    src->closure = nullptr;
    src->end = QV_FALSE;
    src->error = QV_FALSE;
    qv::assign( &src->closure, closure );
    return src;
}

QV_INT qvCharSourceRead( QV_CHAR_SOURCE *src, QV_STRING **dest, QV_INT maxCharCount )
{
    QV_CHECK( src );
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_INT remaining = maximumOf( maxCharCount );
    QV_CHAR chars[chunk];
    QV_INT total = 0;
    while ( remaining > 0 && !src->end )
    {
        QV_INT count = readOnce( src, chars, remaining < chunk ? remaining : chunk );
        qvStringAppendChars( dest, chars, count );
        total += count;
        remaining -= count;
    }
    return total;
}

QV_INT qvCharSourceReadChars( QV_CHAR_SOURCE *src, QV_CHAR *chars, QV_INT maxCharCount )
{
    QV_CHECK( src );
    QV_INT maximum = maximumOf( maxCharCount );
    QV_CHECK( chars || maximum == 0 );
    return readOnce( src, chars, maximum );
}

QV_BOOL qvCharSourceEnd( QV_CHAR_SOURCE *src )
{
    QV_CHECK( src );
    return src->end;
}

QV_BOOL qvCharSourceError( QV_CHAR_SOURCE *src )
{
    QV_CHECK( src );
    return src->error;
}
