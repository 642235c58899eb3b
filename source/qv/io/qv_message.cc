#include <qv/io/qv_message.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.hh>
#include <qv/io/qv_location.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

QV_SORT_DEFINE( QV_MESSAGE, qvMessage,
                { .freeFunc = qv___MessageFreeFunc, .toStringFunc = qv___MessageToStringFunc } )

constinit QV_ENUM *qv___MessageLevelEnum = nullptr;

namespace
{

constexpr qv::EnumName levelNames[] = {
    { QV_MESSAGE_LEVEL_DECORATIVE, "QV_MESSAGE_LEVEL_DECORATIVE" },
    { QV_MESSAGE_LEVEL_NORMAL, "QV_MESSAGE_LEVEL_NORMAL" },
    { QV_MESSAGE_LEVEL_WARNING, "QV_MESSAGE_LEVEL_WARNING" },
    { QV_MESSAGE_LEVEL_ERROR, "QV_MESSAGE_LEVEL_ERROR" },
};

// Puts ": " behind what stands there already.
void separate( QV_STRING **text )
{
    if ( qv::stringLength( *text ) > 0 )
        qv::stringAppendLiteral( text, ": " );
}

} // namespace

void qv___MessageLevelStartup()
{
    qv___MessageLevelEnum = qv::enumFromTable( levelNames, QV_SIZEOF_ARRAY( levelNames ) );
}

void qv___MessageLevelShutdown()
{
    qv::retire( &qv___MessageLevelEnum );
}

void qv___MessageFreeFunc( qvObj thisObj )
{
    auto *msg = static_cast<QV_MESSAGE *>( thisObj );
    qv::releaseOptional( msg->location );
    qv::release( qv::objOf( msg->text ) );
}

QV_STRING *qv___MessageToStringFunc( qvObj thisObj )
{
    auto *msg = static_cast<QV_MESSAGE *>( thisObj );
    qv::Local<QV_STRING> text( msg->location ? qvLocationToString( msg->location ) : qvStringCreate() );
    if ( msg->level == QV_MESSAGE_LEVEL_WARNING )
    {
        separate( text.edit() );
        qv::stringAppendLiteral( text.edit(), "warning" );
    }
    else if ( msg->level == QV_MESSAGE_LEVEL_ERROR )
    {
        separate( text.edit() );
        qv::stringAppendLiteral( text.edit(), "error" );
    }
    if ( qv::stringLength( msg->text ) > 0 )
    {
        separate( text.edit() );
        qvStringAppend( text.edit(), msg->text );
    }
    return text.give();
}

QV_MESSAGE *qvMessageCreate( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation, QV_STRING *text )
{
    QV_CHECK( QV_MESSAGE_LEVEL_OK( level ) );
    QV_CHECK( text );
    auto *msg = qv::create<QV_MESSAGE>( qvMessageSort() );
    msg->level = level;
    msg->location = qv::retainedOptional( optionalLocation );
    msg->text = qv::retained( text );
    return msg;
}

QV_MESSAGE *qvMessageCreateCstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation, const char *text,
                                 QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromCstr( text, length ) );
    return qvMessageCreate( level, optionalLocation, made );
}

QV_MESSAGE *qvMessageCreateWcstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation, const wchar_t *text,
                                  QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromWcstr( text, length ) );
    return qvMessageCreate( level, optionalLocation, made );
}

QV_MESSAGE *qvMessageCreateFormat( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation, QV_STRING *format,
                                   ... )
{
    QV_ARG_LIST list;
    va_start( list.args, format );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatArgList( format, &list ) );
    va_end( list.args );
    return qvMessageCreate( level, optionalLocation, made );
}

QV_MESSAGE *qvMessageCreateFormatCstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                       const char *format, QV_INT formatLength, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatCstrArgList( format, formatLength, &list ) );
    va_end( list.args );
    return qvMessageCreate( level, optionalLocation, made );
}

QV_MESSAGE *qvMessageCreateFormatWcstr( QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                        const wchar_t *format, QV_INT formatLength, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatWcstrArgList( format, formatLength, &list ) );
    va_end( list.args );
    return qvMessageCreate( level, optionalLocation, made );
}

QV_MESSAGE *qvMessageCreateFrom( QV_MESSAGE *msg )
{
    QV_CHECK( msg );
    return qvMessageCreate( msg->level, msg->location, msg->text );
}

QV_MESSAGE_LEVEL qvMessageLevel( QV_MESSAGE *msg )
{
    QV_CHECK( msg );
    return msg->level;
}

void qvMessageSetLevel( QV_MESSAGE **msg, QV_MESSAGE_LEVEL level )
{
    QV_CHECK( msg );
    QV_CHECK( *msg );
    QV_CHECK( QV_MESSAGE_LEVEL_OK( level ) );
    qv::makePrivate( msg, qvMessageCreateFrom );
    ( *msg )->level = level;
}

QV_LOCATION *qvMessageLocation( QV_MESSAGE *msg )
{
    QV_CHECK( msg );
    return qv::retainedOptional( msg->location );
}

QV_BOOL qvMessageHasLocation( QV_MESSAGE *msg )
{
    QV_CHECK( msg );
    return QV_BOOL_FROM( msg->location );
}

void qvMessageSetLocation( QV_MESSAGE **msg, QV_LOCATION *loc )
{
    QV_CHECK( msg );
    QV_CHECK( *msg );
    QV_CHECK( loc );
    qv::makePrivate( msg, qvMessageCreateFrom );
    qv::assign( &( *msg )->location, loc );
}

void qvMessageDelLocation( QV_MESSAGE **msg )
{
    QV_CHECK( msg );
    QV_CHECK( *msg );
    qv::makePrivate( msg, qvMessageCreateFrom );
    qv::replaceWith( &( *msg )->location, static_cast<QV_LOCATION *>( nullptr ) );
}

QV_STRING *qvMessageText( QV_MESSAGE *msg )
{
    QV_CHECK( msg );
    return qv::retained( msg->text );
}

void qvMessageSetText( QV_MESSAGE **msg, QV_STRING *text )
{
    QV_CHECK( msg );
    QV_CHECK( *msg );
    QV_CHECK( text );
    qv::makePrivate( msg, qvMessageCreateFrom );
    qv::assign( &( *msg )->text, text );
}

QV_MESSAGE_LEVEL qvMessageLevelFromString( QV_STRING *text )
{
    return qvEnumParse( qv___MessageLevelEnum, text );
}

QV_STRING *qvMessageLevelToString( QV_MESSAGE_LEVEL lvl )
{
    QV_CHECK( QV_MESSAGE_LEVEL_OK( lvl ) );
    return qvEnumGenerate( qv___MessageLevelEnum, lvl );
}
