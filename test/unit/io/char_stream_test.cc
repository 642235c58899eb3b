// Character streams alone: text forms, and the streams on strings.

#include "support/test.hh"
#include "support/stream.hh"

#include <qv/io/qv_char_source.hh>

namespace
{

using test::Chars;
using Tap = test::Tap<QV_CHAR>;

TEST( CharSink, TextForms )
{
    qv::Local<QV_STRING_CHAR_SINK> collector( qvStringCharSinkCreate() );
    qv::Local<QV_CHAR_SINK> sink( qvStringCharSinkCharSink( collector ) );
    EXPECT_TRUE( qvCharSinkWriteChar( sink, 0x20AC ) );
    EXPECT_TRUE( qvCharSinkWriteCstr( sink, "größe", -1 ) );
    EXPECT_TRUE( qvCharSinkWriteCstr( sink, "abc", 2 ) );
    EXPECT_TRUE( qvCharSinkWriteCstr( sink, "", -1 ) );
    EXPECT_TRUE( qvCharSinkWriteWcstr( sink, L"|\u00E9|", 2 ) );
    EXPECT_TRUE( qvCharSinkWriteFormatCstr( sink, "%i;%s", -1, static_cast<QV_INT>( 42 ),
                                            static_cast<QV_STRING *>( test::text( "x" ) ) ) );
    EXPECT_TRUE( qvCharSinkWriteFormatWcstr( sink, L"[%i]", -1, static_cast<QV_INT>( -1 ) ) );
    EXPECT_TRUE( qvCharSinkWriteFormat( sink, test::text( "%i!" ), static_cast<QV_INT>( 3 ) ) );
    qv::Local<QV_STRING> early( qvStringCharSinkString( collector ) );
    EXPECT_TRUE( qvCharSinkWriteChar( sink, 'z' ) );
    EXPECT_EQ( test::toUtf8( early ), "€größeab|é42;x[-1]3!" );
    EXPECT_EQ( test::takeUtf8( qvStringCharSinkString( collector ) ), "€größeab|é42;x[-1]3!z" );
    EXPECT_DEATH( qvCharSinkWriteChar( sink, 0x110000 ), "QV_CHAR_OK\\( ch \\)" );
}

TEST( CharSink, EveryFormFailsOnAFailedSink )
{
    Tap tap;
    tap.goodWrites = 0;
    auto sink = Chars::sink( tap );
    EXPECT_FALSE( qvCharSinkWriteChar( sink, 'a' ) );
    EXPECT_FALSE( qvCharSinkWriteCstr( sink, "", 0 ) );
    EXPECT_FALSE( qvCharSinkWriteWcstr( sink, L"", 0 ) );
    EXPECT_FALSE( qvCharSinkWriteFormatCstr( sink, "%i", -1, static_cast<QV_INT>( 1 ) ) );
    EXPECT_EQ( tap.writes.size(), 1u );
}

TEST( CharSource, CountsOutOfBoundsStop )
{
    auto liar = []( qvObj, QV_CHAR *, QV_INT, QV_INT *count ) -> QV_BOOL {
        *count = -1;
        return QV_TRUE;
    };
    qv::Local<QV_CHAR_SOURCE> src( qv___CharSourceCreate( liar, nullptr ) );
    auto dest = test::text( "" );
    EXPECT_DEATH( qvCharSourceRead( src, dest.edit(), 1 ), "charsRead >= 0" );
}

TEST( StringCharSource, SourcesShareOnePosition )
{
    auto text = test::text( U"ab\U0010FFFFd" );
    qv::Local<QV_STRING_CHAR_SOURCE> scs( qvStringCharSourceCreate( text ) );
    qv::Local<QV_CHAR_SOURCE> srcA( qvStringCharSourceCharSource( scs ) );
    qv::Local<QV_CHAR_SOURCE> srcB( qvStringCharSourceCharSource( scs ) );
    QV_CHAR ch;
    EXPECT_EQ( qvCharSourceReadChars( srcA, &ch, 1 ), 1 );
    // The destination may be the string that is read.
    EXPECT_EQ( qvCharSourceRead( srcB, text.edit(), 3 ), 3 );
    EXPECT_FALSE( qvCharSourceEnd( srcB ) );
    EXPECT_EQ( test::toU32( text ), U"ab\U0010FFFFdb\U0010FFFFd" );
    EXPECT_EQ( qvCharSourceRead( srcA, text.edit(), -1 ), 0 );
    EXPECT_TRUE( qvCharSourceEnd( srcA ) );
    EXPECT_EQ( qvStringLength( qv::Local<QV_STRING>( qvStringCharSourceString( scs ) ) ), 4 );
}

} // namespace
