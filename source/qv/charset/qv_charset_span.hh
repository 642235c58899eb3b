#ifndef QV_CHARSET_QV_CHARSET_SPAN_HH
#define QV_CHARSET_QV_CHARSET_SPAN_HH

// The coders of the Unicode forms over plain memory. Streams feed them from their caches, whole conversions
// feed them a whole text; both get the same characters and bytes.

#include <qv/charset/qv_charset.h>

namespace qv
{

// What to do about an invalid character or sequence.
enum class OnInvalid
{
    replace,
    ignore,
    abort
};

// flags are normalized.
inline OnInvalid onInvalid( QV_CHARSET_FLAGS flags )
{
    if ( flags & QV_CHARSET_FLAG_IGNORE_INVALID_CHARACTERS )
        return OnInvalid::ignore;
    return flags & QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ? OnInvalid::abort : OnInvalid::replace;
}

inline constexpr QV_CHAR replacementChar = 0xFFFD;
inline constexpr QV_CHAR byteOrderMark = 0xFEFF;

// What a decoder has still to read, and its room. A decoder moves both fronts.
struct DecodeSpan
{
    const unsigned char *bytes;
    const unsigned char *bytesEnd;
    QV_CHAR *chars;
    QV_CHAR *charsEnd;
};

// What an encoder has still to read, and its room. An encoder moves both fronts, by whole characters only.
struct EncodeSpan
{
    const QV_CHAR *chars;
    const QV_CHAR *charsEnd;
    unsigned char *bytes;
    unsigned char *bytesEnd;
};

// Decodes UTF-8. Overlong forms and surrogates pass; a run of invalid bytes counts as one invalid character.
class Utf8Decoder
{
  public:
    enum : QV_INT
    {
        START,    // between characters
        SEQUENCE, // inside a sequence of several bytes
        SKIP      // inside an invalid run
    };

    // flags are normalized.
    Utf8Decoder( QV_CHARSET_FLAGS flags, QV_INT state, bool started );

    // Runs until the bytes or the room are used up. False if an invalid character ends the conversion; the
    // bytes that make it invalid are used up, and what was decoded before it counts.
    bool decode( DecodeSpan *span );

    // To call when the bytes have ended and there is room for one character: reports a sequence that lacks
    // its end, once.
    bool finish( DecodeSpan *span );

    QV_INT state() const
    {
        return state_;
    }

    // Whether a character or a byte order mark has been met.
    bool started() const
    {
        return started_;
    }

  private:
    bool takeByte( unsigned char byte, DecodeSpan *span );
    bool finishSequence( DecodeSpan *span );
    bool reportInvalid( DecodeSpan *span );
    void begin( QV_INT missing, QV_CHAR bits );
    void deliver( QV_CHAR ch, DecodeSpan *span );

    OnInvalid onInvalid_;
    bool dropsMark_;
    bool started_;
    QV_INT state_;
    QV_INT missing_ = 0; // bytes that the sequence still lacks
    QV_CHAR bits_ = 0;   // what its bytes have brought so far
};

// Encodes UTF-8 until the characters are used up or the next one finds no room. Surrogates pass; a character
// from 0x110000 up is invalid, and false tells that it ends the conversion.
bool utf8Encode( EncodeSpan *span, OnInvalid invalid );

// Bytes that a character takes, 3 for an invalid one.
inline QV_INT utf8Length( QV_CHAR ch )
{
    return ch < 0x80 ? 1 : ch < 0x800 ? 2 : ch < 0x10000 || ch > QV_CHAR_MAX ? 3 : 4;
}

// Bytes that a text takes, with three for an invalid character.
QV_INT utf8Length( const QV_CHAR *chars, QV_INT count );

// Decodes UTF-16 or UTF-32, by the size of Unit. Surrogates are not joined.
template <typename Unit> class UnitDecoder
{
  public:
    // flags are normalized; markDone tells that no byte order mark is expected any more.
    UnitDecoder( QV_CHARSET_FLAGS flags, bool littleEndian, bool markDone )
        : onInvalid_( onInvalid( flags ) ), littleEndian_( littleEndian ),
          markDone_( markDone || ( flags & QV_CHARSET_FLAG_IGNORE_BYTE_ORDER_MARK ) != 0 )
    {
    }

    // Runs until less than a unit is left or the room is used up. False as above.
    bool decode( DecodeSpan *span );

    // To call when the bytes have ended and there is room for one character: reports an incomplete unit,
    // once.
    bool finish( DecodeSpan *span );

    bool littleEndian() const
    {
        return littleEndian_;
    }

    bool markDone() const
    {
        return markDone_;
    }

  private:
    void takeMark( DecodeSpan *span );

    OnInvalid onInvalid_;
    bool littleEndian_;
    bool markDone_;
};

extern template class UnitDecoder<uint16_t>;
extern template class UnitDecoder<uint32_t>;

// Encodes UTF-16 or UTF-32 until the characters or the room are used up. A value from 0x110000 up becomes
// U+FFFD.
template <typename Unit> void unitEncode( EncodeSpan *span, bool littleEndian );

extern template void unitEncode<uint16_t>( EncodeSpan *span, bool littleEndian );
extern template void unitEncode<uint32_t>( EncodeSpan *span, bool littleEndian );

} // namespace qv

#endif
