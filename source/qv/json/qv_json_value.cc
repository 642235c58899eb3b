#include <qv/json/qv_json_value.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_format.h>
#include <qv/base/qv_release.hh>
#include <qv/io/qv_location.h>
#include <qv/json/qv_json_decode.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_real.h>

#include <cmath>
#include <cstring>

QV_SORT_DEFINE( QV_JSON_VALUE, qvJsonValue, { .freeFunc = qv___JsonValueFreeFunc } )

constinit QV_ENUM *qv___JsonTypeEnum = nullptr;
constinit QV_JSON_VALUE *qv___JsonValueNull = nullptr;
constinit QV_JSON_VALUE *qv___JsonValueFalse = nullptr;
constinit QV_JSON_VALUE *qv___JsonValueTrue = nullptr;

namespace
{

constexpr qv::EnumName typeNames[] = {
    { QV_JSON_TYPE_NULL, "QV_JSON_TYPE_NULL" },     { QV_JSON_TYPE_FALSE, "QV_JSON_TYPE_FALSE" },
    { QV_JSON_TYPE_TRUE, "QV_JSON_TYPE_TRUE" },     { QV_JSON_TYPE_NUMBER, "QV_JSON_TYPE_NUMBER" },
    { QV_JSON_TYPE_STRING, "QV_JSON_TYPE_STRING" }, { QV_JSON_TYPE_OBJECT, "QV_JSON_TYPE_OBJECT" },
    { QV_JSON_TYPE_ARRAY, "QV_JSON_TYPE_ARRAY" },
};

// Digits up to which a whole number is exact as an integer and as a real.
constexpr QV_INT exactDigits = 15;

bool isDigit( QV_CHAR ch )
{
    return ch - '0' < 10;
}

const QV_CHAR *skipDigits( const QV_CHAR *chs, const QV_CHAR *end )
{
    while ( chs < end && isDigit( *chs ) )
    {
        chs++;
    }
    return chs;
}

// The end of a fraction or exponent whose digits begin at chs, or where it would have begun without any digit.
const QV_CHAR *skipPart( const QV_CHAR *begin, const QV_CHAR *chs, const QV_CHAR *end, bool *isNumber )
{
    const QV_CHAR *behind = skipDigits( chs, end );
    *isNumber = behind > chs;
    return *isNumber ? behind : begin;
}

// Both readings of a text of few digits, with "-" in front or not.
bool readExactInt( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length )
{
    QV_INT first = chs[0] == '-' ? 1 : 0;
    if ( length - first > exactDigits )
        return false;
    QV_INT value = 0;
    for ( QV_INT idx = first; idx < length; idx++ )
    {
        if ( !isDigit( chs[idx] ) )
            return false;
        value = value * 10 + static_cast<QV_INT>( chs[idx] - '0' );
    }
    val->valueInt = first == 1 ? -value : value;
    val->valueReal = static_cast<double>( val->valueInt );
    val->valueIsInt = QV_TRUE;
    val->valueIsReal = QV_TRUE;
    return true;
}

void readNumber( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length )
{
    if ( readExactInt( val, chs, length ) )
        return;
    QV_INT consumed = 0;
    QV_INT integer = 0;
    if ( qvFormatTryDecodeIntChars( chs, length, 10, &integer, &consumed ) && consumed == length )
    {
        val->valueIsInt = QV_TRUE;
        val->valueInt = integer;
    }
    double real = 0.0;
    if ( qvFormatTryDecodeRealChars( chs, length, 10, &real, &consumed ) && consumed == length )
    {
        val->valueIsReal = QV_TRUE;
        val->valueReal = real;
    }
}

// The text without its readings. given, which may be null, is a string with that text.
void keepNumberText( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length, QV_STRING *given )
{
    if ( length > QV___JSON_NUMBER_INLINE )
    {
        val->number = given ? qv::retained( given ) : qvStringCreateFromCharsCopy( chs, length );
        return;
    }
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        val->numberChars[idx] = static_cast<unsigned char>( chs[idx] );
    }
    val->numberLength = static_cast<unsigned char>( length );
}

// The text of a finite real. The digits of one beyond exact integers may begin with a zero that the grammar of numbers
// doesn't allow.
QV_STRING *realText( double value )
{
    QV_STRING *text = qvFormatEncodeReal( value, 10, 1, -1, 0 );
    const QV_CHAR *chs = qv::stringBacking( text );
    QV_INT first = chs[0] == '-' ? 1 : 0;
    QV_INT zeros = 0;
    while ( chs[first + zeros] == '0' && isDigit( chs[first + zeros + 1] ) )
    {
        zeros++;
    }
    if ( zeros > 0 )
        qvStringDelInner( &text, first, zeros );
    return text;
}

