#include <qv/base/qv_enum.hh>

#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_name.h>
#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

void qv___EnumFreeFunc( qvObj thisObj )
{
    QV_ENUM *en = qvEnumFrom( thisObj );
    QV_CHECK( en );
    qv::release( qv::objOf( en->namesToValues ) );
    qv::release( qv::objOf( en->valuesToNames ) );
}

QV_ENUM *createWith( QV_DICT *namesToValues, QV_DICT *valuesToNames )
{
    auto *en = qv::create<QV_ENUM>( qvEnumSort() );
    en->namesToValues = namesToValues;
    en->valuesToNames = valuesToNames;
    return en;
}

// Enters a name that isn't there yet into a private enumeration.
void enter( QV_ENUM *en, QV_STRING *name, QV_INT value )
{
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( value ) );
    qvDictSetStringKey( &en->namesToValues, name, qv::objOf<QV_BOXED_INT>( boxed ) );
    qvDictSetObjKey( &en->valuesToNames, qv::objOf<QV_BOXED_INT>( boxed ), qv::objOf( name ) );
}

} // namespace

QV_SORT_DEFINE( QV_ENUM, qvEnum, { .freeFunc = qv___EnumFreeFunc } )

QV_ENUM *qvEnumCreate( void )
{
    return createWith( qvDictCreate(), qvDictCreate() );
}

QV_ENUM *qvEnumCreateFrom( QV_ENUM *source )
{
    QV_CHECK( source );
    return createWith( qv::retained( source->namesToValues ), qv::retained( source->valuesToNames ) );
}

QV_ENUM *qv::enumFromTable( const EnumName *names, QV_INT count )
{
    QV_CHECK( names || count == 0 );
    QV_ENUM *en = createWith( qv::dictCreateFresh(), qv::dictCreateFresh() );
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        Local<QV_STRING> name( qvStringCreateFromCstr( names[idx].name, -1 ) );
        QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
        QV_CHECK( names[idx].value >= 0 );
        QV_CHECK( !qvEnumHasEnumerant( en, name ) );
        enter( en, name, names[idx].value );
    }
    return en;
}

QV_VECTOR *qvEnumEnumerantsVector( QV_ENUM *en )
{
    QV_CHECK( en );
    return qvDictKeysVector( en->namesToValues );
}

QV_INT qvEnumEnumerant( QV_ENUM *en, QV_STRING *name )
{
    QV_CHECK( en );
    QV_CHECK( name );
    qvObj value = qv::dictValueOf( en->namesToValues, qv::objOf( name ) );
    return value ? static_cast<QV_BOXED_INT *>( value )->value : -1;
}

QV_INT qvEnumEnumerantCstr( QV_ENUM *en, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    return qvEnumEnumerant( en, qvs );
}

QV_INT qvEnumEnumerantWcstr( QV_ENUM *en, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    return qvEnumEnumerant( en, qvs );
}

QV_BOOL qvEnumHasEnumerant( QV_ENUM *en, QV_STRING *name )
{
    return QV_BOOL_FROM( qvEnumEnumerant( en, name ) != -1 );
}

QV_BOOL qvEnumHasEnumerantCstr( QV_ENUM *en, const char *name, QV_INT nameLength )
{
    return QV_BOOL_FROM( qvEnumEnumerantCstr( en, name, nameLength ) != -1 );
}

QV_BOOL qvEnumHasEnumerantWcstr( QV_ENUM *en, const wchar_t *name, QV_INT nameLength )
{
    return QV_BOOL_FROM( qvEnumEnumerantWcstr( en, name, nameLength ) != -1 );
}

void qvEnumSetEnumerant( QV_ENUM **en, QV_STRING *name, QV_INT value )
{
    QV_CHECK( en );
    QV_CHECK( *en );
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_CHECK( value >= 0 );
    qv::makePrivate( en, qvEnumCreateFrom );
    qvEnumDelEnumerant( en, name );
    enter( *en, name, value );
}

void qvEnumSetEnumerantCstr( QV_ENUM **en, const char *name, QV_INT nameLength, QV_INT value )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    qvEnumSetEnumerant( en, qvs, value );
}

void qvEnumSetEnumerantWcstr( QV_ENUM **en, const wchar_t *name, QV_INT nameLength, QV_INT value )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    qvEnumSetEnumerant( en, qvs, value );
}

void qvEnumDelEnumerant( QV_ENUM **en, QV_STRING *name )
{
    QV_CHECK( en );
    QV_CHECK( *en );
    QV_CHECK( name );
    QV_CHECK( qvNameUpperCaseOk( name, QV_TRUE ) );
    QV_INT value = qvEnumEnumerant( *en, name );
    if ( value == -1 )
        return;
    qv::makePrivate( en, qvEnumCreateFrom );
    // The name may be the very key that goes.
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( name );
    qvDictDelStringKey( &( *en )->namesToValues, held );
    qvDictDelIntKey( &( *en )->valuesToNames, value );
}

void qvEnumDelEnumerantCstr( QV_ENUM **en, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromCstr( name, nameLength ) );
    qvEnumDelEnumerant( en, qvs );
}

void qvEnumDelEnumerantWcstr( QV_ENUM **en, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> qvs( qvStringCreateFromWcstr( name, nameLength ) );
    qvEnumDelEnumerant( en, qvs );
}

QV_STRING *qvEnumGenerate( QV_ENUM *en, QV_INT value )
{
    QV_CHECK( en );
    return qvStringFrom( qvDictIntKey( en->valuesToNames, value ) );
}

QV_INT qvEnumParse( QV_ENUM *en, QV_STRING *name )
{
    QV_CHECK( en );
    QV_CHECK( name );
    qv::Local<QV_STRING> trimmed = qv::Local<QV_STRING>::share( name );
    qvStringTrim( trimmed.edit() );
    QV_INT value = qvEnumEnumerant( en, trimmed );
    if ( value != -1 )
        return value;
    QV_INT consumed = 0;
    if ( !qvStringScanInt( trimmed, 0, -1, -1, &value, &consumed ) )
        return -1;
    if ( consumed != qv::stringLength( trimmed ) || !qvDictHasIntKey( en->valuesToNames, value ) )
        return -1;
    return value;
}
