#include <qv/deprecated/qv_encoder.hh>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_identifier.h>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/deprecated/qv_store_legacy_binary.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>

QV_SORT_DEFINE( QV_ENCODER, qvEncoder, { .freeFunc = qv___EncoderFreeFunc } )

namespace
{

constexpr QV_INT maxBytesOfChar = 3;

// Writes a character and returns where the next one goes.
inline unsigned char *putChar( unsigned char *dest, QV_CHAR ch )
{
    if ( ch < 0x80 )
    {
        *dest++ = static_cast<unsigned char>( ch );
        return dest;
    }
    *dest++ = static_cast<unsigned char>( 0x80 | ch >> 16 );
    *dest++ = static_cast<unsigned char>( ch >> 8 );
    *dest++ = static_cast<unsigned char>( ch );
    return dest;
}

// Characters that are known to be code points, a block of them at a time.
void encodeChars( QV_ENCODER *enc, const QV_CHAR *chs, QV_INT chsLength )
{
    constexpr QV_INT blockLength = 256;
    unsigned char block[blockLength * maxBytesOfChar];
    while ( chsLength > 0 )
    {
        QV_INT count = chsLength < blockLength ? chsLength : blockLength;
        QV_CHAR all = 0;
        for ( QV_INT idx = 0; idx < count; idx++ )
        {
            all |= chs[idx];
        }
        unsigned char *end = block;
        if ( all < 0x80 )
        {
            for ( QV_INT idx = 0; idx < count; idx++ )
            {
                block[idx] = static_cast<unsigned char>( chs[idx] );
            }
            end = block + count;
        }
        else
        {
            for ( QV_INT idx = 0; idx < count; idx++ )
            {
                end = putChar( end, chs[idx] );
            }
        }
        qvBufferAppendBytes( &enc->buffer, block, end - block );
        chs += count;
        chsLength -= count;
    }
}

// Writes whether a value follows, and tells it.
bool encodePresence( QV_ENCODER *enc, const void *optional )
{
    qvEncoderEncodeBool( enc, QV_BOOL_FROM( optional ) );
    return optional != nullptr;
}

} // namespace

void qv___EncoderFreeFunc( qvObj thisObj )
{
    QV_ENCODER *enc = qvEncoderFrom( thisObj );
    QV_CHECK( enc );
    qvBufferRelease( enc->buffer );
}

QV_ENCODER *qvEncoderCreate( void )
{
    auto *enc = qv::create<QV_ENCODER>( qvEncoderSort() );
    enc->buffer = qvBufferCreate();
    return enc;
}

QV_BUFFER *qvEncoderBuffer( QV_ENCODER *enc )
{
    QV_CHECK( enc );
    return qv::retained( enc->buffer );
}

QV_INT qvEncoderLength( QV_ENCODER *enc )
{
    QV_CHECK( enc );
    return qv::bufferLength( enc->buffer );
}

void qvEncoderClear( QV_ENCODER *enc )
{
    QV_CHECK( enc );
    qvBufferClear( &enc->buffer );
}

void qvEncoderWrite( QV_ENCODER *enc, QV_BUFFER *buf )
{
    QV_CHECK( enc );
    qvBufferAppend( &enc->buffer, buf );
}

void qvEncoderWriteLeading( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendLeading( &enc->buffer, buf, byteCount );
}

void qvEncoderWriteTrailing( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendTrailing( &enc->buffer, buf, byteCount );
}

void qvEncoderWriteInner( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendInner( &enc->buffer, buf, byteOffset, byteCount );
}

void qvEncoderWriteOuter( QV_ENCODER *enc, QV_BUFFER *buf, QV_INT byteOffset, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendOuter( &enc->buffer, buf, byteOffset, byteCount );
}

void qvEncoderWriteByte( QV_ENCODER *enc, unsigned char value )
{
    QV_CHECK( enc );
    qvBufferAppendByte( &enc->buffer, value );
}

void qvEncoderWriteBytes( QV_ENCODER *enc, const unsigned char *bytes, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendBytes( &enc->buffer, bytes, byteCount );
}

void qvEncoderWriteZero( QV_ENCODER *enc, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendZero( &enc->buffer, byteCount );
}

void qvEncoderWriteOne( QV_ENCODER *enc, QV_INT byteCount )
{
    QV_CHECK( enc );
    qvBufferAppendOne( &enc->buffer, byteCount );
}

