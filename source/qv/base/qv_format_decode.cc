// The decoders. ASCII is read without a lookup outside this file; other white space and digits come from the
// character database. A decoder never stops the process because of its text.

#include <qv/base/qv_format.hh>

#include <qv/base/qv_string.hh>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_real.h>
#include <qv/unicode/qv_unicode_lookups.h>

namespace
{

// A text that is being read. Invariant: position lies in 0 to length.
struct Scanner
{
    const QV_CHAR *chars;
    QV_INT length;
    QV_INT position;

    bool atEnd() const
    {
        return position == length;
    }

    QV_CHAR current() const
    {
        return chars[position];
    }
};

bool isWhiteSpace( QV_CHAR ch )
{
    if ( ch < 128 )
        return ch == ' ' || ( ch >= 9 && ch <= 13 );
    return QV_CHAR_OK( ch ) && qvUnicodeIsWhiteSpace( ch );
}

void skipWhiteSpace( Scanner *scan )
{
    while ( !scan->atEnd() && isWhiteSpace( scan->current() ) )
    {
        scan->position++;
    }
}

// Values of the ASCII digits of base 36, above 36 for other characters.
struct DigitValues
{
    unsigned char values[128];
};

constexpr DigitValues makeDigitValues()
{
    DigitValues table = {};
    for ( int ch = 0; ch < 128; ch++ )
    {
        int value = 255;
        if ( ch >= '0' && ch <= '9' )
            value = ch - '0';
        else if ( ch >= 'a' && ch <= 'z' )
            value = ch - 'a' + 10;
        else if ( ch >= 'A' && ch <= 'Z' )
            value = ch - 'A' + 10;
        table.values[ch] = static_cast<unsigned char>( value );
    }
    return table;
}

constexpr DigitValues digitValues = makeDigitValues();

// The value of a digit, at least base for a character that isn't one.
inline uint64_t digitValue( QV_CHAR ch, unsigned base )
{
    if ( ch < 128 )
        return digitValues.values[ch];
    if ( !QV_CHAR_OK( ch ) )
        return base;
    QV_INT value = qvUnicodeBaseNDigitValue( ch, base );
    return value < 0 ? base : static_cast<uint64_t>( value );
}

// ---- Base prefixes ----

struct BasePrefix
{
    int base;
    int length;
    QV_CHAR chars[3];
};

constexpr int prefixCount = 43;

struct BasePrefixes
{
    BasePrefix rows[prefixCount];
};

constexpr BasePrefixes makeBasePrefixes()
{
    BasePrefixes table = { { { 2, 2, { '0', 'b' } },
                             { 2, 2, { '0', 'B' } },
                             { 8, 2, { '0', 'o' } },
                             { 8, 2, { '0', 'O' } },
                             { 10, 2, { '0', 'd' } },
                             { 10, 2, { '0', 'D' } },
                             { 16, 2, { '0', 'x' } },
                             { 16, 2, { '0', 'X' } } } };
    int row = 8;
    for ( int base = 2; base <= 36; base++, row++ )
    {
        BasePrefix &prefix = table.rows[row];
        prefix.base = base;
        if ( base >= 10 )
            prefix.chars[prefix.length++] = static_cast<QV_CHAR>( '0' + base / 10 );
        prefix.chars[prefix.length++] = static_cast<QV_CHAR>( '0' + base % 10 );
        prefix.chars[prefix.length++] = ':';
    }
    return table;
}

constexpr BasePrefixes basePrefixes = makeBasePrefixes();

bool beginsWith( const Scanner &scan, const BasePrefix &prefix )
{
    if ( scan.length - scan.position < prefix.length )
        return false;
    for ( int idx = 0; idx < prefix.length; idx++ )
    {
        if ( scan.chars[scan.position + idx] != prefix.chars[idx] )
            return false;
    }
    return true;
}

// Whether the second or third character can belong to a prefix at all: most numbers have none.
bool mayHaveBasePrefix( const Scanner &scan )
{
    QV_INT left = scan.length - scan.position;
    const QV_CHAR *chars = scan.chars + scan.position;
    return left >= 2 && ( chars[1] > '9' || ( left >= 3 && chars[2] == ':' ) );
}

// Moves behind a prefix and returns its base, -1 if there is none.
int takeBasePrefix( Scanner *scan )
{
    if ( !mayHaveBasePrefix( *scan ) )
        return -1;
    for ( const BasePrefix &prefix : basePrefixes.rows )
    {
        if ( beginsWith( *scan, prefix ) )
        {
            scan->position += prefix.length;
            return prefix.base;
        }
    }
    return -1;
}

// ---- What stands in front of the digits ----

struct NumberHead
{
    unsigned base;
    int sign; // -1, 1; 0 for none
};

int takeSign( Scanner *scan )
{
    if ( scan->atEnd() )
        return 0;
    QV_CHAR ch = scan->current();
    if ( ch != '-' && ch != '+' )
        return 0;
    scan->position++;
    return ch == '-' ? -1 : 1;
}

// Reads white space, sign and base prefix; base is -1 or in 2 to 36. False if the text ends before the
// digits.
bool readHead( Scanner *scan, QV_INT base, NumberHead *head )
{
    skipWhiteSpace( scan );
    head->sign = takeSign( scan );
    if ( head->sign != 0 )
        skipWhiteSpace( scan );
    if ( scan->atEnd() )
        return false;
    head->base = static_cast<unsigned>( base );
    if ( base != -1 )
        return true;

    int prefixBase = takeBasePrefix( scan );
    head->base = prefixBase == -1 ? 10 : static_cast<unsigned>( prefixBase );
    if ( prefixBase == -1 )
        return true;
    skipWhiteSpace( scan );
    if ( head->sign == 0 )
    {
        head->sign = takeSign( scan );
        skipWhiteSpace( scan );
    }
    return !scan->atEnd();
}

// ---- Digits ----

// So many decimal digits fit without a look at the limit.
constexpr QV_INT quickDigits = 18;

// Reads digits up to the first character that isn't one or would exceed the limit.
uint64_t readDigits( Scanner *scan, unsigned base, uint64_t limit )
{
    const QV_CHAR *pos = scan->chars + scan->position;
    const QV_CHAR *end = scan->chars + scan->length;
    uint64_t magnitude = 0;
    if ( base == 10 )
    {
        const QV_CHAR *quickEnd = end - pos > quickDigits ? pos + quickDigits : end;
        while ( pos < quickEnd && *pos - '0' < 10u )
        {
            magnitude = magnitude * 10 + ( *pos - '0' );
            pos++;
        }
    }
    for ( ; pos < end; pos++ )
    {
        uint64_t digit = digitValue( *pos, base );
        if ( digit >= base )
            break;
        uint64_t next = 0;
        if ( __builtin_mul_overflow( magnitude, uint64_t( base ), &next ) || next > limit ||
             digit > limit - next )
            break;
        magnitude = next + digit;
    }
    scan->position = pos - scan->chars;
    return magnitude;
}

// While a magnitude is at most this, one more digit of any base keeps it a whole number of a double's
// precision.
constexpr uint64_t exactMagnitude = ( ( uint64_t( 1 ) << 53 ) - 35 ) / 36;

// The values of the digits behind the point, each the one before over 10.
struct DecimalScales
{
    double values[32];
};

constexpr DecimalScales makeDecimalScales()
{
    DecimalScales scales = {};
    double scale = 1.0 / 10.0;
    for ( double &value : scales.values )
    {
        value = scale;
        scale /= 10.0;
    }
    return scales;
}

constexpr DecimalScales decimalScales = makeDecimalScales();

double readWholeDigits( Scanner *scan, unsigned base, double sign )
{
    uint64_t magnitude = 0;
    uint64_t digit = 0;
    while ( !scan->atEnd() && magnitude <= exactMagnitude &&
            ( digit = digitValue( scan->current(), base ) ) < base )
    {
        magnitude = magnitude * base + digit;
        scan->position++;
    }
    double value = magnitude == 0 ? 0.0 : sign * static_cast<double>( static_cast<int64_t>( magnitude ) );
    while ( !scan->atEnd() && ( digit = digitValue( scan->current(), base ) ) < base )
    {
        value = static_cast<double>( base ) * value + sign * static_cast<double>( static_cast<int>( digit ) );
        scan->position++;
    }
    return value;
}

// Adds the digits behind the point.
double readFraction( Scanner *scan, unsigned base, double sign, double value )
{
    constexpr QV_INT scalesCount = QV_SIZEOF_ARRAY( decimalScales.values );
    QV_INT first = scan->position;
    uint64_t digit = 0;
    double scale = 0.0;
    while ( !scan->atEnd() && ( digit = digitValue( scan->current(), base ) ) < base )
    {
        QV_INT place = scan->position - first;
        if ( base == 10 && place < scalesCount )
            scale = decimalScales.values[place];
        else
            scale = ( place == 0 ? 1.0 : scale ) / static_cast<double>( base );
        value += sign * scale * static_cast<double>( static_cast<int>( digit ) );
        scan->position++;
    }
    return value;
}

bool isPoint( QV_CHAR ch )
{
    return ch == '.' || ch == ',';
}

// ---- Words ----

// Moves behind a word in any mixture of case; word is in capitals.
bool takeWord( Scanner *scan, const char *word, QV_INT wordLength )
{
    if ( scan->length - scan->position < wordLength )
        return false;
    for ( QV_INT idx = 0; idx < wordLength; idx++ )
    {
        QV_CHAR capital = static_cast<QV_CHAR>( word[idx] );
        QV_CHAR ch = scan->chars[scan->position + idx];
        if ( ch != capital && ch != capital + ( 'a' - 'A' ) )
            return false;
    }
    scan->position += wordLength;
    return true;
}

void checkRange( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength )
{
    QV_CHECK( src );
    QV_CHECK( srcOffset >= 0 );
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( srcOffset <= qv::stringLength( src ) );
    QV_CHECK( srcLength <= qv::stringLength( src ) - srcOffset );
}

void checkChars( const QV_CHAR *src, QV_INT srcLength )
{
    QV_CHECK( srcLength >= 0 );
    QV_CHECK( src || srcLength == 0 );
}

void checkBase( QV_INT base )
{
    QV_CHECK( base == -1 || base >= 2 );
    QV_CHECK( base <= 36 );
}

// Skips white space behind what was read and reports how much of the text that is.
template <typename T> void finish( Scanner *scan, T read, T *value, QV_INT *consumed )
{
    skipWhiteSpace( scan );
    if ( value )
        *value = read;
    if ( consumed )
        *consumed = scan->position;
}

} // namespace

