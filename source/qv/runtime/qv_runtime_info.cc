#include <qv/runtime/qv_runtime_info.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_region.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_time.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_runtime_hardware.h>
#include <qv/runtime/qv_runtime_os.h>
#include <qv/runtime/qv_runtime_variant.h>

namespace
{

constinit QV_REGION *qv___RuntimeUserInformationRegion = nullptr; // guards the dictionary
constinit QV_DICT *qv___RuntimeUserInformationDict = nullptr;     // strings to stores

// Stays in the region of the user information for the length of a block.
class UserInformationEntered
{
  public:
    explicit UserInformationEntered( QV_BOOL exclusive )
    {
        qvRegionEnter( qv___RuntimeUserInformationRegion, exclusive );
    }
    UserInformationEntered( const UserInformationEntered & ) = delete;
    UserInformationEntered &operator=( const UserInformationEntered & ) = delete;

    ~UserInformationEntered()
    {
        qvRegionLeave( qv___RuntimeUserInformationRegion );
    }
};

// Sets a value that the caller hands over, unless it is null.
void setGiven( QV_STORE **store, const char *address, QV_STRING *givenOptional )
{
    qv::Local<QV_STRING> value( givenOptional );
    if ( value )
    {
        qvStoreSetValueCstr( store, address, -1, value );
    }
}

void describeProduct( QV_STORE **info )
{
    setGiven( info, "os", qvRuntimeOsFriendlyName( qvRuntimeOs() ) );
    setGiven( info, "hardware", qvRuntimeHardwareFriendlyName( qvRuntimeHardware() ) );
    setGiven( info, "variant", qvRuntimeVariantFriendlyName( qvRuntimeVariant() ) );
    setGiven( info, "product", qvRuntimeVersionProductName() );
    setGiven( info, "friendlyName", qvRuntimeVersionProductFriendlyName() );
    setGiven( info, "version", qvRuntimeVersionProductVersion() );
    qvStoreSetValueIntCstr( info, "versionMajor", -1, qvRuntimeVersionProductVersionMajor() );
    qvStoreSetValueIntCstr( info, "versionMinor", -1, qvRuntimeVersionProductVersionMinor() );
    qvStoreSetValueIntCstr( info, "versionRelease", -1, qvRuntimeVersionProductVersionRelease() );
    setGiven( info, "buildTime",
              qvStringCreateFromFormatCstr( "%~o", -1, qvRuntimeVersionProductBuildTime() ) );
    qv::Local<QV_MODULE_VERSION> version( qvModuleVersion( qvModule() ) );
    qvStoreSetValueIntCstr( info, "compatibility", -1, qvModuleVersionCompatibility( version ) );
}

void describeProcess( QV_STORE **info )
{
    setGiven( info, "applicationIdentifier", qvRuntimeVersionApplicationIdentifier() );
    setGiven( info, "applicationFriendlyName", qvRuntimeVersionApplicationFriendlyName() );
    setGiven( info, "applicationVersion", qvRuntimeVersionApplicationVersion() );
    setGiven( info, "computerName", qvRuntimeComputerName() );
    setGiven( info, "operatingSystemInfo", qvRuntimeOperatingSystemInfo() );
    setGiven( info, "cpuInfo", qvRuntimeCpuInfo() );
    setGiven( info, "startTime", qvStringCreateFromFormatCstr( "%~o", -1, qv___TimeStarted() ) );
}

} // namespace

void qv___RuntimeUserInformationStartup()
{
    qv___RuntimeUserInformationRegion = qvRegionCreate();
    qv___RuntimeUserInformationDict = qvDictCreate();
}

void qv___RuntimeUserInformationShutdown()
{
    qv::retire( &qv___RuntimeUserInformationDict );
    qv::retire( &qv___RuntimeUserInformationRegion );
}

void qvRuntimeSetUserInformationKey( QV_STRING *key, QV_STORE *store )
{
    QV_CHECK( key );
    QV_CHECK( store );
    UserInformationEntered entered( QV_TRUE );
    qvDictSetStringKey( &qv___RuntimeUserInformationDict, key, qvStoreObj( store ) );
}

void qvRuntimeDelUserInformationKey( QV_STRING *key )
{
    QV_CHECK( key );
    UserInformationEntered entered( QV_TRUE );
    qvDictDelStringKey( &qv___RuntimeUserInformationDict, key );
}

QV_STORE *qvRuntimeUserInformationKey( QV_STRING *key )
{
    QV_CHECK( key );
    UserInformationEntered entered( QV_FALSE );
    return qvStoreFrom( qvDictStringKey( qv___RuntimeUserInformationDict, key ) );
}

QV_BOOL qvRuntimeHasUserInformationKey( QV_STRING *key )
{
    QV_CHECK( key );
    UserInformationEntered entered( QV_FALSE );
    return qvDictHasStringKey( qv___RuntimeUserInformationDict, key );
}

QV_STORE *qvRuntimeUserInformation( void )
{
    QV_STORE *all = qvStoreCreateArray();
    UserInformationEntered entered( QV_FALSE );
    for ( QV_INT idx = 0; idx < qvDictLength( qv___RuntimeUserInformationDict ); idx++ )
    {
        qv::Local<QV_STRING> key( qvStringFrom( qvDictKeyAt( qv___RuntimeUserInformationDict, idx ) ) );
        qv::Local<QV_STORE> store( qvStoreFrom( qvDictValueAt( qv___RuntimeUserInformationDict, idx ) ) );
        qv::Local<QV_STORE> entry( qvStoreCreate() );
        qvStoreSetValueCstr( entry.edit(), "key", -1, key );
        qvStoreSetStoreCstr( entry.edit(), "store", -1, store );
        qvStoreAppendStore( &all, entry );
    }
    return all;
}

QV_STORE *qvRuntimeInfo( void )
{
    QV_STORE *info = qvStoreCreate();
    describeProduct( &info );
    describeProcess( &info );
    qv::Local<QV_STORE> userInformation( qvRuntimeUserInformation() );
    qvStoreSetStoreCstr( &info, "userInformation", -1, userInformation );
    return info;
}
