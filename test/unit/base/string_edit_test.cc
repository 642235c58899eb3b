// Edits of strings against a naive model, and what sharing promises.

#include "support/test.hh"

using namespace test;

namespace
{

using Text = std::u32string;
using Owned = Local<QV_STRING>;

// A string and the text that it should hold, with a second reference now and then whose text must never change.
struct Pair
{
    Owned qvs{ qvStringCreate() };
    Text model;
};

class RandomEdits
{
  public:
    explicit RandomEdits( unsigned seed, size_t maxRun ) : random_( seed ), maxRun_( maxRun ) {}

    void step()
    {
        Pair &dest = pairs_[below( 3 )];
        Pair &src = pairs_[below( 3 )];
        Owned witness;
        Text witnessModel = dest.model;
        if ( below( 3 ) == 0 )
            witness.take( qv::retained( static_cast<QV_STRING *>( dest.qvs ) ) );
        if ( dest.model.size() > 4 * maxRun_ )
            shrink( &dest );
        else
            edit( &dest, &src );
        ASSERT_EQ( dest.model, toU32( dest.qvs ) );
        ASSERT_EQ( src.model, toU32( src.qvs ) );
        if ( witness )
        {
            ASSERT_EQ( witnessModel, toU32( witness ) );
        }
        // No slot is lost and nothing lies outside the storage.
        QV_STRING *now = dest.qvs;
        ASSERT_TRUE( now->fspace >= 0 && now->bspace >= 0 );
        QV_INT slots = now->fspace + now->length + now->bspace;
        if ( now->chars == now->inlineChars )
            ASSERT_EQ( QV___STRING_INLINE, slots );
        else
            ASSERT_EQ( qv___ObjDbgAllocationSize( now ), slots * static_cast<QV_INT>( sizeof( QV_CHAR ) ) );
    }

  private:
    size_t below( size_t limit )
    {
        return random_() % limit;
    }

    Text someText()
    {
        Text chars( below( 8 ) == 0 ? below( maxRun_ ) : below( 6 ), U' ' );
        for ( char32_t &ch : chars )
            ch = static_cast<char32_t>( below( 0x110000 ) );
        return chars;
    }

    size_t somePlace( const Text &model )
    {
        size_t length = model.size();
        size_t choice = below( 3 );
        return choice == 0 ? 0 : choice == 1 ? length : below( length + 1 );
    }

    void edit( Pair *dest, Pair *src )
    {
        size_t at = somePlace( dest->model );
        auto idx = static_cast<QV_INT>( at );
        Text from = src->model;
        size_t offset = somePlace( from );
        size_t count = below( from.size() - offset + 1 );
        auto qvOffset = static_cast<QV_INT>( offset );
        auto qvCount = static_cast<QV_INT>( count );
        auto tailCount = static_cast<QV_INT>( from.size() - offset );
        switch ( below( 12 ) )
        {
        case 0:
            qvStringInsert( dest->qvs.edit(), idx, src->qvs );
            dest->model.insert( at, from );
            break;
        case 1:
            qvStringInsertInner( dest->qvs.edit(), idx, src->qvs, qvOffset, qvCount );
            dest->model.insert( at, from.substr( offset, count ) );
            break;
        case 2:
            qvStringInsertLeading( dest->qvs.edit(), idx, src->qvs, qvOffset );
            dest->model.insert( at, from.substr( 0, offset ) );
            break;
        case 3:
            qvStringInsertTrailing( dest->qvs.edit(), idx, src->qvs, tailCount );
            dest->model.insert( at, from.substr( offset ) );
            break;
        case 4:
            qvStringInsertOuter( dest->qvs.edit(), idx, src->qvs, qvOffset, qvCount );
            dest->model.insert( at, from.substr( 0, offset ) + from.substr( offset + count ) );
            break;
        case 5:
        case 6:
            from = someText();
            qvStringInsertChars( dest->qvs.edit(), idx, charsOf( from ), lengthOf( from ) );
            dest->model.insert( at, from );
            break;
        case 7:
            qvStringInsertCharRun( dest->qvs.edit(), idx, 'r', static_cast<QV_INT>( offset % 80 ) );
            dest->model.insert( at, offset % 80, U'r' );
            break;
        case 8:
            editOneChar( dest, at );
            break;
        case 9:
            dest->qvs.take( qv::retained( static_cast<QV_STRING *>( src->qvs ) ) );
            dest->model = from;
            break;
        default:
            shrink( dest );
        }
    }

    void editOneChar( Pair *dest, size_t at )
    {
        auto idx = static_cast<QV_INT>( at );
        switch ( below( 4 ) )
        {
        case 0:
            qvStringSetCharAt( dest->qvs.edit(), idx, 's' );
            dest->model.replace( at, 1, 1, U's' );
            break;
        case 1:
            qvStringSetCharAt( dest->qvs.edit(), -1, 'p' );
            dest->model.insert( 0, 1, U'p' );
            break;
        case 2:
            qvStringAppendChar( dest->qvs.edit(), 'a' );
            dest->model.push_back( U'a' );
            break;
        default:
            qvStringInsertChar( dest->qvs.edit(), idx, 'i' );
            dest->model.insert( at, 1, U'i' );
        }
    }

