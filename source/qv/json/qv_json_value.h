#ifndef QV_JSON_QV_JSON_VALUE_H
#define QV_JSON_QV_JSON_VALUE_H

/* JSON values. A value holds one JSON datum of any type; members of objects and elements of arrays are values
 * again. A value with copy-on-write: functions that edit take the address of the caller's handle and put a private
 * copy there if the record is shared. Null handles stop the process, and so does a value of another type than a
 * function asks for. The caller owns what a function returns. Two values are equal only if they are the same
 * object. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

/* What a value is. False and true are types of their own. */
typedef QV_INT QV_JSON_TYPE;

#define QV_JSON_TYPE_NULL   0
#define QV_JSON_TYPE_FALSE  1
#define QV_JSON_TYPE_TRUE   2
#define QV_JSON_TYPE_NUMBER 3
#define QV_JSON_TYPE_STRING 4
#define QV_JSON_TYPE_OBJECT 5
#define QV_JSON_TYPE_ARRAY  6

/* True for the seven types. Evaluates its argument twice. */
#define QV_JSON_TYPE_OK( tp ) ( ( tp ) >= QV_JSON_TYPE_NULL && ( tp ) <= QV_JSON_TYPE_ARRAY )

QV_BEGIN_DECLS

/* The type of a name such as "QV_JSON_TYPE_ARRAY", or of its number as text; -1 for anything else. */
QV_API QV_JSON_TYPE qvJsonTypeFromString( QV_STRING *qvs );

/* The name of a type; any other number stops the process. */
QV_API QV_STRING *qvJsonTypeToString( QV_JSON_TYPE tp );

/* True if the whole text is a number of RFC 8259: digits without leading zeros, with an optional "-" in front, an
 * optional fraction and an optional exponent. */
QV_API QV_BOOL qvJsonValidateNumber( QV_STRING *string );

/* True if all characters are code points; surrogates are. */
QV_API QV_BOOL qvJsonValidateString( QV_STRING *string );
QV_API QV_BOOL qvJsonValidateMemberName( QV_STRING *string );

QV_SORT_FUNCTIONS( QV_JSON_VALUE, qvJsonValue )

/* ---- Creating ---- */

/* The shared values. */
QV_API QV_JSON_VALUE *qvJsonValueCreateNull( void );
QV_API QV_JSON_VALUE *qvJsonValueCreateFalse( void );
QV_API QV_JSON_VALUE *qvJsonValueCreateTrue( void );
QV_API QV_JSON_VALUE *qvJsonValueCreateBool( QV_BOOL value );

/* A number as qvJsonValueSetNumber, qvJsonValueSetInt and qvJsonValueSetReal make it. */
QV_API QV_JSON_VALUE *qvJsonValueCreateNumber( QV_STRING *jsonNumber );
QV_API QV_JSON_VALUE *qvJsonValueCreateInt( QV_INT value );
QV_API QV_JSON_VALUE *qvJsonValueCreateReal( double value );

/* A string. One that qvJsonValidateString refuses stops the process. */
QV_API QV_JSON_VALUE *qvJsonValueCreateString( QV_STRING *jsonString );

/* An object without members, an array without elements. */
QV_API QV_JSON_VALUE *qvJsonValueCreateObject( void );
QV_API QV_JSON_VALUE *qvJsonValueCreateArray( void );

/* A copy, which shares what the value holds. */
QV_API QV_JSON_VALUE *qvJsonValueCreateFrom( QV_JSON_VALUE *source );

/* ---- The type ---- */

