#include "support/test.hh"
#include "support/small_stack.hh"

#include <qv/base/qv_store.hh>

using namespace test;

namespace
{

Local<QV_STORE> plain()
{
    return Local<QV_STORE>( qvStoreCreate() );
}

// The entries as "address=text" or "address={...}" in order.
std::string dump( QV_STORE *store )
{
    std::string result;
    for ( QV_INT idx = 0; idx < qvStoreLength( store ); idx++ )
    {
        result += ( idx ? " " : "" ) + takeUtf8( qvStoreAddressAt( store, idx ) ) + "=";
        Local<QV_STORE> sub( qvStoreStoreAt( store, idx ) );
        result += sub ? "{" + dump( sub ) + "}" : takeUtf8( qvStoreValueAt( store, idx ) );
    }
    return result;
}

void set( Local<QV_STORE> &store, const char *address, const char *value )
{
    qvStoreSetValueCstr( store.edit(), address, -1, text( value ) );
}

std::string get( QV_STORE *store, const char *address )
{
    Local<QV_STRING> value( qvStoreValueCstr( store, address, -1 ) );
    return value ? toUtf8( value ) : "(none)";
}

} // namespace

TEST( StoreTree, AddressesAreAsciiWords )
{
    for ( const char *good : { "a.b-c_1", ".", "-", "AZaz09" } )
        EXPECT_TRUE( qvStoreAddressOk( text( good ) ) ) << good;
    for ( const char *bad : { "", " ", "/", "a b", "ä", "aä", "a\n" } )
        EXPECT_FALSE( qvStoreAddressOk( text( bad ) ) ) << bad;
    std::string allowed;
    for ( QV_CHAR ch = 0; ch < 0x180; ch++ )
    {
        if ( qv___StoreAddressSkip( &ch, 1 ) == 1 )
            allowed += static_cast<char>( ch );
    }
    EXPECT_EQ( "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz", allowed );
}

TEST( StoreTree, HintsNormalize )
{
    EXPECT_EQ( 0, qvStoreHintsNormalize( QV_STORE_HINT_ARRAY_MANAGED ) );
    EXPECT_EQ( 0, qvStoreHintsFromString( text( "QV_STORE_HINT_ARRAY_MANAGED" ) ) );
    Local<QV_STORE> store( qvStoreCreateWithHints( QV_STORE_HINT_ARRAY_MANAGED ) );
    EXPECT_EQ( 0, qvStoreHints( store ) );
}

TEST( StoreTree, ScalarsReadByTheirText )
{
    const struct
    {
        const char *text;
        int isBool, boolean, isInt;
        QV_INT integer;
        int isReal;
        double real;
    } rows[] = {
        { "17", 1, 1, 1, 17, 1, 17.0 },    { "yes", 0, 0, 0, -1, 0, 0.0 },
        { "0.0", 1, 0, 0, -1, 1, 0.0 },    { " TrUe ", 1, 1, 0, -1, 0, 0.0 },
        { "false", 1, 0, 0, -1, 0, 0.0 },  { "true x", 0, 0, 0, -1, 0, 0.0 },
        { "0x10", 1, 1, 1, 16, 1, 16.0 },  { "1,5", 1, 1, 0, -1, 1, 1.5 },
        { "1e3", 0, 0, 0, -1, 0, 0.0 },    { "", 0, 0, 0, -1, 0, 0.0 },
        { "INF", 0, 0, 0, -1, 0, 0.0 },    { "99999999999999999999", 1, 1, 0, -1, 1, 1e20 },
        { "  -5 ", 1, 1, 1, -5, 1, -5.0 },
    };
    for ( const auto &row : rows )
    {
        Local<QV_STORE> store = plain();
        set( store, "a", row.text );
        QV_BOOL boolean = 7;
        QV_INT integer = 7;
        double real = 7;
        EXPECT_EQ( row.isBool, qvStoreValueBoolCstr( store, &boolean, "a", -1 ) ) << row.text;
        EXPECT_EQ( row.boolean, boolean ) << row.text;
        EXPECT_EQ( row.isInt, qvStoreValueIntCstr( store, &integer, "a", -1 ) ) << row.text;
        EXPECT_EQ( row.integer, integer ) << row.text;
        EXPECT_EQ( row.isReal, qvStoreValueRealAt( store, &real, 0 ) ) << row.text;
        EXPECT_DOUBLE_EQ( row.real, real ) << row.text;
    }
}

