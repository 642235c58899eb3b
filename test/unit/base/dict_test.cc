#include "support/test.hh"
#include "support/traced.hh"

#include <qv/base/qv_dict.hh>

using namespace test;

namespace
{

using Dict = Local<QV_DICT>;
using Obj = Local<qv___Obj>;

Dict numbered( int count )
{
    Dict dict( qvDictCreate() );
    for ( int id = 0; id < count; ++id )
    {
        Obj obj = traced( id );
        qvDictSetObjKey( dict.edit(), obj, obj );
    }
    return dict;
}

std::string toText( QV_DICT *dict )
{
    return takeUtf8( qvDictToString( dict ) );
}

// Puts the string pairs "ab cd" as a=b and c=d.
Dict lettered( std::string_view pairs )
{
    Dict dict( qvDictCreate() );
    for ( size_t at = 0; at + 1 < pairs.size(); at += 3 )
    {
        Local<QV_STRING> value = text( pairs.substr( at + 1, 1 ) );
        qvDictSetStringKeyCstr( dict.edit(), &pairs[at], 1, qv::objOf<QV_STRING>( value ) );
    }
    return dict;
}

// ---- Random edits ----

// Keys of three sorts; the model orders them as the sorts' names do: traced objects last, strings before them, integers first.
struct ModelKey
{
    int sort;
    int number;

    auto operator<=>( const ModelKey & ) const = default;
};

Obj keyObj( ModelKey key )
{
    if ( key.sort == 0 )
        return Obj( qv::objOf( qvBoxedIntCreate( key.number ) ) );
    if ( key.sort == 1 )
    {
        char digits[8];
        snprintf( digits, sizeof digits, "%05d", key.number );
        return Obj( qv::objOf( qvStringCreateFromCstr( digits, -1 ) ) );
    }
    return traced( key.number );
}

using Model = std::map<ModelKey, std::pair<qvObj, qvObj>>;

void expectMatches( const Model &model, QV_DICT *dict )
{
    ASSERT_EQ( lengthOf( model ), dict->length );
    QV_INT idx = 0;
    for ( auto &[key, pair] : model )
    {
        ASSERT_EQ( pair.first, dict->items[idx].key );
        ASSERT_EQ( pair.second, dict->items[idx].val );
        ++idx;
    }
    bool isInline = dict->items == dict->inlineStore;
    ASSERT_EQ( isInline ? 0 : dict->alloc * 2 * static_cast<QV_INT>( sizeof( qvObj ) ),
               qv___ObjDbgAllocationSize( dict ) );
    ASSERT_GE( dict->alloc, dict->length );
    ASSERT_LE( dict->alloc, dict->length + 64 );
}

class DictEdits
{
  public:
    DictEdits( unsigned seed, int sorts, int keys ) : random_( seed ), sorts_( sorts ), keys_( keys )
    {
        for ( int id = 0; id < 5; ++id )
            values_.push_back( traced( 1000 + id ) );
    }

    void run( int steps )
    {
        for ( int step = 0; step < steps; ++step )
        {
            bool isShared = pick( 4 ) == 0;
            Dict holder = Dict::share( isShared ? static_cast<QV_DICT *>( dict_ ) : nullptr );
            Model before = model_;
            // Phases of growth and of decline, so that the array comes and goes.
            edit( step / 150 % 2 == 0 );
            ASSERT_NO_FATAL_FAILURE( expectMatches( model_, dict_ ) ) << "step " << step;
            if ( isShared )
            {
                ASSERT_NO_FATAL_FAILURE( expectMatches( before, holder ) ) << "step " << step;
            }
            ASSERT_NO_FATAL_FAILURE( lookUp() );
        }
    }

  private:
    int pick( int limit )
    {
        return static_cast<int>( random_() % static_cast<unsigned>( limit ) );
    }

    ModelKey someKey()
    {
        return { pick( sorts_ ), pick( keys_ ) };
    }

    void edit( bool isGrowing )
    {
        int kind = pick( 12 );
        if ( kind < ( isGrowing ? 9 : 2 ) )
            set( someKey() );
        else if ( kind < 10 )
            del( someKey() );
        else if ( !model_.empty() )
            editAt( pick( static_cast<int>( model_.size() ) ) );
    }

