#ifndef QV_IO_QV_HEADER_INFO_HH
#define QV_IO_QV_HEADER_INFO_HH

#include <qv/io/qv_header_info.h>
#include <qv/runtime/qv_obj.hh>

// Product data of a data-file header; each field may be null.
struct qv___HeaderInfo : qv___Obj
{
    QV_STRING *productName;
    QV_STRING *productFriendlyName;
    QV_STRING *productVersion;
    QV_TIME *productBuildTime;
    QV_TIME *generateTime;
};

void qv___HeaderInfoFreeFunc( qvObj thisObj );

#endif
