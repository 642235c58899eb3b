#ifndef QV_RUNTIME_QV_SORT_HH
#define QV_RUNTIME_QV_SORT_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/runtime/qv_sort.h>

QV_INT qv___SortCompareFunc( qvObj thisObj, qvObj thatObj );

namespace qv
{

// A new empty vector with a record of its own: nothing may be created under the lock of the object database.
QV_VECTOR *createSnapshotVector();

// Appends the sort's live objects to a vector, under the lock of the object database, which the caller holds.
void appendLiveObjects( QV_VECTOR **dest, QV_SORT *sort );

} // namespace qv

#endif