void checkType( QV_JSON_VALUE *val, QV_JSON_TYPE tp )
{
    QV_CHECK( val );
    QV_CHECK( val->type == tp );
}

} // namespace

// ---- Types ----

QV_JSON_TYPE qvJsonTypeFromString( QV_STRING *qvs )
{
    return qvEnumParse( qv___JsonTypeEnum, qvs );
}

QV_STRING *qvJsonTypeToString( QV_JSON_TYPE tp )
{
    QV_CHECK( QV_JSON_TYPE_OK( tp ) );
    return qvEnumGenerate( qv___JsonTypeEnum, tp );
}

// ---- Grammar ----

QV_INT qv___JsonSkipNumber( const QV_CHAR *chs, QV_INT length )
{
    const QV_CHAR *end = chs + length;
    const QV_CHAR *at = chs;
    if ( at < end && *at == '-' )
        at++;
    if ( at == end || !isDigit( *at ) )
        return 0;
    at = *at == '0' ? at + 1 : skipDigits( at, end );

    // A part that lacks its digits isn't there, and without a fraction there still may be an exponent.
    bool isNumber = true;
    if ( at < end && *at == '.' )
        at = skipPart( at, at + 1, end, &isNumber );
    if ( isNumber && at < end && ( *at | 0x20 ) == 'e' )
    {
        const QV_CHAR *digits = at + 1;
        if ( digits < end && ( *digits == '+' || *digits == '-' ) )
            digits++;
        at = skipPart( at, digits, end, &isNumber );
    }
    return at - chs;
}

QV_BOOL qvJsonValidateNumber( QV_STRING *string )
{
    QV_CHECK( string );
    QV_INT length = qv::stringLength( string );
    return QV_BOOL_FROM( length > 0 && qv___JsonSkipNumber( qv::stringBacking( string ), length ) == length );
}

QV_BOOL qvJsonValidateString( QV_STRING *string )
{
    QV_CHECK( string );
    return qvCharsAllOk( qv::stringBacking( string ), qv::stringLength( string ) );
}

QV_BOOL qvJsonValidateMemberName( QV_STRING *string )
{
    return qvJsonValidateString( string );
}

// ---- Creating ----

QV_JSON_VALUE *qv::jsonCreate( QV_JSON_TYPE tp )
{
    auto *val = create<QV_JSON_VALUE>( &qv___sort_QV_JSON_VALUE );
    val->type = tp;
    val->number = nullptr;
    val->string = nullptr;
    val->objectMembers = nullptr;
    val->array = nullptr;
    val->valueIsInt = QV_FALSE;
    val->valueIsReal = QV_FALSE;
    val->valueInt = 0;
    val->valueReal = 0.0;
    val->location = nullptr;
    val->numberLength = 0;
    return val;
}

void qv::jsonSetNumberText( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length )
{
    keepNumberText( val, chs, length, nullptr );
    readNumber( val, chs, length );
}

void qv___JsonValueFreeFunc( qvObj thisObj )
{
    QV_JSON_VALUE *val = qvJsonValueFrom( thisObj );
    QV_CHECK( val );
    qv::releaseOptional( val->number );
    qv::releaseOptional( val->string );
    if ( qv::jsonIsContainer( val ) )
    {
        qv::NestedRelease nested;
        nested.release( val->objectMembers ? qv::objOf( val->objectMembers ) : qv::objOf( val->array ) );
    }
    qv::releaseOptional( val->location );
}

QV_JSON_VALUE *qvJsonValueCreateNull( void )
{
    return qv::retained( qv___JsonValueNull );
}

QV_JSON_VALUE *qvJsonValueCreateFalse( void )
{
    return qv::retained( qv___JsonValueFalse );
}

QV_JSON_VALUE *qvJsonValueCreateTrue( void )
{
    return qv::retained( qv___JsonValueTrue );
}

QV_JSON_VALUE *qvJsonValueCreateBool( QV_BOOL value )
{
    return value ? qvJsonValueCreateTrue() : qvJsonValueCreateFalse();
}

