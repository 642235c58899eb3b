#ifndef QV_BASE_QV_VECTOR_HH
#define QV_BASE_QV_VECTOR_HH

// The record of a vector, its inline readers and the internal functions.

#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_author.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_obj.hh>

#define QV___VECTOR_INLINE ( QV_VECTOR_FSPACE + QV_VECTOR_BSPACE )

// Invariant: items[fspace] up to items[fspace + length - 1] are the items, each not null and one reference of
// the vector's. items is the inline store or an array from the memory layer of fspace + length + bspace
// slots, which the vector owns. The record of a vector that was made in its final size ends with its last item;
// dbgObjectSize tells.
struct qv___Vector : qv___Obj
{
    QV_INT length;
    QV_INT fspace; // free slots in front of the first item
    QV_INT bspace; // free slots behind the last item
    qvObj *items;  // start of the storage, not of the items
    qvObj inlineStore[QV___VECTOR_INLINE];
};

extern QV_VECTOR *qv___VectorEmpty;

void qv___VectorStartup();
void qv___VectorShutdown();

void qv___VectorFreeFunc( qvObj thisObj );
QV_INT qv___VectorCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___VectorToStringFunc( qvObj thisObj );

// Appends an array of references and takes them over instead of retaining them.
void qv___VectorPushNoRetain( QV_VECTOR **vec, const qvObj *src, QV_INT count );

// Opens a gap of count slots, above 0, in front of the item at atIndex, and returns its first slot. The
// length grows by count; the caller fills the gap. The vector is private.
qvObj *qv___VectorMakeRoom( QV_VECTOR *vec, QV_INT atIndex, QV_INT count );

// Gives spare slots back after a delete. The vector is private.
void qv___VectorCompact( QV_VECTOR *vec );

// Copies references from the last to the first, retaining each.
void qv___VectorCopyObjs( qvObj *dest, const qvObj *src, QV_INT count );

extern "C" {
extern qv___Sort qv___sort_QV_VECTOR;
}

namespace qv
{

inline QV_INT vectorLength( const QV_VECTOR *vec )
{
    return vec->length;
}

// The first item's address, good until the next edit.
inline qvObj *vectorBacking( const QV_VECTOR *vec )
{
    return vec->items + vec->fspace;
}

// The item at idx, borrowed: the reference stays the vector's.
inline qvObj vectorAt( const QV_VECTOR *vec, QV_INT idx )
{
    return vec->items[vec->fspace + idx];
}

inline bool vectorIsInline( const QV_VECTOR *vec )
{
    return vec->items == vec->inlineStore;
}

// A fresh private record without items, unlike the shared empty vector of qvVectorCreate.
QV_VECTOR *vectorCreateFresh();

// A private vector of count items, above 0, which the caller fills at once.
QV_VECTOR *vectorCreateUnfilled( QV_INT count );

// Appends an object and takes over its reference.
inline void vectorAppendGiven( QV_VECTOR **vec, qvObj given )
{
    qv___VectorPushNoRetain( vec, &given, 1 );
}

// The sizes that the making-room rules go by, a parameter so that tests can drive small ones.
struct VectorLimits
{
    QV_INT inlineSlots = QV___VECTOR_INLINE;
    QV_INT fspace = QV_VECTOR_FSPACE;
    QV_INT bspace = QV_VECTOR_BSPACE;
};

// What the storage looks like before an edit.
struct VectorShape
{
    QV_INT length;
    QV_INT fspace;
    QV_INT bspace;
    bool isInline;
};

// What an edit does to the storage: where the head (items in front of the gap) and the tail go, and the shape
// after it. allocSlots above 0 asks for an array of that many slots.
struct VectorPlan
{
    QV_INT allocSlots;
    QV_INT headSlot; // new slot of the first item of the head
    QV_INT gapSlot;  // first slot of the gap
    QV_INT tailSlot; // new slot of the first item of the tail
    QV_INT fspace;
    QV_INT bspace;
};

// The plan for a gap of count slots, above 0, at atIndex. Stops the process if a sum exceeds QV_INT_MAX.
VectorPlan vectorPlanRoom( const VectorShape &shape, QV_INT atIndex, QV_INT count,
                           const VectorLimits &limits );

enum class VectorCompactAction
{
    none,
    centre,   // no items: only the spare is divided anew
    toInline, // the items move into the inline store
    shrink    // the items move into a smaller array
};

struct VectorCompactPlan
{
    VectorCompactAction action;
    QV_INT fspace;
    QV_INT bspace;
};

VectorCompactPlan vectorPlanCompact( const VectorShape &shape, const VectorLimits &limits );

} // namespace qv

#endif
