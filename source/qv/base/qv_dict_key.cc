// Lookup, and the functions by key.

#include <qv/base/qv_dict.hh>

#include <qv/base/qv_boxed_bool.h>
#include <qv/base/qv_boxed_int.hh>
#include <qv/base/qv_boxed_null.h>
#include <qv/base/qv_boxed_real.hh>
#include <qv/base/qv_string.hh>

namespace
{

// Where a key stands, or where it would have to be inserted.
struct Place
{
    QV_INT index;
    bool isFound;
};

// The orders that the bisection goes by; each compares a key of the dictionary with the key that is sought.

struct SameSortOrder
{
    qvObj sought;
    QV_INT ( *compareFunc )( qvObj, qvObj );

    QV_INT operator()( qvObj key ) const
    {
        return key == sought ? 0 : compareFunc( key, sought );
    }
};

struct AnyOrder
{
    qvObj sought;

    QV_INT operator()( qvObj key ) const
    {
        return qvObjCompare( key, sought );
    }
};

// Both ends come first: appends in key order cost two compares, and keys outside one or two.
template <typename ORDER> Place bisect( const QV_DICT *dict, ORDER orderOf )
{
    const qv___DictPair *items = dict->items;
    QV_INT high = dict->length - 1;
    QV_INT order = orderOf( items[0].key );
    if ( order >= 0 )
        return { 0, order == 0 };
    if ( high == 0 )
        return { 1, false };
    order = orderOf( items[high].key );
    if ( order <= 0 )
        return { order == 0 ? high : high + 1, order == 0 };
    QV_INT low = 0;
    while ( low + 1 < high )
    {
        QV_INT mid = low + ( high - low ) / 2;
        order = orderOf( items[mid].key );
        if ( order == 0 )
            return { mid, true };
        if ( order < 0 )
            low = mid;
        else
            high = mid;
    }
    return { high, false };
}

// Integers and strings, the common keys, go without a compare function and, where they can, without a branch:
// what a bisection asks is a coin toss, which costs a processor more when it guesses wrong than the compare
// itself.

QV_INT intOf( const qv___DictPair &pair )
{
    return static_cast<QV_BOXED_INT *>( pair.key )->value;
}

// All keys are boxed integers.
Place findInt( const QV_DICT *dict, QV_INT sought )
{
    const qv___DictPair *base = dict->items;
    QV_INT count = dict->length;
    if ( intOf( base[count - 1] ) < sought )
        return { count, false };
    // The first key that isn't below the sought one is among the count pairs at base.
    while ( count > 1 )
    {
        QV_INT half = count / 2;
        base += half & -static_cast<QV_INT>( intOf( base[half - 1] ) < sought );
        count -= half;
    }
    return { base - dict->items, intOf( *base ) == sought };
}

// The first two characters as a number, which orders like the strings as long as it differs.
uint64_t rankOf( QV_STRING *qvs )
{
    const QV_CHAR *chs = qv::stringBacking( qvs );
    if ( qvs->length >= 2 )
        return static_cast<uint64_t>( chs[0] ) << 32 | chs[1];
    return qvs->length == 1 ? static_cast<uint64_t>( chs[0] ) << 32 : 0;
}

QV_STRING *stringOf( const qv___DictPair &pair )
{
    return static_cast<QV_STRING *>( pair.key );
}

bool isBelow( QV_STRING *qvs, QV_STRING *sought, uint64_t soughtRank )
{
    uint64_t rank = rankOf( qvs );
    if ( rank == soughtRank )
        return qvs != sought && qv::stringCompare( qvs, sought ) < 0;
    return rank < soughtRank;
}

// All keys are strings.
Place findString( const QV_DICT *dict, QV_STRING *sought )
{
    uint64_t soughtRank = rankOf( sought );
    const qv___DictPair *base = dict->items;
    QV_INT count = dict->length;
    if ( isBelow( stringOf( base[count - 1] ), sought, soughtRank ) )
        return { count, false };
    while ( count > 1 )
    {
        QV_INT half = count / 2;
        base += half & -static_cast<QV_INT>( isBelow( stringOf( base[half - 1] ), sought, soughtRank ) );
        count -= half;
    }
    return { base - dict->items, qv::stringEquals( stringOf( *base ), sought ) };
}

Place findPlace( const QV_DICT *dict, qvObj key )
{
    if ( dict->length == 0 )
        return { 0, false };
    // Keys of one sort stand together: with the sought sort at both ends, all keys are of it.
    QV_SORT *sort = key->sort;
    if ( sort && dict->items[0].key->sort == sort && dict->items[dict->length - 1].key->sort == sort )
    {
        if ( sort == qvBoxedIntSort() )
            return findInt( dict, static_cast<QV_BOXED_INT *>( key )->value );
        if ( sort == &qv___sort_QV_STRING )
            return findString( dict, static_cast<QV_STRING *>( key ) );
        if ( sort->functions.compareFunc )
            return bisect( dict, SameSortOrder{ key, sort->functions.compareFunc } );
    }
    return bisect( dict, AnyOrder{ key } );
}

} // namespace

