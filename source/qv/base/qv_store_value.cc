#include <qv/base/qv_store.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_format.h>
#include <qv/base/qv_nested.hh>
#include <qv/base/qv_string.hh>
#include <qv/io/qv_location.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV___STORE_VALUE, qv___StoreValue,
                { .freeFunc = qv___StoreValueFreeFunc, .compareFunc = qv___StoreValueCompFunc } )

constinit QV_FLAGSET *qv___StoreValueHintsFlagset = nullptr;

constinit QV___STORE_VALUE *qv___StoreValueNull = nullptr;
constinit QV___STORE_VALUE *qv___StoreValueBoolTrue = nullptr;
constinit QV___STORE_VALUE *qv___StoreValueBoolFalse = nullptr;
constinit QV___STORE_VALUE *qv___StoreValueIntZero = nullptr;
constinit QV___STORE_VALUE *qv___StoreValueIntMinusOne = nullptr;

namespace
{

constexpr QV___STORE_VALUE_HINTS knownHints = QV___STORE_VALUE_HINT_NULL | QV___STORE_VALUE_HINT_BOOL |
                                              QV___STORE_VALUE_HINT_INT | QV___STORE_VALUE_HINT_REAL;

constexpr qv::EnumName hintNames[] = {
    { QV___STORE_VALUE_HINT_NULL, "QV___STORE_VALUE_HINT_NULL" },
    { QV___STORE_VALUE_HINT_BOOL, "QV___STORE_VALUE_HINT_BOOL" },
    { QV___STORE_VALUE_HINT_INT, "QV___STORE_VALUE_HINT_INT" },
    { QV___STORE_VALUE_HINT_REAL, "QV___STORE_VALUE_HINT_REAL" },
};

QV___STORE_VALUE *valueFromAscii( const char *text, QV___STORE_VALUE_HINTS hints )
{
    return qv::storeValueFromParts( qvStringCreateFromAscii( text, -1 ), hints, nullptr );
}

} // namespace

QV___STORE_VALUE *qv::storeValueFromParts( QV_STRING *text, QV___STORE_VALUE_HINTS hints,
                                           QV_LOCATION *location )
{
    auto *value = create<QV___STORE_VALUE>( &qv___sort_QV___STORE_VALUE );
    value->hints = hints;
    value->value = text;
    value->location = location;
    return value;
}

void qv___StoreValueFreeFunc( qvObj thisObj )
{
    QV___STORE_VALUE *value = qv___StoreValueFrom( thisObj );
    QV_CHECK( value );
    qvStringRelease( value->value );
    qv::releaseOptional( value->location );
}

QV_INT qv___StoreValueCompFunc( qvObj thisObj, qvObj thatObj )
{
    QV___STORE_VALUE *valueA = qv___StoreValueFrom( thisObj );
    QV___STORE_VALUE *valueB = qv___StoreValueFrom( thatObj );
    QV_CHECK( valueA );
    QV_CHECK( valueB );
    if ( valueA->hints != valueB->hints )
        return valueA->hints < valueB->hints ? -1 : 1;
    if ( QV_INT order = qvStringCompare( valueA->value, valueB->value ) )
        return order;
    return qv::compareOptional( qv::objOf( valueA->location ), qv::objOf( valueB->location ) );
}

QV___STORE_VALUE_HINTS qv___StoreValueHintsNormalize( QV___STORE_VALUE_HINTS hints )
{
    return hints & knownHints;
}

QV___STORE_VALUE_HINTS qv___StoreValueHintsFromString( QV_STRING *qvs )
{
    return qv___StoreValueHintsNormalize( qvFlagsetParse( qv___StoreValueHintsFlagset, qvs ) );
}

QV_STRING *qv___StoreValueHintsToString( QV___STORE_VALUE_HINTS hints )
{
    return qvFlagsetGenerate( qv___StoreValueHintsFlagset, qv___StoreValueHintsNormalize( hints ) );
}

QV___STORE_VALUE *qv___StoreValueCreate( QV_STRING *text )
{
    return qv___StoreValueCreateWithHints( text, 0 );
}

QV___STORE_VALUE *qv___StoreValueCreateWithHints( QV_STRING *text, QV___STORE_VALUE_HINTS hints )
{
    QV_CHECK( text );
    return qv::storeValueFromParts( qv::retained( text ), qv___StoreValueHintsNormalize( hints ), nullptr );
}

QV___STORE_VALUE *qv___StoreValueCreateNull()
{
    return qv::retained( qv___StoreValueNull );
}

QV___STORE_VALUE *qv___StoreValueCreateBool( QV_BOOL value )
{
    return qv::retained( value ? qv___StoreValueBoolTrue : qv___StoreValueBoolFalse );
}

