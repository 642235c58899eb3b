// Data files: finding out the encoding, reading, writing, places inside.

#include "tool_store.hh"

#include <qv/charset/qv_charset.h>
#include <qv/unicode/qv_unicode_lookups.h>

#include <algorithm>
#include <filesystem>

namespace
{

constexpr std::string_view encodingPrefix = "QV_STORE_ENCODING_";

bool failsWith( QV_STORE_DECODE_RESULT *result, QV_STORE_DECODE_ERROR_CODE code )
{
    tool::Owner error( qvStoreDecodeResultError( result ) );
    return error && qvStoreDecodeErrorCode( error ) == code;
}

tool::Owner<QV_STORE_DECODE_RESULT> decode( QV_BUFFER *bytes, QV_LOCATION *place, QV_STORE_ENCODING encoding )
{
    tool::Owner result( qvStoreDecodeHeaderless( bytes, place, encoding ) );
    if ( !failsWith( result, QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING ) )
        return result;
    tool::Owner located = tool::locatedJsonFailure( bytes, place );
    return located ? std::move( located ) : std::move( result );
}

// An encoding that takes any bytes for a store proves nothing by taking these. It is read only where a header or the
// user names it.
bool takesAnything( QV_STORE_ENCODING encoding )
{
    static constexpr unsigned char noise[] = "\x01}\xFF]\x80\"=\x02 {";
    tool::Owner bytes( qvBufferCreateFromBytesCopy( noise, sizeof noise ) );
    return qvStoreDecodeResultIsSuccess( decode( bytes, nullptr, encoding ) );
}

// How far a failed decoding got, for the choice of the message that helps most.
std::pair<QV_INT, QV_INT> reach( QV_STORE_DECODE_RESULT *result )
{
    tool::Owner error( qvStoreDecodeResultError( result ) );
    tool::Owner place( qvStoreDecodeErrorLocation( error ) );
    return place ? std::pair( qvLocationLine( place ), qvLocationColumn( place ) )
                 : std::pair<QV_INT, QV_INT>( 0, 0 );
}

// A JSON text that is no store fails as JSON too, at its end, which tells nobody anything.
bool beginsNested( QV_BUFFER *bytes )
{
    std::string_view text( reinterpret_cast<const char *>( qvBufferBacking( bytes ) ),
                           static_cast<size_t>( qvBufferLength( bytes ) ) );
    size_t first = text.find_first_not_of( " \t\r\n\xEF\xBB\xBF" );
    return first != std::string_view::npos && ( text[first] == '{' || text[first] == '[' );
}

struct Detection
{
    tool::Owner<QV_STORE_DECODE_RESULT> result;
    QV_STORE_ENCODING encoding = -1;
};

// Tries the encodings in their order; if none fits, the result is the failure of the one that got furthest.
Detection detect( QV_BUFFER *bytes, QV_LOCATION *place )
{
    Detection best;
    for ( QV_STORE_ENCODING encoding = 0; QV_STORE_ENCODING_OK( encoding ); encoding++ )
    {
        if ( !qvStoreEncodingIsHeaderless( encoding ) || !tool::isAvailable( encoding ) )
            continue;
        if ( encoding == QV_STORE_ENCODING_HEADERLESS_JSON && !beginsNested( bytes ) )
            continue;
        tool::Owner result = decode( bytes, place, encoding );
        bool good = qvStoreDecodeResultIsSuccess( result );
        if ( good && takesAnything( encoding ) )
            continue;
        if ( good || !best.result || reach( result ) > reach( best.result ) )
            best = { std::move( result ), encoding };
        if ( good )
            break;
    }
    return best;
}

// The reason as a message that has a place, even where the library can't tell one.
void reportFailure( tool::Tool &tool, QV_STORE_DECODE_RESULT *result, QV_BUFFER *bytes, QV_LOCATION *place )
{
    tool::Owner error( qvStoreDecodeResultError( result ) );
    tool::Owner message( qvStoreDecodeErrorToMessage( error ) );
    if ( !qvMessageHasLocation( message ) )
    {
        tool::Owner<QV_LOCATION> found;
        if ( qvStoreDecodeErrorCode( error ) == QV_STORE_DECODE_ERROR_CODE_CHARSET )
            found = tool::locateInvalid( bytes, place, QV_CHARSET_UTF_8 );
        qvMessageSetLocation( message.edit(), found ? found : place );
    }
    tool.report( message );
}

// The text between the header's lines as standard text, which is what a header holds: the library tries all encodings on
// it, and so can't say which line is wrong.
tool::Owner<QV_STORE_DECODE_RESULT> decodeHeaderText( QV_BUFFER *bytes, QV_LOCATION *file )
{
    std::string_view rest( reinterpret_cast<const char *>( qvBufferBacking( bytes ) ),
                           static_cast<size_t>( qvBufferLength( bytes ) ) );
    std::string text;
    QV_INT separators = 0;
    QV_INT lines = 0;
    QV_INT first = 0;
    while ( separators < 2 && !rest.empty() )
    {
        size_t length = std::min( rest.find( '\n' ), rest.size() - 1 ) + 1;
        std::string_view line = rest.substr( 0, length );
        rest.remove_prefix( length );
        bool separator = line.find( "===" ) == line.find_first_not_of( " \t\xEF\xBB\xBF" ) && line.size() > 3;
        if ( separator && ++separators == 1 )
            first = lines + 2;
        else if ( separators == 1 && lines >= first )
            text += line;
        lines++;
    }
    tool::Owner content( qvBufferCreateFromBytesCopy( reinterpret_cast<const unsigned char *>( text.data() ),
                                                      static_cast<QV_INT>( text.size() ) ) );
    tool::Owner place( qvLocationCreateWithLineOffsetAndColumn( file, first, -1 ) );
    return decode( content, place, QV_STORE_ENCODING_HEADERLESS_STANDARD );
}

void reportHeader( tool::Tool &tool, QV_HEADER_DECODE_ERROR *failure, QV_BUFFER *bytes, QV_LOCATION *file )
{
    tool::Owner message( qvHeaderDecodeErrorToMessage( failure ) );
    if ( qvHeaderDecodeErrorCode( failure ) == QV_HEADER_DECODE_ERROR_CODE_STORE &&
         !qvMessageHasLocation( message ) )
    {
        tool::Owner result = decodeHeaderText( bytes, file );
        if ( !qvStoreDecodeResultIsSuccess( result ) )
            return reportFailure( tool, result, bytes, file );
        qvMessageSetLocation( message.edit(), file );
    }
    tool.report( message );
}

// Comments are no part of a store. True if a line of the text begins with one.
bool hasComments( QV_BUFFER *bytes )
{
    std::string_view text( reinterpret_cast<const char *>( qvBufferBacking( bytes ) ),
                           static_cast<size_t>( qvBufferLength( bytes ) ) );
    for ( size_t mark = text.find( '#' ); mark != std::string_view::npos; mark = text.find( '#', mark + 1 ) )
    {
        size_t before = mark == 0 ? std::string_view::npos : text.find_last_not_of( " \t", mark - 1 );
        if ( before == std::string_view::npos || text[before] == '\n' || text[before] == '\r' )
            return true;
    }
    return false;
}

} // namespace

