#include <qv/base/qv_store.hh>

#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>

// The forms of the functions by address that take bytes, wide characters or a format: each makes the address a string and
// calls the form that takes one.

QV_BOOL qvStoreHasAddressCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreHasAddress( store, key );
}

QV_BOOL qvStoreHasAddressWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreHasAddress( store, key );
}

QV_STRING *qvStoreValueCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreValue( store, key );
}

QV_STRING *qvStoreValueWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreValue( store, key );
}

QV_BOOL qvStoreValueNullCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreValueNull( store, key );
}

QV_BOOL qvStoreValueNullWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreValueNull( store, key );
}

QV_BOOL qvStoreValueBoolCstr( QV_STORE *store, QV_BOOL *out, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreValueBool( store, out, key );
}

QV_BOOL qvStoreValueBoolWcstr( QV_STORE *store, QV_BOOL *out, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreValueBool( store, out, key );
}

QV_BOOL qvStoreValueIntCstr( QV_STORE *store, QV_INT *out, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreValueInt( store, out, key );
}

QV_BOOL qvStoreValueIntWcstr( QV_STORE *store, QV_INT *out, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreValueInt( store, out, key );
}

QV_BOOL qvStoreValueRealCstr( QV_STORE *store, double *out, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreValueReal( store, out, key );
}

QV_BOOL qvStoreValueRealWcstr( QV_STORE *store, double *out, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreValueReal( store, out, key );
}

QV_BOOL qvStoreHasValueCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreHasValue( store, key );
}

QV_BOOL qvStoreHasValueWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreHasValue( store, key );
}

QV_STORE *qvStoreStoreCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreStore( store, key );
}

QV_STORE *qvStoreStoreWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreStore( store, key );
}

QV_BOOL qvStoreHasStoreCstr( QV_STORE *store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    return qvStoreHasStore( store, key );
}

QV_BOOL qvStoreHasStoreWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    return qvStoreHasStore( store, key );
}

void qvStoreSetValueCstr( QV_STORE **store, const char *address, QV_INT addressLength, QV_STRING *value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetValue( store, key, value );
}

void qvStoreSetValueWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength, QV_STRING *value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetValue( store, key, value );
}

void qvStoreSetValueNullCstr( QV_STORE **store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetValueNull( store, key );
}

void qvStoreSetValueNullWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetValueNull( store, key );
}

void qvStoreSetValueBoolCstr( QV_STORE **store, const char *address, QV_INT addressLength, QV_BOOL value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetValueBool( store, key, value );
}

void qvStoreSetValueBoolWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength, QV_BOOL value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetValueBool( store, key, value );
}

void qvStoreSetValueIntCstr( QV_STORE **store, const char *address, QV_INT addressLength, QV_INT value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetValueInt( store, key, value );
}

void qvStoreSetValueIntWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength, QV_INT value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetValueInt( store, key, value );
}

void qvStoreSetValueRealCstr( QV_STORE **store, const char *address, QV_INT addressLength, double value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetValueReal( store, key, value );
}

void qvStoreSetValueRealWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength, double value )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetValueReal( store, key, value );
}

void qvStoreSetStoreCstr( QV_STORE **store, const char *address, QV_INT addressLength, QV_STORE *subStore )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreSetStore( store, key, subStore );
}

void qvStoreSetStoreWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                           QV_STORE *subStore )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreSetStore( store, key, subStore );
}

void qvStoreDelCstr( QV_STORE **store, const char *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromCstr( address, addressLength ) );
    qvStoreDel( store, key );
}

void qvStoreDelWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength )
{
    qv::Local<QV_STRING> key( qvStringCreateFromWcstr( address, addressLength ) );
    qvStoreDel( store, key );
}

