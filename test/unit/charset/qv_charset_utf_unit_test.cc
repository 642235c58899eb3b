#include "support/test.hh"
#include "coding.hh"

using namespace test;

using namespace std::string_literals;

namespace
{

constexpr QV_CHARSET_FLAGS flagAbort = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
constexpr QV_CHARSET_FLAGS flagIgnore = QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS;
constexpr QV_CHARSET_FLAGS flagKeepMark = QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK;
constexpr QV_CHARSET_FLAGS flagInsertMark = QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK;

const QV_CHARSET unitCharsets[] = { QV_CHARSET_UTF_16, QV_CHARSET_UTF_16_BE, QV_CHARSET_UTF_16_LE,
                                    QV_CHARSET_UTF_32, QV_CHARSET_UTF_32_BE, QV_CHARSET_UTF_32_LE };

size_t widthOf( QV_CHARSET cs )
{
    return cs <= QV_CHARSET_UTF_16_LE ? 2 : 4;
}

// The decoder unit by unit, from the definition.
Decoded modelDecode( QV_CHARSET cs, QV_CHARSET_FLAGS flags, std::string_view bytes )
{
    const size_t width = widthOf( cs );
    const bool detects = cs == QV_CHARSET_UTF_16 || cs == QV_CHARSET_UTF_32;
    bool big = cs == QV_CHARSET_UTF_16_BE || cs == QV_CHARSET_UTF_32_BE;
    Decoded out;
    const auto valueAt = [&]( size_t at, bool bigEndian ) {
        uint32_t value = 0;
        for ( size_t idx = 0; idx < width; idx++ )
            value =
                value << 8 | static_cast<unsigned char>( bytes[at + ( bigEndian ? idx : width - 1 - idx )] );
        return value;
    };
    const auto invalid = [&] {
        if ( flags & flagAbort )
            out.error = true;
        else if ( !( flags & flagIgnore ) )
            out.chars += char32_t( 0xFFFD );
    };
    size_t at = 0;
    if ( detects && !( flags & flagKeepMark ) && bytes.size() >= width )
    {
        const bool bigMark = valueAt( 0, true ) == 0xFEFF;
        if ( bigMark || valueAt( 0, false ) == 0xFEFF )
        {
            big = bigMark;
            at = width;
        }
    }
    for ( ; at < bytes.size() && !out.error; at += width )
    {
        if ( bytes.size() - at < width || valueAt( at, big ) > 0x10FFFF )
            invalid();
        else
            out.chars += static_cast<char32_t>( valueAt( at, big ) );
    }
    return out;
}

} // namespace

TEST( UtfUnitSource, EdgeCases )
{
    const struct
    {
        QV_CHARSET cs;
        QV_CHARSET_FLAGS flags;
        std::string bytes;
        std::u32string chars;
        bool error;
    } cases[] = {
        { QV_CHARSET_UTF_16, 0, "\xFE\xFF\0A"s, U"A", false },
        { QV_CHARSET_UTF_16, 0, "\377\376A\0"s, U"A", false },
        { QV_CHARSET_UTF_16, 0, "A\0"s, U"A", false },
        { QV_CHARSET_UTF_16, flagKeepMark, "\xFF\xFE", U"\xFEFF", false },
        { QV_CHARSET_UTF_16, 0, "\xFE\xFF\xFE\xFF\0A"s, U"\uFEFFA", false },
        { QV_CHARSET_UTF_16, 0, "A\0\xFF\xFE"s, U"A\xFEFF", false },
        { QV_CHARSET_UTF_16_BE, 0, "\xFE\xFF\0A"s, U"\uFEFFA", false },
        { QV_CHARSET_UTF_16_LE, 0, "\377\376A\0"s, U"\uFEFFA", false },
        { QV_CHARSET_UTF_16, 0, "A\0B"s, U"A\xFFFD", false },
        { QV_CHARSET_UTF_16, flagIgnore, "A\0B"s, U"A", false },
        { QV_CHARSET_UTF_16, flagAbort, "A\0B"s, U"A", true },
        { QV_CHARSET_UTF_16, 0, "\xFF", U"\xFFFD", false },
        { QV_CHARSET_UTF_16, 0, "\x3D\xD8\x00\xDE"s, std::u32string{ 0xD83D, 0xDE00 }, false },
        { QV_CHARSET_UTF_32, 0, "\0\0\x11\0"s, U"\xFFFD", false },
        { QV_CHARSET_UTF_32, flagAbort, "A\0\0\0\0\0\x11\0"s, U"A", true },
        { QV_CHARSET_UTF_32, flagIgnore, "\0\0\x11\0A\0\0\0"s, U"A", false },
        { QV_CHARSET_UTF_32, 0, "\0\0\xFE\xFF\0\0\0A"s, U"A", false },
        { QV_CHARSET_UTF_32, 0, "\xFF\xFE\0\0A\0\0\0"s, U"A", false },
        { QV_CHARSET_UTF_32_BE, 0, "\0\0\xFE\xFF\0\x10\xFF\xFF"s, U"\xFEFF\x10FFFF", false },
        { QV_CHARSET_UTF_32, 0, "A\0\0"s, U"\xFFFD", false },
        { QV_CHARSET_UTF_32_LE, 0, "\377\377\377\377A\0\0\0B"s, U"\uFFFDA\uFFFD", false },
    };
    for ( const auto &entry : cases )
    {
        SCOPED_TRACE( Encoded{ entry.bytes } );
        const Decoded expected{ entry.chars, entry.error };
        EXPECT_EQ( modelDecode( entry.cs, entry.flags, entry.bytes ), expected );
        for ( const QV_INT step : { 1, 2, 3, 10 } )
            EXPECT_EQ( decodeStream( entry.cs, entry.flags, entry.bytes, step ), expected ) << step;
        EXPECT_EQ( decodeWhole( entry.cs, entry.flags, entry.bytes ),
                   ( Decoded{ entry.error ? U"" : entry.chars, entry.error } ) );
    }
}

