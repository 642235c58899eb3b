#include "support/test.hh"

using namespace test;

namespace
{

const std::string separator = std::string( 72, '=' ) + "\n";

Local<QV_MODULE_VERSION> version( const char *cstr )
{
    return Local<QV_MODULE_VERSION>( qvModuleVersionTryCreateFromCstr( cstr, -1 ) );
}

// What a decoding gives: "code place", or "type trailing place".
std::string outcome( std::string_view content )
{
    Local<QV_LOCATION> location( qvLocationCreateWithDescription( text( "f" ) ) );
    Local<QV_HEADER_DECODE_RESULT> result( qvHeaderDecode( bufferOf( content ), location ) );
    if ( Local<QV_HEADER_DECODE_ERROR> error{ qvHeaderDecodeResultError( result ) }; error )
    {
        EXPECT_FALSE( qvHeaderDecodeResultHasHeader( result ) || qvHeaderDecodeResultHasTrailing( result ) );
        return std::to_string( qvHeaderDecodeErrorCode( error ) ) + " " +
               takeLocation( qvHeaderDecodeErrorLocation( error ) );
    }
    Local<QV_HEADER> hdr( qvHeaderDecodeResultHeader( result ) );
    return takeUtf8( qvHeaderType( hdr ) ) + " " + takeBytes( qvHeaderDecodeResultTrailing( result ) ) + " " +
           takeLocation( qvHeaderDecodeResultTrailingBaseLocation( result ) );
}

Local<QV_BYTE_SOURCE> sourceOf( const std::string &content )
{
    Local<QV_BUFFER_BYTE_SOURCE> memory( qvBufferByteSourceCreate( bufferOf( content ) ) );
    return Local<QV_BYTE_SOURCE>( qvBufferByteSourceByteSource( memory ) );
}

std::string readAll( QV_BYTE_SOURCE *source )
{
    Local<QV_BUFFER> buffer( qvBufferCreate() );
    qvByteSourceRead( source, buffer.edit(), -1 );
    return takeBytes( buffer.give() );
}

} // namespace

TEST( Header, WritesItsByteFormat )
{
    Local<QV_HEADER> hdr( qvHeaderCreate( text( "QV_TEST" ) ) );
    EXPECT_EQ( separator + "QV_TEST\n" + separator, takeBytes( qvHeaderEncode( hdr ) ) );
    qvHeaderSetModuleVersion( hdr.edit(), version( "3#4.1#2" ) );
    Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueIntCstr( store.edit(), "a", -1, 1 );
    qvHeaderSetStore( hdr.edit(), store );
    EXPECT_EQ( separator + "QV_TEST 3#4.1#2\na 1\n" + separator, takeBytes( qvHeaderEncode( hdr ) ) );
    qvHeaderDelModuleVersion( hdr.edit() );
    EXPECT_EQ( separator + "QV_TEST\na 1\n" + separator, takeBytes( qvHeaderEncode( hdr ) ) );
}

TEST( Header, ReadsMoreThanItWrites )
{
    const struct
    {
        std::string content;
        const char *outcome;
    } rows[] = {
        { separator + "T\n" + separator, "T  f(4)" },
        { separator + "T\n" + separator + "rest\n", "T rest\n f(4)" },
        { "\xEF\xBB\xBF===\nT\n===\nx", "T x f(4)" },
        { "\n \t\r\n ===\nT\n===\nx", "T x f(6)" },
        { " \t==== \t\r\n  camelCase \t3.1 \r\na 1\r\n\t===== \r\nx", "camelCase x f(5)" },
        { "===\xE2\x80\xA8T\xC2\x85===\xE2\x80\xA8x", "T x f(4)" },
        { "===\rT\r===\rx", "T x f(4)" },
        { "===\nT\na \"===\"\n# ===\n===\nx", "T x f(6)" },
        { "===\nmod___Type\n===\n", "mod___Type  f(4)" },
    };
    for ( const auto &row : rows )
        EXPECT_EQ( row.outcome, outcome( row.content ) ) << row.content;
}

