#ifndef QV_BASE_QV_BUFFER_H
#define QV_BASE_QV_BUFFER_H

/* Bit buffers: sequences of bits with copy-on-write. Bit 0 is the highest bit (0x80) of the first byte, bit 8
 * that of the second byte.
 *
 * Each operation comes twice: with byte indexes and counts, and as qvBufferBit... with bit indexes and
 * counts. A name with Bytes, Byte or ByteRun counts its object in bytes in both forms, a name with Bits
 * counts its object in bits in both.
 *
 * An editing call gets the address of the caller's handle. It makes a private copy first if the record is
 * shared or stands on foreign memory, so that a buffer once held never changes. src may be the buffer that is
 * edited.
 *
 * Null handles and sources, null memory with a count above 0, negative indexes and counts, byte counts above
 * an eighth of the largest unsigned integer, and ranges that don't lie inside the buffer or the source stop
 * the process. */

#include <qv/runtime/qv_obj.h>

/* Free bits kept in front of the content of each newly allocated storage. */
#define QV_BUFFER_FSPACE 640

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_BUFFER, qvBuffer )

/* The shared empty buffer, with a reference for the caller. */
QV_API QV_BUFFER *qvBufferCreate( void );

/* A new record with a copy of the content, never src itself. */
QV_API QV_BUFFER *qvBufferCreateFrom( QV_BUFFER *src );

/* A new buffer with a copy of byteCount bytes of memory, which may be null if byteCount is 0. */
QV_API QV_BUFFER *qvBufferCreateFromBytesCopy( const unsigned char *bytes, QV_INT byteCount );

/* A new buffer that takes over a block of qvMemAlloc as its storage and frees it in the end, also with
 * byteCount 0. bytes may be null if byteCount is 0. */
QV_API QV_BUFFER *qvBufferCreateFromBytesUse( unsigned char *bytes, QV_INT byteCount );

/* A new buffer that reads byteCount bytes of foreign memory in place. It retains ref, the object that keeps
 * the memory alive and unchanged; the first write copies the content and drops ref. bytes may be null if
 * byteCount is 0, ref may not. */
QV_API QV_BUFFER *qvBufferCreateFromBytesUseWithRef( const unsigned char *bytes, QV_INT byteCount,
                                                     qvObj ref );

/* A new buffer with the low bitCount bits of value, 0 to 64, the highest of them first. */
QV_API QV_BUFFER *qvBufferCreateFromBits( QV_INT value, QV_INT bitCount );

/* A new buffer with one byte. */
QV_API QV_BUFFER *qvBufferCreateFromByte( unsigned char value );

/* A new buffer with a copy of a range, on storage of its own. */
QV_API QV_BUFFER *qvBufferRead( QV_BUFFER *src, QV_INT byteIdx, QV_INT byteCount );
QV_API QV_BUFFER *qvBufferBitRead( QV_BUFFER *src, QV_INT bitIdx, QV_INT bitCount );

/* The length in whole bytes, rounded down, and in bits. */
QV_API QV_INT qvBufferLength( QV_BUFFER *buf );
QV_API QV_INT qvBufferBitLength( QV_BUFFER *buf );

/* True if the length is a whole number of bytes. */
QV_API QV_BOOL qvBufferBitIsAligned( QV_BUFFER *buf );

/* How much can be added before the length in bits exceeds the largest integer, in whole bytes and in bits. */
QV_API QV_INT qvBufferSpace( QV_BUFFER *buf );
QV_API QV_INT qvBufferBitSpace( QV_BUFFER *buf );

/* The address of the first content byte, good until the next edit; may be null for an empty buffer. The
 * unused low bits of a last partial byte are undefined. */
QV_API const unsigned char *qvBufferBacking( QV_BUFFER *buf );
QV_API const unsigned char *qvBufferBitBacking( QV_BUFFER *buf );

/* bitCount bits, 0 to 64, as an integer: the first bit read is the highest of the bitCount-bit result. */
QV_API QV_INT qvBufferReadBits( QV_BUFFER *buf, QV_INT byteIdx, QV_INT bitCount );
QV_API QV_INT qvBufferBitReadBits( QV_BUFFER *buf, QV_INT bitIdx, QV_INT bitCount );

