#include <qv/io/qv_path_platform.hh>

#include <qv/base/qv_boxed_pointer.hh>
#include <qv/base/qv_string.h>
#include <qv/base/qv_time.h>
#include <qv/base/qv_vector.hh>
#include <qv/io/qv_byte_source.hh>
#include <qv/io/qv_path.h>
#include <qv/io/qv_stat.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace
{

// A path or string as the zero-terminated bytes that the system takes; null if the path has no such text.
class SystemText
{
  public:
    explicit SystemText( QV_STRING *text ) : bytes_( convert( text ) ) {}
    explicit SystemText( QV_PATH *path )
    {
        qv::Local<QV_STRING> text( qvPathUnixTryEncode( path ) );
        bytes_ = convert( text );
    }
    SystemText( const SystemText & ) = delete;
    SystemText &operator=( const SystemText & ) = delete;

    ~SystemText()
    {
        qvMemFree( bytes_ );
    }

    operator const char *() const
    {
        return bytes_;
    }

  private:
    static char *convert( QV_STRING *text )
    {
        return text ? qvStringConvertToCstr( text, QV_TRUE, nullptr ) : nullptr;
    }

    char *bytes_;
};

bool isDirectory( const char *text )
{
    struct stat status;
    return ::stat( text, &status ) == 0 && S_ISDIR( status.st_mode );
}

QV_BOOL renameTo( QV_PATH *path, QV_PATH *newPath )
{
    SystemText text( path );
    SystemText newText( newPath );
    return text && newText && std::rename( text, newText ) == 0;
}

// ---- File streams ----

// An open file. Its buffer is larger than the system library's own, which saves system calls on small reads and writes.
struct OpenFile
{
    FILE *stream;
    char buffer[65536];
};

// The most bytes of one read or write: the system refuses sizes that lead beyond the address space.
constexpr QV_INT maxPiece = 0x1000000;

void closeFile( void *value )
{
    auto *file = static_cast<OpenFile *>( value );
    std::fclose( file->stream );
    qvMemFree( file );
}

FILE *streamOf( qvObj closure )
{
    void *value = qv___BoxedPointerValue( static_cast<QV___BOXED_POINTER *>( closure ) );
    return static_cast<OpenFile *>( value )->stream;
}

// The closure of a file's streams, or null. The file closes when the closure goes.
QV___BOXED_POINTER *openFile( QV_PATH *path, const char *mode )
{
    SystemText text( path );
    FILE *stream = text ? std::fopen( text, mode ) : nullptr;
    if ( !stream )
        return nullptr;
    auto *file = static_cast<OpenFile *>( qvMemAlloc( sizeof( OpenFile ) ) );
    file->stream = stream;
    std::setvbuf( stream, file->buffer, _IOFBF, sizeof( file->buffer ) );
    return qv___BoxedPointerCreate( file, closeFile );
}

QV_BOOL readFile( qvObj closure, unsigned char *bytes, QV_INT maxByteCount, QV_INT *bytesRead )
{
    FILE *stream = streamOf( closure );
    QV_INT total = 0;
    while ( total < maxByteCount )
    {
        QV_INT piece = std::min( maxByteCount - total, maxPiece );
        auto count =
            static_cast<QV_INT>( std::fread( bytes + total, 1, static_cast<size_t>( piece ), stream ) );
        total += count;
        if ( count < piece )
            break;
    }
    *bytesRead = total;
    return !std::ferror( stream );
}

QV_BOOL skipFile( qvObj closure, QV_INT maxByteCount, QV_INT *bytesSkipped )
{
    FILE *stream = streamOf( closure );
    unsigned char discarded[1024];
    QV_INT total = 0;
    while ( total < maxByteCount )
    {
        QV_INT piece = std::min( maxByteCount - total, static_cast<QV_INT>( sizeof( discarded ) ) );
        auto count = static_cast<QV_INT>( std::fread( discarded, 1, static_cast<size_t>( piece ), stream ) );
        total += count;
        if ( count < piece )
            break;
    }
    *bytesSkipped = total;
    return !std::ferror( stream );
}

QV_BOOL writeFile( qvObj closure, const unsigned char *bytes, QV_INT byteCount )
{
    FILE *stream = streamOf( closure );
    QV_INT total = 0;
    while ( total < byteCount )
    {
        QV_INT piece = std::min( byteCount - total, maxPiece );
        auto count =
            static_cast<QV_INT>( std::fwrite( bytes + total, 1, static_cast<size_t>( piece ), stream ) );
        total += count;
        if ( count < piece )
            return QV_FALSE;
    }
    return QV_TRUE;
}

QV_BOOL flushFile( qvObj closure )
{
    FILE *stream = streamOf( closure );
    return std::fflush( stream ) == 0 && ::fsync( ::fileno( stream ) ) == 0;
}

// ---- Directories ----

// A directory that is open for listing; closes at the end of the block.
class OpenDirectory
{
  public:
    explicit OpenDirectory( const char *text ) : dir_( text ? ::opendir( text ) : nullptr ) {}
    OpenDirectory( const OpenDirectory & ) = delete;
    OpenDirectory &operator=( const OpenDirectory & ) = delete;

    ~OpenDirectory()
    {
        if ( dir_ )
            ::closedir( dir_ );
    }

    explicit operator bool() const
    {
        return dir_;
    }

    // The next entry but "." and "..", or null.
    const dirent *next()
    {
        const dirent *entry = ::readdir( dir_ );
        while ( entry && isDots( entry->d_name ) )
        {
            entry = ::readdir( dir_ );
        }
        return entry;
    }

  private:
    static bool isDots( const char *name )
    {
        return name[0] == '.' && ( name[1] == 0 || ( name[1] == '.' && name[2] == 0 ) );
    }

    DIR *dir_;
};

// Symbolic links count as files, unless the file system doesn't tell types.
bool entryIsDirectory( const char *directoryText, const dirent *entry )
{
    if ( entry->d_type != DT_UNKNOWN )
        return entry->d_type == DT_DIR;
    qv::Local<QV_STRING> name( qvStringCreateFromFormatCstr( "%lc/%lc", -1, directoryText, entry->d_name ) );
    SystemText text( name );
    return text && isDirectory( text );
}

} // namespace

