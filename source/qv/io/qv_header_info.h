#ifndef QV_IO_QV_HEADER_INFO_H
#define QV_IO_QV_HEADER_INFO_H

/* Product data in a data-file header: which product wrote the file, and when. Copy-on-write: functions that
 * edit take the address of the caller's handle. Null handles stop the process; the caller owns what a
 * function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_HEADER_INFO, qvHeaderInfo )

/* A new record in which everything is absent. */
QV_API QV_HEADER_INFO *qvHeaderInfoCreate( void );

/* A copy. */
QV_API QV_HEADER_INFO *qvHeaderInfoCreateFrom( QV_HEADER_INFO *source );

/* The product data of the running runtime, generated now. */
QV_API QV_HEADER_INFO *qvHeaderInfoGenerate( void );

/* The record as a store; what is absent has no entry. */
QV_API QV_STORE *qvHeaderInfoStore( QV_HEADER_INFO *hi );

/* The record that a store holds, null when an entry is invalid. Missing entries stay absent, and substores
 * count as missing. */
QV_API QV_HEADER_INFO *qvHeaderInfoTryRestore( QV_STORE *store );

/* The name of the product, or null. */
QV_API QV_STRING *qvHeaderInfoProductName( QV_HEADER_INFO *hi );

/* True if the name of the product is present. */
QV_API QV_BOOL qvHeaderInfoHasProductName( QV_HEADER_INFO *hi );

/* Sets the name of the product. */
QV_API void qvHeaderInfoSetProductName( QV_HEADER_INFO **hi, QV_STRING *productName );

/* Removes the name of the product. */
QV_API void qvHeaderInfoDelProductName( QV_HEADER_INFO **hi );

/* The name of the product for people, or null. */
QV_API QV_STRING *qvHeaderInfoProductFriendlyName( QV_HEADER_INFO *hi );

/* True if the name of the product for people is present. */
QV_API QV_BOOL qvHeaderInfoHasProductFriendlyName( QV_HEADER_INFO *hi );

/* Sets the name of the product for people. */
QV_API void qvHeaderInfoSetProductFriendlyName( QV_HEADER_INFO **hi, QV_STRING *productFriendlyName );

/* Removes the name of the product for people. */
QV_API void qvHeaderInfoDelProductFriendlyName( QV_HEADER_INFO **hi );

/* The version of the product, or null. */
QV_API QV_STRING *qvHeaderInfoProductVersion( QV_HEADER_INFO *hi );

/* True if the version of the product is present. */
QV_API QV_BOOL qvHeaderInfoHasProductVersion( QV_HEADER_INFO *hi );

/* Sets the version of the product. */
QV_API void qvHeaderInfoSetProductVersion( QV_HEADER_INFO **hi, QV_STRING *productVersion );

/* Removes the version of the product. */
QV_API void qvHeaderInfoDelProductVersion( QV_HEADER_INFO **hi );

/* The time at which the product was built, or null. */
QV_API QV_TIME *qvHeaderInfoProductBuildTime( QV_HEADER_INFO *hi );

/* True if the time at which the product was built is present. */
QV_API QV_BOOL qvHeaderInfoHasProductBuildTime( QV_HEADER_INFO *hi );

/* Sets the time at which the product was built. */
QV_API void qvHeaderInfoSetProductBuildTime( QV_HEADER_INFO **hi, QV_TIME *productBuildTime );

/* Removes the time at which the product was built. */
QV_API void qvHeaderInfoDelProductBuildTime( QV_HEADER_INFO **hi );

/* The time at which the file was made, or null. */
QV_API QV_TIME *qvHeaderInfoGenerateTime( QV_HEADER_INFO *hi );

/* True if the time at which the file was made is present. */
QV_API QV_BOOL qvHeaderInfoHasGenerateTime( QV_HEADER_INFO *hi );

/* Sets the time at which the file was made. */
QV_API void qvHeaderInfoSetGenerateTime( QV_HEADER_INFO **hi, QV_TIME *generateTime );

/* Removes the time at which the file was made. */
QV_API void qvHeaderInfoDelGenerateTime( QV_HEADER_INFO **hi );

QV_END_DECLS

#endif
