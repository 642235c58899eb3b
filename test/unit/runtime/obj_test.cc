#include "support/test.hh"

#include <qv/runtime/qv_obj.hh>

// Sorts of the tests' own: one that counts its ends, and one that does nothing but be an object of another sort.
typedef struct qv___Traced QV_TRACED;
typedef struct qv___Plain QV_PLAIN;
QV_SORT_FUNCTIONS( QV_TRACED, qvTraced )
QV_SORT_FUNCTIONS( QV_PLAIN, qvPlain )

struct qv___Traced : qv___Obj
{
    QV_INT rank;
};

struct qv___Plain : qv___Obj
{
};

namespace
{

using namespace test;

std::atomic<int> ends{ 0 };
std::atomic<QV_INT> objectsDuringEnd{ 0 };

void endTraced( qvObj thisObj )
{
    ends++;
    objectsDuringEnd = qvSortObjects( qvObjSort( thisObj ) );
}

QV_INT compareTraced( qvObj thisObj, qvObj thatObj )
{
    return qvTracedFrom( thisObj )->rank - qvTracedFrom( thatObj )->rank;
}

} // namespace

QV_SORT_DEFINE( QV_TRACED, qvTraced, { .freeFunc = endTraced, .compareFunc = compareTraced } )
QV_SORT_DEFINE( QV_PLAIN, qvPlain, {} )

