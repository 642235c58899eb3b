// Storage of vectors: the pure planners of making room and compacting, and the movers that obey them.

#include <qv/base/qv_vector.hh>
#include <qv/sys/qv_mem.h>

#include <cstring>

namespace qv
{

namespace
{

// Gap in front of all items, also in an empty vector.
VectorPlan planFront( const VectorShape &shape, QV_INT count, const VectorLimits &limits )
{
    QV_INT spare = shape.fspace + shape.bspace;
    if ( shape.fspace >= count )
        return { 0, 0, shape.fspace - count, shape.fspace, shape.fspace - count, shape.bspace };
    if ( spare >= count )
        return { 0, 0, 0, count, 0, spare - count };
    return { limits.fspace + shape.length + count + limits.bspace,
             0,
             limits.fspace,
             limits.fspace + count,
             limits.fspace,
             limits.bspace };
}

// Gap behind all items.
VectorPlan planBack( const VectorShape &shape, QV_INT count, const VectorLimits &limits )
{
    QV_INT spare = shape.fspace + shape.bspace;
    QV_INT end = shape.fspace + shape.length;
    if ( shape.bspace >= count )
        return { 0, shape.fspace, end, end + count, shape.fspace, shape.bspace - count };
    if ( shape.isInline && spare >= count )
        return { 0, 0, shape.length, shape.length + count, 0, spare - count };
    return { end + count + limits.bspace, shape.fspace, end, end + count, shape.fspace, limits.bspace };
}

// Gap between two items.
VectorPlan planMiddle( const VectorShape &shape, QV_INT atIndex, QV_INT count, const VectorLimits &limits )
{
    QV_INT gap = shape.fspace + atIndex;
    if ( shape.bspace >= count )
        return { 0, shape.fspace, gap, gap + count, shape.fspace, shape.bspace - count };
    if ( shape.fspace + shape.bspace >= count )
    {
        QV_INT down = count - shape.bspace;
        return { 0, shape.fspace - down, gap - down, gap + shape.bspace, shape.fspace - down, 0 };
    }
    return { limits.fspace + shape.length + count + limits.bspace,
             limits.fspace,
             limits.fspace + atIndex,
             limits.fspace + atIndex + count,
             limits.fspace,
             limits.bspace };
}

} // namespace

VectorPlan vectorPlanRoom( const VectorShape &shape, QV_INT atIndex, QV_INT count,
                           const VectorLimits &limits )
{
    QV_CHECK( atIndex >= 0 );
    QV_CHECK( atIndex <= shape.length );
    QV_CHECK( count > 0 );
    QV_CHECK( QV_INT_ADD_OK( shape.length, count ) );
    QV_INT spare = shape.fspace > limits.fspace ? shape.fspace : limits.fspace;
    QV_CHECK( QV_INT_ADD_OK( shape.length + count, spare ) );
    QV_CHECK( QV_INT_ADD_OK( shape.length + count + spare, limits.bspace ) );
    if ( atIndex == 0 )
        return planFront( shape, count, limits );
    if ( atIndex == shape.length )
        return planBack( shape, count, limits );
    return planMiddle( shape, atIndex, count, limits );
}

VectorCompactPlan vectorPlanCompact( const VectorShape &shape, const VectorLimits &limits )
{
    if ( shape.length == 0 )
    {
        QV_INT spare = shape.fspace + shape.bspace;
        return { VectorCompactAction::centre, spare / 2, spare - spare / 2 };
    }
    if ( shape.isInline || ( shape.fspace <= 2 * limits.fspace && shape.bspace <= 2 * limits.bspace ) )
        return { VectorCompactAction::none, shape.fspace, shape.bspace };
    if ( shape.length <= limits.inlineSlots )
        return { VectorCompactAction::toInline, 0, limits.inlineSlots - shape.length };
    return { VectorCompactAction::shrink, limits.fspace, limits.bspace };
}

namespace
{

constexpr VectorLimits vectorLimits = {};

// The limits of a vector whose record may be a short one.
VectorLimits limitsOf( const QV_VECTOR *vec )
{
    VectorLimits limits = vectorLimits;
    QV_INT missing = static_cast<QV_INT>( sizeof( QV_VECTOR ) ) - vec->dbgObjectSize;
    limits.inlineSlots -= missing / static_cast<QV_INT>( sizeof( qvObj ) );
    return limits;
}

VectorShape shapeOf( const QV_VECTOR *vec )
{
    return { vec->length, vec->fspace, vec->bspace, vectorIsInline( vec ) };
}

void moveItems( qvObj *dest, const qvObj *src, QV_INT count )
{
    if ( count > 0 && dest != src )
        std::memmove( dest, src, static_cast<size_t>( count ) * sizeof( qvObj ) );
}

void reportAllocation( QV_VECTOR *vec )
{
    qv___ObjDbgSetAllocationSizeN( vec, vec->fspace + vec->length + vec->bspace, sizeof( qvObj ) );
}

} // namespace

} // namespace qv

