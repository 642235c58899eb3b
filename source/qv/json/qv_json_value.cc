#include <qv/json/qv_json_value.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_format.h>
#include <qv/base/qv_release.hh>
#include <qv/io/qv_location.h>
#include <qv/json/qv_json_decode.hh>
#include <qv/json/qv_json_text.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_real.h>

#include <algorithm>
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

// Digits up to which a whole number is exact as an integer and as a real, and the first number with more.
constexpr QV_INT exactDigits = 15;
constexpr QV_INT exactLimit = 1000000000000000;

qv___JsonReading *readingOf( QV_JSON_VALUE *val )
{
    return val->isHeld ? reinterpret_cast<qv___JsonReading *>( qv::jsonTail( val ) ) : &val->reading;
}

bool isDigit( QV_CHAR ch )
{
    return ch - '0' < 10;
}

// Both readings of a text of few digits, with "-" in front or not.
template <typename UNIT> bool readExactInt( QV_JSON_VALUE *val, const UNIT *chs, QV_INT length )
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
    val->valueIsInt = true;
    val->valueIsReal = true;
    readingOf( val )->integer = first == 1 ? -value : value;
    return true;
}

// The readings of any text. Of two, the integer is kept, and the real is read again when it is asked for.
void readNumber( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length )
{
    QV_INT consumed = 0;
    QV_INT integer = 0;
    val->valueIsInt = qvFormatTryDecodeIntChars( chs, length, 10, &integer, &consumed ) && consumed == length;
    double real = 0.0;
    val->valueIsReal = qvFormatTryDecodeRealChars( chs, length, 10, &real, &consumed ) && consumed == length;
    if ( val->valueIsInt )
        readingOf( val )->integer = integer;
    else if ( val->valueIsReal )
        readingOf( val )->real = real;
}

// The text without its readings. given is a string with that text.
void keepNumberText( QV_JSON_VALUE *val, QV_STRING *given )
{
    const QV_CHAR *chs = qv::stringBacking( given );
    QV_INT length = qv::stringLength( given );
    val->isHeld = length > qv::jsonTailRoom( val );
    if ( val->isHeld )
    {
        val->text = qv::retained( given );
        return;
    }
    unsigned char *tail = qv::jsonTakeTail( val, length );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        tail[idx] = static_cast<unsigned char>( chs[idx] );
    }
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

// A new value with room for textLength bytes of text.
QV_JSON_VALUE *createSized( QV_INT tp, QV_INT textLength )
{
    QV_INT room = textLength > QV___JSON_TAIL_MIN ? ( textLength + 7 ) & ~7 : QV___JSON_TAIL_MIN;
    auto *val = static_cast<QV_JSON_VALUE *>(
        qv___ObjCreate( static_cast<QV_INT>( sizeof( QV_JSON_VALUE ) ) + room, &qv___sort_QV_JSON_VALUE ) );
    val->type = static_cast<uint8_t>( tp );
    val->isHeld = false;
    val->valueIsInt = false;
    val->valueIsReal = false;
    val->tailLength = 0;
    val->reading = { 0 };
    val->location = nullptr;
    return val;
}

// The object that a value holds, null if there is none.
qvObj contentOf( const QV_JSON_VALUE *val )
{
    if ( val->type == QV_JSON_TYPE_OBJECT )
        return val->objectMembers;
    if ( val->type == QV_JSON_TYPE_ARRAY )
        return val->array;
    return val->isHeld ? val->text : nullptr;
}

