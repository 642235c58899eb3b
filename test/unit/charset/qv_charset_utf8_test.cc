#include "support/test.hh"
#include "coding.hh"

#include <qv/charset/qv_charset_span.hh>

using namespace test;

using namespace std::string_literals;

namespace
{

constexpr QV_CHARSET_FLAGS flagAbort = QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER;
constexpr QV_CHARSET_FLAGS flagIgnore = QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS;
constexpr QV_CHARSET_FLAGS flagKeepMark = QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK;
constexpr QV_CHARSET_FLAGS flagInsertMark = QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK;

// The decoder as its table of states reads, one byte at a time over the whole input.
Decoded modelDecode( std::string_view bytes, QV_CHARSET_FLAGS flags )
{
    Decoded out;
    bool started = false;
    bool skipping = false;
    int missing = 0;
    uint32_t bits = 0;
    const auto deliver = [&]( uint32_t ch ) {
        out.chars += static_cast<char32_t>( ch );
        started = true;
    };
    const auto invalid = [&] {
        if ( flags & flagAbort )
            out.error = true;
        else if ( !( flags & flagIgnore ) )
            deliver( 0xFFFD );
    };
    for ( const char signedByte : bytes )
    {
        const auto byte = static_cast<unsigned char>( signedByte );
        const bool continues = byte >= 0x80 && byte <= 0xBF;
        if ( missing > 0 && !continues )
        {
            missing = 0;
            skipping = true;
            invalid();
        }
        else if ( missing > 0 )
        {
            bits = bits << 6 | ( byte & 0x3Fu );
            if ( --missing > 0 )
                continue;
            if ( bits > 0x10FFFF )
                invalid();
            else if ( bits == 0xFEFF && !started && !( flags & flagKeepMark ) )
                started = true;
            else
                deliver( bits );
        }
        else if ( continues && skipping )
            continue;
        else if ( byte < 0x80 )
        {
            skipping = false;
            deliver( byte );
        }
        else if ( continues || byte >= 0xF8 )
        {
            // From 0xF8 up each byte is an invalid run of its own.
            skipping = true;
            invalid();
        }
        else
        {
            skipping = false;
            missing = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
            bits = byte & ( 0x3Fu >> missing );
        }
        if ( out.error )
            return out;
    }
    if ( missing > 0 )
        invalid();
    return out;
}

Decoded wholeOf( Decoded decoded )
{
    if ( decoded.error )
        decoded.chars.clear();
    return decoded;
}

// Decodes in every way: whole, by steps of characters, by pieces of bytes, from behind other text so that the bytes lie
// across the end of a cache.
void expectDecoded( std::string_view bytes, QV_CHARSET_FLAGS flags, const Decoded &expected )
{
    EXPECT_EQ( decodeWhole( QV_CHARSET_UTF_8, flags, bytes ), wholeOf( expected ) );
    for ( const QV_INT step : { 1, 2, 3, 100 } )
        EXPECT_EQ( decodeStream( QV_CHARSET_UTF_8, flags, bytes, step ), expected );
    for ( size_t lead = 1025 - bytes.size(); lead <= 1024 && !expected.error; lead++ )
    {
        const std::string behind = std::string( lead, 'x' ) + std::string( bytes ) + std::string( 40, 'y' );
        EXPECT_EQ( decodeStream( QV_CHARSET_UTF_8, flags, behind, 5000 ),
                   modelDecode( behind, qvCharsetFlagsNormalize( flags ) ) );
    }
}

std::string randomBytes( std::mt19937 &random, size_t count )
{
    static const std::string pieces[] = { "a",
                                          "plain text, more than a block of it",
                                          "\x80",
                                          "\xBF\x80\x80",
                                          "\xC3\xA9",
                                          "\xE2\x82\xAC",
                                          "\xF0\x9F\x98\x80",
                                          "\xED\xA0\x80",
                                          "\xC0\x80"s,
                                          "\xE2\x82",
                                          "\xF0\x9F",
                                          "\xF4\x90\x80\x80",
                                          "\xF8",
                                          "\xFF",
                                          "\xEF\xBB\xBF",
                                          "\xE2" };
    std::string bytes;
    while ( bytes.size() < count )
    {
        const std::string &piece = pieces[random() % std::size( pieces )];
        const size_t times = random() % 8 == 0 ? random() % 20 : 1;
        for ( size_t idx = 0; idx < times; idx++ )
            bytes += piece;
    }
    return bytes;
}

// Reads a source by single bytes that each end a read, which the decoder's states must bridge.
Decoded decodeSpans( std::string_view bytes, QV_CHARSET_FLAGS flags, size_t piece )
{
    qv::Utf8Decoder decoder( flags, qv::Utf8Decoder::START, false );
    std::vector<QV_CHAR> room( bytes.size() + 1 );
    const auto *first = reinterpret_cast<const unsigned char *>( bytes.data() );
    qv::DecodeSpan span{ first, first, room.data(), room.data() + room.size() };
    bool ok = true;
    for ( size_t at = 0; ok && at < bytes.size(); at += piece )
    {
        span.bytes = first + at;
        span.bytesEnd = first + std::min( at + piece, bytes.size() );
        ok = decoder.decode( &span );
    }
    ok = ok && decoder.finish( &span );
    return { std::u32string( room.data(), span.chars ), !ok };
}

} // namespace

