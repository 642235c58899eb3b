// Strings that the format engine makes, and values that the format decoders find in strings.

#include <qv/base/qv_string.hh>

#include <qv/base/qv_format.hh>
#include <qv/runtime/qv_local.hh>

using Owned = qv::Local<QV_STRING>;

QV_STRING *qvStringCreateFromFormatArgList( QV_STRING *format, QV_ARG_LIST *argList )
{
    QV_CHECK( format );
    QV_CHECK( argList );
    return qv___FormatArgList( format, argList );
}

QV_STRING *qvStringCreateFromFormatCstrArgList( const char *format, QV_INT formatLength,
                                                QV_ARG_LIST *argList )
{
    QV_CHECK( argList );
    qv::DecodedChars decoded( format, formatLength );
    return qv___FormatCharsArgList( decoded.chars(), decoded.length(), argList );
}

QV_STRING *qvStringCreateFromFormatWcstrArgList( const wchar_t *format, QV_INT formatLength,
                                                 QV_ARG_LIST *argList )
{
    QV_CHECK( argList );
    qv::DecodedChars decoded( format, formatLength );
    return qv___FormatCharsArgList( decoded.chars(), decoded.length(), argList );
}

// Formats with the arguments behind the parameter last of the function around it.
#define FORMAT_REST( last, ... )                                                                             \
    QV_ARG_LIST argList;                                                                                     \
    va_start( argList.args, last );                                                                          \
    Owned formatted( __VA_ARGS__ );                                                                          \
    va_end( argList.args )

QV_STRING *qvStringCreateFromFormat( QV_STRING *format, ... )
{
    FORMAT_REST( format, qvStringCreateFromFormatArgList( format, &argList ) );
    return formatted.give();
}

