#include "support/test.hh"
#include "support/small_stack.hh"

#include <qv/base/qv_store.hh>
#include <qv/base/qv_store_encoding.hh>

using namespace test;

namespace
{

constexpr QV_STORE_ENCODING standard = QV_STORE_ENCODING_HEADERLESS_STANDARD;

std::string encode( QV_STORE *store )
{
    return takeBytes( qvStoreEncodeHeaderless( store, standard ) );
}

// The store, or null with code and place of the error.
Local<QV_STORE> decode( std::string_view content, std::string *fault = nullptr,
                        QV_LOCATION *location = nullptr )
{
    Local<QV_STORE_DECODE_RESULT> result(
        qvStoreDecodeHeaderless( bufferOf( content ), location, standard ) );
    Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
    EXPECT_NE( qvStoreDecodeResultIsSuccess( result ), qvStoreDecodeResultIsError( result ) );
    if ( fault )
        *fault = error ? std::to_string( qvStoreDecodeErrorCode( error ) ) + " " +
                             takeLocation( qvStoreDecodeErrorLocation( error ) )
                       : "";
    return Local<QV_STORE>( qvStoreDecodeResultStore( result ) );
}

// Removes all locations, so that stores compare by content.
Local<QV_STORE> withoutLocations( QV_STORE *source )
{
    Local<QV_STORE> store( qvStoreCreateFrom( source ) );
    qvStoreDelLocation( store.edit() );
    for ( QV_INT idx = 0; idx < qvStoreLength( store ); idx++ )
    {
        if ( Local<QV_STORE> sub{ qvStoreStoreAt( store, idx ) }; sub )
        {
            qvStoreSetStoreAt( store.edit(), idx, withoutLocations( sub ) );
            continue;
        }
        Local<QV___STORE_VALUE> value( qv___StoreValueAt( store, idx ) );
        qv___StoreValueDelLocation( value.edit() );
        qv___StoreSetValueAt( store.edit(), idx, value );
    }
    return store;
}

std::string nested( size_t levels, const char *open, const char *close )
{
    return times( levels, open ) + times( levels, close );
}

TEST( StoreEncoding, HeaderlessFormsAndErrorTexts )
{
    for ( QV_STORE_ENCODING enc = 0; QV_STORE_ENCODING_OK( enc ); enc++ )
    {
        EXPECT_EQ( enc >= 4, qvStoreEncodingIsHeaderless( enc ) != 0 );
        EXPECT_EQ( 4 + enc % 4, qvStoreEncodingToHeaderless( enc ) );
    }
    for ( QV_STORE_DECODE_ERROR_CODE code = 0; QV_STORE_DECODE_ERROR_CODE_OK( code ); code++ )
        EXPECT_NE( "", takeUtf8( qvStoreDecodeErrorCodeMessageText( code ) ) );
}

TEST( StoreEncoding, WritesAlignedAndNestedText )
{
    Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "name", -1, text( "box one" ) );
    qvStoreSetValueIntCstr( store.edit(), "port", -1, 5060 );
    qvStoreSetValueRealCstr( store.edit(), "ratio", -1, 0.25 );
    qvStoreSetValueBoolCstr( store.edit(), "enabled", -1, QV_TRUE );
    qvStoreSetValueNullCstr( store.edit(), "note", -1 );
    qvStoreSetStoreCstr( store.edit(), "empty", -1, Local<QV_STORE>( qvStoreCreate() ) );
    Local<QV_STORE> list( qvStoreCreateArray() );
    qvStoreAppendValue( list.edit(), text( "a" ) );
    qvStoreAppendValueInt( list.edit(), 2 );
    qvStoreSetStoreCstr( store.edit(), "list", -1, list );
    Local<QV_STORE> sub( qvStoreCreate() );
    qvStoreSetValueIntCstr( sub.edit(), "inner", -1, 1 );
    qvStoreSetStoreCstr( store.edit(), "sub", -1, sub );
    // Members stand in the order of their addresses.
    const char *expected = "empty   {}\n"
                           "enabled true\n"
                           "list [\n"
                           "    \"a\"\n"
                           "    2\n"
                           "]\n"
                           "name    \"box one\"\n"
                           "note    null\n"
                           "port    5060\n"
                           "ratio   0.250000\n"
                           "sub {\n"
                           "    inner 1\n"
                           "}\n";
    EXPECT_EQ( expected, encode( store ) );

