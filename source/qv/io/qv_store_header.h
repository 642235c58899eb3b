#ifndef QV_IO_QV_STORE_HEADER_H
#define QV_IO_QV_STORE_HEADER_H

/* The header of a store in a data file: type, version, product data and the encoding of the bytes behind it.
 * Copy-on-write: functions that edit take the address of the caller's handle. Null handles stop the process;
 * the caller owns what a function returns. */

#include <qv/base/qv_store_encoding.h>
#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_STORE_HEADER, qvStoreHeader )

/* A new header of a type, without version and with neither product data nor an encoding. A type that
 * qvNameOk( type, QV_TRUE ) refuses stops the process, here and below. */
QV_API QV_STORE_HEADER *qvStoreHeaderCreate( QV_STRING *type );

/* A copy. */
QV_API QV_STORE_HEADER *qvStoreHeaderCreateFrom( QV_STORE_HEADER *source );

/* A new header whose type is the name of a sort; on demand with the version of the module that owns the
 * sort. */
QV_API QV_STORE_HEADER *qvStoreHeaderCreateFromSort( QV_SORT *sort, QV_BOOL updateModuleVersion );

/* The type. */
QV_API QV_STRING *qvStoreHeaderType( QV_STORE_HEADER *sth );

/* Sets the type. */
QV_API void qvStoreHeaderSetType( QV_STORE_HEADER **sth, QV_STRING *type );

/* Sets the name of a sort as the type, and on demand the version as
 * qvStoreHeaderUpdateModuleVersionFromSort does. */
QV_API void qvStoreHeaderSetTypeFromSort( QV_STORE_HEADER **sth, QV_SORT *sort, QV_BOOL updateModuleVersion );

/* True if this is the type. */
QV_API QV_BOOL qvStoreHeaderIsType( QV_STORE_HEADER *sth, QV_STRING *type );

/* True if the type is the name of the sort. */
QV_API QV_BOOL qvStoreHeaderIsTypeSort( QV_STORE_HEADER *sth, QV_SORT *sort );

/* The version of the module that owns the type, or null. */
QV_API QV_MODULE_VERSION *qvStoreHeaderModuleVersion( QV_STORE_HEADER *sth );

/* True if the header has a version. */
QV_API QV_BOOL qvStoreHeaderHasModuleVersion( QV_STORE_HEADER *sth );

/* Sets the version. */
QV_API void qvStoreHeaderSetModuleVersion( QV_STORE_HEADER **sth, QV_MODULE_VERSION *moduleVersion );

/* Removes the version. */
QV_API void qvStoreHeaderDelModuleVersion( QV_STORE_HEADER **sth );

/* Sets the version of the module that owns the sort; removes it when the sort has no module or the module
 * no version. */
QV_API void qvStoreHeaderUpdateModuleVersionFromSort( QV_STORE_HEADER **sth, QV_SORT *sort );

/* The product data, or null. */
QV_API QV_HEADER_INFO *qvStoreHeaderInfo( QV_STORE_HEADER *sth );

/* True if the header has product data. */
QV_API QV_BOOL qvStoreHeaderHasInfo( QV_STORE_HEADER *sth );

/* Sets the product data. */
QV_API void qvStoreHeaderSetInfo( QV_STORE_HEADER **sth, QV_HEADER_INFO *info );

/* Sets the product data of the running runtime, generated now. */
QV_API void qvStoreHeaderGenerateInfo( QV_STORE_HEADER **sth );

/* Removes the product data. */
QV_API void qvStoreHeaderDelInfo( QV_STORE_HEADER **sth );

/* The encoding, -1 for none. */
QV_API QV_STORE_ENCODING qvStoreHeaderEncoding( QV_STORE_HEADER *sth );

/* True if the header names an encoding. */
QV_API QV_BOOL qvStoreHeaderHasEncoding( QV_STORE_HEADER *sth );

/* Sets the encoding. One out of range stops the process. */
QV_API void qvStoreHeaderSetEncoding( QV_STORE_HEADER **sth, QV_STORE_ENCODING encoding );

/* Removes the encoding. */
QV_API void qvStoreHeaderDelEncoding( QV_STORE_HEADER **sth );

/* The same as a generic header, with the entries "encoding" and "info" in its store. */
QV_API QV_HEADER *qvStoreHeaderEncodeToHeader( QV_STORE_HEADER *sth );

/* Reads a generic header; null when its store has an "encoding" that names none. Invalid product data is
 * left out. */
QV_API QV_STORE_HEADER *qvStoreHeaderTryDecodeFromHeader( QV_HEADER *hdr );

QV_END_DECLS

#endif
