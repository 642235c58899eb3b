#include "support/test.hh"
#include "support/traced.hh"

#include <qv/base/qv_priority_map.hh>

using namespace test;

namespace
{

using Map = Local<QV_PRIORITY_MAP>;
using Obj = Local<qv___Obj>;
using Member = std::pair<QV_INT, int>; // priority and id, which is the order of the map

std::vector<Member> membersOf( QV_PRIORITY_MAP *map )
{
    std::vector<Member> members;
    Local<QV_VECTOR> values( qvPriorityMapValuesVector( map ) );
    for ( QV_INT idx = 0; idx < qvPriorityMapLength( map ); ++idx )
    {
        Obj value( qvPriorityMapValueAt( map, idx ) );
        EXPECT_EQ( qv::vectorAt( values, idx ), value );
        members.emplace_back( qvPriorityMapPriorityAt( map, idx ), tracedId( value ) );
    }
    return members;
}

std::vector<Member> sorted( const std::map<int, QV_INT> &model )
{
    std::vector<Member> members;
    for ( auto &[id, priority] : model )
        members.emplace_back( priority, id );
    std::sort( members.begin(), members.end() );
    return members;
}

// What a reading function gives at a position of the model, which may lie outside.
void expectMember( const std::vector<Member> &members, QV_INT idx, qvObj given, QV_INT priority )
{
    Obj owner( given );
    bool isInside = idx >= 0 && idx < lengthOf( members );
    EXPECT_EQ( isInside, given != nullptr );
    EXPECT_EQ( isInside ? members[static_cast<size_t>( idx )].first : 0, priority );
    if ( isInside && given )
    {
        EXPECT_EQ( members[static_cast<size_t>( idx )].second, tracedId( given ) );
    }
}

void expectReads( const std::vector<Member> &members, QV_PRIORITY_MAP *map, int id )
{
    Obj sought = traced( id );
    auto found = std::find_if( members.begin(), members.end(),
                               [id]( const Member &member ) { return member.second == id; } );
    bool isMember = found != members.end();
    QV_INT idx = isMember ? found - members.begin() : -1;
    EXPECT_EQ( idx, qvPriorityMapIndexOf( map, sought ) );
    EXPECT_EQ( isMember, qvPriorityMapHas( map, sought ) );
    QV_INT last = lengthOf( members ) - 1;
    QV_INT priority = -7;
    qvObj given = qvPriorityMapHigher( map, sought, &priority );
    expectMember( members, isMember ? idx + 1 : -1, given, priority );
    given = qvPriorityMapLower( map, sought, &priority );
    expectMember( members, isMember ? idx - 1 : -1, given, priority );
    given = qvPriorityMapHighest( map, &priority );
    expectMember( members, last, given, priority );
    given = qvPriorityMapLowest( map, &priority );
    expectMember( members, 0, given, priority );
}

TEST( PriorityMap, RandomEditsMatchAModel )
{
    for ( unsigned seed = 1; seed <= 10; ++seed )
    {
        std::mt19937 random( seed );
        Map map( qvPriorityMapCreate() );
        std::map<int, QV_INT> model;
        for ( int step = 0; step < 500; ++step )
        {
            bool isShared = random() % 4 == 0;
            Map holder = Map::share( isShared ? static_cast<QV_PRIORITY_MAP *>( map ) : nullptr );
            std::vector<Member> before = sorted( model );
            int id = static_cast<int>( random() % 60 );
            switch ( random() % 6 )
            {
            case 0:
                qvPriorityMapDel( map.edit(), traced( id ) );
                model.erase( id );
                break;
            case 1:
                if ( !model.empty() )
                {
                    size_t idx = random() % model.size();
                    model.erase( before[idx].second );
                    qvPriorityMapDelAt( map.edit(), static_cast<QV_INT>( idx ) );
                }
                break;
            case 2:
                if ( !model.empty() )
                {
                    size_t idx = random() % model.size();
                    Obj member( qvPriorityMapValueAt( map, static_cast<QV_INT>( idx ) ) );
                    QV_INT priority = static_cast<QV_INT>( random() % 9 ) - 4;
                    qvPriorityMapSet( map.edit(), priority, member );
                    model[before[idx].second] = priority;
                }
                break;
            default: {
                QV_INT priority = static_cast<QV_INT>( random() % 9 ) - 4;
                qvPriorityMapSet( map.edit(), priority, traced( id ) );
                model[id] = priority;
            }
            }
            ASSERT_EQ( sorted( model ), membersOf( map ) ) << "step " << step;
            if ( isShared )
            {
                ASSERT_EQ( before, membersOf( holder ) ) << "step " << step;
            }
            expectReads( sorted( model ), map, static_cast<int>( random() % 60 ) );
        }
    }
}

TEST( PriorityMap, HoldsItselfAsItWas )
{
    Map map( qvPriorityMapCreate() );
    qvPriorityMapSet( map.edit(), 3, traced( 1 ) );
    qvPriorityMapSet( map.edit(), 4, qv::objOf<QV_PRIORITY_MAP>( map ) );
    EXPECT_EQ( 2, qvPriorityMapLength( map ) );
    Obj inner( qvPriorityMapHighest( map, nullptr ) );
    EXPECT_EQ( 1, qvPriorityMapLength( qvPriorityMapFrom( inner ) ) );
}

// A member that only the map holds is named by the map's own reference.
TEST( PriorityMap, MovesAMemberThatOnlyItselfHolds )
{
    Map map( qvPriorityMapCreate() );
    qvPriorityMapSet( map.edit(), 3, traced( 1 ) );
    qvObj held = Obj( qvPriorityMapLowest( map, nullptr ) );
    qvPriorityMapSet( map.edit(), 9, held );
    EXPECT_EQ( 9, qvPriorityMapPriorityAt( map, 0 ) );
    tracedFrees.clear();
    qvPriorityMapDel( map.edit(), held );
    EXPECT_EQ( std::vector<int>{ 1 }, tracedFrees );
}

TEST( PriorityMap, ComparesByPriorityFirst )
{
    Map low( qvPriorityMapCreate() );
    Map high( qvPriorityMapCreate() );
    qvPriorityMapSet( low.edit(), 1, traced( 8 ) );
    qvPriorityMapSet( high.edit(), 2, traced( 3 ) );
    EXPECT_EQ( -1, qvPriorityMapCompare( low, high ) );
    Map copy( qvPriorityMapCreateFrom( low ) );
    EXPECT_TRUE( qvPriorityMapEquals( low, copy ) );
    qvPriorityMapSet( copy.edit(), 1, traced( 9 ) );
    EXPECT_EQ( 1, qvPriorityMapCompare( copy, low ) );
    qvPriorityMapClear( copy.edit() );
    EXPECT_EQ( 0, qvPriorityMapLength( copy ) );
}

TEST( PriorityMapDeath, StopsAtFaultsOfTheCaller )
{
    Map map( qvPriorityMapCreate() );
    EXPECT_DEATH( qvPriorityMapSet( map.edit(), 1, nullptr ), "obj" );
    EXPECT_DEATH( qvPriorityMapValueAt( map, 0 ), "idx < " );
    EXPECT_DEATH( qvPriorityMapDelAt( map.edit(), -1 ), "idx >= 0" );
    EXPECT_DEATH( qvPriorityMapIndexOf( nullptr, nullptr ), "map" );
}

} // namespace
