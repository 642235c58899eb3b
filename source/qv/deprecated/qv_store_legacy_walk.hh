#ifndef QV_DEPRECATED_QV_STORE_LEGACY_WALK_HH
#define QV_DEPRECATED_QV_STORE_LEGACY_WALK_HH

// The way through a store, its substores included, entry by entry and depth first. Open stores wait in memory rather than
// on the call stack, as there is no limit to their depth.

#include <qv/base/qv_store.hh>
#include <qv/sys/qv_mem.h>

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

    ~StoreWalk()
    {
        qvMemFree( frames_ );
    }

    // Goes on to the next entry of the innermost open store, after leaving those that have none; false at the end.
    bool next()
    {
        while ( depth_ > 0 && frames_[depth_ - 1].next == storeLength( frames_[depth_ - 1].store ) )
        {
            depth_--;
        }
        if ( depth_ == 0 )
            return false;
        current_ = frames_[depth_ - 1].next++;
        return true;
    }

    // The entry, borrowed, and its address, owned by the caller.
    qvObj entry() const
    {
        return storeEntryBacking( frames_[depth_ - 1].store, current_ );
    }

    QV_STRING *address() const
    {
        return qvStoreAddressAt( frames_[depth_ - 1].store, current_ );
    }

    // The number that the innermost open store was entered with, 0 for the root.
    QV_INT mark() const
    {
        return frames_[depth_ - 1].mark;
    }

    // Makes a store, which stays borrowed, the innermost one.
    void enter( QV_STORE *store, QV_INT mark )
    {
        if ( depth_ == alloc_ )
        {
            alloc_ = alloc_ > 0 ? alloc_ * 2 : 16;
            frames_ = static_cast<Frame *>( qvMemReallocN( frames_, alloc_, sizeof( Frame ) ) );
        }
        frames_[depth_++] = { store, 0, mark };
    }

  private:
    struct Frame
    {
        QV_STORE *store;
        QV_INT next;
        QV_INT mark;
    };

    Frame *frames_ = nullptr;
    QV_INT depth_ = 0;
    QV_INT alloc_ = 0;
    QV_INT current_ = 0;
};

} // namespace qv

#endif
