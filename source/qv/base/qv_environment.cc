#include <qv/base/qv_environment.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_ENVIRONMENT, qvEnvironment, { .freeFunc = qv___EnvironmentFreeFunc } )

namespace
{

QV_ENVIRONMENT *createWith( QV_DICT *namesGiven, QV_DICT *valuesGiven )
{
    auto *envi = qv::create<QV_ENVIRONMENT>( qvEnvironmentSort() );
    envi->names = namesGiven;
    envi->values = valuesGiven;
    return envi;
}

// The name by which a variable is found.
qv::Local<QV_STRING> folded( QV_STRING *name )
{
    auto key = qv::Local<QV_STRING>::share( name );
    qvStringToCaseFold( key.edit() );
    return key;
}

} // namespace

void qv___EnvironmentFreeFunc( qvObj thisObj )
{
    QV_ENVIRONMENT *envi = qvEnvironmentFrom( thisObj );
    QV_CHECK( envi );
    qvDictRelease( envi->names );
    qvDictRelease( envi->values );
}

QV_ENVIRONMENT *qvEnvironmentCreate( void )
{
    return createWith( qvDictCreate(), qvDictCreate() );
}

QV_ENVIRONMENT *qvEnvironmentCreateFrom( QV_ENVIRONMENT *envi )
{
    QV_CHECK( envi );
    return createWith( qv::retained( envi->names ), qv::retained( envi->values ) );
}

QV_INT qvEnvironmentVariablesLength( QV_ENVIRONMENT *envi )
{
    QV_CHECK( envi );
    return qv::dictLength( envi->names );
}

QV_STRING *qvEnvironmentVariableNameAt( QV_ENVIRONMENT *envi, QV_INT idx )
{
    QV_CHECK( envi );
    return qvStringFrom( qvDictValueAt( envi->names, idx ) );
}

QV_STRING *qvEnvironmentVariableValueAt( QV_ENVIRONMENT *envi, QV_INT idx )
{
    QV_CHECK( envi );
    return qvStringFrom( qvDictValueAt( envi->values, idx ) );
}

void qvEnvironmentSetVariableValueAt( QV_ENVIRONMENT **envi, QV_INT idx, QV_STRING *value )
{
    QV_CHECK( envi );
    QV_CHECK( *envi );
    QV_CHECK( value );
    qv::makePrivate( envi, qvEnvironmentCreateFrom );
    qvDictSetValueAt( &( *envi )->values, idx, qvStringObj( value ) );
}

void qvEnvironmentDelVariableAt( QV_ENVIRONMENT **envi, QV_INT idx )
{
    QV_CHECK( envi );
    QV_CHECK( *envi );
    qv::makePrivate( envi, qvEnvironmentCreateFrom );
    qvDictDelAt( &( *envi )->names, idx );
    qvDictDelAt( &( *envi )->values, idx );
}

void qvEnvironmentClearVariables( QV_ENVIRONMENT **envi )
{
    QV_CHECK( envi );
    QV_CHECK( *envi );
    qv::makePrivate( envi, qvEnvironmentCreateFrom );
    qvDictClear( &( *envi )->names );
    qvDictClear( &( *envi )->values );
}

void qvEnvironmentInclude( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( src );
    if ( src == *dest || qv::dictLength( src->names ) == 0 )
        return;
    qv::makePrivate( dest, qvEnvironmentCreateFrom );
    qvDictInclude( &( *dest )->names, src->names, QV_TRUE );
    qvDictInclude( &( *dest )->values, src->values, QV_TRUE );
}

QV_STRING *qvEnvironmentVariable( QV_ENVIRONMENT *envi, QV_STRING *name )
{
    QV_CHECK( envi );
    QV_CHECK( name );
    return qvStringFrom( qvDictStringKey( envi->values, folded( name ) ) );
}

QV_STRING *qvEnvironmentVariableCstr( QV_ENVIRONMENT *envi, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, nameLength ) );
    return qvEnvironmentVariable( envi, text );
}

QV_STRING *qvEnvironmentVariableWcstr( QV_ENVIRONMENT *envi, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( name, nameLength ) );
    return qvEnvironmentVariable( envi, text );
}

QV_BOOL qvEnvironmentHasVariable( QV_ENVIRONMENT *envi, QV_STRING *name )
{
    QV_CHECK( envi );
    QV_CHECK( name );
    return qvDictHasStringKey( envi->values, folded( name ) );
}

QV_BOOL qvEnvironmentHasVariableCstr( QV_ENVIRONMENT *envi, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, nameLength ) );
    return qvEnvironmentHasVariable( envi, text );
}

QV_BOOL qvEnvironmentHasVariableWcstr( QV_ENVIRONMENT *envi, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( name, nameLength ) );
    return qvEnvironmentHasVariable( envi, text );
}

void qvEnvironmentSetVariable( QV_ENVIRONMENT **envi, QV_STRING *name, QV_STRING *value )
{
    QV_CHECK( envi );
    QV_CHECK( *envi );
    QV_CHECK( name );
    QV_CHECK( value );
    qv::makePrivate( envi, qvEnvironmentCreateFrom );
    qv::Local<QV_STRING> key = folded( name );
    qvDictSetStringKey( &( *envi )->names, key, qvStringObj( name ) );
    qvDictSetStringKey( &( *envi )->values, key, qvStringObj( value ) );
}

