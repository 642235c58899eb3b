#ifndef QV_BASE_QV_STORE_H
#define QV_BASE_QV_STORE_H

/* Stores: trees of named texts and named substores, copy-on-write. An entry stands under an address and is
 * either a value, a text with a hint of what it was made from, or a substore. One address holds one entry:
 * setting either kind replaces what stood there.
 *
 * The entries of a plain store stand in ascending order of their addresses. A store whose hints have
 * QV_STORE_HINT_ARRAY_MANAGED is an array: its entries stand by position, and their addresses are the
 * positions in decimal, zero-padded to the width of the last one. Editing an array by address turns it into a
 * plain store that keeps QV_STORE_HINT_ARRAY; inserting by position turns a plain store into an array, in the
 * order of its addresses.
 *
 * An address is a non-empty text of ASCII letters, ASCII digits, "_", "-" and "."; there are no paths. Any
 * other address stops the process, so test text from outside with qvStoreAddressOk. An address under which
 * nothing stands is never a fault. Null handles stop the process.
 *
 * Functions by address come in six forms of the address: a string; a UTF-8 byte string (Cstr) and a wide
 * string (Wcstr) with a length, -1 up to the terminator; and a format with its arguments, which stand last,
 * as a string (Format), a byte string (FormatCstr) and a wide string (FormatWcstr).
 *
 * Functions that edit take the address of the caller's handle and may replace the handle by a private copy.
 * Arguments are borrowed; the caller owns what a function returns. */

#include <wchar.h>

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* Word of hints of a store. */
typedef QV_INT QV_STORE_HINTS;
/* The store is an array: encoders write its entries by position and drop the addresses. */
#define QV_STORE_HINT_ARRAY 1
/* The addresses follow from the positions. Counts only beside QV_STORE_HINT_ARRAY. */
#define QV_STORE_HINT_ARRAY_MANAGED 2

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STORE, qvStore )

/* The hints without unknown bits; 0 when QV_STORE_HINT_ARRAY is missing. */
QV_API QV_STORE_HINTS qvStoreHintsNormalize( QV_STORE_HINTS hints );

/* Parses the names of hints as a flag set prints them, and normalizes. What is no name adds nothing. */
QV_API QV_STORE_HINTS qvStoreHintsFromString( QV_STRING *qvs );

/* The names of the normalized hints. */
QV_API QV_STRING *qvStoreHintsToString( QV_STORE_HINTS hints );

/* True for a non-empty string of ASCII letters, ASCII digits, "_", "-" and ".". */
QV_API QV_BOOL qvStoreAddressOk( QV_STRING *address );

/* An empty plain store. */
QV_API QV_STORE *qvStoreCreate( void );

/* An empty array. */
QV_API QV_STORE *qvStoreCreateArray( void );

/* An empty store with the normalized hints. */
QV_API QV_STORE *qvStoreCreateWithHints( QV_STORE_HINTS hints );

/* A new store with the same hints, entries and location; the entries are shared until one side edits them. */
QV_API QV_STORE *qvStoreCreateFrom( QV_STORE *source );

/* The hints, always normalized. */
QV_API QV_STORE_HINTS qvStoreHints( QV_STORE *store );

/* Sets the normalized hints. When QV_STORE_HINT_ARRAY_MANAGED comes, the entries become an array in the
 * order of their addresses; when it goes, they get the addresses that they had in the array. */
QV_API void qvStoreSetHints( QV_STORE **store, QV_STORE_HINTS hints );

/* Removes all entries; hints and location stay. */
QV_API void qvStoreClear( QV_STORE **store );

/* Number of entries, values and substores together. */
QV_API QV_INT qvStoreLength( QV_STORE *store );

/* The address of the entry at a position, 0 to length - 1; any other position stops the process. */
QV_API QV_STRING *qvStoreAddressAt( QV_STORE *store, QV_INT idx );

/* Where the store was read from, or null. */
QV_API QV_LOCATION *qvStoreLocation( QV_STORE *store );

/* True if the store has a location. */
QV_API QV_BOOL qvStoreHasLocation( QV_STORE *store );

/* Sets the location of the store itself, not of its entries. */
QV_API void qvStoreSetLocation( QV_STORE **store, QV_LOCATION *location );

/* Removes the location of the store itself. */
QV_API void qvStoreDelLocation( QV_STORE **store );

/* By address */

/* True if an entry of either kind stands at the address. */
QV_API QV_BOOL qvStoreHasAddress( QV_STORE *store, QV_STRING *address );
QV_API QV_BOOL qvStoreHasAddressCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasAddressWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasAddressFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreHasAddressFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreHasAddressFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength,
                                             ... );

