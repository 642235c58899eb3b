#include <qv/base/qv_range_map.hh>

#include <qv/base/qv_release.hh>
#include <qv/base/qv_string.hh>
#include <qv/sys/qv_mem.h>

#include <cstring>

QV_SORT_DEFINE( QV_RANGE_MAP, qvRangeMap,
                { .freeFunc = qv___RangeMapFreeFunc,
                  .compareFunc = qv___RangeMapCompareFunc,
                  .toStringFunc = qv___RangeMapToStringFunc } )

namespace
{

// Free ranges that a grown array gets, and what compaction gives back at a time.
constexpr QV_INT growStep = 32;
constexpr QV_INT compactStep = 64;

void moveRanges( qv___RangeMapRange *dest, const qv___RangeMapRange *src, QV_INT count )
{
    if ( count > 0 )
        std::memmove( dest, src, static_cast<size_t>( count ) * sizeof( qv___RangeMapRange ) );
}

void setCapacity( QV_RANGE_MAP *map, QV_INT alloc )
{
    map->ranges = static_cast<qv___RangeMapRange *>(
        qvMemReallocN( map->ranges, alloc, sizeof( qv___RangeMapRange ) ) );
    map->alloc = alloc;
    qv___ObjDbgSetAllocationSizeN( map, alloc, sizeof( qv___RangeMapRange ) );
}

QV_INT compareKeys( QV_INT keyA, QV_INT keyB )
{
    return keyA < keyB ? -1 : keyA > keyB;
}

QV_INT compareRanges( const qv___RangeMapRange &rangeA, const qv___RangeMapRange &rangeB )
{
    if ( QV_INT order = compareKeys( rangeA.startingKey, rangeB.startingKey ) )
        return order;
    if ( QV_INT order = compareKeys( rangeA.endingKey, rangeB.endingKey ) )
        return order;
    return qvObjCompare( rangeA.value, rangeB.value );
}

// True if no key lies between the two, the second of which stands behind the first.
bool touches( const qv___RangeMapRange &first, const qv___RangeMapRange &second )
{
    return second.startingKey - 1 == first.endingKey;
}

} // namespace

void qv___RangeMapFreeFunc( qvObj thisObj )
{
    QV_RANGE_MAP *map = qvRangeMapFrom( thisObj );
    QV_CHECK( map );
    qv::NestedRelease nested;
    for ( QV_INT idx = 0; idx < map->length; ++idx )
        nested.release( map->ranges[idx].value );
    qvMemFree( map->ranges );
    qv___ObjDbgSetAllocationSize( map, 0 );
}

QV_INT qv___RangeMapCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_RANGE_MAP *thisMap = qvRangeMapFrom( thisObj );
    QV_RANGE_MAP *thatMap = qvRangeMapFrom( thatObj );
    QV_CHECK( thisMap );
    QV_CHECK( thatMap );
    for ( QV_INT idx = 0; idx < thisMap->length && idx < thatMap->length; ++idx )
    {
        if ( QV_INT order = compareRanges( thisMap->ranges[idx], thatMap->ranges[idx] ) )
            return order;
    }
    return compareKeys( thisMap->length, thatMap->length );
}

QV_STRING *qv___RangeMapToStringFunc( qvObj thisObj )
{
    QV_RANGE_MAP *map = qvRangeMapFrom( thisObj );
    QV_CHECK( map );
    qv::Local<QV_STRING> text( qvStringCreate() );
    qv::stringAppendLiteral( text.edit(), "{" );
    for ( QV_INT idx = 0; idx < map->length; ++idx )
    {
        const qv___RangeMapRange &range = map->ranges[idx];
        if ( idx > 0 )
            qv::stringAppendLiteral( text.edit(), ", " );
        qvStringAppendFormatCstr( text.edit(), "[%i,%i]=%o", -1, range.startingKey, range.endingKey,
                                  range.value );
    }
    qv::stringAppendLiteral( text.edit(), "}" );
    return text.give();
}

// ---- Storage ----

void qv___RangeMapMakeRoom( QV_RANGE_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= map->length );
    if ( map->alloc == map->length )
    {
        QV_CHECK( QV_INT_ADD_OK( map->length, 1 ) );
        QV_INT needed = map->length + 1;
        setCapacity( map, QV_INT_ADD_OK( needed, growStep ) ? needed + growStep : needed );
    }
    moveRanges( map->ranges + idx + 1, map->ranges + idx, map->length - idx );
    ++map->length;
}

void qv___RangeMapDelete( QV_RANGE_MAP *map, QV_INT idx, QV_INT count )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( idx, count ) );
    QV_CHECK( idx + count <= map->length );
    for ( QV_INT at = idx; at < idx + count; ++at )
        qv::release( map->ranges[at].value );
    moveRanges( map->ranges + idx, map->ranges + idx + count, map->length - idx - count );
    map->length -= count;
    qv___RangeMapCompact( map );
}

