#include <qv/json/qv_json_decode.hh>

#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_parser_location_map.h>
#include <qv/json/qv_json_collector.hh>
#include <qv/json/qv_json_options.hh>
#include <qv/json/qv_json_text.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/unicode/qv_unicode_lookups.hh>

namespace
{

enum class TokenKind
{
    arrayBegin,
    arrayEnd,
    objectBegin,
    objectEnd,
    nameSeparator,
    valueSeparator,
    null,
    isFalse,
    isTrue,
    number,
    string
};

struct Token
{
    TokenKind kind;
    const QV_CHAR *chs; // of a string, what stands between the quotes
    QV_INT length;
    QV_INT textLength; // of a string, without its escapes
};

// Names that came up lately. Documents repeat theirs, and a name that is shared costs neither time nor memory.
class NameCache
{
  public:
    NameCache() = default;
    NameCache( const NameCache & ) = delete;
    NameCache &operator=( const NameCache & ) = delete;

    ~NameCache()
    {
        for ( QV_STRING *name : names_ )
        {
            qv::releaseOptional( name );
        }
    }

    static uint32_t hashOf( const QV_CHAR *chs, QV_INT length )
    {
        uint64_t hash = static_cast<uint64_t>( length );
        for ( QV_INT idx = 0; idx < length; idx++ )
        {
            hash = ( hash ^ chs[idx] ) * 0x9E3779B97F4A7C15u;
            hash ^= hash >> 32;
        }
        return static_cast<uint32_t>( hash );
    }

    // A reference to a string with these characters.
    QV_STRING *get( const QV_CHAR *chs, QV_INT length, uint32_t hash )
    {
        QV_STRING **slot = &names_[hash % slots];
        if ( *slot && qv::stringLength( *slot ) == length &&
             qv::charsEqual( qv::stringBacking( *slot ), chs, length ) )
            return qv::retained( *slot );
        QV_STRING *name = qv::stringCreateUnfilled( length );
        qv::copyChars( qv::stringBacking( name ), chs, length );
        if ( length <= longest )
            qv::assign( slot, name );
        return name;
    }

  private:
    static constexpr uint32_t slots = 64;
    static constexpr QV_INT longest = 32;
    QV_STRING *names_[slots] = {};
};

// The position in the text and what has been read.
struct Reader
{
    const QV_CHAR *at;
    const QV_CHAR *end;
    QV_JSON_OPTIONS *options;
    QV_JSON_FLAGS flags;
    QV_PARSER_LOCATION_MAP *map; // null without locations
    QV_JSON_DECODE_ERROR *error; // null while all is well
    qv::JsonCollector values;
    NameCache names;
};

bool failAt( Reader *reader, QV_JSON_DECODE_ERROR_CODE code, const QV_CHAR *chs )
{
    qv::Local<QV_LOCATION> location( reader->map ? qvParserLocationMapLookup( reader->map, chs ) : nullptr );
    reader->error = qvJsonDecodeErrorCreate( code, location );
    return false;
}

// Gives the value of a token the location of the token's first character.
QV_JSON_VALUE *located( Reader *reader, QV_JSON_VALUE *given, const QV_CHAR *chs )
{
    if ( reader->map )
    {
        qv::Local<QV_LOCATION> location( qvParserLocationMapLookup( reader->map, chs ) );
        qvJsonValueSetLocation( &given, location );
    }
    return given;
}

// ---- Tokens ----

void qv___JsonSkipWs( Reader *reader )
{
    const QV_CHAR *at = reader->at;
    if ( reader->flags & QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE )
    {
        while ( at < reader->end && qv___UnicodeWhiteSpaceDbLookup( *at ) )
        {
            at++;
        }
    }
    else
    {
        while ( at < reader->end && *at <= ' ' &&
                ( *at == ' ' || *at == '\n' || *at == '\r' || *at == '\t' ) )
        {
            at++;
        }
    }
    reader->at = at;
}

// The value of a digit of an escape, -1 for none.
QV_INT digitValue( QV_CHAR ch, QV_JSON_FLAGS flags )
{
    if ( ch - '0' < 10 )
        return static_cast<QV_INT>( ch - '0' );
    if ( ch - 'A' < 6 )
        return static_cast<QV_INT>( ch - 'A' ) + 10;
    return flags & QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG ? qvUnicodeHexadecimalDigitValue( ch ) : -1;
}

// The character that four digits stand for, -1 if they aren't there.
QV_INT codeUnit( const QV_CHAR *chs, QV_INT length, QV_JSON_FLAGS flags )
{
    if ( length < 4 )
        return -1;
    QV_INT value = 0;
    for ( QV_INT idx = 0; idx < 4; idx++ )
    {
        QV_INT digit = digitValue( chs[idx], flags );
        if ( digit < 0 )
            return -1;
        value = value * 16 + digit;
    }
    return value;
}

// The character of an escape, whose text behind the backslash is given, and the length of that; -1 for none.
QV_INT escapedChar( const QV_CHAR *chs, QV_INT length, QV_JSON_FLAGS flags, QV_INT *escapeLength )
{
    *escapeLength = 1;
    if ( length == 0 )
        return -1;
    switch ( *chs )
    {
    case '"':
    case '\\':
    case '/':
        return static_cast<QV_INT>( *chs );
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'u':
        *escapeLength = 5;
        return codeUnit( chs + 1, length - 1, flags );
    default:
        return -1;
    }
}

// Passes a string and checks it; its text is made on demand.
bool decodeStringToken( Reader *reader, Token *token )
{
    const QV_CHAR *at = reader->at + 1;
    token->kind = TokenKind::string;
    token->chs = at;
    token->textLength = 0;
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( at, reader->end - at );
        at += run;
        token->textLength += run;
        if ( at == reader->end || *at < 0x20 )
            return failAt( reader, QV_JSON_DECODE_ERROR_CODE_TOKEN, at );
        if ( *at == '"' )
            break;
        at++;
        QV_INT escapeLength;
        if ( escapedChar( at, reader->end - at, reader->flags, &escapeLength ) < 0 )
            return failAt( reader, QV_JSON_DECODE_ERROR_CODE_ESCAPE, at );
        at += escapeLength;
        token->textLength++;
    }
    token->length = at - token->chs;
    reader->at = at + 1;
    return true;
}

