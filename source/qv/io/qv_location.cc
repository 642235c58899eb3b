#include <qv/io/qv_location.hh>

#include <qv/base/qv_string.hh>
#include <qv/io/qv_path.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

QV_SORT_DEFINE( QV_LOCATION, qvLocation,
                { .freeFunc = qv___LocationFreeFunc, .toStringFunc = qv___LocationToStringFunc } )

namespace
{

// Adds to a line or column of a private location, which is not -1. On overflow it becomes -1.
QV_BOOL addTo( QV_INT *number, QV_INT increment )
{
    QV_BOOL fits = QV_INT_ADD_OK( *number, increment );
    *number = fits ? *number + increment : -1;
    return fits;
}

} // namespace

QV_LOCATION *qv::locationCreate( QV_STRING *description, QV_PATH *path, QV_INT line, QV_INT column )
{
    auto *loc = create<QV_LOCATION>( qvLocationSort() );
    loc->description = retainedOptional( description );
    loc->path = retainedOptional( path );
    loc->line = line;
    loc->column = column;
    return loc;
}

void qv___LocationFreeFunc( qvObj thisObj )
{
    auto *loc = static_cast<QV_LOCATION *>( thisObj );
    qv::releaseOptional( loc->description );
    qv::releaseOptional( loc->path );
}

QV_STRING *qv___LocationToStringFunc( qvObj thisObj )
{
    auto *loc = static_cast<QV_LOCATION *>( thisObj );
    qv::Local<QV_STRING> text( qvStringCreate() );
    if ( loc->description )
        qvStringAppend( text.edit(), loc->description );

    qv::Local<QV_STRING> pathText( loc->path ? qvPathTryEncode( loc->path ) : nullptr );
    if ( pathText )
    {
        if ( qv::stringLength( text ) > 0 )
            qv::stringAppendLiteral( text.edit(), ":" );
        qvStringAppend( text.edit(), pathText );
    }

    if ( loc->line != -1 && loc->column != -1 )
        qvStringAppendFormatCstr( text.edit(), "(%i,%i)", -1, loc->line, loc->column );
    else if ( loc->line != -1 )
        qvStringAppendFormatCstr( text.edit(), "(%i)", -1, loc->line );
    return text.give();
}

QV_LOCATION *qvLocationCreate( void )
{
    return qv::locationCreate( nullptr, nullptr, -1, -1 );
}

QV_LOCATION *qvLocationCreateFrom( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return qv::locationCreate( loc->description, loc->path, loc->line, loc->column );
}

QV_LOCATION *qvLocationCreateWithDescription( QV_STRING *description )
{
    QV_CHECK( description );
    return qv::locationCreate( description, nullptr, -1, -1 );
}

QV_LOCATION *qvLocationCreateWithPath( QV_PATH *path )
{
    QV_CHECK( path );
    return qv::locationCreate( nullptr, path, -1, -1 );
}

QV_LOCATION *qvLocationCreateWithLineOffsetAndColumn( QV_LOCATION *optionalLocation, QV_INT lineOffset,
                                                      QV_INT optionalColumn )
{
    QV_CHECK( lineOffset >= 0 );
    QV_CHECK( optionalColumn == -1 || optionalColumn > 0 );
    QV_INT line = optionalLocation && optionalLocation->line != -1 ? optionalLocation->line : 1;
    QV_CHECK( QV_INT_ADD_OK( line, lineOffset ) );
    return qv::locationCreate( optionalLocation ? optionalLocation->description : nullptr,
                               optionalLocation ? optionalLocation->path : nullptr, line + lineOffset,
                               optionalColumn );
}

QV_STRING *qvLocationDescription( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return qv::retainedOptional( loc->description );
}

QV_BOOL qvLocationHasDescription( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return QV_BOOL_FROM( loc->description );
}

void qvLocationSetDescription( QV_LOCATION **loc, QV_STRING *description )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( description );
    qv::makePrivate( loc, qvLocationCreateFrom );
    qv::assign( &( *loc )->description, description );
}

void qvLocationDelDescription( QV_LOCATION **loc )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    qv::makePrivate( loc, qvLocationCreateFrom );
    qv::replaceWith( &( *loc )->description, static_cast<QV_STRING *>( nullptr ) );
}

QV_PATH *qvLocationPath( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return qv::retainedOptional( loc->path );
}

QV_BOOL qvLocationHasPath( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return QV_BOOL_FROM( loc->path );
}

void qvLocationSetPath( QV_LOCATION **loc, QV_PATH *path )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( path );
    qv::makePrivate( loc, qvLocationCreateFrom );
    qv::assign( &( *loc )->path, path );
}

void qvLocationDelPath( QV_LOCATION **loc )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    qv::makePrivate( loc, qvLocationCreateFrom );
    qv::replaceWith( &( *loc )->path, static_cast<QV_PATH *>( nullptr ) );
}

QV_INT qvLocationLine( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return loc->line;
}

QV_BOOL qvLocationHasLine( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return loc->line != -1;
}

void qvLocationSetLine( QV_LOCATION **loc, QV_INT line )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( line > 0 );
    qv::makePrivate( loc, qvLocationCreateFrom );
    ( *loc )->line = line;
}

void qvLocationDelLine( QV_LOCATION **loc )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    qv::makePrivate( loc, qvLocationCreateFrom );
    ( *loc )->line = -1;
}

QV_INT qvLocationColumn( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return loc->column;
}

QV_BOOL qvLocationHasColumn( QV_LOCATION *loc )
{
    QV_CHECK( loc );
    return loc->column != -1;
}

void qvLocationSetColumn( QV_LOCATION **loc, QV_INT column )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( column > 0 );
    qv::makePrivate( loc, qvLocationCreateFrom );
    ( *loc )->column = column;
}

void qvLocationDelColumn( QV_LOCATION **loc )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    qv::makePrivate( loc, qvLocationCreateFrom );
    ( *loc )->column = -1;
}

QV_BOOL qvLocationIncrementLine( QV_LOCATION **loc, QV_INT increment )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( increment >= 0 );
    if ( ( *loc )->line == -1 )
        return QV_FALSE;
    qv::makePrivate( loc, qvLocationCreateFrom );
    return addTo( &( *loc )->line, increment );
}

QV_BOOL qvLocationIncrementColumn( QV_LOCATION **loc, QV_INT increment )
{
    QV_CHECK( loc );
    QV_CHECK( *loc );
    QV_CHECK( increment >= 0 );
    if ( ( *loc )->column == -1 )
        return QV_FALSE;
    qv::makePrivate( loc, qvLocationCreateFrom );
    return addTo( &( *loc )->column, increment );
}
