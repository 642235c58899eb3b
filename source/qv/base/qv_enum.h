#ifndef QV_BASE_QV_ENUM_H
#define QV_BASE_QV_ENUM_H

/* Enumerations: tables between upper-case names and numbers of 0 or more. A value with copy-on-write.
 *
 * A name is a string, a byte string or a wide string with a length of -1 up to the terminator. Setting or
 * deleting a name that fails qvNameUpperCaseOk( name, QV_TRUE ) stops the process; looking one up doesn't. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_ENUM, qvEnum )

/* A new enumeration without names. */
QV_API QV_ENUM *qvEnumCreate( void );

/* A new enumeration with the names and values of source. */
QV_API QV_ENUM *qvEnumCreateFrom( QV_ENUM *source );

/* The names in name order, a new vector of strings. */
QV_API QV_VECTOR *qvEnumEnumerantsVector( QV_ENUM *en );

/* The value of a name, -1 if there is no such name. */
QV_API QV_INT qvEnumEnumerant( QV_ENUM *en, QV_STRING *name );
QV_API QV_INT qvEnumEnumerantCstr( QV_ENUM *en, const char *name, QV_INT nameLength );
QV_API QV_INT qvEnumEnumerantWcstr( QV_ENUM *en, const wchar_t *name, QV_INT nameLength );

QV_API QV_BOOL qvEnumHasEnumerant( QV_ENUM *en, QV_STRING *name );
QV_API QV_BOOL qvEnumHasEnumerantCstr( QV_ENUM *en, const char *name, QV_INT nameLength );
QV_API QV_BOOL qvEnumHasEnumerantWcstr( QV_ENUM *en, const wchar_t *name, QV_INT nameLength );

/* Adds a name or replaces its value, 0 or more. Of several names of one value the latest is the one that
 * qvEnumGenerate gives. */
QV_API void qvEnumSetEnumerant( QV_ENUM **en, QV_STRING *name, QV_INT value );
QV_API void qvEnumSetEnumerantCstr( QV_ENUM **en, const char *name, QV_INT nameLength, QV_INT value );
QV_API void qvEnumSetEnumerantWcstr( QV_ENUM **en, const wchar_t *name, QV_INT nameLength, QV_INT value );

/* Removes a name, if it is there. Another name of the same value stays readable, but the value has no name
 * then. */
QV_API void qvEnumDelEnumerant( QV_ENUM **en, QV_STRING *name );
QV_API void qvEnumDelEnumerantCstr( QV_ENUM **en, const char *name, QV_INT nameLength );
QV_API void qvEnumDelEnumerantWcstr( QV_ENUM **en, const wchar_t *name, QV_INT nameLength );

/* The name of a value, which the caller must release; null if it has none. */
QV_API QV_STRING *qvEnumGenerate( QV_ENUM *en, QV_INT value );

/* The value that a text stands for: a name, or the number of a value that has a name (with base prefixes such
 * as 0x), white space around it ignored. -1 for everything else. */
QV_API QV_INT qvEnumParse( QV_ENUM *en, QV_STRING *name );

QV_END_DECLS

#endif
