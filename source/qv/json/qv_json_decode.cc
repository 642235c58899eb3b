#include <qv/json/qv_json_decode.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_parser_location_map.h>
#include <qv/json/qv_json_collector.hh>
#include <qv/json/qv_json_options.hh>
#include <qv/json/qv_json_text.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>
#include <qv/unicode/qv_unicode_lookups.hh>

#include <type_traits>

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

// UNIT is what the text is made of: characters, or the bytes of good UTF-8.
template <typename UNIT> struct Token
{
    TokenKind kind;
    const UNIT *chs; // of a string, what stands between the quotes
    QV_INT length;
    QV_INT surplus;    // of a string, units that escapes take beyond one each, 0 without any
    QV_INT utf8Length; // of a string in bytes, the bytes of its text
};

uint32_t hashOf( const auto *units, QV_INT length )
{
    uint64_t hash = static_cast<uint64_t>( length );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        hash = ( hash ^ units[idx] ) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    return static_cast<uint32_t>( hash );
}

// Writing a text from one kind of units to the other; these return the end of what they wrote.
QV_CHAR *putRun( QV_CHAR *dest, const QV_CHAR *chs, QV_INT length )
{
    qv::copyChars( dest, chs, length );
    return dest + length;
}

QV_CHAR *putRun( QV_CHAR *dest, const unsigned char *bytes, QV_INT length )
{
    return qv::jsonDecodeUtf8( bytes, length, dest );
}

unsigned char *putRun( unsigned char *dest, const unsigned char *bytes, QV_INT length )
{
    std::memcpy( dest, bytes, static_cast<size_t>( length ) );
    return dest + length;
}

unsigned char *putRun( unsigned char *dest, const QV_CHAR *chs, QV_INT length )
{
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        dest = qv::jsonPutUtf8( dest, chs[idx] );
    }
    return dest;
}

QV_CHAR *putChar( QV_CHAR *dest, QV_CHAR ch )
{
    *dest = ch;
    return dest + 1;
}

unsigned char *putChar( unsigned char *dest, QV_CHAR ch )
{
    return qv::jsonPutUtf8( dest, ch );
}

QV_INT charsOf( const QV_CHAR *, QV_INT length )
{
    return length;
}

QV_INT charsOf( const unsigned char *bytes, QV_INT length )
{
    return qv::jsonUtf8Chars( bytes, length );
}

// Names that came up lately. Documents repeat theirs, and a name that is shared costs neither time nor memory.
template <typename UNIT> class NameCache
{
  public:
    NameCache() = default;
    NameCache( const NameCache & ) = delete;
    NameCache &operator=( const NameCache & ) = delete;

    ~NameCache()
    {
        for ( const Slot &slot : slots_ )
        {
            qv::releaseOptional( slot.name );
        }
    }

    // A reference to a string with this text.
    QV_STRING *get( const UNIT *units, QV_INT length, uint32_t hash )
    {
        // Each name has two places to be at.
        Slot *places[] = { &slots_[hash % slotCount], &slots_[hash / slotCount % slotCount] };
        for ( Slot *slot : places )
        {
            if ( slot->name && slot->hash == hash && slot->length == length &&
                 std::memcmp( slot->units, units, static_cast<size_t>( length ) * sizeof( UNIT ) ) == 0 )
                return qv::retained( slot->name );
        }
        Slot *slot = places[places[0]->name ? 1 : 0];
        QV_STRING *name = qv::stringCreateUnfilled( charsOf( units, length ) );
        putRun( qv::stringBacking( name ), units, length );
        if ( length <= longest )
        {
            qv::assign( &slot->name, name );
            slot->hash = hash;
            slot->length = length;
            putRun( slot->units, units, length );
        }
        return name;
    }

  private:
    static constexpr uint32_t slotCount = 64;
    static constexpr QV_INT longest = 32;

    struct Slot
    {
        Slot() : name( nullptr ) {}

        QV_STRING *name;
        QV_INT length; // this and the following are valid when there is a name
        uint32_t hash;
        UNIT units[longest];
    };

    Slot slots_[slotCount];
};

// The position in the text and what has been read.
template <typename UNIT> struct Reader
{
    const UNIT *at;
    const UNIT *begin;
    const UNIT *end;
    QV_JSON_OPTIONS *options;
    QV_JSON_FLAGS flags;
    QV_PARSER_LOCATION_MAP *map; // null without locations, and for bytes
    QV_JSON_DECODE_ERROR *error; // null while all is well
    qv::JsonCollector values;
    NameCache<UNIT> names;
};

