#include "support/test.hh"
#include "unicode/facts.hh"

#include <qv/unicode/qv_unicode_normalizer.hh>

namespace
{

using namespace test;

using Normalizer = Local<QV_UNICODE_NORMALIZER>;

std::u32string readAll( QV_UNICODE_NORMALIZER *norm )
{
    std::u32string result( static_cast<size_t>( qvUnicodeNormalizerReadable( norm ) ), U'?' );
    QV_INT count = qvUnicodeNormalizerReadChars( norm, reinterpret_cast<QV_CHAR *>( result.data() ),
                                                 lengthOf( result ) );
    EXPECT_EQ( lengthOf( result ), count );
    EXPECT_EQ( 0, qvUnicodeNormalizerReadable( norm ) );
    return result;
}

// Write, flush and read on a normalizer that is used again and again.
std::u32string normalized( QV_UNICODE_NORMALIZER *norm, std::u32string_view chars )
{
    qvUnicodeNormalizerWriteChars( norm, charsOf( chars ), lengthOf( chars ) );
    qvUnicodeNormalizerFlush( norm );
    return readAll( norm );
}

// The stages as they are described: three texts, one character at a time, nothing clever.
class Model
{
  public:
    explicit Model( QV_UNICODE_NORMAL_FORM form ) : form_( form ) {}

    void write( char32_t ch )
    {
        char32_t high = high_;
        high_ = 0;
        if ( ch >= 0xD800 && ch <= 0xDBFF )
            high_ = ch;
        else if ( ch >= 0xDC00 && ch <= 0xDFFF )
            decompose_ +=
                high ? facts().decompose( 0x10000 + ( high - 0xD800 ) * 0x400 + ch - 0xDC00, compat() ) : U"";
        else if ( ch < 0x110000 )
            decompose_ += facts().decompose( ch, compat() );
        step( false );
    }

    void flush()
    {
        high_ = 0;
        step( true );
        if ( composes() )
            endRun();
    }

    size_t readable() const
    {
        return composes() ? composePos_ : reorder_.size();
    }

    std::u32string read( size_t most )
    {
        size_t count = std::min( most, readable() );
        std::u32string &from = composes() ? compose_ : reorder_;
        std::u32string result = from.substr( 0, count );
        from.erase( 0, count );
        composePos_ -= composes() ? count : 0;
        return result;
    }

  private:
    bool compat() const
    {
        return form_ % 2 == 1;
    }
    bool composes() const
    {
        return form_ < 2;
    }
    static unsigned classOf( char32_t ch )
    {
        return facts().combiningClass[ch];
    }

    void endRun()
    {
        composePos_ = compose_.size();
        starter_ = 0;
        lastClass_ = 255;
    }

    void step( bool isFinal )
    {
        size_t count = decompose_.size();
        if ( !isFinal )
        {
            while ( count > 0 && classOf( decompose_[count - 1] ) != 0 )
                count--;
            if ( count > 1 )
                count--;
            else
                count = decompose_.size() >= 4096 ? decompose_.size() : 0;
        }
        for ( size_t idx = 1; idx < count; )
        {
            unsigned ccc = classOf( decompose_[idx] );
            if ( ccc != 0 && ccc < classOf( decompose_[idx - 1] ) )
            {
                std::swap( decompose_[idx - 1], decompose_[idx] );
                idx = std::max<size_t>( 1, idx - 1 );
            }
            else
                idx++;
        }
        reorder_ += decompose_.substr( 0, count );
        decompose_.erase( 0, count );
        if ( composes() )
            compose();
    }

    void compose()
    {
        for ( char32_t ch : reorder_ )
        {
            unsigned ccc = classOf( ch );
            bool isBlocked = composePos_ >= compose_.size() || ( lastClass_ != 0 && lastClass_ >= ccc );
            char32_t joined = isBlocked ? 0 : facts().join( starter_, ch );
            if ( joined )
            {
                compose_[composePos_] = starter_ = joined;
                continue;
            }
            if ( ccc == 0 )
            {
                starter_ = ch;
                lastClass_ = 0;
                composePos_ = compose_.size();
            }
            else
                lastClass_ = std::max( lastClass_, ccc );
            compose_ += ch;
        }
        reorder_.clear();
        if ( compose_.size() >= composePos_ + 4096 )
            endRun();
    }