/* The text of the value at the address; null when nothing or a substore stands there. */
QV_API QV_STRING *qvStoreValue( QV_STORE *store, QV_STRING *address );
QV_API QV_STRING *qvStoreValueCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_STRING *qvStoreValueWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_STRING *qvStoreValueFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_STRING *qvStoreValueFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_STRING *qvStoreValueFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength, ... );

/* True only when a value stands at the address that was set as a null. */
QV_API QV_BOOL qvStoreValueNull( QV_STORE *store, QV_STRING *address );
QV_API QV_BOOL qvStoreValueNullCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreValueNullWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreValueNullFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreValueNullFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreValueNullFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength,
                                            ... );

/* Reads the text at the address as a truth value: "true" or "false" in any case, or a number, of which
 * only 0 is false. The whole text must be read. Otherwise, and when no value stands there, the result is
 * false and out becomes false. */
QV_API QV_BOOL qvStoreValueBool( QV_STORE *store, QV_BOOL *out, QV_STRING *address );
QV_API QV_BOOL qvStoreValueBoolCstr( QV_STORE *store, QV_BOOL *out, const char *address,
                                     QV_INT addressLength );
QV_API QV_BOOL qvStoreValueBoolWcstr( QV_STORE *store, QV_BOOL *out, const wchar_t *address,
                                      QV_INT addressLength );
QV_API QV_BOOL qvStoreValueBoolFormat( QV_STORE *store, QV_BOOL *out, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreValueBoolFormatCstr( QV_STORE *store, QV_BOOL *out, const char *format,
                                           QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreValueBoolFormatWcstr( QV_STORE *store, QV_BOOL *out, const wchar_t *format,
                                            QV_INT formatLength, ... );

/* Reads the text at the address as an integer in the base that its prefix tells, 10 without one. The whole
 * text must be read. Otherwise, and when no value stands there, the result is false and out becomes -1. */
QV_API QV_BOOL qvStoreValueInt( QV_STORE *store, QV_INT *out, QV_STRING *address );
QV_API QV_BOOL qvStoreValueIntCstr( QV_STORE *store, QV_INT *out, const char *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreValueIntWcstr( QV_STORE *store, QV_INT *out, const wchar_t *address,
                                     QV_INT addressLength );
QV_API QV_BOOL qvStoreValueIntFormat( QV_STORE *store, QV_INT *out, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreValueIntFormatCstr( QV_STORE *store, QV_INT *out, const char *format,
                                          QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreValueIntFormatWcstr( QV_STORE *store, QV_INT *out, const wchar_t *format,
                                           QV_INT formatLength, ... );

/* Reads the text at the address as a real with "." or "," as its point and no exponent. The whole text
 * must be read. Otherwise, and when no value stands there, the result is false and out becomes 0.0. */
QV_API QV_BOOL qvStoreValueReal( QV_STORE *store, double *out, QV_STRING *address );
QV_API QV_BOOL qvStoreValueRealCstr( QV_STORE *store, double *out, const char *address,
                                     QV_INT addressLength );
QV_API QV_BOOL qvStoreValueRealWcstr( QV_STORE *store, double *out, const wchar_t *address,
                                      QV_INT addressLength );
QV_API QV_BOOL qvStoreValueRealFormat( QV_STORE *store, double *out, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreValueRealFormatCstr( QV_STORE *store, double *out, const char *format,
                                           QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreValueRealFormatWcstr( QV_STORE *store, double *out, const wchar_t *format,
                                            QV_INT formatLength, ... );

/* True if a value stands at the address. */
QV_API QV_BOOL qvStoreHasValue( QV_STORE *store, QV_STRING *address );
QV_API QV_BOOL qvStoreHasValueCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasValueWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasValueFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreHasValueFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreHasValueFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength, ... );

/* The substore at the address; null when nothing or a value stands there. Editing it leaves this store as
 * it is: set it back with qvStoreSetStore. */
QV_API QV_STORE *qvStoreStore( QV_STORE *store, QV_STRING *address );
QV_API QV_STORE *qvStoreStoreCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_STORE *qvStoreStoreWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_STORE *qvStoreStoreFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_STORE *qvStoreStoreFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_STORE *qvStoreStoreFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength, ... );

/* True if a substore stands at the address. */
QV_API QV_BOOL qvStoreHasStore( QV_STORE *store, QV_STRING *address );
QV_API QV_BOOL qvStoreHasStoreCstr( QV_STORE *store, const char *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasStoreWcstr( QV_STORE *store, const wchar_t *address, QV_INT addressLength );
QV_API QV_BOOL qvStoreHasStoreFormat( QV_STORE *store, QV_STRING *format, ... );
QV_API QV_BOOL qvStoreHasStoreFormatCstr( QV_STORE *store, const char *format, QV_INT formatLength, ... );
QV_API QV_BOOL qvStoreHasStoreFormatWcstr( QV_STORE *store, const wchar_t *format, QV_INT formatLength, ... );

/* Sets a text. In the format forms the value stands between the format and its arguments, here and below. */
QV_API void qvStoreSetValue( QV_STORE **store, QV_STRING *address, QV_STRING *value );
QV_API void qvStoreSetValueCstr( QV_STORE **store, const char *address, QV_INT addressLength,
                                 QV_STRING *value );
QV_API void qvStoreSetValueWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                                  QV_STRING *value );
QV_API void qvStoreSetValueFormat( QV_STORE **store, QV_STRING *format, QV_STRING *value, ... );
QV_API void qvStoreSetValueFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength,
                                       QV_STRING *value, ... );
QV_API void qvStoreSetValueFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                        QV_STRING *value, ... );

/* Sets a null, whose text is empty. */
QV_API void qvStoreSetValueNull( QV_STORE **store, QV_STRING *address );
QV_API void qvStoreSetValueNullCstr( QV_STORE **store, const char *address, QV_INT addressLength );
QV_API void qvStoreSetValueNullWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength );
QV_API void qvStoreSetValueNullFormat( QV_STORE **store, QV_STRING *format, ... );
QV_API void qvStoreSetValueNullFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength, ... );
QV_API void qvStoreSetValueNullFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                            ... );

