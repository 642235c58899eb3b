#ifndef QV_TEST_CHARSET_CODING_HH
#define QV_TEST_CHARSET_CODING_HH

// Byte streams that obey a script, and conversions through them.

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <qv/base/qv_buffer.h>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_byte_source.h>
#include <qv/io/qv_char_sink.h>
#include <qv/io/qv_char_source.h>
#include <qv/io/qv_stream_author.h>

#include "support/text.hh"

namespace test
{

using namespace std::string_view_literals;

// Bytes that come in pieces, perhaps with a failure behind them.
struct SourceScript
{
    std::string bytes;
    size_t piece = std::string::npos; // the most bytes of one read
    bool failsAtEnd = false;
    size_t at = 0;
};

inline SourceScript *sourceScript = nullptr;

inline QV_BOOL readScript( qvObj, unsigned char *bytes, QV_INT maxByteCount, QV_INT *bytesRead )
{
    SourceScript &script = *sourceScript;
    const size_t count =
        std::min( { static_cast<size_t>( maxByteCount ), script.piece, script.bytes.size() - script.at } );
    std::copy_n( script.bytes.begin() + static_cast<std::ptrdiff_t>( script.at ), count, bytes );
    script.at += count;
    *bytesRead = static_cast<QV_INT>( count );
    return QV_BOOL_FROM( !script.failsAtEnd || script.at < script.bytes.size() );
}

// What reached a byte sink, write by write, and when it refuses.
struct SinkScript
{
    std::vector<std::string> writes;
    size_t acceptedWrites = std::string::npos;
    bool flushFails = false;
    int flushes = 0;

    std::string bytes() const
    {
        std::string all;
        for ( const std::string &write : writes )
        {
            all += write;
        }
        return all;
    }
};

inline SinkScript *sinkScript = nullptr;

inline QV_BOOL writeScript( qvObj, const unsigned char *bytes, QV_INT byteCount )
{
    if ( sinkScript->writes.size() >= sinkScript->acceptedWrites )
        return QV_FALSE;
    sinkScript->writes.emplace_back( reinterpret_cast<const char *>( bytes ),
                                     static_cast<size_t>( byteCount ) );
    return QV_TRUE;
}

inline QV_BOOL flushScript( qvObj )
{
    sinkScript->flushes++;
    return QV_BOOL_FROM( !sinkScript->flushFails );
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
    {
        out << "U+" << static_cast<uint32_t>( ch ) << ' ';
    }
    return out << std::dec << ( decoded.error ? "(failed)" : "(good)" );
}

// Reads a script through a charset source, step characters a read.
inline Decoded decodeScript( QV_CHARSET charset, QV_CHARSET_FLAGS flags, SourceScript script, QV_INT step )
{
    sourceScript = &script;
    qv::Local<QV_BYTE_SOURCE> bytes( qv___ByteSourceCreate( readScript, nullptr, nullptr ) );
    qv::Local<QV_CHAR_SOURCE> source( qvCharsetCreateCharSource( bytes, charset, flags ) );
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

inline qv::Local<QV_BUFFER> buffer( std::string_view bytes )
{
    return qv::Local<QV_BUFFER>( qvBufferCreateFromBytesCopy(
        reinterpret_cast<const unsigned char *>( bytes.data() ), static_cast<QV_INT>( bytes.size() ) ) );
}

inline std::string toBytes( QV_BUFFER *buf )
{
    std::string bytes( static_cast<size_t>( qvBufferLength( buf ) ), '\0' );
    qvBufferReadBytes( buf, 0, reinterpret_cast<unsigned char *>( bytes.data() ), qvBufferLength( buf ) );
    return bytes;
}

// The whole conversion in the same terms. What came before a failure is not part of its result.
inline Decoded decodeWhole( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::string_view bytes )
{
    qv::Local<QV_STRING> string(
        qvCharsetTryConvertBufferToStringWithFlags( charset, buffer( bytes ), flags ) );
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
    {
        out << static_cast<unsigned>( static_cast<unsigned char>( byte ) ) << ' ';
    }
    return out << std::dec << ( encoded.error ? "(failed)" : "(good)" );
}

// Writes the text through a charset sink, step characters a write, and flushes.
inline Encoded encodeScript( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::u32string_view text,
                             size_t step, SinkScript *script )
{
    sinkScript = script;
    qv::Local<QV_BYTE_SINK> bytes( qv___ByteSinkCreate( writeScript, flushScript, nullptr ) );
    qv::Local<QV_CHAR_SINK> sink( qvCharsetCreateCharSink( bytes, charset, flags ) );
    for ( size_t at = 0; at < text.size(); at += step )
    {
        const std::u32string_view piece = text.substr( at, step );
        qvCharSinkWriteChars( sink, reinterpret_cast<const QV_CHAR *>( piece.data() ),
                              static_cast<QV_INT>( piece.size() ) );
    }
    qvCharSinkFlush( sink );
    return { script->bytes(), qvCharSinkError( sink ) != 0 };
}

inline Encoded encodeWhole( QV_CHARSET charset, QV_CHARSET_FLAGS flags, std::u32string_view chars )
{
    qv::Local<QV_BUFFER> buf( qvCharsetTryConvertStringToBufferWithFlags( charset, text( chars ), flags ) );
    return buf ? Encoded{ toBytes( buf ), false } : Encoded{ {}, true };
}

} // namespace test

#endif
