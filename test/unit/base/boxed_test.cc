#include "support/test.hh"

#include <qv/base/qv_boxed_pointer.hh>

namespace
{

using namespace test;

TEST( Boxed, SharedObjects )
{
    Local<QV_BOXED_BOOL> yes( qvBoxedBoolCreate( QV_TRUE ) );
    Local<QV_BOXED_BOOL> alsoYes( qvBoxedBoolCreate( 17 ) );
    Local<QV_BOXED_BOOL> no( qvBoxedBoolCreate( QV_FALSE ) );
    EXPECT_EQ( (QV_BOXED_BOOL *)yes, (QV_BOXED_BOOL *)alsoYes );
    EXPECT_EQ( qvBoxedBoolValue( yes ), QV_TRUE );
    EXPECT_EQ( qvBoxedBoolValue( no ), QV_FALSE );
    EXPECT_LT( qvBoxedBoolCompare( no, yes ), 0 );
    EXPECT_EQ( takeUtf8( qvBoxedBoolToString( yes ) ), "true" );
    EXPECT_EQ( takeUtf8( qvBoxedBoolToString( no ) ), "false" );
    EXPECT_DEATH( qvBoxedBoolValue( nullptr ), "bbl" );

    Local<QV_BOXED_NULL> nothing( qvBoxedNullCreate() );
    Local<QV_BOXED_NULL> alsoNothing( qvBoxedNullCreate() );
    EXPECT_TRUE( qvBoxedNullEquals( nothing, alsoNothing ) );
    EXPECT_EQ( takeUtf8( qvBoxedNullToString( nothing ) ), "null" );
}

TEST( Boxed, Ints )
{
    const QV_INT values[] = { QV_INT_MIN, -1, 0, 1, QV_INT_MAX };
    for ( QV_INT thisValue : values )
        for ( QV_INT thatValue : values )
        {
            Local<QV_BOXED_INT> thisBox( qvBoxedIntCreate( thisValue ) );
            Local<QV_BOXED_INT> thatBox( qvBoxedIntCreate( thatValue ) );
            EXPECT_NE( (QV_BOXED_INT *)thisBox, (QV_BOXED_INT *)thatBox );
            EXPECT_EQ( qvBoxedIntCompare( thisBox, thatBox ), thisValue < thatValue    ? -1
                                                              : thisValue == thatValue ? 0
                                                                                       : 1 );
        }
    Local<QV_BOXED_INT> least( qvBoxedIntCreate( QV_INT_MIN ) );
    EXPECT_EQ( takeUtf8( qvBoxedIntToString( least ) ), "-9223372036854775808" );
    EXPECT_DEATH( qvBoxedIntValue( nullptr ), "bi" );
}

TEST( Boxed, Reals )
{
    Local<QV_BOXED_REAL> one( qvBoxedRealCreate( 1.0 ) );
    Local<QV_BOXED_REAL> nearOne( qvBoxedRealCreate( 1.0 + 1e-16 ) );
    Local<QV_BOXED_REAL> two( qvBoxedRealCreate( 2.0 ) );
    EXPECT_TRUE( qvBoxedRealEquals( one, nearOne ) );
    EXPECT_EQ( qvBoxedRealCompare( one, two ), -1 );
    EXPECT_EQ( qvBoxedRealCompare( two, one ), 1 );
    EXPECT_EQ( qvBoxedRealValue( two ), 2.0 );
    EXPECT_EQ( takeUtf8( qvBoxedRealToString( two ) ), "2.000000" );
    Local<QV_BOXED_REAL> endless( qvBoxedRealCreate( -std::numeric_limits<double>::infinity() ) );
    EXPECT_EQ( takeUtf8( qvBoxedRealToString( endless ) ), "INF" );
}

TEST( Boxed, UniquesAreNeverEqual )
{
    Local<QV_BOXED_UNIQUE> first( qvBoxedUniqueCreate() );
    Local<QV_BOXED_UNIQUE> second( qvBoxedUniqueCreate() );
    EXPECT_FALSE( qvBoxedUniqueEquals( first, second ) );
    EXPECT_TRUE( qvBoxedUniqueEquals( first, first ) );
    EXPECT_EQ( qvBoxedUniqueCompare( first, second ), -qvBoxedUniqueCompare( second, first ) );
}

void countDestruction( void *value )
{
    ++*static_cast<int *>( value );
}

TEST( Boxed, PointersDestroyTheirValueOnce )
{
    int destroyed[2] = { 0, 0 };
    QV___BOXED_POINTER *first = qv___BoxedPointerCreate( &destroyed[0], countDestruction );
    QV___BOXED_POINTER *second = qv___BoxedPointerCreate( &destroyed[1], nullptr );
    EXPECT_EQ( qv___BoxedPointerValue( first ), &destroyed[0] );
    EXPECT_EQ( qv___BoxedPointerCompare( first, second ), -1 );
    EXPECT_EQ( qv___BoxedPointerCompare( second, first ), 1 );
    qv___BoxedPointerRetain( first );
    qv___BoxedPointerRelease( first );
    EXPECT_EQ( destroyed[0], 0 );
    qv___BoxedPointerRelease( first );
    qv___BoxedPointerRelease( second );
    EXPECT_EQ( destroyed[0], 1 );
    EXPECT_EQ( destroyed[1], 0 );
}

} // namespace
