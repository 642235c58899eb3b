#include "support/test.hh"
#include "support/small_stack.hh"
#include "support/traced.hh"

#include <qv/base/qv_dict.hh>

using namespace test;

namespace
{

using Vector = Local<QV_VECTOR>;
using Objs = std::vector<qvObj>;

// ---- Planning ----

constexpr qv::VectorLimits tiny = { 6, 2, 4 };

const struct
{
    const char *name;
    qv::VectorShape shape;
    QV_INT atIndex, count;
    qv::VectorPlan plan; // slots, head, gap, tail, fspace, bspace
} roomRows[] = {
    { "front, fits", { 0, 2, 4, true }, 0, 2, { 0, 0, 0, 2, 0, 4 } },
    { "front, fits behind spare", { 3, 5, 0, false }, 0, 2, { 0, 0, 3, 5, 3, 0 } },
    { "front, slides up", { 3, 1, 4, false }, 0, 3, { 0, 0, 0, 3, 0, 2 } },
    { "front, slides up into the last slot", { 1, 1, 4, true }, 0, 5, { 0, 0, 0, 5, 0, 0 } },
    { "front, grows", { 3, 1, 4, false }, 0, 6, { 15, 0, 2, 8, 2, 4 } },
    { "empty, grows", { 0, 2, 4, true }, 0, 7, { 13, 0, 2, 9, 2, 4 } },
    { "back, fits", { 3, 1, 4, false }, 3, 4, { 0, 1, 4, 8, 1, 0 } },
    { "back, inline slides down", { 3, 2, 1, true }, 3, 2, { 0, 0, 3, 5, 0, 1 } },
    { "back, an array never slides", { 3, 5, 1, false }, 3, 2, { 14, 5, 8, 10, 5, 4 } },
    { "back, grows", { 3, 2, 1, true }, 3, 4, { 13, 2, 5, 9, 2, 4 } },
    { "middle, tail moves up", { 3, 1, 4, false }, 1, 4, { 0, 1, 2, 6, 1, 0 } },
    { "middle, both move", { 3, 3, 1, false }, 2, 3, { 0, 1, 3, 6, 1, 0 } },
    { "middle, grows", { 3, 1, 2, true }, 1, 4, { 13, 2, 3, 7, 2, 4 } },
    { "middle, grows and the head moves down", { 3, 5, 0, false }, 1, 6, { 15, 2, 3, 9, 2, 4 } },
};

TEST( Vector, PlansRoomByTheTable )
{
    for ( const auto &row : roomRows )
    {
        qv::VectorPlan plan = qv::vectorPlanRoom( row.shape, row.atIndex, row.count, tiny );
        EXPECT_EQ( row.plan.allocSlots, plan.allocSlots ) << row.name;
        EXPECT_EQ( row.plan.gapSlot, plan.gapSlot ) << row.name;
        EXPECT_EQ( row.plan.fspace, plan.fspace ) << row.name;
        EXPECT_EQ( row.plan.bspace, plan.bspace ) << row.name;
        if ( row.atIndex > 0 )
        {
            EXPECT_EQ( row.plan.headSlot, plan.headSlot ) << row.name;
        }
        if ( row.atIndex < row.shape.length )
        {
            EXPECT_EQ( row.plan.tailSlot, plan.tailSlot ) << row.name;
        }
    }
}

void expectSoundPlan( const qv::VectorShape &shape, QV_INT atIndex, QV_INT count )
{
    qv::VectorPlan plan = qv::vectorPlanRoom( shape, atIndex, count, tiny );
    SCOPED_TRACE( testing::Message() << shape.fspace << " " << shape.length << " " << shape.bspace
                                     << " inline " << shape.isInline << " gap of " << count << " at "
                                     << atIndex );
    QV_INT slots = plan.allocSlots > 0 ? plan.allocSlots : shape.fspace + shape.length + shape.bspace;
    EXPECT_EQ( slots, plan.fspace + shape.length + count + plan.bspace );
    EXPECT_GE( plan.fspace, 0 );
    EXPECT_GE( plan.bspace, 0 );
    EXPECT_EQ( plan.fspace + atIndex, plan.gapSlot );
    if ( atIndex > 0 )
    {
        EXPECT_EQ( plan.fspace, plan.headSlot );
    }
    if ( atIndex < shape.length )
    {
        EXPECT_EQ( plan.gapSlot + count, plan.tailSlot );
    }
    if ( plan.allocSlots > 0 )
    {
        EXPECT_GT( count, atIndex == shape.length && atIndex > 0 && !shape.isInline
                              ? shape.bspace
                              : shape.fspace + shape.bspace );
    }
    // The mover moves the tail first.
    if ( atIndex < shape.length )
    {
        EXPECT_GE( plan.tailSlot, shape.fspace + atIndex );
    }
}

TEST( Vector, PlansLeaveItemsInOrderAndSlotsAccountedFor )
{
    for ( QV_INT fspace = 0; fspace <= 6; ++fspace )
        for ( QV_INT length = 0; length <= 6; ++length )
            for ( QV_INT bspace = 0; bspace <= 6; ++bspace )
                for ( QV_INT atIndex = 0; atIndex <= length; ++atIndex )
                    for ( QV_INT count = 1; count <= 14; ++count )
                        for ( bool isInline : { false, true } )
                            expectSoundPlan( { length, fspace, bspace, isInline }, atIndex, count );
}

TEST( Vector, PlansCompactionByTheTable )
{
    using Action = qv::VectorCompactAction;
    const struct
    {
        qv::VectorShape shape;
        qv::VectorCompactPlan plan;
    } rows[] = {
        { { 0, 9, 10, false }, { Action::centre, 9, 10 } },
        { { 0, 0, 6, true }, { Action::centre, 3, 3 } },
        { { 0, 20, 1, false }, { Action::centre, 10, 11 } },
        { { 1, 4, 8, false }, { Action::none, 4, 8 } },
        { { 1, 5, 0, true }, { Action::none, 5, 0 } },
        { { 6, 5, 0, false }, { Action::toInline, 0, 0 } },
        { { 1, 0, 9, false }, { Action::toInline, 0, 5 } },
        { { 7, 5, 0, false }, { Action::shrink, 2, 4 } },
        { { 7, 0, 9, false }, { Action::shrink, 2, 4 } },
    };
    for ( const auto &row : rows )
    {
        qv::VectorCompactPlan plan = qv::vectorPlanCompact( row.shape, tiny );
        EXPECT_EQ( row.plan.action, plan.action ) << row.shape.length << " " << row.shape.fspace;
        EXPECT_EQ( row.plan.fspace, plan.fspace ) << row.shape.length << " " << row.shape.fspace;
        EXPECT_EQ( row.plan.bspace, plan.bspace ) << row.shape.length << " " << row.shape.fspace;
    }
}

// ---- Random edits ----

Objs objsOf( QV_VECTOR *vec )
{
    const qvObj *items = qvVectorBacking( vec );
    return Objs( items, items + qvVectorLength( vec ) );
}

void expectInvariant( QV_VECTOR *vec )
{
    ASSERT_GE( vec->length, 0 );
    ASSERT_GE( vec->fspace, 0 );
    ASSERT_GE( vec->bspace, 0 );
    QV_INT slots = vec->fspace + vec->length + vec->bspace;
    if ( qv::vectorIsInline( vec ) )
    {
        ASSERT_EQ( QV___VECTOR_INLINE, slots );
    }
    ASSERT_EQ( qv::vectorIsInline( vec ) ? 0 : slots * static_cast<QV_INT>( sizeof( qvObj ) ),
               qv___ObjDbgAllocationSize( vec ) );
}

class VectorEdits
{
  public:
    explicit VectorEdits( unsigned seed ) : random_( seed )
    {
        for ( int id = 0; id < 40; ++id )
            pool_.push_back( traced( id ) );
    }

