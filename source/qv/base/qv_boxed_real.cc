#include <qv/base/qv_boxed_real.hh>

#include <qv/base/qv_format.h>
#include <qv/sys/qv_real.h>

namespace
{

QV_INT qv___BoxedRealCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_BOXED_REAL *thisBox = qvBoxedRealFrom( thisObj );
    QV_BOXED_REAL *thatBox = qvBoxedRealFrom( thatObj );
    QV_CHECK( thisBox );
    QV_CHECK( thatBox );
    return qvRealCompare( thisBox->value, thatBox->value );
}

QV_STRING *qv___BoxedRealToStringFunc( qvObj thisObj )
{
    QV_BOXED_REAL *br = qvBoxedRealFrom( thisObj );
    QV_CHECK( br );
    return qvFormatEncodeReal( br->value, 10, 0, -1, 0 );
}

} // namespace

QV_SORT_DEFINE( QV_BOXED_REAL, qvBoxedReal,
                { .compareFunc = qv___BoxedRealCompareFunc, .toStringFunc = qv___BoxedRealToStringFunc } )

QV_BOXED_REAL *qvBoxedRealCreate( double value )
{
    auto *br = qv::create<QV_BOXED_REAL>( qvBoxedRealSort() );
    br->value = value;
    return br;
}

double qvBoxedRealValue( QV_BOXED_REAL *br )
{
    QV_CHECK( br );
    return br->value;
}