template <size_t SIZE> bool passWord( Reader *reader, const char ( &word )[SIZE] )
{
    constexpr QV_INT length = static_cast<QV_INT>( SIZE - 1 );
    if ( reader->end - reader->at < length )
        return false;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        if ( reader->at[idx] != static_cast<unsigned char>( word[idx] ) )
            return false;
    }
    reader->at += length;
    return true;
}

bool decodeNumberToken( Reader *reader, Token *token )
{
    token->kind = TokenKind::number;
    token->chs = reader->at;
    token->length = qv___JsonSkipNumber( reader->at, reader->end - reader->at );
    reader->at += token->length;
    return token->length > 0;
}

// Passes the next token.
bool qv___JsonTryDecodeToken( Reader *reader, Token *token )
{
    const QV_CHAR *begin = reader->at;
    if ( begin == reader->end )
        return failAt( reader, QV_JSON_DECODE_ERROR_CODE_END, begin );
    bool isToken = true;
    switch ( *begin )
    {
    case '"':
        return decodeStringToken( reader, token );
    case '{':
        token->kind = TokenKind::objectBegin;
        break;
    case '}':
        token->kind = TokenKind::objectEnd;
        break;
    case '[':
        token->kind = TokenKind::arrayBegin;
        break;
    case ']':
        token->kind = TokenKind::arrayEnd;
        break;
    case ':':
        token->kind = TokenKind::nameSeparator;
        break;
    case ',':
        token->kind = TokenKind::valueSeparator;
        break;
    case 'n':
        token->kind = TokenKind::null;
        isToken = passWord( reader, "null" );
        break;
    case 'f':
        token->kind = TokenKind::isFalse;
        isToken = passWord( reader, "false" );
        break;
    case 't':
        token->kind = TokenKind::isTrue;
        isToken = passWord( reader, "true" );
        break;
    default:
        isToken = decodeNumberToken( reader, token );
        break;
    }
    if ( !isToken )
        return failAt( reader, QV_JSON_DECODE_ERROR_CODE_TOKEN, begin );
    if ( token->kind <= TokenKind::valueSeparator )
        reader->at++;
    return true;
}

// ---- Values ----

