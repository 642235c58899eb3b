// Life and reading of strings.

#include <qv/base/qv_string.hh>

#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_mem.h>

constinit QV_STRING *qv___StringEmpty = nullptr;

static void qv___StringFreeFunc( qvObj thisObj )
{
    auto *qvs = static_cast<QV_STRING *>( thisObj );
    if ( qvs->chars != qvs->inlineChars )
    {
        qvMemFree( qvs->chars );
        qv___ObjDbgSetAllocationSize( qvs, 0 );
    }
}

static QV_INT qv___StringCompareFunc( qvObj thisObj, qvObj thatObj )
{
    return qv::stringCompare( static_cast<QV_STRING *>( thisObj ), static_cast<QV_STRING *>( thatObj ) );
}

static QV_STRING *qv___StringToStringFunc( qvObj thisObj )
{
    return qv::retained( static_cast<QV_STRING *>( thisObj ) );
}

QV_SORT_DEFINE( QV_STRING, qvString,
                { .freeFunc = qv___StringFreeFunc,
                  .compareFunc = qv___StringCompareFunc,
                  .toStringFunc = qv___StringToStringFunc } )

// A record with an inline text of up to 64 code points, not filled.
static inline QV_STRING *createInline( QV_INT length )
{
    auto *qvs = qv::create<QV_STRING>( &qv___sort_QV_STRING );
    qvs->length = length;
    qvs->fspace = 0;
    qvs->bspace = QV___STRING_INLINE - length;
    qvs->chars = qvs->inlineChars;
    return qvs;
}

void qv___StringStartup()
{
    qv___StringEmpty = createInline( 0 );
}

void qv___StringShutdown()
{
    qv::retire( &qv___StringEmpty );
}

QV_STRING *qv::stringCreateUnfilled( QV_INT length )
{
    if ( length <= QV___STRING_INLINE )
        return createInline( length );
    QV_STRING *qvs = createInline( 0 );
    qv___StringMakeRoom( qvs, 0, length );
    return qvs;
}

QV_STRING *qvStringCreate( void )
{
    return qv::retained( qv___StringEmpty );
}

QV_STRING *qvStringCreateFromCharsCopy( const QV_CHAR *src, QV_INT srcLength )
{
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
    QV_CHECK( qvCharsAllOk( src, srcLength ) );
    if ( srcLength == 0 )
        return qvStringCreate();
    QV_STRING *qvs = qv::stringCreateUnfilled( srcLength );
    qv::copyChars( qv::stringBacking( qvs ), src, srcLength );
    return qvs;
}

QV_STRING *qvStringCreateFromCharsUse( QV_CHAR *src, QV_INT srcLength )
{
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
    QV_CHECK( qvCharsAllOk( src, srcLength ) );
    if ( srcLength == 0 )
        return qvStringCreate();
    QV_STRING *qvs = createInline( 0 );
    qvs->chars = src;
    qvs->length = srcLength;
    qvs->bspace = 0;
    qv___ObjDbgSetAllocationSizeN( qvs, srcLength, sizeof( QV_CHAR ) );
    return qvs;
}

QV_STRING *qvStringCreateFrom( QV_STRING *src )
{
    QV_CHECK( src );
    return qvStringCreateFromInner( src, 0, src->length );
}

QV_STRING *qvStringCreateFromInner( QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    QV_STRING *qvs = qv::stringCreateUnfilled( count );
    qv::copyChars( qv::stringBacking( qvs ), qv::stringBacking( src ) + offset, count );
    return qvs;
}

QV_STRING *qvStringCreateFromLeading( QV_STRING *src, QV_INT count )
{
    return qvStringCreateFromInner( src, 0, count );
}

QV_STRING *qvStringCreateFromTrailing( QV_STRING *src, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    QV_CHECK( count <= src->length );
    return qvStringCreateFromInner( src, src->length - count, count );
}

QV_STRING *qvStringCreateFromOuter( QV_STRING *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= src->length );
    QV_STRING *qvs = qv::stringCreateUnfilled( src->length - count );
    const QV_CHAR *head = qv::stringBacking( src );
    const QV_CHAR *tail = head + offset + count;
    qv::copyChars( qv::stringBacking( qvs ), head, offset );
    qv::copyChars( qv::stringBacking( qvs ) + offset, tail, src->length - offset - count );
    return qvs;
}

QV_INT qvStringLength( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    return qvs->length;
}

const QV_CHAR *qvStringBacking( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    return qv::stringBacking( qvs );
}

QV_CHAR *qvStringMutableBacking( QV_STRING **qvs )
{
    qv::makePrivate( qvs, qvStringCreateFrom );
    return qv::stringBacking( *qvs );
}

QV_CHAR qvStringCharAt( QV_STRING *qvs, QV_INT idx )
{
    QV_CHECK( qvs );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qvs->length );
    return qv::stringCharAt( qvs, idx );
}
