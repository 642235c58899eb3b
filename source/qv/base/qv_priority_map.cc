#include <qv/base/qv_priority_map.hh>

#include <qv/base/qv_release.hh>
#include <qv/base/qv_vector.h>

QV_SORT_DEFINE( QV_PRIORITY_MAP, qvPriorityMap,
                { .freeFunc = qv___PriorityMapFreeFunc, .compareFunc = qv___PriorityMapCompareFunc } )

QV_SORT_DEFINE( QV___PRIORITY_MAP_ENTRY, qv___PriorityMapEntry,
                { .freeFunc = qv___PriorityMapEntryFreeFunc,
                  .compareFunc = qv___PriorityMapEntryCompareFunc } )

// ---- Entries ----

namespace
{

using Entry = qv::Local<QV___PRIORITY_MAP_ENTRY>;

Entry createEntry( QV_INT priority, qvObj obj )
{
    auto *entry = qv::create<QV___PRIORITY_MAP_ENTRY>( qv___PriorityMapEntrySort() );
    entry->priority = priority;
    entry->obj = qv::retained( obj );
    return Entry( entry );
}

} // namespace

void qv___PriorityMapEntryFreeFunc( qvObj thisObj )
{
    QV___PRIORITY_MAP_ENTRY *entry = qv___PriorityMapEntryFrom( thisObj );
    QV_CHECK( entry );
    qv::NestedRelease nested;
    nested.release( entry->obj );
}

QV_INT qv___PriorityMapEntryCompareFunc( qvObj thisObj, qvObj thatObj )
{
    auto *thisEntry = static_cast<QV___PRIORITY_MAP_ENTRY *>( thisObj );
    auto *thatEntry = static_cast<QV___PRIORITY_MAP_ENTRY *>( thatObj );
    if ( thisEntry->priority != thatEntry->priority )
        return thisEntry->priority < thatEntry->priority ? -1 : 1;
    return qvObjCompare( thisEntry->obj, thatEntry->obj );
}

// ---- Maps ----

namespace
{

QV_PRIORITY_MAP *createMap( QV_DICT *order, QV_DICT *objects )
{
    auto *map = qv::create<QV_PRIORITY_MAP>( qvPriorityMapSort() );
    map->order = order;
    map->objects = objects;
    return map;
}

// The entry at a position that is known to be good.
QV___PRIORITY_MAP_ENTRY *entryAt( QV_PRIORITY_MAP *map, QV_INT idx )
{
    return static_cast<QV___PRIORITY_MAP_ENTRY *>( qv::dictPairs( map->order )[idx].key );
}

// The entry of a member, or null.
QV___PRIORITY_MAP_ENTRY *entryOf( QV_PRIORITY_MAP *map, qvObj obj )
{
    return static_cast<QV___PRIORITY_MAP_ENTRY *>( qv::dictValueOf( map->objects, obj ) );
}

void checkPosition( QV_PRIORITY_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qv::dictLength( map->order ) );
}

// The object at a position, retained, and its priority; null and 0 for a position outside the map.
qvObj memberAt( QV_PRIORITY_MAP *map, QV_INT idx, QV_INT *priority )
{
    bool isInside = idx >= 0 && idx < qv::dictLength( map->order );
    QV___PRIORITY_MAP_ENTRY *entry = isInside ? entryAt( map, idx ) : nullptr;
    if ( priority )
        *priority = entry ? entry->priority : 0;
    return entry ? qv::retained( entry->obj ) : nullptr;
}

// Takes an entry out of both dictionaries of a private map.
void removeEntry( QV_PRIORITY_MAP *map, QV___PRIORITY_MAP_ENTRY *member )
{
    // Neither dictionary may be the last holder while the other one is searched.
    Entry entry = Entry::share( member );
    qvDictDelObjKey( &map->order, qv::objOf<QV___PRIORITY_MAP_ENTRY>( entry ) );
    qvDictDelObjKey( &map->objects, entry->obj );
}

// How many entries of the order are below a priority and object.
QV_INT countBelow( QV_DICT *order, QV_INT priority, qvObj obj )
{
    const qv___DictPair *base = qv::dictPairs( order );
    QV_INT count = qv::dictLength( order );
    auto isBelow = [&]( const qv___DictPair &pair ) {
        auto *entry = static_cast<QV___PRIORITY_MAP_ENTRY *>( pair.key );
        return entry->priority == priority ? qvObjCompare( entry->obj, obj ) < 0 : entry->priority < priority;
    };
    // Without a branch but for equal priorities: which half it is nobody can guess.
    while ( count > 1 )
    {
        QV_INT half = count / 2;
        base += half & -static_cast<QV_INT>( isBelow( base[half - 1] ) );
        count -= half;
    }
    return base - qv::dictPairs( order ) + ( count == 1 && isBelow( *base ) );
}

// Gives a member another priority where the entry and the order belong to this map alone; false where they don't.
bool tryMoveEntry( QV_PRIORITY_MAP *map, QV___PRIORITY_MAP_ENTRY *member, QV_INT priority )
{
    // The map's own references are the key in the order and the value in the objects.
    if ( qv::isShared( map->order ) || qv::isShared( map->objects ) || QV_REF_RETAIN_COUNT( member ) != 2 )
        return false;
    QV_INT from = countBelow( map->order, member->priority, member->obj );
    QV_CHECK( qv::dictPairs( map->order )[from].key == member );
    QV_INT dest = countBelow( map->order, priority, member->obj );
    // The place of the member itself is counted if it stands below.
    qv::dictMovePair( map->order, from, dest > from ? dest - 1 : dest );
    member->priority = priority;
    return true;
}

} // namespace