// ---- Object keys ----

qvObj qv::dictValueOf( QV_DICT *dict, qvObj key )
{
    Place place = findPlace( dict, key );
    return place.isFound ? dict->items[place.index].val : nullptr;
}

qvObj qvDictObjKey( QV_DICT *dict, qvObj key )
{
    QV_CHECK( dict );
    QV_CHECK( key );
    qvObj value = qv::dictValueOf( dict, key );
    return value ? qv::retained( value ) : nullptr;
}

QV_BOOL qvDictHasObjKey( QV_DICT *dict, qvObj key )
{
    return qvDictIndexOfObjKey( dict, key ) != -1;
}

void qvDictSetObjKey( QV_DICT **dict, qvObj key, qvObj value )
{
    QV_CHECK( dict );
    QV_CHECK( *dict );
    QV_CHECK( key );
    QV_CHECK( value );
    // Retained first, since either may be the dictionary itself or one of its contents.
    qv___DictPair pair = { qv::retained( key ), qv::retained( value ) };
    qv::makePrivate( dict, qvDictCreateFrom );
    Place place = findPlace( *dict, key );
    if ( !place.isFound )
    {
        qv___DictMakeRoom( *dict, place.index, 1 );
        ( *dict )->items[place.index] = pair;
        return;
    }
    qv___DictPair before = ( *dict )->items[place.index];
    ( *dict )->items[place.index] = pair;
    qv::release( before.key );
    qv::release( before.val );
}

void qvDictDelObjKey( QV_DICT **dict, qvObj key )
{
    QV_CHECK( dict );
    QV_INT idx = qvDictIndexOfObjKey( *dict, key );
    if ( idx != -1 )
        qvDictDelAt( dict, idx );
}

QV_INT qvDictIndexOfObjKey( QV_DICT *dict, qvObj key )
{
    QV_CHECK( dict );
    QV_CHECK( key );
    Place place = findPlace( dict, key );
    return place.isFound ? place.index : -1;
}

// ---- Other keys ----

namespace
{

using Key = qv::Local<qv___Obj>;

Key nullKey()
{
    return Key( qv::objOf( qvBoxedNullCreate() ) );
}

Key boolKey( QV_BOOL value )
{
    return Key( qv::objOf( qvBoxedBoolCreate( value ) ) );
}

Key intKey( QV_INT value )
{
    return Key( qv::objOf( qvBoxedIntCreate( value ) ) );
}

Key realKey( double value )
{
    return Key( qv::objOf( qvBoxedRealCreate( value ) ) );
}

Key cstrKey( const char *cstr, QV_INT length )
{
    return Key( qv::objOf( qvStringCreateFromCstr( cstr, length ) ) );
}

Key wcstrKey( const wchar_t *wcstr, QV_INT length )
{
    return Key( qv::objOf( qvStringCreateFromWcstr( wcstr, length ) ) );
}

// A boxed value on the stack, good enough for a lookup: it is compared and never kept.
template <typename BOXED> class Probe
{
  public:
    template <typename VALUE> Probe( QV_SORT *sort, VALUE value )
    {
        boxed_.type = QV___OBJ_TYPE_OBJECT;
        boxed_.sort = sort;
        boxed_.unique = -1;
        boxed_.retainCount = 1;
        boxed_.value = value;
    }

    operator qvObj()
    {
        return &boxed_;
    }

  private:
    BOXED boxed_ = {};
};

using IntProbe = Probe<QV_BOXED_INT>;
using RealProbe = Probe<QV_BOXED_REAL>;

} // namespace

