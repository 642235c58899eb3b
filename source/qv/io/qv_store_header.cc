#include <qv/io/qv_store_header.hh>

#include <qv/base/qv_name.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/io/qv_header.h>
#include <qv/io/qv_header_info.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_sort.h>

QV_SORT_DEFINE( QV_STORE_HEADER, qvStoreHeader, { .freeFunc = qv___StoreHeaderFreeFunc } )

void qv___StoreHeaderFreeFunc( qvObj thisObj )
{
    QV_STORE_HEADER *sth = qvStoreHeaderFrom( thisObj );
    QV_CHECK( sth );
    qvStringRelease( sth->type );
    qv::releaseOptional( sth->moduleVersion );
    qv::releaseOptional( sth->info );
}

QV_STORE_HEADER *qvStoreHeaderCreate( QV_STRING *type )
{
    QV_CHECK( type );
    QV_CHECK( qvNameOk( type, QV_TRUE ) );
    auto *sth = qv::create<QV_STORE_HEADER>( qvStoreHeaderSort() );
    sth->type = qv::retained( type );
    sth->moduleVersion = nullptr;
    sth->info = nullptr;
    sth->encoding = -1;
    return sth;
}

QV_STORE_HEADER *qvStoreHeaderCreateFrom( QV_STORE_HEADER *source )
{
    QV_CHECK( source );
    auto *sth = qv::create<QV_STORE_HEADER>( qvStoreHeaderSort() );
    sth->type = qv::retained( source->type );
    sth->moduleVersion = qv::retainedOptional( source->moduleVersion );
    sth->info = qv::retainedOptional( source->info );
    sth->encoding = source->encoding;
    return sth;
}

QV_STRING *qvStoreHeaderType( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return qv::retained( sth->type );
}

void qvStoreHeaderSetType( QV_STORE_HEADER **sth, QV_STRING *type )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    QV_CHECK( type );
    QV_CHECK( qvNameOk( type, QV_TRUE ) );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::assign( &( *sth )->type, type );
}

void qvStoreHeaderSetTypeFromSort( QV_STORE_HEADER **sth, QV_SORT *sort, QV_BOOL updateModuleVersion )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    qvStoreHeaderSetType( sth, type );
    if ( updateModuleVersion )
        qvStoreHeaderUpdateModuleVersionFromSort( sth, sort );
}

QV_STORE_HEADER *qvStoreHeaderCreateFromSort( QV_SORT *sort, QV_BOOL updateModuleVersion )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    qv::Local<QV_STORE_HEADER> sth( qvStoreHeaderCreate( type ) );
    if ( updateModuleVersion )
        qvStoreHeaderUpdateModuleVersionFromSort( sth.edit(), sort );
    return sth.give();
}

QV_BOOL qvStoreHeaderIsType( QV_STORE_HEADER *sth, QV_STRING *type )
{
    QV_CHECK( sth );
    QV_CHECK( type );
    return qvStringEquals( sth->type, type );
}

QV_BOOL qvStoreHeaderIsTypeSort( QV_STORE_HEADER *sth, QV_SORT *sort )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    return qvStoreHeaderIsType( sth, type );
}

void qvStoreHeaderUpdateModuleVersionFromSort( QV_STORE_HEADER **sth, QV_SORT *sort )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    QV_CHECK( sort );
    QV_MODULE *module = qvSortModule( sort );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::replaceWith( &( *sth )->moduleVersion, module ? qvModuleVersion( module ) : nullptr );
}

QV_MODULE_VERSION *qvStoreHeaderModuleVersion( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return qv::retainedOptional( sth->moduleVersion );
}

QV_BOOL qvStoreHeaderHasModuleVersion( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return QV_BOOL_FROM( sth->moduleVersion );
}

void qvStoreHeaderSetModuleVersion( QV_STORE_HEADER **sth, QV_MODULE_VERSION *moduleVersion )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    QV_CHECK( moduleVersion );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::assign( &( *sth )->moduleVersion, moduleVersion );
}

void qvStoreHeaderDelModuleVersion( QV_STORE_HEADER **sth )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::replaceWith<QV_MODULE_VERSION>( &( *sth )->moduleVersion, nullptr );
}

QV_HEADER_INFO *qvStoreHeaderInfo( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return qv::retainedOptional( sth->info );
}

QV_BOOL qvStoreHeaderHasInfo( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return QV_BOOL_FROM( sth->info );
}

void qvStoreHeaderSetInfo( QV_STORE_HEADER **sth, QV_HEADER_INFO *info )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    QV_CHECK( info );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::assign( &( *sth )->info, info );
}

void qvStoreHeaderDelInfo( QV_STORE_HEADER **sth )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    qv::replaceWith<QV_HEADER_INFO>( &( *sth )->info, nullptr );
}

void qvStoreHeaderGenerateInfo( QV_STORE_HEADER **sth )
{
    qv::Local<QV_HEADER_INFO> info( qvHeaderInfoGenerate() );
    qvStoreHeaderSetInfo( sth, info );
}

QV_STORE_ENCODING qvStoreHeaderEncoding( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return sth->encoding;
}

QV_BOOL qvStoreHeaderHasEncoding( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    return sth->encoding != -1;
}

void qvStoreHeaderSetEncoding( QV_STORE_HEADER **sth, QV_STORE_ENCODING encoding )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    QV_CHECK( QV_STORE_ENCODING_OK( encoding ) );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    ( *sth )->encoding = encoding;
}

void qvStoreHeaderDelEncoding( QV_STORE_HEADER **sth )
{
    QV_CHECK( sth );
    QV_CHECK( *sth );
    qv::makePrivate( sth, qvStoreHeaderCreateFrom );
    ( *sth )->encoding = -1;
}

QV_HEADER *qvStoreHeaderEncodeToHeader( QV_STORE_HEADER *sth )
{
    QV_CHECK( sth );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    if ( sth->info )
    {
        qv::Local<QV_STORE> info( qvHeaderInfoStore( sth->info ) );
        qvStoreSetStoreCstr( store.edit(), "info", -1, info );
    }
    if ( sth->encoding != -1 )
    {
        qv::Local<QV_STRING> encoding( qvStoreEncodingToString( sth->encoding ) );
        qvStoreSetValueCstr( store.edit(), "encoding", -1, encoding );
    }
    qv::Local<QV_HEADER> hdr( qvHeaderCreate( sth->type ) );
    if ( sth->moduleVersion )
        qvHeaderSetModuleVersion( hdr.edit(), sth->moduleVersion );
    qvHeaderSetStore( hdr.edit(), store );
    return hdr.give();
}

QV_STORE_HEADER *qvStoreHeaderTryDecodeFromHeader( QV_HEADER *hdr )
{
    qv::Local<QV_STRING> type( qvHeaderType( hdr ) );
    qv::Local<QV_STORE> store( qvHeaderStore( hdr ) );
    qv::Local<QV_STORE> info( qvStoreStoreCstr( store, "info", -1 ) );
    qv::Local<QV_STRING> encoding( qvStoreValueCstr( store, "encoding", -1 ) );
    qv::Local<QV_STORE_HEADER> sth( qvStoreHeaderCreate( type ) );
    sth->moduleVersion = qvHeaderModuleVersion( hdr );
    if ( info )
        sth->info = qvHeaderInfoTryRestore( info );
    if ( encoding )
    {
        sth->encoding = qvStoreEncodingFromString( encoding );
        if ( sth->encoding == -1 )
            return nullptr;
    }
    return sth.give();
}
