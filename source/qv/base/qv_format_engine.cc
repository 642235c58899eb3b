// The format language: one pass over the format, literal runs copied whole, every conversion written straight
// into the result's storage.

#include <qv/base/qv_format.hh>

#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_mem.h>

#include <cstring>
#include <cwchar>

namespace
{

// An item of a conversion that may be left out.
struct OptionalInt
{
    QV_INT value;
    bool given;
};

// A conversion as it stands in the format, without its word.
struct Conversion
{
    QV_INT flags;
    QV_INT width;
    OptionalInt precision;
    OptionalInt base;
};

// The format that is being executed, and where the reader stands.
struct Reader
{
    const QV_CHAR *fmt;
    QV_INT fmtLength;
    QV_INT position;
    QV_ARG_LIST *argList;

    bool atEnd() const
    {
        return position == fmtLength;
    }
};

constexpr QV_CHAR nullText[] = { 'n', 'u', 'l', 'l' };

// ---- Reading a conversion ----

QV_INT withOneMoreHash( QV_INT flags )
{
    return ( flags & QV___FORMAT_FMT_HASH_MASK ) == QV___FORMAT_FMT_HASH_MASK ? flags
                                                                              : flags + QV___FORMAT_FMT_HASH;
}

QV_INT flagOf( QV_CHAR ch )
{
    switch ( ch )
    {
    case '-':
        return QV_FORMAT_FLAG_LEFTALIGN;
    case '_':
        return QV_FORMAT_FLAG_NOSIGN;
    case '+':
        return QV_FORMAT_FLAG_PLUSPOS;
    case ' ':
        return QV_FORMAT_FLAG_BLANKPOS;
    case '0':
        return QV_FORMAT_FLAG_ZEROPAD;
    case '^':
        return QV_FORMAT_FLAG_UPPERCASE;
    case '\'':
        return QV_FORMAT_FLAG_BASEDECIMAL;
    case '~':
        return QV___FORMAT_FMT_OWNED;
    case '#':
        return QV___FORMAT_FMT_HASH;
    default:
        return 0;
    }
}

QV_INT readFlags( Reader *reader )
{
    QV_INT flags = 0;
    while ( !reader->atEnd() )
    {
        QV_INT flag = flagOf( reader->fmt[reader->position] );
        if ( !flag )
            break;
        flags = flag == QV___FORMAT_FMT_HASH ? withOneMoreHash( flags ) : flags | flag;
        reader->position++;
    }
    return flags;
}

bool isLetter( QV_CHAR ch )
{
    return ( ch | 0x20 ) - 'a' < 26u;
}

// Characters that neither belong to a number nor to the white space around it.
bool endsNumber( QV_CHAR ch )
{
    return isLetter( ch ) || ch == '%' || ch == '.' || ch == '!';
}

// Takes a number of a few plain digits, the form that numbers in formats nearly always have.
bool takeShortNumber( const QV_CHAR *fmt, QV_INT fmtLength, QV_INT *position, QV_INT *value )
{
    constexpr QV_INT digitsLimit = 9;
    QV_INT number = 0;
    QV_INT idx = *position;
    while ( idx < fmtLength && fmt[idx] - '0' < 10u && idx - *position < digitsLimit )
    {
        number = number * 10 + static_cast<QV_INT>( fmt[idx] - '0' );
        idx++;
    }
    if ( idx == *position || idx == fmtLength || !endsNumber( fmt[idx] ) )
        return false;
    *position = idx;
    *value = number;
    return true;
}

OptionalInt readInt( Reader *reader, QV_INT absentValue )
{
    OptionalInt item = { absentValue, false };
    item.given = qv___FormatScanIntArg( reader->fmt, reader->fmtLength, &reader->position, reader->argList,
                                        &item.value );
    return item;
}

// Reads an item that an introducing character announces.
OptionalInt readIntBehind( Reader *reader, QV_CHAR introducer, QV_INT absentValue )
{
    if ( reader->atEnd() || reader->fmt[reader->position] != introducer )
        return { absentValue, false };
    reader->position++;
    return readInt( reader, absentValue );
}

Conversion readConversion( Reader *reader )
{
    Conversion conv = { 0, 0, { -1, false }, { 10, false } };
    if ( !reader->atEnd() && isLetter( reader->fmt[reader->position] ) )
        return conv; // nothing but its word, as most conversions
    conv.flags = readFlags( reader );
    conv.width = readInt( reader, 0 ).value;
    conv.precision = readIntBehind( reader, '.', -1 );
    conv.base = readIntBehind( reader, '!', 10 );
    if ( reader->atEnd() )
        QV_FAIL( "missing conversion" );
    return conv;
}

// The conversion's word: a character, for the l words the one behind the l, with the high bit as their mark.
constexpr QV_CHAR longWord = 0x80000000u;

QV_CHAR readWord( Reader *reader )
{
    QV_CHAR word = reader->fmt[reader->position++];
    if ( word == 'l' && !reader->atEnd() )
        word = longWord | reader->fmt[reader->position++];
    return word;
}

// ---- Integers ----

QV_FORMAT_FLAGS encoderFlags( QV_INT fmtFlags )
{
    QV_FORMAT_FLAGS flags = fmtFlags & ( QV___FORMAT_FMT_HASH - 1 );
    switch ( fmtFlags & QV___FORMAT_FMT_HASH_MASK )
    {
    case QV___FORMAT_FMT_HASH:
        return flags | QV_FORMAT_FLAG_BASEMNEMONIC;
    case 2 * QV___FORMAT_FMT_HASH:
        return flags | QV_FORMAT_FLAG_BASENUMERIC;
    default:
        return flags;
    }
}

// A value in a field as wide as its maximum, which is the precision.
void appendAligned( QV_STRING **dest, QV_INT value, const Conversion &conv )
{
    QV_INT maximum = conv.precision.given ? conv.precision.value : QV_INT_MAX;
    QV_CHECK( maximum >= 0 );
    QV_CHECK( value >= 0 );
    QV_CHECK( value <= maximum );
    QV_CHECK( conv.width >= 0 );
    QV_INT fmtFlags = ( conv.flags & ~QV_FORMAT_FLAG_LEFTALIGN ) | QV_FORMAT_FLAG_ZEROPAD;

    // The maximum is written where the value goes and taken back, which measures it without a string of its
    // own.
    QV_INT before = qv::stringLength( *dest );
    qv___FormatFmtInt( dest, maximum, conv.base.value, 0, fmtFlags );
    QV_INT maximumLength = qv::stringLength( *dest ) - before;
    ( *dest )->length -= maximumLength;
    ( *dest )->bspace += maximumLength;
    qv___FormatFmtInt( dest, value, conv.base.value, maximumLength > conv.width ? maximumLength : conv.width,
                       fmtFlags );
}

// ---- Texts ----

// Trims a text of textLength characters that has just been appended to the precision and pads it to the
// width. The storage of *dest is private, with the text at its end.
void finishText( QV_STRING **dest, QV_INT textLength, const Conversion &conv )
{
    QV_CHECK( conv.width >= 0 );
    QV_INT keptLength = textLength;
    if ( conv.precision.value >= 0 && conv.precision.value < textLength )
        keptLength = conv.precision.value;
    ( *dest )->length -= textLength - keptLength;
    ( *dest )->bspace += textLength - keptLength;
    if ( conv.width <= keptLength )
        return;

    QV_INT pad = conv.width - keptLength;
    QV_CHAR *blanks = qv::stringOpenEnd( dest, pad );
    if ( !( conv.flags & QV_FORMAT_FLAG_LEFTALIGN ) )
    {
        QV_CHAR *text = blanks - keptLength;
        std::memmove( text + pad, text, static_cast<size_t>( keptLength ) * sizeof( QV_CHAR ) );
        blanks = text;
    }
    for ( QV_INT idx = 0; idx < pad; idx++ )
    {
        blanks[idx] = ' ';
    }
}

void appendNullText( QV_STRING **dest, const Conversion &conv )
{
    qv___FormatFmtObj( dest, nullptr, conv.width, conv.precision.value, conv.flags );
}

// Decodes at the end of *dest; convert( gap, room ) returns the number of characters, which is at most room.
template <typename Convert>
void appendDecoded( QV_STRING **dest, QV_INT room, const Conversion &conv, Convert convert )
{
    QV_CHECK( room >= 0 );
    QV_INT length = 0;
    if ( room > 0 )
    {
        QV_CHAR *gap = qv::stringOpenEnd( dest, room );
        length = convert( gap, room );
        ( *dest )->length -= room - length;
        ( *dest )->bspace += room - length;
    }
    finishText( dest, length, conv );
}

void appendCstr( QV_STRING **dest, char *cstr, QV_INT cstrLength, const Conversion &conv )
{
    QV_CHECK( cstrLength >= -1 );
    if ( !cstr )
    {
        appendNullText( dest, conv );
        return;
    }
    QV_INT byteCount = cstrLength == -1 ? static_cast<QV_INT>( std::strlen( cstr ) ) : cstrLength;
    appendDecoded( dest, byteCount, conv, [&]( QV_CHAR *gap, QV_INT room ) {
        return qvCharsConvertFromCstr( gap, room, cstr, byteCount );
    } );
    if ( conv.flags & QV___FORMAT_FMT_OWNED )
        qvMemFree( cstr );
}

void appendWcstr( QV_STRING **dest, wchar_t *wcstr, QV_INT wcstrLength, const Conversion &conv )
{
    QV_CHECK( wcstrLength >= -1 );
    if ( !wcstr )
    {
        appendNullText( dest, conv );
        return;
    }
    QV_INT count = wcstrLength == -1 ? static_cast<QV_INT>( std::wcslen( wcstr ) ) : wcstrLength;
    appendDecoded( dest, count, conv, [&]( QV_CHAR *gap, QV_INT room ) {
        return qvCharsConvertFromWcstr( gap, room, wcstr, count );
    } );
    if ( conv.flags & QV___FORMAT_FMT_OWNED )
        qvMemFree( wcstr );
}

void appendObj( QV_STRING **dest, qvObj obj, const Conversion &conv )
{
    if ( !obj )
    {
        appendNullText( dest, conv );
        return;
    }
    qv::Local<QV_STRING> text( qvObjToString( obj ) );
    qv___FormatFmtObj( dest, text, conv.width, conv.precision.value, conv.flags );
    if ( conv.flags & QV___FORMAT_FMT_OWNED )
        qv::release( obj );
}

void appendString( QV_STRING **dest, QV_STRING *qvs, const Conversion &conv )
{
    qv___FormatFmtObj( dest, qvs, conv.width, conv.precision.value, conv.flags );
    if ( qvs && ( conv.flags & QV___FORMAT_FMT_OWNED ) )
        qv::release( qv::objOf( qvs ) );
}

void appendChar( QV_STRING **dest, QV_CHAR ch, const Conversion &conv )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    qv___FormatEncodeChars( dest, &ch, 1, conv.width, encoderFlags( conv.flags ) );
}

