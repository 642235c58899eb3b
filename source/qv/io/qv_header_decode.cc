#include <qv/io/qv_header.hh>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_name.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_store_encoding.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.hh>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module_version.h>

// Decoding of headers.

namespace
{

constexpr QV_NLF_FLAGS allNewLines = 255;

// The position in the bytes. line is the location of the line that it stands in.
struct Scan
{
    QV_BUFFER *buffer;
    const unsigned char *bytes;
    QV_INT length;
    QV_INT at;
    qv::Local<QV_LOCATION> line;
    QV_HEADER_DECODE_RESULT *failure; // null while all is well
};

bool fail( Scan *scan, QV_HEADER_DECODE_ERROR_CODE code )
{
    qv::Local<QV_HEADER_DECODE_ERROR> err( qvHeaderDecodeErrorCreate( code, scan->line ) );
    scan->failure = qvHeaderDecodeResultCreateError( err );
    return false;
}

QV_INT skipBlanks( const Scan *scan, QV_INT at )
{
    while ( at < scan->length && ( scan->bytes[at] == ' ' || scan->bytes[at] == '\t' ) )
    {
        at++;
    }
    return at;
}

QV_INT skipEquals( const Scan *scan, QV_INT at )
{
    while ( at < scan->length && scan->bytes[at] == '=' )
    {
        at++;
    }
    return at;
}

// Length of the new line at a place, 0 for none; form gets its flag.
QV_INT newLineAt( const Scan *scan, QV_INT at, QV_NLF_FLAGS *form )
{
    return qv___NlfFlagsSkipUtf8BytesNlf( scan->bytes + at, scan->length - at, allNewLines, form );
}

void passLine( Scan *scan, QV_INT next )
{
    scan->at = next;
    qvLocationIncrementLine( scan->line.edit(), 1 );
}

// Whether the line begins, behind blanks, as a separator does.
bool isSeparator( const Scan *scan )
{
    QV_INT first = skipBlanks( scan, scan->at );
    return skipEquals( scan, first ) - first >= 3;
}

// The place behind the blanks and equals signs of a separator line.
QV_INT separatorEnd( const Scan *scan )
{
    return skipBlanks( scan, skipEquals( scan, skipBlanks( scan, scan->at ) ) );
}

void skipByteOrderMark( Scan *scan )
{
    if ( scan->length >= 3 && scan->bytes[0] == 0xEF && scan->bytes[1] == 0xBB && scan->bytes[2] == 0xBF )
        scan->at = 3;
}

void skipBlankLines( Scan *scan )
{
    for ( ;; )
    {
        QV_INT lineEnd = skipBlanks( scan, scan->at );
        QV_INT newLine = newLineAt( scan, lineEnd, nullptr );
        if ( newLine == 0 )
            return;
        passLine( scan, lineEnd + newLine );
    }
}

bool readLeadingSeparator( Scan *scan, QV_NLF_FLAGS *form )
{
    QV_INT lineEnd = separatorEnd( scan );
    QV_INT newLine = newLineAt( scan, lineEnd, form );
    if ( !isSeparator( scan ) || newLine == 0 )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_HEADER_START );
    passLine( scan, lineEnd + newLine );
    return true;
}

// The part of the indicator line at a position, borrowed.
QV_STRING *partAt( QV_VECTOR *parts, QV_INT idx )
{
    return qvStringFrom( qv::vectorAt( parts, idx ) );
}

// Reads the line with type and version; hdr becomes a header with both.
bool readIndicator( Scan *scan, qv::Local<QV_HEADER> *hdr )
{
    const unsigned char *line = scan->bytes + scan->at;
    QV_INT length = qv___NlfFlagsSkipUtf8BytesNonNlf( line, scan->length - scan->at, allNewLines );
    qv::Local<QV_BUFFER> lineBytes( qvBufferCreateFromBytesCopy( line, length ) );
    qv::Local<QV_STRING> text( qvCharsetTryConvertBufferToStringWithFlags(
        QV_CHARSET_UTF_8, lineBytes, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    if ( !text )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_INDICATOR );
    qv::Local<QV_VECTOR> parts( qvStringSplitWhitespace( text, 3 ) );
    if ( qv::vectorLength( parts ) > 2 )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_INDICATOR );
    if ( !qvNameOk( partAt( parts, 0 ), QV_TRUE ) )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_TYPE );
    hdr->take( qvHeaderCreate( partAt( parts, 0 ) ) );
    if ( qv::vectorLength( parts ) == 2 )
    {
        qv::Local<QV_MODULE_VERSION> version( qvModuleVersionTryCreateFromString( partAt( parts, 1 ) ) );
        if ( !version )
            return fail( scan, QV_HEADER_DECODE_ERROR_CODE_MODULE_VERSION );
        qvHeaderSetModuleVersion( hdr->edit(), version );
    }
    QV_INT newLine = newLineAt( scan, scan->at + length, nullptr );
    if ( newLine == 0 )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_INDICATOR );
    passLine( scan, scan->at + length + newLine );
    return true;
}

