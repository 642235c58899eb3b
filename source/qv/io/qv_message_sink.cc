#include <qv/io/qv_message_sink.hh>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.hh>
#include <qv/io/qv_message.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

QV_SORT_DEFINE( QV_MESSAGE_SINK, qvMessageSink, { .freeFunc = qv___MessageSinkFreeFunc } )

void qv___MessageSinkFreeFunc( qvObj thisObj )
{
    auto *sink = static_cast<QV_MESSAGE_SINK *>( thisObj );
    qvMessageSinkFlush( sink );
    qv::releaseOptional( sink->closure );
}

QV_MESSAGE_SINK *qv___MessageSinkCreate( qv___MessageSinkWriteFunc writeFunc, qv___SinkFlushFunc flushFunc,
                                         qvObj closure )
{
    QV_CHECK( writeFunc );
    QV_CHECK( flushFunc );
    auto *sink = qv::create<QV_MESSAGE_SINK>( qvMessageSinkSort() );
    sink->writeFunc = writeFunc;
    sink->flushFunc = flushFunc;
    sink->closure = qv::retainedOptional( closure );
    sink->error = QV_FALSE;
    sink->messagesWritten = 0;
    sink->level = QV_MESSAGE_LEVEL_NORMAL;
    return sink;
}

QV_BOOL qvMessageSinkWriteMessage( QV_MESSAGE_SINK *sink, QV_MESSAGE *msg )
{
    QV_CHECK( sink );
    QV_CHECK( msg );
    if ( sink->level < msg->level )
        sink->level = msg->level;
    if ( sink->error )
        return QV_FALSE;
    if ( !sink->writeFunc( sink->closure, msg ) )
    {
        sink->error = QV_TRUE;
        return QV_FALSE;
    }
    if ( sink->messagesWritten < QV_INT_MAX )
        sink->messagesWritten++;
    return QV_TRUE;
}

QV_BOOL qvMessageSinkWrite( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                            QV_STRING *text )
{
    qv::Local<QV_MESSAGE> msg( qvMessageCreate( level, optionalLocation, text ) );
    return qvMessageSinkWriteMessage( sink, msg );
}

QV_BOOL qvMessageSinkWriteCstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                const char *text, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromCstr( text, length ) );
    return qvMessageSinkWrite( sink, level, optionalLocation, made );
}

QV_BOOL qvMessageSinkWriteWcstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level, QV_LOCATION *optionalLocation,
                                 const wchar_t *text, QV_INT length )
{
    qv::Local<QV_STRING> made( qvStringCreateFromWcstr( text, length ) );
    return qvMessageSinkWrite( sink, level, optionalLocation, made );
}

QV_BOOL qvMessageSinkWriteFormat( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                  QV_LOCATION *optionalLocation, QV_STRING *format, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, format );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatArgList( format, &list ) );
    va_end( list.args );
    return qvMessageSinkWrite( sink, level, optionalLocation, made );
}

QV_BOOL qvMessageSinkWriteFormatCstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                      QV_LOCATION *optionalLocation, const char *format, QV_INT formatLength,
                                      ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatCstrArgList( format, formatLength, &list ) );
    va_end( list.args );
    return qvMessageSinkWrite( sink, level, optionalLocation, made );
}

QV_BOOL qvMessageSinkWriteFormatWcstr( QV_MESSAGE_SINK *sink, QV_MESSAGE_LEVEL level,
                                       QV_LOCATION *optionalLocation, const wchar_t *format,
                                       QV_INT formatLength, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv::Local<QV_STRING> made( qvStringCreateFromFormatWcstrArgList( format, formatLength, &list ) );
    va_end( list.args );
    return qvMessageSinkWrite( sink, level, optionalLocation, made );
}

QV_BOOL qvMessageSinkWriteMessages( QV_MESSAGE_SINK *sink, QV_VECTOR *messages )
{
    QV_CHECK( sink );
    QV_CHECK( messages );
    QV_CHECK( qvVectorContainsOnly( messages, qvMessageSort() ) );
    // The sink's function may drop the caller's vector.
    auto held = qv::Local<QV_VECTOR>::share( messages );
    QV_BOOL allWritten = QV_TRUE;
    for ( QV_INT idx = 0; idx < qv::vectorLength( held ); idx++ )
    {
        auto *msg = static_cast<QV_MESSAGE *>( qv::vectorAt( held, idx ) );
        if ( !qvMessageSinkWriteMessage( sink, msg ) )
            allWritten = QV_FALSE;
    }
    return allWritten;
}

QV_BOOL qvMessageSinkFlush( QV_MESSAGE_SINK *sink )
{
    QV_CHECK( sink );
    if ( sink->error )
        return QV_FALSE;
    if ( !sink->flushFunc( sink->closure ) )
        sink->error = QV_TRUE;
    return !sink->error;
}

QV_BOOL qvMessageSinkError( QV_MESSAGE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->error;
}

QV_MESSAGE_LEVEL qvMessageSinkLevel( QV_MESSAGE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->level;
}

QV_INT qvMessageSinkMessagesWritten( QV_MESSAGE_SINK *sink )
{
    QV_CHECK( sink );
    return sink->messagesWritten;
}