namespace tool
{

// ---- Encodings ----

QV_STORE_ENCODING encodingOf( const std::string &name )
{
    return qvStoreEncodingFromString( longName( encodingPrefix, name ) );
}

std::string encodingName( QV_STORE_ENCODING encoding )
{
    return shortName( encodingPrefix, String( qvStoreEncodingToString( encoding ) ) );
}

bool isAvailable( QV_STORE_ENCODING encoding )
{
    Owner nothing( qvBufferCreate() );
    return !failsWith( decode( nothing, nullptr, qvStoreEncodingToHeaderless( encoding ) ),
                       QV_STORE_DECODE_ERROR_CODE_ENCODING );
}

std::string encodingNames()
{
    std::string names;
    for ( QV_STORE_ENCODING encoding = 0; QV_STORE_ENCODING_OK( encoding ); encoding++ )
    {
        if ( !qvStoreEncodingIsHeaderless( encoding ) && isAvailable( encoding ) )
            names += ( names.empty() ? "" : ", " ) + encodingName( encoding );
    }
    return names;
}

QV_STORE_ENCODING withHeader( QV_STORE_ENCODING encoding )
{
    for ( QV_STORE_ENCODING other = 0; QV_STORE_ENCODING_OK( other ); other++ )
    {
        if ( !qvStoreEncodingIsHeaderless( other ) &&
             qvStoreEncodingToHeaderless( other ) == qvStoreEncodingToHeaderless( encoding ) )
            return other;
    }
    return encoding;
}

bool takeFrom( Tool &tool, const Arguments &arguments, QV_STORE_ENCODING &from )
{
    from = -1;
    std::optional<std::string> name = arguments.value( fromOption.name );
    if ( !name )
        return true;
    from = encodingOf( *name );
    if ( from < 0 || !isAvailable( from ) )
    {
        tool.usage( *name + ": no such encoding, there are: " + encodingNames() );
        return false;
    }
    from = qvStoreEncodingToHeaderless( from );
    return true;
}

// ---- Reading ----

std::optional<DataFile> loadData( Tool &tool, const std::string &name, QV_STORE_ENCODING from )
{
    Watch watch( "Reading " + shownName( name ) );
    DataFile file{
        .name = name, .bytes = readFile( tool, name ), .store = {}, .header = {}, .encoding = from };
    if ( !file.bytes )
        return std::nullopt;
    Owner place = locationOf( name );
    Owner headed( qvHeaderDecode( file.bytes, place ) );
    Owner failure( qvHeaderDecodeResultError( headed ) );
    if ( failure && qvHeaderDecodeErrorCode( failure ) != QV_HEADER_DECODE_ERROR_CODE_HEADER_START )
    {
        reportHeader( tool, failure, file.bytes, place );
        return std::nullopt;
    }
    Owner<QV_BUFFER> rest;
    if ( !failure )
    {
        Owner header( qvHeaderDecodeResultHeader( headed ) );
        Owner content( qvHeaderStore( header ) );
        // Lines with a fault come back as legacy text, which has no place, and without what they say.
        Owner text = decodeHeaderText( file.bytes, place );
        if ( !qvStoreHasLocation( content ) && !qvStoreDecodeResultIsSuccess( text ) )
        {
            reportFailure( tool, text, file.bytes, place );
            return std::nullopt;
        }
        file.header = Owner( qvStoreHeaderTryDecodeFromHeader( header ) );
        if ( !file.header )
        {
            String named( qvStoreValueCstr( content, "encoding", -1 ) );
            tool.error( Owner( qvStoreLocation( content ) ),
                        "the header names an unknown encoding: " + textOf( std::move( named ) ) );
            return std::nullopt;
        }
        rest = Owner( qvHeaderDecodeResultTrailing( headed ) );
        place = Owner( qvHeaderDecodeResultTrailingBaseLocation( headed ) );
        if ( qvStoreHeaderHasEncoding( file.header ) )
            file.encoding = qvStoreEncodingToHeaderless( qvStoreHeaderEncoding( file.header ) );
    }
    QV_BUFFER *content = rest ? rest : file.bytes;
    Detection found;
    if ( file.encoding >= 0 )
        found = { decode( content, place, file.encoding ), file.encoding };
    else
        found = detect( content, place );
    if ( !qvStoreDecodeResultIsSuccess( found.result ) )
    {
        reportFailure( tool, found.result, content, place );
        return std::nullopt;
    }
    file.encoding = found.encoding;
    if ( file.encoding != QV_STORE_ENCODING_HEADERLESS_JSON )
        file.store = Owner( qvStoreDecodeResultStore( found.result ) );
    else if ( !takeJsonContent( tool, content, place, file ) )
        return std::nullopt;
    return file;
}

// ---- Writing ----

Owner<QV_BUFFER> encodeData( const DataFile &file )
{
    if ( !file.header )
        return Owner( qvStoreEncodeHeaderless( file.store, file.encoding ) );
    Owner header( qvStoreHeaderCreateFrom( file.header ) );
    // A header that leaves the encoding open stays so while the library's own choice fits.
    QV_STORE_ENCODING encoding = withHeader( file.encoding );
    if ( qvStoreHeaderHasEncoding( header ) || encoding != QV_STORE_ENCODING_STANDARD )
        qvStoreHeaderSetEncoding( header.edit(), encoding );
    return Owner( qvStoreEncode( file.store, header ) );
}

bool saveData( Tool &tool, const DataFile &file, const std::string &name )
{
    std::error_code none;
    if ( file.leftOut > 0 && name != "-" && std::filesystem::equivalent( name, file.name, none ) )
    {
        tool.error( name, "not written, since " + counted( file.leftOut, "member" ) + " would be lost" );
        return false;
    }
    if ( name != "-" && hasComments( file.bytes ) )
        tool.warning( name, "comments of the source aren't kept" );
    Owner bytes = encodeData( file );
    if ( name == "-" )
    {
        tool.out.write( bytes );
        return true;
    }
    Output output( name );
    if ( output.isGood() )
        output.write( bytes );
    if ( output.isGood() && output.finish() )
        return true;
    tool.error( output.displayName(), output.failure() );
    return false;
}

// ---- Places ----

bool takePlace( Tool &tool, const std::string &typed, Place &place )
{
    place = { typed, {} };
    for ( size_t start = 0; start <= typed.size(); )
    {
        size_t end = std::min( typed.find( '/', start ), typed.size() );
        std::string step = typed.substr( start, end - start );
        if ( !qvStoreAddressOk( stringOf( step ) ) )
        {
            tool.usage( "\"" + typed +
                        "\" is no address: letters, digits, \"_\", \"-\" and \".\", separated by \"/\"" );
            return false;
        }
        place.steps.push_back( step );
        start = end + 1;
    }
    return true;
}

QV_INT indexOf( QV_STORE *store, const std::string &step )
{
    String address = stringOf( step );
    bool managed = qvStoreHints( store ) & QV_STORE_HINT_ARRAY_MANAGED;
    QV_INT index;
    QV_INT consumed;
    // Positions may be typed without the zeros that stand in front of an array's addresses.
    if ( managed )
    {
        bool number =
            qvStringScanInt( address, 0, -1, 10, &index, &consumed ) && consumed == qvStringLength( address );
        return number && index >= 0 && index < qvStoreLength( store ) ? index : -1;
    }
    QV_INT low = 0;
    for ( QV_INT high = qvStoreLength( store ); low < high; )
    {
        QV_INT middle = low + ( high - low ) / 2;
        QV_INT order = qvStringCompare( String( qvStoreAddressAt( store, middle ) ), address );
        if ( order == 0 )
            return middle;
        if ( order < 0 )
            low = middle + 1;
        else
            high = middle;
    }
    return -1;
}

} // namespace tool
