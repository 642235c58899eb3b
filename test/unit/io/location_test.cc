// Locations: text form, numbers, and the map from positions in a text to lines and columns.

#include "support/test.hh"
#include "support/folder.hh"
#include "support/nlf.hh"

#include <qv/io/qv_location.hh>
#include <qv/io/qv_parser_location_map.hh>

using namespace test;

namespace
{

using Owned = Local<QV_LOCATION>;
using OwnedMap = Local<QV_PARSER_LOCATION_MAP>;

std::string shown( QV_LOCATION *loc )
{
    return takeUtf8( qvLocationToString( loc ) );
}

// -1 leaves a number out, an empty text the description or path.
Owned locationOf( const char *description, const char *path, QV_INT line, QV_INT column )
{
    Owned loc( qvLocationCreate() );
    if ( *description )
        qvLocationSetDescription( loc.edit(), text( description ) );
    if ( *path )
        qvLocationSetPath( loc.edit(), pathOf( path ) );
    if ( line != -1 )
        qvLocationSetLine( loc.edit(), line );
    if ( column != -1 )
        qvLocationSetColumn( loc.edit(), column );
    return loc;
}

OwnedMap mapOf( const std::u32string &chars, QV_INT nlfFlags, QV_LOCATION *start = nullptr )
{
    return OwnedMap( qvParserLocationMapCreate( start, nlfFlags, charsOf( chars ), lengthOf( chars ) ) );
}

std::string at( QV_PARSER_LOCATION_MAP *map, QV_INT idx )
{
    return shown( Owned( qvParserLocationMapLookupIndex( map, idx ) ) );
}

} // namespace

TEST( Location, TextForm )
{
    const struct
    {
        const char *description, *path;
        QV_INT line, column;
        const char *expected;
    } cases[] = {
        { "", "", -1, -1, "" },
        { "", "", 7, -1, "(7)" },
        { "", "", -1, 4, "" },
        { "", "name", 3, 4, "name(3,4)" },
        { "desc", "", -1, -1, "desc" },
        { "desc", "path", -1, -1, "desc:path" },
        { "desc", "/a/", 1, -1, "desc:/a/(1)" },
        { "desc", "", 2, 3, "desc(2,3)" },
    };
    for ( const auto &c : cases )
        EXPECT_EQ( c.expected, shown( locationOf( c.description, c.path, c.line, c.column ) ) );
    // A path without a text doesn't show.
    Owned loc( qvLocationCreate() );
    Local<QV_PATH> bad( qvPathCreate() );
    qvPathAppendComponentFilenameCstr( bad.edit(), "", 0 );
    qvLocationSetPath( loc.edit(), bad );
    qvLocationSetLine( loc.edit(), 5 );
    EXPECT_EQ( "(5)", shown( loc ) );
}

TEST( Location, EditsKeepSharedValues )
{
    Owned loc = locationOf( "d", "p", 1, 2 );
    auto witness = Owned::share( loc );
    qvLocationDelDescription( loc.edit() );
    EXPECT_EQ( "p(1,2)", shown( loc ) );
    EXPECT_EQ( nullptr, qvLocationDescription( loc ) );
    qvLocationDelPath( loc.edit() );
    EXPECT_FALSE( qvLocationHasPath( loc ) );
    qvLocationDelColumn( loc.edit() );
    EXPECT_EQ( "(1)", shown( loc ) );
    qvLocationDelLine( loc.edit() );
    EXPECT_FALSE( qvLocationHasLine( loc ) );
    EXPECT_EQ( "d:p(1,2)", shown( witness ) );
    EXPECT_FALSE( qvLocationEquals( witness, Owned( qvLocationCreateFrom( witness ) ) ) );
    EXPECT_DEATH( qvLocationSetLine( loc.edit(), 0 ), "line > 0" );
    EXPECT_DEATH( qvLocationSetColumn( loc.edit(), -1 ), "column > 0" );
}

TEST( Location, Increments )
{
    Owned loc( qvLocationCreate() );
    EXPECT_FALSE( qvLocationIncrementLine( loc.edit(), 1 ) );
    EXPECT_FALSE( qvLocationIncrementColumn( loc.edit(), 0 ) );
    EXPECT_EQ( -1, qvLocationLine( loc ) );
    qvLocationSetLine( loc.edit(), 5 );
    auto witness = Owned::share( loc );
    EXPECT_TRUE( qvLocationIncrementLine( loc.edit(), QV_INT_MAX - 5 ) );
    EXPECT_EQ( QV_INT_MAX, qvLocationLine( loc ) );
    EXPECT_TRUE( qvLocationIncrementLine( loc.edit(), 0 ) );
    EXPECT_FALSE( qvLocationIncrementLine( loc.edit(), 1 ) );
    EXPECT_FALSE( qvLocationHasLine( loc ) );
    EXPECT_EQ( 5, qvLocationLine( witness ) );
    qvLocationSetColumn( loc.edit(), 2 );
    EXPECT_FALSE( qvLocationIncrementColumn( loc.edit(), QV_INT_MAX ) );
    EXPECT_FALSE( qvLocationHasColumn( loc ) );
    EXPECT_DEATH( qvLocationIncrementLine( witness.edit(), -1 ), "increment >= 0" );
}

