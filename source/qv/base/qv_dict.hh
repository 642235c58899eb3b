#ifndef QV_BASE_QV_DICT_HH
#define QV_BASE_QV_DICT_HH

// The record of a dictionary, its inline readers and the internal functions.

#include <qv/base/qv_dict.h>
#include <qv/runtime/qv_author.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_obj.hh>

#define QV___DICT_INLINE 32

struct qv___DictPair
{
    qvObj key;
    qvObj val;
};

// Invariant: items[0] up to items[length - 1] are in strictly ascending order of their keys under
// qvObjCompare, and the dictionary owns one reference to each key and each value, none of them null. items is
// the inline store or an array from the memory layer of alloc pairs, which the dictionary owns. The record of a
// dictionary that was made in its final size ends with its last pair; dbgObjectSize tells.
struct qv___Dict : qv___Obj
{
    QV_INT alloc;
    QV_INT length;
    qv___DictPair *items;
    qv___DictPair inlineStore[QV___DICT_INLINE];
};

extern QV_DICT *qv___DictEmpty;

void qv___DictStartup();
void qv___DictShutdown();

void qv___DictFreeFunc( qvObj thisObj );
QV_INT qv___DictCompareFunc( qvObj thisObj, qvObj thatObj );
QV_STRING *qv___DictToStringFunc( qvObj thisObj );

// Empties a dictionary in place: a private one keeps its storage, a shared one is replaced by the shared
// empty one.
void qv___DictClear( QV_DICT **dict );

// Opens a gap of count pairs, above 0, in front of the pair at atIndex; the length grows by count and the
// caller fills the gap. The dictionary is private.
void qv___DictMakeRoom( QV_DICT *dict, QV_INT atIndex, QV_INT count );

// Gives spare pairs back after a delete. The dictionary is private.
void qv___DictCompact( QV_DICT *dict );

extern "C" {
extern qv___Sort qv___sort_QV_DICT;
}

namespace qv
{

inline QV_INT dictLength( const QV_DICT *dict )
{
    return dict->length;
}

// The pairs in key order, good until the next edit; the references stay the dictionary's.
inline const qv___DictPair *dictPairs( const QV_DICT *dict )
{
    return dict->items;
}

// A fresh private record without pairs, unlike the shared empty dictionary of qvDictCreate.
QV_DICT *dictCreateFresh();

// Moves a pair to the position that it then has; the caller changes the order of its key to match. The dictionary is private.
void dictMovePair( QV_DICT *dict, QV_INT from, QV_INT dest );

// A private dictionary of count pairs, above 0, which the caller fills at once.
QV_DICT *dictCreateUnfilled( QV_INT count );

// The value of the key, borrowed: the reference stays the dictionary's. Null if the key is absent.
qvObj dictValueOf( QV_DICT *dict, qvObj key );

} // namespace qv

#endif
