#ifndef QV_RUNTIME_QV_LOCAL_HH
#define QV_RUNTIME_QV_LOCAL_HH

// Owners for the length of a block: of one reference, and of a lock. Record fields stay raw, because their release order
// is fixed and belongs in the free function. An abort never unwinds, so nothing may rely on a destructor then.

#include <qv/runtime/qv_obj.hh>
#include <qv/sys/qv_lock.hh>

namespace qv
{

// Owns one reference, or none while null. Constructing adopts the reference that is handed over.
template <typename T> class Local
{
  public:
    Local() = default;
    explicit Local( T *adopted ) : handle_( adopted ) {}
    Local( Local &&from ) : handle_( from.give() ) {}
    Local( const Local & ) = delete;
    Local &operator=( const Local & ) = delete;

    ~Local()
    {
        releaseOptional( handle_ );
    }

    // A further reference to a borrowed object, which may be null.
    static Local share( T *borrowed )
    {
        if ( borrowed )
            retain( objOf( borrowed ) );
        return Local( borrowed );
    }

    // Lends the handle's address to an editing call, or to one that hands over a new reference to an empty owner.
    T **edit()
    {
        return &handle_;
    }

    // Adopts another reference and drops the one held before.
    void take( T *adopted )
    {
        replaceWith( &handle_, adopted );
    }

    // Hands the reference over to the caller and is null from then on.
    [[nodiscard]] T *give()
    {
        T *given = handle_;
        handle_ = nullptr;
        return given;
    }

    operator T *() const
    {
        return handle_;
    }

    T *operator->() const
    {
        return handle_;
    }

  private:
    T *handle_ = nullptr;
};

// Holds a lock for the length of a block.
class Locked
{
  public:
    explicit Locked( qv___Lock *lock ) : lock_( lock )
    {
        qv___LockAcquire( lock_ );
    }
    Locked( const Locked & ) = delete;
    Locked &operator=( const Locked & ) = delete;

    ~Locked()
    {
        qv___LockRelease( lock_ );
    }

  private:
    qv___Lock *lock_;
};

} // namespace qv

#endif