    Local<QV_STORE> array( qvStoreCreateArray() );
    EXPECT_EQ( "[\n]\n", encode( array ) );
    qvStoreAppendStore( array.edit(), sub );
    qvStoreAppendStore( array.edit(), Local<QV_STORE>( qvStoreCreateArray() ) );
    qvStoreAppendStore( array.edit(), list );
    EXPECT_EQ( "[\n    {\n        inner 1\n    }\n    []\n    [\n        \"a\"\n        2\n    ]\n]\n",
               encode( array ) );
    qvStoreSetHints( array.edit(), QV_STORE_HINT_ARRAY );
    EXPECT_EQ( "[\n    {\n        inner 1\n    }\n    []\n    [\n        \"a\"\n        2\n    ]\n]\n",
               encode( array ) );
    EXPECT_EQ( "", encode( Local<QV_STORE>( qvStoreCreate() ) ) );
}

TEST( StoreEncoding, ValuesAreWrittenByHintAndText )
{
    const struct
    {
        QV___STORE_VALUE_HINTS hints;
        const char *text, *written;
    } rows[] = {
        { 0, "true", "\"true\"" },
        { 1, "anything", "null" },
        { 2, " TRUE ", "true" },
        { 2, "0", "false" },
        { 2, "maybe", "\"maybe\"" },
        { 4, "007", "7" },
        { 4, "0x10", "16" },
        { 4, "-0", "0" },
        { 4, "123456789012345678", "123456789012345678" },
        { 4, "-9223372036854775808", "-9223372036854775808" },
        { 4, "9223372036854775808", "\"9223372036854775808\"" },
        { 4, "x", "\"x\"" },
        { 8, "1,5", "1.500000" },
        { 8, "NAN", "\"NAN\"" },
        { 8, "INF", "\"INF\"" },
        { 12, "1.5", "1.500000" },
        { 0, "q\"b\\l\n\t\x7f", "\"q\\\"b\\\\l\\00000A\\000009\\00007F\"" },
        { 0, "\xC2\x85\xE2\x80\xA8\xC3\xA4\xF0\x9F\x98\x80",
          "\"\\000085\xE2\x80\xA8\xC3\xA4\xF0\x9F\x98\x80\"" },
    };
    for ( const auto &row : rows )
    {
        Local<QV___STORE_VALUE> value( qv___StoreValueCreateWithHints( text( row.text ), row.hints ) );
        Local<QV_STORE> store( qvStoreCreate() );
        qv___StoreSetValue( store.edit(), text( "a" ), value );
        EXPECT_EQ( std::string( "a " ) + row.written + "\n", encode( store ) );
    }
}

struct Word
{
    std::string word;
    QV___STORE_VALUE_HINTS hints;
    std::string text;
};

void expectWords( const std::vector<Word> &words )
{
    for ( const Word &row : words )
    {
        Local<QV_STORE> store = decode( "a " + row.word );
        ASSERT_TRUE( store ) << row.word;
        Local<QV___STORE_VALUE> value( qv___StoreValue( store, text( "a" ) ) );
        EXPECT_EQ( row.hints, qv___StoreValueHints( value ) ) << row.word;
        EXPECT_EQ( row.text, takeUtf8( qv___StoreValueValue( value ) ) ) << row.word;
    }
}

