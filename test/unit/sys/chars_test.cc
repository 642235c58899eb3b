#include "support/test.hh"

namespace
{

using Chars = std::u32string;

QV_CHAR *mutableCharsOf( Chars &text )
{
    return reinterpret_cast<QV_CHAR *>( text.data() );
}

Chars fromUtf8( const std::string &bytes )
{
    QV_INT length = qvCharsConvertFromUtf8( nullptr, 0, bytes.data(), test::lengthOf( bytes ) );
    Chars text( static_cast<size_t>( length ), U'\0' );
    EXPECT_EQ( length, qvCharsConvertFromUtf8( mutableCharsOf( text ), length, bytes.data(),
                                               test::lengthOf( bytes ) ) );
    return text;
}

TEST( Chars, FromUtf8 )
{
    const std::pair<std::string, Chars> rows[] = {
        { "plain ASCII text, longer than a word", U"plain ASCII text, longer than a word" },
        { "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80z", U"a\u00FC\u20AC\U0001F600z" },
        { "\xC0\x80", Chars( 1, U'\0' ) },
        { "\xED\xA0\x80", Chars( 1, char32_t( 0xD800 ) ) },
        { "\xF4\x90\x80\x80", U"" },
        { "x\xF4\x90\x80\x80y", U"xy" },
        { "\xE2\x82", U"" },
        { "ab\xE2\x82", U"ab" },
        { "\xE2\x41", U"\uFFFDA" },
        { "\xE2\x82\x41", U"\uFFFDA" },
        { "\x80\x80\x80\x41", U"\uFFFDA" },
        { "\xFF\xFF", U"\uFFFD\uFFFD" },
        { "\xFF\x80\x80z", U"\uFFFDz" },
        { "\xE2\xE2\x82\xAC", U"\uFFFD\u20AC" },
    };
    for ( const auto &[bytes, text] : rows )
        EXPECT_EQ( text, fromUtf8( bytes ) ) << bytes;
    QV_CHAR room[3];
    EXPECT_EQ( 10, qvCharsConvertFromUtf8( room, 3, "0123456789", -1 ) );
    EXPECT_EQ( QV_CHAR( '2' ), room[2] );
}

TEST( Chars, ToUtf8AndBack )
{
    std::mt19937 random( 7 );
    for ( int round = 0; round < 300; round++ )
    {
        Chars text;
        for ( unsigned length = random() % 40; text.size() < length; )
            text.push_back( static_cast<char32_t>( random() % 0x110000 >> ( random() % 21 ) ) );
        QV_INT textLength = test::lengthOf( text );
        QV_INT length = qvCharsConvertToUtf8( nullptr, 0, mutableCharsOf( text ), textLength, QV_FALSE );
        std::string bytes( static_cast<size_t>( length ) + 1, '#' );
        EXPECT_EQ( length + 1, qvCharsConvertToUtf8( bytes.data(), length + 1, mutableCharsOf( text ),
                                                     textLength, QV_TRUE ) );
        EXPECT_EQ( '\0', bytes.back() );
        bytes.pop_back();
        EXPECT_EQ( text, fromUtf8( bytes ) );
        std::string start( bytes.size() / 2, '#' );
        qvCharsConvertToUtf8( start.data(), test::lengthOf( start ), mutableCharsOf( text ), textLength,
                              QV_TRUE );
        EXPECT_EQ( bytes.substr( 0, start.size() ), start );
    }
    QV_CHAR beyond = 0x110000;
    char bytes[4] = { 'x', 'x', 'x', 'x' };
    EXPECT_EQ( 3, qvCharsConvertToUtf8( bytes, 4, &beyond, 1, QV_FALSE ) );
    EXPECT_EQ( "\xEF\xBF\xBDx", std::string( bytes, 4 ) );
    EXPECT_EQ( 3, qvCharsConvertToUtf8( bytes, 1, &beyond, 1, QV_FALSE ) );
}

TEST( Chars, Sanitize )
{
    const struct
    {
        std::vector<QV_CHAR> source, clean;
    } rows[] = {
        { { 0xD83D, 0xDE00 }, { 0x1F600 } },  { { 0xD800, 0xD83D, 0xDE00 }, { 0x1F600 } },
        { { 0xDE00, 'a' }, { 'a' } },         { { 0xD83D, 0x110000, 0xDE00 }, {} },
        { { 0xD83D, 'a', 0xDE00 }, { 'a' } }, { { 'a', 0xD83D }, { 'a' } },
        { { 0xDBFF, 0xDFFF }, { 0x10FFFF } },
    };
    for ( const auto &row : rows )
    {
        std::vector<QV_CHAR> clean( row.source.size() );
        QV_INT length = qvCharsSanitize( clean.data(), test::lengthOf( clean ), row.source.data(),
                                         test::lengthOf( row.source ) );
        clean.resize( static_cast<size_t>( length ) );
        EXPECT_EQ( row.clean, clean );
    }
}

TEST( Chars, AsciiAndWide )
{
    QV_CHAR chs[4] = { 'a', 0, 0x20AC, 0x110000 };
    char bytes[5] = {};
    EXPECT_EQ( 5, qvCharsConvertToAscii( bytes, 4, chs, 4, QV_TRUE ) );
    EXPECT_EQ( std::string( "a\0??", 4 ), std::string( bytes, 4 ) );
    wchar_t wide[5];
    EXPECT_EQ( 5, qvCharsConvertToWcstr( wide, 5, chs, 4, QV_TRUE ) );
    EXPECT_EQ( std::wstring( L"a\uFFFD\u20AC\uFFFD" ), std::wstring( wide ) );
    QV_CHAR back[4];
    EXPECT_EQ( 4, qvCharsConvertFromWcstr( back, 4, wide, -1 ) );
    EXPECT_EQ( 0x20ACu, back[2] );
    EXPECT_EQ( 3, qvCharsConvertFromAscii( back, 4, "x\xFFy", -1 ) );
    EXPECT_EQ( 0xFFFDu, back[1] );
}

} // namespace