TEST( UtfUnitSource, RandomBytesAgainstTheModel )
{
    std::mt19937 random( 503 );
    for ( int round = 0; round < 600; round++ )
    {
        const QV_CHARSET cs = unitCharsets[random() % std::size( unitCharsets )];
        const QV_CHARSET_FLAGS flags = static_cast<QV_CHARSET_FLAGS>( random() % 8 );
        std::string bytes = random() % 2 ? "" : random() % 2 ? "\xFF\xFE\0\0"s : "\0\0\xFE\xFF"s;
        const size_t length = random() % 5000;
        while ( bytes.size() < length )
        {
            // Mostly values that are valid in either order.
            const char middle = random() % 40 ? '\0' : '\x12';
            bytes += { '\0', static_cast<char>( random() ), middle, '\0' };
        }
        bytes.resize( length );
        Decoded expected = modelDecode( cs, qvCharsetFlagsNormalize( flags ), bytes );
        const QV_INT step = 1 + static_cast<QV_INT>( random() % 900 );
        ASSERT_EQ( decodeStream( cs, flags, bytes, step ), expected ) << cs << " " << flags;
        if ( expected.error )
            expected.chars.clear();
        ASSERT_EQ( decodeWhole( cs, flags, bytes ), expected ) << cs << " " << flags;
    }
}

TEST( UtfUnitSource, FailingByteSource )
{
    for ( const QV_CHARSET cs : unitCharsets )
    {
        std::string bytes = widthOf( cs ) == 2 ? "A\0"s : "A\0\0\0"s;
        if ( cs == QV_CHARSET_UTF_16_BE || cs == QV_CHARSET_UTF_32_BE )
            std::reverse( bytes.begin(), bytes.end() );
        EXPECT_EQ( decodeStream( cs, flagIgnore, bytes, 10, true ), ( Decoded{ U"A", true } ) );
    }
}

TEST( UtfUnitSink, EncodesEachOrder )
{
    const std::u32string text = { U'A', 0x20AC, 0x1F600, 0xD800, 0x10FFFF };
    const std::string big16 = "\0A\x20\xAC\xD8\x3D\xDE\0\xD8\0\xDB\xFF\xDF\xFF"s;
    const std::string big32 = "\0\0\0A\0\0\x20\xAC\0\x01\xF6\0\0\0\xD8\0\0\x10\xFF\xFF"s;
    const auto swapped = []( std::string bytes, size_t width ) {
        for ( size_t at = 0; at < bytes.size(); at += width )
            std::reverse( bytes.begin() + static_cast<std::ptrdiff_t>( at ),
                          bytes.begin() + static_cast<std::ptrdiff_t>( at + width ) );
        return bytes;
    };
    for ( const QV_CHARSET cs : unitCharsets )
    {
        SCOPED_TRACE( cs );
        const size_t width = widthOf( cs );
        const bool big = cs == QV_CHARSET_UTF_16_BE || cs == QV_CHARSET_UTF_32_BE;
        const std::string bigBytes = width == 2 ? big16 : big32;
        const std::string bytes = big ? bigBytes : swapped( bigBytes, width );
        const std::string bigMark = width == 2 ? "\xFE\xFF"s : "\0\0\xFE\xFF"s;
        const std::string mark = big ? bigMark : swapped( bigMark, width );
        for ( const size_t step : { 1, 2, 9 } )
        {
            EXPECT_EQ( encodeStream( cs, 0, text, step ), ( Encoded{ bytes } ) );
            EXPECT_EQ( encodeStream( cs, flagInsertMark, text, step ), ( Encoded{ mark + bytes } ) );
        }
        EXPECT_EQ( encodeWhole( cs, 0, text ), ( Encoded{ bytes } ) );
        EXPECT_EQ( encodeWhole( cs, flagInsertMark, text ), ( Encoded{ mark + bytes } ) );
        EXPECT_EQ( encodeStream( cs, flagInsertMark, U"", 1 ), ( Encoded{ mark } ) );
        EXPECT_EQ( encodeWhole( cs, 0, U"" ), ( Encoded{ "" } ) );
    }
}

// The sizes in which a cache goes out, by steps of any length, and the round trip of a long text.
TEST( UtfUnitSink, CacheGoesOutInWholeUnits )
{
    std::u32string text;
    std::mt19937 random( 504 );
    for ( int idx = 0; idx < 3000; idx++ )
        text += random() % 3 ? char32_t( 0x4E00 + random() % 1000 ) : char32_t( 0x20000 + random() % 1000 );
    for ( const QV_CHARSET cs : unitCharsets )
    {
        const Encoded whole = encodeWhole( cs, 0, text );
        for ( const size_t step : { 1, 7, 255, 3000 } )
        {
            ByteTap script;
            EXPECT_EQ( encodeStream( cs, 0, text, step, &script ), whole );
            for ( size_t idx = 0; idx + 1 < script.writes.size(); idx++ )
            {
                const size_t size = script.writes[idx].size();
                EXPECT_TRUE( widthOf( cs ) == 4 ? size == 1024 : size == 1020 || size == 1022 ) << size;
            }
        }
        if ( widthOf( cs ) == 2 )
        {
            Local<QV_STRING> decoded( qvCharsetConvertBufferToString( cs, bufferOf( whole.bytes ) ) );
            qvStringSanitize( decoded.edit() );
            EXPECT_EQ( toU32( decoded ), text );
        }
        else
            EXPECT_EQ( decodeWhole( cs, 0, whole.bytes ), ( Decoded{ text, false } ) );
    }
}
