#include <qv/base/qv_store_collector.hh>

#include <qv/base/qv_keyed_hash.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>
#include <cstring>

namespace qv
{

namespace
{

QV_STRING *addressOf( const qv___DictPair &pair )
{
    return static_cast<QV_STRING *>( pair.key );
}

} // namespace

EntryCollector::~EntryCollector()
{
    for ( QV_INT idx = count_; idx-- > 0; )
    {
        releaseOptional( pairs_[idx].key );
        releaseOptional( pairs_[idx].val );
    }
    if ( pairs_ )
        qvMemFree( pairs_ );
}

void EntryCollector::push( qvObj key, qvObj val )
{
    if ( count_ == alloc_ )
    {
        constexpr QV_INT size = sizeof( qv___DictPair );
        alloc_ = alloc_ > 0 ? alloc_ * 2 : 128;
        void *room = pairs_ ? qvMemReallocN( pairs_, alloc_, size ) : qvMemAllocN( alloc_, size );
        pairs_ = static_cast<qv___DictPair *>( room );
    }
    pairs_[count_++] = { key, val };
}

EntryLevel::~EntryLevel()
{
    if ( slots_ )
        qvMemFree( slots_ );
}

bool EntryLevel::addAddress( const QV_CHAR *chs, QV_INT length )
{
    uint64_t hash;
    if ( find( chs, length, &hash ) >= 0 )
        return false;
    QV_STRING *address = stringCreateUnfilled( length );
    copyChars( stringBacking( address ), chs, length );
    entries_->push( address, nullptr );
    if ( !slots_ )
        return true;
    if ( count() * 2 >= slotCount_ )
        rehash();
    else
        enterHash( hash, entries_->count_ - 1 );
    return true;
}

void EntryLevel::setValue( qvObj given )
{
    entries_->pairs_[entries_->count_ - 1].val = given;
}

void EntryLevel::addItem( qvObj given )
{
    entries_->push( nullptr, given );
}

qvObj EntryLevel::valueOf( QV_STRING *address )
{
    uint64_t hash;
    QV_INT pair = find( stringBacking( address ), stringLength( address ), &hash );
    return pair >= 0 ? entries_->pairs_[pair].val : nullptr;
}

void EntryLevel::set( QV_STRING *address, qvObj given )
{
    if ( addAddress( stringBacking( address ), stringLength( address ) ) )
    {
        setValue( given );
        return;
    }
    uint64_t hash;
    QV_INT pair = find( stringBacking( address ), stringLength( address ), &hash );
    replaceWith( &entries_->pairs_[pair].val, given );
}

// The entry of an address, -1 for none, and, in a level with a hash table, the hash of the address. An address that doesn't
// ascend begins that table.
QV_INT EntryLevel::find( const QV_CHAR *chs, QV_INT length, uint64_t *hash )
{
    *hash = 0;
    if ( !slots_ )
    {
        if ( count() == 0 )
            return -1;
        QV_STRING *last = addressOf( entries_->pairs_[entries_->count_ - 1] );
        QV_INT order = compareChars( stringBacking( last ), stringLength( last ), chs, length );
        if ( order <= 0 )
            return order < 0 ? -1 : entries_->count_ - 1;
        rehash();
    }
    *hash = hashChars( chs, length );
    QV_INT mask = slotCount_ - 1;
    for ( QV_INT slot = static_cast<QV_INT>( *hash ) & mask; slots_[slot].pair >= 0;
          slot = ( slot + 1 ) & mask )
    {
        QV_STRING *address = addressOf( entries_->pairs_[slots_[slot].pair] );
        if ( slots_[slot].hash == *hash && stringLength( address ) == length &&
             charsEqual( stringBacking( address ), chs, length ) )
            return slots_[slot].pair;
    }
    return -1;
}

void EntryLevel::enterHash( uint64_t hash, QV_INT pair )
{
    QV_INT mask = slotCount_ - 1;
    QV_INT slot = static_cast<QV_INT>( hash ) & mask;
    while ( slots_[slot].pair >= 0 )
    {
        slot = ( slot + 1 ) & mask;
    }
    slots_[slot] = { hash, pair };
}

// Makes the hash table of all addresses, with room for as many again.
void EntryLevel::rehash()
{
    QV_INT slotCount = 64;
    while ( slotCount < count() * 4 )
    {
        slotCount *= 2;
    }
    if ( slots_ )
        qvMemFree( slots_ );
    slots_ = static_cast<Slot *>( qvMemAllocN( slotCount, sizeof( Slot ) ) );
    slotCount_ = slotCount;
    for ( QV_INT slot = 0; slot < slotCount; slot++ )
    {
        slots_[slot].pair = -1;
    }
    for ( QV_INT pair = first_; pair < entries_->count_; pair++ )
    {
        QV_STRING *address = addressOf( entries_->pairs_[pair] );
        enterHash( hashChars( stringBacking( address ), stringLength( address ) ), pair );
    }
}

QV_DICT *EntryLevel::takeDict()
{
    QV_INT length = count();
    if ( length == 0 )
        return qvDictCreate();
    qv___DictPair *pairs = entries_->pairs_ + first_;
    if ( slots_ )
        std::sort( pairs, pairs + length, []( const qv___DictPair &pairA, const qv___DictPair &pairB ) {
            return stringCompare( addressOf( pairA ), addressOf( pairB ) ) < 0;
        } );
    QV_DICT *dict = dictCreateFresh();
    qv___DictMakeRoom( dict, 0, length );
    std::memcpy( dict->items, pairs, static_cast<size_t>( length ) * sizeof( qv___DictPair ) );
    entries_->count_ = first_;
    return dict;
}

QV_VECTOR *EntryLevel::takeItems()
{
    QV_INT length = count();
    if ( length == 0 )
        return qvVectorCreate();
    QV_VECTOR *items = vectorCreateFresh();
    qvObj *dest = qv___VectorMakeRoom( items, 0, length );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        dest[idx] = entries_->pairs_[first_ + idx].val;
    }
    entries_->count_ = first_;
    return items;
}

} // namespace qv
