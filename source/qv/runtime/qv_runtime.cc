#include <qv/runtime/qv_runtime.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime_modules.hh>
#include <qv/sys/qv_int.h>

namespace
{

constexpr QV_INT defaultUnloadModuleTimeout = 60000;

constexpr qv::EnumName flagNames[] = {
    { QV_RUNTIME_FLAG_MINIMAL, "QV_RUNTIME_FLAG_MINIMAL" },
    { QV_RUNTIME_FLAG_SYSTEM, "QV_RUNTIME_FLAG_SYSTEM" },
    { QV_RUNTIME_FLAG_SERVER, "QV_RUNTIME_FLAG_SERVER" },
    { QV_RUNTIME_FLAG_MEMORY_DEBUG, "QV_RUNTIME_FLAG_MEMORY_DEBUG" },
    { QV_RUNTIME_FLAG_OBJECT_DATABASE, "QV_RUNTIME_FLAG_OBJECT_DATABASE" },
    { QV_RUNTIME_FLAG_OBJECT_ORIGIN, "QV_RUNTIME_FLAG_OBJECT_ORIGIN" },
    { QV_RUNTIME_FLAG_SNAPSHOT_SORT, "QV_RUNTIME_FLAG_SNAPSHOT_SORT" },
    { QV_RUNTIME_FLAG_SNAPSHOT_OBJECT, "QV_RUNTIME_FLAG_SNAPSHOT_OBJECT" },
    { QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING, "QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING" },
    { QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG, "QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG" },
    { QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS, "QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS" },
    { QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH, "QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH" },
    { QV_RUNTIME_FLAG_MODULE_DEBUG, "QV_RUNTIME_FLAG_MODULE_DEBUG" },
    { QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG, "QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG" },
    { QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS, "QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS" },
};

// Flags that stand on their own.
constexpr QV_RUNTIME_FLAGS freeFlags = QV_RUNTIME_FLAG_SYSTEM | QV_RUNTIME_FLAG_SERVER |
                                       QV_RUNTIME_FLAG_MEMORY_DEBUG | QV_RUNTIME_FLAG_OBJECT_DATABASE |
                                       QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS |
                                       QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH | QV_RUNTIME_FLAG_MODULE_DEBUG |
                                       QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS;

// Flags that mean something only together with another one, in the order in which they are looked at.
struct DependentFlags
{
    QV_RUNTIME_FLAGS flags;
    QV_RUNTIME_FLAGS onlyWith;
};
constexpr DependentFlags dependentFlags[] = {
    { QV_RUNTIME_FLAG_OBJECT_ORIGIN | QV_RUNTIME_FLAG_SNAPSHOT_SORT | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT,
      QV_RUNTIME_FLAG_OBJECT_DATABASE },
    { QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING | QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG,
      QV_RUNTIME_FLAG_SNAPSHOT_OBJECT },
    { QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG, QV_RUNTIME_FLAG_MODULE_DEBUG },
};

// Written during startup and shutdown, while there is one thread, and only read in between.
constinit QV_RUNTIME_FLAGS qv___RuntimeFlags = 0;
constinit QV_FLAGSET *qv___RuntimeFlagsFlagset = nullptr;

// The results of a snapshot function for all loaded modules, in load order.
QV_VECTOR *snapshotOfModules( QV_VECTOR *( *snapshotOf )( QV_MODULE *module ) )
{
    if ( !qv___ObjOdbEnabled() )
        return nullptr;
    qv::Local<QV_VECTOR> modules( qvRuntimeModulesVector() );
    QV_VECTOR *all = qvVectorCreate();
    for ( QV_INT idx = 0; idx < qvVectorLength( modules ); idx++ )
    {
        qv::Local<qv___Obj> module( qvVectorObjAt( modules, idx ) );
        qv::Local<QV_VECTOR> some( snapshotOf( qvModuleFrom( module ) ) );
        qvVectorAppend( &all, some );
    }
    return all;
}

} // namespace

void qv___RuntimeFlagsStartup()
{
    qv___RuntimeFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___RuntimeFlagsShutdown()
{
    qv::retire( &qv___RuntimeFlagsFlagset );
}

QV_RUNTIME_FLAGS qvRuntimeFlags( void )
{
    return qv___RuntimeFlags;
}

void qv___RuntimeSetFlags( QV_RUNTIME_FLAGS flags )
{
    qv___RuntimeFlags = flags;
}

QV_RUNTIME_FLAGS qvRuntimeFlagsNormalize( QV_RUNTIME_FLAGS flags )
{
    if ( flags & QV_RUNTIME_FLAG_MINIMAL )
        return QV_RUNTIME_FLAG_MINIMAL;
    QV_RUNTIME_FLAGS normalized = flags & freeFlags;
    for ( const DependentFlags &dependent : dependentFlags )
    {
        if ( normalized & dependent.onlyWith )
            normalized |= flags & dependent.flags;
    }
    return normalized;
}

QV_RUNTIME_FLAGS qvRuntimeFlagsFromString( QV_STRING *text )
{
    return qvRuntimeFlagsNormalize( qvFlagsetParse( qv___RuntimeFlagsFlagset, text ) );
}

QV_STRING *qvRuntimeFlagsToString( QV_RUNTIME_FLAGS flags )
{
    return qvFlagsetGenerate( qv___RuntimeFlagsFlagset, qvRuntimeFlagsNormalize( flags ) );
}

void qvRuntimeStartup( QV_RUNTIME_FLAGS flags, QV_INT optionalUnloadModuleTimeout,
                       QV_RUNTIME_PRINT_FUNC printFunc, const char *applicationIdentifier,
                       const char *applicationFriendlyName, const char *applicationVersion )
{
    QV_CHECK( optionalUnloadModuleTimeout >= -1 );
    qv___RuntimeFlags = qvRuntimeFlagsNormalize( flags );
    qv___RuntimePrintStartup( printFunc );
    qv___RuntimeComponentsStartup( applicationIdentifier, applicationFriendlyName, applicationVersion );
    qv___RuntimeModulesStartup( optionalUnloadModuleTimeout == -1 ? defaultUnloadModuleTimeout
                                                                  : optionalUnloadModuleTimeout );
}

void qvRuntimeShutdown( void )
{
    qvRuntimeUnloadAllModules();
    qv___RuntimeModulesShutdown();
    qv___RuntimeComponentsShutdown();
    bool asksForReport = ( qv___RuntimeFlags & QV___RUNTIME_SNAPSHOT_MASK ) != 0;
    if ( asksForReport && QV___RETAIN_COUNT_VALUE( qv___module.sortsCount ) > 0 )
    {
        qv___RuntimeReportLeaks();
    }
    qv___RuntimePrintShutdown();
    qv___RuntimeFlags = 0;
}

QV_VECTOR *qvRuntimeSnapshotSorts( void )
{
    return snapshotOfModules( qvModuleSnapshotSorts );
}

QV_VECTOR *qvRuntimeSnapshotObjects( void )
{
    return snapshotOfModules( qvModuleSnapshotObjects );
}
