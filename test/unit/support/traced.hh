#ifndef QV_TEST_SUPPORT_TRACED_HH
#define QV_TEST_SUPPORT_TRACED_HH

// Objects that write down what becomes of them: who was freed in which order, and how many compares ran.

#include "support/test.hh"

namespace test
{

struct Traced : qv___Obj
{
    int id;
};

inline std::vector<int> tracedFrees;
inline int tracedCompares = 0;

inline int tracedId( qvObj obj )
{
    return static_cast<Traced *>( obj )->id;
}

inline void tracedFree( qvObj obj )
{
    tracedFrees.push_back( tracedId( obj ) );
}

inline QV_INT tracedCompare( qvObj objA, qvObj objB )
{
    ++tracedCompares;
    return tracedId( objA ) < tracedId( objB ) ? -1 : tracedId( objA ) > tracedId( objB );
}

inline qv___Sort tracedSort = { QV___STATIC_HEADER( QV___OBJ_TYPE_SORT ),
                                &qv___module,
                                "QV_TEST_TRACED",
                                { tracedFree, tracedCompare, nullptr } };

// A new object, ordered by its id. Clear tracedFrees and tracedCompares before what is to be watched.
inline qv::Local<qv___Obj> traced( int id )
{
    auto *obj = qv::create<Traced>( &tracedSort );
    obj->id = id;
    return qv::Local<qv___Obj>( obj );
}

} // namespace test

#endif