QV_BOOL qvFormatTryDecodeIntChars( const QV_CHAR *src, QV_INT srcLength, QV_INT base, QV_INT *value,
                                   QV_INT *consumed )
{
    checkChars( src, srcLength );
    checkBase( base );
    Scanner scan = { src, srcLength, 0 };
    NumberHead head;
    QV_INT read = 0;
    bool good = false;
    if ( readHead( &scan, base, &head ) )
    {
        QV_INT first = scan.position;
        uint64_t limit = static_cast<uint64_t>( QV_INT_MAX ) + ( head.sign < 0 );
        uint64_t magnitude = readDigits( &scan, head.base, limit );
        read = static_cast<QV_INT>( head.sign < 0 ? 0 - magnitude : magnitude );
        good = scan.position > first;
    }
    finish( &scan, read, value, consumed );
    return QV_BOOL_FROM( good );
}

QV_BOOL qvFormatTryDecodeRealChars( const QV_CHAR *src, QV_INT srcLength, QV_INT base, double *value,
                                    QV_INT *consumed )
{
    checkChars( src, srcLength );
    checkBase( base );
    Scanner scan = { src, srcLength, 0 };
    NumberHead head;
    double read = 0.0;
    bool good = false;
    if ( readHead( &scan, base, &head ) )
    {
        QV_INT first = scan.position;
        double sign = head.sign < 0 ? -1.0 : 1.0;
        read = readWholeDigits( &scan, head.base, sign );
        if ( !scan.atEnd() && isPoint( scan.current() ) )
        {
            scan.position++;
            read = readFraction( &scan, head.base, sign, read );
        }
        good = scan.position > first;
    }
    finish( &scan, read, value, consumed );
    return QV_BOOL_FROM( good );
}

