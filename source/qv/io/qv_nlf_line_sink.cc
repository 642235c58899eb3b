#include <qv/io/qv_nlf_line_sink.hh>

#include <qv/io/qv_char_sink.h>
#include <qv/io/qv_line_sink.h>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/io/qv_stream_author.h>

namespace
{

void qv___NlfLineSinkFreeFunc( qvObj thisObj )
{
    qv::release( qv::objOf( static_cast<QV_NLF_LINE_SINK *>( thisObj )->dest ) );
}

QV_BOOL writeFunc( qvObj closure, QV_STRING *line )
{
    auto *nls = static_cast<QV_NLF_LINE_SINK *>( closure );
    if ( !qvCharSinkWrite( nls->dest, line ) )
        return QV_FALSE;
    // Each character of the new-line is a write of its own.
    qv::NlfChars nlf = qv::nlfCharsOf( nls->nlfFlags );
    for ( QV_INT idx = 0; idx < nlf.length; idx++ )
    {
        if ( !qvCharSinkWriteChars( nls->dest, nlf.chars + idx, 1 ) )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_BOOL flushFunc( qvObj closure )
{
    return qvCharSinkFlush( static_cast<QV_NLF_LINE_SINK *>( closure )->dest );
}

} // namespace

QV_SORT_DEFINE( QV_NLF_LINE_SINK, qvNlfLineSink, { .freeFunc = qv___NlfLineSinkFreeFunc } )

QV_NLF_LINE_SINK *qvNlfLineSinkCreate( QV_CHAR_SINK *dest, QV_NLF_FLAGS nlfFlags )
{
    QV_CHECK( dest );
    auto *nls = qv::create<QV_NLF_LINE_SINK>( qvNlfLineSinkSort() );
    nls->dest = qv::retained( dest );
    nls->nlfFlags = qvNlfFlagsNormalize( nlfFlags );
    return nls;
}

QV_LINE_SINK *qvNlfLineSinkLineSink( QV_NLF_LINE_SINK *nls )
{
    QV_CHECK( nls );
    return qv___LineSinkCreate( writeFunc, flushFunc, nls );
}

QV_NLF_FLAGS qvNlfLineSinkNlfFlags( QV_NLF_LINE_SINK *nls )
{
    QV_CHECK( nls );
    return nls->nlfFlags;
}
