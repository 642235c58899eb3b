// The forms of insert and set that make the object themselves: boxed values and strings.

#include <qv/base/qv_vector.hh>

#include <qv/base/qv_boxed_bool.h>
#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_boxed_null.h>
#include <qv/base/qv_boxed_real.h>
#include <qv/base/qv_string.h>

namespace
{

QV_INT endOf( QV_VECTOR **vec )
{
    QV_CHECK( vec );
    QV_CHECK( *vec );
    return ( *vec )->length;
}

void insertGiven( QV_VECTOR **vec, QV_INT idx, qvObj given )
{
    qv::Local<qv___Obj> item( given );
    qvVectorInsertObj( vec, idx, item );
}

void setGiven( QV_VECTOR **vec, QV_INT idx, qvObj given )
{
    qv::Local<qv___Obj> item( given );
    qvVectorSetObjAt( vec, idx, item );
}

} // namespace

// ---- Inserting ----

void qvVectorInsertNull( QV_VECTOR **vec, QV_INT idx )
{
    insertGiven( vec, idx, qv::objOf( qvBoxedNullCreate() ) );
}

void qvVectorPrependNull( QV_VECTOR **vec )
{
    qvVectorInsertNull( vec, 0 );
}

void qvVectorAppendNull( QV_VECTOR **vec )
{
    qvVectorInsertNull( vec, endOf( vec ) );
}

void qvVectorInsertBool( QV_VECTOR **vec, QV_INT idx, QV_BOOL value )
{
    insertGiven( vec, idx, qv::objOf( qvBoxedBoolCreate( value ) ) );
}

void qvVectorPrependBool( QV_VECTOR **vec, QV_BOOL value )
{
    qvVectorInsertBool( vec, 0, value );
}

void qvVectorAppendBool( QV_VECTOR **vec, QV_BOOL value )
{
    qvVectorInsertBool( vec, endOf( vec ), value );
}

void qvVectorInsertInt( QV_VECTOR **vec, QV_INT idx, QV_INT value )
{
    insertGiven( vec, idx, qv::objOf( qvBoxedIntCreate( value ) ) );
}

void qvVectorPrependInt( QV_VECTOR **vec, QV_INT value )
{
    qvVectorInsertInt( vec, 0, value );
}

void qvVectorAppendInt( QV_VECTOR **vec, QV_INT value )
{
    qvVectorInsertInt( vec, endOf( vec ), value );
}

void qvVectorInsertReal( QV_VECTOR **vec, QV_INT idx, double value )
{
    insertGiven( vec, idx, qv::objOf( qvBoxedRealCreate( value ) ) );
}

void qvVectorPrependReal( QV_VECTOR **vec, double value )
{
    qvVectorInsertReal( vec, 0, value );
}

void qvVectorAppendReal( QV_VECTOR **vec, double value )
{
    qvVectorInsertReal( vec, endOf( vec ), value );
}

void qvVectorInsertString( QV_VECTOR **vec, QV_INT idx, QV_STRING *qvs )
{
    qvVectorInsertObj( vec, idx, qv::objOf( qvs ) );
}

void qvVectorPrependString( QV_VECTOR **vec, QV_STRING *qvs )
{
    qvVectorInsertString( vec, 0, qvs );
}

void qvVectorAppendString( QV_VECTOR **vec, QV_STRING *qvs )
{
    qvVectorInsertString( vec, endOf( vec ), qvs );
}

void qvVectorInsertStringCstr( QV_VECTOR **vec, QV_INT idx, const char *cstr, QV_INT length )
{
    insertGiven( vec, idx, qv::objOf( qvStringCreateFromCstr( cstr, length ) ) );
}

void qvVectorPrependStringCstr( QV_VECTOR **vec, const char *cstr, QV_INT length )
{
    qvVectorInsertStringCstr( vec, 0, cstr, length );
}

void qvVectorAppendStringCstr( QV_VECTOR **vec, const char *cstr, QV_INT length )
{
    qvVectorInsertStringCstr( vec, endOf( vec ), cstr, length );
}

void qvVectorInsertStringWcstr( QV_VECTOR **vec, QV_INT idx, const wchar_t *wcstr, QV_INT length )
{
    insertGiven( vec, idx, qv::objOf( qvStringCreateFromWcstr( wcstr, length ) ) );
}

void qvVectorPrependStringWcstr( QV_VECTOR **vec, const wchar_t *wcstr, QV_INT length )
{
    qvVectorInsertStringWcstr( vec, 0, wcstr, length );
}