TEST( StoreTree, FailedReadsSetOutByAddressOnly )
{
    Local<QV_STORE> store = plain();
    qvStoreSetStoreCstr( store.edit(), "sub", -1, plain() );
    QV_BOOL boolean = 7;
    QV_INT integer = 7;
    double real = 7;
    EXPECT_FALSE( qvStoreValueBoolAt( store, &boolean, 0 ) || qvStoreValueIntAt( store, &integer, 0 ) ||
                  qvStoreValueRealAt( store, &real, 0 ) );
    EXPECT_TRUE( boolean == 7 && integer == 7 && real == 7 );
    for ( const char *address : { "sub", "missing" } )
    {
        EXPECT_FALSE( qvStoreValueBoolCstr( store, &boolean, address, -1 ) || boolean );
        EXPECT_FALSE( qvStoreValueIntCstr( store, &integer, address, -1 ) || integer != -1 );
        EXPECT_FALSE( qvStoreValueRealCstr( store, &real, address, -1 ) || real != 0.0 );
        EXPECT_FALSE( qvStoreValueNullCstr( store, address, -1 ) );
        EXPECT_EQ( "(none)", get( store, address ) );
        boolean = 7, integer = 7, real = 7;
    }
}

TEST( StoreTree, SettersGiveTheirTexts )
{
    Local<QV_STORE> store = plain();
    qvStoreSetValueNullCstr( store.edit(), "null", -1 );
    qvStoreSetValueBoolCstr( store.edit(), "bool", -1, 5 );
    qvStoreSetValueIntCstr( store.edit(), "zero", -1, 0 );
    qvStoreSetValueIntCstr( store.edit(), "min", -1, QV_INT_MIN );
    qvStoreSetValueRealCstr( store.edit(), "real", -1, 1.5 );
    qvStoreSetValueRealCstr( store.edit(), "inf", -1, -1.0 / 0.0 );
    EXPECT_EQ( "bool=true inf=INF min=-9223372036854775808 null= real=1.500000 zero=0", dump( store ) );
    EXPECT_TRUE( qvStoreValueNullCstr( store, "null", -1 ) );
    EXPECT_TRUE( qvStoreHasValueCstr( store, "null", -1 ) );
    EXPECT_FALSE( qvStoreValueNullCstr( store, "zero", -1 ) );

    // The common values are one object each.
    Local<QV___STORE_VALUE> zero( qv___StoreValueAt( store, 5 ) );
    EXPECT_EQ( qv___StoreValueIntZero, zero );
    EXPECT_EQ( QV___STORE_VALUE_HINT_INT, qv___StoreValueHints( zero ) );
}

TEST( StoreTree, OneAddressHoldsOneEntry )
{
    Local<QV_STORE> store = plain();
    set( store, "a", "1" );
    qvStoreSetStoreCstr( store.edit(), "a", -1, plain() );
    EXPECT_EQ( "a={}", dump( store ) );
    EXPECT_TRUE( qvStoreHasStoreCstr( store, "a", -1 ) );
    EXPECT_FALSE( qvStoreHasValueCstr( store, "a", -1 ) );
    set( store, "a", "2" );
    EXPECT_EQ( "a=2", dump( store ) );
    EXPECT_FALSE( qvStoreHasStoreCstr( store, "a", -1 ) );
    EXPECT_TRUE( qvStoreHasAddressCstr( store, "a", -1 ) );
}

