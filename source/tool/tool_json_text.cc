// JSON text to values and back: places of faults, and escapes that belong together.

#include "tool_json.hh"

#include <qv/charset/qv_charset.h>
#include <qv/io/qv_parser_location_map.h>
#include <qv/json/qv_json_decode.h>
#include <qv/json/qv_json_encode.h>

namespace
{

using tool::JsonReading;
using tool::Owner;
using tool::String;
using tool::Tool;

// ---- Escapes ----

// A character of a valid JSON text, or an escape.
struct Unit
{
    QV_CHAR ch = 0;
    QV_INT length = 1; // in the text
    bool foreign = false;
};

int hexDigit( QV_CHAR ch )
{
    if ( ch >= '0' && ch <= '9' )
        return static_cast<int>( ch - '0' );
    QV_CHAR small = ch | 0x20;
    return small >= 'a' && small <= 'f' && ch < 0x80 ? static_cast<int>( small - 'a' + 10 ) : -1;
}

Unit unitAt( const QV_CHAR *chs )
{
    if ( chs[0] != '\\' )
        return { .ch = chs[0] };
    if ( chs[1] != 'u' )
        return { .ch = chs[1], .length = 2 };
    Unit unit = { .length = 6 };
    for ( int idx = 2; idx < 6; idx++ )
    {
        int digit = hexDigit( chs[idx] );
        unit.foreign |= digit < 0;
        unit.ch = unit.ch * 16 + static_cast<QV_CHAR>( digit );
    }
    return unit;
}

bool isHigh( const Unit &unit )
{
    return unit.ch >= 0xD800 && unit.ch <= 0xDBFF;
}

bool isLow( const Unit &unit )
{
    return unit.ch >= 0xDC00 && unit.ch <= 0xDFFF;
}

// Goes through the escapes of a text that the library has found valid. It takes digits of all scripts, which JSON
// doesn't, and each escape for a character, although two can be the halves of one.
class Escapes
{
  public:
    Escapes( Tool &running, QV_STRING *valid, QV_LOCATION *start, bool allowLone )
        : tool( running ), text( valid ), place( start ), loneAllowed( allowLone )
    {
    }

    // False after an error message.
    bool pass()
    {
        const QV_CHAR *chs = qvStringBacking( text );
        QV_INT length = qvStringLength( text );
        for ( QV_INT idx = 0; idx < length; )
        {
            Unit unit = unitAt( chs + idx );
            QV_INT next = idx + unit.length;
            if ( unit.foreign )
                return report( QV_MESSAGE_LEVEL_ERROR, idx + 1, "invalid escape sequence" );
            if ( isHigh( unit ) && next < length && isLow( unitAt( chs + next ) ) )
                next = join( idx, unit, unitAt( chs + next ) );
            else if ( ( isHigh( unit ) || isLow( unit ) ) && !passLone( idx, unit ) )
                return false;
            idx = next;
        }
        return true;
    }

    // The text with whole characters in place of their halves; null if there are none.
    String joinedText()
    {
        if ( joined )
            qvStringAppendInner( joined.edit(), text, passed, qvStringLength( text ) - passed );
        return std::move( joined );
    }

  private:
    QV_INT join( QV_INT idx, const Unit &high, const Unit &low )
    {
        if ( !joined )
            joined = String( qvStringCreate() );
        qvStringAppendInner( joined.edit(), text, passed, idx - passed );
        qvStringAppendChar( joined.edit(), 0x10000 + ( ( high.ch - 0xD800 ) << 10 ) + ( low.ch - 0xDC00 ) );
        passed = idx + high.length + low.length;
        return passed;
    }

    // Only the first one is worth a warning.
    bool passLone( QV_INT idx, const Unit &unit )
    {
        if ( loneSeen )
            return true;
        loneSeen = true;
        report( loneAllowed ? QV_MESSAGE_LEVEL_WARNING : QV_MESSAGE_LEVEL_ERROR, idx,
                tool::codePoint( unit.ch ) + ", half of a surrogate pair" );
        return loneAllowed;
    }

