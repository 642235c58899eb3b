#ifndef QV_BASE_QV_PRIORITY_MAP_HH
#define QV_BASE_QV_PRIORITY_MAP_HH

// The records of a priority map and of its entries.

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_priority_map.h>

// The key of a member in the order dictionary: ordered by priority, then by the object.
struct qv___PriorityMapEntry : qv___Obj
{
    QV_INT priority;
    qvObj obj;
};

typedef struct qv___PriorityMapEntry QV___PRIORITY_MAP_ENTRY;

// Invariant: the two dictionaries hold the same members, order from entry to object and objects from object
// to entry.
struct qv___PriorityMap : qv___Obj
{
    QV_DICT *order;
    QV_DICT *objects;
};

QV_BEGIN_DECLS
QV_SORT_FUNCTIONS_INTERNAL( QV___PRIORITY_MAP_ENTRY, qv___PriorityMapEntry )
QV_END_DECLS

void qv___PriorityMapFreeFunc( qvObj thisObj );
QV_INT qv___PriorityMapCompareFunc( qvObj thisObj, qvObj thatObj );
void qv___PriorityMapEntryFreeFunc( qvObj thisObj );
QV_INT qv___PriorityMapEntryCompareFunc( qvObj thisObj, qvObj thatObj );

#endif
