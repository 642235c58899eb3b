#ifndef QV_IO_QV_LOCATION_H
#define QV_IO_QV_LOCATION_H

/* A location says where something stands in a text or file: a free description, a path, a line and a column,
 * each optional. A value with copy-on-write: setters take the address of the caller's handle and put a
 * private copy there if the record is shared.
 *
 * The text form is the description, the path (after ":" if there is a description), and "(line)" or
 * "(line,column)"; a column without a line doesn't show. Two locations are equal only if they are the same
 * object. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_LOCATION, qvLocation )

/* A new location with no description, path, line or column. */
QV_API QV_LOCATION *qvLocationCreate( void );

/* A new location with the same contents. */
QV_API QV_LOCATION *qvLocationCreateFrom( QV_LOCATION *loc );

/* A new location with just this description or path. */
QV_API QV_LOCATION *qvLocationCreateWithDescription( QV_STRING *description );
QV_API QV_LOCATION *qvLocationCreateWithPath( QV_PATH *path );

/* A new location with the given column (above 0, or -1 for none), and a line: 1, or the line of
 * optionalLocation if that has one, plus lineOffset, which is at least 0. Description and path come from
 * optionalLocation, which may be null. A line beyond the integers stops the process. */
QV_API QV_LOCATION *qvLocationCreateWithLineOffsetAndColumn( QV_LOCATION *optionalLocation, QV_INT lineOffset,
                                                             QV_INT optionalColumn );

/* The description, owned by the caller, or null for none. */
QV_API QV_STRING *qvLocationDescription( QV_LOCATION *loc );
QV_API QV_BOOL qvLocationHasDescription( QV_LOCATION *loc );
QV_API void qvLocationSetDescription( QV_LOCATION **loc, QV_STRING *description );
QV_API void qvLocationDelDescription( QV_LOCATION **loc );

/* The path, owned by the caller, or null for none. */
QV_API QV_PATH *qvLocationPath( QV_LOCATION *loc );
QV_API QV_BOOL qvLocationHasPath( QV_LOCATION *loc );
QV_API void qvLocationSetPath( QV_LOCATION **loc, QV_PATH *path );
QV_API void qvLocationDelPath( QV_LOCATION **loc );

/* The line, from 1, or -1 for none. Setting takes a line above 0. */
QV_API QV_INT qvLocationLine( QV_LOCATION *loc );
QV_API QV_BOOL qvLocationHasLine( QV_LOCATION *loc );
QV_API void qvLocationSetLine( QV_LOCATION **loc, QV_INT line );
QV_API void qvLocationDelLine( QV_LOCATION **loc );

/* The column, from 1, or -1 for none. Setting takes a column above 0. */
QV_API QV_INT qvLocationColumn( QV_LOCATION *loc );
QV_API QV_BOOL qvLocationHasColumn( QV_LOCATION *loc );
QV_API void qvLocationSetColumn( QV_LOCATION **loc, QV_INT column );
QV_API void qvLocationDelColumn( QV_LOCATION **loc );

/* Adds to the line or column; increment is at least 0. False, and nothing changes, if there is none; false on
 * overflow, which leaves the location without it. */
QV_API QV_BOOL qvLocationIncrementLine( QV_LOCATION **loc, QV_INT increment );
QV_API QV_BOOL qvLocationIncrementColumn( QV_LOCATION **loc, QV_INT increment );

QV_END_DECLS

#endif
