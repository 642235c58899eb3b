// Texts that Unicode data transform: case mapping and folding, clean surrogates, normal forms.

#include <qv/base/qv_string.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/unicode/qv_unicode_lookups.hh>
#include <qv/unicode/qv_unicode_normalizer.hh>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

using Owned = qv::Local<QV_STRING>;

// ---- Case mapping ----

namespace
{

// The three mappings: the ASCII letters that change, from which letter on and by how much, the character that a character
// becomes, and the full mapping where it becomes several.
struct Upper
{
    static constexpr QV_CHAR firstLetter = 'a';
    static constexpr int step = 'A' - 'a';

    static QV_CHAR one( QV_CHAR ch )
    {
        return qv::upperCaseOf( ch );
    }

    static const QV_CHAR *many( QV_CHAR ch, QV_INT *mapLength )
    {
        return qv___UnicodeUpperCaseDbLookup( ch, mapLength );
    }
};

struct Lower
{
    static constexpr QV_CHAR firstLetter = 'A';
    static constexpr int step = 'a' - 'A';

    static QV_CHAR one( QV_CHAR ch )
    {
        return qv::lowerCaseOf( ch );
    }

    static const QV_CHAR *many( QV_CHAR ch, QV_INT *mapLength )
    {
        return qv___UnicodeLowerCaseDbLookup( ch, mapLength );
    }
};

struct Fold
{
    static constexpr QV_CHAR firstLetter = 'A';
    static constexpr int step = 'a' - 'A';

    static QV_CHAR one( QV_CHAR ch )
    {
        return qv::caseFoldOf( ch );
    }

    static const QV_CHAR *many( QV_CHAR ch, QV_INT *mapLength )
    {
        return qv___UnicodeCaseFoldDbLookup( ch, mapLength );
    }
};

} // namespace

#ifdef __SSE2__
// Maps leading ASCII characters four at a time and returns how many it did.
template <typename MAPPING> static QV_INT mapAscii( QV_CHAR *dest, const QV_CHAR *src, QV_INT count )
{
    const __m128i belowFirst = _mm_set1_epi32( static_cast<int>( MAPPING::firstLetter ) - 1 );
    const __m128i behindLast = _mm_set1_epi32( static_cast<int>( MAPPING::firstLetter ) + 26 );
    const __m128i step = _mm_set1_epi32( MAPPING::step );
    const __m128i highBits = _mm_set1_epi32( ~0x7F );
    QV_INT idx = 0;
    for ( ; count - idx >= 4; idx += 4 )
    {
        __m128i four = _mm_loadu_si128( reinterpret_cast<const __m128i *>( src + idx ) );
        __m128i isAscii = _mm_cmpeq_epi32( _mm_and_si128( four, highBits ), _mm_setzero_si128() );
        if ( _mm_movemask_epi8( isAscii ) != 0xFFFF )
            break;
        __m128i isLetter =
            _mm_and_si128( _mm_cmpgt_epi32( four, belowFirst ), _mm_cmplt_epi32( four, behindLast ) );
        four = _mm_add_epi32( four, _mm_and_si128( isLetter, step ) );
        _mm_storeu_si128( reinterpret_cast<__m128i *>( dest + idx ), four );
    }
    return idx;
}
#else
template <typename MAPPING> static QV_INT mapAscii( QV_CHAR *, const QV_CHAR *, QV_INT )
{
    return 0;
}
#endif

// A new string with the mapped text. It begins as long as the source; a character that becomes several makes room for the
// others at the end, so that the slots left are always those that the rest of the source needs at least.
template <typename MAPPING> static QV_STRING *createMapped( QV_STRING *src )
{
    Owned mapped( qv::stringCreateUnfilled( src->length ) );
    const QV_CHAR *from = qv::stringBacking( src );
    const QV_CHAR *end = from + src->length;
    QV_CHAR *to = qv::stringBacking( mapped );
    while ( from < end )
    {
        QV_CHAR ch = MAPPING::one( *from );
        if ( ch != qv::manyChars )
        {
            *to++ = ch;
            from++;
            if ( ch < 0x80 )
            {
                QV_INT done = mapAscii<MAPPING>( to, from, end - from );
                from += done;
                to += done;
            }
            continue;
        }
        QV_INT mapLength = 0;
        const QV_CHAR *map = MAPPING::many( *from++, &mapLength );
        QV_INT written = to - qv::stringBacking( mapped );
        qv___StringMakeRoom( mapped, mapped->length, mapLength - 1 );
        to = qv::stringBacking( mapped ) + written;
        qv::copyChars( to, map, mapLength );
        to += mapLength;
    }
    return mapped.give();
}