void appendBool( QV_STRING **dest, QV_BOOL value, const Conversion &conv )
{
    qv::Local<QV_STRING> text( qvFormatEncodeBool( value, conv.width, encoderFlags( conv.flags ) ) );
    qv::stringAppendChars( dest, qv::stringBacking( text ), qv::stringLength( text ) );
}

void appendRun( QV_STRING **dest, const Conversion &conv )
{
    QV_CHAR ch = '\t';
    if ( conv.precision.given )
    {
        QV_CHECK( conv.precision.value >= 0 );
        QV_CHECK( conv.precision.value <= QV_CHAR_MAX );
        ch = static_cast<QV_CHAR>( conv.precision.value );
    }
    QV_CHECK( conv.width >= 0 );
    if ( conv.width > 0 )
        qvStringAppendCharRun( dest, ch, conv.width );
}

// ---- The loop ----

// Copies the text up to the next percent sign, into the spare room of the private result as far as it goes.
void copyLiteral( QV_STRING **dest, Reader *reader )
{
    const QV_CHAR *fmt = reader->fmt;
    QV_STRING *qvs = *dest;
    QV_CHAR *spare = qv::stringBacking( qvs ) + qv::stringLength( qvs );
    QV_INT left = reader->fmtLength - reader->position;
    QV_INT quickEnd = reader->position + ( left < qvs->bspace ? left : qvs->bspace );
    QV_INT idx = reader->position;
    while ( idx < quickEnd && fmt[idx] != '%' )
    {
        *spare++ = fmt[idx++];
    }
    qvs->length += idx - reader->position;
    qvs->bspace -= idx - reader->position;
    reader->position = idx;
    while ( idx < reader->fmtLength && fmt[idx] != '%' )
    {
        idx++;
    }
    qv::stringAppendChars( dest, fmt + reader->position, idx - reader->position );
    reader->position = idx;
}

