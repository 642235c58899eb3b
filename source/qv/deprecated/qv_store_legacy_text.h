#ifndef QV_DEPRECATED_QV_STORE_LEGACY_TEXT_H
#define QV_DEPRECATED_QV_STORE_LEGACY_TEXT_H

/* The text form of stores of earlier versions: one line for each value, "path.address=text", and one for each empty
 * substore, "path.address.". It keeps addresses, texts and substores only: what is read back are plain stores of values
 * without hints.
 *
 * A "." in an address has a backslash in front. In a text "%" is doubled, and a control character is "%" and six
 * hexadecimal digits. Reading drops every line that doesn't fit, so that any text is a store; the lines of one substore
 * need not stand together, and a substore wins over a value of the same name. Levels of substores below the 99th are read
 * as empty.
 *
 * Null handles stop the process; the caller owns what a function returns. */

#include <qv/charset/qv_charset.h>
#include <qv/io/qv_nlf_flags.h>
#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* The lines of a store, of any depth. */
QV_API QV_VECTOR *qvStoreLegacyTextEncodeToStringVector( QV_STORE *store );

/* The store of lines. Never null; an item that is no string stops the process. */
QV_API QV_STORE *qvStoreLegacyTextDecodeFromStringVector( QV_VECTOR *vec );

/* Writes the lines of a store. False if the sink has an error then. */
QV_API QV_BOOL qvStoreLegacyTextTryEncodeToLineSink( QV_STORE *store, QV_LINE_SINK *ls );

/* The store of all lines that a source has left; null if the source has an error then. */
QV_API QV_STORE *qvStoreLegacyTextTryDecodeFromLineSource( QV_LINE_SOURCE *ls );

/* The bytes of a store, each line with the new-line that qvNlfFlagsNlfString names; null if the charset refuses a
 * character. */
QV_API QV_BUFFER *qvStoreLegacyTextTryEncodeToBuffer( QV_STORE *store, QV_CHARSET charset,
                                                      QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags );

/* The store of bytes, cut into lines at the new-lines of the flags; null if the charset refuses the bytes, which it never
 * does with charsetFlags 0. */
QV_API QV_STORE *qvStoreLegacyTextTryDecodeFromBuffer( QV_BUFFER *buffer, QV_CHARSET charset,
                                                       QV_CHARSET_FLAGS charsetFlags, QV_NLF_FLAGS nlfFlags );

QV_END_DECLS

#endif
