#ifndef QV_RUNTIME_QV_RUNTIME_H
#define QV_RUNTIME_QV_RUNTIME_H

/* The start and the end of the library, its flags, its version and the rules for product data. */

#include <wchar.h>

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* Runtime flags. Bits that depend on one that is missing, and unknown bits, are dropped at startup. */
typedef QV_INT QV_RUNTIME_FLAGS;
#define QV_RUNTIME_FLAG_MINIMAL                  1     /* overrides all others; no product paths */
#define QV_RUNTIME_FLAG_SYSTEM                   2     /* data paths are system-wide, not the user's */
#define QV_RUNTIME_FLAG_SERVER                   4     /* the process system runs in server mode */
#define QV_RUNTIME_FLAG_MEMORY_DEBUG             8     /* new memory blocks are filled with 0xFF */
#define QV_RUNTIME_FLAG_OBJECT_DATABASE          16    /* live objects are listed per sort */
#define QV_RUNTIME_FLAG_OBJECT_ORIGIN            32    /* objects record the call stack of their creation */
#define QV_RUNTIME_FLAG_SNAPSHOT_SORT            64    /* the leak report lists the sorts */
#define QV_RUNTIME_FLAG_SNAPSHOT_OBJECT          128   /* the leak report lists the objects */
#define QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_TOSTRING 256   /* each listed object with its text form */
#define QV_RUNTIME_FLAG_SNAPSHOT_OBJECT_LOG      512   /* each listed object with its log */
#define QV_RUNTIME_FLAG_NO_EXCEPTION_HANDLERS    1024  /* no crash handlers are installed */
#define QV_RUNTIME_FLAG_IMPLICIT_MODULE_PATH     2048  /* modules load by bare file name */
#define QV_RUNTIME_FLAG_MODULE_DEBUG             4096  /* module loading prints its steps */
#define QV_RUNTIME_FLAG_MODULE_DEPENDENCY_DEBUG  8192  /* and dependencies and extensions */
#define QV_RUNTIME_FLAG_NO_MODULE_EXTENSIONS     16384 /* modules named as extensions aren't loaded */

/* Prints one line of diagnostics; the function adds the line end. Calls never overlap. It must not print through the
 * library by itself. chs may be null if chsLength is 0. */
typedef void ( *QV_RUNTIME_PRINT_FUNC )( const QV_CHAR *chs, QV_INT chsLength );

/* Starts the library; call it once, before anything else. optionalUnloadModuleTimeout is in milliseconds, -1 for the
 * default of 60000; a smaller value stops the process. printFunc may be null (diagnostics are dropped) and must stay valid
 * until qvRuntimeShutdown has returned. The zero-terminated strings may each be null and are copied. */
QV_API void qvRuntimeStartup( QV_RUNTIME_FLAGS flags, QV_INT optionalUnloadModuleTimeout,
                              QV_RUNTIME_PRINT_FUNC printFunc, const char *applicationIdentifier,
                              const char *applicationFriendlyName, const char *applicationVersion );

/* Ends the library; call it once, on one thread, after all other threads of the host have stopped using it. With a
 * snapshot flag it prints a report of the objects that are still there. */
QV_API void qvRuntimeShutdown( void );

/* The normalized flags given at startup; 0 when the library isn't running. */
QV_API QV_RUNTIME_FLAGS qvRuntimeFlags( void );
QV_API QV_RUNTIME_FLAGS qvRuntimeFlagsNormalize( QV_RUNTIME_FLAGS flags );
/* The flags named in a text, normalized. */
QV_API QV_RUNTIME_FLAGS qvRuntimeFlagsFromString( QV_STRING *text );
/* The names of the flags, after normalizing; owned by the caller. */
QV_API QV_STRING *qvRuntimeFlagsToString( QV_RUNTIME_FLAGS flags );

/* The library's own static module object. */
QV_API QV_MODULE *qvModule( void );

/* The loaded modules in load order, the library itself first; owned by the caller. Later loads don't change it. */
QV_API QV_VECTOR *qvRuntimeModulesVector( void );

/* The loaded module of a name, owned by the caller, or null. */
QV_API QV_MODULE *qvRuntimeModule( QV_STRING *moduleName );

