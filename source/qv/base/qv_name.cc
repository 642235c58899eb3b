#include <qv/base/qv_name.h>

#include <qv/base/qv_string.hh>
#include <qv/sys/qv_check.hh>

namespace
{

constexpr QV_INT privateRun = 3;

bool isCapital( QV_CHAR ch )
{
    return ch >= 'A' && ch <= 'Z';
}

bool isSmall( QV_CHAR ch )
{
    return ch >= 'a' && ch <= 'z';
}

bool isDigit( QV_CHAR ch )
{
    return ch >= '0' && ch <= '9';
}

// The number of "_" from idx on.
QV_INT underscoresAt( const QV_CHAR *name, QV_INT length, QV_INT idx )
{
    QV_INT end = idx;
    while ( end < length && name[end] == '_' )
    {
        end++;
    }
    return end - idx;
}

bool upperCaseOk( const QV_CHAR *name, QV_INT length, bool allowPrivate )
{
    if ( length == 0 || !isCapital( name[0] ) )
        return false;
    QV_INT separators = 0;
    QV_INT idx = 0;
    while ( idx < length )
    {
        if ( isCapital( name[idx] ) || isDigit( name[idx] ) )
        {
            idx++;
            continue;
        }
        QV_INT run = underscoresAt( name, length, idx );
        bool isSeparator = run == 1 || ( run == privateRun && allowPrivate && separators < 2 );
        if ( !isSeparator || idx + run == length )
            return false;
        separators++;
        idx += run;
    }
    return true;
}

bool camelCaseOk( const QV_CHAR *name, QV_INT length, bool allowPrivate )
{
    if ( length == 0 || isCapital( name[0] ) || isDigit( name[0] ) )
        return false;
    QV_INT capitals = 0;
    bool hasPrivate = false;
    QV_INT idx = 0;
    while ( idx < length )
    {
        if ( isSmall( name[idx] ) || isCapital( name[idx] ) || isDigit( name[idx] ) )
        {
            capitals += isCapital( name[idx] );
            idx++;
            continue;
        }
        QV_INT run = underscoresAt( name, length, idx );
        if ( run != privateRun || !allowPrivate || hasPrivate || capitals >= 2 )
            return false;
        if ( idx + run == length || !isCapital( name[idx + run] ) )
            return false;
        hasPrivate = true;
        idx += run;
    }
    return true;
}

} // namespace

QV_BOOL qvNameUpperCaseOk( QV_STRING *qvs, QV_BOOL allowPrivate )
{
    QV_CHECK( qvs );
    return QV_BOOL_FROM( upperCaseOk( qv::stringBacking( qvs ), qv::stringLength( qvs ), allowPrivate ) );
}

QV_BOOL qvNameCamelCaseOk( QV_STRING *qvs, QV_BOOL allowPrivate )
{
    QV_CHECK( qvs );
    return QV_BOOL_FROM( camelCaseOk( qv::stringBacking( qvs ), qv::stringLength( qvs ), allowPrivate ) );
}

QV_BOOL qvNameOk( QV_STRING *qvs, QV_BOOL allowPrivate )
{
    return QV_BOOL_FROM( qvNameUpperCaseOk( qvs, allowPrivate ) || qvNameCamelCaseOk( qvs, allowPrivate ) );
}

QV_BOOL qvNamePrivate( QV_STRING *qvs )
{
    QV_CHECK( qvNameOk( qvs, QV_TRUE ) );
    return QV_BOOL_FROM( !qvNameOk( qvs, QV_FALSE ) );
}
