#include <qv/base/qv_boxed_int.hh>

#include <qv/base/qv_format.h>

namespace
{

QV_INT qv___BoxedIntCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_BOXED_INT *thisBox = qvBoxedIntFrom( thisObj );
    QV_BOXED_INT *thatBox = qvBoxedIntFrom( thatObj );
    QV_CHECK( thisBox );
    QV_CHECK( thatBox );
    return ( thisBox->value > thatBox->value ) - ( thisBox->value < thatBox->value );
}

QV_STRING *qv___BoxedIntToStringFunc( qvObj thisObj )
{
    QV_BOXED_INT *bi = qvBoxedIntFrom( thisObj );
    QV_CHECK( bi );
    return qvFormatEncodeInt( bi->value, 10, 0, 0 );
}

} // namespace

QV_SORT_DEFINE( QV_BOXED_INT, qvBoxedInt,
                { .compareFunc = qv___BoxedIntCompareFunc, .toStringFunc = qv___BoxedIntToStringFunc } )

QV_BOXED_INT *qvBoxedIntCreate( QV_INT value )
{
    auto *bi = qv::create<QV_BOXED_INT>( qvBoxedIntSort() );
    bi->value = value;
    return bi;
}

QV_INT qvBoxedIntValue( QV_BOXED_INT *bi )
{
    QV_CHECK( bi );
    return bi->value;
}
