#include <qv/base/qv_store.hh>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

// Reading and editing by position.

namespace
{

QV_STORE *storeAt( QV_STORE *store, QV_INT idx )
{
    return qv::entryAsStore( qv::storeEntryAt( store, idx ) );
}

QV___STORE_VALUE *valueAt( QV_STORE *store, QV_INT idx )
{
    return qv::entryAsValue( qv::storeEntryAt( store, idx ) );
}

// Values that are handed over.

void setGivenValueAt( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *given )
{
    qv::Local<QV___STORE_VALUE> value( given );
    qv___StoreSetValueAt( store, idx, value );
}

void insertGivenValue( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *given )
{
    qv::Local<QV___STORE_VALUE> value( given );
    qv___StoreInsertValue( store, idx, value );
}

// Where an append inserts.
QV_INT endOf( QV_STORE **store )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    return qv::storeLength( *store );
}

} // namespace

QV___STORE_VALUE *qv___StoreValueAt( QV_STORE *store, QV_INT idx )
{
    return qv::retainedOptional( valueAt( store, idx ) );
}

QV_BOOL qv___StoreHasValueAt( QV_STORE *store, QV_INT idx )
{
    return QV_BOOL_FROM( valueAt( store, idx ) );
}

void qv___StoreSetValueAt( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    qv::storeSetEntryAt( store, idx, qv::objOf( value ) );
}

void qv___StoreInsertValue( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *value )
{
    QV_CHECK( value );
    qv::storeInsertEntry( store, idx, qv::objOf( value ) );
}

void qv___StorePrependValue( QV_STORE **store, QV___STORE_VALUE *value )
{
    qv___StoreInsertValue( store, 0, value );
}

void qv___StoreAppendValue( QV_STORE **store, QV___STORE_VALUE *value )
{
    qv___StoreInsertValue( store, endOf( store ), value );
}

QV_STRING *qvStoreValueAt( QV_STORE *store, QV_INT idx )
{
    QV___STORE_VALUE *value = valueAt( store, idx );
    return value ? qv::retained( value->value ) : nullptr;
}

QV_BOOL qvStoreValueNullAt( QV_STORE *store, QV_INT idx )
{
    QV___STORE_VALUE *value = valueAt( store, idx );
    return value ? qv___StoreValueValueNull( value ) : QV_FALSE;
}

QV_BOOL qvStoreValueBoolAt( QV_STORE *store, QV_BOOL *out, QV_INT idx )
{
    QV_CHECK( out );
    QV___STORE_VALUE *value = valueAt( store, idx );
    return value ? qv___StoreValueValueBool( value, out ) : QV_FALSE;
}

QV_BOOL qvStoreValueIntAt( QV_STORE *store, QV_INT *out, QV_INT idx )
{
    QV_CHECK( out );
    QV___STORE_VALUE *value = valueAt( store, idx );
    return value ? qv___StoreValueValueInt( value, out ) : QV_FALSE;
}

QV_BOOL qvStoreValueRealAt( QV_STORE *store, double *out, QV_INT idx )
{
    QV_CHECK( out );
    QV___STORE_VALUE *value = valueAt( store, idx );
    return value ? qv___StoreValueValueReal( value, out ) : QV_FALSE;
}

QV_STORE *qvStoreStoreAt( QV_STORE *store, QV_INT idx )
{
    return qv::retainedOptional( storeAt( store, idx ) );
}

QV_BOOL qvStoreHasValueAt( QV_STORE *store, QV_INT idx )
{
    return qv___StoreHasValueAt( store, idx );
}

QV_BOOL qvStoreHasStoreAt( QV_STORE *store, QV_INT idx )
{
    return QV_BOOL_FROM( storeAt( store, idx ) );
}

void qvStoreSetValueAt( QV_STORE **store, QV_INT idx, QV_STRING *value )
{
    setGivenValueAt( store, idx, qv___StoreValueCreate( value ) );
}

void qvStoreSetValueNullAt( QV_STORE **store, QV_INT idx )
{
    setGivenValueAt( store, idx, qv___StoreValueCreateNull() );
}

