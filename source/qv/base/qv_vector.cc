#include <qv/base/qv_vector.hh>

#include <qv/base/qv_nested.hh>
#include <qv/base/qv_random.h>
#include <qv/base/qv_release.hh>
#include <qv/base/qv_string.h>
#include <qv/sys/qv_mem.h>

#include <cstdlib>

QV_SORT_DEFINE( QV_VECTOR, qvVector,
                { .freeFunc = qv___VectorFreeFunc,
                  .compareFunc = qv___VectorCompareFunc,
                  .toStringFunc = qv___VectorToStringFunc } )

QV_VECTOR *qv___VectorEmpty;

void qv___VectorStartup()
{
    qv___VectorEmpty = qv::vectorCreateFresh();
}

void qv___VectorShutdown()
{
    qv::retire( &qv___VectorEmpty );
}

void qv___VectorFreeFunc( qvObj thisObj )
{
    QV_VECTOR *vec = qvVectorFrom( thisObj );
    QV_CHECK( vec );
    qvObj *items = qv::vectorBacking( vec );
    qv::NestedRelease nested;
    for ( QV_INT idx = 0; idx < vec->length && idx < qv::releaseAhead; ++idx )
        qv::fetchForRelease( items[idx] );
    for ( QV_INT idx = 0; idx < vec->length; ++idx )
    {
        if ( idx + qv::releaseAhead < vec->length )
            qv::fetchForRelease( items[idx + qv::releaseAhead] );
        qvObj item = items[idx];
        items[idx] = nullptr;
        nested.release( item );
    }
    if ( !qv::vectorIsInline( vec ) )
        qvMemFree( vec->items );
    qv___ObjDbgSetAllocationSize( vec, 0 );
}

QV_INT qv___VectorCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_VECTOR *thisVec = qvVectorFrom( thisObj );
    QV_VECTOR *thatVec = qvVectorFrom( thatObj );
    QV_CHECK( thisVec );
    QV_CHECK( thatVec );
    return qv::compareNested( thisVec, thatVec );
}

QV_STRING *qv___VectorToStringFunc( qvObj thisObj )
{
    QV_VECTOR *vec = qvVectorFrom( thisObj );
    QV_CHECK( vec );
    return qv::nestedToString( vec );
}

QV_VECTOR *qv::vectorCreateFresh()
{
    auto *vec = qv::create<QV_VECTOR>( qvVectorSort() );
    vec->length = 0;
    vec->fspace = QV_VECTOR_FSPACE;
    vec->bspace = QV_VECTOR_BSPACE;
    vec->items = vec->inlineStore;
    return vec;
}

QV_VECTOR *qv::vectorCreateUnfilled( QV_INT count )
{
    if ( count > QV___VECTOR_INLINE )
    {
        QV_VECTOR *vec = vectorCreateFresh();
        qv___VectorMakeRoom( vec, 0, count );
        return vec;
    }
    auto missing = static_cast<size_t>( QV___VECTOR_INLINE - count ) * sizeof( qvObj );
    auto *vec = static_cast<QV_VECTOR *>( qv___ObjCreate( sizeof( QV_VECTOR ) - missing, qvVectorSort() ) );
    vec->length = count;
    vec->fspace = 0;
    vec->bspace = 0;
    vec->items = vec->inlineStore;
    return vec;
}

