#ifndef QV_BASE_QV_FRAME_STACK_HH
#define QV_BASE_QV_FRAME_STACK_HH

// The way through nested values without recursion: what waits for its contents to be dealt with is a frame here rather
// than one on the thread's stack, so that no depth is too much. Shallow values need no memory for it.

#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_int.h>
#include <qv/sys/qv_mem.h>

#include <type_traits>

namespace qv
{

// Frames are plain records, which may move when one is pushed.
template <typename FRAME, QV_INT inPlace = 16> class FrameStack
{
    static_assert( std::is_trivially_copyable_v<FRAME> );

  public:
    FrameStack() = default;
    FrameStack( const FrameStack & ) = delete;
    FrameStack &operator=( const FrameStack & ) = delete;

    ~FrameStack()
    {
        if ( frames_ != inPlace_ )
            qvMemFree( frames_ );
    }

    void push( const FRAME &frame )
    {
        if ( depth_ == alloc_ )
            grow();
        frames_[depth_++] = frame;
    }

    // Takes the top frame off; its record stays readable until the next push.
    const FRAME &pop()
    {
        return frames_[--depth_];
    }

    FRAME &top()
    {
        return frames_[depth_ - 1];
    }

    const FRAME &top() const
    {
        return frames_[depth_ - 1];
    }

    QV_INT depth() const
    {
        return depth_;
    }

    bool isEmpty() const
    {
        return depth_ == 0;
    }

  private:
    __attribute__( ( noinline, cold ) ) void grow()
    {
        QV_CHECK( QV_INT_MUL_OK( alloc_, 2 ) );
        FRAME *before = frames_ == inPlace_ ? nullptr : frames_;
        frames_ = static_cast<FRAME *>( qvMemReallocN( before, 2 * alloc_, sizeof( FRAME ) ) );
        if ( !before )
            qvMemCopyN( frames_, inPlace_, depth_, sizeof( FRAME ) );
        alloc_ *= 2;
    }

    FRAME inPlace_[inPlace];
    FRAME *frames_ = inPlace_;
    QV_INT depth_ = 0;
    QV_INT alloc_ = inPlace;
};

} // namespace qv

#endif
