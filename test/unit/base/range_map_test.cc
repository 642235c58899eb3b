#include "support/test.hh"
#include "support/traced.hh"

#include <qv/base/qv_range_map.hh>

using namespace test;

namespace
{

using Map = Local<QV_RANGE_MAP>;
using Obj = Local<qv___Obj>;

struct Range
{
    QV_INT startingKey, endingKey;
    qvObj value;

    bool operator==( const Range & ) const = default;
};

std::vector<Range> rangesOf( QV_RANGE_MAP *map )
{
    std::vector<Range> ranges;
    for ( QV_INT idx = 0; idx < qvRangeMapLength( map ); ++idx )
    {
        Range range = {};
        range.value = Obj( qv___RangeMapObjAt( map, idx, &range.startingKey, &range.endingKey ) );
        ranges.push_back( range );
    }
    return ranges;
}

// ---- Random edits ----

// Each key by itself: its value, and the number of the edit that put it there, by which adjoining ranges stay apart.
struct Cell
{
    qvObj value = nullptr;
    int edit = 0;
};

constexpr QV_INT keys = 300;

class RangeMapEdits
{
  public:
    explicit RangeMapEdits( unsigned seed ) : random_( seed )
    {
        for ( int id = 0; id < 6; ++id )
            values_.push_back( traced( id / 2 ) );
    }

    void run( int steps )
    {
        for ( int step = 0; step < steps; ++step )
        {
            bool isShared = pick( 4 ) == 0;
            Map holder = Map::share( isShared ? static_cast<QV_RANGE_MAP *>( map_ ) : nullptr );
            std::vector<Range> before = modelRanges();
            edit( step + 1 );
            ASSERT_EQ( modelRanges(), rangesOf( map_ ) ) << "step " << step;
            ASSERT_EQ( map_->alloc * static_cast<QV_INT>( sizeof( qv___RangeMapRange ) ),
                       qv___ObjDbgAllocationSize( map_ ) );
            ASSERT_LT( map_->alloc - map_->length, 128 );
            if ( isShared )
            {
                ASSERT_EQ( before, rangesOf( holder ) ) << "step " << step;
            }
            lookUp();
        }
    }

  private:
    QV_INT pick( QV_INT limit )
    {
        return static_cast<QV_INT>( random_() % static_cast<unsigned>( limit ) );
    }

    void edit( int number )
    {
        QV_INT startingKey = pick( keys );
        QV_INT endingKey = std::min( keys - 1, startingKey + ( pick( 40 ) == 0 ? pick( keys ) : pick( 4 ) ) );
        switch ( pick( 12 ) )
        {
        case 0:
        case 1:
        case 2:
            qvRangeMapDelRangeKey( map_.edit(), startingKey, endingKey );
            fill( startingKey, endingKey, {} );
            break;
        case 3:
            if ( pick( 10 ) == 0 )
            {
                qvRangeMapCollapse( map_.edit() );
                collapse( 0 );
            }
            break;
        case 4:
            if ( pick( 10 ) == 0 )
            {
                isCollapsing_ = !isCollapsing_;
                qvRangeMapSetAutoCollapse( map_.edit(), isCollapsing_ );
                if ( isCollapsing_ )
                    collapse( 0 );
            }
            break;
        default: {
            qvObj value = values_[static_cast<size_t>( pick( 6 ) )];
            qvRangeMapSetRangeKey( map_.edit(), startingKey, endingKey, value );
            fill( startingKey, endingKey, { value, number } );
            if ( isCollapsing_ )
                collapse( 0 );
        }
        }
    }

    void fill( QV_INT startingKey, QV_INT endingKey, Cell cell )
    {
        for ( QV_INT key = startingKey; key <= endingKey; ++key )
            cells_[key] = cell;
    }

