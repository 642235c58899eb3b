#ifndef QV_IO_QV_MESSAGE_HH
#define QV_IO_QV_MESSAGE_HH

// The message's record and the component of the levels' names.

#include <qv/io/qv_message.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: level is one of the four, text isn't null.
struct qv___Message : qv___Obj
{
    QV_MESSAGE_LEVEL level;
    QV_LOCATION *location; // may be null
    QV_STRING *text;
};

extern QV_ENUM *qv___MessageLevelEnum;

void qv___MessageFreeFunc( qvObj thisObj );
QV_STRING *qv___MessageToStringFunc( qvObj thisObj );

void qv___MessageLevelStartup();
void qv___MessageLevelShutdown();

#endif