TEST( StoreTree, FormsOfTheAddress )
{
    Local<QV_STORE> store = plain();
    qvStoreSetValue( store.edit(), text( "a0" ), text( "string" ) );
    qvStoreSetValueCstr( store.edit(), "a1xx", 2, text( "bytes" ) );
    qvStoreSetValueWcstr( store.edit(), L"a2", -1, text( "wide" ) );
    qvStoreSetValueFormat( store.edit(), text( "a%i" ), text( "format" ), (QV_INT)3 );
    qvStoreSetValueFormatCstr( store.edit(), "a%ixx", 3, text( "format bytes" ), (QV_INT)4 );
    qvStoreSetValueFormatWcstr( store.edit(), L"%s%i", -1, text( "format wide" ),
                                static_cast<QV_STRING *>( text( "a" ) ), (QV_INT)5 );
    qvStoreSetValueIntFormat( store.edit(), text( "a%i" ), 60, (QV_INT)6 );
    qvStoreSetValueBoolFormatCstr( store.edit(), "a%i", -1, QV_TRUE, (QV_INT)7 );
    qvStoreSetValueRealFormatWcstr( store.edit(), L"a%i", -1, 0.5, (QV_INT)8 );
    qvStoreSetValueNullFormat( store.edit(), text( "a%i" ), (QV_INT)9 );
    qvStoreSetStoreFormatCstr( store.edit(), "b%i", -1, plain(), (QV_INT)0 );
    EXPECT_EQ(
        "a0=string a1=bytes a2=wide a3=format a4=format bytes a5=format wide a6=60 a7=true a8=0.500000 "
        "a9= b0={}",
        dump( store ) );
    QV_INT integer;
    double real;
    QV_BOOL boolean;
    EXPECT_TRUE( qvStoreValueIntFormatWcstr( store, &integer, L"a%i", -1, (QV_INT)6 ) && integer == 60 );
    EXPECT_TRUE( qvStoreValueRealFormat( store, &real, text( "a%i" ), (QV_INT)8 ) && real == 0.5 );
    EXPECT_TRUE( qvStoreValueBoolFormatCstr( store, &boolean, "a%i", -1, (QV_INT)7 ) && boolean );
    EXPECT_TRUE( qvStoreHasStoreFormatCstr( store, "b%i", -1, (QV_INT)0 ) );
    EXPECT_EQ( "wide", takeUtf8( qvStoreValueFormatCstr( store, "a%i", -1, (QV_INT)2 ) ) );
    qvStoreDelFormat( store.edit(), text( "a%i" ), (QV_INT)0 );
    qvStoreDelWcstr( store.edit(), L"a1", -1 );
    EXPECT_EQ( 9, qvStoreLength( store ) );
}

TEST( StoreTree, ArraysHavePaddedAddresses )
{
    Local<QV_STORE> array( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < 11; idx++ )
        qvStoreAppendValueInt( array.edit(), idx );
    EXPECT_EQ( "00", takeUtf8( qvStoreAddressAt( array, 0 ) ) );
    EXPECT_EQ( "10", takeUtf8( qvStoreAddressAt( array, 10 ) ) );
    for ( const char *wrong : { "5", "005", "11", "-1", "0x5", "0.5" } )
        EXPECT_FALSE( qvStoreHasAddressCstr( array, wrong, -1 ) ) << wrong;
    EXPECT_EQ( "5", get( array, "05" ) );
    qvStoreDelAt( array.edit(), 0 );
    EXPECT_EQ( "0=1 1=2 2=3 3=4 4=5 5=6 6=7 7=8 8=9 9=10", dump( array ) );
    for ( QV_INT idx = 0; idx < 91; idx++ )
        qvStorePrependValueNull( array.edit() );
    EXPECT_EQ( "100", takeUtf8( qvStoreAddressAt( array, 100 ) ) );
    EXPECT_EQ( "10", get( array, "100" ) );
    EXPECT_FALSE( qvStoreHasAddressCstr( array, "00", -1 ) );
    Local<QV_STORE> empty( qvStoreCreateArray() );
    EXPECT_FALSE( qvStoreHasAddressCstr( empty, "0", -1 ) );
}

