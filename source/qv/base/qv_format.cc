// The encoders. Each plans its parts (pad, sign, prefix, digits), opens one gap of their sum at the end of
// the destination and fills it.

#include <qv/base/qv_format.hh>

#include <qv/base/qv_flagset.hh>
#include <qv/base/qv_string.hh>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_chars.h>
#include <qv/sys/qv_check.hh>

#include <bit>
#include <cmath>
#include <cstring>

// clang-format off
const QV_CHAR qv___FormatDigitsLower[36] = {
    '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h',
    'i', 'j', 'k', 'l', 'm', 'n', 'o', 'p', 'q', 'r', 's', 't', 'u', 'v', 'w', 'x', 'y', 'z' };
const QV_CHAR qv___FormatDigitsUpper[36] = {
    '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H',
    'I', 'J', 'K', 'L', 'M', 'N', 'O', 'P', 'Q', 'R', 'S', 'T', 'U', 'V', 'W', 'X', 'Y', 'Z' };
// clang-format on

namespace
{

constinit QV_FLAGSET *qv___FormatFlagsFlagset = nullptr;

constinit QV_STRING *textTrueLower = nullptr;
constinit QV_STRING *textFalseLower = nullptr;
constinit QV_STRING *textTrueUpper = nullptr;
constinit QV_STRING *textFalseUpper = nullptr;

constexpr qv::EnumName flagNames[] = {
    { QV_FORMAT_FLAG_LEFTALIGN, "QV_FORMAT_FLAG_LEFTALIGN" },
    { QV_FORMAT_FLAG_ZEROPAD, "QV_FORMAT_FLAG_ZEROPAD" },
    { QV_FORMAT_FLAG_NOSIGN, "QV_FORMAT_FLAG_NOSIGN" },
    { QV_FORMAT_FLAG_PLUSPOS, "QV_FORMAT_FLAG_PLUSPOS" },
    { QV_FORMAT_FLAG_BLANKPOS, "QV_FORMAT_FLAG_BLANKPOS" },
    { QV_FORMAT_FLAG_UPPERCASE, "QV_FORMAT_FLAG_UPPERCASE" },
    { QV_FORMAT_FLAG_BASEMNEMONIC, "QV_FORMAT_FLAG_BASEMNEMONIC" },
    { QV_FORMAT_FLAG_BASENUMERIC, "QV_FORMAT_FLAG_BASENUMERIC" },
    { QV_FORMAT_FLAG_BASEDECIMAL, "QV_FORMAT_FLAG_BASEDECIMAL" },
};

// Two decimal digits a row, so that one division by 100 yields two characters.
struct DigitPairs
{
    QV_CHAR chars[100][2];
};

constexpr DigitPairs makeDigitPairs()
{
    DigitPairs pairs = {};
    for ( QV_CHAR value = 0; value < 100; value++ )
    {
        pairs.chars[value][0] = '0' + value / 10;
        pairs.chars[value][1] = '0' + value % 10;
    }
    return pairs;
}

constexpr DigitPairs digitPairs = makeDigitPairs();

constexpr uint64_t powersOfTen[] = { 1u,
                                     10u,
                                     100u,
                                     1000u,
                                     10000u,
                                     100000u,
                                     1000000u,
                                     10000000u,
                                     100000000u,
                                     1000000000u,
                                     10000000000u,
                                     100000000000u,
                                     1000000000000u,
                                     10000000000000u,
                                     100000000000000u,
                                     1000000000000000u,
                                     10000000000000000u,
                                     100000000000000000u,
                                     1000000000000000000u,
                                     10000000000000000000u };

// The bits of a magnitude, 1 for 0.
int bitWidth( uint64_t magnitude )
{
    return static_cast<int>( std::bit_width( magnitude | 1 ) );
}

bool isPowerOfTwo( unsigned base )
{
    return ( base & ( base - 1 ) ) == 0;
}

int decimalDigitCount( uint64_t magnitude )
{
    // 1233 / 4096 is just above the logarithm of 2, so the guess is right or one too high.
    int guess = ( bitWidth( magnitude ) * 1233 ) >> 12;
    return guess + ( ( magnitude | 1 ) >= powersOfTen[guess] );
}

int digitCount( uint64_t magnitude, unsigned base )
{
    if ( base == 10 )
        return decimalDigitCount( magnitude );
    if ( isPowerOfTwo( base ) )
    {
        int shift = std::countr_zero( base );
        return ( bitWidth( magnitude ) + shift - 1 ) / shift;
    }
    int count = 1;
    while ( magnitude >= base )
    {
        magnitude /= base;
        count++;
    }
    return count;
}

// Writes the decimal digits so that they end in front of end.
void writeDecimalDigits( QV_CHAR *end, uint64_t magnitude )
{
    while ( magnitude > UINT32_MAX )
    {
        end -= 2;
        std::memcpy( end, digitPairs.chars[magnitude % 100], sizeof digitPairs.chars[0] );
        magnitude /= 100;
    }
    uint32_t rest = static_cast<uint32_t>( magnitude );
    while ( rest >= 100 )
    {
        end -= 2;
        std::memcpy( end, digitPairs.chars[rest % 100], sizeof digitPairs.chars[0] );
        rest /= 100;
    }
    if ( rest >= 10 )
        std::memcpy( end - 2, digitPairs.chars[rest], sizeof digitPairs.chars[0] );
    else
        end[-1] = '0' + rest;
}

const QV_CHAR *digitTable( QV_FORMAT_FLAGS flags )
{
    return ( flags & QV_FORMAT_FLAG_UPPERCASE ) ? qv___FormatDigitsUpper : qv___FormatDigitsLower;
}

void writeDigits( QV_CHAR *end, uint64_t magnitude, unsigned base, QV_FORMAT_FLAGS flags )
{
    if ( base == 10 )
    {
        writeDecimalDigits( end, magnitude );
        return;
    }
    const QV_CHAR *digits = digitTable( flags );
    if ( isPowerOfTwo( base ) )
    {
        int shift = std::countr_zero( base );
        do
        {
            *--end = digits[magnitude & ( base - 1 )];
            magnitude >>= shift;
        } while ( magnitude != 0 );
        return;
    }
    do
    {
        *--end = digits[magnitude % base];
        magnitude /= base;
    } while ( magnitude != 0 );
}

QV_CHAR *fill( QV_CHAR *pos, QV_CHAR ch, QV_INT count )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        pos[idx] = ch;
    }
    return pos + count;
}

