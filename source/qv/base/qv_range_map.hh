#ifndef QV_BASE_QV_RANGE_MAP_HH
#define QV_BASE_QV_RANGE_MAP_HH

// The record of a range map, its inline readers and the internal functions.

#include <qv/base/qv_range_map.h>
#include <qv/runtime/qv_author.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_obj.hh>

// A range of keys, both ends inclusive.
struct qv___RangeMapRange
{
    QV_INT startingKey;
    QV_INT endingKey;
    qvObj value; // a reference of the map's, never null
};

// Invariant: startingKey <= endingKey in each range, and each range ends below the start of the next one.
// ranges is null or an array of alloc ranges from the memory layer, which the map owns.
struct qv___RangeMap : qv___Obj
{
    QV_BOOL autoCollapse;
    QV_INT alloc;
    QV_INT length;
    qv___RangeMapRange *ranges;
};

void qv___RangeMapFreeFunc( qvObj thisObj );
QV_INT qv___RangeMapCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___RangeMapToStringFunc( qvObj thisObj );

// The value at position idx, retained, and its keys through pointers that may be null.
qvObj qv___RangeMapObjAt( QV_RANGE_MAP *map, QV_INT idx, QV_INT *startingKey, QV_INT *endingKey );

// The position of the range that holds the key, or -1.
QV_INT qv___RangeMapFindKey( QV_RANGE_MAP *map, QV_INT key );

// The position of the first range that doesn't end below the key, or -1.
QV_INT qv___RangeMapFindAfterKey( QV_RANGE_MAP *map, QV_INT key );

// Merges touching ranges with equal values from the chain of touching ranges around idx to the end of the
// map. The map is private and not empty.
void qv___RangeMapCollapseWithHint( QV_RANGE_MAP *map, QV_INT idx );

// Opens one slot at idx; the length grows by 1 and the caller fills the slot.
void qv___RangeMapMakeRoom( QV_RANGE_MAP *map, QV_INT idx );

// Deletes count ranges at idx and releases their values; the array may move.
void qv___RangeMapDelete( QV_RANGE_MAP *map, QV_INT idx, QV_INT count );

// Gives spare ranges back after a delete or a collapse.
void qv___RangeMapCompact( QV_RANGE_MAP *map );

#endif
