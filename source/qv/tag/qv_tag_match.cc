#include <qv/tag/qv_tag_match.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_store.h>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/tag/qv_tag_set.hh>

QV_SORT_DEFINE( QV_TAG_MATCH, qvTagMatch,
                { .freeFunc = qv___TagMatchFreeFunc, .compareFunc = qv___TagMatchCompareFunc } )

constinit QV_ENUM *qv___TagMatchTypeEnum = nullptr;

namespace
{

constexpr qv::EnumName typeNames[] = {
    { QV_TAG_MATCH_TYPE_OR, "QV_TAG_MATCH_TYPE_OR" },
    { QV_TAG_MATCH_TYPE_XOR, "QV_TAG_MATCH_TYPE_XOR" },
    { QV_TAG_MATCH_TYPE_AND, "QV_TAG_MATCH_TYPE_AND" },
    { QV_TAG_MATCH_TYPE_NOT, "QV_TAG_MATCH_TYPE_NOT" },
};

QV_TAG_MATCH *createWith( QV_TAG_MATCH_TYPE type, QV_TAG_SET *tagSet )
{
    auto *match = qv::create<QV_TAG_MATCH>( qvTagMatchSort() );
    match->type = type;
    match->tagSet = qv::retained( tagSet );
    return match;
}

QV_INT countCommonTags( QV_TAG_SET *tsA, QV_TAG_SET *tsB )
{
    QV_INT count = 0;
    for ( QV_INT idx = 0; idx < qv::dictLength( tsA->tags ); idx++ )
    {
        if ( qvDictHasStringKey( tsB->tags, qv::tagAt( tsA, idx ) ) )
            count++;
    }
    return count;
}

} // namespace

void qv___TagMatchTypeStartup()
{
    qv___TagMatchTypeEnum = qv::enumFromTable( typeNames, QV_SIZEOF_ARRAY( typeNames ) );
}

void qv___TagMatchTypeShutdown()
{
    qv::retire( &qv___TagMatchTypeEnum );
}

QV_TAG_MATCH_TYPE qvTagMatchTypeFromString( QV_STRING *text )
{
    return qvEnumParse( qv___TagMatchTypeEnum, text );
}

QV_STRING *qvTagMatchTypeToString( QV_TAG_MATCH_TYPE type )
{
    QV_CHECK( QV_TAG_MATCH_TYPE_OK( type ) );
    return qvEnumGenerate( qv___TagMatchTypeEnum, type );
}

void qv___TagMatchFreeFunc( qvObj thisObj )
{
    QV_TAG_MATCH *match = qvTagMatchFrom( thisObj );
    QV_CHECK( match );
    qvTagSetRelease( match->tagSet );
}

QV_INT qv___TagMatchCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_TAG_MATCH *thisMatch = qvTagMatchFrom( thisObj );
    QV_TAG_MATCH *thatMatch = qvTagMatchFrom( thatObj );
    if ( thisMatch->type != thatMatch->type )
        return thisMatch->type < thatMatch->type ? -1 : 1;
    return qvTagSetCompare( thisMatch->tagSet, thatMatch->tagSet );
}

QV_TAG_MATCH *qvTagMatchCreate( void )
{
    return createWith( QV_TAG_MATCH_TYPE_OR, qv___TagSetEmpty );
}

QV_TAG_MATCH *qvTagMatchCreateFrom( QV_TAG_MATCH *source )
{
    QV_CHECK( source );
    return createWith( source->type, source->tagSet );
}

QV_TAG_MATCH_TYPE qvTagMatchType( QV_TAG_MATCH *match )
{
    QV_CHECK( match );
    return match->type;
}

void qvTagMatchSetType( QV_TAG_MATCH **match, QV_TAG_MATCH_TYPE type )
{
    QV_CHECK( QV_TAG_MATCH_TYPE_OK( type ) );
    qv::makePrivate( match, qvTagMatchCreateFrom );
    ( *match )->type = type;
}

QV_TAG_SET *qvTagMatchTagSet( QV_TAG_MATCH *match )
{
    QV_CHECK( match );
    return qv::retained( match->tagSet );
}

void qvTagMatchSetTagSet( QV_TAG_MATCH **match, QV_TAG_SET *tagSet )
{
    QV_CHECK( tagSet );
    qv::makePrivate( match, qvTagMatchCreateFrom );
    qv::assign( &( *match )->tagSet, tagSet );
}

QV_STORE *qvTagMatchStore( QV_TAG_MATCH *match )
{
    QV_CHECK( match );
    qv::Local<QV_STRING> type( qvTagMatchTypeToString( match->type ) );
    qv::Local<QV_STRING> tags( qvTagSetEncode( match->tagSet ) );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "type", -1, type );
    qvStoreSetValueCstr( store.edit(), "tagSet", -1, tags );
    return store.give();
}

QV_TAG_MATCH *qvTagMatchRestore( QV_STORE *store )
{
    QV_CHECK( store );
    QV_TAG_MATCH *match = qvTagMatchCreate();
    qv::Local<QV_STRING> type( qvStoreValueCstr( store, "type", -1 ) );
    QV_TAG_MATCH_TYPE parsed = type ? qvTagMatchTypeFromString( type ) : -1;
    if ( parsed != -1 )
        match->type = parsed;
    qv::Local<QV_STRING> tags( qvStoreValueCstr( store, "tagSet", -1 ) );
    if ( tags )
        qv::replaceWith( &match->tagSet, qvTagSetDecode( tags ) );
    return match;
}

QV_BOOL qvTagMatchTryMatch( QV_TAG_MATCH *match, QV_TAG_SET *tagSet )
{
    QV_CHECK( match );
    QV_CHECK( tagSet );
    QV_INT wanted = qv::dictLength( match->tagSet->tags );
    if ( wanted == 0 )
        return QV_TRUE;
    QV_INT found = countCommonTags( match->tagSet, tagSet );
    switch ( match->type )
    {
    case QV_TAG_MATCH_TYPE_OR:
        return QV_BOOL_FROM( found >= 1 );
    case QV_TAG_MATCH_TYPE_XOR:
        return QV_BOOL_FROM( found == 1 );
    case QV_TAG_MATCH_TYPE_AND:
        return QV_BOOL_FROM( found == wanted );
    default:
        return QV_BOOL_FROM( found == 0 );
    }
}