/* Sets a truth value, whose text is "true" or "false". */
QV_API void qvStoreSetValueBool( QV_STORE **store, QV_STRING *address, QV_BOOL value );
QV_API void qvStoreSetValueBoolCstr( QV_STORE **store, const char *address, QV_INT addressLength,
                                     QV_BOOL value );
QV_API void qvStoreSetValueBoolWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                                      QV_BOOL value );
QV_API void qvStoreSetValueBoolFormat( QV_STORE **store, QV_STRING *format, QV_BOOL value, ... );
QV_API void qvStoreSetValueBoolFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength,
                                           QV_BOOL value, ... );
QV_API void qvStoreSetValueBoolFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                            QV_BOOL value, ... );

/* Sets an integer, whose text is its decimal digits. */
QV_API void qvStoreSetValueInt( QV_STORE **store, QV_STRING *address, QV_INT value );
QV_API void qvStoreSetValueIntCstr( QV_STORE **store, const char *address, QV_INT addressLength,
                                    QV_INT value );
QV_API void qvStoreSetValueIntWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                                     QV_INT value );
QV_API void qvStoreSetValueIntFormat( QV_STORE **store, QV_STRING *format, QV_INT value, ... );
QV_API void qvStoreSetValueIntFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength,
                                          QV_INT value, ... );
QV_API void qvStoreSetValueIntFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                           QV_INT value, ... );

/* Sets a real, whose text has six fraction digits, cut and not rounded, and no exponent; "NAN" and "INF"
 * don't read as reals again. */
QV_API void qvStoreSetValueReal( QV_STORE **store, QV_STRING *address, double value );
QV_API void qvStoreSetValueRealCstr( QV_STORE **store, const char *address, QV_INT addressLength,
                                     double value );
QV_API void qvStoreSetValueRealWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                                      double value );
QV_API void qvStoreSetValueRealFormat( QV_STORE **store, QV_STRING *format, double value, ... );
QV_API void qvStoreSetValueRealFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength,
                                           double value, ... );
QV_API void qvStoreSetValueRealFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                            double value, ... );

/* Sets a substore. */
QV_API void qvStoreSetStore( QV_STORE **store, QV_STRING *address, QV_STORE *subStore );
QV_API void qvStoreSetStoreCstr( QV_STORE **store, const char *address, QV_INT addressLength,
                                 QV_STORE *subStore );
QV_API void qvStoreSetStoreWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength,
                                  QV_STORE *subStore );
QV_API void qvStoreSetStoreFormat( QV_STORE **store, QV_STRING *format, QV_STORE *subStore, ... );
QV_API void qvStoreSetStoreFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength,
                                       QV_STORE *subStore, ... );
QV_API void qvStoreSetStoreFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength,
                                        QV_STORE *subStore, ... );

/* Removes the entry at the address, if one stands there. An array becomes a plain store in either case. */
QV_API void qvStoreDel( QV_STORE **store, QV_STRING *address );
QV_API void qvStoreDelCstr( QV_STORE **store, const char *address, QV_INT addressLength );
QV_API void qvStoreDelWcstr( QV_STORE **store, const wchar_t *address, QV_INT addressLength );
QV_API void qvStoreDelFormat( QV_STORE **store, QV_STRING *format, ... );
QV_API void qvStoreDelFormatCstr( QV_STORE **store, const char *format, QV_INT formatLength, ... );
QV_API void qvStoreDelFormatWcstr( QV_STORE **store, const wchar_t *format, QV_INT formatLength, ... );

