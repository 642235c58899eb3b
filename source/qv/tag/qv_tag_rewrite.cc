#include <qv/tag/qv_tag_rewrite.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/tag/qv_tag_set.hh>

QV_SORT_DEFINE( QV_TAG_REWRITE, qvTagRewrite,
                { .freeFunc = qv___TagRewriteFreeFunc, .compareFunc = qv___TagRewriteCompareFunc } )

namespace
{

QV_TAG_REWRITE *createWith( QV_BOOL clear, QV_DICT *operationsGiven )
{
    auto *rewrite = qv::create<QV_TAG_REWRITE>( qvTagRewriteSort() );
    rewrite->clear = clear;
    rewrite->operations = operationsGiven;
    return rewrite;
}

void enter( QV_DICT **operations, QV_TAG_REWRITE_OPERATION *op )
{
    qvDictSetStringKey( operations, op->tag, qvTagRewriteOperationObj( op ) );
}

// The operation at a position that is known to be good, borrowed.
QV_TAG_REWRITE_OPERATION *operationAt( QV_TAG_REWRITE *rewrite, QV_INT idx )
{
    return qvTagRewriteOperationFrom( qv::dictPairs( rewrite->operations )[idx].val );
}

bool leavesTag( QV_TAG_REWRITE_OPERATION *op, QV_TAG_SET *input )
{
    if ( op->type == QV_TAG_REWRITE_OPERATION_TYPE_PASSTHROUGH )
        return qvTagSetHasTag( input, op->tag );
    return op->type == QV_TAG_REWRITE_OPERATION_TYPE_SET;
}

} // namespace

void qv___TagRewriteFreeFunc( qvObj thisObj )
{
    QV_TAG_REWRITE *rewrite = qvTagRewriteFrom( thisObj );
    QV_CHECK( rewrite );
    qvDictRelease( rewrite->operations );
}

QV_INT qv___TagRewriteCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_TAG_REWRITE *thisRewrite = qvTagRewriteFrom( thisObj );
    QV_TAG_REWRITE *thatRewrite = qvTagRewriteFrom( thatObj );
    if ( thisRewrite->clear != thatRewrite->clear )
        return thisRewrite->clear ? 1 : -1;
    return qvDictCompare( thisRewrite->operations, thatRewrite->operations );
}

QV_TAG_REWRITE *qvTagRewriteCreate( void )
{
    return createWith( QV_FALSE, qvDictCreate() );
}

QV_TAG_REWRITE *qvTagRewriteCreateFrom( QV_TAG_REWRITE *source )
{
    QV_CHECK( source );
    return createWith( source->clear, qv::retained( source->operations ) );
}

QV_BOOL qvTagRewriteClear( QV_TAG_REWRITE *rewrite )
{
    QV_CHECK( rewrite );
    return rewrite->clear;
}

void qvTagRewriteSetClear( QV_TAG_REWRITE **rewrite, QV_BOOL clear )
{
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    ( *rewrite )->clear = QV_BOOL_FROM( clear );
}

void qvTagRewriteClearOperations( QV_TAG_REWRITE **rewrite )
{
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    qvDictClear( &( *rewrite )->operations );
}

QV_INT qvTagRewriteOperationsLength( QV_TAG_REWRITE *rewrite )
{
    QV_CHECK( rewrite );
    return qv::dictLength( rewrite->operations );
}

QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationAt( QV_TAG_REWRITE *rewrite, QV_INT idx )
{
    QV_CHECK( rewrite );
    return qvTagRewriteOperationFrom( qvDictValueAt( rewrite->operations, idx ) );
}

QV_VECTOR *qvTagRewriteOperationsVector( QV_TAG_REWRITE *rewrite )
{
    QV_CHECK( rewrite );
    return qvDictValuesVector( rewrite->operations );
}