    void run( int steps )
    {
        for ( int step = 0; step < steps; ++step )
        {
            // Now and then a second holder, whose view must not change.
            bool isShared = pick( 3 ) == 0;
            Vector holder = Vector::share( isShared ? static_cast<QV_VECTOR *>( vec_ ) : nullptr );
            Objs before = model_;
            int operation = pick( 13 );
            edit( operation );
            SCOPED_TRACE( testing::Message() << "step " << step << " operation " << operation );
            ASSERT_EQ( model_, objsOf( vec_ ) );
            expectInvariant( vec_ );
            if ( isShared )
            {
                ASSERT_EQ( before, objsOf( holder ) );
            }
        }
    }

  private:
    QV_INT pick( QV_INT limit )
    {
        return static_cast<QV_INT>( random_() % static_cast<unsigned>( limit ) );
    }

    QV_INT length() const
    {
        return lengthOf( model_ );
    }

    // A range of a vector, mostly short and sometimes everything.
    std::pair<QV_INT, QV_INT> range( QV_INT of )
    {
        QV_INT offset = pick( of + 1 );
        QV_INT count = pick( pick( 4 ) == 0 ? of - offset + 1 : std::min<QV_INT>( of - offset, 5 ) + 1 );
        return { offset, count };
    }

    void insertModel( QV_INT idx, const Objs &objs )
    {
        model_.insert( model_.begin() + idx, objs.begin(), objs.end() );
    }

