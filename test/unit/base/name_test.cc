#include "support/test.hh"

namespace
{

using namespace test;

using Names = std::vector<std::string>;

// By a rule: names that are good, those that only a private name may be, and bad ones.
void expectNames( QV_BOOL ( *isOk )( QV_STRING *, QV_BOOL ), const Names &good, const Names &privateOnes,
                  const Names &bad )
{
    for ( const std::string &name : good )
        EXPECT_TRUE( isOk( text( name ), QV_FALSE ) && isOk( text( name ), QV_TRUE ) ) << name;
    for ( const std::string &name : privateOnes )
        EXPECT_TRUE( !isOk( text( name ), QV_FALSE ) && isOk( text( name ), QV_TRUE ) ) << name;
    for ( const std::string &name : bad )
        EXPECT_FALSE( isOk( text( name ), QV_FALSE ) || isOk( text( name ), QV_TRUE ) ) << name;
}

TEST( Name, UpperAndCamelCase )
{
    expectNames( qvNameUpperCaseOk, { "A", "A1", "A_B", "A_1", "AB_C_D2", "QV_STORE_HINT" },
                 { "A___B", "A___B_C", "A_B___C", "A___B___C" },
                 { "", "1A", "_A", "A_", "A__B", "A____B", "A___", "___A", "A_B_C___D", "A___B___C___D", "a",
                   "Aa", "A B", "\u00C4", "\uFF21" } );
    expectNames( qvNameCamelCaseOk, { "a", "aB", "a1", "aB2Cd" }, { "a___B", "aB___C", "qv___String" },
                 { "", "A", "1a", "a_b", "a_B", "a___b", "a___1", "a____B", "a__B", "a___", "aBC___D",
                   "a___B_c", "a___BC___D", "a b", "\u00E4" } );
}

TEST( Name, EitherRuleAndPrivacy )
{
    EXPECT_TRUE( qvNameOk( text( "A_B" ), QV_FALSE ) );
    EXPECT_TRUE( qvNameOk( text( "aB" ), QV_FALSE ) );
    EXPECT_FALSE( qvNameOk( text( "Ab" ), QV_TRUE ) );
    EXPECT_FALSE( qvNamePrivate( text( "A_B" ) ) );
    EXPECT_TRUE( qvNamePrivate( text( "A___B" ) ) );
    EXPECT_TRUE( qvNamePrivate( text( "a___B" ) ) );
    EXPECT_DEATH( qvNamePrivate( text( "Ab" ) ), "qvNameOk" );
}

} // namespace
