#include <qv/base/qv_boxed_unique.hh>

QV_SORT_DEFINE( QV_BOXED_UNIQUE, qvBoxedUnique, {} )

QV_BOXED_UNIQUE *qvBoxedUniqueCreate( void )
{
    return qv::create<QV_BOXED_UNIQUE>( qvBoxedUniqueSort() );
}