QV_BOOL qvFormatTryDecodeBoolChars( const QV_CHAR *src, QV_INT srcLength, QV_BOOL allowNumeric,
                                    QV_BOOL *value, QV_INT *consumed )
{
    checkChars( src, srcLength );
    Scanner scan = { src, srcLength, 0 };
    skipWhiteSpace( &scan );
    QV_BOOL read = QV_FALSE;
    bool good = false;
    if ( takeWord( &scan, "TRUE", 4 ) )
    {
        read = QV_TRUE;
        good = true;
    }
    else if ( takeWord( &scan, "FALSE", 5 ) )
    {
        good = true;
    }
    else if ( allowNumeric && !scan.atEnd() )
    {
        double number = 0.0;
        QV_INT numberLength = 0;
        good = qvFormatTryDecodeRealChars( src + scan.position, srcLength - scan.position, -1, &number,
                                           &numberLength );
        if ( good )
        {
            read = QV_BOOL_FROM( !qvRealEquals( number, 0.0 ) );
            scan.position += numberLength;
        }
    }
    finish( &scan, read, value, consumed );
    return QV_BOOL_FROM( good );
}

QV_BOOL qvFormatTryDecodeInt( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength, QV_INT base, QV_INT *value,
                              QV_INT *consumed )
{
    checkRange( src, srcOffset, srcLength );
    return qvFormatTryDecodeIntChars( qv::stringBacking( src ) + srcOffset, srcLength, base, value,
                                      consumed );
}

QV_BOOL qvFormatTryDecodeReal( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength, QV_INT base, double *value,
                               QV_INT *consumed )
{
    checkRange( src, srcOffset, srcLength );
    return qvFormatTryDecodeRealChars( qv::stringBacking( src ) + srcOffset, srcLength, base, value,
                                       consumed );
}

QV_BOOL qvFormatTryDecodeBool( QV_STRING *src, QV_INT srcOffset, QV_INT srcLength, QV_BOOL allowNumeric,
                               QV_BOOL *value, QV_INT *consumed )
{
    checkRange( src, srcOffset, srcLength );
    return qvFormatTryDecodeBoolChars( qv::stringBacking( src ) + srcOffset, srcLength, allowNumeric, value,
                                       consumed );
}
