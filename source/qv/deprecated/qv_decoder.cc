#include <qv/deprecated/qv_decoder.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_identifier.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/deprecated/qv_store_legacy_binary.h>
#include <qv/runtime/qv_local.hh>

QV_SORT_DEFINE( QV_DECODER, qvDecoder, { .freeFunc = qv___DecoderFreeFunc } )

namespace
{

constexpr unsigned char negativeBit = 0x80;
constexpr unsigned char countBits = 0x7F;

QV_BOOL fail( QV_DECODER *dec )
{
    dec->error = QV_TRUE;
    return QV_FALSE;
}

QV_INT remaining( const QV_DECODER *dec )
{
    return dec->error ? 0 : qv::bufferLength( dec->buffer ) - dec->offset;
}

// Passes length bytes and returns the first one's address; null on a failure. The address of no bytes is never null.
const unsigned char *take( QV_DECODER *dec, QV_INT length )
{
    static constexpr unsigned char nothing = 0;
    if ( dec->error || length > remaining( dec ) )
    {
        fail( dec );
        return nullptr;
    }
    const unsigned char *bytes = length > 0 ? qv::bufferContent( dec->buffer ) + dec->offset : &nothing;
    dec->offset += length;
    return bytes;
}

// An absolute value of count bytes; false on a failure or if more than 64 bits are left behind leading zeros.
bool takeMagnitude( QV_DECODER *dec, QV_INT count, uint64_t *magnitude )
{
    const unsigned char *bytes = take( dec, count );
    if ( !bytes )
        return false;
    *magnitude = 0;
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        if ( *magnitude >> 56 != 0 )
            return fail( dec );
        *magnitude = *magnitude << 8 | bytes[idx];
    }
    return true;
}

// The value of a head and count bytes behind all heads.
bool takeValue( QV_DECODER *dec, unsigned char head, QV_INT count, QV_INT *value )
{
    uint64_t magnitude;
    if ( !takeMagnitude( dec, count, &magnitude ) )
        return false;
    bool isNegative = ( head & negativeBit ) != 0;
    if ( magnitude > static_cast<uint64_t>( QV_INT_MAX ) + ( isNegative ? 1 : 0 ) )
        return fail( dec );
    *value = static_cast<QV_INT>( isNegative ? 0 - magnitude : magnitude );
    return true;
}

// A head whose count has no room in it is followed by the count as an integer of its own, with a head that may go on in
// the same way: heads upon heads, of which the innermost has its value first.
bool takeInt( QV_DECODER *dec, QV_INT *value )
{
    const unsigned char *heads = take( dec, 1 );
    if ( !heads )
        return false;
    QV_INT last = 0;
    while ( ( heads[last] & countBits ) == countBits )
    {
        if ( !take( dec, 1 ) )
            return false;
        last++;
    }
    if ( !takeValue( dec, heads[last], heads[last] & countBits, value ) )
        return false;
    for ( QV_INT head = last - 1; head >= 0; head-- )
    {
        if ( *value < 0 )
            return fail( dec );
        if ( !takeValue( dec, heads[head], *value, value ) )
            return false;
    }
    return true;
}

// The number of bytes of a run of ASCII at the start, at most length.
QV_INT asciiRun( const unsigned char *bytes, QV_INT length )
{
    QV_INT run = 0;
    for ( ; length - run >= 8; run += 8 )
    {
        uint64_t word;
        std::memcpy( &word, bytes + run, 8 );
        if ( ( word & 0x8080808080808080u ) != 0 )
            break;
    }
    while ( run < length && bytes[run] < 0x80 )
    {
        run++;
    }
    return run;
}

// One character; false on a failure.
bool takeChar( QV_DECODER *dec, QV_CHAR *ch )
{
    const unsigned char *bytes = take( dec, 1 );
    if ( !bytes )
        return false;
    if ( bytes[0] < 0x80 )
    {
        *ch = bytes[0];
        return true;
    }
    if ( ( bytes[0] & 0x60 ) != 0 || !take( dec, 2 ) )
        return fail( dec );
    *ch = ( bytes[0] & 0x1Fu ) << 16 | static_cast<QV_CHAR>( bytes[1] << 8 ) | bytes[2];
    return QV_CHAR_OK( *ch ) || fail( dec );
}

// Characters into an array, runs of ASCII at once.
bool takeChars( QV_DECODER *dec, QV_CHAR *chs, QV_INT length )
{
    QV_INT done = 0;
    while ( done < length )
    {
        QV_INT left = length - done;
        QV_INT there = remaining( dec );
        // The buffer's content has no address when it is empty.
        QV_INT run = there == 0 ? 0
                                : asciiRun( qv::bufferContent( dec->buffer ) + dec->offset,
                                            left < there ? left : there );
        const unsigned char *ascii = take( dec, run );
        if ( !ascii )
            return false;
        for ( QV_INT idx = 0; idx < run; idx++ )
        {
            chs[done + idx] = ascii[idx];
        }
        done += run;
        if ( done == length )
            break;
        if ( !takeChar( dec, &chs[done] ) )
            return false;
        done++;
    }
    return true;
}