void qvEnvironmentSetVariableCstr( QV_ENVIRONMENT **envi, const char *name, QV_INT nameLength,
                                   QV_STRING *value )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, nameLength ) );
    qvEnvironmentSetVariable( envi, text, value );
}

void qvEnvironmentSetVariableWcstr( QV_ENVIRONMENT **envi, const wchar_t *name, QV_INT nameLength,
                                    QV_STRING *value )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( name, nameLength ) );
    qvEnvironmentSetVariable( envi, text, value );
}

void qvEnvironmentDelVariable( QV_ENVIRONMENT **envi, QV_STRING *name )
{
    QV_CHECK( envi );
    QV_CHECK( *envi );
    QV_CHECK( name );
    qv::makePrivate( envi, qvEnvironmentCreateFrom );
    qv::Local<QV_STRING> key = folded( name );
    qvDictDelStringKey( &( *envi )->names, key );
    qvDictDelStringKey( &( *envi )->values, key );
}

void qvEnvironmentDelVariableCstr( QV_ENVIRONMENT **envi, const char *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, nameLength ) );
    qvEnvironmentDelVariable( envi, text );
}

void qvEnvironmentDelVariableWcstr( QV_ENVIRONMENT **envi, const wchar_t *name, QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( name, nameLength ) );
    qvEnvironmentDelVariable( envi, text );
}

void qvEnvironmentCopyVariable( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, QV_STRING *name )
{
    qv::Local<QV_STRING> value( qvEnvironmentVariable( src, name ) );
    if ( value )
        qvEnvironmentSetVariable( dest, name, value );
    else
        qvEnvironmentDelVariable( dest, name );
}

void qvEnvironmentCopyVariableCstr( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, const char *name,
                                    QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( name, nameLength ) );
    qvEnvironmentCopyVariable( dest, src, text );
}

void qvEnvironmentCopyVariableWcstr( QV_ENVIRONMENT **dest, QV_ENVIRONMENT *src, const wchar_t *name,
                                     QV_INT nameLength )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( name, nameLength ) );
    qvEnvironmentCopyVariable( dest, src, text );
}

QV_VECTOR *qvEnvironmentConvertToStringVector( QV_ENVIRONMENT *envi )
{
    QV_CHECK( envi );
    qv::Local<QV_VECTOR> vec( qvVectorCreate() );
    for ( QV_INT idx = 0; idx < qv::dictLength( envi->names ); idx++ )
    {
        qvVectorAppendStringFormatCstr( vec.edit(), "%~s=%~s", -1, qvEnvironmentVariableNameAt( envi, idx ),
                                        qvEnvironmentVariableValueAt( envi, idx ) );
    }
    return vec.give();
}

QV_ENVIRONMENT *qvEnvironmentConvertFromStringVector( QV_VECTOR *vec )
{
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvStringSort() ) );
    qv::Local<QV_ENVIRONMENT> envi( qvEnvironmentCreate() );
    for ( QV_INT idx = 0; idx < qv::vectorLength( vec ); idx++ )
    {
        qv::Local<QV_VECTOR> parts( qvStringSplitChar( qvStringFrom( qv::vectorAt( vec, idx ) ), '=', 2 ) );
        if ( qv::vectorLength( parts ) < 2 )
            continue;
        auto name = qv::Local<QV_STRING>::share( qvStringFrom( qv::vectorAt( parts, 0 ) ) );
        qvStringTrim( name.edit() );
        qvEnvironmentSetVariable( envi.edit(), name, qvStringFrom( qv::vectorAt( parts, 1 ) ) );
    }
    return envi.give();
}

QV_STORE *qvEnvironmentStore( QV_ENVIRONMENT *envi )
{
    QV_CHECK( envi );
    qv::Local<QV_STORE> store( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < qv::dictLength( envi->names ); idx++ )
    {
        qv::Local<QV_STRING> name( qvEnvironmentVariableNameAt( envi, idx ) );
        qv::Local<QV_STRING> value( qvEnvironmentVariableValueAt( envi, idx ) );
        qv::Local<QV_STORE> variable( qvStoreCreate() );
        qvStoreSetValueCstr( variable.edit(), "name", -1, name );
        qvStoreSetValueCstr( variable.edit(), "value", -1, value );
        qvStoreAppendStore( store.edit(), variable );
    }
    return store.give();
}

QV_ENVIRONMENT *qvEnvironmentRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_ENVIRONMENT> envi( qvEnvironmentCreate() );
    for ( QV_INT idx = 0; idx < qvStoreLength( store ); idx++ )
    {
        qv::Local<QV_STORE> variable( qvStoreStoreAt( store, idx ) );
        if ( !variable )
            continue;
        qv::Local<QV_STRING> name( qvStoreValueCstr( variable, "name", -1 ) );
        qv::Local<QV_STRING> value( qvStoreValueCstr( variable, "value", -1 ) );
        if ( name && value )
            qvEnvironmentSetVariable( envi.edit(), name, value );
    }
    return envi.give();
}
