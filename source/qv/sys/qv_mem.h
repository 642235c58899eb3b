#ifndef QV_SYS_QV_MEM_H
#define QV_SYS_QV_MEM_H

/* The only allocator of the library. Sizes are bytes, counts are elements; a product or size that the platform can't hold
 * stops the process, and so does a failing allocation: no caller tests for null. */

#include <qv/sys/qv_types.h>

QV_BEGIN_DECLS

/* A new block, contents undefined. size and count are above 0. Free it with qvMemFree. */
QV_API void *qvMemAlloc( QV_INT size );
QV_API void *qvMemAllocN( QV_INT count, QV_INT size );

/* Changes the size of a block, keeping its contents up to the smaller size. ptr may be null; newSize is above 0. */
QV_API void *qvMemRealloc( void *ptr, QV_INT newSize );
QV_API void *qvMemReallocN( void *ptr, QV_INT count, QV_INT size );

/* Gives a block back. ptr may be null. */
QV_API void qvMemFree( void *ptr );

/* Fills with the byte value. Size 0 is allowed, ptr may then be null. Returns ptr. */
QV_API void *qvMemSet( void *ptr, int value, QV_INT size );
QV_API void *qvMemSetN( void *ptr, int value, QV_INT count, QV_INT size );

/* Copies between blocks that don't overlap. Size 0 is allowed, the pointers may then be null. Returns dest. */
QV_API void *qvMemCopy( void *dest, const void *src, QV_INT size );
QV_API void *qvMemCopyN( void *dest, const void *src, QV_INT count, QV_INT size );

/* Copies between blocks that may overlap. Size 0 is allowed, the pointers may then be null. Returns dest. */
QV_API void *qvMemMove( void *dest, const void *src, QV_INT size );
QV_API void *qvMemMoveN( void *dest, const void *src, QV_INT count, QV_INT size );

/* Compares bytes as unsigned numbers: -1, 0 or 1. */
QV_API QV_INT qvMemCompare( const void *a, const void *b, QV_INT size );
QV_API QV_INT qvMemCompareN( const void *a, const void *b, QV_INT count, QV_INT size );

/* A new block with the same bytes; the size is above 0. The caller frees it with qvMemFree. */
QV_API void *qvMemDup( const void *ptr, QV_INT size );
QV_API void *qvMemDupN( const void *ptr, QV_INT count, QV_INT size );

/* A new zero-terminated copy of srcLength bytes, -1 up to the terminator. The caller frees it with qvMemFree. */
QV_API char *qvMemDupCstr( const char *src, QV_INT srcLength );

QV_END_DECLS

#endif
