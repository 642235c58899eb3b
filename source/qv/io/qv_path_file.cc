#include <qv/io/qv_path_file.h>

#include <qv/base/qv_buffer.hh>
#include <qv/base/qv_store_encoding.h>
#include <qv/charset/qv_charset.h>
#include <qv/io/qv_byte_sink.h>
#include <qv/io/qv_byte_source.h>
#include <qv/io/qv_location.h>
#include <qv/io/qv_nlf_line_sink.h>
#include <qv/io/qv_nlf_line_source.h>
#include <qv/io/qv_path.h>
#include <qv/io/qv_path_platform.hh>
#include <qv/io/qv_stat.h>
#include <qv/runtime/qv_local.hh>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_mem.h>

#include <algorithm>

namespace
{

bool namesDirectory( QV_PATH *path )
{
    return qvPathFlags( path ) & QV_PATH_FLAG_DIRECTORY;
}

// A block of memory that grows as a source fills it.
class Block
{
  public:
    explicit Block( QV_INT capacity )
        : bytes_( static_cast<unsigned char *>( qvMemAlloc( capacity ) ) ), capacity_( capacity )
    {
    }
    Block( const Block & ) = delete;
    Block &operator=( const Block & ) = delete;

    ~Block()
    {
        qvMemFree( bytes_ );
    }

    // Reads until the source ends or maxBytes bytes stand in the block.
    void fill( QV_BYTE_SOURCE *src, QV_INT maxBytes )
    {
        while ( !qvByteSourceEnd( src ) && length_ < maxBytes )
        {
            if ( length_ == capacity_ )
                grow();
            length_ +=
                qvByteSourceReadBytes( src, bytes_ + length_, std::min( capacity_, maxBytes ) - length_ );
        }
    }

    QV_INT length() const
    {
        return length_;
    }

    // The contents as a buffer; the block is empty from then on.
    QV_BUFFER *giveBuffer()
    {
        // Small contents fit into the buffer's record, and a large block that is mostly spare isn't worth keeping.
        if ( length_ < capacity_ / 2 || length_ <= QV_BUFFER_FSPACE )
            return qvBufferCreateFromBytesCopy( bytes_, length_ );
        unsigned char *given = bytes_;
        bytes_ = nullptr;
        return qvBufferCreateFromBytesUse( given, length_ );
    }

  private:
    void grow()
    {
        QV_CHECK( QV_INT_MUL_OK( capacity_, 2 ) );
        capacity_ *= 2;
        bytes_ = static_cast<unsigned char *>( qvMemRealloc( bytes_, capacity_ ) );
    }

    unsigned char *bytes_;
    QV_INT capacity_;
    QV_INT length_ = 0;
};

// How much to make room for at first: one byte more than the file seems to have, so that the end shows in one read, but no
// more than will be read. The file may well hold something else by the time it is read.
QV_INT expectedRoom( QV_PATH *path, QV_INT readLimit )
{
    constexpr QV_INT least = 4096;
    constexpr QV_INT most = 0x40000000;
    qv::Local<QV_STAT> status( qvPathStat( path ) );
    QV_INT seen = status ? std::min( qvStatSize( status ), most ) : 0;
    return std::min( std::clamp( seen + 1, least, most ), readLimit );
}

} // namespace

QV_BOOL qvPathFileExists( QV_PATH *path )
{
    QV_CHECK( path );
    return !namesDirectory( path ) && qv___IoPlatformFileExists( path );
}

QV_BYTE_SOURCE *qvPathFileOpenByteSource( QV_PATH *path )
{
    QV_CHECK( path );
    return namesDirectory( path ) ? nullptr : qv___IoPlatformFileOpenByteSource( path );
}

QV_BYTE_SINK *qvPathFileOpenByteSink( QV_PATH *path )
{
    QV_CHECK( path );
    return namesDirectory( path ) ? nullptr : qv___IoPlatformFileOpenByteSink( path );
}

QV_CHAR_SOURCE *qvPathFileOpenCharSource( QV_PATH *path, QV_INT charset, QV_INT charsetFlags )
{
    qv::Local<QV_BYTE_SOURCE> bytes( qvPathFileOpenByteSource( path ) );
    return bytes ? qvCharsetCreateCharSource( bytes, charset, charsetFlags ) : nullptr;
}

QV_CHAR_SINK *qvPathFileOpenCharSink( QV_PATH *path, QV_INT charset, QV_INT charsetFlags )
{
    qv::Local<QV_BYTE_SINK> bytes( qvPathFileOpenByteSink( path ) );
    return bytes ? qvCharsetCreateCharSink( bytes, charset, charsetFlags ) : nullptr;
}

