// Streams by charset, and whole conversions. The latter feed the coders without streams in between, straight
// into the storage of the result.

#include <qv/charset/qv_charset.h>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_string.hh>
#include <qv/charset/qv_charset_map.hh>
#include <qv/charset/qv_charset_span.hh>
#include <qv/charset/qv_charset_utf.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>

#include <sys/mman.h>

namespace
{

// Texts up to this many characters or bytes are converted in one small step.
constexpr QV_INT shortText = 1024;

// The most characters that a conversion sets aside in advance.
constexpr QV_INT advanceChars = 67108864;

// Asks the platform for large pages behind a large block, where they save most of the time that a first touch
// costs.
void adviseLargePages( void *block, QV_INT size )
{
    constexpr uintptr_t pageSize = 2 << 20;
    const uintptr_t first = ( reinterpret_cast<uintptr_t>( block ) + pageSize - 1 ) & -pageSize;
    const uintptr_t end =
        ( reinterpret_cast<uintptr_t>( block ) + static_cast<uintptr_t>( size ) ) & -pageSize;
    if ( size >= static_cast<QV_INT>( 2 * pageSize ) )
        madvise( reinterpret_cast<void *>( first ), end - first, MADV_HUGEPAGE );
}

// The array of a growing result; whoever takes it leaves null.
template <typename T> class Storage
{
  public:
    explicit Storage( QV_INT capacity )
        : items_( static_cast<T *>( qvMemAllocN( capacity, sizeof( T ) ) ) ), capacity_( capacity )
    {
        adviseLargePages( items_, capacity * static_cast<QV_INT>( sizeof( T ) ) );
    }
    Storage( const Storage & ) = delete;
    Storage &operator=( const Storage & ) = delete;

    ~Storage()
    {
        qvMemFree( items_ );
    }

    void resize( QV_INT capacity )
    {
        items_ = static_cast<T *>( qvMemReallocN( items_, capacity, sizeof( T ) ) );
        capacity_ = capacity;
    }

    // Hands the array over, cut to its first count items, above 0.
    [[nodiscard]] T *give( QV_INT count )
    {
        if ( count < capacity_ )
            resize( count );
        T *given = items_;
        items_ = nullptr;
        return given;
    }

    T *items() const
    {
        return items_;
    }

    QV_INT capacity() const
    {
        return capacity_;
    }

  private:
    T *items_;
    QV_INT capacity_;
};

// A string on an array that it takes over, as qvStringCreateFromCharsUse without its look at every character:
// a decoder yields nothing invalid.
QV_STRING *stringOn( QV_CHAR *chars, QV_INT length )
{
    auto *text = qv::create<QV_STRING>( qvStringSort() );
    text->length = length;
    text->fspace = 0;
    text->bspace = 0;
    text->chars = chars;
    qv___ObjDbgSetAllocationSizeN( text, length, sizeof( QV_CHAR ) );
    return text;
}

template <typename Decoder> bool decodeAll( Decoder *decoder, qv::DecodeSpan *span )
{
    return decoder->decode( span ) && decoder->finish( span );
}

// Decodes a short text into a new record; no text has more characters than bytes.
template <typename Decoder>
QV_STRING *decodeShort( Decoder *decoder, const unsigned char *bytes, QV_INT byteCount )
{
    qv::Local<QV_STRING> text( qv::stringCreateUnfilled( byteCount ) );
    QV_CHAR *chars = qv::stringBacking( text );
    qv::DecodeSpan span{ bytes, bytes + byteCount, chars, chars + byteCount };
    if ( !decodeAll( decoder, &span ) )
        return nullptr;
    const QV_INT length = span.chars - chars;
    if ( length == 0 )
        return qvStringCreate();
    text->length = length;
    text->bspace += byteCount - length;
    return text.give();
}

template <typename Decoder>
QV_STRING *decodeLong( Decoder *decoder, const unsigned char *bytes, QV_INT byteCount )
{
    Storage<QV_CHAR> storage( std::min( byteCount, advanceChars ) );
    QV_CHAR *chars = storage.items();
    qv::DecodeSpan span{ bytes, bytes + byteCount, chars, chars + storage.capacity() };
    bool good = decoder->decode( &span );
    while ( good && span.chars == span.charsEnd && storage.capacity() < byteCount )
    {
        const QV_INT length = storage.capacity();
        storage.resize( std::min( byteCount, length * 2 ) );
        chars = storage.items();
        span.chars = chars + length;
        span.charsEnd = chars + storage.capacity();
        good = decoder->decode( &span );
    }
    if ( !good || !decoder->finish( &span ) )
        return nullptr;
    const QV_INT length = span.chars - chars;
    if ( length == 0 )
        return qvStringCreate();
    return stringOn( storage.give( length ), length );
}

template <typename Decoder>
QV_STRING *decodeText( Decoder decoder, const unsigned char *bytes, QV_INT byteCount )
{
    if ( byteCount == 0 )
        return qvStringCreate();
    return byteCount <= shortText ? decodeShort( &decoder, bytes, byteCount )
                                  : decodeLong( &decoder, bytes, byteCount );
}

// A byte charset's decoder in the form of the others.
struct MapDecoder
{
    const qv::ByteMap &map;
    qv::OnInvalid invalid;