TEST( Utf8Source, EdgeCases )
{
    const struct
    {
        std::string bytes;
        std::u32string replaced, ignored;
        QV_BOOL valid;
    } cases[] = {
        { "", U"", U"", 1 },
        { "\xEF\xBB\xBF\101", U"A", U"A", 1 },
        { "A\xEF\xBB\xBF", U"A\uFEFF", U"A\uFEFF", 1 },
        { "\xEF\xBB\xBF\xEF\xBB\xBF", U"\uFEFF", U"\uFEFF", 1 },
        { "\342AB", U"\uFFFDB", U"B", 0 },
        { "\xE2\xE2\x82\xAC", U"\uFFFD", U"", 0 },
        { "\200\200A", U"\uFFFDA", U"A", 0 },
        { "\x80\xC3\xA9", U"\uFFFD\u00E9", U"\u00E9", 0 },
        { "\xFF\xFE", U"\uFFFD\uFFFD", U"", 0 },
        { "\xF4\x90\x80\x80", U"\uFFFD", U"", 0 },
        { "\xF4\x90\x80\x80\x80", U"\uFFFD\uFFFD", U"", 0 },
        { "\xF4\x8F\xBF\xBF", U"\U0010FFFF", U"\U0010FFFF", 1 },
        { "\xF7\xBF\xBF\xBFz", U"\uFFFDz", U"z", 0 },
        { "\xC0\x80", { 0 }, { 0 }, 1 },
        { "\xED\xA0\x80", { 0xD800 }, { 0xD800 }, 1 },
        { "\xE2\x82", U"\uFFFD", U"", 0 },
        { "ab\xF0\x9F\x98", U"ab\uFFFD", U"ab", 0 },
        { "\200\357\273\277A", U"\uFFFD\uFEFFA", U"A", 0 },
        { "\370\210\200\200\200A", U"\uFFFDA", U"A", 0 },
    };
    for ( const auto &entry : cases )
    {
        SCOPED_TRACE( Encoded{ entry.bytes } );
        expectDecoded( entry.bytes, 0, { entry.replaced, false } );
        expectDecoded( entry.bytes, flagIgnore, { entry.ignored, false } );
        expectDecoded( entry.bytes, flagIgnore | flagAbort, { entry.ignored, false } );
        EXPECT_EQ( decodeWhole( QV_CHARSET_UTF_8, flagAbort, entry.bytes ).error, !entry.valid );
        EXPECT_EQ( decodeStream( QV_CHARSET_UTF_8, flagAbort, entry.bytes, 1 ),
                   modelDecode( entry.bytes, flagAbort ) );
    }
    expectDecoded( "\xEF\xBB\xBF", flagKeepMark, { U"\xFEFF", false } );
}

TEST( Utf8Source, RandomBytesAgainstTheModel )
{
    std::mt19937 random( 501 );
    for ( int round = 0; round < 300; round++ )
    {
        const std::string bytes = randomBytes( random, random() % 3000 );
        const QV_CHARSET_FLAGS flags = static_cast<QV_CHARSET_FLAGS>( random() % 8 );
        const QV_CHARSET_FLAGS normal = qvCharsetFlagsNormalize( flags );
        const Decoded expected = modelDecode( bytes, normal );
        ASSERT_EQ( decodeWhole( QV_CHARSET_UTF_8, flags, bytes ), wholeOf( expected ) ) << flags;
        const QV_INT step = 1 + static_cast<QV_INT>( random() % 50 );
        ASSERT_EQ( decodeStream( QV_CHARSET_UTF_8, flags, bytes, step ), expected ) << flags;
        for ( const size_t piece : { size_t( 1 ), size_t( 3 ), size_t( 17 ), bytes.size() + 1 } )
            ASSERT_EQ( decodeSpans( bytes, normal, piece ), expected ) << flags << " " << piece;
    }
}

TEST( Utf8Source, FailingByteSource )
{
    for ( const char *bytes : { "", "abc", "abc\xE2\x82" } )
    {
        const std::u32string good = *bytes ? U"abc" : U"";
        for ( const QV_CHARSET_FLAGS flags : { 0, 1, 2 } )
            EXPECT_EQ( decodeStream( QV_CHARSET_UTF_8, flags, bytes, 10, true ), ( Decoded{ good, true } ) );
    }
}

