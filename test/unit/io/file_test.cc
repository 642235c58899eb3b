// Files: streams on them, whole files, data files, status, and what a full disk does.

#include "support/test.hh"
#include "support/folder.hh"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace test;

namespace
{

using OwnedBuffer = Local<QV_BUFFER>;
using OwnedSink = Local<QV_BYTE_SINK>;
using OwnedSource = Local<QV_BYTE_SOURCE>;

// Bytes in which a misplaced piece shows.
std::string pattern( size_t length )
{
    std::string bytes( length, 0 );
    unsigned state = 1;
    for ( char &byte : bytes )
    {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>( state >> 24 );
    }
    return bytes;
}

bool writeBytes( QV_BYTE_SINK *sink, std::string_view bytes )
{
    return qvByteSinkWriteBytes( sink, reinterpret_cast<const unsigned char *>( bytes.data() ),
                                 lengthOf( bytes ) );
}

// Lets files grow to a number of bytes only, for the length of a block.
class FileSizeLimit
{
  public:
    explicit FileSizeLimit( rlim_t bytes )
    {
        before_ = std::signal( SIGXFSZ, SIG_IGN );
        getrlimit( RLIMIT_FSIZE, &limit_ );
        rlimit lower = { bytes, limit_.rlim_max };
        setrlimit( RLIMIT_FSIZE, &lower );
    }

    ~FileSizeLimit()
    {
        setrlimit( RLIMIT_FSIZE, &limit_ );
        std::signal( SIGXFSZ, before_ );
    }

  private:
    rlimit limit_;
    void ( *before_ )( int );
};

} // namespace

TEST( File, WholeFilesAndTheirLimits )
{
    TemporaryFolder folder;
    Local<QV_PATH> path = folder.path( "file" );
    for ( size_t length : { 0, 1, 1023, 1024, 4095, 4096, 65535, 65536, 65537, 300000 } )
    {
        std::string bytes = pattern( length );
        ASSERT_TRUE( qvPathFileWriteBuffer( path, bufferOf( bytes ) ) );
        EXPECT_EQ( bytes, folder.read( "file" ) );
        EXPECT_EQ( bytes, takeBytes( qvPathFileReadBuffer( path, -1 ) ) );
        auto size = static_cast<QV_INT>( length );
        EXPECT_EQ( bytes, takeBytes( qvPathFileReadBuffer( path, size ) ) ) << length;
        EXPECT_EQ( bytes, takeBytes( qvPathFileReadBuffer( path, size + 1 ) ) ) << length;
        EXPECT_EQ( bytes, takeBytes( qvPathFileReadBuffer( path, QV_INT_MAX ) ) ) << length;
        if ( length > 0 )
        {
            EXPECT_EQ( nullptr, qvPathFileReadBuffer( path, size - 1 ) ) << length;
            EXPECT_EQ( nullptr, qvPathFileReadBuffer( path, 0 ) ) << length;
        }
    }
    EXPECT_EQ( nullptr, qvPathFileReadBuffer( folder.path( "missing" ), -1 ) );
    EXPECT_EQ( nullptr, qvPathFileReadBuffer( folder.path( "." ), -1 ) );
    // A directory without its flag opens, but doesn't read.
    folder.makeFolder( "sub" );
    EXPECT_EQ( nullptr, qvPathFileReadBuffer( folder.path( "sub" ), -1 ) );
    EXPECT_DEATH( qvPathFileReadBuffer( path, -2 ), "maxBytes >= -1" );
}

TEST( File, FilesWithoutAKnownSize )
{
    std::string status = takeBytes( qvPathFileReadBuffer( pathOf( "/proc/self/status" ), -1 ) );
    EXPECT_EQ( 0u, status.find( "Name:" ) );
    EXPECT_EQ( nullptr, qvPathFileReadBuffer( pathOf( "/proc/self/status" ), 10 ) );
    EXPECT_EQ( nullptr, qvPathFileReadBuffer( pathOf( "/dev/zero" ), 1000000 ) );
    EXPECT_EQ( "", takeBytes( qvPathFileReadBuffer( pathOf( "/dev/null" ), 0 ) ) );
}

