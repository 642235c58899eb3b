#ifndef QV_RUNTIME_QV_RUNTIME_MODULES_HH
#define QV_RUNTIME_QV_RUNTIME_MODULES_HH

// The tables of loaded modules. Functions that expect the load monitor to be held must never be called without it: it
// isn't re-entrant, so the walk over dependencies and extensions goes through these and not through the public ones.

#include <qv/runtime/qv_runtime.h>

// Enters the library's own module as the first one. The time that an unloading module has for its objects is in
// milliseconds.
void qv___RuntimeModulesStartup( QV_INT unloadModuleTimeout );
void qv___RuntimeModulesShutdown();

// Loads a module that isn't loaded, or enters one into the tables, with what it depends on. The load monitor is held.
QV_BOOL qv___RuntimeTryLoadModule( QV_STRING *moduleName );
QV_BOOL qv___RuntimeTryRegisterModule( QV_MODULE *module, QV_BOOL fromLoad );

// Loads the extensions of all modules that haven't been asked for theirs yet. The load monitor is held.
void qv___RuntimeLoadModuleExtensions();

// Opens a module's shared object, which stays open for the rest of the process; null if there is no fitting one.
QV_MODULE *qv___RuntimePlatformLoadModule( QV_STRING *moduleName );

// Prints what keeps a module from unloading, as far as the snapshot flags ask for it.
void qv___RuntimeReportUnloading( QV_MODULE *module );

#endif
