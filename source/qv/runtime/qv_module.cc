#include <qv/runtime/qv_module.hh>

#include <string.h>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_runtime.h>
#include <qv/runtime/qv_sort.hh>
#include <qv/runtime/qv_version.hh>

namespace
{

constexpr int32_t recordVersion = 2;
constexpr QV_INT maxNameLength = 32;

void qv___ModuleFreeFunc( qvObj thisObj )
{
    QV_MODULE *thisModule = qvModuleFrom( thisObj );
    QV_CHECK( thisModule );
    QV_FAIL( "module free" );
}

QV_STRING *qv___ModuleToStringFunc( qvObj thisObj )
{
    QV_MODULE *thisModule = qvModuleFrom( thisObj );
    QV_CHECK( thisModule );
    return qvModuleName( thisModule );
}

bool isLowerCase( QV_CHAR ch )
{
    return ch >= 'a' && ch <= 'z';
}

bool isDigit( QV_CHAR ch )
{
    return ch >= '0' && ch <= '9';
}

QV_VECTOR *wordsOf( const char *words )
{
    if ( !*words )
        return qvVectorCreate();
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( words, -1 ) );
    return qvStringSplitChar( text, ' ', -1 );
}

bool hasWord( const char *words, QV_STRING *word )
{
    qv::Local<QV_VECTOR> names( wordsOf( words ) );
    return qvVectorHasObj( names, qvStringObj( word ), QV_TRUE );
}

bool isModuleName( const char *name )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, -1 ) );
    return qvModuleNameOk( text );
}

bool areModuleNames( const char *words )
{
    qv::Local<QV_VECTOR> names( wordsOf( words ) );
    for ( QV_INT idx = 0; idx < qvVectorLength( names ); idx++ )
    {
        qv::Local<qv___Obj> name( qvVectorObjAt( names, idx ) );
        if ( !qvModuleNameOk( qvStringFrom( name ) ) )
            return false;
    }
    return true;
}

bool isVersion( const char *text )
{
    qv::Local<QV_MODULE_VERSION> version( qvModuleVersionTryCreateFromCstr( text, -1 ) );
    return version != nullptr;
}

bool isUnboundOrSame( const char *text, const char *own )
{
    return !text || strcmp( text, own ) == 0;
}

bool isUnboundOrSame( QV_INT number, QV_INT own )
{
    return number == -1 || number == own;
}

bool isBoundToNothing( const QV_MODULE_RECORD *record )
{
    return !record->productFriendlyName && record->productVersionMajor == -1 &&
           record->productVersionMinor == -1 && record->productVersionRelease == -1 &&
           !record->productBuildTime && !record->productVendorName && !record->productCopyright;
}

// Version numbers bind from the left.
bool isVersionBindingWellFormed( const QV_MODULE_RECORD *record )
{
    bool major = record->productVersionMajor != -1;
    bool minor = record->productVersionMinor != -1;
    bool release = record->productVersionRelease != -1;
    return ( !minor || major ) && ( !release || minor );
}

bool isForThisProduct( const QV_MODULE_RECORD *record )
{
    const QV_MODULE_RECORD *own = &qv___module_record;
    if ( !record->productName )
        return isBoundToNothing( record );
    return strcmp( record->productName, own->productName ) == 0 && isVersionBindingWellFormed( record ) &&
           isUnboundOrSame( record->productVersionMajor, own->productVersionMajor ) &&
           isUnboundOrSame( record->productVersionMinor, own->productVersionMinor ) &&
           isUnboundOrSame( record->productVersionRelease, own->productVersionRelease ) &&
           isUnboundOrSame( record->productFriendlyName, own->productFriendlyName ) &&
           isUnboundOrSame( record->productBuildTime, own->productBuildTime ) &&
           isUnboundOrSame( record->productVendorName, own->productVendorName ) &&
           isUnboundOrSame( record->productCopyright, own->productCopyright );
}

bool isDescribed( const QV_MODULE_RECORD *record )
{
    return record->name && isModuleName( record->name ) && record->description && record->version &&
           isVersion( record->version ) && record->deps && areModuleNames( record->deps ) && record->exts &&
           areModuleNames( record->exts );
}

} // namespace

QV_SORT_DEFINE( QV_MODULE, qvModule,
                { .freeFunc = qv___ModuleFreeFunc,
                  .compareFunc = qv___ModuleCompareFunc,
                  .toStringFunc = qv___ModuleToStringFunc } )

constinit QV_MODULE qv___module = { QV___STATIC_HEADER( QV___OBJ_TYPE_MODULE ),
                                    &qv___module_record,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    0,
                                    nullptr,
                                    nullptr };