// The characters of a text in the tail.
QV_STRING *tailText( QV_JSON_VALUE *val )
{
    const unsigned char *bytes = qv::jsonTail( val );
    QV_INT length = qv::jsonUtf8Chars( bytes, val->tailLength );
    QV_STRING *text = qv::stringCreateUnfilled( length );
    qv::jsonDecodeUtf8( bytes, val->tailLength, qv::stringBacking( text ) );
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
    return qv::jsonSkipNumber( chs, length );
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

QV_JSON_VALUE *qv::jsonCreate( QV_JSON_TYPE tp, QV_INT textLength )
{
    return createSized( tp, textLength <= QV___JSON_TAIL_MAX ? textLength : 0 );
}

QV_JSON_VALUE *qv::jsonCreateNumber( const unsigned char *chs, QV_INT length )
{
    if ( length > QV___JSON_TAIL_MAX )
    {
        Local<QV_STRING> text( qvStringCreateFromAscii( reinterpret_cast<const char *>( chs ), length ) );
        return qvJsonValueCreateNumber( text );
    }
    QV_JSON_VALUE *val = createSized( QV_JSON_TYPE_NUMBER, length );
    std::memcpy( jsonTakeTail( val, length ), chs, static_cast<size_t>( length ) );
    if ( readExactInt( val, chs, length ) )
        return val;
    QV_CHAR wide[QV___JSON_TAIL_MAX];
    std::copy( chs, chs + length, wide );
    readNumber( val, wide, length );
    return val;
}

QV_JSON_VALUE *qv::jsonCreateNumber( const QV_CHAR *chs, QV_INT length )
{
    if ( length > QV___JSON_TAIL_MAX )
    {
        Local<QV_STRING> text( qvStringCreateFromCharsCopy( chs, length ) );
        return qvJsonValueCreateNumber( text );
    }
    unsigned char narrow[QV___JSON_TAIL_MAX];
    std::transform( chs, chs + length, narrow,
                    []( QV_CHAR ch ) { return static_cast<unsigned char>( ch ); } );
    return jsonCreateNumber( narrow, length );
}

void qv___JsonValueFreeFunc( qvObj thisObj )
{
    QV_JSON_VALUE *val = qvJsonValueFrom( thisObj );
    QV_CHECK( val );
    if ( qv::jsonIsContainer( val ) )
    {
        qv::NestedRelease nested;
        nested.release( contentOf( val ) );
    }
    else if ( val->isHeld )
        qv::release( qv::objOf( val->text ) );
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
    val->isHeld = true;
    val->text = qv::retained( jsonString );
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
    QV_JSON_VALUE *val = createSized( source->type, source->tailLength );
    val->isHeld = source->isHeld;
    val->valueIsInt = source->valueIsInt;
    val->valueIsReal = source->valueIsReal;
    val->reading = source->reading;
    if ( qvObj content = contentOf( source ) )
        qv::retain( content );
    if ( source->isHeld )
        *readingOf( val ) = *readingOf( source );
    if ( source->tailLength > 0 )
    {
        unsigned char *tail = qv::jsonTakeTail( val, source->tailLength );
        std::memcpy( tail, qv::jsonTail( source ), source->tailLength );
    }
    val->location = qv::retainedOptional( source->location );
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
    return QV_BOOL_FROM( val->valueIsInt );
}

QV_BOOL qvJsonValueIsReal( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    return QV_BOOL_FROM( val->valueIsReal );
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
    qvObj content = contentOf( own );
    own->type = static_cast<uint8_t>( tp );
    own->isHeld = false;
    own->valueIsInt = false;
    own->valueIsReal = false;
    own->tailLength = 0;
    own->reading = { 0 };
    if ( content )
        qv::release( content );
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
    keepNumberText( *val, jsonNumber );
    readNumber( *val, qv::stringBacking( jsonNumber ), qv::stringLength( jsonNumber ) );
}

void qvJsonValueSetInt( QV_JSON_VALUE **val, QV_INT value )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    qv::Local<QV_STRING> text( qvFormatEncodeInt( value, 10, 1, 0 ) );
    qv___JsonValueSetType( val, QV_JSON_TYPE_NUMBER );
    keepNumberText( *val, text );
    ( *val )->valueIsInt = true;
    readingOf( *val )->integer = value;
}

void qvJsonValueSetReal( QV_JSON_VALUE **val, double value )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( std::isfinite( value ) );
    qv::Local<QV_STRING> text( realText( value ) );
    qv___JsonValueSetType( val, QV_JSON_TYPE_NUMBER );
    keepNumberText( *val, text );
    ( *val )->valueIsReal = true;
    readingOf( *val )->real = value;
}

void qvJsonValueSetString( QV_JSON_VALUE **val, QV_STRING *jsonString )
{
    QV_CHECK( val );
    QV_CHECK( *val );
    QV_CHECK( jsonString );
    QV_CHECK( qvJsonValidateString( jsonString ) );
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( jsonString );
    qv___JsonValueSetType( val, QV_JSON_TYPE_STRING );
    ( *val )->isHeld = true;
    ( *val )->text = held.give();
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
    return val->isHeld ? qv::retained( val->text ) : tailText( val );
}

QV_INT qvJsonValueInt( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->valueIsInt );
    return readingOf( val )->integer;
}

double qvJsonValueReal( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->valueIsReal );
    if ( !val->valueIsInt )
        return readingOf( val )->real;
    QV_INT integer = readingOf( val )->integer;
    if ( integer > -exactLimit && integer < exactLimit )
        return static_cast<double>( integer );
    qv::Local<QV_STRING> text( qvJsonValueNumber( val ) );
    double real = 0.0;
    QV_INT consumed;
    qvFormatTryDecodeRealChars( qv::stringBacking( text ), qv::stringLength( text ), 10, &real, &consumed );
    return real;
}

QV_STRING *qvJsonValueString( QV_JSON_VALUE *val )
{
    checkType( val, QV_JSON_TYPE_STRING );
    return val->isHeld ? qv::retained( val->text ) : tailText( val );
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
