#include <qv/runtime/qv_shared_object.hh>

#include <fcntl.h>
#include <link.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using FileHeader = ElfW( Ehdr );
using ProgramHeader = ElfW( Phdr );

constexpr unsigned char ownClass = sizeof( void * ) == 8 ? ELFCLASS64 : ELFCLASS32;

// A file that is open for reading as long as this lives.
class OpenFile
{
  public:
    explicit OpenFile( const char *file ) : descriptor( open( file, O_RDONLY | O_CLOEXEC | O_NONBLOCK ) )
    {
        struct stat status;
        bool isRegular = descriptor >= 0 && fstat( descriptor, &status ) == 0 && S_ISREG( status.st_mode );
        size = isRegular ? static_cast<uint64_t>( status.st_size ) : 0;
    }
    OpenFile( const OpenFile & ) = delete;
    OpenFile &operator=( const OpenFile & ) = delete;

    ~OpenFile()
    {
        if ( descriptor >= 0 )
        {
            close( descriptor );
        }
    }

    template <typename Record> bool read( uint64_t offset, Record *record ) const
    {
        ssize_t length = holds( offset, sizeof( *record ) )
                             ? pread( descriptor, record, sizeof( *record ), static_cast<off_t>( offset ) )
                             : -1;
        return length == static_cast<ssize_t>( sizeof( *record ) );
    }

    bool holds( uint64_t offset, uint64_t length ) const
    {
        return offset <= size && length <= size - offset;
    }

  private:
    int descriptor;
    uint64_t size;
};

bool isOwnKind( const FileHeader &header )
{
    return memcmp( header.e_ident, ELFMAG, SELFMAG ) == 0 && header.e_ident[EI_CLASS] == ownClass &&
           header.e_type == ET_DYN && header.e_phentsize == sizeof( ProgramHeader );
}

bool isSegmentWhole( const OpenFile &file, uint64_t offset )
{
    ProgramHeader segment;
    return file.read( offset, &segment ) &&
           ( segment.p_type == PT_NULL || file.holds( segment.p_offset, segment.p_filesz ) );
}

} // namespace

bool qv::isSharedObjectCut( const char *name )
{
    OpenFile file( name );
    FileHeader header;
    if ( !file.read( 0, &header ) || !isOwnKind( header ) )
        return false;
    for ( uint64_t idx = 0; idx < header.e_phnum; idx++ )
    {
        if ( !isSegmentWhole( file, header.e_phoff + idx * sizeof( ProgramHeader ) ) )
            return true;
    }
    return false;
}
