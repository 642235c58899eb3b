#include <qv/io/qv_nlf_line_source.hh>

#include <qv/base/qv_string.hh>
#include <qv/io/qv_char_source.h>
#include <qv/io/qv_line_source.h>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/io/qv_stream_author.h>
#include <qv/io/qv_string_char_source.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>

namespace
{

constexpr QV_CHAR carriageReturn = 0x0D;

void qv___NlfLineSourceFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV_NLF_LINE_SOURCE *>( thisObj )->source ) );
}

// Fills the buffer behind its first kept code points.
void fill( QV_NLF_LINE_SOURCE *nls, QV_INT kept )
{
    QV_INT count =
        qvCharSourceReadChars( nls->source, nls->buffer + kept, QV___NLF_LINE_SOURCE_BUFFER - kept );
    // Lines are cut from checked text.
    QV_CHECK( qvCharsAllOk( nls->buffer + kept, count ) );
    nls->bufferLength = kept + count;
    nls->bufferOffset = 0;
    nls->sourceEnded = QV_BOOL_FROM( nls->bufferLength < QV___NLF_LINE_SOURCE_BUFFER );
}

// A CR at the end of the buffer says nothing yet while a LF may follow it.
bool endsInOpenPair( QV_NLF_LINE_SOURCE *nls )
{
    return ( nls->nlfFlags & QV_NLF_FLAG_CRLF ) && !nls->sourceEnded &&
           nls->buffer[nls->bufferLength - 1] == carriageReturn;
}

// Sees to it that the buffer holds something to scan; false at the end of the source.
bool provide( QV_NLF_LINE_SOURCE *nls )
{
    while ( nls->bufferOffset == nls->bufferLength )
    {
        if ( nls->sourceEnded )
            return false;
        fill( nls, 0 );
    }
    if ( nls->bufferLength - nls->bufferOffset == 1 && endsInOpenPair( nls ) )
    {
        nls->buffer[0] = carriageReturn;
        fill( nls, 1 );
    }
    return true;
}

void appendToLine( QV_STRING **line, const QV_CHAR *chars, QV_INT count )
{
    if ( *line )
    {
        qv::stringAppendChars( line, chars, count );
        return;
    }
    *line = count > 0 ? qv::stringCreateUnfilled( count ) : qvStringCreate();
    qv::copyChars( qv::stringBacking( *line ), chars, count );
}

// Moves on to behind the next new-line, or to the end of what can be scanned; true if a new-line ended the
// line.
bool scan( QV_NLF_LINE_SOURCE *nls, QV_STRING **line )
{
    const QV_CHAR *chars = nls->buffer + nls->bufferOffset;
    QV_INT length = nls->bufferLength - nls->bufferOffset - ( endsInOpenPair( nls ) ? 1 : 0 );
    QV_INT textLength = qv___NlfFlagsSkipCharsNonNlf( chars, length, nls->nlfFlags );
    QV_INT nlfLength =
        qv___NlfFlagsSkipCharsNlf( chars + textLength, length - textLength, nls->nlfFlags, nullptr );
    if ( textLength > 0 || nlfLength > 0 )
        appendToLine( line, chars, textLength );
    nls->bufferOffset += textLength + nlfLength;
    return nlfLength > 0;
}

QV_BOOL readFunc( qvObj closure, QV_STRING **line )
{
    auto nls = qv::Local<QV_NLF_LINE_SOURCE>::share( static_cast<QV_NLF_LINE_SOURCE *>( closure ) );
    while ( provide( nls ) )
    {
        if ( scan( nls, line ) )
            return QV_TRUE;
    }
    return !qvCharSourceError( nls->source );
}

} // namespace

QV_SORT_DEFINE( QV_NLF_LINE_SOURCE, qvNlfLineSource, { .freeFunc = qv___NlfLineSourceFreeFunc } )

QV_NLF_LINE_SOURCE *qvNlfLineSourceCreate( QV_CHAR_SOURCE *src, QV_NLF_FLAGS nlfFlags )
{
    QV_CHECK( src );
    auto *nls = qv::create<QV_NLF_LINE_SOURCE>( qvNlfLineSourceSort() );
    nls->source = qv::retained( src );
    nls->nlfFlags = qvNlfFlagsNormalize( nlfFlags );
    nls->bufferLength = 0;
    nls->bufferOffset = 0;
    nls->sourceEnded = QV_FALSE;
    return nls;
}

QV_NLF_LINE_SOURCE *qvNlfLineSourceCreateFromString( QV_STRING *string, QV_NLF_FLAGS nlfFlags )
{
    qv::Local<QV_STRING_CHAR_SOURCE> scs( qvStringCharSourceCreate( string ) );
    qv::Local<QV_CHAR_SOURCE> src( qvStringCharSourceCharSource( scs ) );
    return qvNlfLineSourceCreate( src, nlfFlags );
}

QV_LINE_SOURCE *qvNlfLineSourceLineSource( QV_NLF_LINE_SOURCE *nls )
{
    QV_CHECK( nls );
    return qv___LineSourceCreate( readFunc, nls );
}

QV_NLF_FLAGS qvNlfLineSourceNlfFlags( QV_NLF_LINE_SOURCE *nls )
{
    QV_CHECK( nls );
    return nls->nlfFlags;
}