// Copies a text that is mostly short, in pieces that need no call.
void copyText( QV_CHAR *dest, const QV_CHAR *src, QV_INT count )
{
    if ( count > 32 )
    {
        qv::copyChars( dest, src, count );
        return;
    }
    for ( ; count >= 4; count -= 4, dest += 4, src += 4 )
    {
        std::memcpy( dest, src, 4 * sizeof( QV_CHAR ) );
    }
    for ( ; count > 0; count-- )
    {
        *dest++ = *src++;
    }
}

// Opens a gap at the end of *dest; a null *dest becomes a new string of just the gap.
QV_CHAR *openOutput( QV_STRING **dest, QV_INT count )
{
    if ( *dest )
        return qv::stringOpenEnd( dest, count );
    *dest = qv::stringCreateUnfilled( count );
    return qv::stringBacking( *dest );
}

// ---- The frame of a number: pad, sign and base prefix ----

QV_CHAR mnemonicLetter( QV_INT base )
{
    switch ( base )
    {
    case 2:
        return 'b';
    case 8:
        return 'o';
    case 10:
        return 'd';
    case 16:
        return 'x';
    default:
        return 0;
    }
}

// Writes the base prefix, at most three characters, and returns their number.
int basePrefix( QV_CHAR *prefix, QV_INT base, QV_FORMAT_FLAGS flags )
{
    if ( !( flags & ( QV_FORMAT_FLAG_BASEMNEMONIC | QV_FORMAT_FLAG_BASENUMERIC ) ) )
        return 0;
    if ( base == 10 && !( flags & QV_FORMAT_FLAG_BASEDECIMAL ) )
        return 0;
    QV_CHAR letter = ( flags & QV_FORMAT_FLAG_BASEMNEMONIC ) ? mnemonicLetter( base ) : 0;
    if ( letter )
    {
        prefix[0] = '0';
        prefix[1] = ( flags & QV_FORMAT_FLAG_UPPERCASE ) ? letter - 'a' + 'A' : letter;
        return 2;
    }
    int count = 0;
    if ( base >= 10 )
        prefix[count++] = static_cast<QV_CHAR>( '0' + base / 10 );
    prefix[count++] = static_cast<QV_CHAR>( '0' + base % 10 );
    prefix[count++] = ':';
    return count;
}

// The parts of a number around its digits.
struct NumberFrame
{
    QV_INT pad;
    QV_CHAR sign; // 0 for none
    QV_CHAR prefix[3];
    int prefixLength;
};