    // The first value of a run of equal ones stays.
    void collapse( QV_INT from )
    {
        for ( QV_INT key = from + 1; key < keys; ++key )
        {
            if ( cells_[key].value && cells_[key - 1].value &&
                 qvObjCompare( cells_[key].value, cells_[key - 1].value ) == 0 )
                cells_[key] = cells_[key - 1];
        }
    }

    bool isSameRange( const Cell &a, const Cell &b ) const
    {
        return a.value == b.value && a.edit == b.edit;
    }

    std::vector<Range> modelRanges() const
    {
        std::vector<Range> ranges;
        for ( QV_INT key = 0; key < keys; ++key )
        {
            if ( !cells_[key].value )
                continue;
            if ( key > 0 && isSameRange( cells_[key - 1], cells_[key] ) )
                ranges.back().endingKey = key;
            else
                ranges.push_back( { key, key, cells_[key].value } );
        }
        return ranges;
    }

    void lookUp()
    {
        QV_INT key = pick( keys + 2 ) - 1;
        qvObj expected = key >= 0 && key < keys ? cells_[key].value : nullptr;
        Obj value( qvRangeMapIntKey( map_, key ) );
        EXPECT_EQ( expected, value );
        EXPECT_EQ( QV_BOOL_FROM( expected ), qvRangeMapHasIntKey( map_, key ) );
    }

