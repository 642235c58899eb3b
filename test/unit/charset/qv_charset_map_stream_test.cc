#include "support/test.hh"
#include "coding.hh"

#include <qv/charset/qv_charset_map.hh>

using namespace test;

namespace
{

constexpr QV_CHARSET_FLAGS flagAbort = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
constexpr QV_CHARSET_FLAGS flagIgnore = QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS;

// A sink as it is defined: every character goes through the normalizer, every byte through a cache of 1024.
class ModelSink
{
  public:
    ModelSink( QV_CHARSET cs, QV_CHARSET_FLAGS flags )
        : map_( qv::byteMaps[cs] ), flags_( flags ),
          norm_( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) )
    {
        if ( !map_.charToByte( 0xFFFD, &replacement_ ) && !map_.charToByte( '?', &replacement_ ) )
            replacement_ = 0;
    }

    bool write( std::u32string_view text )
    {
        for ( const char32_t ch : text )
            qvUnicodeNormalizerWriteChar( norm_, ch );
        return push();
    }

    bool flush()
    {
        qvUnicodeNormalizerFlush( norm_ );
        const bool ok = push();
        if ( !cache_.empty() )
            writes.push_back( cache_ );
        cache_.clear();
        return ok;
    }

    std::vector<std::vector<unsigned char>> writes;

  private:
    bool push()
    {
        Local<QV_STRING> ready( qvStringCreate() );
        qvUnicodeNormalizerRead( norm_, ready.edit(), -1 );
        for ( const char32_t ch : toU32( ready ) )
        {
            unsigned char byte = 0;
            if ( !map_.charToByte( ch, &byte ) )
            {
                if ( flags_ & flagAbort )
                    return false;
                if ( flags_ & flagIgnore )
                    continue;
                byte = replacement_;
            }
            cache_.push_back( byte );
            if ( cache_.size() == 1024 )
            {
                writes.push_back( cache_ );
                cache_.clear();
            }
        }
        return true;
    }

    const qv::ByteMap &map_;
    QV_CHARSET_FLAGS flags_;
    Local<QV_UNICODE_NORMALIZER> norm_;
    unsigned char replacement_ = 0;
    std::vector<unsigned char> cache_;
};

std::u32string randomText( std::mt19937 &random, QV_CHARSET cs, size_t length )
{
    static const char32_t marks[] = { 0x300, 0x301, 0x303, 0x309, 0x323, 0x30A,
                                      0x327, 0x340, 0x5B0, 0x64B, 0xE38 };
    static const char32_t odd[] = { 0xD800, 0xDC00, 0x110000, 0x1F600, 0xFB1D, 0x958,  0x387,  0x212B,
                                    0x1100, 0x1161, 0x11A8,   0,       0x4E00, 0x2126, 0x1EAD, 0x3 };
    std::u32string text;
    while ( text.size() < length )
    {
        QV_CHAR ch = 'x';
        qv::byteMaps[cs].byteToChar( static_cast<unsigned char>( random() ), &ch );
        switch ( random() % 12 )
        {
        case 0:
            text += marks[random() % std::size( marks )];
            break;
        case 1:
            text += odd[random() % std::size( odd )];
            break;
        case 2:
            text += U"some longer run of characters that composition leaves alone";
            break;
        case 3:
            text.append( random() % 40, static_cast<char32_t>( ch ) );
            break;
        default:
            text += static_cast<char32_t>( ch );
        }
    }
    return text;
}

} // namespace