void qvVectorAppendStringWcstr( QV_VECTOR **vec, const wchar_t *wcstr, QV_INT length )
{
    qvVectorInsertStringWcstr( vec, endOf( vec ), wcstr, length );
}

// ---- Formatted strings ----

// The functions differ only in how the format arrives and in where the string goes; this is what the argument
// list needs in all of them.
#define QV___VECTOR_MADE( LAST, CREATE )                                                                     \
    QV_ARG_LIST argList;                                                                                     \
    va_start( argList.args, LAST );                                                                          \
    qvObj made = qv::objOf( CREATE );                                                                        \
    va_end( argList.args )

void qvVectorInsertStringFormat( QV_VECTOR **vec, QV_INT idx, QV_STRING *format, ... )
{
    QV___VECTOR_MADE( format, qvStringCreateFromFormatArgList( format, &argList ) );
    insertGiven( vec, idx, made );
}

void qvVectorPrependStringFormat( QV_VECTOR **vec, QV_STRING *format, ... )
{
    QV___VECTOR_MADE( format, qvStringCreateFromFormatArgList( format, &argList ) );
    insertGiven( vec, 0, made );
}

void qvVectorAppendStringFormat( QV_VECTOR **vec, QV_STRING *format, ... )
{
    QV___VECTOR_MADE( format, qvStringCreateFromFormatArgList( format, &argList ) );
    insertGiven( vec, endOf( vec ), made );
}

void qvVectorSetStringFormatAt( QV_VECTOR **vec, QV_INT idx, QV_STRING *format, ... )
{
    QV___VECTOR_MADE( format, qvStringCreateFromFormatArgList( format, &argList ) );
    setGiven( vec, idx, made );
}

void qvVectorInsertStringFormatCstr( QV_VECTOR **vec, QV_INT idx, const char *format, QV_INT formatLength,
                                     ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, idx, made );
}

void qvVectorPrependStringFormatCstr( QV_VECTOR **vec, const char *format, QV_INT formatLength, ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, 0, made );
}

void qvVectorAppendStringFormatCstr( QV_VECTOR **vec, const char *format, QV_INT formatLength, ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, endOf( vec ), made );
}

void qvVectorSetStringFormatCstrAt( QV_VECTOR **vec, QV_INT idx, const char *format, QV_INT formatLength,
                                    ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    setGiven( vec, idx, made );
}

void qvVectorInsertStringFormatWcstr( QV_VECTOR **vec, QV_INT idx, const wchar_t *format, QV_INT formatLength,
                                      ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, idx, made );
}

void qvVectorPrependStringFormatWcstr( QV_VECTOR **vec, const wchar_t *format, QV_INT formatLength, ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, 0, made );
}

void qvVectorAppendStringFormatWcstr( QV_VECTOR **vec, const wchar_t *format, QV_INT formatLength, ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    insertGiven( vec, endOf( vec ), made );
}

void qvVectorSetStringFormatWcstrAt( QV_VECTOR **vec, QV_INT idx, const wchar_t *format, QV_INT formatLength,
                                     ... )
{
    QV___VECTOR_MADE( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    setGiven( vec, idx, made );
}

#undef QV___VECTOR_MADE

// ---- Setting ----

void qvVectorSetNullAt( QV_VECTOR **vec, QV_INT idx )
{
    setGiven( vec, idx, qv::objOf( qvBoxedNullCreate() ) );
}

void qvVectorSetBoolAt( QV_VECTOR **vec, QV_INT idx, QV_BOOL value )
{
    setGiven( vec, idx, qv::objOf( qvBoxedBoolCreate( value ) ) );
}

void qvVectorSetIntAt( QV_VECTOR **vec, QV_INT idx, QV_INT value )
{
    setGiven( vec, idx, qv::objOf( qvBoxedIntCreate( value ) ) );
}

void qvVectorSetRealAt( QV_VECTOR **vec, QV_INT idx, double value )
{
    setGiven( vec, idx, qv::objOf( qvBoxedRealCreate( value ) ) );
}

void qvVectorSetStringAt( QV_VECTOR **vec, QV_INT idx, QV_STRING *qvs )
{
    qvVectorSetObjAt( vec, idx, qv::objOf( qvs ) );
}

void qvVectorSetStringCstrAt( QV_VECTOR **vec, QV_INT idx, const char *cstr, QV_INT length )
{
    setGiven( vec, idx, qv::objOf( qvStringCreateFromCstr( cstr, length ) ) );
}

void qvVectorSetStringWcstrAt( QV_VECTOR **vec, QV_INT idx, const wchar_t *wcstr, QV_INT length )
{
    setGiven( vec, idx, qv::objOf( qvStringCreateFromWcstr( wcstr, length ) ) );
}