QV_CHAR signOf( bool negative, QV_FORMAT_FLAGS flags )
{
    if ( negative && !( flags & QV_FORMAT_FLAG_NOSIGN ) )
        return '-';
    if ( flags & QV_FORMAT_FLAG_PLUSPOS )
        return '+';
    if ( flags & QV_FORMAT_FLAG_BLANKPOS )
        return ' ';
    return 0;
}

// Opens the gap for a whole number of digitsLength characters in digits and point, writes everything around
// them and returns where they go.
QV_CHAR *openNumber( QV_STRING **dest, bool negative, QV_INT base, QV_INT minWidth, QV_INT digitsLength,
                     QV_FORMAT_FLAGS flags )
{
    NumberFrame frame;
    frame.sign = signOf( negative, flags );
    frame.prefixLength = basePrefix( frame.prefix, base, flags );
    QV_INT aroundLength = ( frame.sign ? 1 : 0 ) + frame.prefixLength;
    QV_CHECK( QV_INT_ADD_OK( digitsLength, aroundLength ) );
    QV_INT length = digitsLength + aroundLength;
    frame.pad = minWidth > length ? minWidth - length : 0;

    QV_CHAR *pos = openOutput( dest, length + frame.pad );
    if ( frame.pad > 0 && !( flags & ( QV_FORMAT_FLAG_LEFTALIGN | QV_FORMAT_FLAG_ZEROPAD ) ) )
        pos = fill( pos, ' ', frame.pad );
    if ( frame.sign )
        *pos++ = frame.sign;
    for ( int idx = 0; idx < frame.prefixLength; idx++ )
    {
        *pos++ = frame.prefix[idx];
    }
    if ( frame.pad > 0 && ( flags & QV_FORMAT_FLAG_ZEROPAD ) )
        pos = fill( pos, '0', frame.pad );
    if ( frame.pad > 0 && ( flags & QV_FORMAT_FLAG_LEFTALIGN ) )
        fill( pos + digitsLength, ' ', frame.pad );
    return pos;
}

// The form that most integers have.
void appendPlainDecimal( QV_STRING **dest, bool negative, uint64_t magnitude )
{
    QV_INT digitsLength = decimalDigitCount( magnitude );
    QV_CHAR *pos = openOutput( dest, digitsLength + negative );
    *pos = '-';
    writeDecimalDigits( pos + negative + digitsLength, magnitude );
}

// ---- Digits of reals ----

// Reals of a smaller magnitude have an exact integer part in 64 bits and may have a fraction.
constexpr double exactLimit = 9007199254740992.0;

double truncated( double value )
{
    if ( std::fabs( value ) >= exactLimit )
        return value;
    return static_cast<double>( static_cast<int64_t>( value ) );
}

// minuend - factor * whole with one rounding.
double subtractProduct( double minuend, double factor, double whole )
{
    constexpr double exactProductLimit = 140737488355328.0;
    if ( std::fabs( whole ) < exactProductLimit )
        return minuend - factor * whole; // factor is at most 36, so the product is exact
    return std::fma( -factor, whole, minuend );
}

// The digit to a computed value, by magnitude; -1 if rounding left no digit.
int digitOf( double value, QV_INT base )
{
    double magnitude = std::fabs( value );
    return magnitude < static_cast<double>( base ) ? static_cast<int>( magnitude ) : -1;
}

// Counts the integer digits by truncating division; *place is the value of the highest one.
QV_INT countRealDigits( double value, QV_INT base, double *place )
{
    double rest = truncated( value / static_cast<double>( base ) );
    QV_INT count = 1;
    *place = 1.0;
    while ( rest != 0.0 )
    {
        rest = truncated( rest / static_cast<double>( base ) );
        *place *= static_cast<double>( base );
        count++;
    }
    return count;
}

// The integer digits of a large real, from the highest place down. What a place's rounding can't show as a
// digit becomes the highest digit.
QV_CHAR *writeLargeRealDigits( QV_CHAR *pos, double value, double place, QV_INT count, QV_INT base,
                               const QV_CHAR *digits )
{
    for ( QV_INT idx = 0; idx < count; idx++ )
    {
        double wholes = truncated( value / place );
        int digit = digitOf( wholes, base );
        if ( digit < 0 )
        {
            digit = static_cast<int>( base - 1 );
            wholes = std::copysign( static_cast<double>( digit ), value );
        }
        *pos++ = digits[digit];
        value = std::fma( -wholes, place, value );
        place = truncated( place / static_cast<double>( base ) );
    }
    return pos;
}