    bool decode( qv::DecodeSpan *span )
    {
        return qv::mapDecode( map, invalid, span );
    }

    bool finish( qv::DecodeSpan * )
    {
        return true;
    }
};

bool isLittleEndian( QV_CHARSET charset )
{
    return charset != QV_CHARSET_UTF_16_BE && charset != QV_CHARSET_UTF_32_BE;
}

// A form with a fixed byte order takes a byte order mark as a character.
bool hasFixedOrder( QV_CHARSET charset )
{
    return charset != QV_CHARSET_UTF_8 && charset != QV_CHARSET_UTF_16 && charset != QV_CHARSET_UTF_32;
}

bool isUtf16( QV_CHARSET charset )
{
    return charset >= QV_CHARSET_UTF_16 && charset <= QV_CHARSET_UTF_16_LE;
}

// Encodes a Unicode form, with room for all of the text; false if an invalid character ends the conversion.
bool encodeForm( QV_CHARSET charset, QV_CHARSET_FLAGS flags, qv::EncodeSpan *span )
{
    if ( charset == QV_CHARSET_UTF_8 )
        return qv::utf8Encode( span, qv::onInvalid( flags ) );
    if ( isUtf16( charset ) )
        qv::unitEncode<uint16_t>( span, isLittleEndian( charset ) );
    else
        qv::unitEncode<uint32_t>( span, isLittleEndian( charset ) );
    return true;
}

// Encodes the byte order mark if the flags ask for it, and the text.
bool encodeWithMark( QV_CHARSET charset, QV_CHARSET_FLAGS flags, qv::EncodeSpan *span )
{
    if ( flags & QV_CHARSET_FLAG_INSERT_BYTE_ORDER_MARK )
    {
        qv::EncodeSpan mark{ &qv::byteOrderMark, &qv::byteOrderMark + 1, span->bytes, span->bytesEnd };
        encodeForm( charset, flags, &mark );
        span->bytes = mark.bytes;
    }
    return encodeForm( charset, flags, span );
}

// The most bytes that a character takes in any form.
constexpr QV_INT longestChar = 4;

// Bytes enough for a text and a mark: up to a size the most that can be, whose unused part costs nothing,
// beyond it what UTF-8 needs, which is often a quarter.
QV_INT formRoom( QV_CHARSET charset, const QV_CHAR *chars, QV_INT count )
{
    QV_CHECK( QV_INT_MUL_OK( count + 1, longestChar ) );
    const bool counts = charset == QV_CHARSET_UTF_8 && count > advanceChars / longestChar;
    return longestChar + ( counts ? qv::utf8Length( chars, count ) : count * longestChar );
}

QV_BUFFER *bufferOf( Storage<unsigned char> *storage, QV_INT byteCount )
{
    return byteCount == 0 ? qvBufferCreate()
                          : qvBufferCreateFromBytesUse( storage->give( byteCount ), byteCount );
}

// A Unicode form of a whole text; null if the conversion fails.
QV_BUFFER *formOf( QV_CHARSET charset, QV_CHARSET_FLAGS flags, const QV_CHAR *chars, QV_INT count )
{
    unsigned char few[shortText];
    if ( count < shortText / longestChar )
    {
        qv::EncodeSpan span{ chars, chars + count, few, few + shortText };
        if ( !encodeWithMark( charset, flags, &span ) )
            return nullptr;
        return span.bytes == few ? qvBufferCreate() : qvBufferCreateFromBytesCopy( few, span.bytes - few );
    }
    Storage<unsigned char> storage( formRoom( charset, chars, count ) );
    qv::EncodeSpan span{ chars, chars + count, storage.items(), storage.items() + storage.capacity() };
    if ( !encodeWithMark( charset, flags, &span ) )
        return nullptr;
    return bufferOf( &storage, span.bytes - storage.items() );
}

// An array that grows behind an encoder.
struct StorageTarget : qv::ByteTarget
{
    Storage<unsigned char> *storage;

    StorageTarget( Storage<unsigned char> *array, QV_INT used )
        : ByteTarget{ array->items() + used, array->items() + array->capacity(), grow }, storage( array )
    {
    }

    static bool grow( ByteTarget *target )
    {
        Storage<unsigned char> *array = static_cast<StorageTarget *>( target )->storage;
        const QV_INT used = target->next - array->items();
        array->resize( array->capacity() * 2 );
        target->next = array->items() + used;
        target->end = array->items() + array->capacity();
        return true;
    }
};

// The bytes of a whole text in a byte charset; null if the conversion fails.
QV_BUFFER *mappedOf( const qv::ByteMap &map, QV_CHARSET_FLAGS flags, const QV_CHAR *chars, QV_INT count )
{
    if ( count == 0 )
        return qvBufferCreate();
    Storage<unsigned char> storage( count );
    QV_INT plain = qv::mapEncodePlain( map, chars, count, storage.items() );
    if ( plain == count )
        return bufferOf( &storage, count );
    // What follows may still join with the last plain character.
    plain = std::max<QV_INT>( plain - 1, 0 );
    qv::Local<QV_UNICODE_NORMALIZER> norm( qvUnicodeNormalizerCreate( QV_UNICODE_NORMAL_FORM_C ) );
    qv::MapEncoder encoder( map.charToByte, flags, norm );
    StorageTarget target( &storage, plain );
    if ( !encoder.write( chars + plain, count - plain, &target ) || !encoder.flush( &target ) )
        return nullptr;
    return bufferOf( &storage, target.next - storage.items() );
}

} // namespace

