#include <qv/io/qv_header.hh>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_name.h>
#include <qv/base/qv_store.h>
#include <qv/base/qv_store_encoding.h>
#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>
#include <qv/runtime/qv_module_version.h>
#include <qv/runtime/qv_sort.h>

QV_SORT_DEFINE( QV_HEADER, qvHeader, { .freeFunc = qv___HeaderFreeFunc } )

namespace
{

constexpr QV_INT separatorLength = 72;

void appendSeparator( QV_STRING **text )
{
    qvStringAppendCharRun( text, '=', separatorLength );
    qv::stringAppendChar( text, '\n' );
}

void appendText( QV_BUFFER **bytes, QV_STRING *text )
{
    qv::Local<QV_BUFFER> part( qvCharsetConvertStringToBuffer( QV_CHARSET_UTF_8, text ) );
    qvBufferAppend( bytes, part );
}

} // namespace

void qv___HeaderFreeFunc( qvObj thisObj )
{
    QV_HEADER *hdr = qvHeaderFrom( thisObj );
    QV_CHECK( hdr );
    qvStringRelease( hdr->type );
    qv::releaseOptional( hdr->moduleVersion );
    qvStoreRelease( hdr->store );
}

QV_HEADER *qvHeaderCreate( QV_STRING *type )
{
    QV_CHECK( type );
    QV_CHECK( qvNameOk( type, QV_TRUE ) );
    auto *hdr = qv::create<QV_HEADER>( qvHeaderSort() );
    hdr->type = qv::retained( type );
    hdr->moduleVersion = nullptr;
    hdr->store = qvStoreCreate();
    return hdr;
}

QV_HEADER *qvHeaderCreateFrom( QV_HEADER *source )
{
    QV_CHECK( source );
    auto *hdr = qv::create<QV_HEADER>( qvHeaderSort() );
    hdr->type = qv::retained( source->type );
    hdr->moduleVersion = qv::retainedOptional( source->moduleVersion );
    hdr->store = qv::retained( source->store );
    return hdr;
}

QV_STRING *qvHeaderType( QV_HEADER *hdr )
{
    QV_CHECK( hdr );
    return qv::retained( hdr->type );
}

void qvHeaderSetType( QV_HEADER **hdr, QV_STRING *type )
{
    QV_CHECK( hdr );
    QV_CHECK( *hdr );
    QV_CHECK( type );
    QV_CHECK( qvNameOk( type, QV_TRUE ) );
    qv::makePrivate( hdr, qvHeaderCreateFrom );
    qv::assign( &( *hdr )->type, type );
}

void qvHeaderSetTypeFromSort( QV_HEADER **hdr, QV_SORT *sort, QV_BOOL updateModuleVersion )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    qvHeaderSetType( hdr, type );
    if ( updateModuleVersion )
        qvHeaderUpdateModuleVersionFromSort( hdr, sort );
}

QV_HEADER *qvHeaderCreateFromSort( QV_SORT *sort, QV_BOOL updateModuleVersion )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    qv::Local<QV_HEADER> hdr( qvHeaderCreate( type ) );
    if ( updateModuleVersion )
        qvHeaderUpdateModuleVersionFromSort( hdr.edit(), sort );
    return hdr.give();
}

QV_BOOL qvHeaderIsType( QV_HEADER *hdr, QV_STRING *type )
{
    QV_CHECK( hdr );
    QV_CHECK( type );
    return qvStringEquals( hdr->type, type );
}

QV_BOOL qvHeaderIsTypeSort( QV_HEADER *hdr, QV_SORT *sort )
{
    qv::Local<QV_STRING> type( qvSortName( sort ) );
    return qvHeaderIsType( hdr, type );
}

void qvHeaderUpdateModuleVersionFromSort( QV_HEADER **hdr, QV_SORT *sort )
{
    QV_CHECK( hdr );
    QV_CHECK( *hdr );
    QV_CHECK( sort );
    QV_MODULE *module = qvSortModule( sort );
    qv::makePrivate( hdr, qvHeaderCreateFrom );
    qv::replaceWith( &( *hdr )->moduleVersion, module ? qvModuleVersion( module ) : nullptr );
}

QV_MODULE_VERSION *qvHeaderModuleVersion( QV_HEADER *hdr )
{
    QV_CHECK( hdr );
    return qv::retainedOptional( hdr->moduleVersion );
}

QV_BOOL qvHeaderHasModuleVersion( QV_HEADER *hdr )
{
    QV_CHECK( hdr );
    return QV_BOOL_FROM( hdr->moduleVersion );
}

void qvHeaderSetModuleVersion( QV_HEADER **hdr, QV_MODULE_VERSION *moduleVersion )
{
    QV_CHECK( hdr );
    QV_CHECK( *hdr );
    QV_CHECK( moduleVersion );
    qv::makePrivate( hdr, qvHeaderCreateFrom );
    qv::assign( &( *hdr )->moduleVersion, moduleVersion );
}

void qvHeaderDelModuleVersion( QV_HEADER **hdr )
{
    QV_CHECK( hdr );
    QV_CHECK( *hdr );
    qv::makePrivate( hdr, qvHeaderCreateFrom );
    qv::replaceWith<QV_MODULE_VERSION>( &( *hdr )->moduleVersion, nullptr );
}

QV_STORE *qvHeaderStore( QV_HEADER *hdr )
{
    QV_CHECK( hdr );
    return qv::retained( hdr->store );
}

void qvHeaderSetStore( QV_HEADER **hdr, QV_STORE *store )
{
    QV_CHECK( hdr );
    QV_CHECK( *hdr );
    QV_CHECK( store );
    qv::makePrivate( hdr, qvHeaderCreateFrom );
    qv::assign( &( *hdr )->store, store );
}

QV_BUFFER *qvHeaderEncode( QV_HEADER *hdr )
{
    QV_CHECK( hdr );
    qv::Local<QV_STRING> text( qvStringCreate() );
    appendSeparator( text.edit() );
    if ( hdr->moduleVersion )
        qvStringAppendFormatCstr( text.edit(), "%s %o", -1, hdr->type, qv::objOf( hdr->moduleVersion ) );
    else
        qvStringAppend( text.edit(), hdr->type );
    qv::stringAppendChar( text.edit(), '\n' );

    qv::Local<QV_BUFFER> bytes( qvBufferCreate() );
    appendText( bytes.edit(), text );
    qv::Local<QV_BUFFER> content(
        qvStoreEncodeHeaderless( hdr->store, QV_STORE_ENCODING_HEADERLESS_STANDARD ) );
    qvBufferAppend( bytes.edit(), content );
    qvStringClear( text.edit() );
    appendSeparator( text.edit() );
    appendText( bytes.edit(), text );
    return bytes.give();
}