QV_JSON_VALUE *qvJsonValueCreateNumber( QV_STRING *jsonNumber )
{
    QV_JSON_VALUE *val = qvJsonValueCreateNull();
    qvJsonValueSetNumber( &val, jsonNumber );
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateInt( QV_INT value )
{
    QV_JSON_VALUE *val = qvJsonValueCreateNull();
    qvJsonValueSetInt( &val, value );
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateReal( double value )
{
    QV_JSON_VALUE *val = qvJsonValueCreateNull();
    qvJsonValueSetReal( &val, value );
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateString( QV_STRING *jsonString )
{
    QV_CHECK( jsonString );
    QV_CHECK( qvJsonValidateString( jsonString ) );
    QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_STRING );
    val->string = qv::retained( jsonString );
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateObject( void )
{
    QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_OBJECT );
    val->objectMembers = qvDictCreate();
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateArray( void )
{
    QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_ARRAY );
    val->array = qvVectorCreate();
    return val;
}

QV_JSON_VALUE *qvJsonValueCreateFrom( QV_JSON_VALUE *source )
{
    QV_CHECK( source );
    QV_JSON_VALUE *val = qv::jsonCreate( source->type );
    val->number = qv::retainedOptional( source->number );
    val->string = qv::retainedOptional( source->string );
    val->objectMembers = qv::retainedOptional( source->objectMembers );
    val->array = qv::retainedOptional( source->array );
    val->valueIsInt = source->valueIsInt;
    val->valueIsReal = source->valueIsReal;
    val->valueInt = source->valueInt;
    val->valueReal = source->valueReal;
    val->location = qv::retainedOptional( source->location );
    val->numberLength = source->numberLength;
    std::memcpy( val->numberChars, source->numberChars, source->numberLength );
    return val;
}

// ---- The type ----

QV_JSON_TYPE qvJsonValueType( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return val->type;
}

QV_BOOL qvJsonValueIsNull( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_NULL );
}

QV_BOOL qvJsonValueIsFalse( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_FALSE );
}

QV_BOOL qvJsonValueIsTrue( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_TRUE );
}

QV_BOOL qvJsonValueIsBool( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueIsFalse( val ) || qvJsonValueIsTrue( val ) );
}

QV_BOOL qvJsonValueIsNumber( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_NUMBER );
}

QV_BOOL qvJsonValueIsInt( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return val->valueIsInt;
}

QV_BOOL qvJsonValueIsReal( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return val->valueIsReal;
}

QV_BOOL qvJsonValueIsString( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_STRING );
}

QV_BOOL qvJsonValueIsObject( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_OBJECT );
}

QV_BOOL qvJsonValueIsArray( QV_JSON_VALUE *val )
{
    return QV_BOOL_FROM( qvJsonValueType( val ) == QV_JSON_TYPE_ARRAY );
}

// ---- Setting the whole value ----

void qv___JsonValueSetType( QV_JSON_VALUE **val, QV_JSON_TYPE tp )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( QV_JSON_TYPE_OK( tp ) );
    qv::makePrivate( val, qvJsonValueCreateFrom );
    QV_JSON_VALUE *own = *val;
    QV_STRING *number = own->number;
    QV_STRING *string = own->string;
    QV_DICT *objectMembers = own->objectMembers;
    QV_VECTOR *array = own->array;
    own->type = tp;
    own->number = nullptr;
    own->string = nullptr;
    own->objectMembers = nullptr;
    own->array = nullptr;
    own->valueIsInt = QV_FALSE;
    own->valueIsReal = QV_FALSE;
    own->valueInt = 0;
    own->valueReal = 0.0;
    own->numberLength = 0;
    qv::releaseOptional( number );
    qv::releaseOptional( string );
    qv::releaseOptional( objectMembers );
    qv::releaseOptional( array );
}

namespace
{

void setShared( QV_JSON_VALUE **val, QV_JSON_VALUE *shared )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    qv::assign( val, shared );
}

} // namespace

void qvJsonValueSetNull( QV_JSON_VALUE **val )
{
    setShared( val, qv___JsonValueNull );
}

void qvJsonValueSetFalse( QV_JSON_VALUE **val )
{
    setShared( val, qv___JsonValueFalse );
}

void qvJsonValueSetTrue( QV_JSON_VALUE **val )
{
    setShared( val, qv___JsonValueTrue );
}

void qvJsonValueSetBool( QV_JSON_VALUE **val, QV_BOOL value )
{
    setShared( val, value ? qv___JsonValueTrue : qv___JsonValueFalse );
}

void qvJsonValueSetNumber( QV_JSON_VALUE **val, QV_STRING *jsonNumber )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( jsonNumber );
    QV_CHECK( qvJsonValidateNumber( jsonNumber ) );
    // The text may have no other holder than the value.
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( jsonNumber );
    qv___JsonValueSetType( val, QV_JSON_TYPE_NUMBER );
    const QV_CHAR *chs = qv::stringBacking( jsonNumber );
    QV_INT length = qv::stringLength( jsonNumber );
    keepNumberText( *val, chs, length, jsonNumber );
    readNumber( *val, chs, length );
}