    QV_UNICODE_NORMAL_FORM form_;
    char32_t high_ = 0;
    std::u32string decompose_;
    std::u32string reorder_;
    std::u32string compose_;
    size_t composePos_ = 0;
    char32_t starter_ = 0;
    unsigned lastClass_ = 255;
};

// Characters of every kind that a form treats in its own way, so that short random texts meet all rules.
std::u32string interestingChars()
{
    std::u32string chars =
        U"aeouAEOU bcq\u00C5\u00E9\u1EAD\u1EA1\u1E69\uFB01\u212B\u2126\u0958\u0929\u0915\u0928";
    chars += U"\u0300\u0301\u0302\u0307\u0308\u030A\u031B\u0323\u0327\u0331\u0338\u0344\u0340\u0345\u05B0"
             U"\u05B4\u093C";
    chars += U"\u09C7\u09BE\u09D7\u09CB\u0F71\u0F72\u0F73\u0F74\u0F75\u0F80\u0F81\u0B47\u0B56\u3042\u304B"
             U"\u3099\u304C";
    chars += U"\u1100\u1112\u1113\u1161\u1175\u1176\u11A7\u11A8\u11C2\u11C3\uAC00\uAC01\uAC1C\uD7A3\uFDFA"
             U"\u3300\u00BD";
    chars += U"\u4E2D\u6587\uF900\u03B1\u03B9\u1F82\u1FB7\u0390\u0F77\u0F79";
    chars += U"\U0001D157\U0001D165\U0001D15F\U0001D1C0\U00011131\U00011127\U00011132\U0001F600\U0002F800"
             U"\U00016D67"
             U"\U00016D68\U00016D69";
    return chars;
}

const char32_t badChars[] = { 0xD800,     0xDBFF, 0xDC00, 0xDFFF, 0x110000,
                              0xFFFFFFFF, 0xD83D, 0xDE00, 0xD834, 0xDD5E };

std::u32string randomText( std::mt19937 &random, size_t length, bool withBad )
{
    static const std::u32string interesting = interestingChars();
    std::u32string result;
    while ( result.size() < length )
    {
        unsigned kind = random() % 16;
        if ( kind == 0 )
            result.append( random() % 40, U'a' + random() % 26 );
        else if ( kind == 1 && withBad )
            result += badChars[random() % std::size( badChars )];
        else if ( kind < 4 )
            result += std::next( facts().maps.begin(), random() % 5913 )->first;
        else
            result += interesting[random() % interesting.size()];
    }
    return result;
}

} // namespace

// ---- The results ----

TEST( UnicodeNormalizer, everyCodePointAloneAndBetweenNeighbours )
{
    for ( int form = 0; form < 4; form++ )
    {
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        for ( char32_t ch = 0; ch < codeEnd; ch++ )
        {
            if ( ch >= 0xD800 && ch <= 0xDFFF )
                continue;
            std::u32string parts = facts().normalize( std::u32string( 1, ch ), form );
            ASSERT_EQ( parts, normalized( norm, std::u32string( 1, ch ) ) ) << form << ' ' << std::hex << +ch;
            bool isPlain = parts == std::u32string( 1, ch ) && facts().combiningClass[ch] == 0;
            if ( isPlain && ch > 0x3200 )
                continue;
            for ( std::u32string around : { U"a?\u0301", U"e\u0327?b", U"\u1100?\u11A8", U"\u0915?\u093C" } )
            {
                around[around.find( U'?' )] = ch;
                ASSERT_EQ( facts().normalize( around, form ), normalized( norm, around ) )
                    << form << ' ' << std::hex << +ch;
            }
        }
    }
}

