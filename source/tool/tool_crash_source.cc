// Function names and source lines of call stacks. The platform's own program for that reads the debug information.

#include "tool_crash.hh"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using tool::Frame;
using tool::Lookup;
using tool::SourceLine;

// ---- Lines of a stack ----

// As the platform prints it: nothing is "0".
bool readHex( std::string_view text, uint64_t &number )
{
    number = 0;
    if ( !text.starts_with( "0x" ) )
        return text == "0";
    const char *end = text.data() + text.size();
    std::from_chars_result read = std::from_chars( text.data() + 2, end, number, 16 );
    return read.ec == std::errc() && read.ptr == end;
}

// What stands in the parentheses: a symbol, an offset, both or nothing.
bool readInner( std::string_view inner, Frame &frame )
{
    size_t plus = inner.rfind( '+' );
    if ( plus == std::string_view::npos )
        return inner.empty();
    frame.symbol = inner.substr( 0, plus );
    frame.hasOffset = readHex( inner.substr( plus + 1 ), frame.offset );
    return frame.hasOffset;
}

// ---- Symbols of a module ----

class Descriptor
{
  public:
    explicit Descriptor( int opened ) : number( opened ) {}
    Descriptor( const Descriptor & ) = delete;
    Descriptor &operator=( const Descriptor & ) = delete;
    ~Descriptor()
    {
        close();
    }
    void close()
    {
        if ( number >= 0 )
            ::close( number );
        number = -1;
    }
    operator int() const
    {
        return number;
    }

  private:
    int number;
};

// Size bytes at a place of a file. Empty if they aren't there: nothing in the file is trusted.
template <typename T> std::vector<T> readTable( int file, uint64_t place, uint64_t size )
{
    constexpr uint64_t largest = 1u << 30;
    std::vector<T> table;
    struct stat status;
    if ( size > largest || fstat( file, &status ) != 0 || place > static_cast<uint64_t>( status.st_size ) ||
         size > static_cast<uint64_t>( status.st_size ) - place )
        return table;
    table.resize( size / sizeof( T ) );
    size_t bytes = table.size() * sizeof( T );
    if ( pread( file, table.data(), bytes, static_cast<off_t>( place ) ) != static_cast<ssize_t>( bytes ) )
        table.clear();
    return table;
}

template <typename HEADER, typename SECTION, typename SYMBOL>
std::optional<uint64_t> symbolValueIn( int file, std::string_view name )
{
    std::vector<HEADER> header = readTable<HEADER>( file, 0, sizeof( HEADER ) );
    if ( header.empty() || header[0].e_shentsize != sizeof( SECTION ) )
        return std::nullopt;
    std::vector<SECTION> sections =
        readTable<SECTION>( file, header[0].e_shoff, uint64_t{ header[0].e_shnum } * sizeof( SECTION ) );
    for ( const SECTION &section : sections )
    {
        if ( ( section.sh_type != SHT_DYNSYM && section.sh_type != SHT_SYMTAB ) ||
             section.sh_link >= sections.size() )
            continue;
        const SECTION &names = sections[section.sh_link];
        std::vector<char> texts = readTable<char>( file, names.sh_offset, names.sh_size );
        for ( const SYMBOL &symbol : readTable<SYMBOL>( file, section.sh_offset, section.sh_size ) )
        {
            size_t room = symbol.st_name < texts.size() ? texts.size() - symbol.st_name : 0;
            if ( symbol.st_shndx != SHN_UNDEF && room > name.size() &&
                 std::memcmp( &texts[symbol.st_name], name.data(), name.size() ) == 0 &&
                 texts[symbol.st_name + name.size()] == 0 )
                return symbol.st_value;
        }
    }
    return std::nullopt;
}

// A program or library on this machine.
struct Module
{
    std::string path;
    unsigned char width = ELFCLASSNONE;

    bool isThere() const
    {
        return width == ELFCLASS32 || width == ELFCLASS64;
    }

    std::optional<uint64_t> symbolValue( std::string_view name ) const
    {
        Descriptor file( open( path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK ) );
        return width == ELFCLASS64 ? symbolValueIn<Elf64_Ehdr, Elf64_Shdr, Elf64_Sym>( file, name )
                                   : symbolValueIn<Elf32_Ehdr, Elf32_Shdr, Elf32_Sym>( file, name );
    }
};

Module moduleOf( const std::string &path )
{
    Descriptor file( open( path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK ) );
    std::vector<unsigned char> start = readTable<unsigned char>( file, 0, EI_NIDENT );
    bool elf = !start.empty() && std::memcmp( start.data(), ELFMAG, SELFMAG ) == 0;
    return { path, elf ? start[EI_CLASS] : static_cast<unsigned char>( ELFCLASSNONE ) };
}

// ---- The program ----