#if !defined( __SANITIZE_ADDRESS__ ) && !defined( __SANITIZE_THREAD__ )
TEST( File, ALimitAlsoLimitsTheMemory )
{
    TemporaryFolder folder;
    folder.write( "file", "" );
    ASSERT_EQ( 0, truncate( folder.name( "file" ).c_str(), 0x70000000 ) );
    Local<QV_PATH> path = folder.path( "file" );
    auto readInLittleMemory = [&] {
        rlimit limit = { 0x20000000, 0x20000000 };
        setrlimit( RLIMIT_AS, &limit );
        std::_Exit( qvPathFileReadBuffer( path, 100000 ) ? 1 : 0 );
    };
    EXPECT_EXIT( readInLittleMemory(), testing::ExitedWithCode( 0 ), "" );
}
#endif

TEST( File, Fragments )
{
    TemporaryFolder folder;
    std::string bytes = pattern( 5000 );
    folder.write( "file", bytes );
    Local<QV_PATH> path = folder.path( "file" );
    for ( QV_INT offset : { 0, 1, 1023, 1024, 2500, 4999, 5000, 5001, 100000 } )
        for ( QV_INT most : { -1, 0, 1, 1024, 1025, 5000 } )
        {
            size_t start = std::min( bytes.size(), static_cast<size_t>( offset ) );
            std::string expected =
                bytes.substr( start, most == -1 ? std::string::npos : static_cast<size_t>( most ) );
            EXPECT_EQ( expected, takeBytes( qvPathFileReadFragmentBuffer( path, offset, most ) ) )
                << offset << " " << most;
        }
    EXPECT_EQ( nullptr, qvPathFileReadFragmentBuffer( folder.path( "missing" ), 0, -1 ) );
    EXPECT_EQ( nullptr, qvPathFileReadFragmentBuffer( pathOf( "/proc/self" ), 0, -1 ) );
    EXPECT_DEATH( qvPathFileReadFragmentBuffer( path, -1, 0 ), "fragmentOffset >= 0" );
}

TEST( File, DirectoryFlagIsRefused )
{
    TemporaryFolder folder;
    folder.write( "file", "abc" );
    Local<QV_PATH> file = folder.path( "file" );
    Local<QV_PATH> flagged = folder.path( "file/" );
    EXPECT_TRUE( qvPathFileExists( file ) );
    EXPECT_FALSE( qvPathFileExists( flagged ) );
    EXPECT_EQ( nullptr, qvPathFileOpenByteSource( flagged ) );
    EXPECT_EQ( nullptr, qvPathFileOpenByteSink( flagged ) );
    EXPECT_EQ( nullptr, qvPathFileOpenLineSource( flagged, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF ) );
    EXPECT_FALSE( qvPathFileRename( file, folder.path( "other/" ) ) );
    EXPECT_FALSE( qvPathFileRename( flagged, folder.path( "other" ) ) );
    EXPECT_FALSE( qvPathFileDelete( flagged ) );
    EXPECT_EQ( "abc", folder.read( "file" ) );
    folder.makeFolder( "sub" );
    EXPECT_TRUE( qvPathFileExists( folder.path( "sub" ) ) );
    EXPECT_FALSE( qvPathFileDelete( folder.path( "sub" ) ) );
    // A path without a text on this platform is no file.
    Local<QV_PATH> odd( qvPathTryDecodeCstr( "C:\\x", -1 ) );
    EXPECT_FALSE( qvPathFileExists( odd ) );
    EXPECT_EQ( nullptr, qvPathFileOpenByteSink( odd ) );
    EXPECT_FALSE( qvPathFileRename( file, odd ) );
}

TEST( File, RenameAndDelete )
{
    TemporaryFolder folder;
    folder.write( "one", "1" );
    folder.write( "two", "2" );
    EXPECT_TRUE( qvPathFileRename( folder.path( "one" ), folder.path( "two" ) ) );
    EXPECT_FALSE( folder.has( "one" ) );
    EXPECT_EQ( "1", folder.read( "two" ) );
    EXPECT_FALSE( qvPathFileRename( folder.path( "one" ), folder.path( "two" ) ) );
    EXPECT_TRUE( qvPathFileDelete( folder.path( "two" ) ) );
    EXPECT_FALSE( qvPathFileDelete( folder.path( "two" ) ) );
}