// Passes characters.
bool skipChars( QV_DECODER *dec, QV_INT length )
{
    QV_CHAR ch;
    while ( length > 0 && takeChar( dec, &ch ) )
    {
        length--;
    }
    return length == 0;
}

// The length of something that takes at least a byte an element, tested before memory is taken for it.
bool takeLength( QV_DECODER *dec, QV_INT *length )
{
    if ( !takeInt( dec, length ) )
        return false;
    return ( *length >= 0 && *length <= remaining( dec ) ) || fail( dec );
}

// The five below return null on a failure.

QV_STRING *decodeString( QV_DECODER *dec )
{
    QV_INT length;
    if ( !takeLength( dec, &length ) )
        return nullptr;
    qv::Local<QV_STRING> text( qv::stringCreateUnfilled( length ) );
    return takeChars( dec, qv::stringBacking( text ), length ) ? text.give() : nullptr;
}

QV_BUFFER *decodeBuffer( QV_DECODER *dec )
{
    QV_INT length;
    if ( !takeLength( dec, &length ) )
        return nullptr;
    return qvBufferCreateFromBytesCopy( take( dec, length ), length );
}

QV_STORE *decodeStore( QV_DECODER *dec )
{
    return qvStoreLegacyBinaryTryDecodeFromDecoder( dec );
}

QV_VECTOR *decodeStringVector( QV_DECODER *dec )
{
    QV_INT length;
    if ( !takeInt( dec, &length ) )
        return nullptr;
    if ( length < 0 )
    {
        fail( dec );
        return nullptr;
    }
    qv::Local<QV_VECTOR> vec( qvVectorCreate() );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        QV_STRING *text = decodeString( dec );
        if ( !text )
            return nullptr;
        qv::vectorAppendGiven( vec.edit(), qvStringObj( text ) );
    }
    return vec.give();
}

QV_IDENTIFIER *decodeIdentifier( QV_DECODER *dec )
{
    qv::Local<QV_BUFFER> text( decodeBuffer( dec ) );
    if ( !text )
        return nullptr;
    QV_IDENTIFIER *ident = qvIdentifierTryCreateFromBuffer( text );
    if ( !ident )
        fail( dec );
    return ident;
}

// Hands a result over to where the caller wants it, if anywhere.
template <typename T> void deliver( T **out, T *given )
{
    if ( out )
        qv::replaceWith( out, given );
    else
        qv::releaseOptional( given );
}

template <typename T> QV_BOOL decodeTo( QV_DECODER *dec, T **out, T *( *decode )(QV_DECODER *))
{
    QV_CHECK( dec );
    T *result = decode( dec );
    if ( !result )
        return QV_FALSE;
    deliver( out, result );
    return QV_TRUE;
}

template <typename T> QV_BOOL decodeOptionalTo( QV_DECODER *dec, T **out, T *( *decode )(QV_DECODER *))
{
    QV_BOOL isPresent;
    if ( !qvDecoderTryDecodeBool( dec, &isPresent ) )
        return QV_FALSE;
    if ( isPresent )
        return decodeTo( dec, out, decode );
    deliver<T>( out, nullptr );
    return QV_TRUE;
}

} // namespace

void qv___DecoderFreeFunc( qvObj thisObj )
{
    QV_DECODER *dec = qvDecoderFrom( thisObj );
    QV_CHECK( dec );
    qvBufferRelease( dec->buffer );
}

QV_DECODER *qvDecoderCreate( QV_BUFFER *buffer )
{
    QV_CHECK( buffer );
    auto *dec = qv::create<QV_DECODER>( qvDecoderSort() );
    dec->buffer = qv::retained( buffer );
    dec->offset = 0;
    dec->error = QV_FALSE;
    return dec;
}

QV_BUFFER *qvDecoderBuffer( QV_DECODER *dec )
{
    QV_CHECK( dec );
    return qv::retained( dec->buffer );
}

QV_INT qvDecoderLength( QV_DECODER *dec )
{
    QV_CHECK( dec );
    return qv::bufferLength( dec->buffer );
}

QV_INT qvDecoderOffset( QV_DECODER *dec )
{
    QV_CHECK( dec );
    return dec->error ? qv::bufferLength( dec->buffer ) : dec->offset;
}

QV_INT qvDecoderRemaining( QV_DECODER *dec )
{
    QV_CHECK( dec );
    return remaining( dec );
}

QV_BOOL qvDecoderError( QV_DECODER *dec )
{
    QV_CHECK( dec );
    return dec->error;
}

