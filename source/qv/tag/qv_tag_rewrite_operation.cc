#include <qv/tag/qv_tag_rewrite.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/tag/qv_tag_set.h>

QV_SORT_DEFINE( QV_TAG_REWRITE_OPERATION, qvTagRewriteOperation,
                { .freeFunc = qv___TagRewriteOperationFreeFunc,
                  .compareFunc = qv___TagRewriteOperationCompareFunc } )

constinit QV_ENUM *qv___TagRewriteOperationTypeEnum = nullptr;

namespace
{

constexpr qv::EnumName typeNames[] = {
    { QV_TAG_REWRITE_OPERATION_TYPE_SET, "QV_TAG_REWRITE_OPERATION_TYPE_SET" },
    { QV_TAG_REWRITE_OPERATION_TYPE_DELETE, "QV_TAG_REWRITE_OPERATION_TYPE_DELETE" },
    { QV_TAG_REWRITE_OPERATION_TYPE_PASSTHROUGH, "QV_TAG_REWRITE_OPERATION_TYPE_PASSTHROUGH" },
};

} // namespace

void qv___TagRewriteOperationTypeStartup()
{
    qv___TagRewriteOperationTypeEnum = qv::enumFromTable( typeNames, QV_SIZEOF_ARRAY( typeNames ) );
}

void qv___TagRewriteOperationTypeShutdown()
{
    qv::retire( &qv___TagRewriteOperationTypeEnum );
}

QV_TAG_REWRITE_OPERATION_TYPE qvTagRewriteOperationTypeFromString( QV_STRING *text )
{
    return qvEnumParse( qv___TagRewriteOperationTypeEnum, text );
}

QV_STRING *qvTagRewriteOperationTypeToString( QV_TAG_REWRITE_OPERATION_TYPE type )
{
    QV_CHECK( QV_TAG_REWRITE_OPERATION_TYPE_OK( type ) );
    return qvEnumGenerate( qv___TagRewriteOperationTypeEnum, type );
}

void qv___TagRewriteOperationFreeFunc( qvObj thisObj )
{
    QV_TAG_REWRITE_OPERATION *op = qvTagRewriteOperationFrom( thisObj );
    QV_CHECK( op );
    qvStringRelease( op->tag );
}

QV_INT qv___TagRewriteOperationCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_TAG_REWRITE_OPERATION *thisOp = qvTagRewriteOperationFrom( thisObj );
    QV_TAG_REWRITE_OPERATION *thatOp = qvTagRewriteOperationFrom( thatObj );
    if ( thisOp->type != thatOp->type )
        return thisOp->type < thatOp->type ? -1 : 1;
    return qvStringCompare( thisOp->tag, thatOp->tag );
}

QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationCreate( QV_TAG_REWRITE_OPERATION_TYPE type, QV_STRING *tag )
{
    QV_CHECK( QV_TAG_REWRITE_OPERATION_TYPE_OK( type ) );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    auto *op = qv::create<QV_TAG_REWRITE_OPERATION>( qvTagRewriteOperationSort() );
    op->type = type;
    op->tag = qv::retained( tag );
    return op;
}

QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationCreateFrom( QV_TAG_REWRITE_OPERATION *source )
{
    QV_CHECK( source );
    return qvTagRewriteOperationCreate( source->type, source->tag );
}

QV_TAG_REWRITE_OPERATION_TYPE qvTagRewriteOperationType( QV_TAG_REWRITE_OPERATION *op )
{
    QV_CHECK( op );
    return op->type;
}

void qvTagRewriteOperationSetType( QV_TAG_REWRITE_OPERATION **op, QV_TAG_REWRITE_OPERATION_TYPE type )
{
    QV_CHECK( QV_TAG_REWRITE_OPERATION_TYPE_OK( type ) );
    qv::makePrivate( op, qvTagRewriteOperationCreateFrom );
    ( *op )->type = type;
}

QV_STRING *qvTagRewriteOperationTag( QV_TAG_REWRITE_OPERATION *op )
{
    QV_CHECK( op );
    return qv::retained( op->tag );
}

void qvTagRewriteOperationSetTag( QV_TAG_REWRITE_OPERATION **op, QV_STRING *tag )
{
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    qv::makePrivate( op, qvTagRewriteOperationCreateFrom );
    qv::assign( &( *op )->tag, tag );
}

QV_STORE *qvTagRewriteOperationStore( QV_TAG_REWRITE_OPERATION *op )
{
    QV_CHECK( op );
    qv::Local<QV_STRING> type( qvTagRewriteOperationTypeToString( op->type ) );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "type", -1, type );
    qvStoreSetValueCstr( store.edit(), "tag", -1, op->tag );
    return store.give();
}

QV_TAG_REWRITE_OPERATION *qvTagRewriteOperationTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_STRING> typeName( qvStoreValueCstr( store, "type", -1 ) );
    qv::Local<QV_STRING> tag( qvStoreValueCstr( store, "tag", -1 ) );
    if ( !typeName || !tag || !qvTagOk( tag ) )
        return nullptr;
    QV_TAG_REWRITE_OPERATION_TYPE type = qvTagRewriteOperationTypeFromString( typeName );
    return type == -1 ? nullptr : qvTagRewriteOperationCreate( type, tag );
}