// The location of a place in the text; null without locations.
template <typename UNIT> QV_LOCATION *locationOf( Reader<UNIT> *reader, const UNIT *chs )
{
    if constexpr ( std::is_same_v<UNIT, QV_CHAR> )
    {
        if ( reader->map )
            return qvParserLocationMapLookup( reader->map, chs );
    }
    return nullptr;
}

template <typename UNIT> bool failAt( Reader<UNIT> *reader, QV_JSON_DECODE_ERROR_CODE code, const UNIT *chs )
{
    qv::Local<QV_LOCATION> location( locationOf( reader, chs ) );
    reader->error = qvJsonDecodeErrorCreate( code, location );
    return false;
}

// Gives the value of a token the location of the token's first character.
template <typename UNIT> QV_JSON_VALUE *located( Reader<UNIT> *reader, QV_JSON_VALUE *given, const UNIT *chs )
{
    if ( reader->map )
    {
        qv::Local<QV_LOCATION> location( locationOf( reader, chs ) );
        qvJsonValueSetLocation( &given, location );
    }
    return given;
}

// ---- Tokens ----

template <typename UNIT> void qv___JsonSkipWs( Reader<UNIT> *reader )
{
    const UNIT *at = reader->at;
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
template <typename UNIT> QV_INT codeUnit( const UNIT *chs, QV_INT length, QV_JSON_FLAGS flags )
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
template <typename UNIT>
QV_INT escapedChar( const UNIT *chs, QV_INT length, QV_JSON_FLAGS flags, QV_INT *escapeLength )
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
template <typename UNIT> bool decodeStringToken( Reader<UNIT> *reader, Token<UNIT> *token )
{
    const UNIT *at = reader->at + 1;
    token->kind = TokenKind::string;
    token->chs = at;
    token->surplus = 0;
    QV_INT widened = 0; // bytes that escaped characters take beyond one each
    for ( ;; )
    {
        at += qv::jsonPlainRun( at, reader->end - at );
        if ( at == reader->end || *at < 0x20 )
            return failAt( reader, QV_JSON_DECODE_ERROR_CODE_TOKEN, at );
        if ( *at == '"' )
            break;
        at++;
        QV_INT escapeLength;
        QV_INT ch = escapedChar( at, reader->end - at, reader->flags, &escapeLength );
        if ( ch < 0 )
            return failAt( reader, QV_JSON_DECODE_ERROR_CODE_ESCAPE, at );
        at += escapeLength;
        token->surplus += escapeLength;
        widened += ( ch >= 0x80 ) + ( ch >= 0x800 );
    }
    token->length = at - token->chs;
    token->utf8Length = token->length - token->surplus + widened;
    reader->at = at + 1;
    return true;
}

template <typename UNIT, size_t SIZE> bool passWord( Reader<UNIT> *reader, const char ( &word )[SIZE] )
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

template <typename UNIT> bool decodeNumberToken( Reader<UNIT> *reader, Token<UNIT> *token )
{
    token->kind = TokenKind::number;
    token->chs = reader->at;
    token->length = qv::jsonSkipNumber( reader->at, reader->end - reader->at );
    reader->at += token->length;
    return token->length > 0;
}

// Passes the next token.
template <typename UNIT> bool qv___JsonTryDecodeToken( Reader<UNIT> *reader, Token<UNIT> *token )
{
    const UNIT *begin = reader->at;
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

// The text of a string token, in characters or as UTF-8.
template <typename DEST, typename UNIT>
void fillText( DEST *dest, const Token<UNIT> *token, QV_JSON_FLAGS flags )
{
    const UNIT *src = token->chs;
    const UNIT *end = src + token->length;
    if ( token->surplus == 0 )
    {
        putRun( dest, src, token->length );
        return;
    }
    for ( ;; )
    {
        QV_INT run = qv::jsonPlainRun( src, end - src );
        dest = putRun( dest, src, run );
        src += run;
        if ( src == end )
            return;
        QV_INT escapeLength;
        dest = putChar( dest,
                        static_cast<QV_CHAR>( escapedChar( src + 1, end - src - 1, flags, &escapeLength ) ) );
        src += 1 + escapeLength;
    }
}

template <typename UNIT> QV_STRING *stringText( Reader<UNIT> *reader, const Token<UNIT> *token )
{
    QV_STRING *text = qv::stringCreateUnfilled( charsOf( token->chs, token->length ) - token->surplus );
    fillText( qv::stringBacking( text ), token, reader->flags );
    if ( reader->flags & QV_JSON_FLAG_DECODE_NORMALIZE )
        qvStringNormalize( &text, reader->options->decodeUnicodeNormalForm );
    return text;
}

void addName( Reader<unsigned char> *reader, const Token<unsigned char> *token )
{
    unsigned char own[256];
    const unsigned char *bytes = token->chs;
    unsigned char *unescaped = nullptr;
    if ( token->surplus > 0 )
    {
        bool isShort = token->utf8Length <= static_cast<QV_INT>( sizeof own );
        unescaped = isShort ? own : static_cast<unsigned char *>( qvMemAlloc( token->utf8Length ) );
        fillText( unescaped, token, reader->flags );
        bytes = unescaped;
    }
    uint32_t hash = hashOf( bytes, token->utf8Length );
    reader->values.addName( reader->names.get( bytes, token->utf8Length, hash ), hash );
    if ( unescaped != own )
        qvMemFree( unescaped );
}

void addName( Reader<QV_CHAR> *reader, const Token<QV_CHAR> *token )
{
    if ( token->surplus == 0 && !( reader->flags & QV_JSON_FLAG_DECODE_NORMALIZE ) )
    {
        uint32_t hash = hashOf( token->chs, token->length );
        reader->values.addName( reader->names.get( token->chs, token->length, hash ), hash );
        return;
    }
    QV_STRING *name = stringText( reader, token );
    reader->values.addName( name, hashOf( qv::stringBacking( name ), qv::stringLength( name ) ) );
}

QV_JSON_VALUE *heldString( QV_STRING *given )
{
    qv::Local<QV_STRING> text( given );
    return qvJsonValueCreateString( text );
}

QV_JSON_VALUE *stringOf( Reader<unsigned char> *reader, const Token<unsigned char> *token )
{
    if ( token->utf8Length > QV___JSON_TAIL_MAX )
        return heldString( stringText( reader, token ) );
    QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_STRING, token->utf8Length );
    fillText( qv::jsonTakeTail( val, token->utf8Length ), token, reader->flags );
    return val;
}

QV_JSON_VALUE *stringOf( Reader<QV_CHAR> *reader, const Token<QV_CHAR> *token )
{
    bool isPlain = token->surplus == 0 && !( reader->flags & QV_JSON_FLAG_DECODE_NORMALIZE );
    QV_INT utf8Length = qv::jsonUtf8Length( token->chs, token->length );
    if ( !isPlain || utf8Length > QV___JSON_TAIL_MAX )
        return heldString( stringText( reader, token ) );
    QV_JSON_VALUE *val = qv::jsonCreate( QV_JSON_TYPE_STRING, utf8Length );
    fillText( qv::jsonTakeTail( val, utf8Length ), token, reader->flags );
    return val;
}

template <typename UNIT> QV_JSON_VALUE *scalarOf( Reader<UNIT> *reader, const Token<UNIT> *token )
{
    switch ( token->kind )
    {
    case TokenKind::null:
        return qvJsonValueCreateNull();
    case TokenKind::isFalse:
        return qvJsonValueCreateFalse();
    case TokenKind::isTrue:
        return qvJsonValueCreateTrue();
    case TokenKind::number:
        return qv::jsonCreateNumber( token->chs, token->length );
    default:
        return stringOf( reader, token );
    }
}

template <typename UNIT> bool isTooDeep( Reader<UNIT> *reader )
{
    return reader->values.depth() >= reader->options->decodeMaxDepth;
}

// Reads a scalar, or opens an object or array and leaves *val null.
template <typename UNIT> bool beginValue( Reader<UNIT> *reader, QV_JSON_VALUE **val )
{
    *val = nullptr;
    if ( isTooDeep( reader ) )
        return failAt( reader, QV_JSON_DECODE_ERROR_CODE_DEPTH, reader->at );
    qv___JsonSkipWs( reader );
    const UNIT *begin = reader->at;
    Token<UNIT> token;
    if ( !qv___JsonTryDecodeToken( reader, &token ) )
        return false;
    switch ( token.kind )
    {
    case TokenKind::arrayBegin:
    case TokenKind::objectBegin:
        reader->values.open( token.kind == TokenKind::objectBegin, begin - reader->begin );
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
template <typename UNIT> bool passToken( Reader<UNIT> *reader, TokenKind kind, Token<UNIT> *token )
{
    qv___JsonSkipWs( reader );
    const UNIT *begin = reader->at;
    if ( !qv___JsonTryDecodeToken( reader, token ) )
        return false;
    return token->kind == kind || failAt( reader, QV_JSON_DECODE_ERROR_CODE_UNEXPECTED, begin );
}

// The same for a separator.
template <typename UNIT> bool passSeparator( Reader<UNIT> *reader, TokenKind kind, char sign )
{
    qv___JsonSkipWs( reader );
    if ( reader->at < reader->end && *reader->at == static_cast<unsigned char>( sign ) )
    {
        reader->at++;
        return true;
    }
    Token<UNIT> token;
    return passToken( reader, kind, &token );
}

// Passes what stands in front of the next value of the innermost object or array, or the bracket that ends it.
template <typename UNIT> bool passToValue( Reader<UNIT> *reader, bool *isEnd )
{
    Token<UNIT> token;
    bool isObject = reader->values.top()->isObject;
    bool isFirst = reader->values.count() == 0;
    qv___JsonSkipWs( reader );
    *isEnd = reader->at < reader->end && *reader->at == ( isObject ? '}' : ']' );
    if ( *isEnd )
    {
        reader->at++;
        return true;
    }
    if ( !isFirst && !passSeparator( reader, TokenKind::valueSeparator, ',' ) )
        return false;
    if ( isObject )
    {
        if ( !passToken( reader, TokenKind::string, &token ) )
            return false;
        addName( reader, &token );
        return passSeparator( reader, TokenKind::nameSeparator, ':' );
    }
    // A first element that isn't even a token is reported as that, not as too deep.
    const UNIT *begin = reader->at;
    if ( isFirst && isTooDeep( reader ) && !qv___JsonTryDecodeToken( reader, &token ) )
        return false;
    reader->at = begin;
    return true;
}

// Adds a value, which is handed over, to the innermost object or array.
template <typename UNIT> bool addValue( Reader<UNIT> *reader, QV_JSON_VALUE *given )
{
    reader->values.addValue( given );
    return !reader->values.top()->isDuplicate ||
           failAt( reader, QV_JSON_DECODE_ERROR_CODE_DUPLICATE, reader->at );
}

// Reads a value with all that it holds; null after a failure.
template <typename UNIT> QV_JSON_VALUE *qv___JsonTryDecodeValue( Reader<UNIT> *reader )
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
            const UNIT *begin = reader->begin + reader->values.top()->begin;
            val = located( reader, reader->values.close(), begin );
        }
    }
}

