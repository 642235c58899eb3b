#ifndef QV_BASE_QV_FLAGSET_H
#define QV_BASE_QV_FLAGSET_H

/* Flag sets: names for the bits of a 64-bit word. A value with copy-on-write.
 *
 * A name is a string, a byte string or a wide string with a length of -1 up to the terminator. Setting or
 * deleting a name that fails qvNameUpperCaseOk( name, QV_TRUE ) stops the process; looking one up doesn't. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_FLAGSET, qvFlagset )

/* A new flag set without names. */
QV_API QV_FLAGSET *qvFlagsetCreate( void );

/* A new flag set with the names and values of source. */
QV_API QV_FLAGSET *qvFlagsetCreateFrom( QV_FLAGSET *source );

/* The names in name order, a new vector of strings. */
QV_API QV_VECTOR *qvFlagsetFlagsVector( QV_FLAGSET *fs );

/* The value of a name, 0 if there is no such name. */
QV_API QV_INT qvFlagsetFlag( QV_FLAGSET *fs, QV_STRING *name );
QV_API QV_INT qvFlagsetFlagCstr( QV_FLAGSET *fs, const char *name, QV_INT nameLength );
QV_API QV_INT qvFlagsetFlagWcstr( QV_FLAGSET *fs, const wchar_t *name, QV_INT nameLength );

QV_API QV_BOOL qvFlagsetHasFlag( QV_FLAGSET *fs, QV_STRING *name );
QV_API QV_BOOL qvFlagsetHasFlagCstr( QV_FLAGSET *fs, const char *name, QV_INT nameLength );
QV_API QV_BOOL qvFlagsetHasFlagWcstr( QV_FLAGSET *fs, const wchar_t *name, QV_INT nameLength );

/* Adds a name or replaces its value, a word with exactly one bit set. Of several names of one bit the latest
 * is the one that qvFlagsetGenerate gives. */
QV_API void qvFlagsetSetFlag( QV_FLAGSET **fs, QV_STRING *name, QV_INT value );
QV_API void qvFlagsetSetFlagCstr( QV_FLAGSET **fs, const char *name, QV_INT nameLength, QV_INT value );
QV_API void qvFlagsetSetFlagWcstr( QV_FLAGSET **fs, const wchar_t *name, QV_INT nameLength, QV_INT value );

/* Removes a name, if it is there. Its bit has no name then. */
QV_API void qvFlagsetDelFlag( QV_FLAGSET **fs, QV_STRING *name );
QV_API void qvFlagsetDelFlagCstr( QV_FLAGSET **fs, const char *name, QV_INT nameLength );
QV_API void qvFlagsetDelFlagWcstr( QV_FLAGSET **fs, const wchar_t *name, QV_INT nameLength );

/* The names of the flags joined by "|", from the lowest bit up, a new string; empty for 0. A bit without a
 * name stops the process. */
QV_API QV_STRING *qvFlagsetGenerate( QV_FLAGSET *fs, QV_INT flags );

/* The word that a text of parts joined by "|" stands for, white space around each part ignored. A name adds
 * its value, a number those of its bits that have names, a part that only begins with a number that number,
 * anything else nothing. */
QV_API QV_INT qvFlagsetParse( QV_FLAGSET *fs, QV_STRING *flags );

QV_END_DECLS

#endif