TEST( Location, CreatedWithOffset )
{
    EXPECT_EQ( "(1)", shown( Owned( qvLocationCreateWithLineOffsetAndColumn( nullptr, 0, -1 ) ) ) );
    Owned base = locationOf( "d", "p", 10, 5 );
    EXPECT_EQ( "d:p(13,2)", shown( Owned( qvLocationCreateWithLineOffsetAndColumn( base, 3, 2 ) ) ) );
    qvLocationDelLine( base.edit() );
    EXPECT_EQ( "d:p(4)", shown( Owned( qvLocationCreateWithLineOffsetAndColumn( base, 3, -1 ) ) ) );
    EXPECT_DEATH( qvLocationCreateWithLineOffsetAndColumn( base, QV_INT_MAX, -1 ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvLocationCreateWithLineOffsetAndColumn( base, 0, 0 ), "optionalColumn" );
}

TEST( ParserLocationMap, SmallTexts )
{
    std::u32string chars = U"a\nb";
    OwnedMap map = mapOf( chars, QV_NLF_FLAG_LF );
    EXPECT_EQ( "(1,1)", at( map, 0 ) );
    EXPECT_EQ( "(1,2)", at( map, 1 ) );
    EXPECT_EQ( "(2,1)", at( map, 2 ) );
    EXPECT_EQ( "(2,2)", at( map, 3 ) );
    EXPECT_EQ( "(2,1)", shown( Owned( qvParserLocationMapLookup( map, charsOf( chars ) + 2 ) ) ) );
    EXPECT_DEATH( qvParserLocationMapLookupIndex( map, 4 ), "idx <= map->length" );
    EXPECT_DEATH( qvParserLocationMapLookup( map, charsOf( chars ) - 1 ), "idx >= 0" );

    OwnedMap empty( qvParserLocationMapCreate( nullptr, QV_NLF_FLAG_LF, nullptr, 0 ) );
    EXPECT_EQ( "(1,1)", at( empty, 0 ) );
    EXPECT_EQ( "(1,1)", shown( Owned( qvParserLocationMapLookup( empty, nullptr ) ) ) );

    std::u32string ended = U"x\n";
    EXPECT_EQ( "(2,1)", at( mapOf( ended, QV_NLF_FLAG_LF ), 2 ) );
}

TEST( ParserLocationMap, EmbeddedTextContinuesItsLine )
{
    std::u32string chars = U"ab\ncd";
    Owned start = locationOf( "", "file", 7, 20 );
    OwnedMap map = mapOf( chars, QV_NLF_FLAG_LF, start );
    EXPECT_EQ( "file(7,20)", at( map, 0 ) );
    EXPECT_EQ( "file(7,22)", at( map, 2 ) );
    EXPECT_EQ( "file(8,1)", at( map, 3 ) );
    EXPECT_EQ( "file(8,3)", at( map, 5 ) );
    qvLocationDelColumn( start.edit() );
    qvLocationDelLine( start.edit() );
    EXPECT_EQ( "file(1,2)", at( mapOf( chars, QV_NLF_FLAG_LF, start ), 1 ) );
    qvLocationSetColumn( start.edit(), QV_INT_MAX );
    EXPECT_EQ( "file(1)", at( mapOf( chars, QV_NLF_FLAG_LF, start ), 1 ) );
}

TEST( ParserLocationMap, RandomTextsAgreeWithACountByCharacters )
{
    std::mt19937 random( 6301 );
    const char32_t alphabet[] = { U'a', U'\n', U'\r', U'\r', U'\n', 0x2028, 0x85, U'b' };
    const QV_INT allFlags[] = { 0,
                                QV_NLF_FLAG_LF,
                                QV_NLF_FLAG_CR,
                                QV_NLF_FLAG_CRLF,
                                QV_NLF_FLAG_LF | QV_NLF_FLAG_CR,
                                QV_NLF_FLAG_LF | QV_NLF_FLAG_CR | QV_NLF_FLAG_CRLF,
                                QV_NLF_FLAG_CRLF | QV_NLF_FLAG_LS | QV_NLF_FLAG_NEL };
    for ( int round = 0; round < 3000; round++ )
    {
        QV_INT flags = allFlags[random() % std::size( allFlags )];
        std::u32string chars;
        for ( size_t count = random() % 40; count > 0; count-- )
            chars += alphabet[random() % std::size( alphabet )];
        OwnedMap map = mapOf( chars, flags );
        QV_INT line = 1, column = 1;
        size_t nlfEnd = 0;
        for ( size_t idx = 0; idx <= chars.size(); idx++ )
        {
            Owned loc( qvParserLocationMapLookupIndex( map, static_cast<QV_INT>( idx ) ) );
            ASSERT_EQ( line, qvLocationLine( loc ) ) << "index " << idx << ", flags " << flags;
            ASSERT_EQ( column, qvLocationColumn( loc ) ) << "index " << idx << ", flags " << flags;
            column++;
            if ( nlfEnd <= idx )
                nlfEnd = idx + nlfAt( std::u32string_view( chars ).substr( idx ), flags ).length;
            if ( nlfEnd == idx + 1 )
                line++, column = 1;
        }
    }
}