TEST( MapSink, ComposesReplacesAndDrops )
{
    const struct
    {
        QV_CHARSET cs;
        QV_CHARSET_FLAGS flags;
        std::u32string text;
        std::string bytes;
        bool error;
    } cases[] = {
        { QV_CHARSET_ISO_8859_1, 0, U"A\x30A", "\xC5", false },
        { QV_CHARSET_ISO_8859_1, 0, U"\x20AC", "?", false },
        { QV_CHARSET_ISO_8859_1, flagIgnore, U"a\u20ACb", "ab", false },
        { QV_CHARSET_ISO_8859_1, flagIgnore | flagAbort, U"\x20AC", "", false },
        { QV_CHARSET_ISO_8859_1, flagAbort, U"\x20AC", "", true },
        { QV_CHARSET_MSFT_CP037, 0, U"\x20AC", "\x6F", false },
        { QV_CHARSET_MSFT_CP1252, 0, U"\x20AC", "\x80", false },
        { QV_CHARSET_MSFT_CP1258, 0, U"e\x301", "\xE9", false },
        { QV_CHARSET_MSFT_CP1258, 0, U"q\x301", "q\xEC", false },
        { QV_CHARSET_MSFT_CP875, 0, U"\x387", "\x6F", false },
        { QV_CHARSET_ASCII, 0, std::u32string{ U'a', 0xD83D }, "a", false },
        { QV_CHARSET_ASCII, 0, std::u32string{ 0xD83D, 0xDE00 }, "?", false },
        { QV_CHARSET_ASCII, 0, std::u32string( 3, U'\0' ), std::string( 3, '\0' ), false },
        { QV_CHARSET_ASCII, 0, U"", "", false },
    };
    for ( const auto &entry : cases )
    {
        SCOPED_TRACE( Decoded{ entry.text } );
        const Encoded expected{ entry.bytes, entry.error };
        EXPECT_EQ( encodeWhole( entry.cs, entry.flags, entry.text ), expected );
        for ( const size_t step : { 1, 2, 10 } )
            EXPECT_EQ( encodeStream( entry.cs, entry.flags, entry.text, step ), expected );
    }
}

TEST( MapSink, LastCharacterFailsAtTheFlush )
{
    ByteTap script;
    Local<QV_BYTE_SINK> bytes = Bytes::sink( script );
    Local<QV_CHAR_SINK> sink( qvCharsetCreateCharSink( bytes, QV_CHARSET_ASCII, flagAbort ) );
    EXPECT_TRUE(
        qvCharSinkWrite( sink, test::text( U"a text that is long enough for a block, and then \x20AC" ) ) );
    EXPECT_FALSE( qvCharSinkFlush( sink ) );
    EXPECT_TRUE( qvCharSinkError( sink ) );
}

// The bytes, the moment and the size of each write, and each result are those of a sink without short cuts.
TEST( MapSink, RandomTextAgainstTheModel )
{
    std::mt19937 random( 505 );
    for ( int round = 0; round < 1200; round++ )
    {
        const QV_CHARSET cs = static_cast<QV_CHARSET>( random() % qv::byteMapCount );
        const QV_CHARSET_FLAGS flags = static_cast<QV_CHARSET_FLAGS>( round % 3 == 2 ? 1 : round % 3 * 2 );
        const std::u32string text = randomText( random, cs, random() % 4000 );
        SCOPED_TRACE( testing::Message() << round << " charset " << cs << " flags " << flags );
        ByteTap script;
        Local<QV_BYTE_SINK> bytes = Bytes::sink( script );
        Local<QV_CHAR_SINK> sink( qvCharsetCreateCharSink( bytes, cs, flags ) );
        ModelSink model( cs, flags );
        bool ok = true;
        for ( size_t at = 0; ok && at < text.size(); )
        {
            const size_t step = 1 + random() % ( random() % 2 ? 5 : 1500 );
            const std::u32string_view piece = std::u32string_view( text ).substr( at, step );
            ok = model.write( piece );
            ASSERT_EQ( qvCharSinkWriteChars( sink, charsOf( piece ), lengthOf( piece ) ),
                       QV_BOOL_FROM( ok ) );
            ASSERT_EQ( script.writes, model.writes );
            at += step;
        }
        if ( ok )
        {
            ok = model.flush();
            ASSERT_EQ( qvCharSinkFlush( sink ), QV_BOOL_FROM( ok ) );
            ASSERT_EQ( script.writes, model.writes );
        }
        if ( std::any_of( text.begin(), text.end(), []( char32_t ch ) { return ch > 0x10FFFF; } ) )
            continue;
        const Encoded whole = encodeWhole( cs, flags, text );
        ASSERT_EQ( whole.error, !ok );
        if ( ok )
        {
            ASSERT_EQ( whole, ( Encoded{ bytesOf( script ), false } ) );
        }
    }
}

