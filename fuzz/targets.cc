#include "targets.hh"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <qv/qv.h>

#define REQUIRE( condition ) require( ( condition ), #condition, __LINE__ )

namespace
{

void require( bool holds, const char *text, int line )
{
    if ( !holds )
    {
        std::fprintf( stderr, "fuzz: line %d: %s\n", line, text );
        std::abort();
    }
}

// Owns one reference, or none.
template <typename T, void ( *release )( T * )> class Owner
{
  public:
    explicit Owner( T *adopted = nullptr ) : handle_( adopted ) {}
    Owner( const Owner & ) = delete;
    Owner &operator=( const Owner & ) = delete;
    ~Owner()
    {
        if ( handle_ )
        {
            release( handle_ );
        }
    }
    operator T *() const
    {
        return handle_;
    }
    T **address()
    {
        return &handle_;
    }

  private:
    T *handle_;
};

using String = Owner<QV_STRING, qvStringRelease>;
using Buffer = Owner<QV_BUFFER, qvBufferRelease>;
using Vector = Owner<QV_VECTOR, qvVectorRelease>;
using Decoder = Owner<QV_DECODER, qvDecoderRelease>;
using Store = Owner<QV_STORE, qvStoreRelease>;
using StoreHeader = Owner<QV_STORE_HEADER, qvStoreHeaderRelease>;
using StoreResult = Owner<QV_STORE_DECODE_RESULT, qvStoreDecodeResultRelease>;
using StoreError = Owner<QV_STORE_DECODE_ERROR, qvStoreDecodeErrorRelease>;
using JsonOptions = Owner<QV_JSON_OPTIONS, qvJsonOptionsRelease>;
using JsonResult = Owner<QV_JSON_DECODE_RESULT, qvJsonDecodeResultRelease>;
using JsonError = Owner<QV_JSON_DECODE_ERROR, qvJsonDecodeErrorRelease>;
using Json = Owner<QV_JSON_VALUE, qvJsonValueRelease>;
using HeaderResult = Owner<QV_HEADER_DECODE_RESULT, qvHeaderDecodeResultRelease>;
using HeaderError = Owner<QV_HEADER_DECODE_ERROR, qvHeaderDecodeErrorRelease>;
using Header = Owner<QV_HEADER, qvHeaderRelease>;
using Message = Owner<QV_MESSAGE, qvMessageRelease>;
using Path = Owner<QV_PATH, qvPathRelease>;
using Time = Owner<QV_TIME, qvTimeRelease>;
using OptDef = Owner<QV_OPT_DEF, qvOptDefRelease>;
using OptSeq = Owner<QV_OPT_SEQ, qvOptSeqRelease>;
using Environment = Owner<QV_ENVIRONMENT, qvEnvironmentRelease>;
using ModuleVersion = Owner<QV_MODULE_VERSION, qvModuleVersionRelease>;
using Identifier = Owner<QV_IDENTIFIER, qvIdentifierRelease>;
using BufferSource = Owner<QV_BUFFER_BYTE_SOURCE, qvBufferByteSourceRelease>;
using ByteSource = Owner<QV_BYTE_SOURCE, qvByteSourceRelease>;
using CharSource = Owner<QV_CHAR_SOURCE, qvCharSourceRelease>;
using NlfSource = Owner<QV_NLF_LINE_SOURCE, qvNlfLineSourceRelease>;
using LineSource = Owner<QV_LINE_SOURCE, qvLineSourceRelease>;

// Takes one byte off the front, for a choice; 0 when none is left.
unsigned takeByte( const unsigned char **bytes, size_t *length )
{
    if ( *length == 0 )
        return 0;
    ( *length )--;
    return *( *bytes )++;
}

QV_STRING *textOf( const unsigned char *bytes, size_t length )
{
    return qvStringCreateFromUtf8( reinterpret_cast<const char *>( bytes ), static_cast<QV_INT>( length ) );
}

QV_BUFFER *bufferOf( const unsigned char *bytes, size_t length )
{
    return qvBufferCreateFromBytesCopy( bytes, static_cast<QV_INT>( length ) );
}

void requireStoreError( QV_STORE_DECODE_RESULT *result )
{
    StoreError error( qvStoreDecodeResultError( result ) );
    Message message( qvStoreDecodeErrorToMessage( error ) );
    String text( qvMessageToString( message ) );
    REQUIRE( qvStringLength( text ) > 0 );
}

// A store that was read can be written and read again, with as many entries. (Reals lose what lies behind the sixth
// decimal, so the values themselves may differ.)
void requireComesBack( QV_STORE *store, QV_STORE_ENCODING encoding )
{
    Buffer written( qvStoreEncodeHeaderless( store, encoding ) );
    StoreResult again( qvStoreDecodeHeaderless( written, nullptr, encoding ) );
    REQUIRE( qvStoreDecodeResultIsSuccess( again ) );
    Store copy( qvStoreDecodeResultStore( again ) );
    REQUIRE( qvStoreLength( store ) == qvStoreLength( copy ) );
}

void fuzzStore( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    StoreResult result( qvStoreDecode( buffer, nullptr ) );
    if ( qvStoreDecodeResultIsError( result ) )
    {
        requireStoreError( result );
        return;
    }
    Store store( qvStoreDecodeResultStore( result ) );
    requireComesBack( store, QV_STORE_ENCODING_HEADERLESS_STANDARD );
}

void fuzzStoreText( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    StoreResult result( qvStoreDecodeHeaderless( buffer, nullptr, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    if ( qvStoreDecodeResultIsError( result ) )
    {
        requireStoreError( result );
        return;
    }
    Store store( qvStoreDecodeResultStore( result ) );
    requireComesBack( store, QV_STORE_ENCODING_HEADERLESS_STANDARD );
}

// Any bytes are a store, which comes back from its own lines as it is.
void fuzzLegacyText( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    Store store( qvStoreLegacyTextTryDecodeFromBuffer( buffer, QV_CHARSET_UTF_8, 0, 255 ) );
    REQUIRE( store );
    Vector lines( qvStoreLegacyTextEncodeToStringVector( store ) );
    Store again( qvStoreLegacyTextDecodeFromStringVector( lines ) );
    REQUIRE( qvStoreEquals( store, again ) );
}

void fuzzLegacyBinary( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    Store store( qvStoreLegacyBinaryTryDecodeFromBuffer( buffer ) );
    if ( store )
    {
        Buffer written( qvStoreLegacyBinaryEncodeToBuffer( store ) );
        Store again( qvStoreLegacyBinaryTryDecodeFromBuffer( written ) );
        REQUIRE( again && qvStoreEquals( store, again ) );
    }
}

// Reads whatever kinds of values the bytes ask for until one fails.
void fuzzDecoder( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    Decoder dec( qvDecoderCreate( buffer ) );
    String string;
    Vector vector;
    unsigned char kind = 0;
    QV_INT offset = 0;
    while ( qvDecoderTryReadByte( dec, &kind ) )
    {
        QV_CHAR chars[16];
        QV_BOOL good = QV_FALSE;
        switch ( kind % 8 )
        {
        case 0:
            good = qvDecoderTryDecodeInt( dec, nullptr );
            break;
        case 1:
            good = qvDecoderTryDecodeChars( dec, chars, kind / 16 );
            break;
        case 2:
            good = qvDecoderTryDecodeOptionalString( dec, string.address() );
            break;
        case 3:
            good = qvDecoderTryDecodeOptionalBuffer( dec, buffer.address() );
            break;
        case 4:
            good = qvDecoderTryDecodeOptionalStringVector( dec, vector.address() );
            break;
        case 5:
            good = qvDecoderTryDecodeOptionalIdentifier( dec, nullptr );
            break;
        case 6:
            good = qvDecoderTryDecodeOptionalStore( dec, nullptr );
            break;
        default:
            good = qvDecoderTrySkip( dec, kind / 8 );
        }
        REQUIRE( good != qvDecoderError( dec ) );
        REQUIRE( qvDecoderOffset( dec ) > offset );
        offset = qvDecoderOffset( dec );
        REQUIRE( offset + qvDecoderRemaining( dec ) == static_cast<QV_INT>( length ) );
    }
}

constexpr QV_JSON_FLAGS packedJson = QV_JSON_FLAG_ENCODE_SINGLE_LINE | QV_JSON_FLAG_ENCODE_PACKED;

// A value comes back from its text, whatever the layout.
void requireJsonComesBack( QV_JSON_VALUE *val, QV_JSON_FLAGS layout )
{
    Buffer packed( qvJsonEncodeWithFlags( val, packedJson ) );
    Buffer written( qvJsonEncodeWithFlags( val, layout ) );
    JsonResult result( qvJsonDecode( written, nullptr ) );
    Json again( qvJsonDecodeResultValue( result ) );
    REQUIRE( again );
    Buffer packedAgain( qvJsonEncodeWithFlags( again, packedJson ) );
    REQUIRE( qvBufferEquals( packed, packedAgain ) );
}

// A store of a value can be a value again, with as many entries.
void requireJsonStoreComesBack( QV_JSON_VALUE *val )
{
    Store store( qvJsonConvertToStore( val ) );
    Json again( qvJsonConvertFromStore( store ) );
    REQUIRE( qvJsonValueType( again ) == qvJsonValueType( val ) );
    Store storeAgain( qvJsonConvertToStore( again ) );
    REQUIRE( qvStoreLength( store ) == qvStoreLength( storeAgain ) );
    requireComesBack( store, QV_STORE_ENCODING_HEADERLESS_STANDARD );
}

// The code of the result's error, -1 for none. With locations there is a place for it.
QV_INT requireJsonError( QV_JSON_DECODE_RESULT *result, bool isLocated )
{
    JsonError error( qvJsonDecodeResultError( result ) );
    if ( !error )
        return -1;
    QV_INT code = qvJsonDecodeErrorCode( error );
    REQUIRE( QV_JSON_DECODE_ERROR_CODE_OK( code ) );
    REQUIRE( static_cast<bool>( qvJsonDecodeErrorHasLocation( error ) ) ==
             ( isLocated && code != QV_JSON_DECODE_ERROR_CODE_CHARSET ) );
    Message message( qvJsonDecodeErrorToMessage( error ) );
    String text( qvMessageToString( message ) );
    REQUIRE( qvStringLength( text ) > 0 );
    return code;
}

// Any flags, depth and normal form. Locations change nothing else.
void fuzzJson( const unsigned char *bytes, size_t length )
{
    unsigned choice = takeByte( &bytes, &length );
    unsigned depth = takeByte( &bytes, &length );
    JsonOptions options( qvJsonOptionsCreate() );
    qvJsonOptionsSetFlags( options.address(), choice & 15 & ~QV_JSON_FLAG_DECODE_LOCATIONS );
    qvJsonOptionsSetDecodeUnicodeNormalForm( options.address(), choice >> 4 & 3 );
    qvJsonOptionsSetDecodeMaxDepth( options.address(), 1 + depth % 50 );
    JsonOptions locating( qvJsonOptionsCreateFrom( options ) );
    qvJsonOptionsSetFlags( locating.address(), ( choice & 15 ) | QV_JSON_FLAG_DECODE_LOCATIONS );
    Buffer buffer( bufferOf( bytes, length ) );
    JsonResult result( qvJsonDecodeWithOptions( buffer, options, nullptr ) );
    JsonResult located( qvJsonDecodeWithOptions( buffer, locating, nullptr ) );
    REQUIRE( requireJsonError( result, false ) == requireJsonError( located, true ) );
    Json val( qvJsonDecodeResultValue( result ) );
    if ( !val )
        return;
    requireJsonComesBack( val, choice & packedJson );
    Json locatedVal( qvJsonDecodeResultValue( located ) );
    REQUIRE( qvJsonValueHasLocation( locatedVal ) && !qvJsonValueHasLocation( val ) );
    if ( qvJsonValueIsObject( val ) || qvJsonValueIsArray( val ) )
        requireJsonStoreComesBack( locatedVal );
}

void fuzzHeader( const unsigned char *bytes, size_t length )
{
    Buffer buffer( bufferOf( bytes, length ) );
    HeaderResult result( qvHeaderDecode( buffer, nullptr ) );
    if ( qvHeaderDecodeResultIsSuccess( result ) )
    {
        Header header( qvHeaderDecodeResultHeader( result ) );
        Buffer written( qvHeaderEncode( header ) );
        HeaderResult again( qvHeaderDecode( written, nullptr ) );
        REQUIRE( qvHeaderDecodeResultIsSuccess( again ) );
    }
    else
    {
        HeaderError error( qvHeaderDecodeResultError( result ) );
        Message message( qvHeaderDecodeErrorToMessage( error ) );
        String text( qvMessageToString( message ) );
        REQUIRE( qvStringLength( text ) > 0 );
    }
}

// A source that is read in small steps gives what the whole conversion gives.
void fuzzCharset( const unsigned char *bytes, size_t length )
{
    QV_CHARSET charset = takeByte( &bytes, &length ) % ( QV_CHARSET_UTF_32_LE + 1 );
    QV_CHARSET_FLAGS flags = qvCharsetFlagsNormalize( takeByte( &bytes, &length ) );
    QV_INT step = 1 + takeByte( &bytes, &length ) % 40;
    Buffer buffer( bufferOf( bytes, length ) );
    BufferSource closure( qvBufferByteSourceCreate( buffer ) );
    ByteSource byteSource( qvBufferByteSourceByteSource( closure ) );
    CharSource source( qvCharsetCreateCharSource( byteSource, charset, flags ) );
    String pieces( qvStringCreate() );
    while ( !qvCharSourceEnd( source ) && !qvCharSourceError( source ) )
    {
        QV_CHAR chars[40];
        qvStringAppendChars( pieces.address(), chars, qvCharSourceReadChars( source, chars, step ) );
    }
    String whole( qvCharsetTryConvertBufferToStringWithFlags( charset, buffer, flags ) );
    REQUIRE( ( whole == nullptr ) == static_cast<bool>( qvCharSourceError( source ) ) );
    REQUIRE( !whole || qvStringEquals( whole, pieces ) );
    Buffer encoded( qvCharsetConvertStringToBuffer( charset, pieces ) );
    REQUIRE( encoded );
}

void fuzzLines( const unsigned char *bytes, size_t length )
{
    QV_NLF_FLAGS flags = qvNlfFlagsNormalize( takeByte( &bytes, &length ) );
    String text( textOf( bytes, length ) );
    NlfSource closure( qvNlfLineSourceCreateFromString( text, flags ) );
    LineSource source( qvNlfLineSourceLineSource( closure ) );
    QV_INT chars = 0;
    QV_INT lines = 0;
    while ( QV_STRING *line = qvLineSourceRead( source ) )
    {
        chars += qvStringLength( line );
        lines++;
        qvStringRelease( line );
    }
    REQUIRE( qvLineSourceEnd( source ) && !qvLineSourceError( source ) );
    REQUIRE( chars <= qvStringLength( text ) );
    REQUIRE( lines == qvLineSourceLinesRead( source ) );
    REQUIRE( lines <= qvStringLength( text ) + 1 );
}

void requirePathTextComesBack( QV_STRING *text, QV_PATH *( *decode )(QV_STRING *),
                               QV_STRING *( *encode )(QV_PATH *))
{
    Path path( decode( text ) );
    if ( path )
    {
        String encoded( encode( path ) );
        if ( encoded )
        {
            // The text is what comes back: an empty directory path has the text of the current directory.
            Path again( decode( encoded ) );
            REQUIRE( again );
            String encodedAgain( encode( again ) );
            REQUIRE( encodedAgain && qvStringEquals( encoded, encodedAgain ) );
        }
    }
}

void fuzzPath( const unsigned char *bytes, size_t length )
{
    String text( textOf( bytes, length ) );
    requirePathTextComesBack( text, qvPathUnixTryDecode, qvPathUnixTryEncode );
    requirePathTextComesBack( text, qvPathWindowsTryDecode, qvPathWindowsTryEncode );
    Path path( qvPathTryDecode( text ) );
}

void fuzzTime( const unsigned char *bytes, size_t length )
{
    String text( textOf( bytes, length ) );
    Time time( qvTimeTryCreateFromString( text ) );
    if ( time && qvTimeValid( time ) )
    {
        String printed( qvTimeToString( time ) );
        Time again( qvTimeTryCreateFromString( printed ) );
        REQUIRE( again && qvTimeEquals( time, again ) );
    }
}

void fuzzNumber( const unsigned char *bytes, size_t length )
{
    QV_INT choice = takeByte( &bytes, &length ) % 36;
    QV_INT base = choice == 0 ? -1 : choice + 1;
    String text( textOf( bytes, length ) );
    QV_INT value = 0, consumed = 0;
    if ( qvStringScanInt( text, 0, -1, base, &value, &consumed ) )
    {
        REQUIRE( consumed > 0 && consumed <= qvStringLength( text ) );
        QV_INT printedBase = base == -1 ? 10 : base;
        String printed( qvFormatEncodeInt( value, printedBase, 0, 0 ) );
        QV_INT again = 0;
        REQUIRE( qvStringScanInt( printed, 0, -1, printedBase, &again, &consumed ) && again == value );
    }
    double real = 0;
    QV_BOOL truth = QV_FALSE;
    REQUIRE( !qvStringScanReal( text, 0, -1, base, &real, &consumed ) || consumed <= qvStringLength( text ) );
    REQUIRE( !qvStringScanBool( text, 0, -1, QV_TRUE, &truth, &consumed ) ||
             consumed <= qvStringLength( text ) );
}

QV_OPT_DEF *createOptDef( bool reorder, bool takesPlain )
{
    OptDef def( qvOptDefCreate() );
    qvOptDefSetReorder( def.address(), reorder );
    qvOptDefSetShortOpt( def.address(), 'a', 1 );
    qvOptDefSetShortOpt( def.address(), 'b', 2 );
    qvOptDefSetLongOptCstr( def.address(), "name", -1, 2 );
    qvOptDefSetLongOptCstr( def.address(), "nap", -1, 3 );
    qvOptDefSetLongOptCstr( def.address(), "quiet", -1, 4 );
    qvOptDefSetFlags( def.address(), 2, QV_OPT_FLAG_ARGUMENT );
    qvOptDefSetFlags( def.address(), 3, QV_OPT_FLAG_ONCE | QV_OPT_FLAG_NO_ABBREV );
    qvOptDefSetFlags( def.address(), 4, QV_OPT_FLAG_IGNORE );
    if ( takesPlain )
    {
        qvOptDefSetArgOnly( def.address(), 5 );
    }
    qvOptDefRetain( def );
    return def;
}

void fuzzOptions( const unsigned char *bytes, size_t length )
{
    unsigned choice = takeByte( &bytes, &length );
    String text( textOf( bytes, length ) );
    Vector argv( qvStringSplitChar( text, '\n', -1 ) );
    if ( choice & 4 )
    {
        qvVectorAppendInt( argv.address(), 7 );
    }
    OptDef def( createOptDef( choice & 1, choice & 2 ) );
    OptSeq seq( qvOptSeqCreate( def, argv ) );
    QV_INT steps = 0;
    while ( qvOptSeqHasNext( seq ) )
    {
        QV_INT id = qvOptSeqNext( seq );
        String arg( qvOptSeqHasArg( seq ) ? qvOptSeqArgString( seq ) : nullptr );
        REQUIRE( id >= 0 || id == QV_OPT_ID_END || qvOptSeqHasError( seq ) );
        qvOptSeqArgInt( seq );
        qvOptSeqArgReal( seq );
        qvOptSeqArgBool( seq, QV_TRUE );
        REQUIRE( ++steps <= qvStringLength( text ) + 2 );
    }
}

void fuzzEnvironment( const unsigned char *bytes, size_t length )
{
    String text( textOf( bytes, length ) );
    Vector lines( qvStringSplitChar( text, '\n', -1 ) );
    Environment environment( qvEnvironmentConvertFromStringVector( lines ) );
    if ( environment )
    {
        Vector again( qvEnvironmentConvertToStringVector( environment ) );
        Environment copy( qvEnvironmentConvertFromStringVector( again ) );
        REQUIRE( copy &&
                 qvEnvironmentVariablesLength( copy ) == qvEnvironmentVariablesLength( environment ) );
        Store store( qvEnvironmentStore( environment ) );
        Environment restored( qvEnvironmentRestore( store ) );
        REQUIRE( qvEnvironmentVariablesLength( restored ) == qvEnvironmentVariablesLength( environment ) );
    }
}

void fuzzModuleVersion( const unsigned char *bytes, size_t length )
{
    String text( textOf( bytes, length ) );
    ModuleVersion version( qvModuleVersionTryCreateFromString( text ) );
    if ( version )
    {
        String printed( qvModuleVersionToString( version ) );
        ModuleVersion again( qvModuleVersionTryCreateFromString( printed ) );
        REQUIRE( again && qvModuleVersionEquals( version, again ) );
    }
}

void fuzzNames( const unsigned char *bytes, size_t length )
{
    String text( textOf( bytes, length ) );
    REQUIRE( !qvNameOk( text, QV_FALSE ) || qvNameOk( text, QV_TRUE ) );
    qvModuleNameOk( text );
    qvStoreAddressOk( text );
    qvCharsetFromIanaName( text );
    qvRuntimeFlagsFromString( text );
    Identifier identifier( qvIdentifierTryCreateFromString( text ) );
    if ( identifier )
    {
        String printed( qvIdentifierToString( identifier ) );
        Identifier again( qvIdentifierTryCreateFromString( printed ) );
        REQUIRE( again && qvIdentifierEquals( identifier, again ) );
    }
}

} // namespace

const FuzzTarget fuzzTargets[] = {
    { "store", fuzzStore },
    { "store_text", fuzzStoreText },
    { "legacy_text", fuzzLegacyText },
    { "legacy_binary", fuzzLegacyBinary },
    { "decoder", fuzzDecoder },
    { "json", fuzzJson },
    { "header", fuzzHeader },
    { "charset", fuzzCharset },
    { "lines", fuzzLines },
    { "path", fuzzPath },
    { "time", fuzzTime },
    { "number", fuzzNumber },
    { "options", fuzzOptions },
    { "environment", fuzzEnvironment },
    { "module_version", fuzzModuleVersion },
    { "names", fuzzNames },
    { nullptr, nullptr },
};

const FuzzTarget *findFuzzTarget( const char *name )
{
    for ( const FuzzTarget *target = fuzzTargets; target->name; target++ )
    {
        if ( name && std::strcmp( target->name, name ) == 0 )
            return target;
    }
    return nullptr;
}