QV___STORE_VALUE *qv___StoreValueCreateInt( QV_INT value )
{
    if ( value == 0 )
        return qv::retained( qv___StoreValueIntZero );
    if ( value == -1 )
        return qv::retained( qv___StoreValueIntMinusOne );
    return qv::storeValueFromParts( qvFormatEncodeInt( value, 10, 0, 0 ), QV___STORE_VALUE_HINT_INT,
                                    nullptr );
}

QV___STORE_VALUE *qv___StoreValueCreateReal( double value )
{
    return qv::storeValueFromParts( qvFormatEncodeReal( value, 10, 0, -1, 0 ), QV___STORE_VALUE_HINT_REAL,
                                    nullptr );
}

QV___STORE_VALUE *qv___StoreValueCreateFrom( QV___STORE_VALUE *source )
{
    QV_CHECK( source );
    return qv::storeValueFromParts( qv::retained( source->value ), source->hints,
                                    qv::retainedOptional( source->location ) );
}

QV___STORE_VALUE_HINTS qv___StoreValueHints( QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    return value->hints;
}

QV_STRING *qv___StoreValueValue( QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    return qv::retained( value->value );
}

QV_BOOL qv___StoreValueValueNull( QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    return QV_BOOL_FROM( value->hints & QV___STORE_VALUE_HINT_NULL );
}

QV_BOOL qv___StoreValueValueBool( QV___STORE_VALUE *value, QV_BOOL *out )
{
    QV_CHECK( value );
    QV_CHECK( out );
    QV_INT consumed;
    if ( qvStringScanBool( value->value, 0, -1, QV_TRUE, out, &consumed ) &&
         consumed == qv::stringLength( value->value ) )
        return QV_TRUE;
    *out = QV_FALSE;
    return QV_FALSE;
}

QV_BOOL qv___StoreValueValueInt( QV___STORE_VALUE *value, QV_INT *out )
{
    QV_CHECK( value );
    QV_CHECK( out );
    QV_INT consumed;
    if ( qvStringScanInt( value->value, 0, -1, -1, out, &consumed ) &&
         consumed == qv::stringLength( value->value ) )
        return QV_TRUE;
    *out = -1;
    return QV_FALSE;
}

QV_BOOL qv___StoreValueValueReal( QV___STORE_VALUE *value, double *out )
{
    QV_CHECK( value );
    QV_CHECK( out );
    QV_INT consumed;
    if ( qvStringScanReal( value->value, 0, -1, -1, out, &consumed ) &&
         consumed == qv::stringLength( value->value ) )
        return QV_TRUE;
    *out = 0.0;
    return QV_FALSE;
}

QV_LOCATION *qv___StoreValueLocation( QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    return qv::retainedOptional( value->location );
}

QV_BOOL qv___StoreValueHasLocation( QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    return QV_BOOL_FROM( value->location );
}

void qv___StoreValueSetLocation( QV___STORE_VALUE **value, QV_LOCATION *location )
{
    QV_CHECK( value );
    QV_CHECK( *value );
    QV_CHECK( location );
    qv::makePrivate( value, qv___StoreValueCreateFrom );
    qv::assign( &( *value )->location, location );
}

void qv___StoreValueDelLocation( QV___STORE_VALUE **value )
{
    QV_CHECK( value );
    QV_CHECK( *value );
    qv::makePrivate( value, qv___StoreValueCreateFrom );
    qv::replaceWith<QV_LOCATION>( &( *value )->location, nullptr );
}

void qv___StoreValueHintsStartup()
{
    qv___StoreValueHintsFlagset = qv::flagsetFromTable( hintNames, QV_SIZEOF_ARRAY( hintNames ) );
}

void qv___StoreValueHintsShutdown()
{
    qv::retire( &qv___StoreValueHintsFlagset );
}

void qv___StoreValueStartup()
{
    qv___StoreValueNull = qv::storeValueFromParts( qvStringCreate(), QV___STORE_VALUE_HINT_NULL, nullptr );
    qv___StoreValueBoolTrue = valueFromAscii( "true", QV___STORE_VALUE_HINT_BOOL );
    qv___StoreValueBoolFalse = valueFromAscii( "false", QV___STORE_VALUE_HINT_BOOL );
    qv___StoreValueIntZero = valueFromAscii( "0", QV___STORE_VALUE_HINT_INT );
    qv___StoreValueIntMinusOne = valueFromAscii( "-1", QV___STORE_VALUE_HINT_INT );
}

void qv___StoreValueShutdown()
{
    qv::retire( &qv___StoreValueIntMinusOne );
    qv::retire( &qv___StoreValueIntZero );
    qv::retire( &qv___StoreValueBoolFalse );
    qv::retire( &qv___StoreValueBoolTrue );
    qv::retire( &qv___StoreValueNull );
}
