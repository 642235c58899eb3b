#ifndef QV_IO_QV_HEADER_STREAM_HH
#define QV_IO_QV_HEADER_STREAM_HH

// Records of the byte streams with a header. The streams that they hand out have them as closure.

#include <qv/io/qv_header_stream.h>
#include <qv/runtime/qv_obj.hh>

struct qv___HeaderByteSink : qv___Obj
{
    QV_BYTE_SINK *byteSink; // the one underneath
    QV_HEADER *header;      // may be null
};

// Invariant: byteSource is null exactly while decodeError is present. aheadOffset is within ahead.
struct qv___HeaderByteSource : qv___Obj
{
    QV_BYTE_SOURCE *byteSource; // the one underneath
    QV_BUFFER *ahead;           // bytes read but not delivered, may be null
    QV_INT aheadOffset;
    QV_HEADER *header;                   // may be null
    QV_HEADER_DECODE_ERROR *decodeError; // may be null
    QV_LOCATION *baseLocation;           // of the first byte behind the header, may be null
};

void qv___HeaderByteSinkFreeFunc( qvObj thisObj );
void qv___HeaderByteSourceFreeFunc( qvObj thisObj );

#endif
