#ifndef QV_UNICODE_QV_UNICODE_CCCV_H
#define QV_UNICODE_QV_UNICODE_CCCV_H

/* Canonical combining classes of code points, by the Unicode Character Database 16.0. */

#include <qv/runtime/qv_handles.h>

/* Canonical combining class, 0 to 255. The classes with a name follow; every other value is a class all the
 * same. */
typedef QV_INT QV_UNICODE_CCCV;
#define QV_UNICODE_CCCV_SPACING              0
#define QV_UNICODE_CCCV_OVERLAYS             1
#define QV_UNICODE_CCCV_NUKTAS               7
#define QV_UNICODE_CCCV_HIRAGANA             8
#define QV_UNICODE_CCCV_VIRAMAS              9
#define QV_UNICODE_CCCV_FIXED_POS_START      10
#define QV_UNICODE_CCCV_FIXED_POS_END        199
#define QV_UNICODE_CCCV_BELOW_LEFT_ATTACHED  200
#define QV_UNICODE_CCCV_BELOW_ATTACHED       202
#define QV_UNICODE_CCCV_BELOW_RIGHT_ATTACHED 204
#define QV_UNICODE_CCCV_LEFT_ATTACHED        208
#define QV_UNICODE_CCCV_RIGHT_ATTACHED       210
#define QV_UNICODE_CCCV_ABOVE_LEFT_ATTACHED  212
#define QV_UNICODE_CCCV_ABOVE_ATTACHED       214
#define QV_UNICODE_CCCV_ABOVE_RIGHT_ATTACHED 216
#define QV_UNICODE_CCCV_BELOW_LEFT           218
#define QV_UNICODE_CCCV_BELOW                220
#define QV_UNICODE_CCCV_BELOW_RIGHT          222
#define QV_UNICODE_CCCV_LEFT                 224
#define QV_UNICODE_CCCV_RIGHT                226
#define QV_UNICODE_CCCV_ABOVE_LEFT           228
#define QV_UNICODE_CCCV_ABOVE                230
#define QV_UNICODE_CCCV_ABOVE_RIGHT          232
#define QV_UNICODE_CCCV_DOUBLE_BELOW         233
#define QV_UNICODE_CCCV_DOUBLE_ABOVE         234
#define QV_UNICODE_CCCV_BELOW_IOTA           240
/* True for 0 to 255. */
#define QV_UNICODE_CCCV_OK( cccv ) ( (QV_INT)( cccv ) >= 0 && (QV_INT)( cccv ) <= 255 )

QV_BEGIN_DECLS

/* The class of a code point. A ch for which QV_CHAR_OK doesn't hold stops the process, here and in all tests
 * below. */
QV_API QV_UNICODE_CCCV qvUnicodeCccv( QV_CHAR ch );

/* One test for each class with a name. qvUnicodeHasCccvAaboveLeft tests for QV_UNICODE_CCCV_ABOVE_LEFT. */
QV_API QV_BOOL qvUnicodeHasCccvSpacing( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvOverlays( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvNuktas( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvHiragana( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvViramas( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvFixedPosStart( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvFixedPosEnd( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowLeftAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowRightAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvLeftAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvRightAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAboveLeftAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAboveAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAboveRightAttached( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowLeft( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelow( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowRight( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvLeft( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvRight( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAaboveLeft( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAbove( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvAboveRight( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvDoubleBelow( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvDoubleAbove( QV_CHAR ch );
QV_API QV_BOOL qvUnicodeHasCccvBelowIota( QV_CHAR ch );

/* True for all fixed position classes, 10 to 199. */
QV_API QV_BOOL qvUnicodeHasCccvFixedPos( QV_CHAR ch );

/* The description of a class ("Nuktas", "Canonical Combining Class Value 11") as a string that the caller
 * owns. A cccv for which QV_UNICODE_CCCV_OK doesn't hold stops the process. */
QV_API QV_STRING *qvUnicodeCccvDescription( QV_UNICODE_CCCV cccv );

/* The name of the class's constant as a string that the caller owns, null for a class without one. */
QV_API QV_STRING *qvUnicodeCccvSymName( QV_UNICODE_CCCV cccv );

QV_END_DECLS

#endif
