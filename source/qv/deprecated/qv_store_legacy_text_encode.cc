#include <qv/deprecated/qv_store_legacy_text.hh>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/deprecated/qv_store_legacy_walk.hh>
#include <qv/io/qv_buffer_byte_sink.h>
#include <qv/io/qv_line_sink.h>
#include <qv/io/qv_nlf_line_sink.h>
#include <qv/runtime/qv_local.hh>

namespace
{

constexpr QV_INT escapeDigits = 6;

// General category Cc.
bool isControlChar( QV_CHAR ch )
{
    return ch < 0x20 || ( ch >= 0x7F && ch < 0xA0 );
}

void appendAddressEscaped( QV_STRING **dest, QV_STRING *address )
{
    const QV_CHAR *chs = qv::stringBacking( address );
    const QV_CHAR *end = chs + qv::stringLength( address );
    for ( ;; )
    {
        QV_INT run = qv::findChar( chs, end - chs, '.' );
        qv::stringAppendChars( dest, chs, run == -1 ? end - chs : run );
        if ( run == -1 )
            return;
        qv::stringAppendLiteral( dest, "\\." );
        chs += run + 1;
    }
}

void appendEscapeOf( QV_STRING **dest, QV_CHAR ch )
{
    if ( ch == '%' )
    {
        qv::stringAppendLiteral( dest, "%%" );
        return;
    }
    QV_CHAR *gap = qv::stringOpenEnd( dest, escapeDigits + 1 );
    gap[0] = '%';
    for ( QV_INT idx = escapeDigits; idx > 0; idx-- )
    {
        gap[idx] = static_cast<unsigned char>( "0123456789abcdef"[ch & 0xF] );
        ch >>= 4;
    }
}

void appendValueEscaped( QV_STRING **dest, QV_STRING *value )
{
    const QV_CHAR *chs = qv::stringBacking( value );
    const QV_CHAR *end = chs + qv::stringLength( value );
    while ( chs < end )
    {
        const QV_CHAR *run = chs;
        while ( chs < end && *chs != '%' && !isControlChar( *chs ) )
        {
            chs++;
        }
        qv::stringAppendChars( dest, run, chs - run );
        if ( chs < end )
            appendEscapeOf( dest, *chs++ );
    }
}

// The lines of a store, one at a time.
class LineWriter
{
  public:
    explicit LineWriter( QV_STORE *store ) : walk_( store ), path_( qvStringCreate() ) {}

    // The next line, owned by the caller; null at the end.
    QV_STRING *nextLine()
    {
        while ( walk_.next() )
        {
            qvStringDelTrailing( path_.edit(), qv::stringLength( path_ ) - walk_.mark() );
            qv::Local<QV_STRING> address( walk_.address() );
            qvObj entry = walk_.entry();
            if ( !qv::isStore( entry ) )
                return valueLine( address, static_cast<QV___STORE_VALUE *>( entry )->value );
            appendAddressEscaped( path_.edit(), address );
            qv::stringAppendChar( path_.edit(), '.' );
            auto *subStore = static_cast<QV_STORE *>( entry );
            if ( qv::storeLength( subStore ) == 0 )
                return qvStringCreateFrom( path_ );
            walk_.enter( subStore, qv::stringLength( path_ ) );
        }
        return nullptr;
    }

  private:
    qv::StoreWalk walk_; // stores are marked with the length of their path
    qv::Local<QV_STRING> path_;

    QV_STRING *valueLine( QV_STRING *address, QV_STRING *value )
    {
        qv::Local<QV_STRING> line( qvStringCreateFrom( path_ ) );
        appendAddressEscaped( line.edit(), address );
        qv::stringAppendChar( line.edit(), '=' );
        appendValueEscaped( line.edit(), value );
        return line.give();
    }
};

} // namespace

QV_STRING *qv___StoreAddressEscape( QV_STRING *address )
{
    qv::Local<QV_STRING> escaped( qvStringCreate() );
    appendAddressEscaped( escaped.edit(), address );
    return escaped.give();
}

QV_STRING *qv___StoreValueEscape( QV_STRING *value )
{
    qv::Local<QV_STRING> escaped( qvStringCreate() );
    appendValueEscaped( escaped.edit(), value );
    return escaped.give();
}

bool qv::storeLegacyTextWrite( QV_STORE *store, QV_BYTE_SINK *sink, QV_CHARSET charset,
                               QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags )
{
    Local<QV_CHAR_SINK> chars( qvCharsetCreateCharSink( sink, charset, charsetFlags ) );
    Local<QV_NLF_LINE_SINK> lines( qvNlfLineSinkCreate( chars, nlfFlags ) );
    Local<QV_LINE_SINK> lineSink( qvNlfLineSinkLineSink( lines ) );
    return qvStoreLegacyTextTryEncodeToLineSink( store, lineSink ) && qvLineSinkFlush( lineSink );
}

QV_VECTOR *qvStoreLegacyTextEncodeToStringVector( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_VECTOR> vec( qvVectorCreate() );
    LineWriter writer( store );
    while ( QV_STRING *line = writer.nextLine() )
    {
        qv::vectorAppendGiven( vec.edit(), qvStringObj( line ) );
    }
    return vec.give();
}

QV_BOOL qvStoreLegacyTextTryEncodeToLineSink( QV_STORE *store, QV_LINE_SINK *ls )
{
    QV_CHECK( store );
    QV_CHECK( ls );
    LineWriter writer( store );
    for ( ;; )
    {
        qv::Local<QV_STRING> line( writer.nextLine() );
        if ( !line || !qvLineSinkWrite( ls, line ) )
            return QV_BOOL_FROM( !qvLineSinkError( ls ) );
    }
}

QV_BUFFER *qvStoreLegacyTextTryEncodeToBuffer( QV_STORE *store, QV_CHARSET charset,
                                               QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags )
{
    QV_CHECK( store );
    qv::Local<QV_BUFFER_BYTE_SINK> bytes( qvBufferByteSinkCreate() );
    qv::Local<QV_BYTE_SINK> sink( qvBufferByteSinkByteSink( bytes ) );
    bool isGood = qv::storeLegacyTextWrite( store, sink, charset, charsetFlags, nlfFlags );
    return isGood ? qvBufferByteSinkBuffer( bytes ) : nullptr;
}
