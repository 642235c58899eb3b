#ifndef QV_RUNTIME_QV_MODULE_H
#define QV_RUNTIME_QV_MODULE_H

/* Modules: the library itself and what it was extended by. Module objects are static; they are objects too, ordered by
 * the byte order of their names, and never freed. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_MODULE, qvModule )

/* Whether a text may be a module's name: 1 to 32 characters; a-z anywhere, 0-9 anywhere but first, "_" anywhere but first
 * or last and never two in a row. */
QV_API QV_BOOL qvModuleNameOk( QV_STRING *moduleName );

/* New strings, owned by the caller. */
QV_API QV_STRING *qvModuleName( QV_MODULE *module );
QV_API QV_STRING *qvModuleDescription( QV_MODULE *module );

/* The module's version, owned by the caller. */
QV_API QV_MODULE_VERSION *qvModuleVersion( QV_MODULE *module );

/* The names of the modules that the module depends on, or that extend it: a new vector of strings. */
QV_API QV_VECTOR *qvModuleDependenciesModuleNamesVector( QV_MODULE *module );
QV_API QV_VECTOR *qvModuleExtensionsModuleNamesVector( QV_MODULE *module );

/* Whether the name is in one of the two lists. The name must be valid (qvModuleNameOk), else the process stops. */
QV_API QV_BOOL qvModuleHasDependency( QV_MODULE *module, QV_STRING *moduleName );
QV_API QV_BOOL qvModuleHasExtension( QV_MODULE *module, QV_STRING *moduleName );

/* The personality is an entry point by which a tool can run as this module. Running it requires one, and argv and out
 * not to be null; arg is passed on as it is. Returns what the personality returns. */
QV_API QV_BOOL qvModuleHasPersonality( QV_MODULE *module );
QV_API QV_BOOL qvModuleRunPersonality( QV_MODULE *module, QV_VECTOR *argv, QV_MESSAGE_SINK *out, void *arg );

/* The module's sorts with live objects, or its live objects, in a new vector owned by the caller; null unless the object
 * database is on. */
QV_API QV_VECTOR *qvModuleSnapshotSorts( QV_MODULE *module );
QV_API QV_VECTOR *qvModuleSnapshotObjects( QV_MODULE *module );

QV_END_DECLS

#endif
