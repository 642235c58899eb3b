// Environments: names without regard to case, copies, and the ways from and to string vectors and stores.

#include "support/test.hh"

#include <qv/base/qv_environment.hh>

using namespace test;

namespace
{

using Environment = Local<QV_ENVIRONMENT>;

Environment environmentOf( const std::vector<std::string> &words )
{
    return Environment( qvEnvironmentConvertFromStringVector( vectorOf( words ) ) );
}

std::string shown( QV_ENVIRONMENT *envi )
{
    Local<QV_VECTOR> vec( qvEnvironmentConvertToStringVector( envi ) );
    EXPECT_EQ( qvVectorLength( vec ), qvEnvironmentVariablesLength( envi ) );
    return takeUtf8( qvVectorToString( vec ) );
}

TEST( Environment, FromStrings )
{
    struct
    {
        std::vector<std::string> words;
        const char *expected;
    } const cases[] = {
        { {}, "<>" },
        { { "b=1", "A=2", "C=3" }, "<A=2, b=1, C=3>" },
        { { "A=1", "a=2" }, "<a=2>" },
        { { "KEY=", "NOEQUALS", "" }, "<KEY=>" },
        { { "=x" }, "<=x>" },
        { { " NAME = value " }, "<NAME= value >" },
        { { "A=B=C" }, "<A=B=C>" },
        { { "A==" }, "<A==>" },
        { { " =x", "=y" }, "<=y>" },
        { { "STRASSE=1", "straße=2" }, "<straße=2>" },
        { { "Σ=1", "ς=2", "σ=3" }, "<σ=3>" },
    };
    for ( const auto &c : cases )
        EXPECT_EQ( shown( environmentOf( c.words ) ), c.expected );
    Local<QV_VECTOR> mixed = vectorOf( { "A=1" } );
    qvVectorAppendInt( mixed.edit(), 1 );
    EXPECT_DEATH( qvEnvironmentConvertFromStringVector( mixed ), "qvVectorContainsOnly" );
}

TEST( Environment, NamesWithoutCase )
{
    Environment envi( qvEnvironmentCreate() );
    qvEnvironmentSetVariableCstr( envi.edit(), "Path", -1, text( "one" ) );
    qvEnvironmentSetVariableWcstr( envi.edit(), L"PATH", -1, text( "two" ) );
    EXPECT_EQ( shown( envi ), "<PATH=two>" );
    EXPECT_EQ( takeUtf8( qvEnvironmentVariable( envi, text( "Path" ) ) ), "two" );
    EXPECT_EQ( takeUtf8( qvEnvironmentVariableCstr( envi, "pathology", 4 ) ), "two" );
    EXPECT_EQ( takeUtf8( qvEnvironmentVariableWcstr( envi, L"PATH", -1 ) ), "two" );
    EXPECT_TRUE( qvEnvironmentHasVariableCstr( envi, "pAtH", -1 ) );
    EXPECT_FALSE( qvEnvironmentHasVariableWcstr( envi, L"pat", -1 ) );
    EXPECT_EQ( qvEnvironmentVariableCstr( envi, "pat", -1 ), nullptr );
    qvEnvironmentSetVariable( envi.edit(), text( "a=b" ), text( "" ) );
    EXPECT_TRUE( qvEnvironmentHasVariable( envi, text( "A=B" ) ) );
    EXPECT_EQ( takeUtf8( qvEnvironmentVariableNameAt( envi, 0 ) ), "a=b" );
    EXPECT_EQ( takeUtf8( qvEnvironmentVariableValueAt( envi, 1 ) ), "two" );
    EXPECT_DEATH( qvEnvironmentVariableNameAt( envi, 2 ), "Expression" );
    EXPECT_DEATH( qvEnvironmentVariableValueAt( envi, -1 ), "Expression" );
}

// Each edit on a shared record, what it leaves there, and nothing in the other holder's hand.
TEST( Environment, EditsKeepSharedEnvironments )
{
    static Environment other;
    other.take( qvEnvironmentConvertFromStringVector( vectorOf( { "B=5", "new=6" } ) ) );
    struct
    {
        void ( *edit )( QV_ENVIRONMENT **envi );
        const char *expected;
    } const cases[] = {
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentSetVariableValueAt( e, 1, text( "x" ) ); },
          "<A=1, b=x, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentDelVariableAt( e, 0 ); }, "<b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentClearVariables( e ); }, "<>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentInclude( e, other ); }, "<A=1, B=5, C=3, new=6>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentInclude( e, *e ); }, "<A=1, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentInclude( e, Environment( qvEnvironmentCreate() ) ); },
          "<A=1, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentSetVariableCstr( e, "a", -1, text( "x" ) ); },
          "<a=x, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentSetVariableWcstr( e, L"Aa", -1, text( "x" ) ); },
          "<A=1, Aa=x, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentDelVariable( e, text( "c" ) ); }, "<A=1, b=2>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentDelVariableCstr( e, "B", -1 ); }, "<A=1, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentDelVariableWcstr( e, L"missing", -1 ); },
          "<A=1, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentCopyVariable( e, other, text( "b" ) ); },
          "<A=1, b=5, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentCopyVariableCstr( e, other, "NEW", -1 ); },
          "<A=1, b=2, C=3, NEW=6>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentCopyVariableCstr( e, other, "a", -1 ); }, "<b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentCopyVariableWcstr( e, other, L"missing", -1 ); },
          "<A=1, b=2, C=3>" },
        { []( QV_ENVIRONMENT **e ) { qvEnvironmentCopyVariableWcstr( e, *e, L"B", -1 ); },
          "<A=1, B=2, C=3>" },
    };
    int row = 0;
    for ( const auto &c : cases )
    {
        Environment before = environmentOf( { "C=3", "b=2", "A=1" } );
        auto shared = Environment::share( before );
        c.edit( shared.edit() );
        EXPECT_EQ( shown( shared ), c.expected ) << row;
        EXPECT_EQ( shown( before ), "<A=1, b=2, C=3>" ) << row;
        Environment copy( qvEnvironmentCreateFrom( before ) );
        c.edit( copy.edit() );
        EXPECT_EQ( shown( copy ), c.expected ) << row;
        EXPECT_EQ( shown( before ), "<A=1, b=2, C=3>" ) << row;
        c.edit( before.edit() );
        EXPECT_EQ( shown( before ), c.expected ) << row << ", alone";
        row++;
    }
    other.take( nullptr );
}

