#include <qv/base/qv_boxed_bool.hh>

#include <qv/base/qv_string.hh>

namespace
{

constinit QV_BOXED_BOOL *globalTrue = nullptr;
constinit QV_BOXED_BOOL *globalFalse = nullptr;

QV_INT qv___BoxedBoolCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_BOXED_BOOL *thisBox = qvBoxedBoolFrom( thisObj );
    QV_BOXED_BOOL *thatBox = qvBoxedBoolFrom( thatObj );
    QV_CHECK( thisBox );
    QV_CHECK( thatBox );
    return thisBox->value - thatBox->value;
}

QV_STRING *qv___BoxedBoolToStringFunc( qvObj thisObj )
{
    QV_BOXED_BOOL *bbl = qvBoxedBoolFrom( thisObj );
    QV_CHECK( bbl );
    return qvStringCreateFromCstr( bbl->value ? "true" : "false", -1 );
}

QV_BOXED_BOOL *createWith( QV_BOOL value )
{
    auto *bbl = qv::create<QV_BOXED_BOOL>( qvBoxedBoolSort() );
    bbl->value = value;
    return bbl;
}

} // namespace

QV_SORT_DEFINE( QV_BOXED_BOOL, qvBoxedBool,
                { .compareFunc = qv___BoxedBoolCompareFunc, .toStringFunc = qv___BoxedBoolToStringFunc } )

QV_BOXED_BOOL *qvBoxedBoolCreate( QV_BOOL value )
{
    return qv::retained( value ? globalTrue : globalFalse );
}

QV_BOOL qvBoxedBoolValue( QV_BOXED_BOOL *bbl )
{
    QV_CHECK( bbl );
    return bbl->value;
}

void qv___BoxedBoolStartup()
{
    globalTrue = createWith( QV_TRUE );
    globalFalse = createWith( QV_FALSE );
}

void qv___BoxedBoolShutdown()
{
    qv::retire( &globalTrue );
    qv::retire( &globalFalse );
}
