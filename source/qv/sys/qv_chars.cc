#include <qv/sys/qv_chars.h>

#include <string.h>
#include <wchar.h>

#include <qv/sys/qv_block.hh>
#include <qv/sys/qv_check.hh>

namespace
{

constexpr QV_CHAR replacement = 0xFFFD;

QV_INT lengthOf( const char *src, QV_INT srcLength )
{
    QV_CHECK( srcLength >= -1 );
    QV_CHECK( src || srcLength == 0 );
    return srcLength == -1 ? static_cast<QV_INT>( strlen( src ) ) : srcLength;
}

void checkSpans( const void *dest, QV_INT destLength, const void *src, QV_INT srcLength )
{
    QV_CHECK( destLength >= 0 );
    QV_CHECK( dest || destLength == 0 );
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
}

// Collects characters as long as there is room, and counts all of them.
template <typename T> class Writer
{
  public:
    Writer( T *dest, QV_INT destLength ) : dest_( dest ), room_( destLength ) {}

    void put( T item )
    {
        if ( count_ < room_ )
            dest_[count_] = item;
        count_++;
    }

    QV_INT count() const
    {
        return count_;
    }

    // Where the next items go if this many fit, otherwise null.
    T *reserve( QV_INT items ) const
    {
        return room_ - count_ >= items ? dest_ + count_ : nullptr;
    }

    void advance( QV_INT items )
    {
        count_ += items;
    }

  private:
    T *dest_;
    QV_INT room_;
    QV_INT count_ = 0;
};

template <typename T>
QV_INT terminated( T *dest, QV_INT destLength, QV_INT compLen, QV_BOOL addNullTerminator )
{
    if ( !addNullTerminator )
        return compLen;
    QV_CHECK( QV_INT_ADD_OK( compLen, 1 ) );
    if ( compLen < destLength )
        dest[compLen] = 0;
    return compLen + 1;
}

bool isHighSurrogate( QV_CHAR ch )
{
    return ch >= 0xD800 && ch <= 0xDBFF;
}

bool isLowSurrogate( QV_CHAR ch )
{
    return ch >= 0xDC00 && ch <= 0xDFFF;
}

bool isContinuation( unsigned char byte )
{
    return ( byte & 0xC0 ) == 0x80;
}

// Number of continuation bytes that a lead byte asks for, 0 if it is none.
int continuationsAfter( unsigned char lead )
{
    return lead >= 0xF8 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
}

int encodeUtf8( QV_CHAR ch, char *bytes )
{
    if ( ch < 0x80 )
    {
        bytes[0] = static_cast<char>( ch );
        return 1;
    }
    if ( ch < 0x800 )
    {
        bytes[0] = static_cast<char>( 0xC0 | ch >> 6 );
        bytes[1] = static_cast<char>( 0x80 | ( ch & 0x3F ) );
        return 2;
    }
    if ( !QV_CHAR_OK( ch ) )
    {
        ch = replacement;
    }
    if ( ch < 0x10000 )
    {
        bytes[0] = static_cast<char>( 0xE0 | ch >> 12 );
        bytes[1] = static_cast<char>( 0x80 | ( ch >> 6 & 0x3F ) );
        bytes[2] = static_cast<char>( 0x80 | ( ch & 0x3F ) );
        return 3;
    }
    bytes[0] = static_cast<char>( 0xF0 | ch >> 18 );
    bytes[1] = static_cast<char>( 0x80 | ( ch >> 12 & 0x3F ) );
    bytes[2] = static_cast<char>( 0x80 | ( ch >> 6 & 0x3F ) );
    bytes[3] = static_cast<char>( 0x80 | ( ch & 0x3F ) );
    return 4;
}

// Decodes eight bytes of ASCII at a time as long as there are any and room for them. Returns the bytes taken.
QV_INT decodeAsciiRun( Writer<QV_CHAR> *out, const unsigned char *src, QV_INT srcLength )
{
    QV_INT taken = 0;
    while ( srcLength - taken >= 8 )
    {
        uint64_t word;
        memcpy( &word, src + taken, sizeof( word ) );
        QV_CHAR *dest = out->reserve( 8 );
        if ( ( word & 0x8080808080808080u ) != 0 || !dest )
            break;
        for ( int idx = 0; idx < 8; idx++ )
        {
            dest[idx] = src[taken + idx];
        }
        out->advance( 8 );
        taken += 8;
    }
    return taken;
}

// Decodes one sequence that begins with a byte above 127. Returns the bytes taken; 0 if the input ends inside it.
QV_INT decodeSequence( Writer<QV_CHAR> *out, const unsigned char *src, QV_INT srcLength )
{
    int continuations = continuationsAfter( src[0] );
    if ( continuations == 0 )
    {
        out->put( replacement );
        QV_INT taken = 1;
        while ( taken < srcLength && isContinuation( src[taken] ) )
        {
            taken++;
        }
        return taken;
    }
    QV_CHAR ch = src[0] & ( 0x3F >> continuations );
    for ( int idx = 1; idx <= continuations; idx++ )
    {
        if ( idx >= srcLength )
            return 0;
        if ( !isContinuation( src[idx] ) )
        {
            out->put( replacement );
            return idx;
        }
        ch = ch << 6 | ( src[idx] & 0x3F );
    }
    if ( QV_CHAR_OK( ch ) )
        out->put( ch );
    return continuations + 1;
}

} // namespace

