// The rules for product data.

#include <qv/runtime/qv_runtime.h>

#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>
#include <qv/runtime/qv_module.h>

namespace
{

constexpr QV_INT maxProductNameLength = 32;
constexpr QV_INT maxTextLength = 100;
constexpr QV_INT versionParts = 3;

bool isDigit( QV_CHAR ch )
{
    return ch >= '0' && ch <= '9';
}

bool isLetter( QV_CHAR ch )
{
    return ( ch >= 'a' && ch <= 'z' ) || ( ch >= 'A' && ch <= 'Z' );
}

bool isOneOf( QV_CHAR ch, const char *chs )
{
    for ( ; *chs; chs++ )
    {
        if ( ch == static_cast<unsigned char>( *chs ) )
            return true;
    }
    return false;
}

// 1 to 100 letters, digits, the given characters, and single blanks that neither begin nor end the text.
bool isPlainText( QV_STRING *text, const char *alsoAllowed )
{
    QV_CHECK( text );
    QV_INT length = qvStringLength( text );
    if ( length < 1 || length > maxTextLength )
        return false;
    const QV_CHAR *chs = qvStringBacking( text );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        bool innerBlank = chs[idx] == ' ' && idx > 0 && idx < length - 1 && chs[idx - 1] != ' ';
        if ( !isLetter( chs[idx] ) && !isDigit( chs[idx] ) && !innerBlank &&
             !isOneOf( chs[idx], alsoAllowed ) )
            return false;
    }
    return true;
}

bool isNonNegativeInt( QV_STRING *text )
{
    QV_INT value = -1;
    QV_INT consumed = 0;
    return qvStringScanInt( text, 0, -1, 10, &value, &consumed ) && consumed == qvStringLength( text ) &&
           value >= 0;
}

} // namespace

QV_BOOL qvRuntimeValidateProductName( QV_STRING *text )
{
    QV_CHECK( text );
    QV_INT length = qvStringLength( text );
    if ( length < 1 || length > maxProductNameLength )
        return QV_FALSE;
    const QV_CHAR *chs = qvStringBacking( text );
    for ( QV_INT idx = 0; idx < length; idx++ )
    {
        bool lowerCase = chs[idx] >= 'a' && chs[idx] <= 'z';
        if ( !lowerCase && !( isDigit( chs[idx] ) && idx > 0 ) )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_BOOL qvRuntimeValidateProductFriendlyName( QV_STRING *text )
{
    return isPlainText( text, "" );
}

QV_BOOL qvRuntimeValidateProductVersion( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_VECTOR> parts( qvStringSplitChar( text, '.', -1 ) );
    if ( qvVectorLength( parts ) != versionParts )
        return QV_FALSE;
    for ( QV_INT idx = 0; idx < versionParts; idx++ )
    {
        qv::Local<qv___Obj> part( qvVectorObjAt( parts, idx ) );
        if ( !isNonNegativeInt( qvStringFrom( part ) ) )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_BOOL qvRuntimeValidateProductVendorName( QV_STRING *text )
{
    return isPlainText( text, "-" );
}

QV_BOOL qvRuntimeValidateProductCopyright( QV_STRING *text )
{
    return isPlainText( text, ":;(),-.@" );
}

QV_BOOL qvRuntimeValidateModuleName( QV_STRING *text )
{
    return qvModuleNameOk( text );
}