template <typename MAPPING> static void mapString( QV_STRING **qvs )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    if ( ( *qvs )->length > 0 )
        qv::replaceWith( qvs, createMapped<MAPPING>( *qvs ) );
}

void qvStringToUpper( QV_STRING **qvs )
{
    mapString<Upper>( qvs );
}

void qvStringToLower( QV_STRING **qvs )
{
    mapString<Lower>( qvs );
}

void qvStringToCaseFold( QV_STRING **qvs )
{
    mapString<Fold>( qvs );
}

// ---- Case-folded comparison ----

namespace
{

// Reads an array as its case-folded text, one code point at a time.
class FoldedReader
{
  public:
    FoldedReader( const QV_CHAR *chs, QV_INT chsLength ) : next_( chs ), end_( chs + chsLength ) {}

    // The next code point, or -1 at the end.
    int64_t read()
    {
        if ( mapLength_ > 0 )
        {
            mapLength_--;
            return *map_++;
        }
        if ( next_ == end_ )
            return -1;
        QV_CHAR ch = *next_++;
        QV_CHAR folded = Fold::one( ch );
        if ( folded != qv::manyChars )
            return folded;
        map_ = Fold::many( ch, &mapLength_ );
        mapLength_--;
        return *map_++;
    }

  private:
    const QV_CHAR *next_;
    const QV_CHAR *end_;
    const QV_CHAR *map_ = nullptr;
    QV_INT mapLength_ = 0;
};

} // namespace

static QV_INT compareFolded( FoldedReader readerA, FoldedReader readerB )
{
    for ( ;; )
    {
        int64_t chA = readerA.read();
        int64_t chB = readerB.read();
        if ( chA != chB )
            return chA < chB ? -1 : 1;
        if ( chA < 0 )
            return 0;
    }
}

QV_INT qvStringCompareCaseFold( QV_STRING *qvsA, QV_STRING *qvsB )
{
    QV_CHECK( qvsA );
    QV_CHECK( qvsB );
    if ( qvsA == qvsB )
        return 0;
    return compareFolded( FoldedReader( qv::stringBacking( qvsA ), qvsA->length ),
                          FoldedReader( qv::stringBacking( qvsB ), qvsB->length ) );
}

QV_BOOL qvStringEqualsCaseFold( QV_STRING *qvsA, QV_STRING *qvsB )
{
    return QV_BOOL_FROM( qvStringCompareCaseFold( qvsA, qvsB ) == 0 );
}

QV_BOOL qvStringEqualsCharsCaseFold( QV_STRING *qvs, const QV_CHAR *chs, QV_INT chsLen )
{
    QV_CHECK( qvs );
    QV_CHECK( chsLen >= 0 );
    QV_CHECK( chs || chsLen == 0 );
    QV_CHECK( qvCharsAllOk( chs, chsLen ) );
    return QV_BOOL_FROM( compareFolded( FoldedReader( qv::stringBacking( qvs ), qvs->length ),
                                        FoldedReader( chs, chsLen ) ) == 0 );
}

QV_BOOL qvStringEqualsCharCaseFold( QV_STRING *qvs, QV_CHAR ch )
{
    return qvStringEqualsCharsCaseFold( qvs, &ch, 1 );
}

QV_BOOL qvStringEqualsCaseFoldCstr( QV_STRING *qvs, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringEqualsCharsCaseFold( qvs, decoded.chars(), decoded.length() );
}

QV_BOOL qvStringEqualsCaseFoldWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringEqualsCharsCaseFold( qvs, decoded.chars(), decoded.length() );
}

// ---- Surrogates and normal forms ----

void qvStringSanitize( QV_STRING **qvs )
{
    qv::makePrivate( qvs, qvStringCreateFrom );
    QV_STRING *own = *qvs;
    QV_CHAR *chars = qv::stringBacking( own );
    QV_INT cleanLength = qvCharsSanitize( chars, own->length, chars, own->length );
    own->bspace += own->length - cleanLength;
    own->length = cleanLength;
    qv___StringCompact( own );
}

void qvStringNormalize( QV_STRING **qvs, QV_INT nf )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( QV_UNICODE_NORMAL_FORM_OK( nf ) );
    QV_INT length = ( *qvs )->length;
    if ( qv___UnicodeNormalizedSpan( nf, qv::stringBacking( *qvs ), length ) == length )
        return;
    qv::Local<QV_UNICODE_NORMALIZER> normalizer( qvUnicodeNormalizerCreate( nf ) );
    qvUnicodeNormalizerWrite( normalizer, *qvs );
    qvUnicodeNormalizerFlush( normalizer );
    qvStringClear( qvs );
    qvUnicodeNormalizerRead( normalizer, qvs, -1 );
}
