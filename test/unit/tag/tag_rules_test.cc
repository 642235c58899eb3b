// Matches and rewrites: their tables, edits and stores.

#include "support/test.hh"

namespace
{

using namespace test;

Local<QV_TAG_SET> tags( std::string_view list )
{
    return Local<QV_TAG_SET>( qvTagSetDecode( text( list ) ) );
}

Local<QV_TAG_MATCH> match( QV_TAG_MATCH_TYPE type, std::string_view list )
{
    Local<QV_TAG_MATCH> result( qvTagMatchCreate() );
    qvTagMatchSetType( result.edit(), type );
    qvTagMatchSetTagSet( result.edit(), tags( list ) );
    return result;
}

TEST( TagMatch, CountsItsTags )
{
    // What holds for or, xor, and, not in turn.
    const char *const rows[][3] = {
        { "", "", "1111" },         { "", "a b", "1111" },    { "a b", "", "0001" },
        { "a b", "a", "1100" },     { "a b", "b", "1100" },   { "a b", "a b", "1010" },
        { "a b", "a b c", "1010" }, { "a b", "c d", "0001" }, { "a", "a c", "1110" },
        { "a", "c", "0001" },
    };
    for ( auto &[own, given, holds] : rows )
        for ( QV_TAG_MATCH_TYPE type = 0; QV_TAG_MATCH_TYPE_OK( type ); type++ )
            EXPECT_EQ( holds[type] == '1', qvTagMatchTryMatch( match( type, own ), tags( given ) ) )
                << own << " on " << given << ", type " << type;
}

TEST( TagMatch, RestoresFromStores )
{
    for ( QV_TAG_MATCH_TYPE type = 0; QV_TAG_MATCH_TYPE_OK( type ); type++ )
    {
        Local<QV_TAG_MATCH> rule = match( type, "a b" );
        Local<QV_STORE> store( qvTagMatchStore( rule ) );
        Local<QV_STRING> list( qvStoreValueCstr( store, "tagSet", -1 ) );
        EXPECT_EQ( "a b", toUtf8( list ) );
        Local<QV_TAG_MATCH> again( qvTagMatchRestore( store ) );
        EXPECT_TRUE( qvTagMatchEquals( rule, again ) );
        EXPECT_EQ( type > 0 ? 1 : 0, qvTagMatchCompare( again, match( 0, "a b" ) ) );

        qvStoreSetValueCstr( store.edit(), "type", -1, text( "QV_TAG_MATCH_TYPE_NONE" ) );
        qvStoreSetValueCstr( store.edit(), "tagSet", -1, text( "b Bad c" ) );
        again.take( qvTagMatchRestore( store ) );
        EXPECT_TRUE( qvTagMatchEquals( match( QV_TAG_MATCH_TYPE_OR, "b c" ), again ) );
    }
    Local<QV_STORE> none( qvStoreCreate() );
    Local<QV_TAG_MATCH> rule( qvTagMatchRestore( none ) );
    EXPECT_TRUE( qvTagMatchEquals( match( QV_TAG_MATCH_TYPE_OR, "" ), rule ) );
}

TEST( TagMatch, EditsItsOwnCopy )
{
    Local<QV_TAG_MATCH> rule = match( QV_TAG_MATCH_TYPE_AND, "a" );
    auto held = Local<QV_TAG_MATCH>::share( rule );
    qvTagMatchSetType( rule.edit(), QV_TAG_MATCH_TYPE_NOT );
    qvTagMatchSetTagSet( rule.edit(), tags( "b" ) );
    EXPECT_TRUE( qvTagMatchEquals( match( QV_TAG_MATCH_TYPE_AND, "a" ), held ) );
    EXPECT_TRUE( qvTagMatchEquals( match( QV_TAG_MATCH_TYPE_NOT, "b" ), rule ) );
    EXPECT_DEATH( qvTagMatchSetType( rule.edit(), 4 ), "QV_TAG_MATCH_TYPE_OK" );
}

Local<QV_TAG_REWRITE_OPERATION> operation( QV_TAG_REWRITE_OPERATION_TYPE type, std::string_view tag )
{
    return Local<QV_TAG_REWRITE_OPERATION>( qvTagRewriteOperationCreate( type, text( tag ) ) );
}

// A rewrite from rules such as "+a", "-b" and "=c".
Local<QV_TAG_REWRITE> rewrite( bool clear, std::string_view rules )
{
    Local<QV_TAG_REWRITE> result( qvTagRewriteCreate() );
    qvTagRewriteSetClear( result.edit(), clear );
    for ( size_t at = 0; at + 1 < rules.size(); at += 2 )
    {
        QV_TAG_REWRITE_OPERATION_TYPE type = rules[at] == '+'   ? QV_TAG_REWRITE_OPERATION_TYPE_SET
                                             : rules[at] == '-' ? QV_TAG_REWRITE_OPERATION_TYPE_DELETE
                                                                : QV_TAG_REWRITE_OPERATION_TYPE_PASSTHROUGH;
        qvTagRewriteSetOperation( result.edit(), operation( type, rules.substr( at + 1, 1 ) ) );
    }
    return result;
}

TEST( TagRewrite, MakesItsOutput )
{
    static const struct
    {
        bool clear;
        const char *rules, *input, *output;
    } rows[] = {
        { false, "", "a b", "a b" },     { true, "", "a b", "" },       { true, "=a", "a b", "a" },
        { true, "=a", "b", "" },         { false, "=a", "b", "b" },     { false, "=a", "a", "a" },
        { false, "+c-a", "a b", "b c" }, { false, "-c", "a", "a" },     { true, "+c-a=b", "a b", "b c" },
        { false, "+a-a", "b", "b" },     { false, "-a+a", "b", "a b" },
    };
    for ( const auto &row : rows )
    {
        Local<QV_TAG_SET> input = tags( row.input );
        Local<QV_TAG_SET> output( qvTagRewriteApply( rewrite( row.clear, row.rules ), input ) );
        EXPECT_EQ( row.output, takeUtf8( qvTagSetEncode( output ) ) ) << row.rules << " on " << row.input;
        EXPECT_EQ( row.input, takeUtf8( qvTagSetEncode( input ) ) );
    }
}

TEST( TagRewrite, KeepsOneOperationATag )
{
    Local<QV_TAG_REWRITE> rule = rewrite( false, "+b=a" );
    auto held = Local<QV_TAG_REWRITE>::share( rule );
    qvTagRewriteSetOperation( rule.edit(), operation( QV_TAG_REWRITE_OPERATION_TYPE_DELETE, "b" ) );
    ASSERT_EQ( 2, qvTagRewriteOperationsLength( rule ) );
    Local<QV_TAG_REWRITE_OPERATION> op( qvTagRewriteOperationAt( rule, 1 ) );
    EXPECT_EQ( QV_TAG_REWRITE_OPERATION_TYPE_DELETE, qvTagRewriteOperationType( op ) );
    EXPECT_TRUE( qvTagRewriteEquals( rewrite( false, "=a+b" ), held ) );
    EXPECT_GT( qvTagRewriteCompare( rule, held ), 0 );
    EXPECT_LT( qvTagRewriteCompare( rule, rewrite( true, "" ) ), 0 );

    Local<QV_VECTOR> vec( qvTagRewriteOperationsVector( rule ) );
    op.take( qvTagRewriteOperation( held, text( "b" ) ) );
    qvVectorAppendObj( vec.edit(), qvTagRewriteOperationObj( op ) );
    qvTagRewriteSetOperationsVector( rule.edit(), vec );
    EXPECT_TRUE( qvTagRewriteEquals( rule, held ) );

    qvTagRewriteDelOperation( rule.edit(), text( "c" ) );
    qvTagRewriteDelOperation( rule.edit(), text( "a" ) );
    EXPECT_FALSE( qvTagRewriteHasOperation( rule, text( "a" ) ) );
    EXPECT_EQ( nullptr, qvTagRewriteOperation( rule, text( "a" ) ) );
    qvTagRewriteDelOperationAt( rule.edit(), 0 );
    EXPECT_EQ( 0, qvTagRewriteOperationsLength( rule ) );
    EXPECT_EQ( 2, qvTagRewriteOperationsLength( held ) );
    qvTagRewriteClearOperations( held.edit() );
    EXPECT_TRUE( qvTagRewriteEquals( rule, held ) );
}

TEST( TagRewrite, RestoresWhatFits )
{
    Local<QV_TAG_REWRITE> rule = rewrite( true, "+a-b=c" );
    Local<QV_STORE> store( qvTagRewriteStore( rule ) );
    Local<QV_TAG_REWRITE> again( qvTagRewriteRestore( store ) );
    EXPECT_TRUE( qvTagRewriteEquals( rule, again ) );

    Local<QV_STORE> operations( qvStoreStoreCstr( store, "operations", -1 ) );
    for ( const char *bad : { "type", "tag" } )
    {
        Local<QV_STORE> op(
            qvTagRewriteOperationStore( operation( QV_TAG_REWRITE_OPERATION_TYPE_SET, "d" ) ) );
        qvStoreSetValueCstr( op.edit(), bad, -1, text( "QV_TAG_REWRITE_OPERATION_TYPE_KEEP" ) );
        qvStoreAppendStore( operations.edit(), op );
        qvStoreDelCstr( op.edit(), bad, -1 );
        qvStoreAppendStore( operations.edit(), op );
    }
    qvStorePrependValueBool( operations.edit(), QV_TRUE );
    qvStoreSetStoreCstr( store.edit(), "operations", -1, operations );
    qvStoreSetValueCstr( store.edit(), "clear", -1, text( "maybe" ) );
    again.take( qvTagRewriteRestore( store ) );
    EXPECT_TRUE( qvTagRewriteEquals( rewrite( false, "+a-b=c" ), again ) );

    Local<QV_STORE> empty( qvTagRewriteStore( rewrite( false, "" ) ) );
    EXPECT_TRUE( qvStoreHasStoreCstr( empty, "operations", -1 ) );
}

TEST( TagRewriteOperation, EditsItsOwnCopy )
{
    Local<QV_TAG_REWRITE_OPERATION> op = operation( QV_TAG_REWRITE_OPERATION_TYPE_SET, "b" );
    auto held = Local<QV_TAG_REWRITE_OPERATION>::share( op );
    qvTagRewriteOperationSetType( op.edit(), QV_TAG_REWRITE_OPERATION_TYPE_DELETE );
    qvTagRewriteOperationSetTag( op.edit(), text( "a" ) );
    EXPECT_EQ( "b", takeUtf8( qvTagRewriteOperationTag( held ) ) );
    EXPECT_GT( qvTagRewriteOperationCompare( op, held ), 0 );
    EXPECT_DEATH( qvTagRewriteOperationSetTag( op.edit(), text( "B" ) ), "qvTagOk" );
    EXPECT_DEATH( qvTagRewriteOperationSetType( op.edit(), 3 ), "QV_TAG_REWRITE_OPERATION_TYPE_OK" );
}

} // namespace