// The digits behind the point. The last one is cut. Beyond the precision of a real there may be a value that
// is no digit, which shows as 0.
void writeFraction( QV_CHAR *pos, double value, QV_INT precision, QV_INT base, const QV_CHAR *digits )
{
    double factor = static_cast<double>( base );
    double running = value;
    for ( QV_INT idx = 0; idx < precision; idx++ )
    {
        double next = running * factor;
        int digit = -1;
        if ( std::isfinite( next ) )
            digit = digitOf( subtractProduct( next, factor, truncated( running ) ) / factor * factor, base );
        pos[idx] = digits[digit < 0 ? 0 : digit];
        running = next;
    }
}

void checkNumberArguments( QV_INT base, QV_INT minWidth )
{
    QV_CHECK( minWidth >= 0 );
    QV_CHECK( base >= 2 );
    QV_CHECK( base <= 36 );
}

QV_STRING *boolText( QV_BOOL value, QV_FORMAT_FLAGS flags )
{
    if ( flags & QV_FORMAT_FLAG_UPPERCASE )
        return value ? textTrueUpper : textFalseUpper;
    return value ? textTrueLower : textFalseLower;
}

} // namespace

// ---- Flags ----

QV_FORMAT_FLAGS qvFormatFlagsNormalize( QV_FORMAT_FLAGS flags )
{
    flags &= 511;
    if ( flags & QV_FORMAT_FLAG_LEFTALIGN )
        flags &= ~QV_FORMAT_FLAG_ZEROPAD;
    if ( flags & QV_FORMAT_FLAG_NOSIGN )
        flags &= ~( QV_FORMAT_FLAG_PLUSPOS | QV_FORMAT_FLAG_BLANKPOS );
    if ( flags & QV_FORMAT_FLAG_PLUSPOS )
        flags &= ~QV_FORMAT_FLAG_BLANKPOS;
    if ( flags & QV_FORMAT_FLAG_BASEMNEMONIC )
        flags &= ~QV_FORMAT_FLAG_BASENUMERIC;
    return flags;
}

QV_FORMAT_FLAGS qvFormatFlagsFromString( QV_STRING *qvs )
{
    QV_CHECK( qvs );
    return qvFormatFlagsNormalize( qvFlagsetParse( qv___FormatFlagsFlagset, qvs ) );
}

QV_STRING *qvFormatFlagsToString( QV_FORMAT_FLAGS flags )
{
    return qvFlagsetGenerate( qv___FormatFlagsFlagset, qvFormatFlagsNormalize( flags ) );
}

void qv___FormatFlagsStartup()
{
    qv___FormatFlagsFlagset = qv::flagsetFromTable( flagNames, QV_SIZEOF_ARRAY( flagNames ) );
}

void qv___FormatFlagsShutdown()
{
    qv::retire( &qv___FormatFlagsFlagset );
}

void qv___FormatStartup()
{
    textTrueLower = qvStringCreateFromCstr( "true", -1 );
    textFalseLower = qvStringCreateFromCstr( "false", -1 );
    textTrueUpper = qvStringCreateFromCstr( "TRUE", -1 );
    textFalseUpper = qvStringCreateFromCstr( "FALSE", -1 );
}

void qv___FormatShutdown()
{
    qv::retire( &textTrueLower );
    qv::retire( &textFalseLower );
    qv::retire( &textTrueUpper );
    qv::retire( &textFalseUpper );
}

// ---- Appending ----

QV_INT qv___FormatEncodeBase( QV_STRING **dest, QV_INT base, QV_FORMAT_FLAGS flags )
{
    QV_CHAR prefix[3];
    int length = basePrefix( prefix, base, flags );
    if ( dest )
        qv::stringAppendChars( dest, prefix, length );
    return length;
}

void qv___FormatEncodeChars( QV_STRING **dest, const QV_CHAR *src, QV_INT srcLength, QV_INT minWidth,
                             QV_FORMAT_FLAGS flags )
{
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
    QV_CHECK( minWidth >= 0 );
    QV_INT pad = minWidth > srcLength ? minWidth - srcLength : 0;
    if ( srcLength + pad == 0 )
        return;
    QV_CHAR *pos = openOutput( dest, srcLength + pad );
    if ( !( flags & QV_FORMAT_FLAG_LEFTALIGN ) )
        pos = fill( pos, ' ', pad );
    copyText( pos, src, srcLength );
    if ( flags & QV_FORMAT_FLAG_LEFTALIGN )
        fill( pos + srcLength, ' ', pad );
}