// Passes the lines up to the trailing separator.
bool passStoreText( Scan *scan )
{
    while ( !isSeparator( scan ) )
    {
        QV_INT lineEnd = scan->at + qv___NlfFlagsSkipUtf8BytesNonNlf( scan->bytes + scan->at,
                                                                      scan->length - scan->at, allNewLines );
        QV_INT newLine = newLineAt( scan, lineEnd, nullptr );
        if ( newLine == 0 )
            return fail( scan, QV_HEADER_DECODE_ERROR_CODE_HEADER_END );
        passLine( scan, lineEnd + newLine );
    }
    return true;
}

bool readTrailingSeparator( Scan *scan, QV_NLF_FLAGS form )
{
    QV_INT lineEnd = separatorEnd( scan );
    QV_NLF_FLAGS thisForm;
    QV_INT newLine = newLineAt( scan, lineEnd, &thisForm );
    if ( newLine == 0 || thisForm != form )
        return fail( scan, QV_HEADER_DECODE_ERROR_CODE_HEADER_END_NLF );
    passLine( scan, lineEnd + newLine );
    return true;
}

bool readStore( Scan *scan, QV_INT begin, QV_INT end, QV_LOCATION *location, qv::Local<QV_HEADER> *hdr )
{
    qv::Local<QV_BUFFER> lines( qvBufferRead( scan->buffer, begin, end - begin ) );
    qv::Local<QV_STORE_DECODE_RESULT> result( qvStoreDecode( lines, location ) );
    if ( qvStoreDecodeResultIsError( result ) )
    {
        qv::Local<QV_STORE_DECODE_ERROR> storeError( qvStoreDecodeResultError( result ) );
        qv::Local<QV_HEADER_DECODE_ERROR> err( qvHeaderDecodeErrorCreateWithStoreDecodeError( storeError ) );
        scan->failure = qvHeaderDecodeResultCreateError( err );
        return false;
    }
    qv::Local<QV_STORE> store( qvStoreDecodeResultStore( result ) );
    qvHeaderSetStore( hdr->edit(), store );
    return true;
}

// Reads the whole header; scan stands behind it then.
bool readHeader( Scan *scan, qv::Local<QV_HEADER> *hdr )
{
    QV_NLF_FLAGS form;
    skipByteOrderMark( scan );
    skipBlankLines( scan );
    if ( !readLeadingSeparator( scan, &form ) || !readIndicator( scan, hdr ) )
        return false;
    QV_INT storeBegin = scan->at;
    qv::Local<QV_LOCATION> storeLocation = qv::Local<QV_LOCATION>::share( scan->line );
    if ( !passStoreText( scan ) )
        return false;
    QV_INT storeEnd = scan->at;
    return readTrailingSeparator( scan, form ) && readStore( scan, storeBegin, storeEnd, storeLocation, hdr );
}

} // namespace

QV_HEADER_DECODE_RESULT *qvHeaderDecode( QV_BUFFER *buffer, QV_LOCATION *location )
{
    QV_CHECK( buffer );
    Scan scan = { buffer,
                  qvBufferBacking( buffer ),
                  qvBufferLength( buffer ),
                  0,
                  qv::Local<QV_LOCATION>( qvLocationCreateWithLineOffsetAndColumn( location, 0, -1 ) ),
                  nullptr };
    qv::Local<QV_HEADER> hdr;
    if ( !readHeader( &scan, &hdr ) )
        return scan.failure;
    qv::Local<QV_BUFFER> trailing( qvBufferRead( buffer, scan.at, scan.length - scan.at ) );
    return qvHeaderDecodeResultCreateSuccess( hdr, trailing, scan.line );
}

QV_HEADER *qvHeaderTryDecode( QV_BUFFER **buffer, QV_LOCATION **location )
{
    QV_CHECK( buffer );
    qv::Local<QV_HEADER_DECODE_RESULT> result( qvHeaderDecode( *buffer, location ? *location : nullptr ) );
    if ( qvHeaderDecodeResultIsError( result ) )
        return nullptr;
    qv::replaceWith( buffer, qvHeaderDecodeResultTrailing( result ) );
    if ( location )
        qv::replaceWith( location, qvHeaderDecodeResultTrailingBaseLocation( result ) );
    return qvHeaderDecodeResultHeader( result );
}