namespace
{

// A range of a vector that the caller names.
void checkRange( QV_VECTOR *vec, QV_INT offset, QV_INT count )
{
    QV_CHECK( offset >= 0 );
    QV_CHECK( count >= 0 );
    QV_CHECK( QV_INT_ADD_OK( offset, count ) );
    QV_CHECK( offset + count <= vec->length );
}

void checkObjs( const qvObj *objs, QV_INT count )
{
    QV_CHECK( count >= 0 );
    QV_CHECK( objs || count == 0 );
    for ( QV_INT idx = 0; idx < count; ++idx )
        QV_CHECK( objs[idx] );
}

void appendRetained( QV_VECTOR *vec, const qvObj *objs, QV_INT count )
{
    if ( count > 0 )
        qv___VectorCopyObjs( qv___VectorMakeRoom( vec, vec->length, count ), objs, count );
}

// Opens a gap in the caller's vector, which the caller fills. A shared vector is replaced by a fresh record
// with the gap in it; the old record, which the new items may come from, is handed over through old, and the
// caller releases it.
qvObj *openGap( QV_VECTOR **vec, QV_INT idx, QV_INT count, QV_VECTOR **old )
{
    QV_VECTOR *before = *vec;
    *old = nullptr;
    if ( !qv::isShared( before ) )
        return qv___VectorMakeRoom( before, idx, count );

    QV_CHECK( QV_INT_ADD_OK( before->length, count ) );
    QV_VECTOR *fresh = qv::vectorCreateFresh();
    qvObj *dest = qv___VectorMakeRoom( fresh, 0, before->length + count );
    const qvObj *src = qv::vectorBacking( before );
    qv___VectorCopyObjs( dest, src, idx );
    qv___VectorCopyObjs( dest + idx + count, src + idx, before->length - idx );
    *vec = fresh;
    *old = before;
    return dest + idx;
}

// The core of all inserts: retains count references, which mustn't lie in a private vector's own storage.
void insertRetained( QV_VECTOR **vec, QV_INT idx, const qvObj *src, QV_INT count )
{
    if ( count == 0 )
        return;
    QV_VECTOR *old;
    qv___VectorCopyObjs( openGap( vec, idx, count, &old ), src, count );
    qv::releaseOptional( old );
}

void checkPlace( QV_VECTOR **vec, QV_INT idx )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *vec )->length );
}

QV_INT endOf( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    return ( *vec )->length;
}

} // namespace

// ---- Creating ----

QV_VECTOR *qvVectorCreate( void )
{
    return qv::retained( qv___VectorEmpty );
}

QV_VECTOR *qvVectorCreateFrom( QV_VECTOR *src )
{
    QV_CHECK( src );
    return qvVectorCreateFromInner( src, 0, src->length );
}

QV_VECTOR *qvVectorCreateFromInner( QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( src );
    checkRange( src, offset, count );
    QV_VECTOR *vec = qv::vectorCreateFresh();
    appendRetained( vec, qv::vectorBacking( src ) + offset, count );
    return vec;
}

QV_VECTOR *qvVectorCreateFromLeading( QV_VECTOR *src, QV_INT count )
{
    return qvVectorCreateFromInner( src, 0, count );
}

QV_VECTOR *qvVectorCreateFromTrailing( QV_VECTOR *src, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    return qvVectorCreateFromInner( src, src->length - count, count );
}

QV_VECTOR *qvVectorCreateFromOuter( QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    QV_CHECK( src );
    checkRange( src, offset, count );
    QV_VECTOR *vec = qv::vectorCreateFresh();
    QV_INT kept = src->length - count;
    if ( kept == 0 )
        return vec;
    qvObj *dest = qv___VectorMakeRoom( vec, 0, kept );
    const qvObj *items = qv::vectorBacking( src );
    qv___VectorCopyObjs( dest, items, offset );
    qv___VectorCopyObjs( dest + offset, items + offset + count, kept - offset );
    return vec;
}

QV_VECTOR *qvVectorCreateFromObj( qvObj obj )
{
    QV_CHECK( obj );
    QV_VECTOR *vec = qv::vectorCreateFresh();
    appendRetained( vec, &obj, 1 );
    return vec;
}

QV_VECTOR *qvVectorCreateFromObjsUse( qvObj *src, QV_INT count )
{
    checkObjs( src, count );
    if ( count == 0 )
        return qvVectorCreate();
    auto *vec = qv::create<QV_VECTOR>( qvVectorSort() );
    vec->length = count;
    vec->fspace = 0;
    vec->bspace = 0;
    vec->items = src;
    qv___ObjDbgSetAllocationSizeN( vec, count, sizeof( qvObj ) );
    return vec;
}

QV_VECTOR *qvVectorCreateFromObjsCopy( const qvObj *src, QV_INT count )
{
    checkObjs( src, count );
    if ( count == 0 )
        return qvVectorCreate();
    return qvVectorCreateFromObjsUse( static_cast<qvObj *>( qvMemDupN( src, count, sizeof( qvObj ) ) ),
                                      count );
}

// ---- Reading ----

QV_INT qvVectorLength( QV_VECTOR *vec )
{
    QV_CHECK( vec );
    return vec->length;
}