qvObj qvDictNullKey( QV_DICT *dict )
{
    return qvDictObjKey( dict, nullKey() );
}

QV_BOOL qvDictHasNullKey( QV_DICT *dict )
{
    return qvDictHasObjKey( dict, nullKey() );
}

void qvDictSetNullKey( QV_DICT **dict, qvObj value )
{
    qvDictSetObjKey( dict, nullKey(), value );
}

void qvDictDelNullKey( QV_DICT **dict )
{
    qvDictDelObjKey( dict, nullKey() );
}

QV_INT qvDictIndexOfNullKey( QV_DICT *dict )
{
    return qvDictIndexOfObjKey( dict, nullKey() );
}

qvObj qvDictBoolKey( QV_DICT *dict, QV_BOOL key )
{
    return qvDictObjKey( dict, boolKey( key ) );
}

QV_BOOL qvDictHasBoolKey( QV_DICT *dict, QV_BOOL key )
{
    return qvDictHasObjKey( dict, boolKey( key ) );
}

void qvDictSetBoolKey( QV_DICT **dict, QV_BOOL key, qvObj value )
{
    qvDictSetObjKey( dict, boolKey( key ), value );
}

void qvDictDelBoolKey( QV_DICT **dict, QV_BOOL key )
{
    qvDictDelObjKey( dict, boolKey( key ) );
}

QV_INT qvDictIndexOfBoolKey( QV_DICT *dict, QV_BOOL key )
{
    return qvDictIndexOfObjKey( dict, boolKey( key ) );
}

qvObj qvDictIntKey( QV_DICT *dict, QV_INT key )
{
    return qvDictObjKey( dict, IntProbe( qvBoxedIntSort(), key ) );
}

QV_BOOL qvDictHasIntKey( QV_DICT *dict, QV_INT key )
{
    return qvDictHasObjKey( dict, IntProbe( qvBoxedIntSort(), key ) );
}

void qvDictSetIntKey( QV_DICT **dict, QV_INT key, qvObj value )
{
    qvDictSetObjKey( dict, intKey( key ), value );
}

void qvDictDelIntKey( QV_DICT **dict, QV_INT key )
{
    qvDictDelObjKey( dict, IntProbe( qvBoxedIntSort(), key ) );
}

QV_INT qvDictIndexOfIntKey( QV_DICT *dict, QV_INT key )
{
    return qvDictIndexOfObjKey( dict, IntProbe( qvBoxedIntSort(), key ) );
}

qvObj qvDictRealKey( QV_DICT *dict, double key )
{
    return qvDictObjKey( dict, RealProbe( qvBoxedRealSort(), key ) );
}

QV_BOOL qvDictHasRealKey( QV_DICT *dict, double key )
{
    return qvDictHasObjKey( dict, RealProbe( qvBoxedRealSort(), key ) );
}

void qvDictSetRealKey( QV_DICT **dict, double key, qvObj value )
{
    qvDictSetObjKey( dict, realKey( key ), value );
}

void qvDictDelRealKey( QV_DICT **dict, double key )
{
    qvDictDelObjKey( dict, RealProbe( qvBoxedRealSort(), key ) );
}

QV_INT qvDictIndexOfRealKey( QV_DICT *dict, double key )
{
    return qvDictIndexOfObjKey( dict, RealProbe( qvBoxedRealSort(), key ) );
}

qvObj qvDictSortKey( QV_DICT *dict, QV_SORT *key )
{
    return qvDictObjKey( dict, qv::objOf( key ) );
}

QV_BOOL qvDictHasSortKey( QV_DICT *dict, QV_SORT *key )
{
    return qvDictHasObjKey( dict, qv::objOf( key ) );
}

