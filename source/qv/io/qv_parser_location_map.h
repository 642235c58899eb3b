#ifndef QV_IO_QV_PARSER_LOCATION_MAP_H
#define QV_IO_QV_PARSER_LOCATION_MAP_H

/* Turns positions in a text into locations with line and column. A parser makes one for each text that it
 * works on. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_PARSER_LOCATION_MAP, qvParserLocationMap )

/* A new map of the text chs of chsLength code points, in one pass. The text isn't copied: it must stay valid
 * as long as lookups are made; chs may be null if chsLength is 0. nlfFlags are the QV_NLF_FLAG_... new-lines
 * that end a line. optionalLocation may be null; otherwise its description and path are taken over, the text
 * starts on its line, and at its column if it has one, so that an embedded text continues the numbering of
 * the line around it. */
QV_API QV_PARSER_LOCATION_MAP *qvParserLocationMapCreate( QV_LOCATION *optionalLocation, QV_INT nlfFlags,
                                                          const QV_CHAR *chs, QV_INT chsLength );

/* A new location, owned by the caller, for an index from 0 to the length of the text, both included. A
 * new-line belongs to the line that it ends. */
QV_API QV_LOCATION *qvParserLocationMapLookupIndex( QV_PARSER_LOCATION_MAP *map, QV_INT idx );

/* The same for an address inside the text or right behind it. */
QV_API QV_LOCATION *qvParserLocationMapLookup( QV_PARSER_LOCATION_MAP *map, const QV_CHAR *chs );

QV_END_DECLS

#endif