TEST( Header, EachErrorHasItsCodeAndPlace )
{
    const struct
    {
        std::string content;
        const char *outcome;
    } rows[] = {
        { "", "0 f(1)" },
        { "a 1\n", "0 f(1)" },
        { "\n\n==\n", "0 f(3)" },
        { "===", "0 f(1)" },
        { "===x\nT\n===\n", "0 f(1)" },
        { "===\nT\n", "1 f(3)" },
        { "===\nT\na 1", "1 f(3)" },
        { "===\nT\na 1\nb 2\n", "1 f(5)" },
        { "===\nT\n===", "2 f(3)" },
        { "===\nT\n===\r\nx", "2 f(3)" },
        { "===\r\nT\r\n===\nx", "2 f(3)" },
        { "===\rT\r===\r\nx", "2 f(3)" },
        { "===\nT\na 1\n===x\n", "2 f(4)" },
        { "===\nT 1.0 x\n===\n", "3 f(2)" },
        { "===\nT\xFF\n===\n", "3 f(2)" },
        { "===\nT 1.0", "3 f(2)" },
        { "===\n", "4 f(2)" },
        { "===\n\n===\n", "4 f(2)" },
        { "===\nno name\n===\n", "5 f(2)" },
        { "===\n9\n===\n", "4 f(2)" },
        { "===\nT 1.2.3\n===\n", "5 f(2)" },
        { "===\nT 1\n===\n", "5 f(2)" },
    };
    for ( const auto &row : rows )
        EXPECT_EQ( row.outcome, outcome( row.content ) ) << row.content;
}

TEST( Header, BadStoreTextIsWrapped )
{
    // Lines that are no standard text are taken for legacy text. But behind a byte order mark a separator begins a header
    // of its own, which then has no end.
    const char *content = "===\nT\n\xEF\xBB\xBF===\nT\n===\n";
    Local<QV_HEADER_DECODE_RESULT> result( qvHeaderDecode( bufferOf( content ), nullptr ) );
    Local<QV_HEADER_DECODE_ERROR> error( qvHeaderDecodeResultError( result ) );
    EXPECT_EQ( QV_HEADER_DECODE_ERROR_CODE_STORE, qvHeaderDecodeErrorCode( error ) );
    Local<QV_STORE_DECODE_ERROR> storeError( qvHeaderDecodeErrorStoreDecodeError( error ) );
    ASSERT_TRUE( storeError );
    Local<QV_MESSAGE> message( qvHeaderDecodeResultErrorToMessage( result ) );
    Local<QV_MESSAGE> storeMessage( qvStoreDecodeErrorToMessage( storeError ) );
    EXPECT_EQ( takeUtf8( qvMessageToString( storeMessage ) ), takeUtf8( qvMessageToString( message ) ) );
    EXPECT_EQ( "6 f(5)", outcome( content ).substr( 0, 6 ) );
    EXPECT_TRUE( qvHeaderDecodeResultIsSuccess(
        Local<QV_HEADER_DECODE_RESULT>( qvHeaderDecode( bufferOf( "===\nT\na\n===\n" ), nullptr ) ) ) );
}

TEST( Header, TryDecodeMovesBufferAndLocation )
{
    Local<QV_BUFFER> buffer = bufferOf( "===\nT\n===\nrest" );
    Local<QV_LOCATION> location( qvLocationCreateWithLineOffsetAndColumn( nullptr, 9, -1 ) );
    Local<QV_HEADER> hdr( qvHeaderTryDecode( buffer.edit(), location.edit() ) );
    ASSERT_TRUE( hdr );
    EXPECT_EQ( "(13)", takeLocation( qv::retained<QV_LOCATION>( location ) ) );
    EXPECT_FALSE( Local<QV_HEADER>( qvHeaderTryDecode( buffer.edit(), location.edit() ) ) );
    EXPECT_EQ( "rest", takeBytes( buffer.give() ) );
}

TEST( Header, SortsGiveTypeAndVersion )
{
    Local<QV_STORE_HEADER> sth( qvStoreHeaderCreateFromSort( qvStoreSort(), QV_TRUE ) );
    EXPECT_TRUE( qvStoreHeaderIsTypeSort( sth, qvStoreSort() ) );
    EXPECT_TRUE( qvStoreHeaderIsType( sth, text( "QV_STORE" ) ) );
    EXPECT_FALSE( qvStoreHeaderIsTypeSort( sth, qvHeaderSort() ) );
    EXPECT_TRUE( qvStoreHeaderHasModuleVersion( sth ) );
    Local<QV_STORE_HEADER> before = Local<QV_STORE_HEADER>::share( sth );
    qvStoreHeaderSetTypeFromSort( sth.edit(), qvHeaderSort(), QV_FALSE );
    qvStoreHeaderDelModuleVersion( sth.edit() );
    EXPECT_EQ( "QV_HEADER", takeUtf8( qvStoreHeaderType( sth ) ) );
    EXPECT_EQ( "QV_STORE", takeUtf8( qvStoreHeaderType( before ) ) );
    EXPECT_TRUE( qvStoreHeaderHasModuleVersion( before ) );
}