QV_BOOL qv___IoPlatformFileExists( QV_PATH *path )
{
    SystemText text( path );
    struct stat status;
    return text && ::stat( text, &status ) == 0;
}

QV_BYTE_SOURCE *qv___IoPlatformFileOpenByteSource( QV_PATH *path )
{
    qv::Local<QV___BOXED_POINTER> file( openFile( path, "rb" ) );
    if ( !file )
        return nullptr;
    QV_BYTE_SOURCE *src = qv___ByteSourceCreate( readFile, skipFile, qv::objOf<QV___BOXED_POINTER>( file ) );
    return qv::byteSourceWithChunk( src, sizeof( OpenFile::buffer ) );
}

QV_BYTE_SINK *qv___IoPlatformFileOpenByteSink( QV_PATH *path )
{
    qv::Local<QV___BOXED_POINTER> file( openFile( path, "wb" ) );
    return file ? qv___ByteSinkCreate( writeFile, flushFile, qv::objOf<QV___BOXED_POINTER>( file ) )
                : nullptr;
}

QV_BOOL qv___IoPlatformFileRename( QV_PATH *path, QV_PATH *newPath )
{
    return renameTo( path, newPath );
}

QV_BOOL qv___IoPlatformFileDelete( QV_PATH *path )
{
    SystemText text( path );
    return text && ::unlink( text ) == 0;
}

QV_BOOL qv___IoPlatformDirectoryExists( QV_PATH *path )
{
    SystemText text( path );
    return text && isDirectory( text );
}

QV_BOOL qv___IoPlatformDirectoryCreate( QV_PATH *path )
{
    SystemText text( path );
    return text && ::mkdir( text, 0711 ) == 0;
}

QV_BOOL qv___IoPlatformDirectoryRename( QV_PATH *path, QV_PATH *newPath )
{
    return renameTo( path, newPath );
}

QV_BOOL qv___IoPlatformDirectoryDelete( QV_PATH *path )
{
    SystemText text( path );
    return text && ::rmdir( text ) == 0;
}

QV_VECTOR *qv___IoPlatformDirectoryList( QV_PATH *path, QV_PATH_DIRECTORY_LIST_FLAGS flags )
{
    QV_CHECK( flags & QV_PATH_DIRECTORY_LIST_FLAG_RELATIVE );
    QV_CHECK( !( flags & QV_PATH_DIRECTORY_LIST_FLAG_RECURSIVE ) );
    QV_CHECK( !( flags & QV_PATH_DIRECTORY_LIST_FLAG_SORT ) );
    SystemText text( path );
    OpenDirectory directory( text );
    if ( !directory )
        return nullptr;

    qv::Local<QV_VECTOR> list( qvVectorCreate() );
    while ( const dirent *entry = directory.next() )
    {
        bool isDir = entryIsDirectory( text, entry );
        QV_INT exclude = isDir ? QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_DIRECTORIES
                               : QV_PATH_DIRECTORY_LIST_FLAG_EXCLUDE_FILES;
        if ( flags & exclude )
            continue;
        QV_PATH *entryPath = qvPathCreate();
        if ( isDir )
            qvPathAppendComponentDirectoryCstr( &entryPath, entry->d_name, -1 );
        else
            qvPathAppendComponentFilenameCstr( &entryPath, entry->d_name, -1 );
        qv::vectorAppendGiven( list.edit(), qv::objOf( entryPath ) );
    }
    return list.give();
}

QV_STAT *qv___IoPlatformStat( QV_PATH *path )
{
    SystemText text( path );
    struct stat status;
    if ( !text || ::stat( text, &status ) != 0 )
        return nullptr;
    if ( ( qvPathFlags( path ) & QV_PATH_FLAG_DIRECTORY ) && !S_ISDIR( status.st_mode ) )
        return nullptr;

    qv::Local<QV_STAT> result( qvStatCreate() );
    if ( S_ISREG( status.st_mode ) )
        qvStatSetSize( result.edit(), status.st_size );
    QV_INT seconds = status.st_mtime;
    qv::Local<QV_TIME> modificationTime;
    if ( qvTimeTryConvertFromTimeT( modificationTime.edit(), &seconds ) )
        qvStatSetModificationTime( result.edit(), modificationTime );
    return result.give();
}

QV_STAT_FILESYSTEM *qv___IoPlatformStatFilesystem( QV_PATH *path )
{
    SystemText text( path );
    struct statvfs status;
    if ( !text || ::statvfs( text, &status ) != 0 )
        return nullptr;
    QV_INT size;
    QV_INT availableSize;
    if ( __builtin_mul_overflow( status.f_frsize, status.f_blocks, &size ) ||
         __builtin_mul_overflow( status.f_frsize, status.f_bfree, &availableSize ) )
        return nullptr;
    return qvStatFilesystemCreate( size, availableSize );
}