// Takes the word's arguments and appends its output. Returns whether it counts as a conversion.
bool execute( QV_STRING **dest, QV_CHAR word, const Conversion &conv, QV_ARG_LIST *argList )
{
    switch ( word )
    {
    case '%':
        if ( conv.flags & QV___FORMAT_FMT_HASH_MASK )
            return true;
        qv::stringAppendChar( dest, '%' );
        return false;
    case 'b':
        appendBool( dest, va_arg( argList->args, QV_BOOL ), conv );
        return true;
    case 'c':
        appendChar( dest, va_arg( argList->args, QV_CHAR ), conv );
        return true;
    case 'i':
        qv___FormatFmtInt( dest, va_arg( argList->args, QV_INT ), conv.base.value, conv.width, conv.flags );
        return true;
    case 'A':
        appendAligned( dest, va_arg( argList->args, QV_INT ), conv );
        return true;
    case 'X':
        qv___FormatFmtInt( dest, va_arg( argList->args, QV_INT ), conv.base.given ? conv.base.value : 16,
                           conv.width, conv.flags );
        return true;
    case 'r':
        qv::formatAppendReal( dest, va_arg( argList->args, double ), conv.base.value, conv.width,
                              conv.precision.value, encoderFlags( conv.flags ) );
        return true;
    case 'o':
        appendObj( dest, va_arg( argList->args, qvObj ), conv );
        return true;
    case 's':
        appendString( dest, va_arg( argList->args, QV_STRING * ), conv );
        return true;
    case longWord | 'c':
        appendCstr( dest, va_arg( argList->args, char * ), -1, conv );
        return true;
    case longWord | 'C': {
        char *cstr = va_arg( argList->args, char * );
        appendCstr( dest, cstr, va_arg( argList->args, QV_INT ), conv );
        return true;
    }
    case longWord | 'w':
        appendWcstr( dest, va_arg( argList->args, wchar_t * ), -1, conv );
        return true;
    case longWord | 'W': {
        wchar_t *wcstr = va_arg( argList->args, wchar_t * );
        appendWcstr( dest, wcstr, va_arg( argList->args, QV_INT ), conv );
        return true;
    }
    case 'm':
        appendRun( dest, conv );
        return true;
    default:
        QV_FAIL( "invalid conversion" );
    }
}

} // namespace

