// Where the text of a string lies in its storage: pure plans, and the movers that obey them.

#include <qv/base/qv_string.hh>

#include <qv/sys/qv_mem.h>

static void moveChars( QV_CHAR *dest, const QV_CHAR *src, QV_INT count )
{
    if ( count > 0 && dest != src )
        std::memmove( dest, src, static_cast<size_t>( count ) * sizeof( QV_CHAR ) );
}

static qv::StringShape shapeOf( QV_STRING *qvs )
{
    return { qvs->length, qvs->fspace, qvs->bspace, qvs->chars == qvs->inlineChars };
}

// A prepend takes or makes front spare, an append back spare, an insertion between uses both. Only a prepend and an inline
// append slide the whole text; a grown array has front spare unless it grew by an append, which keeps what it had.
qv::StringRoomPlan qv::planStringRoom( const StringShape &shape, QV_INT atIndex, QV_INT count,
                                       const StringLimits &limits )
{
    QV_INT length = shape.length + count;
    QV_INT back = limits.backFor( length );
    QV_INT spare = shape.fspace + shape.bspace;
    if ( atIndex == 0 )
    {
        if ( shape.fspace >= count )
            return { shape.fspace - count, shape.bspace, 0 };
        if ( spare >= count )
            return { 0, spare - count, 0 };
        return { limits.front, back, limits.front + length + back };
    }
    if ( shape.bspace >= count )
        return { shape.fspace, shape.bspace - count, 0 };
    if ( atIndex == shape.length )
    {
        if ( shape.isInline && spare >= count )
            return { 0, spare - count, 0 };
        return { shape.fspace, back, shape.fspace + length + back };
    }
    if ( spare >= count )
        return { spare - count, 0, 0 };
    return { limits.front, back, limits.front + length + back };
}

// Replaces the storage by a larger one that holds the text at the same slot.
static void growStorage( QV_STRING *qvs, QV_INT slots )
{
    if ( qvs->chars != qvs->inlineChars )
    {
        qvs->chars = static_cast<QV_CHAR *>( qvMemReallocN( qvs->chars, slots, sizeof( QV_CHAR ) ) );
        return;
    }
    auto *chars = static_cast<QV_CHAR *>( qvMemAllocN( slots, sizeof( QV_CHAR ) ) );
    qv::copyChars( chars + qvs->fspace, qvs->chars + qvs->fspace, qvs->length );
    qvs->chars = chars;
}

// Moves head and tail to both sides of the gap. What moves up must go from the back, and what moves down from the front, so
// that neither part runs over the other.
static void moveAroundGap( QV_STRING *qvs, QV_INT fspace, QV_INT atIndex, QV_INT count )
{
    QV_CHAR *from = qvs->chars + qvs->fspace;
    QV_CHAR *to = qvs->chars + fspace;
    bool headGoesUp = fspace > qvs->fspace;
    if ( !headGoesUp )
        moveChars( to, from, atIndex );
    moveChars( to + atIndex + count, from + atIndex, qvs->length - atIndex );
    if ( headGoesUp )
        moveChars( to, from, atIndex );
}

QV_CHAR *qv___StringMakeRoom( QV_STRING *qvs, QV_INT atIndex, QV_INT count )
{
    QV_CHECK( qvs );
    QV_CHECK( atIndex >= 0 );
    QV_CHECK( atIndex <= qvs->length );
    QV_CHECK( count >= 0 );
    QV_DEBUG_CHECK( !qv::isShared( qvs ) );
    if ( count == 0 )
        return qv::stringBacking( qvs ) + atIndex;
    QV_CHECK( QV_INT_ADD_OK( qvs->length, count ) );
    QV_CHECK( QV_INT_ADD_OK( qvs->length + count,
                             qvs->fspace + qv::stringLimits.front + qv::stringLimits.longBack ) );
    qv::StringRoomPlan plan = qv::planStringRoom( shapeOf( qvs ), atIndex, count, qv::stringLimits );
    if ( plan.slots > 0 )
        growStorage( qvs, plan.slots );
    moveAroundGap( qvs, plan.fspace, atIndex, count );
    qvs->length += count;
    qvs->fspace = plan.fspace;
    qvs->bspace = plan.bspace;
    if ( plan.slots > 0 )
        qv___ObjDbgSetAllocationSizeN( qvs, plan.slots, sizeof( QV_CHAR ) );
    return qv::stringBacking( qvs ) + atIndex;
}