void qvStoreSetValueBoolAt( QV_STORE **store, QV_INT idx, QV_BOOL value )
{
    setGivenValueAt( store, idx, qv___StoreValueCreateBool( value ) );
}

void qvStoreSetValueIntAt( QV_STORE **store, QV_INT idx, QV_INT value )
{
    setGivenValueAt( store, idx, qv___StoreValueCreateInt( value ) );
}

void qvStoreSetValueRealAt( QV_STORE **store, QV_INT idx, double value )
{
    setGivenValueAt( store, idx, qv___StoreValueCreateReal( value ) );
}

void qvStoreSetStoreAt( QV_STORE **store, QV_INT idx, QV_STORE *subStore )
{
    QV_CHECK( subStore );
    qv::storeSetEntryAt( store, idx, qv::objOf( subStore ) );
}

void qvStorePrependValue( QV_STORE **store, QV_STRING *value )
{
    insertGivenValue( store, 0, qv___StoreValueCreate( value ) );
}

void qvStorePrependValueNull( QV_STORE **store )
{
    insertGivenValue( store, 0, qv___StoreValueCreateNull() );
}

void qvStorePrependValueBool( QV_STORE **store, QV_BOOL value )
{
    insertGivenValue( store, 0, qv___StoreValueCreateBool( value ) );
}

void qvStorePrependValueInt( QV_STORE **store, QV_INT value )
{
    insertGivenValue( store, 0, qv___StoreValueCreateInt( value ) );
}

void qvStorePrependValueReal( QV_STORE **store, double value )
{
    insertGivenValue( store, 0, qv___StoreValueCreateReal( value ) );
}

void qvStorePrependStore( QV_STORE **store, QV_STORE *subStore )
{
    qvStoreInsertStore( store, 0, subStore );
}

void qvStoreAppendValue( QV_STORE **store, QV_STRING *value )
{
    insertGivenValue( store, endOf( store ), qv___StoreValueCreate( value ) );
}

void qvStoreAppendValueNull( QV_STORE **store )
{
    insertGivenValue( store, endOf( store ), qv___StoreValueCreateNull() );
}

void qvStoreAppendValueBool( QV_STORE **store, QV_BOOL value )
{
    insertGivenValue( store, endOf( store ), qv___StoreValueCreateBool( value ) );
}

void qvStoreAppendValueInt( QV_STORE **store, QV_INT value )
{
    insertGivenValue( store, endOf( store ), qv___StoreValueCreateInt( value ) );
}

void qvStoreAppendValueReal( QV_STORE **store, double value )
{
    insertGivenValue( store, endOf( store ), qv___StoreValueCreateReal( value ) );
}

void qvStoreAppendStore( QV_STORE **store, QV_STORE *subStore )
{
    qvStoreInsertStore( store, endOf( store ), subStore );
}

void qvStoreInsertValue( QV_STORE **store, QV_INT idx, QV_STRING *value )
{
    insertGivenValue( store, idx, qv___StoreValueCreate( value ) );
}

void qvStoreInsertValueNull( QV_STORE **store, QV_INT idx )
{
    insertGivenValue( store, idx, qv___StoreValueCreateNull() );
}

void qvStoreInsertValueBool( QV_STORE **store, QV_INT idx, QV_BOOL value )
{
    insertGivenValue( store, idx, qv___StoreValueCreateBool( value ) );
}

void qvStoreInsertValueInt( QV_STORE **store, QV_INT idx, QV_INT value )
{
    insertGivenValue( store, idx, qv___StoreValueCreateInt( value ) );
}

void qvStoreInsertValueReal( QV_STORE **store, QV_INT idx, double value )
{
    insertGivenValue( store, idx, qv___StoreValueCreateReal( value ) );
}

void qvStoreInsertStore( QV_STORE **store, QV_INT idx, QV_STORE *subStore )
{
    QV_CHECK( subStore );
    qv::storeInsertEntry( store, idx, qv::objOf( subStore ) );
}