QV_BOOL qv___FormatScanIntArg( const QV_CHAR *fmt, QV_INT fmtLength, QV_INT *position, QV_ARG_LIST *argList,
                               QV_INT *value )
{
    if ( *position == fmtLength )
        return QV_FALSE;
    QV_CHAR ch = fmt[*position];
    if ( ch == '*' )
    {
        *value = va_arg( argList->args, QV_INT );
        ( *position )++;
        return QV_TRUE;
    }
    if ( endsNumber( ch ) )
        return QV_FALSE;
    if ( takeShortNumber( fmt, fmtLength, position, value ) )
        return QV_TRUE;
    QV_INT scanned = 0;
    QV_INT consumed = 0;
    if ( !qvFormatTryDecodeIntChars( fmt + *position, fmtLength - *position, 10, &scanned, &consumed ) )
        return QV_FALSE;
    *value = scanned;
    *position += consumed;
    return QV_TRUE;
}

void qv___FormatFmtInt( QV_STRING **dest, QV_INT value, QV_INT base, QV_INT minWidth, QV_INT fmtFlags )
{
    qv::formatAppendInt( dest, value, base, minWidth, encoderFlags( fmtFlags ) );
}

void qv___FormatFmtObj( QV_STRING **dest, QV_STRING *qvs, QV_INT minWidth, QV_INT precision, QV_INT fmtFlags )
{
    const QV_CHAR *text = nullText;
    QV_INT textLength = QV_SIZEOF_ARRAY( nullText );
    if ( qvs )
    {
        text = qv::stringBacking( qvs );
        textLength = qv::stringLength( qvs );
    }
    else if ( fmtFlags & QV___FORMAT_FMT_HASH_MASK )
    {
        textLength = 0;
    }
    if ( precision >= 0 && precision < textLength )
        textLength = precision;
    qv___FormatEncodeChars( dest, text, textLength, minWidth, fmtFlags & QV_FORMAT_FLAG_LEFTALIGN );
}

QV_STRING *qv___FormatCharsArgList( const QV_CHAR *fmt, QV_INT fmtLength, QV_ARG_LIST *argList )
{
    QV_CHECK( fmt || fmtLength == 0 );
    QV_CHECK( argList );
    qv::Local<QV_STRING> res( qv::stringCreateUnfilled( 0 ) );
    Reader reader = { fmt, fmtLength, 0, argList };
    bool counted = false;
    for ( ;; )
    {
        copyLiteral( res.edit(), &reader );
        if ( reader.atEnd() )
            break;
        reader.position++;
        Conversion conv = readConversion( &reader );
        QV_CHAR word = readWord( &reader );
        if ( execute( res.edit(), word, conv, argList ) )
            counted = true;
    }
    if ( !counted )
        QV_FAIL( "A format string must contain at least a single conversion." );
    return res.give();
}

QV_STRING *qv___FormatArgList( QV_STRING *fmt, QV_ARG_LIST *argList )
{
    QV_CHECK( fmt );
    // An argument that is handed over may hold the last other reference to the format.
    qv::Local<QV_STRING> held = qv::Local<QV_STRING>::share( fmt );
    return qv___FormatCharsArgList( qv::stringBacking( held ), qv::stringLength( held ), argList );
}
