#include <qv/sys/qv_mem.hh>

#include <stdlib.h>
#include <string.h>

#include <qv/runtime/qv_runtime.h>
#include <qv/sys/qv_check.hh>
#include <qv/sys/qv_record_pool.hh>

namespace
{

constinit bool fillsNewBlocks = false;

} // namespace

void qv___MemStartup()
{
    fillsNewBlocks = ( qvRuntimeFlags() & QV_RUNTIME_FLAG_MEMORY_DEBUG ) != 0;
    qv___RecordPoolStartup();
}

void qv___MemShutdown()
{
    qv___RecordPoolShutdown();
    fillsNewBlocks = false;
}

void *qvMemAlloc( QV_INT size )
{
    QV_CHECK( size > 0 );
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( size ) );
    void *res = malloc( static_cast<size_t>( size ) );
    QV_CHECK( res );
    if ( __builtin_expect( fillsNewBlocks, false ) )
    {
        memset( res, 0xFF, static_cast<size_t>( size ) );
    }
    return res;
}

void *qvMemAllocN( QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    QV_CHECK( count > 0 );
    return qvMemAlloc( count * size );
}

void *qvMemRealloc( void *ptr, QV_INT newSize )
{
    QV_CHECK( newSize > 0 );
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( newSize ) );
    void *res = realloc( ptr, static_cast<size_t>( newSize ) );
    QV_CHECK( res );
    return res;
}

void *qvMemReallocN( void *ptr, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    QV_CHECK( count > 0 );
    return qvMemRealloc( ptr, count * size );
}

void qvMemFree( void *ptr )
{
    free( ptr );
}

void *qvMemSet( void *ptr, int value, QV_INT size )
{
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( size ) );
    if ( size == 0 )
        return ptr;
    QV_CHECK( ptr );
    return memset( ptr, value, static_cast<size_t>( size ) );
}

void *qvMemSetN( void *ptr, int value, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    return qvMemSet( ptr, value, count * size );
}

void *qvMemCopy( void *dest, const void *src, QV_INT size )
{
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( size ) );
    if ( size == 0 )
        return dest;
    QV_CHECK( dest );
    QV_CHECK( src );
    return memcpy( dest, src, static_cast<size_t>( size ) );
}

void *qvMemCopyN( void *dest, const void *src, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    return qvMemCopy( dest, src, count * size );
}

void *qvMemMove( void *dest, const void *src, QV_INT size )
{
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( size ) );
    if ( size == 0 )
        return dest;
    QV_CHECK( dest );
    QV_CHECK( src );
    return memmove( dest, src, static_cast<size_t>( size ) );
}

void *qvMemMoveN( void *dest, const void *src, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    return qvMemMove( dest, src, count * size );
}

QV_INT qvMemCompare( const void *a, const void *b, QV_INT size )
{
    QV_CHECK( QV_INT_TO_SIZET_CONV_OK( size ) );
    if ( size == 0 )
        return 0;
    QV_CHECK( a );
    QV_CHECK( b );
    int order = memcmp( a, b, static_cast<size_t>( size ) );
    return ( order > 0 ) - ( order < 0 );
}

QV_INT qvMemCompareN( const void *a, const void *b, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    return qvMemCompare( a, b, count * size );
}

void *qvMemDup( const void *ptr, QV_INT size )
{
    QV_CHECK( ptr );
    return qvMemCopy( qvMemAlloc( size ), ptr, size );
}

void *qvMemDupN( const void *ptr, QV_INT count, QV_INT size )
{
    QV_CHECK( QV_INT_MUL_OK( count, size ) );
    return qvMemDup( ptr, count * size );
}

char *qvMemDupCstr( const char *src, QV_INT srcLength )
{
    QV_CHECK( src );
    QV_CHECK( srcLength >= -1 );
    QV_INT length = srcLength == -1 ? static_cast<QV_INT>( strlen( src ) ) : srcLength;
    QV_CHECK( QV_INT_ADD_OK( length, 1 ) );
    char *copy = static_cast<char *>( qvMemAlloc( length + 1 ) );
    qvMemCopy( copy, src, length );
    copy[length] = '\0';
    return copy;
}
