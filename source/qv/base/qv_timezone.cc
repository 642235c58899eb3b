#include <qv/base/qv_timezone.hh>

#include <qv/base/qv_dict.hh>
#include <qv/base/qv_on_demand.hh>
#include <qv/base/qv_string.hh>
#include <qv/base/qv_vector.hh>
#include <qv/runtime/qv_local.hh>

#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <unistd.h>

constinit const char *qv___TimezoneRoot = "";

namespace
{

// From startup to shutdown, filled by the first lookup.
constinit qv::OnDemand names = {};
constinit QV_DICT *winToIanaDict = nullptr;
constinit QV_DICT *ianaToWinDict = nullptr;

constexpr QV_INT maxOffset = 86400;
constexpr size_t maxNameLength = 128;
constexpr char tokenEnds[] = " \t\n";

struct ZoneName
{
    char chars[maxNameLength + 1];
};

// A system file that is read by lines. Of a longer line each piece counts as a line of its own.
class SystemFile
{
  public:
    explicit SystemFile( const char *name )
    {
        char path[PATH_MAX];
        int length = std::snprintf( path, sizeof path, "%s%s", qv___TimezoneRoot, name );
        if ( length > 0 && length < PATH_MAX )
            file_ = std::fopen( path, "re" );
    }
    SystemFile( const SystemFile & ) = delete;
    SystemFile &operator=( const SystemFile & ) = delete;

    ~SystemFile()
    {
        if ( file_ )
            std::fclose( file_ );
    }

    bool isOpen() const
    {
        return file_ != nullptr;
    }

    // The next line, good until the next call; null at the end.
    char *readLine()
    {
        return std::fgets( line_, sizeof line_, file_ );
    }

  private:
    FILE *file_ = nullptr;
    char line_[maxNameLength];
};

// Copies the first token of a text without the characters that are dropped; false if nothing is left of it.
bool takeToken( const char *text, char dropped, ZoneName *name )
{
    const char *token = text + std::strspn( text, tokenEnds );
    size_t tokenLength = std::strcspn( token, tokenEnds );
    size_t length = 0;
    for ( size_t idx = 0; idx < tokenLength; idx++ )
    {
        if ( token[idx] != dropped )
            name->chars[length++] = token[idx];
    }
    name->chars[length] = '\0';
    return length > 0;
}

// False only if the file can't be opened: a file without a name says that there is none.
bool readNameFile( const char *path, ZoneName *name )
{
    SystemFile file( path );
    if ( !file.isOpen() )
        return false;
    name->chars[0] = '\0';
    while ( const char *line = file.readLine() )
    {
        ZoneName candidate;
        if ( takeToken( line, '\0', &candidate ) && candidate.chars[0] != '#' )
            *name = candidate;
    }
    return true;
}

// The first line with the key decides, also when it has no value.
bool readKey( const char *path, const char *key, ZoneName *name )
{
    SystemFile file( path );
    while ( char *line = file.isOpen() ? file.readLine() : nullptr )
    {
        char *assignment = std::strchr( line, '=' );
        if ( !assignment )
            continue;
        *assignment = '\0';
        if ( std::strcmp( line, key ) == 0 )
            return takeToken( assignment + 1, '"', name );
    }
    return false;
}

bool readLink( const char *path, ZoneName *name )
{
    constexpr char zoneFolder[] = "/usr/share/zoneinfo/";
    char link[PATH_MAX];
    int linkLength = std::snprintf( link, sizeof link, "%s%s", qv___TimezoneRoot, path );
    if ( linkLength < 0 || linkLength >= PATH_MAX )
        return false;
    char target[4096];
    ssize_t length = readlink( link, target, sizeof target );
    if ( length < 0 || length == sizeof target )
        return false;
    target[length] = '\0';
    const char *folder = std::strstr( target, zoneFolder );
    if ( !folder )
        return false;
    const char *zone = folder + sizeof zoneFolder - 1;
    size_t zoneLength = std::strlen( zone );
    if ( zoneLength > maxNameLength )
        return false;
    std::memcpy( name->chars, zone, zoneLength + 1 );
    return true;
}

bool findName( ZoneName *name )
{
    return readNameFile( "/etc/timezone", name ) || readKey( "/etc/sysconfig/clock", "ZONE", name ) ||
           readKey( "/etc/TIMEZONE", "TZ", name ) || readLink( "/etc/localtime", name );
}

void addPair( QV_STRING *windows, QV_STRING *iana )
{
    if ( !qvDictHasStringKey( ianaToWinDict, iana ) )
        qvDictSetStringKey( &ianaToWinDict, iana, qvStringObj( windows ) );
    if ( !qvDictHasStringKey( winToIanaDict, windows ) )
        qvDictSetStringKey( &winToIanaDict, windows, qvStringObj( iana ) );
}

void addNames( const qv::TimezoneNames &row )
{
    qv::Local<QV_STRING> windows( qvStringCreateFromCstr( row.windows, -1 ) );
    const char *iana = row.iana;
    for ( ;; )
    {
        size_t length = std::strcspn( iana, "," );
        addPair( windows,
                 qv::Local<QV_STRING>( qvStringCreateFromCstr( iana, static_cast<QV_INT>( length ) ) ) );
        if ( iana[length] == '\0' )
            return;
        iana += length + 1;
    }
}

void fillNames()
{
    for ( QV_INT idx = 0; idx < qv::timezoneNamesLength; idx++ )
    {
        addNames( qv::timezoneNames[idx] );
    }
}

QV_DICT *windowsNames()
{
    names.ensure( fillNames );
    return winToIanaDict;
}

QV_DICT *ianaNames()
{
    names.ensure( fillNames );
    return ianaToWinDict;
}

} // namespace

QV_STRING *qvTimezone( void )
{
    ZoneName name;
    return findName( &name ) ? qvStringCreateFromCstr( name.chars, -1 ) : qvStringCreate();
}

QV_INT qvTimezoneUtcOffset( void )
{
    time_t now = std::time( nullptr );
    struct tm local;
    if ( now == static_cast<time_t>( -1 ) || !localtime_r( &now, &local ) )
        return 0;
    QV_INT offset = local.tm_gmtoff;
    return offset >= -maxOffset && offset <= maxOffset ? offset : 0;
}

QV_STRING *qvTimezoneWindowsToIana( QV_STRING *name )
{
    QV_CHECK( name );
    return qvStringFrom( qvDictStringKey( windowsNames(), name ) );
}

QV_STRING *qvTimezoneIanaToWindows( QV_STRING *name )
{
    QV_CHECK( name );
    return qvStringFrom( qvDictStringKey( ianaNames(), name ) );
}

QV_BOOL qvTimezoneWindowsOk( QV_STRING *name )
{
    QV_CHECK( name );
    return qvDictHasStringKey( windowsNames(), name );
}

QV_BOOL qvTimezoneIanaOk( QV_STRING *name )
{
    QV_CHECK( name );
    return qvDictHasStringKey( ianaNames(), name );
}

QV_VECTOR *qvTimezoneList( void )
{
    return qvDictKeysVector( ianaNames() );
}

void qv___TimezoneStartup()
{
    winToIanaDict = qvDictCreate();
    ianaToWinDict = qvDictCreate();
    names.startup();
    // localtime_r need not read the zone by itself.
    tzset();
}

void qv___TimezoneShutdown()
{
    names.shutdown();
    qv::retire( &ianaToWinDict );
    qv::retire( &winToIanaDict );
}
