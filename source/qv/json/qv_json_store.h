#ifndef QV_JSON_QV_JSON_STORE_H
#define QV_JSON_QV_JSON_STORE_H

/* Conversion between JSON values and stores. An object is a store without hints, an array one with
 * QV_STORE_HINT_ARRAY, a scalar a value with the hint of its type. Null handles stop the process; the caller owns
 * what a function returns. */

#include <qv/runtime/qv_handles.h>
#include <qv/runtime/qv_obj.h>

QV_BEGIN_DECLS

/* The JSON value of a store, always an object or an array. A value becomes null, a bool or a number if its hint says
 * so and its text reads so, a string otherwise; so does a real that is beyond the range of reals. Addresses of arrays
 * are dropped, locations are kept. */
QV_API QV_JSON_VALUE *qvJsonConvertFromStore( QV_STORE *store );

/* The store of a JSON value; anything but an object or an array stops the process. Members whose names can't be
 * addresses are dropped. Numbers get the text of their reading; one without a reading becomes a plain text. */
QV_API QV_STORE *qvJsonConvertToStore( QV_JSON_VALUE *value );

QV_END_DECLS

#endif