const qvObj *qvVectorBacking( QV_VECTOR *vec )
{
    QV_CHECK( vec );
    return qv::vectorBacking( vec );
}

qvObj qvVectorObjAt( QV_VECTOR *vec, QV_INT idx )
{
    QV_CHECK( vec );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < vec->length );
    return qv::retained( qv::vectorAt( vec, idx ) );
}

QV_SORT *qvVectorSortAt( QV_VECTOR *vec, QV_INT idx )
{
    QV_CHECK( vec );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < vec->length );
    return qvObjSort( qv::vectorAt( vec, idx ) );
}

QV_BOOL qvVectorContainsOnly( QV_VECTOR *vec, QV_SORT *sort )
{
    QV_CHECK( vec );
    QV_CHECK( sort );
    const qvObj *items = qv::vectorBacking( vec );
    for ( QV_INT idx = 0; idx < vec->length; ++idx )
    {
        if ( qvObjSort( items[idx] ) != sort )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_INT qvVectorIndexOfObj( QV_VECTOR *vec, qvObj obj, QV_BOOL byValue )
{
    QV_CHECK( vec );
    QV_CHECK( obj );
    const qvObj *items = qv::vectorBacking( vec );
    for ( QV_INT idx = 0; idx < vec->length; ++idx )
    {
        if ( items[idx] == obj || ( byValue && qvObjCompare( items[idx], obj ) == 0 ) )
            return idx;
    }
    return -1;
}

QV_BOOL qvVectorHasObj( QV_VECTOR *vec, qvObj obj, QV_BOOL byValue )
{
    return qvVectorIndexOfObj( vec, obj, byValue ) != -1;
}

// ---- Inserting ranges of vectors ----

void qvVectorInsert( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src )
{
    QV_CHECK( src );
    qvVectorInsertInner( vec, idx, src, 0, src->length );
}

void qvVectorInsertInner( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    checkPlace( vec, idx );
    QV_CHECK( src );
    checkRange( src, offset, count );
    if ( count == 0 )
        return;
    // A vector that is inserted into itself counts as shared for the edit.
    qv::Local<QV_VECTOR> hold = qv::Local<QV_VECTOR>::share( src == *vec ? src : nullptr );
    insertRetained( vec, idx, qv::vectorBacking( src ) + offset, count );
}

void qvVectorInsertLeading( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT count )
{
    qvVectorInsertInner( vec, idx, src, 0, count );
}

void qvVectorInsertTrailing( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT count )
{
    QV_CHECK( src );
    QV_CHECK( count >= 0 );
    qvVectorInsertInner( vec, idx, src, src->length - count, count );
}

void qvVectorInsertOuter( QV_VECTOR **vec, QV_INT idx, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    checkPlace( vec, idx );
    QV_CHECK( src );
    checkRange( src, offset, count );
    qv::Local<QV_VECTOR> hold = qv::Local<QV_VECTOR>::share( src == *vec ? src : nullptr );
    const qvObj *items = qv::vectorBacking( src );
    insertRetained( vec, idx, items + offset + count, src->length - offset - count );
    insertRetained( vec, idx, items, offset );
}

void qvVectorPrepend( QV_VECTOR **vec, QV_VECTOR *src )
{
    qvVectorInsert( vec, 0, src );
}

void qvVectorAppend( QV_VECTOR **vec, QV_VECTOR *src )
{
    qvVectorInsert( vec, endOf( vec ), src );
}

void qvVectorPrependInner( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    qvVectorInsertInner( vec, 0, src, offset, count );
}

void qvVectorAppendInner( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    qvVectorInsertInner( vec, endOf( vec ), src, offset, count );
}

void qvVectorPrependLeading( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count )
{
    qvVectorInsertLeading( vec, 0, src, count );
}

void qvVectorAppendLeading( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count )
{
    qvVectorInsertLeading( vec, endOf( vec ), src, count );
}

void qvVectorPrependTrailing( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count )
{
    qvVectorInsertTrailing( vec, 0, src, count );
}

void qvVectorAppendTrailing( QV_VECTOR **vec, QV_VECTOR *src, QV_INT count )
{
    qvVectorInsertTrailing( vec, endOf( vec ), src, count );
}

void qvVectorPrependOuter( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    qvVectorInsertOuter( vec, 0, src, offset, count );
}

void qvVectorAppendOuter( QV_VECTOR **vec, QV_VECTOR *src, QV_INT offset, QV_INT count )
{
    qvVectorInsertOuter( vec, endOf( vec ), src, offset, count );
}

// ---- Inserting objects ----

void qvVectorInsertObjs( QV_VECTOR **vec, QV_INT idx, const qvObj *src, QV_INT count )
{
    checkPlace( vec, idx );
    checkObjs( src, count );
    // An array that is the vector's own backing must outlive the move of the items.
    bool isOwn = src >= ( *vec )->items && src < qv::vectorBacking( *vec ) + ( *vec )->length;
    qv::Local<QV_VECTOR> hold = qv::Local<QV_VECTOR>::share( isOwn ? *vec : nullptr );
    insertRetained( vec, idx, src, count );
}

void qvVectorPrependObjs( QV_VECTOR **vec, const qvObj *src, QV_INT count )
{
    qvVectorInsertObjs( vec, 0, src, count );
}

void qvVectorAppendObjs( QV_VECTOR **vec, const qvObj *src, QV_INT count )
{
    qvVectorInsertObjs( vec, endOf( vec ), src, count );
}

void qvVectorInsertObj( QV_VECTOR **vec, QV_INT idx, qvObj src )
{
    checkPlace( vec, idx );
    QV_CHECK( src );
    // A vector that is stored in itself counts as shared for the edit.
    qv::Local<qv___Obj> hold = qv::Local<qv___Obj>::share( src == *vec ? src : nullptr );
    insertRetained( vec, idx, &src, 1 );
}

void qvVectorPrependObj( QV_VECTOR **vec, qvObj src )
{
    qvVectorInsertObj( vec, 0, src );
}

void qvVectorAppendObj( QV_VECTOR **vec, qvObj src )
{
    qvVectorInsertObj( vec, endOf( vec ), src );
}

void qv___VectorPushNoRetain( QV_VECTOR **vec, const qvObj *src, QV_INT count )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    checkObjs( src, count );
    if ( count == 0 )
        return;
    QV_VECTOR *old;
    qvMemCopyN( openGap( vec, ( *vec )->length, count, &old ), src, count, sizeof( qvObj ) );
    qv::releaseOptional( old );
}

// ---- Replacing ----

void qvVectorSetObjAt( QV_VECTOR **vec, QV_INT idx, qvObj item )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    QV_CHECK( idx >= -1 );
    QV_CHECK( idx <= ( *vec )->length );
    QV_CHECK( item );
    if ( idx == -1 || idx == ( *vec )->length )
    {
        qvVectorInsertObj( vec, idx == -1 ? 0 : idx, item );
        return;
    }
    // A vector that is stored in itself counts as shared for the edit.
    qv::Local<qv___Obj> hold = qv::Local<qv___Obj>::share( item == *vec ? item : nullptr );
    qv::makePrivate( vec, qvVectorCreateFrom );
    qv::assign( qv::vectorBacking( *vec ) + idx, item );
}

