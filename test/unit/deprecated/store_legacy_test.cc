// Both legacy encodings of stores: samples, tables of lines, random stores both ways, depth, and their places among all
// encodings.

#include "support/test.hh"
#include "support/small_stack.hh"

#include <qv/deprecated/qv_store_legacy_text.hh>

namespace
{

using namespace std::string_literals;
using namespace test;

using Store = Local<QV_STORE>;
using Buffer = Local<QV_BUFFER>;

std::string linesOf( QV_STORE *store )
{
    Buffer bytes( qvStoreLegacyTextTryEncodeToBuffer( store, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF ) );
    return bytesOf( bytes );
}

Store storeOf( const std::string &lines )
{
    return Store( qvStoreLegacyTextTryDecodeFromBuffer( bufferOf( lines ), QV_CHARSET_UTF_8, 0, 255 ) );
}

// A chain of so many substores below the root, with a value in the last.
Store chain( QV_INT depth )
{
    Store store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "v", -1, text( "1" ) );
    for ( QV_INT level = 0; level < depth; level++ )
    {
        Store outer( qvStoreCreate() );
        qvStoreSetStoreCstr( outer.edit(), "s", -1, store );
        store.take( outer.give() );
    }
    return store;
}

QV_INT depthOf( QV_STORE *store )
{
    Store inner = Store::share( store );
    for ( QV_INT depth = 0;; depth++ )
    {
        QV_STORE *next = qvStoreStoreCstr( inner, "s", -1 );
        if ( !next )
            return depth;
        inner.take( next );
    }
}

TEST( StoreLegacyText, WritesALineAValue )
{
    Store store( qvStoreCreate() );
    EXPECT_EQ( "", linesOf( store ) );
    Store inner( qvStoreCreate() );
    Store empty( qvStoreCreate() );
    qvStoreSetValueCstr( inner.edit(), "c.d", -1, text( "x" ) );
    qvStoreSetStoreCstr( store.edit(), "b", -1, inner );
    qvStoreSetStoreCstr( store.edit(), "e", -1, empty );
    qvStoreSetValueIntCstr( store.edit(), "a", -1, 1 );
    EXPECT_EQ( "a=1\nb.c\\.d=x\ne.\n", linesOf( store ) );
    Store back = storeOf( linesOf( store ) );
    EXPECT_EQ( linesOf( store ), linesOf( back ) );
    Local<QV_VECTOR> lines( qvStoreLegacyTextEncodeToStringVector( store ) );
    EXPECT_EQ( 3, qvVectorLength( lines ) );

    Store array( qvStoreCreateArray() );
    for ( int item = 0; item < 11; item++ )
        qvStoreAppendValueInt( array.edit(), item );
    EXPECT_EQ( 0u, linesOf( array ).find( "00=0\n01=1\n" ) );
    back.take( storeOf( linesOf( array ) ).give() );
    EXPECT_EQ( 0, qvStoreHints( back ) );
    EXPECT_EQ( "10", takeUtf8( qvStoreValueCstr( back, "10", -1 ) ) );
}

TEST( StoreLegacyText, EscapesAddressesAndValues )
{
    EXPECT_EQ( "a\\.\\.b\\.", takeUtf8( qv___StoreAddressEscape( text( "a..b." ) ) ) );
    EXPECT_EQ( "100%% = a.b%00000a%00007f%000085%00009f\xC2\xA0",
               takeUtf8( qv___StoreValueEscape( text( U"100% = a.b\n\x7F\x85\x9F\xA0" ) ) ) );
    EXPECT_EQ( "", takeUtf8( qv___StoreValueEscape( text( "" ) ) ) );
}

TEST( StoreLegacyText, TakesTheLinesThatFit )
{
    // What comes back, written again.
    static const std::pair<const char *, const char *> rows[] = {
        { "a=1=2", "a=1=2\n" },
        { "a= 1 ", "a= 1 \n" },
        { " a =1", "a=1\n" },
        { "a\\.=1", "a\\.=1\n" },
        { "a\\.b.c=1", "a\\.b.c=1\n" },
        { "a=\\x", "a=\\x\n" },
        { "a.", "a.\n" },
        { "a. ", "a.\n" },
        { "a.x", "a.\n" },
        { "a.b.", "a.b.\n" },
        { "a..b=1", "a.\n" },
        { "a.x=1\nb=2\na.y=3\na.", "a.x=1\na.y=3\nb=2\n" },
        { "a.x=1\na=2", "a.x=1\n" },
        { "a=1\na=2", "a=2\n" },
        { "b.=1\nb.x.y=2\nb.x=3", "b.x.y=2\n" },
        { "a=%41", "a=%%41\n" },
        { "a=%000041%%%zz%", "a=A%%%%zz%%\n" },
        { "a=%00000A%110000%10ffff", "a=%00000a%%110000\xF4\x8F\xBF\xBF\n" },
        { "a=%%000041", "a=%%000041\n" },
        { "a=%00004", "a=%%00004\n" },
        { "a=%-00001", "a=%%-00001\n" },
        { "a=1\r\nb=2\rc=3\u2028d=4\fe=5", "a=1\nb=2\nc=3\nd=4\ne=5\n" },
        { "a=\xFF", "a=\xEF\xBF\xBD\n" },
    };
    for ( auto [lines, again] : rows )
        EXPECT_EQ( again, linesOf( storeOf( lines ) ) ) << lines;
    for ( const char *bad :
          { "", "\n\n", "a b=1", "x", "=1", ".a=1", "a\\b=1", "a\\", "a\\=1", "\x01}\x80 {a=1" } )
        EXPECT_EQ( "", linesOf( storeOf( bad ) ) ) << bad;
}

