// Stores as JSON and back: the mapping by tables, random round trips through all encodings, depth.

#include "support/test.hh"
#include "json/support.hh"
#include "support/small_stack.hh"

#include <qv/base/qv_store_encoding.hh>
#include <qv/json/qv_json_store.hh>

using namespace test;

namespace
{

constexpr QV_STORE_ENCODING standardText = QV_STORE_ENCODING_HEADERLESS_STANDARD;
constexpr QV_STORE_ENCODING jsonText = QV_STORE_ENCODING_HEADERLESS_JSON;

Local<QV_STORE> decode( std::string_view content, QV_STORE_ENCODING enc )
{
    Local<QV_STORE_DECODE_RESULT> result( qvStoreDecodeHeaderless( bufferOf( content ), nullptr, enc ) );
    return Local<QV_STORE>( qvStoreDecodeResultStore( result ) );
}

std::string encode( QV_STORE *store, QV_STORE_ENCODING enc )
{
    return takeBytes( qvStoreEncodeHeaderless( store, enc ) );
}

std::string packedStore( QV_STORE *store )
{
    return packed( Json( qvJsonConvertFromStore( store ) ) );
}

TEST( JsonStore, FromStandardText )
{
    const std::pair<const char *, const char *> rows[] = {
        { "", "{}" },
        { "[ ]", "[]" },
        { "a null\nb true\nc -7\nd 0.25\ne \"17\"\nf word",
          "{\"a\":null,\"b\":true,\"c\":-7,\"d\":0.250000,\"e\":\"17\",\"f\":\"word\"}" },
        { "a {}\nb []\nc { d [ 1 { } [ ] ] \n}", "{\"a\":{},\"b\":[],\"c\":{\"d\":[1,{},[]]}}" },
        { "[ \"x\" 2 { a 1 } ]", "[\"x\",2,{\"a\":1}]" },
    };
    for ( auto [content, expected] : rows )
    {
        Local<QV_STORE> store = decode( content, standardText );
        ASSERT_TRUE( store ) << content;
        EXPECT_EQ( packedStore( store ), expected );
    }
}

TEST( JsonStore, ToStandardText )
{
    const std::pair<const char *, const char *> rows[] = {
        { "{}", "" },
        { "[]", "[\n]\n" },
        { "{\"a b\":1,\"c\":2}", "c 2\n" },
        { "{\"\":{\"x\":1},\"c/d\":[1]}", "" },
        { "[null,false,-0,1.50,1e3,1e999,\"true\"]",
          "[\n    null\n    false\n    0\n    1.500000\n    \"1e3\"\n    \"1e999\"\n    \"true\"\n]\n" },
        { "{\"a\":{\"b\":[{}]}}", "a {\n    b [\n        {}\n    ]\n}\n" },
    };
    for ( auto [content, expected] : rows )
    {
        Local<QV_STORE> store( qvJsonConvertToStore( json( content ) ) );
        EXPECT_EQ( encode( store, standardText ), expected ) << content;
    }
    EXPECT_DEATH( qvJsonConvertToStore( qv___JsonValueTrue ), "QV_JSON_TYPE_ARRAY" );
}

TEST( JsonStore, ArraysHints )
{
    Local<QV_STORE> store( qvStoreCreateWithHints( QV_STORE_HINT_ARRAY ) );
    qvStoreSetValueIntCstr( store.edit(), "y", -1, 2 );
    qvStoreSetValueIntCstr( store.edit(), "x", -1, 1 );
    Json val( qvJsonConvertFromStore( store ) );
    EXPECT_EQ( packed( val ), "[1,2]" );
    Local<QV_STORE> back( qvJsonConvertToStore( val ) );
    EXPECT_EQ( qvStoreHints( back ), QV_STORE_HINT_ARRAY | QV_STORE_HINT_ARRAY_MANAGED );
    EXPECT_EQ( qvStoreHints( Local<QV_STORE>( qvJsonConvertToStore( json( "{}" ) ) ) ), 0 );
}

TEST( JsonStore, HintsThatDontFitGiveStrings )
{
    const struct
    {
        const char *text;
        QV___STORE_VALUE_HINTS hints;
        const char *expected;
    } rows[] = {
        { "anything", QV___STORE_VALUE_HINT_NULL, "null" },
        { "maybe", QV___STORE_VALUE_HINT_BOOL, "\"maybe\"" },
        { "1", QV___STORE_VALUE_HINT_BOOL, "true" },
        { "12x", QV___STORE_VALUE_HINT_INT, "\"12x\"" },
        { "0012", QV___STORE_VALUE_HINT_INT, "12" },
        { "0x10", QV___STORE_VALUE_HINT_INT, "16" },
        { "INF", QV___STORE_VALUE_HINT_REAL, "\"INF\"" },
        { "1.5", QV___STORE_VALUE_HINT_REAL, "1.500000" },
        { "1.5", QV___STORE_VALUE_HINT_INT | QV___STORE_VALUE_HINT_REAL, "1.500000" },
        { "17", 0, "\"17\"" },
    };
    for ( const auto &row : rows )
    {
        Local<QV___STORE_VALUE> value( qv___StoreValueCreateWithHints( text( row.text ), row.hints ) );
        EXPECT_EQ( packed( Json( qv___JsonConvertValueFromStoreValue( value ) ) ), row.expected ) << row.text;
    }
    std::string beyond( 400, '9' );
    Local<QV___STORE_VALUE> value(
        qv___StoreValueCreateWithHints( text( beyond ), QV___STORE_VALUE_HINT_REAL ) );
    EXPECT_EQ( packed( Json( qv___JsonConvertValueFromStoreValue( value ) ) ), "\"" + beyond + "\"" );
}

TEST( JsonStore, LocationsAreKept )
{
    Local<QV_STORE> store = decode( "a 1\nb [ true ]", standardText );
    Json val( qvJsonConvertFromStore( store ) );
    Json member( qvJsonValueObjectMemberValueAt( val, 1 ) );
    Json item( qvJsonValueArrayAt( member, 0 ) );
    EXPECT_EQ( takePlace( qvJsonValueLocation( val ) ), "1:1" );
    EXPECT_EQ( takePlace( qvJsonValueLocation( member ) ), "2:3" );
    EXPECT_EQ( takePlace( qvJsonValueLocation( item ) ), "2:5" );
    Local<QV_STORE> back( qvJsonConvertToStore( val ) );
    EXPECT_TRUE( qvStoreEquals( back, store ) );
}

// A store through an encoding and back.
Local<QV_STORE> passed( QV_STORE *store, QV_STORE_ENCODING enc )
{
    Local<QV_STORE_HEADER> header( qvStoreHeaderCreate( text( "QV_JSON_TEST" ) ) );
    qvStoreHeaderSetEncoding( header.edit(), enc );
    std::string content = takeBytes( qvStoreEncode( store, header ) );
    // Without a header, text would be taken as standard text first.
    if ( qvStoreEncodingIsHeaderless( enc ) )
        return decode( content, enc );
    return Local<QV_STORE>( qvStoreTryDecode( bufferOf( content ), nullptr, nullptr ) );
}

bool isLegacy( QV_STORE_ENCODING enc )
{
    return enc == QV_STORE_ENCODING_LEGACY_TEXT || enc == QV_STORE_ENCODING_HEADERLESS_LEGACY_TEXT ||
           enc == QV_STORE_ENCODING_LEGACY_BINARY || enc == QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY;
}

// What also the legacy encodings keep: addresses, texts and substores.
std::string plainForm( QV_STORE *store )
{
    return encode( store, QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY );
}

TEST( JsonStore, RandomRoundTripsThroughEveryPairOfEncodings )
{
    RandomJson random( 11 );
    for ( int round = 0; round < 60; round++ )
    {
        std::string content = packed( round % 2 ? random.object( 3, true ) : random.array( 3, true ) );
        // Lines of legacy text also end at a line separator.
        for ( size_t at; ( at = content.find( "\xE2\x80\xA8" ) ) != content.npos; )
            content.replace( at, 3, "-" );
        Local<QV_STORE> store( qvJsonConvertToStore( json( content ) ) );
        ASSERT_EQ( packedStore( store ), content );
        ASSERT_EQ( encode( store, jsonText ), takeBytes( qvJsonEncode( json( content ) ) ) );
        for ( QV_STORE_ENCODING first = 0; QV_STORE_ENCODING_OK( first ); first++ )
        {
            Local<QV_STORE> once = passed( store, first );
            ASSERT_TRUE( once ) << first << content;
            for ( QV_STORE_ENCODING second = 0; QV_STORE_ENCODING_OK( second ); second++ )
            {
                Local<QV_STORE> twice = passed( once, second );
                ASSERT_TRUE( twice ) << first << second << content;
                ASSERT_EQ( plainForm( twice ), plainForm( store ) ) << first << second << content;
                if ( !isLegacy( first ) && !isLegacy( second ) )
                {
                    ASSERT_EQ( packedStore( twice ), content ) << first << second;
                }
            }
        }
    }
}

TEST( JsonStore, DecodeErrors )
{
    Local<QV_STORE_DECODE_RESULT> result( qvStoreDecodeHeaderless( bufferOf( "[1" ), nullptr, jsonText ) );
    Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
    ASSERT_TRUE( error );
    EXPECT_EQ( qvStoreDecodeErrorCode( error ), QV_STORE_DECODE_ERROR_CODE_JSON_ENCODING );
    Local<QV_JSON_DECODE_ERROR> inner( qvStoreDecodeErrorJsonDecodeError( error ) );
    EXPECT_EQ( qvJsonDecodeErrorCode( inner ), QV_JSON_DECODE_ERROR_CODE_END );
    Local<QV_MESSAGE> message( qvStoreDecodeErrorToMessage( error ) );
    EXPECT_EQ( takeUtf8( qvMessageToString( message ) ), "error: unexpected end of input" );

    for ( const char *content : { "1", "null", "\"x\"" } )
    {
        result.take( qvStoreDecodeHeaderless( bufferOf( content ), nullptr, jsonText ) );
        error.take( qvStoreDecodeResultError( result ) );
        ASSERT_TRUE( error );
        EXPECT_EQ( qvStoreDecodeErrorCode( error ), QV_STORE_DECODE_ERROR_CODE_JSON_VALUE );
    }
    // Bytes that aren't text give the location of their first one.
    Local<QV_LOCATION> base = location( 4, 2 );
    result.take( qvStoreDecodeHeaderless( bufferOf( "\xFF" ), base, jsonText ) );
    error.take( qvStoreDecodeResultError( result ) );
    EXPECT_EQ( takePlace( qvStoreDecodeErrorLocation( error ) ), "4:2" );
}

TEST( JsonStore, Detection )
{
    // What is standard text as well is taken as that.
    const std::pair<const char *, const char *> rows[] = {
        { "{\"a\":1}", "{\"a\":1}" }, { "[1,2]", "[1,2]" },
        { "[ 1 2 ]", "[1,2]" },       { "{ \"a\": [ true ] }", "{\"a\":[true]}" },
        { "[ 1 ]", "[1]" },
    };
    for ( auto [content, expected] : rows )
    {
        Local<QV_STORE> store( qvStoreTryDecode( bufferOf( content ), nullptr, nullptr ) );
        ASSERT_TRUE( store ) << content;
        EXPECT_EQ( packedStore( store ), expected );
    }
}

TEST( JsonStore, DepthNeedsNoStack )
{
    bool done = runOnSmallStack( [] {
        for ( bool objects : { false, true } )
        {
            Json val = nest( 300000, objects );
            Local<QV_STORE> store( qvJsonConvertToStore( val ) );
            Json back( qvJsonConvertFromStore( store ) );
            EXPECT_TRUE( sameContent( back, val ) );
        }
    } );
    EXPECT_TRUE( done );
}

} // namespace
