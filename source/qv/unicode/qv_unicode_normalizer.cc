#include <qv/unicode/qv_unicode_normalizer.hh>

#include <qv/base/qv_string.hh>
#include <qv/sys/qv_mem.h>
#include <qv/unicode/qv_unicode_normalizer_write.hh>

QV_SORT_DEFINE( QV_UNICODE_NORMALIZER, qvUnicodeNormalizer, { .freeFunc = qv___UnicodeNormalizerFreeFunc } )

void qv___UnicodeNormalizerFreeFunc( qvObj thisObj )
{
    QV_UNICODE_NORMALIZER *norm = qvUnicodeNormalizerFrom( thisObj );
    if ( norm->chars != norm->inlineChars )
        qvMemFree( norm->chars );
    qv___ObjDbgSetAllocationSize( norm, 0 );
}

QV_UNICODE_NORMALIZER *qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM normalForm )
{
    QV_CHECK( QV_UNICODE_NORMAL_FORM_OK( normalForm ) );
    auto *norm = qv::create<QV_UNICODE_NORMALIZER>( qvUnicodeNormalizerSort() );
    norm->normalForm = normalForm;
    norm->chars = norm->inlineChars;
    norm->capacity = QV___NORMALIZER_INLINE;
    qv::unicode::normalizerReset( norm );
    return norm;
}

void qvUnicodeNormalizerWriteChar( QV_UNICODE_NORMALIZER *norm, QV_CHAR ch )
{
    QV_CHECK( norm );
    qv::unicode::normalizerWrite( norm, &ch, 1 );
}

void qvUnicodeNormalizerWriteChars( QV_UNICODE_NORMALIZER *norm, const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( norm );
    QV_CHECK( chsLength >= 0 );
    QV_CHECK( chs || chsLength == 0 );
    qv::unicode::normalizerWrite( norm, chs, chsLength );
}

void qvUnicodeNormalizerWrite( QV_UNICODE_NORMALIZER *norm, QV_STRING *src )
{
    QV_CHECK( norm );
    QV_CHECK( src );
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ), src->length );
}

void qvUnicodeNormalizerWriteInner( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( norm );
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ) + offset, count );
}

void qvUnicodeNormalizerWriteLeading( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT count )
{
    QV_CHECK( norm );
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= src->length );
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ), count );
}

void qvUnicodeNormalizerWriteTrailing( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT count )
{
    QV_CHECK( norm );
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= src->length );
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ) + ( src->length - count ), count );
}

void qvUnicodeNormalizerWriteOuter( QV_UNICODE_NORMALIZER *norm, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( norm );
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    QV_INT tail = offset + count;
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ), offset );
    qv::unicode::normalizerWrite( norm, qv::stringBacking( src ) + tail, src->length - tail );
}

void qvUnicodeNormalizerFlush( QV_UNICODE_NORMALIZER *norm )
{
    QV_CHECK( norm );
    qv::unicode::normalizerFlush( norm );
}

void qvUnicodeNormalizerClear( QV_UNICODE_NORMALIZER *norm )
{
    QV_CHECK( norm );
    qv::unicode::normalizerReset( norm );
}

QV_INT qvUnicodeNormalizerReadable( QV_UNICODE_NORMALIZER *norm )
{
    QV_CHECK( norm );
    return qv___UnicodeNormalizerReadyEnd( norm ) - norm->begin;
}

namespace
{

// From this length on a text is handed over rather than copied.
constexpr QV_INT handOverLength = 4096;

// True if the storage can become a string as it stands: it begins with the text, nothing but the text is in it.
bool canHandOver( QV_UNICODE_NORMALIZER *norm, QV_INT count )
{
    return count >= handOverLength && norm->begin == 0 && count == norm->end &&
           norm->chars != norm->inlineChars;
}

// Makes a string of the storage and goes on with the inline one.
QV_STRING *handOver( QV_UNICODE_NORMALIZER *norm, QV_INT count )
{
    auto *chars = static_cast<QV_CHAR *>( qvMemReallocN( norm->chars, count, sizeof( QV_CHAR ) ) );
    norm->chars = norm->inlineChars;
    norm->capacity = QV___NORMALIZER_INLINE;
    qv___ObjDbgSetAllocationSize( norm, 0 );
    return qvStringCreateFromCharsUse( chars, count );
}

} // namespace

QV_INT qvUnicodeNormalizerRead( QV_UNICODE_NORMALIZER *norm, QV_STRING **dest, QV_INT maxLen )
{
    QV_CHECK( norm );
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( maxLen >= -1 );
    QV_INT readable;
    const QV_CHAR *chars = qv___UnicodeNormalizerPeek( norm, &readable );
    QV_INT count = maxLen == -1 || readable < maxLen ? readable : maxLen;
    if ( ( *dest )->length == 0 && canHandOver( norm, count ) )
        qv::replaceWith( dest, handOver( norm, count ) );
    else
        qv::stringAppendChars( dest, chars, count );
    qv___UnicodeNormalizerSkip( norm, count );
    return count;
}

QV_INT qvUnicodeNormalizerReadChars( QV_UNICODE_NORMALIZER *norm, QV_CHAR *dest, QV_INT destLen )
{
    QV_CHECK( norm );
    QV_CHECK( destLen >= 0 );
    QV_CHECK( dest || destLen == 0 );
    QV_INT readable;
    const QV_CHAR *chars = qv___UnicodeNormalizerPeek( norm, &readable );
    QV_INT count = readable < destLen ? readable : destLen;
    qv::copyChars( dest, chars, count );
    qv___UnicodeNormalizerSkip( norm, count );
    return count;
}
