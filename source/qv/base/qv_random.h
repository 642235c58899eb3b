#ifndef QV_BASE_QV_RANDOM_H
#define QV_BASE_QV_RANDOM_H

/* Random bytes and numbers from the system's random device. All functions are safe from any thread. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* Appends byteCount random bytes, 0 or more. *buffer may be null only if byteCount is 0. */
QV_API void qvRandom( QV_BUFFER **buffer, QV_INT byteCount );

/* Fills byteCount bytes, 0 or more. bytes may be null only if byteCount is 0. */
QV_API void qvRandomBytes( unsigned char *bytes, QV_INT byteCount );

/* A byte, 0 to 255. */
QV_API unsigned char qvRandomByte( void );

/* Any integer. */
QV_API QV_INT qvRandomInt( void );

/* An integer of bitCount random low bits, 0 to 64; the others are 0. */
QV_API QV_INT qvRandomBits( QV_INT bitCount );

/* 0 or 1. */
QV_API QV_INT qvRandomBit( void );

/* 0 to QV_INT_MAX. */
QV_API QV_INT qvRandomNonNegativeInt( void );

/* A number between two bounds of 0 or more, both included, in either order. Not corrected for the small bias
 * of the remainder. */
QV_API QV_INT qvRandomNonNegativeIntRange( QV_INT lowVal, QV_INT highVal );

QV_END_DECLS

#endif