TEST( StoreTree, FormsOfStorageConvert )
{
    Local<QV_STORE> store = plain();
    set( store, "b", "2" );
    set( store, "a", "1" );
    set( store, "10", "x" );
    set( store, "9", "y" );
    EXPECT_EQ( "10=x 9=y a=1 b=2", dump( store ) );
    qvStoreAppendValueBool( store.edit(), QV_FALSE );
    EXPECT_EQ( 3, qvStoreHints( store ) );
    EXPECT_EQ( "0=x 1=y 2=1 3=2 4=false", dump( store ) );
    set( store, "x", "new" );
    EXPECT_EQ( QV_STORE_HINT_ARRAY, qvStoreHints( store ) );
    EXPECT_EQ( "0=x 1=y 2=1 3=2 4=false x=new", dump( store ) );
    qvStoreSetValueAt( store.edit(), 5, text( "same place" ) );
    EXPECT_EQ( QV_STORE_HINT_ARRAY, qvStoreHints( store ) );
    EXPECT_EQ( "same place", get( store, "x" ) );
    qvStoreInsertValueReal( store.edit(), 1, 2.0 );
    EXPECT_EQ( "0=x 1=2.000000 2=y 3=1 4=2 5=false 6=same place", dump( store ) );

    // A missing address converts all the same.
    qvStoreDelCstr( store.edit(), "none", -1 );
    EXPECT_EQ( QV_STORE_HINT_ARRAY, qvStoreHints( store ) );
    EXPECT_EQ( 7, qvStoreLength( store ) );
    qvStoreSetHints( store.edit(), 0 );
    EXPECT_EQ( 0, qvStoreHints( store ) );
    qvStoreSetHints( store.edit(), 3 );
    EXPECT_EQ( "0=x 1=2.000000 2=y 3=1 4=2 5=false 6=same place", dump( store ) );
    qvStoreSetHints( store.edit(), QV_STORE_HINT_ARRAY_MANAGED );
    EXPECT_EQ( 0, qvStoreHints( store ) );
    qvStoreClear( store.edit() );
    EXPECT_EQ( 0, qvStoreLength( store ) );
}

TEST( StoreTree, NestedEditsCopyOnlyTheirPath )
{
    Local<QV_STORE> leaf = plain();
    set( leaf, "v", "old" );
    Local<QV_STORE> other = plain();
    set( other, "w", "kept" );
    Local<QV_STORE> root = plain();
    qvStoreSetStoreCstr( root.edit(), "leaf", -1, leaf );
    qvStoreSetStoreCstr( root.edit(), "other", -1, other );
    Local<QV_STORE> before = Local<QV_STORE>::share( root );

    Local<QV_STORE> taken( qvStoreStoreCstr( root, "leaf", -1 ) );
    EXPECT_EQ( leaf, static_cast<QV_STORE *>( taken ) );
    set( taken, "v", "new" );
    EXPECT_EQ( "leaf={v=old} other={w=kept}", dump( root ) );
    qvStoreSetStoreCstr( root.edit(), "leaf", -1, taken );
    EXPECT_EQ( "leaf={v=new} other={w=kept}", dump( root ) );
    EXPECT_EQ( "leaf={v=old} other={w=kept}", dump( before ) );
    EXPECT_EQ( "v=old", dump( leaf ) );
    Local<QV_STORE> sameOther( qvStoreStoreCstr( root, "other", -1 ) );
    EXPECT_EQ( static_cast<QV_STORE *>( other ), static_cast<QV_STORE *>( sameOther ) );
}

TEST( StoreTree, StoreSetIntoItselfHoldsItsFormerState )
{
    Local<QV_STORE> store = plain();
    set( store, "a", "1" );
    qvStoreSetStoreCstr( store.edit(), "self", -1, store );
    EXPECT_EQ( "a=1 self={a=1}", dump( store ) );
    qvStoreAppendStore( store.edit(), store );
    EXPECT_EQ( "0=1 1={a=1} 2={a=1 self={a=1}}", dump( store ) );
    qvStoreSetStoreAt( store.edit(), 0, store );
    EXPECT_EQ( "0={0=1 1={a=1} 2={a=1 self={a=1}}} 1={a=1} 2={a=1 self={a=1}}", dump( store ) );
}