/* By position: idx is 0 to length - 1, any other stops the process. Setting keeps the form of the store and
 * the address. */

/* The text of the value at the position, null for a substore. */
QV_API QV_STRING *qvStoreValueAt( QV_STORE *store, QV_INT idx );

/* True only for a value that was set as a null. */
QV_API QV_BOOL qvStoreValueNullAt( QV_STORE *store, QV_INT idx );

/* Reads a text as qvStoreValueBool does. A substore gives false and leaves out as it is, here and with the
 * other two. */
QV_API QV_BOOL qvStoreValueBoolAt( QV_STORE *store, QV_BOOL *out, QV_INT idx );

/* Reads a text as qvStoreValueInt does. */
QV_API QV_BOOL qvStoreValueIntAt( QV_STORE *store, QV_INT *out, QV_INT idx );

/* Reads a text as qvStoreValueReal does. */
QV_API QV_BOOL qvStoreValueRealAt( QV_STORE *store, double *out, QV_INT idx );

/* The substore at the position, null for a value. */
QV_API QV_STORE *qvStoreStoreAt( QV_STORE *store, QV_INT idx );

/* True if the entry is a value. */
QV_API QV_BOOL qvStoreHasValueAt( QV_STORE *store, QV_INT idx );

/* True if the entry is a substore. */
QV_API QV_BOOL qvStoreHasStoreAt( QV_STORE *store, QV_INT idx );

/* Replaces the entry by a text. */
QV_API void qvStoreSetValueAt( QV_STORE **store, QV_INT idx, QV_STRING *value );

/* Replaces the entry by a null. */
QV_API void qvStoreSetValueNullAt( QV_STORE **store, QV_INT idx );

/* Replaces the entry by a truth value. */
QV_API void qvStoreSetValueBoolAt( QV_STORE **store, QV_INT idx, QV_BOOL value );

/* Replaces the entry by an integer. */
QV_API void qvStoreSetValueIntAt( QV_STORE **store, QV_INT idx, QV_INT value );

/* Replaces the entry by a real. */
QV_API void qvStoreSetValueRealAt( QV_STORE **store, QV_INT idx, double value );

/* Replaces the entry by a substore. */
QV_API void qvStoreSetStoreAt( QV_STORE **store, QV_INT idx, QV_STORE *subStore );

/* Removes the entry; later ones of an array move one position down. */
QV_API void qvStoreDelAt( QV_STORE **store, QV_INT idx );

/* Editing as an array, which the store becomes if it is none. */

/* Inserts a text in front of all entries. */
QV_API void qvStorePrependValue( QV_STORE **store, QV_STRING *value );

/* Inserts a null in front of all entries. */
QV_API void qvStorePrependValueNull( QV_STORE **store );

/* Inserts a truth value in front of all entries. */
QV_API void qvStorePrependValueBool( QV_STORE **store, QV_BOOL value );

/* Inserts an integer in front of all entries. */
QV_API void qvStorePrependValueInt( QV_STORE **store, QV_INT value );

/* Inserts a real in front of all entries. */
QV_API void qvStorePrependValueReal( QV_STORE **store, double value );

/* Inserts a substore in front of all entries. */
QV_API void qvStorePrependStore( QV_STORE **store, QV_STORE *subStore );

/* Inserts a text behind all entries. */
QV_API void qvStoreAppendValue( QV_STORE **store, QV_STRING *value );

/* Inserts a null behind all entries. */
QV_API void qvStoreAppendValueNull( QV_STORE **store );

/* Inserts a truth value behind all entries. */
QV_API void qvStoreAppendValueBool( QV_STORE **store, QV_BOOL value );

/* Inserts an integer behind all entries. */
QV_API void qvStoreAppendValueInt( QV_STORE **store, QV_INT value );

/* Inserts a real behind all entries. */
QV_API void qvStoreAppendValueReal( QV_STORE **store, double value );

/* Inserts a substore behind all entries. */
QV_API void qvStoreAppendStore( QV_STORE **store, QV_STORE *subStore );

/* Inserts a text in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertValue( QV_STORE **store, QV_INT idx, QV_STRING *value );

/* Inserts a null in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertValueNull( QV_STORE **store, QV_INT idx );

/* Inserts a truth value in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertValueBool( QV_STORE **store, QV_INT idx, QV_BOOL value );

/* Inserts an integer in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertValueInt( QV_STORE **store, QV_INT idx, QV_INT value );

/* Inserts a real in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertValueReal( QV_STORE **store, QV_INT idx, double value );

/* Inserts a substore in front of the entry at idx, which is 0 to length. */
QV_API void qvStoreInsertStore( QV_STORE **store, QV_INT idx, QV_STORE *subStore );

QV_END_DECLS

#endif
