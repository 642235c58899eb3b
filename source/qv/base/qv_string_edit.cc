// Edits of strings: insertion, replacement, deletion, trimming.

#include <qv/base/qv_string.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/unicode/qv_unicode_lookups.h>

using Owned = qv::Local<QV_STRING>;

// A second reference to src if an edit of dest would write the record that it reads from. The edit then makes a fresh
// record, and src stays whole while it is copied.
static Owned heldIfSame( QV_STRING **dest, QV_STRING *src )
{
    return Owned::share( *dest == src ? src : nullptr );
}

// ---- Parts of strings ----

void qvStringInsertInner( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *dest )->length );
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    if ( count == 0 )
        return;
    Owned held = heldIfSame( dest, src );
    QV_CHAR *gap = qv::stringOpenGap( dest, idx, count );
    qv::copyChars( gap, qv::stringBacking( src ) + offset, count );
}

void qvStringPrependInner( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertInner( dest, 0, src, offset, count );
}

void qvStringAppendInner( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertInner( dest, ( *dest )->length, src, offset, count );
}

void qvStringInsert( QV_STRING **dest, QV_INT idx, QV_STRING *src )
{
    QV_CHECK( src );
    qvStringInsertInner( dest, idx, src, 0, src->length );
}

void qvStringPrepend( QV_STRING **dest, QV_STRING *src )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsert( dest, 0, src );
}

void qvStringAppend( QV_STRING **dest, QV_STRING *src )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsert( dest, ( *dest )->length, src );
}

void qvStringInsertLeading( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT count )
{
    qvStringInsertInner( dest, idx, src, 0, count );
}

void qvStringPrependLeading( QV_STRING **dest, QV_STRING *src, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertLeading( dest, 0, src, count );
}

void qvStringAppendLeading( QV_STRING **dest, QV_STRING *src, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertLeading( dest, ( *dest )->length, src, count );
}

void qvStringInsertTrailing( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= src->length );
    qvStringInsertInner( dest, idx, src, src->length - count, count );
}

void qvStringPrependTrailing( QV_STRING **dest, QV_STRING *src, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertTrailing( dest, 0, src, count );
}

void qvStringAppendTrailing( QV_STRING **dest, QV_STRING *src, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertTrailing( dest, ( *dest )->length, src, count );
}

// The tail goes in first, then the head at the same place, which ends up in front of it.
void qvStringInsertOuter( QV_STRING **dest, QV_INT idx, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    Owned held = heldIfSame( dest, src );
    QV_INT tailOffset = offset + count;
    qvStringInsertInner( dest, idx, src, tailOffset, src->length - tailOffset );
    qvStringInsertInner( dest, idx, src, 0, offset );
}

void qvStringPrependOuter( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertOuter( dest, 0, src, offset, count );
}

void qvStringAppendOuter( QV_STRING **dest, QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertOuter( dest, ( *dest )->length, src, offset, count );
}

// ---- Arrays, single code points, runs ----

void qvStringInsertChars( QV_STRING **qvs, QV_INT idx, const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *qvs )->length );
    QV_CHECK( chsLength >= 0 );
    QV_CHECK( chs || chsLength == 0 );
    QV_CHECK( qvCharsAllOk( chs, chsLength ) );
    if ( chsLength > 0 )
        qv::copyChars( qv::stringOpenGap( qvs, idx, chsLength ), chs, chsLength );
}

void qvStringPrependChars( QV_STRING **qvs, const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringInsertChars( qvs, 0, chs, chsLength );
}

void qvStringAppendChars( QV_STRING **qvs, const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringInsertChars( qvs, ( *qvs )->length, chs, chsLength );
}

void qvStringInsertChar( QV_STRING **qvs, QV_INT idx, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *qvs )->length );
    QV_CHECK( QV_CHAR_OK( ch ) );
    *qv::stringOpenGap( qvs, idx, 1 ) = ch;
}

void qvStringPrependChar( QV_STRING **qvs, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( QV_CHAR_OK( ch ) );
    qv::stringPrependChar( qvs, ch );
}

void qvStringAppendChar( QV_STRING **qvs, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( QV_CHAR_OK( ch ) );
    qv::stringAppendChar( qvs, ch );
}

void qvStringInsertCharRun( QV_STRING **qvs, QV_INT idx, QV_CHAR ch, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *qvs )->length );
    QV_CHECK( count >= 0 );
    if ( count == 0 )
        return;
    QV_CHECK( QV_CHAR_OK( ch ) );
    QV_CHAR *gap = qv::stringOpenGap( qvs, idx, count );
    for ( QV_INT slot = 0; slot < count; slot++ )
    {
        gap[slot] = ch;
    }
}

void qvStringPrependCharRun( QV_STRING **qvs, QV_CHAR ch, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringInsertCharRun( qvs, 0, ch, count );
}

void qvStringAppendCharRun( QV_STRING **qvs, QV_CHAR ch, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringInsertCharRun( qvs, ( *qvs )->length, ch, count );
}