QV_API QV_JSON_TYPE qvJsonValueType( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsNull( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsFalse( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsTrue( QV_JSON_VALUE *val );

/* True for false and true. */
QV_API QV_BOOL qvJsonValueIsBool( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsNumber( QV_JSON_VALUE *val );

/* True for a number that has a reading as an integer, as a real; one may have both, or neither. */
QV_API QV_BOOL qvJsonValueIsInt( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsReal( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsString( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsObject( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueIsArray( QV_JSON_VALUE *val );

/* ---- Setting the whole value ---- */

/* The handle becomes that of a shared value, so that a location is lost. */
QV_API void qvJsonValueSetNull( QV_JSON_VALUE **val );
QV_API void qvJsonValueSetFalse( QV_JSON_VALUE **val );
QV_API void qvJsonValueSetTrue( QV_JSON_VALUE **val );
QV_API void qvJsonValueSetBool( QV_JSON_VALUE **val, QV_BOOL value );

/* The functions below keep the location. */

/* A number with this text, which is kept exactly; one that qvJsonValidateNumber refuses stops the process. It has a
 * reading as an integer if the text is one of 64 bits, and one as a real if the text has no exponent. */
QV_API void qvJsonValueSetNumber( QV_JSON_VALUE **val, QV_STRING *jsonNumber );

/* A number with the decimal digits of value, and the reading as an integer only. */
QV_API void qvJsonValueSetInt( QV_JSON_VALUE **val, QV_INT value );

/* A number with six digits behind the point, the rest cut off, and the reading value as a real only. A NaN or an
 * infinity stops the process. */
QV_API void qvJsonValueSetReal( QV_JSON_VALUE **val, double value );

QV_API void qvJsonValueSetString( QV_JSON_VALUE **val, QV_STRING *jsonString );
QV_API void qvJsonValueSetObject( QV_JSON_VALUE **val );
QV_API void qvJsonValueSetArray( QV_JSON_VALUE **val );

/* ---- Reading ---- */

/* The value of false or true. */
QV_API QV_BOOL qvJsonValueBool( QV_JSON_VALUE *val );

/* The text of a number. */
QV_API QV_STRING *qvJsonValueNumber( QV_JSON_VALUE *val );

/* The reading of a number; a missing one stops the process. */
QV_API QV_INT qvJsonValueInt( QV_JSON_VALUE *val );
QV_API double qvJsonValueReal( QV_JSON_VALUE *val );

/* The characters of a string. */
QV_API QV_STRING *qvJsonValueString( QV_JSON_VALUE *val );

/* ---- Members of an object, ordered by name ---- */

QV_API QV_INT qvJsonValueObjectMembersLength( QV_JSON_VALUE *val );

/* The members as a dictionary of names and values, shared with the object. */
QV_API QV_DICT *qvJsonValueObjectMembersDict( QV_JSON_VALUE *val );

/* Replaces the members. Keys other than strings and values other than JSON values stop the process. */
QV_API void qvJsonValueObjectSetMembersDict( QV_JSON_VALUE **val, QV_DICT *dict );

/* By position, 0 to length - 1; any other position stops the process. */
QV_API QV_STRING *qvJsonValueObjectMemberNameAt( QV_JSON_VALUE *val, QV_INT idx );
QV_API QV_JSON_VALUE *qvJsonValueObjectMemberValueAt( QV_JSON_VALUE *val, QV_INT idx );
QV_API void qvJsonValueObjectSetMemberValueAt( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *memberValue );

/* By name. A name that qvJsonValidateMemberName refuses stops the process. */

/* The member, or null. */
QV_API QV_JSON_VALUE *qvJsonValueObjectMember( QV_JSON_VALUE *val, QV_STRING *memberName );
QV_API QV_BOOL qvJsonValueObjectHasMember( QV_JSON_VALUE *val, QV_STRING *memberName );

/* Adds a member or replaces it. */
QV_API void qvJsonValueObjectSetMember( QV_JSON_VALUE **val, QV_STRING *memberName,
                                        QV_JSON_VALUE *memberValue );

/* Removes a member, if it is there. */
QV_API void qvJsonValueObjectDelMember( QV_JSON_VALUE **val, QV_STRING *memberName );

/* ---- Elements of an array: idx from 0 to length - 1, for the insertion to length ---- */

QV_API QV_INT qvJsonValueArrayLength( QV_JSON_VALUE *val );

/* The elements as a vector, shared with the array. */
QV_API QV_VECTOR *qvJsonValueArrayVector( QV_JSON_VALUE *val );

/* Replaces the elements. Items other than JSON values stop the process. */
QV_API void qvJsonValueArraySetVector( QV_JSON_VALUE **val, QV_VECTOR *vec );
QV_API QV_JSON_VALUE *qvJsonValueArrayAt( QV_JSON_VALUE *val, QV_INT idx );
QV_API void qvJsonValueArraySetAt( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *value );
QV_API void qvJsonValueArrayDelAt( QV_JSON_VALUE **val, QV_INT idx );
QV_API void qvJsonValueArrayPrepend( QV_JSON_VALUE **val, QV_JSON_VALUE *value );
QV_API void qvJsonValueArrayAppend( QV_JSON_VALUE **val, QV_JSON_VALUE *value );
QV_API void qvJsonValueArrayInsert( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *value );

/* ---- Where the value was read from ---- */

/* The location, or null. */
QV_API QV_LOCATION *qvJsonValueLocation( QV_JSON_VALUE *val );
QV_API QV_BOOL qvJsonValueHasLocation( QV_JSON_VALUE *val );
QV_API void qvJsonValueSetLocation( QV_JSON_VALUE **val, QV_LOCATION *location );
QV_API void qvJsonValueDelLocation( QV_JSON_VALUE **val );

QV_END_DECLS

#endif