    void eraseModel( QV_INT offset, QV_INT count )
    {
        model_.erase( model_.begin() + offset, model_.begin() + offset + count );
    }

    Objs someObjs( int most )
    {
        Objs objs;
        for ( QV_INT count = pick( most ); count > 0; --count )
            objs.push_back( pool_[static_cast<size_t>( pick( 40 ) )] );
        return objs;
    }

    QV_INT somePlace()
    {
        QV_INT kind = pick( 3 );
        return kind == 0 ? 0 : kind == 1 ? length() : pick( length() + 1 );
    }

    void edit( int operation )
    {
        switch ( operation )
        {
        case 0:
        case 1: {
            Objs objs = someObjs( pick( 6 ) == 0 ? 90 : 6 );
            QV_INT idx = somePlace();
            qvVectorInsertObjs( vec_.edit(), idx, objs.data(), lengthOf( objs ) );
            insertModel( idx, objs );
            break;
        }
        case 2:
            insertFromVector();
            break;
        case 3: {
            qvObj obj = pool_[static_cast<size_t>( pick( 40 ) )];
            QV_INT idx = pick( length() + 2 ) - 1;
            qvVectorSetObjAt( vec_.edit(), idx, obj );
            if ( idx == -1 || idx == length() )
                insertModel( idx == -1 ? 0 : idx, { obj } );
            else
                model_[static_cast<size_t>( idx )] = obj;
            break;
        }
        case 4:
        case 5: {
            auto [offset, count] = range( length() );
            qvVectorDelInner( vec_.edit(), offset, count );
            eraseModel( offset, count );
            if ( count > 0 && model_.empty() )
            {
                EXPECT_EQ( qv___VectorEmpty, vec_ );
            }
            break;
        }
        case 6: {
            auto [offset, count] = range( length() );
            if ( count < length() / 2 )
                break;
            qvVectorDelOuter( vec_.edit(), offset, count );
            model_ = Objs( model_.begin() + offset, model_.begin() + offset + count );
            break;
        }
        case 7:
            if ( length() > 0 )
            {
                Local<qv___Obj> last( qvVectorPop( vec_.edit() ) );
                EXPECT_EQ( model_.back(), last );
                model_.pop_back();
            }
            break;
        case 8:
            if ( length() > 0 )
            {
                Local<qv___Obj> first( qvVectorUnshift( vec_.edit() ) );
                EXPECT_EQ( model_.front(), first );
                eraseModel( 0, 1 );
            }
            break;
        case 9:
            qvVectorReverse( vec_.edit() );
            std::reverse( model_.begin(), model_.end() );
            break;
        case 10:
            qvVectorQsort( vec_.edit() );
            std::sort( model_.begin(), model_.end(),
                       []( qvObj a, qvObj b ) { return tracedId( a ) < tracedId( b ); } );
            break;
        case 11: {
            Objs objs = someObjs( 5 );
            for ( qvObj obj : objs )
                qvObjRetain( obj );
            qv___VectorPushNoRetain( vec_.edit(), objs.data(), lengthOf( objs ) );
            insertModel( length(), objs );
            break;
        }
        case 12:
            if ( length() > 150 )
            {
                qvVectorDelTrailing( vec_.edit(), length() - 5 );
                eraseModel( 5, length() - 5 );
            }
            break;
        }
    }

    // Parts of another vector or of the vector itself, in the five selections.
    void insertFromVector()
    {
        Objs objs = someObjs( 12 );
        Vector other( qvVectorCreate() );
        qvVectorAppendObjs( other.edit(), objs.data(), lengthOf( objs ) );
        bool isSelf = pick( 3 ) == 0 && length() < 100;
        QV_VECTOR *src = isSelf ? vec_ : other;
        if ( isSelf )
            objs = model_;
        QV_INT size = lengthOf( objs );
        auto [offset, count] = range( size );
        QV_INT idx = somePlace();
        switch ( pick( 5 ) )
        {
        case 0:
            qvVectorInsert( vec_.edit(), idx, src );
            break;
        case 1:
            qvVectorInsertInner( vec_.edit(), idx, src, offset, count );
            objs = Objs( objs.begin() + offset, objs.begin() + offset + count );
            break;
        case 2:
            qvVectorInsertLeading( vec_.edit(), idx, src, count );
            objs.resize( static_cast<size_t>( count ) );
            break;
        case 3:
            qvVectorInsertTrailing( vec_.edit(), idx, src, count );
            objs = Objs( objs.end() - count, objs.end() );
            break;
        case 4:
            qvVectorInsertOuter( vec_.edit(), idx, src, offset, count );
            objs.erase( objs.begin() + offset, objs.begin() + offset + count );
            break;
        }
        insertModel( idx, objs );
    }

