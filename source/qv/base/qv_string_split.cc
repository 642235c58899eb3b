// Splitting text into vectors of strings.

#include <qv/base/qv_string.hh>

#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/unicode/qv_unicode_lookups.h>

using OwnedVector = qv::Local<QV_VECTOR>;

static void appendPart( OwnedVector *parts, QV_STRING *qvs, QV_INT begin, QV_INT end )
{
    qv::vectorAppendGiven( parts->edit(), qv::objOf( qvStringCreateFromInner( qvs, begin, end - begin ) ) );
}

static QV_INT checkedLimit( QV_INT maxParts )
{
    QV_CHECK( maxParts >= 1 || maxParts == -1 );
    return maxParts == -1 ? QV_INT_MAX : maxParts;
}

static QV_VECTOR *splitAt( QV_STRING *qvs, const QV_CHAR *sep, QV_INT sepLength, QV_INT maxParts )
{
    QV_INT allowed = checkedLimit( maxParts );
    OwnedVector parts( qvVectorCreate() );
    const QV_CHAR *chars = qv::stringBacking( qvs );
    QV_INT begin = 0;
    for ( ; begin < qvs->length && allowed >= 2; allowed-- )
    {
        QV_INT hit = qv::findChars( chars + begin, qvs->length - begin, sep, sepLength );
        if ( hit < 0 )
            break;
        appendPart( &parts, qvs, begin, begin + hit );
        begin += hit + sepLength;
    }
    appendPart( &parts, qvs, begin, qvs->length );
    return parts.give();
}

QV_VECTOR *qvStringSplit( QV_STRING *qvs, QV_STRING *sep, QV_INT maxParts )
{
    QV_CHECK( qvs );
    QV_CHECK( sep );
    QV_CHECK( sep->length > 0 );
    return splitAt( qvs, qv::stringBacking( sep ), sep->length, maxParts );
}

QV_VECTOR *qvStringSplitCstr( QV_STRING *qvs, const char *sep, QV_INT sepLength, QV_INT maxParts )
{
    qv::Local<QV_STRING> sepText( qvStringCreateFromCstr( sep, sepLength ) );
    return qvStringSplit( qvs, sepText, maxParts );
}

QV_VECTOR *qvStringSplitWcstr( QV_STRING *qvs, const wchar_t *sep, QV_INT sepLength, QV_INT maxParts )
{
    qv::Local<QV_STRING> sepText( qvStringCreateFromWcstr( sep, sepLength ) );
    return qvStringSplit( qvs, sepText, maxParts );
}

QV_VECTOR *qvStringSplitChars( QV_STRING *qvs, const QV_CHAR *sep, QV_INT sepLength, QV_INT maxParts )
{
    qv::Local<QV_STRING> sepText( qvStringCreateFromCharsCopy( sep, sepLength ) );
    return qvStringSplit( qvs, sepText, maxParts );
}

QV_VECTOR *qvStringSplitChar( QV_STRING *qvs, QV_CHAR sep, QV_INT maxParts )
{
    QV_CHECK( qvs );
    QV_CHECK( QV_CHAR_OK( sep ) );
    return splitAt( qvs, &sep, 1, maxParts );
}

// Once only the last part is left, white space belongs to it like everything else, and may also begin it.
QV_VECTOR *qvStringSplitWhitespace( QV_STRING *qvs, QV_INT maxParts )
{
    QV_CHECK( qvs );
    QV_INT allowed = checkedLimit( maxParts );
    auto trimmed = qv::Local<QV_STRING>::share( qvs );
    qvStringTrim( trimmed.edit() );
    OwnedVector parts( qvVectorCreate() );
    QV_INT begin = -1;
    for ( QV_INT idx = 0; idx < trimmed->length; idx++ )
    {
        bool separates = qv::vectorLength( parts ) < allowed - 1 &&
                         qvUnicodeIsWhiteSpace( qv::stringCharAt( trimmed, idx ) );
        if ( !separates && begin < 0 )
            begin = idx;
        if ( !separates || begin < 0 )
            continue;
        appendPart( &parts, trimmed, begin, idx );
        begin = -1;
    }
    if ( begin >= 0 )
        appendPart( &parts, trimmed, begin, trimmed->length );
    if ( qv::vectorLength( parts ) == 0 )
        qv::vectorAppendGiven( parts.edit(), qv::objOf( qvStringCreate() ) );
    return parts.give();
}