    bool report( QV_MESSAGE_LEVEL level, QV_INT idx, const std::string &words )
    {
        Owner options( qvJsonOptionsCreate() );
        Owner map( qvParserLocationMapCreate( place, qvJsonOptionsDecodeNlfFlags( options ),
                                              qvStringBacking( text ), qvStringLength( text ) ) );
        Owner where( qvParserLocationMapLookupIndex( map, idx ) );
        tool.report( Owner( qvMessageCreate( level, where, tool::stringOf( words ) ) ) );
        return false;
    }

    Tool &tool;
    QV_STRING *text;
    QV_LOCATION *place;
    bool loneAllowed;
    bool loneSeen = false;
    QV_INT passed = 0; // what joined has of the text
    String joined;
};

// ---- Decoding ----

Owner<QV_JSON_DECODE_RESULT> decode( QV_STRING *text, QV_LOCATION *place, const JsonReading &reading,
                                     bool locations )
{
    Owner options( qvJsonOptionsCreate() );
    QV_JSON_FLAGS flags = locations ? QV_JSON_FLAG_DECODE_LOCATIONS : 0;
    if ( !reading.capitalDigits )
        flags |= QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG;
    if ( reading.form >= 0 )
    {
        flags |= QV_JSON_FLAG_DECODE_NORMALIZE;
        qvJsonOptionsSetDecodeUnicodeNormalForm( options.edit(), reading.form );
    }
    qvJsonOptionsSetFlags( options.edit(), flags );
    qvJsonOptionsSetDecodeMaxDepth( options.edit(), reading.depth );
    return Owner( qvJsonDecodeStringWithOptions( text, options, place ) );
}

// Only a text with a fault pays for places.
Owner<QV_JSON_VALUE> decodeOrReport( Tool &tool, QV_STRING *text, QV_LOCATION *place,
                                     const JsonReading &reading )
{
    Owner result = decode( text, place, reading, reading.locations );
    if ( qvJsonDecodeResultIsSuccess( result ) )
        return Owner( qvJsonDecodeResultValue( result ) );
    if ( !reading.locations )
        result = decode( text, place, reading, true );
    Owner error( qvJsonDecodeResultError( result ) );
    tool.report( Owner( qvJsonDecodeErrorToMessage( error ) ) );
    return {};
}

} // namespace

namespace tool
{

String readCharacters( Tool &tool, QV_BUFFER *bytes, QV_LOCATION *place, QV_CHARSET charset )
{
    String text( qvCharsetTryConvertBufferToStringWithFlags( charset, bytes,
                                                             QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    if ( !text )
    {
        Owner found = locateInvalid( bytes, place, charset );
        tool.error( found ? found : place,
                    "invalid byte sequence in " + textOf( String( qvCharsetToIanaName( charset ) ) ) );
    }
    return text;
}

Owner<QV_JSON_VALUE> readJson( Tool &tool, QV_STRING *text, QV_LOCATION *place, const JsonReading &reading )
{
    Owner value = decodeOrReport( tool, text, place, reading );
    Escapes escapes( tool, text, place, reading.loneHalves );
    if ( !value || !escapes.pass() )
        return {};
    String joined = escapes.joinedText();
    return joined ? decodeOrReport( tool, joined, place, reading ) : std::move( value );
}

String jsonText( QV_JSON_VALUE *value, const JsonWriting &writing )
{
    Owner options( qvJsonOptionsCreate() );
    qvJsonOptionsSetFlags( options.edit(), writing.flags );
    if ( writing.indent )
        qvJsonOptionsSetEncodeIndent( options.edit(), writing.indent );
    String text( qvJsonEncodeToStringWithOptions( value, options ) );
    if ( writing.flags & QV_JSON_FLAG_ENCODE_SINGLE_LINE )
        qvStringAppendChar( text.edit(), '\n' );
    return text;
}

} // namespace tool
