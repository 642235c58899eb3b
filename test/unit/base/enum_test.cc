#include "support/test.hh"

#include <qv/base/qv_enum.hh>

namespace
{

using namespace test;

std::string nameOf( QV_ENUM *en, QV_INT value )
{
    QV_STRING *name = qvEnumGenerate( en, value );
    return name ? takeUtf8( name ) : "-";
}

TEST( Enum, TablesAndLookups )
{
    const qv::EnumName names[] = { { 5, "FIVE" }, { 0, "ZERO" }, { QV_INT_MAX, "MOST" }, { 5, "CINQ" } };
    Local<QV_ENUM> en( qv::enumFromTable( names, 4 ) );
    Local<QV_VECTOR> all( qvEnumEnumerantsVector( en ) );
    EXPECT_EQ( takeUtf8( qvObjToString( qvVectorObj( all ) ) ).empty(), false );
    EXPECT_EQ( qvVectorLength( all ), 4 );
    EXPECT_EQ( toUtf8( qvStringFrom( qv::vectorAt( all, 0 ) ) ), "CINQ" );
    EXPECT_EQ( toUtf8( qvStringFrom( qv::vectorAt( all, 3 ) ) ), "ZERO" );
    EXPECT_EQ( qvEnumEnumerant( en, text( "MOST" ) ), QV_INT_MAX );
    EXPECT_EQ( qvEnumEnumerantCstr( en, "FIVER", 4 ), 5 );
    EXPECT_EQ( qvEnumEnumerantWcstr( en, L"ZERO", -1 ), 0 );
    EXPECT_EQ( qvEnumEnumerantCstr( en, "bad name", -1 ), -1 );
    EXPECT_TRUE( qvEnumHasEnumerantWcstr( en, L"CINQ", -1 ) );
    EXPECT_FALSE( qvEnumHasEnumerantCstr( en, "", -1 ) );
    EXPECT_EQ( nameOf( en, 5 ), "CINQ" ) << "the latest name of a value";
    EXPECT_EQ( nameOf( en, 1 ), "-" );
    EXPECT_EQ( nameOf( en, -1 ), "-" );
    qvEnumDelEnumerantCstr( en.edit(), "CINQ", -1 );
    qvEnumDelEnumerantWcstr( en.edit(), L"MISSING", -1 );
    EXPECT_EQ( nameOf( en, 5 ), "-" ) << "the former name stays readable only";
    EXPECT_EQ( qvEnumEnumerantCstr( en, "FIVE", -1 ), 5 );
    EXPECT_EQ( qvEnumParse( en, text( "5" ) ), -1 );
    qvEnumSetEnumerantWcstr( en.edit(), L"FIVE", -1, 2 );
    EXPECT_EQ( nameOf( en, 2 ), "FIVE" );
    qvEnumSetEnumerantCstr( en.edit(), "FIVE", -1, 3 );
    EXPECT_EQ( nameOf( en, 2 ), "-" );
}

TEST( Enum, Parse )
{
    const qv::EnumName names[] = { { 5, "FIVE" }, { 31, "OTHER" } };
    Local<QV_ENUM> en( qv::enumFromTable( names, 2 ) );
    struct
    {
        const char *src;
        QV_INT expected;
    } const cases[] = {
        { "FIVE", 5 },    { " \tFIVE\u3000", 5 }, { "five", -1 }, { "5", 5 },
        { " 0x1F ", 31 }, { "16:1f", 31 },        { "+5", 5 },    { "-5", -1 },
        { "6", -1 },      { "5x", -1 },           { "", -1 },     { " ", -1 },
        { "FIVE 5", -1 }, { "5 FIVE", -1 },
    };
    for ( const auto &row : cases )
        EXPECT_EQ( qvEnumParse( en, text( std::string_view( row.src ) ) ), row.expected ) << row.src;
}

// Random edits of two handles that now and then share one record, against maps.
TEST( Enum, RandomEditsAndCopies )
{
    struct Model
    {
        std::map<std::string, QV_INT> values;
        std::map<QV_INT, std::string> names;
        void del( const std::string &name )
        {
            auto found = values.find( name );
            if ( found == values.end() )
                return;
            names.erase( found->second );
            values.erase( found );
        }
    };
    std::mt19937 random( 6 );
    Local<QV_ENUM> handles[2];
    Model models[2];
    handles[0].take( qvEnumCreate() );
    handles[1].take( qvEnumCreate() );
    for ( int round = 0; round < 2000; round++ )
    {
        size_t which = random() % 2;
        std::string name( 1, static_cast<char>( 'A' + random() % 12 ) );
        QV_INT value = random() % 8;
        switch ( random() % 8 )
        {
        case 0:
            handles[which].take( qv::retained( (QV_ENUM *)handles[1 - which] ) );
            models[which] = models[1 - which];
            break;
        case 1:
        case 2:
        case 3:
            qvEnumDelEnumerant( handles[which].edit(), text( name ) );
            models[which].del( name );
            break;
        default:
            qvEnumSetEnumerant( handles[which].edit(), text( name ), value );
            models[which].del( name );
            models[which].values[name] = value;
            models[which].names[value] = name;
        }
        for ( size_t idx = 0; idx < 2; idx++ )
        {
            Local<QV_VECTOR> all( qvEnumEnumerantsVector( handles[idx] ) );
            ASSERT_EQ( qvVectorLength( all ), lengthOf( models[idx].values ) );
            for ( const auto &entry : models[idx].values )
                ASSERT_EQ( qvEnumEnumerant( handles[idx], text( entry.first ) ), entry.second );
            for ( QV_INT probe = 0; probe < 8; probe++ )
            {
                auto found = models[idx].names.find( probe );
                ASSERT_EQ( nameOf( handles[idx], probe ),
                           found == models[idx].names.end() ? "-" : found->second );
            }
        }
    }
}

TEST( EnumDeath, FaultsOfTheCaller )
{
    Local<QV_ENUM> en( qvEnumCreate() );
    EXPECT_DEATH( qvEnumSetEnumerantCstr( en.edit(), "bad", -1, 1 ), "qvNameUpperCaseOk" );
    EXPECT_DEATH( qvEnumSetEnumerantCstr( en.edit(), "GOOD", -1, -1 ), "value >= 0" );
    EXPECT_DEATH( qvEnumDelEnumerantCstr( en.edit(), "A__B", -1 ), "qvNameUpperCaseOk" );
    const qv::EnumName twice[] = { { 1, "A" }, { 2, "A" } };
    EXPECT_DEATH( qv::enumFromTable( twice, 2 ), "HasEnumerant" );
}

} // namespace