/* Eight bits as a byte. */
QV_API unsigned char qvBufferReadByte( QV_BUFFER *buf, QV_INT byteIdx );
QV_API unsigned char qvBufferBitReadByte( QV_BUFFER *buf, QV_INT bitIdx );

/* Copies byteCount bytes into memory, from any bit offset in the bit form. */
QV_API void qvBufferReadBytes( QV_BUFFER *buf, QV_INT byteIdx, unsigned char *bytes, QV_INT byteCount );
QV_API void qvBufferBitReadBytes( QV_BUFFER *buf, QV_INT bitIdx, unsigned char *bytes, QV_INT byteCount );

/* Overwriting. The target range lies inside the content: a write never lengthens. */

/* Overwrites from the index on with all of src. */
QV_API void qvBufferWrite( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src );
QV_API void qvBufferBitWrite( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src );

/* Overwrites from the index on with a range of src. */
QV_API void qvBufferWriteInner( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                                QV_INT byteCount );
QV_API void qvBufferBitWriteInner( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                                   QV_INT bitCount );

/* Overwrites from the index on with the first bytes or bits of src. */
QV_API void qvBufferWriteLeading( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitWriteLeading( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount );

/* Overwrites from the index on with the last bytes or bits of src. */
QV_API void qvBufferWriteTrailing( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitWriteTrailing( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount );

/* Overwrites from the index on with all of src but a range, the head and the tail closed up. */
QV_API void qvBufferWriteOuter( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                                QV_INT byteCount );
QV_API void qvBufferBitWriteOuter( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                                   QV_INT bitCount );

/* Overwrites from the index on with the low bitCount bits of value, 0 to 64, the highest of them first. */
QV_API void qvBufferWriteBits( QV_BUFFER **buf, QV_INT byteIdx, QV_INT value, QV_INT bitCount );
QV_API void qvBufferBitWriteBits( QV_BUFFER **buf, QV_INT bitIdx, QV_INT value, QV_INT bitCount );

/* Overwrites from the index on with one byte. */
QV_API void qvBufferWriteByte( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value );
QV_API void qvBufferBitWriteByte( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value );

/* Overwrites from the index on with byteCount times the same byte. */
QV_API void qvBufferWriteByteRun( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value, QV_INT byteCount );
QV_API void qvBufferBitWriteByteRun( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value, QV_INT byteCount );

/* Overwrites from the index on with byteCount bytes of memory, which must not be the buffer's own storage. */
QV_API void qvBufferWriteBytes( QV_BUFFER **buf, QV_INT byteIdx, const unsigned char *bytes,
                                QV_INT byteCount );
QV_API void qvBufferBitWriteBytes( QV_BUFFER **buf, QV_INT bitIdx, const unsigned char *bytes,
                                   QV_INT byteCount );

/* Overwrites from the index on with zero bits, by bytes or bits. */
QV_API void qvBufferWriteZero( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount );
QV_API void qvBufferBitWriteZero( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount );

/* Overwrites from the index on with one bits, by bytes or bits. */
QV_API void qvBufferWriteOne( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount );
QV_API void qvBufferBitWriteOne( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount );

/* Inserting. The index is at most the length. Inserting at the front or between by anything but whole bytes
 * copies the whole buffer; appending never moves the content. */

/* Inserts all of src at the index. */
QV_API void qvBufferInsert( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src );
QV_API void qvBufferBitInsert( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src );

/* Inserts a range of src at the index. */
QV_API void qvBufferInsertInner( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                                 QV_INT byteCount );
QV_API void qvBufferBitInsertInner( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                                    QV_INT bitCount );

/* Inserts the first bytes or bits of src at the index. */
QV_API void qvBufferInsertLeading( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitInsertLeading( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount );

/* Inserts the last bytes or bits of src at the index. */
QV_API void qvBufferInsertTrailing( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitInsertTrailing( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitCount );

/* Inserts at the index all of src but a range, the head and the tail closed up. */
QV_API void qvBufferInsertOuter( QV_BUFFER **buf, QV_INT byteIdx, QV_BUFFER *src, QV_INT byteOffset,
                                 QV_INT byteCount );
QV_API void qvBufferBitInsertOuter( QV_BUFFER **buf, QV_INT bitIdx, QV_BUFFER *src, QV_INT bitOffset,
                                    QV_INT bitCount );

/* Inserts at the index the low bitCount bits of value, 0 to 64, the highest of them first. */
QV_API void qvBufferInsertBits( QV_BUFFER **buf, QV_INT byteIdx, QV_INT value, QV_INT bitCount );
QV_API void qvBufferBitInsertBits( QV_BUFFER **buf, QV_INT bitIdx, QV_INT value, QV_INT bitCount );

/* Inserts one byte at the index. */
QV_API void qvBufferInsertByte( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value );
QV_API void qvBufferBitInsertByte( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value );

/* Inserts byteCount times the same byte at the index. */
QV_API void qvBufferInsertByteRun( QV_BUFFER **buf, QV_INT byteIdx, unsigned char value, QV_INT byteCount );
QV_API void qvBufferBitInsertByteRun( QV_BUFFER **buf, QV_INT bitIdx, unsigned char value, QV_INT byteCount );

/* Inserts at the index byteCount bytes of memory, which must not be the buffer's own storage. */
QV_API void qvBufferInsertBytes( QV_BUFFER **buf, QV_INT byteIdx, const unsigned char *bytes,
                                 QV_INT byteCount );
QV_API void qvBufferBitInsertBytes( QV_BUFFER **buf, QV_INT bitIdx, const unsigned char *bytes,
                                    QV_INT byteCount );

/* Inserts at the index zero bits, by bytes or bits. */
QV_API void qvBufferInsertZero( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount );
QV_API void qvBufferBitInsertZero( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount );

/* Inserts at the index one bits, by bytes or bits. */
QV_API void qvBufferInsertOne( QV_BUFFER **buf, QV_INT byteIdx, QV_INT byteCount );
QV_API void qvBufferBitInsertOne( QV_BUFFER **buf, QV_INT bitIdx, QV_INT bitCount );

/* Inserts all of src at the front. */
QV_API void qvBufferPrepend( QV_BUFFER **buf, QV_BUFFER *src );
QV_API void qvBufferBitPrepend( QV_BUFFER **buf, QV_BUFFER *src );

/* Inserts a range of src at the front. */
QV_API void qvBufferPrependInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitPrependInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount );

/* Inserts the first bytes or bits of src at the front. */
QV_API void qvBufferPrependLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitPrependLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount );

/* Inserts the last bytes or bits of src at the front. */
QV_API void qvBufferPrependTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitPrependTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount );

/* Inserts at the front all of src but a range, the head and the tail closed up. */
QV_API void qvBufferPrependOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitPrependOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount );

