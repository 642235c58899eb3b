#include "support/test.hh"

namespace
{

using namespace test;

TEST( Generation, PathsOrderAndKinship )
{
    Local<QV_GENERATION> root( qvGenerationCreate() );
    Local<QV_GENERATION> nextRoot( qvGenerationCreate() );
    Local<QV_GENERATION> child( qvGenerationCreateWithParent( root ) );
    Local<QV_GENERATION> sibling( qvGenerationCreateWithParent( root ) );
    Local<QV_GENERATION> grandchild( qvGenerationCreateWithParent( child ) );
    std::string path = takeUtf8( qvGenerationToString( root ) );
    EXPECT_EQ( takeUtf8( qvGenerationToString( nextRoot ) ), std::to_string( std::stoll( path ) + 1 ) );
    EXPECT_EQ( takeUtf8( qvGenerationToString( child ) ), path + ":0" );
    EXPECT_EQ( takeUtf8( qvGenerationToString( sibling ) ), path + ":1" );
    EXPECT_EQ( takeUtf8( qvGenerationToString( grandchild ) ), path + ":0:0" );

    QV_GENERATION *inOrder[] = { root, child, grandchild, sibling, nextRoot };
    for ( int older = 0; older < 5; older++ )
        for ( int younger = 0; younger < 5; younger++ )
        {
            EXPECT_EQ( qvGenerationIsOlder( inOrder[older], inOrder[younger] ), older < younger );
            EXPECT_EQ( qvGenerationIsYounger( inOrder[older], inOrder[younger] ), older > younger );
        }

    EXPECT_FALSE( qvGenerationHasParent( root ) );
    EXPECT_EQ( qvGenerationParent( root ), nullptr );
    Local<QV_GENERATION> parent( qvGenerationParent( grandchild ) );
    EXPECT_EQ( (QV_GENERATION *)parent, (QV_GENERATION *)child );
    EXPECT_TRUE( qvGenerationIsParent( root, child ) );
    EXPECT_FALSE( qvGenerationIsParent( root, grandchild ) );
    EXPECT_FALSE( qvGenerationIsParent( child, root ) );
    EXPECT_TRUE( qvGenerationIsChild( child, root ) );
    EXPECT_TRUE( qvGenerationIsAncestor( root, grandchild ) );
    EXPECT_FALSE( qvGenerationIsAncestor( root, root ) );
    EXPECT_FALSE( qvGenerationIsAncestor( grandchild, root ) );
    EXPECT_TRUE( qvGenerationIsDescendant( grandchild, root ) );
    EXPECT_FALSE( qvGenerationIsDescendant( root, grandchild ) );
    EXPECT_DEATH( qvGenerationCreateWithParent( nullptr ), "parentGeneration" );
}

TEST( Generation, NumbersOfChildrenAreUniqueAcrossThreads )
{
    Local<QV_GENERATION> root( qvGenerationCreate() );
    constexpr int each = 200;
    std::vector<QV_GENERATION *> children( 4 * each );
    runOnThreads( 4, [&]( size_t worker ) {
        for ( size_t idx = 0; idx < each; idx++ )
            children[worker * each + idx] = qvGenerationCreateWithParent( root );
    } );
    std::vector<bool> seen( children.size(), false );
    for ( QV_GENERATION *child : children )
    {
        std::string path = takeUtf8( qvGenerationToString( child ) );
        size_t number = std::stoul( path.substr( path.find( ':' ) + 1 ) );
        ASSERT_LT( number, seen.size() );
        EXPECT_FALSE( seen[number] );
        seen[number] = true;
        qvGenerationRelease( child );
    }
}

TEST( Generation, Registry )
{
    Local<QV_GENERATION> root( qvGenerationCreate() );
    Local<QV_GENERATION> child( qvGenerationCreateWithParent( root ) );
    Local<QV_GENERATION> grandchild( qvGenerationCreateWithParent( child ) );
    Local<QV_GENERATION_MUTEX> mutex( qvGenerationMutexCreate() );
    EXPECT_TRUE( qvGenerationMutexTryRegister( mutex, child ) );
    EXPECT_FALSE( qvGenerationMutexTryRegister( mutex, child ) );
    EXPECT_FALSE( qvGenerationMutexTryRegister( mutex, grandchild ) );
    EXPECT_TRUE( qvGenerationMutexTryRegister( mutex, root ) ) << "an ancestor may join later";
    qvGenerationMutexUnregister( mutex, child );
    qvGenerationMutexUnregister( mutex, child );
    EXPECT_FALSE( qvGenerationMutexTryRegister( mutex, grandchild ) );
    qvGenerationMutexUnregister( mutex, root );
    EXPECT_TRUE( qvGenerationMutexTryRegister( mutex, grandchild ) );
}

TEST( Counter, WaitsForZero )
{
    Local<QV_COUNTER> ctr( qvCounterCreate() );
    qvCounterWaitZero( ctr );
    EXPECT_TRUE( qvCounterWaitZeroTimed( ctr, 0 ) );
    qvCounterIncrement( ctr );
    qvCounterIncrement( ctr );
    EXPECT_EQ( qvCounterValue( ctr ), 2 );
    EXPECT_FALSE( qvCounterWaitZeroTimed( ctr, 1 ) );
    std::atomic<bool> lastComes = false;
    std::atomic<bool> passedTooEarly = false;
    std::thread waiter( [&] {
        qvCounterWaitZero( ctr );
        passedTooEarly = !lastComes;
    } );
    qvCounterDecrement( ctr );
    std::this_thread::sleep_for( std::chrono::milliseconds( 20 ) );
    lastComes = true;
    qvCounterDecrement( ctr );
    waiter.join();
    EXPECT_FALSE( passedTooEarly );
    EXPECT_TRUE( qvCounterWaitZeroTimed( ctr, -1 ) );
    EXPECT_DEATH( qvCounterDecrement( ctr ), "value > 0" );
}

} // namespace