TEST( StoreEncoding, WordsBecomeTypedValues )
{
    expectWords( {
        { "007", 4, "7" },      { "-5", 4, "-5" },       { "+5", 4, "5" },         { "0", 4, "0" },
        { "-0", 4, "0" },       { "-1", 4, "-1" },       { "1.5", 8, "1.500000" }, { "1,5", 8, "1.500000" },
        { ".", 8, "0.000000" }, { "1e3", 0, "1e3" },     { "0x10", 0, "0x10" },    { "1.2.3", 0, "1.2.3" },
        { "-", 0, "-" },        { "true", 2, "true" },   { "false", 2, "false" },  { "True", 0, "True" },
        { "null", 1, "" },      { "nullx", 0, "nullx" }, { "a}\"#", 0, "a}\"#" },  { "\"007\"", 0, "007" },
        { "\"\"", 0, "" },
    } );
    expectWords( {
        { "9223372036854775807", 4, "9223372036854775807" },
        { "-9223372036854775808", 4, "-9223372036854775808" },
        { "\xC3\xA4", 0, "\xC3\xA4" },
    } );
    Local<QV_STORE> large = decode( "a 99999999999999999999" );
    EXPECT_EQ( "a 100000000000000000000.000000\n", encode( large ) );
    Local<QV_STORE> infinite = decode( "a 1" + std::string( 400, '0' ) );
    EXPECT_EQ( "a \"INF\"\n", encode( infinite ) );
}

TEST( StoreEncoding, AcceptsWhatTheWriterNeverWrites )
{
    const std::pair<std::string, const char *> rows[] = {
        { "", "" },
        { " \n\t# only a comment", "" },
        { "# c\r\n\r\n", "" },
        { "\uFEFFa 1", "a 1\n" },
        { "a 1", "a 1\n" },
        { "a 1 # why\nb 2#no\n", "a 1\nb \"2#no\"\n" },
        { "b 2\ra 1\u0085c 3\u2029d 4\ve 5", "a 1\nb 2\nc 3\nd 4\ne 5\n" },
        { "x { a 1 }", "x {\n    a 1\n}\n" },
        { "x {a 1 }\n", "x {\n    a 1\n}\n" },
        { "{ a 1 }", "a 1\n" },
        { "{}\n\n# end", "" },
        { "[ 1 2 3 ]", "[\n    1\n    2\n    3\n]\n" },
        { "[1 \"]\"[]{}[ # c\n ] ]", "[\n    1\n    \"]\"\n    []\n    {}\n    []\n]\n" },
        { "a \"x\\00000Ay\\\"\\\\\\10ffFF\"", "a \"x\\00000Ay\\\"\\\\\xF4\x8F\xBF\xBF\"\n" },
        { "a\u00A01", "a 1\n" },
        { "[\n" + nested( 98, "[", "]" ) + "\n]", nullptr },
        { "x " + nested( 99, "[", "]" ), nullptr },
    };
    for ( const auto &[content, rewritten] : rows )
    {
        std::string fault;
        Local<QV_STORE> store = decode( content, &fault );
        ASSERT_TRUE( store ) << content << ": " << fault;
        if ( rewritten )
        {
            EXPECT_EQ( rewritten, encode( store ) ) << content;
        }
    }
}

struct Fault
{
    std::string content, fault;
};

void expectFaults( const std::vector<Fault> &faults )
{
    for ( const Fault &row : faults )
    {
        std::string fault;
        EXPECT_FALSE( decode( row.content, &fault ) ) << row.content;
        EXPECT_EQ( row.fault, fault ) << row.content;
    }
}

TEST( StoreEncoding, EachErrorHasItsCodeAndPlace )
{
    expectFaults( {
        { "a \xFF", "2 none" },       { "{ a 1 } x", "3 (1,9)" },  { "a", "4 (1,2)" },
        { "a ", "4 (1,3)" },          { "x { a 1}", "4 (1,9)" },   { "{\n", "4 (2,1)" },
        { "x {\n a 1\n", "4 (3,1)" }, { "[ 1\n\n", "4 (3,1)" },    { "a \"x", "5 (1,5)" },
        { "a \"x\ny\"", "5 (1,5)" },  { "a \"\t\"", "5 (1,4)" },   { "}", "6 (1,1)" },
        { "\n ]", "6 (2,2)" },        { "\"a\" 1", "6 (1,1)" },    { "a 1\n}", "6 (2,1)" },
        { "a 1\n{", "6 (2,1)" },      { "a 1 b 2", "6 (1,5)" },    { "a 1 \"b\"", "6 (1,5)" },
        { "a }", "6 (1,4)" },         { "x { a ] }", "6 (1,8)" },  { "[ } ]", "6 (1,4)" },
        { "x { a 1 ]", "6 (1,9)" },   { "a\nb 1", "7 (2,1)" },     { "a # c\n", "7 (2,1)" },
        { "a # c", "7 (1,6)" },       { "a\r\nb", "7 (1,3)" },     { "a/b 1", "8 (1,1)" },
        { "a 1\na 1", "9 (2,1)" },    { "a \"\\n\"", "10 (1,5)" }, { "a \"\\", "10 (1,5)" },
    } );
    expectFaults( {
        { "[]\n\n  \"open", "3 (3,3)" },
        { "a \"\xE2\x80\xA8x\x01\"", "5 (2,2)" },
        { "a 1\n \xC3\xA4 1", "8 (2,2)" },
        { "b 1\na 1\r\nb 1", "9 (3,1)" },
        { "b 1\na 1\nc 1\r a 2", "9 (4,2)" },
        { "a \"\\110000\"", "10 (1,5)" },
        { "a \"\\20000A\"", "10 (1,5)" },
        { "a \"\\00000\"", "10 (1,5)" },
        { "x " + nested( 100, "[", "]" ), "11 (1,103)" },
        { nested( 101, "[", "]" ), "11 (1,102)" },
        { nested( 101, "{a ", "" ), "11 (1,302)" },
    } );
}

