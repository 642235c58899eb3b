#ifndef QV_IO_QV_PARSER_LOCATION_MAP_HH
#define QV_IO_QV_PARSER_LOCATION_MAP_HH

// The record of a parser location map.

#include <qv/io/qv_parser_location_map.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: every index from 0 to length lies in exactly one range of rangeMap, whose value is the location
// of the range's first index.
struct qv___ParserLocationMap : qv___Obj
{
    const QV_CHAR *chs; // not owned
    QV_INT length;      // code points
    QV_RANGE_MAP *rangeMap;
};

void qv___ParserLocationMapFreeFunc( qvObj thisObj );

#endif
