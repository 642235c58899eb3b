#include <qv/runtime/qv_runtime_os.hh>

#include <qv/base/qv_dict.h>
#include <qv/base/qv_enum.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_runtime_identifiers.hh>

#include <qv_build.hh>

namespace
{

// At the index of each value.
constexpr qv::IdentifiedValue rows[] = {
    { "QV_RUNTIME_OS_WINDOWS", "windows", "Windows" },
    { "QV_RUNTIME_OS_DEBIAN_9", "debian9", "Debian 9" },
    { "QV_RUNTIME_OS_DEBIAN_10", "debian10", "Debian 10" },
    { "QV_RUNTIME_OS_DEBIAN_11", "debian11", "Debian 11" },
    { "QV_RUNTIME_OS_DEBIAN_12", "debian12", "Debian 12" },
    { "QV_RUNTIME_OS_DEBIAN_13", "debian13", "Debian 13" },
    { "QV_RUNTIME_OS_UBUNTU_1804", "ubuntu1804", "Ubuntu 18.04" },
    { "QV_RUNTIME_OS_UBUNTU_2004", "ubuntu2004", "Ubuntu 20.04" },
    { "QV_RUNTIME_OS_UBUNTU_2204", "ubuntu2204", "Ubuntu 22.04" },
    { "QV_RUNTIME_OS_UBUNTU_2404", "ubuntu2404", "Ubuntu 24.04" },
    { "QV_RUNTIME_OS_UBUNTU_2604", "ubuntu2604", "Ubuntu 26.04" },
    { "QV_RUNTIME_OS_RHEL_8", "rhel8", "RHEL 8" },
    { "QV_RUNTIME_OS_RHEL_9", "rhel9", "RHEL 9" },
    { "QV_RUNTIME_OS_RHEL_10", "rhel10", "RHEL 10" },
    { "QV_RUNTIME_OS_MACOSX", "macosx", "MacOSX" },
};

constinit QV_ENUM *qv___RuntimeOsEnum = nullptr;
constinit QV_DICT *qv___RuntimeOsToIdentifierDict = nullptr;
constinit QV_DICT *qv___RuntimeOsFromIdentifierDict = nullptr;

constexpr unsigned bitOf( QV_RUNTIME_HARDWARE hw )
{
    return 1u << hw;
}

constexpr unsigned x32 = bitOf( QV_RUNTIME_HARDWARE_X32 );
constexpr unsigned x64 = bitOf( QV_RUNTIME_HARDWARE_X64 );
constexpr unsigned arm64 = bitOf( QV_RUNTIME_HARDWARE_ARM64 );
constexpr unsigned riscv64 = bitOf( QV_RUNTIME_HARDWARE_RISCV64 );
constexpr unsigned allHardware = bitOf( QV_RUNTIME_HARDWARE_RISCV64 + 1 ) - 1;

// What each operating system is released for, at the index of its value.
constexpr unsigned supportedHardware[] = {
    x32 | x64 | arm64,           // Windows
    allHardware & ~riscv64,      // Debian 9
    allHardware & ~riscv64,      // Debian 10
    allHardware & ~riscv64,      // Debian 11
    allHardware,                 // Debian 12
    allHardware,                 // Debian 13
    x32 | x64,                   // Ubuntu 18.04
    x32 | x64,                   // Ubuntu 20.04
    x32 | x64 | arm64 | riscv64, // Ubuntu 22.04
    x32 | x64 | arm64 | riscv64, // Ubuntu 24.04
    x32 | x64 | arm64 | riscv64, // Ubuntu 26.04
    x64,                         // RHEL 8
    x64,                         // RHEL 9
    x64,                         // RHEL 10
    0,                           // MacOSX
};
static_assert( QV_SIZEOF_ARRAY( supportedHardware ) == QV_SIZEOF_ARRAY( rows ) );

// The package architecture, at the index of each hardware.
constexpr const char *platformNames[] = { "i386", "amd64", "armhf", "armhf", "armhf", "arm64", "riscv64" };

} // namespace

void qv___RuntimeOsStartup()
{
    qv___RuntimeOsEnum = qv::enumOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeOsToIdentifierDict = qv::identifiersOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeOsFromIdentifierDict = qv::valuesOfIdentifiers( rows, QV_SIZEOF_ARRAY( rows ) );
}

void qv___RuntimeOsShutdown()
{
    qv::retire( &qv___RuntimeOsFromIdentifierDict );
    qv::retire( &qv___RuntimeOsToIdentifierDict );
    qv::retire( &qv___RuntimeOsEnum );
}

QV_RUNTIME_OS qvRuntimeOs( void )
{
    return QV___BUILD_OS;
}

QV_STRING *qvRuntimeOsToString( QV_RUNTIME_OS os )
{
    return qvEnumGenerate( qv___RuntimeOsEnum, os );
}

QV_RUNTIME_OS qvRuntimeOsFromString( QV_STRING *string )
{
    return qvEnumParse( qv___RuntimeOsEnum, string );
}

QV_STRING *qvRuntimeOsToIdentifier( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return qvStringFrom( qvDictIntKey( qv___RuntimeOsToIdentifierDict, os ) );
}

QV_RUNTIME_OS qvRuntimeOsFromIdentifier( QV_STRING *string )
{
    return qv::valueOfIdentifier( qv___RuntimeOsFromIdentifierDict, string );
}

const char *qv___RuntimeOsFriendlyNameCstr( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return rows[os].friendlyName;
}

QV_STRING *qvRuntimeOsFriendlyName( QV_RUNTIME_OS os )
{
    return qvStringCreateFromCstr( qv___RuntimeOsFriendlyNameCstr( os ), -1 );
}

QV_BOOL qvRuntimeOsIsWindows( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return QV_BOOL_FROM( os == QV_RUNTIME_OS_WINDOWS );
}

QV_BOOL qvRuntimeOsIsLinux( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return QV_BOOL_FROM( os >= QV_RUNTIME_OS_DEBIAN_9 && os <= QV_RUNTIME_OS_RHEL_10 );
}

QV_BOOL qvRuntimeOsIsDebian( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return QV_BOOL_FROM( os >= QV_RUNTIME_OS_DEBIAN_9 && os <= QV_RUNTIME_OS_UBUNTU_2604 );
}

QV_BOOL qvRuntimeOsIsRhel( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return QV_BOOL_FROM( os >= QV_RUNTIME_OS_RHEL_8 && os <= QV_RUNTIME_OS_RHEL_10 );
}

QV_BOOL qvRuntimeOsIsUnix( QV_RUNTIME_OS os )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    return QV_BOOL_FROM( os >= QV_RUNTIME_OS_DEBIAN_9 && os <= QV_RUNTIME_OS_MACOSX );
}

QV_BOOL qvRuntimeOsSupportsHardware( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_OS_OK( os ) );
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return QV_BOOL_FROM( supportedHardware[os] & bitOf( hw ) );
}

QV_STRING *qvRuntimeOsHardwarePlatformName( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return qvRuntimeOsIsLinux( os ) ? qvStringCreateFromCstr( platformNames[hw], -1 ) : nullptr;
}

QV_BOOL qvRuntimeOsHasHardwarePlatformName( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return qvRuntimeOsIsLinux( os );
}