void qvTagRewriteSetOperationsVector( QV_TAG_REWRITE **rewrite, QV_VECTOR *vec )
{
    QV_CHECK( rewrite );
    QV_CHECK( *rewrite );
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvTagRewriteOperationSort() ) );
    qv::Local<QV_DICT> operations( qvDictCreate() );
    for ( QV_INT idx = 0; idx < qv::vectorLength( vec ); idx++ )
    {
        enter( operations.edit(), qvTagRewriteOperationFrom( qv::vectorAt( vec, idx ) ) );
    }
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    qv::replaceWith( &( *rewrite )->operations, operations.give() );
}

QV_TAG_REWRITE_OPERATION *qvTagRewriteOperation( QV_TAG_REWRITE *rewrite, QV_STRING *tag )
{
    QV_CHECK( rewrite );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    return qvTagRewriteOperationFrom( qvDictStringKey( rewrite->operations, tag ) );
}

QV_BOOL qvTagRewriteHasOperation( QV_TAG_REWRITE *rewrite, QV_STRING *tag )
{
    QV_CHECK( rewrite );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    return qvDictHasStringKey( rewrite->operations, tag );
}

void qvTagRewriteSetOperation( QV_TAG_REWRITE **rewrite, QV_TAG_REWRITE_OPERATION *op )
{
    QV_CHECK( op );
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    enter( &( *rewrite )->operations, op );
}

void qvTagRewriteDelOperation( QV_TAG_REWRITE **rewrite, QV_STRING *tag )
{
    QV_CHECK( rewrite );
    if ( !qvTagRewriteHasOperation( *rewrite, tag ) )
        return;
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    qvDictDelStringKey( &( *rewrite )->operations, tag );
}

void qvTagRewriteDelOperationAt( QV_TAG_REWRITE **rewrite, QV_INT idx )
{
    qv::makePrivate( rewrite, qvTagRewriteCreateFrom );
    qvDictDelAt( &( *rewrite )->operations, idx );
}

QV_STORE *qvTagRewriteStore( QV_TAG_REWRITE *rewrite )
{
    QV_CHECK( rewrite );
    qv::Local<QV_STORE> operations( qvStoreCreateArray() );
    for ( QV_INT idx = 0; idx < qv::dictLength( rewrite->operations ); idx++ )
    {
        qv::Local<QV_STORE> operation( qvTagRewriteOperationStore( operationAt( rewrite, idx ) ) );
        qvStoreAppendStore( operations.edit(), operation );
    }
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueBoolCstr( store.edit(), "clear", -1, rewrite->clear );
    qvStoreSetStoreCstr( store.edit(), "operations", -1, operations );
    return store.give();
}

QV_TAG_REWRITE *qvTagRewriteRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_TAG_REWRITE> rewrite( qvTagRewriteCreate() );
    QV_BOOL clear = QV_FALSE;
    if ( qvStoreValueBoolCstr( store, &clear, "clear", -1 ) )
        rewrite->clear = clear;
    qv::Local<QV_STORE> operations( qvStoreStoreCstr( store, "operations", -1 ) );
    QV_INT length = operations ? qvStoreLength( operations ) : 0;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        qv::Local<QV_STORE> operation( qvStoreStoreAt( operations, idx ) );
        if ( !operation )
            continue;
        qv::Local<QV_TAG_REWRITE_OPERATION> op( qvTagRewriteOperationTryRestore( operation ) );
        if ( op )
            qvTagRewriteSetOperation( rewrite.edit(), op );
    }
    return rewrite.give();
}

QV_TAG_SET *qvTagRewriteApply( QV_TAG_REWRITE *rewrite, QV_TAG_SET *tagSet )
{
    QV_CHECK( rewrite );
    QV_CHECK( tagSet );
    auto output = qv::Local<QV_TAG_SET>::share( rewrite->clear ? qv___TagSetEmpty : tagSet );
    for ( QV_INT idx = 0; idx < qv::dictLength( rewrite->operations ); idx++ )
    {
        QV_TAG_REWRITE_OPERATION *op = operationAt( rewrite, idx );
        if ( leavesTag( op, tagSet ) )
            qvTagSetSetTag( output.edit(), op->tag );
        else
            qvTagSetDelTag( output.edit(), op->tag );
    }
    return output.give();
}