// ---- Deleting ----

void qvVectorClear( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    qv::replaceWith( vec, qvVectorCreate() );
}

namespace
{

void releaseItems( QV_VECTOR *vec, QV_INT offset, QV_INT count )
{
    const qvObj *items = qv::vectorBacking( vec ) + offset;
    for ( QV_INT idx = 0; idx < count; ++idx )
        qv::release( items[idx] );
}

} // namespace

void qvVectorDelInner( QV_VECTOR **vec, QV_INT offset, QV_INT count )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    checkRange( *vec, offset, count );
    if ( count == 0 )
        return;
    if ( count == ( *vec )->length )
    {
        qvVectorClear( vec );
        return;
    }
    qv::makePrivate( vec, qvVectorCreateFrom );
    QV_VECTOR *own = *vec;
    releaseItems( own, offset, count );
    if ( offset == 0 )
    {
        own->fspace += count;
    }
    else
    {
        qvObj *gap = qv::vectorBacking( own ) + offset;
        qvMemMoveN( gap, gap + count, own->length - offset - count, sizeof( qvObj ) );
        own->bspace += count;
    }
    own->length -= count;
    qv___VectorCompact( own );
}

void qvVectorDelAt( QV_VECTOR **vec, QV_INT idx )
{
    qvVectorDelInner( vec, idx, 1 );
}