TEST( UnicodeNormalizer, pairsOfAllThatJoins )
{
    std::set<char32_t> firsts;
    std::set<char32_t> seconds;
    for ( const auto &[pair, composite] : facts().composites )
    {
        firsts.insert( { pair.first, composite } );
        seconds.insert( pair.second );
    }
    for ( int form = 0; form < 4; form++ )
    {
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        for ( char32_t first : firsts )
            for ( char32_t second : seconds )
            {
                std::u32string pair = { first, second };
                ASSERT_EQ( facts().normalize( pair, form ), normalized( norm, pair ) )
                    << form << ' ' << std::hex << +first << ' ' << +second;
            }
    }
}

TEST( UnicodeNormalizer, allSyllablesFromTheirParts )
{
    Normalizer norm( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) );
    Normalizer back( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_D ) );
    std::u32string syllables;
    std::u32string parts;
    for ( char32_t ch = 0xAC00; ch <= 0xD7A3; ch++ )
    {
        syllables += ch;
        parts += facts().decompose( ch, false );
    }
    EXPECT_EQ( syllables, normalized( norm, parts ) );
    EXPECT_EQ( syllables, normalized( norm, syllables ) );
    EXPECT_EQ( parts, normalized( back, syllables ) );
}

TEST( UnicodeNormalizer, edgeCases )
{
    const struct
    {
        int form;
        std::u32string from, to;
    } cases[] = {
        { 2, U"\u00C5", U"A\u030A" },
        { 1, U"\uFB01", U"fi" },
        { 0, U"\uFB01", U"\uFB01" },
        { 2, U"A\u0323\u0307", U"A\u0323\u0307" },
        { 2, U"A\u0307\u0323", U"A\u0323\u0307" },
        { 0, U"a\u0323\u0302", U"\u1EAD" },
        { 0, U"\u0958", U"\u0915\u093C" },
        { 0, U"\u1100\u1161\u11A8", U"\uAC01" },
        { 2, U"\uAC01", U"\u1100\u1161\u11A8" },
        { 0, U"\uAC00\u11A7", U"\uAC00\u11A7" },              // no trailing consonant
        { 0, U"a\u0315\u0300", U"\u00E0\u0315" },             // a higher class between doesn't block
        { 0, U"a\u05B0\u0300\u0301", U"\u00E0\u05B0\u0301" }, // an equal class does
        { 0, { 0xD83D, 0xDE00 }, U"\U0001F600" },
        { 0, { 0xD83D, 0xD834, 0xDD5E }, U"\U0001D157\U0001D165" },
        { 0, { 0xD83D, 'a' }, U"a" },
        { 0, { 'a', 0x110000, 0x301 }, U"\u00E1" },
        { 0, { 0xDE00, 0xD83D, 0x110000, 0xDE00 }, U"" },
        { 0, { 0xD83D }, U"" },
    };
    for ( const auto &each : cases )
    {
        Normalizer norm( qvUnicodeNormalizerCreate( each.form ) );
        EXPECT_EQ( each.to, normalized( norm, each.from ) ) << &each - cases;
    }
}

TEST( UnicodeNormalizer, randomTextsAsTheAnnexDefinesThem )
{
    std::mt19937 random( 1 );
    for ( int round = 0; round < 6000; round++ )
    {
        int form = round % 4;
        std::u32string source = randomText( random, random() % 60, false );
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        std::u32string wanted = facts().normalize( source, form );
        ASSERT_EQ( wanted, normalized( norm, source ) ) << round;
        ASSERT_EQ( wanted, normalized( norm, wanted ) ) << round;
        Local<QV_STRING> edited = text( source );
        qvStringNormalize( edited.edit(), form );
        ASSERT_EQ( wanted, toU32( edited ) ) << round;
    }
}

TEST( UnicodeNormalizer, spanOfTextThatStays )
{
    std::mt19937 random( 2 );
    int whole = 0;
    for ( int round = 0; round < 20000; round++ )
    {
        int form = round % 4;
        std::u32string source = randomText( random, 1 + random() % 12, round % 8 < 4 );
        if ( round % 3 == 0 && round % 8 >= 4 )
            source = facts().normalize( source, form );
        QV_INT span = qv___UnicodeNormalizedSpan( form, charsOf( source ), lengthOf( source ) );
        // What follows must not matter; a mark that joins nothing in front of it shows it.
        std::u32string head = source.substr( 0, static_cast<size_t>( span ) );
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        std::u32string result = normalized( norm, source );
        ASSERT_EQ( head, result.substr( 0, head.size() ) ) << round;
        whole += span == lengthOf( source );
    }
    EXPECT_GT( whole, 2000 );
}

