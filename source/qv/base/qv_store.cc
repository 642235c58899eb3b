#include <qv/base/qv_store.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_nested.hh>
#include <qv/base/qv_string.hh>
#include <qv/io/qv_location.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_STORE, qvStore, { .freeFunc = qv___StoreFreeFunc, .compareFunc = qv___StoreCompFunc } )

constinit QV_FLAGSET *qv___StoreHintsFlagset = nullptr;
constinit QV_STORE *qv___StoreEmpty = nullptr;
constinit QV_STORE *qv___StoreEmptyArray = nullptr;

namespace
{

constexpr QV_STORE_HINTS managedArray = QV_STORE_HINT_ARRAY | QV_STORE_HINT_ARRAY_MANAGED;

constexpr qv::EnumName hintNames[] = {
    { QV_STORE_HINT_ARRAY, "QV_STORE_HINT_ARRAY" },
    { QV_STORE_HINT_ARRAY_MANAGED, "QV_STORE_HINT_ARRAY_MANAGED" },
};

// Characters that an address may hold, one bit a code point: "-", ".", digits; letters and "_".
constexpr uint64_t addressCharsLow = 0x03FF600000000000u;
constexpr uint64_t addressCharsHigh = 0x07FFFFFE87FFFFFEu;

bool isAddressChar( QV_CHAR ch )
{
    if ( ch >= 128 )
        return false;
    return ( ( ch < 64 ? addressCharsLow : addressCharsHigh ) >> ( ch & 63 ) ) & 1;
}

// Digits of the last position of an array, to which all its addresses are padded.
QV_INT managedAddressWidth( QV_INT length )
{
    QV_INT width = 1;
    for ( QV_INT last = ( length - 1 ) / 10; last > 0; last /= 10 )
    {
        width++;
    }
    return width;
}

QV_STRING *managedAddress( QV_INT idx, QV_INT length )
{
    QV_INT width = managedAddressWidth( length );
    QV_STRING *address = qv::stringCreateUnfilled( width );
    QV_CHAR *digits = qv::stringBacking( address );
    for ( QV_INT place = width - 1; place >= 0; place-- )
    {
        digits[place] = '0' + static_cast<QV_CHAR>( idx % 10 );
        idx /= 10;
    }
    return address;
}

} // namespace

void qv___StoreFreeFunc( qvObj thisObj )
{
    QV_STORE *store = qvStoreFrom( thisObj );
    QV_CHECK( store );
    qv::releaseOptional( store->dict );
    qv::releaseOptional( store->arrayManaged );
    qv::releaseOptional( store->location );
}

QV_INT qv___StoreCompFunc( qvObj thisObj, qvObj thatObj )
{
    QV_STORE *storeA = qvStoreFrom( thisObj );
    QV_STORE *storeB = qvStoreFrom( thatObj );
    QV_CHECK( storeA );
    QV_CHECK( storeB );
    return qv::compareNested( storeA, storeB );
}

QV_STORE_HINTS qvStoreHintsNormalize( QV_STORE_HINTS hints )
{
    return hints & QV_STORE_HINT_ARRAY ? hints & managedArray : 0;
}

QV_STORE_HINTS qvStoreHintsFromString( QV_STRING *qvs )
{
    return qvStoreHintsNormalize( qvFlagsetParse( qv___StoreHintsFlagset, qvs ) );
}

QV_STRING *qvStoreHintsToString( QV_STORE_HINTS hints )
{
    return qvFlagsetGenerate( qv___StoreHintsFlagset, qvStoreHintsNormalize( hints ) );
}

QV_INT qv___StoreAddressSkip( const QV_CHAR *chs, QV_INT length )
{
    QV_CHECK( length >= 0 );
    QV_CHECK( chs || length == 0 );
    QV_INT count = 0;
    while ( count < length && isAddressChar( chs[count] ) )
    {
        count++;
    }
    return count;
}

QV_BOOL qvStoreAddressOk( QV_STRING *address )
{
    QV_CHECK( address );
    QV_INT length = qv::stringLength( address );
    return length > 0 && qv___StoreAddressSkip( qv::stringBacking( address ), length ) == length;
}

QV_STORE *qvStoreCreate( void )
{
    return qv::retained( qv___StoreEmpty );
}

QV_STORE *qvStoreCreateArray( void )
{
    return qv::retained( qv___StoreEmptyArray );
}

