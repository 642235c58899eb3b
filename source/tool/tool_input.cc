// Names of files, and their bytes.

#include "tool.hh"

#include <qv/charset/qv_charset.h>
#include <qv/io/qv_buffer_byte_source.h>
#include <qv/io/qv_path_file.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// Why a file can't be read; the library tells only that it can't.
std::string reasonFor( const std::string &name )
{
    struct stat status;
    int descriptor = open( name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK );
    if ( descriptor < 0 )
        return std::strerror( errno );
    bool folder = fstat( descriptor, &status ) == 0 && S_ISDIR( status.st_mode );
    close( descriptor );
    return std::strerror( folder ? EISDIR : EIO );
}

bool isRegular( const std::string &name )
{
    struct stat status;
    return stat( name.c_str(), &status ) != 0 || S_ISREG( status.st_mode );
}

// All that a descriptor delivers: standard input, a pipe or a device. Null, with errno set, if reading fails.
tool::Owner<QV_BUFFER> readAll( int descriptor )
{
    tool::Owner buffer( qvBufferCreate() );
    unsigned char bytes[64 * 1024];
    for ( ;; )
    {
        ssize_t count = read( descriptor, bytes, sizeof bytes );
        if ( count < 0 && errno == EINTR )
            continue;
        if ( count < 0 )
            return {};
        if ( count == 0 )
            return buffer;
        qvBufferAppendBytes( buffer.edit(), bytes, count );
    }
}

} // namespace

namespace tool
{

Owner<QV_PATH> pathOf( const std::string &name )
{
    return Owner( qvPathPlatformTryDecode( stringOf( name ) ) );
}

std::string shownName( const std::string &name )
{
    return name == "-" ? "<stdin>" : name;
}

Owner<QV_LOCATION> locationOf( const std::string &name )
{
    return Owner( qvLocationCreateWithDescription( stringOf( shownName( name ) ) ) );
}

Owner<QV_BUFFER> readFile( Tool &tool, const std::string &name )
{
    Owner<QV_BUFFER> buffer;
    if ( name == "-" || !isRegular( name ) )
    {
        int descriptor = name == "-" ? STDIN_FILENO : open( name.c_str(), O_RDONLY | O_CLOEXEC );
        if ( descriptor >= 0 )
            buffer = readAll( descriptor );
        if ( !buffer )
            tool.error( shownName( name ), std::string( "can't read: " ) + std::strerror( errno ) );
        if ( descriptor > STDIN_FILENO )
            close( descriptor );
        return buffer;
    }
    Owner path = pathOf( name );
    if ( path )
        buffer = Owner( qvPathFileReadBuffer( path, -1 ) );
    if ( !buffer )
        tool.error( name, "can't read: " + reasonFor( name ) );
    return buffer;
}

Owner<QV_LOCATION> locateInvalid( QV_BUFFER *buffer, QV_LOCATION *base, QV_INT charset )
{
    Owner bytes( qvBufferByteSourceCreate( buffer ) );
    Owner stream( qvBufferByteSourceByteSource( bytes ) );
    Owner source( qvCharsetCreateCharSource( stream, charset, QV_CHARSET_FLAG_ABORT_ON_INVALID_CHARACTER ) );
    Owner text( qvStringCreate() );
    QV_INT lines = 0;
    QV_INT column = 1;
    QV_CHAR before = 0;
    while ( !qvCharSourceEnd( source ) )
    {
        qvStringClear( text.edit() );
        QV_INT count = qvCharSourceRead( source, text.edit(), 4096 );
        const QV_CHAR *chars = qvStringBacking( text );
        for ( QV_INT idx = 0; idx < count; idx++ )
        {
            bool secondHalf = chars[idx] == '\n' && before == '\r';
            bool line = chars[idx] == '\n' || chars[idx] == '\r' || chars[idx] == 0x85 ||
                        chars[idx] == 0x2028 || chars[idx] == 0x2029;
            lines += line && !secondHalf;
            column = line ? 1 : column + 1;
            before = chars[idx];
        }
    }
    if ( !qvCharSourceError( source ) )
        return {};
    return Owner( qvLocationCreateWithLineOffsetAndColumn( base, lines, column ) );
}

} // namespace tool