TEST( StoreTree, SharedEmptyStoresStayEmpty )
{
    Local<QV_STORE> storeA = plain();
    Local<QV_STORE> storeB = plain();
    EXPECT_EQ( static_cast<QV_STORE *>( storeA ), static_cast<QV_STORE *>( storeB ) );
    set( storeA, "a", "1" );
    EXPECT_EQ( 0, qvStoreLength( storeB ) );
    Local<QV_STORE> array( qvStoreCreateArray() );
    qvStoreAppendValueNull( array.edit() );
    EXPECT_EQ( 0, qvStoreLength( Local<QV_STORE>( qvStoreCreateArray() ) ) );
}

TEST( StoreTree, OrderGoesByHintsEntriesAndLocation )
{
    Local<QV_LOCATION> location( qvLocationCreate() );
    Local<QV_STORE> empty = plain();
    Local<QV_STORE> array( qvStoreCreateArray() );
    Local<QV_STORE> withA = plain();
    set( withA, "a", "1" );
    Local<QV_STORE> sameA = plain();
    set( sameA, "a", "1" );
    Local<QV_STORE> intA = plain();
    qvStoreSetValueIntCstr( intA.edit(), "a", -1, 1 );
    Local<QV_STORE> located( qvStoreCreateFrom( withA ) );
    qvStoreSetLocation( located.edit(), location );

    EXPECT_TRUE( qvStoreEquals( withA, sameA ) );
    EXPECT_FALSE( qvStoreEquals( withA, intA ) );
    QV_STORE *ascending[] = { empty, withA, located, intA, array };
    expectAscending( ascending, qvStoreCompare );
    qvStoreDelLocation( located.edit() );
    EXPECT_FALSE( qvStoreHasLocation( located ) );
    EXPECT_TRUE( qvStoreEquals( withA, located ) );
}

// Addresses and values in order; an array numbers its addresses anew after each edit.
struct StoreModel
{
    std::vector<std::pair<std::string, int>> entries;
    bool isArray = false;

    void renumber()
    {
        size_t digits = std::to_string( entries.size() - 1 ).size();
        for ( size_t idx = 0; isArray && idx < entries.size(); idx++ )
        {
            std::string number = std::to_string( idx );
            entries[idx].first = std::string( digits - number.size(), '0' ) + number;
        }
    }

    // An edit by address makes it plain.
    void del( const std::string &address )
    {
        isArray = false;
        std::erase_if( entries, [&]( const auto &entry ) { return entry.first == address; } );
    }

    void set( const std::string &address, int value )
    {
        del( address );
        entries.emplace_back( address, value );
        std::sort( entries.begin(), entries.end() );
    }

    // An edit by position makes it an array.
    void insertAt( size_t idx, int value )
    {
        isArray = true;
        entries.insert( entries.begin() + static_cast<long>( idx ), { "", value } );
        renumber();
    }

    void delAt( size_t idx )
    {
        entries.erase( entries.begin() + static_cast<long>( idx ) );
        renumber();
    }

    std::string dump() const
    {
        std::string result;
        for ( auto &[address, value] : entries )
            result += ( result.empty() ? "" : " " ) + address + "=" + std::to_string( value );
        return result;
    }
};

