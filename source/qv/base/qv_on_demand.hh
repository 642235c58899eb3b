#ifndef QV_BASE_QV_ON_DEMAND_HH
#define QV_BASE_QV_ON_DEMAND_HH

// Tables of names that are large and that few processes ask for: the component makes them empty at its startup, and the
// first lookup fills them. A start of the runtime would otherwise spend a third of its time on them.

#include <qv/runtime/qv_local.hh>

namespace qv
{

class OnDemand
{
  public:
    void startup()
    {
        qv___LockInitialize( &lock_ );
        filled_ = false;
    }

    void shutdown()
    {
        qv___LockFinalize( &lock_ );
        filled_ = false;
    }

    // Runs fill once between startup and shutdown; every caller finds its work done.
    template <typename Fill> void ensure( Fill fill )
    {
        if ( __atomic_load_n( &filled_, __ATOMIC_ACQUIRE ) )
            return;
        Locked locked( &lock_ );
        if ( !filled_ )
        {
            fill();
            __atomic_store_n( &filled_, true, __ATOMIC_RELEASE );
        }
    }

  private:
    qv___Lock lock_ = {};
    bool filled_ = false;
};

} // namespace qv

#endif
