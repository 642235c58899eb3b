#include <qv/tag/qv_tag_definition.hh>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_nested.hh>
#include <qv/base/qv_store.hh>
#include <qv/base/qv_string.h>
#include <qv/runtime/qv_local.hh>
#include <qv/tag/qv_tag_set.h>

QV_SORT_DEFINE( QV_TAG_DEFINITION, qvTagDefinition,
                { .freeFunc = qv___TagDefinitionFreeFunc, .compareFunc = qv___TagDefinitionCompareFunc } )

constinit QV_ENUM *qv___TagColorEnum = nullptr;

namespace
{

constexpr qv::EnumName colorNames[] = {
    { QV_TAG_COLOR_RED, "QV_TAG_COLOR_RED" },       { QV_TAG_COLOR_ORANGE, "QV_TAG_COLOR_ORANGE" },
    { QV_TAG_COLOR_YELLOW, "QV_TAG_COLOR_YELLOW" }, { QV_TAG_COLOR_GREEN, "QV_TAG_COLOR_GREEN" },
    { QV_TAG_COLOR_BLUE, "QV_TAG_COLOR_BLUE" },     { QV_TAG_COLOR_INDIGO, "QV_TAG_COLOR_INDIGO" },
    { QV_TAG_COLOR_VIOLET, "QV_TAG_COLOR_VIOLET" }, { QV_TAG_COLOR_WHITE, "QV_TAG_COLOR_WHITE" },
    { QV_TAG_COLOR_GREY, "QV_TAG_COLOR_GREY" },     { QV_TAG_COLOR_BLACK, "QV_TAG_COLOR_BLACK" },
};

} // namespace

void qv___TagColorStartup()
{
    qv___TagColorEnum = qv::enumFromTable( colorNames, QV_SIZEOF_ARRAY( colorNames ) );
}

void qv___TagColorShutdown()
{
    qv::retire( &qv___TagColorEnum );
}

QV_TAG_COLOR qvTagColorFromString( QV_STRING *text )
{
    return qvEnumParse( qv___TagColorEnum, text );
}

QV_STRING *qvTagColorToString( QV_TAG_COLOR color )
{
    QV_CHECK( QV_TAG_COLOR_OK( color ) );
    return qvEnumGenerate( qv___TagColorEnum, color );
}

void qv___TagDefinitionFreeFunc( qvObj thisObj )
{
    QV_TAG_DEFINITION *def = qvTagDefinitionFrom( thisObj );
    QV_CHECK( def );
    qvStringRelease( def->tag );
    qv::releaseOptional( def->comment );
}

QV_INT qv___TagDefinitionCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_TAG_DEFINITION *thisDef = qvTagDefinitionFrom( thisObj );
    QV_TAG_DEFINITION *thatDef = qvTagDefinitionFrom( thatObj );
    QV_INT order = qvStringCompare( thisDef->tag, thatDef->tag );
    if ( order == 0 )
        order = qv::compareOptional( qvStringObj( thisDef->comment ), qvStringObj( thatDef->comment ) );
    if ( order == 0 )
        order = ( thisDef->color > thatDef->color ) - ( thisDef->color < thatDef->color );
    return order;
}

QV_TAG_DEFINITION *qvTagDefinitionCreate( QV_STRING *tag )
{
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    auto *def = qv::create<QV_TAG_DEFINITION>( qvTagDefinitionSort() );
    def->tag = qv::retained( tag );
    def->comment = nullptr;
    def->color = -1;
    return def;
}

QV_TAG_DEFINITION *qvTagDefinitionCreateFrom( QV_TAG_DEFINITION *source )
{
    QV_CHECK( source );
    auto *def = qv::create<QV_TAG_DEFINITION>( qvTagDefinitionSort() );
    def->tag = qv::retained( source->tag );
    def->comment = qv::retainedOptional( source->comment );
    def->color = source->color;
    return def;
}

QV_STRING *qvTagDefinitionTag( QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    return qv::retained( def->tag );
}

void qvTagDefinitionSetTag( QV_TAG_DEFINITION **def, QV_STRING *tag )
{
    QV_CHECK( tag );
    QV_CHECK( qvTagOk( tag ) );
    qv::makePrivate( def, qvTagDefinitionCreateFrom );
    qv::assign( &( *def )->tag, tag );
}

QV_STRING *qvTagDefinitionComment( QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    return qv::retainedOptional( def->comment );
}

QV_BOOL qvTagDefinitionHasComment( QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    return QV_BOOL_FROM( def->comment );
}

void qvTagDefinitionSetComment( QV_TAG_DEFINITION **def, QV_STRING *comment )
{
    QV_CHECK( comment );
    qv::makePrivate( def, qvTagDefinitionCreateFrom );
    qv::assign( &( *def )->comment, comment );
}

void qvTagDefinitionDelComment( QV_TAG_DEFINITION **def )
{
    qv::makePrivate( def, qvTagDefinitionCreateFrom );
    qv::replaceWith<QV_STRING>( &( *def )->comment, nullptr );
}

QV_TAG_COLOR qvTagDefinitionColor( QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    return def->color;
}

QV_BOOL qvTagDefinitionHasColor( QV_TAG_DEFINITION *def )
{
    return QV_BOOL_FROM( qvTagDefinitionColor( def ) != -1 );
}

void qvTagDefinitionSetColor( QV_TAG_DEFINITION **def, QV_TAG_COLOR color )
{
    QV_CHECK( QV_TAG_COLOR_OK( color ) );
    qv::makePrivate( def, qvTagDefinitionCreateFrom );
    ( *def )->color = color;
}

void qvTagDefinitionDelColor( QV_TAG_DEFINITION **def )
{
    qv::makePrivate( def, qvTagDefinitionCreateFrom );
    ( *def )->color = -1;
}

QV_STORE *qvTagDefinitionStore( QV_TAG_DEFINITION *def )
{
    QV_CHECK( def );
    qv::Local<QV_STORE> store( qvStoreCreate() );
    qvStoreSetValueCstr( store.edit(), "tag", -1, def->tag );
    if ( def->comment )
        qvStoreSetValueCstr( store.edit(), "comment", -1, def->comment );
    if ( def->color != -1 )
    {
        qv::Local<QV_STRING> color( qvTagColorToString( def->color ) );
        qvStoreSetValueCstr( store.edit(), "color", -1, color );
    }
    return store.give();
}

QV_TAG_DEFINITION *qvTagDefinitionTryRestore( QV_STORE *store )
{
    QV_CHECK( store );
    qv::Local<QV_STRING> tag( qvStoreValueCstr( store, "tag", -1 ) );
    if ( !tag || !qvTagOk( tag ) )
        return nullptr;
    QV_TAG_DEFINITION *def = qvTagDefinitionCreate( tag );
    def->comment = qvStoreValueCstr( store, "comment", -1 );
    qv::Local<QV_STRING> color( qvStoreValueCstr( store, "color", -1 ) );
    if ( color )
        def->color = qvTagColorFromString( color );
    return def;
}
