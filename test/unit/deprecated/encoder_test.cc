// The bytes of each kind of value, and what a decoder makes of good, bad and short ones.

#include "support/test.hh"

namespace
{

using namespace std::string_literals;
using namespace test;

using Encoder = Local<QV_ENCODER>;
using Decoder = Local<QV_DECODER>;

std::string written( QV_ENCODER *enc )
{
    Local<QV_BUFFER> buffer( qvEncoderBuffer( enc ) );
    EXPECT_EQ( qvBufferLength( buffer ), qvEncoderLength( enc ) );
    return bytesOf( buffer );
}

Decoder decoderOf( const std::string &bytes )
{
    return Decoder( qvDecoderCreate( bufferOf( bytes ) ) );
}

TEST( Encoder, WritesIntegers )
{
    const struct
    {
        QV_INT value;
        std::string bytes;
    } rows[] = {
        { 0, "\0"s },
        { 1, "\x01\x01" },
        { -1, "\x81\x01" },
        { 127, "\x01\x7F" },
        { 255, "\x01\xFF" },
        { 256, "\x02\x01\0"s },
        { -65536, "\x83\x01\0\0"s },
        { QV_INT_MAX, "\x08\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF" },
        { QV_INT_MIN, "\x88\x80\0\0\0\0\0\0\0"s },
    };
    for ( const auto &row : rows )
    {
        Encoder enc( qvEncoderCreate() );
        qvEncoderEncodeInt( enc, row.value );
        EXPECT_EQ( row.bytes, written( enc ) ) << row.value;
        Decoder dec = decoderOf( row.bytes );
        QV_INT value = 99;
        EXPECT_TRUE( qvDecoderTryDecodeInt( dec, &value ) );
        EXPECT_EQ( row.value, value );
        EXPECT_EQ( 0, qvDecoderRemaining( dec ) );
    }
}

TEST( Decoder, ReadsIntegersOfAnyForm )
{
    const struct
    {
        std::string bytes;
        bool isGood;
        QV_INT value;
    } rows[] = {
        { "", false, 0 },
        { "\x01", false, 0 },
        { "\x80", true, 0 },
        { "\x81\0"s, true, 0 },
        { "\x03\0\0\x05"s, true, 5 },
        { "\x09\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, false, 0 },
        { "\x09\0\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, true, QV_INT_MAX },
        { "\x08\x80\0\0\0\0\0\0\0"s, false, 0 },
        { "\x88\x80\0\0\0\0\0\0\x01"s, false, 0 },
        { "\x09\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", false, 0 },
        { "\x0A\0\0\0\0\0\0\0\0\x01\x02"s, true, 0x102 },
        // The number of bytes as an integer of its own.
        { "\x7F\x01\x02\x01\0"s, true, 256 },
        { "\xFF\x01\x01\x05", true, -5 },
        { "\x7F\0"s, true, 0 },
        { "\x7F\x80"s, true, 0 },
        { "\x7F\x81\x01\x05", false, 0 },
        { "\x7F\x7F\x01\x01\x01\x07", true, 7 },
        { "\x7F\xFF\x01\x01\x01\x07", false, 0 },
        { "\x7F\x01\xC8" + std::string( 199, '\0' ) + "\x09", true, 9 },
        { "\x7F\x08\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", false, 0 },
        { std::string( 1000000, '\x7F' ), false, 0 },
    };
    for ( const auto &row : rows )
    {
        Decoder dec = decoderOf( row.bytes );
        QV_INT value = 99;
        EXPECT_EQ( row.isGood, qvDecoderTryDecodeInt( dec, &value ) ) << testing::PrintToString( row.bytes );
        EXPECT_EQ( row.isGood ? row.value : 99, value );
        EXPECT_EQ( !row.isGood, qvDecoderError( dec ) );
        EXPECT_EQ( 0, qvDecoderRemaining( dec ) );
        EXPECT_EQ( lengthOf( row.bytes ), qvDecoderOffset( dec ) );
    }
}

TEST( Decoder, ReadsCharacters )
{
    const struct
    {
        std::string bytes;
        bool isGood;
        QV_CHAR ch;
    } rows[] = {
        { "\x7F", true, 0x7F },           { "\x80\0\x80"s, true, 0x80 },
        { "\x81\xF6\0"s, true, 0x1F600 }, { "\x90\xFF\xFF", true, 0x10FFFF },
        { "\x80\xD8\0"s, true, 0xD800 },  { "\x80\0A"s, true, 'A' },
        { "\x91\0\0"s, false, 0 },        { "\x9F\xFF\xFF", false, 0 },
        { "\xA0\0\x80"s, false, 0 },      { "\xC0\0\x80"s, false, 0 },
        { "\x80\0"s, false, 0 },          { "", false, 0 },
    };
    for ( const auto &row : rows )
    {
        Decoder dec = decoderOf( row.bytes );
        QV_CHAR ch = 1;
        EXPECT_EQ( row.isGood, qvDecoderTryDecodeChar( dec, &ch ) ) << testing::PrintToString( row.bytes );
        EXPECT_EQ( row.isGood ? row.ch : 1, ch );
        EXPECT_EQ( !row.isGood, qvDecoderError( dec ) );
    }
}

// Values of all kinds in a row, as far as the random numbers have it, written and read back.
TEST( Encoder, ComesBackThroughADecoder )
{
    std::mt19937_64 random( 3 );
    for ( int round = 0; round < 200; round++ )
    {
        std::u32string chars( random() % 700, U'x' );
        for ( size_t count = random() % 3 == 0 ? 0 : random() % 20; count > 0 && !chars.empty(); count-- )
            chars[random() % chars.size()] = static_cast<char32_t>( random() % 0x110000 );
        auto number = static_cast<QV_INT>( random() ) >> random() % 64;
        Local<QV_STRING> string = text( chars );
        Local<QV_BUFFER> buffer = bufferOf( std::string( random() % 50, '\xAB' ) );
        Local<QV_IDENTIFIER> ident( qvIdentifierCreate() );
        Local<QV_VECTOR> vec( qvVectorCreate() );
        qvVectorAppendString( vec.edit(), string );
        qvVectorAppendInt( vec.edit(), number );
        Local<QV_STORE> store( qvStoreCreate() );
        qvStoreSetValueCstr( store.edit(), "a", -1, string );
        bool isPresent = random() % 2 != 0;

        Encoder enc( qvEncoderCreate() );
        qvEncoderEncodeBool( enc, isPresent );
        qvEncoderEncodeInt( enc, number );
        qvEncoderEncodeChars( enc, qvStringBacking( string ), qvStringLength( string ) );
        qvEncoderEncodeString( enc, string );
        qvEncoderEncodeBuffer( enc, buffer );
        qvEncoderEncodeStringVector( enc, vec );
        qvEncoderEncodeIdentifier( enc, ident );
        qvEncoderEncodeStore( enc, store );
        qvEncoderEncodeOptionalString( enc, isPresent ? static_cast<QV_STRING *>( string ) : nullptr );
        qvEncoderEncodeOptionalBuffer( enc, isPresent ? static_cast<QV_BUFFER *>( buffer ) : nullptr );
        qvEncoderEncodeOptionalStringVector( enc, isPresent ? static_cast<QV_VECTOR *>( vec ) : nullptr );
        qvEncoderEncodeOptionalIdentifier( enc, isPresent ? static_cast<QV_IDENTIFIER *>( ident ) : nullptr );
        qvEncoderEncodeOptionalStore( enc, isPresent ? static_cast<QV_STORE *>( store ) : nullptr );

        Decoder dec = decoderOf( written( enc ) );
        QV_BOOL flag = -1;
        QV_INT value = 0;
        std::u32string array( chars.size(), U' ' );
        // Handles with something in them already: a result takes its place.
        Local<QV_STRING> string2( qvStringCreate() );
        Local<QV_BUFFER> buffer2( qvBufferCreate() );
        Local<QV_VECTOR> vec2( qvVectorCreate() );
        Local<QV_IDENTIFIER> ident2( qvIdentifierCreate() );
        Local<QV_STORE> store2( qvStoreCreate() );
        ASSERT_TRUE( qvDecoderTryDecodeBool( dec, &flag ) );
        ASSERT_TRUE( qvDecoderTryDecodeInt( dec, &value ) );
        ASSERT_TRUE(
            qvDecoderTryDecodeChars( dec, reinterpret_cast<QV_CHAR *>( array.data() ), lengthOf( array ) ) );
        ASSERT_TRUE( qvDecoderTryDecodeString( dec, string2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeBuffer( dec, buffer2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeStringVector( dec, vec2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeIdentifier( dec, ident2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeStore( dec, store2.edit() ) );
        EXPECT_EQ( isPresent, flag );
        EXPECT_EQ( number, value );
        EXPECT_TRUE( chars == array );
        EXPECT_TRUE( qvStringEquals( string, string2 ) );
        EXPECT_TRUE( qvBufferEquals( buffer, buffer2 ) );
        qvVectorStringize( vec.edit() );
        EXPECT_TRUE( qvVectorEquals( vec, vec2 ) );
        EXPECT_TRUE( qvIdentifierEquals( ident, ident2 ) );
        EXPECT_TRUE( qvStoreEquals( store, store2 ) );
        ASSERT_TRUE( qvDecoderTryDecodeOptionalString( dec, string2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeOptionalBuffer( dec, buffer2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeOptionalStringVector( dec, vec2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeOptionalIdentifier( dec, ident2.edit() ) );
        ASSERT_TRUE( qvDecoderTryDecodeOptionalStore( dec, nullptr ) );
        EXPECT_EQ( isPresent, string2 && qvStringEquals( string, string2 ) );
        EXPECT_EQ( isPresent, buffer2 && qvBufferEquals( buffer, buffer2 ) );
        EXPECT_EQ( isPresent, vec2 && qvVectorEquals( vec, vec2 ) );
        EXPECT_EQ( isPresent, ident2 && qvIdentifierEquals( ident, ident2 ) );
        EXPECT_EQ( 0, qvDecoderRemaining( dec ) );
        EXPECT_FALSE( qvDecoderError( dec ) );

        // Whatever is cut off, something fails, and the last result stays.
        std::string whole = written( enc );
        Decoder cut = decoderOf( whole.substr( 0, random() % whole.size() ) );
        bool isGood =
            qvDecoderTryDecodeBool( cut, nullptr ) && qvDecoderTryDecodeInt( cut, nullptr ) &&
            qvDecoderTryDecodeChars( cut, nullptr, lengthOf( chars ) ) &&
            qvDecoderTryDecodeString( cut, nullptr ) && qvDecoderTryDecodeBuffer( cut, nullptr ) &&
            qvDecoderTryDecodeStringVector( cut, nullptr ) && qvDecoderTryDecodeIdentifier( cut, nullptr ) &&
            qvDecoderTryDecodeStore( cut, nullptr ) && qvDecoderTryDecodeOptionalString( cut, nullptr ) &&
            qvDecoderTryDecodeOptionalBuffer( cut, nullptr ) &&
            qvDecoderTryDecodeOptionalStringVector( cut, nullptr ) &&
            qvDecoderTryDecodeOptionalIdentifier( cut, nullptr ) &&
            qvDecoderTryDecodeOptionalStore( cut, nullptr );
        EXPECT_FALSE( isGood );
        EXPECT_TRUE( qvDecoderError( cut ) );
        EXPECT_FALSE( qvDecoderTryDecodeString( cut, string2.edit() ) );
        EXPECT_EQ( isPresent, string2 && qvStringEquals( string, string2 ) );
    }
}

TEST( Decoder, RefusesBadLengthsAndForms )
{
    using Read = QV_BOOL ( * )( QV_DECODER * );
    Read string = []( QV_DECODER *dec ) { return qvDecoderTryDecodeString( dec, nullptr ); };
    Read buffer = []( QV_DECODER *dec ) { return qvDecoderTryDecodeBuffer( dec, nullptr ); };
    Read vector = []( QV_DECODER *dec ) { return qvDecoderTryDecodeStringVector( dec, nullptr ); };
    Read ident = []( QV_DECODER *dec ) { return qvDecoderTryDecodeIdentifier( dec, nullptr ); };
    Read flag = []( QV_DECODER *dec ) { return qvDecoderTryDecodeBool( dec, nullptr ); };
    Read optional = []( QV_DECODER *dec ) { return qvDecoderTryDecodeOptionalString( dec, nullptr ); };
    const struct
    {
        Read read;
        std::string bytes;
        bool isGood;
    } rows[] = {
        { string, "\x81\x01x", false },
        { string, "\x01\x02x", false },
        { string, "\x08\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFFxxxx", false },
        { string, "\x01\x03\x80\0x"s, false },
        { string, "\0"s, true },
        { buffer, "\x81\x01x", false },
        { buffer, "\x01\x02x", false },
        { buffer, "\0"s, true },
        { vector, "\x81\x01", false },
        { vector, "\x08\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0\0"s, false },
        { vector, "\x01\x02\0\x01\x01x"s, true },
        { ident, "\1 0123456789ABCDEF0123456789ABCDEF", true },
        { ident, "\1 0123456789ABCDEF0123456789abcdef", false },
        { ident, "\1\0370123456789ABCDEF0123456789ABCDE", false },
        { flag, "\x02", false },
        { flag, "\xFF", false },
        { flag, "\x01", true },
        { optional, "\x02\0"s, false },
        { optional, "\x01", false },
        { optional, "\0"s, true },
    };
    for ( const auto &row : rows )
    {
        Decoder dec = decoderOf( row.bytes );
        EXPECT_EQ( row.isGood, row.read( dec ) ) << testing::PrintToString( row.bytes );
        EXPECT_EQ( !row.isGood, qvDecoderError( dec ) ) << testing::PrintToString( row.bytes );
        EXPECT_EQ( 0, qvDecoderRemaining( dec ) );
    }
}

TEST( Decoder, ReadsBytesUntilItsError )
{
    Decoder dec = decoderOf( "abcdef" );
    unsigned char byte = 0;
    unsigned char bytes[2];
    Local<QV_BUFFER> buffer;
    EXPECT_TRUE( qvDecoderTryReadByte( dec, &byte ) );
    EXPECT_TRUE( qvDecoderTrySkip( dec, 1 ) );
    EXPECT_TRUE( qvDecoderTryRead( dec, buffer.edit(), 1 ) );
    EXPECT_TRUE( qvDecoderTryReadBytes( dec, bytes, 2 ) );
    EXPECT_EQ( 'a', byte );
    EXPECT_EQ( "c", bytesOf( buffer ) );
    EXPECT_EQ( 'e', bytes[1] );
    EXPECT_EQ( 5, qvDecoderOffset( dec ) );
    EXPECT_EQ( 1, qvDecoderRemaining( dec ) );
    EXPECT_TRUE( qvDecoderTryRead( dec, buffer.edit(), 0 ) );
    EXPECT_EQ( "", bytesOf( buffer ) );
    EXPECT_FALSE( qvDecoderTrySkip( dec, 2 ) );
    EXPECT_TRUE( qvDecoderError( dec ) );
    EXPECT_EQ( 6, qvDecoderOffset( dec ) );
    EXPECT_EQ( 0, qvDecoderRemaining( dec ) );
    EXPECT_EQ( 6, qvDecoderLength( dec ) );
    EXPECT_FALSE( qvDecoderTryReadByte( dec, nullptr ) );
    EXPECT_FALSE( qvDecoderTrySkip( dec, 0 ) );
    EXPECT_FALSE( qvDecoderTryDecodeChars( dec, nullptr, 0 ) );
}

TEST( Encoder, WritesBytesAsTheyAre )
{
    Encoder enc( qvEncoderCreate() );
    Local<QV_BUFFER> source = bufferOf( "abcdef" );
    qvEncoderWrite( enc, source );
    qvEncoderWriteLeading( enc, source, 1 );
    qvEncoderWriteTrailing( enc, source, 1 );
    qvEncoderWriteInner( enc, source, 1, 2 );
    qvEncoderWriteOuter( enc, source, 1, 4 );
    qvEncoderWriteByte( enc, 'x' );
    qvEncoderWriteBytes( enc, reinterpret_cast<const unsigned char *>( "yz" ), 2 );
    qvEncoderWriteZero( enc, 1 );
    qvEncoderWriteOne( enc, 1 );
    std::string once = "abcdefafbcafxyz\0\xFF"s;
    EXPECT_EQ( once, written( enc ) );
    qvEncoderWriteEncoder( enc, enc );
    EXPECT_EQ( once + once, written( enc ) );
    qvEncoderClear( enc );
    EXPECT_EQ( 0, qvEncoderLength( enc ) );
}

TEST( EncoderDeathTest, RefusesFaultsOfTheCaller )
{
    Encoder enc( qvEncoderCreate() );
    EXPECT_DEATH( qvEncoderEncodeChar( enc, 0x110000 ), "QV_CHAR_OK" );
    EXPECT_DEATH( qvEncoderEncodeChars( enc, nullptr, -1 ), "chsLength >= 0" );
    EXPECT_DEATH( qvEncoderEncodeString( enc, nullptr ), "qvs" );
    Local<QV_BUFFER> bits( qvBufferCreateFromBits( 1, 3 ) );
    EXPECT_DEATH( qvEncoderEncodeBuffer( enc, bits ), "qvBufferBitIsAligned" );
    Decoder dec = decoderOf( "" );
    EXPECT_DEATH( qvDecoderTrySkip( dec, -1 ), "length >= 0" );
    EXPECT_DEATH( qvDecoderTryDecodeChars( dec, nullptr, -1 ), "chsLength >= 0" );
}

} // namespace
