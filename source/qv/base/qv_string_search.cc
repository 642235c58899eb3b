// Comparing and searching: cores on arrays of code points, and the forms for strings, bytes and wide characters.

#include <qv/base/qv_string.hh>

#include <qv/sys/qv_chars.h>

#include <cwchar>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

static_assert( sizeof( wchar_t ) == sizeof( QV_CHAR ) );

// ---- Cores ----

// The number of leading code points that both arrays share.
static QV_INT commonLength( const QV_CHAR *chsA, const QV_CHAR *chsB, QV_INT count )
{
    constexpr QV_INT block = 256;
    QV_INT idx = 0;
    while ( count - idx >= block && qv::charsEqual( chsA + idx, chsB + idx, block ) )
    {
        idx += block;
    }
#ifdef __SSE2__
    for ( ; count - idx >= 4; idx += 4 )
    {
        __m128i fourA = _mm_loadu_si128( reinterpret_cast<const __m128i *>( chsA + idx ) );
        __m128i fourB = _mm_loadu_si128( reinterpret_cast<const __m128i *>( chsB + idx ) );
        if ( _mm_movemask_epi8( _mm_cmpeq_epi32( fourA, fourB ) ) != 0xFFFF )
            break;
    }
#endif
    while ( idx < count && chsA[idx] == chsB[idx] )
    {
        idx++;
    }
    return idx;
}

QV_INT qv::compareChars( const QV_CHAR *chsA, QV_INT lengthA, const QV_CHAR *chsB, QV_INT lengthB )
{
    QV_INT shorter = lengthA < lengthB ? lengthA : lengthB;
    QV_INT idx = commonLength( chsA, chsB, shorter );
    if ( idx < shorter )
        return chsA[idx] < chsB[idx] ? -1 : 1;
    return ( lengthA > lengthB ) - ( lengthA < lengthB );
}

QV_INT qv::findChar( const QV_CHAR *chs, QV_INT chsLength, QV_CHAR ch )
{
    if ( chsLength == 0 )
        return -1;
    const auto *wide = reinterpret_cast<const wchar_t *>( chs );
    const wchar_t *hit = std::wmemchr( wide, static_cast<wchar_t>( ch ), static_cast<size_t>( chsLength ) );
    return hit ? hit - wide : -1;
}

QV_INT qv::findCharFromRight( const QV_CHAR *chs, QV_INT chsLength, QV_CHAR ch )
{
    QV_INT idx = chsLength - 1;
    while ( idx >= 0 && chs[idx] != ch )
    {
        idx--;
    }
    return idx;
}

// Texts of words rarely hold first and last code point of the wanted text at the right distance, so that the whole is
// compared at few places only. Eight places a step.
QV_INT qv::findChars( const QV_CHAR *chs, QV_INT chsLength, const QV_CHAR *sub, QV_INT subLength )
{
    if ( subLength == 1 )
        return findChar( chs, chsLength, *sub );
    QV_INT places = chsLength - subLength + 1;
    QV_INT lastOffset = subLength - 1;
    QV_INT idx = 0;
#ifdef __SSE2__
    const __m128i first = _mm_set1_epi32( static_cast<int>( sub[0] ) );
    const __m128i last = _mm_set1_epi32( static_cast<int>( sub[lastOffset] ) );
    auto matches = [&]( QV_INT place ) {
        __m128i heads = _mm_loadu_si128( reinterpret_cast<const __m128i *>( chs + place ) );
        __m128i tails = _mm_loadu_si128( reinterpret_cast<const __m128i *>( chs + place + lastOffset ) );
        return _mm_and_si128( _mm_cmpeq_epi32( heads, first ), _mm_cmpeq_epi32( tails, last ) );
    };
    for ( ; places - idx >= 8; idx += 8 )
    {
        // Two bits for each place.
        auto mask = static_cast<unsigned>(
            _mm_movemask_epi8( _mm_packs_epi32( matches( idx ), matches( idx + 4 ) ) ) );
        for ( ; mask != 0; mask &= mask - 1, mask &= mask - 1 )
        {
            QV_INT place = idx + __builtin_ctz( mask ) / 2;
            if ( charsEqual( chs + place + 1, sub + 1, subLength - 2 ) )
                return place;
        }
    }
#endif
    for ( ; idx < places; idx++ )
    {
        if ( chs[idx] == sub[0] && chs[idx + lastOffset] == sub[lastOffset] &&
             charsEqual( chs + idx + 1, sub + 1, subLength - 2 ) )
            return idx;
    }
    return -1;
}

