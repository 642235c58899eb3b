// The library's cases of the area streams. Lines are decoded from UTF-8.
#include "streams.hpp"
#include "qv_case.hpp"

namespace
{

using ByteSource = Held<QV_BYTE_SOURCE, qvByteSourceRelease>;
using ByteSink = Held<QV_BYTE_SINK, qvByteSinkRelease>;
using LineSource = Held<QV_LINE_SOURCE, qvLineSourceRelease>;

std::shared_ptr<Path> path_of( const std::string &file )
{
    String text( string_of( file ) );
    QV_PATH *path = qvPathPlatformTryDecode( text );
    CHECK( path );
    return held<Path>( path );
}

uint64_t sum_of_bytes( QV_PATH *path )
{
    ByteSource source( qvPathFileOpenByteSource( path ) );
    uint64_t sum = 0;
    unsigned char byte;
    while ( qvByteSourceReadBytes( source, &byte, 1 ) == 1 )
    {
        sum += byte;
    }
    return sum;
}

void read_blocks( QV_PATH *path, const Want &want )
{
    ByteSource source( qvPathFileOpenByteSource( path ) );
    unsigned char block[1024];
    uint64_t sum = 0;
    size_t size = 0;
    while ( qvByteSourceReadBytes( source, block, 1024 ) == 1024 )
    {
        sum += block[0];
        size += 1024;
    }
    CHECK( size == Size && sum == want.blocks );
}

void read_lines( QV_PATH *path, const Want &want )
{
    LineSource source( qvPathFileOpenLineSource( path, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF ) );
    uint64_t lines = 0, chars = 0;
    while ( QV_STRING *line = qvLineSourceRead( source ) )
    {
        chars += uint64_t( qvStringLength( line ) );
        ++lines;
        qvStringRelease( line );
    }
    CHECK( lines == want.lines && chars == want.chars );
}

// Closed, not synced, as the peers' files are: a file sink that is released keeps what it has written.
void write_blocks( QV_PATH *path )
{
    ByteSink sink( qvPathFileOpenByteSink( path ) );
    static const unsigned char block[1024] = "block";
    for ( size_t i = 0; i < Size; i += 1024 )
    {
        CHECK( qvByteSinkWriteBytes( sink, block, 1024 ) );
    }
}

} // namespace

void register_library( Bench &b )
{
    start_library();
    std::string bin = b.path( "bytes64.bin" ), txt = b.path( "lines64.txt" ), out = b.path( "write.out" );
    const Want &want = wanted( bin, txt );
    auto binPath = path_of( bin ), txtPath = path_of( txt ), outPath = path_of( out );
    auto add = [&]( const char *workload, auto f ) {
        b.add( workload, "qv", [=]( Rec &r ) { mb_per_s( r, Size, f ); } );
    };
    add( "bytes", [=, &want] { CHECK( sum_of_bytes( *binPath ) == want.bytes ); } );
    add( "blocks_1k", [=, &want] { read_blocks( *binPath, want ); } );
    add( "whole", [=] {
        Buffer bytes( qvPathFileReadBuffer( *binPath, -1 ) );
        CHECK( size_t( qvBufferLength( bytes ) ) == Size );
    } );
    add( "lines", [=, &want] { read_lines( *txtPath, want ); } );
    b.add( "write_1k", "qv", [=]( Rec &r ) {
        mb_per_s( r, Size, [&] { write_blocks( *outPath ); } );
        struct stat st;
        CHECK( stat( out.c_str(), &st ) == 0 && size_t( st.st_size ) == Size );
        unlink( out.c_str() );
    } );
}