// The three format spellings differ in nothing but the format's type. LAST is the parameter in front of the arguments.
#define STRIP( ... ) __VA_ARGS__
#define FORMAT_FORM( RESULT, NAME, CREATE, PARAMETERS, LAST, FORMAT, ARGUMENTS )                             \
    RESULT NAME( STRIP PARAMETERS, ... )                                                                     \
    {                                                                                                        \
        QV_ARG_LIST argList;                                                                                 \
        va_start( argList.args, LAST );                                                                      \
        qv::Local<QV_STRING> address( CREATE( STRIP FORMAT, &argList ) );                                    \
        va_end( argList.args );                                                                              \
        return ARGUMENTS;                                                                                    \
    }

// A function without a value.
#define FORMAT_FORMS( RESULT, NAME, PARAMETERS, ... )                                                        \
    FORMAT_FORM( RESULT, NAME##Format, qvStringCreateFromFormatArgList,                                      \
                 ( STRIP PARAMETERS, QV_STRING * format ), format, ( format ),                               \
                 NAME( __VA_ARGS__, address ) )                                                              \
    FORMAT_FORM( RESULT, NAME##FormatCstr, qvStringCreateFromFormatCstrArgList,                              \
                 ( STRIP PARAMETERS, const char *format, QV_INT formatLength ), formatLength,                \
                 ( format, formatLength ), NAME( __VA_ARGS__, address ) )                                    \
    FORMAT_FORM( RESULT, NAME##FormatWcstr, qvStringCreateFromFormatWcstrArgList,                            \
                 ( STRIP PARAMETERS, const wchar_t *format, QV_INT formatLength ), formatLength,             \
                 ( format, formatLength ), NAME( __VA_ARGS__, address ) )

// A setter, whose value stands between the format and the arguments.
#define FORMAT_SETTERS( NAME, TYPE )                                                                         \
    FORMAT_FORM( void, NAME##Format, qvStringCreateFromFormatArgList,                                        \
                 ( QV_STORE * *store, QV_STRING * format, TYPE value ), value, ( format ),                   \
                 NAME( store, address, value ) )                                                             \
    FORMAT_FORM( void, NAME##FormatCstr, qvStringCreateFromFormatCstrArgList,                                \
                 ( QV_STORE * *store, const char *format, QV_INT formatLength, TYPE value ), value,          \
                 ( format, formatLength ), NAME( store, address, value ) )                                   \
    FORMAT_FORM( void, NAME##FormatWcstr, qvStringCreateFromFormatWcstrArgList,                              \
                 ( QV_STORE * *store, const wchar_t *format, QV_INT formatLength, TYPE value ), value,       \
                 ( format, formatLength ), NAME( store, address, value ) )

FORMAT_FORMS( QV_BOOL, qvStoreHasAddress, ( QV_STORE * store ), store )
FORMAT_FORMS( QV_STRING *, qvStoreValue, ( QV_STORE * store ), store )
FORMAT_FORMS( QV_BOOL, qvStoreValueNull, ( QV_STORE * store ), store )
FORMAT_FORMS( QV_BOOL, qvStoreValueBool, ( QV_STORE * store, QV_BOOL *out ), store, out )
FORMAT_FORMS( QV_BOOL, qvStoreValueInt, ( QV_STORE * store, QV_INT *out ), store, out )
FORMAT_FORMS( QV_BOOL, qvStoreValueReal, ( QV_STORE * store, double *out ), store, out )
FORMAT_FORMS( QV_BOOL, qvStoreHasValue, ( QV_STORE * store ), store )
FORMAT_FORMS( QV_STORE *, qvStoreStore, ( QV_STORE * store ), store )
FORMAT_FORMS( QV_BOOL, qvStoreHasStore, ( QV_STORE * store ), store )
FORMAT_SETTERS( qvStoreSetValue, QV_STRING * )
FORMAT_FORMS( void, qvStoreSetValueNull, ( QV_STORE * *store ), store )
FORMAT_SETTERS( qvStoreSetValueBool, QV_BOOL )
FORMAT_SETTERS( qvStoreSetValueInt, QV_INT )
FORMAT_SETTERS( qvStoreSetValueReal, double )
FORMAT_SETTERS( qvStoreSetStore, QV_STORE * )
FORMAT_FORMS( void, qvStoreDel, ( QV_STORE * *store ), store )
