// Sets of tags: random edits against a model, the text form, definitions and their stores.

#include "support/test.hh"

namespace
{

using namespace test;

Local<QV_TAG_SET> tags( std::string_view list )
{
    return Local<QV_TAG_SET>( qvTagSetDecode( text( list ) ) );
}

std::string listOf( QV_TAG_SET *ts )
{
    return takeUtf8( qvTagSetEncode( ts ) );
}

std::string joined( const std::set<std::string> &model )
{
    std::string list;
    for ( const std::string &tag : model )
        list += list.empty() ? tag : " " + tag;
    return list;
}

TEST( TagSet, DecodesWhatAreTags )
{
    static const std::pair<const char *, const char *> rows[] = {
        { "", "" },
        { " ", "" },
        { "b a", "a b" },
        { "  b  a ", "a b" },
        { "a a a", "a" },
        { "Red green 1x a_b x1", "green x1" },
        { "a\tb c", "c" },
        { "aB ab a", "a aB ab" },
        { "a___Bc b___c", "a___Bc" },
        { "\xC3\xA4 x", "x" },
    };
    for ( auto [source, list] : rows )
    {
        EXPECT_EQ( list, listOf( tags( source ) ) ) << source;
        EXPECT_EQ( list, takeUtf8( qvTagSetToString( tags( source ) ) ) ) << source;
    }
}

TEST( TagSet, FollowsAModel )
{
    std::mt19937 random( 1 );
    Local<QV_TAG_SET> ts( qvTagSetCreate() );
    std::set<std::string> model;
    for ( int step = 0; step < 3000; step++ )
    {
        auto held = Local<QV_TAG_SET>::share( random() % 2 ? static_cast<QV_TAG_SET *>( ts ) : nullptr );
        std::string before = joined( model );
        std::string tag = "t" + std::to_string( random() % 20 );
        std::set<std::string> others;
        for ( unsigned count = random() % 8; count > 0; count-- )
            others.insert( "t" + std::to_string( random() % 20 ) );
        Local<QV_TAG_SET> src = tags( joined( others ) );
        std::set<std::string> common;
        for ( const std::string &other : others )
        {
            if ( model.count( other ) )
                common.insert( other );
        }
        EXPECT_EQ( common.empty(), qvTagSetDisjoint( ts, src ) );
        EXPECT_EQ( model.count( tag ) != 0, qvTagSetHasTag( ts, text( tag ) ) );
        switch ( random() % 8 )
        {
        case 0:
        case 1:
            qvTagSetSetTag( ts.edit(), text( tag ) );
            model.insert( tag );
            break;
        case 2:
            qvTagSetDelTag( ts.edit(), text( tag ) );
            model.erase( tag );
            break;
        case 3:
            if ( model.empty() )
                break;
            {
                auto at = std::next( model.begin(), random() % model.size() );
                QV_INT idx = std::distance( model.begin(), at );
                EXPECT_EQ( *at, takeUtf8( qvTagSetTagAt( ts, idx ) ) );
                qvTagSetDelTagAt( ts.edit(), idx );
                model.erase( at );
            }
            break;
        case 4:
            qvTagSetInclude( ts.edit(), src );
            model.insert( others.begin(), others.end() );
            break;
        case 5:
            qvTagSetExclude( ts.edit(), src );
            for ( const std::string &other : others )
                model.erase( other );
            break;
        case 6:
            qvTagSetIntersect( ts.edit(), src );
            model = common;
            break;
        default:
            Local<QV_VECTOR> vec( qvTagSetTagsVector( src ) );
            qvVectorShuffle( vec.edit() );
            qvVectorAppend( vec.edit(), vec );
            qvTagSetSetTagsVector( ts.edit(), vec );
            model = others;
        }
        ASSERT_EQ( joined( model ), listOf( ts ) ) << "step " << step;
        ASSERT_EQ( lengthOf( model ), qvTagSetTagsLength( ts ) );
        if ( held )
        {
            ASSERT_EQ( before, listOf( held ) ) << "step " << step;
        }
    }
    qvTagSetClearTags( ts.edit() );
    EXPECT_EQ( "", listOf( ts ) );
}

TEST( TagSet, IsItsOwnSourceAndComparesByContent )
{
    Local<QV_TAG_SET> ts = tags( "a b" );
    qvTagSetInclude( ts.edit(), ts );
    qvTagSetIntersect( ts.edit(), ts );
    EXPECT_EQ( "a b", listOf( ts ) );
    qvTagSetExclude( ts.edit(), ts );
    EXPECT_EQ( "", listOf( ts ) );
    EXPECT_TRUE( qvTagSetEquals( tags( "b a" ), tags( "a b" ) ) );
    EXPECT_LT( qvTagSetCompare( tags( "a" ), tags( "a b" ) ), 0 );
    EXPECT_GT( qvTagSetCompare( tags( "b" ), tags( "a z" ) ), 0 );
}

TEST( TagSetDeathTest, RefusesWhatIsNoTag )
{
    Local<QV_TAG_SET> ts( qvTagSetCreate() );
    EXPECT_DEATH( qvTagSetSetTag( ts.edit(), text( "Upper" ) ), "qvTagOk\\( tag \\)" );
    EXPECT_DEATH( qvTagSetDelTag( ts.edit(), text( "" ) ), "qvTagOk\\( tag \\)" );
    EXPECT_DEATH( qvTagSetDelTagAt( ts.edit(), 0 ), "" );
    Local<QV_VECTOR> vec( qvVectorCreate() );
    qvVectorAppendInt( vec.edit(), 1 );
    EXPECT_DEATH( qvTagSetSetTagsVector( ts.edit(), vec ), "qvVectorContainsOnly" );
    qvVectorClear( vec.edit() );
    qvVectorAppendStringCstr( vec.edit(), "no tag", -1 );
    EXPECT_DEATH( qvTagSetSetTagsVector( ts.edit(), vec ), "areTags" );
}

Local<QV_TAG_DEFINITION> definition( std::string_view tag, const char *comment = nullptr,
                                     QV_TAG_COLOR color = -1 )
{
    Local<QV_TAG_DEFINITION> def( qvTagDefinitionCreate( text( tag ) ) );
    if ( comment )
        qvTagDefinitionSetComment( def.edit(), text( comment ) );
    if ( color != -1 )
        qvTagDefinitionSetColor( def.edit(), color );
    return def;
}

TEST( TagDefinition, OrdersByTagCommentColour )
{
    Local<QV_TAG_DEFINITION> ascending[] = {
        definition( "a" ),
        definition( "a", nullptr, QV_TAG_COLOR_RED ),
        definition( "a", "" ),
        definition( "a", "x", QV_TAG_COLOR_RED ),
        definition( "a", "x", QV_TAG_COLOR_BLACK ),
        definition( "b" ),
    };
    expectAscending( ascending, qvTagDefinitionCompare );
}

TEST( TagDefinition, EditsItsOwnCopy )
{
    Local<QV_TAG_DEFINITION> def = definition( "a", "x", QV_TAG_COLOR_GREY );
    auto held = Local<QV_TAG_DEFINITION>::share( def );
    qvTagDefinitionDelComment( def.edit() );
    qvTagDefinitionDelColor( def.edit() );
    qvTagDefinitionSetTag( def.edit(), text( "b" ) );
    EXPECT_FALSE( qvTagDefinitionHasComment( def ) );
    EXPECT_FALSE( qvTagDefinitionHasColor( def ) );
    EXPECT_EQ( nullptr, qvTagDefinitionComment( def ) );
    EXPECT_EQ( -1, qvTagDefinitionColor( def ) );
    EXPECT_EQ( "b", takeUtf8( qvTagDefinitionTag( def ) ) );
    EXPECT_EQ( "a", takeUtf8( qvTagDefinitionTag( held ) ) );
    EXPECT_EQ( "x", takeUtf8( qvTagDefinitionComment( held ) ) );
    EXPECT_EQ( QV_TAG_COLOR_GREY, qvTagDefinitionColor( held ) );
}

TEST( TagDefinition, RestoresFromStores )
{
    static const struct
    {
        const char *tag, *comment, *color;
        bool restores;
        QV_TAG_COLOR result;
    } rows[] = {
        { "a", nullptr, nullptr, true, -1 },
        { "a", "", "QV_TAG_COLOR_RED", true, QV_TAG_COLOR_RED },
        { "a", " x ", " 9 ", true, QV_TAG_COLOR_BLACK },
        { "a", "x", "10", true, -1 },
        { "a", "x", "red", true, -1 },
        { "A", "x", "QV_TAG_COLOR_RED", false, -1 },
        { nullptr, "x", "QV_TAG_COLOR_RED", false, -1 },
    };
    for ( const auto &row : rows )
    {
        Local<QV_STORE> store( qvStoreCreate() );
        if ( row.tag )
            qvStoreSetValueCstr( store.edit(), "tag", -1, text( row.tag ) );
        if ( row.comment )
            qvStoreSetValueCstr( store.edit(), "comment", -1, text( row.comment ) );
        if ( row.color )
            qvStoreSetValueCstr( store.edit(), "color", -1, text( row.color ) );
        Local<QV_TAG_DEFINITION> def( qvTagDefinitionTryRestore( store ) );
        ASSERT_EQ( row.restores, def != nullptr );
        if ( !def )
            continue;
        EXPECT_EQ( row.result, qvTagDefinitionColor( def ) ) << row.color;
        EXPECT_EQ( row.comment != nullptr, qvTagDefinitionHasComment( def ) );
        if ( row.comment )
        {
            EXPECT_EQ( row.comment, takeUtf8( qvTagDefinitionComment( def ) ) );
        }
        Local<QV_STORE> again( qvTagDefinitionStore( def ) );
        Local<QV_TAG_DEFINITION> second( qvTagDefinitionTryRestore( again ) );
        EXPECT_TRUE( qvTagDefinitionEquals( def, second ) );
    }
}

TEST( TagDefinitionSet, KeepsOneDefinitionATag )
{
    Local<QV_TAG_DEFINITION_SET> ds( qvTagDefinitionSetCreate() );
    qvTagDefinitionSetSetDefinition( ds.edit(), definition( "b", "first" ) );
    qvTagDefinitionSetSetDefinition( ds.edit(), definition( "a" ) );
    Local<QV_TAG_DEFINITION_SET> copy( qvTagDefinitionSetCreateFrom( ds ) );
    qvTagDefinitionSetSetDefinition( ds.edit(), definition( "b", "second" ) );
    ASSERT_EQ( 2, qvTagDefinitionSetDefinitionsLength( ds ) );
    Local<QV_TAG_DEFINITION> second( qvTagDefinitionSetDefinitionAt( ds, 1 ) );
    EXPECT_EQ( "second", takeUtf8( qvTagDefinitionComment( second ) ) );
    Local<QV_TAG_DEFINITION> first( qvTagDefinitionSetDefinition( copy, text( "b" ) ) );
    EXPECT_EQ( "first", takeUtf8( qvTagDefinitionComment( first ) ) );
    EXPECT_LT( qvTagDefinitionSetCompare( copy, ds ), 0 );

    Local<QV_VECTOR> vec( qvTagDefinitionSetDefinitionsVector( ds ) );
    qvVectorPrependObj( vec.edit(), qvTagDefinitionObj( first ) );
    qvTagDefinitionSetSetDefinitionsVector( copy.edit(), vec );
    EXPECT_TRUE( qvTagDefinitionSetEquals( copy, ds ) );

    qvTagDefinitionSetDelDefinition( ds.edit(), text( "c" ) );
    qvTagDefinitionSetDelDefinition( ds.edit(), text( "b" ) );
    EXPECT_FALSE( qvTagDefinitionSetHasDefinition( ds, text( "b" ) ) );
    EXPECT_EQ( nullptr, qvTagDefinitionSetDefinition( ds, text( "b" ) ) );
    qvTagDefinitionSetDelDefinitionAt( ds.edit(), 0 );
    EXPECT_EQ( 0, qvTagDefinitionSetDefinitionsLength( ds ) );
    qvTagDefinitionSetClearDefinitions( copy.edit() );
    EXPECT_TRUE( qvTagDefinitionSetEquals( copy, ds ) );
}

TEST( TagDefinitionSet, RestoresWhatFits )
{
    Local<QV_TAG_DEFINITION_SET> ds( qvTagDefinitionSetCreate() );
    Local<QV_STORE> empty( qvTagDefinitionSetStore( ds ) );
    Local<QV_STORE> none( qvStoreStoreCstr( empty, "definitions", -1 ) );
    ASSERT_TRUE( none );
    EXPECT_EQ( 0, qvStoreLength( none ) );
    EXPECT_NE( 0, qvStoreHints( none ) & QV_STORE_HINT_ARRAY );

    qvTagDefinitionSetSetDefinition( ds.edit(), definition( "a", "x", QV_TAG_COLOR_BLUE ) );
    qvTagDefinitionSetSetDefinition( ds.edit(), definition( "b" ) );
    Local<QV_STORE> store( qvTagDefinitionSetStore( ds ) );
    Local<QV_TAG_DEFINITION_SET> again( qvTagDefinitionSetRestore( store ) );
    EXPECT_TRUE( qvTagDefinitionSetEquals( ds, again ) );

    // A value, a store that is no definition, and a second definition of one tag.
    Local<QV_STORE> definitions( qvStoreStoreCstr( store, "definitions", -1 ) );
    qvStorePrependValueInt( definitions.edit(), 1 );
    qvStoreAppendStore( definitions.edit(), empty );
    Local<QV_STORE> later( qvTagDefinitionStore( definition( "a", "later" ) ) );
    qvStoreAppendStore( definitions.edit(), later );
    qvStoreSetStoreCstr( store.edit(), "definitions", -1, definitions );
    again.take( qvTagDefinitionSetRestore( store ) );
    EXPECT_EQ( 2, qvTagDefinitionSetDefinitionsLength( again ) );
    Local<QV_TAG_DEFINITION> def( qvTagDefinitionSetDefinition( again, text( "a" ) ) );
    EXPECT_EQ( "later", takeUtf8( qvTagDefinitionComment( def ) ) );

    qvStoreClear( store.edit() );
    again.take( qvTagDefinitionSetRestore( store ) );
    EXPECT_EQ( 0, qvTagDefinitionSetDefinitionsLength( again ) );
}

} // namespace
