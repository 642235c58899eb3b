#ifndef QV_BASE_QV_NAME_H
#define QV_BASE_QV_NAME_H

/* The rules for symbolic names, on code points. A run of exactly three "_" is the private separator, which
 * only names that are internal to a module have. */

#include <qv/runtime/qv_handles.h>

QV_BEGIN_DECLS

/* Whether a name consists of words of "A" to "Z" and "0" to "9", separated by single "_", and begins with a
 * letter. With allowPrivate a run of three "_" counts as one separator before the last three positions if
 * fewer than two separators stand before it. */
QV_API QV_BOOL qvNameUpperCaseOk( QV_STRING *qvs, QV_BOOL allowPrivate );

/* Whether a name consists of "a" to "z", "A" to "Z" and "0" to "9" and begins with a small letter. With
 * allowPrivate one run of three "_" with a capital behind it is allowed, also as the beginning, if fewer than
 * two capitals stand before it. */
QV_API QV_BOOL qvNameCamelCaseOk( QV_STRING *qvs, QV_BOOL allowPrivate );

/* Whether a name follows either rule. */
QV_API QV_BOOL qvNameOk( QV_STRING *qvs, QV_BOOL allowPrivate );

/* Whether a name is good only with its private separator. A name that isn't good at all stops the process. */
QV_API QV_BOOL qvNamePrivate( QV_STRING *qvs );

QV_END_DECLS

#endif
