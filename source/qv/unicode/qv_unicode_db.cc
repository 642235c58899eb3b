#include <qv/unicode/qv_unicode_db.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

namespace qv
{

QV_ENUM *foldedEnumFromTable( const EnumName *names, QV_INT count )
{
    Local<QV_ENUM> folded( qvEnumCreate() );
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        Local<QV_STRING> name( qvStringCreateFromCstr( names[idx].name, -1 ) );
        qvStringToCaseFold( name.edit() );
        QV_CHECK( !qvEnumHasEnumerant( folded, name ) );
        qvEnumSetEnumerant( folded.edit(), name, names[idx].value );
    }
    return folded.give();
}

QV_INT foldedEnumerant( QV_ENUM *folded, QV_STRING *text )
{
    QV_CHECK( text );
    Local<QV_STRING> name = Local<QV_STRING>::share( text );
    qvStringToCaseFold( name.edit() );
    return qvEnumEnumerant( folded, name );
}

} // namespace qv
