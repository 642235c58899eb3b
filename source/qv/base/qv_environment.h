#ifndef QV_BASE_QV_ENVIRONMENT_H
#define QV_BASE_QV_ENVIRONMENT_H

/* Environments: named text variables, as a process has them, as a value with copy-on-write. Functions that edit
 * take the address of the caller's handle and put a private copy there if the record is shared.
 *
 * Case doesn't matter in names: two names that are the same after case folding are one variable, and the form
 * that was set last is the one given out. Variables stand in ascending order of the code points of their folded
 * names. Names and values may be any text, also an empty one.
 *
 * Null handles, names and values and positions outside 0 to length - 1 stop the process; unknown names don't. The
 * caller owns the objects that a function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_ENVIRONMENT, qvEnvironment )

/* A new environment without variables. */
QV_API QV_ENVIRONMENT *qvEnvironmentCreate( void );

/* A new environment with the variables of envi. */
QV_API QV_ENVIRONMENT *qvEnvironmentCreateFrom( QV_ENVIRONMENT *envi );

/* The number of variables. */
QV_API QV_INT qvEnvironmentVariablesLength( QV_ENVIRONMENT *envi );

/* By position. Setting the value keeps the name. */
QV_API QV_STRING *qvEnvironmentVariableNameAt( QV_ENVIRONMENT *envi, QV_INT idx );
QV_API QV_STRING *qvEnvironmentVariableValueAt( QV_ENVIRONMENT *envi, QV_INT idx );
QV_API void qvEnvironmentSetVariableValueAt( QV_ENVIRONMENT **envi, QV_INT idx, QV_STRING *value );
QV_API void qvEnvironmentDelVariableAt( QV_ENVIRONMENT **envi, QV_INT idx );

/* Removes all variables. */
QV_API void qvEnvironmentClearVariables( QV_ENVIRONMENT **envi );

/* Adds the variables of src; where both have one, the name and the value of src win. */
QV_API void qvEnvironmentInclude( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src );

/* By name. Byte text is UTF-8; nameLength is in bytes or wide characters, -1 up to the terminator. */

/* The value, or null if there is no such variable. */
QV_API QV_STRING *qvEnvironmentVariable( QV_ENVIRONMENT *envi, QV_STRING *name );
QV_API QV_STRING *qvEnvironmentVariableCstr( QV_ENVIRONMENT *envi, const char *name, QV_INT nameLength );
QV_API QV_STRING *qvEnvironmentVariableWcstr( QV_ENVIRONMENT *envi, const wchar_t *name, QV_INT nameLength );

/* True if there is such a variable. */
QV_API QV_BOOL qvEnvironmentHasVariable( QV_ENVIRONMENT *envi, QV_STRING *name );
QV_API QV_BOOL qvEnvironmentHasVariableCstr( QV_ENVIRONMENT *envi, const char *name, QV_INT nameLength );
QV_API QV_BOOL qvEnvironmentHasVariableWcstr( QV_ENVIRONMENT *envi, const wchar_t *name, QV_INT nameLength );

/* Adds a variable, or replaces the name and the value of the one that is there. */
QV_API void qvEnvironmentSetVariable( QV_ENVIRONMENT **envi, QV_STRING *name, QV_STRING *value );
QV_API void qvEnvironmentSetVariableCstr( QV_ENVIRONMENT **envi, const char *name, QV_INT nameLength,
                                          QV_STRING *value );
QV_API void qvEnvironmentSetVariableWcstr( QV_ENVIRONMENT **envi, const wchar_t *name, QV_INT nameLength,
                                           QV_STRING *value );

/* Removes a variable, if it is there. */
QV_API void qvEnvironmentDelVariable( QV_ENVIRONMENT **envi, QV_STRING *name );
QV_API void qvEnvironmentDelVariableCstr( QV_ENVIRONMENT **envi, const char *name, QV_INT nameLength );
QV_API void qvEnvironmentDelVariableWcstr( QV_ENVIRONMENT **envi, const wchar_t *name, QV_INT nameLength );

/* Makes *dest agree with src on one variable: sets it, under the name as it is given here, or removes it if src
 * has none. */
QV_API void qvEnvironmentCopyVariable( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, QV_STRING *name );
QV_API void qvEnvironmentCopyVariableCstr( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, const char *name,
                                           QV_INT nameLength );
QV_API void qvEnvironmentCopyVariableWcstr( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, const wchar_t *name,
                                            QV_INT nameLength );

/* A vector of strings "NAME=value" in the order of the variables. */
QV_API QV_VECTOR *qvEnvironmentConvertToStringVector( QV_ENVIRONMENT *envi );

/* A new environment from strings "NAME=value", each cut at its first "="; white space around the name goes, the
 * value stays as it is. Of equal names the last one wins; strings without "=" are skipped. An element that is no
 * string stops the process. */
QV_API QV_ENVIRONMENT *qvEnvironmentConvertFromStringVector( QV_VECTOR *vec );

/* A store: an array with one substore a variable, each with the values "name" and "value". */
QV_API QV_STORE *qvEnvironmentStore( QV_ENVIRONMENT *envi );

/* A new environment from the entries of a store, array or not. Entries that aren't substores with both values are
 * skipped; of equal names the last one wins. */
QV_API QV_ENVIRONMENT *qvEnvironmentRestore( QV_STORE *store );

QV_END_DECLS

#endif
