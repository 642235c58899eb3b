#ifndef QV_BASE_QV_STORE_HH
#define QV_BASE_QV_STORE_HH

// The store tree as the library's own code sees it: the records of stores and values, and the operations on
// values with their hints and locations, which the encodings use.

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_obj.hh>

// Hints of a value: what its text was made from. A value that was set from a string has none.
typedef QV_INT QV___STORE_VALUE_HINTS;
#define QV___STORE_VALUE_HINT_NULL 1
#define QV___STORE_VALUE_HINT_BOOL 2
#define QV___STORE_VALUE_HINT_INT  4
#define QV___STORE_VALUE_HINT_REAL 8

// The record has a tag of its own, as qv___StoreValue is a function.
typedef struct qv___StoreValueRecord QV___STORE_VALUE;

// Invariant: hints is normalized; dict is present exactly while QV_STORE_HINT_ARRAY_MANAGED is clear,
// arrayManaged exactly while it is set. Both hold values and stores only.
struct qv___Store : qv___Obj
{
    QV_STORE_HINTS hints;
    QV_DICT *dict;           // entries by address
    QV_VECTOR *arrayManaged; // entries by position
    QV_LOCATION *location;   // may be null
};

// Invariant: hints is normalized; value is never null.
struct qv___StoreValueRecord : qv___Obj
{
    QV___STORE_VALUE_HINTS hints;
    QV_STRING *value;
    QV_LOCATION *location; // may be null
};

extern QV_FLAGSET *qv___StoreHintsFlagset;
extern QV_FLAGSET *qv___StoreValueHintsFlagset;

// Shared by all that need one; the component holds them for the whole run.
extern QV___STORE_VALUE *qv___StoreValueNull;
extern QV___STORE_VALUE *qv___StoreValueBoolTrue;
extern QV___STORE_VALUE *qv___StoreValueBoolFalse;
extern QV___STORE_VALUE *qv___StoreValueIntZero;
extern QV___STORE_VALUE *qv___StoreValueIntMinusOne;
extern QV_STORE *qv___StoreEmpty;
extern QV_STORE *qv___StoreEmptyArray;

QV_SORT_FUNCTIONS_INTERNAL( QV___STORE_VALUE, qv___StoreValue )

QV___STORE_VALUE_HINTS qv___StoreValueHintsNormalize( QV___STORE_VALUE_HINTS hints );
QV___STORE_VALUE_HINTS qv___StoreValueHintsFromString( QV_STRING *qvs );
QV_STRING *qv___StoreValueHintsToString( QV___STORE_VALUE_HINTS hints );

QV___STORE_VALUE *qv___StoreValueCreate( QV_STRING *text );
QV___STORE_VALUE *qv___StoreValueCreateWithHints( QV_STRING *text, QV___STORE_VALUE_HINTS hints );
QV___STORE_VALUE *qv___StoreValueCreateNull();
QV___STORE_VALUE *qv___StoreValueCreateBool( QV_BOOL value );
QV___STORE_VALUE *qv___StoreValueCreateInt( QV_INT value );
QV___STORE_VALUE *qv___StoreValueCreateReal( double value );
QV___STORE_VALUE *qv___StoreValueCreateFrom( QV___STORE_VALUE *source );
QV___STORE_VALUE_HINTS qv___StoreValueHints( QV___STORE_VALUE *value );
QV_STRING *qv___StoreValueValue( QV___STORE_VALUE *value );
QV_BOOL qv___StoreValueValueNull( QV___STORE_VALUE *value );
QV_BOOL qv___StoreValueValueBool( QV___STORE_VALUE *value, QV_BOOL *out );
QV_BOOL qv___StoreValueValueInt( QV___STORE_VALUE *value, QV_INT *out );
QV_BOOL qv___StoreValueValueReal( QV___STORE_VALUE *value, double *out );
QV_LOCATION *qv___StoreValueLocation( QV___STORE_VALUE *value );
QV_BOOL qv___StoreValueHasLocation( QV___STORE_VALUE *value );
void qv___StoreValueSetLocation( QV___STORE_VALUE **value, QV_LOCATION *location );
void qv___StoreValueDelLocation( QV___STORE_VALUE **value );

// Number of leading characters that may stand in an address.
QV_INT qv___StoreAddressSkip( const QV_CHAR *chs, QV_INT length );

