#include <qv/io/qv_header_info.hh>

#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_time.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>

QV_SORT_DEFINE( QV_HEADER_INFO, qvHeaderInfo, { .freeFunc = qv___HeaderInfoFreeFunc } )

namespace
{

void storeTime( QV_STORE **store, const char *key, QV_TIME *time )
{
    if ( !time )
        return;
    qv::Local<QV_STRING> text( qvTimeToString( time ) );
    qvStoreSetValueCstr( store, key, -1, text );
}

void storeText( QV_STORE **store, const char *key, QV_STRING *text )
{
    if ( text )
        qvStoreSetValueCstr( store, key, -1, text );
}

// Takes the text under a key over into a field; false if it isn't valid. Nothing there is valid.
bool restoreText( QV_STRING **field, QV_STORE *store, const char *key, QV_BOOL ( *isValid )( QV_STRING * ) )
{
    *field = qvStoreValueCstr( store, key, -1 );
    return !*field || isValid( *field );
}

bool restoreTime( QV_TIME **field, QV_STORE *store, const char *key )
{
    qv::Local<QV_STRING> text( qvStoreValueCstr( store, key, -1 ) );
    if ( !text )
        return true;
    *field = qvTimeTryCreateFromString( text );
    return *field;
}

} // namespace

void qv___HeaderInfoFreeFunc( qvObj thisObj )
{
    QV_HEADER_INFO *hi = qvHeaderInfoFrom( thisObj );
    QV_CHECK( hi );
    qv::releaseOptional( hi->productName );
    qv::releaseOptional( hi->productFriendlyName );
    qv::releaseOptional( hi->productVersion );
    qv::releaseOptional( hi->productBuildTime );
    qv::releaseOptional( hi->generateTime );
}

QV_HEADER_INFO *qvHeaderInfoCreate( void )
{
    auto *hi = qv::create<QV_HEADER_INFO>( qvHeaderInfoSort() );
    hi->productName = nullptr;
    hi->productFriendlyName = nullptr;
    hi->productVersion = nullptr;
    hi->productBuildTime = nullptr;
    hi->generateTime = nullptr;
    return hi;
}

QV_HEADER_INFO *qvHeaderInfoCreateFrom( QV_HEADER_INFO *source )
{
    QV_CHECK( source );
    auto *hi = qv::create<QV_HEADER_INFO>( qvHeaderInfoSort() );
    hi->productName = qv::retainedOptional( source->productName );
    hi->productFriendlyName = qv::retainedOptional( source->productFriendlyName );
    hi->productVersion = qv::retainedOptional( source->productVersion );
    hi->productBuildTime = qv::retainedOptional( source->productBuildTime );
    hi->generateTime = qv::retainedOptional( source->generateTime );
    return hi;
}

QV_HEADER_INFO *qvHeaderInfoGenerate( void )
{
    auto *hi = qv::create<QV_HEADER_INFO>( qvHeaderInfoSort() );
    hi->productName = qvRuntimeVersionProductName();
    hi->productFriendlyName = qvRuntimeVersionProductFriendlyName();
    hi->productVersion = qvRuntimeVersionProductVersion();
    hi->productBuildTime = qvRuntimeVersionProductBuildTime();
    hi->generateTime = qvTimeNow();
    return hi;
}

QV_STORE *qvHeaderInfoStore( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    storeText( store.edit(), "productName", hi->productName );
    storeText( store.edit(), "productFriendlyName", hi->productFriendlyName );
    storeText( store.edit(), "productVersion", hi->productVersion );
    storeTime( store.edit(), "productBuildTime", hi->productBuildTime );
    storeTime( store.edit(), "generateTime", hi->generateTime );
    return store.give();
}

