#include <qv/runtime/qv_module_version.hh>

#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/runtime/qv_local.hh>

// glibc's <sys/types.h> may define these as macros.
#undef major
#undef minor

namespace
{

constexpr QV_INT insertRange = 1000;

bool isPair( QV_INT number, QV_INT insert )
{
    return number >= 0 && insert >= 0 && insert < insertRange && QV_INT_MUL_OK( number, insertRange ) &&
           QV_INT_ADD_OK( number * insertRange, insert );
}

QV_INT orderOf( QV_INT a, QV_INT b )
{
    return ( a > b ) - ( a < b );
}

QV_INT qv___ModuleVersionCompareFunc( qvObj thisObj, qvObj thatObj )
{
    QV_MODULE_VERSION *thisVersion = qvModuleVersionFrom( thisObj );
    QV_MODULE_VERSION *thatVersion = qvModuleVersionFrom( thatObj );
    QV_CHECK( thisVersion );
    QV_CHECK( thatVersion );
    QV_INT order = orderOf( thisVersion->major, thatVersion->major );
    order = order ? order : orderOf( thisVersion->majorInsert, thatVersion->majorInsert );
    order = order ? order : orderOf( thisVersion->minor, thatVersion->minor );
    return order ? order : orderOf( thisVersion->minorInsert, thatVersion->minorInsert );
}

void appendPair( QV_STRING **text, QV_INT number, QV_INT insert )
{
    qvStringAppendFormatCstr( text, "%i", -1, number );
    if ( insert != 0 )
    {
        qvStringAppendFormatCstr( text, "#%i", -1, insert );
    }
}

QV_STRING *qv___ModuleVersionToStringFunc( qvObj thisObj )
{
    QV_MODULE_VERSION *thisVersion = qvModuleVersionFrom( thisObj );
    QV_CHECK( thisVersion );
    QV_STRING *text = qvStringCreate();
    appendPair( &text, thisVersion->major, thisVersion->majorInsert );
    qvStringAppendChar( &text, '.' );
    appendPair( &text, thisVersion->minor, thisVersion->minorInsert );
    return text;
}

bool readNumber( QV_STRING *part, QV_INT *number )
{
    QV_INT consumed = 0;
    return qvStringScanInt( part, 0, -1, 10, number, &consumed ) && consumed == qvStringLength( part );
}

// Reads NUMBER[#INSERT].
bool readPair( qvObj part, QV_INT *number, QV_INT *insert )
{
    qv::Local<QV_VECTOR> parts( qvStringSplitChar( qvStringFrom( part ), '#', 2 ) );
    qv::Local<qv___Obj> first( qvVectorObjAt( parts, 0 ) );
    if ( !readNumber( qvStringFrom( first ), number ) )
        return false;
    *insert = 0;
    if ( qvVectorLength( parts ) == 2 )
    {
        qv::Local<qv___Obj> second( qvVectorObjAt( parts, 1 ) );
        if ( !readNumber( qvStringFrom( second ), insert ) )
            return false;
    }
    return isPair( *number, *insert );
}

} // namespace

QV_SORT_DEFINE( QV_MODULE_VERSION, qvModuleVersion,
                { .compareFunc = qv___ModuleVersionCompareFunc,
                  .toStringFunc = qv___ModuleVersionToStringFunc } )

QV_MODULE_VERSION *qvModuleVersionCreate( QV_INT major, QV_INT majorInsert, QV_INT minor, QV_INT minorInsert )
{
    QV_CHECK( isPair( major, majorInsert ) );
    QV_CHECK( isPair( minor, minorInsert ) );
    QV_MODULE_VERSION *version = qv::create<QV_MODULE_VERSION>( qvModuleVersionSort() );
    version->major = major;
    version->majorInsert = majorInsert;
    version->minor = minor;
    version->minorInsert = minorInsert;
    return version;
}

QV_MODULE_VERSION *qvModuleVersionTryCreateFromString( QV_STRING *text )
{
    QV_CHECK( text );
    qv::Local<QV_VECTOR> parts( qvStringSplitChar( text, '.', -1 ) );
    if ( qvVectorLength( parts ) != 2 )
        return nullptr;
    qv::Local<qv___Obj> first( qvVectorObjAt( parts, 0 ) );
    qv::Local<qv___Obj> second( qvVectorObjAt( parts, 1 ) );
    QV_INT major, majorInsert, minor, minorInsert;
    if ( !readPair( first, &major, &majorInsert ) || !readPair( second, &minor, &minorInsert ) )
        return nullptr;
    return qvModuleVersionCreate( major, majorInsert, minor, minorInsert );
}

QV_MODULE_VERSION *qvModuleVersionTryCreateFromCstr( const char *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromCstr( str, length ) );
    return qvModuleVersionTryCreateFromString( text );
}

QV_MODULE_VERSION *qvModuleVersionTryCreateFromWcstr( const wchar_t *str, QV_INT length )
{
    qv::Local<QV_STRING> text( qvStringCreateFromWcstr( str, length ) );
    return qvModuleVersionTryCreateFromString( text );
}

QV_INT qvModuleVersionMajor( QV_MODULE_VERSION *version )
{
    QV_CHECK( version );
    return version->major;
}

QV_INT qvModuleVersionMajorInsert( QV_MODULE_VERSION *version )
{
    QV_CHECK( version );
    return version->majorInsert;
}

QV_INT qvModuleVersionMinor( QV_MODULE_VERSION *version )
{
    QV_CHECK( version );
    return version->minor;
}

QV_INT qvModuleVersionMinorInsert( QV_MODULE_VERSION *version )
{
    QV_CHECK( version );
    return version->minorInsert;
}

QV_INT qvModuleVersionCompatibility( QV_MODULE_VERSION *version )
{
    QV_CHECK( version );
    return version->major * insertRange + version->majorInsert;
}
