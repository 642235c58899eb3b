#include <qv/json/qv_json_value.hh>

#include <qv/runtime/qv_local.hh>

// Members of objects and elements of arrays.

namespace
{

void checkObject( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->type == QV_JSON_TYPE_OBJECT );
}

void checkArray( QV_JSON_VALUE *val )
{
    QV_CHECK( val );
    QV_CHECK( val->type == QV_JSON_TYPE_ARRAY );
}

void checkName( QV_STRING *memberName )
{
    QV_CHECK( memberName );
    QV_CHECK( qvJsonValidateMemberName( memberName ) );
}

// What an edit puts into a value may be that value itself, so it is held before the copy is decided on: the value is shared
// then, and no value can come to hold itself.
qv::Local<QV_JSON_VALUE> hold( QV_JSON_VALUE *value )
{
    QV_CHECK( value );
    return qv::Local<QV_JSON_VALUE>::share( value );
}

QV_DICT **editMembers( QV_JSON_VALUE **val )
{
    qv::makePrivate( val, qvJsonValueCreateFrom );
    return &( *val )->objectMembers;
}

QV_VECTOR **editItems( QV_JSON_VALUE **val )
{
    qv::makePrivate( val, qvJsonValueCreateFrom );
    return &( *val )->array;
}

} // namespace

// ---- Objects ----

QV_INT qvJsonValueObjectMembersLength( QV_JSON_VALUE *val )
{
    checkObject( val );
    return qv::dictLength( val->objectMembers );
}

QV_DICT *qvJsonValueObjectMembersDict( QV_JSON_VALUE *val )
{
    checkObject( val );
    return qv::retained( val->objectMembers );
}

void qvJsonValueObjectSetMembersDict( QV_JSON_VALUE **val, QV_DICT *dict )
{
    QV_CHECK( val );
    checkObject( *val );
    QV_CHECK( dict );
    for ( QV_INT idx = 0; idx < qv::dictLength( dict ); idx++ )
    {
        const qv___DictPair &pair = qv::dictPairs( dict )[idx];
        QV_CHECK( pair.key->sort == qvStringSort() );
        QV_CHECK( pair.val->sort == qvJsonValueSort() );
        checkName( static_cast<QV_STRING *>( pair.key ) );
    }
    // Strings alone have one order, so the dictionary is what setting its entries one by one would make.
    qv::Local<QV_DICT> members = qv::Local<QV_DICT>::share( dict );
    qv::replaceWith( editMembers( val ), members.give() );
}

QV_STRING *qvJsonValueObjectMemberNameAt( QV_JSON_VALUE *val, QV_INT idx )
{
    checkObject( val );
    return qvStringFrom( qvDictKeyAt( val->objectMembers, idx ) );
}

QV_JSON_VALUE *qvJsonValueObjectMemberValueAt( QV_JSON_VALUE *val, QV_INT idx )
{
    checkObject( val );
    return qvJsonValueFrom( qvDictValueAt( val->objectMembers, idx ) );
}

void qvJsonValueObjectSetMemberValueAt( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *memberValue )
{
    QV_CHECK( val );
    checkObject( *val );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qv::dictLength( ( *val )->objectMembers ) );
    qv::Local<QV_JSON_VALUE> held = hold( memberValue );
    qvDictSetValueAt( editMembers( val ), idx, held );
}

QV_JSON_VALUE *qvJsonValueObjectMember( QV_JSON_VALUE *val, QV_STRING *memberName )
{
    checkObject( val );
    checkName( memberName );
    return qvJsonValueFrom( qvDictStringKey( val->objectMembers, memberName ) );
}

QV_BOOL qvJsonValueObjectHasMember( QV_JSON_VALUE *val, QV_STRING *memberName )
{
    checkObject( val );
    checkName( memberName );
    return qvDictHasStringKey( val->objectMembers, memberName );
}

void qvJsonValueObjectSetMember( QV_JSON_VALUE **val, QV_STRING *memberName, QV_JSON_VALUE *memberValue )
{
    QV_CHECK( val );
    checkObject( *val );
    checkName( memberName );
    qv::Local<QV_JSON_VALUE> held = hold( memberValue );
    qvDictSetStringKey( editMembers( val ), memberName, held );
}

void qvJsonValueObjectDelMember( QV_JSON_VALUE **val, QV_STRING *memberName )
{
    QV_CHECK( val );
    checkObject( *val );
    checkName( memberName );
    if ( qvDictHasStringKey( ( *val )->objectMembers, memberName ) )
        qvDictDelStringKey( editMembers( val ), memberName );
}

// ---- Arrays ----

QV_INT qvJsonValueArrayLength( QV_JSON_VALUE *val )
{
    checkArray( val );
    return qv::vectorLength( val->array );
}

QV_VECTOR *qvJsonValueArrayVector( QV_JSON_VALUE *val )
{
    checkArray( val );
    return qv::retained( val->array );
}

void qvJsonValueArraySetVector( QV_JSON_VALUE **val, QV_VECTOR *vec )
{
    QV_CHECK( val );
    checkArray( *val );
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvJsonValueSort() ) );
    qv::Local<QV_VECTOR> items = qv::Local<QV_VECTOR>::share( vec );
    qv::replaceWith( editItems( val ), items.give() );
}

QV_JSON_VALUE *qvJsonValueArrayAt( QV_JSON_VALUE *val, QV_INT idx )
{
    checkArray( val );
    return qvJsonValueFrom( qvVectorObjAt( val->array, idx ) );
}

void qvJsonValueArraySetAt( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *value )
{
    QV_CHECK( val );
    checkArray( *val );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qv::vectorLength( ( *val )->array ) );
    qv::Local<QV_JSON_VALUE> held = hold( value );
    qvVectorSetObjAt( editItems( val ), idx, held );
}

void qvJsonValueArrayDelAt( QV_JSON_VALUE **val, QV_INT idx )
{
    QV_CHECK( val );
    checkArray( *val );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx < qv::vectorLength( ( *val )->array ) );
    qvVectorDelAt( editItems( val ), idx );
}

void qvJsonValueArrayPrepend( QV_JSON_VALUE **val, QV_JSON_VALUE *value )
{
    qvJsonValueArrayInsert( val, 0, value );
}

void qvJsonValueArrayAppend( QV_JSON_VALUE **val, QV_JSON_VALUE *value )
{
    QV_CHECK( val );
    checkArray( *val );
    qvJsonValueArrayInsert( val, qv::vectorLength( ( *val )->array ), value );
}

void qvJsonValueArrayInsert( QV_JSON_VALUE **val, QV_INT idx, QV_JSON_VALUE *value )
{
    QV_CHECK( val );
    checkArray( *val );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= qv::vectorLength( ( *val )->array ) );
    qv::Local<QV_JSON_VALUE> held = hold( value );
    qvVectorInsertObj( editItems( val ), idx, held );
}
