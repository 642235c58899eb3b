#ifndef QV_BASE_QV_OPT_DEF_H
#define QV_BASE_QV_OPT_DEF_H

/* The definition of a program's options: which short and long options exist, and what each may do. A value with
 * copy-on-write: setters take the address of the caller's handle and put a private copy there if the record is
 * shared.
 *
 * The program gives each option an id of its own choosing, 0 or above. Several options may share one id, and then
 * share its flags. A null handle or string, and a negative id given to a setter, stop the process. */

#include <qv/base/qv_opt_flags.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Ids below 0 are the errors that users make; qvOptSeqError has the text. */
#define QV_OPT_ID_UNDEFINED      ( -1 ) /* no such option */
#define QV_OPT_ID_AMBIGUOUS      ( -2 ) /* an abbreviation that fits several long options */
#define QV_OPT_ID_ARG_MISSING    ( -3 ) /* an option that takes an argument has none */
#define QV_OPT_ID_ARG_DISALLOWED ( -4 ) /* "=" and an argument behind a long option that takes none */
#define QV_OPT_ID_MULTIPLE       ( -5 ) /* an option that may occur once occurs again */
#define QV_OPT_ID_ABBREVIATED    ( -6 ) /* a long option that must not be abbreviated is */
#define QV_OPT_ID_NON_OPTION     ( -7 ) /* an argument that is no option, where none is allowed */
#define QV_OPT_ID_END            ( -8 ) /* no error: only ignored options were left */

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_OPT_DEF, qvOptDef )

/* A new definition without options, which allows no arguments but those of options. */
QV_API QV_OPT_DEF *qvOptDefCreate( void );

/* A new definition with everything that def has. */
QV_API QV_OPT_DEF *qvOptDefCreateFrom( QV_OPT_DEF *def );

/* Whether elements that aren't strings come out behind all options, at first false. Strings that are no options
 * keep their places in any case. */
QV_API QV_BOOL qvOptDefReorder( QV_OPT_DEF *def );
QV_API void qvOptDefSetReorder( QV_OPT_DEF **def, QV_BOOL reorder );

/* Whether all elements are turned into their text forms before they are looked at, at first false. */
QV_API QV_BOOL qvOptDefStringize( QV_OPT_DEF *def );
QV_API void qvOptDefSetStringize( QV_OPT_DEF **def, QV_BOOL stringize );

/* The flags of all options with this id, 0 unless they were set. */
QV_API QV_OPT_FLAGS qvOptDefFlags( QV_OPT_DEF *def, QV_INT optId );
QV_API void qvOptDefSetFlags( QV_OPT_DEF **def, QV_INT optId, QV_OPT_FLAGS flags );

/* The id of the short option of this character, QV_OPT_ID_UNDEFINED if there is none. Setting replaces the id. */
QV_API QV_INT qvOptDefShortOpt( QV_OPT_DEF *def, QV_CHAR optChar );
QV_API void qvOptDefSetShortOpt( QV_OPT_DEF **def, QV_CHAR optChar, QV_INT optId );

/* The id of the long option of this name, without dashes; QV_OPT_ID_UNDEFINED if there is none. With
 * allowAbbreviation the beginning of a name will do as well, also an empty one: if several names begin so, and
 * none is exactly that, the result is QV_OPT_ID_AMBIGUOUS, even if they share one id. abbreviated may be null; it
 * becomes true if names were found by their beginning, else false. */
QV_API QV_INT qvOptDefLongOpt( QV_OPT_DEF *def, QV_STRING *optString, QV_BOOL allowAbbreviation,
                               QV_BOOL *abbreviated );

/* Adds a long option, or replaces its id. The name has no dashes in front; an empty one stops the process. Byte
 * text is UTF-8; optStringLength is in bytes or wide characters, -1 up to the terminator. */
QV_API void qvOptDefSetLongOpt( QV_OPT_DEF **def, QV_STRING *optString, QV_INT optId );
QV_API void qvOptDefSetLongOptCstr( QV_OPT_DEF **def, const char *optString, QV_INT optStringLength,
                                    QV_INT optId );
QV_API void qvOptDefSetLongOptWcstr( QV_OPT_DEF **def, const wchar_t *optString, QV_INT optStringLength,
                                     QV_INT optId );

/* The id that is reported for an argument that is no option. At first it is QV_OPT_ID_NON_OPTION, which makes
 * such arguments an error. The flags of this id play no part for such arguments. */
QV_API QV_INT qvOptDefArgOnly( QV_OPT_DEF *def );
QV_API void qvOptDefSetArgOnly( QV_OPT_DEF **def, QV_INT optId );

QV_END_DECLS

#endif