/* Modules by name: loads what isn't loaded yet, after the modules that it depends on, and then the modules that extend
 * what is loaded. True if the module, or every one of several, is loaded afterwards; the first failure ends the walk, and
 * what was loaded by then stays. Several names stand in a vector of strings, or in a text separated by single blanks,
 * whose length is in bytes or wide characters, -1 up to the terminator. Every name must be valid (qvModuleNameOk), and no
 * module may depend on itself on any way, else the process stops. Not to be called from a hook of a module. */
QV_API QV_BOOL qvRuntimeTryLoadModule( QV_STRING *moduleName );
QV_API QV_BOOL qvRuntimeTryLoadModulesVector( QV_VECTOR *moduleNames );
QV_API QV_BOOL qvRuntimeTryLoadModules( QV_STRING *text );
QV_API QV_BOOL qvRuntimeTryLoadModulesCstr( const char *str, QV_INT length );
QV_API QV_BOOL qvRuntimeTryLoadModulesWcstr( const wchar_t *str, QV_INT length );

/* The same for a module that is linked into the host. It must be built for this product, and none of its name may be
 * loaded, else the process stops. */
QV_API QV_BOOL qvRuntimeTryRegisterModule( QV_MODULE *module );

/* Unloads all modules but the library itself, the last one first, each after its objects have gone. A module whose
 * objects outlive the time-out given at startup stops the process. */
QV_API void qvRuntimeUnloadAllModules( void );

/* All sorts with live objects, or all live objects, of all modules, in a new vector owned by the caller; null unless the
 * object database is on. */
QV_API QV_VECTOR *qvRuntimeSnapshotSorts( void );
QV_API QV_VECTOR *qvRuntimeSnapshotObjects( void );

/* The product that the library is built into. Strings and the time are owned by the caller. */
QV_API QV_INT qvRuntimeVersionProductVersionMajor( void );
QV_API QV_INT qvRuntimeVersionProductVersionMinor( void );
QV_API QV_INT qvRuntimeVersionProductVersionRelease( void );
QV_API QV_STRING *qvRuntimeVersionProductVersion( void );
QV_API QV_STRING *qvRuntimeVersionProductName( void );
QV_API QV_STRING *qvRuntimeVersionProductFriendlyName( void );
QV_API QV_STRING *qvRuntimeVersionProductVendorName( void );
QV_API QV_STRING *qvRuntimeVersionProductCopyright( void );
QV_API QV_TIME *qvRuntimeVersionProductBuildTime( void );

/* What the host said of itself at startup: a new string owned by the caller, or null if not given. */
QV_API QV_STRING *qvRuntimeVersionApplicationIdentifier( void );
QV_API QV_STRING *qvRuntimeVersionApplicationFriendlyName( void );
QV_API QV_STRING *qvRuntimeVersionApplicationVersion( void );
QV_API QV_BOOL qvRuntimeVersionApplicationHasIdentifier( void );
QV_API QV_BOOL qvRuntimeVersionApplicationHasFriendlyName( void );
QV_API QV_BOOL qvRuntimeVersionApplicationHasVersion( void );

/* Rules for product data. Lengths are in characters.
 * Product name: 1 to 32 of a-z and, but for the first, 0-9.
 * Friendly name: 1 to 100 of A-Z, a-z, 0-9 and single inner blanks.
 * Version: three non-negative decimal integers separated by ".".
 * Vendor name: as the friendly name, and "-".
 * Copyright: as the vendor name, and ":;(),.@".
 * Module name: as qvModuleNameOk. */
QV_API QV_BOOL qvRuntimeValidateProductName( QV_STRING *text );
QV_API QV_BOOL qvRuntimeValidateProductFriendlyName( QV_STRING *text );
QV_API QV_BOOL qvRuntimeValidateProductVersion( QV_STRING *text );
QV_API QV_BOOL qvRuntimeValidateProductVendorName( QV_STRING *text );
QV_API QV_BOOL qvRuntimeValidateProductCopyright( QV_STRING *text );
QV_API QV_BOOL qvRuntimeValidateModuleName( QV_STRING *text );

QV_END_DECLS

#endif
