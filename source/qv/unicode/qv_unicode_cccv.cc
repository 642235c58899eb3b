#include <qv/unicode/qv_unicode_cccv.h>

#include <qv/base/qv_enum.hh>
#include <qv/base/qv_string.h>
#include <qv/unicode/qv_unicode_db.hh>

namespace
{

struct CccvRow
{
    QV_UNICODE_CCCV cccv;
    const char *description;
    const char *symName;
};

// The classes with a name, ascending.
constexpr CccvRow rows[] = {
    { QV_UNICODE_CCCV_SPACING, "Spacing, split, enclosing, reordrant, and Tibetan subjoined",
      "QV_UNICODE_CCCV_SPACING" },
    { QV_UNICODE_CCCV_OVERLAYS, "Overlays and interior", "QV_UNICODE_CCCV_OVERLAYS" },
    { QV_UNICODE_CCCV_NUKTAS, "Nuktas", "QV_UNICODE_CCCV_NUKTAS" },
    { QV_UNICODE_CCCV_HIRAGANA, "Hiragana/Katakana voicing marks", "QV_UNICODE_CCCV_HIRAGANA" },
    { QV_UNICODE_CCCV_VIRAMAS, "Viramas", "QV_UNICODE_CCCV_VIRAMAS" },
    { QV_UNICODE_CCCV_FIXED_POS_START, "Start of fixed position classes", "QV_UNICODE_CCCV_FIXED_POS_START" },
    { QV_UNICODE_CCCV_FIXED_POS_END, "End of fixed position classes", "QV_UNICODE_CCCV_FIXED_POS_END" },
    { QV_UNICODE_CCCV_BELOW_LEFT_ATTACHED, "Below left attached", "QV_UNICODE_CCCV_BELOW_LEFT_ATTACHED" },
    { QV_UNICODE_CCCV_BELOW_ATTACHED, "Below attached", "QV_UNICODE_CCCV_BELOW_ATTACHED" },
    { QV_UNICODE_CCCV_BELOW_RIGHT_ATTACHED, "Below right attached", "QV_UNICODE_CCCV_BELOW_RIGHT_ATTACHED" },
    { QV_UNICODE_CCCV_LEFT_ATTACHED, "Left attached (reordrant around single base character)",
      "QV_UNICODE_CCCV_LEFT_ATTACHED" },
    { QV_UNICODE_CCCV_RIGHT_ATTACHED, "Right attached", "QV_UNICODE_CCCV_RIGHT_ATTACHED" },
    { QV_UNICODE_CCCV_ABOVE_LEFT_ATTACHED, "Above left attached", "QV_UNICODE_CCCV_ABOVE_LEFT_ATTACHED" },
    { QV_UNICODE_CCCV_ABOVE_ATTACHED, "Above attached", "QV_UNICODE_CCCV_ABOVE_ATTACHED" },
    { QV_UNICODE_CCCV_ABOVE_RIGHT_ATTACHED, "Above right attached", "QV_UNICODE_CCCV_ABOVE_RIGHT_ATTACHED" },
    { QV_UNICODE_CCCV_BELOW_LEFT, "Below left", "QV_UNICODE_CCCV_BELOW_LEFT" },
    { QV_UNICODE_CCCV_BELOW, "Below", "QV_UNICODE_CCCV_BELOW" },
    { QV_UNICODE_CCCV_BELOW_RIGHT, "Below right", "QV_UNICODE_CCCV_BELOW_RIGHT" },
    { QV_UNICODE_CCCV_LEFT, "Left (reordrant around single base character)", "QV_UNICODE_CCCV_LEFT" },
    { QV_UNICODE_CCCV_RIGHT, "Right", "QV_UNICODE_CCCV_RIGHT" },
    { QV_UNICODE_CCCV_ABOVE_LEFT, "Above left", "QV_UNICODE_CCCV_ABOVE_LEFT" },
    { QV_UNICODE_CCCV_ABOVE, "Above", "QV_UNICODE_CCCV_ABOVE" },
    { QV_UNICODE_CCCV_ABOVE_RIGHT, "Above right", "QV_UNICODE_CCCV_ABOVE_RIGHT" },
    { QV_UNICODE_CCCV_DOUBLE_BELOW, "Double below", "QV_UNICODE_CCCV_DOUBLE_BELOW" },
    { QV_UNICODE_CCCV_DOUBLE_ABOVE, "Double above", "QV_UNICODE_CCCV_DOUBLE_ABOVE" },
    { QV_UNICODE_CCCV_BELOW_IOTA, "Below (iota subscript)", "QV_UNICODE_CCCV_BELOW_IOTA" },
};
constexpr QV_INT rowCount = QV_SIZEOF_ARRAY( rows );

// From startup to shutdown.
constinit QV_ENUM *symNames = nullptr;

// The row of a class, null if it has no name.
const CccvRow *findRow( QV_UNICODE_CCCV cccv )
{
    for ( const CccvRow &row : rows )
    {
        if ( row.cccv == cccv )
            return &row;
    }
    return nullptr;
}

} // namespace

