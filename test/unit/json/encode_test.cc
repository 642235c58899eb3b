// Encoding: layouts, escapes, charsets, and random round trips; the options and their store form.

#include "support/test.hh"
#include "json/support.hh"

#include <qv/json/qv_json_options.hh>

using namespace test;

namespace
{

constexpr QV_JSON_FLAGS singleLine = QV_JSON_FLAG_ENCODE_SINGLE_LINE;
constexpr QV_JSON_FLAGS packedLine = singleLine | QV_JSON_FLAG_ENCODE_PACKED;

std::string encode( QV_JSON_VALUE *val, QV_JSON_FLAGS flags )
{
    std::string bytes = takeBytes( qvJsonEncodeWithFlags( val, flags ) );
    EXPECT_EQ( takeUtf8( qvJsonEncodeToStringWithFlags( val, flags ) ), bytes );
    return bytes;
}

TEST( JsonEncode, Layouts )
{
    const char *const rows[][3] = {
        { "{}", "{}\n", "{}" },
        { "[]", "[]\n", "[]" },
        { "1.50", "1.50\n", "1.50" },
        { "{\"a\":[1]}", "{\n\t\"a\": [\n\t\t1\n\t]\n}\n", "{ \"a\": [ 1 ] }" },
        { "[null,true,false,\"\",-1e5]", "[\n\tnull,\n\ttrue,\n\tfalse,\n\t\"\",\n\t-1e5\n]\n",
          "[ null, true, false, \"\", -1e5 ]" },
        { "{\"a\":{},\"b\":[[],{}]}", "{\n\t\"a\": {},\n\t\"b\": [\n\t\t[],\n\t\t{}\n\t]\n}\n",
          "{ \"a\": {}, \"b\": [ [], {} ] }" },
    };
    for ( auto &[content, lines, line] : rows )
    {
        Json val = json( content );
        ASSERT_TRUE( val );
        EXPECT_EQ( encode( val, 0 ), lines );
        EXPECT_EQ( takeBytes( qvJsonEncode( val ) ), lines );
        EXPECT_EQ( takeUtf8( qvJsonEncodeToString( val ) ), lines );
        EXPECT_EQ( encode( val, QV_JSON_FLAG_ENCODE_PACKED ), lines );
        EXPECT_EQ( encode( val, singleLine ), line );
        EXPECT_EQ( encode( val, packedLine ), content );
    }
}

TEST( JsonEncode, Escapes )
{
    std::u32string all;
    for ( char32_t ch = 0; ch < 0x60; ch++ )
        all += ch;
    all += U"\x7F\u0085\u00E9\u2028\U0001F600";
    Json val( qvJsonValueCreateString( text( all ) ) );
    EXPECT_EQ(
        encode( val, packedLine ),
        R"("\u0000\u0001\u0002\u0003\u0004\u0005\u0006\u0007\b\t\n\u000B\f\r\u000E\u000F)"
        R"(\u0010\u0011\u0012\u0013\u0014\u0015\u0016\u0017\u0018\u0019\u001A\u001B\u001C\u001D\u001E\u001F)"
        R"( !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_)"
        "\x7F\xC2\x85\xC3\xA9\xE2\x80\xA8\xF0\x9F\x98\x80\"" );
}

TEST( JsonEncode, Options )
{
    Json val = json( "{\"a\":[1,\"\xC3\xA9\"]}" );
    Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), takeBytes( qvJsonEncode( val ) ) );
    qvJsonOptionsSetEncodeIndent( options.edit(), text( U"\u00B7 " ) );
    qvJsonOptionsSetEncodeNlfFlags( options.edit(), QV_NLF_FLAG_CRLF );
    std::string expected =
        "{\r\n\xC2\xB7 \"a\": [\r\n\xC2\xB7 \xC2\xB7 1,\r\n\xC2\xB7 \xC2\xB7 \"\xC3\xA9\"\r\n"
        "\xC2\xB7 ]\r\n}\r\n";
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), expected );
    EXPECT_EQ( takeUtf8( qvJsonEncodeToStringWithOptions( val, options ) ), expected );
    qvJsonOptionsSetEncodeIndent( options.edit(), text( "" ) );
    qvJsonOptionsSetEncodeNlfFlags( options.edit(), 0 );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), "{\"a\": [1,\"\xC3\xA9\"]}" );

    qvJsonOptionsSetFlags( options.edit(), packedLine );
    qvJsonOptionsSetEncodeCharset( options.edit(), QV_CHARSET_ISO_8859_1 );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), "{\"a\":[1,\"\xE9\"]}" );
    qvJsonOptionsSetEncodeCharset( options.edit(), QV_CHARSET_ASCII );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), "{\"a\":[1,\"?\"]}" );
    qvJsonOptionsSetEncodeCharsetFlags( options.edit(), QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ), "none" );
    qvJsonOptionsSetEncodeCharset( options.edit(), QV_CHARSET_UTF_8 );
    qvJsonOptionsSetEncodeCharsetFlags( options.edit(), QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK );
    EXPECT_EQ( takeBytes( qvJsonTryEncodeWithOptions( val, options ) ),
               "\xEF\xBB\xBF{\"a\":[1,\"\xC3\xA9\"]}" );
}

