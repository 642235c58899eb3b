#ifndef QV_JSON_QV_JSON_VALUE_HH
#define QV_JSON_QV_JSON_VALUE_HH

// JSON values as the library's own code sees them: the record, its inline readers, the grammar of numbers.

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/json/qv_json_value.h>
#include <qv/runtime/qv_obj.hh>

#include <cstring>

// Bytes behind the fields of every record, and the longest text that a record is made large enough for. Most numbers and
// many strings fit the first, where a string object for each would make them four times as large; long texts are better
// off as objects, which are handed out without a copy.
#define QV___JSON_TAIL_MIN 24
#define QV___JSON_TAIL_MAX 384

// What a number reads as; the flags of the record tell which.
union qv___JsonReading
{
    QV_INT integer;
    double real;
};

// The text of a number or string stands in the record's tail, as UTF-8 in which surrogates may be, or in a string object.
// Invariant: only the fields of the type are set; handles of other types are null and their readings false and 0. The text
// of a number is valid. All of objectMembers' keys are strings, and all of its values and of array's items JSON values.
struct qv___JsonValue : qv___Obj
{
    uint8_t type;
    bool isHeld; // the text is in text, and a number's reading in the tail
    bool valueIsInt;
    bool valueIsReal;
    uint32_t tailLength; // bytes of a text in the tail
    union
    {
        QV_STRING *text; // of a held number or string
        QV_DICT *objectMembers;
        QV_VECTOR *array;
        qv___JsonReading reading; // of a number that isn't held
    };
    QV_LOCATION *location; // may be null
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

// A new value of a type with nothing else set, and with room in its tail for textLength bytes if that isn't above the
// longest.
QV_JSON_VALUE *jsonCreate( QV_JSON_TYPE tp, QV_INT textLength = 0 );

// A new number of a valid text with the readings of that.
QV_JSON_VALUE *jsonCreateNumber( const QV_CHAR *chs, QV_INT length );
QV_JSON_VALUE *jsonCreateNumber( const unsigned char *chs, QV_INT length );

// Bytes that the tail has room for, a multiple of 8. Behind a text stand blanks, up to the next multiple of 8 and to the
// shortest tail, so that it may be read in words.
inline QV_INT jsonTailRoom( const QV_JSON_VALUE *val )
{
    return val->dbgObjectSize - static_cast<QV_INT>( sizeof( QV_JSON_VALUE ) );
}

inline unsigned char *jsonTail( QV_JSON_VALUE *val )
{
    return reinterpret_cast<unsigned char *>( val + 1 );
}

// Takes the room for a text of length bytes, which the caller fills in at once.
inline unsigned char *jsonTakeTail( QV_JSON_VALUE *val, QV_INT length )
{
    unsigned char *tail = jsonTail( val );
    val->tailLength = static_cast<uint32_t>( length );
    std::memset( tail, ' ', QV___JSON_TAIL_MIN );
    if ( length > QV___JSON_TAIL_MIN )
        std::memset( tail + ( ( length - 1 ) & ~7 ), ' ', 8 );
    return tail;
}

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