TEST( StoreEncoding, LocationsAreThoseOfTheLocationMap )
{
    Local<QV_LOCATION> base( qvLocationCreateWithDescription( text( "input" ) ) );
    qvLocationSetLine( base.edit(), 7 );
    qvLocationSetColumn( base.edit(), 5 );
    std::string content = "a 1\r\nb \"\xE2\x80\xA8\" # x\n\n  c {\r d [ 2\n3 ]\n}\n";
    Local<QV_STRING> chars = text( content );
    Local<QV_PARSER_LOCATION_MAP> map(
        qvParserLocationMapCreate( base, 255, qvStringBacking( chars ), qvStringLength( chars ) ) );
    auto placeOf = [&]( const char *token ) {
        return takeLocation( qvParserLocationMapLookupIndex( map, qvStringFindCstr( chars, 0, token, -1 ) ) );
    };
    Local<QV_STORE> store = decode( content, nullptr, base );
    ASSERT_TRUE( store );
    auto valueLocation = []( QV_STORE *of, const char *address ) {
        Local<QV___STORE_VALUE> value( qv___StoreValue( of, text( address ) ) );
        return takeLocation( qv___StoreValueLocation( value ) );
    };
    Local<QV_STORE> c( qvStoreStoreCstr( store, "c", -1 ) );
    Local<QV_STORE> d( qvStoreStoreCstr( c, "d", -1 ) );
    EXPECT_EQ( "input(7,5)", takeLocation( qvStoreLocation( store ) ) );
    EXPECT_EQ( "input(7,7)", valueLocation( store, "a" ) );
    EXPECT_EQ( placeOf( "1" ), valueLocation( store, "a" ) );
    EXPECT_EQ( placeOf( "\"" ), valueLocation( store, "b" ) );
    EXPECT_EQ( placeOf( "{" ), takeLocation( qvStoreLocation( c ) ) );
    EXPECT_EQ( placeOf( "[" ), takeLocation( qvStoreLocation( d ) ) );
    EXPECT_EQ( placeOf( "2" ), valueLocation( d, "0" ) );
    EXPECT_EQ( placeOf( "3" ), valueLocation( d, "1" ) );
    EXPECT_FALSE( qvStoreHasLocation( decode( "# nothing" ) ) );
}

TEST( StoreEncoding, LargeUnorderedStoresAreSortedAndSearched )
{
    std::mt19937 random( 5 );
    std::vector<int> order;
    for ( int idx = 0; idx < 5000; idx++ )
        order.push_back( idx );
    std::shuffle( order.begin(), order.end(), random );
    std::string content;
    for ( int idx : order )
        content += "k" + std::to_string( idx ) + " { v " + std::to_string( idx ) + " }\n";
    Local<QV_STORE> store = decode( content );
    ASSERT_TRUE( store );
    EXPECT_EQ( 5000, qvStoreLength( store ) );
    for ( QV_INT idx = 0; idx < 5000; idx++ )
    {
        Local<QV_STORE> sub( qvStoreStoreFormatCstr( store, "k%i", -1, idx ) );
        QV_INT value = -1;
        ASSERT_TRUE( sub && qvStoreValueIntCstr( sub, &value, "v", -1 ) && value == idx );
    }
    std::string fault;
    EXPECT_FALSE( decode( content + "k" + std::to_string( order[17] ) + " 1\n", &fault ) );
    EXPECT_EQ( "9 (5001,1)", fault );
}