// Names that come again and short texts that are all escapes, wherever the text has to grow.
TEST( JsonEncode, RepeatedNamesAndEscapes )
{
    for ( size_t length = 35; length < 50; length++ )
    {
        std::string member = "{\"" + std::string( length, 'n' ) + "\":\"";
        for ( int idx = 0; idx < 24; idx++ )
            member += "\\u0001";
        std::string content = "[" + member + "\"}";
        for ( int idx = 0; idx < 60; idx++ )
            content += "," + member + "\"}";
        content += "]";
        EXPECT_EQ( encode( json( content ), packedLine ), content );
    }
}

TEST( JsonEncode, RandomRoundTrips )
{
    RandomJson random( 3 );
    for ( int round = 0; round < 2000; round++ )
    {
        Json val = random.value( 4 );
        QV_JSON_FLAGS flags = random.below( 4 ) * singleLine;
        Local<QV_STRING> string( qvJsonEncodeToStringWithFlags( val, flags ) );
        // Bytes come out as the charset would convert the characters, and both decode to the value.
        Local<QV_BUFFER> converted( qvCharsetConvertStringToBuffer( QV_CHARSET_UTF_8, string ) );
        std::string bytes = takeBytes( qvJsonEncodeWithFlags( val, flags ) );
        ASSERT_EQ( bytes, takeBytes( converted.give() ) );
        Local<QV_JSON_DECODE_RESULT> ofString( qvJsonDecodeString( string, nullptr ) );
        Json decoded( qvJsonDecodeResultValue( ofString ) );
        ASSERT_TRUE( decoded ) << bytes;
        ASSERT_TRUE( sameContent( decoded, val ) ) << bytes;
        Json ofBytes = json( bytes );
        ASSERT_TRUE( ofBytes ) << bytes;
        ASSERT_TRUE( sameContent( ofBytes, val ) ) << bytes;
    }
}

// ---- Flags and options ----

TEST( JsonOptions, Flags )
{
    EXPECT_EQ( qvJsonFlagsNormalize( 32 ), 0 );
    EXPECT_EQ( qvJsonFlagsNormalize( -1 ), 63 );
    EXPECT_EQ( qvJsonFlagsNormalize( 47 ), 15 );
    EXPECT_EQ( takeUtf8( qvJsonFlagsToString( 1 ) ), "" );
    EXPECT_EQ( takeUtf8( qvJsonFlagsToString( 35 ) ), "QV_JSON_FLAG_DECODE_NORMALIZE" );
    EXPECT_EQ( takeUtf8( qvJsonFlagsToString( 49 ) ),
               "QV_JSON_FLAG_ENCODE_SINGLE_LINE|QV_JSON_FLAG_ENCODE_PACKED" );
    EXPECT_EQ( qvJsonFlagsFromString( text( "QV_JSON_FLAG_ENCODE_PACKED" ) ), 0 );
    EXPECT_EQ( qvJsonFlagsFromString(
                   text( "QV_JSON_FLAG_DECODE_LOCATIONS|QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG" ) ),
               8 );
}

// One option by its functions.
struct IntOption
{
    QV_INT ( *get )( QV_JSON_OPTIONS * );
    void ( *set )( QV_JSON_OPTIONS **, QV_INT );
    QV_BOOL ( *isDefault )( QV_JSON_OPTIONS * );
    void ( *reset )( QV_JSON_OPTIONS ** );
    const char *key;
    QV_INT initial, other;
};

#define OPTION( Name, key, initial, other )                                                                  \
    {                                                                                                        \
        qvJsonOptions##Name, qvJsonOptionsSet##Name, qvJsonOptions##Name##Default,                           \
            qvJsonOptionsSet##Name##Default, key, initial, other                                             \
    }

const IntOption intOptions[] = {
    OPTION( Flags, "flags", 0, 6 ),
    OPTION( DecodeCharset, "decodeCharset", QV_CHARSET_UTF_8, QV_CHARSET_KOI_8R ),
    OPTION( DecodeCharsetFlags, "decodeCharsetFlags", 1, 6 ),
    OPTION( DecodeMaxDepth, "decodeMaxDepth", 50, 1 ),
    OPTION( DecodeNlfFlags, "decodeNlfFlags", 255, 3 ),
    OPTION( DecodeUnicodeNormalForm, "decodeUnicodeNormalForm", QV_UNICODE_NORMAL_FORM_C,
            QV_UNICODE_NORMAL_FORM_KD ),
    OPTION( EncodeCharset, "encodeCharset", QV_CHARSET_UTF_8, QV_CHARSET_UTF_16 ),
    OPTION( EncodeCharsetFlags, "encodeCharsetFlags", 0, 8 ),
    OPTION( EncodeNlfFlags, "encodeNlfFlags", QV_NLF_FLAG_LF, QV_NLF_FLAG_CR | QV_NLF_FLAG_PS ),
};

