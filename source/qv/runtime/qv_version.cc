#include <qv/runtime/qv_version.hh>

#include <stdlib.h>
#include <string.h>

#include <qv/base/qv_string.h>
#include <qv/base/qv_time.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime.h>

#include <qv_build.hh>

#define QV___MODULE_NAME    "qv"
#define QV___MODULE_VERSION "0.0"

constinit const QV_MODULE_RECORD qv___module_record = {
    2,
    QV___BUILD_PRODUCT_NAME,
    QV___BUILD_PRODUCT_FRIENDLY_NAME,
    QV___BUILD_VERSION_MAJOR,
    QV___BUILD_VERSION_MINOR,
    QV___BUILD_VERSION_RELEASE,
    QV___BUILD_TIME,
    QV___BUILD_PRODUCT_VENDOR,
    QV___BUILD_PRODUCT_COPYRIGHT,
    QV___MODULE_NAME,
    "Base library",
    QV___MODULE_VERSION,
    "",
    "",
};

namespace
{

// For people and tools that look into the binary; nothing in the library reads it.
[[gnu::used]] const char qv___module_version_string[] =
    "###JN_VERSION### " QV___BUILD_PRODUCT_NAME "-" QV___BUILD_VERSION " (" QV___BUILD_OS_NAME
    ", " QV___BUILD_HARDWARE_NAME ", " QV___BUILD_VARIANT_NAME "), " QV___MODULE_NAME " " QV___MODULE_VERSION;

constinit char *qv___RuntimeVersionApplicationIdentifier = nullptr;
constinit char *qv___RuntimeVersionApplicationFriendlyName = nullptr;
constinit char *qv___RuntimeVersionApplicationVersion = nullptr;

// By the platform's allocator, since the memory layer isn't up yet.
char *copyOf( const char *text )
{
    if ( !text )
        return nullptr;
    char *copy = strdup( text );
    QV_CHECK( copy );
    return copy;
}

void drop( char **copy )
{
    free( *copy );
    *copy = nullptr;
}

QV_STRING *stringOf( const char *text )
{
    return text ? qvStringCreateFromCstr( text, -1 ) : nullptr;
}

} // namespace

void qv___RuntimeVersionStartup( const char *applicationIdentifier, const char *applicationFriendlyName,
                                 const char *applicationVersion )
{
    qv___RuntimeVersionApplicationIdentifier = copyOf( applicationIdentifier );
    qv___RuntimeVersionApplicationFriendlyName = copyOf( applicationFriendlyName );
    qv___RuntimeVersionApplicationVersion = copyOf( applicationVersion );
}

void qv___RuntimeVersionShutdown()
{
    drop( &qv___RuntimeVersionApplicationIdentifier );
    drop( &qv___RuntimeVersionApplicationFriendlyName );
    drop( &qv___RuntimeVersionApplicationVersion );
}

const char *qv___RuntimeVersionProductNameCstr()
{
    return qv___module_record.productName;
}

const char *qv___RuntimeVersionProductFriendlyNameCstr()
{
    return qv___module_record.productFriendlyName;
}

const char *qv___RuntimeVersionProductBuildTimeCstr()
{
    return qv___module_record.productBuildTime;
}

const char *qv___RuntimeVersionProductVendorNameCstr()
{
    return qv___module_record.productVendorName;
}

const char *qv___RuntimeVersionProductCopyrightCstr()
{
    return qv___module_record.productCopyright;
}

const char *qv___RuntimeVersionApplicationIdentifierCstr()
{
    return qv___RuntimeVersionApplicationIdentifier;
}

const char *qv___RuntimeVersionApplicationFriendlyNameCstr()
{
    return qv___RuntimeVersionApplicationFriendlyName;
}

const char *qv___RuntimeVersionApplicationVersionCstr()
{
    return qv___RuntimeVersionApplicationVersion;
}

QV_INT qvRuntimeVersionProductVersionMajor( void )
{
    return qv___module_record.productVersionMajor;
}

QV_INT qvRuntimeVersionProductVersionMinor( void )
{
    return qv___module_record.productVersionMinor;
}

QV_INT qvRuntimeVersionProductVersionRelease( void )
{
    return qv___module_record.productVersionRelease;
}

QV_STRING *qvRuntimeVersionProductVersion( void )
{
    return qvStringCreateFromFormatCstr( "%i.%i.%i", -1, qvRuntimeVersionProductVersionMajor(),
                                         qvRuntimeVersionProductVersionMinor(),
                                         qvRuntimeVersionProductVersionRelease() );
}

QV_STRING *qvRuntimeVersionProductName( void )
{
    return stringOf( qv___RuntimeVersionProductNameCstr() );
}

QV_STRING *qvRuntimeVersionProductFriendlyName( void )
{
    return stringOf( qv___RuntimeVersionProductFriendlyNameCstr() );
}

QV_STRING *qvRuntimeVersionProductVendorName( void )
{
    return stringOf( qv___RuntimeVersionProductVendorNameCstr() );
}

QV_STRING *qvRuntimeVersionProductCopyright( void )
{
    return stringOf( qv___RuntimeVersionProductCopyrightCstr() );
}

QV_TIME *qvRuntimeVersionProductBuildTime( void )
{
    qv::Local<QV_STRING> text( stringOf( qv___RuntimeVersionProductBuildTimeCstr() ) );
    QV_TIME *time = qvTimeTryCreateFromString( text );
    QV_CHECK( time );
    return time;
}

QV_STRING *qvRuntimeVersionApplicationIdentifier( void )
{
    return stringOf( qv___RuntimeVersionApplicationIdentifier );
}

QV_STRING *qvRuntimeVersionApplicationFriendlyName( void )
{
    return stringOf( qv___RuntimeVersionApplicationFriendlyName );
}

QV_STRING *qvRuntimeVersionApplicationVersion( void )
{
    return stringOf( qv___RuntimeVersionApplicationVersion );
}

QV_BOOL qvRuntimeVersionApplicationHasIdentifier( void )
{
    return qv___RuntimeVersionApplicationIdentifier != nullptr;
}

QV_BOOL qvRuntimeVersionApplicationHasFriendlyName( void )
{
    return qv___RuntimeVersionApplicationFriendlyName != nullptr;
}

QV_BOOL qvRuntimeVersionApplicationHasVersion( void )
{
    return qv___RuntimeVersionApplicationVersion != nullptr;
}
