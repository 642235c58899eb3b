// JSON values: the grammar of numbers and their readings, edits with copy-on-write, depth.

#include "support/test.hh"
#include "json/support.hh"
#include "support/small_stack.hh"

using namespace test;

namespace
{

constexpr struct
{
    const char *text;
    QV_INT length; // of the number at the start
} numberCases[] = {
    { "", 0 },         { "0", 1 },        { "-0", 2 },    { "10", 2 },
    { "1.5e+3", 6 },   { "1E2", 3 },      { "01", 1 },    { "+1", 0 },
    { "1.", 1 },       { ".5", 0 },       { "1e", 1 },    { "-", 0 },
    { "--1", 0 },      { "-01", 2 },      { "1.e3", 1 },  { "1.0e", 3 },
    { "1e+", 1 },      { "1e-", 1 },      { "1e-7", 4 },  { "0e0", 3 },
    { "0.0", 3 },      { "0.00e-00", 8 }, { "1 ", 1 },    { "1,5", 1 },
    { "9a", 1 },       { "1.5.5", 3 },    { "1e5e5", 3 }, { "1e5.5", 3 },
    { "0x10", 1 },     { "1F5", 1 },      { "-1.25", 5 }, { "1_000", 1 },
    { "Infinity", 0 }, { "NaN", 0 },      { "1.e", 1 },   { "12345678901234567890", 20 },
};

TEST( JsonValue, NumberGrammar )
{
    for ( const auto &row : numberCases )
    {
        Local<QV_STRING> string = text( row.text );
        EXPECT_EQ( qv___JsonSkipNumber( qvStringBacking( string ), qvStringLength( string ) ), row.length )
            << row.text;
        EXPECT_EQ( qvJsonValidateNumber( string ), row.length > 0 && row.length == qvStringLength( string ) )
            << row.text;
    }
    EXPECT_FALSE( qvJsonValidateNumber( text( U"1\u0661" ) ) );
}

TEST( JsonValue, ReadingsOfNumbers )
{
    const struct
    {
        const char *text;
        bool isInt;
        QV_INT integer;
        bool isReal;
        double real;
    } cases[] = {
        { "17", true, 17, true, 17 },
        { "-0", true, 0, true, 0 },
        { "1.5", false, 0, true, 1.5 },
        { "-2.25", false, 0, true, -2.25 },
        { "1e3", false, 0, false, 0 },
        { "1.5E-3", false, 0, false, 0 },
        { "999999999999999", true, 999999999999999, true, 999999999999999.0 },
        { "-1000000000000000", true, -1000000000000000, true, -1e15 },
        { "9223372036854775807", true, QV_INT_MAX, true, 9223372036854775807.0 },
        { "-9223372036854775808", true, QV_INT_MIN, true, -9223372036854775808.0 },
        { "9223372036854775808", false, 0, true, 9223372036854775808.0 },
        { "123456789012345678901234567890.5", false, 0, true, 123456789012345678901234567890.5 },
    };
    for ( const auto &row : cases )
        for ( bool decoded : { false, true } )
        {
            Json val = decoded ? json( row.text ) : Json( qvJsonValueCreateNumber( text( row.text ) ) );
            ASSERT_EQ( qvJsonValueType( val ), QV_JSON_TYPE_NUMBER );
            EXPECT_EQ( takeUtf8( qvJsonValueNumber( val ) ), row.text );
            ASSERT_EQ( qvJsonValueIsInt( val ), row.isInt ) << row.text;
            ASSERT_EQ( qvJsonValueIsReal( val ), row.isReal ) << row.text;
            if ( row.isInt )
            {
                EXPECT_EQ( qvJsonValueInt( val ), row.integer );
            }
            if ( row.isReal )
            {
                EXPECT_DOUBLE_EQ( qvJsonValueReal( val ), row.real );
            }
            Json copy( qvJsonValueCreateFrom( val ) );
            EXPECT_EQ( packed( copy ), row.text );
        }
}

TEST( JsonValue, FewDigitsReadLikeTheScans )
{
    RandomJson random( 1 );
    for ( int round = 0; round < 20000; round++ )
    {
        std::string number = random.number();
        Local<QV_STRING> string = text( number );
        Json val( qvJsonValueCreateNumber( string ) );
        QV_INT integer = 0;
        double real = 0;
        QV_INT consumed = 0;
        bool isInt =
            qvStringScanInt( string, 0, -1, 10, &integer, &consumed ) && consumed == qvStringLength( string );
        ASSERT_EQ( qvJsonValueIsInt( val ), isInt ) << number;
        if ( isInt )
        {
            ASSERT_EQ( qvJsonValueInt( val ), integer );
        }
        bool isReal =
            qvStringScanReal( string, 0, -1, 10, &real, &consumed ) && consumed == qvStringLength( string );
        ASSERT_EQ( qvJsonValueIsReal( val ), isReal ) << number;
        if ( isReal )
        {
            ASSERT_EQ( qvJsonValueReal( val ), real ) << number;
        }
        ASSERT_EQ( takeUtf8( qvJsonValueNumber( val ) ), number );
    }
}

TEST( JsonValue, NumbersFromIntegersAndReals )
{
    for ( QV_INT value : { QV_INT( 0 ), QV_INT( -1 ), QV_INT( 42 ), QV_INT_MAX, QV_INT_MIN } )
    {
        Json val( qvJsonValueCreateInt( value ) );
        EXPECT_EQ( takeUtf8( qvJsonValueNumber( val ) ), std::to_string( value ) );
        EXPECT_EQ( qvJsonValueInt( val ), value );
        EXPECT_FALSE( qvJsonValueIsReal( val ) );
    }
    const std::pair<double, const char *> reals[] = {
        { 0.25, "0.250000" }, { 1.5, "1.500000" },       { 0.0000001, "0.000000" },
        { -3, "-3.000000" },  { 0.9999999, "0.999999" },
    };
    for ( auto [value, expected] : reals )
    {
        Json val( qvJsonValueCreateReal( value ) );
        EXPECT_EQ( takeUtf8( qvJsonValueNumber( val ) ), expected );
        EXPECT_EQ( qvJsonValueReal( val ), value );
        EXPECT_FALSE( qvJsonValueIsInt( val ) );
    }
    // Whatever its size, a finite real gives a number.
    std::mt19937_64 random( 5 );
    for ( int round = 0; round < 20000; round++ )
    {
        uint64_t bits = random();
        double real;
        std::memcpy( &real, &bits, sizeof( real ) );
        if ( !std::isfinite( real ) )
            continue;
        Json val( qvJsonValueCreateReal( real ) );
        Local<QV_STRING> digits( qvJsonValueNumber( val ) );
        ASSERT_TRUE( qvJsonValidateNumber( digits ) ) << toUtf8( digits );
    }
}

TEST( JsonValue, Types )
{
    const std::pair<const char *, QV_JSON_TYPE> rows[] = {
        { "null", QV_JSON_TYPE_NULL }, { "false", QV_JSON_TYPE_FALSE }, { "true", QV_JSON_TYPE_TRUE },
        { "1", QV_JSON_TYPE_NUMBER },  { "\"\"", QV_JSON_TYPE_STRING }, { "{}", QV_JSON_TYPE_OBJECT },
        { "[]", QV_JSON_TYPE_ARRAY },
    };
    for ( auto [content, type] : rows )
    {
        Json val = json( content );
        ASSERT_TRUE( val );
        EXPECT_EQ( qvJsonValueType( val ), type );
        QV_BOOL tests[] = { qvJsonValueIsNull( val ),   qvJsonValueIsFalse( val ),
                            qvJsonValueIsTrue( val ),   qvJsonValueIsNumber( val ),
                            qvJsonValueIsString( val ), qvJsonValueIsObject( val ),
                            qvJsonValueIsArray( val ) };
        for ( QV_JSON_TYPE other = 0; QV_JSON_TYPE_OK( other ); other++ )
            EXPECT_EQ( tests[other], other == type );
        bool isBool = type == QV_JSON_TYPE_FALSE || type == QV_JSON_TYPE_TRUE;
        EXPECT_EQ( qvJsonValueIsBool( val ), isBool );
        if ( isBool )
        {
            EXPECT_EQ( qvJsonValueBool( val ), type == QV_JSON_TYPE_TRUE );
        }
    }
}

TEST( JsonValue, SettersChangeTheTypeAndKeepTheLocation )
{
    void ( *const setters[] )( QV_JSON_VALUE ** ) = {
        qvJsonValueSetNull,
        qvJsonValueSetFalse,
        []( QV_JSON_VALUE **val ) { qvJsonValueSetBool( val, 7 ); },
        []( QV_JSON_VALUE **val ) { qvJsonValueSetNumber( val, text( "2e5" ) ); },
        []( QV_JSON_VALUE **val ) { qvJsonValueSetString( val, text( "2" ) ); },
        qvJsonValueSetObject,
        qvJsonValueSetArray,
    };
    Local<QV_LOCATION> location = test::location( 3, 4 );
    for ( QV_JSON_TYPE before = 0; QV_JSON_TYPE_OK( before ); before++ )
        for ( QV_JSON_TYPE after = 0; QV_JSON_TYPE_OK( after ); after++ )
        {
            const char *contents[] = { "null", "false", "true", "1.5", "\"x\"", "{\"a\":1}", "[1,2]" };
            Json val = json( contents[before] );
            qvJsonValueSetLocation( val.edit(), location );
            Json shared = Json::share( val );
            setters[after]( val.edit() );
            const char *results[] = { "null", "false", "true", "2e5", "\"2\"", "{}", "[]" };
            EXPECT_EQ( packed( val ), results[after] );
            EXPECT_EQ( qvJsonValueHasLocation( val ), after >= QV_JSON_TYPE_NUMBER );
            EXPECT_FALSE( qvJsonValueIsInt( val ) || qvJsonValueIsReal( val ) );
            EXPECT_EQ( packed( shared ), contents[before] );
            EXPECT_TRUE( qvJsonValueHasLocation( shared ) );
        }
    Json null( qvJsonValueCreateNull() );
    qvJsonValueSetLocation( null.edit(), location );
    EXPECT_EQ( takePlace( qvJsonValueLocation( null ) ), "3:4" );
    qvJsonValueDelLocation( null.edit() );
    EXPECT_FALSE( qvJsonValueHasLocation( null ) );
    EXPECT_FALSE( qvJsonValueHasLocation( qv___JsonValueNull ) );
}

TEST( JsonValue, MembersStayOrderedAndUnique )
{
    Json object( qvJsonValueCreateObject() );
    for ( const char *name : { "b", "", "a", "ab", "b" } )
    {
        Json member( qvJsonValueCreateInt( qvJsonValueObjectMembersLength( object ) ) );
        qvJsonValueObjectSetMember( object.edit(), text( name ), member );
    }
    EXPECT_EQ( packed( object ), "{\"\":1,\"a\":2,\"ab\":3,\"b\":4}" );
    Json shared = Json::share( object );
    EXPECT_EQ( takeUtf8( qvJsonValueObjectMemberNameAt( object, 2 ) ), "ab" );
    EXPECT_EQ( packed( Json( qvJsonValueObjectMemberValueAt( object, 3 ) ) ), "4" );
    EXPECT_FALSE( Json( qvJsonValueObjectMember( object, text( "c" ) ) ) );
    EXPECT_TRUE( qvJsonValueObjectHasMember( object, text( "" ) ) );
    qvJsonValueObjectDelMember( object.edit(), text( "c" ) );
    EXPECT_TRUE( qvJsonValueEquals( object, shared ) );
    qvJsonValueObjectDelMember( object.edit(), text( "a" ) );
    qvJsonValueObjectSetMemberValueAt( object.edit(), 0, qv___JsonValueTrue );
    EXPECT_EQ( packed( object ), "{\"\":true,\"ab\":3,\"b\":4}" );
    EXPECT_EQ( packed( shared ), "{\"\":1,\"a\":2,\"ab\":3,\"b\":4}" );

    Local<QV_DICT> dict( qvJsonValueObjectMembersDict( shared ) );
    qvJsonValueObjectSetMembersDict( object.edit(), dict );
    EXPECT_EQ( packed( object ), packed( shared ) );
    EXPECT_FALSE( qvJsonValueEquals( object, shared ) );

    // A value put into itself holds what it was.
    qvJsonValueObjectSetMember( object.edit(), text( "a" ), object );
    EXPECT_EQ( packed( object ), "{\"\":1,\"a\":{\"\":1,\"a\":2,\"ab\":3,\"b\":4},\"ab\":3,\"b\":4}" );
}

TEST( JsonValue, ElementsAgainstAModel )
{
    std::mt19937 random( 7 );
    for ( int round = 0; round < 40; round++ )
    {
        Json array( qvJsonValueCreateArray() );
        std::vector<QV_INT> model;
        for ( QV_INT step = 0; step < 120; step++ )
        {
            Json before = Json::share( array );
            size_t length = model.size();
            size_t at = length > 0 ? random() % length : 0;
            Json val( qvJsonValueCreateInt( step ) );
            switch ( length > 0 ? random() % 6 : random() % 3 )
            {
            case 0:
                qvJsonValueArrayPrepend( array.edit(), val );
                model.insert( model.begin(), step );
                break;
            case 1:
                qvJsonValueArrayAppend( array.edit(), val );
                model.push_back( step );
                break;
            case 2:
            case 3:
                qvJsonValueArrayInsert( array.edit(), static_cast<QV_INT>( at ), val );
                model.insert( model.begin() + static_cast<long>( at ), step );
                break;
            case 4:
                qvJsonValueArraySetAt( array.edit(), static_cast<QV_INT>( at ), val );
                model[at] = step;
                break;
            default:
                qvJsonValueArrayDelAt( array.edit(), static_cast<QV_INT>( at ) );
                model.erase( model.begin() + static_cast<long>( at ) );
            }
            ASSERT_EQ( qvJsonValueArrayLength( array ), lengthOf( model ) );
            ASSERT_EQ( qvJsonValueArrayLength( before ), static_cast<QV_INT>( length ) );
            for ( size_t idx = 0; idx < model.size(); idx++ )
            {
                Json item( qvJsonValueArrayAt( array, static_cast<QV_INT>( idx ) ) );
                ASSERT_EQ( qvJsonValueInt( item ), model[idx] );
            }
        }
        Json other( qvJsonValueCreateArray() );
        Local<QV_VECTOR> items( qvJsonValueArrayVector( array ) );
        qvJsonValueArraySetVector( other.edit(), items );
        qvJsonValueArrayAppend( other.edit(), other );
        EXPECT_EQ( qvJsonValueArrayLength( other ), qvJsonValueArrayLength( array ) + 1 );
    }
}

TEST( JsonValue, DeepValuesNeedNoStack )
{
    bool done = runOnSmallStack( [] {
        for ( bool objects : { false, true } )
        {
            Json val = nest( 1000000, objects );
            Json copy( qvJsonValueCreateFrom( val ) );
            EXPECT_NE( qvJsonValueCompare( val, copy ), 0 );
            EXPECT_EQ( qvJsonValueCompare( val, val ), 0 );
            EXPECT_FALSE( takeUtf8( qvJsonValueToString( val ) ).empty() );
            std::string content = packed( val );
            EXPECT_EQ( content.size(), objects ? 6000001u : 2000001u );
            // On lines, but without the indentation, which would take 10^12 characters.
            Local<QV_JSON_OPTIONS> options( qvJsonOptionsCreate() );
            qvJsonOptionsSetEncodeIndent( options.edit(), text( "" ) );
            content = takeBytes( qvJsonTryEncodeWithOptions( val, options ) );
            EXPECT_EQ( content.size(), objects ? 9000002u : 4000002u );
            Json changed = Json::share( val );
            qvJsonValueSetArray( changed.edit() );
        }
    } );
    EXPECT_TRUE( done );
}

TEST( JsonValueDeathTest, FaultsOfCallers )
{
    Json number( qvJsonValueCreateNumber( text( "1e3" ) ) );
    Json object( qvJsonValueCreateObject() );
    Json array( qvJsonValueCreateArray() );
    Local<QV_STRING> name = text( "a" );
    EXPECT_DEATH( qvJsonValueCreateNumber( text( "01" ) ), "qvJsonValidateNumber\\( jsonNumber \\)" );
    EXPECT_DEATH( qvJsonValueCreateReal( 1.0 / 0.0 ), "isfinite" );
    EXPECT_DEATH( qvJsonValueInt( number ), "val->valueIsInt" );
    EXPECT_DEATH( qvJsonValueReal( number ), "val->valueIsReal" );
    EXPECT_DEATH( qvJsonValueString( number ), "val->type == tp" );
    EXPECT_DEATH( qvJsonValueBool( number ), "QV_JSON_TYPE_TRUE" );
    EXPECT_DEATH( qvJsonValueArrayLength( object ), "QV_JSON_TYPE_ARRAY" );
    EXPECT_DEATH( qvJsonValueObjectMember( array, name ), "QV_JSON_TYPE_OBJECT" );
    EXPECT_DEATH( qvJsonValueArraySetAt( array.edit(), 0, number ), "idx <" );
    EXPECT_DEATH( qvJsonValueArrayInsert( array.edit(), 1, number ), "idx <=" );
    Local<QV_VECTOR> vec( qvVectorCreateFromObj( qv::objOf<QV_STRING>( name ) ) );
    EXPECT_DEATH( qvJsonValueArraySetVector( array.edit(), vec ), "qvVectorContainsOnly" );
}

// What the decoder makes has records of just their size.
TEST( JsonValue, DecodedValuesAreEdited )
{
    Json val = json( "{\"a\":[1,2,3],\"b\":{\"c\":null,\"d\":false},\"e\":\"x\"}" );
    Json array( qvJsonValueObjectMember( val, text( "a" ) ) );
    Json object( qvJsonValueObjectMember( val, text( "b" ) ) );
    Json scalar( qvJsonValueObjectMember( val, text( "e" ) ) );
    val.take( nullptr );
    for ( QV_INT idx = 0; idx < 300; idx++ )
    {
        Json item( qvJsonValueCreateInt( idx ) );
        Local<QV_STRING> name( qvStringCreateFromFormatCstr( "n%i", -1, idx ) );
        qvJsonValueArrayAppend( array.edit(), item );
        qvJsonValueObjectSetMember( object.edit(), name, item );
    }
    for ( QV_INT idx = 299; idx >= 0; idx-- )
    {
        Local<QV_STRING> name( qvStringCreateFromFormatCstr( "n%i", -1, idx ) );
        qvJsonValueArrayDelAt( array.edit(), idx + 3 );
        qvJsonValueObjectDelMember( object.edit(), name );
    }
    EXPECT_EQ( packed( array ), "[1,2,3]" );
    EXPECT_EQ( packed( object ), "{\"c\":null,\"d\":false}" );

    for ( double real : { 1e300, -0.25 } )
    {
        qvJsonValueSetReal( scalar.edit(), real );
        Json copy( qvJsonValueCreateFrom( scalar ) );
        EXPECT_EQ( qvJsonValueReal( copy ), real );
        EXPECT_EQ( packed( copy ), packed( scalar ) );
    }
    qvJsonValueSetNumber( scalar.edit(), text( "9007199254740993" ) );
    EXPECT_EQ( qvJsonValueInt( scalar ), 9007199254740993 );
    EXPECT_EQ( qvJsonValueReal( scalar ), 9007199254740992.0 );
}

} // namespace