void qvEncoderWriteEncoder( QV_ENCODER *enc, QV_ENCODER *src )
{
    QV_CHECK( enc );
    QV_CHECK( src );
    qvBufferAppend( &enc->buffer, src->buffer );
}

void qvEncoderEncodeBool( QV_ENCODER *enc, QV_BOOL value )
{
    qvEncoderWriteByte( enc, value ? 1 : 0 );
}

void qvEncoderEncodeInt( QV_ENCODER *enc, QV_INT value )
{
    QV_CHECK( enc );
    auto magnitude = static_cast<uint64_t>( value );
    if ( value < 0 )
        magnitude = 0 - magnitude;
    QV_INT count = magnitude == 0 ? 0 : 8 - __builtin_clzll( magnitude ) / 8;
    unsigned char bytes[9];
    bytes[0] = static_cast<unsigned char>( ( value < 0 ? 0x80 : 0 ) | count );
    for ( QV_INT idx = count; idx > 0; idx-- )
    {
        bytes[idx] = static_cast<unsigned char>( magnitude );
        magnitude >>= 8;
    }
    qvBufferAppendBytes( &enc->buffer, bytes, count + 1 );
}

void qvEncoderEncodeChar( QV_ENCODER *enc, QV_CHAR ch )
{
    QV_CHECK( enc );
    QV_CHECK( QV_CHAR_OK( ch ) );
    encodeChars( enc, &ch, 1 );
}

void qvEncoderEncodeChars( QV_ENCODER *enc, const QV_CHAR *chs, QV_INT chsLength )
{
    QV_CHECK( enc );
    QV_CHECK( chsLength >= 0 );
    QV_CHECK( chs || chsLength == 0 );
    QV_CHECK( qvCharsAllOk( chs, chsLength ) );
    encodeChars( enc, chs, chsLength );
}

void qvEncoderEncodeString( QV_ENCODER *enc, QV_STRING *qvs )
{
    QV_CHECK( qvs );
    qvEncoderEncodeInt( enc, qv::stringLength( qvs ) );
    encodeChars( enc, qv::stringBacking( qvs ), qv::stringLength( qvs ) );
}

void qvEncoderEncodeBuffer( QV_ENCODER *enc, QV_BUFFER *buf )
{
    QV_CHECK( buf );
    QV_CHECK( qvBufferBitIsAligned( buf ) );
    qvEncoderEncodeInt( enc, qv::bufferLength( buf ) );
    qvBufferAppend( &enc->buffer, buf );
}

void qvEncoderEncodeStore( QV_ENCODER *enc, QV_STORE *store )
{
    qvStoreLegacyBinaryEncodeToEncoder( store, enc );
}

void qvEncoderEncodeStringVector( QV_ENCODER *enc, QV_VECTOR *vec )
{
    QV_CHECK( vec );
    qvEncoderEncodeInt( enc, qv::vectorLength( vec ) );
    for ( QV_INT idx = 0; idx < qv::vectorLength( vec ); idx++ )
    {
        qv::Local<QV_STRING> text( qvObjToString( qv::vectorAt( vec, idx ) ) );
        qvEncoderEncodeString( enc, text );
    }
}

void qvEncoderEncodeIdentifier( QV_ENCODER *enc, QV_IDENTIFIER *ident )
{
    qv::Local<QV_BUFFER> text( qvIdentifierBuffer( ident ) );
    qvEncoderEncodeBuffer( enc, text );
}

void qvEncoderEncodeOptionalString( QV_ENCODER *enc, QV_STRING *qvs )
{
    if ( encodePresence( enc, qvs ) )
        qvEncoderEncodeString( enc, qvs );
}

void qvEncoderEncodeOptionalBuffer( QV_ENCODER *enc, QV_BUFFER *buf )
{
    if ( encodePresence( enc, buf ) )
        qvEncoderEncodeBuffer( enc, buf );
}

void qvEncoderEncodeOptionalStore( QV_ENCODER *enc, QV_STORE *store )
{
    if ( encodePresence( enc, store ) )
        qvEncoderEncodeStore( enc, store );
}

void qvEncoderEncodeOptionalStringVector( QV_ENCODER *enc, QV_VECTOR *vec )
{
    if ( encodePresence( enc, vec ) )
        qvEncoderEncodeStringVector( enc, vec );
}

void qvEncoderEncodeOptionalIdentifier( QV_ENCODER *enc, QV_IDENTIFIER *ident )
{
    if ( encodePresence( enc, ident ) )
        qvEncoderEncodeIdentifier( enc, ident );
}
