// Joining: a source behind or in front of the text, with a delimiter between the two.

#include <qv/base/qv_string.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>

namespace
{

// A run of code points, wherever it lies.
struct Run
{
    const QV_CHAR *chars;
    QV_INT length;

    explicit Run( QV_STRING *qvs ) : chars( qv::stringBacking( qvs ) ), length( qvs->length ) {}
    explicit Run( const qv::DecodedChars &decoded ) : chars( decoded.chars() ), length( decoded.length() ) {}
    Run( const QV_CHAR *chs, QV_INT chsLength ) : chars( chs ), length( chsLength ) {}
};

} // namespace

// Puts two runs next to each other at idx. Either may be the text of *dest, which then stays whole in a second reference.
static void insertTwo( QV_STRING **dest, QV_INT idx, Run first, Run second )
{
    QV_CHECK( QV_INT_ADD_OK( first.length, second.length ) );
    QV_STRING *before = *dest;
    bool readsOwnText =
        first.chars == qv::stringBacking( before ) || second.chars == qv::stringBacking( before );
    auto held = qv::Local<QV_STRING>::share( readsOwnText ? before : nullptr );
    QV_CHAR *gap = qv::stringOpenGap( dest, idx, first.length + second.length );
    qv::copyChars( gap, first.chars, first.length );
    qv::copyChars( gap + first.length, second.chars, second.length );
}

static void appendDelimited( QV_STRING **dest, Run src, Run delimiter )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_INT length = ( *dest )->length;
    insertTwo( dest, length, length > 0 ? delimiter : Run( nullptr, 0 ), src );
}

static void prependDelimited( QV_STRING **dest, Run src, Run delimiter )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    insertTwo( dest, 0, src, ( *dest )->length > 0 ? delimiter : Run( nullptr, 0 ) );
}

void qvStringDelimitedAppend( QV_STRING **dest, QV_STRING *src, QV_STRING *delimiter )
{
    QV_CHECK( src );
    QV_CHECK( delimiter );
    appendDelimited( dest, Run( src ), Run( delimiter ) );
}

void qvStringDelimitedAppendCstr( QV_STRING **dest, const char *src, QV_INT srcLength, const char *delimiter,
                                  QV_INT delimiterLength )
{
    qv::DecodedChars srcChars( src, srcLength );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    appendDelimited( dest, Run( srcChars ), Run( delimiterChars ) );
}

void qvStringDelimitedAppendCstrSource( QV_STRING **dest, const char *src, QV_INT srcLength,
                                        QV_STRING *delimiter )
{
    QV_CHECK( delimiter );
    qv::DecodedChars srcChars( src, srcLength );
    appendDelimited( dest, Run( srcChars ), Run( delimiter ) );
}

void qvStringDelimitedAppendCstrDelimiter( QV_STRING **dest, QV_STRING *src, const char *delimiter,
                                           QV_INT delimiterLength )
{
    QV_CHECK( src );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    appendDelimited( dest, Run( src ), Run( delimiterChars ) );
}

void qvStringDelimitedAppendWcstr( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                   const wchar_t *delimiter, QV_INT delimiterLength )
{
    qv::DecodedChars srcChars( src, srcLength );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    appendDelimited( dest, Run( srcChars ), Run( delimiterChars ) );
}

void qvStringDelimitedAppendWcstrSource( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                         QV_STRING *delimiter )
{
    QV_CHECK( delimiter );
    qv::DecodedChars srcChars( src, srcLength );
    appendDelimited( dest, Run( srcChars ), Run( delimiter ) );
}

void qvStringDelimitedAppendWcstrDelimiter( QV_STRING **dest, QV_STRING *src, const wchar_t *delimiter,
                                            QV_INT delimiterLength )
{
    QV_CHECK( src );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    appendDelimited( dest, Run( src ), Run( delimiterChars ) );
}

void qvStringDelimitedAppendCharDelimiter( QV_STRING **dest, QV_STRING *src, QV_CHAR delimiter )
{
    QV_CHECK( src );
    QV_CHECK( QV_CHAR_OK( delimiter ) );
    appendDelimited( dest, Run( src ), Run( &delimiter, 1 ) );
}

void qvStringDelimitedAppendCharsDelimiter( QV_STRING **dest, QV_STRING *src, const QV_CHAR *delimiter,
                                            QV_INT delimiterLength )
{
    QV_CHECK( src );
    QV_CHECK( delimiterLength >= 0 );
    QV_CHECK( delimiter || delimiterLength == 0 );
    QV_CHECK( qvCharsAllOk( delimiter, delimiterLength ) );
    appendDelimited( dest, Run( src ), Run( delimiter, delimiterLength ) );
}

void qvStringDelimitedPrepend( QV_STRING **dest, QV_STRING *src, QV_STRING *delimiter )
{
    QV_CHECK( src );
    QV_CHECK( delimiter );
    prependDelimited( dest, Run( src ), Run( delimiter ) );
}

void qvStringDelimitedPrependCstr( QV_STRING **dest, const char *src, QV_INT srcLength, const char *delimiter,
                                   QV_INT delimiterLength )
{
    qv::DecodedChars srcChars( src, srcLength );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    prependDelimited( dest, Run( srcChars ), Run( delimiterChars ) );
}

void qvStringDelimitedPrependCstrSource( QV_STRING **dest, const char *src, QV_INT srcLength,
                                         QV_STRING *delimiter )
{
    QV_CHECK( delimiter );
    qv::DecodedChars srcChars( src, srcLength );
    prependDelimited( dest, Run( srcChars ), Run( delimiter ) );
}

void qvStringDelimitedPrependCstrDelimiter( QV_STRING **dest, QV_STRING *src, const char *delimiter,
                                            QV_INT delimiterLength )
{
    QV_CHECK( src );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    prependDelimited( dest, Run( src ), Run( delimiterChars ) );
}

void qvStringDelimitedPrependWcstr( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                    const wchar_t *delimiter, QV_INT delimiterLength )
{
    qv::DecodedChars srcChars( src, srcLength );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    prependDelimited( dest, Run( srcChars ), Run( delimiterChars ) );
}

void qvStringDelimitedPrependWcstrSource( QV_STRING **dest, const wchar_t *src, QV_INT srcLength,
                                          QV_STRING *delimiter )
{
    QV_CHECK( delimiter );
    qv::DecodedChars srcChars( src, srcLength );
    prependDelimited( dest, Run( srcChars ), Run( delimiter ) );
}

void qvStringDelimitedPrependWcstrDelimiter( QV_STRING **dest, QV_STRING *src, const wchar_t *delimiter,
                                             QV_INT delimiterLength )
{
    QV_CHECK( src );
    qv::DecodedChars delimiterChars( delimiter, delimiterLength );
    prependDelimited( dest, Run( src ), Run( delimiterChars ) );
}

void qvStringDelimitedPrependCharDelimiter( QV_STRING **dest, QV_STRING *src, QV_CHAR delimiter )
{
    QV_CHECK( src );
    QV_CHECK( QV_CHAR_OK( delimiter ) );
    prependDelimited( dest, Run( src ), Run( &delimiter, 1 ) );
}

void qvStringDelimitedPrependCharsDelimiter( QV_STRING **dest, QV_STRING *src, const QV_CHAR *delimiter,
                                             QV_INT delimiterLength )
{
    QV_CHECK( src );
    QV_CHECK( delimiterLength >= 0 );
    QV_CHECK( delimiter || delimiterLength == 0 );
    QV_CHECK( qvCharsAllOk( delimiter, delimiterLength ) );
    prependDelimited( dest, Run( src ), Run( delimiter, delimiterLength ) );
}
