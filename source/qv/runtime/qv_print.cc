#include <qv/runtime/qv_print.hh>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.h>
#include <qv/base/qv_stack_trace.h>
#include <qv/io/qv_message.h>
#include <qv/io/qv_message_sink.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>

namespace
{

// Written at startup and shutdown only; the lock serializes the calls of the function.
constinit QV_RUNTIME_PRINT_FUNC qv___RuntimePrintFunc = nullptr;
constinit qv___Lock qv___RuntimePrintLock = {};

QV_BOOL printLine( qvObj, QV_STRING *line )
{
    qv___RuntimePrint( line );
    return QV_TRUE;
}

QV_BOOL printMessage( qvObj, QV_MESSAGE *message )
{
    qv::Local<QV_STRING> text( qvMessageToString( message ) );
    qv___RuntimePrint( text );
    return QV_TRUE;
}

QV_BOOL flushNothing( qvObj )
{
    return QV_TRUE;
}

} // namespace

void qv___RuntimePrintStartup( QV_RUNTIME_PRINT_FUNC printFunc )
{
    qv___LockInitialize( &qv___RuntimePrintLock );
    qv___RuntimePrintFunc = printFunc;
}

void qv___RuntimePrintShutdown()
{
    qv___LockFinalize( &qv___RuntimePrintLock );
    qv___RuntimePrintFunc = nullptr;
}

void qv___RuntimePrintChars( const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( chsLength >= 0 );
    QV_CHECK( chs || chsLength == 0 );
    if ( qv___RuntimePrintFunc )
    {
        qv::Locked locked( &qv___RuntimePrintLock );
        qv___RuntimePrintFunc( chs, chsLength );
    }
}

void qv___RuntimePrint( QV_STRING *text )
{
    QV_CHECK( text );
    qv___RuntimePrintChars( qvStringBacking( text ), qvStringLength( text ) );
}

void qv___RuntimePrintCstr( const char *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( str, length ) );
    qv___RuntimePrint( text );
}

void qv___RuntimePrintWcstr( const wchar_t *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( str, length ) );
    qv___RuntimePrint( text );
}

void qv___RuntimePrintFormat( QV_STRING *format, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, format );
    qv___RuntimePrintFormatArgList( format, &list );
    va_end( list.args );
}

void qv___RuntimePrintFormatArgList( QV_STRING *format, QV_ARG_LIST *argList )
{
    qv::Local<QV_STRING> text( qvStringCreateFromFormatArgList( format, argList ) );
    qv___RuntimePrint( text );
}

void qv___RuntimePrintFormatCstr( const char *format, QV_INT formatLength, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv___RuntimePrintFormatCstrArgList( format, formatLength, &list );
    va_end( list.args );
}

void qv___RuntimePrintFormatCstrArgList( const char *format, QV_INT formatLength, QV_ARG_LIST *argList )
{
    qv::Local<QV_STRING> text( qvStringCreateFromFormatCstrArgList( format, formatLength, argList ) );
    qv___RuntimePrint( text );
}

void qv___RuntimePrintFormatWcstr( const wchar_t *format, QV_INT formatLength, ... )
{
    QV_ARG_LIST list;
    va_start( list.args, formatLength );
    qv___RuntimePrintFormatWcstrArgList( format, formatLength, &list );
    va_end( list.args );
}

void qv___RuntimePrintFormatWcstrArgList( const wchar_t *format, QV_INT formatLength, QV_ARG_LIST *argList )
{
    qv::Local<QV_STRING> text( qvStringCreateFromFormatWcstrArgList( format, formatLength, argList ) );
    qv___RuntimePrint( text );
}

void qv___RuntimePrintLines( QV_VECTOR *lines )
{
    QV_CHECK( lines );
    for ( QV_INT idx = 0; idx < qvVectorLength( lines ); idx++ )
    {
        qv___RuntimePrintFormatCstr( "%~o", -1, qvVectorObjAt( lines, idx ) );
    }
}

// Its own frame is left out, so it must have one.
[[gnu::noinline]] void qv___RuntimePrintStackTrace()
{
    qv::Local<QV_STACK_TRACE> trace( qvStackTraceCreate( 1, -1 ) );
    qvStackTracePrint( trace );
}

QV_LINE_SINK *qv___RuntimePrintLineSinkCreate()
{
    return qv___LineSinkCreate( printLine, flushNothing, nullptr );
}

QV_MESSAGE_SINK *qv___RuntimePrintMessageSinkCreate()
{
    return qv___MessageSinkCreate( printMessage, flushNothing, nullptr );
}