/* Inserts at the front the low bitCount bits of value, 0 to 64, the highest of them first. */
QV_API void qvBufferPrependBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount );
QV_API void qvBufferBitPrependBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount );

/* Inserts one byte at the front. */
QV_API void qvBufferPrependByte( QV_BUFFER **buf, unsigned char value );
QV_API void qvBufferBitPrependByte( QV_BUFFER **buf, unsigned char value );

/* Inserts byteCount times the same byte at the front. */
QV_API void qvBufferPrependByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount );
QV_API void qvBufferBitPrependByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount );

/* Inserts at the front byteCount bytes of memory, which must not be the buffer's own storage. */
QV_API void qvBufferPrependBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount );
QV_API void qvBufferBitPrependBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount );

/* Inserts at the front zero bits, by bytes or bits. */
QV_API void qvBufferPrependZero( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitPrependZero( QV_BUFFER **buf, QV_INT bitCount );

/* Inserts at the front one bits, by bytes or bits. */
QV_API void qvBufferPrependOne( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitPrependOne( QV_BUFFER **buf, QV_INT bitCount );

/* Appending, at any bit: a byte appended to 3 bits lands at bit 3. */

/* Adds all of src behind the last bit. */
QV_API void qvBufferAppend( QV_BUFFER **buf, QV_BUFFER *src );
QV_API void qvBufferBitAppend( QV_BUFFER **buf, QV_BUFFER *src );

/* Adds a range of src behind the last bit. */
QV_API void qvBufferAppendInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitAppendInner( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount );

/* Adds the first bytes or bits of src behind the last bit. */
QV_API void qvBufferAppendLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitAppendLeading( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount );

/* Adds the last bytes or bits of src behind the last bit. */
QV_API void qvBufferAppendTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteCount );
QV_API void qvBufferBitAppendTrailing( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitCount );

/* Adds behind the last bit all of src but a range, the head and the tail closed up. */
QV_API void qvBufferAppendOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitAppendOuter( QV_BUFFER **buf, QV_BUFFER *src, QV_INT bitOffset, QV_INT bitCount );

/* Adds behind the last bit the low bitCount bits of value, 0 to 64, the highest of them first. */
QV_API void qvBufferAppendBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount );
QV_API void qvBufferBitAppendBits( QV_BUFFER **buf, QV_INT value, QV_INT bitCount );

