// New-line forms: the flags, and which new-line stands where, against a plain reading of the rules.

#include "support/test.hh"
#include "support/nlf.hh"

#include <qv/io/qv_nlf_flags.hh>

using namespace test;

namespace
{

TEST( NlfFlags, FirstFlagChoosesWhatIsWritten )
{
    const std::u32string forms[] = { U"\n", U"\r", U"\r\n", U"\u0085", U"\v", U"\f", U"\u2028", U"\u2029" };
    for ( QV_NLF_FLAGS flags = 0; flags < 512; flags++ )
    {
        std::u32string expected;
        for ( int bit = 7; bit >= 0; bit-- )
        {
            if ( flags >> bit & 1 )
                expected = forms[bit];
        }
        Local<QV_STRING> nlf( qvNlfFlagsNlfString( flags ) );
        EXPECT_EQ( toU32( nlf ), expected ) << flags;
    }
}

size_t expectedNonNlf( std::u32string_view text, QV_NLF_FLAGS flags )
{
    size_t idx = 0;
    while ( idx < text.size() && nlfAt( text.substr( idx ), flags ).length == 0 )
        idx++;
    return idx;
}

const unsigned char *bytesOf( const std::string &utf8 )
{
    return reinterpret_cast<const unsigned char *>( utf8.data() );
}

QV_INT utf8Length( const std::u32string &text, size_t count )
{
    return static_cast<QV_INT>( toUtf8( test::text( text.substr( 0, count ) ) ).size() );
}

void expectRecognized( const std::u32string &text, QV_NLF_FLAGS flags )
{
    auto length = lengthOf( text );
    std::string utf8 = toUtf8( test::text( text ) );
    auto byteLength = lengthOf( utf8 );
    Nlf found = nlfAt( text, flags );
    size_t before = expectedNonNlf( text, flags );

    QV_NLF_FLAGS matched = -1;
    ASSERT_EQ( qv___NlfFlagsSkipCharsNlf( charsOf( text ), length, flags, &matched ),
               static_cast<QV_INT>( found.length ) );
    ASSERT_EQ( matched, found.flag );
    ASSERT_EQ( qv___NlfFlagsSkipCharsNonNlf( charsOf( text ), length, flags ),
               static_cast<QV_INT>( before ) );
    matched = -1;
    ASSERT_EQ( qv___NlfFlagsSkipUtf8BytesNlf( bytesOf( utf8 ), byteLength, flags, &matched ),
               utf8Length( text, found.length ) );
    ASSERT_EQ( matched, found.flag );
    ASSERT_EQ( qv___NlfFlagsSkipUtf8BytesNonNlf( bytesOf( utf8 ), byteLength, flags ),
               utf8Length( text, before ) );
}

TEST( NlfFlags, EveryShortTextWithEverySetOfFlags )
{
    const std::u32string alphabet = U"a\n\r\v\f\u0085\u2028\u2029";
    for ( QV_NLF_FLAGS flags = 0; flags < 256; flags++ )
    {
        expectRecognized( U"", flags );
        for ( char32_t first : alphabet )
            for ( char32_t second : alphabet )
                expectRecognized( { first, second }, flags );
    }
}

TEST( NlfFlags, LongTextsWithLookAlikes )
{
    // Neighbours of the new-lines, in code points and in the bytes of UTF-8.
    const std::u32string plain = U"abc\t\u000E\u0084\u0086\u00C2\u00E2\u2027\u202A\u2000\u20AC\U0001F600";
    const std::u32string forms = U"\n\r\v\f\u0085\u2028\u2029";
    std::mt19937 random( 5 );
    for ( int count = 0; count < 3000 && !testing::Test::HasFatalFailure(); count++ )
    {
        std::u32string text;
        for ( size_t length = random() % 150; length > 0; length-- )
            text += random() % 60 == 0 ? forms[random() % forms.size()] : plain[random() % plain.size()];
        expectRecognized( text, static_cast<QV_NLF_FLAGS>( random() % 256 ) );
    }
}

TEST( NlfFlags, BytesCutShortAreNoNewLine )
{
    const std::string cut[] = { "\xC2", "\xE2", "\xE2\x80", "\xE2\x80\xA7", "\xE2\x85\xA8", "\xC2\x84" };
    for ( const std::string &bytes : cut )
    {
        auto length = lengthOf( bytes );
        QV_NLF_FLAGS matched = -1;
        EXPECT_EQ( qv___NlfFlagsSkipUtf8BytesNlf( bytesOf( bytes ), length, 255, &matched ), 0 );
        EXPECT_EQ( matched, 0 );
        EXPECT_EQ( qv___NlfFlagsSkipUtf8BytesNonNlf( bytesOf( bytes ), length, 255 ), length );
    }
    EXPECT_EQ( qv___NlfFlagsSkipCharsNlf( nullptr, 0, 255, nullptr ), 0 );
    EXPECT_EQ( qv___NlfFlagsSkipUtf8BytesNonNlf( nullptr, 0, 255 ), 0 );
}

} // namespace
