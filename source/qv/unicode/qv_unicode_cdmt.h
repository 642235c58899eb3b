#ifndef QV_UNICODE_QV_UNICODE_CDMT_H
#define QV_UNICODE_QV_UNICODE_CDMT_H

/* Types of decomposition mappings, by the Unicode Character Database 16.0. */

#include <qv/runtime/qv_handles.h>

/* Type of a code point's decomposition mapping. All but the first two are compatibility mappings. */
typedef QV_INT QV_UNICODE_CDMT;
#define QV_UNICODE_CDMT_NONE      0
#define QV_UNICODE_CDMT_CANONICAL 1
#define QV_UNICODE_CDMT_FONT      2
#define QV_UNICODE_CDMT_NOBREAK   3
#define QV_UNICODE_CDMT_INITIAL   4
#define QV_UNICODE_CDMT_MEDIAL    5
#define QV_UNICODE_CDMT_FINAL     6
#define QV_UNICODE_CDMT_ISOLATED  7
#define QV_UNICODE_CDMT_CIRCLE    8
#define QV_UNICODE_CDMT_SUPER     9
#define QV_UNICODE_CDMT_SUB       10
#define QV_UNICODE_CDMT_VERTICAL  11
#define QV_UNICODE_CDMT_WIDE      12
#define QV_UNICODE_CDMT_NARROW    13
#define QV_UNICODE_CDMT_SMALL     14
#define QV_UNICODE_CDMT_SQUARE    15
#define QV_UNICODE_CDMT_FRACTION  16
#define QV_UNICODE_CDMT_COMPAT    17
/* True for the values above. */
#define QV_UNICODE_CDMT_OK( cdmt ) ( (QV_INT)( cdmt ) >= 0 && (QV_INT)( cdmt ) <= 17 )

QV_BEGIN_DECLS

/* The tag of the Unicode data files with its angle brackets ("<font>"), as a string that the caller owns.
 * cdmt is a compatibility type; any other value stops the process. */
QV_API QV_STRING *qvUnicodeCdmtTag( QV_UNICODE_CDMT cdmt );

/* The description ("A font variant (e.g. a blackletter form).") and the name of the constant, as strings that
 * the caller owns. A cdmt for which QV_UNICODE_CDMT_OK doesn't hold stops the process. */
QV_API QV_STRING *qvUnicodeCdmtDescription( QV_UNICODE_CDMT cdmt );
QV_API QV_STRING *qvUnicodeCdmtSymName( QV_UNICODE_CDMT cdmt );

/* The type with this tag, angle brackets included, -1 if there is none. The first takes the exact spelling
 * only, the second any spelling that is equal after case folding. */
QV_API QV_UNICODE_CDMT qvUnicodeCdmtFromTag( QV_STRING *text );
QV_API QV_UNICODE_CDMT qvUnicodeCdmtFromTagCaseFold( QV_STRING *text );

QV_END_DECLS

#endif
