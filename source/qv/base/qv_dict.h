#ifndef QV_BASE_QV_DICT_H
#define QV_BASE_QV_DICT_H

/* Dictionaries: maps from object to object as a sorted array of pairs, with copy-on-write.
 *
 * The pairs stand in ascending order of their keys under qvObjCompare, and no two keys compare equal. Keys of
 * one sort stand together. Keys and values are never null; null, bool, integer and real keys are boxed
 * objects.
 *
 * An editing function takes the address of the caller's handle. It edits the record in place if the caller
 * holds the only reference, otherwise it puts a new record into the handle; other holders keep seeing the old
 * pairs. A null handle, dictionary, key or value and a position outside the dictionary stop the process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_DICT, qvDict )

/* The empty dictionary, one shared object. The caller owns the reference. */
QV_API QV_DICT *qvDictCreate( void );

/* A new record with the pairs of src. */
QV_API QV_DICT *qvDictCreateFrom( QV_DICT *src );

/* A new dictionary of the keys with the values at the same positions; of equal keys the first one and its
 * value stay. The vectors must have the same length. */
QV_API QV_DICT *qvDictCreateWithKeysAndValues( QV_VECTOR *keysVector, QV_VECTOR *valuesVector );

/* The number of pairs. */
QV_API QV_INT qvDictLength( QV_DICT *dict );

/* The key and the value at position idx, 0 to length - 1, in key order. The caller owns the reference. */
QV_API qvObj qvDictKeyAt( QV_DICT *dict, QV_INT idx );
QV_API qvObj qvDictValueAt( QV_DICT *dict, QV_INT idx );

/* All keys or all values in key order, as a new vector; the shared empty vector for an empty dictionary. */
QV_API QV_VECTOR *qvDictKeysVector( QV_DICT *dict );
QV_API QV_VECTOR *qvDictValuesVector( QV_DICT *dict );

/* Replaces the value at position idx, or deletes the pair there. */
QV_API void qvDictSetValueAt( QV_DICT **dict, QV_INT idx, qvObj value );
QV_API void qvDictDelAt( QV_DICT **dict, QV_INT idx );

/* Deletes every pair whose value is value itself, or with byValue compares equal to it. */
QV_API void qvDictDelValue( QV_DICT **dict, qvObj value, QV_BOOL byValue );

/* The key functions, five for each kind of key:
 *
 * qvDict...Key         the value of the key, owned by the caller; null if the key is absent.
 * qvDictHas...Key      whether the key is present.
 * qvDictSet...Key      adds the pair, or replaces both the key and the value of an equal key.
 * qvDictDel...Key      deletes the pair; an absent key leaves even a shared dictionary as it is.
 * qvDictIndexOf...Key  the position of the key, -1 if it is absent. */

/* Any object is a key. */
QV_API qvObj qvDictObjKey( QV_DICT *dict, qvObj key );
QV_API QV_BOOL qvDictHasObjKey( QV_DICT *dict, qvObj key );
QV_API void qvDictSetObjKey( QV_DICT **dict, qvObj key, qvObj value );
QV_API void qvDictDelObjKey( QV_DICT **dict, qvObj key );
QV_API QV_INT qvDictIndexOfObjKey( QV_DICT *dict, qvObj key );

/* The boxed null. */
QV_API qvObj qvDictNullKey( QV_DICT *dict );
QV_API QV_BOOL qvDictHasNullKey( QV_DICT *dict );
QV_API void qvDictSetNullKey( QV_DICT **dict, qvObj value );
QV_API void qvDictDelNullKey( QV_DICT **dict );
QV_API QV_INT qvDictIndexOfNullKey( QV_DICT *dict );

/* A boxed bool. */
QV_API qvObj qvDictBoolKey( QV_DICT *dict, QV_BOOL key );
QV_API QV_BOOL qvDictHasBoolKey( QV_DICT *dict, QV_BOOL key );
QV_API void qvDictSetBoolKey( QV_DICT **dict, QV_BOOL key, qvObj value );
QV_API void qvDictDelBoolKey( QV_DICT **dict, QV_BOOL key );
QV_API QV_INT qvDictIndexOfBoolKey( QV_DICT *dict, QV_BOOL key );

