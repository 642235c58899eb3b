#ifndef QV_JSON_QV_JSON_VALUE_HH
#define QV_JSON_QV_JSON_VALUE_HH

// JSON values as the library's own code sees them: the record, its inline readers, the grammar of numbers.

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/json/qv_json_value.h>
#include <qv/runtime/qv_obj.hh>

// Characters of a number that stand in the record itself. Nearly all numbers are that short; a string for each would
// make them three times as large.
#define QV___JSON_NUMBER_INLINE 24

// Invariant: only the fields of the type are set, the other handles are null and the other readings false and 0. The
// text of a number is valid; it stands in numberChars while numberLength is above 0, in number otherwise. All of
// objectMembers' keys are strings, and all of its values and of array's items JSON values.
struct qv___JsonValue : qv___Obj
{
    QV_JSON_TYPE type;
    QV_STRING *number;
    QV_STRING *string;
    QV_DICT *objectMembers;
    QV_VECTOR *array;
    QV_BOOL valueIsInt;
    QV_BOOL valueIsReal;
    QV_INT valueInt;
    double valueReal;
    QV_LOCATION *location; // may be null
    unsigned char numberLength;
    unsigned char numberChars[QV___JSON_NUMBER_INLINE];
};

extern QV_ENUM *qv___JsonTypeEnum;

// Shared by all that need one; the component holds them for the whole run.
extern QV_JSON_VALUE *qv___JsonValueNull;
extern QV_JSON_VALUE *qv___JsonValueFalse;
extern QV_JSON_VALUE *qv___JsonValueTrue;

// Length of the number at the start of a text, 0 for none.
QV_INT qv___JsonSkipNumber( const QV_CHAR *chs, QV_INT length );

// Makes the handle private and clears everything but the location.
void qv___JsonValueSetType( QV_JSON_VALUE **val, QV_JSON_TYPE tp );

void qv___JsonValueFreeFunc( qvObj thisObj );

void qv___JsonTypeStartup();
void qv___JsonTypeShutdown();
void qv___JsonValueStartup();
void qv___JsonValueShutdown();

extern "C" {
extern qv___Sort qv___sort_QV_JSON_VALUE;
}

namespace qv
{

// A new value of a type with nothing else set.
QV_JSON_VALUE *jsonCreate( QV_JSON_TYPE tp );

// Gives a fresh value of type number its text, which is valid, and the readings of that.
void jsonSetNumberText( QV_JSON_VALUE *val, const QV_CHAR *chs, QV_INT length );

inline QV_JSON_VALUE *jsonFrom( qvObj obj )
{
    return static_cast<QV_JSON_VALUE *>( obj );
}

// The value of a member or element, borrowed.
inline QV_JSON_VALUE *jsonMemberAt( const QV_JSON_VALUE *object, QV_INT idx )
{
    return jsonFrom( dictPairs( object->objectMembers )[idx].val );
}

inline QV_STRING *jsonNameAt( const QV_JSON_VALUE *object, QV_INT idx )
{
    return static_cast<QV_STRING *>( dictPairs( object->objectMembers )[idx].key );
}

inline QV_JSON_VALUE *jsonItemAt( const QV_JSON_VALUE *array, QV_INT idx )
{
    return jsonFrom( vectorAt( array->array, idx ) );
}

// Members or elements of an object or array.
inline QV_INT jsonLength( const QV_JSON_VALUE *val )
{
    return val->type == QV_JSON_TYPE_OBJECT ? dictLength( val->objectMembers ) : vectorLength( val->array );
}

inline bool jsonIsContainer( const QV_JSON_VALUE *val )
{
    return val->type >= QV_JSON_TYPE_OBJECT;
}

} // namespace qv

#endif
