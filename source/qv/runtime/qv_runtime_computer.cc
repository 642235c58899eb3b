#include <qv/runtime/qv_runtime_info.hh>

#include <string.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <qv/base/qv_buffer.h>
#include <qv/base/qv_on_demand.hh>
#include <qv/base/qv_string.h>
#include <qv/base/qv_vector.h>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_line_source.h>
#include <qv/io/qv_nlf_flags.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_path_file.h>
#include <qv/runtime/qv_local.hh>

namespace
{

constexpr QV_INT allNewLines = 255;

// Read from the system by the first who asks: the files cost more than the start of many another component.
constinit qv::OnDemand computerInfo = {};
constinit QV_STRING *qv___RuntimeOperatingSystemInfo = nullptr;
constinit QV_STRING *qv___RuntimeCpuInfo = nullptr;
constinit QV_STRING *qv___RuntimeComputerName = nullptr;

void retireOptional( QV_STRING **global )
{
    qv::releaseOptional( *global );
    *global = reinterpret_cast<QV_STRING *>( static_cast<intptr_t>( -1 ) );
}

// The lines of a text file, none if it can't be read.
QV_VECTOR *linesOfFile( const char *name )
{
    qv::Local<QV_PATH> path( qvPathTryDecodeCstr( name, -1 ) );
    qv::Local<QV_LINE_SOURCE> source( qvPathFileOpenLineSource( path, QV_CHARSET_ASCII, 0, allNewLines ) );
    return source ? qvLineSourceReadLines( source, -1 ) : qvVectorCreate();
}

// The text behind the first ": " of a line, trimmed, or null. A colon at the very beginning doesn't count.
QV_STRING *valueOfLine( QV_STRING *line )
{
    QV_INT colon = qvStringFindCstr( line, 0, ": ", -1 );
    if ( colon < 1 )
        return nullptr;
    QV_STRING *value = qvStringCreateFromOuter( line, 0, colon + 2 );
    qvStringTrim( &value );
    return value;
}

// The value of the first line that begins with a word and has one, or null.
QV_STRING *valueOfWord( QV_VECTOR *lines, const char *word )
{
    for ( QV_INT idx = 0; idx < qvVectorLength( lines ); idx++ )
    {
        qv::Local<QV_STRING> line( qvStringFrom( qvVectorObjAt( lines, idx ) ) );
        QV_STRING *value = qvStringBeginsWithCstr( line, word, -1 ) ? valueOfLine( line ) : nullptr;
        if ( value )
            return value;
    }
    return nullptr;
}

QV_STRING *cpuText( QV_STRING *model, QV_STRING *hardware, QV_STRING *revision )
{
    if ( model && hardware )
        return revision ? qvStringCreateFromFormatCstr( "%s / %s (%s)", -1, model, hardware, revision )
                        : qvStringCreateFromFormatCstr( "%s / %s", -1, model, hardware );
    if ( model )
        return qv::retained( model );
    if ( hardware )
        return revision ? qvStringCreateFromFormatCstr( "%s (%s)", -1, hardware, revision )
                        : qv::retained( hardware );
    return qvStringCreateFromCstr( "CPU unknown", -1 );
}

// Which Debian the system is, or goes back to; null on others.
QV_STRING *debianVersion()
{
    qv::Local<QV_PATH> path( qvPathTryDecodeCstr( "/etc/debian_version", -1 ) );
    qv::Local<QV_BUFFER> bytes( qvPathFileReadBuffer( path, -1 ) );
    if ( !bytes )
        return nullptr;
    qv::Local<QV_STRING> text( qvStringCreateFromUtf8(
        reinterpret_cast<const char *>( qvBufferBacking( bytes ) ), qvBufferLength( bytes ) ) );
    qvStringTrim( text.edit() );
    return qvStringLength( text ) > 0 ? text.give() : nullptr;
}

} // namespace

QV_STRING *qv::cpuInfoOfLines( QV_VECTOR *lines, QV_INT coresCount )
{
    Local<QV_STRING> model( valueOfWord( lines, "model name" ) );
    Local<QV_STRING> hardware( valueOfWord( lines, "Hardware" ) );
    Local<QV_STRING> revision( valueOfWord( lines, "Revision" ) );
    QV_STRING *info = cpuText( model, hardware, revision );
    if ( coresCount > 0 )
    {
        qvStringAppendFormatCstr( &info, ", cores:%i", -1, coresCount );
    }
    return info;
}

static void readComputerInfo()
{
    struct utsname names;
    if ( uname( &names ) == 0 )
    {
        qv___RuntimeOperatingSystemInfo =
            qvStringCreateFromFormatCstr( "%lc, %lc, %lc", -1, names.release, names.version, names.machine );
    }
    qv::Local<QV_VECTOR> lines( linesOfFile( "/proc/cpuinfo" ) );
    qv___RuntimeCpuInfo = qv::cpuInfoOfLines( lines, sysconf( _SC_NPROCESSORS_ONLN ) );
    qv::Local<QV_STRING> debian( debianVersion() );
    if ( debian )
        qv::replaceWith( &qv___RuntimeOperatingSystemInfo,
                         qvStringCreateFromFormatCstr( "%s [%s]", -1, static_cast<QV_STRING *>( debian ),
                                                       qv___RuntimeOperatingSystemInfo ) );
}

void qv___RuntimeComputerInfoStartup()
{
    qv___RuntimeOperatingSystemInfo = nullptr;
    qv___RuntimeCpuInfo = nullptr;
    computerInfo.startup();
}

void qv___RuntimeComputerInfoShutdown()
{
    retireOptional( &qv___RuntimeCpuInfo );
    retireOptional( &qv___RuntimeOperatingSystemInfo );
    computerInfo.shutdown();
}

void qv___RuntimeComputerNameStartup()
{
    char name[256];
    bool known = gethostname( name, sizeof( name ) ) == 0;
    name[sizeof( name ) - 1] = 0;
    qv___RuntimeComputerName = known ? qvStringCreateFromCstr( name, -1 ) : nullptr;
}

void qv___RuntimeComputerNameShutdown()
{
    retireOptional( &qv___RuntimeComputerName );
}

QV_STRING *qvRuntimeOperatingSystemInfo( void )
{
    computerInfo.ensure( readComputerInfo );
    return qv::retainedOptional( qv___RuntimeOperatingSystemInfo );
}

QV_STRING *qvRuntimeCpuInfo( void )
{
    computerInfo.ensure( readComputerInfo );
    return qv::retainedOptional( qv___RuntimeCpuInfo );
}

QV_STRING *qvRuntimeComputerName( void )
{
    return qv::retainedOptional( qv___RuntimeComputerName );
}

QV_BOOL qvRuntimeHasOperatingSystemInfo( void )
{
    computerInfo.ensure( readComputerInfo );
    return QV_BOOL_FROM( qv___RuntimeOperatingSystemInfo );
}

QV_BOOL qvRuntimeHasCpuInfo( void )
{
    computerInfo.ensure( readComputerInfo );
    return QV_BOOL_FROM( qv___RuntimeCpuInfo );
}

QV_BOOL qvRuntimeHasComputerName( void )
{
    return QV_BOOL_FROM( qv___RuntimeComputerName );
}
