// Lines over new-line forms, against a plain reading of the rules, and over streams that fail.

#include "support/test.hh"
#include "support/nlf.hh"
#include "support/stream.hh"

#include <qv/io/qv_line_sink.hh>
#include <qv/io/qv_line_source.hh>

namespace
{

using Lines = std::vector<std::u32string>;
using Tap = test::Tap<QV_CHAR>;

Lines expectedLines( std::u32string_view text, QV_NLF_FLAGS flags )
{
    Lines lines;
    std::u32string line;
    while ( !text.empty() )
    {
        size_t length = test::nlfAt( text, flags ).length;
        if ( length == 0 )
            line += text[0];
        if ( length > 0 || text.size() == 1 )
        {
            lines.push_back( line );
            line.clear();
        }
        text.remove_prefix( std::max<size_t>( length, 1 ) );
    }
    return lines;
}

Lines linesOf( QV_VECTOR *vector )
{
    Lines lines;
    for ( QV_INT idx = 0; idx < qvVectorLength( vector ); idx++ )
    {
        qv::Local<QV_STRING> line( qvStringFrom( qvVectorObjAt( vector, idx ) ) );
        lines.push_back( test::toU32( line ) );
    }
    return lines;
}

qv::Local<QV_LINE_SOURCE> lineSource( Tap &tap, QV_NLF_FLAGS flags )
{
    auto chars = test::Chars::source( tap );
    qv::Local<QV_NLF_LINE_SOURCE> nls( qvNlfLineSourceCreate( chars, flags ) );
    return qv::Local<QV_LINE_SOURCE>( qvNlfLineSourceLineSource( nls ) );
}

// Reads all lines of the text, with a failure behind failAt code points if that isn't -1.
void expectLines( const std::u32string &text, QV_NLF_FLAGS flags, QV_INT failAt = -1 )
{
    Tap tap;
    tap.data.assign( text.begin(), text.end() );
    tap.failAt = failAt;
    auto src = lineSource( tap, flags );
    Lines expected =
        expectedLines( failAt < 0 ? text : text.substr( 0, static_cast<size_t>( failAt ) ), flags );
    qv::Local<QV_VECTOR> lines( qvLineSourceReadLines( src, -1 ) );
    ASSERT_EQ( linesOf( lines ), expected );
    ASSERT_TRUE( qvLineSourceEnd( src ) );
    ASSERT_EQ( qvLineSourceError( src ), failAt >= 0 );
    ASSERT_EQ( qvLineSourceLinesRead( src ), test::lengthOf( expected ) );
    ASSERT_EQ( qvLineSourceRead( src ), nullptr );
    // One short request told of the end: the source isn't asked again behind it.
    ASSERT_EQ( tap.requests.size(), static_cast<size_t>( tap.position ) / 1024 + 1 );
}

TEST( NlfLineSource, Samples )
{
    const struct
    {
        std::u32string text;
        QV_NLF_FLAGS flags;
        Lines lines;
    } rows[] = {
        { U"a\r\nb", QV_NLF_FLAG_CR | QV_NLF_FLAG_LF | QV_NLF_FLAG_CRLF, { U"a", U"b" } },
        { U"a\r\nb", QV_NLF_FLAG_CR | QV_NLF_FLAG_LF, { U"a", U"", U"b" } },
        { U"a\rb", QV_NLF_FLAG_CRLF, { U"a\rb" } },
        { U"a\r", QV_NLF_FLAG_CRLF, { U"a\r" } },
        { U"a\r", QV_NLF_FLAG_CRLF | QV_NLF_FLAG_CR, { U"a" } },
        { U"\r", QV_NLF_FLAG_CRLF, { U"\r" } },
        { U"", 255, {} },
        { U"\n", 255, { U"" } },
        { U"a\n\nb\n", 255, { U"a", U"", U"b" } },
        { U"a\nb", 0, { U"a\nb" } },
        { U"a\u0085b\vc\fd\u2028e\u2029f", 255, { U"a", U"b", U"c", U"d", U"e", U"f" } },
    };
    for ( auto &row : rows )
    {
        EXPECT_EQ( expectedLines( row.text, row.flags ), row.lines );
        expectLines( row.text, row.flags );
    }
}

TEST( NlfLineSource, PairsAroundTheEndOfTheBuffer )
{
    const std::u32string ends[] = { U"\r\n", U"\r", U"\n", U"\r\r\n", U"\r\n\r\n", U"x" };
    for ( QV_INT length = 1019; length <= 1027; length++ )
        for ( const std::u32string &end : ends )
            for ( const char32_t *rest : { U"", U"z", U"\n", U"\r" } )
                for ( QV_NLF_FLAGS flags = 0; flags < 8; flags++ )
                {
                    std::u32string text( static_cast<size_t>( length ), U'a' );
                    Tap tap;
                    text += end + rest;
                    tap.data.assign( text.begin(), text.end() );
                    auto src = lineSource( tap, flags );
                    qv::Local<QV_VECTOR> lines( qvLineSourceReadLines( src, -1 ) );
                    ASSERT_EQ( linesOf( lines ), expectedLines( text, flags ) )
                        << length << ", flags " << flags;
                    // The last request is the first short one.
                    ASSERT_LE( tap.requests.size(), 3u );
                }
}

TEST( NlfLineSource, RandomTextsAndFailures )
{
    const std::u32string dense = U"\r\n\r\nab\u0085\v\f\u2028\u2029";
    std::mt19937 random( 7 );
    for ( int count = 0; count < 400 && !HasFatalFailure(); count++ )
    {
        std::u32string text;
        unsigned sparse = 1 + random() % 200;
        for ( size_t length = random() % 4000; length > 0; length-- )
            text += random() % sparse == 0 ? dense[random() % dense.size()] : U'x';
        // Without pairs every request is for a whole buffer.
        expectLines( text, static_cast<QV_NLF_FLAGS>( random() % 256 & ~QV_NLF_FLAG_CRLF ) );
        auto failAt = static_cast<QV_INT>( random() % ( text.size() + 1 ) );
        expectLines( text, static_cast<QV_NLF_FLAGS>( random() % 256 & ~QV_NLF_FLAG_CRLF ), failAt );

        auto string = test::text( text );
        auto flags = static_cast<QV_NLF_FLAGS>( random() % 256 | QV_NLF_FLAG_CRLF );
        qv::Local<QV_NLF_LINE_SOURCE> nls( qvNlfLineSourceCreateFromString( string, flags | 256 ) );
        EXPECT_EQ( qvNlfLineSourceNlfFlags( nls ), flags );
        qv::Local<QV_LINE_SOURCE> src( qvNlfLineSourceLineSource( nls ) );
        qv::Local<QV_VECTOR> lines( qvLineSourceReadLines( src, -1 ) );
        ASSERT_EQ( linesOf( lines ), expectedLines( text, flags ) );
        ASSERT_FALSE( qvLineSourceError( src ) );
    }
}

TEST( LineSource, DeliversTheLineThatFails )
{
    Tap tap;
    tap.data = { 'a', '\n', 'b', 'c' };
    tap.failAt = 3;
    auto src = lineSource( tap, QV_NLF_FLAG_LF );
    EXPECT_EQ( test::takeUtf8( qvLineSourceRead( src ) ), "a" );
    EXPECT_FALSE( qvLineSourceEnd( src ) );
    EXPECT_EQ( test::takeUtf8( qvLineSourceRead( src ) ), "b" );
    EXPECT_TRUE( qvLineSourceEnd( src ) );
    EXPECT_TRUE( qvLineSourceError( src ) );
    EXPECT_EQ( qvLineSourceRead( src ), nullptr );
}

TEST( LineSource, ReadsNoMoreThanAsked )
{
    auto text = test::text( "a\nb\nc\n" );
    qv::Local<QV_NLF_LINE_SOURCE> nls( qvNlfLineSourceCreateFromString( text, QV_NLF_FLAG_LF ) );
    qv::Local<QV_LINE_SOURCE> src( qvNlfLineSourceLineSource( nls ) );
    qv::Local<QV_VECTOR> none( qvLineSourceReadLines( src, 0 ) );
    EXPECT_EQ( qvVectorLength( none ), 0 );
    qv::Local<QV_VECTOR> two( qvLineSourceReadLines( src, 2 ) );
    EXPECT_EQ( linesOf( two ), ( Lines{ U"a", U"b" } ) );
    EXPECT_FALSE( qvLineSourceEnd( src ) );
    EXPECT_DEATH( qvLineSourceReadLines( src, -2 ), "maxLineCount >= -1" );
}

// ---- Writing ----

qv::Local<QV_LINE_SINK> lineSink( Tap &tap, QV_NLF_FLAGS flags )
{
    auto chars = test::Chars::sink( tap );
    qv::Local<QV_NLF_LINE_SINK> nls( qvNlfLineSinkCreate( chars, flags ) );
    return qv::Local<QV_LINE_SINK>( qvNlfLineSinkLineSink( nls ) );
}

std::u32string written( const Tap &tap, size_t count )
{
    std::u32string text;
    for ( size_t idx = 0; idx < std::min( count, tap.writes.size() ); idx++ )
        text.append( tap.writes[idx].begin(), tap.writes[idx].end() );
    return text;
}

TEST( NlfLineSink, EndsEachLineInItsForm )
{
    for ( QV_NLF_FLAGS flags : { 0, 1, 2, 4, 8, 16, 32, 64, 128, 6, 255 } )
    {
        Tap tap;
        auto sink = lineSink( tap, flags );
        qv::Local<QV_STRING> nlf( qvNlfFlagsNlfString( flags ) );
        EXPECT_TRUE( qvLineSinkWriteCstr( sink, "one", -1 ) );
        EXPECT_TRUE( qvLineSinkWriteCstr( sink, "", 0 ) );
        EXPECT_EQ( written( tap, 100 ), U"one" + test::toU32( nlf ) + test::toU32( nlf ) );
        EXPECT_EQ( tap.writes.size(), 1 + 2 * static_cast<size_t>( qvStringLength( nlf ) ) );
        EXPECT_EQ( qvLineSinkLinesWritten( sink ), 2 );
        EXPECT_TRUE( qvLineSinkFlush( sink ) );
        EXPECT_EQ( tap.flushes, 1 );
    }
}

TEST( LineSink, Forms )
{
    qv::Local<QV_STRING_CHAR_SINK> collector( qvStringCharSinkCreate() );
    qv::Local<QV_CHAR_SINK> chars( qvStringCharSinkCharSink( collector ) );
    qv::Local<QV_NLF_LINE_SINK> nls( qvNlfLineSinkCreate( chars, QV_NLF_FLAG_LF ) );
    qv::Local<QV_LINE_SINK> sink( qvNlfLineSinkLineSink( nls ) );
    auto line = test::text( "abcde" );
    qv::Local<QV_VECTOR> lines( qvVectorCreate() );
    for ( const char *text : { "1", "2", "3", "4", "5" } )
        qvVectorAppendObj( lines.edit(), qvStringObj( test::text( text ) ) );
    EXPECT_TRUE( qvLineSinkWriteLeading( sink, line, 2 ) );
    EXPECT_TRUE( qvLineSinkWriteTrailing( sink, line, 2 ) );
    EXPECT_TRUE( qvLineSinkWriteInner( sink, line, 1, 3 ) );
    EXPECT_TRUE( qvLineSinkWriteOuter( sink, line, 1, 3 ) );
    EXPECT_TRUE( qvLineSinkWriteWcstr( sink, L"w\u00E9", -1 ) );
    EXPECT_TRUE( qvLineSinkWriteFormat( sink, test::text( "%i" ), static_cast<QV_INT>( 7 ) ) );
    EXPECT_TRUE( qvLineSinkWriteFormatCstr( sink, "%i", -1, static_cast<QV_INT>( 8 ) ) );
    EXPECT_TRUE( qvLineSinkWriteFormatWcstr( sink, L"%i", -1, static_cast<QV_INT>( 9 ) ) );
    EXPECT_TRUE( qvLineSinkWriteLines( sink, lines ) );
    EXPECT_TRUE( qvLineSinkWriteLinesLeading( sink, lines, 2 ) );
    EXPECT_TRUE( qvLineSinkWriteLinesTrailing( sink, lines, 1 ) );
    EXPECT_TRUE( qvLineSinkWriteLinesInner( sink, lines, 1, 2 ) );
    EXPECT_TRUE( qvLineSinkWriteLinesOuter( sink, lines, 1, 3 ) );
    EXPECT_TRUE( qvLineSinkWriteLinesInner( sink, lines, 5, 0 ) );
    EXPECT_EQ( test::takeUtf8( qvStringCharSinkString( collector ) ),
               "ab\nde\nbcd\nae\nwé\n7\n8\n9\n1\n2\n3\n4\n5\n1\n2\n5\n2\n3\n1\n5\n" );
    EXPECT_EQ( qvLineSinkLinesWritten( sink ), 20 );
    EXPECT_DEATH( qvLineSinkWriteLinesInner( sink, lines, 4, 2 ), "offset \\+ count" );
    EXPECT_DEATH( qvLineSinkWrite( sink, nullptr ), "line" );
}

TEST( LineSink, TellsOfEveryLostLine )
{
    Lines texts = { U"one", U"", U"three", U"four" };
    // A line of text is three writes, an empty one two.
    const QV_INT linesWithin[] = { 0, 0, 0, 1, 1, 2, 2, 2, 3, 3, 3, 4 };
    for ( int goodWrites = 0; goodWrites < 12; goodWrites++ )
        for ( bool asVector : { false, true } )
        {
            Tap tap;
            tap.goodWrites = goodWrites;
            auto sink = lineSink( tap, QV_NLF_FLAG_CRLF );
            qv::Local<QV_VECTOR> lines( qvVectorCreate() );
            QV_INT good = 0;
            for ( const std::u32string &text : texts )
            {
                auto line = test::text( text );
                qvVectorAppendObj( lines.edit(), qvStringObj( line ) );
                if ( !asVector )
                    good += qvLineSinkWrite( sink, line ) ? 1 : 0;
            }
            if ( asVector )
            {
                EXPECT_EQ( qvLineSinkWriteLines( sink, lines ), goodWrites == 11 );
                good = qvLineSinkLinesWritten( sink );
            }
            EXPECT_EQ( good, linesWithin[goodWrites] );
            EXPECT_EQ( qvLineSinkLinesWritten( sink ), good );
            EXPECT_EQ( qvLineSinkError( sink ), goodWrites < 11 );
            EXPECT_EQ( tap.writes.size(), static_cast<size_t>( std::min( goodWrites + 1, 11 ) ) );
            EXPECT_EQ( qvLineSinkFlush( sink ), goodWrites == 11 );
            if ( goodWrites < 11 )
            {
                qv::Local<QV_VECTOR> none( qvVectorCreate() );
                EXPECT_FALSE( qvLineSinkWriteLines( sink, none ) );
            }
        }
}

TEST( LineSink, VectorsMayChangeWhileTheyAreWritten )
{
    static QV_VECTOR *lines;
    auto clearLines = []( qvObj, QV_STRING * ) -> QV_BOOL {
        qvVectorClear( &lines );
        return QV_TRUE;
    };
    auto flush = []( qvObj ) -> QV_BOOL { return QV_TRUE; };
    qv::Local<QV_LINE_SINK> sink( qv___LineSinkCreate( clearLines, flush, nullptr ) );
    lines = qvVectorCreate();
    for ( bool outer : { false, true } )
    {
        for ( const char32_t *line : { U"a", U"b", U"c" } )
            qvVectorAppendObj( &lines, qvStringObj( test::text( line ) ) );
        EXPECT_TRUE( outer ? qvLineSinkWriteLinesOuter( sink, lines, 1, 1 )
                           : qvLineSinkWriteLines( sink, lines ) );
        EXPECT_EQ( qvLineSinkLinesWritten( sink ), outer ? 5 : 3 );
        EXPECT_EQ( qvVectorLength( lines ), 0 );
    }
    qvVectorRelease( lines );
}

TEST( LineSink, FlushFailureLatches )
{
    Tap tap;
    tap.flushFails = true;
    {
        auto sink = lineSink( tap, QV_NLF_FLAG_LF );
        EXPECT_FALSE( qvLineSinkFlush( sink ) );
        EXPECT_FALSE( qvLineSinkWriteCstr( sink, "a", 1 ) );
    }
    EXPECT_EQ( tap.flushes, 1 );
    EXPECT_TRUE( tap.writes.empty() );
}

} // namespace