QV_MODULE *qvModule( void )
{
    return &qv___module;
}

QV_INT qv___ModuleCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_MODULE *thisModule = qvModuleFrom( thisObj );
    QV_MODULE *thatModule = qvModuleFrom( thatObj );
    QV_CHECK( thisModule );
    QV_CHECK( thatModule );
    if ( thisModule == thatModule )
        return 0;
    int order = strcmp( thisModule->moduleRecord->name, thatModule->moduleRecord->name );
    QV_CHECK( order != 0 ); // no two modules share a name
    return order < 0 ? -1 : 1;
}

QV_BOOL qvModuleNameOk( QV_STRING *moduleName )
{
    QV_CHECK( moduleName );
    QV_INT length = qvStringLength( moduleName );
    if ( length < 1 || length > maxNameLength )
        return QV_FALSE;
    const QV_CHAR *chs = qvStringBacking( moduleName );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        bool inner = idx > 0 && idx < length - 1;
        bool ok = isLowerCase( chs[idx] ) || ( isDigit( chs[idx] ) && idx > 0 ) ||
                  ( chs[idx] == '_' && inner && chs[idx - 1] != '_' );
        if ( !ok )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_STRING *qvModuleName( QV_MODULE *module )
{
    QV_CHECK( module );
    return qvStringCreateFromCstr( module->moduleRecord->name, -1 );
}

QV_STRING *qvModuleDescription( QV_MODULE *module )
{
    QV_CHECK( module );
    return qvStringCreateFromCstr( module->moduleRecord->description, -1 );
}

QV_MODULE_VERSION *qvModuleVersion( QV_MODULE *module )
{
    QV_CHECK( module );
    QV_MODULE_VERSION *version = qvModuleVersionTryCreateFromCstr( module->moduleRecord->version, -1 );
    QV_CHECK( version );
    return version;
}

QV_VECTOR *qvModuleDependenciesModuleNamesVector( QV_MODULE *module )
{
    QV_CHECK( module );
    return wordsOf( module->moduleRecord->deps );
}

QV_VECTOR *qvModuleExtensionsModuleNamesVector( QV_MODULE *module )
{
    QV_CHECK( module );
    return wordsOf( module->moduleRecord->exts );
}

QV_BOOL qvModuleHasDependency( QV_MODULE *module, QV_STRING *moduleName )
{
    QV_CHECK( module );
    QV_CHECK( qvModuleNameOk( moduleName ) );
    return hasWord( module->moduleRecord->deps, moduleName );
}

QV_BOOL qvModuleHasExtension( QV_MODULE *module, QV_STRING *moduleName )
{
    QV_CHECK( module );
    QV_CHECK( qvModuleNameOk( moduleName ) );
    return hasWord( module->moduleRecord->exts, moduleName );
}

QV_BOOL qvModuleHasPersonality( QV_MODULE *module )
{
    QV_CHECK( module );
    return module->personalityFunc != nullptr;
}

QV_BOOL qvModuleRunPersonality( QV_MODULE *module, QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *arg )
{
    QV_CHECK( module );
    QV_CHECK( module->personalityFunc );
    QV_CHECK( argv );
    QV_CHECK( out );
    return module->personalityFunc( argv, out, arg );
}

QV_BOOL qv___ModuleCheckCompatibility( QV_MODULE *module )
{
    QV_CHECK( module );
    return module->type == QV___OBJ_TYPE_MODULE && !module->sort && module->moduleRecord &&
           module->moduleRecord->recordVersion == recordVersion && isForThisProduct( module->moduleRecord ) &&
           isDescribed( module->moduleRecord );
}

QV_VECTOR *qvModuleSnapshotSorts( QV_MODULE *module )
{
    QV_CHECK( module );
    if ( !qv___ObjOdbEnabled() )
        return nullptr;
    QV_VECTOR *sorts = qv::createSnapshotVector();
    qv___ObjOdbLock();
    for ( QV_SORT *sort = module->sortsFirst; sort; sort = sort->sortsNext )
    {
        qvVectorAppendObj( &sorts, qvSortObj( sort ) );
    }
    qv___ObjOdbUnlock();
    return sorts;
}

QV_VECTOR *qvModuleSnapshotObjects( QV_MODULE *module )
{
    QV_CHECK( module );
    if ( !qv___ObjOdbEnabled() )
        return nullptr;
    QV_VECTOR *objects = qv::createSnapshotVector();
    qv___ObjOdbLock();
    for ( QV_SORT *sort = module->sortsFirst; sort; sort = sort->sortsNext )
    {
        qv::appendLiveObjects( &objects, sort );
    }
    qv___ObjOdbUnlock();
    return objects;
}