QV_STORE *qvStoreCreateWithHints( QV_STORE_HINTS hints )
{
    hints = qvStoreHintsNormalize( hints );
    if ( hints & QV_STORE_HINT_ARRAY_MANAGED )
        return qv::storeFromParts( hints, nullptr, qvVectorCreate(), nullptr );
    return qv::storeFromParts( hints, qvDictCreate(), nullptr, nullptr );
}

QV_STORE *qv::storeFromParts( QV_STORE_HINTS hints, QV_DICT *dict, QV_VECTOR *arrayManaged,
                              QV_LOCATION *location )
{
    auto *store = create<QV_STORE>( &qv___sort_QV_STORE );
    store->hints = hints;
    store->dict = dict;
    store->arrayManaged = arrayManaged;
    store->location = location;
    return store;
}

QV_STORE *qvStoreCreateFrom( QV_STORE *source )
{
    QV_CHECK( source );
    return qv::storeFromParts( source->hints, qv::retainedOptional( source->dict ),
                               qv::retainedOptional( source->arrayManaged ),
                               qv::retainedOptional( source->location ) );
}

QV_STORE_HINTS qvStoreHints( QV_STORE *store )
{
    QV_CHECK( store );
    return store->hints;
}

void qvStoreSetHints( QV_STORE **store, QV_STORE_HINTS hints )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    hints = qvStoreHintsNormalize( hints );
    qv::makePrivate( store, qvStoreCreateFrom );
    bool managed = ( hints & QV_STORE_HINT_ARRAY_MANAGED ) != 0;
    if ( managed && !qv::storeIsManaged( *store ) )
        qv___StoreArrayManage( *store );
    else if ( !managed && qv::storeIsManaged( *store ) )
        qv___StoreArrayUnmanage( *store );
    ( *store )->hints = hints;
}

void qvStoreClear( QV_STORE **store )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    qv::makePrivate( store, qvStoreCreateFrom );
    if ( qv::storeIsManaged( *store ) )
        qvVectorClear( &( *store )->arrayManaged );
    else
        qvDictClear( &( *store )->dict );
}

QV_INT qvStoreLength( QV_STORE *store )
{
    QV_CHECK( store );
    return qv::storeLength( store );
}

QV_STRING *qvStoreAddressAt( QV_STORE *store, QV_INT idx )
{
    QV_CHECK( store );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qv::storeLength( store ) );
    if ( qv::storeIsManaged( store ) )
        return managedAddress( idx, qv::storeLength( store ) );
    return qvStringFrom( qvDictKeyAt( store->dict, idx ) );
}

QV_LOCATION *qvStoreLocation( QV_STORE *store )
{
    QV_CHECK( store );
    return qv::retainedOptional( store->location );
}

QV_BOOL qvStoreHasLocation( QV_STORE *store )
{
    QV_CHECK( store );
    return QV_BOOL_FROM( store->location );
}

void qvStoreSetLocation( QV_STORE **store, QV_LOCATION *location )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    QV_CHECK( location );
    qv::makePrivate( store, qvStoreCreateFrom );
    qv::assign( &( *store )->location, location );
}

void qvStoreDelLocation( QV_STORE **store )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    qv::makePrivate( store, qvStoreCreateFrom );
    qv::replaceWith<QV_LOCATION>( &( *store )->location, nullptr );
}

void qv___StoreArrayManage( QV_STORE *store )
{
    QV_CHECK( store->dict );
    store->arrayManaged = qvDictValuesVector( store->dict );
    qv::replaceWith<QV_DICT>( &store->dict, nullptr );
    store->hints |= managedArray;
}

void qv___StoreArrayUnmanage( QV_STORE *store )
{
    QV_CHECK( store->arrayManaged );
    QV_INT length = qv::vectorLength( store->arrayManaged );
    // Padded addresses ascend with the positions, so the pairs are in the order of the dictionary.
    qv::Local<QV_DICT> dict( length > 0 ? qv::dictCreateFresh() : qvDictCreate() );
    if ( length > 0 )
        qv___DictMakeRoom( dict, 0, length );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        dict->items[idx].key = qv::objOf( managedAddress( idx, length ) );
        dict->items[idx].val = qv::retained( qv::vectorAt( store->arrayManaged, idx ) );
    }
    store->dict = dict.give();
    qv::replaceWith<QV_VECTOR>( &store->arrayManaged, nullptr );
    store->hints &= ~static_cast<QV_STORE_HINTS>( QV_STORE_HINT_ARRAY_MANAGED );
}