void qvJsonValueSetInt( QV_JSON_VALUE **val, QV_INT value )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    qv::Local<QV_STRING> text( qvFormatEncodeInt( value, 10, 1, 0 ) );
    qv___JsonValueSetType( val, QV_JSON_TYPE_NUMBER );
    keepNumberText( *val, qv::stringBacking( text ), qv::stringLength( text ), text );
    ( *val )->valueIsInt = QV_TRUE;
    ( *val )->valueInt = value;
}

void qvJsonValueSetReal( QV_JSON_VALUE **val, double value )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( std::isfinite( value ) );
    qv::Local<QV_STRING> text( realText( value ) );
    qv___JsonValueSetType( val, QV_JSON_TYPE_NUMBER );
    keepNumberText( *val, qv::stringBacking( text ), qv::stringLength( text ), text );
    ( *val )->valueIsReal = QV_TRUE;
    ( *val )->valueReal = value;
}

void qvJsonValueSetString( QV_JSON_VALUE **val, QV_STRING *jsonString )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( jsonString );
    QV_CHECK( qvJsonValidateString( jsonString ) );
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( jsonString );
    qv___JsonValueSetType( val, QV_JSON_TYPE_STRING );
    ( *val )->string = held.give();
}

void qvJsonValueSetObject( QV_JSON_VALUE **val )
{
    qv___JsonValueSetType( val, QV_JSON_TYPE_OBJECT );
    ( *val )->objectMembers = qvDictCreate();
}

void qvJsonValueSetArray( QV_JSON_VALUE **val )
{
    qv___JsonValueSetType( val, QV_JSON_TYPE_ARRAY );
    ( *val )->array = qvVectorCreate();
}

// ---- Reading ----

QV_BOOL qvJsonValueBool( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->type == QV_JSON_TYPE_FALSE || val->type == QV_JSON_TYPE_TRUE );
    return QV_BOOL_FROM( val->type == QV_JSON_TYPE_TRUE );
}

QV_STRING *qvJsonValueNumber( QV_JSON_VALUE *val )
{
    checkType( val, QV_JSON_TYPE_NUMBER );
    if ( val->number )
        return qv::retained( val->number );
    QV_STRING *text = qv::stringCreateUnfilled( val->numberLength );
    QV_CHAR *chs = qv::stringBacking( text );
    for ( QV_INT idx = 0; idx < val->numberLength; idx++ )
    {
        chs[idx] = val->numberChars[idx];
    }
    return text;
}

QV_INT qvJsonValueInt( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->valueIsInt );
    return val->valueInt;
}

double qvJsonValueReal( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->valueIsReal );
    return val->valueReal;
}

QV_STRING *qvJsonValueString( QV_JSON_VALUE *val )
{
    checkType( val, QV_JSON_TYPE_STRING );
    return qv::retained( val->string );
}

// ---- Location ----

QV_LOCATION *qvJsonValueLocation( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return qv::retainedOptional( val->location );
}

QV_BOOL qvJsonValueHasLocation( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return QV_BOOL_FROM( val->location );
}

void qvJsonValueSetLocation( QV_JSON_VALUE **val, QV_LOCATION *location )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( location );
    qv::makePrivate( val, qvJsonValueCreateFrom );
    qv::assign( &( *val )->location, location );
}

void qvJsonValueDelLocation( QV_JSON_VALUE **val )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    if ( !( *val )->location )
        return;
    qv::makePrivate( val, qvJsonValueCreateFrom );
    qv::replaceWith<QV_LOCATION>( &( *val )->location, nullptr );
}

// ---- Components ----

void qv___JsonTypeStartup()
{
    qv___JsonTypeEnum = qv::enumFromTable( typeNames, QV_SIZEOF_ARRAY( typeNames ) );
    qv::startJsonDecodeErrorCodes();
}

void qv___JsonTypeShutdown()
{
    qv::stopJsonDecodeErrorCodes();
    qv::retire( &qv___JsonTypeEnum );
}

void qv___JsonValueStartup()
{
    qv___JsonValueNull = qv::jsonCreate( QV_JSON_TYPE_NULL );
    qv___JsonValueFalse = qv::jsonCreate( QV_JSON_TYPE_FALSE );
    qv___JsonValueTrue = qv::jsonCreate( QV_JSON_TYPE_TRUE );
}

void qv___JsonValueShutdown()
{
    qv::retire( &qv___JsonValueTrue );
    qv::retire( &qv___JsonValueFalse );
    qv::retire( &qv___JsonValueNull );
}
