#include <qv/json/qv_json_collector.hh>

#include <qv/base/qv_keyed_hash.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>

namespace qv
{

namespace
{

// Names up to which all of them are looked at instead of a hash table.
constexpr QV_INT fewNames = 24;

// An array with room for more, of which at least needed.
template <typename T> void grow( T **items, QV_INT *alloc, QV_INT least )
{
    QV_CHECK( QV_INT_MUL_OK( *alloc, 2 ) );
    *alloc = *alloc > 0 ? *alloc * 2 : least;
    void *room = *items ? qvMemReallocN( *items, *alloc, sizeof( T ) ) : qvMemAllocN( *alloc, sizeof( T ) );
    *items = static_cast<T *>( room );
}

uint32_t keyedHash( QV_STRING *name )
{
    return static_cast<uint32_t>( hashChars( stringBacking( name ), stringLength( name ) ) );
}

} // namespace

JsonCollector::~JsonCollector()
{
    for ( QV_INT idx = 0; idx < count_; idx++ )
    {
        releaseOptional( entries_[idx].name );
        releaseOptional( entries_[idx].value );
    }
    for ( QV_INT idx = 0; idx < depth_; idx++ )
    {
        qvMemFree( levels_[idx].slots );
    }
    qvMemFree( entries_ );
    qvMemFree( levels_ );
}

void JsonCollector::open( bool isObject, QV_INT begin )
{
    if ( depth_ == levelsAlloc_ )
        grow( &levels_, &levelsAlloc_, 16 );
    levels_[depth_++] = { count_, begin, isObject, true, false, nullptr, 0 };
}

void JsonCollector::push( const Entry &entry )
{
    if ( count_ == alloc_ )
        grow( &entries_, &alloc_, 64 );
    entries_[count_++] = entry;
}

// Up to three characters of 21 bits each.
uint64_t JsonCollector::frontOf( QV_STRING *name )
{
    constexpr QV_INT most = 3;
    const QV_CHAR *chs = stringBacking( name );
    QV_INT length = stringLength( name );
    uint64_t front = 0;
    for ( QV_INT idx = 0; idx < most; idx++ )
    {
        front = front << 21 | ( idx < length ? chs[idx] : 0 );
    }
    return front;
}

bool JsonCollector::isBefore( const Entry &entryA, const Entry &entryB )
{
    if ( entryA.front != entryB.front )
        return entryA.front < entryB.front;
    return stringCompare( entryA.name, entryB.name ) < 0;
}

void JsonCollector::addName( QV_STRING *given, uint32_t hash )
{
    JsonLevel *level = top();
    Entry entry = { given, nullptr, frontOf( given ), hash };
    if ( level->isAscending && count() > 0 )
        level->isAscending = isBefore( entries_[count_ - 1], entry );
    if ( !level->isAscending )
    {
        if ( !level->slots && count() > fewNames )
            beginSlots( level );
        if ( level->slots )
            entry.hash = keyedHash( given );
        level->isDuplicate = isKnown( level, entry );
    }
    push( entry );
    if ( !level->slots )
        return;
    if ( count() * 2 >= level->slotCount )
        rehash( level );
    else
        enterSlot( level, count() - 1 );
}

void JsonCollector::addValue( QV_JSON_VALUE *given )
{
    if ( top()->isObject )
        entries_[count_ - 1].value = given;
    else
        push( { nullptr, given, 0, 0 } );
}

bool JsonCollector::isKnown( const JsonLevel *level, const Entry &entry ) const
{
    const Entry *first = entries_ + level->first;
    auto isSame = [&entry]( const Entry &other ) {
        return other.hash == entry.hash && stringEquals( other.name, entry.name );
    };
    if ( !level->slots )
        return std::any_of( first, static_cast<const Entry *>( entries_ + count_ ), isSame );
    QV_INT mask = level->slotCount - 1;
    for ( QV_INT slot = entry.hash & mask; level->slots[slot] >= 0; slot = ( slot + 1 ) & mask )
    {
        if ( isSame( first[level->slots[slot]] ) )
            return true;
    }
    return false;
}

void JsonCollector::enterSlot( JsonLevel *level, QV_INT idx )
{
    QV_INT mask = level->slotCount - 1;
    QV_INT slot = entries_[level->first + idx].hash & mask;
    while ( level->slots[slot] >= 0 )
    {
        slot = ( slot + 1 ) & mask;
    }
    level->slots[slot] = static_cast<int32_t>( idx );
}

// Goes over to a hash table and to hashes that nobody can foresee.
void JsonCollector::beginSlots( JsonLevel *level )
{
    for ( QV_INT idx = level->first; idx < count_; idx++ )
    {
        entries_[idx].hash = keyedHash( entries_[idx].name );
    }
    rehash( level );
}

// Makes the hash table of all names, with room for as many again.
void JsonCollector::rehash( JsonLevel *level )
{
    QV_CHECK( count() <= INT32_MAX / 4 );
    QV_INT slotCount = 128;
    while ( slotCount < count() * 4 )
    {
        slotCount *= 2;
    }
    qvMemFree( level->slots );
    level->slots = static_cast<int32_t *>( qvMemAllocN( slotCount, sizeof( int32_t ) ) );
    level->slotCount = slotCount;
    std::fill( level->slots, level->slots + slotCount, -1 );
    for ( QV_INT idx = 0; idx < count(); idx++ )
    {
        enterSlot( level, idx );
    }
}

QV_DICT *JsonCollector::takeDict( JsonLevel *level )
{
    Entry *first = entries_ + level->first;
    if ( count() == 0 )
        return qvDictCreate();
    if ( !level->isAscending )
        std::sort( first, entries_ + count_, isBefore );
    QV_DICT *dict = dictCreateUnfilled( count() );
    for ( QV_INT idx = 0; idx < count(); idx++ )
    {
        dict->items[idx] = { first[idx].name, first[idx].value };
    }
    return dict;
}

QV_VECTOR *JsonCollector::takeVector( JsonLevel *level )
{
    if ( count() == 0 )
        return qvVectorCreate();
    QV_VECTOR *vec = vectorCreateUnfilled( count() );
    qvObj *items = vectorBacking( vec );
    for ( QV_INT idx = 0; idx < count(); idx++ )
    {
        items[idx] = entries_[level->first + idx].value;
    }
    return vec;
}

QV_JSON_VALUE *JsonCollector::close()
{
    JsonLevel *level = top();
    QV_JSON_VALUE *val = jsonCreate( level->isObject ? QV_JSON_TYPE_OBJECT : QV_JSON_TYPE_ARRAY );
    if ( level->isObject )
        val->objectMembers = takeDict( level );
    else
        val->array = takeVector( level );
    qvMemFree( level->slots );
    count_ = level->first;
    depth_--;
    return val;
}

} // namespace qv
