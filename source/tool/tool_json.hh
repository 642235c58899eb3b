#ifndef QV_TOOL_TOOL_JSON_HH
#define QV_TOOL_TOOL_JSON_HH

// JSON text as the tools read and write it.

#include "tool.hh"

#include <qv/json/qv_json_options.h>
#include <qv/json/qv_json_value.h>

namespace tool
{

// How JSON text is read.
struct JsonReading
{
    QV_CHARSET charset = QV_CHARSET_UTF_8;
    QV_INT depth = 1000;
    QV_UNICODE_NORMAL_FORM form = -1; // of strings and names; -1: as they are
    bool capitalDigits = false;       // escapes have capitals as digits only, as in data files
    bool loneHalves = false;          // halves of surrogate pairs are let through, with a warning
    bool locations = false;           // values know where they stand
};

// The characters of a file's bytes; null after an error message with the place of what isn't text of the charset.
String readCharacters( Tool &tool, QV_BUFFER *bytes, QV_LOCATION *place, QV_CHARSET charset );

// The value of a text that begins at place; null after an error message with line and column. Surrogate pairs are
// joined, also those that stand as escapes.
Owner<QV_JSON_VALUE> readJson( Tool &tool, QV_STRING *text, QV_LOCATION *place, const JsonReading &reading );

// How JSON text is written.
struct JsonWriting
{
    QV_JSON_FLAGS flags = 0;
    String indent; // null: a tab
};

// The text of a value, with a new-line at its end.
String jsonText( QV_JSON_VALUE *value, const JsonWriting &writing );

} // namespace tool

#endif