TEST( File, SourcesReadInAllSizes )
{
    TemporaryFolder folder;
    std::string bytes = pattern( 200001 );
    folder.write( "file", bytes );
    OwnedSource src( qvPathFileOpenByteSource( folder.path( "file" ) ) );
    ASSERT_TRUE( src );
    std::string read;
    unsigned char block[70000];
    for ( QV_INT size : { 1, 1024, 65536, 70000, 3, 40000, 70000 } )
    {
        QV_INT count = qvByteSourceReadBytes( src, block, size );
        read.append( reinterpret_cast<char *>( block ), static_cast<size_t>( count ) );
    }
    EXPECT_EQ( bytes, read );
    EXPECT_TRUE( qvByteSourceEnd( src ) );
    EXPECT_FALSE( qvByteSourceError( src ) );
    EXPECT_EQ( 0, qvByteSourceReadBytes( src, block, 1 ) );

    OwnedSource skipping( qvPathFileOpenByteSource( folder.path( "file" ) ) );
    EXPECT_EQ( 150000, qvByteSourceSkip( skipping, 150000 ) );
    EXPECT_FALSE( qvByteSourceEnd( skipping ) );
    EXPECT_EQ( 50001, qvByteSourceSkip( skipping, -1 ) );
    EXPECT_TRUE( qvByteSourceEnd( skipping ) );

    OwnedSource directory( qvPathFileOpenByteSource( pathOf( "/proc" ) ) );
    ASSERT_TRUE( directory );
    EXPECT_EQ( 0, qvByteSourceReadBytes( directory, block, 10 ) );
    EXPECT_TRUE( qvByteSourceError( directory ) );
}

TEST( File, SinksTruncateAtOnceAndFlushToTheFile )
{
    TemporaryFolder folder;
    folder.write( "file", "old contents" );
    std::string bytes = pattern( 150000 );
    {
        OwnedSink sink( qvPathFileOpenByteSink( folder.path( "file" ) ) );
        ASSERT_TRUE( sink );
        EXPECT_EQ( "", folder.read( "file" ) );
        EXPECT_TRUE( writeBytes( sink, bytes.substr( 0, 10 ) ) );
        EXPECT_TRUE( qvByteSinkFlush( sink ) );
        EXPECT_EQ( bytes.substr( 0, 10 ), folder.read( "file" ) );
        EXPECT_TRUE( writeBytes( sink, bytes.substr( 10, 100000 ) ) );
        EXPECT_TRUE( writeBytes( sink, bytes.substr( 100010 ) ) );
    }
    EXPECT_EQ( bytes, folder.read( "file" ) );
    EXPECT_EQ( nullptr, qvPathFileOpenByteSink( folder.path( "missing/file" ) ) );
    EXPECT_FALSE( qvPathFileWriteBuffer( folder.path( "missing/file" ), bufferOf( "x" ) ) );
}

TEST( File, AFullDiskIsNoticed )
{
    Local<QV_PATH> full = pathOf( "/dev/full" );
    EXPECT_FALSE( qvPathFileWriteBuffer( full, bufferOf( "x" ) ) );
    EXPECT_FALSE( qvPathFileWriteBuffer( full, bufferOf( pattern( 1000000 ) ) ) );

    OwnedSink sink( qvPathFileOpenByteSink( full ) );
    ASSERT_TRUE( sink );
    // The first bytes still fit into the stream's buffer; the flush tells that they went nowhere.
    EXPECT_TRUE( writeBytes( sink, "x" ) );
    EXPECT_FALSE( qvByteSinkFlush( sink ) );
    EXPECT_TRUE( qvByteSinkError( sink ) );
    EXPECT_FALSE( writeBytes( sink, "x" ) );

    Local<QV_CHAR_SINK> chars( qvPathFileOpenCharSink( full, QV_CHARSET_UTF_8, 0 ) );
    qvCharSinkWriteCstr( chars, "text", -1 );
    EXPECT_FALSE( qvCharSinkFlush( chars ) );
    Local<QV_LINE_SINK> lines( qvPathFileOpenLineSink( full, QV_CHARSET_UTF_8, 0, QV_NLF_FLAG_LF ) );
    qvLineSinkWriteCstr( lines, "text", -1 );
    EXPECT_FALSE( qvLineSinkFlush( lines ) );
    Local<QV_STORE> store( qvStoreCreate() );
    Local<QV_STORE_HEADER> header( qvStoreHeaderCreate( text( "QV_TEST" ) ) );
    EXPECT_FALSE( qvPathFileWriteStore( full, store, header ) );
}

