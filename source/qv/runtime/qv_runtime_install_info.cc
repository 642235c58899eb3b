#include <qv/runtime/qv_runtime_install_info.hh>

#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_path_file.h>
#include <qv/io/qv_store_header.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_paths.hh>

namespace
{

constexpr char fileName[] = "install-info";

void qv___RuntimeInstallInfoFreeFunc( qvObj thisObj )
{
    QV_RUNTIME_INSTALL_INFO *thisInfo = qvRuntimeInstallInfoFrom( thisObj );
    QV_CHECK( thisInfo );
    qvStringRelease( thisInfo->productName );
    qvStringRelease( thisInfo->productFriendlyName );
    qvStringRelease( thisInfo->productVersion );
    qvStringRelease( thisInfo->productVendorName );
    qvStringRelease( thisInfo->productCopyright );
}

// The value of an identifier in a store, or -1.
QV_INT identifiedValue( QV_STORE *store, const char *address,
                        QV_INT ( *fromIdentifier )( QV_STRING *string ) )
{
    qv::Local<QV_STRING> identifier( qvStoreValueCstr( store, address, -1 ) );
    return identifier ? fromIdentifier( identifier ) : -1;
}

// A text in a store that passes its rule, or null.
QV_STRING *validText( QV_STORE *store, const char *address, QV_BOOL ( *validate )( QV_STRING *text ) )
{
    qv::Local<QV_STRING> text( qvStoreValueCstr( store, address, -1 ) );
    return text && validate( text ) ? text.give() : nullptr;
}

void setGivenText( QV_STORE **store, const char *address, QV_STRING *given )
{
    qv::Local<QV_STRING> text( given );
    qvStoreSetValueCstr( store, address, -1, text );
}

} // namespace

QV_SORT_DEFINE( QV_RUNTIME_INSTALL_INFO, qvRuntimeInstallInfo,
                { .freeFunc = qv___RuntimeInstallInfoFreeFunc } )

QV_RUNTIME_INSTALL_INFO *qv___RuntimeInstallInfoCreate( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hardware,
                                                        QV_RUNTIME_VARIANT variant, QV_STRING *productName,
                                                        QV_STRING *productFriendlyName,
                                                        QV_STRING *productVersion,
                                                        QV_STRING *productVendorName,
                                                        QV_STRING *productCopyright )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hardware ) );
    QV_CHECK( QV_RUNTIME_VARIANT_OK( variant ) );
    QV_CHECK( qvRuntimeValidateProductName( productName ) );
    QV_CHECK( qvRuntimeValidateProductFriendlyName( productFriendlyName ) );
    QV_CHECK( qvRuntimeValidateProductVersion( productVersion ) );
    QV_CHECK( qvRuntimeValidateProductVendorName( productVendorName ) );
    QV_CHECK( qvRuntimeValidateProductCopyright( productCopyright ) );
    auto *info = qv::create<QV_RUNTIME_INSTALL_INFO>( qvRuntimeInstallInfoSort() );
    info->os = os;
    info->hardware = hardware;
    info->variant = variant;
    info->productName = qv::retained( productName );
    info->productFriendlyName = qv::retained( productFriendlyName );
    info->productVersion = qv::retained( productVersion );
    info->productVendorName = qv::retained( productVendorName );
    info->productCopyright = qv::retained( productCopyright );
    return info;
}

QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_RUNTIME_OS os = identifiedValue( store, "os", qvRuntimeOsFromIdentifier );
    QV_RUNTIME_HARDWARE hardware = identifiedValue( store, "hardware", qvRuntimeHardwareFromIdentifier );
    QV_RUNTIME_VARIANT variant = identifiedValue( store, "variant", qvRuntimeVariantFromIdentifier );
    qv::Local<QV_STRING> name( validText( store, "productName", qvRuntimeValidateProductName ) );
    qv::Local<QV_STRING> friendlyName(
        validText( store, "productFriendlyName", qvRuntimeValidateProductFriendlyName ) );
    qv::Local<QV_STRING> version( validText( store, "productVersion", qvRuntimeValidateProductVersion ) );
    qv::Local<QV_STRING> vendorName(
        validText( store, "productVendorName", qvRuntimeValidateProductVendorName ) );
    qv::Local<QV_STRING> copyright(
        validText( store, "productCopyright", qvRuntimeValidateProductCopyright ) );
    bool isWhole = os != -1 && hardware != -1 && variant != -1 && name && friendlyName && version &&
                   vendorName && copyright;
    if ( !isWhole )
        return nullptr;
    return qv___RuntimeInstallInfoCreate( os, hardware, variant, name, friendlyName, version, vendorName,
                                          copyright );
}

QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadFromFile( QV_PATH *path )
{
    QV_CHECK( path );
    qv::Local<QV_STORE_HEADER> header;
    qv::Local<QV_STORE> store( qvPathFileReadStore( path, header.edit() ) );
    if ( !store || ( header && !qvStoreHeaderIsTypeSort( header, qvRuntimeInstallInfoSort() ) ) )
        return nullptr;
    return qvRuntimeInstallInfoTryRestore( store );
}

QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadWithRuntimePaths( QV_RUNTIME_PATHS *paths )
{
    QV_CHECK( paths );
    qv::Local<QV_PATH> path( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_INSTALL ) );
    if ( !path )
        path.take( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_PRODUCT ) );
    if ( !path )
        return nullptr;
    qvPathAppendComponentFilenameCstr( path.edit(), fileName, -1 );
    return qvRuntimeInstallInfoTryLoadFromFile( path );
}

QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadForProduct( QV_STRING *productName )
{
    qv::Local<QV_RUNTIME_PATHS> paths( qv___RuntimePathsForProduct( 0, productName ) );
    return qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths );
}

QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoad( void )
{
    qv::Local<QV_RUNTIME_PATHS> paths( qvRuntimePaths() );
    return qvRuntimeInstallInfoTryLoadWithRuntimePaths( paths );
}

QV_STORE *qvRuntimeInstallInfoStore( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    QV_STORE *store = qvStoreCreate();
    setGivenText( &store, "os", qvRuntimeOsToIdentifier( info->os ) );
    setGivenText( &store, "hardware", qvRuntimeHardwareToIdentifier( info->hardware ) );
    setGivenText( &store, "variant", qvRuntimeVariantToIdentifier( info->variant ) );
    qvStoreSetValueCstr( &store, "productName", -1, info->productName );
    qvStoreSetValueCstr( &store, "productFriendlyName", -1, info->productFriendlyName );
    qvStoreSetValueCstr( &store, "productVersion", -1, info->productVersion );
    qvStoreSetValueCstr( &store, "productVendorName", -1, info->productVendorName );
    qvStoreSetValueCstr( &store, "productCopyright", -1, info->productCopyright );
    return store;
}

QV_RUNTIME_OS qvRuntimeInstallInfoOs( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return info->os;
}

QV_RUNTIME_HARDWARE qvRuntimeInstallInfoHardware( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return info->hardware;
}

QV_RUNTIME_VARIANT qvRuntimeInstallInfoVariant( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return info->variant;
}

QV_STRING *qvRuntimeInstallInfoProductName( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return qv::retained( info->productName );
}

QV_STRING *qvRuntimeInstallInfoProductFriendlyName( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return qv::retained( info->productFriendlyName );
}

QV_STRING *qvRuntimeInstallInfoProductVersion( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return qv::retained( info->productVersion );
}

QV_STRING *qvRuntimeInstallInfoProductVendorName( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return qv::retained( info->productVendorName );
}

QV_STRING *qvRuntimeInstallInfoProductCopyright( QV_RUNTIME_INSTALL_INFO *info )
{
    QV_CHECK( info );
    return qv::retained( info->productCopyright );
}
