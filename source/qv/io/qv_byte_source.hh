#ifndef QV_IO_QV_BYTE_SOURCE_HH
#define QV_IO_QV_BYTE_SOURCE_HH

#include <qv/io/qv_byte_source.h>
#include <qv/io/qv_stream_author.h>
#include <qv/runtime/qv_obj.hh>

// The most bytes that a chunked read asks for at a time.
#define QV___BYTE_SOURCE_CHUNK 1024

// Invariant: readFunc is not null; error implies end; neither goes back to false; maxChunk is at least
// QV___BYTE_SOURCE_CHUNK.
struct qv___ByteSource : qv___Obj
{
    qv___ByteSourceReadFunc readFunc;
    qv___ByteSourceSkipFunc skipFunc; // may be null
    qvObj closure;                    // may be null
    QV_BOOL end;
    QV_BOOL error;
    QV_INT maxChunk;
};

namespace qv
{

// For the library's own sources that copy from a platform call and gain from large requests: chunked reads
// ask for more at a time as they go on, up to maxChunk bytes.
inline QV_BYTE_SOURCE *byteSourceWithChunk( QV_BYTE_SOURCE *src, QV_INT maxChunk )
{
    QV_CHECK( maxChunk >= QV___BYTE_SOURCE_CHUNK );
    src->maxChunk = maxChunk;
    return src;
}

} // namespace qv

#endif