// The text of a string token with escapes.
void fillUnescaped( QV_CHAR *dest, const Token *token, QV_JSON_FLAGS flags )
{
    const QV_CHAR *src = token->chs;
    const QV_CHAR *end = src + token->length;
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( src, end - src );
        qv::copyChars( dest, src, run );
        dest += run;
        src += run;
        if ( src == end )
            return;
        QV_INT escapeLength;
        *dest++ = static_cast<QV_CHAR>( escapedChar( src + 1, end - src - 1, flags, &escapeLength ) );
        src += 1 + escapeLength;
    }
}

QV_STRING *stringText( Reader *reader, const Token *token )
{
    QV_STRING *text = qv::stringCreateUnfilled( token->textLength );
    if ( token->textLength == token->length )
        qv::copyChars( qv::stringBacking( text ), token->chs, token->length );
    else
        fillUnescaped( qv::stringBacking( text ), token, reader->flags );
    if ( reader->flags & QV_JSON_FLAG_DECODE_NORMALIZE )
        qvStringNormalize( &text, reader->options->decodeUnicodeNormalForm );
    return text;
}

void addName( Reader *reader, const Token *token )
{
    bool isPlain = token->textLength == token->length && !( reader->flags & QV_JSON_FLAG_DECODE_NORMALIZE );
    if ( isPlain )
    {
        uint32_t hash = NameCache::hashOf( token->chs, token->length );
        reader->values.addName( reader->names.get( token->chs, token->length, hash ), hash );
        return;
    }
    QV_STRING *name = stringText( reader, token );
    reader->values.addName( name, NameCache::hashOf( qv::stringBacking( name ), qv::stringLength( name ) ) );
}

QV_JSON_VALUE *scalarOf( Reader *reader, const Token *token )
{
    switch ( token->kind )
    {
    case TokenKind::null:
        return qvJsonValueCreateNull();
    case TokenKind::isFalse:
        return qvJsonValueCreateFalse();
    case TokenKind::isTrue:
        return qvJsonValueCreateTrue();
    case TokenKind::number: {
        QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_NUMBER );
        qv::jsonSetNumberText( val, token->chs, token->length );
        return val;
    }
    default: {
        QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_STRING );
        val->string = stringText( reader, token );
        return val;
    }
    }
}

bool isTooDeep( Reader *reader )
{
    return reader->values.depth() >= reader->options->decodeMaxDepth;
}

// Reads a scalar, or opens an object or array and leaves *val null.
bool beginValue( Reader *reader, QV_JSON_VALUE **val )
{
    *val = nullptr;
    if ( isTooDeep( reader ) )
        return failAt( reader, QV_JSON_DECODE_ERROR_CODE_DEPTH, reader->at );
    qv___JsonSkipWs( reader );
    const QV_CHAR *begin = reader->at;
    Token token;
    if ( !qv___JsonTryDecodeToken( reader, &token ) )
        return false;
    switch ( token.kind )
    {
    case TokenKind::arrayBegin:
    case TokenKind::objectBegin:
        reader->values.open( token.kind == TokenKind::objectBegin, begin );
        return true;
    case TokenKind::arrayEnd:
    case TokenKind::objectEnd:
    case TokenKind::nameSeparator:
    case TokenKind::valueSeparator:
        return failAt( reader, QV_JSON_DECODE_ERROR_CODE_UNEXPECTED, reader->at );
    default:
        *val = located( reader, scalarOf( reader, &token ), begin );
        return true;
    }
}

// Passes a token that must be of a kind.
bool passToken( Reader *reader, TokenKind kind, Token *token )
{
    qv___JsonSkipWs( reader );
    const QV_CHAR *begin = reader->at;
    if ( !qv___JsonTryDecodeToken( reader, token ) )
        return false;
    return token->kind == kind || failAt( reader, QV_JSON_DECODE_ERROR_CODE_UNEXPECTED, begin );
}