void qvDictSetSortKey( QV_DICT **dict, QV_SORT *key, qvObj value )
{
    qvDictSetObjKey( dict, qv::objOf( key ), value );
}

void qvDictDelSortKey( QV_DICT **dict, QV_SORT *key )
{
    qvDictDelObjKey( dict, qv::objOf( key ) );
}

QV_INT qvDictIndexOfSortKey( QV_DICT *dict, QV_SORT *key )
{
    return qvDictIndexOfObjKey( dict, qv::objOf( key ) );
}

qvObj qvDictIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key )
{
    return qvDictObjKey( dict, qv::objOf( key ) );
}

QV_BOOL qvDictHasIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key )
{
    return qvDictHasObjKey( dict, qv::objOf( key ) );
}

void qvDictSetIdentifierKey( QV_DICT **dict, QV_IDENTIFIER *key, qvObj value )
{
    qvDictSetObjKey( dict, qv::objOf( key ), value );
}

void qvDictDelIdentifierKey( QV_DICT **dict, QV_IDENTIFIER *key )
{
    qvDictDelObjKey( dict, qv::objOf( key ) );
}

QV_INT qvDictIndexOfIdentifierKey( QV_DICT *dict, QV_IDENTIFIER *key )
{
    return qvDictIndexOfObjKey( dict, qv::objOf( key ) );
}

qvObj qvDictStringKey( QV_DICT *dict, QV_STRING *key )
{
    return qvDictObjKey( dict, qv::objOf( key ) );
}

QV_BOOL qvDictHasStringKey( QV_DICT *dict, QV_STRING *key )
{
    return qvDictHasObjKey( dict, qv::objOf( key ) );
}

void qvDictSetStringKey( QV_DICT **dict, QV_STRING *key, qvObj value )
{
    qvDictSetObjKey( dict, qv::objOf( key ), value );
}

void qvDictDelStringKey( QV_DICT **dict, QV_STRING *key )
{
    qvDictDelObjKey( dict, qv::objOf( key ) );
}

QV_INT qvDictIndexOfStringKey( QV_DICT *dict, QV_STRING *key )
{
    return qvDictIndexOfObjKey( dict, qv::objOf( key ) );
}

qvObj qvDictStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length )
{
    return qvDictObjKey( dict, cstrKey( cstr, length ) );
}

QV_BOOL qvDictHasStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length )
{
    return qvDictHasObjKey( dict, cstrKey( cstr, length ) );
}

void qvDictSetStringKeyCstr( QV_DICT **dict, const char *cstr, QV_INT length, qvObj value )
{
    qvDictSetObjKey( dict, cstrKey( cstr, length ), value );
}

void qvDictDelStringKeyCstr( QV_DICT **dict, const char *cstr, QV_INT length )
{
    qvDictDelObjKey( dict, cstrKey( cstr, length ) );
}

QV_INT qvDictIndexOfStringKeyCstr( QV_DICT *dict, const char *cstr, QV_INT length )
{
    return qvDictIndexOfObjKey( dict, cstrKey( cstr, length ) );
}

qvObj qvDictStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length )
{
    return qvDictObjKey( dict, wcstrKey( wcstr, length ) );
}

QV_BOOL qvDictHasStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length )
{
    return qvDictHasObjKey( dict, wcstrKey( wcstr, length ) );
}

void qvDictSetStringKeyWcstr( QV_DICT **dict, const wchar_t *wcstr, QV_INT length, qvObj value )
{
    qvDictSetObjKey( dict, wcstrKey( wcstr, length ), value );
}

void qvDictDelStringKeyWcstr( QV_DICT **dict, const wchar_t *wcstr, QV_INT length )
{
    qvDictDelObjKey( dict, wcstrKey( wcstr, length ) );
}

QV_INT qvDictIndexOfStringKeyWcstr( QV_DICT *dict, const wchar_t *wcstr, QV_INT length )
{
    return qvDictIndexOfObjKey( dict, wcstrKey( wcstr, length ) );
}
