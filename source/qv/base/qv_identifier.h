#ifndef QV_BASE_QV_IDENTIFIER_H
#define QV_BASE_QV_IDENTIFIER_H

/* Identifiers: 128 random bits, written as 32 upper-case hexadecimal digits. Ordered by their texts; never
 * changed. */

#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

QV_SORT_FUNCTIONS( QV_IDENTIFIER, qvIdentifier )

/* A new random identifier. */
QV_API QV_IDENTIFIER *qvIdentifierCreate( void );

/* A new identifier with the given text; null if that isn't exactly 32 digits "0" to "9" and "A" to "F". */
QV_API QV_IDENTIFIER *qvIdentifierTryCreateFromString( QV_STRING *qvs );

/* The same from the text's ASCII bytes; bits behind the last whole byte don't count. */
QV_API QV_IDENTIFIER *qvIdentifierTryCreateFromBuffer( QV_BUFFER *buffer );

/* The text, which the caller must release. */
QV_API QV_STRING *qvIdentifierString( QV_IDENTIFIER *ident );

/* The text as 32 ASCII bytes, a new buffer. */
QV_API QV_BUFFER *qvIdentifierBuffer( QV_IDENTIFIER *ident );

QV_END_DECLS

#endif
