#include <qv/charset/qv_charset_span.hh>

#include <qv/charset/qv_charset_simd.hh>
#include <qv/sys/qv_check.hh>

namespace qv
{

namespace
{

constexpr QV_INT longestSequence = 4;

// How a sequence of each length looks in four bytes, and what it stands for.
inline bool isTwo( uint32_t word )
{
    return ( word & 0x00C0E0u ) == 0x0080C0u;
}

inline QV_CHAR twoOf( uint32_t word )
{
    return ( word & 0x1F ) << 6 | ( word >> 8 & 0x3F );
}

// Zero for a sequence of three bytes.
inline uint32_t unlikeThree( uint32_t word )
{
    return ( word ^ 0x8080E0u ) & 0xC0C0F0u;
}

inline QV_CHAR threeOf( uint32_t word )
{
    return ( word & 0x0F ) << 12 | ( word >> 2 & 0xFC0 ) | ( word >> 16 & 0x3F );
}

inline bool isFour( uint32_t word )
{
    return ( word & 0xC0C0C0F8u ) == 0x808080F0u;
}

inline QV_CHAR fourOf( uint32_t word )
{
    return ( word & 0x07 ) << 18 | ( word << 4 & 0x3F000 ) | ( word >> 10 & 0xFC0 ) | ( word >> 24 & 0x3F );
}

// Decodes a run of good sequences of several bytes, while there are four bytes to look at. True if it stopped
// at an ASCII byte or for lack of room, false at anything else.
inline bool decodeSequences( DecodeSpan *span )
{
    const unsigned char *bytes = span->bytes;
    QV_CHAR *chars = span->chars;
    bool good = true;
    while ( good && span->bytesEnd - bytes >= longestSequence && chars < span->charsEnd )
    {
        const uint32_t word = loadFour( bytes );
        if ( ( word & 0x80 ) == 0 )
            break;
        if ( isTwo( word ) )
        {
            *chars++ = twoOf( word );
            bytes += 2;
            continue;
        }
        good = unlikeThree( word ) == 0;
        if ( good && span->bytesEnd - bytes >= asciiBlock && span->charsEnd - chars >= 4 )
        {
            const uint32_t second = loadFour( bytes + 3 );
            const uint32_t third = loadFour( bytes + 6 );
            const uint32_t fourth = loadFour( bytes + 9 );
            if ( ( unlikeThree( second ) | unlikeThree( third ) | unlikeThree( fourth ) ) == 0 )
            {
                chars[0] = threeOf( word );
                chars[1] = threeOf( second );
                chars[2] = threeOf( third );
                chars[3] = threeOf( fourth );
                chars += 4;
                bytes += 12;
                continue;
            }
        }
        if ( good )
        {
            *chars++ = threeOf( word );
            bytes += 3;
        }
        else if ( isFour( word ) && QV_CHAR_OK( fourOf( word ) ) )
        {
            *chars++ = fourOf( word );
            bytes += 4;
            good = true;
        }
    }
    span->bytes = bytes;
    span->chars = chars;
    return good;
}

// Decodes good characters until something else comes, or a sequence so near the end that it can't be looked
// at whole.
void decodeGood( DecodeSpan *span )
{
    DecodeSpan rest = *span;
    bool good = true;
    while ( good && rest.bytes < rest.bytesEnd && rest.chars < rest.charsEnd )
    {
        if ( rest.bytesEnd - rest.bytes >= asciiBlock && rest.charsEnd - rest.chars >= asciiBlock )
        {
            const unsigned mask = widenBlock( rest.bytes, rest.chars );
            const int leading = mask == 0 ? static_cast<int>( asciiBlock ) : std::countr_zero( mask );
            rest.bytes += leading;
            rest.chars += leading;
            if ( mask == 0 )
                continue;
        }
        else if ( *rest.bytes < 0x80 )
        {
            *rest.chars++ = *rest.bytes++;
            continue;
        }
        good = rest.bytesEnd - rest.bytes >= longestSequence && decodeSequences( &rest );
    }
    *span = rest;
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

// Encodes a run of valid characters that aren't ASCII, while there are four bytes of room. Each is stored as
// four bytes, of which the next one overwrites those that are too many.
inline void encodeSequences( EncodeSpan *span )
{
    const QV_CHAR *chars = span->chars;
    unsigned char *bytes = span->bytes;
    while ( chars < span->charsEnd && span->bytesEnd - bytes >= longestSequence )
    {
        const QV_CHAR ch = *chars;
        const uint32_t last = 0x80 | ( ch & 0x3F );
        if ( ch < 0x80 || !QV_CHAR_OK( ch ) )
            break;
        if ( ch < 0x800 )
        {
            storeFour( 0xC0 | ch >> 6 | last << 8, bytes );
            chars++;
            bytes += 2;
            continue;
        }
        if ( span->charsEnd - chars >= 4 && span->bytesEnd - bytes >= asciiBlock &&
             encodeFourOfThree( chars, bytes ) )
        {
            chars += 4;
            bytes += 12;
            continue;
        }
        chars++;
        const uint32_t middle = 0x80 | ( ch >> 6 & 0x3F );
        if ( ch < 0x10000 )
        {
            storeFour( 0xE0 | ch >> 12 | middle << 8 | last << 16, bytes );
            bytes += 3;
            continue;
        }
        storeFour( 0xF0 | ch >> 18 | ( 0x80 | ( ch >> 12 & 0x3F ) ) << 8 | middle << 16 | last << 24, bytes );
        bytes += 4;
    }
    span->chars = chars;
    span->bytes = bytes;
}

// Encodes valid characters until an invalid one comes, or one that finds no room.
void encodeGood( EncodeSpan *span )
{
    EncodeSpan rest = *span;
    while ( rest.chars < rest.charsEnd )
    {
        if ( rest.charsEnd - rest.chars >= asciiBlock && rest.bytesEnd - rest.bytes >= asciiBlock )
        {
            const unsigned mask = narrowBlock( rest.chars, rest.bytes );
            const int leading = mask == 0 ? static_cast<int>( asciiBlock ) : std::countr_zero( mask );
            rest.chars += leading;
            rest.bytes += leading;
            if ( mask == 0 )
                continue;
        }
        encodeSequences( &rest );
        if ( rest.chars == rest.charsEnd || !QV_CHAR_OK( *rest.chars ) ||
             rest.bytesEnd - rest.bytes < utf8Length( *rest.chars ) )
            break;
        if ( *rest.chars < 0x80 || rest.bytesEnd - rest.bytes < longestSequence )
            rest.bytes += encodeChar( *rest.chars++, rest.bytes );
    }
    *span = rest;
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