QV_LINE_SOURCE *qvPathFileOpenLineSource( QV_PATH *path, QV_INT charset, QV_INT charsetFlags,
                                          QV_INT nlfFlags )
{
    qv::Local<QV_CHAR_SOURCE> chars( qvPathFileOpenCharSource( path, charset, charsetFlags ) );
    if ( !chars )
        return nullptr;
    qv::Local<QV_NLF_LINE_SOURCE> lines( qvNlfLineSourceCreate( chars, nlfFlags ) );
    return qvNlfLineSourceLineSource( lines );
}

QV_LINE_SINK *qvPathFileOpenLineSink( QV_PATH *path, QV_INT charset, QV_INT charsetFlags, QV_INT nlfFlags )
{
    qv::Local<QV_CHAR_SINK> chars( qvPathFileOpenCharSink( path, charset, charsetFlags ) );
    if ( !chars )
        return nullptr;
    qv::Local<QV_NLF_LINE_SINK> lines( qvNlfLineSinkCreate( chars, nlfFlags ) );
    return qvNlfLineSinkLineSink( lines );
}

QV_BOOL qvPathFileRename( QV_PATH *path, QV_PATH *newPath )
{
    QV_CHECK( path );
    QV_CHECK( newPath );
    return !namesDirectory( path ) && !namesDirectory( newPath ) &&
           qv___IoPlatformFileRename( path, newPath );
}

QV_BOOL qvPathFileDelete( QV_PATH *path )
{
    QV_CHECK( path );
    return !namesDirectory( path ) && qv___IoPlatformFileDelete( path );
}

QV_BUFFER *qvPathFileReadBuffer( QV_PATH *path, QV_INT maxBytes )
{
    QV_CHECK( path );
    QV_CHECK( maxBytes >= -1 );
    qv::Local<QV_BYTE_SOURCE> src( qvPathFileOpenByteSource( path ) );
    if ( !src )
        return nullptr;
    // One byte more than allowed tells a file of just that length from a longer one.
    QV_INT readLimit = maxBytes == -1 || maxBytes == QV_INT_MAX ? QV_INT_MAX : maxBytes + 1;
    Block block( expectedRoom( path, readLimit ) );
    block.fill( src, readLimit );
    return qvByteSourceEnd( src ) && !qvByteSourceError( src ) ? block.giveBuffer() : nullptr;
}

QV_BUFFER *qvPathFileReadFragmentBuffer( QV_PATH *path, QV_INT fragmentOffset, QV_INT fragmentMaxBytes )
{
    QV_CHECK( path );
    QV_CHECK( fragmentOffset >= 0 );
    QV_CHECK( fragmentMaxBytes >= -1 );
    qv::Local<QV_BYTE_SOURCE> src( qvPathFileOpenByteSource( path ) );
    if ( !src )
        return nullptr;
    qvByteSourceSkip( src, fragmentOffset );
    qv::Local<QV_BUFFER> buffer( qvBufferCreate() );
    qvByteSourceRead( src, buffer.edit(), fragmentMaxBytes );
    return qvByteSourceError( src ) ? nullptr : buffer.give();
}

QV_BOOL qvPathFileWriteBuffer( QV_PATH *path, QV_BUFFER *buffer )
{
    QV_CHECK( path );
    QV_CHECK( buffer );
    qv::Local<QV_BYTE_SINK> sink( qvPathFileOpenByteSink( path ) );
    if ( !sink )
        return QV_FALSE;
    qvByteSinkWrite( sink, buffer );
    qvByteSinkFlush( sink );
    return !qvByteSinkError( sink );
}

QV_STORE *qvPathFileReadStore( QV_PATH *path, QV_STORE_HEADER **header )
{
    QV_CHECK( path );
    if ( header )
        qv::replaceWith( header, static_cast<QV_STORE_HEADER *>( nullptr ) );
    qv::Local<QV_BUFFER> buffer( qvPathFileReadBuffer( path, -1 ) );
    if ( !buffer )
        return nullptr;
    qv::Local<QV_LOCATION> location( qvLocationCreateWithPath( path ) );
    return qvStoreTryDecode( buffer, location, header );
}

QV_BOOL qvPathFileWriteStore( QV_PATH *path, QV_STORE *store, QV_STORE_HEADER *storeHeader )
{
    QV_CHECK( path );
    qv::Local<QV_BUFFER> buffer( qvStoreEncode( store, storeHeader ) );
    return qvPathFileWriteBuffer( path, buffer );
}

QV_STAT *qvPathStat( QV_PATH *path )
{
    QV_CHECK( path );
    return qv___IoPlatformStat( path );
}

QV_STAT_FILESYSTEM *qvPathStatFilesystem( QV_PATH *path )
{
    QV_CHECK( path );
    return qv___IoPlatformStatFilesystem( path );
}
