#ifndef QV_BASE_QV_REGION_H
#define QV_BASE_QV_REGION_H

/* Regions: a lock with the interface of shared and exclusive entry. Both take the one lock, so that readers exclude each
 * other as well. Not recursive; the thread that entered leaves. Freeing an entered region and a null region stop the
 * process. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_REGION, qvRegion )

/* A new region, owned by the caller. */
QV_API QV_REGION *qvRegionCreate( void );

/* Wait until no other thread is inside. */
QV_API void qvRegionEnter( QV_REGION *region, QV_BOOL exclusive );
QV_API void qvRegionEnterShared( QV_REGION *region );
QV_API void qvRegionEnterExclusive( QV_REGION *region );
/* A region that isn't entered stops the process. */
QV_API void qvRegionLeave( QV_REGION *region );

QV_END_DECLS

#endif