TEST( Header, StoreHeadersTravelThroughHeaders )
{
    Local<QV_STORE_HEADER> sth( qvStoreHeaderCreate( text( "QV_TEST" ) ) );
    qvStoreHeaderSetModuleVersion( sth.edit(), version( "3.1" ) );
    qvStoreHeaderGenerateInfo( sth.edit() );
    qvStoreHeaderSetEncoding( sth.edit(), QV_STORE_ENCODING_STANDARD );
    Local<QV_HEADER> generic( qvStoreHeaderEncodeToHeader( sth ) );
    Local<QV_BUFFER> buffer( qvHeaderEncode( generic ) );
    Local<QV_HEADER> read( qvHeaderTryDecode( buffer.edit(), nullptr ) );
    ASSERT_TRUE( read );
    Local<QV_STORE_HEADER> back( qvStoreHeaderTryDecodeFromHeader( read ) );
    ASSERT_TRUE( back );
    EXPECT_EQ( QV_STORE_ENCODING_STANDARD, qvStoreHeaderEncoding( back ) );
    Local<QV_HEADER_INFO> info( qvStoreHeaderInfo( sth ) );
    Local<QV_HEADER_INFO> infoBack( qvStoreHeaderInfo( back ) );
    ASSERT_TRUE( infoBack );
    EXPECT_TRUE( qvStoreEquals( Local<QV_STORE>( qvHeaderInfoStore( info ) ),
                                Local<QV_STORE>( qvHeaderInfoStore( infoBack ) ) ) );
    EXPECT_TRUE( qvHeaderInfoHasGenerateTime( infoBack ) && qvHeaderInfoHasProductBuildTime( infoBack ) );
}

TEST( Header, StoreHeadersSkipWhatTheyCannotUse )
{
    const struct
    {
        const char *storeText;
        bool isHeader, hasInfo;
        QV_STORE_ENCODING encoding;
    } rows[] = {
        { "", true, false, -1 },
        { "encoding \"QV_STORE_ENCODING_HEADERLESS_JSON\"\n", true, false, 5 },
        { "encoding \"QV_STORE\"\n", false, false, -1 },
        { "encoding { a 1 }\n", true, false, -1 },
        { "info 1\n", true, false, -1 },
        { "info { productName \"name\" }\n", true, true, -1 },
        { "info {}\n", true, true, -1 },
        { "info { productName {} }\n", true, true, -1 },
        { "info { productName \"Bad Name\" }\n", true, false, -1 },
        { "info { productVersion \"1.2\" }\n", true, false, -1 },
        { "info { productFriendlyName \" x\" }\n", true, false, -1 },
        { "info { generateTime \"soon\" }\n", true, false, -1 },
    };
    for ( const auto &row : rows )
    {
        Local<QV_BUFFER> buffer = bufferOf( std::string( "===\nT\n" ) + row.storeText + "===\n" );
        Local<QV_HEADER> hdr( qvHeaderTryDecode( buffer.edit(), nullptr ) );
        ASSERT_TRUE( hdr ) << row.storeText;
        Local<QV_STORE_HEADER> sth( qvStoreHeaderTryDecodeFromHeader( hdr ) );
        ASSERT_EQ( row.isHeader, static_cast<QV_STORE_HEADER *>( sth ) != nullptr ) << row.storeText;
        if ( !sth )
            continue;
        EXPECT_EQ( row.hasInfo, qvStoreHeaderHasInfo( sth ) != 0 ) << row.storeText;
        EXPECT_EQ( row.encoding, qvStoreHeaderEncoding( sth ) ) << row.storeText;
    }
}

TEST( Header, SinkWritesTheHeaderAtOnce )
{
    Local<QV_BUFFER_BYTE_SINK> memory( qvBufferByteSinkCreate() );
    Local<QV_BYTE_SINK> under( qvBufferByteSinkByteSink( memory ) );
    Local<QV_HEADER> hdr( qvHeaderCreate( text( "T" ) ) );
    Local<QV_HEADER_BYTE_SINK> hbs( qvHeaderByteSinkCreate( under, hdr ) );
    EXPECT_EQ( separator + "T\n" + separator, takeBytes( qvBufferByteSinkBuffer( memory ) ) );
    Local<QV_BYTE_SINK> sink( qvHeaderByteSinkByteSink( hbs ) );
    EXPECT_TRUE( qvByteSinkWrite( sink, bufferOf( "rest" ) ) && qvByteSinkFlush( sink ) );
    EXPECT_EQ( separator + "T\n" + separator + "rest", takeBytes( qvBufferByteSinkBuffer( memory ) ) );
    Local<QV_HEADER_BYTE_SINK> bare( qvHeaderByteSinkCreate( under, nullptr ) );
    EXPECT_FALSE( qvHeaderByteSinkHasHeader( bare ) );
}

