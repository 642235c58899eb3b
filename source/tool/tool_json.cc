// qv json check, format and get.

#include "tool_json.hh"

#include <qv/charset/qv_charset.h>

#include <algorithm>

namespace
{

using tool::Arguments;
using tool::JsonReading;
using tool::JsonWriting;
using tool::Output;
using tool::Owner;
using tool::String;
using tool::Tool;

// ---- Options ----

constexpr tool::Option charsetOption = { 'c', "charset", "CHARSET",
                                         "Charset of the text; UTF-8 if not given." };
constexpr tool::Option depthOption = { 'd', "depth", "LEVELS",
                                       "How deeply values may be nested; 1000 if not given." };
constexpr tool::Option singleLineOption = { 's', "single-line", nullptr, "Print each document on one line." };
constexpr tool::Option packedOption = { 'p', "packed", nullptr, "The same without any blanks." };
constexpr tool::Option indentOption = {
    'i', "indent", "TEXT",
    "What a level is indented with: blanks and tabs, or the number of blanks; a tab if not given." };

bool takeReading( Tool &tool, const Arguments &arguments, JsonReading &reading )
{
    if ( !tool::takeCharset( tool, arguments, charsetOption.name, reading.charset ) )
        return false;
    std::optional<std::string> depth = arguments.value( depthOption.name );
    if ( !depth )
        return true;
    String text = tool::stringOf( *depth );
    QV_INT consumed;
    if ( qvStringScanInt( text, 0, -1, 10, &reading.depth, &consumed ) &&
         consumed == qvStringLength( text ) && reading.depth > 0 )
        return true;
    tool.usage( *depth + ": --depth is a number above 0" );
    return false;
}

bool takeIndent( Tool &tool, const std::string &typed, String &indent )
{
    constexpr size_t mostBlanks = 100;
    bool number =
        !typed.empty() && typed.size() <= 3 && typed.find_first_not_of( "0123456789" ) == std::string::npos;
    size_t blanks = number ? std::stoul( typed ) : 0;
    if ( ( !number && typed.find_first_not_of( " \t" ) != std::string::npos ) || blanks > mostBlanks )
    {
        tool.usage( "\"" + typed + "\" is no indent: blanks and tabs, or a number of blanks up to 100" );
        return false;
    }
    indent = tool::stringOf( number ? std::string( blanks, ' ' ) : typed );
    return true;
}

bool takeWriting( Tool &tool, const Arguments &arguments, JsonWriting &writing )
{
    bool packed = arguments.has( packedOption.name );
    bool single = packed || arguments.has( singleLineOption.name );
    writing.flags =
        ( single ? QV_JSON_FLAG_ENCODE_SINGLE_LINE : 0 ) | ( packed ? QV_JSON_FLAG_ENCODE_PACKED : 0 );
    std::optional<std::string> indent = arguments.value( indentOption.name );
    if ( !indent )
        return true;
    if ( single )
    {
        tool::usageExclusive( tool, packed ? packedOption.name : singleLineOption.name, indentOption.name );
        return false;
    }
    return takeIndent( tool, *indent, writing.indent );
}

// ---- Reading ----

struct Document
{
    Owner<QV_LOCATION> place;
    String text;
    Owner<QV_JSON_VALUE> value; // null after an error message
};

Document load( Tool &tool, const std::string &name, const JsonReading &reading, tool::Watch &watch )
{
    Document document = { tool::locationOf( name ), {}, {} };
    Owner bytes = tool::readFile( tool, name );
    if ( !bytes )
        return document;
    watch.step( "Decoding " + tool::shownName( name ) + ", " +
                tool::counted( qvBufferLength( bytes ), "byte" ) );
    document.text = tool::readCharacters( tool, bytes, document.place, reading.charset );
    bytes = {};
    if ( document.text )
        document.value = tool::readJson( tool, document.text, document.place, reading );
    return document;
}

// ---- Check ----

void runCheck( Tool &tool, const Arguments &arguments )
{
    JsonReading reading = { .loneHalves = true };
    if ( !takeReading( tool, arguments, reading ) )
        return;
    tool::checkFiles( tool, arguments, ".json", [&]( const std::string &name ) {
        tool::Watch watch( "Reading " + tool::shownName( name ) );
        return static_cast<bool>( load( tool, name, reading, watch ).value );
    } );
}

// ---- Format ----

// Names the first character that the charset lacks.
void reportUnfit( Tool &tool, const std::string &name, QV_STRING *text, QV_CHARSET charset )
{
    std::string charsetName = tool::textOf( String( qvCharsetToIanaName( charset ) ) );
    const QV_CHAR *chs = qvStringBacking( text );
    for ( QV_INT idx = 0; idx < qvStringLength( text ); idx++ )
    {
        String one( qvStringCreateFromCharsCopy( chs + idx, 1 ) );
        if ( !Owner( qvCharsetTryConvertStringToBufferWithFlags(
                 charset, one, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) ) )
            return tool.error( name, tool::codePoint( chs[idx] ) + " doesn't exist in " + charsetName );
    }
    tool.error( name, "a character doesn't exist in " + charsetName );
}

void runFormat( Tool &tool, const Arguments &arguments )
{
    JsonReading reading;
    JsonWriting writing;
    QV_CHARSET charset;
    if ( !takeReading( tool, arguments, reading ) || !tool::takeForm( tool, arguments, reading.form ) ||
         !takeWriting( tool, arguments, writing ) )
        return;
    charset = reading.charset;
    if ( !tool::takeCharset( tool, arguments, "to", charset ) )
        return;
    std::string from = arguments.operands.empty() ? "-" : arguments.operand( 0 );
    std::string to = arguments.operands.size() > 1 ? arguments.operand( 1 ) : "-";
    tool::Watch watch( "Reading " + tool::shownName( from ) );
    Owner value = std::move( load( tool, from, reading, watch ).value );
    if ( !value )
        return;
    watch.step( "Encoding " + tool::shownName( from ) );
    String text = tool::jsonText( value, writing );
    Owner bytes( qvCharsetTryConvertStringToBufferWithFlags( charset, text,
                                                             QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    if ( !bytes )
        return reportUnfit( tool, tool::shownName( from ), text, charset );
    Output output( to );
    if ( output.isGood() )
        output.write( bytes );
    if ( !output.isGood() || !output.finish() )
        tool.error( output.displayName(), output.failure() );
}

// ---- Get ----

// A place as typed, as names and positions.
std::vector<std::string> stepsOf( std::string typed )
{
    std::vector<std::string> steps;
    if ( typed.empty() )
        return steps;
    for ( size_t start = typed.starts_with( '/' ); start <= typed.size(); )
    {
        size_t end = std::min( typed.find( '/', start ), typed.size() );
        std::string step;
        for ( size_t idx = start; idx < end; idx++ )
        {
            bool slash = typed.compare( idx, 2, "~1" ) == 0;
            bool tilde = typed.compare( idx, 2, "~0" ) == 0;
            step += slash ? '/' : typed[idx];
            idx += slash || tilde;
        }
        steps.push_back( step );
        start = end + 1;
    }
    return steps;
}

const char *wordOf( QV_JSON_VALUE *value )
{
    return qvJsonValueIsNull( value )     ? "null"
           : qvJsonValueIsBool( value )   ? "true or false"
           : qvJsonValueIsNumber( value ) ? "a number"
                                          : "a string";
}

// The member or element; null if there is none.
Owner<QV_JSON_VALUE> entryOf( QV_JSON_VALUE *value, const std::string &step )
{
    String name = tool::stringOf( step );
    if ( qvJsonValueIsObject( value ) )
        return Owner( qvJsonValueObjectMember( value, name ) );
    QV_INT idx;
    QV_INT consumed;
    bool position = qvJsonValueIsArray( value ) && qvStringScanInt( name, 0, -1, 10, &idx, &consumed ) &&
                    consumed == qvStringLength( name ) && idx >= 0 && idx < qvJsonValueArrayLength( value );
    return position ? Owner( qvJsonValueArrayAt( value, idx ) ) : Owner<QV_JSON_VALUE>();
}

std::string missingText( QV_JSON_VALUE *value, const std::string &step, const std::string &way )
{
    std::string where = way.empty() ? "" : " in \"" + way + "\"";
    if ( qvJsonValueIsObject( value ) )
        return "no member \"" + step + "\"" + where;
    if ( qvJsonValueIsArray( value ) )
        return "no element \"" + step + "\"" + where + ", which is an array of " +
               tool::counted( qvJsonValueArrayLength( value ), "element" );
    return ( way.empty() ? "the document" : "\"" + way + "\"" ) + " is " + wordOf( value ) +
           " and has no member \"" + step + "\"";
}

void print( Tool &tool, QV_JSON_VALUE *value, const JsonWriting &writing, bool quoted )
{
    if ( qvJsonValueIsString( value ) && !quoted )
        tool.out.write( tool::textOf( String( qvJsonValueString( value ) ) ) + "\n" );
    else
        tool.out.write( tool::textOf( tool::jsonText( value, writing ) ) );
}

class Search
{
  public:
    Search( Tool &running, const std::string &file, const JsonReading &given )
        : tool( running ), name( file ), reading( given ), watch( "Reading " + tool::shownName( file ) ),
          document( load( running, file, given, watch ) )
    {
    }

    bool hasDocument() const
    {
        return document.value;
    }

    // Null after an error message.
    Owner<QV_JSON_VALUE> find( const std::string &typed )
    {
        std::vector<std::string> steps = stepsOf( typed );
        qvJsonValueRetain( document.value );
        Owner value( static_cast<QV_JSON_VALUE *>( document.value ) );
        std::string way;
        for ( const std::string &step : steps )
        {
            Owner entry = entryOf( value, step );
            if ( !entry && !reading.locations )
            {
                value = {};
                locate();
                return find( typed );
            }
            if ( !entry )
            {
                Owner place( qvJsonValueLocation( value ) );
                tool.error( way.empty() || !place ? document.place : place, missingText( value, step, way ) );
                return {};
            }
            way += ( way.empty() ? "" : "/" ) + step;
            value = std::move( entry );
        }
        return value;
    }

  private:
    // Reads the text again with the places of its values, which only messages need.
    void locate()
    {
        reading.locations = true;
        // Two trees of a large file would be one too many.
        document.value = {};
        document.value = tool::readJson( tool, document.text, document.place, reading );
    }

    Tool &tool;
    std::string name;
    JsonReading reading;
    tool::Watch watch;
    Document document;
};

void runGet( Tool &tool, const Arguments &arguments )
{
    JsonReading reading;
    JsonWriting writing;
    if ( !takeReading( tool, arguments, reading ) || !takeWriting( tool, arguments, writing ) )
        return;
    Search search( tool, arguments.operand( 0 ), reading );
    for ( size_t idx = 1; search.hasDocument() && idx < arguments.operands.size(); idx++ )
    {
        if ( Owner value = search.find( arguments.operand( idx ) ); value )
            print( tool, value, writing, arguments.has( "quote" ) );
    }
}

// ---- Tables ----

const tool::Option checkOptions[] = {
    { 'a', "all", nullptr, "List the good files too." },
    charsetOption,
    depthOption,
};
const tool::Example checkExamples[] = {
    { "qv json check package.json", "one file" },
    { "qv json check --all /usr/share/nodejs", "all files below a folder whose names end with .json" },
    { "generate | qv json check -", "what a program writes" },
};

const tool::Option formatOptions[] = {
    singleLineOption,
    packedOption,
    indentOption,
    { 'N', "normalize", "FORM", "Bring strings and names to the normal form C, KC, D or KD.", "C KC D KD" },
    { 'c', "charset", "CHARSET", "Charset of IN and OUT; UTF-8 if not given." },
    { 't', "to", "CHARSET", "Charset of OUT, if it is another one." },
    depthOption,
};
const tool::Example formatExamples[] = {
    { "qv json format --indent 2 package.json", "print a file so that it can be read" },
    { "qv json format --packed data.json data.json", "make a file small in its place" },
    { "fetch | qv json format | less", "as a filter" },
};

const tool::Option getOptions[] = {
    { 'q', "quote", nullptr, "Print strings as JSON too, in quotes and with escapes." },
    singleLineOption,
    packedOption,
    indentOption,
    charsetOption,
    depthOption,
};
const tool::Example getExamples[] = {
    { "qv json get package.json version", "one member" },
    { "qv json get package.json files/0 repository/url", "an element of an array, a member of a member" },
    { "qv json get api.json 'paths/~1users~1{id}' --indent 2", "a name with \"/\" in it, as ~1" },
};

} // namespace

namespace tool
{

const Command jsonCheck = {
    "json check",
    "FILE...",
    1,
    noLimit,
    "Check JSON files, and folders with all that is in them",
    "Each bad file is reported with line, column and reason; a name that occurs twice in an object is an "
    "error "
    "too. Exit code 1 if any is bad.",
    checkOptions,
    checkExamples,
    runCheck,
};

const Command jsonFormat = {
    "json format",
    "[IN [OUT]]",
    0,
    2,
    "Print JSON indented, on one line, or packed",
    "Without IN standard input is read; OUT is standard output if not given, and may be IN: a file is "
    "replaced "
    "when the result is complete. Numbers keep their digits, members come in the order of their names, and "
    "characters stand for themselves where JSON allows it.",
    formatOptions,
    formatExamples,
    runFormat,
};

const Command jsonGet = {
    "json get",
    "FILE NAME[/NAME...]...",
    2,
    noLimit,
    "Print values of a JSON file",
    "A string is printed as its text, any other value as JSON. In an array a position, from 0, is a name. "
    "JSON pointers are understood: a \"/\" in front, ~1 for \"/\" in a name, ~0 for \"~\", and an empty one "
    "for the whole document.",
    getOptions,
    getExamples,
    runGet,
};

} // namespace tool