TEST( File, AFileThatCantGrowIsNoticedAtEverySize )
{
    TemporaryFolder folder;
    Local<QV_PATH> path = folder.path( "file" );
    FileSizeLimit limit( 100000 );
    for ( size_t length : { 99999, 100000, 100001, 140000, 500000 } )
    {
        EXPECT_EQ( length <= 100000, qvPathFileWriteBuffer( path, bufferOf( pattern( length ) ) ) ) << length;
        // The same in blocks: some write fails, or the flush does.
        OwnedSink sink( qvPathFileOpenByteSink( path ) );
        bool written = true;
        for ( size_t count = 0; count < length; count += 1000 )
            written = writeBytes( sink, pattern( std::min<size_t>( 1000, length - count ) ) ) && written;
        bool flushed = qvByteSinkFlush( sink );
        EXPECT_EQ( length <= 100000, written && flushed ) << length;
        EXPECT_EQ( length > 100000, qvByteSinkError( sink ) ) << length;
    }
}

TEST( File, CharactersAndLines )
{
    TemporaryFolder folder;
    Local<QV_PATH> path = folder.path( "text" );
    {
        Local<QV_LINE_SINK> lines(
            qvPathFileOpenLineSink( path, QV_CHARSET_ISO_8859_1, 0, QV_NLF_FLAG_CRLF ) );
        ASSERT_TRUE( lines );
        EXPECT_TRUE( qvLineSinkWrite( lines, text( "grün" ) ) );
        EXPECT_TRUE( qvLineSinkWrite( lines, text( "" ) ) );
        EXPECT_TRUE( qvLineSinkWrite( lines, text( "end" ) ) );
    }
    EXPECT_EQ( "gr\xFCn\r\n\r\nend\r\n", folder.read( "text" ) );
    Local<QV_LINE_SOURCE> lines(
        qvPathFileOpenLineSource( path, QV_CHARSET_ISO_8859_1, 0, QV_NLF_FLAG_CRLF ) );
    ASSERT_TRUE( lines );
    Local<QV_VECTOR> read( qvLineSourceReadLines( lines, -1 ) );
    ASSERT_EQ( 3, qvVectorLength( read ) );
    Local<QV_STRING> first( qvStringFrom( qvVectorObjAt( read, 0 ) ) );
    EXPECT_EQ( "grün", toUtf8( first ) );

    Local<QV_CHAR_SOURCE> chars( qvPathFileOpenCharSource( path, QV_CHARSET_ISO_8859_1, 0 ) );
    Local<QV_STRING> all( qvStringCreate() );
    EXPECT_EQ( 13, qvCharSourceRead( chars, all.edit(), -1 ) );
    EXPECT_EQ( "grün\r\n\r\nend\r\n", toUtf8( all ) );
    EXPECT_EQ( nullptr, qvPathFileOpenCharSource( folder.path( "missing" ), QV_CHARSET_UTF_8, 0 ) );
}

TEST( File, DataFiles )
{
    TemporaryFolder folder;
    Local<QV_PATH> path = folder.path( "data" );
    Local<QV_STORE> store( qvStoreCreate() );
    Local<QV_STORE_HEADER> header( qvStoreHeaderCreate( text( "QV_TEST" ) ) );
    ASSERT_TRUE( qvPathFileWriteStore( path, store, header ) );
    Local<QV_STORE_HEADER> readHeader;
    Local<QV_STORE> read( qvPathFileReadStore( path, readHeader.edit() ) );
    ASSERT_TRUE( read );
    EXPECT_TRUE( qvStoreEquals( store, read ) );
    EXPECT_TRUE( readHeader );
    EXPECT_TRUE( Local<QV_STORE>( qvPathFileReadStore( path, nullptr ) ) );

    // A failure clears the header that stood there.
    folder.write( "bad", std::string( 72, '=' ) + "\nTWO WORDS\n" );
    EXPECT_EQ( nullptr, qvPathFileReadStore( folder.path( "bad" ), readHeader.edit() ) );
    EXPECT_FALSE( readHeader );
    readHeader.take( qvStoreHeaderCreate( text( "QV_TEST" ) ) );
    EXPECT_EQ( nullptr, qvPathFileReadStore( folder.path( "missing" ), readHeader.edit() ) );
    EXPECT_FALSE( readHeader );
}