// Passes what stands in front of the next value of the innermost object or array, or the bracket that ends it.
bool passToValue( Reader *reader, bool *isEnd )
{
    Token token;
    bool isObject = reader->values.top()->isObject;
    bool isFirst = reader->values.count() == 0;
    qv___JsonSkipWs( reader );
    *isEnd = reader->at < reader->end && *reader->at == ( isObject ? '}' : ']' );
    if ( *isEnd )
    {
        reader->at++;
        return true;
    }
    if ( !isFirst && !passToken( reader, TokenKind::valueSeparator, &token ) )
        return false;
    if ( isObject )
    {
        if ( !passToken( reader, TokenKind::string, &token ) )
            return false;
        addName( reader, &token );
        return passToken( reader, TokenKind::nameSeparator, &token );
    }
    // A first element that isn't even a token is reported as that, not as too deep.
    const QV_CHAR *begin = reader->at;
    if ( isFirst && isTooDeep( reader ) && !qv___JsonTryDecodeToken( reader, &token ) )
        return false;
    reader->at = begin;
    return true;
}

// Adds a value, which is handed over, to the innermost object or array.
bool addValue( Reader *reader, QV_JSON_VALUE *given )
{
    reader->values.addValue( given );
    return !reader->values.top()->isDuplicate ||
           failAt( reader, QV_JSON_DECODE_ERROR_CODE_DUPLICATE, reader->at );
}

// Reads a value with all that it holds; null after a failure.
QV_JSON_VALUE *qv___JsonTryDecodeValue( Reader *reader )
{
    for ( ;; )
    {
        QV_JSON_VALUE *val;
        if ( !beginValue( reader, &val ) )
            return nullptr;
        // A scalar may be the last entry of what is open, and that again the last one of what is around it.
        for ( ;; )
        {
            if ( val && reader->values.depth() == 0 )
                return val;
            if ( val && !addValue( reader, val ) )
                return nullptr;
            bool isEnd;
            if ( !passToValue( reader, &isEnd ) )
                return nullptr;
            if ( !isEnd )
                break;
            const QV_CHAR *begin = reader->values.top()->begin;
            val = located( reader, reader->values.close(), begin );
        }
    }
}

QV_JSON_DECODE_RESULT *resultOf( Reader *reader )
{
    qv::Local<QV_JSON_VALUE> value( qv___JsonTryDecodeValue( reader ) );
    if ( value )
    {
        qv___JsonSkipWs( reader );
        if ( reader->at == reader->end )
            return qvJsonDecodeResultCreateSuccess( value );
        failAt( reader, QV_JSON_DECODE_ERROR_CODE_TRAILING, reader->at );
    }
    qv::Local<QV_JSON_DECODE_ERROR> error( reader->error );
    return qvJsonDecodeResultCreateError( error );
}

} // namespace

QV_JSON_DECODE_RESULT *qvJsonDecode( QV_BUFFER *buffer, QV_LOCATION *location )
{
    return qvJsonDecodeWithOptions( buffer, qv___JsonOptionsBuiltin, location );
}

QV_JSON_DECODE_RESULT *qvJsonDecodeWithOptions( QV_BUFFER *buffer, QV_JSON_OPTIONS *options,
                                                QV_LOCATION *location )
{
    QV_CHECK( buffer );
    QV_CHECK( options );
    qv::Local<QV_STRING> text( qvCharsetTryConvertBufferToStringWithFlags( options->decodeCharset, buffer,
                                                                           options->decodeCharsetFlags ) );
    if ( text )
        return qvJsonDecodeStringWithOptions( text, options, location );
    qv::Local<QV_JSON_DECODE_ERROR> error(
        qvJsonDecodeErrorCreate( QV_JSON_DECODE_ERROR_CODE_CHARSET, location ) );
    return qvJsonDecodeResultCreateError( error );
}

QV_JSON_DECODE_RESULT *qvJsonDecodeString( QV_STRING *string, QV_LOCATION *location )
{
    return qvJsonDecodeStringWithOptions( string, qv___JsonOptionsBuiltin, location );
}

QV_JSON_DECODE_RESULT *qvJsonDecodeStringWithOptions( QV_STRING *string, QV_JSON_OPTIONS *options,
                                                      QV_LOCATION *location )
{
    QV_CHECK( string );
    QV_CHECK( options );
    const QV_CHAR *chs = qv::stringBacking( string );
    QV_INT length = qv::stringLength( string );
    qv::Local<QV_PARSER_LOCATION_MAP> map;
    if ( options->flags & QV_JSON_FLAG_DECODE_LOCATIONS )
        map.take( qvParserLocationMapCreate( location, options->decodeNlfFlags, chs, length ) );
    Reader reader = { chs, chs + length, options, options->flags, map, nullptr, {}, {} };
    return resultOf( &reader );
}
