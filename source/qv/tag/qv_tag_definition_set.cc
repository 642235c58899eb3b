#include <qv/tag/qv_tag_definition_set.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/tag/qv_tag_definition.hh>
#include <qv/tag/qv_tag_set.h>

QV_SORT_DEFINE( QV_TAG_DEFINITION_SET, qvTagDefinitionSet,
                { .freeFunc = qv___TagDefinitionSetFreeFunc,
                  .compareFunc = qv___TagDefinitionSetCompareFunc } )

namespace
{

QV_TAG_DEFINITION_SET *createWith( QV_DICT *definitionsGiven )
{
    auto *ds = qv::create<QV_TAG_DEFINITION_SET>( qvTagDefinitionSetSort() );
    ds->definitions = definitionsGiven;
    return ds;
}

void enter( QV_DICT **definitions, QV_TAG_DEFINITION *def )
{
    qvDictSetStringKey( definitions, def->tag, qvTagDefinitionObj( def ) );
}

} // namespace

void qv___TagDefinitionSetFreeFunc( qvObj thisObj )
{
    QV_TAG_DEFINITION_SET *ds = qvTagDefinitionSetFrom( thisObj );
    QV_CHECK( ds );
    qvDictRelease( ds->definitions );
}

QV_INT qv___TagDefinitionSetCompareFunc( qvObj thisObj, qvObj thatObj )
{
    return qvDictCompare( qvTagDefinitionSetFrom( thisObj )->definitions,
                          qvTagDefinitionSetFrom( thatObj )->definitions );
}

QV_TAG_DEFINITION_SET *qvTagDefinitionSetCreate( void )
{
    return createWith( qvDictCreate() );
}

QV_TAG_DEFINITION_SET *qvTagDefinitionSetCreateFrom( QV_TAG_DEFINITION_SET *source )
{
    QV_CHECK( source );
    return createWith( qv::retained( source->definitions ) );
}

QV_INT qvTagDefinitionSetDefinitionsLength( QV_TAG_DEFINITION_SET *ds )
{
    QV_CHECK( ds );
    return qv::dictLength( ds->definitions );
}

QV_TAG_DEFINITION *qvTagDefinitionSetDefinitionAt( QV_TAG_DEFINITION_SET *ds, QV_INT idx )
{
    QV_CHECK( ds );
    return qvTagDefinitionFrom( qvDictValueAt( ds->definitions, idx ) );
}

QV_VECTOR *qvTagDefinitionSetDefinitionsVector( QV_TAG_DEFINITION_SET *ds )
{
    QV_CHECK( ds );
    return qvDictValuesVector( ds->definitions );
}

void qvTagDefinitionSetSetDefinitionsVector( QV_TAG_DEFINITION_SET **ds, QV_VECTOR *vec )
{
    QV_CHECK( ds );
    QV_CHECK( *ds );
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvTagDefinitionSort() ) );
    qv::Local<QV_DICT> definitions( qvDictCreate() );
    for ( QV_INT idx = 0; idx < qv::vectorLength( vec ); idx++ )
    {
        enter( definitions.edit(), qvTagDefinitionFrom( qv::vectorAt( vec, idx ) ) );
    }
    qv::makePrivate( ds, qvTagDefinitionSetCreateFrom );
    qv::replaceWith( &( *ds )->definitions, definitions.give() );
}

QV_TAG_DEFINITION *qvTagDefinitionSetDefinition( QV_TAG_DEFINITION_SET *ds, QV_STRING *tag )
{
    QV_CHECK( ds );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    return qvTagDefinitionFrom( qvDictStringKey( ds->definitions, tag ) );
}

QV_BOOL qvTagDefinitionSetHasDefinition( QV_TAG_DEFINITION_SET *ds, QV_STRING *tag )
{
    QV_CHECK( ds );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    return qvDictHasStringKey( ds->definitions, tag );
}

void qvTagDefinitionSetSetDefinition( QV_TAG_DEFINITION_SET **ds, QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    qv::makePrivate( ds, qvTagDefinitionSetCreateFrom );
    enter( &( *ds )->definitions, def );
}

void qvTagDefinitionSetDelDefinition( QV_TAG_DEFINITION_SET **ds, QV_STRING *tag )
{
    QV_CHECK( ds );
    if ( !qvTagDefinitionSetHasDefinition( *ds, tag ) )
        return;
    qv::makePrivate( ds, qvTagDefinitionSetCreateFrom );
    qvDictDelStringKey( &( *ds )->definitions, tag );
}

void qvTagDefinitionSetDelDefinitionAt( QV_TAG_DEFINITION_SET **ds, QV_INT idx )
{
    qv::makePrivate( ds, qvTagDefinitionSetCreateFrom );
    qvDictDelAt( &( *ds )->definitions, idx );
}

void qvTagDefinitionSetClearDefinitions( QV_TAG_DEFINITION_SET **ds )
{
    qv::makePrivate( ds, qvTagDefinitionSetCreateFrom );
    qvDictClear( &( *ds )->definitions );
}

QV_STORE *qvTagDefinitionSetStore( QV_TAG_DEFINITION_SET *ds )
{
    QV_CHECK( ds );
    qv::Local<QV_STORE> definitions( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < qv::dictLength( ds->definitions ); idx++ )
    {
        qvObj def = qv::dictPairs( ds->definitions )[idx].val;
        qv::Local<QV_STORE> definition( qvTagDefinitionStore( qvTagDefinitionFrom( def ) ) );
        qvStoreAppendStore( definitions.edit(), definition );
    }
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetStoreCstr( store.edit(), "definitions", -1, definitions );
    return store.give();
}

QV_TAG_DEFINITION_SET *qvTagDefinitionSetRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_TAG_DEFINITION_SET> ds( qvTagDefinitionSetCreate() );
    qv::Local<QV_STORE> definitions( qvStoreStoreCstr( store, "definitions", -1 ) );
    QV_INT length = definitions ? qvStoreLength( definitions ) : 0;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        qv::Local<QV_STORE> definition( qvStoreStoreAt( definitions, idx ) );
        if ( !definition )
            continue;
        qv::Local<QV_TAG_DEFINITION> def( qvTagDefinitionTryRestore( definition ) );
        if ( def )
            qvTagDefinitionSetSetDefinition( ds.edit(), def );
    }
    return ds.give();
}
