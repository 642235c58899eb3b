#include <qv/io/qv_nlf_flags.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_string.h>
#include <qv/sys/qv_block.hh>

#include <algorithm>

constinit QV_FLAGSET *qv___NlfFlagsFlagset = nullptr;

namespace
{

constexpr qv::EnumName flagNames[] = {
    { QV_NLF_FLAG_LF, "QV_NLF_FLAG_LF" },     { QV_NLF_FLAG_CR, "QV_NLF_FLAG_CR" },
    { QV_NLF_FLAG_CRLF, "QV_NLF_FLAG_CRLF" }, { QV_NLF_FLAG_NEL, "QV_NLF_FLAG_NEL" },
    { QV_NLF_FLAG_VT, "QV_NLF_FLAG_VT" },     { QV_NLF_FLAG_FF, "QV_NLF_FLAG_FF" },
    { QV_NLF_FLAG_LS, "QV_NLF_FLAG_LS" },     { QV_NLF_FLAG_PS, "QV_NLF_FLAG_PS" },
};

constexpr QV_NLF_FLAGS allFlags = 255;

// A new-line found in a range; length 0 is none.
struct Match
{
    QV_NLF_FLAGS flag;
    QV_INT length;
};

constexpr Match noMatch = { 0, 0 };

Match matchIf( QV_NLF_FLAGS flags, QV_NLF_FLAGS flag, QV_INT length )
{
    return flags & flag ? Match{ flag, length } : noMatch;
}

// The new-lines of the ASCII range, which are the same units in code points and in UTF-8.
template <typename UNIT> Match matchAscii( const UNIT *units, QV_INT length, QV_NLF_FLAGS flags )
{
    switch ( units[0] )
    {
    case 0x0A:
        return matchIf( flags, QV_NLF_FLAG_LF, 1 );
    case 0x0B:
        return matchIf( flags, QV_NLF_FLAG_VT, 1 );
    case 0x0C:
        return matchIf( flags, QV_NLF_FLAG_FF, 1 );
    case 0x0D:
        if ( ( flags & QV_NLF_FLAG_CRLF ) && length > 1 && units[1] == 0x0A )
            return { QV_NLF_FLAG_CRLF, 2 };
        return matchIf( flags, QV_NLF_FLAG_CR, 1 );
    default:
        return noMatch;
    }
}

Match match( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags )
{
    switch ( chs[0] )
    {
    case 0x85:
        return matchIf( flags, QV_NLF_FLAG_NEL, 1 );
    case 0x2028:
        return matchIf( flags, QV_NLF_FLAG_LS, 1 );
    case 0x2029:
        return matchIf( flags, QV_NLF_FLAG_PS, 1 );
    default:
        return matchAscii( chs, length, flags );
    }
}

Match match( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags )
{
    if ( bytes[0] == 0xC2 )
        return length > 1 && bytes[1] == 0x85 ? matchIf( flags, QV_NLF_FLAG_NEL, 2 ) : noMatch;
    if ( bytes[0] != 0xE2 )
        return matchAscii( bytes, length, flags );
    if ( length < 3 || bytes[1] != 0x80 )
        return noMatch;
    if ( bytes[2] == 0xA8 )
        return matchIf( flags, QV_NLF_FLAG_LS, 3 );
    return bytes[2] == 0xA9 ? matchIf( flags, QV_NLF_FLAG_PS, 3 ) : noMatch;
}

// Whether a new-line of any form can start with a character or byte; likewise for blocks of them.
template <typename CHARS> auto mayStart( CHARS ch )
{
    return ( ch - 0x0A <= 3 ) | ( ch == 0x85 ) | ( ( ch & ~1u ) == 0x2028 );
}

template <typename BYTES> auto mayStartUtf8( BYTES byte )
{
    return ( byte - 0x0A <= 3 ) | ( byte == 0xC2 ) | ( byte == 0xE2 );
}

// Steps over what holds no new-line, up to a unit that may start one or to less than sixteen units before the
// end. For the usual flags it looks for their units alone.
QV_INT skipPlain( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags )
{
    if ( flags == QV_NLF_FLAG_LF )
        return qv::skipToMarked( chs, length, []( auto block ) { return block == 0x0A; } );
    if ( !( flags & ~( QV_NLF_FLAG_LF | QV_NLF_FLAG_CR | QV_NLF_FLAG_CRLF ) ) )
        return qv::skipToMarked( chs, length,
                                 []( auto block ) { return ( block == 0x0A ) | ( block == 0x0D ); } );
    return qv::skipToMarked( chs, length, []( auto block ) { return mayStart( block ); } );
}

QV_INT skipPlain( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags )
{
    if ( flags == QV_NLF_FLAG_LF )
        return qv::skipUnmarked( bytes, length, []( auto block ) { return block == 0x0A; } );
    return qv::skipUnmarked( bytes, length, []( auto block ) { return mayStartUtf8( block ); } );
}

bool mayStartNlf( QV_CHAR ch )
{
    return mayStart( ch );
}

bool mayStartNlf( unsigned char byte )
{
    return mayStartUtf8( unsigned{ byte } );
}

template <typename UNIT>
QV_INT skipNlf( const UNIT *units, QV_INT length, QV_NLF_FLAGS flags, QV_NLF_FLAGS *matchedFlag )
{
    QV_CHECK( length >= 0 );
    QV_CHECK( units || length == 0 );
    Match found = length > 0 ? match( units, length, flags ) : noMatch;
    if ( matchedFlag )
        *matchedFlag = found.flag;
    return found.length;
}

template <typename UNIT> QV_INT skipNonNlf( const UNIT *units, QV_INT length, QV_NLF_FLAGS flags )
{
    QV_CHECK( length >= 0 );
    QV_CHECK( units || length == 0 );
    QV_INT idx = 0;
    while ( idx < length )
    {
        idx += skipPlain( units + idx, length - idx, flags );
        // The unit that stopped it is among these.
        for ( QV_INT stop = std::min<QV_INT>( idx + 16, length ); idx < stop; idx++ )
        {
            if ( mayStartNlf( units[idx] ) && match( units + idx, length - idx, flags ).length > 0 )
                return idx;
        }
    }
    return length;
}

} // namespace