void qv___UnicodeCccvStartup()
{
    qv::EnumName names[rowCount];
    for ( QV_INT idx = 0; idx < rowCount; idx++ )
    {
        names[idx] = { rows[idx].cccv, rows[idx].symName };
    }
    symNames = qv::enumFromTable( names, rowCount );
}

void qv___UnicodeCccvShutdown()
{
    qv::retire( &symNames );
}

QV_UNICODE_CCCV qvUnicodeCccv( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return qv___UnicodeCccvDbLookup( ch );
}

QV_BOOL qvUnicodeHasCccvSpacing( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_SPACING );
}

QV_BOOL qvUnicodeHasCccvOverlays( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_OVERLAYS );
}

QV_BOOL qvUnicodeHasCccvNuktas( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_NUKTAS );
}

QV_BOOL qvUnicodeHasCccvHiragana( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_HIRAGANA );
}

QV_BOOL qvUnicodeHasCccvViramas( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_VIRAMAS );
}

QV_BOOL qvUnicodeHasCccvFixedPosStart( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_FIXED_POS_START );
}

QV_BOOL qvUnicodeHasCccvFixedPosEnd( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_FIXED_POS_END );
}

QV_BOOL qvUnicodeHasCccvBelowLeftAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_LEFT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvBelowAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvBelowRightAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_RIGHT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvLeftAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_LEFT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvRightAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_RIGHT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvAboveLeftAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE_LEFT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvAboveAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvAboveRightAttached( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE_RIGHT_ATTACHED );
}

QV_BOOL qvUnicodeHasCccvBelowLeft( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_LEFT );
}

QV_BOOL qvUnicodeHasCccvBelow( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW );
}

QV_BOOL qvUnicodeHasCccvBelowRight( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_RIGHT );
}

QV_BOOL qvUnicodeHasCccvLeft( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_LEFT );
}

QV_BOOL qvUnicodeHasCccvRight( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_RIGHT );
}

QV_BOOL qvUnicodeHasCccvAaboveLeft( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE_LEFT );
}

QV_BOOL qvUnicodeHasCccvAbove( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE );
}

QV_BOOL qvUnicodeHasCccvAboveRight( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_ABOVE_RIGHT );
}

QV_BOOL qvUnicodeHasCccvDoubleBelow( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_DOUBLE_BELOW );
}

QV_BOOL qvUnicodeHasCccvDoubleAbove( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_DOUBLE_ABOVE );
}

QV_BOOL qvUnicodeHasCccvBelowIota( QV_CHAR ch )
{
    return QV_BOOL_FROM( qvUnicodeCccv( ch ) == QV_UNICODE_CCCV_BELOW_IOTA );
}

QV_BOOL qvUnicodeHasCccvFixedPos( QV_CHAR ch )
{
    QV_UNICODE_CCCV cccv = qvUnicodeCccv( ch );
    return QV_BOOL_FROM( QV_UNICODE_CCCV_FIXED_POS_START <= cccv && cccv <= QV_UNICODE_CCCV_FIXED_POS_END );
}

QV_STRING *qvUnicodeCccvDescription( QV_UNICODE_CCCV cccv )
{
    QV_CHECK( QV_UNICODE_CCCV_OK( cccv ) );
    const CccvRow *row = findRow( cccv );
    if ( !row )
        return qvStringCreateFromFormatCstr( "Canonical Combining Class Value %i", -1, cccv );
    return qvStringCreateFromCstr( row->description, -1 );
}

QV_STRING *qvUnicodeCccvSymName( QV_UNICODE_CCCV cccv )
{
    QV_CHECK( QV_UNICODE_CCCV_OK( cccv ) );
    return qvEnumGenerate( symNames, cccv );
}