QV_CHAR_SOURCE *qvCharsetCreateCharSource( QV_BYTE_SOURCE *byteSource, QV_CHARSET charset,
                                           QV_CHARSET_FLAGS flags )
{
    QV_CHECK( byteSource );
    QV_CHECK( QV_CHARSET_OK( charset ) );
    flags = qvCharsetFlagsNormalize( flags );
    switch ( charset )
    {
    case QV_CHARSET_UTF_8:
        return qv___CharsetUtf8CharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_16:
        return qv___CharsetUtf16CharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_16_BE:
        return qv___CharsetUtf16BECharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_16_LE:
        return qv___CharsetUtf16LECharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_32:
        return qv___CharsetUtf32CharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_32_BE:
        return qv___CharsetUtf32BECharSourceCreate( byteSource, flags );
    case QV_CHARSET_UTF_32_LE:
        return qv___CharsetUtf32LECharSourceCreate( byteSource, flags );
    default:
        return qv___CharsetMapCharSourceCreate( byteSource, flags, qv::byteMaps[charset].byteToChar );
    }
}

QV_CHAR_SINK *qvCharsetCreateCharSink( QV_BYTE_SINK *byteSink, QV_CHARSET charset, QV_CHARSET_FLAGS flags )
{
    QV_CHECK( byteSink );
    QV_CHECK( QV_CHARSET_OK( charset ) );
    flags = qvCharsetFlagsNormalize( flags );
    switch ( charset )
    {
    case QV_CHARSET_UTF_8:
        return qv___CharsetUtf8CharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_16:
        return qv___CharsetUtf16CharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_16_BE:
        return qv___CharsetUtf16BECharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_16_LE:
        return qv___CharsetUtf16LECharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_32:
        return qv___CharsetUtf32CharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_32_BE:
        return qv___CharsetUtf32BECharSinkCreate( byteSink, flags );
    case QV_CHARSET_UTF_32_LE:
        return qv___CharsetUtf32LECharSinkCreate( byteSink, flags );
    default:
        return qv___CharsetMapCharSinkCreate( byteSink, flags, qv::byteMaps[charset].charToByte );
    }
}

QV_STRING *qvCharsetTryConvertBufferToStringWithFlags( QV_CHARSET charset, QV_BUFFER *buffer,
                                                       QV_CHARSET_FLAGS flags )
{
    QV_CHECK( QV_CHARSET_OK( charset ) );
    QV_CHECK( buffer );
    flags = qvCharsetFlagsNormalize( flags );
    const unsigned char *bytes = qv::bufferContent( buffer );
    const QV_INT byteCount = qv::bufferLength( buffer );
    if ( charset < QV_CHARSET_UTF_8 )
        return decodeText( MapDecoder{ qv::byteMaps[charset], qv::onInvalid( flags ) }, bytes, byteCount );
    if ( charset == QV_CHARSET_UTF_8 )
        return decodeText( qv::Utf8Decoder( flags, qv::Utf8Decoder::START, false ), bytes, byteCount );
    if ( isUtf16( charset ) )
        return decodeText(
            qv::UnitDecoder<uint16_t>( flags, isLittleEndian( charset ), hasFixedOrder( charset ) ), bytes,
            byteCount );
    return decodeText(
        qv::UnitDecoder<uint32_t>( flags, isLittleEndian( charset ), hasFixedOrder( charset ) ), bytes,
        byteCount );
}

QV_BUFFER *qvCharsetTryConvertStringToBufferWithFlags( QV_CHARSET charset, QV_STRING *string,
                                                       QV_CHARSET_FLAGS flags )
{
    QV_CHECK( QV_CHARSET_OK( charset ) );
    QV_CHECK( string );
    flags = qvCharsetFlagsNormalize( flags );
    const QV_CHAR *chars = qv::stringBacking( string );
    const QV_INT count = qv::stringLength( string );
    if ( charset < QV_CHARSET_UTF_8 )
        return mappedOf( qv::byteMaps[charset], flags, chars, count );
    return formOf( charset, flags, chars, count );
}

QV_STRING *qvCharsetConvertBufferToString( QV_CHARSET charset, QV_BUFFER *buffer )
{
    QV_STRING *string = qvCharsetTryConvertBufferToStringWithFlags( charset, buffer, 0 );
    QV_CHECK( string );
    return string;
}

QV_BUFFER *qvCharsetConvertStringToBuffer( QV_CHARSET charset, QV_STRING *string )
{
    QV_BUFFER *buffer = qvCharsetTryConvertStringToBufferWithFlags( charset, string, 0 );
    QV_CHECK( buffer );
    return buffer;
}