void qvStringSetCharAt( QV_STRING **qvs, QV_INT idx, QV_CHAR ch )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( idx >= -1 );
    QV_CHECK( idx <= ( *qvs )->length );
    QV_CHECK( QV_CHAR_OK( ch ) );
    if ( idx == -1 )
    {
        qvStringPrependChar( qvs, ch );
        return;
    }
    if ( idx == ( *qvs )->length )
    {
        qvStringAppendChar( qvs, ch );
        return;
    }
    qv::makePrivate( qvs, qvStringCreateFrom );
    qv::stringBacking( *qvs )[idx] = ch;
}

// ---- Text that is converted first ----

void qvStringInsertCstr( QV_STRING **dest, QV_INT idx, const char *cstr, QV_INT length )
{
    qv::DecodedChars decoded( cstr, length );
    qvStringInsertChars( dest, idx, decoded.chars(), decoded.length() );
}

void qvStringPrependCstr( QV_STRING **dest, const char *cstr, QV_INT length )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertCstr( dest, 0, cstr, length );
}

void qvStringAppendCstr( QV_STRING **dest, const char *cstr, QV_INT length )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertCstr( dest, ( *dest )->length, cstr, length );
}

void qvStringInsertWcstr( QV_STRING **dest, QV_INT idx, const wchar_t *wcstr, QV_INT length )
{
    qv::DecodedChars decoded( wcstr, length );
    qvStringInsertChars( dest, idx, decoded.chars(), decoded.length() );
}

void qvStringPrependWcstr( QV_STRING **dest, const wchar_t *wcstr, QV_INT length )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertWcstr( dest, 0, wcstr, length );
}

void qvStringAppendWcstr( QV_STRING **dest, const wchar_t *wcstr, QV_INT length )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertWcstr( dest, ( *dest )->length, wcstr, length );
}

void qvStringInsertObj( QV_STRING **dest, QV_INT idx, qvObj obj )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *dest )->length );
    Owned objText( qvObjToString( obj ) );
    qvStringInsert( dest, idx, objText );
}

void qvStringPrependObj( QV_STRING **dest, qvObj obj )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertObj( dest, 0, obj );
}

void qvStringAppendObj( QV_STRING **dest, qvObj obj )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    qvStringInsertObj( dest, ( *dest )->length, obj );
}

// ---- Deletion ----

void qvStringClear( QV_STRING **qvs )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qv::assign( qvs, qv___StringEmpty );
}

void qvStringDelInner( QV_STRING **qvs, QV_INT offset, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= ( *qvs )->length );
    if ( count == 0 )
        return;
    if ( count == ( *qvs )->length )
    {
        qvStringClear( qvs );
        return;
    }
    qv::makePrivate( qvs, qvStringCreateFrom );
    QV_STRING *own = *qvs;
    if ( offset == 0 )
    {
        own->fspace += count;
    }
    else
    {
        QV_CHAR *hole = qv::stringBacking( own ) + offset;
        QV_INT tailLength = own->length - offset - count;
        std::memmove( hole, hole + count, static_cast<size_t>( tailLength ) * sizeof( QV_CHAR ) );
        own->bspace += count;
    }
    own->length -= count;
    qv___StringCompact( own );
}

void qvStringDelLeading( QV_STRING **qvs, QV_INT count )
{
    qvStringDelInner( qvs, 0, count );
}

void qvStringDelTrailing( QV_STRING **qvs, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= ( *qvs )->length );
    qvStringDelInner( qvs, ( *qvs )->length - count, count );
}

void qvStringDelOuter( QV_STRING **qvs, QV_INT offset, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= ( *qvs )->length );
    if ( count == ( *qvs )->length )
        return;
    if ( count == 0 )
    {
        qvStringClear( qvs );
        return;
    }
    qv::makePrivate( qvs, qvStringCreateFrom );
    QV_STRING *own = *qvs;
    own->fspace += offset;
    own->bspace += own->length - offset - count;
    own->length = count;
    qv___StringCompact( own );
}

// ---- White space ----

static QV_INT leadingWhiteSpace( QV_STRING *qvs )
{
    QV_INT count = 0;
    while ( count < qvs->length && qvUnicodeIsWhiteSpace( qv::stringCharAt( qvs, count ) ) )
    {
        count++;
    }
    return count;
}

static QV_INT trailingWhiteSpace( QV_STRING *qvs )
{
    QV_INT count = 0;
    while ( count < qvs->length && qvUnicodeIsWhiteSpace( qv::stringCharAt( qvs, qvs->length - 1 - count ) ) )
    {
        count++;
    }
    return count;
}

QV_BOOL qvStringIsBlank( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    return leadingWhiteSpace( qvs ) == qvs->length;
}

void qvStringTrimLeading( QV_STRING **qvs )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringDelLeading( qvs, leadingWhiteSpace( *qvs ) );
}

void qvStringTrimTrailing( QV_STRING **qvs )
{
    QV_CHECK( qvs );
    QV_CHECK( *qvs );
    qvStringDelTrailing( qvs, trailingWhiteSpace( *qvs ) );
}

void qvStringTrim( QV_STRING **qvs )
{
    qvStringTrimLeading( qvs );
    qvStringTrimTrailing( qvs );
}
