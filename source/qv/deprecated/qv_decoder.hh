#ifndef QV_DEPRECATED_QV_DECODER_HH
#define QV_DEPRECATED_QV_DECODER_HH

#include <qv/deprecated/qv_decoder.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: offset is 0 to the buffer's length in whole bytes.
struct qv___Decoder : qv___Obj
{
    QV_BUFFER *buffer;
    QV_INT offset; // of no meaning once error is set
    QV_BOOL error;
};

void qv___DecoderFreeFunc( qvObj thisObj );

#endif