QV_STRING *qvStringCreateFromFormatCstr( const char *format, QV_INT formatLength, ... )
{
    FORMAT_REST( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    return formatted.give();
}

QV_STRING *qvStringCreateFromFormatWcstr( const wchar_t *format, QV_INT formatLength, ... )
{
    FORMAT_REST( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    return formatted.give();
}

static void checkPosition( QV_STRING **dest, QV_INT idx )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    QV_CHECK( idx >= 0 );
    QV_CHECK( idx <= ( *dest )->length );
}

// The end of the text, for the appending forms.
static QV_INT endOf( QV_STRING **dest )
{
    QV_CHECK( dest );
    QV_CHECK( *dest );
    return ( *dest )->length;
}

void qvStringInsertFormatArgList( QV_STRING **dest, QV_INT idx, QV_STRING *format, QV_ARG_LIST *argList )
{
    checkPosition( dest, idx );
    Owned formatted( qvStringCreateFromFormatArgList( format, argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormatArgList( QV_STRING **dest, QV_STRING *format, QV_ARG_LIST *argList )
{
    qvStringInsertFormatArgList( dest, 0, format, argList );
}

void qvStringAppendFormatArgList( QV_STRING **dest, QV_STRING *format, QV_ARG_LIST *argList )
{
    qvStringInsertFormatArgList( dest, endOf( dest ), format, argList );
}

void qvStringInsertFormat( QV_STRING **dest, QV_INT idx, QV_STRING *format, ... )
{
    checkPosition( dest, idx );
    FORMAT_REST( format, qvStringCreateFromFormatArgList( format, &argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormat( QV_STRING **dest, QV_STRING *format, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( format, qvStringCreateFromFormatArgList( format, &argList ) );
    qvStringPrepend( dest, formatted );
}

void qvStringAppendFormat( QV_STRING **dest, QV_STRING *format, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( format, qvStringCreateFromFormatArgList( format, &argList ) );
    qvStringAppend( dest, formatted );
}

void qvStringInsertFormatCstrArgList( QV_STRING **dest, QV_INT idx, const char *format, QV_INT formatLength,
                                      QV_ARG_LIST *argList )
{
    checkPosition( dest, idx );
    Owned formatted( qvStringCreateFromFormatCstrArgList( format, formatLength, argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormatCstrArgList( QV_STRING **dest, const char *format, QV_INT formatLength,
                                       QV_ARG_LIST *argList )
{
    qvStringInsertFormatCstrArgList( dest, 0, format, formatLength, argList );
}

void qvStringAppendFormatCstrArgList( QV_STRING **dest, const char *format, QV_INT formatLength,
                                      QV_ARG_LIST *argList )
{
    qvStringInsertFormatCstrArgList( dest, endOf( dest ), format, formatLength, argList );
}

void qvStringInsertFormatCstr( QV_STRING **dest, QV_INT idx, const char *format, QV_INT formatLength, ... )
{
    checkPosition( dest, idx );
    FORMAT_REST( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormatCstr( QV_STRING **dest, const char *format, QV_INT formatLength, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    qvStringPrepend( dest, formatted );
}

void qvStringAppendFormatCstr( QV_STRING **dest, const char *format, QV_INT formatLength, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( formatLength, qvStringCreateFromFormatCstrArgList( format, formatLength, &argList ) );
    qvStringAppend( dest, formatted );
}

void qvStringInsertFormatWcstrArgList( QV_STRING **dest, QV_INT idx, const wchar_t *format,
                                       QV_INT formatLength, QV_ARG_LIST *argList )
{
    checkPosition( dest, idx );
    Owned formatted( qvStringCreateFromFormatWcstrArgList( format, formatLength, argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormatWcstrArgList( QV_STRING **dest, const wchar_t *format, QV_INT formatLength,
                                        QV_ARG_LIST *argList )
{
    qvStringInsertFormatWcstrArgList( dest, 0, format, formatLength, argList );
}

void qvStringAppendFormatWcstrArgList( QV_STRING **dest, const wchar_t *format, QV_INT formatLength,
                                       QV_ARG_LIST *argList )
{
    qvStringInsertFormatWcstrArgList( dest, endOf( dest ), format, formatLength, argList );
}

void qvStringInsertFormatWcstr( QV_STRING **dest, QV_INT idx, const wchar_t *format, QV_INT formatLength,
                                ... )
{
    checkPosition( dest, idx );
    FORMAT_REST( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    qvStringInsert( dest, idx, formatted );
}

void qvStringPrependFormatWcstr( QV_STRING **dest, const wchar_t *format, QV_INT formatLength, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    qvStringPrepend( dest, formatted );
}

void qvStringAppendFormatWcstr( QV_STRING **dest, const wchar_t *format, QV_INT formatLength, ... )
{
    checkPosition( dest, 0 );
    FORMAT_REST( formatLength, qvStringCreateFromFormatWcstrArgList( format, formatLength, &argList ) );
    qvStringAppend( dest, formatted );
}

// ---- Scanning ----

// The number of code points to look at.
static QV_INT scanLength( QV_STRING *qvs, QV_INT offset, QV_INT maxChars )
{
    QV_CHECK( qvs );
    QV_CHECK( offset >= 0 );
    QV_CHECK( offset <= qvs->length );
    QV_CHECK( maxChars >= -1 );
    QV_INT rest = qvs->length - offset;
    return maxChars == -1 || maxChars > rest ? rest : maxChars;
}

QV_BOOL qvStringScanBool( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_BOOL allowNumeric,
                          QV_BOOL *value, QV_INT *consumed )
{
    QV_INT count = scanLength( qvs, offset, maxChars );
    return qvFormatTryDecodeBool( qvs, offset, count, allowNumeric, value, consumed );
}

QV_BOOL qvStringScanInt( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_INT base, QV_INT *value,
                         QV_INT *consumed )
{
    QV_INT count = scanLength( qvs, offset, maxChars );
    return qvFormatTryDecodeInt( qvs, offset, count, base, value, consumed );
}

QV_BOOL qvStringScanReal( QV_STRING *qvs, QV_INT offset, QV_INT maxChars, QV_INT base, double *value,
                          QV_INT *consumed )
{
    QV_INT count = scanLength( qvs, offset, maxChars );
    return qvFormatTryDecodeReal( qvs, offset, count, base, value, consumed );
}
