#include <qv/runtime/qv_runtime_identifiers.hh>

#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_dict.h>
#include <qv/base/qv_enum.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

QV_ENUM *qv::enumOfValues( const IdentifiedValue *rows, QV_INT count )
{
    QV_ENUM *names = qvEnumCreate();
    for ( QV_INT value = 0; value < count; value++ )
    {
        qvEnumSetEnumerantCstr( &names, rows[value].name, -1, value );
    }
    return names;
}

QV_DICT *qv::identifiersOfValues( const IdentifiedValue *rows, QV_INT count )
{
    QV_DICT *identifiers = qvDictCreate();
    for ( QV_INT value = 0; value < count; value++ )
    {
        Local<QV_STRING> identifier( qvStringCreateFromCstr( rows[value].identifier, -1 ) );
        qvDictSetIntKey( &identifiers, value, qvStringObj( identifier ) );
    }
    return identifiers;
}

QV_DICT *qv::valuesOfIdentifiers( const IdentifiedValue *rows, QV_INT count )
{
    QV_DICT *values = qvDictCreate();
    for ( QV_INT value = 0; value < count; value++ )
    {
        Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( value ) );
        qvDictSetStringKeyCstr( &values, rows[value].identifier, -1, qvBoxedIntObj( boxed ) );
    }
    return values;
}

QV_INT qv::valueOfIdentifier( QV_DICT *values, QV_STRING *identifier )
{
    QV_CHECK( identifier );
    Local<qv___Obj> boxed( qvDictStringKey( values, identifier ) );
    return boxed ? qvBoxedIntValue( qvBoxedIntFrom( boxed ) ) : -1;
}