QV_BOOL qvCharsAllOk( const QV_CHAR *src, QV_INT srcLength )
{
    checkSpans( nullptr, 0, src, srcLength );
    QV_INT idx = qv::skipUnmarked( src, srcLength, []( auto chs ) { return chs > QV_CHAR_MAX; } );
    while ( idx < srcLength && QV_CHAR_OK( src[idx] ) )
    {
        idx++;
    }
    return idx == srcLength;
}

QV_INT qvCharsSanitize( QV_CHAR *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength )
{
    checkSpans( dest, destLength, src, srcLength );
    Writer<QV_CHAR> out( dest, destLength );
    QV_CHAR pending = 0;
    for ( QV_INT idx = 0; idx < srcLength; idx++ )
    {
        QV_CHAR ch = src[idx];
        if ( isHighSurrogate( ch ) )
        {
            pending = ch;
            continue;
        }
        if ( isLowSurrogate( ch ) )
        {
            if ( pending )
                out.put( ( pending << 10 ) + ch - 0x35FDC00 );
        }
        else if ( QV_CHAR_OK( ch ) )
        {
            out.put( ch );
        }
        pending = 0;
    }
    return out.count();
}

QV_INT qvCharsConvertToAscii( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                              QV_BOOL addNullTerminator )
{
    checkSpans( dest, destLength, src, srcLength );
    QV_CHECK( srcLength < QV_INT_MAX );
    QV_INT fitting = srcLength < destLength ? srcLength : destLength;
    for ( QV_INT idx = 0; idx < fitting; idx++ )
    {
        dest[idx] = src[idx] > 127 ? '?' : static_cast<char>( src[idx] );
    }
    return terminated( dest, destLength, srcLength, addNullTerminator );
}

QV_INT qvCharsConvertFromAscii( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength )
{
    QV_INT length = lengthOf( src, srcLength );
    checkSpans( dest, destLength, src, length );
    QV_INT fitting = length < destLength ? length : destLength;
    for ( QV_INT idx = 0; idx < fitting; idx++ )
    {
        unsigned char byte = static_cast<unsigned char>( src[idx] );
        dest[idx] = byte > 127 ? replacement : byte;
    }
    return length;
}

QV_INT qvCharsConvertToUtf8( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                             QV_BOOL addNullTerminator )
{
    checkSpans( dest, destLength, src, srcLength );
    QV_INT compLen = 0;
    for ( QV_INT idx = 0; idx < srcLength; idx++ )
    {
        if ( src[idx] < 0x80 && compLen < destLength )
        {
            dest[compLen++] = static_cast<char>( src[idx] );
            continue;
        }
        char bytes[4];
        QV_INT addLen = encodeUtf8( src[idx], bytes );
        for ( QV_INT byte = 0; byte < addLen && byte < destLength - compLen; byte++ )
        {
            dest[compLen + byte] = bytes[byte];
        }
        QV_CHECK( QV_INT_ADD_OK( compLen, addLen ) );
        compLen += addLen;
    }
    return terminated( dest, destLength, compLen, addNullTerminator );
}

QV_INT qvCharsConvertFromUtf8( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength )
{
    QV_INT length = lengthOf( src, srcLength );
    checkSpans( dest, destLength, src, length );
    const unsigned char *bytes = reinterpret_cast<const unsigned char *>( src );
    Writer<QV_CHAR> out( dest, destLength );
    QV_INT pos = 0;
    while ( pos < length )
    {
        if ( bytes[pos] < 0x80 )
        {
            pos += decodeAsciiRun( &out, bytes + pos, length - pos );
            while ( pos < length && bytes[pos] < 0x80 )
            {
                out.put( bytes[pos] );
                pos++;
            }
            continue;
        }
        QV_INT taken = decodeSequence( &out, bytes + pos, length - pos );
        if ( taken == 0 )
            break;
        pos += taken;
    }
    return out.count();
}

QV_INT qvCharsConvertToCstr( char *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                             QV_BOOL addNullTerminator )
{
    return qvCharsConvertToUtf8( dest, destLength, src, srcLength, addNullTerminator );
}

QV_INT qvCharsConvertFromCstr( QV_CHAR *dest, QV_INT destLength, const char *src, QV_INT srcLength )
{
    return qvCharsConvertFromUtf8( dest, destLength, src, srcLength );
}

QV_INT qvCharsConvertToWcstr( wchar_t *dest, QV_INT destLength, const QV_CHAR *src, QV_INT srcLength,
                              QV_BOOL addNullTerminator )
{
    checkSpans( dest, destLength, src, srcLength );
    QV_CHECK( srcLength < QV_INT_MAX );
    QV_INT fitting = srcLength < destLength ? srcLength : destLength;
    for ( QV_INT idx = 0; idx < fitting; idx++ )
    {
        bool representable = src[idx] != 0 && QV_CHAR_OK( src[idx] );
        dest[idx] = static_cast<wchar_t>( representable ? src[idx] : replacement );
    }
    return terminated( dest, destLength, srcLength, addNullTerminator );
}

QV_INT qvCharsConvertFromWcstr( QV_CHAR *dest, QV_INT destLength, const wchar_t *src, QV_INT srcLength )
{
    QV_CHECK( srcLength >= -1 );
    QV_CHECK( src || srcLength == 0 );
    QV_INT length = srcLength == -1 ? static_cast<QV_INT>( wcslen( src ) ) : srcLength;
    checkSpans( dest, destLength, src, length );
    QV_INT fitting = length < destLength ? length : destLength;
    for ( QV_INT idx = 0; idx < fitting; idx++ )
    {
        QV_CHAR ch = static_cast<QV_CHAR>( src[idx] );
        dest[idx] = QV_CHAR_OK( ch ) ? ch : replacement;
    }
    return length;
}