TEST( StoreLegacyText, DropsWhatIsTooDeep )
{
    // Level 99 is the last one that is read, level 100 comes back empty.
    for ( QV_INT depth : { 98, 99, 100, 150 } )
    {
        Store back = storeOf( linesOf( chain( depth ) ) );
        EXPECT_EQ( depth < 100 ? depth : 100, depthOf( back ) );
        EXPECT_EQ( depth < 100, linesOf( back ) == linesOf( chain( depth ) ) );
    }
    EXPECT_EQ( 100, depthOf( storeOf( times( 100000, "s." ) ) ) );
}

TEST( StoreLegacyText, TellsCharsetErrors )
{
    Store store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "a", -1, text( U"\x20AC" ) );
    constexpr QV_CHARSET_FLAGS strict = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
    EXPECT_EQ( nullptr,
               qvStoreLegacyTextTryEncodeToBuffer( store, QV_CHARSET_ASCII, strict, QV_NLF_FLAG_LF ) );
    Buffer lossy( qvStoreLegacyTextTryEncodeToBuffer( store, QV_CHARSET_ASCII, 0, QV_NLF_FLAG_CRLF ) );
    EXPECT_EQ( "a=?\r\n", bytesOf( lossy ) );
    EXPECT_EQ( nullptr,
               qvStoreLegacyTextTryDecodeFromBuffer( bufferOf( "a=\xFF" ), QV_CHARSET_UTF_8, strict, 255 ) );
}

TEST( StoreLegacyBinary, HasItsBytes )
{
    Store store( qvStoreCreate() );
    Store inner( qvStoreCreate() );
    Buffer bytes( qvStoreLegacyBinaryEncodeToBuffer( store ) );
    EXPECT_EQ( "\0"s, bytesOf( bytes ) );
    qvStoreSetStoreCstr( store.edit(), "b", -1, inner );
    qvStoreSetValueCstr( store.edit(), "a", -1, text( U"1\x20AC" ) );
    bytes.take( qvStoreLegacyBinaryEncodeToBuffer( store ) );
    EXPECT_EQ( "\x01\x02\x01\x01"s + "a\x01\x01\x02" + "1\x80\x20\xAC\0\x01\x01"s + "b\0\x01\0"s,
               bytesOf( bytes ) );
    Store back( qvStoreLegacyBinaryTryDecodeFromBuffer( bytes ) );
    EXPECT_TRUE( qvStoreEquals( store, back ) );
    qvBufferAppendByte( bytes.edit(), 0 );
    EXPECT_EQ( nullptr, qvStoreLegacyBinaryTryDecodeFromBuffer( bytes ) );
}

TEST( StoreLegacyBinary, RefusesWhatIsNoStore )
{
    const struct
    {
        std::string bytes;
        const char *lines; // null for a refusal
    } rows[] = {
        { "", nullptr },
        { "\x81\x01", nullptr },
        { "\x01\x01", nullptr },
        { "\1\1\1\1a\0\0"s, "" },
        { "\1\1\1\1a\1\1\1x\1\0"s, "a.\n" },
        { "\1\2\1\1a\1\0\0\1\1a\1\1\1x\0"s, "a=x\n" },
        { "\x01\x01\x01\x01 \x01\0\0"s, nullptr },
        { "\x01\x01\0\x01\0\0"s, nullptr },
        { "\1\1\1\1a\2\0\0"s, nullptr },
        { "\1\1\1\1a\1\0\2"s, nullptr },
        { "\1\1\1\1a\0\1\1"s, nullptr },
    };
    for ( const auto &row : rows )
    {
        Store store( qvStoreLegacyBinaryTryDecodeFromBuffer( bufferOf( row.bytes ) ) );
        ASSERT_EQ( row.lines != nullptr, store != nullptr ) << testing::PrintToString( row.bytes );
        if ( store )
        {
            EXPECT_EQ( row.lines, linesOf( store ) );
        }
    }
}

