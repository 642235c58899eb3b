#ifndef QV_RUNTIME_QV_RUNTIME_INSTALL_INFO_HH
#define QV_RUNTIME_QV_RUNTIME_INSTALL_INFO_HH

#include <qv/runtime/qv_obj.hh>
#include <qv/runtime/qv_runtime_install_info.h>

// Invariant: the three values are valid, and each string passes the rule for product data of its name.
struct qv___RuntimeInstallInfo : qv___Obj
{
    QV_RUNTIME_OS os;
    QV_RUNTIME_HARDWARE hardware;
    QV_RUNTIME_VARIANT variant;
    QV_STRING *productName;
    QV_STRING *productFriendlyName;
    QV_STRING *productVersion;
    QV_STRING *productVendorName;
    QV_STRING *productCopyright;
};

// New information; anything invalid stops the process.
QV_RUNTIME_INSTALL_INFO *qv___RuntimeInstallInfoCreate( QV_RUNTIME_OS os, QV_RUNTIME_HARDWARE hardware,
                                                        QV_RUNTIME_VARIANT variant, QV_STRING *productName,
                                                        QV_STRING *productFriendlyName,
                                                        QV_STRING *productVersion,
                                                        QV_STRING *productVendorName,
                                                        QV_STRING *productCopyright );

#endif