void qv___RangeMapCompact( QV_RANGE_MAP *map )
{
    QV_CHECK( map );
    if ( map->alloc > compactStep && map->alloc - map->length >= compactStep )
        setCapacity( map, map->alloc - compactStep );
}

// ---- Creating ----

QV_RANGE_MAP *qvRangeMapCreate( void )
{
    auto *map = qv::create<QV_RANGE_MAP>( qvRangeMapSort() );
    map->autoCollapse = QV_FALSE;
    map->alloc = 0;
    map->length = 0;
    map->ranges = nullptr;
    return map;
}

QV_RANGE_MAP *qvRangeMapCreateAutoCollapsing( void )
{
    QV_RANGE_MAP *map = qvRangeMapCreate();
    map->autoCollapse = QV_TRUE;
    return map;
}

QV_RANGE_MAP *qvRangeMapCreateFrom( QV_RANGE_MAP *src )
{
    QV_CHECK( src );
    QV_RANGE_MAP *map = qvRangeMapCreate();
    map->autoCollapse = src->autoCollapse;
    if ( src->length == 0 )
        return map;
    // The ranges as they stand: an auto-collapsing map has nothing left to merge.
    setCapacity( map, src->length );
    for ( QV_INT idx = 0; idx < src->length; ++idx )
    {
        map->ranges[idx] = src->ranges[idx];
        qv::retain( map->ranges[idx].value );
    }
    map->length = src->length;
    return map;
}

// ---- The whole map ----

QV_BOOL qvRangeMapAutoCollapse( QV_RANGE_MAP *map )
{
    QV_CHECK( map );
    return map->autoCollapse;
}

void qvRangeMapSetAutoCollapse( QV_RANGE_MAP **map, QV_BOOL autoCollapse )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    if ( ( *map )->autoCollapse == QV_BOOL_FROM( autoCollapse ) )
        return;
    qv::makePrivate( map, qvRangeMapCreateFrom );
    ( *map )->autoCollapse = QV_BOOL_FROM( autoCollapse );
    if ( autoCollapse )
        qvRangeMapCollapse( map );
}

void qvRangeMapClear( QV_RANGE_MAP **map )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    qv::replaceWith( map, qvRangeMapCreate() );
}

QV_INT qvRangeMapLength( QV_RANGE_MAP *map )
{
    QV_CHECK( map );
    return map->length;
}

void qvRangeMapCollapse( QV_RANGE_MAP **map )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    if ( ( *map )->length == 0 )
        return;
    qv::makePrivate( map, qvRangeMapCreateFrom );
    qv___RangeMapCollapseWithHint( *map, 0 );
}

void qv___RangeMapCollapseWithHint( QV_RANGE_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < map->length );
    qv___RangeMapRange *ranges = map->ranges;
    QV_INT write = idx;
    while ( write > 0 && touches( ranges[write - 1], ranges[write] ) )
        --write;
    for ( QV_INT read = write + 1; read < map->length; ++read )
    {
        qv___RangeMapRange range = ranges[read];
        if ( touches( ranges[write], range ) && qvObjCompare( ranges[write].value, range.value ) == 0 )
        {
            ranges[write].endingKey = range.endingKey;
            qv::release( range.value );
        }
        else
        {
            ranges[++write] = range;
        }
    }
    map->length = write + 1;
    qv___RangeMapCompact( map );
}

// ---- By position ----

qvObj qv___RangeMapObjAt( QV_RANGE_MAP *map, QV_INT idx, QV_INT *startingKey, QV_INT *endingKey )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < map->length );
    const qv___RangeMapRange &range = map->ranges[idx];
    if ( startingKey )
        *startingKey = range.startingKey;
    if ( endingKey )
        *endingKey = range.endingKey;
    return qv::retained( range.value );
}

QV_INT qvRangeMapStartingKeyAt( QV_RANGE_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < map->length );
    return map->ranges[idx].startingKey;
}

QV_INT qvRangeMapEndingKeyAt( QV_RANGE_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < map->length );
    return map->ranges[idx].endingKey;
}

qvObj qvRangeMapObjAt( QV_RANGE_MAP *map, QV_INT idx )
{
    return qv___RangeMapObjAt( map, idx, nullptr, nullptr );
}

// ---- By key ----

QV_INT qv___RangeMapFindAfterKey( QV_RANGE_MAP *map, QV_INT key )
{
    QV_CHECK( map );
    const qv___RangeMapRange *ranges = map->ranges;
    QV_INT high = map->length - 1;
    if ( high < 0 || ranges[high].endingKey < key )
        return -1;
    if ( ranges[0].endingKey >= key )
        return 0;
    // ranges[low] ends below the key, ranges[high] doesn't.
    QV_INT low = 0;
    while ( low + 1 < high )
    {
        QV_INT mid = low + ( high - low ) / 2;
        if ( ranges[mid].endingKey < key )
            low = mid;
        else
            high = mid;
    }
    return high;
}

