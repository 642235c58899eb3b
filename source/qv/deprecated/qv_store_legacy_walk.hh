#ifndef QV_DEPRECATED_QV_STORE_LEGACY_WALK_HH
#define QV_DEPRECATED_QV_STORE_LEGACY_WALK_HH

// The way through a store, its substores included, entry by entry and depth first.

#include <qv/base/qv_frame_stack.hh>
#include <qv/base/qv_store.hh>

namespace qv
{

class StoreWalk
{
  public:
    explicit StoreWalk( QV_STORE *root )
    {
        enter( root, 0 );
    }
    StoreWalk( const StoreWalk & ) = delete;
    StoreWalk &operator=( const StoreWalk & ) = delete;

    // Goes on to the next entry of the innermost open store, after leaving those that have none; false at the end.
    bool next()
    {
        while ( !frames_.isEmpty() && frames_.top().next == storeLength( frames_.top().store ) )
        {
            frames_.pop();
        }
        if ( frames_.isEmpty() )
            return false;
        current_ = frames_.top().next++;
        return true;
    }

    // The entry, borrowed, and its address, owned by the caller.
    qvObj entry() const
    {
        return storeEntryBacking( frames_.top().store, current_ );
    }

    QV_STRING *address() const
    {
        return qvStoreAddressAt( frames_.top().store, current_ );
    }

    // The number that the innermost open store was entered with, 0 for the root.
    QV_INT mark() const
    {
        return frames_.top().mark;
    }

    // Makes a store, which stays borrowed, the innermost one.
    void enter( QV_STORE *store, QV_INT mark )
    {
        frames_.push( { store, 0, mark } );
    }

  private:
    struct Frame
    {
        QV_STORE *store;
        QV_INT next;
        QV_INT mark;
    };

    FrameStack<Frame> frames_;
    QV_INT current_ = 0;
};

} // namespace qv

#endif