Local<QV_STRING> randomText( std::mt19937 &random )
{
    static const char32_t samples[] = U"ab z\"\\\n\r\t{}[]#\x7F\x85\xE4\x2028\x2029\xFEFF\x1F600\x10FFFF\x1";
    std::u32string chars;
    for ( size_t length = random() % 20; length > 0; length-- )
        chars += samples[random() % ( std::size( samples ) - 1 )];
    return text( chars );
}

Local<QV_STORE> randomStore( std::mt19937 &random, int depth )
{
    bool isArray = random() % 3 == 0;
    Local<QV_STORE> store( isArray ? qvStoreCreateArray() : qvStoreCreate() );
    for ( size_t count = random() % 6; count > 0; count-- )
    {
        std::string address = std::to_string( random() % 1000 ) + "-x." + std::to_string( random() % 3 );
        Local<QV___STORE_VALUE> value;
        switch ( random() % ( depth > 0 ? 6 : 5 ) )
        {
        case 0:
            value.take( qv___StoreValueCreateNull() );
            break;
        case 1:
            value.take( qv___StoreValueCreateBool( random() % 2 ) );
            break;
        case 2:
            value.take( qv___StoreValueCreateInt( static_cast<QV_INT>( random() ) - 0x7FFFFFFF ) );
            break;
        case 3:
            value.take( qv___StoreValueCreateReal( static_cast<double>( random() % 4096 ) / 2 ) );
            break;
        case 4:
            value.take( qv___StoreValueCreate( randomText( random ) ) );
            break;
        default: {
            Local<QV_STORE> sub = randomStore( random, depth - 1 );
            if ( isArray )
                qvStoreAppendStore( store.edit(), sub );
            else
                qvStoreSetStore( store.edit(), text( address ), sub );
            continue;
        }
        }
        if ( isArray )
            qv___StoreAppendValue( store.edit(), value );
        else
            qv___StoreSetValue( store.edit(), text( address ), value );
    }
    return store;
}

TEST( StoreEncoding, RandomStoresComeBack )
{
    std::mt19937 random( 77 );
    Local<QV_STORE_HEADER> named( qvStoreHeaderCreate( text( "QV_TEST" ) ) );
    Local<QV_STORE_HEADER> unnamed( qvStoreHeaderCreateFrom( named ) );
    Local<QV_STORE_HEADER> headerless( qvStoreHeaderCreateFrom( named ) );
    qvStoreHeaderSetEncoding( named.edit(), QV_STORE_ENCODING_STANDARD );
    qvStoreHeaderSetEncoding( headerless.edit(), standard );
    for ( int round = 0; round < 400; round++ )
    {
        Local<QV_STORE> store = randomStore( random, 4 );
        for ( QV_STORE_HEADER *header :
              { static_cast<QV_STORE_HEADER *>( named ), static_cast<QV_STORE_HEADER *>( unnamed ),
                static_cast<QV_STORE_HEADER *>( headerless ) } )
        {
            Local<QV_BUFFER> buffer( qvStoreEncode( store, header ) );
            Local<QV_STORE_HEADER> headerBack;
            Local<QV_STORE> back( qvStoreTryDecode( buffer, nullptr, headerBack.edit() ) );
            ASSERT_TRUE( back ) << bytesOf( buffer );
            ASSERT_TRUE( qvStoreEquals( store, withoutLocations( back ) ) ) << bytesOf( buffer );
            ASSERT_EQ( header != headerless, static_cast<QV_STORE_HEADER *>( headerBack ) != nullptr );
            if ( headerBack )
            {
                ASSERT_EQ( qvStoreHeaderEncoding( header ), qvStoreHeaderEncoding( headerBack ) );
            }
        }
    }
}

