#ifndef QV_RUNTIME_QV_RUNTIME_INSTALL_INFO_H
#define QV_RUNTIME_QV_RUNTIME_INSTALL_INFO_H

/* Install information: what an installer recorded about a product, in the data file "install-info" of the product's
 * install directory. An immutable object. The caller owns the objects that a function returns; null arguments stop the
 * process. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>
#include <qv/runtime/qv_runtime_hardware.h>
#include <qv/runtime/qv_runtime_os.h>
#include <qv/runtime/qv_runtime_variant.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_RUNTIME_INSTALL_INFO, qvRuntimeInstallInfo )

/* From a store with all eight values, or null if one is missing or invalid. */
QV_API QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryRestore( QV_STORE *store );

/* From a data file, or null if it can't be read, has a header of another type, or holds no valid information. */
QV_API QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadFromFile( QV_PATH *path );

/* From the file of the install directory in paths (of the product directory, if that one isn't set), or null. */
QV_API QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadWithRuntimePaths( QV_RUNTIME_PATHS *paths );

/* That of a product by its name, which must be valid (qvRuntimeValidateProductName); that of the running product. */
QV_API QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoadForProduct( QV_STRING *productName );
QV_API QV_RUNTIME_INSTALL_INFO *qvRuntimeInstallInfoTryLoad( void );

/* What the product was built for. */
QV_API QV_RUNTIME_OS qvRuntimeInstallInfoOs( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_RUNTIME_HARDWARE qvRuntimeInstallInfoHardware( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_RUNTIME_VARIANT qvRuntimeInstallInfoVariant( QV_RUNTIME_INSTALL_INFO *info );

/* The product; the texts obey the rules of the functions qvRuntimeValidateProduct... */
QV_API QV_STRING *qvRuntimeInstallInfoProductName( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_STRING *qvRuntimeInstallInfoProductFriendlyName( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_STRING *qvRuntimeInstallInfoProductVersion( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_STRING *qvRuntimeInstallInfoProductVendorName( QV_RUNTIME_INSTALL_INFO *info );
QV_API QV_STRING *qvRuntimeInstallInfoProductCopyright( QV_RUNTIME_INSTALL_INFO *info );

/* A new store of the form of the file. */
QV_API QV_STORE *qvRuntimeInstallInfoStore( QV_RUNTIME_INSTALL_INFO *info );

QV_END_DECLS

#endif