QV_INT qv::findCharsFromRight( const QV_CHAR *chs, QV_INT chsLength, const QV_CHAR *sub, QV_INT subLength )
{
    QV_INT place = chsLength - subLength;
    while ( place >= 0 && !( chs[place] == *sub && charsEqual( chs + place, sub, subLength ) ) )
    {
        place--;
    }
    return place < 0 ? -1 : place;
}

// ---- Equality ----

QV_BOOL qvStringEqualsChars( QV_STRING *qvs, const QV_CHAR *chs, QV_INT chsLen )
{
    QV_CHECK( qvs );
    QV_CHECK( chsLen >= 0 );
    QV_CHECK( chs || chsLen == 0 );
    return QV_BOOL_FROM( qvs->length == chsLen && qv::charsEqual( qv::stringBacking( qvs ), chs, chsLen ) );
}

QV_BOOL qvStringEqualsChar( QV_STRING *qvs, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( QV_CHAR_OK( ch ) );
    return QV_BOOL_FROM( qvs->length == 1 && qv::stringCharAt( qvs, 0 ) == ch );
}

QV_BOOL qvStringEqualsCstr( QV_STRING *qvs, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringEqualsChars( qvs, decoded.chars(), decoded.length() );
}

QV_BOOL qvStringEqualsWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringEqualsChars( qvs, decoded.chars(), decoded.length() );
}

// ---- Prefix and suffix ----

QV_BOOL qvStringBeginsWithChars( QV_STRING *qvs, const QV_CHAR *sub, QV_INT subLen )
{
    QV_CHECK( qvs );
    QV_CHECK( subLen >= 0 );
    QV_CHECK( sub || subLen == 0 );
    QV_CHECK( qvCharsAllOk( sub, subLen ) );
    return QV_BOOL_FROM( subLen <= qvs->length && qv::charsEqual( qv::stringBacking( qvs ), sub, subLen ) );
}

QV_BOOL qvStringBeginsWith( QV_STRING *qvs, QV_STRING *sub )
{
    QV_CHECK( sub );
    return qvStringBeginsWithChars( qvs, qv::stringBacking( sub ), sub->length );
}

QV_BOOL qvStringBeginsWithChar( QV_STRING *qvs, QV_CHAR ch )
{
    return qvStringBeginsWithChars( qvs, &ch, 1 );
}

QV_BOOL qvStringBeginsWithCstr( QV_STRING *qvs, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringBeginsWithChars( qvs, decoded.chars(), decoded.length() );
}

QV_BOOL qvStringBeginsWithWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringBeginsWithChars( qvs, decoded.chars(), decoded.length() );
}

QV_BOOL qvStringEndsWithChars( QV_STRING *qvs, const QV_CHAR *sub, QV_INT subLen )
{
    QV_CHECK( qvs );
    QV_CHECK( subLen >= 0 );
    QV_CHECK( sub || subLen == 0 );
    QV_CHECK( qvCharsAllOk( sub, subLen ) );
    if ( subLen > qvs->length )
        return QV_FALSE;
    return QV_BOOL_FROM( qv::charsEqual( qv::stringBacking( qvs ) + qvs->length - subLen, sub, subLen ) );
}

QV_BOOL qvStringEndsWith( QV_STRING *qvs, QV_STRING *sub )
{
    QV_CHECK( sub );
    return qvStringEndsWithChars( qvs, qv::stringBacking( sub ), sub->length );
}