TEST( StoreEncoding, DamagedTextNeverBreaksTheDecoder )
{
    std::mt19937 random( 99 );
    for ( int round = 0; round < 3000; round++ )
    {
        std::string content = encode( randomStore( random, 4 ) );
        for ( size_t edits = random() % 4; edits > 0 && !content.empty(); edits-- )
        {
            static const char samples[] = "{}[]\"\\# \na1=\xC3\xE2";
            char sample = samples[random() % ( sizeof( samples ) - 1 )];
            size_t place = random() % content.size();
            if ( random() % 2 )
                content[place] = sample;
            else
                content.erase( place, 1 );
        }
        Local<QV_STORE_DECODE_RESULT> result( qvStoreDecode( bufferOf( content ), nullptr ) );
        Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
        ASSERT_NE( qvStoreDecodeResultHasStore( result ), qvStoreDecodeResultHasError( result ) );
        if ( error )
            Local<QV_MESSAGE>( qvStoreDecodeErrorToMessage( error ) );
    }
}

TEST( StoreEncoding, HeadersAndDetection )
{
    std::string separator = std::string( 72, '=' ) + "\n";
    const struct
    {
        std::string content;
        QV_INT code; // -1 for success
    } rows[] = {
        { "a 1\n", -1 },
        { separator + "T\n" + separator + "a 1\n", -1 },
        { separator + "T\nencoding \"QV_STORE_ENCODING_HEADERLESS_STANDARD\"\n" + separator + "a 1\n", -1 },
        { separator + "T\nencoding \"NONE\"\n" + separator + "a 1\n", 0 },
        { separator + "T\n", 0 },
        { separator + "T\nencoding \"QV_STORE_ENCODING_STANDARD\"\n" + separator + "a\n", 7 },
    };
    for ( const auto &row : rows )
    {
        Local<QV_STORE_DECODE_RESULT> result( qvStoreDecode( bufferOf( row.content ), nullptr ) );
        Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
        EXPECT_EQ( row.code, error ? qvStoreDecodeErrorCode( error ) : -1 ) << row.content;
    }
}

TEST( StoreEncoding, MessagesNamePlaceAndReason )
{
    Local<QV_LOCATION> location( qvLocationCreateWithDescription( text( "file" ) ) );
    Local<QV_STORE_DECODE_RESULT> result(
        qvStoreDecodeHeaderless( bufferOf( "a 1\nb" ), location, standard ) );
    Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
    Local<QV_MESSAGE> message( qvStoreDecodeErrorToMessage( error ) );
    EXPECT_EQ( "file(2,2): error: unexpected end of input", takeUtf8( qvMessageToString( message ) ) );
}

TEST( StoreEncoding, DeepStoresAreWrittenOnASmallStack )
{
    EXPECT_TRUE( runOnSmallStack( [] {
        Local<QV_STORE> store( qvStoreCreate() );
        for ( int depth = 0; depth < 3000; depth++ )
        {
            Local<QV_STORE> outer( qvStoreCreate() );
            qvStoreSetStoreCstr( outer.edit(), "x", -1, store );
            store.take( outer.give() );
        }
        std::string content = encode( store );
        EXPECT_EQ( "x {\n    x {\n", content.substr( 0, 12 ) );
        EXPECT_EQ( "    }\n}\n", content.substr( content.size() - 8 ) );
        std::string fault;
        EXPECT_FALSE( decode( content, &fault ) );
        EXPECT_EQ( "11 (100,400)", fault );
    } ) );
}

TEST( StoreEncodingDeathTest, CallersFaultsStop )
{
    Local<QV_STORE> store( qvStoreCreate() );
    EXPECT_DEATH( qvStoreEncodeHeaderless( store, QV_STORE_ENCODING_STANDARD ), "IsHeaderless" );
    EXPECT_DEATH( qvStoreEncodeHeaderless( store, 8 ), "QV_STORE_ENCODING_OK" );
    EXPECT_DEATH( qvStoreEncode( store, nullptr ), "header" );
    EXPECT_DEATH( qvStoreDecodeHeaderless( bufferOf( "" ), nullptr, 0 ), "IsHeaderless" );
    EXPECT_DEATH( qvStoreDecodeErrorCreate( 15, nullptr ), "QV_STORE_DECODE_ERROR_CODE_OK" );
}

} // namespace