TEST( MapSource, ShortPiecesAndFailures )
{
    std::string bytes;
    for ( int idx = 0; idx < 3000; idx++ )
        bytes += static_cast<char>( idx );
    for ( const QV_CHARSET cs : { QV_CHARSET_ISO_8859_7, QV_CHARSET_MSFT_CP500, QV_CHARSET_MSFT_CP1252 } )
    {
        const std::u32string all = decodeWhole( cs, 0, bytes ).chars;
        EXPECT_EQ( all.size(), bytes.size() );
        for ( const QV_CHARSET_FLAGS flags : { 0, 2 } )
        {
            const Decoded failed = decodeStream( cs, flags, bytes, 100, true );
            EXPECT_TRUE( failed.error );
            EXPECT_EQ( failed.chars, decodeWhole( cs, flags, bytes ).chars );
        }
    }
    EXPECT_EQ( decodeWhole( QV_CHARSET_ISO_8859_8, 0, "\xE0" ).chars, U"\x5D0" );
    EXPECT_EQ( decodeWhole( QV_CHARSET_ISO_8859_7, 0, "\xE0" ).chars, U"\x3B0" );
}

TEST( MapStreams, AnyPairOfFunctionsWorks )
{
    // Bytes 0x10 to 0x19 are the digits, and nothing else is anything.
    const auto digitOf = []( unsigned char byte, QV_CHAR *charOut ) -> QV_BOOL {
        *charOut = static_cast<QV_CHAR>( byte + 0x20 );
        return byte >= 0x10 && byte <= 0x19;
    };
    const auto byteOf = []( QV_CHAR ch, unsigned char *byteOut ) -> QV_BOOL {
        *byteOut = static_cast<unsigned char>( ch - 0x20 );
        return ch >= '0' && ch <= '9';
    };
    ByteTap input;
    input.data = { 0x10, 0x77, 0x19 };
    Local<QV_BYTE_SOURCE> bytes = Bytes::source( input );
    Local<QV_CHAR_SOURCE> source( qv___CharsetMapCharSourceCreate( bytes, 0, digitOf ) );
    Local<QV_STRING> chars( qvStringCreate() );
    qvCharSourceRead( source, chars.edit(), -1 );
    EXPECT_EQ( toU32( chars ), U"0\uFFFD9" );

    ByteTap output;
    Local<QV_BYTE_SINK> out = Bytes::sink( output );
    Local<QV_CHAR_SINK> sink( qv___CharsetMapCharSinkCreate( out, 0, byteOf ) );
    EXPECT_TRUE( qvCharSinkWrite( sink, test::text( "0x9" ) ) );
    EXPECT_TRUE( qvCharSinkFlush( sink ) );
    EXPECT_EQ( bytesOf( output ), std::string( "\x10\0\x19", 3 ) );
}

// A dropped sink pushes what it holds back.
TEST( MapSink, FreeingFlushes )
{
    ByteTap script;
    Local<QV_BYTE_SINK> bytes = Bytes::sink( script );
    {
        Local<QV_CHAR_SINK> sink( qvCharsetCreateCharSink( bytes, QV_CHARSET_KOI_8R, 0 ) );
        EXPECT_TRUE( qvCharSinkWriteCstr( sink, "ab", -1 ) );
        EXPECT_TRUE( script.writes.empty() );
    }
    EXPECT_EQ( bytesOf( script ), "ab" );
}
