// The library's cases of the area objects: boxed integers, which are objects with one 64-bit field.
#include "objects.hpp"
#include "qv_case.hpp"
#include <qv/runtime/qv_author.h>

namespace
{

struct BoxedInt
{
    using H = QV_BOXED_INT *;

    static H make( int64_t value )
    {
        return qvBoxedIntCreate( value );
    }
    static void retain( H handle )
    {
        qvBoxedIntRetain( handle );
    }
    static void drop( H handle )
    {
        qvBoxedIntRelease( handle );
    }
    static int64_t value( H handle )
    {
        return qvBoxedIntValue( handle );
    }
    static int64_t count( H handle )
    {
        return __atomic_load_n( &qvBoxedIntObj( handle )->retainCount, __ATOMIC_SEQ_CST );
    }
};

} // namespace

void register_library( Bench &b )
{
    start_library();
    kind<BoxedInt>( b, "qv" );
}