/* A boxed integer. */
QV_API qvObj qvDictIntKey( QV_DICT *dict, QV_INT key );
QV_API QV_BOOL qvDictHasIntKey( QV_DICT *dict, QV_INT key );
QV_API void qvDictSetIntKey( QV_DICT **dict, QV_INT key, qvObj value );
QV_API void qvDictDelIntKey( QV_DICT **dict, QV_INT key );
QV_API QV_INT qvDictIndexOfIntKey( QV_DICT *dict, QV_INT key );

/* A boxed real. */
QV_API qvObj qvDictRealKey( QV_DICT *dict, double key );
QV_API QV_BOOL qvDictHasRealKey( QV_DICT *dict, double key );
QV_API void qvDictSetRealKey( QV_DICT **dict, double key, qvObj value );
QV_API void qvDictDelRealKey( QV_DICT **dict, double key );
QV_API QV_INT qvDictIndexOfRealKey( QV_DICT *dict, double key );

/* A sort itself. */
QV_API qvObj qvDictSortKey( QV_DICT *dict, QV_SORT *key );
QV_API QV_BOOL qvDictHasSortKey( QV_DICT *dict, QV_SORT *key );
QV_API void qvDictSetSortKey( QV_DICT **dict, QV_SORT *key, qvObj value );
QV_API void qvDictDelSortKey( QV_DICT **dict, QV_SORT *key );
QV_API QV_INT qvDictIndexOfSortKey( QV_DICT *dict, QV_SORT *key );

/* An identifier. */
QV_API qvObj qvDictIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key );
QV_API QV_BOOL qvDictHasIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key );
QV_API void qvDictSetIdentifierKey( QV_DICT **dict, QV_IDENTIFIER *key, qvObj value );
QV_API void qvDictDelIdentifierKey( QV_DICT **dict, QV_IDENTIFIER *key );
QV_API QV_INT qvDictIndexOfIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key );

/* A string. */
QV_API qvObj qvDictStringKey( QV_DICT *dict, QV_STRING *key );
QV_API QV_BOOL qvDictHasStringKey( QV_DICT *dict, QV_STRING *key );
QV_API void qvDictSetStringKey( QV_DICT **dict, QV_STRING *key, qvObj value );
QV_API void qvDictDelStringKey( QV_DICT **dict, QV_STRING *key );
QV_API QV_INT qvDictIndexOfStringKey( QV_DICT *dict, QV_STRING *key );

/* A string made from UTF-8 text; length is in bytes, -1 up to the terminator. */
QV_API qvObj qvDictStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length );
QV_API QV_BOOL qvDictHasStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length );
QV_API void qvDictSetStringKeyCstr( QV_DICT **dict, const char *cstr, QV_INT length, qvObj value );
QV_API void qvDictDelStringKeyCstr( QV_DICT **dict, const char *cstr, QV_INT length );
QV_API QV_INT qvDictIndexOfStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length );

/* A string made from wide text; length is in wide characters, -1 up to the terminator. */
QV_API qvObj qvDictStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length );
QV_API QV_BOOL qvDictHasStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length );
QV_API void qvDictSetStringKeyWcstr( QV_DICT **dict, const wchar_t *wcstr, QV_INT length, qvObj value );
QV_API void qvDictDelStringKeyWcstr( QV_DICT **dict, const wchar_t *wcstr, QV_INT length );
QV_API QV_INT qvDictIndexOfStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length );

/* Adds the pairs of src. A key that is there already takes the value of src with replace set, and keeps its
 * own without. */
QV_API void qvDictInclude( QV_DICT **dest, QV_DICT *src, QV_BOOL replace );

/* Deletes the keys of src. */
QV_API void qvDictExclude( QV_DICT **dest, QV_DICT *src );

/* Keeps only the keys that src has too, with the values of src if replace is set. */
QV_API void qvDictIntersect( QV_DICT **dest, QV_DICT *src, QV_BOOL replace );

/* True if the two share no key. */
QV_API QV_BOOL qvDictDisjoint( QV_DICT *dictA, QV_DICT *dictB );

/* Puts the empty dictionary into the handle. */
QV_API void qvDictClear( QV_DICT **dict );

QV_END_DECLS

#endif
