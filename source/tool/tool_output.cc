// Results on standard output and in files. A regular file is written beside its place under a name of its own and
// renamed when every byte has reached the disk, so that a failure leaves what stood there before.

#include "tool.hh"

#include <qv/base/qv_boxed_int.h>
#include <qv/io/qv_path_file.h>
#include <qv/io/qv_stream_author.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr size_t heldBytes = 64 * 1024;

// The file that a signal must not leave behind. One output at a time is a file.
char unfinished[PATH_MAX];

void removeUnfinished( int number )
{
    if ( unfinished[0] )
        unlink( unfinished );
    signal( number, SIG_DFL );
    raise( number );
}

void guardUnfinished( const std::string &path )
{
    if ( path.size() >= sizeof unfinished )
        return;
    for ( int number : { SIGINT, SIGTERM, SIGHUP } )
        signal( number, path.empty() ? SIG_DFL : removeUnfinished );
    std::memcpy( unfinished, path.c_str(), path.size() + 1 );
}

// The file behind symbolic links, so that a rename replaces the file and not the link.
std::string resolved( const std::string &name )
{
    char *real = realpath( name.c_str(), nullptr );
    if ( !real )
        return name;
    std::string result = real;
    std::free( real );
    return result;
}

} // namespace

namespace tool
{

Output::Output() : shown( "<stdout>" ), descriptor( STDOUT_FILENO ) {}

Output::Output( const std::string &name ) : shown( name )
{
    if ( name == "-" )
    {
        shown = "<stdout>";
        descriptor = STDOUT_FILENO;
        return;
    }
    std::string place = resolved( name );
    struct stat status;
    if ( stat( place.c_str(), &status ) != 0 )
    {
        openBeside( place );
        return;
    }
    if ( S_ISREG( status.st_mode ) && access( place.c_str(), W_OK ) == 0 )
    {
        openBeside( place );
        // The new file is as open to others as the old one; changing its owner is a privilege that may be missing.
        if ( owned && fchown( descriptor, status.st_uid, status.st_gid ) != 0 )
            errno = 0;
        if ( owned && fchmod( descriptor, status.st_mode & 07777 ) != 0 )
            fail( "chmod" );
        return;
    }
    descriptor = open( place.c_str(), O_WRONLY | O_CLOEXEC );
    owned = descriptor >= 0;
    if ( !owned )
        fail( "open" );
}

Output::~Output()
{
    stream = {};
    if ( owned )
        close( descriptor );
    if ( !temporary.empty() )
    {
        unlink( temporary.c_str() );
        guardUnfinished( "" );
    }
}

void Output::openBeside( const std::string &place )
{
    target = place;
    size_t slash = place.rfind( '/' );
    size_t base = slash == std::string::npos ? 0 : slash + 1;
    temporary = place.substr( 0, base ) + "." + place.substr( base, 200 ) + ".qv-XXXXXX";
    descriptor = mkostemp( temporary.data(), O_CLOEXEC );
    owned = descriptor >= 0;
    if ( !owned )
    {
        temporary.clear();
        fail( "create" );
        return;
    }
    guardUnfinished( temporary );
    mode_t mask = umask( 0 );
    umask( mask );
    if ( fchmod( descriptor, 0666 & ~mask ) != 0 )
        fail( "chmod" );
}

void Output::fail( const char *step )
{
    if ( reason.empty() )
        reason = std::string( "can't " ) + step + ": " + std::strerror( errno );
}

void Output::writeAll( const unsigned char *bytes, size_t count )
{
    while ( count > 0 && isGood() )
    {
        ssize_t written = ::write( descriptor, bytes, count );
        if ( written < 0 && errno == EINTR )
            continue;
        if ( written < 0 )
        {
            fail( "write" );
            return;
        }
        bytes += written;
        count -= static_cast<size_t>( written );
    }
}

void Output::pass()
{
    writeAll( reinterpret_cast<const unsigned char *>( held.data() ), held.size() );
    held.clear();
}

void Output::write( std::string_view text )
{
    if ( !isGood() )
        return;
    held += text;
    if ( held.size() >= heldBytes )
        pass();
}

void Output::write( QV_BUFFER *buffer )
{
    pass();
    writeAll( qvBufferBacking( buffer ), static_cast<size_t>( qvBufferLength( buffer ) ) );
}

QV_BOOL Output::takeBytes( qvObj closure, const unsigned char *bytes, QV_INT count )
{
    auto *output = unboxed<Output>( closure );
    output->writeAll( bytes, static_cast<size_t>( count ) );
    return QV_BOOL_FROM( output->isGood() );
}

QV_BOOL Output::flushBytes( qvObj closure )
{
    return QV_BOOL_FROM( unboxed<Output>( closure )->isGood() );
}

QV_BYTE_SINK *Output::sink()
{
    pass();
    if ( !stream )
    {
        Owner self = boxOf( this );
        stream = Owner( qv___ByteSinkCreate( takeBytes, flushBytes, qvBoxedIntObj( self ) ) );
    }
    return stream;
}

bool Output::finish()
{
    if ( stream && !qvByteSinkFlush( stream ) && isGood() )
        reason = "can't write";
    pass();
    if ( !owned )
        return isGood();
    if ( isGood() && !temporary.empty() && fsync( descriptor ) != 0 )
        fail( "write" );
    if ( close( descriptor ) != 0 )
        fail( "write" );
    owned = false;
    if ( temporary.empty() || !isGood() )
        return isGood();
    Owner from = pathOf( temporary );
    Owner to = pathOf( target );
    if ( !from || !to || !qvPathFileRename( from, to ) )
    {
        fail( "replace" );
        return false;
    }
    temporary.clear();
    guardUnfinished( "" );
    return true;
}

} // namespace tool