TEST( JsonOptions, SetAndStore )
{
    Local<QV_JSON_OPTIONS> builtin( qvJsonOptionsCreate() );
    Local<QV_STORE> full( qvJsonOptionsStore( builtin, QV_TRUE ) );
    EXPECT_EQ( qvStoreLength( full ), 10 );
    Local<QV_JSON_OPTIONS> all( qvJsonOptionsCreate() );
    for ( const IntOption &option : intOptions )
    {
        EXPECT_EQ( option.get( builtin ), option.initial ) << option.key;
        EXPECT_TRUE( option.isDefault( builtin ) );
        EXPECT_TRUE( qvStoreHasValueCstr( full, option.key, -1 ) ) << option.key;

        Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
        option.set( options.edit(), option.other );
        option.set( all.edit(), option.other );
        EXPECT_EQ( option.get( options ), option.other );
        EXPECT_FALSE( option.isDefault( options ) );
        EXPECT_TRUE( option.isDefault( builtin ) );
        Local<QV_STORE> store( qvJsonOptionsStore( options, QV_FALSE ) );
        EXPECT_EQ( qvStoreLength( store ), 1 );
        EXPECT_TRUE( qvStoreHasValueCstr( store, option.key, -1 ) );
        Local<QV_JSON_OPTIONS> restored( qvJsonOptionsRestore( store ) );
        EXPECT_EQ( option.get( restored ), option.other ) << option.key;
        option.reset( options.edit() );
        EXPECT_EQ( option.get( options ), option.initial );
        EXPECT_TRUE( option.isDefault( options ) );
    }
    qvJsonOptionsSetEncodeIndent( all.edit(), text( "  " ) );
    Local<QV_STORE> store( qvJsonOptionsStore( all, QV_FALSE ) );
    EXPECT_EQ( qvStoreLength( store ), 10 );
    Local<QV_JSON_OPTIONS> restored( qvJsonOptionsRestore( store ) );
    Local<QV_STORE> again( qvJsonOptionsStore( restored, QV_FALSE ) );
    EXPECT_TRUE( qvStoreEquals( store, again ) );
    EXPECT_EQ( takeUtf8( qvJsonOptionsEncodeIndent( restored ) ), "  " );
    qvJsonOptionsSetEncodeIndentDefault( restored.edit() );
    EXPECT_EQ( takeUtf8( qvJsonOptionsEncodeIndent( restored ) ), "\t" );
    EXPECT_EQ( takeUtf8( qvJsonOptionsEncodeIndent( builtin ) ), "\t" );

    // A value that equals the default is no default before it is reset.
    qvJsonOptionsSetFlags( builtin.edit(), QV_JSON_FLAG_DECODE_LOCATIONS | QV_JSON_FLAG_ENCODE_PACKED );
    EXPECT_EQ( qvJsonOptionsFlags( builtin ), QV_JSON_FLAG_DECODE_LOCATIONS );
    Local<QV_STORE> unnamed( qvJsonOptionsStore( builtin, QV_FALSE ) );
    EXPECT_EQ( takeUtf8( qvStoreValueCstr( unnamed, "flags", -1 ) ), "" );
}

TEST( JsonOptions, RestoreSkipsWhatItCantUse )
{
    Local<QV_STORE> store( qvStoreCreate() );
    for ( const IntOption &option : intOptions )
        qvStoreSetValueCstr( store.edit(), option.key, -1, text( "nonsense" ) );
    qvStoreSetValueIntCstr( store.edit(), "decodeMaxDepth", -1, 0 );
    qvStoreSetStoreCstr( store.edit(), "encodeIndent", -1, store );
    Local<QV_JSON_OPTIONS> options( qvJsonOptionsRestore( store ) );
    EXPECT_TRUE( qvJsonOptionsDecodeCharsetDefault( options ) );
    EXPECT_TRUE( qvJsonOptionsEncodeCharsetDefault( options ) );
    EXPECT_TRUE( qvJsonOptionsDecodeUnicodeNormalFormDefault( options ) );
    EXPECT_EQ( qvJsonOptionsDecodeMaxDepth( options ), 50 );
    EXPECT_EQ( qvJsonOptionsDecodeNlfFlags( options ), 0 );
    EXPECT_EQ( takeUtf8( qvJsonOptionsEncodeIndent( options ) ), "\t" );
}

TEST( JsonOptionsDeathTest, ValuesOutOfRange )
{
    Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
    EXPECT_DEATH( qvJsonOptionsSetDecodeMaxDepth( options.edit(), 0 ), "value > 0" );
    EXPECT_DEATH( qvJsonOptionsSetDecodeCharset( options.edit(), 51 ), "QV_CHARSET_OK" );
    EXPECT_DEATH( qvJsonOptionsSetDecodeUnicodeNormalForm( options.edit(), 4 ), "QV_UNICODE_NORMAL_FORM_OK" );
}

} // namespace
