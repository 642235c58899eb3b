#ifndef QV_IO_QV_STORE_HEADER_HH
#define QV_IO_QV_STORE_HEADER_HH

#include <qv/io/qv_store_header.h>
#include <qv/runtime/qv_obj.hh>

// Invariant: qvNameOk( type, QV_TRUE ).
struct qv___StoreHeader : qv___Obj
{
    QV_STRING *type;
    QV_MODULE_VERSION *moduleVersion; // may be null
    QV_HEADER_INFO *info;             // may be null
    QV_STORE_ENCODING encoding;       // -1 for none
};

void qv___StoreHeaderFreeFunc( qvObj thisObj );

#endif