void qv___PriorityMapFreeFunc( qvObj thisObj )
{
    QV_PRIORITY_MAP *map = qvPriorityMapFrom( thisObj );
    QV_CHECK( map );
    qv::NestedRelease nested;
    nested.release( qv::objOf( map->order ) );
    nested.release( qv::objOf( map->objects ) );
}

QV_INT qv___PriorityMapCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_PRIORITY_MAP *thisMap = qvPriorityMapFrom( thisObj );
    QV_PRIORITY_MAP *thatMap = qvPriorityMapFrom( thatObj );
    QV_CHECK( thisMap );
    QV_CHECK( thatMap );
    return qvDictCompare( thisMap->order, thatMap->order );
}

QV_PRIORITY_MAP *qvPriorityMapCreate( void )
{
    return createMap( qvDictCreate(), qvDictCreate() );
}

QV_PRIORITY_MAP *qvPriorityMapCreateFrom( QV_PRIORITY_MAP *map )
{
    QV_CHECK( map );
    return createMap( qv::retained( map->order ), qv::retained( map->objects ) );
}

void qvPriorityMapClear( QV_PRIORITY_MAP **map )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    qv::replaceWith( map, qvPriorityMapCreate() );
}

// ---- Reading ----

QV_INT qvPriorityMapLength( QV_PRIORITY_MAP *map )
{
    QV_CHECK( map );
    return qv::dictLength( map->order );
}

QV_INT qvPriorityMapPriorityAt( QV_PRIORITY_MAP *map, QV_INT idx )
{
    checkPosition( map, idx );
    return entryAt( map, idx )->priority;
}

qvObj qvPriorityMapValueAt( QV_PRIORITY_MAP *map, QV_INT idx )
{
    checkPosition( map, idx );
    return qv::retained( entryAt( map, idx )->obj );
}

QV_VECTOR *qvPriorityMapValuesVector( QV_PRIORITY_MAP *map )
{
    QV_CHECK( map );
    return qvDictValuesVector( map->order );
}

qvObj qvPriorityMapHighest( QV_PRIORITY_MAP *map, QV_INT *priority )
{
    QV_CHECK( map );
    return memberAt( map, qv::dictLength( map->order ) - 1, priority );
}

qvObj qvPriorityMapLowest( QV_PRIORITY_MAP *map, QV_INT *priority )
{
    QV_CHECK( map );
    return memberAt( map, 0, priority );
}

QV_BOOL qvPriorityMapHas( QV_PRIORITY_MAP *map, qvObj obj )
{
    QV_CHECK( map );
    return qvDictHasObjKey( map->objects, obj );
}

QV_INT qvPriorityMapIndexOf( QV_PRIORITY_MAP *map, qvObj obj )
{
    QV_CHECK( map );
    QV_CHECK( obj );
    QV___PRIORITY_MAP_ENTRY *entry = entryOf( map, obj );
    return entry ? qvDictIndexOfObjKey( map->order, qv::objOf( entry ) ) : -1;
}

qvObj qvPriorityMapHigher( QV_PRIORITY_MAP *map, qvObj obj, QV_INT *priority )
{
    QV_INT idx = qvPriorityMapIndexOf( map, obj );
    return memberAt( map, idx == -1 ? -1 : idx + 1, priority );
}

qvObj qvPriorityMapLower( QV_PRIORITY_MAP *map, qvObj obj, QV_INT *priority )
{
    QV_INT idx = qvPriorityMapIndexOf( map, obj );
    return memberAt( map, idx - 1, priority );
}

// ---- Editing ----

void qvPriorityMapSet( QV_PRIORITY_MAP **map, QV_INT priority, qvObj obj )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    QV_CHECK( obj );
    // The object may be the map itself, or have no other holder than the entry that goes.
    qv::Local<qv___Obj> hold = qv::Local<qv___Obj>::share( obj );
    qv::makePrivate( map, qvPriorityMapCreateFrom );
    if ( QV___PRIORITY_MAP_ENTRY *member = entryOf( *map, obj ) )
    {
        if ( member->priority == priority )
            return;
        if ( member->obj == obj && tryMoveEntry( *map, member, priority ) )
            return;
        removeEntry( *map, member );
    }
    Entry entry = createEntry( priority, obj );
    qvDictSetObjKey( &( *map )->order, qv::objOf<QV___PRIORITY_MAP_ENTRY>( entry ), obj );
    qvDictSetObjKey( &( *map )->objects, obj, qv::objOf<QV___PRIORITY_MAP_ENTRY>( entry ) );
}

void qvPriorityMapDel( QV_PRIORITY_MAP **map, qvObj obj )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    QV_CHECK( obj );
    if ( !entryOf( *map, obj ) )
        return;
    qv::makePrivate( map, qvPriorityMapCreateFrom );
    removeEntry( *map, entryOf( *map, obj ) );
}

void qvPriorityMapDelAt( QV_PRIORITY_MAP **map, QV_INT idx )
{
    QV_CHECK( map );
    checkPosition( *map, idx );
    qv::makePrivate( map, qvPriorityMapCreateFrom );
    removeEntry( *map, entryAt( *map, idx ) );
}
