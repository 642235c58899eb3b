#include <qv/base/qv_dict.hh>

#include <qv/base/qv_nested.hh>
#include <qv/base/qv_release.hh>
#include <qv/base/qv_vector.hh>
#include <qv/sys/qv_mem.h>

#include <cstring>

QV_SORT_DEFINE( QV_DICT, qvDict,
                { .freeFunc = qv___DictFreeFunc,
                  .compareFunc = qv___DictCompareFunc,
                  .toStringFunc = qv___DictToStringFunc } )

QV_DICT *qv___DictEmpty;

void qv___DictStartup()
{
    qv___DictEmpty = qv::dictCreateFresh();
}

void qv___DictShutdown()
{
    qv::retire( &qv___DictEmpty );
}

namespace
{

// Free pairs that a grown array gets, and free pairs above which it is compacted.
constexpr QV_INT growStep = 32;
constexpr QV_INT compactLimit = 64;

bool isInline( const QV_DICT *dict )
{
    return dict->items == dict->inlineStore;
}

// Pairs that the inline store of this record has room for.
QV_INT inlinePairs( const QV_DICT *dict )
{
    constexpr auto fullSize = static_cast<QV_INT>( sizeof( QV_DICT ) );
    constexpr auto pairSize = static_cast<QV_INT>( sizeof( qv___DictPair ) );
    return QV___DICT_INLINE - ( fullSize - dict->dbgObjectSize ) / pairSize;
}

void movePairs( qv___DictPair *dest, const qv___DictPair *src, QV_INT count )
{
    std::memmove( dest, src, static_cast<size_t>( count ) * sizeof( qv___DictPair ) );
}

void releasePair( const qv___DictPair &pair )
{
    qv::release( pair.key );
    qv::release( pair.val );
}

} // namespace

void qv___DictFreeFunc( qvObj thisObj )
{
    QV_DICT *dict = qvDictFrom( thisObj );
    QV_CHECK( dict );
    qv::NestedRelease nested;
    for ( QV_INT idx = 0; idx < dict->length && idx < qv::releaseAhead; ++idx )
        qv::fetchForRelease( dict->items[idx].val );
    for ( QV_INT idx = 0; idx < dict->length; ++idx )
    {
        if ( idx + qv::releaseAhead < dict->length )
            qv::fetchForRelease( dict->items[idx + qv::releaseAhead].val );
        nested.release( dict->items[idx].key );
        nested.release( dict->items[idx].val );
    }
    if ( !isInline( dict ) )
        qvMemFree( dict->items );
    qv___ObjDbgSetAllocationSize( dict, 0 );
}

QV_INT qv___DictCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_DICT *thisDict = qvDictFrom( thisObj );
    QV_DICT *thatDict = qvDictFrom( thatObj );
    QV_CHECK( thisDict );
    QV_CHECK( thatDict );
    return qv::compareNested( thisDict, thatDict );
}

QV_STRING *qv___DictToStringFunc( qvObj thisObj )
{
    QV_DICT *dict = qvDictFrom( thisObj );
    QV_CHECK( dict );
    return qv::nestedToString( dict );
}

QV_DICT *qv::dictCreateFresh()
{
    auto *dict = qv::create<QV_DICT>( qvDictSort() );
    dict->alloc = QV___DICT_INLINE;
    dict->length = 0;
    dict->items = dict->inlineStore;
    return dict;
}

// ---- Storage ----

namespace
{

// Makes room for count more pairs without taking it into use.
void reserve( QV_DICT *dict, QV_INT count )
{
    QV_CHECK( QV_INT_ADD_OK( dict->length, count ) );
    QV_INT needed = dict->length + count;
    if ( needed <= dict->alloc )
        return;
    QV_INT alloc = QV_INT_ADD_OK( needed, growStep ) ? needed + growStep : needed;
    qv___DictPair *inlinePairs = isInline( dict ) ? dict->items : nullptr;
    dict->items = static_cast<qv___DictPair *>(
        qvMemReallocN( inlinePairs ? nullptr : dict->items, alloc, sizeof( qv___DictPair ) ) );
    if ( inlinePairs )
        movePairs( dict->items, inlinePairs, dict->length );
    dict->alloc = alloc;
    qv___ObjDbgSetAllocationSizeN( dict, alloc, sizeof( qv___DictPair ) );
}

} // namespace

void qv___DictMakeRoom( QV_DICT *dict, QV_INT atIndex, QV_INT count )
{
    QV_CHECK( dict );
    QV_CHECK( atIndex >= 0 );
    QV_CHECK( atIndex <= dict->length );
    QV_CHECK( count > 0 );
    QV_DEBUG_CHECK( QV_REF_RETAIN_COUNT( dict ) == 1 );
    reserve( dict, count );
    movePairs( dict->items + atIndex + count, dict->items + atIndex, dict->length - atIndex );
    dict->length += count;
}

