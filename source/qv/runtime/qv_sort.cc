#include <qv/runtime/qv_sort.hh>

#include <string.h>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___SortFreeFunc( qvObj thisObj )
{
    QV_SORT *thisSort = qvSortFrom( thisObj );
    QV_CHECK( thisSort );
    QV_FAIL( "sort free" );
}

QV_STRING *qv___SortToStringFunc( qvObj thisObj )
{
    QV_SORT *thisSort = qvSortFrom( thisObj );
    QV_CHECK( thisSort );
    return qvSortName( thisSort );
}

} // namespace

QV_SORT_DEFINE( QV_SORT, qvSort,
                { .freeFunc = qv___SortFreeFunc,
                  .compareFunc = qv___SortCompareFunc,
                  .toStringFunc = qv___SortToStringFunc } )

QV_INT qv___SortCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_SORT *thisSort = qvSortFrom( thisObj );
    QV_SORT *thatSort = qvSortFrom( thatObj );
    QV_CHECK( thisSort );
    QV_CHECK( thatSort );
    if ( thisSort == thatSort )
        return 0;
    int order = strcmp( thisSort->name, thatSort->name );
    QV_CHECK( order != 0 ); // no two sorts share a name
    return order < 0 ? -1 : 1;
}

QV_MODULE *qvSortModule( QV_SORT *sort )
{
    QV_CHECK( sort );
    return sort->module;
}

QV_BOOL qvSortHasModule( QV_SORT *sort )
{
    QV_CHECK( sort );
    return sort->module != nullptr;
}

QV_STRING *qvSortName( QV_SORT *sort )
{
    QV_CHECK( sort );
    return qvStringCreateFromCstr( sort->name, -1 );
}

QV_INT qvSortObjects( QV_SORT *sort )
{
    QV_CHECK( sort );
    return QV___RETAIN_COUNT_VALUE( sort->objects );
}

QV_VECTOR *qv::createSnapshotVector()
{
    qv::Local<QV_VECTOR> empty( qvVectorCreate() );
    return qvVectorCreateFrom( empty );
}

void qv::appendLiveObjects( QV_VECTOR **dest, QV_SORT *sort )
{
    for ( qvObj obj = sort->objsFirst; obj; obj = obj->objsNext )
    {
        // A count of 0 belongs to an object that is being freed and must not be touched.
        if ( obj != qvVectorObj( *dest ) && qv::retainIfAlive( obj ) )
        {
            qvVectorAppendObj( dest, obj );
            // The vector holds its own reference, so this one is never the last.
            qv___RetainCountDecrement( &obj->retainCount );
        }
    }
}

QV_VECTOR *qvSortSnapshot( QV_SORT *sort )
{
    QV_CHECK( sort );
    if ( !qv___ObjOdbEnabled() )
        return nullptr;
    QV_VECTOR *objects = qv::createSnapshotVector();
    qv___ObjOdbLock();
    qv::appendLiveObjects( &objects, sort );
    qv___ObjOdbUnlock();
    return objects;
}