    void shrink( Pair *dest )
    {
        size_t offset = somePlace( dest->model );
        size_t count = below( dest->model.size() - offset + 1 );
        auto qvOffset = static_cast<QV_INT>( offset );
        auto qvCount = static_cast<QV_INT>( count );
        switch ( below( 4 ) )
        {
        case 0:
            qvStringDelInner( dest->qvs.edit(), qvOffset, qvCount );
            dest->model.erase( offset, count );
            break;
        case 1:
            qvStringDelOuter( dest->qvs.edit(), qvOffset, qvCount );
            dest->model = dest->model.substr( offset, count );
            break;
        case 2:
            qvStringDelLeading( dest->qvs.edit(), qvCount );
            dest->model.erase( 0, count );
            break;
        default:
            qvStringDelTrailing( dest->qvs.edit(), qvCount );
            dest->model.erase( dest->model.size() - count );
        }
    }

    std::mt19937 random_;
    size_t maxRun_;
    Pair pairs_[3];
};

TEST( StringEdit, RandomEditsMatchTheModel )
{
    for ( size_t maxRun : { 10, 100, 700, 50000 } )
    {
        RandomEdits edits( static_cast<unsigned>( maxRun ), maxRun );
        for ( int step = 0; step < ( maxRun > 1000 ? 300 : 4000 ); step++ )
        {
            edits.step();
            if ( HasFatalFailure() )
                FAIL() << "run " << maxRun << ", step " << step;
        }
    }
}

TEST( StringEdit, InsertsIntoItself )
{
    Owned qvs = text( "0123456789" );
    qvStringInsertOuter( qvs.edit(), 5, qvs, 2, 6 );
    qvStringPrependObj( qvs.edit(), qvStringObj( qvs ) );
    EXPECT_EQ( "0123401895678901234018956789", toUtf8( qvs ) );
}

TEST( StringEdit, OnlyTheOneHolderIsEditedInPlace )
{
    Owned qvs = text( "abc" );
    QV_STRING *alone = qvs;
    qvStringSetCharAt( qvs.edit(), 1, 'x' );
    EXPECT_EQ( alone, qvs );
    Owned other = Owned::share( qvs );
    *qvStringMutableBacking( qvs.edit() ) = 'y';
    EXPECT_NE( alone, qvs );
    EXPECT_EQ( "yxc", toUtf8( qvs ) );
    EXPECT_EQ( "axc", toUtf8( other ) );
}

// An edit that changes nothing must not even make a private copy.
TEST( StringEdit, IdleCallsKeepTheRecord )
{
    Owned qvs = text( "abc" );
    Owned other = Owned::share( qvs );
    qvStringInsertChars( qvs.edit(), 1, nullptr, 0 );
    qvStringInsertCharRun( qvs.edit(), 1, 0x110000, 0 );
    qvStringInsertCstr( qvs.edit(), 1, nullptr, 0 );
    qvStringInsertInner( qvs.edit(), 1, qvs, 3, 0 );
    qvStringDelInner( qvs.edit(), 1, 0 );
    qvStringDelOuter( qvs.edit(), 0, 3 );
    qvStringTrim( qvs.edit() );
    EXPECT_EQ( static_cast<QV_STRING *>( other ), qvs );
}

TEST( StringEdit, EmptyTextsShareOneRecord )
{
    const Owned empties[] = { Owned( qvStringCreate() ), Owned( qvStringCreateFromCharsCopy( nullptr, 0 ) ),
                              Owned( qvStringCreateFromCharsUse( nullptr, 0 ) ) };
    for ( const Owned &empty : empties )
        EXPECT_EQ( qv___StringEmpty, empty );
    Owned copy( qvStringCreateFrom( qv___StringEmpty ) );
    EXPECT_NE( qv___StringEmpty, copy );
    EXPECT_EQ( 0, qvStringLength( copy ) );
}

TEST( StringEdit, CreatesFromParts )
{
    Owned qvs = text( "0123456789" );
    EXPECT_EQ( "345", takeUtf8( qvStringCreateFromInner( qvs, 3, 3 ) ) );
    EXPECT_EQ( "012", takeUtf8( qvStringCreateFromLeading( qvs, 3 ) ) );
    EXPECT_EQ( "789", takeUtf8( qvStringCreateFromTrailing( qvs, 3 ) ) );
    EXPECT_EQ( "0126789", takeUtf8( qvStringCreateFromOuter( qvs, 3, 3 ) ) );
    EXPECT_EQ( "", takeUtf8( qvStringCreateFromOuter( qvs, 0, 10 ) ) );
}

TEST( StringEdit, TrimsUnicodeWhiteSpace )
{
    const struct
    {
        const char *source, *leading, *trailing, *both;
    } rows[] = {
        { "  a b  ", "a b  ", "  a b", "a b" },
        { "\u3000\u2029a\t\u00A0", "a\t\u00A0", "\u3000\u2029a", "a" },
        { "\u200Ba\u200B", "\u200Ba\u200B", "\u200Ba\u200B", "\u200Ba\u200B" },
        { " \n\u2003 ", "", "", "" },
        { "", "", "", "" },
    };
    for ( const auto &row : rows )
    {
        Owned leading = text( row.source );
        Owned trailing = Owned::share( leading );
        Owned both = Owned::share( leading );
        EXPECT_EQ( QV_BOOL_FROM( !*row.both ), qvStringIsBlank( both ) ) << row.source;
        qvStringTrimLeading( leading.edit() );
        qvStringTrimTrailing( trailing.edit() );
        qvStringTrim( both.edit() );
        EXPECT_EQ( row.leading, toUtf8( leading ) );
        EXPECT_EQ( row.trailing, toUtf8( trailing ) );
        EXPECT_EQ( row.both, toUtf8( both ) );
    }
}

TEST( StringEdit, DelimitersStandBetween )
{
    Owned qvs( qvStringCreate() );
    Owned part = text( "b" );
    Owned comma = text( ", " );
    qvStringDelimitedAppend( qvs.edit(), part, comma );
    qvStringDelimitedAppendCstr( qvs.edit(), "c", -1, "; ", 1 );
    qvStringDelimitedAppendCharDelimiter( qvs.edit(), qv___StringEmpty, '/' );
    qvStringDelimitedPrependCstrDelimiter( qvs.edit(), part, "--", -1 );
    qvStringDelimitedPrependWcstrSource( qvs.edit(), L"a", -1, comma );
    EXPECT_EQ( "a, b--b;c/", toUtf8( qvs ) );
    const QV_CHAR arrow[] = { 0x2192, ' ' };
    qvStringDelimitedPrependCharsDelimiter( qvs.edit(), qvs, arrow, 2 );
    EXPECT_EQ( "a, b--b;c/\u2192 a, b--b;c/", toUtf8( qvs ) );
    qvStringClear( qvs.edit() );
    qvStringDelimitedPrepend( qvs.edit(), part, comma );
    qvStringDelimitedAppend( qvs.edit(), qvs, qvs );
    EXPECT_EQ( "bbb", toUtf8( qvs ) );
    EXPECT_EQ( "b", toUtf8( part ) );
}

TEST( StringEdit, FormatsStandWhereTheNameSays )
{
    Owned qvs( qvStringCreateFromFormatCstr( "%i-%s", -1, QV_INT( 7 ), qv___StringEmpty ) );
    Owned format = text( "<%i>" );
    qvStringAppendFormat( qvs.edit(), format, QV_INT( 1 ) );
    qvStringPrependFormatWcstr( qvs.edit(), L"[%i]", -1, QV_INT( 2 ) );
    qvStringInsertFormatCstr( qvs.edit(), 3, "{%i}", 4, QV_INT( 3 ) );
    EXPECT_EQ( "[2]{3}7-<1>", toUtf8( qvs ) );
    EXPECT_EQ( "<-5>", takeUtf8( qvStringCreateFromFormat( format, QV_INT( -5 ) ) ) );
}

TEST( StringEdit, FaultsOfTheCallerStop )
{
    Owned qvs = text( "abc" );
    QV_CHAR bad[] = { 'a', 0x110000 };
    EXPECT_DEATH( qvStringLength( nullptr ), "qvs" );
    EXPECT_DEATH( qvStringCharAt( qvs, 3 ), "idx < qvs->length" );
    EXPECT_DEATH( qvStringInsertChars( qvs.edit(), 0, bad, 2 ), "qvCharsAllOk" );
    EXPECT_DEATH( qvStringInsertChar( qvs.edit(), 4, 'a' ), "idx <= " );
    EXPECT_DEATH( qvStringInsertInner( qvs.edit(), 0, qvs, 1, QV_INT_MAX ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvStringAppendTrailing( qvs.edit(), qvs, 4 ), "count <= src->length" );
    EXPECT_DEATH( qvStringAppendCharRun( qvs.edit(), 'a', QV_INT_MAX ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvStringSetCharAt( qvs.edit(), -2, 'a' ), "idx >= -1" );
    EXPECT_DEATH( qvStringDelInner( qvs.edit(), 2, 2 ), "offset . count <= " );
    EXPECT_DEATH( qvStringCreateFromCstr( nullptr, -1 ), "cstr" );
    EXPECT_DEATH( qvStringFindCstr( qvs, 0, "", 0 ), "subLength > 0" );
    EXPECT_DEATH( qvStringScanInt( qvs, 0, -2, 10, nullptr, nullptr ), "maxChars >= -1" );
}

} // namespace