void qv___NlfFlagsStartup()
{
    qv___NlfFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___NlfFlagsShutdown()
{
    qv::retire( &qv___NlfFlagsFlagset );
}

QV_NLF_FLAGS qvNlfFlagsNormalize( QV_NLF_FLAGS flags )
{
    return flags & allFlags;
}

QV_NLF_FLAGS qvNlfFlagsFromString( QV_STRING *text )
{
    return qvNlfFlagsNormalize( qvFlagsetParse( qv___NlfFlagsFlagset, text ) );
}

QV_STRING *qvNlfFlagsToString( QV_NLF_FLAGS flags )
{
    return qvFlagsetGenerate( qv___NlfFlagsFlagset, qvNlfFlagsNormalize( flags ) );
}

qv::NlfChars qv::nlfCharsOf( QV_NLF_FLAGS flags )
{
    switch ( flags & -flags & allFlags )
    {
    case QV_NLF_FLAG_LF:
        return { { 0x0A }, 1 };
    case QV_NLF_FLAG_CR:
        return { { 0x0D }, 1 };
    case QV_NLF_FLAG_CRLF:
        return { { 0x0D, 0x0A }, 2 };
    case QV_NLF_FLAG_NEL:
        return { { 0x85 }, 1 };
    case QV_NLF_FLAG_VT:
        return { { 0x0B }, 1 };
    case QV_NLF_FLAG_FF:
        return { { 0x0C }, 1 };
    case QV_NLF_FLAG_LS:
        return { { 0x2028 }, 1 };
    case QV_NLF_FLAG_PS:
        return { { 0x2029 }, 1 };
    default:
        return { { 0 }, 0 };
    }
}

QV_STRING *qvNlfFlagsNlfString( QV_NLF_FLAGS flags )
{
    qv::NlfChars nlf = qv::nlfCharsOf( flags );
    return qvStringCreateFromCharsCopy( nlf.chars, nlf.length );
}

QV_INT qv___NlfFlagsSkipCharsNlf( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags,
                                  QV_NLF_FLAGS *matchedFlag )
{
    return skipNlf( chs, length, flags, matchedFlag );
}

QV_INT qv___NlfFlagsSkipCharsNonNlf( const QV_CHAR *chs, QV_INT length, QV_NLF_FLAGS flags )
{
    return skipNonNlf( chs, length, flags );
}

QV_INT qv___NlfFlagsSkipUtf8BytesNlf( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags,
                                      QV_NLF_FLAGS *matchedFlag )
{
    return skipNlf( bytes, length, flags, matchedFlag );
}

QV_INT qv___NlfFlagsSkipUtf8BytesNonNlf( const unsigned char *bytes, QV_INT length, QV_NLF_FLAGS flags )
{
    return skipNonNlf( bytes, length, flags );
}
