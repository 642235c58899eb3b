// Modules as shared objects.

#include <qv/runtime/qv_runtime_modules.hh>

#include <dlfcn.h>
#include <string.h>

#include <qv/base/qv_stack_trace.hh>
#include <qv/base/qv_string.h>
#include <qv/io/qv_path.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.hh>
#include <qv/runtime/qv_print.hh>
#include <qv/runtime/qv_runtime_paths.h>
#include <qv/runtime/qv_shared_object.hh>
#include <qv/sys/qv_mem.h>

namespace
{

bool isDebugged()
{
    return ( qvRuntimeFlags() & QV_RUNTIME_FLAG_MODULE_DEBUG ) != 0;
}

void printFailure( const char *line )
{
    if ( isDebugged() )
    {
        qv___RuntimePrintCstr( line, -1 );
    }
}

void printLoaderFailure( const char *format, const char *reason )
{
    if ( isDebugged() )
    {
        qv___RuntimePrintFormatCstr( format, -1, reason );
    }
}

// A zero-terminated copy that the caller frees with qvMemFree.
char *systemText( QV_STRING *text )
{
    QV_INT length = 0;
    return qvStringConvertToCstr( text, QV_TRUE, &length );
}

// The text of the module's file, which the dynamic loader searches for if it has no directory; null if there is none.
QV_STRING *moduleFile( QV_STRING *moduleName )
{
    qv::Local<QV_PATH> path;
    if ( qvRuntimeFlags() & QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH )
    {
        path.take( qvPathCreate() );
    }
    else
    {
        qv::Local<QV_RUNTIME_PATHS> paths( qvRuntimePaths() );
        path.take( qvRuntimePathsPath( paths, QV_RUNTIME_PATH_PRODUCT_BIN ) );
    }
    if ( !path )
    {
        printFailure( "[qv___RuntimePlatformLoadModule()] QV_RUNTIME_PATH_PRODUCT_BIN: null" );
        return nullptr;
    }
    qv::Local<QV_STRING> name(
        qvStringCreateFromFormatCstr( "lib%~s-%s.so", -1, qvRuntimeVersionProductName(), moduleName ) );
    qvPathAppendComponentFilename( path.edit(), name );
    QV_STRING *text = qvPathUnixTryEncode( path );
    if ( !text )
    {
        printFailure( "[qv___RuntimePlatformLoadModule()] qvPathUnixTryEncode(): null" );
    }
    return text;
}

// A name without a directory is the loader's to find, and so its file isn't looked at before.
bool isCut( const char *file )
{
    return strchr( file, '/' ) && qv::isSharedObjectCut( file );
}

void *openFile( QV_STRING *file )
{
    char *text = systemText( file );
    void *library = nullptr;
    if ( isCut( text ) )
    {
        printLoaderFailure(
            "[qv___RuntimePlatformLoadModule()] dlopen(): null, dlerror(): %lc: file too short", text );
    }
    else if ( library = dlopen( text, RTLD_NOW | RTLD_LOCAL ); library )
    {
        qv___StackTraceUpdateSymbols();
    }
    else
    {
        printLoaderFailure( "[qv___RuntimePlatformLoadModule()] dlopen(): null, dlerror(): %lc", dlerror() );
    }
    qvMemFree( text );
    return library;
}

QV_MODULE *moduleObjectIn( void *library, QV_STRING *moduleName )
{
    qv::Local<QV_STRING> symbol( qvStringCreateFromFormatCstr( "%s___module", -1, moduleName ) );
    char *text = systemText( symbol );
    auto *module = static_cast<QV_MODULE *>( dlsym( library, text ) );
    qvMemFree( text );
    if ( !module )
    {
        printLoaderFailure( "[qv___RuntimePlatformLoadModule()] dlsym(): null, dlerror(): %lc", dlerror() );
        return nullptr;
    }
    if ( !qv___ModuleCheckCompatibility( module ) )
    {
        printFailure( "[qv___RuntimePlatformLoadModule()] qv___ModuleCheckCompatibility(): false" );
        return nullptr;
    }
    if ( !qvStringEqualsCstr( moduleName, module->moduleRecord->name, -1 ) )
    {
        printFailure( "[qv___RuntimePlatformLoadModule()] module name invalid" );
        return nullptr;
    }
    return module;
}

} // namespace

QV_MODULE *qv___RuntimePlatformLoadModule( QV_STRING *moduleName )
{
    qv::Local<QV_STRING> file( moduleFile( moduleName ) );
    void *library = file ? openFile( file ) : nullptr;
    if ( !library )
        return nullptr;
    QV_MODULE *module = moduleObjectIn( library, moduleName );
    if ( !module )
    {
        dlclose( library );
    }
    return module;
}