    void set( ModelKey modelKey )
    {
        keep_.push_back( keyObj( modelKey ) );
        qvObj key = keep_.back();
        qvObj value = values_[static_cast<size_t>( pick( 5 ) )];
        qvDictSetObjKey( dict_.edit(), key, value );
        model_[modelKey] = { key, value };
    }

    void del( ModelKey modelKey )
    {
        qvDictDelObjKey( dict_.edit(), keyObj( modelKey ) );
        model_.erase( modelKey );
    }

    void editAt( int idx )
    {
        auto entry = std::next( model_.begin(), idx );
        if ( pick( 2 ) == 0 )
        {
            qvDictDelAt( dict_.edit(), idx );
            model_.erase( entry );
            return;
        }
        qvObj value = values_[static_cast<size_t>( pick( 5 ) )];
        qvDictSetValueAt( dict_.edit(), idx, value );
        entry->second.second = value;
    }

    void lookUp()
    {
        ModelKey modelKey = someKey();
        Obj key = keyObj( modelKey );
        auto found = model_.find( modelKey );
        QV_INT expected = found == model_.end() ? -1 : std::distance( model_.begin(), found );
        ASSERT_EQ( expected, qvDictIndexOfObjKey( dict_, key ) );
        Obj value( qvDictObjKey( dict_, key ) );
        ASSERT_EQ( found == model_.end() ? nullptr : found->second.second, value );
        if ( modelKey.sort == 0 )
        {
            ASSERT_EQ( expected, qvDictIndexOfIntKey( dict_, modelKey.number ) );
        }
    }