TEST( File, Status )
{
    TemporaryFolder folder;
    folder.write( "file", "abc" );
    folder.makeFolder( "sub" );
    symlink( "file", folder.name( "link" ).c_str() );
    symlink( "nowhere", folder.name( "broken" ).c_str() );
    // 2001-02-03 04:05:06
    timespec times[2] = { { 981173106, 0 }, { 981173106, 0 } };
    ASSERT_EQ( 0, utimensat( AT_FDCWD, folder.name( "file" ).c_str(), times, 0 ) );
    Local<QV_STAT> stat( qvPathStat( folder.path( "link" ) ) );
    ASSERT_TRUE( stat );
    EXPECT_EQ( 3, qvStatSize( stat ) );
    Local<QV_TIME> modified( qvStatModificationTime( stat ) );
    EXPECT_EQ( "UTC 2001-02-03 04:05:06 (Saturday)", takeUtf8( qvTimeToString( modified ) ) );

    Local<QV_STAT> directory( qvPathStat( folder.path( "sub" ) ) );
    ASSERT_TRUE( directory );
    EXPECT_FALSE( qvStatHasSize( directory ) );
    EXPECT_TRUE( qvStatHasModificationTime( directory ) );
    EXPECT_TRUE( Local<QV_STAT>( qvPathStat( folder.path( "sub/" ) ) ) );
    EXPECT_EQ( nullptr, qvPathStat( folder.path( "file/" ) ) );
    EXPECT_EQ( nullptr, qvPathStat( folder.path( "missing" ) ) );
    EXPECT_EQ( nullptr, qvPathStat( folder.path( "broken" ) ) );

    Local<QV_STAT_FILESYSTEM> filesystem( qvPathStatFilesystem( folder.path() ) );
    ASSERT_TRUE( filesystem );
    EXPECT_GT( qvStatFilesystemSize( filesystem ), 0 );
    EXPECT_LE( qvStatFilesystemAvailableSize( filesystem ), qvStatFilesystemSize( filesystem ) );
    EXPECT_EQ( nullptr, qvPathStatFilesystem( folder.path( "missing" ) ) );
}

TEST( File, StatusValues )
{
    Local<QV_STAT> stat( qvStatCreate() );
    EXPECT_EQ( -1, qvStatSize( stat ) );
    EXPECT_EQ( nullptr, qvStatModificationTime( stat ) );
    auto witness = Local<QV_STAT>::share( stat );
    qvStatSetSize( stat.edit(), 0 );
    qvStatSetModificationTime( stat.edit(), Local<QV_TIME>( qvTimeCreate() ) );
    Local<QV_STAT> copy( qvStatCreateFrom( stat ) );
    qvStatDelSize( stat.edit() );
    qvStatDelModificationTime( stat.edit() );
    EXPECT_FALSE( qvStatHasSize( stat ) || qvStatHasModificationTime( stat ) || qvStatHasSize( witness ) );
    EXPECT_TRUE( qvStatHasSize( copy ) && qvStatHasModificationTime( copy ) );
    EXPECT_DEATH( qvStatSetSize( stat.edit(), -1 ), "size >= 0" );

    Local<QV_STAT_FILESYSTEM> filesystem( qvStatFilesystemCreate( 10, 5 ) );
    auto shared = Local<QV_STAT_FILESYSTEM>::share( filesystem );
    qvStatFilesystemSetSize( filesystem.edit(), 20 );
    qvStatFilesystemSetAvailableSize( filesystem.edit(), 15 );
    Local<QV_STAT_FILESYSTEM> other( qvStatFilesystemCreateFrom( filesystem ) );
    EXPECT_TRUE( qvStatFilesystemSize( other ) == 20 && qvStatFilesystemAvailableSize( other ) == 15 );
    EXPECT_TRUE( qvStatFilesystemSize( shared ) == 10 && qvStatFilesystemAvailableSize( shared ) == 5 );
    EXPECT_DEATH( qvStatFilesystemCreate( -1, 0 ), "size >= 0" );
}