// ---- The stream ----

TEST( UnicodeNormalizer, randomPiecesLikeTheModel )
{
    std::mt19937 random( 3 );
    for ( int round = 0; round < 1500; round++ )
    {
        int form = round % 4;
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        Model model( form );
        for ( int step = 0; step < 30; step++ )
        {
            SCOPED_TRACE( testing::Message() << "round " << round << " step " << step );
            unsigned action = random() % 12;
            std::u32string piece = randomText( random, action < 3 ? 1 : random() % 24, true );
            if ( action < 8 )
            {
                qvUnicodeNormalizerWriteChars( norm, charsOf( piece ), lengthOf( piece ) );
                std::for_each( piece.begin(), piece.end(), [&model]( char32_t ch ) { model.write( ch ); } );
            }
            else if ( action == 8 )
            {
                qvUnicodeNormalizerFlush( norm );
                model.flush();
            }
            else if ( action == 9 && random() % 8 == 0 )
            {
                qvUnicodeNormalizerClear( norm );
                model = Model( form );
            }
            else
            {
                QV_INT most = random() % 20;
                Local<QV_STRING> got( qvStringCreateFromCstr( "x", -1 ) );
                QV_INT count = qvUnicodeNormalizerRead( norm, got.edit(), most );
                std::u32string wanted = U"x" + model.read( static_cast<size_t>( most ) );
                ASSERT_EQ( wanted, toU32( got ) );
                ASSERT_EQ( lengthOf( wanted ) - 1, count );
            }
            ASSERT_EQ( model.readable(), static_cast<size_t>( qvUnicodeNormalizerReadable( norm ) ) );
        }
        qvUnicodeNormalizerFlush( norm );
        model.flush();
        ASSERT_EQ( model.read( model.readable() ), readAll( norm ) ) << round;
    }
}

TEST( UnicodeNormalizer, longRunsOfMarks )
{
    std::mt19937 random( 4 );
    const std::u32string marks = U"\u0301\u0323\u0327\u0345\u0302\u0F71";
    const std::u32string starts = U"a\u03B1\u0301\u1100";
    for ( int round = 0; round < 8; round++ )
    {
        int form = round % 4;
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        Model model( form );
        std::u32string source;
        for ( char32_t start : starts )
        {
            size_t length = 4090 + random() % 5000;
            bool isMixed = random() % 2;
            source += start;
            while ( length-- > 0 )
                source += isMixed ? marks[random() % marks.size()] : marks[static_cast<size_t>( round ) % 3];
        }
        for ( char32_t ch : source )
        {
            model.write( ch );
            qvUnicodeNormalizerWriteChar( norm, ch );
            ASSERT_EQ( model.readable(), static_cast<size_t>( qvUnicodeNormalizerReadable( norm ) ) )
                << round;
        }
        model.flush();
        qvUnicodeNormalizerFlush( norm );
        std::u32string wanted = model.read( model.readable() );
        ASSERT_EQ( wanted, readAll( norm ) ) << round;
        ASSERT_EQ( wanted, normalized( norm, source ) ) << round;
    }
}

TEST( UnicodeNormalizer, readableAtOnce )
{
    Normalizer norm( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) );
    qvUnicodeNormalizerWrite( norm, text( U"A\u030A" ) );
    EXPECT_EQ( 0, qvUnicodeNormalizerReadable( norm ) );
    qvUnicodeNormalizerWrite( norm, text( U"BC" ) );
    EXPECT_EQ( U"\u00C5", readAll( norm ) );
    qvUnicodeNormalizerFlush( norm );
    qvUnicodeNormalizerWriteChar( norm, 0x30A );
    EXPECT_EQ( U"BC", readAll( norm ) );
    qvUnicodeNormalizerFlush( norm );
    EXPECT_EQ( U"\u030A", readAll( norm ) );
    for ( int count = 0; count < 5000; count++ )
        qvUnicodeNormalizerWriteChar( norm, 0x301 );
    EXPECT_EQ( 4096, qvUnicodeNormalizerReadable( norm ) );
    qvUnicodeNormalizerClear( norm );
    EXPECT_EQ( 0, qvUnicodeNormalizerReadable( norm ) );
    qvUnicodeNormalizerFlush( norm );
    EXPECT_EQ( U"", readAll( norm ) );
}