qv::StringCompaction qv::planStringCompaction( const StringShape &shape, const StringLimits &limits )
{
    if ( shape.fspace <= 2 * limits.front && shape.bspace <= 2 * limits.backFor( shape.length ) )
        return StringCompaction::none;
    if ( shape.length == 0 )
        return StringCompaction::empty;
    if ( shape.isInline )
        return StringCompaction::none;
    return shape.length <= limits.inlineSlots ? StringCompaction::toInline : StringCompaction::toArray;
}

static void returnToInline( QV_STRING *qvs )
{
    QV_CHAR *chars = qvs->chars;
    if ( chars != qvs->inlineChars )
    {
        qv::copyChars( qvs->inlineChars, chars + qvs->fspace, qvs->length );
        qvMemFree( chars );
        qv___ObjDbgSetAllocationSize( qvs, 0 );
    }
    qvs->chars = qvs->inlineChars;
    qvs->fspace = 0;
    qvs->bspace = QV___STRING_INLINE - qvs->length;
}

static void moveToSmallerArray( QV_STRING *qvs )
{
    QV_INT back = qv::stringLimits.backFor( qvs->length );
    QV_INT slots = QV_STRING_FSPACE + qvs->length + back;
    auto *chars = static_cast<QV_CHAR *>( qvMemAllocN( slots, sizeof( QV_CHAR ) ) );
    qv::copyChars( chars + QV_STRING_FSPACE, qvs->chars + qvs->fspace, qvs->length );
    qvMemFree( qvs->chars );
    qvs->chars = chars;
    qvs->fspace = QV_STRING_FSPACE;
    qvs->bspace = back;
    qv___ObjDbgSetAllocationSizeN( qvs, slots, sizeof( QV_CHAR ) );
}

void qv___StringCompact( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    switch ( qv::planStringCompaction( shapeOf( qvs ), qv::stringLimits ) )
    {
    case qv::StringCompaction::none:
        return;
    case qv::StringCompaction::empty:
    case qv::StringCompaction::toInline:
        returnToInline( qvs );
        return;
    case qv::StringCompaction::toArray:
        moveToSmallerArray( qvs );
        return;
    }
}

QV_CHAR *qv::stringOpenGap( QV_STRING **dest, QV_INT idx, QV_INT count )
{
    QV_STRING *qvs = *dest;
    if ( count == 0 || !isShared( qvs ) )
        return qv___StringMakeRoom( qvs, idx, count );
    QV_CHECK( QV_INT_ADD_OK( qvs->length, count ) );
    QV_STRING *fresh = stringCreateUnfilled( qvs->length + count );
    QV_CHAR *gap = stringBacking( fresh ) + idx;
    copyChars( stringBacking( fresh ), stringBacking( qvs ), idx );
    copyChars( gap + count, stringBacking( qvs ) + idx, qvs->length - idx );
    replaceWith( dest, fresh );
    return gap;
}

[[gnu::noinline]] void qv::stringAppendCharSlowly( QV_STRING **dest, QV_CHAR ch )
{
    *stringOpenGap( dest, ( *dest )->length, 1 ) = ch;
}

[[gnu::noinline]] void qv::stringPrependCharSlowly( QV_STRING **dest, QV_CHAR ch )
{
    *stringOpenGap( dest, 0, 1 ) = ch;
}
