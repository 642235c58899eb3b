#include <qv/io/qv_parser_location_map.hh>

#include <qv/base/qv_range_map.hh>
#include <qv/io/qv_location.hh>
#include <qv/io/qv_nlf_flags.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>

QV_SORT_DEFINE( QV_PARSER_LOCATION_MAP, qvParserLocationMap, { .freeFunc = qv___ParserLocationMapFreeFunc } )

namespace
{

// The location of a text's first index.
QV_LOCATION *createStart( QV_LOCATION *optionalLocation )
{
    bool continuesLine = optionalLocation && optionalLocation->column != -1;
    return qvLocationCreateWithLineOffsetAndColumn( optionalLocation, 0,
                                                    continuesLine ? optionalLocation->column : 1 );
}

// The location of the first index of the line after that of loc.
QV_LOCATION *createNextLine( QV_LOCATION *loc )
{
    return qvLocationCreateWithLineOffsetAndColumn( loc, 1, 1 );
}

} // namespace

void qv___ParserLocationMapFreeFunc( qvObj thisObj )
{
    auto *map = static_cast<QV_PARSER_LOCATION_MAP *>( thisObj );
    qv::release( qv::objOf( map->rangeMap ) );
}

QV_PARSER_LOCATION_MAP *qvParserLocationMapCreate( QV_LOCATION *optionalLocation, QV_INT nlfFlags,
                                                   const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( chsLength >= 0 );
    QV_CHECK( chs || chsLength == 0 );
    qv::Local<QV_RANGE_MAP> lines( qvRangeMapCreate() );
    qv::Local<QV_LOCATION> loc( createStart( optionalLocation ) );
    QV_INT start = 0;
    for ( ;; )
    {
        QV_INT idx = start + qv___NlfFlagsSkipCharsNonNlf( chs + start, chsLength - start, nlfFlags );
        if ( idx == chsLength )
            break;
        idx += qv___NlfFlagsSkipCharsNlf( chs + idx, chsLength - idx, nlfFlags, nullptr );
        qvRangeMapSetRangeKey( lines.edit(), start, idx - 1, qvLocationObj( loc ) );
        loc.take( createNextLine( loc ) );
        start = idx;
    }
    qvRangeMapSetRangeKey( lines.edit(), start, chsLength, qvLocationObj( loc ) );

    auto *map = qv::create<QV_PARSER_LOCATION_MAP>( qvParserLocationMapSort() );
    map->chs = chs;
    map->length = chsLength;
    map->rangeMap = lines.give();
    return map;
}

QV_LOCATION *qvParserLocationMapLookupIndex( QV_PARSER_LOCATION_MAP *map, QV_INT idx )
{
    QV_CHECK( map );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= map->length );
    const qv___RangeMapRange &range = map->rangeMap->ranges[qv___RangeMapFindKey( map->rangeMap, idx )];
    QV_LOCATION *loc = qvLocationCreateFrom( static_cast<QV_LOCATION *>( range.value ) );
    // A column too large for an integer leaves the location without one.
    (void)qvLocationIncrementColumn( &loc, idx - range.startingKey );
    return loc;
}

QV_LOCATION *qvParserLocationMapLookup( QV_PARSER_LOCATION_MAP *map, const QV_CHAR *chs )
{
    QV_CHECK( map );
    QV_CHECK( chs || !map->chs );
    return qvParserLocationMapLookupIndex( map, chs - map->chs );
}