QV_INT qv___RangeMapFindKey( QV_RANGE_MAP *map, QV_INT key )
{
    QV_INT idx = qv___RangeMapFindAfterKey( map, key );
    return idx != -1 && map->ranges[idx].startingKey <= key ? idx : -1;
}

qvObj qvRangeMapIntKey( QV_RANGE_MAP *map, QV_INT key )
{
    QV_INT idx = qv___RangeMapFindKey( map, key );
    return idx != -1 ? qv::retained( map->ranges[idx].value ) : nullptr;
}

QV_BOOL qvRangeMapHasIntKey( QV_RANGE_MAP *map, QV_INT key )
{
    return qv___RangeMapFindKey( map, key ) != -1;
}

namespace
{

// Cuts what overlaps the range from startingKey to endingKey, which the map's bounds don't exclude, so that
// every range lies wholly inside or outside. Returns the position of the first one inside, and how many there
// are through count.
QV_INT cutOut( QV_RANGE_MAP *map, QV_INT startingKey, QV_INT endingKey, QV_INT *count )
{
    QV_INT idx = qv___RangeMapFindAfterKey( map, startingKey );
    if ( map->ranges[idx].startingKey < startingKey )
    {
        qv___RangeMapMakeRoom( map, idx );
        qv___RangeMapRange &front = map->ranges[idx];
        qv___RangeMapRange &straddler = map->ranges[idx + 1];
        front = { straddler.startingKey, startingKey - 1, qv::retained( straddler.value ) };
        straddler.startingKey = startingKey;
        ++idx;
    }
    QV_INT end = idx;
    while ( end < map->length && map->ranges[end].endingKey <= endingKey )
        ++end;
    if ( end < map->length && map->ranges[end].startingKey <= endingKey )
        map->ranges[end].startingKey = endingKey + 1;
    *count = end - idx;
    return idx;
}

bool isOutside( const QV_RANGE_MAP *map, QV_INT startingKey, QV_INT endingKey )
{
    return map->length == 0 || map->ranges[map->length - 1].endingKey < startingKey ||
           endingKey < map->ranges[0].startingKey;
}

// Opens or reuses the slot for a new range, with whatever it covers gone.
QV_INT openSlot( QV_RANGE_MAP *map, QV_INT startingKey, QV_INT endingKey )
{
    if ( isOutside( map, startingKey, endingKey ) )
    {
        bool isFirst = map->length > 0 && endingKey < map->ranges[0].startingKey;
        QV_INT idx = isFirst ? 0 : map->length;
        qv___RangeMapMakeRoom( map, idx );
        return idx;
    }
    QV_INT count;
    QV_INT idx = cutOut( map, startingKey, endingKey, &count );
    if ( count == 0 )
    {
        qv___RangeMapMakeRoom( map, idx );
        return idx;
    }
    qv::release( map->ranges[idx].value );
    qv___RangeMapDelete( map, idx + 1, count - 1 );
    return idx;
}

} // namespace

void qvRangeMapSetRangeKey( QV_RANGE_MAP **map, QV_INT startingKey, QV_INT endingKey, qvObj value )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    QV_CHECK( startingKey <= endingKey );
    QV_CHECK( value );
    // Retained before the copy is made and before what is covered goes: the value may be the map itself or a
    // value in it.
    qv::Local<qv___Obj> given = qv::Local<qv___Obj>::share( value );
    qv::makePrivate( map, qvRangeMapCreateFrom );
    QV_RANGE_MAP *own = *map;
    QV_INT idx = openSlot( own, startingKey, endingKey );
    own->ranges[idx] = { startingKey, endingKey, given.give() };
    if ( own->autoCollapse )
        qv___RangeMapCollapseWithHint( own, idx );
}

void qvRangeMapSetIntKey( QV_RANGE_MAP **map, QV_INT key, qvObj value )
{
    qvRangeMapSetRangeKey( map, key, key, value );
}

void qvRangeMapDelRangeKey( QV_RANGE_MAP **map, QV_INT startingKey, QV_INT endingKey )
{
    QV_CHECK( map );
    QV_CHECK( *map );
    QV_CHECK( startingKey <= endingKey );
    if ( isOutside( *map, startingKey, endingKey ) )
        return;
    qv::makePrivate( map, qvRangeMapCreateFrom );
    QV_INT count;
    QV_INT idx = cutOut( *map, startingKey, endingKey, &count );
    qv___RangeMapDelete( *map, idx, count );
}

void qvRangeMapDelIntKey( QV_RANGE_MAP **map, QV_INT key )
{
    qvRangeMapDelRangeKey( map, key, key );
}