namespace
{

QV_TRACED *createTraced( QV_INT rank )
{
    QV_TRACED *traced = qv::create<QV_TRACED>( qvTracedSort() );
    traced->rank = rank;
    return traced;
}

QV_PLAIN *createPlain()
{
    return qv::create<QV_PLAIN>( qvPlainSort() );
}

TEST( Obj, EndsOnceWithItsLastReference )
{
    ends = 0;
    uint32_t sortsBefore = qv___module.sortsCount;
    QV_TRACED *first = createTraced( 1 );
    EXPECT_EQ( sortsBefore + 1, qv___module.sortsCount );
    Local<QV_TRACED> second( createTraced( 2 ) );
    EXPECT_EQ( 2, qvSortObjects( qvTracedSort() ) );
    qvTracedRetain( first );
    qvTracedRelease( first );
    EXPECT_EQ( 0, ends );
    qvTracedRelease( first );
    EXPECT_EQ( 1, ends );
    EXPECT_EQ( 2, objectsDuringEnd ); // an object counts until it is gone completely
    EXPECT_EQ( 1, qvSortObjects( qvTracedSort() ) );
    second.take( nullptr );
    EXPECT_EQ( 0, qvSortObjects( qvTracedSort() ) );
    EXPECT_EQ( sortsBefore, qv___module.sortsCount );
    qvSortRelease( qvTracedSort() ); // static records are never freed
    qvSortRetain( qvTracedSort() );
}

TEST( Obj, CompareBySortThenValueThenToken )
{
    Local<QV_TRACED> low( createTraced( 1 ) );
    Local<QV_TRACED> high( createTraced( 2 ) );
    Local<QV_TRACED> alsoLow( createTraced( 1 ) );
    Local<QV_PLAIN> plain( createPlain() );
    Local<QV_PLAIN> another( createPlain() );
    EXPECT_EQ( 0, qvObjCompare( qvPlainObj( plain ), qvPlainObj( plain ) ) );
    EXPECT_EQ( -1, plain->unique ); // comparing with itself takes no token
    EXPECT_GT( 0, qvTracedCompare( low, high ) );
    EXPECT_TRUE( qvTracedEquals( low, alsoLow ) );
    EXPECT_EQ( 1, qvObjCompare( qvTracedObj( low ), qvPlainObj( plain ) ) ); // "QV_PLAIN" < "QV_TRACED"
    QV_INT order = qvPlainCompare( plain, another );
    EXPECT_NE( 0, order );
    EXPECT_EQ( -order, qvPlainCompare( another, plain ) );
    EXPECT_EQ( order, qvPlainCompare( plain, another ) );
    EXPECT_EQ( -1, qvSortCompare( qvPlainSort(), qvTracedSort() ) );
    EXPECT_EQ( -1, qvObjCompare( qvModuleObj( qvModule() ), qvSortObj( qvPlainSort() ) ) );
}

TEST( Obj, TextForms )
{
    Local<QV_PLAIN> plain( createPlain() );
    char expected[64];
    snprintf( expected, sizeof( expected ), "QV_PLAIN(%llX)",
              static_cast<unsigned long long>( qv___ObjUnique( qvPlainObj( plain ) ) ) );
    EXPECT_EQ( expected, takeUtf8( qvPlainToString( plain ) ) );
    EXPECT_EQ( "QV_PLAIN", takeUtf8( qvSortToString( qvPlainSort() ) ) );
    EXPECT_EQ( "QV_SORT", takeUtf8( qvSortName( qvObjSort( qvSortObj( qvPlainSort() ) ) ) ) );
    EXPECT_EQ( "qv", takeUtf8( qvModuleToString( qvModule() ) ) );
    EXPECT_EQ( qvModule(), qvSortModule( qvPlainSort() ) );
    EXPECT_TRUE( qvSortHasModule( qvPlainSort() ) );
}

TEST( Obj, OneTokenForAllThreads )
{
    for ( int round = 0; round < 200; round++ )
    {
        Local<QV_PLAIN> plain( createPlain() );
        QV_INT seen[2];
        std::thread other( [&] { seen[0] = qv___ObjUnique( qvPlainObj( plain ) ); } );
        seen[1] = qv___ObjUnique( qvPlainObj( plain ) );
        other.join();
        EXPECT_EQ( seen[0], seen[1] );
    }
}

TEST( Obj, LogKeepsLinesInOrder )
{
    Local<QV_PLAIN> plain( createPlain() );
    EXPECT_EQ( nullptr, qv___ObjLog( qvPlainObj( plain ) ) );
    qv___ObjLogAppend( qvPlainObj( plain ), text( "first" ) );
    qv___ObjLogAppend( qvPlainObj( plain ), text( "" ) );
    Local<QV_VECTOR> more( qvVectorCreate() );
    qv___ObjLogAppendVector( qvPlainObj( plain ), more );
    qvVectorAppendObj( more.edit(), qvPlainObj( plain ) );
    qv___ObjLogAppendVector( qvPlainObj( plain ), more );
    more.take( nullptr ); // the log holds texts, not objects
    Local<QV_VECTOR> log( qv___ObjLog( qvPlainObj( plain ) ) );
    ASSERT_EQ( 3, qvVectorLength( log ) );
    Local<QV_STRING> printed( qvPlainToString( plain ) );
    EXPECT_EQ( "<first, , " + toUtf8( printed ) + ">", takeUtf8( qvVectorToString( log ) ) );
    qv___ObjLogAppendCallStack( qvPlainObj( plain ), 0, 2 );
    log.take( qv___ObjLog( qvPlainObj( plain ) ) );
    EXPECT_EQ( 6, qvVectorLength( log ) );
}

TEST( Obj, AllocationSizeIsKept )
{
    Local<QV_PLAIN> plain( createPlain() );
    EXPECT_EQ( static_cast<QV_INT>( sizeof( QV_PLAIN ) ), qv___ObjDbgObjectSize( qvPlainObj( plain ) ) );
    qv___ObjDbgSetAllocationSizeN( qvPlainObj( plain ), 3, 5 );
    EXPECT_EQ( 15, qv___ObjDbgAllocationSize( qvPlainObj( plain ) ) );
    EXPECT_DEATH( qv___ObjDbgSetAllocationSizeN( qvPlainObj( plain ), QV_INT_MAX, 5 ), "QV_INT_MUL_OK" );
}

TEST( ObjDeathTest, WrongHandles )
{
    Local<QV_PLAIN> plain( createPlain() );
    EXPECT_EQ( nullptr, qvTracedFrom( nullptr ) );
    EXPECT_EQ( nullptr, qvTracedObj( nullptr ) );
    EXPECT_DEATH( qvTracedFrom( qvPlainObj( plain ) ),
                  "Message   : stdfunc from.*\n.*\n.*\n.*Expression: !obj \\|\\| "
                  "qvObjSort\\(obj\\)==&qv___sort_QV_TRACED" );
    EXPECT_DEATH( qvTracedRetain( nullptr ), "stdfunc retain" );
    EXPECT_DEATH( qvTracedRelease( nullptr ), "stdfunc release" );
    EXPECT_DEATH( qvTracedToString( nullptr ), "stdfunc tostring" );
    EXPECT_DEATH( qvPlainCompare( nullptr, plain ), "stdfunc compare a" );
    EXPECT_DEATH( qvPlainCompare( plain, nullptr ), "stdfunc compare b" );
    EXPECT_DEATH( qvObjRetain( nullptr ), "obj" );
}

bool holds( QV_VECTOR *vec, qvObj obj )
{
    return qvVectorHasObj( vec, obj, QV_FALSE );
}

TEST( Snapshot, ListsLiveObjectsAndKeepsThem )
{
    ends = 0;
    QV_TRACED *traced = createTraced( 1 );
    {
        Local<QV_VECTOR> ofSort( qvSortSnapshot( qvTracedSort() ) );
        EXPECT_EQ( 1, qvVectorLength( ofSort ) );
        EXPECT_TRUE( holds( ofSort, qvTracedObj( traced ) ) );
        Local<QV_VECTOR> sorts( qvRuntimeSnapshotSorts() );
        EXPECT_TRUE( holds( sorts, qvSortObj( qvTracedSort() ) ) );
        EXPECT_FALSE( holds( sorts, qvSortObj( qvPlainSort() ) ) );
        Local<QV_VECTOR> all( qvRuntimeSnapshotObjects() );
        EXPECT_TRUE( holds( all, qvTracedObj( traced ) ) );
        qvTracedRelease( traced );
        EXPECT_EQ( 0, ends );
    }
    EXPECT_EQ( 1, ends );
    Local<QV_VECTOR> vectors( qvSortSnapshot( qvVectorSort() ) );
    EXPECT_FALSE( holds( vectors, qvVectorObj( vectors ) ) );
}

TEST( Snapshot, NeverBringsADyingObjectBack )
{
    ends = 0;
    std::atomic<bool> stop{ false };
    std::thread creator( [&] {
        for ( int count = 0; count < 20000; count++ )
            qvTracedRelease( createTraced( count ) );
        stop = true;
    } );
    while ( !stop )
    {
        Local<QV_VECTOR> snapshot( qvSortSnapshot( qvTracedSort() ) );
    }
    creator.join();
    EXPECT_EQ( 20000, ends );
    EXPECT_EQ( 0, qvSortObjects( qvTracedSort() ) );
}

} // namespace