void qv::formatAppendInt( QV_STRING **dest, QV_INT value, QV_INT base, QV_INT minWidth,
                          QV_FORMAT_FLAGS flags )
{
    checkNumberArguments( base, minWidth );
    flags = qvFormatFlagsNormalize( flags );
    uint64_t magnitude =
        value < 0 ? uint64_t( 0 ) - static_cast<uint64_t>( value ) : static_cast<uint64_t>( value );
    if ( base == 10 && flags == 0 && minWidth <= 1 )
    {
        appendPlainDecimal( dest, value < 0, magnitude );
        return;
    }
    unsigned radix = static_cast<unsigned>( base );
    QV_INT digitsLength = digitCount( magnitude, radix );
    QV_CHAR *pos = openNumber( dest, value < 0, base, minWidth, digitsLength, flags );
    writeDigits( pos + digitsLength, magnitude, radix, flags );
}

void qv::formatAppendReal( QV_STRING **dest, double value, QV_INT base, QV_INT minWidth, QV_INT precision,
                           QV_FORMAT_FLAGS flags )
{
    checkNumberArguments( base, minWidth );
    QV_CHECK( precision >= -1 );
    flags = qvFormatFlagsNormalize( flags );
    if ( !std::isfinite( value ) )
    {
        static constexpr QV_CHAR names[][3] = { { 'N', 'A', 'N' }, { 'I', 'N', 'F' } };
        qv___FormatEncodeChars( dest, names[std::isnan( value ) ? 0 : 1], 3, minWidth, flags );
        return;
    }
    if ( precision == -1 )
        precision = 6;

    bool exact = std::fabs( value ) < exactLimit;
    uint64_t magnitude = exact ? static_cast<uint64_t>( std::fabs( value ) ) : 0;
    double place = 1.0;
    QV_INT wholeLength = exact ? digitCount( magnitude, static_cast<unsigned>( base ) )
                               : countRealDigits( value, base, &place );
    QV_INT digitsLength = wholeLength;
    if ( precision > 0 )
    {
        QV_CHECK( QV_INT_ADD_OK( precision, 1 ) );
        QV_CHECK( QV_INT_ADD_OK( digitsLength, precision + 1 ) );
        digitsLength += precision + 1;
    }
    QV_CHAR *pos = openNumber( dest, value < 0, base, minWidth, digitsLength, flags );
    const QV_CHAR *digits = digitTable( flags );
    if ( exact )
        writeDigits( pos + wholeLength, magnitude, static_cast<unsigned>( base ), flags );
    else
        writeLargeRealDigits( pos, value, place, wholeLength, base, digits );
    if ( precision > 0 )
    {
        pos[wholeLength] = '.';
        writeFraction( pos + wholeLength + 1, value, precision, base, digits );
    }
}

// ---- New strings ----

QV_STRING *qvFormatEncodeBool( QV_BOOL value, QV_INT minWidth, QV_FORMAT_FLAGS flags )
{
    flags = qvFormatFlagsNormalize( flags );
    QV_STRING *text = boolText( value, flags );
    return qvFormatEncodeChars( qv::stringBacking( text ), qv::stringLength( text ), minWidth, flags );
}

QV_STRING *qvFormatEncodeInt( QV_INT value, QV_INT base, QV_INT minWidth, QV_FORMAT_FLAGS flags )
{
    qv::Local<QV_STRING> res;
    qv::formatAppendInt( res.edit(), value, base, minWidth, flags );
    return res.give();
}

QV_STRING *qvFormatEncodeReal( double value, QV_INT base, QV_INT minWidth, QV_INT precision,
                               QV_FORMAT_FLAGS flags )
{
    qv::Local<QV_STRING> res;
    qv::formatAppendReal( res.edit(), value, base, minWidth, precision, flags );
    return res.give();
}

QV_STRING *qvFormatEncodeChars( const QV_CHAR *src, QV_INT srcLength, QV_INT minWidth, QV_FORMAT_FLAGS flags )
{
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
    QV_CHECK( qvCharsAllOk( src, srcLength ) );
    QV_CHECK( minWidth >= 0 );
    if ( srcLength == 0 && minWidth == 0 )
        return qvStringCreate();
    qv::Local<QV_STRING> res;
    qv___FormatEncodeChars( res.edit(), src, srcLength, minWidth, flags );
    return res.give();
}