template <typename UNIT> QV_JSON_DECODE_RESULT *resultOf( Reader<UNIT> *reader )
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

// Whether decoding a buffer reads its bytes as they are: good UTF-8, whose bytes beyond ASCII only strings have, with
// nothing asked for that needs the characters themselves.
bool readsBytes( QV_BUFFER *buffer, const QV_JSON_OPTIONS *options )
{
    constexpr QV_JSON_FLAGS forChars = QV_JSON_FLAG_DECODE_LOCATIONS | QV_JSON_FLAG_DECODE_NORMALIZE |
                                       QV_JSON_FLAG_DECODE_ACCEPT_ANY_WHITESPACE |
                                       QV_JSON_FLAG_DECODE_ACCEPT_ANY_HEXDIG;
    return options->decodeCharset == QV_CHARSET_UTF_8 && !( options->flags & forChars ) &&
           qv::jsonIsCanonicalUtf8( qv::bufferContent( buffer ), qv::bufferLength( buffer ) );
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
    if ( readsBytes( buffer, options ) )
    {
        const unsigned char *bytes = qv::bufferContent( buffer );
        const unsigned char *end = bytes + qv::bufferLength( buffer );
        Reader<unsigned char> reader = { bytes,   bytes,   end, options, options->flags,
                                         nullptr, nullptr, {},  {} };
        return resultOf( &reader );
    }
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
    Reader<QV_CHAR> reader = { chs, chs, chs + length, options, options->flags, map, nullptr, {}, {} };
    return resultOf( &reader );
}
