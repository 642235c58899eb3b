#include "support/test.hh"

#include <qv/base/qv_flagset.hh>

namespace
{

using namespace test;

const qv::EnumName names[] = { { 4, "C" }, { 1, "A" }, { 2, "B_LONG" }, { QV_INT_MIN, "TOP" } };

TEST( Flagset, Generate )
{
    Local<QV_FLAGSET> fs( qv::flagsetFromTable( names, 4 ) );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( fs, 0 ) ), "" );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( fs, 2 ) ), "B_LONG" );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( fs, QV_INT_MIN | 7 ) ), "A|B_LONG|C|TOP" );
    EXPECT_DEATH( takeUtf8( qvFlagsetGenerate( fs, 8 ) ), "name" );
}

TEST( Flagset, Parse )
{
    Local<QV_FLAGSET> fs( qv::flagsetFromTable( names, 4 ) );
    struct
    {
        const char *src;
        QV_INT expected;
    } const cases[] = {
        { "", 0 },
        { "|", 0 },
        { "A", 1 },
        { "C|A|B_LONG", 7 },
        { "  TOP |\tA\n", QV_INT_MIN | 1 },
        { "A|A", 1 },
        { "a", 0 },
        { "A|UNKNOWN|C", 5 },
        { "7", 7 },
        { "0xFF", 7 },
        { " 0xF | A", 7 },
        { "8", 0 },
        { "8x", 8 },
        { "12 C", 12 },
        { "x8", 0 },
        { "-1", QV_INT_MIN | 7 },
        { "A B", 0 },
    };
    for ( const auto &row : cases )
        EXPECT_EQ( qvFlagsetParse( fs, text( std::string_view( row.src ) ) ), row.expected ) << row.src;
}

TEST( Flagset, GeneratedTextsParseBack )
{
    qv::EnumName all[QV_INT_BITS];
    std::string texts[QV_INT_BITS];
    for ( int bit = 0; bit < QV_INT_BITS; bit++ )
    {
        texts[bit] = "BIT" + std::to_string( bit );
        all[bit] = { static_cast<QV_INT>( uint64_t( 1 ) << bit ), texts[bit].c_str() };
    }
    Local<QV_FLAGSET> fs( qv::flagsetFromTable( all, QV_INT_BITS ) );
    for ( uint64_t word = 1; word != 0; word = word * 3 + ( word >> 60 ) )
    {
        QV_INT flags = static_cast<QV_INT>( word );
        Local<QV_STRING> generated( qvFlagsetGenerate( fs, flags ) );
        ASSERT_EQ( qvFlagsetParse( fs, generated ), flags );
        if ( word > UINT64_MAX / 3 )
            break;
    }
    Local<QV_STRING> everything( qvFlagsetGenerate( fs, -1 ) );
    EXPECT_EQ( qvFlagsetParse( fs, everything ), -1 );
}

TEST( Flagset, EditsKeepCopiesApart )
{
    Local<QV_FLAGSET> before( qvFlagsetCreate() );
    qvFlagsetSetFlagCstr( before.edit(), "A", -1, 1 );
    Local<QV_FLAGSET> after = Local<QV_FLAGSET>::share( before );
    qvFlagsetSetFlagWcstr( after.edit(), L"SECOND", -1, 1 );
    qvFlagsetSetFlagCstr( after.edit(), "B", -1, 2 );
    EXPECT_NE( (QV_FLAGSET *)before, (QV_FLAGSET *)after );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( before, 1 ) ), "A" );
    EXPECT_FALSE( qvFlagsetHasFlagCstr( before, "B", -1 ) );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( after, 3 ) ), "SECOND|B" ) << "the latest name of a bit";
    EXPECT_EQ( qvFlagsetFlagCstr( after, "A", -1 ), 1 ) << "both names stay readable";
    EXPECT_EQ( qvFlagsetFlagWcstr( after, L"MISSING", -1 ), 0 );

    qvFlagsetDelFlagCstr( after.edit(), "MISSING", -1 );
    qvFlagsetDelFlagWcstr( after.edit(), L"A", -1 );
    EXPECT_EQ( qvFlagsetFlagCstr( after, "SECOND", -1 ), 1 );
    EXPECT_EQ( qvFlagsetParse( after, text( "0x3" ) ), 2 ) << "the bit has no name now";
    Local<QV_VECTOR> all( qvFlagsetFlagsVector( after ) );
    EXPECT_EQ( qvVectorLength( all ), 2 );
    EXPECT_EQ( takeUtf8( qvFlagsetGenerate( before, 1 ) ), "A" );
}

TEST( FlagsetDeath, FaultsOfTheCaller )
{
    Local<QV_FLAGSET> fs( qvFlagsetCreate() );
    EXPECT_DEATH( qvFlagsetSetFlagCstr( fs.edit(), "bad", -1, 1 ), "qvNameUpperCaseOk" );
    EXPECT_DEATH( qvFlagsetSetFlagCstr( fs.edit(), "A", -1, 0 ), "isSingleBit" );
    EXPECT_DEATH( qvFlagsetSetFlagCstr( fs.edit(), "A", -1, 3 ), "isSingleBit" );
    EXPECT_DEATH( qvFlagsetDelFlagCstr( fs.edit(), "", -1 ), "qvNameUpperCaseOk" );
    const qv::EnumName twice[] = { { 1, "A" }, { 2, "A" } };
    EXPECT_DEATH( qv::flagsetFromTable( twice, 2 ), "HasFlag" );
}

} // namespace
