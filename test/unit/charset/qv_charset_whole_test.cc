#include "support/test.hh"
#include "coding.hh"

using namespace test;

namespace
{

// What a whole conversion doesn't tell of a failed one: what came before the failure.
Decoded withoutPart( Decoded decoded )
{
    return decoded.error ? Decoded{ {}, true } : decoded;
}

Encoded withoutPart( Encoded encoded )
{
    return encoded.error ? Encoded{ {}, true } : encoded;
}

} // namespace

// Whole conversions of lengths around the limits of their paths give what the streams give.
TEST( CharsetWhole, EqualsTheStreams )
{
    const QV_CHARSET_FLAGS flagWords[] = {
        0, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER, QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS,
        QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK | QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK };
    std::mt19937 random( 506 );
    for ( QV_CHARSET cs = 0; cs <= QV_CHARSET_UTF_32_LE; cs++ )
    {
        for ( const size_t length :
              { 0, 1, 15, 16, 17, 63, 64, 65, 255, 256, 257, 1023, 1024, 1025, 5000, 70000 } )
        {
            std::string bytes = random() % 2 ? "" : "\xEF\xBB\xBF";
            std::u32string chars;
            for ( size_t idx = 0; idx < length; idx++ )
            {
                bytes += static_cast<char>( random() % 9 ? random() % 128 : random() );
                chars += static_cast<char32_t>( random() % 9 ? random() % 128 : random() % 0x3000 );
            }
            for ( const QV_CHARSET_FLAGS flags : flagWords )
            {
                SCOPED_TRACE( testing::Message() << cs << " length " << length << " flags " << flags );
                EXPECT_EQ( decodeWhole( cs, flags, bytes ),
                           withoutPart( decodeStream( cs, flags, bytes, 4096 ) ) );
                EXPECT_EQ( encodeWhole( cs, flags, chars ),
                           withoutPart( encodeStream( cs, flags, chars, 3000 ) ) );
            }
        }
    }
}

TEST( CharsetWhole, ResultsAreGoodValues )
{
    for ( const size_t length : { 10, 1000, 3000 } )
    {
        // Three bytes a character, so that two thirds of what is set aside goes back.
        std::string bytes = times( length, "\u20AC" );
        Local<QV_STRING> string( qvCharsetConvertBufferToString( QV_CHARSET_UTF_8, bufferOf( bytes ) ) );
        EXPECT_EQ( qvStringLength( string ), static_cast<QV_INT>( length ) );
        qvStringAppendCharRun( string.edit(), U'x', 500 );
        qvStringPrependCharRun( string.edit(), U'y', 500 );
        EXPECT_EQ( toU32( string ), std::u32string( 500, U'y' ) + std::u32string( length, U'\u20AC' ) +
                                        std::u32string( 500, U'x' ) );
        Local<QV_BUFFER> back( qvCharsetConvertStringToBuffer( QV_CHARSET_UTF_8, string ) );
        qvBufferAppendByte( back.edit(), 'z' );
        EXPECT_EQ( bytesOf( back ), std::string( 500, 'y' ) + bytes + std::string( 500, 'x' ) + "z" );
    }
}

TEST( CharsetWhole, NothingLeftIsTheEmptyValue )
{
    const QV_CHARSET_FLAGS ignore = QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS;
    for ( const size_t length : { 0, 5, 2000 } )
    {
        EXPECT_EQ( decodeWhole( QV_CHARSET_ASCII, ignore, std::string( length, '\x80' ) ), Decoded{} );
        EXPECT_EQ( decodeWhole( QV_CHARSET_UTF_8, ignore, std::string( length, '\xFF' ) ), Decoded{} );
        EXPECT_EQ( encodeWhole( QV_CHARSET_ASCII, ignore, std::u32string( length, U'\u20AC' ) ), Encoded{} );
    }
}

TEST( CharsetWholeDeathTest, FaultsOfTheCaller )
{
    Local<QV_STRING> string( qvStringCreate() );
    EXPECT_DEATH( qvCharsetConvertStringToBuffer( 51, string ), "QV_CHARSET_OK" );
    EXPECT_DEATH( qvCharsetConvertStringToBuffer( 0, nullptr ), "string" );
    EXPECT_DEATH( qvCharsetConvertBufferToString( 0, nullptr ), "buffer" );
}
