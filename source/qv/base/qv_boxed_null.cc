#include <qv/base/qv_boxed_null.hh>

#include <qv/base/qv_string.hh>

namespace
{

constinit QV_BOXED_NULL *globalNull = nullptr;

QV_STRING *qv___BoxedNullToStringFunc( qvObj thisObj )
{
    QV_CHECK( qvBoxedNullFrom( thisObj ) );
    return qvStringCreateFromCstr( "null", -1 );
}

} // namespace

QV_SORT_DEFINE( QV_BOXED_NULL, qvBoxedNull, { .toStringFunc = qv___BoxedNullToStringFunc } )

QV_BOXED_NULL *qvBoxedNullCreate( void )
{
    return qv::retained( globalNull );
}

void qv___BoxedNullStartup()
{
    globalNull = qv::create<QV_BOXED_NULL>( qvBoxedNullSort() );
}

void qv___BoxedNullShutdown()
{
    qv::retire( &globalNull );
}