// The value itself, null for a substore or, by address, for nothing; the caller owns it.
QV___STORE_VALUE *qv___StoreValue( QV_STORE *store, QV_STRING *address );
QV___STORE_VALUE *qv___StoreValueAt( QV_STORE *store, QV_INT idx );
QV_BOOL qv___StoreHasValue( QV_STORE *store, QV_STRING *address );
QV_BOOL qv___StoreHasValueAt( QV_STORE *store, QV_INT idx );
void qv___StoreSetValue( QV_STORE **store, QV_STRING *address, QV___STORE_VALUE *value );
void qv___StoreSetValueAt( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *value );
void qv___StoreInsertValue( QV_STORE **store, QV_INT idx, QV___STORE_VALUE *value );
void qv___StorePrependValue( QV_STORE **store, QV___STORE_VALUE *value );
void qv___StoreAppendValue( QV_STORE **store, QV___STORE_VALUE *value );

// Conversions of a store that nobody shares.
void qv___StoreArrayManage( QV_STORE *store );
void qv___StoreArrayUnmanage( QV_STORE *store );

// The position that an address has in an array, -1 for none: only the exact, zero-padded form counts.
QV_INT qv___StoreArrayManagedAddressToIndex( QV_STORE *store, QV_STRING *address );

void qv___StoreFreeFunc( qvObj thisObj );
QV_INT qv___StoreCompFunc( qvObj thisObj, qvObj thatObj );
void qv___StoreValueFreeFunc( qvObj thisObj );
QV_INT qv___StoreValueCompFunc( qvObj thisObj, qvObj thatObj );

void qv___StoreHintsStartup();
void qv___StoreHintsShutdown();
void qv___StoreValueHintsStartup();
void qv___StoreValueHintsShutdown();
void qv___StoreValueStartup();
void qv___StoreValueShutdown();
void qv___StoreStartup();
void qv___StoreShutdown();

extern "C" {
extern qv___Sort qv___sort_QV_STORE;
}

namespace qv
{

// Entries are values or stores, so whether one is a store tells both.
inline bool isStore( qvObj entry )
{
    return entry->sort == &qv___sort_QV_STORE;
}

// An entry, which may be null, as the one or the other kind, or null; borrowed.
inline QV_STORE *entryAsStore( qvObj entry )
{
    return entry && isStore( entry ) ? static_cast<QV_STORE *>( entry ) : nullptr;
}

inline QV___STORE_VALUE *entryAsValue( qvObj entry )
{
    return entry && !isStore( entry ) ? static_cast<QV___STORE_VALUE *>( entry ) : nullptr;
}

inline bool storeIsManaged( const QV_STORE *store )
{
    return ( store->hints & QV_STORE_HINT_ARRAY_MANAGED ) != 0;
}

inline QV_INT storeLength( const QV_STORE *store )
{
    return storeIsManaged( store ) ? vectorLength( store->arrayManaged ) : dictLength( store->dict );
}

// The entry at a position that is known to be good, borrowed.
inline qvObj storeEntryBacking( const QV_STORE *store, QV_INT idx )
{
    return storeIsManaged( store ) ? vectorAt( store->arrayManaged, idx ) : dictPairs( store->dict )[idx].val;
}

// The entry at an address or position, borrowed: null for nothing, while a position out of range stops the process.
qvObj storeEntry( QV_STORE *store, QV_STRING *address );
qvObj storeEntryAt( QV_STORE *store, QV_INT idx );

// Entries of either kind, which the store retains.
void storeSetEntry( QV_STORE **store, QV_STRING *address, qvObj entry );
void storeSetEntryAt( QV_STORE **store, QV_INT idx, qvObj entry );
void storeInsertEntry( QV_STORE **store, QV_INT idx, qvObj entry );

// A new store with all its fields, which are handed over.
QV_STORE *storeFromParts( QV_STORE_HINTS hints, QV_DICT *dict, QV_VECTOR *arrayManaged,
                          QV_LOCATION *location );

// A new value with all its fields; text and location are handed over, location may be null.
QV___STORE_VALUE *storeValueFromParts( QV_STRING *text, QV___STORE_VALUE_HINTS hints, QV_LOCATION *location );

} // namespace qv

#endif