QV_INT qv___StoreArrayManagedAddressToIndex( QV_STORE *store, QV_STRING *address )
{
    QV_INT length = qv::vectorLength( store->arrayManaged );
    QV_INT width = managedAddressWidth( length );
    if ( qv::stringLength( address ) != width )
        return -1;
    // At most 19 digits, as the length is a QV_INT.
    uint64_t idx = 0;
    for ( QV_INT place = 0; place < width; place++ )
    {
        QV_CHAR digit = qv::stringCharAt( address, place ) - '0';
        if ( digit > 9 )
            return -1;
        idx = idx * 10 + digit;
    }
    return idx < static_cast<uint64_t>( length ) ? static_cast<QV_INT>( idx ) : -1;
}

qvObj qv::storeEntry( QV_STORE *store, QV_STRING *address )
{
    QV_CHECK( store );
    QV_CHECK( qvStoreAddressOk( address ) );
    if ( !storeIsManaged( store ) )
        return dictValueOf( store->dict, objOf( address ) );
    QV_INT idx = qv___StoreArrayManagedAddressToIndex( store, address );
    return idx < 0 ? nullptr : vectorAt( store->arrayManaged, idx );
}

qvObj qv::storeEntryAt( QV_STORE *store, QV_INT idx )
{
    QV_CHECK( store );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < storeLength( store ) );
    return storeEntryBacking( store, idx );
}

// The editing functions take their own reference to the entry first: it may be the edited store itself, which must then
// be copied rather than come to hold itself.

void qv::storeSetEntry( QV_STORE **store, QV_STRING *address, qvObj entry )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    QV_CHECK( qvStoreAddressOk( address ) );
    Local<qv___Obj> held = Local<qv___Obj>::share( entry );
    makePrivate( store, qvStoreCreateFrom );
    if ( storeIsManaged( *store ) )
        qv___StoreArrayUnmanage( *store );
    qvDictSetStringKey( &( *store )->dict, address, entry );
}

void qv::storeSetEntryAt( QV_STORE **store, QV_INT idx, qvObj entry )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    Local<qv___Obj> held = Local<qv___Obj>::share( entry );
    makePrivate( store, qvStoreCreateFrom );
    if ( storeIsManaged( *store ) )
        qvVectorSetObjAt( &( *store )->arrayManaged, idx, entry );
    else
        qvDictSetValueAt( &( *store )->dict, idx, entry );
}

void qv::storeInsertEntry( QV_STORE **store, QV_INT idx, qvObj entry )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= storeLength( *store ) );
    Local<qv___Obj> held = Local<qv___Obj>::share( entry );
    makePrivate( store, qvStoreCreateFrom );
    if ( !storeIsManaged( *store ) )
        qv___StoreArrayManage( *store );
    qvVectorInsertObj( &( *store )->arrayManaged, idx, entry );
}

void qvStoreDel( QV_STORE **store, QV_STRING *address )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    QV_CHECK( qvStoreAddressOk( address ) );
    qv::makePrivate( store, qvStoreCreateFrom );
    if ( qv::storeIsManaged( *store ) )
        qv___StoreArrayUnmanage( *store );
    qvDictDelStringKey( &( *store )->dict, address );
}

void qvStoreDelAt( QV_STORE **store, QV_INT idx )
{
    QV_CHECK( store );
    QV_CHECK( *store );
    qv::makePrivate( store, qvStoreCreateFrom );
    if ( qv::storeIsManaged( *store ) )
        qvVectorDelAt( &( *store )->arrayManaged, idx );
    else
        qvDictDelAt( &( *store )->dict, idx );
}

void qv___StoreHintsStartup()
{
    qv___StoreHintsFlagset = qv::flagsetFromTable( hintNames, QV_SIZEOF_ARRAY( hintNames ) );
}

void qv___StoreHintsShutdown()
{
    qv::retire( &qv___StoreHintsFlagset );
}

void qv___StoreStartup()
{
    qv___StoreEmpty = qvStoreCreateWithHints( 0 );
    qv___StoreEmptyArray = qvStoreCreateWithHints( managedArray );
}

void qv___StoreShutdown()
{
    qv::retire( &qv___StoreEmptyArray );
    qv::retire( &qv___StoreEmpty );
}