TEST( UnicodeNormalizer, largeTextsPassWhole )
{
    std::mt19937 random( 5 );
    for ( int form = 0; form < 4; form++ )
    {
        std::u32string source = randomText( random, 200000, false );
        std::u32string wanted = facts().normalize( source, form );
        Normalizer norm( qvUnicodeNormalizerCreate( form ) );
        qvUnicodeNormalizerWrite( norm, text( source ) );
        qvUnicodeNormalizerFlush( norm );
        Local<QV_STRING> got( qvStringCreate() );
        EXPECT_EQ( lengthOf( wanted ), qvUnicodeNormalizerRead( norm, got.edit(), -1 ) );
        EXPECT_EQ( wanted, toU32( got ) );
        EXPECT_EQ( 0, qvUnicodeNormalizerRead( norm, got.edit(), -1 ) );
        // The storage went with the string; both go on.
        EXPECT_EQ( U"ab", normalized( norm, U"ab" ) );
        qvStringAppendChar( got.edit(), 'z' );
        EXPECT_EQ( wanted + U"z", toU32( got ) );
        qvUnicodeNormalizerWrite( norm, text( source ) );
        qvUnicodeNormalizerClear( norm );
        EXPECT_EQ( U"ab", normalized( norm, U"ab" ) );
    }
}

TEST( UnicodeNormalizer, partsOfStrings )
{
    Local<QV_STRING> source = text( U"0123456789" );
    const struct
    {
        void ( *write )( QV_UNICODE_NORMALIZER *, QV_STRING * );
        std::u32string wanted;
    } cases[] = {
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteInner( n, s, 2, 3 ); },
          U"234" },
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteInner( n, s, 10, 0 ); },
          U"" },
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteLeading( n, s, 4 ); },
          U"0123" },
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteTrailing( n, s, 4 ); },
          U"6789" },
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteOuter( n, s, 2, 6 ); },
          U"0189" },
        { []( QV_UNICODE_NORMALIZER *n, QV_STRING *s ) { qvUnicodeNormalizerWriteOuter( n, s, 0, 10 ); },
          U"" },
    };
    for ( const auto &each : cases )
    {
        Normalizer norm( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) );
        each.write( norm, source );
        qvUnicodeNormalizerFlush( norm );
        EXPECT_EQ( each.wanted, readAll( norm ) ) << &each - cases;
    }
}

TEST( UnicodeNormalizer, faultsOfTheCallerStopTheProcess )
{
    Normalizer norm( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) );
    Local<QV_STRING> source = text( U"abc" );
    EXPECT_DEATH( (void)qvUnicodeNormalizerCreate( 4 ), "QV_UNICODE_NORMAL_FORM_OK\\( normalForm \\)" );
    EXPECT_DEATH( qvUnicodeNormalizerWriteChars( norm, nullptr, 1 ), "chs" );
    EXPECT_DEATH( qvUnicodeNormalizerWriteChars( norm, nullptr, -1 ), "chsLength >= 0" );
    EXPECT_DEATH( qvUnicodeNormalizerWriteInner( norm, source, 2, 2 ), "offset \\+ count <= " );
    EXPECT_DEATH( qvUnicodeNormalizerWriteOuter( norm, source, 1, QV_INT_MAX ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvUnicodeNormalizerWriteTrailing( norm, source, 4 ), "count <= " );
    EXPECT_DEATH( qvUnicodeNormalizerRead( norm, source.edit(), -2 ), "maxLen >= -1" );
}
