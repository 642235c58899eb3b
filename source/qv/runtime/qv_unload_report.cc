// The report of what keeps a module from unloading. Unlike the leak report it runs while the library works, so that it
// goes by snapshots, and it doesn't quote text forms.

#include <qv/runtime/qv_runtime_modules.hh>

#include <string.h>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime.hh>
#include <qv/runtime/qv_sort.h>
#include <qv/sys/qv_int.h>

namespace
{

constexpr char ruler[] =
    "------------------------------------------------------------------------------------------";

constexpr QV_INT ownReferences = 2; // the snapshot's and that of the walk over it

constinit bool headerPrinted = false;

QV_SORT *sortAt( QV_VECTOR *sorts, QV_INT idx )
{
    return qvSortFrom( qvVectorObjAt( sorts, idx ) );
}

QV_INT longestSortName( QV_VECTOR *sorts )
{
    QV_INT longest = 0;
    for ( QV_INT idx = 0; idx < qvVectorLength( sorts ); idx++ )
    {
        qv::Local<QV_SORT> sort( sortAt( sorts, idx ) );
        longest = qvIntMax( longest, static_cast<QV_INT>( strlen( sort->name ) ) );
    }
    return longest;
}

void reportSorts( QV_MODULE *module )
{
    qv::Local<QV_VECTOR> sorts( qvModuleSnapshotSorts( module ) );
    QV_INT width = longestSortName( sorts );
    for ( QV_INT idx = 0; idx < qvVectorLength( sorts ); idx++ )
    {
        qv::Local<QV_SORT> sort( sortAt( sorts, idx ) );
        qv___RuntimePrintFormatCstr( "%~-*s %i", -1, width, qvSortName( sort ), qvSortObjects( sort ) );
    }
}

void reportObject( qvObj obj )
{
    QV_SORT *sort = qvObjSort( obj );
    QV_INT references = static_cast<QV_INT>( QV_REF_RETAIN_COUNT( obj ) ) - ownReferences;
    bool asText = qvRuntimeFlags() & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING;
    if ( asText && sort->functions.toStringFunc )
    {
        qv___RuntimePrintFormatCstr( "%~s (%i) %o", -1, qvSortName( sort ), references, obj );
    }
    else
    {
        qv___RuntimePrintFormatCstr( "%~s (%i)", -1, qvSortName( sort ), references );
    }
    if ( !( qvRuntimeFlags() & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG ) )
        return;
    qv::Local<QV_VECTOR> log( qv___ObjLog( obj ) );
    for ( QV_INT idx = 0; log && idx < qvVectorLength( log ); idx++ )
    {
        qv___RuntimePrintFormatCstr( "%1m%~o", -1, qvVectorObjAt( log, idx ) );
    }
}

void reportObjects( QV_MODULE *module )
{
    qv___RuntimePrintChars( nullptr, 0 );
    qv::Local<QV_VECTOR> objects( qvModuleSnapshotObjects( module ) );
    for ( QV_INT idx = 0; idx < qvVectorLength( objects ); idx++ )
    {
        qv::Local<qv___Obj> obj( qvVectorObjAt( objects, idx ) );
        reportObject( obj );
    }
}

} // namespace

void qv___RuntimeReportUnloading( QV_MODULE *module )
{
    if ( !headerPrinted )
    {
        headerPrinted = true;
        qv___RuntimeSnapshotHeader();
    }
    qv___RuntimePrintCstr( ruler, -1 );
    if ( qvRuntimeFlags() & QV_RUNTIME_FLAG_SNAPSHOT_SORT )
    {
        reportSorts( module );
    }
    if ( qvRuntimeFlags() & QV_RUNTIME_FLAG_SNAPSHOT_OBJECT )
    {
        reportObjects( module );
    }
}