    std::mt19937 random_;
    std::vector<Obj> values_;
    Map map_{ qvRangeMapCreate() };
    bool isCollapsing_ = false;
    Cell cells_[keys];
};

TEST( RangeMap, RandomEditsMatchAModel )
{
    for ( unsigned seed = 1; seed <= 20; ++seed )
        RangeMapEdits( seed ).run( 500 );
}

// ---- Single behaviours ----

std::string toText( QV_RANGE_MAP *map )
{
    return takeUtf8( qvRangeMapToString( map ) );
}

void set( Map *map, QV_INT startingKey, QV_INT endingKey, const char *value )
{
    Local<QV_STRING> text = test::text( value );
    qvRangeMapSetRangeKey( map->edit(), startingKey, endingKey, qv::objOf<QV_STRING>( text ) );
}

TEST( RangeMap, StraddlersSurviveOnBothSides )
{
    Map map( qvRangeMapCreate() );
    EXPECT_EQ( "{}", toText( map ) );
    set( &map, 10, 20, "a" );
    set( &map, 14, 16, "b" );
    EXPECT_EQ( "{[10,13]=a, [14,16]=b, [17,20]=a}", toText( map ) );
    EXPECT_EQ( map->ranges[0].value, map->ranges[2].value );
    qvRangeMapSetAutoCollapse( map.edit(), QV_TRUE );
    set( &map, 14, 16, "a" );
    qvRangeMapDelIntKey( map.edit(), 12 );
    EXPECT_EQ( "{[10,11]=a, [13,20]=a}", toText( map ) );
    qvRangeMapClear( map.edit() );
    EXPECT_FALSE( qvRangeMapAutoCollapse( map ) );
}

TEST( RangeMap, ReachesBothEndsOfTheIntegers )
{
    Map map( qvRangeMapCreateAutoCollapsing() );
    set( &map, QV_INT_MIN, QV_INT_MAX, "a" );
    set( &map, 0, 0, "b" );
    EXPECT_EQ( -1, qvRangeMapEndingKeyAt( map, 0 ) );
    EXPECT_EQ( 1, qvRangeMapStartingKeyAt( map, 2 ) );
    set( &map, QV_INT_MAX, QV_INT_MAX, "c" );
    set( &map, QV_INT_MIN, QV_INT_MIN, "c" );
    EXPECT_EQ( 5, qvRangeMapLength( map ) );
    qvRangeMapDelRangeKey( map.edit(), QV_INT_MIN + 1, QV_INT_MAX - 1 );
    EXPECT_EQ( 2, qvRangeMapLength( map ) );
    EXPECT_TRUE( qvRangeMapHasIntKey( map, QV_INT_MAX ) );
    qvRangeMapCollapse( map.edit() );
    EXPECT_EQ( 2, qvRangeMapLength( map ) );
    set( &map, QV_INT_MIN, QV_INT_MAX, "d" );
    EXPECT_EQ( 1, qvRangeMapLength( map ) );
}

TEST( RangeMap, EveryEditThatDeletesGivesSpareRangesBack )
{
    constexpr QV_INT count = 200;
    Map full( qvRangeMapCreate() );
    for ( QV_INT key = 0; key < count; ++key )
        set( &full, 2 * key, 2 * key, "a" );
    struct
    {
        const char *name;
        void ( *edit )( Map *map );
        QV_INT length;
    } edits[] = {
        { "deleted", []( Map *map ) { qvRangeMapDelRangeKey( map->edit(), 0, count ); }, count / 2 - 1 },
        { "covered", []( Map *map ) { set( map, 0, count, "b" ); }, count / 2 },
    };
    for ( const auto &row : edits )
    {
        Map map( qvRangeMapCreateFrom( full ) );
        QV_INT before = map->alloc;
        row.edit( &map );
        EXPECT_EQ( row.length, qvRangeMapLength( map ) ) << row.name;
        EXPECT_EQ( before - 64, map->alloc ) << row.name;
    }
}

TEST( RangeMap, ValuesMayHaveNoOtherHolder )
{
    Map map( qvRangeMapCreate() );
    set( &map, 1, 5, "a" );
    qvRangeMapSetRangeKey( map.edit(), 1, 9, map->ranges[0].value );
    EXPECT_EQ( "{[1,9]=a}", toText( map ) );
    qvRangeMapSetIntKey( map.edit(), 3, qv::objOf<QV_RANGE_MAP>( map ) );
    EXPECT_EQ( "{[1,2]=a, [3,3]={[1,9]=a}, [4,9]=a}", toText( map ) );
}

TEST( RangeMap, AbsentKeysLeaveASharedMapShared )
{
    Map map( qvRangeMapCreate() );
    set( &map, 1, 5, "a" );
    Map holder = Map::share( map );
    qvRangeMapDelRangeKey( map.edit(), 6, 100 );
    qvRangeMapDelRangeKey( map.edit(), -6, 0 );
    qvRangeMapSetAutoCollapse( map.edit(), QV_FALSE );
    EXPECT_EQ( holder, map );
}

TEST( RangeMap, ComparesStartEndAndValue )
{
    struct
    {
        QV_INT startingKey, endingKey;
        const char *value;
    } ascending[] = { { 1, 5, "a" }, { 1, 5, "b" }, { 1, 6, "a" }, { 2, 2, "a" } };
    std::vector<Map> maps;
    maps.emplace_back( qvRangeMapCreate() );
    for ( auto &row : ascending )
    {
        maps.emplace_back( qvRangeMapCreate() );
        set( &maps.back(), row.startingKey, row.endingKey, row.value );
    }
    maps.emplace_back( qvRangeMapCreateFrom( maps.back() ) );
    set( &maps.back(), 7, 7, "a" );
    expectAscending( maps, qvRangeMapCompare );
}

TEST( RangeMapDeath, StopsAtFaultsOfTheCaller )
{
    Map map( qvRangeMapCreate() );
    Obj value = traced( 1 );
    EXPECT_DEATH( qvRangeMapSetRangeKey( map.edit(), 2, 1, value ), "startingKey <= endingKey" );
    EXPECT_DEATH( qvRangeMapDelRangeKey( map.edit(), 2, 1 ), "startingKey <= endingKey" );
    EXPECT_DEATH( qvRangeMapSetIntKey( map.edit(), 2, nullptr ), "value" );
    EXPECT_DEATH( qvRangeMapObjAt( map, 0 ), "idx < map->length" );
    EXPECT_DEATH( qvRangeMapLength( nullptr ), "map" );
}

} // namespace