    std::mt19937 random_;
    std::vector<Local<qv___Obj>> pool_;
    Vector vec_{ qvVectorCreate() };
    Objs model_;
};

TEST( Vector, RandomEditsMatchAModel )
{
    for ( unsigned seed = 1; seed <= 30; ++seed )
        VectorEdits( seed ).run( 400 );
}

// ---- Storage ----

Vector numbered( int count )
{
    Vector vec( qv::vectorCreateFresh() );
    for ( int id = 0; id < count; ++id )
        qv::vectorAppendGiven( vec.edit(), traced( id ).give() );
    return vec;
}

// The first item of an empty vector takes a slot of the front, wherever it is inserted.
TEST( Vector, AFreshVectorFillsBothEndsWithoutMoving )
{
    Vector vec = numbered( 33 );
    const qvObj *first = qvVectorBacking( vec );
    for ( int id = 0; id < 31; ++id )
        qvVectorPrependObj( vec.edit(), traced( 100 + id ) );
    EXPECT_EQ( first - 31, qvVectorBacking( vec ) );
    EXPECT_EQ( vec->inlineStore, qvVectorBacking( vec ) );
    qvVectorAppendObj( vec.edit(), traced( 200 ) );
    EXPECT_FALSE( qv::vectorIsInline( vec ) );

    Vector slid = numbered( 34 );
    EXPECT_EQ( slid->inlineStore, qvVectorBacking( slid ) );
    expectInvariant( slid );
}

TEST( Vector, CreatingFromObjectsTakesTheReferencesOver )
{
    auto *objs = static_cast<qvObj *>( qvMemAllocN( 3, sizeof( qvObj ) ) );
    for ( int id = 0; id < 3; ++id )
        objs[id] = traced( id ).give();
    Vector used( qvVectorCreateFromObjsUse( objs, 3 ) );
    EXPECT_EQ( objs, qvVectorBacking( used ) );
    expectInvariant( used );
    qvVectorInsertObjs( used.edit(), 1, qvVectorBacking( used ), 3 );
    EXPECT_EQ( 6, qvVectorLength( used ) );

    qvObj copied[] = { traced( 7 ).give(), traced( 8 ).give() };
    Vector copy( qvVectorCreateFromObjsCopy( copied, 2 ) );
    EXPECT_EQ( 2, qvVectorLength( copy ) );
    Vector none( qvVectorCreateFromObjsUse( nullptr, 0 ) );
    EXPECT_EQ( qv___VectorEmpty, none );
}

TEST( Vector, CreatesSelections )
{
    Vector src = numbered( 10 );
    Objs all = objsOf( src );
    struct
    {
        QV_VECTOR *made;
        Objs expected;
    } rows[] = {
        { qvVectorCreateFrom( src ), all },
        { qvVectorCreateFromInner( src, 2, 5 ), Objs( all.begin() + 2, all.begin() + 7 ) },
        { qvVectorCreateFromLeading( src, 4 ), Objs( all.begin(), all.begin() + 4 ) },
        { qvVectorCreateFromTrailing( src, 4 ), Objs( all.end() - 4, all.end() ) },
        { qvVectorCreateFromOuter( src, 1, 8 ), { all[0], all[9] } },
        { qvVectorCreateFromOuter( src, 0, 10 ), {} },
        { qvVectorCreateFromInner( src, 10, 0 ), {} },
        { qvVectorCreateFromObj( all[3] ), { all[3] } },
    };
    for ( auto &row : rows )
    {
        Vector made( row.made );
        EXPECT_EQ( row.expected, objsOf( made ) );
        EXPECT_NE( qv___VectorEmpty, made );
    }
}

TEST( Vector, StoresItselfAsItWas )
{
    Vector vec = numbered( 2 );
    qvVectorAppendObj( vec.edit(), qv::objOf<QV_VECTOR>( vec ) );
    ASSERT_EQ( 3, qvVectorLength( vec ) );
    EXPECT_EQ( 2, qvVectorLength( qvVectorFrom( qvVectorBacking( vec )[2] ) ) );
    qvVectorSetObjAt( vec.edit(), 0, qv::objOf<QV_VECTOR>( vec ) );
    EXPECT_EQ( 3, qvVectorLength( qvVectorFrom( qvVectorBacking( vec )[0] ) ) );
    EXPECT_EQ( 3, qvVectorLength( vec ) );
}

// ---- Reading, order and text ----

TEST( Vector, FindsByIdentityOrValue )
{
    Vector vec = vectorOf( { "a", "b", "c", "b" } );
    Local<QV_STRING> same = text( "b" );
    qvObj equal = qv::objOf<QV_STRING>( same );
    EXPECT_EQ( 1, qvVectorIndexOfObj( vec, equal, QV_TRUE ) );
    EXPECT_EQ( -1, qvVectorIndexOfObj( vec, equal, QV_FALSE ) );
    EXPECT_EQ( 3, qvVectorIndexOfObj( vec, qvVectorBacking( vec )[3], QV_FALSE ) );
    EXPECT_TRUE( qvVectorContainsOnly( vec, qvStringSort() ) );
    EXPECT_TRUE( qvVectorContainsOnly( qv___VectorEmpty, qvDictSort() ) );
    qvVectorAppendObj( vec.edit(), qv::objOf( qvStringSort() ) );
    EXPECT_FALSE( qvVectorContainsOnly( vec, qvStringSort() ) );
    EXPECT_EQ( qvSortSort(), qvVectorSortAt( vec, 4 ) );
}

TEST( Vector, ComparesLikeWords )
{
    const Vector ascending[] = { vectorOf( {} ), vectorOf( { "a" } ), vectorOf( { "a", "a" } ),
                                 vectorOf( { "a", "b" } ), vectorOf( { "b" } ) };
    expectAscending( ascending, qvVectorCompare );
    EXPECT_EQ( 0, qvVectorCompare( vectorOf( { "a", "b" } ), vectorOf( { "a", "b" } ) ) );
}

Vector nested( QV_INT depth, const char *innermost )
{
    Vector vec = vectorOf( { innermost } );
    for ( QV_INT level = 0; level < depth; ++level )
    {
        // Every other level is a dictionary.
        Local<QV_DICT> dict( qvDictCreate() );
        qvDictSetStringKeyCstr( dict.edit(), "k", -1, qv::objOf<QV_VECTOR>( vec ) );
        vec.take( qvVectorCreateFromObj( qv::objOf<QV_DICT>( dict ) ) );
    }
    return vec;
}

TEST( Vector, PrintsItsItems )
{
    EXPECT_EQ( "<>", takeUtf8( qvVectorToString( qv___VectorEmpty ) ) );
    EXPECT_EQ( "<a, b>", takeUtf8( qvVectorToString( vectorOf( { "a", "b" } ) ) ) );
    EXPECT_EQ( "<{k=<{k=<x>}>}>", takeUtf8( qvVectorToString( nested( 2, "x" ) ) ) );
    Vector vec = nested( 1, "x" );
    qvVectorAppendObj( vec.edit(), qv::objOf( qv___VectorEmpty ) );
    qvVectorStringize( vec.edit() );
    EXPECT_TRUE( qvVectorContainsOnly( vec, qvStringSort() ) );
    EXPECT_EQ( "<{k=<x>}, <>>", takeUtf8( qvVectorToString( vec ) ) );
}

TEST( Vector, BoxesPlainValues )
{
    Vector vec( qvVectorCreate() );
    qvVectorAppendInt( vec.edit(), 7 );
    qvVectorPrependBool( vec.edit(), QV_TRUE );
    qvVectorInsertNull( vec.edit(), 1 );
    qvVectorAppendReal( vec.edit(), 2.5 );
    qvVectorPrependStringWcstr( vec.edit(), L"wide", -1 );
    qvVectorAppendStringFormatCstr( vec.edit(), "%i-%i", -1, (QV_INT)1, (QV_INT)2 );
    qvVectorSetStringFormatWcstrAt( vec.edit(), -1, L"<%i>", 4, (QV_INT)9 );
    Local<QV_STRING> format = text( "f%i" );
    qvVectorInsertStringFormat( vec.edit(), 2, format, (QV_INT)3 );
    qvVectorSetIntAt( vec.edit(), 6, 8 );
    EXPECT_EQ( "<<9>, wide, f3, true, null, 7, 8, 1-2>", takeUtf8( qvVectorToString( vec ) ) );
}

TEST( Vector, ShufflesWithoutLoss )
{
    Vector vec = numbered( 200 );
    Objs before = objsOf( vec );
    qvVectorShuffle( vec.edit() );
    Objs after = objsOf( vec );
    EXPECT_NE( before, after );
    std::sort( before.begin(), before.end() );
    std::sort( after.begin(), after.end() );
    EXPECT_EQ( before, after );
}

// ---- Release ----

TEST( Vector, ReleasesItemsFromFirstToLast )
{
    std::vector<int> ascending;
    for ( int id = 0; id < 100; ++id )
        ascending.push_back( id );
    {
        Vector vec = numbered( 100 );
        tracedFrees.clear();
    }
    EXPECT_EQ( ascending, tracedFrees );
}

TEST( Vector, DeepNestingNeedsLittleStack )
{
    auto body = [] {
        Vector vec = nested( 500000, "a" );
        Vector equal = nested( 500000, "a" );
        EXPECT_EQ( 0, qvVectorCompare( vec, equal ) );
        EXPECT_EQ( -1, qvVectorCompare( nested( 1000, "a" ), nested( 1000, "b" ) ) );
        Local<QV_STRING> text( qvVectorToString( vec ) );
        EXPECT_EQ( 500000 * 6 + 3, qvStringLength( text ) );
    };
    EXPECT_TRUE( runOnSmallStack( body ) );
}

// A tree that is both deep and wide: each level holds a traced object, the next level, and another traced object.
TEST( Vector, DeepReleaseKeepsTheOrderInsideEachVector )
{
    const int depth = 500;
    {
        Vector vec( qvVectorCreate() );
        for ( int level = depth; level > 0; --level )
        {
            Vector outer( qvVectorCreate() );
            qvVectorAppendObj( outer.edit(), traced( level ) );
            qvVectorAppendObj( outer.edit(), qv::objOf<QV_VECTOR>( vec ) );
            qvVectorAppendObj( outer.edit(), traced( -level ) );
            vec.take( outer.give() );
        }
        tracedFrees.clear();
    }
    std::vector<int> position( 2 * depth + 1, -1 );
    ASSERT_EQ( 2u * depth, tracedFrees.size() );
    for ( size_t idx = 0; idx < tracedFrees.size(); ++idx )
        position[static_cast<size_t>( tracedFrees[idx] + depth )] = static_cast<int>( idx );
    for ( int level = 1; level <= depth; ++level )
        EXPECT_LT( position[static_cast<size_t>( depth + level )],
                   position[static_cast<size_t>( depth - level )] );
}

TEST( VectorDeath, StopsAtFaultsOfTheCaller )
{
    Vector vec = numbered( 2 );
    QV_VECTOR *null = nullptr;
    qvObj hole[] = { nullptr };
    EXPECT_DEATH( qvVectorLength( nullptr ), "vec" );
    EXPECT_DEATH( qvVectorClear( &null ), "\\*vec" );
    EXPECT_DEATH( qvVectorObjAt( vec, 2 ), "idx < vec->length" );
    EXPECT_DEATH( qvVectorObjAt( vec, -1 ), "idx >= 0" );
    EXPECT_DEATH( qvVectorSetObjAt( vec.edit(), 3, qvVectorBacking( vec )[0] ), "idx <= " );
    EXPECT_DEATH( qvVectorDelInner( vec.edit(), 1, 2 ), "offset \\+ count <= vec->length" );
    EXPECT_DEATH( qvVectorDelInner( vec.edit(), 1, QV_INT_MAX ), "QV_INT_ADD_OK" );
    EXPECT_DEATH( qvVectorAppendObjs( vec.edit(), hole, 1 ), "objs\\[idx\\]" );
    EXPECT_DEATH( qvVectorAppendObj( vec.edit(), nullptr ), "src" );
    EXPECT_DEATH( qvVectorDelTrailing( vec.edit(), 3 ), "offset >= 0" );
    EXPECT_DEATH( qvVectorPop( &qv___VectorEmpty ), "length > 0" );
    EXPECT_DEATH( qv::vectorPlanRoom( { QV_INT_MAX - 10, 0, 0, false }, 0, 11, {} ), "QV_INT_ADD_OK" );
}

} // namespace