    std::mt19937 random_;
    int sorts_;
    int keys_;
    std::vector<Obj> values_;
    std::vector<Obj> keep_;
    Dict dict_{ qvDictCreate() };
    Model model_;
};

TEST( Dict, RandomEditsMatchAModel )
{
    for ( unsigned seed = 1; seed <= 12; ++seed )
    {
        DictEdits( seed, 3, 60 ).run( 600 );
        DictEdits( seed, 1, 6 ).run( 200 );
        DictEdits( seed, 1, 150 ).run( 600 );
    }
}

// ---- Lookup and storage ----

TEST( Dict, TestsBothEndsFirst )
{
    struct
    {
        int length; // keys 0, 10, 20 ...
        int sought;
        QV_INT index;
        int compares;
    } rows[] = {
        { 0, 5, -1, 0 },  { 1, -5, -1, 1 },   { 1, 0, 0, 1 },  { 1, 5, -1, 2 },
        { 2, 5, -1, 2 },  { 2, 10, 1, 2 },    { 3, 10, 1, 3 }, { 3, 5, -1, 3 },
        { 9, -5, -1, 1 }, { 9, 1000, -1, 2 }, { 9, 80, 8, 2 }, { 9, 40, 4, 3 },
    };
    for ( auto &row : rows )
    {
        Dict dict( qvDictCreate() );
        for ( int idx = 0; idx < row.length; ++idx )
            qvDictSetObjKey( dict.edit(), traced( 10 * idx ), qv::objOf( qv___DictEmpty ) );
        Obj sought = traced( row.sought );
        tracedCompares = 0;
        EXPECT_EQ( row.index, qvDictIndexOfObjKey( dict, sought ) ) << row.length << " " << row.sought;
        // A single pair is first and last at once; it needn't be asked again.
        EXPECT_LE( tracedCompares, row.compares ) << row.length << " " << row.sought;
    }
}

TEST( Dict, AppendsInOrderCostTwoCompares )
{
    Dict dict = numbered( 500 );
    Obj next = traced( 500 );
    tracedCompares = 0;
    qvDictSetObjKey( dict.edit(), next, next );
    EXPECT_EQ( 2, tracedCompares );
}

TEST( Dict, GrowsAndShrinksByTheRules )
{
    Dict dict = numbered( 32 );
    EXPECT_EQ( dict->inlineStore, dict->items );
    dict.take( numbered( 33 ).give() );
    EXPECT_EQ( 65, dict->alloc );
    dict.take( numbered( 66 ).give() );
    EXPECT_EQ( 98, dict->alloc );
    while ( dict->length > 34 )
        qvDictDelAt( dict.edit(), 0 );
    EXPECT_EQ( 98, dict->alloc );
    qvDictDelAt( dict.edit(), 0 );
    EXPECT_EQ( 33, dict->alloc );
    EXPECT_EQ( 33 * 2 * static_cast<QV_INT>( sizeof( qvObj ) ), qv___ObjDbgAllocationSize( dict ) );

    // The last pairs of an array that has grown once more move into the inline store.
    Obj next = traced( 100 );
    qvDictSetObjKey( dict.edit(), next, next );
    while ( dict->length > 1 )
        qvDictDelAt( dict.edit(), 0 );
    EXPECT_EQ( dict->inlineStore, dict->items );
    EXPECT_EQ( next, dict->items[0].key );

    // An emptied array goes back to the inline store when enough of it is free.
    dict.take( numbered( 66 ).give() );
    Local<QV_VECTOR> keys( qvDictKeysVector( dict ) );
    Dict most( qvDictCreate() );
    for ( QV_INT idx = 2; idx < 66; ++idx )
        qvDictSetObjKey( most.edit(), qv::vectorAt( keys, idx ), qv::vectorAt( keys, idx ) );
    qvDictExclude( dict.edit(), most );
    EXPECT_EQ( 2, dict->length );
    EXPECT_EQ( 33, dict->alloc );
    qvDictIntersect( dict.edit(), dict, QV_TRUE );
    EXPECT_EQ( 2, dict->length );
}

TEST( Dict, ClearingInPlaceKeepsTheStorage )
{
    Dict dict = numbered( 40 );
    QV_DICT *record = dict;
    qv___DictClear( dict.edit() );
    EXPECT_EQ( record, dict );
    EXPECT_EQ( 65, dict->alloc );
    Dict holder = Dict::share( dict );
    qv___DictClear( dict.edit() );
    EXPECT_EQ( qv___DictEmpty, dict );
}

TEST( Dict, OfEqualKeysTheLowestIndexWins )
{
    Local<QV_VECTOR> keys( qvVectorCreate() );
    Local<QV_VECTOR> values( qvVectorCreate() );
    for ( const char *key : { "b", "a", "b", "a" } )
        qvVectorAppendStringCstr( keys.edit(), key, -1 );
    for ( const char *value : { "1", "2", "3", "4" } )
        qvVectorAppendStringCstr( values.edit(), value, -1 );
    Dict dict( qvDictCreateWithKeysAndValues( keys, values ) );
    EXPECT_EQ( "{a=2, b=1}", toText( dict ) );
    EXPECT_EQ( qv::vectorAt( keys, 0 ), dict->items[1].key );
}

TEST( Dict, AbsentKeysLeaveASharedDictionaryShared )
{
    Dict dict = lettered( "a1 b2" );
    Dict holder = Dict::share( dict );
    qvDictDelStringKeyCstr( dict.edit(), "c", -1 );
    EXPECT_EQ( holder, dict );
    qvDictDelStringKeyCstr( dict.edit(), "b", -1 );
    EXPECT_NE( holder, dict );
    qvDictDelStringKeyCstr( dict.edit(), "a", -1 );
    EXPECT_EQ( qv___DictEmpty, dict );
    EXPECT_EQ( "{a=1, b=2}", toText( holder ) );
}

TEST( Dict, StoresItselfAsItWas )
{
    Dict dict = lettered( "a1" );
    qvDictSetStringKeyCstr( dict.edit(), "b", 1, qv::objOf<QV_DICT>( dict ) );
    EXPECT_EQ( "{a=1, b={a=1}}", toText( dict ) );
    qvDictSetValueAt( dict.edit(), 0, qv::objOf<QV_DICT>( dict ) );
    EXPECT_EQ( "{a={a=1, b={a=1}}, b={a=1}}", toText( dict ) );
    qvDictSetObjKey( dict.edit(), qv::objOf<QV_DICT>( dict ), dict->items[1].val );
    EXPECT_EQ( 3, qvDictLength( dict ) );
}

TEST( Dict, EveryKindOfKeyStandsByItself )
{
    Dict dict( qvDictCreate() );
    Obj value = traced( 1 );
    Local<QV_STRING> name = text( "k" );
    Local<QV_IDENTIFIER> identifier( qvIdentifierCreate() );
    for ( int round = 0; round < 2; ++round )
    {
        qvDictSetNullKey( dict.edit(), value );
        qvDictSetBoolKey( dict.edit(), QV_TRUE, value );
        qvDictSetIntKey( dict.edit(), 1, value );
        qvDictSetRealKey( dict.edit(), 1.0, value );
        qvDictSetSortKey( dict.edit(), qvDictSort(), value );
        qvDictSetIdentifierKey( dict.edit(), identifier, value );
        qvDictSetStringKey( dict.edit(), name, value );
        qvDictSetStringKeyWcstr( dict.edit(), L"wide", 1, value );
    }
    EXPECT_EQ( 8, qvDictLength( dict ) );
    EXPECT_EQ( 0, qvDictIndexOfBoolKey( dict, QV_TRUE ) );
    EXPECT_EQ( 1, qvDictIndexOfIntKey( dict, 1 ) );
    EXPECT_EQ( 2, qvDictIndexOfNullKey( dict ) );
    EXPECT_EQ( 3, qvDictIndexOfRealKey( dict, 1.0 ) );
    EXPECT_EQ( 4, qvDictIndexOfIdentifierKey( dict, identifier ) );
    EXPECT_EQ( 5, qvDictIndexOfSortKey( dict, qvDictSort() ) );
    EXPECT_EQ( 6, qvDictIndexOfStringKeyCstr( dict, "k", -1 ) );
    EXPECT_EQ( 7, qvDictIndexOfStringKeyWcstr( dict, L"w", -1 ) );
    EXPECT_FALSE( qvDictHasBoolKey( dict, QV_FALSE ) );
    EXPECT_FALSE( qvDictHasIntKey( dict, 2 ) );
    EXPECT_FALSE( qvDictHasRealKey( dict, 1.5 ) );
    EXPECT_EQ( nullptr, qvDictStringKeyCstr( dict, "kk", 2 ) );
    Obj found( qvDictRealKey( dict, 1.0 ) );
    EXPECT_EQ( value, found );
    qvDictDelNullKey( dict.edit() );
    qvDictDelBoolKey( dict.edit(), QV_TRUE );
    qvDictDelIntKey( dict.edit(), 1 );
    qvDictDelRealKey( dict.edit(), 1.0 );
    qvDictDelSortKey( dict.edit(), qvDictSort() );
    qvDictDelIdentifierKey( dict.edit(), identifier );
    qvDictDelStringKey( dict.edit(), name );
    EXPECT_EQ( 1, qvDictLength( dict ) );
}

// ---- Merging ----

TEST( Dict, Merges )
{
    struct
    {
        const char *dest, *src, *included, *includedReplacing, *excluded, *intersected, *intersectedReplacing;
        bool areDisjoint;
    } rows[] = {
        { "", "", "{}", "{}", "{}", "{}", "{}", true },
        { "a1", "", "{a=1}", "{a=1}", "{a=1}", "{}", "{}", true },
        { "", "a1", "{a=1}", "{a=1}", "{}", "{}", "{}", true },
        { "a1 c3", "b2", "{a=1, b=2, c=3}", "{a=1, b=2, c=3}", "{a=1, c=3}", "{}", "{}", true },
        { "a1 b2 c3", "b7 c8 d9", "{a=1, b=2, c=3, d=9}", "{a=1, b=7, c=8, d=9}", "{a=1}", "{b=2, c=3}",
          "{b=7, c=8}", false },
    };
    for ( auto &row : rows )
    {
        Dict src = lettered( row.src );
        auto edited = [&]( auto edit ) {
            Dict dest = lettered( row.dest );
            edit( dest.edit() );
            return toText( dest );
        };
        EXPECT_EQ( row.included, edited( [&]( auto dest ) { qvDictInclude( dest, src, QV_FALSE ); } ) );
        EXPECT_EQ( row.includedReplacing,
                   edited( [&]( auto dest ) { qvDictInclude( dest, src, QV_TRUE ); } ) );
        EXPECT_EQ( row.excluded, edited( [&]( auto dest ) { qvDictExclude( dest, src ); } ) );
        EXPECT_EQ( row.intersected, edited( [&]( auto dest ) { qvDictIntersect( dest, src, QV_FALSE ); } ) );
        EXPECT_EQ( row.intersectedReplacing,
                   edited( [&]( auto dest ) { qvDictIntersect( dest, src, QV_TRUE ); } ) );
        Dict dest = lettered( row.dest );
        EXPECT_EQ( row.areDisjoint, qvDictDisjoint( dest, src ) );
        EXPECT_EQ( row.areDisjoint, qvDictDisjoint( src, dest ) );
        qvDictInclude( dest.edit(), dest, QV_TRUE );
        EXPECT_EQ( toText( lettered( row.dest ) ), toText( dest ) );
        qvDictExclude( dest.edit(), dest );
        EXPECT_EQ( qv___DictEmpty, dest );
    }
}

// The merged dictionary may have no other holder than a value that the merge replaces or deletes.
TEST( Dict, MergesADictionaryThatOnlyItselfHolds )
{
    Dict dest = lettered( "b2" );
    Dict src = lettered( "a1 b7" );
    qvDictSetStringKeyCstr( dest.edit(), "a", 1, qv::objOf<QV_DICT>( src ) );
    QV_DICT *held = src;
    src.take( nullptr );
    qvDictInclude( dest.edit(), held, QV_TRUE );
    EXPECT_EQ( "{a=1, b=7}", toText( dest ) );

    Dict inner = lettered( "a1" );
    qvDictSetStringKeyCstr( dest.edit(), "a", 1, qv::objOf<QV_DICT>( inner ) );
    held = inner;
    inner.take( nullptr );
    qvDictExclude( dest.edit(), held );
    EXPECT_EQ( "{b=7}", toText( dest ) );
}

TEST( Dict, DeletesByValue )
{
    Dict dict = lettered( "ax by cx dx" );
    Local<QV_STRING> x = text( "x" );
    qvDictDelValue( dict.edit(), qv::objOf<QV_STRING>( x ), QV_FALSE );
    EXPECT_EQ( 4, qvDictLength( dict ) );
    // The value of the first pair itself, which the dictionary alone holds.
    qvDictDelValue( dict.edit(), dict->items[0].val, QV_TRUE );
    EXPECT_EQ( "{b=y}", toText( dict ) );
    qvDictDelValue( dict.edit(), dict->items[0].val, QV_FALSE );
    EXPECT_EQ( qv___DictEmpty, dict );
}

// ---- Order, text, release ----

TEST( Dict, ComparesPairByPair )
{
    const Dict ascending[] = { lettered( "" ),      lettered( "a1" ), lettered( "a1 b1" ),
                               lettered( "a1 b2" ), lettered( "a2" ), lettered( "b1" ) };
    expectAscending( ascending, qvDictCompare );
    EXPECT_EQ( 0, qvDictCompare( lettered( "a1 b2" ), lettered( "a1 b2" ) ) );
}

TEST( Dict, ReleasesKeyThenValueFromTheFirstPair )
{
    std::vector<int> expected;
    {
        Dict dict( qvDictCreate() );
        for ( int id = 0; id < 50; ++id )
        {
            qvDictSetObjKey( dict.edit(), traced( id ), traced( 1000 + id ) );
            expected.insert( expected.end(), { id, 1000 + id } );
        }
        tracedFrees.clear();
    }
    EXPECT_EQ( expected, tracedFrees );
}

TEST( DictDeath, StopsAtFaultsOfTheCaller )
{
    Dict dict = lettered( "a1" );
    Local<QV_VECTOR> one( qvVectorCreateFromObj( qv::objOf<QV_DICT>( dict ) ) );
    EXPECT_DEATH( qvDictLength( nullptr ), "dict" );
    EXPECT_DEATH( qvDictKeyAt( dict, 1 ), "idx < dict->length" );
    EXPECT_DEATH( qvDictSetValueAt( dict.edit(), -1, dict->items[0].key ), "idx >= 0" );
    EXPECT_DEATH( qvDictSetObjKey( dict.edit(), nullptr, dict->items[0].key ), "key" );
    EXPECT_DEATH( qvDictSetStringKeyCstr( dict.edit(), "k", 1, nullptr ), "value" );
    EXPECT_DEATH( qvDictObjKey( dict, nullptr ), "key" );
    EXPECT_DEATH( qvDictCreateWithKeysAndValues( one, qv___VectorEmpty ), "vectorLength" );
}

} // namespace
