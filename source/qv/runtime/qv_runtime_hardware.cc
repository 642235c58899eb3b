#include <qv/runtime/qv_runtime_hardware.hh>

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
    { "QV_RUNTIME_HARDWARE_X32", "x32", "x86 (32 bit)" },
    { "QV_RUNTIME_HARDWARE_X64", "x64", "x86 (64 bit)" },
    { "QV_RUNTIME_HARDWARE_RPI2", "rpi2", "Raspberry Pi 2" },
    { "QV_RUNTIME_HARDWARE_RPI3", "rpi3", "Raspberry Pi 3" },
    { "QV_RUNTIME_HARDWARE_ARMHF", "armhf", "Generic ARM (armhf)" },
    { "QV_RUNTIME_HARDWARE_ARM64", "arm64", "Generic ARM (arm64)" },
    { "QV_RUNTIME_HARDWARE_RISCV64", "riscv64", "Generic RISC-V" },
};

constinit QV_ENUM *qv___RuntimeHardwareEnum = nullptr;
constinit QV_DICT *qv___RuntimeHardwareToIdentifierDict = nullptr;
constinit QV_DICT *qv___RuntimeHardwareFromIdentifierDict = nullptr;

} // namespace

void qv___RuntimeHardwareStartup()
{
    qv___RuntimeHardwareEnum = qv::enumOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeHardwareToIdentifierDict = qv::identifiersOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeHardwareFromIdentifierDict = qv::valuesOfIdentifiers( rows, QV_SIZEOF_ARRAY( rows ) );
}

void qv___RuntimeHardwareShutdown()
{
    qv::retire( &qv___RuntimeHardwareFromIdentifierDict );
    qv::retire( &qv___RuntimeHardwareToIdentifierDict );
    qv::retire( &qv___RuntimeHardwareEnum );
}

QV_RUNTIME_HARDWARE qvRuntimeHardware( void )
{
    return QV___BUILD_HARDWARE;
}

QV_STRING *qvRuntimeHardwareToString( QV_RUNTIME_HARDWARE hw )
{
    return qvEnumGenerate( qv___RuntimeHardwareEnum, hw );
}

QV_RUNTIME_HARDWARE qvRuntimeHardwareFromString( QV_STRING *string )
{
    return qvEnumParse( qv___RuntimeHardwareEnum, string );
}

QV_STRING *qvRuntimeHardwareToIdentifier( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return qvStringFrom( qvDictIntKey( qv___RuntimeHardwareToIdentifierDict, hw ) );
}

QV_RUNTIME_HARDWARE qvRuntimeHardwareFromIdentifier( QV_STRING *string )
{
    return qv::valueOfIdentifier( qv___RuntimeHardwareFromIdentifierDict, string );
}

const char *qv___RuntimeHardwareFriendlyNameCstr( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return rows[hw].friendlyName;
}

QV_STRING *qvRuntimeHardwareFriendlyName( QV_RUNTIME_HARDWARE hw )
{
    return qvStringCreateFromCstr( qv___RuntimeHardwareFriendlyNameCstr( hw ), -1 );
}

QV_BOOL qvRuntimeHardwareIsIntel( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return QV_BOOL_FROM( hw <= QV_RUNTIME_HARDWARE_X64 );
}

QV_BOOL qvRuntimeHardwareIsArm( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return QV_BOOL_FROM( hw >= QV_RUNTIME_HARDWARE_RPI2 && hw <= QV_RUNTIME_HARDWARE_ARM64 );
}

QV_BOOL qvRuntimeHardwareIsRiscv( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return QV_BOOL_FROM( hw == QV_RUNTIME_HARDWARE_RISCV64 );
}

QV_BOOL qvRuntimeHardwareIsLittleEndian( QV_RUNTIME_HARDWARE hw )
{
    QV_CHECK( QV_RUNTIME_HARDWARE_OK( hw ) );
    return QV_TRUE;
}

QV_BOOL qvRuntimeHardwareIsBigEndian( QV_RUNTIME_HARDWARE hw )
{
    return !qvRuntimeHardwareIsLittleEndian( hw );
}
