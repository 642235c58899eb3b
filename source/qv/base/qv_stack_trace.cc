#include <qv/base/qv_stack_trace.hh>

#include <execinfo.h>
#include <stdlib.h>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/sys/qv_int.h>

namespace
{

constexpr int maxFrames = 4000;

void qv___StackTraceFreeFunc( qvObj thisObj )
{
    QV_STACK_TRACE *thisTrace = qvStackTraceFrom( thisObj );
    QV_CHECK( thisTrace );
    free( thisTrace->symbols );
}

} // namespace

QV_SORT_DEFINE( QV_STACK_TRACE, qvStackTrace, { .freeFunc = qv___StackTraceFreeFunc } )

void qv___StackTraceStartup() {}

void qv___StackTraceShutdown() {}

void qv___StackTraceUpdateSymbols() {}

// Its own frame is left out, so it must have one.
[[gnu::noinline]] QV_STACK_TRACE *qvStackTraceCreate( QV_INT skip, QV_INT maxLength )
{
    QV_CHECK( skip >= 0 );
    QV_CHECK( maxLength >= -1 );
    QV_STACK_TRACE *st = qv::create<QV_STACK_TRACE>( qvStackTraceSort() );
    st->symbols = nullptr;
    st->symbolsLength = 0;
    void *frames[maxFrames];
    QV_INT length = backtrace( frames, maxFrames );
    QV_INT first = qvIntMin( qvIntAddSaturating( skip, 1 ), length );
    QV_INT wanted = maxLength == -1 ? length - first : qvIntMin( maxLength, length - first );
    if ( wanted > 0 )
    {
        st->symbols = backtrace_symbols( frames + first, static_cast<int>( wanted ) );
        QV_CHECK( st->symbols );
        st->symbolsLength = wanted;
    }
    return st;
}

QV_INT qvStackTraceLength( QV_STACK_TRACE *st )
{
    QV_CHECK( st );
    return st->symbolsLength;
}

QV_STRING *qvStackTraceAt( QV_STACK_TRACE *st, QV_INT idx )
{
    QV_CHECK( st );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < st->symbolsLength );
    return qvStringCreateFromCstr( st->symbols[idx], -1 );
}

QV_VECTOR *qvStackTraceVector( QV_STACK_TRACE *st )
{
    QV_CHECK( st );
    QV_VECTOR *lines = qvVectorCreate();
    for ( QV_INT idx = 0; idx < st->symbolsLength; idx++ )
    {
        qv::Local<QV_STRING> line( qvStackTraceAt( st, idx ) );
        qvVectorAppendObj( &lines, qvStringObj( line ) );
    }
    return lines;
}

void qvStackTracePrint( QV_STACK_TRACE *st )
{
    QV_CHECK( st );
    for ( QV_INT idx = 0; idx < st->symbolsLength; idx++ )
    {
        qv___RuntimePrintCstr( st->symbols[idx], -1 );
    }
}