/* Adds one byte behind the last bit. */
QV_API void qvBufferAppendByte( QV_BUFFER **buf, unsigned char value );
QV_API void qvBufferBitAppendByte( QV_BUFFER **buf, unsigned char value );

/* Adds byteCount times the same byte behind the last bit. */
QV_API void qvBufferAppendByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount );
QV_API void qvBufferBitAppendByteRun( QV_BUFFER **buf, unsigned char value, QV_INT byteCount );

/* Adds behind the last bit byteCount bytes of memory, which must not be the buffer's own storage. */
QV_API void qvBufferAppendBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount );
QV_API void qvBufferBitAppendBytes( QV_BUFFER **buf, const unsigned char *bytes, QV_INT byteCount );

/* Adds behind the last bit zero bits, by bytes or bits. */
QV_API void qvBufferAppendZero( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitAppendZero( QV_BUFFER **buf, QV_INT bitCount );

/* Adds behind the last bit one bits, by bytes or bits. */
QV_API void qvBufferAppendOne( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitAppendOne( QV_BUFFER **buf, QV_INT bitCount );

/* Inserts the zero bits that make the length a whole number of bytes, none if it is one. */
QV_API void qvBufferInsertAlignment( QV_BUFFER **buf, QV_INT byteIdx );
QV_API void qvBufferPrependAlignment( QV_BUFFER **buf );
QV_API void qvBufferAppendAlignment( QV_BUFFER **buf );
QV_API void qvBufferBitInsertAlignment( QV_BUFFER **buf, QV_INT bitIdx );
QV_API void qvBufferBitPrependAlignment( QV_BUFFER **buf );
QV_API void qvBufferBitAppendAlignment( QV_BUFFER **buf );

/* Puts the shared empty buffer in the handle. */
QV_API void qvBufferClear( QV_BUFFER **buf );

/* Deletes a range. */
QV_API void qvBufferDelInner( QV_BUFFER **buf, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitDelInner( QV_BUFFER **buf, QV_INT bitOffset, QV_INT bitCount );

/* Deletes at the front. Whole bytes go without moving the content. */
QV_API void qvBufferDelLeading( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitDelLeading( QV_BUFFER **buf, QV_INT bitCount );

/* Deletes at the end, without moving the content. */
QV_API void qvBufferDelTrailing( QV_BUFFER **buf, QV_INT byteCount );
QV_API void qvBufferBitDelTrailing( QV_BUFFER **buf, QV_INT bitCount );

/* Keeps a range and deletes everything else. */
QV_API void qvBufferDelOuter( QV_BUFFER **buf, QV_INT byteOffset, QV_INT byteCount );
QV_API void qvBufferBitDelOuter( QV_BUFFER **buf, QV_INT bitOffset, QV_INT bitCount );

QV_END_DECLS

#endif
