#include <qv/base/qv_opt_def.hh>

#include <qv/base/qv_boxed_int.h>
#include <qv/base/qv_dict.hh>
#include <qv/base/qv_range_map.h>
#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_OPT_DEF, qvOptDef, { .freeFunc = qv___OptDefFreeFunc } )

namespace
{

// The integer in a box that is handed over, or absent if there is none.
QV_INT unboxed( qvObj given, QV_INT absent )
{
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntFrom( given ) );
    return boxed ? qvBoxedIntValue( boxed ) : absent;
}

} // namespace

void qv___OptDefFreeFunc( qvObj thisObj )
{
    QV_OPT_DEF *def = qvOptDefFrom( thisObj );
    QV_CHECK( def );
    qvRangeMapRelease( def->flagsForId );
    qvDictRelease( def->idForShortOpt );
    qvDictRelease( def->idForLongOpt );
}

QV_OPT_DEF *qvOptDefCreate( void )
{
    auto *def = qv::create<QV_OPT_DEF>( qvOptDefSort() );
    def->flagsForId = qvRangeMapCreateAutoCollapsing();
    def->idForShortOpt = qvDictCreate();
    def->idForLongOpt = qvDictCreate();
    def->argOnly = QV_OPT_ID_NON_OPTION;
    def->reorder = QV_FALSE;
    def->stringize = QV_FALSE;
    return def;
}

QV_OPT_DEF *qvOptDefCreateFrom( QV_OPT_DEF *source )
{
    QV_CHECK( source );
    auto *def = qv::create<QV_OPT_DEF>( qvOptDefSort() );
    def->flagsForId = qv::retained( source->flagsForId );
    def->idForShortOpt = qv::retained( source->idForShortOpt );
    def->idForLongOpt = qv::retained( source->idForLongOpt );
    def->argOnly = source->argOnly;
    def->reorder = source->reorder;
    def->stringize = source->stringize;
    return def;
}

QV_BOOL qvOptDefReorder( QV_OPT_DEF *def )
{
    QV_CHECK( def );
    return def->reorder;
}

void qvOptDefSetReorder( QV_OPT_DEF **def, QV_BOOL reorder )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    qv::makePrivate( def, qvOptDefCreateFrom );
    ( *def )->reorder = QV_BOOL_FROM( reorder );
}

QV_BOOL qvOptDefStringize( QV_OPT_DEF *def )
{
    QV_CHECK( def );
    return def->stringize;
}

void qvOptDefSetStringize( QV_OPT_DEF **def, QV_BOOL stringize )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    qv::makePrivate( def, qvOptDefCreateFrom );
    ( *def )->stringize = QV_BOOL_FROM( stringize );
}

QV_OPT_FLAGS qvOptDefFlags( QV_OPT_DEF *def, QV_INT optId )
{
    QV_CHECK( def );
    return unboxed( qvRangeMapIntKey( def->flagsForId, optId ), 0 );
}

void qvOptDefSetFlags( QV_OPT_DEF **def, QV_INT optId, QV_OPT_FLAGS flags )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    QV_CHECK( optId >= 0 );
    qv::makePrivate( def, qvOptDefCreateFrom );
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( flags ) );
    qvRangeMapSetIntKey( &( *def )->flagsForId, optId, qvBoxedIntObj( boxed ) );
}

QV_INT qvOptDefShortOpt( QV_OPT_DEF *def, QV_CHAR optChar )
{
    QV_CHECK( def );
    return unboxed( qvDictIntKey( def->idForShortOpt, optChar ), QV_OPT_ID_UNDEFINED );
}

void qvOptDefSetShortOpt( QV_OPT_DEF **def, QV_CHAR optChar, QV_INT optId )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    QV_CHECK( optId >= 0 );
    qv::makePrivate( def, qvOptDefCreateFrom );
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( optId ) );
    qvDictSetIntKey( &( *def )->idForShortOpt, optChar, qvBoxedIntObj( boxed ) );
}

QV_INT qvOptDefLongOpt( QV_OPT_DEF *def, QV_STRING *optString, QV_BOOL allowAbbreviation,
                        QV_BOOL *abbreviated )
{
    QV_CHECK( def );
    QV_CHECK( optString );
    if ( abbreviated )
        *abbreviated = QV_FALSE;
    QV_INT exact = unboxed( qvDictStringKey( def->idForLongOpt, optString ), QV_OPT_ID_UNDEFINED );
    if ( exact >= 0 || !allowAbbreviation )
        return exact;

    QV_INT found = QV_OPT_ID_UNDEFINED;
    const qv___DictPair *pairs = qv::dictPairs( def->idForLongOpt );
    for ( QV_INT idx = 0; idx < qv::dictLength( def->idForLongOpt ); idx++ )
    {
        if ( !qvStringBeginsWith( qvStringFrom( pairs[idx].key ), optString ) )
            continue;
        if ( abbreviated )
            *abbreviated = QV_TRUE;
        if ( found >= 0 )
            return QV_OPT_ID_AMBIGUOUS;
        found = qvBoxedIntValue( qvBoxedIntFrom( pairs[idx].val ) );
    }
    return found;
}

void qvOptDefSetLongOpt( QV_OPT_DEF **def, QV_STRING *optString, QV_INT optId )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    QV_CHECK( optString );
    QV_CHECK( qvStringLength( optString ) > 0 );
    QV_CHECK( optId >= 0 );
    qv::makePrivate( def, qvOptDefCreateFrom );
    qv::Local<QV_BOXED_INT> boxed( qvBoxedIntCreate( optId ) );
    qvDictSetStringKey( &( *def )->idForLongOpt, optString, qvBoxedIntObj( boxed ) );
}

void qvOptDefSetLongOptCstr( QV_OPT_DEF **def, const char *optString, QV_INT optStringLength, QV_INT optId )
{
    qv::Local<QV_STRING> name( qvStringCreateFromCstr( optString, optStringLength ) );
    qvOptDefSetLongOpt( def, name, optId );
}

void qvOptDefSetLongOptWcstr( QV_OPT_DEF **def, const wchar_t *optString, QV_INT optStringLength,
                              QV_INT optId )
{
    qv::Local<QV_STRING> name( qvStringCreateFromWcstr( optString, optStringLength ) );
    qvOptDefSetLongOpt( def, name, optId );
}

QV_INT qvOptDefArgOnly( QV_OPT_DEF *def )
{
    QV_CHECK( def );
    return def->argOnly;
}

void qvOptDefSetArgOnly( QV_OPT_DEF **def, QV_INT optId )
{
    QV_CHECK( def );
    QV_CHECK( *def );
    QV_CHECK( optId >= 0 );
    qv::makePrivate( def, qvOptDefCreateFrom );
    ( *def )->argOnly = optId;
}
