#include <qv/base/qv_store.hh>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

// Reading and editing by address, with a string as the address. The other five forms of the address stand in
// qv_store_address_forms.cc.

namespace
{

QV_STORE *storeAt( QV_STORE *store, QV_STRING *address )
{
    return qv::entryAsStore( qv::storeEntry( store, address ) );
}

QV___STORE_VALUE *valueAt( QV_STORE *store, QV_STRING *address )
{
    return qv::entryAsValue( qv::storeEntry( store, address ) );
}

// Sets a value that is handed over.
void setGivenValue( QV_STORE **store, QV_STRING *address, QV___STORE_VALUE *given )
{
    qv::Local<QV___STORE_VALUE> value( given );
    qv___StoreSetValue( store, address, value );
}

} // namespace

QV___STORE_VALUE *qv___StoreValue( QV_STORE *store, QV_STRING *address )
{
    return qv::retainedOptional( valueAt( store, address ) );
}

QV_BOOL qv___StoreHasValue( QV_STORE *store, QV_STRING *address )
{
    return QV_BOOL_FROM( valueAt( store, address ) );
}

void qv___StoreSetValue( QV_STORE **store, QV_STRING *address, QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    qv::storeSetEntry( store, address, qv::objOf( value ) );
}

QV_BOOL qvStoreHasAddress( QV_STORE *store, QV_STRING *address )
{
    return QV_BOOL_FROM( qv::storeEntry( store, address ) );
}

QV_STRING *qvStoreValue( QV_STORE *store, QV_STRING *address )
{
    QV___STORE_VALUE *value = valueAt( store, address );
    return value ? qv::retained( value->value ) : nullptr;
}

QV_BOOL qvStoreValueNull( QV_STORE *store, QV_STRING *address )
{
    QV___STORE_VALUE *value = valueAt( store, address );
    return value ? qv___StoreValueValueNull( value ) : QV_FALSE;
}

QV_BOOL qvStoreValueBool( QV_STORE *store, QV_BOOL *out, QV_STRING *address )
{
    QV_CHECK( out );
    if ( QV___STORE_VALUE *value = valueAt( store, address ) )
        return qv___StoreValueValueBool( value, out );
    *out = QV_FALSE;
    return QV_FALSE;
}

QV_BOOL qvStoreValueInt( QV_STORE *store, QV_INT *out, QV_STRING *address )
{
    QV_CHECK( out );
    if ( QV___STORE_VALUE *value = valueAt( store, address ) )
        return qv___StoreValueValueInt( value, out );
    *out = -1;
    return QV_FALSE;
}

QV_BOOL qvStoreValueReal( QV_STORE *store, double *out, QV_STRING *address )
{
    QV_CHECK( out );
    if ( QV___STORE_VALUE *value = valueAt( store, address ) )
        return qv___StoreValueValueReal( value, out );
    *out = 0.0;
    return QV_FALSE;
}

QV_BOOL qvStoreHasValue( QV_STORE *store, QV_STRING *address )
{
    return qv___StoreHasValue( store, address );
}

QV_STORE *qvStoreStore( QV_STORE *store, QV_STRING *address )
{
    return qv::retainedOptional( storeAt( store, address ) );
}

QV_BOOL qvStoreHasStore( QV_STORE *store, QV_STRING *address )
{
    return QV_BOOL_FROM( storeAt( store, address ) );
}

void qvStoreSetValue( QV_STORE **store, QV_STRING *address, QV_STRING *value )
{
    setGivenValue( store, address, qv___StoreValueCreate( value ) );
}

void qvStoreSetValueNull( QV_STORE **store, QV_STRING *address )
{
    qv___StoreSetValue( store, address, qv___StoreValueNull );
}

void qvStoreSetValueBool( QV_STORE **store, QV_STRING *address, QV_BOOL value )
{
    setGivenValue( store, address, qv___StoreValueCreateBool( value ) );
}

void qvStoreSetValueInt( QV_STORE **store, QV_STRING *address, QV_INT value )
{
    setGivenValue( store, address, qv___StoreValueCreateInt( value ) );
}

void qvStoreSetValueReal( QV_STORE **store, QV_STRING *address, double value )
{
    setGivenValue( store, address, qv___StoreValueCreateReal( value ) );
}

void qvStoreSetStore( QV_STORE **store, QV_STRING *address, QV_STORE *subStore )
{
    QV_CHECK( subStore );
    qv::storeSetEntry( store, address, qv::objOf( subStore ) );
}
