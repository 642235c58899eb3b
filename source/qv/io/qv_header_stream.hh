#ifndef QV_IO_QV_HEADER_STREAM_HH
#define QV_IO_QV_HEADER_STREAM_HH

#include <qv/io/qv_header_stream.h>
#include <qv/runtime/qv_obj.hh>

struct qv___HeaderByteSink : qv___Obj
{
    QV_BYTE_SINK *byteSink; // the one that was given, or null
    QV_HEADER *header;      // may be null
};

struct qv___HeaderByteSource : qv___Obj
{
    QV_BYTE_SOURCE *byteSource;
    QV_HEADER *header;                   // may be null
    QV_HEADER_DECODE_ERROR *decodeError; // may be null
    QV_LOCATION *baseLocation;           // may be null
};

void qv___HeaderByteSinkFreeFunc( qvObj thisObj );
void qv___HeaderByteSourceFreeFunc( qvObj thisObj );

#endif
