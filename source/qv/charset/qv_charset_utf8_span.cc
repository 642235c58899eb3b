#include <qv/charset/qv_charset_span.hh>

#include <qv/charset/qv_charset_simd.hh>
#include <qv/sys/qv_check.hh>

namespace qv
{

namespace
{

constexpr QV_INT longestSequence = 4;

// Decodes one whole sequence of several bytes at *bytes, with four bytes to look at. Returns its length, 0 if it isn't a
// good one.
inline QV_INT decodeSequence( const unsigned char *bytes, QV_CHAR *ch )
{
    const uint32_t word = loadFour( bytes );
    if ( ( word & 0x00C0E0u ) == 0x0080C0u )
    {
        *ch = ( word & 0x1F ) << 6 | ( word >> 8 & 0x3F );
        return 2;
    }
    if ( ( word & 0xC0C0F0u ) == 0x8080E0u )
    {
        *ch = ( word & 0x0F ) << 12 | ( word >> 2 & 0xFC0 ) | ( word >> 16 & 0x3F );
        return 3;
    }
    if ( ( word & 0xC0C0C0F8u ) == 0x808080F0u )
    {
        *ch =
            ( word & 0x07 ) << 18 | ( word << 4 & 0x3F000 ) | ( word >> 10 & 0xFC0 ) | ( word >> 24 & 0x3F );
        return QV_CHAR_OK( *ch ) ? 4 : 0;
    }
    return 0;
}

// Decodes good characters until something else comes, or a sequence so near the end that it can't be looked at whole.
void decodeGood( DecodeSpan *span )
{
    const unsigned char *bytes = span->bytes;
    const unsigned char *const bytesEnd = span->bytesEnd;
    QV_CHAR *chars = span->chars;
    QV_CHAR *const charsEnd = span->charsEnd;
    while ( bytes < bytesEnd && chars < charsEnd )
    {
        if ( bytesEnd - bytes >= asciiBlock && charsEnd - chars >= asciiBlock )
        {
            const unsigned mask = widenBlock( bytes, chars );
            const int leading = mask == 0 ? static_cast<int>( asciiBlock ) : std::countr_zero( mask );
            bytes += leading;
            chars += leading;
            if ( mask == 0 )
                continue;
        }
        else if ( *bytes < 0x80 )
        {
            *chars++ = *bytes++;
            continue;
        }
        QV_INT length = 0;
        do
        {
            if ( bytesEnd - bytes < longestSequence )
                break;
            length = decodeSequence( bytes, chars );
            if ( length == 0 )
                break;
            bytes += length;
            chars++;
        } while ( chars < charsEnd && bytes < bytesEnd && *bytes >= 0x80 );
        if ( length == 0 || bytesEnd - bytes < longestSequence )
            break;
    }
    span->bytes = bytes;
    span->chars = chars;
}

// The length of the encoded character, which is valid and for which there is room.
inline QV_INT encodeChar( QV_CHAR ch, unsigned char *bytes )
{
    if ( ch < 0x80 )
    {
        bytes[0] = static_cast<unsigned char>( ch );
        return 1;
    }
    if ( ch < 0x800 )
    {
        bytes[0] = static_cast<unsigned char>( 0xC0 | ch >> 6 );
        bytes[1] = static_cast<unsigned char>( 0x80 | ( ch & 0x3F ) );
        return 2;
    }
    if ( ch < 0x10000 )
    {
        bytes[0] = static_cast<unsigned char>( 0xE0 | ch >> 12 );
        bytes[1] = static_cast<unsigned char>( 0x80 | ( ch >> 6 & 0x3F ) );
        bytes[2] = static_cast<unsigned char>( 0x80 | ( ch & 0x3F ) );
        return 3;
    }
    bytes[0] = static_cast<unsigned char>( 0xF0 | ch >> 18 );
    bytes[1] = static_cast<unsigned char>( 0x80 | ( ch >> 12 & 0x3F ) );
    bytes[2] = static_cast<unsigned char>( 0x80 | ( ch >> 6 & 0x3F ) );
    bytes[3] = static_cast<unsigned char>( 0x80 | ( ch & 0x3F ) );
    return 4;
}

// Encodes valid characters until an invalid one comes, or one that finds no room.
void encodeGood( EncodeSpan *span )
{
    const QV_CHAR *chars = span->chars;
    const QV_CHAR *const charsEnd = span->charsEnd;
    unsigned char *bytes = span->bytes;
    unsigned char *const bytesEnd = span->bytesEnd;
    while ( chars < charsEnd )
    {
        if ( charsEnd - chars >= asciiBlock && bytesEnd - bytes >= asciiBlock )
        {
            const unsigned mask = narrowBlock( chars, bytes );
            const int leading = mask == 0 ? static_cast<int>( asciiBlock ) : std::countr_zero( mask );
            chars += leading;
            bytes += leading;
            if ( mask == 0 )
                continue;
        }
        // At least one character in full care, and more of them while they aren't ASCII.
        do
        {
            if ( !QV_CHAR_OK( *chars ) || bytesEnd - bytes < utf8Length( *chars ) )
            {
                span->chars = chars;
                span->bytes = bytes;
                return;
            }
            bytes += encodeChar( *chars++, bytes );
        } while ( chars < charsEnd && *chars >= 0x80 );
    }
    span->chars = chars;
    span->bytes = bytes;
}

} // namespace

Utf8Decoder::Utf8Decoder( QV_CHARSET_FLAGS flags, QV_INT state, bool started )
    : onInvalid_( onInvalid( flags ) ), dropsMark_( ( flags & QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK ) == 0 ),
      started_( started ), state_( state )
{
}

void Utf8Decoder::deliver( QV_CHAR ch, DecodeSpan *span )
{
    *span->chars++ = ch;
    started_ = true;
}

bool Utf8Decoder::reportInvalid( DecodeSpan *span )
{
    if ( onInvalid_ == OnInvalid::replace )
        deliver( replacementChar, span );
    return onInvalid_ != OnInvalid::abort;
}

void Utf8Decoder::begin( QV_INT missing, QV_CHAR bits )
{
    state_ = SEQUENCE;
    missing_ = missing;
    bits_ = bits;
}

bool Utf8Decoder::finishSequence( DecodeSpan *span )
{
    state_ = START;
    if ( !QV_CHAR_OK( bits_ ) )
        return reportInvalid( span );
    if ( !started_ && dropsMark_ && bits_ == byteOrderMark )
    {
        started_ = true;
        return true;
    }
    deliver( bits_, span );
    return true;
}

// One byte through the state machine, with room for one character.
bool Utf8Decoder::takeByte( unsigned char byte, DecodeSpan *span )
{
    const bool continues = ( byte & 0xC0 ) == 0x80;
    if ( state_ == SEQUENCE && continues )
    {
        bits_ = bits_ << 6 | ( byte & 0x3F );
        return --missing_ > 0 || finishSequence( span );
    }
    if ( state_ == SEQUENCE || ( state_ == START && ( continues || byte >= 0xF8 ) ) )
    {
        state_ = SKIP;
        return reportInvalid( span );
    }
    if ( continues )
        return true;
    if ( byte < 0x80 )
    {
        state_ = START;
        deliver( byte, span );
        return true;
    }
    if ( byte < 0xE0 )
        begin( 1, byte & 0x1F );
    else if ( byte < 0xF0 )
        begin( 2, byte & 0x0F );
    else if ( byte < 0xF8 )
        begin( 3, byte & 0x07 );
    else
    {
        state_ = SKIP;
        return reportInvalid( span );
    }
    return true;
}

bool Utf8Decoder::decode( DecodeSpan *span )
{
    while ( span->bytes < span->bytesEnd && span->chars < span->charsEnd )
    {
        if ( state_ == START && ( started_ || *span->bytes < 0x80 ) )
        {
            started_ = true;
            decodeGood( span );
            if ( span->bytes == span->bytesEnd || span->chars == span->charsEnd )
                break;
        }
        if ( !takeByte( *span->bytes++, span ) )
            return false;
    }
    return true;
}

bool Utf8Decoder::finish( DecodeSpan *span )
{
    if ( state_ != SEQUENCE )
        return true;
    state_ = SKIP;
    return reportInvalid( span );
}

bool utf8Encode( EncodeSpan *span, OnInvalid invalid )
{
    for ( ;; )
    {
        encodeGood( span );
        if ( span->chars == span->charsEnd || QV_CHAR_OK( *span->chars ) )
            return true;
        if ( invalid == OnInvalid::abort )
            return false;
        if ( invalid == OnInvalid::replace )
        {
            if ( span->bytesEnd - span->bytes < utf8Length( replacementChar ) )
                return true;
            span->bytes += encodeChar( replacementChar, span->bytes );
        }
        span->chars++;
    }
}

QV_INT utf8Length( const QV_CHAR *chars, QV_INT count )
{
    QV_CHECK( QV_INT_MUL_OK( count, longestSequence ) );
    QV_INT length = 0;
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        length += utf8Length( chars[idx] );
    }
    return length;
}

} // namespace qv
