#ifndef QV_CHARSET_QV_CHARSET_HH
#define QV_CHARSET_QV_CHARSET_HH

// The registry of the charsets, read-only between startup and shutdown.

#include <qv/charset/qv_charset.h>
#include <qv/runtime/qv_obj.hh>

extern QV_ENUM *qv___CharsetEnum;                    // names of constants
extern QV_DICT *qv___CharsetFromIanaNameDict;        // case-folded names and aliases to boxed integers
extern QV_DICT *qv___CharsetToIanaNameDict;          // boxed integers to preferred names
extern QV_DICT *qv___CharsetFromWindowsCodePageDict; // boxed integers to boxed integers
extern QV_DICT *qv___CharsetToWindowsCodePageDict;
extern QV_FLAGSET *qv___CharsetFlagsFlagset;

// Enter one charset into the registry. Texts are ASCII and zero-terminated; an entry that stands there
// already is overwritten.
void qv___CharsetRegisterCharset( QV_CHARSET cs, const char *enumerantName, const char *ianaName );
void qv___CharsetRegisterAlias( QV_CHARSET cs, const char *alias );
void qv___CharsetRegisterWindowsCodePage( QV_CHARSET cs, QV_INT codePage );

void qv___CharsetStartup();
void qv___CharsetShutdown();
void qv___CharsetFlagsStartup();
void qv___CharsetFlagsShutdown();

#endif
