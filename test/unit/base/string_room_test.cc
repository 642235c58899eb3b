// Where the text of a string lies: the rows of making room and compacting, and real records against the plans.

#include "support/test.hh"

using namespace test;

namespace
{

// Front 2, back 3 or from 20 code points on 7, inline store of 5 slots.
constexpr qv::StringLimits tiny = { 2, 3, 7, 20, 5 };

const struct
{
    const char *name;
    qv::StringShape shape;
    QV_INT atIndex, count;
    qv::StringRoomPlan plan;
} roomRows[] = {
    { "fresh record, all of it", { 0, 0, 5, true }, 0, 5, { 0, 0, 0 } },
    { "fresh record, too much", { 0, 0, 5, true }, 0, 6, { 2, 3, 11 } },
    { "front: spare in front", { 4, 3, 0, false }, 0, 3, { 0, 0, 0 } },
    { "front: spare in front, some left", { 4, 3, 1, false }, 0, 1, { 2, 1, 0 } },
    { "front: spare on both sides", { 4, 1, 3, false }, 0, 3, { 0, 1, 0 } },
    { "front: spare on both sides, exactly", { 4, 1, 3, false }, 0, 4, { 0, 0, 0 } },
    { "front: grows", { 4, 1, 3, false }, 0, 5, { 2, 3, 14 } },
    { "front: grows to a long text", { 18, 0, 1, false }, 0, 2, { 2, 7, 29 } },
    { "front: one less is no long text", { 17, 0, 1, false }, 0, 2, { 2, 3, 24 } },
    { "end: spare behind", { 4, 1, 3, false }, 4, 3, { 1, 0, 0 } },
    { "end: inline slides down", { 2, 2, 1, true }, 2, 3, { 0, 0, 0 } },
    { "end: inline grows and keeps its front spare", { 2, 2, 1, true }, 2, 4, { 2, 3, 11 } },
    { "end: an array doesn't slide", { 4, 40, 0, false }, 4, 1, { 40, 3, 48 } },
    { "end: grows to a long text", { 19, 0, 0, false }, 19, 1, { 0, 7, 27 } },
    { "between: spare behind", { 4, 1, 3, false }, 2, 3, { 1, 0, 0 } },
    { "between: spare on both sides", { 4, 2, 1, false }, 1, 2, { 1, 0, 0 } },
    { "between: all the spare, inline", { 2, 1, 2, true }, 1, 3, { 0, 0, 0 } },
    { "between: grows", { 4, 2, 1, false }, 3, 4, { 2, 3, 13 } },
};

TEST( StringRoom, PlanFollowsTheRows )
{
    for ( const auto &row : roomRows )
    {
        qv::StringRoomPlan plan = qv::planStringRoom( row.shape, row.atIndex, row.count, tiny );
        EXPECT_EQ( row.plan.fspace, plan.fspace ) << row.name;
        EXPECT_EQ( row.plan.bspace, plan.bspace ) << row.name;
        EXPECT_EQ( row.plan.slots, plan.slots ) << row.name;
    }
}

TEST( StringRoom, CompactionHasADeadZone )
{
    const std::pair<qv::StringShape, qv::StringCompaction> rows[] = {
        { { 10, 4, 6, false }, qv::StringCompaction::none },
        { { 10, 5, 0, false }, qv::StringCompaction::toArray },
        { { 10, 0, 7, false }, qv::StringCompaction::toArray },
        { { 20, 4, 14, false }, qv::StringCompaction::none },
        { { 20, 4, 15, false }, qv::StringCompaction::toArray },
        { { 5, 5, 0, false }, qv::StringCompaction::toInline },
        { { 6, 5, 0, false }, qv::StringCompaction::toArray },
        { { 0, 5, 0, false }, qv::StringCompaction::empty },
        { { 1, 5, 0, true }, qv::StringCompaction::none },
    };
    for ( auto [shape, action] : rows )
        EXPECT_EQ( action, qv::planStringCompaction( shape, tiny ) )
            << shape.length << " " << shape.fspace << " " << shape.bspace;
}

bool isInline( QV_STRING *qvs )
{
    return qvs->chars == qvs->inlineChars;
}

void expectShape( QV_STRING *qvs, QV_INT length, QV_INT fspace, QV_INT bspace, bool inlineStore )
{
    EXPECT_EQ( length, qvs->length );
    EXPECT_EQ( fspace, qvs->fspace );
    EXPECT_EQ( bspace, qvs->bspace );
    EXPECT_EQ( inlineStore, isInline( qvs ) );
    QV_INT allocated =
        inlineStore ? 0 : ( length + fspace + bspace ) * static_cast<QV_INT>( sizeof( QV_CHAR ) );
    EXPECT_EQ( allocated, qv___ObjDbgAllocationSize( qvs ) );
}

Local<QV_STRING> run( QV_INT length )
{
    return text( std::u32string( static_cast<size_t>( length ), U'x' ) );
}

TEST( StringRoom, AppendsLeaveTheInlineStoreAtTheSixtyFifth )
{
    Local<QV_STRING> qvs( qvStringCreate() );
    qvStringAppendCharRun( qvs.edit(), 'x', 64 );
    expectShape( qvs, 64, 0, 0, true );
    qvStringAppendChar( qvs.edit(), 'y' );
    expectShape( qvs, 65, 0, 32, false );
    qvStringDelTrailing( qvs.edit(), 1 );
    qvStringAppendCharRun( qvs.edit(), 'y', 33 );
    expectShape( qvs, 97, 0, 0, false );
    qvStringPrependChar( qvs.edit(), 'z' );
    expectShape( qvs, 98, 32, 32, false );
}

TEST( StringRoom, PrependsSlideInline )
{
    Local<QV_STRING> qvs = run( 10 );
    qvStringPrependCstr( qvs.edit(), "ab", -1 );
    expectShape( qvs, 12, 0, 52, true );
    EXPECT_EQ( "abxxxxxxxxxx", toUtf8( qvs ) );
}

TEST( StringRoom, NewStringsHaveTheirSpare )
{
    expectShape( run( 64 ), 64, 0, 0, true );
    expectShape( run( 65 ), 65, 32, 32, false );
    expectShape( run( 65535 ), 65535, 32, 32, false );
    expectShape( run( 65536 ), 65536, 32, 131072, false );
    for ( size_t bytes : { 1, 64, 65, 256, 257, 65535, 65536 } )
    {
        Local<QV_STRING> decoded = text( std::string( bytes, 'x' ) );
        auto length = static_cast<QV_INT>( bytes );
        if ( length <= 64 )
            expectShape( decoded, length, 0, 64 - length, true );
        else
            expectShape( decoded, length, 32, length < 65536 ? 32 : 131072, false );
    }
}

TEST( StringRoom, DecodedTextThatShrinksGivesTheRestBack )
{
    Local<QV_STRING> long1000 = text( times( 1000, "\u6F22" ) );
    expectShape( long1000, 1000, 32, 32, false );
    EXPECT_EQ( std::u32string( 1000, 0x6F22 ), toU32( long1000 ) );
    // 65,538 bytes would be a long text, their 21,846 code points aren't.
    expectShape( text( times( 21846, "\u6F22" ) ), 21846, 32, 32, false );
    // Sequences above U+10FFFF vanish, so that many bytes can become few code points.
    Local<QV_STRING> left = text( times( 100, "\xF7\xBF\xBF\xBF" ) + "ab" );
    expectShape( left, 2, 0, 62, true );
    EXPECT_EQ( "ab", toUtf8( left ) );
}

TEST( StringRoom, TakenOverArraysHaveNoSpare )
{
    auto *chars = static_cast<QV_CHAR *>( qvMemAllocN( 3, sizeof( QV_CHAR ) ) );
    chars[0] = 'a';
    chars[1] = 0x10FFFF;
    chars[2] = 0xD800;
    Local<QV_STRING> qvs( qvStringCreateFromCharsUse( chars, 3 ) );
    EXPECT_EQ( chars, qvStringBacking( qvs ) );
    expectShape( qvs, 3, 0, 0, false );
    qvStringInsertChar( qvs.edit(), 1, 'b' );
    expectShape( qvs, 4, 32, 32, false );
    EXPECT_EQ( std::u32string( { U'a', U'b', 0x10FFFF, 0xD800 } ), toU32( qvs ) );
}

TEST( StringRoom, DeletesCompactBeyondTheDeadZone )
{
    Local<QV_STRING> qvs = run( 300 );
    qvStringDelLeading( qvs.edit(), 32 );
    expectShape( qvs, 268, 64, 32, false );
    qvStringDelLeading( qvs.edit(), 1 );
    expectShape( qvs, 267, 32, 32, false );
    qvStringDelTrailing( qvs.edit(), 32 );
    expectShape( qvs, 235, 32, 64, false );
    qvStringDelInner( qvs.edit(), 100, 1 );
    expectShape( qvs, 234, 32, 32, false );
    qvStringDelOuter( qvs.edit(), 33, 64 );
    expectShape( qvs, 64, 0, 0, true );
}

TEST( StringRoom, CleaningEverythingAwayKeepsTheRecord )
{
    Local<QV_STRING> qvs = text( std::u32string( 200, 0xDC00 ) );
    QV_STRING *before = qvs;
    qvStringSanitize( qvs.edit() );
    EXPECT_EQ( before, qvs );
    expectShape( qvs, 0, 0, 64, true );
}

} // namespace