TEST( StoreTree, RandomEditsFollowTheModel )
{
    std::mt19937 random( 31 );
    StoreModel model;
    Local<QV_STORE> store = plain();
    std::vector<std::pair<Local<QV_STORE>, std::string>> kept;
    for ( int step = 0; step < 4000; step++ )
    {
        int value = static_cast<int>( random() % 100000 );
        std::string address = std::to_string( random() % 130 );
        size_t length = model.entries.size();
        switch ( random() % 9 )
        {
        case 0:
        case 1:
            qvStoreSetValueIntFormatCstr( store.edit(), "%lc", -1, value, address.c_str() );
            model.set( address, value );
            break;
        case 2:
            qvStoreDelCstr( store.edit(), address.c_str(), -1 );
            model.del( address );
            break;
        case 3:
        case 4:
        case 5: {
            size_t idx = random() % ( length + 1 );
            qvStoreInsertValueInt( store.edit(), static_cast<QV_INT>( idx ), value );
            model.insertAt( idx, value );
            break;
        }
        case 6:
            if ( length > 0 )
            {
                size_t idx = random() % length;
                qvStoreDelAt( store.edit(), static_cast<QV_INT>( idx ) );
                model.delAt( idx );
            }
            break;
        case 7:
            if ( random() % 20 == 0 )
                kept.emplace_back( Local<QV_STORE>::share( store ), dump( store ) );
            break;
        default:
            if ( length > 120 )
            {
                qvStoreClear( store.edit() );
                model.entries.clear();
            }
        }
        ASSERT_EQ( model.dump(), dump( store ) ) << step;
    }
    for ( auto &[before, text] : kept )
        EXPECT_EQ( text, dump( before ) );
}

// Stores inside one another around a value, every other one an array.
Local<QV_STORE> nested( QV_INT depth, const char *innermost )
{
    Local<QV_STORE> store = plain();
    set( store, "in", innermost );
    Local<QV_STRING> address = text( "in" );
    for ( QV_INT level = 0; level < depth; level++ )
    {
        Local<QV_STORE> outer = plain();
        if ( level % 2 )
            qvStoreAppendStore( outer.edit(), store );
        else
            qvStoreSetStore( outer.edit(), address, store );
        store.take( outer.give() );
    }
    return store;
}

TEST( StoreTree, DeepStoresNeedLittleStack )
{
    EXPECT_TRUE( runOnSmallStack( [] {
        Local<QV_STORE> store = nested( 1000000, "a" );
        Local<QV_STORE> equal = nested( 1000000, "a" );
        EXPECT_EQ( 0, qvStoreCompare( store, equal ) );
        EXPECT_EQ( -1, qvStoreCompare( nested( 1000, "a" ), nested( 1000, "b" ) ) );
        Local<QV_VECTOR> around( qvVectorCreateFromObj( qvStoreObj( store ) ) );
        Local<QV_VECTOR> aroundEqual( qvVectorCreateFromObj( qvStoreObj( equal ) ) );
        EXPECT_EQ( 0, qvVectorCompare( around, aroundEqual ) );
        EXPECT_FALSE( takeUtf8( qvStoreToString( store ) ).empty() );
        Local<QV_STORE> copy( qvStoreCreateFrom( store ) );
        qvStoreAppendStore( copy.edit(), equal );
        EXPECT_EQ( 2, qvStoreLength( copy ) );
    } ) );
}

TEST( StoreTreeDeathTest, CallersFaultsStop )
{
    Local<QV_STORE> store = plain();
    set( store, "a", "1" );
    EXPECT_DEATH( set( store, "a/b", "1" ), "qvStoreAddressOk" );
    EXPECT_DEATH( qvStoreHasAddressCstr( store, "", -1 ), "qvStoreAddressOk" );
    EXPECT_DEATH( qvStoreDelCstr( store.edit(), " ", -1 ), "qvStoreAddressOk" );
    EXPECT_DEATH( qvStoreLength( nullptr ), "store" );
    EXPECT_DEATH( qvStoreValueAt( store, 1 ), "idx < " );
    EXPECT_DEATH( qvStoreAddressAt( store, -1 ), "idx >= 0" );
    EXPECT_DEATH( qvStoreInsertValueNull( store.edit(), 2 ), "idx <= " );
    EXPECT_DEATH( qvStoreSetValueCstr( store.edit(), "a", -1, nullptr ), "text" );
}