TEST( Utf8Sink, EncodesByBlocksAndSingly )
{
    const std::u32string all = { 0,      0x7F,   0x80,   0x7FF,   0x800,   0xD800,
                                 0xDFFF, 0xFFFD, 0xFFFF, 0x10000, 0x10FFFF };
    const std::string bytes =
        "\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\xA0\x80\xED\xBF\xBF\xEF\xBF\xBD\xEF\xBF\xBF"
        "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s;
    EXPECT_EQ( encodeWhole( QV_CHARSET_UTF_8, 0, all ), ( Encoded{ bytes } ) );
    EXPECT_EQ( encodeWhole( QV_CHARSET_UTF_8, flagInsertMark, all ), ( Encoded{ "\xEF\xBB\xBF" + bytes } ) );
    EXPECT_EQ( encodeWhole( QV_CHARSET_UTF_8, flagInsertMark, U"" ), ( Encoded{ "\xEF\xBB\xBF" } ) );
    std::mt19937 random( 502 );
    std::u32string text;
    std::string expected;
    while ( text.size() < 6000 )
    {
        const size_t run = random() % 20;
        const char32_t ch = all[random() % all.size()];
        for ( size_t times = 0; times < run; times++ )
        {
            text += ch;
            expected += encodeWhole( QV_CHARSET_UTF_8, 0, { &ch, 1 } ).bytes;
        }
        text.append( run, U'p' );
        expected.append( run, 'p' );
    }
    const Encoded whole = encodeWhole( QV_CHARSET_UTF_8, 0, text );
    EXPECT_EQ( whole.bytes, expected );
    for ( const size_t step : { size_t( 1 ), size_t( 13 ), size_t( 700 ), text.size() } )
        EXPECT_EQ( encodeStream( QV_CHARSET_UTF_8, 0, text, step ), whole );
    EXPECT_EQ( decodeWhole( QV_CHARSET_UTF_8, 0, whole.bytes ), ( Decoded{ text, false } ) );
}

// A character never lies in two writes, and a write goes out only when the next character doesn't fit.
TEST( Utf8Sink, CacheHoldsWholeCharacters )
{
    const struct
    {
        std::u32string text;
        std::vector<size_t> writes;
    } cases[] = {
        { std::u32string( 1024, U'a' ), { 1024 } },
        { std::u32string( 1025, U'a' ), { 1024, 1 } },
        { std::u32string( 1023, U'a' ) + U"\u00E9", { 1023, 2 } },
        { std::u32string( 1022, U'a' ) + U"\u00E9", { 1024 } },
        { std::u32string( 1022, U'a' ) + U"\u20ACb", { 1022, 4 } },
        { std::u32string( 1021, U'a' ) + U"\U0001F600", { 1021, 4 } },
        { std::u32string( 400, U'\u20AC' ), { 1023, 177 } },
    };
    for ( const auto &entry : cases )
        for ( const size_t step : { size_t( 1 ), size_t( 100 ), size_t( 2000 ) } )
        {
            ByteTap script;
            encodeStream( QV_CHARSET_UTF_8, 0, entry.text, step, &script );
            std::vector<size_t> sizes;
            for ( const auto &write : script.writes )
                sizes.push_back( write.size() );
            EXPECT_EQ( sizes, entry.writes );
        }
}

TEST( Utf8Sink, InvalidCharactersByFlag )
{
    const std::u32string text = { U'a', 0x110000, U'b', 0xFFFFFFFF };
    EXPECT_EQ( encodeStream( QV_CHARSET_UTF_8, 0, text, 9 ).bytes, "a\uFFFDb\uFFFD" );
    EXPECT_TRUE( encodeStream( QV_CHARSET_UTF_8, flagAbort, text, 9 ).error );
    EXPECT_EQ( encodeStream( QV_CHARSET_UTF_8, flagIgnore, text, 9 ).bytes, "ab" );
    ByteTap edge;
    std::u32string full( 1022, U'a' );
    full.push_back( char32_t( 0x110000 ) );
    encodeStream( QV_CHARSET_UTF_8, 0, full, 2000, &edge );
    ASSERT_EQ( edge.writes.size(), 2u );
    EXPECT_EQ( edge.writes[1], ( std::vector<unsigned char>{ 0xEF, 0xBF, 0xBD } ) );
}

// Wherever the byte sink fails, also at its own flush, the caller learns of it.
TEST( CharsetSinks, EveryLossShows )
{
    const std::u32string text( 3000, U'x' );
    for ( QV_CHARSET cs = 0; cs <= QV_CHARSET_UTF_32_LE; cs++ )
    {
        SCOPED_TRACE( cs );
        ByteTap good;
        EXPECT_FALSE( encodeStream( cs, 0, text, 900, &good ).error );
        EXPECT_GE( good.flushes, 1 );
        for ( size_t accepted = 0; accepted < good.writes.size(); accepted++ )
        {
            ByteTap script;
            script.goodWrites = static_cast<int>( accepted );
            EXPECT_TRUE( encodeStream( cs, 0, text, 900, &script ).error );
            EXPECT_EQ( script.writes.size(), accepted + 1 );
        }
        ByteTap script;
        script.flushFails = true;
        EXPECT_TRUE( encodeStream( cs, 0, text, 900, &script ).error );
    }
}
