#ifndef QV_TEST_CHARSET_CODING_HH
#define QV_TEST_CHARSET_CODING_HH

// Conversions through streams and whole, and what they give.

#include "support/test.hh"
#include "support/stream.hh"

namespace test
{

using namespace std::string_view_literals;

using ByteTap = Tap<unsigned char>;

// What reached a tap, in one piece.
inline std::string bytesOf( const ByteTap &tap )
{
    std::string all;
    for ( const std::vector<unsigned char> &write : tap.writes )
        all.append( write.begin(), write.end() );
    return all;
}

struct Decoded
{
    std::u32string chars;
    bool error = false;

    bool operator==( const Decoded & ) const = default;
};

inline std::ostream &operator<<( std::ostream &out, const Decoded &decoded )
{
    out << std::hex;
    for ( const char32_t ch : decoded.chars )
        out << "U+" << static_cast<uint32_t>( ch ) << ' ';
    return out << std::dec << ( decoded.error ? "(failed)" : "(good)" );
}

// Reads bytes through a charset source, step characters a read, perhaps with a failure behind them.
inline Decoded decodeStream( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::string_view input, QV_INT step,
                             bool failsAtEnd = false )
{
    ByteTap tap;
    tap.data.assign( input.begin(), input.end() );
    tap.failAt = failsAtEnd ? lengthOf( input ) : -1;
    Local<QV_BYTE_SOURCE> bytes = Bytes::source( tap );
    Local<QV_CHAR_SOURCE> source( qvCharsetCreateCharSource( bytes, charset, flags ) );
    Decoded decoded;
    std::vector<QV_CHAR> room( static_cast<size_t>( step ) );
    while ( !qvCharSourceEnd( source ) )
    {
        const QV_INT count = qvCharSourceReadChars( source, room.data(), step );
        decoded.chars.append( room.begin(), room.begin() + count );
    }
    decoded.error = qvCharSourceError( source );
    return decoded;
}

// The whole conversion in the same terms. What came before a failure is not part of its result.
inline Decoded decodeWhole( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::string_view bytes )
{
    Local<QV_STRING> string(
        qvCharsetTryConvertBufferToStringWithFlags( charset, bufferOf( bytes ), flags ) );
    return string ? Decoded{ toU32( string ), false } : Decoded{ {}, true };
}

struct Encoded
{
    std::string bytes;
    bool error = false;

    bool operator==( const Encoded & ) const = default;
};

inline std::ostream &operator<<( std::ostream &out, const Encoded &encoded )
{
    out << std::hex;
    for ( const char byte : encoded.bytes )
        out << static_cast<unsigned>( static_cast<unsigned char>( byte ) ) << ' ';
    return out << std::dec << ( encoded.error ? "(failed)" : "(good)" );
}

// Writes the text through a charset sink, step characters a write, and flushes.
inline Encoded encodeStream( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::u32string_view text,
                             size_t step, ByteTap *tap = nullptr )
{
    ByteTap own;
    tap = tap ? tap : &own;
    Local<QV_BYTE_SINK> bytes = Bytes::sink( *tap );
    Local<QV_CHAR_SINK> sink( qvCharsetCreateCharSink( bytes, charset, flags ) );
    for ( size_t at = 0; at < text.size(); at += step )
    {
        const std::u32string_view piece = text.substr( at, step );
        qvCharSinkWriteChars( sink, charsOf( piece ), lengthOf( piece ) );
    }
    qvCharSinkFlush( sink );
    return { bytesOf( *tap ), qvCharSinkError( sink ) != 0 };
}

inline Encoded encodeWhole( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::u32string_view chars )
{
    Local<QV_BUFFER> buf( qvCharsetTryConvertStringToBufferWithFlags( charset, text( chars ), flags ) );
    return buf ? Encoded{ bytesOf( buf ), false } : Encoded{ {}, true };
}

} // namespace test

#endif
