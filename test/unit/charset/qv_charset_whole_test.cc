#include <gtest/gtest.h>

#include "coding.hh"

// Whole conversions of lengths around the limits of their paths give what the streams give.
TEST( CharsetWhole, EqualsTheStreams )
{
    std::mt19937 random( 506 );
    for ( QV_CHARSET cs = 0; cs <= QV_CHARSET_UTF_32_LE; cs++ )
    {
        for ( const size_t length :
              { 0, 1, 15, 16, 17, 63, 64, 65, 255, 256, 257, 1023, 1024, 1025, 5000, 70000 } )
        {
            SCOPED_TRACE( testing::Message() << cs << " length " << length );
            std::string bytes;
            std::u32string chars;
            for ( size_t idx = 0; idx < length; idx++ )
            {
                bytes += static_cast<char>( random() % 9 ? random() % 128 : random() );
                chars += static_cast<char32_t>( random() % 9 ? random() % 128 : random() % 0x3000 );
            }
            EXPECT_EQ( test::decodeWhole( cs, 0, bytes ), test::decodeScript( cs, 0, { bytes }, 4096 ) );
            test::SinkScript script;
            EXPECT_EQ( test::encodeWhole( cs, 0, chars ), test::encodeScript( cs, 0, chars, 3000, &script ) );
        }
    }
}

TEST( CharsetWhole, ResultsAreGoodValues )
{
    for ( const size_t length : { 10, 1000, 3000 } )
    {
        // Three bytes a character, so that two thirds of what is set aside goes back.
        std::string bytes;
        for ( size_t idx = 0; idx < length; idx++ )
        {
            bytes += "\xE2\x82\xAC";
        }
        qv::Local<QV_STRING> string(
            qvCharsetConvertBufferToString( QV_CHARSET_UTF_8, test::buffer( bytes ) ) );
        EXPECT_EQ( qvStringLength( string ), static_cast<QV_INT>( length ) );
        qvStringAppendCharRun( string.edit(), U'x', 500 );
        qvStringPrependCharRun( string.edit(), U'y', 500 );
        EXPECT_EQ( test::toU32( string ), std::u32string( 500, U'y' ) + std::u32string( length, U'\u20AC' ) +
                                              std::u32string( 500, U'x' ) );
        qv::Local<QV_BUFFER> back( qvCharsetConvertStringToBuffer( QV_CHARSET_UTF_8, string ) );
        qvBufferAppendByte( back.edit(), 'z' );
        EXPECT_EQ( test::toBytes( back ), std::string( 500, 'y' ) + bytes + std::string( 500, 'x' ) + "z" );
    }
}

TEST( CharsetWhole, NothingLeftIsTheEmptyValue )
{
    const QV_CHARSET_FLAGS ignore = QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS;
    for ( const size_t length : { 0, 5, 2000 } )
    {
        EXPECT_EQ( test::decodeWhole( QV_CHARSET_ASCII, ignore, std::string( length, '\x80' ) ),
                   test::Decoded{} );
        EXPECT_EQ( test::decodeWhole( QV_CHARSET_UTF_8, ignore, std::string( length, '\xFF' ) ),
                   test::Decoded{} );
        EXPECT_EQ( test::encodeWhole( QV_CHARSET_ASCII, ignore, std::u32string( length, U'\u20AC' ) ),
                   test::Encoded{} );
    }
}

TEST( CharsetWholeDeathTest, FaultsOfTheCaller )
{
    qv::Local<QV_STRING> string( qvStringCreate() );
    EXPECT_DEATH( qvCharsetConvertStringToBuffer( 51, string ), "QV_CHARSET_OK" );
    EXPECT_DEATH( qvCharsetConvertStringToBuffer( 0, nullptr ), "string" );
    EXPECT_DEATH( qvCharsetConvertBufferToString( 0, nullptr ), "buffer" );
}
