#include <qv/base/qv_nested.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_frame_stack.hh>
#include <qv/base/qv_store.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

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

// Two containers of one sort, next being the next content to compare. Of stores these are the contents of their
// dictionaries or vectors.
struct ComparePair
{
    Contents a;
    Contents b;
    QV_INT next;
    const QV_STORE *storeA; // null unless the containers are stores
    const QV_STORE *storeB;
};

using ComparePairs = FrameStack<ComparePair, 4>;

QV_INT compareInts( QV_INT intA, QV_INT intB )
{
    return intA < intB ? -1 : intA > intB;
}

// Begins with two stores; not 0 if their hints tell already. Equal hints mean that both have a dictionary or both a vector.
QV_INT pushStores( ComparePairs *pairs, QV_STORE *storeA, QV_STORE *storeB )
{
    if ( QV_INT order = compareInts( storeA->hints, storeB->hints ) )
        return order;
    bool isManaged = storeIsManaged( storeA );
    Contents a = contentsOf( isManaged ? objOf( storeA->arrayManaged ) : objOf( storeA->dict ) );
    Contents b = contentsOf( isManaged ? objOf( storeB->arrayManaged ) : objOf( storeB->dict ) );
    pairs->push( { a, b, 0, storeA, storeB } );
    return 0;
}

// Compares two objects, or begins with their contents and leaves the order open, as 0.
QV_INT comparePair( ComparePairs *pairs, qvObj objA, qvObj objB )
{
    if ( objA == objB )
        return 0;
    if ( !objA || !objB || objA->sort != objB->sort )
        return compareOptional( objA, objB );
    if ( isContainer( objA ) )
    {
        pairs->push( { contentsOf( objA ), contentsOf( objB ), 0, nullptr, nullptr } );
        return 0;
    }
    if ( isStore( objA ) )
        return pushStores( pairs, static_cast<QV_STORE *>( objA ), static_cast<QV_STORE *>( objB ) );
    return qvObjCompare( objA, objB );
}

// What is left to compare when two containers agree up to the end of one of them.
QV_INT compareEnds( const ComparePair &pair )
{
    QV_INT order = compareInts( pair.a.count, pair.b.count );
    if ( order != 0 || !pair.storeA )
        return order;
    return compareOptional( objOf( pair.storeA->location ), objOf( pair.storeB->location ) );
}

} // namespace

QV_INT compareNested( qvObj thisObj, qvObj thatObj )
{
    ComparePairs pairs;
    QV_INT order = comparePair( &pairs, thisObj, thatObj );
    while ( order == 0 && !pairs.isEmpty() )
    {
        ComparePair &pair = pairs.top();
        if ( pair.next < pair.a.count && pair.next < pair.b.count )
        {
            QV_INT idx = pair.next++;
            order = comparePair( &pairs, pair.a.objs[idx], pair.b.objs[idx] );
        }
        else
            order = compareEnds( pairs.pop() );
    }
    return order;
}

QV_INT compareOptional( qvObj objA, qvObj objB )
{
    if ( objA == objB )
        return 0;
    if ( !objA || !objB )
        return objA ? 1 : -1;
    return qvObjCompare( objA, objB );
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

using PrintFrames = FrameStack<PrintFrame, 4>;

void openContainer( QV_STRING **text, PrintFrames *stack, qvObj container )
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
    PrintFrames stack;
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