TEST( Header, SourceReadsBehindHeadersOfAnySize )
{
    for ( size_t lines : { 0, 100, 1365, 3000, 100000 } )
    {
        // 6 bytes a line: the header ends around and far behind the first 8192 bytes.
        std::string storeText = times( lines, "#####\n" );
        for ( size_t tail = 0; tail < 12; tail++ )
        {
            std::string content = "===\nT\n" + storeText + std::string( tail, '\n' ) + "===\npayload";
            Local<QV_HEADER_BYTE_SOURCE> hbs(
                qvHeaderByteSourceCreate( sourceOf( content ), QV_FALSE, nullptr ) );
            ASSERT_TRUE( qvHeaderByteSourceHasHeader( hbs ) ) << lines << " " << tail;
            Local<QV_BYTE_SOURCE> source( qvHeaderByteSourceByteSource( hbs ) );
            EXPECT_EQ( 3, qvByteSourceSkip( source, 3 ) );
            EXPECT_EQ( "load", readAll( source ) );
            EXPECT_TRUE( qvByteSourceEnd( source ) && !qvByteSourceError( source ) );
            EXPECT_EQ( "(" + std::to_string( 4 + lines + tail ) + ")",
                       takeLocation( qvHeaderByteSourceBaseLocation( hbs ) ) );
        }
    }
    // Reads that cross the end of what was read ahead.
    std::string large = "===\nT\n===\n" + std::string( 50000, 'x' );
    Local<QV_HEADER_BYTE_SOURCE> hbs( qvHeaderByteSourceCreate( sourceOf( large ), QV_FALSE, nullptr ) );
    Local<QV_BYTE_SOURCE> source( qvHeaderByteSourceByteSource( hbs ) );
    EXPECT_EQ( 10000, qvByteSourceSkip( source, 10000 ) );
    EXPECT_EQ( std::string( 40000, 'x' ), readAll( source ) );
}

TEST( Header, SourceWithoutHeader )
{
    std::string endless = "===\nT\n" + times( 60000, "# a line of the store\n" );
    const struct
    {
        std::string content;
        bool tolerant;
        QV_INT code; // -1 for none
    } rows[] = { { "a 1\n", false, 0 },
                 { "a 1\n", true, 0 },
                 { "===\nT\n", false, 1 },
                 { "===\nT\n", true, -1 },
                 { "===\nT\n===\r\n", true, -1 },
                 { "===\nno good name\n", false, 3 },
                 { "===\nno good name\n", true, -1 },
                 { endless + "===\n", false, 1 },
                 { endless + "===\n", true, -1 } };
    for ( const auto &row : rows )
    {
        Local<QV_HEADER_BYTE_SOURCE> hbs(
            qvHeaderByteSourceCreate( sourceOf( row.content ), row.tolerant, nullptr ) );
        EXPECT_FALSE( qvHeaderByteSourceHasHeader( hbs ) );
        Local<QV_HEADER_DECODE_ERROR> error( qvHeaderByteSourceDecodeError( hbs ) );
        EXPECT_EQ( row.code, error ? qvHeaderDecodeErrorCode( error ) : -1 );
        Local<QV_BYTE_SOURCE> source( qvHeaderByteSourceByteSource( hbs ) );
        EXPECT_EQ( row.code == -1 ? row.content : "", readAll( source ) );
        EXPECT_EQ( row.code != -1, qvByteSourceError( source ) != 0 );
    }
}

TEST( HeaderDeathTest, CallersFaultsStop )
{
    EXPECT_DEATH( qvHeaderCreate( text( "no name" ) ), "qvNameOk" );
    EXPECT_DEATH( qvStoreHeaderCreate( text( "" ) ), "qvNameOk" );
    EXPECT_DEATH( qvHeaderDecodeErrorCreate( QV_HEADER_DECODE_ERROR_CODE_STORE, nullptr ), "CODE_STORE" );
    EXPECT_DEATH( qvHeaderDecodeErrorCreate( 7, nullptr ), "CODE_OK" );
    Local<QV_STORE_HEADER> sth( qvStoreHeaderCreate( text( "T" ) ) );
    EXPECT_DEATH( qvStoreHeaderSetEncoding( sth.edit(), 8 ), "QV_STORE_ENCODING_OK" );
}