qvObj *qv___VectorMakeRoom( QV_VECTOR *vec, QV_INT atIndex, QV_INT count )
{
    QV_CHECK( vec );
    QV_DEBUG_CHECK( QV_REF_RETAIN_COUNT( vec ) == 1 );
    qv::VectorPlan plan = qv::vectorPlanRoom( qv::shapeOf( vec ), atIndex, count, qv::vectorLimits );
    qvObj *before = vec->items;
    bool wasInline = qv::vectorIsInline( vec );
    if ( plan.allocSlots > 0 )
        vec->items =
            static_cast<qvObj *>( wasInline ? qvMemAllocN( plan.allocSlots, sizeof( qvObj ) )
                                            : qvMemReallocN( before, plan.allocSlots, sizeof( qvObj ) ) );
    const qvObj *from = ( wasInline ? before : vec->items ) + vec->fspace;

    // The tail never moves down past the head nor the head up past the tail, so that the tail can always go
    // first.
    qv::moveItems( vec->items + plan.tailSlot, from + atIndex, vec->length - atIndex );
    qv::moveItems( vec->items + plan.headSlot, from, atIndex );

    vec->length += count;
    vec->fspace = plan.fspace;
    vec->bspace = plan.bspace;
    if ( plan.allocSlots > 0 )
        qv::reportAllocation( vec );
    return vec->items + plan.gapSlot;
}

void qv___VectorCompact( QV_VECTOR *vec )
{
    QV_CHECK( vec );
    QV_CHECK( QV_REF_RETAIN_COUNT( vec ) == 1 );
    qv::VectorCompactPlan plan = qv::vectorPlanCompact( qv::shapeOf( vec ), qv::limitsOf( vec ) );
    qvObj *before = vec->items;
    const qvObj *from = qv::vectorBacking( vec );
    vec->fspace = plan.fspace;
    vec->bspace = plan.bspace;
    switch ( plan.action )
    {
    case qv::VectorCompactAction::none:
    case qv::VectorCompactAction::centre:
        return;
    case qv::VectorCompactAction::toInline:
        vec->items = vec->inlineStore;
        break;
    case qv::VectorCompactAction::shrink:
        vec->items =
            static_cast<qvObj *>( qvMemAllocN( plan.fspace + vec->length + plan.bspace, sizeof( qvObj ) ) );
        break;
    }
    qv::moveItems( qv::vectorBacking( vec ), from, vec->length );
    qvMemFree( before );
    if ( qv::vectorIsInline( vec ) )
        qv___ObjDbgSetAllocationSize( vec, 0 );
    else
        qv::reportAllocation( vec );
}

void qv___VectorCopyObjs( qvObj *dest, const qvObj *src, QV_INT count )
{
    for ( QV_INT idx = count - 1; idx >= 0; --idx )
        dest[idx] = qv::retained( src[idx] );
}
