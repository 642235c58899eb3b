#ifndef QV_RUNTIME_QV_MODULE_VERSION_H
#define QV_RUNTIME_QV_MODULE_VERSION_H

/* Versions of modules: immutable values of the form MAJOR[#INSERT].MINOR[#INSERT], ordered by these four numbers from the
 * left. An insert is a step between two numbers, 0 (and then not printed) to 999. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_MODULE_VERSION, qvModuleVersion )

/* A new version. major and minor are at least 0, the inserts lie in 0..999, and number * 1000 + insert must be a QV_INT;
 * otherwise the process stops. */
QV_API QV_MODULE_VERSION *qvModuleVersionCreate( QV_INT major, QV_INT majorInsert, QV_INT minor,
                                                 QV_INT minorInsert );

/* The version that a text gives, new; null if the text isn't one. Lengths are in bytes or wide characters, -1 up to the
 * terminator. */
QV_API QV_MODULE_VERSION *qvModuleVersionTryCreateFromString( QV_STRING *text );
QV_API QV_MODULE_VERSION *qvModuleVersionTryCreateFromCstr( const char *str, QV_INT length );
QV_API QV_MODULE_VERSION *qvModuleVersionTryCreateFromWcstr( const wchar_t *str, QV_INT length );

QV_API QV_INT qvModuleVersionMajor( QV_MODULE_VERSION *version );
QV_API QV_INT qvModuleVersionMajorInsert( QV_MODULE_VERSION *version );
QV_API QV_INT qvModuleVersionMinor( QV_MODULE_VERSION *version );
QV_API QV_INT qvModuleVersionMinorInsert( QV_MODULE_VERSION *version );

/* major * 1000 + majorInsert: versions with the same number are compatible. */
QV_API QV_INT qvModuleVersionCompatibility( QV_MODULE_VERSION *version );

QV_END_DECLS

#endif