QV_BOOL qvStringEndsWithChar( QV_STRING *qvs, QV_CHAR ch )
{
    return qvStringEndsWithChars( qvs, &ch, 1 );
}

QV_BOOL qvStringEndsWithCstr( QV_STRING *qvs, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringEndsWithChars( qvs, decoded.chars(), decoded.length() );
}

QV_BOOL qvStringEndsWithWcstr( QV_STRING *qvs, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringEndsWithChars( qvs, decoded.chars(), decoded.length() );
}

// ---- Forward search ----

// A hit in the rest of a text as an index of the whole.
static QV_INT fromRest( QV_INT offset, QV_INT hit )
{
    return hit < 0 ? -1 : offset + hit;
}

QV_INT qvStringFindChar( QV_STRING *qvs, QV_INT offset, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( offset >= 0 );
    QV_CHECK( offset <= qvs->length );
    QV_CHECK( QV_CHAR_OK( ch ) );
    return fromRest( offset, qv::findChar( qv::stringBacking( qvs ) + offset, qvs->length - offset, ch ) );
}

QV_INT qvStringFindChars( QV_STRING *qvs, QV_INT offset, const QV_CHAR *sub, QV_INT subLength )
{
    QV_CHECK( qvs );
    QV_CHECK( offset >= 0 );
    QV_CHECK( offset <= qvs->length );
    QV_CHECK( sub );
    QV_CHECK( subLength > 0 );
    return fromRest(
        offset, qv::findChars( qv::stringBacking( qvs ) + offset, qvs->length - offset, sub, subLength ) );
}

QV_INT qvStringFind( QV_STRING *qvs, QV_INT offset, QV_STRING *sub )
{
    QV_CHECK( sub );
    return qvStringFindChars( qvs, offset, qv::stringBacking( sub ), sub->length );
}

QV_INT qvStringFindCstr( QV_STRING *qvs, QV_INT offset, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringFindChars( qvs, offset, decoded.chars(), decoded.length() );
}

QV_INT qvStringFindWcstr( QV_STRING *qvs, QV_INT offset, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringFindChars( qvs, offset, decoded.chars(), decoded.length() );
}

// ---- Backward search ----

QV_INT qvStringFindCharFromRight( QV_STRING *qvs, QV_INT offset, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( offset >= -1 );
    QV_CHECK( offset <= qvs->length );
    QV_CHECK( QV_CHAR_OK( ch ) );
    return qv::findCharFromRight( qv::stringBacking( qvs ), offset == -1 ? qvs->length : offset, ch );
}

// A hit may begin at offset itself.
QV_INT qvStringFindCharsFromRight( QV_STRING *qvs, QV_INT offset, const QV_CHAR *sub, QV_INT subLength )
{
    QV_CHECK( qvs );
    QV_CHECK( offset >= -1 );
    QV_CHECK( offset <= qvs->length );
    QV_CHECK( sub );
    QV_CHECK( subLength > 0 );
    QV_INT searched = qvs->length;
    if ( offset != -1 && offset < searched - subLength )
        searched = offset + subLength;
    return qv::findCharsFromRight( qv::stringBacking( qvs ), searched, sub, subLength );
}

QV_INT qvStringFindFromRight( QV_STRING *qvs, QV_INT offset, QV_STRING *sub )
{
    QV_CHECK( sub );
    return qvStringFindCharsFromRight( qvs, offset, qv::stringBacking( sub ), sub->length );
}

QV_INT qvStringFindFromRightCstr( QV_STRING *qvs, QV_INT offset, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    return qvStringFindCharsFromRight( qvs, offset, decoded.chars(), decoded.length() );
}

QV_INT qvStringFindFromRightWcstr( QV_STRING *qvs, QV_INT offset, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    return qvStringFindCharsFromRight( qvs, offset, decoded.chars(), decoded.length() );
}
