#ifndef QV_SYS_QV_TYPES_H
#define QV_SYS_QV_TYPES_H

/* Basic types, the same on every platform, and the macros that the checks of all parts use. */

#include <limits.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define QV_BEGIN_DECLS extern "C" {
#define QV_END_DECLS   }
#else
#define QV_BEGIN_DECLS
#define QV_END_DECLS
#endif

/* Marks a function or datum that leaves the shared library. Everything else is hidden. */
#define QV_API __attribute__( ( visibility( "default" ) ) )

/* Signed integer, 64 bits wide on every platform. Lengths, counts, indexes, offsets, sizes, time-outs and timestamps
 * are of this type; -1 marks none, no limit, or up to the terminator. */
typedef int64_t QV_INT;
#define QV_INT_BITS 64
#define QV_INT_MAX  INT64_MAX
#define QV_INT_MIN  INT64_MIN

/* The unsigned twin of QV_INT, for bit counts that must reach further. */
typedef uint64_t QV___INT_UNSIGNED;

/* Truth value: QV_TRUE or QV_FALSE. */
typedef int32_t QV_BOOL;
#define QV_TRUE  1
#define QV_FALSE 0
/* Turns any pointer or integer into QV_TRUE or QV_FALSE. */
#define QV_BOOL_FROM( x ) ( ( x ) ? QV_TRUE : QV_FALSE )

/* Unicode code point. Text inside the library is an array of these. */
typedef uint32_t QV_CHAR;
#define QV_CHAR_MAX 0x10FFFFu
/* True for 0 to 0x10FFFF, surrogates included. */
#define QV_CHAR_OK( ch ) ( (QV_CHAR)( ch ) <= QV_CHAR_MAX )

/* True if the sum, difference or product of two QV_INT is a QV_INT. Arguments may be evaluated more than once. */
#define QV_INT_ADD_OK( a, b )                                                                                \
    ( (QV_INT)( b ) >= 0 ? (QV_INT)( a ) <= QV_INT_MAX - (QV_INT)( b )                                       \
                         : (QV_INT)( a ) >= QV_INT_MIN - (QV_INT)( b ) )
#define QV_INT_SUB_OK( a, b )                                                                                \
    ( (QV_INT)( b ) >= 0 ? (QV_INT)( a ) >= QV_INT_MIN + (QV_INT)( b )                                       \
                         : (QV_INT)( a ) <= QV_INT_MAX + (QV_INT)( b ) )
#define QV_INT_MUL_OK( a, b ) qv___IntMulOk( ( a ), ( b ) )
/* True if x fits the platform's size type. */
#define QV_INT_TO_SIZET_CONV_OK( x )                                                                         \
    ( (QV_INT)( x ) >= 0 && (QV___INT_UNSIGNED)( x ) <= (QV___INT_UNSIGNED)SIZE_MAX )
#define QV___INT_UNSIGNED_ADD_OK( a, b )           ( (QV___INT_UNSIGNED)( a ) <= UINT64_MAX - (QV___INT_UNSIGNED)( b ) )
#define QV___INT_UNSIGNED_TO_QV_INT_CONV_OK( u )   ( (QV___INT_UNSIGNED)( u ) <= (QV___INT_UNSIGNED)QV_INT_MAX )
#define QV___INT_UNSIGNED_FROM_QV_INT_CONV_OK( i ) ( (QV_INT)( i ) >= 0 )
/* Number of elements of an array, as a QV_INT. */
#define QV_SIZEOF_ARRAY( a ) ( (QV_INT)( sizeof( a ) / sizeof( ( a )[0] ) ) )

/* The product's test as a function, since a macro would need a division for each sign. */
static inline int qv___IntMulOk( QV_INT a, QV_INT b )
{
    QV_INT product;
    return !__builtin_mul_overflow( a, b, &product );
}

/* An argument list that travels through the library: a struct around one va_list, because the address of a va_list
 * parameter isn't portable. Start it with va_start( list.args, last ) and end it with va_end( list.args ). */
typedef struct qv___ArgList
{
    va_list args;
} QV_ARG_LIST;

/* Handle of an untyped object: a pointer to its header. */
typedef struct qv___Obj *qvObj;

#endif