QV_HEADER_INFO *qvHeaderInfoTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_HEADER_INFO> hi( qvHeaderInfoCreate() );
    bool valid =
        restoreText( &hi->productName, store, "productName", qvRuntimeValidateProductName ) &&
        restoreText( &hi->productFriendlyName, store, "productFriendlyName",
                     qvRuntimeValidateProductFriendlyName ) &&
        restoreText( &hi->productVersion, store, "productVersion", qvRuntimeValidateProductVersion ) &&
        restoreTime( &hi->productBuildTime, store, "productBuildTime" ) &&
        restoreTime( &hi->generateTime, store, "generateTime" );
    return valid ? hi.give() : nullptr;
}

QV_STRING *qvHeaderInfoProductName( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return qv::retainedOptional( hi->productName );
}

QV_BOOL qvHeaderInfoHasProductName( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return QV_BOOL_FROM( hi->productName );
}

void qvHeaderInfoSetProductName( QV_HEADER_INFO **hi, QV_STRING *productName )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    QV_CHECK( productName );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::assign( &( *hi )->productName, productName );
}

void qvHeaderInfoDelProductName( QV_HEADER_INFO **hi )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::replaceWith<QV_STRING>( &( *hi )->productName, nullptr );
}

QV_STRING *qvHeaderInfoProductFriendlyName( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return qv::retainedOptional( hi->productFriendlyName );
}

QV_BOOL qvHeaderInfoHasProductFriendlyName( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return QV_BOOL_FROM( hi->productFriendlyName );
}

void qvHeaderInfoSetProductFriendlyName( QV_HEADER_INFO **hi, QV_STRING *productFriendlyName )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    QV_CHECK( productFriendlyName );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::assign( &( *hi )->productFriendlyName, productFriendlyName );
}

void qvHeaderInfoDelProductFriendlyName( QV_HEADER_INFO **hi )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::replaceWith<QV_STRING>( &( *hi )->productFriendlyName, nullptr );
}

QV_STRING *qvHeaderInfoProductVersion( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return qv::retainedOptional( hi->productVersion );
}

QV_BOOL qvHeaderInfoHasProductVersion( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return QV_BOOL_FROM( hi->productVersion );
}

void qvHeaderInfoSetProductVersion( QV_HEADER_INFO **hi, QV_STRING *productVersion )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    QV_CHECK( productVersion );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::assign( &( *hi )->productVersion, productVersion );
}

void qvHeaderInfoDelProductVersion( QV_HEADER_INFO **hi )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::replaceWith<QV_STRING>( &( *hi )->productVersion, nullptr );
}

QV_TIME *qvHeaderInfoProductBuildTime( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return qv::retainedOptional( hi->productBuildTime );
}

QV_BOOL qvHeaderInfoHasProductBuildTime( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return QV_BOOL_FROM( hi->productBuildTime );
}

void qvHeaderInfoSetProductBuildTime( QV_HEADER_INFO **hi, QV_TIME *productBuildTime )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    QV_CHECK( productBuildTime );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::assign( &( *hi )->productBuildTime, productBuildTime );
}

void qvHeaderInfoDelProductBuildTime( QV_HEADER_INFO **hi )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::replaceWith<QV_TIME>( &( *hi )->productBuildTime, nullptr );
}

QV_TIME *qvHeaderInfoGenerateTime( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return qv::retainedOptional( hi->generateTime );
}

QV_BOOL qvHeaderInfoHasGenerateTime( QV_HEADER_INFO *hi )
{
    QV_CHECK( hi );
    return QV_BOOL_FROM( hi->generateTime );
}

void qvHeaderInfoSetGenerateTime( QV_HEADER_INFO **hi, QV_TIME *generateTime )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    QV_CHECK( generateTime );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::assign( &( *hi )->generateTime, generateTime );
}

void qvHeaderInfoDelGenerateTime( QV_HEADER_INFO **hi )
{
    QV_CHECK( hi );
    QV_CHECK( *hi );
    qv::makePrivate( hi, qvHeaderInfoCreateFrom );
    qv::replaceWith<QV_TIME>( &( *hi )->generateTime, nullptr );
}
