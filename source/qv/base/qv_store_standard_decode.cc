#include <qv/base/qv_store_standard.hh>

#include <qv/base/qv_format.h>
#include <qv/base/qv_store_collector.hh>
#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_location.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/unicode/qv_unicode_lookups.hh>

namespace
{

// Levels of nesting, the root included, that a text may have.
constexpr QV_INT depthBudget = 100;

enum class TokenKind
{
    lineEnd, // a line break, or a comment with its line break
    word,
    string,
    storeBegin,
    storeEnd,
    arrayBegin,
    arrayEnd
};

// A place in the text: the number of line breaks in front of it and the column, from 0.
struct Place
{
    QV_INT line;
    QV_INT column;
};

struct Token
{
    TokenKind kind;
    Place place;
    const QV_CHAR *chs; // of a string, what stands between the quotes
    QV_INT length;
    QV_INT textLength; // of a string, without its escapes
};

// The position in the text. Lines are counted as their breaks are passed, so that a location costs no search.
struct Reader
{
    const QV_CHAR *at;
    const QV_CHAR *end;
    const QV_CHAR *lineBegin;
    QV_INT line;
    QV_LOCATION *base; // of the first character, may be null
    qv::EntryCollector entries;
    QV_STORE_DECODE_RESULT *failure; // null while all is well
};

bool isLineBreak( QV_CHAR ch )
{
    return ch - 0x0A < 4 || ch == 0x85 || ( ch | 1 ) == 0x2029;
}

bool isWhiteSpace( QV_CHAR ch )
{
    if ( ch < 0x80 )
        return ch == ' ' || ch - 0x09 < 5;
    return qv___UnicodeWhiteSpaceDbLookup( ch );
}

Place placeOf( const Reader *reader, const QV_CHAR *chs )
{
    return { reader->line, chs - reader->lineBegin };
}

// Sums that exceed a QV_INT leave the location without that number.
QV_INT shifted( QV_INT from, QV_INT by )
{
    return QV_INT_ADD_OK( from, by ) ? from + by : -1;
}

QV_LOCATION *createLocation( const Reader *reader, Place place )
{
    QV_LOCATION *base = reader->base;
    QV_INT firstLine = base && base->line != -1 ? base->line : 1;
    // Only the first line goes on where the base stands.
    QV_INT firstColumn = place.line == 0 && base && base->column != -1 ? base->column : 1;
    return qv::locationCreate( base ? base->description : nullptr, base ? base->path : nullptr,
                               shifted( firstLine, place.line ), shifted( firstColumn, place.column ) );
}

bool failAtPlace( Reader *reader, QV_STORE_DECODE_ERROR_CODE code, Place place )
{
    qv::Local<QV_LOCATION> location( createLocation( reader, place ) );
    reader->failure = qv::storeDecodeFailure( code, location );
    return false;
}

bool failAt( Reader *reader, QV_STORE_DECODE_ERROR_CODE code, const QV_CHAR *chs )
{
    return failAtPlace( reader, code, placeOf( reader, chs ) );
}

// Passes a line break, which ends its line unless it is the first half of CR LF.
void passLineBreak( Reader *reader )
{
    QV_CHAR ch = *reader->at++;
    if ( ch == '\r' && reader->at < reader->end && *reader->at == '\n' )
        return;
    reader->line++;
    reader->lineBegin = reader->at;
}

void passComment( Reader *reader )
{
    while ( reader->at < reader->end && !isLineBreak( *reader->at ) )
    {
        reader->at++;
    }
    if ( reader->at < reader->end )
        passLineBreak( reader );
}

// Passes white space within the line.
void qv___StoreDecodeStandardSkipWs( Reader *reader )
{
    while ( reader->at < reader->end && isWhiteSpace( *reader->at ) && !isLineBreak( *reader->at ) )
    {
        reader->at++;
    }
}

void skipWsAndLineEnds( Reader *reader )
{
    for ( ;; )
    {
        qv___StoreDecodeStandardSkipWs( reader );
        if ( reader->at == reader->end )
            return;
        if ( *reader->at == '#' )
            passComment( reader );
        else if ( isLineBreak( *reader->at ) )
            passLineBreak( reader );
        else
            return;
    }
}

// The code point of six hexadecimal digits, -1 if there are none or if they mean no code point.
QV_INT hexadecimalChar( const QV_CHAR *chs, QV_INT length )
{
    if ( length < 6 || ( chs[0] != '0' && chs[0] != '1' ) )
        return -1;
    QV_INT value = 0;
    for ( QV_INT idx = 0; idx < 6; idx++ )
    {
        QV_INT digit = qvUnicodeHexadecimalDigitValue( chs[idx] );
        if ( digit < 0 )
            return -1;
        value = value * 16 + digit;
    }
    return QV_CHAR_OK( value ) ? value : -1;
}

// Length of what follows a backslash, 0 if it is no escape.
QV_INT escapeLength( const QV_CHAR *chs, QV_INT length )
{
    if ( length > 0 && ( chs[0] == '"' || chs[0] == '\\' ) )
        return 1;
    return hexadecimalChar( chs, length ) >= 0 ? 6 : 0;
}

// Passes a quoted string and checks it; its text is made on demand.
bool qv___StoreDecodeStandardString( Reader *reader, Token *token )
{
    reader->at++;
    token->chs = reader->at;
    token->textLength = 0;
    for ( ;; )
    {
        QV_INT run = qv::plainRun<true>( reader->at, reader->end - reader->at );
        reader->at += run;
        token->textLength += run;
        if ( reader->at == reader->end )
            return failAt( reader, QV_STORE_DECODE_ERROR_CODE_TOKEN, reader->at );
        QV_CHAR ch = *reader->at;
        if ( ch == '"' )
        {
            token->length = reader->at++ - token->chs;
            return true;
        }
        if ( qv::isControlChar( ch ) )
            return failAt( reader, QV_STORE_DECODE_ERROR_CODE_TOKEN, reader->at );
        token->textLength++;
        if ( ch != '\\' )
        {
            passLineBreak( reader );
            continue;
        }
        reader->at++;
        QV_INT escape = escapeLength( reader->at, reader->end - reader->at );
        if ( escape == 0 )
            return failAt( reader, QV_STORE_DECODE_ERROR_CODE_ESCAPE, reader->at );
        reader->at += escape;
    }
}

// The text of a string token.
QV_STRING *stringText( const Token *token )
{
    QV_STRING *text = qv::stringCreateUnfilled( token->textLength );
    QV_CHAR *dest = qv::stringBacking( text );
    if ( token->textLength == token->length )
    {
        qv::copyChars( dest, token->chs, token->length );
        return text;
    }
    const QV_CHAR *src = token->chs;
    const QV_CHAR *srcEnd = src + token->length;
    while ( src < srcEnd )
    {
        QV_INT run = qv::plainRun<false>( src, srcEnd - src );
        qv::copyChars( dest, src, run );
        dest += run;
        src += run;
        if ( src == srcEnd )
            break;
        src++;
        QV_INT escape = escapeLength( src, srcEnd - src );
        *dest++ = escape == 1 ? *src : static_cast<QV_CHAR>( hexadecimalChar( src, escape ) );
        src += escape;
    }
    return text;
}

// Takes the next token.
bool qv___StoreDecodeStandardToken( Reader *reader, Token *token )
{
    if ( reader->at == reader->end )
        return failAt( reader, QV_STORE_DECODE_ERROR_CODE_END, reader->at );
    const QV_CHAR *begin = reader->at;
    token->place = placeOf( reader, begin );
    token->chs = begin;
    token->length = 1;
    switch ( *begin )
    {
    case '"':
        token->kind = TokenKind::string;
        return qv___StoreDecodeStandardString( reader, token );
    case '#':
        token->kind = TokenKind::lineEnd;
        passComment( reader );
        return true;
    case '{':
        token->kind = TokenKind::storeBegin;
        break;
    case '}':
        token->kind = TokenKind::storeEnd;
        break;
    case '[':
        token->kind = TokenKind::arrayBegin;
        break;
    case ']':
        token->kind = TokenKind::arrayEnd;
        break;
    default:
        if ( isLineBreak( *begin ) )
        {
            token->kind = TokenKind::lineEnd;
            passLineBreak( reader );
            return true;
        }
        token->kind = TokenKind::word;
        while ( reader->at < reader->end && !isWhiteSpace( *reader->at ) )
        {
            reader->at++;
        }
        token->length = reader->at - begin;
        return true;
    }
    reader->at++;
    return true;
}

QV_STRING *textOf( const QV_CHAR *chs, QV_INT length )
{
    QV_STRING *text = qv::stringCreateUnfilled( length );
    qv::copyChars( qv::stringBacking( text ), chs, length );
    return text;
}

template <size_t SIZE> bool equalsLiteral( const QV_CHAR *chs, QV_INT length, const char ( &literal )[SIZE] )
{
    if ( length != static_cast<QV_INT>( SIZE - 1 ) )
        return false;
    for ( size_t idx = 0; idx + 1 < SIZE; idx++ )
    {
        if ( chs[idx] != static_cast<unsigned char>( literal[idx] ) )
            return false;
    }
    return true;
}

// The text of a shared value.
QV_STRING *textOfShared( QV___STORE_VALUE *value )
{
    return qv::retained( value->value );
}

// The text of a word as a value, with the hints of what it is: the general way, for words that may be numbers.
QV_STRING *numberText( const QV_CHAR *chs, QV_INT length, QV___STORE_VALUE_HINTS *hints )
{
    QV_INT consumed;
    QV_INT integer;
    *hints = QV___STORE_VALUE_HINT_INT;
    if ( qvFormatTryDecodeIntChars( chs, length, 10, &integer, &consumed ) && consumed == length )
    {
        qv::Local<QV___STORE_VALUE> value( qv___StoreValueCreateInt( integer ) );
        return textOfShared( value );
    }
    double real;
    *hints = QV___STORE_VALUE_HINT_REAL;
    if ( qvFormatTryDecodeRealChars( chs, length, 10, &real, &consumed ) && consumed == length )
        return qvFormatEncodeReal( real, 10, 0, -1, 0 );
    *hints = 0;
    return textOf( chs, length );
}

QV_STRING *wordText( const QV_CHAR *chs, QV_INT length, QV___STORE_VALUE_HINTS *hints )
{
    if ( qv::isPlainInt( chs, length ) )
    {
        *hints = QV___STORE_VALUE_HINT_INT;
        if ( equalsLiteral( chs, length, "0" ) )
            return textOfShared( qv___StoreValueIntZero );
        if ( equalsLiteral( chs, length, "-1" ) )
            return textOfShared( qv___StoreValueIntMinusOne );
        return textOf( chs, length );
    }
    bool isLetter = ( chs[0] | 0x20 ) - 'a' < 26;
    if ( !isLetter )
        return numberText( chs, length, hints );
    *hints = QV___STORE_VALUE_HINT_BOOL;
    if ( equalsLiteral( chs, length, "true" ) )
        return textOfShared( qv___StoreValueBoolTrue );
    if ( equalsLiteral( chs, length, "false" ) )
        return textOfShared( qv___StoreValueBoolFalse );
    *hints = QV___STORE_VALUE_HINT_NULL;
    if ( equalsLiteral( chs, length, "null" ) )
        return textOfShared( qv___StoreValueNull );
    *hints = 0;
    return textOf( chs, length );
}

QV___STORE_VALUE *qv___StoreDecodeStandardParseWord( const Reader *reader, const Token *word )
{
    QV___STORE_VALUE_HINTS hints;
    QV_STRING *text = wordText( word->chs, word->length, &hints );
    return qv::storeValueFromParts( text, hints, createLocation( reader, word->place ) );
}

QV_STORE *qv___StoreDecodeStandardStoreMembers( Reader *reader, Place place, bool topLevel, QV_INT maxDepth );
QV_STORE *qv___StoreDecodeStandardArrayItems( Reader *reader, Place place, QV_INT maxDepth );

// The value or store that begins with a token; null if the store can't be read. Any other token has its own meaning to
// each caller.
qvObj entryOfToken( Reader *reader, const Token *token, QV_INT maxDepth )
{
    switch ( token->kind )
    {
    case TokenKind::word:
        return qv___StoreDecodeStandardParseWord( reader, token );
    case TokenKind::string:
        return qv::storeValueFromParts( stringText( token ), 0, createLocation( reader, token->place ) );
    case TokenKind::storeBegin:
        return qv___StoreDecodeStandardStoreMembers( reader, token->place, false, maxDepth - 1 );
    default:
        return qv___StoreDecodeStandardArrayItems( reader, token->place, maxDepth - 1 );
    }
}

// Reads an address and enters it.
bool readAddress( Reader *reader, qv::EntryLevel *level )
{
    Token token;
    if ( !qv___StoreDecodeStandardToken( reader, &token ) )
        return false;
    if ( token.kind != TokenKind::word )
        return failAtPlace( reader, QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, token.place );
    if ( qv___StoreAddressSkip( token.chs, token.length ) != token.length )
        return failAtPlace( reader, QV_STORE_DECODE_ERROR_CODE_ADDRESS, token.place );
    if ( !level->addAddress( token.chs, token.length ) )
        return failAtPlace( reader, QV_STORE_DECODE_ERROR_CODE_DUPLICATE, token.place );
    return true;
}

// Reads the value of the address that was entered last.
bool readMemberValue( Reader *reader, qv::EntryLevel *level, QV_INT maxDepth )
{
    qv___StoreDecodeStandardSkipWs( reader );
    Token token;
    if ( !qv___StoreDecodeStandardToken( reader, &token ) )
        return false;
    if ( token.kind == TokenKind::lineEnd )
        return failAt( reader, QV_STORE_DECODE_ERROR_CODE_NLF, reader->at );
    if ( token.kind == TokenKind::storeEnd || token.kind == TokenKind::arrayEnd )
        return failAt( reader, QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, reader->at );
    qvObj entry = entryOfToken( reader, &token, maxDepth );
    if ( !entry )
        return false;
    level->setValue( entry );
    return true;
}

// Reads members up to the end of the store, which is the end of the text at top level.
bool readMembers( Reader *reader, qv::EntryLevel *level, bool topLevel, QV_INT maxDepth )
{
    for ( ;; )
    {
        skipWsAndLineEnds( reader );
        if ( topLevel && reader->at == reader->end )
            return true;
        if ( !topLevel && reader->at < reader->end && *reader->at == '}' )
        {
            reader->at++;
            return true;
        }
        if ( !readAddress( reader, level ) || !readMemberValue( reader, level, maxDepth ) )
            return false;

        // Behind a value stands the end of its line or of the store.
        qv___StoreDecodeStandardSkipWs( reader );
        if ( topLevel && reader->at == reader->end )
            return true;
        Token token;
        if ( !qv___StoreDecodeStandardToken( reader, &token ) )
            return false;
        if ( token.kind == TokenKind::storeEnd && !topLevel )
            return true;
        if ( token.kind != TokenKind::lineEnd )
            return failAtPlace( reader, QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, token.place );
    }
}

// Reads the members of a store, up to its closing brace unless it is the top level. place is that of its first token.
QV_STORE *qv___StoreDecodeStandardStoreMembers( Reader *reader, Place place, bool topLevel, QV_INT maxDepth )
{
    if ( maxDepth == 0 )
    {
        failAt( reader, QV_STORE_DECODE_ERROR_CODE_DEPTH, reader->at );
        return nullptr;
    }
    qv::EntryLevel level( &reader->entries );
    if ( !readMembers( reader, &level, topLevel, maxDepth ) )
        return nullptr;
    return qv::storeFromParts( 0, level.takeDict(), nullptr, createLocation( reader, place ) );
}

bool readItems( Reader *reader, qv::EntryLevel *level, QV_INT maxDepth )
{
    for ( ;; )
    {
        skipWsAndLineEnds( reader );
        Token token;
        if ( !qv___StoreDecodeStandardToken( reader, &token ) )
            return false;
        if ( token.kind == TokenKind::arrayEnd )
            return true;
        if ( token.kind == TokenKind::storeEnd )
            return failAt( reader, QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, reader->at );
        qvObj entry = entryOfToken( reader, &token, maxDepth );
        if ( !entry )
            return false;
        level->addItem( entry );
    }
}

// Reads the items of an array up to its closing bracket. place is that of its opening one.
QV_STORE *qv___StoreDecodeStandardArrayItems( Reader *reader, Place place, QV_INT maxDepth )
{
    if ( maxDepth == 0 )
    {
        failAt( reader, QV_STORE_DECODE_ERROR_CODE_DEPTH, reader->at );
        return nullptr;
    }
    qv::EntryLevel level( &reader->entries );
    if ( !readItems( reader, &level, maxDepth ) )
        return nullptr;
    return qv::storeFromParts( QV_STORE_HINT_ARRAY | QV_STORE_HINT_ARRAY_MANAGED, nullptr, level.takeItems(),
                               createLocation( reader, place ) );
}

// Reads the whole text; null on a failure.
QV_STORE *readRoot( Reader *reader )
{
    skipWsAndLineEnds( reader );
    if ( reader->at == reader->end )
        return qvStoreCreate();
    Place place = placeOf( reader, reader->at );
    QV_CHAR first = *reader->at;
    if ( first == '}' || first == ']' )
    {
        failAtPlace( reader, QV_STORE_DECODE_ERROR_CODE_UNEXPECTED, place );
        return nullptr;
    }
    if ( first != '{' && first != '[' )
        return qv___StoreDecodeStandardStoreMembers( reader, place, true, depthBudget );
    reader->at++;
    qv::Local<QV_STORE> root( first == '{'
                                  ? qv___StoreDecodeStandardStoreMembers( reader, place, false, depthBudget )
                                  : qv___StoreDecodeStandardArrayItems( reader, place, depthBudget ) );
    if ( !root )
        return nullptr;
    skipWsAndLineEnds( reader );
    if ( reader->at < reader->end )
    {
        failAt( reader, QV_STORE_DECODE_ERROR_CODE_TRAILING, reader->at );
        return nullptr;
    }
    return root.give();
}

} // namespace

QV_STORE_DECODE_RESULT *qv::decodeStoreStandard( QV_BUFFER *buffer, QV_LOCATION *location )
{
    Local<QV_STRING> text( qvCharsetTryConvertBufferToStringWithFlags(
        QV_CHARSET_UTF_8, buffer, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    if ( !text )
        return storeDecodeFailure( QV_STORE_DECODE_ERROR_CODE_CHARSET, nullptr );
    const QV_CHAR *begin = stringBacking( text );
    Reader reader = { begin, begin + stringLength( text ), begin, 0, location, {}, nullptr };
    Local<QV_STORE> store( readRoot( &reader ) );
    if ( !store )
        return reader.failure;
    return qvStoreDecodeResultCreateSuccess( store, nullptr );
}