// Runs a program without a shell and takes what it prints. The result is an error number.
int run( std::vector<std::string> arguments, std::string &printed )
{
    std::vector<char *> argv;
    for ( std::string &argument : arguments )
        argv.push_back( argument.data() );
    argv.push_back( nullptr );
    int ends[2];
    if ( pipe2( ends, O_CLOEXEC ) != 0 )
        return errno;
    Descriptor reading( ends[0] );
    Descriptor writing( ends[1] );
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init( &actions );
    posix_spawn_file_actions_addopen( &actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0 );
    posix_spawn_file_actions_adddup2( &actions, writing, STDOUT_FILENO );
    posix_spawn_file_actions_addopen( &actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0 );
    pid_t child = 0;
    int failure = posix_spawnp( &child, argv[0], &actions, nullptr, argv.data(), environ );
    posix_spawn_file_actions_destroy( &actions );
    if ( failure != 0 )
        return failure;
    writing.close();
    char block[4096];
    for ( ;; )
    {
        ssize_t length = read( reading, block, sizeof block );
        if ( length < 0 && errno == EINTR )
            continue;
        if ( length <= 0 )
            break;
        printed.append( block, static_cast<size_t>( length ) );
    }
    int status = 0;
    while ( waitpid( child, &status, 0 ) < 0 && errno == EINTR )
    {
    }
    return status == 0 ? 0 : EIO;
}

std::string hex( uint64_t number )
{
    char digits[16];
    std::to_chars_result end = std::to_chars( digits, digits + sizeof digits, number, 16 );
    return "0x" + std::string( digits, end.ptr );
}

std::string nextLine( std::string_view &text )
{
    size_t end = std::min( text.find( '\n' ), text.size() );
    std::string line( text.substr( 0, end ) );
    text.remove_prefix( std::min( end + 1, text.size() ) );
    return line;
}

// Each address by itself, then a function and a place for each function that was merged there.
std::vector<std::vector<SourceLine>> sourcesIn( std::string_view printed )
{
    std::vector<std::vector<SourceLine>> all;
    while ( !printed.empty() )
    {
        std::string line = nextLine( printed );
        if ( line.starts_with( "0x" ) )
        {
            all.emplace_back();
            continue;
        }
        std::string place = nextLine( printed );
        if ( all.empty() || line.starts_with( "??" ) )
            continue;
        place.erase( std::min( place.find( " (discriminator" ), place.size() ) );
        if ( place.ends_with( ":?" ) )
            place.erase( place.size() - 2 );
        if ( place.starts_with( '?' ) )
            place.clear();
        all.back().push_back( { line, std::filesystem::path( place ).lexically_normal() } );
    }
    return all;
}

// One run for all addresses of a module.
Lookup lookUp( const Module &module, const std::map<size_t, uint64_t> &addresses, std::vector<Frame> &frames )
{
    std::string path = module.path[0] == '/' ? module.path : "./" + module.path;
    for ( const char *program : { "addr2line", "llvm-addr2line", "eu-addr2line" } )
    {
        std::vector<std::string> arguments = { program, "-a", "-f", "-C", "-i", "-e", path };
        for ( const auto &[index, address] : addresses )
            arguments.push_back( hex( address ) );
        std::string printed;
        int failure = run( std::move( arguments ), printed );
        if ( failure == ENOENT )
            continue;
        std::vector<std::vector<SourceLine>> found = sourcesIn( printed );
        if ( failure == 0 && found.size() == addresses.size() )
        {
            auto source = found.begin();
            for ( const auto &[index, address] : addresses )
                frames[index].sources = std::move( *source++ );
        }
        return Lookup::done;
    }
    return Lookup::noProgram;
}

// Where the code of a frame stands in its module.
std::optional<uint64_t> placeOf( const Frame &frame, const Module &module )
{
    if ( !frame.hasOffset )
        return frame.address;
    if ( frame.symbol.empty() )
        return frame.offset;
    std::optional<uint64_t> value = module.symbolValue( frame.symbol );
    return value ? std::optional( *value + frame.offset ) : std::nullopt;
}

} // namespace

namespace tool
{

Frame frameOf( std::string_view line )
{
    Frame frame;
    frame.line = line;
    size_t bracket = line.rfind( '[' );
    if ( bracket == std::string_view::npos || !line.ends_with( ']' ) ||
         !readHex( line.substr( bracket + 1, line.size() - bracket - 2 ), frame.address ) )
        return frame;
    std::string_view rest = line.substr( 0, bracket );
    while ( rest.ends_with( ' ' ) )
        rest.remove_suffix( 1 );
    size_t open = rest.rfind( '(' );
    if ( open == std::string_view::npos || !rest.ends_with( ')' ) ||
         !readInner( rest.substr( open + 1, rest.size() - open - 2 ), frame ) )
        return frame;
    frame.module = rest.substr( 0, open );
    return frame;
}

Lookup findSources( std::vector<Frame> &frames, std::optional<size_t> interrupted )
{
    std::map<std::string, std::vector<size_t>> ofModules;
    for ( size_t index = 0; index < frames.size(); index++ )
    {
        if ( !frames[index].module.empty() )
            ofModules[frames[index].module].push_back( index );
    }
    Lookup result = Lookup::done;
    for ( const auto &[path, indexes] : ofModules )
    {
        Module module = moduleOf( path );
        if ( !module.isThere() )
            continue;
        std::map<size_t, uint64_t> addresses;
        for ( size_t index : indexes )
        {
            std::optional<uint64_t> place = placeOf( frames[index], module );
            bool behindCall = index != interrupted && index + 1 != interrupted;
            if ( place && *place > 0 )
                addresses[index] = *place - ( behindCall ? 1 : 0 );
        }
        if ( !addresses.empty() && lookUp( module, addresses, frames ) == Lookup::noProgram )
            result = Lookup::noProgram;
    }
    return result;
}

} // namespace tool
