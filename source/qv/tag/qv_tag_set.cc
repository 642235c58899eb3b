#include <qv/tag/qv_tag_set.hh>

#include <qv/base/qv_name.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_TAG_SET, qvTagSet,
                { .freeFunc = qv___TagSetFreeFunc,
                  .compareFunc = qv___TagSetCompareFunc,
                  .toStringFunc = qv___TagSetToStringFunc } )

constinit QV_TAG_SET *qv___TagSetEmpty = nullptr;

namespace
{

QV_TAG_SET *createWith( QV_DICT *tagsGiven )
{
    auto *ts = qv::create<QV_TAG_SET>( qvTagSetSort() );
    ts->tags = tagsGiven;
    return ts;
}

bool areTags( QV_VECTOR *strings )
{
    for ( QV_INT idx = 0; idx < qv::vectorLength( strings ); idx++ )
    {
        if ( !qvTagOk( qvStringFrom( qv::vectorAt( strings, idx ) ) ) )
            return false;
    }
    return true;
}

} // namespace

void qv___TagSetFreeFunc( qvObj thisObj )
{
    QV_TAG_SET *ts = qvTagSetFrom( thisObj );
    QV_CHECK( ts );
    qvDictRelease( ts->tags );
}

QV_INT qv___TagSetCompareFunc( qvObj thisObj, qvObj thatObj )
{
    return qvDictCompare( qvTagSetFrom( thisObj )->tags, qvTagSetFrom( thatObj )->tags );
}

QV_STRING *qv___TagSetToStringFunc( qvObj thisObj )
{
    return qvTagSetEncode( qvTagSetFrom( thisObj ) );
}

void qv___TagSetStartup()
{
    qv___TagSetEmpty = createWith( qvDictCreate() );
}

void qv___TagSetShutdown()
{
    qv::retire( &qv___TagSetEmpty );
}

QV_BOOL qvTagOk( QV_STRING *tag )
{
    return qvNameCamelCaseOk( tag, QV_TRUE );
}

QV_TAG_SET *qvTagSetCreate( void )
{
    return qv::retained( qv___TagSetEmpty );
}

QV_TAG_SET *qvTagSetCreateFrom( QV_TAG_SET *source )
{
    QV_CHECK( source );
    return createWith( qv::retained( source->tags ) );
}

QV_INT qvTagSetTagsLength( QV_TAG_SET *ts )
{
    QV_CHECK( ts );
    return qv::dictLength( ts->tags );
}

QV_STRING *qvTagSetTagAt( QV_TAG_SET *ts, QV_INT idx )
{
    QV_CHECK( ts );
    return qvStringFrom( qvDictKeyAt( ts->tags, idx ) );
}

QV_VECTOR *qvTagSetTagsVector( QV_TAG_SET *ts )
{
    QV_CHECK( ts );
    return qvDictKeysVector( ts->tags );
}

void qvTagSetSetTagsVector( QV_TAG_SET **ts, QV_VECTOR *vec )
{
    QV_CHECK( ts );
    QV_CHECK( *ts );
    QV_CHECK( vec );
    QV_CHECK( qvVectorContainsOnly( vec, qvStringSort() ) );
    QV_CHECK( areTags( vec ) );
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qv::replaceWith( &( *ts )->tags, qvDictCreateWithKeysAndValues( vec, vec ) );
}

QV_BOOL qvTagSetHasTag( QV_TAG_SET *ts, QV_STRING *tag )
{
    QV_CHECK( ts );
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    return qvDictHasStringKey( ts->tags, tag );
}

void qvTagSetSetTag( QV_TAG_SET **ts, QV_STRING *tag )
{
    QV_CHECK( ts );
    if ( qvTagSetHasTag( *ts, tag ) )
        return;
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictSetStringKey( &( *ts )->tags, tag, qvStringObj( tag ) );
}

void qvTagSetDelTag( QV_TAG_SET **ts, QV_STRING *tag )
{
    QV_CHECK( ts );
    if ( !qvTagSetHasTag( *ts, tag ) )
        return;
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictDelStringKey( &( *ts )->tags, tag );
}

void qvTagSetDelTagAt( QV_TAG_SET **ts, QV_INT idx )
{
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictDelAt( &( *ts )->tags, idx );
}

void qvTagSetClearTags( QV_TAG_SET **ts )
{
    QV_CHECK( ts );
    QV_CHECK( *ts );
    qv::assign( ts, qv___TagSetEmpty );
}

QV_BOOL qvTagSetDisjoint( QV_TAG_SET *tsA, QV_TAG_SET *tsB )
{
    QV_CHECK( tsA );
    QV_CHECK( tsB );
    return qvDictDisjoint( tsA->tags, tsB->tags );
}

// In the three below the share keeps the source's tags as they are when it is the set that is edited.

void qvTagSetInclude( QV_TAG_SET **ts, QV_TAG_SET *src )
{
    QV_CHECK( src );
    auto tags = qv::Local<QV_DICT>::share( src->tags );
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictInclude( &( *ts )->tags, tags, QV_FALSE );
}

void qvTagSetExclude( QV_TAG_SET **ts, QV_TAG_SET *src )
{
    QV_CHECK( src );
    auto tags = qv::Local<QV_DICT>::share( src->tags );
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictExclude( &( *ts )->tags, tags );
}

void qvTagSetIntersect( QV_TAG_SET **ts, QV_TAG_SET *src )
{
    QV_CHECK( src );
    auto tags = qv::Local<QV_DICT>::share( src->tags );
    qv::makePrivate( ts, qvTagSetCreateFrom );
    qvDictIntersect( &( *ts )->tags, tags, QV_FALSE );
}

QV_STRING *qvTagSetEncode( QV_TAG_SET *ts )
{
    QV_CHECK( ts );
    qv::Local<QV_STRING> text( qvStringCreate() );
    for ( QV_INT idx = 0; idx < qv::dictLength( ts->tags ); idx++ )
    {
        if ( idx > 0 )
            qv::stringAppendChar( text.edit(), ' ' );
        QV_STRING *tag = qv::tagAt( ts, idx );
        qv::stringAppendChars( text.edit(), qv::stringBacking( tag ), qv::stringLength( tag ) );
    }
    return text.give();
}

QV_TAG_SET *qvTagSetDecode( QV_STRING *string )
{
    QV_CHECK( string );
    qv::Local<QV_VECTOR> parts( qvStringSplitChar( string, ' ', -1 ) );
    qv::Local<QV_VECTOR> tags( qvVectorCreate() );
    for ( QV_INT idx = 0; idx < qv::vectorLength( parts ); idx++ )
    {
        QV_STRING *part = qvStringFrom( qv::vectorAt( parts, idx ) );
        if ( qvTagOk( part ) )
            qvVectorAppendString( tags.edit(), part );
    }
    if ( qv::vectorLength( tags ) == 0 )
        return qvTagSetCreate();
    return createWith( qvDictCreateWithKeysAndValues( tags, tags ) );
}
