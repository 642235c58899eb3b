/* The module word_fold extends word_count: words that differ in case, accents or ligatures count as one. */

#include <qv/qv.h>

#include "word_count.h"

static QV_STRING *withoutMarks( QV_STRING *decomposed )
{
    QV_STRING *text = qvStringCreate();
    QV_INT idx;
    for ( idx = 0; idx < qvStringLength( decomposed ); idx++ )
    {
        if ( !qvUnicodeIsMark( qvStringCharAt( decomposed, idx ) ) )
        {
            qvStringAppendChar( &text, qvStringCharAt( decomposed, idx ) );
        }
    }
    return text;
}

static QV_STRING *fold( QV_STRING *word )
{
    QV_STRING *decomposed = qvStringCreateFrom( word );
    QV_STRING *folded;
    qvStringNormalize( &decomposed, QV_UNICODE_NORMAL_FORM_KD );
    folded = withoutMarks( decomposed );
    qvStringToCaseFold( &folded );
    qvStringNormalize( &folded, QV_UNICODE_NORMAL_FORM_C );
    qvStringRelease( decomposed );
    return folded;
}

static QV_BOOL start( void )
{
    wordCountSetFold( fold );
    return QV_TRUE;
}

static void end( void )
{
    wordCountSetFold( NULL );
}

QV_MODULE_DEFINE( word_fold, start, NULL, end, NULL, NULL )
