#ifndef QV_DEPRECATED_QV_ENCODER_HH
#define QV_DEPRECATED_QV_ENCODER_HH

#include <qv/deprecated/qv_encoder.h>
#include <qv/runtime/qv_obj.hh>

struct qv___Encoder : qv___Obj
{
    QV_BUFFER *buffer;
};

void qv___EncoderFreeFunc( qvObj thisObj );

#endif