void qv___DictCompact( QV_DICT *dict )
{
    QV_CHECK( dict );
    QV_CHECK( QV_REF_RETAIN_COUNT( dict ) == 1 );
    if ( isInline( dict ) || dict->alloc - dict->length <= compactLimit )
        return;
    if ( dict->length > inlinePairs( dict ) )
    {
        dict->items = static_cast<qv___DictPair *>(
            qvMemReallocN( dict->items, dict->length, sizeof( qv___DictPair ) ) );
        dict->alloc = dict->length;
        qv___ObjDbgSetAllocationSizeN( dict, dict->alloc, sizeof( qv___DictPair ) );
        return;
    }
    movePairs( dict->inlineStore, dict->items, dict->length );
    qvMemFree( dict->items );
    dict->items = dict->inlineStore;
    dict->alloc = inlinePairs( dict );
    qv___ObjDbgSetAllocationSize( dict, 0 );
}

void qv::dictMovePair( QV_DICT *dict, QV_INT from, QV_INT dest )
{
    qv___DictPair pair = dict->items[from];
    if ( dest > from )
        movePairs( dict->items + from, dict->items + from + 1, dest - from );
    else
        movePairs( dict->items + dest + 1, dict->items + dest, from - dest );
    dict->items[dest] = pair;
}

QV_DICT *qv::dictCreateUnfilled( QV_INT count )
{
    if ( count > QV___DICT_INLINE )
    {
        QV_DICT *dict = dictCreateFresh();
        qv___DictMakeRoom( dict, 0, count );
        return dict;
    }
    auto missing = static_cast<size_t>( QV___DICT_INLINE - count ) * sizeof( qv___DictPair );
    auto *dict = static_cast<QV_DICT *>( qv___ObjCreate( sizeof( QV_DICT ) - missing, qvDictSort() ) );
    dict->alloc = count;
    dict->length = count;
    dict->items = dict->inlineStore;
    return dict;
}

// ---- Creating ----

QV_DICT *qvDictCreate( void )
{
    return qv::retained( qv___DictEmpty );
}

QV_DICT *qvDictCreateFrom( QV_DICT *src )
{
    QV_CHECK( src );
    QV_DICT *dict = qv::dictCreateFresh();
    if ( src->length > 0 )
        qv___DictMakeRoom( dict, 0, src->length );
    for ( QV_INT idx = 0; idx < src->length; ++idx )
        dict->items[idx] = { qv::retained( src->items[idx].key ), qv::retained( src->items[idx].val ) };
    return dict;
}

QV_DICT *qvDictCreateWithKeysAndValues( QV_VECTOR *keysVector, QV_VECTOR *valuesVector )
{
    QV_CHECK( keysVector );
    QV_CHECK( valuesVector );
    QV_CHECK( qv::vectorLength( keysVector ) == qv::vectorLength( valuesVector ) );
    QV_DICT *dict = qv::dictCreateFresh();
    reserve( dict, qv::vectorLength( keysVector ) );
    // From the last to the first, so that of equal keys the first one stays.
    for ( QV_INT idx = qv::vectorLength( keysVector ) - 1; idx >= 0; --idx )
        qvDictSetObjKey( &dict, qv::vectorAt( keysVector, idx ), qv::vectorAt( valuesVector, idx ) );
    return dict;
}

// ---- By position ----

namespace
{

void checkPosition( QV_DICT *dict, QV_INT idx )
{
    QV_CHECK( dict );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < dict->length );
}

// Closes the slot of a pair whose references are no longer the dictionary's.
void closeSlot( QV_DICT *dict, QV_INT idx )
{
    movePairs( dict->items + idx, dict->items + idx + 1, dict->length - idx - 1 );
    --dict->length;
}

void deletePair( QV_DICT **dict, QV_INT idx )
{
    if ( ( *dict )->length == 1 )
    {
        qvDictClear( dict );
        return;
    }
    qv::makePrivate( dict, qvDictCreateFrom );
    releasePair( ( *dict )->items[idx] );
    closeSlot( *dict, idx );
    qv___DictCompact( *dict );
}

// One reference of each pair, the key or the value, as a vector.
QV_VECTOR *column( QV_DICT *dict, qvObj qv___DictPair::*member )
{
    if ( dict->length == 0 )
        return qvVectorCreate();
    auto *objs = static_cast<qvObj *>( qvMemAllocN( dict->length, sizeof( qvObj ) ) );
    for ( QV_INT idx = 0; idx < dict->length; ++idx )
        objs[idx] = qv::retained( dict->items[idx].*member );
    return qvVectorCreateFromObjsUse( objs, dict->length );
}

} // namespace

QV_INT qvDictLength( QV_DICT *dict )
{
    QV_CHECK( dict );
    return dict->length;
}

qvObj qvDictKeyAt( QV_DICT *dict, QV_INT idx )
{
    checkPosition( dict, idx );
    return qv::retained( dict->items[idx].key );
}

qvObj qvDictValueAt( QV_DICT *dict, QV_INT idx )
{
    checkPosition( dict, idx );
    return qv::retained( dict->items[idx].val );
}

