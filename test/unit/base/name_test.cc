#include <gtest/gtest.h>

#include <qv/base/qv_name.h>

#include "support/text.hh"

namespace
{

using test::text;

struct NameCase
{
    const char *name;
    bool ok;
    bool okPrivate;
};

TEST( Name, UpperCase )
{
    const NameCase cases[] = {
        { "", 0, 0 },
        { "A", 1, 1 },
        { "A1", 1, 1 },
        { "A_B", 1, 1 },
        { "A_1", 1, 1 },
        { "AB_C_D2", 1, 1 },
        { "1A", 0, 0 },
        { "_A", 0, 0 },
        { "A_", 0, 0 },
        { "A__B", 0, 0 },
        { "A___B", 0, 1 },
        { "A____B", 0, 0 },
        { "A___", 0, 0 },
        { "___A", 0, 0 },
        { "A___B_C", 0, 1 },
        { "A_B___C", 0, 1 },
        { "A_B_C___D", 0, 0 },
        { "A___B___C", 0, 1 },
        { "A___B___C___D", 0, 0 },
        { "a", 0, 0 },
        { "Aa", 0, 0 },
        { "A B", 0, 0 },
        { "\u00C4", 0, 0 },
        { "\uFF21", 0, 0 },
        { "QV_STORE_HINT", 1, 1 },
    };
    for ( const NameCase &row : cases )
    {
        EXPECT_EQ( qvNameUpperCaseOk( text( std::string_view( row.name ) ), QV_FALSE ), row.ok ) << row.name;
        EXPECT_EQ( qvNameUpperCaseOk( text( std::string_view( row.name ) ), QV_TRUE ), row.okPrivate )
            << row.name;
    }
}

TEST( Name, CamelCase )
{
    const NameCase cases[] = {
        { "", 0, 0 },        { "a", 1, 1 },           { "aB", 1, 1 },         { "a1", 1, 1 },
        { "aB2Cd", 1, 1 },   { "A", 0, 0 },           { "1a", 0, 0 },         { "a_b", 0, 0 },
        { "a_B", 0, 0 },     { "a___B", 0, 1 },       { "a___b", 0, 0 },      { "a___1", 0, 0 },
        { "a____B", 0, 0 },  { "a__B", 0, 0 },        { "a___", 0, 0 },       { "aB___C", 0, 1 },
        { "aBC___D", 0, 0 }, { "a___B_c", 0, 0 },     { "a___BC___D", 0, 0 }, { "a b", 0, 0 },
        { "\u00E4", 0, 0 },  { "qv___String", 0, 1 },
    };
    for ( const NameCase &row : cases )
    {
        EXPECT_EQ( qvNameCamelCaseOk( text( std::string_view( row.name ) ), QV_FALSE ), row.ok ) << row.name;
        EXPECT_EQ( qvNameCamelCaseOk( text( std::string_view( row.name ) ), QV_TRUE ), row.okPrivate )
            << row.name;
    }
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
