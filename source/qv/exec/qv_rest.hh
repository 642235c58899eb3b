#ifndef QV_EXEC_QV_REST_HH
#define QV_EXEC_QV_REST_HH

// What the library's threads do before they sleep, and how they find out whether it pays.

#include <time.h>

#include <qv/sys/qv_int.h>

namespace qv
{

// Something that is worth doing only at times: done again and again while it works, tried ever more seldom while it doesn't.
class Habit
{
  public:
    explicit Habit( QV_INT interval ) : interval_( interval ) {}

    // Whether it is to be done this time.
    bool isDue()
    {
        if ( ++count_ < interval_ )
            return false;
        count_ = 0;
        return true;
    }

    // Whether it isn't done each time, so that it is not known to work.
    bool isTrial() const
    {
        return interval_ > 1;
    }

    // Whether it worked when it was done last.
    void note( bool worked )
    {
        interval_ = worked ? 1 : qvIntMin( interval_ * 2, SELDOM );
    }

    // Seldom enough that a try doesn't show in the slowest hundredth.
    static constexpr QV_INT SELDOM = 256;

  private:
    QV_INT interval_;
    QV_INT count_ = 0;
};

// Rests for less than a millisecond; a signal may end it early.
inline void nap( long nanoseconds )
{
    struct timespec length = { 0, nanoseconds };
    nanosleep( &length, nullptr );
}

} // namespace qv

#endif