QV_VECTOR *qvDictKeysVector( QV_DICT *dict )
{
    QV_CHECK( dict );
    return column( dict, &qv___DictPair::key );
}

QV_VECTOR *qvDictValuesVector( QV_DICT *dict )
{
    QV_CHECK( dict );
    return column( dict, &qv___DictPair::val );
}

void qvDictSetValueAt( QV_DICT **dict, QV_INT idx, qvObj value )
{
    QV_CHECK( dict );
    checkPosition( *dict, idx );
    QV_CHECK( value );
    // Retained before the copy is made, since the value may be the dictionary itself.
    qv::Local<qv___Obj> given = qv::Local<qv___Obj>::share( value );
    qv::makePrivate( dict, qvDictCreateFrom );
    qv::replaceWith( &( *dict )->items[idx].val, given.give() );
}

void qvDictDelAt( QV_DICT **dict, QV_INT idx )
{
    QV_CHECK( dict );
    checkPosition( *dict, idx );
    deletePair( dict, idx );
}

void qvDictDelValue( QV_DICT **dict, qvObj value, QV_BOOL byValue )
{
    QV_CHECK( dict );
    QV_CHECK( *dict );
    QV_CHECK( value );
    if ( ( *dict )->length == 0 )
        return;
    // The value may have no other holder than the pairs that go.
    qv::Local<qv___Obj> hold = qv::Local<qv___Obj>::share( value );
    qv::makePrivate( dict, qvDictCreateFrom );
    QV_INT idx = 0;
    while ( idx < ( *dict )->length )
    {
        qvObj present = ( *dict )->items[idx].val;
        if ( present != value && !( byValue && qvObjCompare( present, value ) == 0 ) )
        {
            ++idx;
            continue;
        }
        if ( ( *dict )->length == 1 )
        {
            qvDictClear( dict );
            return;
        }
        releasePair( ( *dict )->items[idx] );
        closeSlot( *dict, idx );
    }
    qv___DictCompact( *dict );
}

// ---- Merging ----

void qvDictInclude( QV_DICT **dest, QV_DICT *src, QV_BOOL replace )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( src );
    if ( src->length == 0 )
        return;
    // src may be the edited dictionary, or a value in it that is about to be replaced.
    qv::Local<QV_DICT> hold = qv::Local<QV_DICT>::share( src );
    qv::makePrivate( dest, qvDictCreateFrom );
    for ( QV_INT idx = 0; idx < src->length; ++idx )
    {
        const qv___DictPair &pair = src->items[idx];
        if ( replace || !qvDictHasObjKey( *dest, pair.key ) )
            qvDictSetObjKey( dest, pair.key, pair.val );
    }
}

void qvDictExclude( QV_DICT **dest, QV_DICT *src )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( src );
    if ( src == *dest )
    {
        qvDictClear( dest );
        return;
    }
    qv::Local<QV_DICT> hold = qv::Local<QV_DICT>::share( src );
    for ( QV_INT idx = 0; idx < src->length; ++idx )
        qvDictDelObjKey( dest, src->items[idx].key );
}

void qvDictIntersect( QV_DICT **dest, QV_DICT *src, QV_BOOL replace )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( src );
    if ( src == *dest || ( *dest )->length == 0 )
        return;
    qv::Local<QV_DICT> survivors( qvDictCreate() );
    for ( QV_INT idx = 0; idx < ( *dest )->length; ++idx )
    {
        const qv___DictPair &pair = ( *dest )->items[idx];
        QV_INT srcIdx = qvDictIndexOfObjKey( src, pair.key );
        if ( srcIdx != -1 )
            qvDictSetObjKey( survivors.edit(), pair.key, replace ? src->items[srcIdx].val : pair.val );
    }
    qv::replaceWith( dest, survivors.give() );
}

QV_BOOL qvDictDisjoint( QV_DICT *dictA, QV_DICT *dictB )
{
    QV_CHECK( dictA );
    QV_CHECK( dictB );
    QV_DICT *shorter = dictA->length <= dictB->length ? dictA : dictB;
    QV_DICT *longer = shorter == dictA ? dictB : dictA;
    for ( QV_INT idx = 0; idx < shorter->length; ++idx )
    {
        if ( qvDictHasObjKey( longer, shorter->items[idx].key ) )
            return QV_FALSE;
    }
    return QV_TRUE;
}

void qvDictClear( QV_DICT **dict )
{
    QV_CHECK( dict );
    QV_CHECK( *dict );
    qv::replaceWith( dict, qvDictCreate() );
}

void qv___DictClear( QV_DICT **dict )
{
    QV_CHECK( dict );
    QV_CHECK( *dict );
    if ( qv::isShared( *dict ) )
    {
        qvDictClear( dict );
        return;
    }
    for ( QV_INT idx = 0; idx < ( *dict )->length; ++idx )
        releasePair( ( *dict )->items[idx] );
    ( *dict )->length = 0;
}
