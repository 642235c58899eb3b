#include <qv/base/qv_boxed_pointer.hh>

namespace
{

void qv___BoxedPointerFreeFunc( qvObj thisObj )
{
    QV___BOXED_POINTER *bptr = qv___BoxedPointerFrom( thisObj );
    QV_CHECK( bptr );
    if ( bptr->destroy )
        bptr->destroy( bptr->value );
}

QV_INT qv___BoxedPointerCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV___BOXED_POINTER *thisBox = qv___BoxedPointerFrom( thisObj );
    QV___BOXED_POINTER *thatBox = qv___BoxedPointerFrom( thatObj );
    QV_CHECK( thisBox );
    QV_CHECK( thatBox );
    uintptr_t thisValue = reinterpret_cast<uintptr_t>( thisBox->value );
    uintptr_t thatValue = reinterpret_cast<uintptr_t>( thatBox->value );
    return ( thisValue > thatValue ) - ( thisValue < thatValue );
}

} // namespace

QV_SORT_DEFINE( QV___BOXED_POINTER, qv___BoxedPointer,
                { .freeFunc = qv___BoxedPointerFreeFunc, .compareFunc = qv___BoxedPointerCompareFunc } )

QV___BOXED_POINTER *qv___BoxedPointerCreate( void *value, qv___BoxedPointerDestroyFunc destroy )
{
    auto *bptr = qv::create<QV___BOXED_POINTER>( qv___BoxedPointerSort() );
    bptr->value = value;
    bptr->destroy = destroy;
    return bptr;
}

void *qv___BoxedPointerValue( QV___BOXED_POINTER *bptr )
{
    QV_CHECK( bptr );
    return bptr->value;
}
