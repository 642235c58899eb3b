// The report of objects that are left when the library ends. By then no component works any more, so they are all
// brought up once more, with the object database off; the lists built so far stay in the sort records.

#include <qv/runtime/qv_runtime.hh>

#include <string.h>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime_hardware.h>
#include <qv/runtime/qv_runtime_os.h>
#include <qv/runtime/qv_runtime_variant.h>
#include <qv/runtime/qv_sort.h>
#include <qv/runtime/qv_version.hh>
#include <qv/sys/qv_int.h>

namespace
{

constexpr char ruler[] =
    "------------------------------------------------------------------------------------------";

QV_INT liveObjects( QV_SORT *sort )
{
    QV_INT count = 0;
    for ( qvObj obj = sort->objsFirst; obj; obj = obj->objsNext )
    {
        count++;
    }
    return count;
}

QV_INT longestSortName()
{
    QV_INT longest = 0;
    for ( QV_SORT *sort = qv___module.sortsFirst; sort; sort = sort->sortsNext )
    {
        longest = qvIntMax( longest, static_cast<QV_INT>( strlen( sort->name ) ) );
    }
    return longest;
}

void reportSorts()
{
    QV_INT width = longestSortName();
    for ( QV_SORT *sort = qv___module.sortsFirst; sort; sort = sort->sortsNext )
    {
        qv___RuntimePrintFormatCstr( "%~-*s %i", -1, width, qvSortName( sort ), liveObjects( sort ) );
    }
}

void reportObject( QV_SORT *sort, qvObj obj, QV_RUNTIME_FLAGS flags )
{
    QV_INT references = QV_REF_RETAIN_COUNT( obj );
    QV_CHECK( references != 0 );
    if ( ( flags & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING ) && sort->functions.toStringFunc )
    {
        qv___RuntimePrintFormatCstr( "%~s (%i) \"%o\"", -1, qvSortName( sort ), references, obj );
    }
    else
    {
        qv___RuntimePrintFormatCstr( "%~s (%i)", -1, qvSortName( sort ), references );
    }
    if ( !( flags & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG ) )
        return;
    qv::Local<QV_VECTOR> log( qv___ObjLog( obj ) );
    for ( QV_INT idx = 0; log && idx < qvVectorLength( log ); idx++ )
    {
        qv___RuntimePrintFormatCstr( "%1m%~o", -1, qvVectorObjAt( log, idx ) );
    }
}

void reportObjects( QV_RUNTIME_FLAGS flags )
{
    qv___RuntimePrintChars( nullptr, 0 );
    for ( QV_SORT *sort = qv___module.sortsFirst; sort; sort = sort->sortsNext )
    {
        for ( qvObj obj = sort->objsFirst; obj; obj = obj->objsNext )
        {
            reportObject( sort, obj, flags );
        }
    }
}

} // namespace

void qv___RuntimeSnapshotHeader()
{
    qv___RuntimePrintCstr( ruler, -1 );
    qv___RuntimePrintFormatCstr( "Product   : %lc", -1, qv___RuntimeVersionProductNameCstr() );
    qv___RuntimePrintFormatCstr( "Friendly  : %lc", -1, qv___RuntimeVersionProductFriendlyNameCstr() );
    qv___RuntimePrintFormatCstr( "Version   : %~s", -1, qvRuntimeVersionProductVersion() );
    qv___RuntimePrintFormatCstr( "OS        : %~s", -1, qvRuntimeOsFriendlyName( qvRuntimeOs() ) );
    qv___RuntimePrintFormatCstr( "Hardware  : %~s", -1,
                                 qvRuntimeHardwareFriendlyName( qvRuntimeHardware() ) );
    qv___RuntimePrintFormatCstr( "Variant   : %~s", -1, qvRuntimeVariantFriendlyName( qvRuntimeVariant() ) );
    qv___RuntimePrintFormatCstr( "Build Time: %lc", -1, qv___RuntimeVersionProductBuildTimeCstr() );
    qv___RuntimePrintCstr( ruler, -1 );
}

void qv___RuntimeReportLeaks()
{
    QV_RUNTIME_FLAGS flags = qvRuntimeFlags();
    qv___RuntimeSetFlags( QV_RUNTIME_FLAG_MINIMAL );
    qv___RuntimeComponentsStartup( nullptr, nullptr, nullptr );
    qv___RuntimeSnapshotHeader();
    if ( flags & QV_RUNTIME_FLAG_SNAPSHOT_SORT )
    {
        reportSorts();
    }
    if ( flags & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT )
    {
        reportObjects( flags );
    }
    qv___RuntimeComponentsShutdown();
}