TEST( Environment, RandomRoundTrips )
{
    std::mt19937 random( 7 );
    const std::string letters = "aAbBzZ_1";
    for ( int round = 0; round < 50; round++ )
    {
        Environment envi( qvEnvironmentCreate() );
        for ( unsigned count = random() % 60; count > 0; count-- )
        {
            std::string name;
            for ( unsigned length = random() % 4; length > 0; length-- )
                name += letters[random() % letters.size()];
            qvEnvironmentSetVariable( envi.edit(), text( name ),
                                      text( " =" + std::to_string( random() % 9 ) ) );
        }
        Local<QV_VECTOR> vec( qvEnvironmentConvertToStringVector( envi ) );
        Environment fromStrings( qvEnvironmentConvertFromStringVector( vec ) );
        EXPECT_EQ( shown( fromStrings ), shown( envi ) );
        Local<QV_STORE> store( qvEnvironmentStore( envi ) );
        Environment fromStore( qvEnvironmentRestore( store ) );
        EXPECT_EQ( shown( fromStore ), shown( envi ) );
    }
}

TEST( Environment, StoreForm )
{
    Local<QV_STORE> store( qvEnvironmentStore( environmentOf( { "b=1", "A=" } ) ) );
    EXPECT_EQ( qvStoreHints( store ), QV_STORE_HINT_ARRAY | QV_STORE_HINT_ARRAY_MANAGED );
    ASSERT_EQ( qvStoreLength( store ), 2 );
    Local<QV_STORE> variable( qvStoreStoreAt( store, 1 ) );
    EXPECT_EQ( qvStoreLength( variable ), 2 );
    EXPECT_EQ( takeUtf8( qvStoreValueCstr( variable, "name", -1 ) ), "b" );
    EXPECT_EQ( takeUtf8( qvStoreValueCstr( variable, "value", -1 ) ), "1" );
}

TEST( Environment, RestoreSkipsWhatItCannotUse )
{
    Local<QV_STORE> empty( qvStoreCreate() );
    EXPECT_EQ( shown( Environment( qvEnvironmentRestore( empty ) ) ), "<>" );

    Local<QV_STORE> store( qvStoreCreate() );
    auto put = [&store]( const char *address, const char *name, const char *value ) {
        Local<QV_STORE> variable( qvStoreCreate() );
        if ( name )
            qvStoreSetValueCstr( variable.edit(), "name", -1, text( std::string_view( name ) ) );
        if ( value )
            qvStoreSetValueCstr( variable.edit(), "value", -1, text( std::string_view( value ) ) );
        qvStoreSetStoreCstr( store.edit(), address, -1, variable );
    };
    put( "a", "NAME", "first" );
    put( "b", "name", "second" );
    put( "c", nullptr, "no name" );
    put( "d", "novalue", nullptr );
    put( "e", "", "" );
    qvStoreSetValueCstr( store.edit(), "name", -1, text( "plain" ) );
    Local<QV_STORE> nested( qvStoreCreate() );
    qvStoreSetValueCstr( nested.edit(), "name", -1, text( "nested" ) );
    qvStoreSetStoreCstr( nested.edit(), "value", -1, empty );
    qvStoreSetStoreCstr( store.edit(), "f", -1, nested );
    EXPECT_EQ( shown( Environment( qvEnvironmentRestore( store ) ) ), "<=, name=second>" );
}

} // namespace
