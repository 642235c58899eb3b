#include <qv/base/qv_nested.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

namespace qv
{

namespace
{

static_assert( sizeof( qv___DictPair ) == 2 * sizeof( qvObj ), "pairs are walked as single references" );

bool isContainer( qvObj obj )
{
    return obj->sort == &qv___sort_QV_VECTOR || obj->sort == &qv___sort_QV_DICT;
}

bool isDict( qvObj container )
{
    return container->sort == &qv___sort_QV_DICT;
}

// The contents of a container in a row.
struct Contents
{
    const qvObj *objs;
    QV_INT count;
};

Contents contentsOf( qvObj container )
{
    if ( isDict( container ) )
    {
        auto *dict = static_cast<QV_DICT *>( container );
        return { &dict->items->key, 2 * dict->length };
    }
    auto *vec = static_cast<QV_VECTOR *>( container );
    return { vectorBacking( vec ), vec->length };
}

// A stack of plain frames: a few in place, more in memory.
template <typename FRAME> class FrameStack
{
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

    void pop()
    {
        --depth_;
    }

    FRAME &top()
    {
        return frames_[depth_ - 1];
    }

    bool isEmpty() const
    {
        return depth_ == 0;
    }

  private:
    void grow()
    {
        QV_CHECK( QV_INT_MUL_OK( alloc_, 2 ) );
        auto *before = frames_ == inPlace_ ? nullptr : frames_;
        frames_ = static_cast<FRAME *>( qvMemReallocN( before, 2 * alloc_, sizeof( FRAME ) ) );
        if ( !before )
            qvMemCopyN( frames_, inPlace_, depth_, sizeof( FRAME ) );
        alloc_ *= 2;
    }

    FRAME inPlace_[4];
    FRAME *frames_ = inPlace_;
    QV_INT depth_ = 0;
    QV_INT alloc_ = 4;
};

// Two containers of one sort, next being the next content to compare.
struct ComparePair
{
    Contents a;
    Contents b;
    QV_INT next;
};

QV_INT compareLengths( QV_INT lengthA, QV_INT lengthB )
{
    return lengthA < lengthB ? -1 : lengthA > lengthB;
}

} // namespace

QV_INT compareNested( qvObj thisObj, qvObj thatObj )
{
    FrameStack<ComparePair> stack;
    stack.push( { contentsOf( thisObj ), contentsOf( thatObj ), 0 } );
    while ( !stack.isEmpty() )
    {
        ComparePair &pair = stack.top();
        if ( pair.next == pair.a.count || pair.next == pair.b.count )
        {
            if ( QV_INT order = compareLengths( pair.a.count, pair.b.count ) )
                return order;
            stack.pop();
            continue;
        }
        qvObj objA = pair.a.objs[pair.next];
        qvObj objB = pair.b.objs[pair.next];
        ++pair.next;
        if ( objA == objB )
            continue;
        if ( !objA || !objB )
            return objA ? 1 : -1;
        if ( objA->sort == objB->sort && isContainer( objA ) )
            stack.push( { contentsOf( objA ), contentsOf( objB ), 0 } );
        else if ( QV_INT order = qvObjCompare( objA, objB ) )
            return order;
    }
    return 0;
}

namespace
{

// A container that is being printed, next being the next content.
struct PrintFrame
{
    Contents contents;
    QV_INT next;
    bool isDict;
};

void openContainer( QV_STRING **text, FrameStack<PrintFrame> *stack, qvObj container )
{
    stack->push( { contentsOf( container ), 0, isDict( container ) } );
    stringAppendChar( text, isDict( container ) ? '{' : '<' );
}

void appendSeparator( QV_STRING **text, const PrintFrame &frame )
{
    if ( frame.isDict && frame.next % 2 == 1 )
        stringAppendLiteral( text, "=" );
    else if ( frame.next > 0 )
        stringAppendLiteral( text, ", " );
}

void appendContent( QV_STRING **text, qvObj content )
{
    Local<QV_STRING> contentText( qvObjToString( content ) );
    qvStringAppend( text, contentText );
}

} // namespace

QV_STRING *nestedToString( qvObj container )
{
    Local<QV_STRING> text( qvStringCreate() );
    FrameStack<PrintFrame> stack;
    openContainer( text.edit(), &stack, container );
    while ( !stack.isEmpty() )
    {
        PrintFrame &frame = stack.top();
        if ( frame.next == frame.contents.count )
        {
            stringAppendChar( text.edit(), frame.isDict ? '}' : '>' );
            stack.pop();
            continue;
        }
        appendSeparator( text.edit(), frame );
        qvObj content = frame.contents.objs[frame.next++];
        if ( isContainer( content ) )
            openContainer( text.edit(), &stack, content );
        else
            appendContent( text.edit(), content );
    }
    return text.give();
}

} // namespace qv
