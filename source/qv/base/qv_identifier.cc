#include <qv/base/qv_identifier.hh>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_format.hh>
#include <qv/base/qv_random.h>
#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>

namespace
{

constexpr QV_INT byteCount = 16;
constexpr QV_INT textLength = 2 * byteCount;

void qv___IdentifierFreeFunc( qvObj thisObj )
{
    QV_IDENTIFIER *ident = qvIdentifierFrom( thisObj );
    QV_CHECK( ident );
    qv::release( qv::objOf( ident->string ) );
}

QV_INT qv___IdentifierCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_IDENTIFIER *thisIdent = qvIdentifierFrom( thisObj );
    QV_IDENTIFIER *thatIdent = qvIdentifierFrom( thatObj );
    QV_CHECK( thisIdent );
    QV_CHECK( thatIdent );
    return qv::stringCompare( thisIdent->string, thatIdent->string );
}

QV_STRING *qv___IdentifierToStringFunc( qvObj thisObj )
{
    QV_IDENTIFIER *ident = qvIdentifierFrom( thisObj );
    QV_CHECK( ident );
    return qv::retained( ident->string );
}

bool isIdentifierDigit( QV_CHAR ch )
{
    return ( ch >= '0' && ch <= '9' ) || ( ch >= 'A' && ch <= 'F' );
}

bool isIdentifierText( const QV_CHAR *chars, QV_INT length )
{
    if ( length != textLength )
        return false;
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        if ( !isIdentifierDigit( chars[idx] ) )
            return false;
    }
    return true;
}

// Takes the reference to the text over.
QV_IDENTIFIER *createWith( QV_STRING *given )
{
    auto *ident = qv::create<QV_IDENTIFIER>( qvIdentifierSort() );
    ident->string = given;
    return ident;
}

} // namespace

QV_SORT_DEFINE( QV_IDENTIFIER, qvIdentifier,
                { .freeFunc = qv___IdentifierFreeFunc,
                  .compareFunc = qv___IdentifierCompareFunc,
                  .toStringFunc = qv___IdentifierToStringFunc } )

QV_IDENTIFIER *qvIdentifierCreate( void )
{
    unsigned char bytes[byteCount];
    qvRandomBytes( bytes, byteCount );
    QV_CHAR text[textLength];
    for ( QV_INT idx = 0; idx < byteCount; idx++ )
    {
        text[2 * idx] = qv___FormatDigitsUpper[bytes[idx] >> 4];
        text[2 * idx + 1] = qv___FormatDigitsUpper[bytes[idx] & 15];
    }
    return createWith( qvStringCreateFromCharsCopy( text, textLength ) );
}

QV_IDENTIFIER *qvIdentifierTryCreateFromString( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    if ( !isIdentifierText( qv::stringBacking( qvs ), qv::stringLength( qvs ) ) )
        return nullptr;
    return createWith( qv::retained( qvs ) );
}

QV_IDENTIFIER *qvIdentifierTryCreateFromBuffer( QV_BUFFER *buffer )
{
    QV_CHECK( buffer );
    // Every character of an identifier is one ASCII byte, so the bytes are the characters. As in every
    // reading of a buffer as text, bits behind the last whole byte don't count.
    if ( qvBufferLength( buffer ) != textLength )
        return nullptr;
    unsigned char bytes[textLength];
    qvBufferReadBytes( buffer, 0, bytes, textLength );
    QV_CHAR text[textLength];
    for ( QV_INT idx = 0; idx < textLength; idx++ )
    {
        text[idx] = bytes[idx];
    }
    if ( !isIdentifierText( text, textLength ) )
        return nullptr;
    return createWith( qvStringCreateFromCharsCopy( text, textLength ) );
}

QV_STRING *qvIdentifierString( QV_IDENTIFIER *ident )
{
    QV_CHECK( ident );
    return qv::retained( ident->string );
}

QV_BUFFER *qvIdentifierBuffer( QV_IDENTIFIER *ident )
{
    QV_CHECK( ident );
    const QV_CHAR *text = qv::stringBacking( ident->string );
    unsigned char bytes[textLength];
    for ( QV_INT idx = 0; idx < textLength; idx++ )
    {
        bytes[idx] = static_cast<unsigned char>( text[idx] );
    }
    return qvBufferCreateFromBytesCopy( bytes, textLength );
}