void qvVectorDelLeading( QV_VECTOR **vec, QV_INT count )
{
    qvVectorDelInner( vec, 0, count );
}

void qvVectorDelTrailing( QV_VECTOR **vec, QV_INT count )
{
    QV_CHECK( count >= 0 );
    qvVectorDelInner( vec, endOf( vec ) - count, count );
}

void qvVectorDelOuter( QV_VECTOR **vec, QV_INT offset, QV_INT count )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    checkRange( *vec, offset, count );
    if ( count == ( *vec )->length )
        return;
    if ( count == 0 )
    {
        qvVectorClear( vec );
        return;
    }
    qv::makePrivate( vec, qvVectorCreateFrom );
    QV_VECTOR *own = *vec;
    QV_INT behind = own->length - offset - count;
    releaseItems( own, 0, offset );
    releaseItems( own, offset + count, behind );
    own->fspace += offset;
    own->bspace += behind;
    own->length = count;
    qv___VectorCompact( own );
}

// ---- Stack and queue ----

void qvVectorPush( QV_VECTOR **vec, qvObj obj )
{
    qvVectorAppendObj( vec, obj );
}

qvObj qvVectorPop( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    QV_CHECK( ( *vec )->length > 0 );
    qv::makePrivate( vec, qvVectorCreateFrom );
    QV_VECTOR *own = *vec;
    qvObj *last = qv::vectorBacking( own ) + own->length - 1;
    qvObj item = *last;
    *last = nullptr;
    --own->length;
    ++own->bspace;
    qv___VectorCompact( own );
    return item;
}

void qvVectorShift( QV_VECTOR **vec, qvObj obj )
{
    qvVectorPrependObj( vec, obj );
}

qvObj qvVectorUnshift( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    QV_CHECK( ( *vec )->length > 0 );
    qv::makePrivate( vec, qvVectorCreateFrom );
    QV_VECTOR *own = *vec;
    qvObj *first = qv::vectorBacking( own );
    qvObj item = *first;
    *first = nullptr;
    ++own->fspace;
    --own->length;
    qv___VectorCompact( own );
    return item;
}

// ---- Bulk operations ----

void qvVectorReverse( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    if ( ( *vec )->length < 2 )
        return;
    qv::makePrivate( vec, qvVectorCreateFrom );
    qvObj *items = qv::vectorBacking( *vec );
    for ( QV_INT low = 0, high = ( *vec )->length - 1; low < high; ++low, --high )
    {
        qvObj item = items[low];
        items[low] = items[high];
        items[high] = item;
    }
}

void qvVectorStringize( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    if ( ( *vec )->length == 0 )
        return;
    qv::makePrivate( vec, qvVectorCreateFrom );
    qvObj *items = qv::vectorBacking( *vec );
    for ( QV_INT idx = 0; idx < ( *vec )->length; ++idx )
        qv::replaceWith( &items[idx], qv::objOf( qvObjToString( items[idx] ) ) );
}

void qvVectorShuffle( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    qv::Local<QV_VECTOR> shuffled( qvVectorCreate() );
    while ( ( *vec )->length > 0 )
    {
        QV_INT idx = qvRandomNonNegativeIntRange( 0, ( *vec )->length - 1 );
        qvObj item = qvVectorObjAt( *vec, idx );
        qvVectorDelAt( vec, idx );
        qv::vectorAppendGiven( shuffled.edit(), item );
    }
    qv::replaceWith( vec, shuffled.give() );
}

namespace
{

int compareSlots( const void *slotA, const void *slotB )
{
    QV_INT order = qvObjCompare( *static_cast<const qvObj *>( slotA ), *static_cast<const qvObj *>( slotB ) );
    return order < 0 ? -1 : order > 0;
}

} // namespace

void qvVectorQsort( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( ( *vec )->length ) );
    qv::makePrivate( vec, qvVectorCreateFrom );
    std::qsort( qv::vectorBacking( *vec ), static_cast<size_t>( ( *vec )->length ), sizeof( qvObj ),
                compareSlots );
}