TEST( StoreLegacyBinary, ReadsNinetyNineLevels )
{
    for ( QV_INT depth : { 98, 99, 100, 1000 } )
    {
        Buffer bytes( qvStoreLegacyBinaryEncodeToBuffer( chain( depth ) ) );
        Store back( qvStoreLegacyBinaryTryDecodeFromBuffer( bytes ) );
        EXPECT_EQ( depth < 100, back != nullptr );
        if ( back )
        {
            EXPECT_TRUE( qvStoreEquals( chain( depth ), back ) );
        }
    }
}

TEST( StoreLegacy, NeedsNoStackToWrite )
{
    bool isGood = runOnSmallStack( [] {
        Store deep = chain( 250000 );
        Buffer binary( qvStoreLegacyBinaryEncodeToBuffer( deep ) );
        EXPECT_EQ( 1750000 + 10, qvBufferLength( binary ) );
        EXPECT_EQ( 500000 + 4, static_cast<QV_INT>( linesOf( deep ).size() ) );
        EXPECT_EQ( 100, depthOf( storeOf( linesOf( deep ) ) ) );
    } );
    EXPECT_TRUE( isGood );
}

Store randomStore( std::mt19937 *random, int depth )
{
    static const char *const addresses[] = { "a", "b.c", "..", "-", "x_1", "Z", "00", "z." };
    Store store( qvStoreCreate() );
    for ( unsigned count = ( *random )() % 7; count > 0; count-- )
    {
        const char *address = addresses[( *random )() % std::size( addresses )];
        if ( depth > 0 && ( *random )() % 3 == 0 )
        {
            qvStoreSetStoreCstr( store.edit(), address, -1, randomStore( random, depth - 1 ) );
            continue;
        }
        std::u32string value( ( *random )() % 12, U' ' );
        for ( char32_t &ch : value )
        {
            static constexpr char32_t some[] = U"a%=.\\ \n\r\x85\x2028\x20AC\x1F600\x10FFFF\x7F\xA0"
                                               U"0f";
            ch = some[( *random )() % ( std::size( some ) - 1 )];
        }
        qvStoreSetValueCstr( store.edit(), address, -1, text( value ) );
    }
    return store;
}

TEST( StoreLegacy, ComesBack )
{
    std::mt19937 random( 9 );
    for ( int round = 0; round < 300; round++ )
    {
        Store store = randomStore( &random, 4 );
        Buffer bytes( qvStoreLegacyBinaryEncodeToBuffer( store ) );
        EXPECT_TRUE( qvStoreEquals( store, Store( qvStoreLegacyBinaryTryDecodeFromBuffer( bytes ) ) ) );
        Local<QV_VECTOR> lines( qvStoreLegacyTextEncodeToStringVector( store ) );
        Store back( qvStoreLegacyTextDecodeFromStringVector( lines ) );
        EXPECT_TRUE( qvStoreEquals( store, back ) ) << linesOf( store );
    }
}

TEST( StoreLegacy, StandsLastInTheDetection )
{
    static const std::pair<std::string, std::string> rows[] = {
        { "\0"s, "" },
        { "\1\1\1\1a\1\1\0011\0"s, "a=1\n" },
        { "a.b=1\n", "a.b=1\n" },
        { "a=1", "a=1\n" },
        { "a 1\n", "a=1\n" },
        { "\xFF\xFE", "" },
    };
    for ( const auto &[bytes, lines] : rows )
    {
        Store store( qvStoreTryDecode( bufferOf( bytes ), nullptr, nullptr ) );
        ASSERT_TRUE( store ) << testing::PrintToString( bytes );
        EXPECT_EQ( lines, linesOf( store ) ) << testing::PrintToString( bytes );
    }
    Local<QV_STORE_DECODE_RESULT> result(
        qvStoreDecodeHeaderless( bufferOf( "\x05" ), nullptr, QV_STORE_ENCODING_HEADERLESS_LEGACY_BINARY ) );
    Local<QV_STORE_DECODE_ERROR> error( qvStoreDecodeResultError( result ) );
    ASSERT_TRUE( error );
    EXPECT_EQ( QV_STORE_DECODE_ERROR_CODE_LEGACY_BINARY_ENCODING, qvStoreDecodeErrorCode( error ) );
}

TEST( StoreLegacyDeathTest, RefusesVectorsOfOtherThings )
{
    Local<QV_VECTOR> vec( qvVectorCreate() );
    qvVectorAppendInt( vec.edit(), 1 );
    EXPECT_DEATH( qvStoreLegacyTextDecodeFromStringVector( vec ), "qvVectorContainsOnly" );
}

} // namespace
