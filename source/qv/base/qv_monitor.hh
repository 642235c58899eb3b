#ifndef QV_BASE_QV_MONITOR_HH
#define QV_BASE_QV_MONITOR_HH

#include <qv/base/qv_monitor.h>
#include <qv/runtime/qv_local.hh>

// Invariant: entered is true exactly while some thread holds lock.
struct qv___Monitor : qv___Obj
{
    qv___Lock lock;
    bool entered;
};

namespace qv
{

// Stays in a monitor for the length of a block.
class Entered
{
  public:
    explicit Entered( QV_MONITOR *monitor ) : monitor_( monitor )
    {
        qvMonitorEnter( monitor_ );
    }
    Entered( const Entered & ) = delete;
    Entered &operator=( const Entered & ) = delete;

    ~Entered()
    {
        qvMonitorLeave( monitor_ );
    }

  private:
    QV_MONITOR *monitor_;
};

} // namespace qv

#endif
