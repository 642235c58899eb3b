#include <qv/runtime/qv_runtime_variant.hh>

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
    { "QV_RUNTIME_VARIANT_RELEASE", "release", "Release" },
    { "QV_RUNTIME_VARIANT_DEBUG", "debug", "Debug" },
    { "QV_RUNTIME_VARIANT_PROFILE", "profile", "Profile" },
    { "QV_RUNTIME_VARIANT_CHECK", "check", "Check" },
};

constinit QV_ENUM *qv___RuntimeVariantEnum = nullptr;
constinit QV_DICT *qv___RuntimeVariantToIdentifierDict = nullptr;
constinit QV_DICT *qv___RuntimeVariantFromIdentifierDict = nullptr;

} // namespace

void qv___RuntimeVariantStartup()
{
    qv___RuntimeVariantEnum = qv::enumOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeVariantToIdentifierDict = qv::identifiersOfValues( rows, QV_SIZEOF_ARRAY( rows ) );
    qv___RuntimeVariantFromIdentifierDict = qv::valuesOfIdentifiers( rows, QV_SIZEOF_ARRAY( rows ) );
}

void qv___RuntimeVariantShutdown()
{
    qv::retire( &qv___RuntimeVariantFromIdentifierDict );
    qv::retire( &qv___RuntimeVariantToIdentifierDict );
    qv::retire( &qv___RuntimeVariantEnum );
}

QV_RUNTIME_VARIANT qvRuntimeVariant( void )
{
    return QV___BUILD_VARIANT;
}

QV_STRING *qvRuntimeVariantToString( QV_RUNTIME_VARIANT variant )
{
    return qvEnumGenerate( qv___RuntimeVariantEnum, variant );
}

QV_RUNTIME_VARIANT qvRuntimeVariantFromString( QV_STRING *string )
{
    return qvEnumParse( qv___RuntimeVariantEnum, string );
}

QV_STRING *qvRuntimeVariantToIdentifier( QV_RUNTIME_VARIANT variant )
{
    QV_CHECK( QV_RUNTIME_VARIANT_OK( variant ) );
    return qvStringFrom( qvDictIntKey( qv___RuntimeVariantToIdentifierDict, variant ) );
}

QV_RUNTIME_VARIANT qvRuntimeVariantFromIdentifier( QV_STRING *string )
{
    return qv::valueOfIdentifier( qv___RuntimeVariantFromIdentifierDict, string );
}

const char *qv___RuntimeVariantFriendlyNameCstr( QV_RUNTIME_VARIANT variant )
{
    QV_CHECK( QV_RUNTIME_VARIANT_OK( variant ) );
    return rows[variant].friendlyName;
}

QV_STRING *qvRuntimeVariantFriendlyName( QV_RUNTIME_VARIANT variant )
{
    return qvStringCreateFromCstr( qv___RuntimeVariantFriendlyNameCstr( variant ), -1 );
}
