#include <qv/base/qv_region.hh>

namespace
{

void qv___RegionFreeFunc( qvObj thisObj )
{
    QV_REGION *thisRegion = qvRegionFrom( thisObj );
    QV_CHECK( thisRegion );
    QV_CHECK( !thisRegion->entered );
    qv___LockFinalize( &thisRegion->lock );
}

} // namespace

QV_SORT_DEFINE( QV_REGION, qvRegion, { .freeFunc = qv___RegionFreeFunc } )

QV_REGION *qvRegionCreate( void )
{
    QV_REGION *region = qv::create<QV_REGION>( qvRegionSort() );
    qv___LockInitialize( &region->lock );
    region->entered = false;
    return region;
}

void qvRegionEnter( QV_REGION *region, QV_BOOL exclusive )
{
    exclusive ? qvRegionEnterExclusive( region ) : qvRegionEnterShared( region );
}

void qvRegionEnterShared( QV_REGION *region )
{
    qvRegionEnterExclusive( region );
}

void qvRegionEnterExclusive( QV_REGION *region )
{
    QV_CHECK( region );
    qv___LockAcquire( &region->lock );
    QV_CHECK( !region->entered );
    region->entered = true;
}

void qvRegionLeave( QV_REGION *region )
{
    QV_CHECK( region );
    QV_CHECK( region->entered );
    region->entered = false;
    qv___LockRelease( &region->lock );
}
