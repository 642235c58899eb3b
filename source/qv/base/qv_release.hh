#ifndef QV_BASE_QV_RELEASE_HH
#define QV_BASE_QV_RELEASE_HH

// Release of nested values without unbounded recursion.
//
// Freeing a container releases its contents, which may be containers again. A container's free function opens
// a NestedRelease and releases its contents through it:
//
//     qv::NestedRelease nested;
//     for ( QV_INT idx = 0; idx < vec->length; ++idx )
//         nested.release( items[idx] );
//
// Up to a fixed depth of such frames on a thread's stack, a content whose count reaches 0 is destroyed on the
// spot, as a plain release does. Below that depth it joins the thread's pending list instead, and the
// outermost frame destroys the pending objects, first in first out, as soon as the content that it is
// releasing itself has been dealt with. So every object is gone when the outermost release returns, in a
// stack of fixed size and with no memory taken: the list runs through the records of the dying objects
// themselves.
//
// What this keeps of qv___ObjFree: each object goes through all of its steps in their order, uninterrupted
// (unlink, free function, log, token, the sort's and module's counts, memory), on the thread that dropped the
// last reference. While an object is pending, its count is 0 and the sort and its module still count it as
// live, just as during a free function; a snapshot passes over it. Contents of one container are destroyed
// from first to last. The one difference is that a pending object is destroyed after the container that held
// it rather than within its free function, so that a free function mustn't rely on its contents' contents
// being gone.

#include <qv/runtime/qv_obj.hh>
#include <qv/sys/qv_fetch.hh>

namespace qv
{

// The state of one thread. The list is linked by the type field of objects whose count is 0: it is
// QV___OBJ_TYPE_OBJECT in all of them, so that it can be restored, and nobody else reads a dying object.
struct PendingReleases
{
    QV_INT depth; // NestedRelease frames on the stack
    qvObj first;
    qvObj last; // valid while first isn't null
};

// Initial-exec: one instruction to reach, also in the shared library.
extern thread_local constinit PendingReleases pendingReleases
    __attribute__( ( tls_model( "initial-exec" ) ) );

// Frames below which objects are destroyed on the spot. Free functions of other sorts may stand between two
// frames.
inline constexpr QV_INT nestedReleaseDepth = 48;

void pendReleaseOf( PendingReleases *pending, qvObj dying );
void destroyPending( PendingReleases *pending );

// Contents whose records a container's free function fetches ahead of their release: large trees don't fit the caches,
// and the count is all that a release needs to find.
inline constexpr QV_INT releaseAhead = 6;

// Fetches the record of an object that will be released soon.
inline void fetchForRelease( const qv___Obj *obj )
{
    fetchToWrite( &obj->retainCount );
    fetch( reinterpret_cast<const char *>( obj ) + 64 );
}

class NestedRelease
{
  public:
    NestedRelease() : pending_( &pendingReleases )
    {
        ++pending_->depth;
    }
    NestedRelease( const NestedRelease & ) = delete;
    NestedRelease &operator=( const NestedRelease & ) = delete;

    ~NestedRelease()
    {
        --pending_->depth;
    }

    // Drops a reference, which isn't null.
    void release( qvObj obj )
    {
        if ( qv___RetainCountDecrement( &obj->retainCount ) != 0 )
            return;
        if ( pending_->depth > nestedReleaseDepth )
            pendReleaseOf( pending_, obj );
        else
            qv___ObjFree( obj );
        if ( pending_->depth == 1 && pending_->first )
            destroyPending( pending_ );
    }

  private:
    PendingReleases *pending_;
};

} // namespace qv

#endif
