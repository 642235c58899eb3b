#ifndef QV_JSON_QV_JSON_ENCODE_H
#define QV_JSON_QV_JSON_ENCODE_H

/* Encoding of values as JSON text: one entry a line and indented, on one line, or packed. Numbers keep their text,
 * members come in the order of their names, and characters that aren't ASCII stand as they are. Null handles stop
 * the process; the caller owns what a function returns. */

#include <qv/json/qv_json_options.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* The text as bytes in UTF-8, with default options, or all but the flags. */
QV_API QV_BUFFER *qvJsonEncode( QV_JSON_VALUE *val );
QV_API QV_BUFFER *qvJsonEncodeWithFlags( QV_JSON_VALUE *val, QV_JSON_FLAGS flags );

/* The text as bytes in the charset of the options; null if the charset refuses a character under its flags. */
QV_API QV_BUFFER *qvJsonTryEncodeWithOptions( QV_JSON_VALUE *val, QV_JSON_OPTIONS *opt );

/* The text as characters. Unless it is one line, it ends with a new-line. */
QV_API QV_STRING *qvJsonEncodeToString( QV_JSON_VALUE *val );
QV_API QV_STRING *qvJsonEncodeToStringWithFlags( QV_JSON_VALUE *val, QV_JSON_FLAGS flags );
QV_API QV_STRING *qvJsonEncodeToStringWithOptions( QV_JSON_VALUE *val, QV_JSON_OPTIONS *opt );

QV_END_DECLS

#endif