void qvDecoderSetError( QV_DECODER *dec )
{
    QV_CHECK( dec );
    fail( dec );
}

QV_BOOL qvDecoderTrySkip( QV_DECODER *dec, QV_INT length )
{
    QV_CHECK( dec );
    QV_CHECK( length >= 0 );
    return QV_BOOL_FROM( take( dec, length ) );
}

QV_BOOL qvDecoderTryRead( QV_DECODER *dec, QV_BUFFER **buffer, QV_INT length )
{
    QV_CHECK( dec );
    QV_CHECK( length >= 0 );
    const unsigned char *bytes = take( dec, length );
    if ( !bytes )
        return QV_FALSE;
    if ( buffer )
        qv::replaceWith( buffer, qvBufferCreateFromBytesCopy( bytes, length ) );
    return QV_TRUE;
}

QV_BOOL qvDecoderTryReadBytes( QV_DECODER *dec, unsigned char *bytes, QV_INT length )
{
    QV_CHECK( dec );
    QV_CHECK( length >= 0 );
    const unsigned char *taken = take( dec, length );
    if ( !taken )
        return QV_FALSE;
    if ( bytes )
        std::memcpy( bytes, taken, static_cast<size_t>( length ) );
    return QV_TRUE;
}

QV_BOOL qvDecoderTryReadByte( QV_DECODER *dec, unsigned char *value )
{
    return qvDecoderTryReadBytes( dec, value, 1 );
}

QV_BOOL qvDecoderTryDecodeBool( QV_DECODER *dec, QV_BOOL *value )
{
    unsigned char byte;
    if ( !qvDecoderTryReadByte( dec, &byte ) )
        return QV_FALSE;
    if ( byte > 1 )
        return fail( dec );
    if ( value )
        *value = byte;
    return QV_TRUE;
}

QV_BOOL qvDecoderTryDecodeInt( QV_DECODER *dec, QV_INT *value )
{
    QV_CHECK( dec );
    QV_INT decoded;
    if ( !takeInt( dec, &decoded ) )
        return QV_FALSE;
    if ( value )
        *value = decoded;
    return QV_TRUE;
}

QV_BOOL qvDecoderTryDecodeChar( QV_DECODER *dec, QV_CHAR *ch )
{
    QV_CHECK( dec );
    QV_CHAR decoded;
    if ( !takeChar( dec, &decoded ) )
        return QV_FALSE;
    if ( ch )
        *ch = decoded;
    return QV_TRUE;
}

QV_BOOL qvDecoderTryDecodeChars( QV_DECODER *dec, QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( dec );
    QV_CHECK( chsLength >= 0 );
    if ( dec->error )
        return QV_FALSE;
    return QV_BOOL_FROM( chs ? takeChars( dec, chs, chsLength ) : skipChars( dec, chsLength ) );
}

QV_BOOL qvDecoderTryDecodeString( QV_DECODER *dec, QV_STRING **qvs )
{
    return decodeTo( dec, qvs, decodeString );
}

QV_BOOL qvDecoderTryDecodeBuffer( QV_DECODER *dec, QV_BUFFER **buffer )
{
    return decodeTo( dec, buffer, decodeBuffer );
}

QV_BOOL qvDecoderTryDecodeStore( QV_DECODER *dec, QV_STORE **store )
{
    return decodeTo( dec, store, decodeStore );
}

QV_BOOL qvDecoderTryDecodeStringVector( QV_DECODER *dec, QV_VECTOR **vec )
{
    return decodeTo( dec, vec, decodeStringVector );
}

QV_BOOL qvDecoderTryDecodeIdentifier( QV_DECODER *dec, QV_IDENTIFIER **ident )
{
    return decodeTo( dec, ident, decodeIdentifier );
}

QV_BOOL qvDecoderTryDecodeOptionalString( QV_DECODER *dec, QV_STRING **qvs )
{
    return decodeOptionalTo( dec, qvs, decodeString );
}

QV_BOOL qvDecoderTryDecodeOptionalBuffer( QV_DECODER *dec, QV_BUFFER **buffer )
{
    return decodeOptionalTo( dec, buffer, decodeBuffer );
}

QV_BOOL qvDecoderTryDecodeOptionalStore( QV_DECODER *dec, QV_STORE **store )
{
    return decodeOptionalTo( dec, store, decodeStore );
}

QV_BOOL qvDecoderTryDecodeOptionalStringVector( QV_DECODER *dec, QV_VECTOR **vec )
{
    return decodeOptionalTo( dec, vec, decodeStringVector );
}

QV_BOOL qvDecoderTryDecodeOptionalIdentifier( QV_DECODER *dec, QV_IDENTIFIER **ident )
{
    return decodeOptionalTo( dec, ident, decodeIdentifier );
}
