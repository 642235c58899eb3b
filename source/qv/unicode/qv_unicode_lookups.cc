#include <qv/unicode/qv_unicode_lookups.hh>

#include <qv/sys/qv_check.hh>

namespace
{

// ASCII digits and letters: 0 to 35, or -1.
QV_INT asciiDigitValue( QV_CHAR ch )
{
    if ( ch - '0' <= 9 )
        return ch - '0';
    QV_CHAR letter = ( ch | 0x20 ) - 'a';
    return letter <= 25 ? static_cast<QV_INT>( letter ) + 10 : -1;
}

QV_INT digitValue( QV_CHAR ch, QV_INT base )
{
    if ( base <= 10 )
        return qv___UnicodeDecimalDbLookup( ch );
    if ( base <= 16 )
        return qv___UnicodeHexDigitDbLookup( ch );
    return asciiDigitValue( ch );
}

} // namespace

QV_BOOL qvUnicodeIsWhiteSpace( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return QV_BOOL_FROM( qv___UnicodeWhiteSpaceDbLookup( ch ) );
}

QV_BOOL qvUnicodeIsNlf( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return QV_BOOL_FROM( qv___UnicodeNlfDbLookup( ch ) );
}

QV_INT qvUnicodeDecimalDigitValue( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return qv___UnicodeDecimalDbLookup( ch );
}

QV_INT qvUnicodeHexadecimalDigitValue( QV_CHAR ch )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    return qv___UnicodeHexDigitDbLookup( ch );
}

QV_INT qvUnicodeBaseNDigitValue( QV_CHAR ch, QV_INT base )
{
    QV_CHECK( QV_CHAR_OK( ch ) );
    QV_CHECK( base >= 2 );
    QV_CHECK( base <= 36 );
    QV_INT value = digitValue( ch, base );
    return value < base ? value : -1;
}
